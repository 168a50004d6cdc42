// The store's file in every bad way: damaged, locked, without rights, on a full disk, gone.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/file.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <random>

#include "platform/Environment.h"
#include "platform/Files.h"
#include "platform/posix/StoreSound.h"
#include "support/RawRegistry.h"
#include "support/TestHome.h"
#include "support/posix/InChild.h"

using namespace Registry;
namespace fs = std::filesystem;

namespace {

constexpr char szPath[] = "Software\\FaultTest";
using Condition = StoreCondition;
const std::string szGone = "[2]", szRefused = "[5]";

std::int32_t Write(const std::string& szName, const std::string& szText) {
  return RawRegistry::Put(szPath, szName, REG_SZ, szText);
}
std::string Read(const std::string& szName) {
  return RawRegistry::Get(szPath, szName);
}

class StoreFaultTest : public testing::Test {
 protected:
  // A store of some hundred pages, closed.
  void Fill() {
    {
      const Transaction aOneCommit(Written::ByTheOperator);
      for (int i = 0; i < 500; ++i)
        EXPECT_EQ(lSuccess, Write("value" + std::to_string(i), szValue));
    }
    CloseStore();
  }
  void ExpectAll() {
    for (int i = 0; i < 500; ++i)
      ASSERT_EQ(szValue, Read("value" + std::to_string(i))) << i;
  }

  const std::string szValue = std::string(499, 'x') + '\0';
  TestHome aHome;
  const std::string szStore = aHome.Path("registry.db");
};

// A connection of somebody else's, over which SQL is run.
struct Stranger {
  Stranger(const std::string& szFile, const char* szSql) {
    sqlite3_open(szFile.c_str(), &pConnection);
    EXPECT_EQ(SQLITE_OK, sqlite3_exec(pConnection, szSql, nullptr, nullptr, nullptr)) << szSql;
  }
  ~Stranger() { sqlite3_close(pConnection); }
  Stranger(const Stranger&) = delete;
  Stranger& operator=(const Stranger&) = delete;
  sqlite3* pConnection = nullptr;
};

TEST_F(StoreFaultTest, NothingLeftOfADamagedStoreIsNeverTakenForAnEmptyOne) {
  StandingClock aClock(JoinDateTime({1999, 11, 15, 17, 44, 21}));
  const std::string szKept = "registry.db.damaged-19991115-174421";
  const std::pair<std::string, std::string> aDamages[] = {
      {std::string(100000, 'Z'), ""}, {"again", ""}, {"", "the journal of what is gone"}};
  for (const auto& [szDamaged, szJournal] : aDamages) {
    CloseStore();
    for (const auto& szName : aHome.Names())
      fs::remove(aHome.Path(szName));
    aHome.Write("registry.db", szDamaged);
    if (!szJournal.empty()) aHome.Write("registry.db-wal", szJournal);
    for (int i = 0; i < 2; ++i) {
      EXPECT_EQ(Condition::Lost, OpenStore().iCondition) << "each time anew";
      EXPECT_EQ(szRefused, Read("value1"));
      EXPECT_EQ(lAccessDenied, Write("value1", "x"));
    }
    EXPECT_TRUE(szDamaged == aHome.Read("registry.db"));
    {
      Transaction aEntered(Written::ByTheOperator);
      EXPECT_TRUE(szDamaged == aHome.Read(szKept));
      EXPECT_EQ(szJournal, aHome.Read(szKept + "-wal"));
      EXPECT_EQ(aHome.Path(szKept), OpenStore().szKept);
      EXPECT_EQ(lSuccess, Write("other", "x"));
      EXPECT_EQ(lSuccess, aEntered.Commit());
    }
    const auto aState = OpenStore();
    EXPECT_EQ(Condition::Ready, aState.iCondition);
    EXPECT_FALSE(aState.bRecovered) << "something was entered: there is nothing more to say";
  }
}

TEST_F(StoreFaultTest, ADamagedOrMissingStoreComesBackFromItsCopy) {
  Fill();
  const auto szGood = aHome.Read("registry.db");
  auto szLate = szGood;  // all but the first page, so that the store opens and then cannot be read
  szLate.replace(4096, std::string::npos, szGood.size() - 4096, 'Z');
  auto szPage = szGood, szNothing = szGood;
  szPage.replace(8 * 4096, 4096, szGood, 19 * 4096, 4096);
  szNothing.replace(8192, 4096, 4096, '\0');
  for (const auto& szDamaged :
       {szGood.substr(0, szGood.size() / 2), std::string(szGood.size(), 'Z'), szPage, szNothing, szLate}) {
    aHome.Write("registry.db", szDamaged);
    const auto aState = OpenStore();
    EXPECT_EQ(Condition::Ready, aState.iCondition);
    EXPECT_TRUE(aState.bRecovered && aState.bWhole && aState.dtCopied);
    EXPECT_TRUE(szDamaged == Files::ReadWhole(aState.szKept, 1 << 30));
    ExpectAll();
    EXPECT_EQ(lSuccess, Write("other", "x"));
    CloseStore();
  }
  aHome.Write("registry.db", szLate);  // met in the middle of work
  EXPECT_EQ(szRefused, Read("value1"));
  EXPECT_EQ(lAccessDenied, Write("value1", "new"));
  EXPECT_TRUE(OpenStore().bRecovered);
  ExpectAll();
  CloseStore();

  fs::remove(szStore);
  EXPECT_EQ(szRefused, Read("value1")) << "a store that is missed is not begun anew by looking";
  const auto aState = OpenStore();
  EXPECT_TRUE(aState.bRecovered && aState.bWhole && aState.dtCopied);
  EXPECT_EQ("", aState.szKept);
  ExpectAll();

  const auto Enter = [](const std::string& szText) {
    const Registry::Transaction aEntry(Registry::Written::ByTheOperator);
    EXPECT_EQ(lSuccess, Write("other", szText));
  };
  Enter("y");
  EXPECT_FALSE(OpenStore().bRecovered) << "said long enough";
  fs::remove(szStore);
  Enter("z");
  EXPECT_TRUE(OpenStore().bRecovered) << "what put it together again does not silence that";
  EXPECT_EQ("z", Read("other"));
}

// The store is examined whenever it is not what it was when it last passed: after each write, and while pages
// of it lie in the journal. To open it, and to look at it, changes nothing.
TEST_F(StoreFaultTest, ASoundStoreIsExaminedOnce) {
  Fill();
  const auto Open = [&] {
    OpenStore();
    CloseStore();
    return aHome.Read("registry.db.sound");
  };
  const auto szFirst = Open();
  EXPECT_EQ(szFirst, Open());
  ExpectAll();
  CloseStore();
  EXPECT_EQ(szFirst, Open());
  const auto Sum = [&] { return StoreSound::Sum(Stranger(szStore, "SELECT 1").pConnection, szStore); };
  EXPECT_EQ(lSuccess, Write("value1", "other"));
  EXPECT_FALSE(Sum());
  CloseStore();
  EXPECT_NE(szFirst, Sum());
  EXPECT_EQ(szFirst, aHome.Read("registry.db.sound"));
  const auto szSecond = Open();
  EXPECT_NE(szFirst, szSecond);
  EXPECT_EQ(szSecond, Sum());
}

// Whatever bit turns, no value is lost, and only the one it lies in may read otherwise.
TEST_F(StoreFaultTest, ATurnedBitCostsNothingBesideTheCopyAndLittleWithoutIt) {
  Fill();
  ASSERT_EQ(Condition::Ready, OpenStore().iCondition);  // leaves the sum of what it has examined
  CloseStore();
  const auto szGood = aHome.Read("registry.db"), szCopy = aHome.Read("registry.db.good"),
             szSum = aHome.Read("registry.db.sound");
  ASSERT_FALSE(szSum.empty());
  std::mt19937 aRandom(20261122);
  int lRecovered = 0, lWithout = 0, lKeptWithout = 0;
  for (int i = 0; i < 60; ++i) {
    auto szTurned = szGood;
    const auto lBit = aRandom() % (szGood.size() * 8);
    szTurned[lBit / 8] = static_cast<char>(szTurned[lBit / 8] ^ (1 << (lBit % 8)));
    for (const bool bCopy : {true, false}) {
      SCOPED_TRACE(std::to_string(lBit) + (bCopy ? " with the copy" : " without"));
      CloseStore();
      for (const auto& szName : aHome.Names())
        fs::remove(aHome.Path(szName));
      aHome.Write("registry.db", szTurned);
      aHome.Write("registry.db.sound", szSum);
      if (bCopy) aHome.Write("registry.db.good", szCopy);
      const auto aState = OpenStore();
      if (aState.iCondition == Condition::Foreign) continue;  // the bit lies in the mark of the format
      int lMissing = 0, lOther = 0;
      for (int n = 0; n < 500; ++n) {
        const auto szRead = Read("value" + std::to_string(n));
        lMissing += szRead.starts_with('[');
        lOther += !szRead.starts_with('[') && szRead != szValue;
      }
      if (bCopy) {
        EXPECT_EQ(Condition::Ready, aState.iCondition);
        EXPECT_TRUE(lMissing <= (aState.bRecovered ? 0 : 1) && lOther <= 1) << lMissing << " " << lOther;
        lRecovered += aState.bRecovered;
      } else if (aState.iCondition == Condition::Ready && aState.bRecovered) {
        ++lWithout;
        lKeptWithout += 500 - lMissing;
        EXPECT_TRUE(lMissing == 0 || !aState.bWhole) << lMissing << " are missing without a word";
      }
    }
  }
  EXPECT_GT(lRecovered, 5);
  EXPECT_GT(lKeptWithout, lWithout * 400);
}

TEST_F(StoreFaultTest, AllWhoMeetTheDamageAtOnceSayItAndNobodyWaitsForTheFolder) {
  Fill();
  aHome.Write("registry.db", "garbage");
  const int lFolder = open(aHome.Folder().c_str(), O_RDONLY);
  ASSERT_EQ(0, flock(lFolder, LOCK_EX));  // as "flock FOLDER kestrova-cli check" does
  EXPECT_EQ(0, InChild([&] {
              for (int i = 0; i < 4; ++i)
                if (fork() == 0) _exit(OpenStore().bRecovered ? 0 : 1);
              int lFailed = OpenStore().bRecovered ? 0 : 1;
              for (int lStatus = 0; wait(&lStatus) > 0;)
                lFailed += lStatus == 0 ? 0 : 1;
              return lFailed;
            }));
  close(lFolder);
  EXPECT_EQ(1, std::ranges::count_if(aHome.Names(), [](const std::string& szName) {
              return szName.starts_with("registry.db.damaged");
            }));
  ExpectAll();
}

TEST_F(StoreFaultTest, AnotherProgramsDatabaseIsLeftAlone) {
  { const Stranger aOther(szStore, "CREATE TABLE contacts(name); INSERT INTO contacts VALUES('x')"); }
  const auto szBytes = aHome.Read("registry.db");
  EXPECT_EQ(Condition::Foreign, OpenStore().iCondition);
  EXPECT_EQ(lAccessDenied, Write("value1", "x"));
  CloseStore();
  EXPECT_TRUE(szBytes == aHome.Read("registry.db"));
}

TEST_F(StoreFaultTest, ALockedStoreAnswersFiveInTimeAndIsNotTakenForEmpty) {
  Fill();
  auto pOther = std::make_unique<Stranger>(szStore, "PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE");
  EXPECT_EQ(Condition::Locked, OpenStore().iCondition);
  EXPECT_EQ(szRefused, Read("value1"));  // [6] would say that there is no such key
  pOther.reset();
  EXPECT_EQ(Condition::Ready, OpenStore().iCondition);
  pOther = std::make_unique<Stranger>(szStore, "BEGIN IMMEDIATE; UPDATE vals SET data = 'y'");
  const Stopwatch aWatch;
  EXPECT_EQ(500U, Read("value1").size());
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(lAccessDenied, Write("value1", "new"));
  EXPECT_LT(aWatch.Seconds(), 15);  // one wait of two seconds, not eleven
  pOther.reset();
  EXPECT_EQ(lSuccess, Write("value1", "new"));
}

// What is read in a bracket is of one moment; its first write is not refused because somebody wrote since.
// And one that begins after the file was exchanged goes to the new file.
TEST_F(StoreFaultTest, ABracketReadsOneMomentOfTheStoreThatIsThere) {
  Fill();
  {
    Transaction aBracket;
    EXPECT_EQ(szValue, Read("value1"));
    const Stranger aOther(szStore, "UPDATE vals SET data = 'theirs' WHERE name = 'value1'");
    EXPECT_EQ(szValue, Read("value1"));
    EXPECT_EQ(lSuccess, Write("value2", "ours"));
    EXPECT_EQ("theirs", Read("value1"));
    EXPECT_EQ(lSuccess, aBracket.Commit());
  }
  EXPECT_EQ("theirs", Read("value1"));
  EXPECT_EQ("ours", Read("value2"));
  { const Stranger aOther(szStore, "PRAGMA wal_checkpoint(TRUNCATE)"); }
  fs::copy_file(szStore, szStore + ".new");
  fs::rename(szStore, szStore + ".aside");
  for (const char* const szBeside : {"-wal", "-shm"})
    fs::remove(szStore + szBeside);
  fs::rename(szStore + ".new", szStore);
  {
    Transaction aBracket;
    EXPECT_EQ(lSuccess, Write("value3", "new file"));
    EXPECT_EQ(lSuccess, aBracket.Commit());
  }
  CloseStore();
  EXPECT_EQ("new file", Read("value3"));
}

// A bracket that looks at many keys reads them all in one go and keeps what it saw: it must not outlive what
// is written since, by us or by another process, nor show what was taken back.
TEST_F(StoreFaultTest, ManyKeysReadInOneBracketAreNeverOutOfDate) {
  constexpr int lKeys = 40;
  const auto KeyOf = [](int i) { return std::string(szPath) + "\\key" + std::to_string(i); };
  const auto Put = [&](int i, const std::string& szText) {
    return RawRegistry::Put(KeyOf(i), "name", Registry::REG_SZ, szText);
  };
  const auto First = [&](int i) {  // value of the key, as its listing gives it
    Registry::Key hKey = 0;
    Registry::RegOpenKeyExA(RawRegistry::hRoot, KeyOf(i).c_str(), 0x3F, hKey);
    std::string szName(20, '\0'), szText(20, '\0');
    std::uint32_t lName = 20, lSize = 20;
    const auto lCode =
        Registry::RegEnumValueA(hKey, 0, szName.data(), &lName, nullptr, szText.data(), &lSize);
    Registry::RegCloseKey(hKey);
    return lCode == Registry::lSuccess ? szText.substr(0, lSize) : "[" + std::to_string(lCode) + "]";
  };
  for (int i = 0; i < lKeys; ++i)
    Put(i, "old");
  const auto ReadAll = [&] {
    const Registry::Transaction aLook;
    std::string szOthers;
    for (int i = 0; i < lKeys; ++i)
      if (const auto szText = First(i); szText != "old") szOthers += std::to_string(i) + szText + ' ';
    return szOthers;
  };
  EXPECT_EQ("", ReadAll());
  Put(3, "ours");
  EXPECT_EQ("3ours ", ReadAll());
  {
    Registry::Transaction aTakenBack;
    EXPECT_EQ("", First(4) == "old" ? "" : "not old");
    Put(4, "draft");
    EXPECT_EQ("draft", First(4));
    aTakenBack.Abandon();
  }
  EXPECT_EQ("3ours ", ReadAll());
  const auto Theirs = [&](const char* szSql) { const Stranger aOther(szStore, szSql); };
  Theirs("UPDATE vals SET data = 'theirs' WHERE key = (SELECT id FROM keys WHERE name = 'key5')");
  EXPECT_EQ("3ours 5theirs ", ReadAll());
  Theirs("PRAGMA foreign_keys = ON; DELETE FROM keys WHERE name = 'key6'");
  EXPECT_EQ(Registry::lSuccess, Registry::RegDeleteKeyA(RawRegistry::hRoot, KeyOf(7).c_str()));
  EXPECT_EQ("3ours 5theirs 6[6] 7[6] ", ReadAll());
  Put(7, "anew");
  EXPECT_EQ("3ours 5theirs 6[6] 7anew ", ReadAll());
  EXPECT_EQ("[6]", First(6));
}

TEST_F(StoreFaultTest, WithoutTheRightToWriteItIsRead) {
  Fill();
  fs::permissions(szStore, fs::perms(0444));
  fs::permissions(aHome.Folder(), fs::perms(0555));
  EXPECT_EQ(0, InChild([&] {
              if (geteuid() == 0 && setuid(65534) != 0) return 1;
              Environment::Set("KESTROVA_REGISTRY", szStore);
              const auto aState = OpenStore();
              if (aState.iCondition != Condition::ReadOnly || !aState.bReadable) return 2;
              if (Write("value1", "new") != lAccessDenied) return 3;
              return Read("value1") == szValue ? 0 : 4;
            }));
}

TEST_F(StoreFaultTest, AFullDiskKeepsWhatWasThere) {
  Fill();
  const std::string szLarge(1000000, 'z');
  EXPECT_EQ(0, InChild([&] {
              LimitFiles(400000);
              int lWritten = 0;
              while (lWritten < 5000 && Write("more" + std::to_string(lWritten), "z") == lSuccess)
                ++lWritten;
              if (lWritten < 2 || lWritten == 5000) return 1;
              if (Read("more" + std::to_string(lWritten - 1)) != "z") return 2;
              {
                Transaction aBracket;
                Write("small", "z");
                Write("large", szLarge);
                if (aBracket.Commit() != lAccessDenied) return 3;
              }
              if (Read("small") != szGone || Read("large") != szGone) return 4;
              LimitFiles(1);
              if (OpenStore().iCondition != Condition::Full) return 5;
              LimitFiles(RLIM_INFINITY);  // somebody tidies up
              return Write("large", szLarge) == lSuccess ? 0 : 6;
            }));
  for (int i = 0; i < 500; ++i)
    EXPECT_EQ(500U, Read("value" + std::to_string(i)).size());
}

}  // namespace

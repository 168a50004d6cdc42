// The store's file in every bad way: damaged, locked, without rights, on a full disk, gone.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <memory>

#include "platform/Environment.h"
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
      const Transaction aOneCommit;
      for (int i = 0; i < 500; ++i)
        EXPECT_EQ(lSuccess, Write("value" + std::to_string(i), std::string(500, 'x')));
    }
    CloseStore();
  }
  // Opens the store and tells as which file a damaged one was kept.
  static std::string KeptAs() {
    const auto aState = OpenStore();
    EXPECT_EQ(Condition::Ready, aState.iCondition);
    return aState.szKept;
  }

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

TEST_F(StoreFaultTest, ADamagedStoreIsKeptAndANewOneBegun) {
  StandingClock aClock(JoinDateTime({1999, 11, 15, 17, 44, 21}));
  const std::string szKept = "registry.db.damaged-19991115-174421";
  Fill();
  const auto szGood = aHome.Read("registry.db");
  auto szPage = szGood, szNothing = szGood;
  szPage.replace(8 * 4096, 4096, szGood, 19 * 4096, 4096);
  szNothing.replace(8192, 4096, 4096, '\0');
  const std::pair<std::string, std::string> aDamages[] = {{szGood.substr(0, szGood.size() / 2), ""},
                                                          {std::string(szGood.size(), 'Z'), ""},
                                                          {szPage, ""},
                                                          {szNothing, ""},
                                                          {"", "the journal of what is gone"}};
  for (const auto& [szDamaged, szJournal] : aDamages) {
    SCOPED_TRACE(&szDamaged - &aDamages[0].first);
    for (const auto& szName : aHome.Names())
      fs::remove(aHome.Path(szName));
    aHome.Write("registry.db", szDamaged);
    if (!szJournal.empty()) aHome.Write("registry.db-wal", szJournal);
    EXPECT_EQ(aHome.Path(szKept), KeptAs());
    EXPECT_TRUE(szDamaged == aHome.Read(szKept));
    EXPECT_EQ(szJournal, aHome.Read(szKept + "-wal"));
    EXPECT_EQ(lSuccess, Write("other", "x"));
    EXPECT_EQ(szGone, Read("value1"));
    CloseStore();
    EXPECT_EQ("", KeptAs()) << "the second time there is nothing to say";
    CloseStore();
  }
  aHome.Write("registry.db", "again");  // in the same second: the first is not overwritten
  EXPECT_EQ(aHome.Path(szKept + "-2"), KeptAs());

  CloseStore();
  auto szLate = szGood;  // all but the first page, so that the store opens and then cannot be read
  aHome.Write("registry.db", szLate.replace(4096, std::string::npos, szGood.size() - 4096, 'Z'));
  EXPECT_EQ(szRefused, Read("value1"));
  EXPECT_EQ(lAccessDenied, Write("value1", "new"));
  EXPECT_NE(std::string::npos, KeptAs().find(".damaged-"));
  EXPECT_EQ(lSuccess, Write("value1", "new"));
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
  EXPECT_EQ("", KeptAs());
  pOther = std::make_unique<Stranger>(szStore, "BEGIN IMMEDIATE; UPDATE vals SET data = 'y'");
  const Stopwatch aWatch;
  EXPECT_EQ(500U, Read("value1").size());
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(lAccessDenied, Write("value1", "new"));
  EXPECT_LT(aWatch.Seconds(), 3.0);  // one wait of two seconds, not eleven
  pOther.reset();
  EXPECT_EQ(lSuccess, Write("value1", "new"));
}

TEST_F(StoreFaultTest, WithoutTheRightToWriteNothingIsLost) {
  Fill();
  fs::permissions(szStore, fs::perms(0444));
  EXPECT_EQ(0, InChild([&] {
              if (geteuid() == 0 && setuid(65534) != 0) return 1;
              Environment::Set("KESTROVA_REGISTRY", szStore);
              const auto iCondition = OpenStore().iCondition;
              if (iCondition != Condition::ReadOnly && iCondition != Condition::Unreachable) return 2;
              if (Write("value1", "new") != lAccessDenied) return 3;
              const auto szRead = Read("value1");
              return szRead.size() == 500 || szRead == szRefused ? 0 : 4;
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

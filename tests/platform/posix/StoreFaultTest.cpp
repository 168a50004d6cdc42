// The store's file in every bad way: damaged, locked, without rights, on a full disk, gone.
#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>

#include "platform/Registry.h"
#include "support/Environment.h"
#include "support/TestHome.h"
#include "support/posix/InChild.h"

using namespace Registry;
namespace fs = std::filesystem;

namespace {

constexpr char szPath[] = "Software\\FaultTest";

// Opens as the program does: the code of the open is not looked at, only the last one.
std::int32_t Write(const std::string& szName, const std::string& szText) {
  Key hKey = 0;
  RegOpenKeyExA(HKEY_LOCAL_MACHINE, szPath, 0x3F, hKey);
  const auto lCode = RegSetValueExA(hKey, szName.c_str(), REG_SZ, szText.c_str(),
                                    static_cast<std::uint32_t>(szText.size() + 1));
  RegCloseKey(hKey);
  return lCode;
}

std::int32_t Read(const std::string& szName) {
  Key hKey = 0;
  RegOpenKeyExA(HKEY_LOCAL_MACHINE, szPath, 0x3F, hKey);
  const auto lCode = RegQueryValueExA(hKey, szName.c_str(), nullptr, nullptr, nullptr);
  RegCloseKey(hKey);
  return lCode;
}

std::int32_t Create() {
  Key hKey = 0;
  const auto lCode = RegCreateKeyExA(HKEY_LOCAL_MACHINE, szPath, 0x3F, hKey);
  RegCloseKey(hKey);
  return lCode;
}

class StoreFaultTest : public testing::Test {
 protected:
  // A store of some hundred pages, closed.
  void Fill() {
    {
      const Transaction aOneCommit;
      EXPECT_EQ(lSuccess, Create());
      for (int i = 0; i < 500; ++i)
        EXPECT_EQ(lSuccess, Write("value" + std::to_string(i), std::string(500, 'x')));
    }
    CloseStore();
  }

  TestHome aHome;
  const std::string szStore = aHome.Path("registry.db");
  std::string szMessage;
};

// A connection of somebody else's, over which SQL is run.
class Stranger {
 public:
  explicit Stranger(const std::string& szFile) { sqlite3_open(szFile.c_str(), &pConnection); }
  ~Stranger() { sqlite3_close(pConnection); }
  Stranger(const Stranger&) = delete;
  Stranger& operator=(const Stranger&) = delete;
  void Run(const char* szSql) {
    EXPECT_EQ(SQLITE_OK, sqlite3_exec(pConnection, szSql, nullptr, nullptr, nullptr)) << szSql;
  }

 private:
  sqlite3* pConnection = nullptr;
};

TEST_F(StoreFaultTest, ADamagedStoreIsKeptAndANewOneBegun) {
  TestClock aClock(
      JoinDateTime({.lYear = 1999, .lMonth = 11, .lDay = 15, .lHour = 17, .lMinute = 44, .lSecond = 21}));
  struct Case {
    const char* szName;
    std::function<std::string(std::string)> aDamage;
    std::string szJournal;
  };
  const Case aCases[] = {
      {"cut in half", [](std::string szBytes) { return szBytes.substr(0, szBytes.size() / 2); }, ""},
      {"cut in the header", [](std::string szBytes) { return szBytes.substr(0, 50); }, ""},
      {"no database", [](const std::string&) { return std::string("[Settings]\r\nInterval=5\r\n"); }, ""},
      {"garbage", [](std::string szBytes) { return std::string(szBytes.size(), '\x5A'); }, ""},
      {"a page in another's place",
       [](std::string szBytes) { return szBytes.replace(8 * 4096, 4096, szBytes, 19 * 4096, 4096); }, ""},
      {"a page of nothing", [](std::string szBytes) { return szBytes.replace(8192, 4096, 4096, '\0'); }, ""},
      {"emptied, its journal left", [](const std::string&) { return std::string(); }, "a journal"},
  };
  for (const auto& aCase : aCases) {
    SCOPED_TRACE(aCase.szName);
    Fill();
    const auto szDamaged = aCase.aDamage(aHome.Read("registry.db"));
    aHome.Write("registry.db", szDamaged);
    if (!aCase.szJournal.empty()) aHome.Write("registry.db-wal", aCase.szJournal);

    EXPECT_TRUE(OpenStore(szMessage));
    const auto szKept = "registry.db.damaged-19991115-174421";
    EXPECT_NE(std::string::npos, szMessage.find(aHome.Path(szKept))) << szMessage;
    EXPECT_TRUE(szDamaged == aHome.Read(szKept));
    EXPECT_EQ(aCase.szJournal, aHome.Read(szKept + std::string("-wal")));
    EXPECT_EQ(lSuccess, Create());
    EXPECT_EQ(lNotFound, Read("value1"));
    EXPECT_EQ(lSuccess, Write("value1", "x"));
    CloseStore();
    EXPECT_TRUE(OpenStore(szMessage));  // the second time there is nothing to say
    EXPECT_EQ("", szMessage);
    CloseStore();
    for (const auto& szName : aHome.Names())
      fs::remove(aHome.Path(szName));
  }
  for (int i = 0; i < 2; ++i) {  // twice in one second: the first is not overwritten
    aHome.Write("registry.db", "damage " + std::to_string(i));
    EXPECT_TRUE(OpenStore(szMessage));
    CloseStore();
  }
  EXPECT_EQ("damage 0", aHome.Read("registry.db.damaged-19991115-174421"));
  EXPECT_EQ("damage 1", aHome.Read("registry.db.damaged-19991115-174421-2"));
}

TEST_F(StoreFaultTest, DamageThatACallMeetsAnswersFiveAndIsSetAsideAtTheNextOpen) {
  Fill();
  auto szBytes = aHome.Read("registry.db");
  // All but the first page, so that the store opens and then cannot be read.
  aHome.Write("registry.db", szBytes.replace(4096, std::string::npos, szBytes.size() - 4096, '\x5A'));
  EXPECT_EQ(lAccessDenied, Read("value1"));
  EXPECT_EQ(lAccessDenied, Write("value1", "new"));
  EXPECT_TRUE(OpenStore(szMessage));
  EXPECT_NE(std::string::npos, szMessage.find(".damaged-"));
  EXPECT_EQ(lSuccess, Create());
}

TEST_F(StoreFaultTest, AnotherProgramsDatabaseIsLeftAlone) {
  Stranger(szStore).Run("CREATE TABLE contacts(name); INSERT INTO contacts VALUES('x')");
  const auto szBytes = aHome.Read("registry.db");
  EXPECT_FALSE(OpenStore(szMessage));
  EXPECT_NE("", szMessage);
  EXPECT_EQ(lAccessDenied, Create());
  CloseStore();
  EXPECT_TRUE(szBytes == aHome.Read("registry.db"));
}

TEST_F(StoreFaultTest, AStoreThatIsWrittenElsewhereIsReadAndAnswersFiveInTime) {
  Fill();
  Stranger aOther(szStore);
  aOther.Run("BEGIN IMMEDIATE; UPDATE vals SET data = 'y'");
  const auto aStart = std::chrono::steady_clock::now();
  EXPECT_EQ(lSuccess, Read("value1"));
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(lAccessDenied, Write("value1", "new"));
  {
    Transaction aBracket;
    EXPECT_EQ(lAccessDenied, Write("value1", "new"));
    EXPECT_EQ(lAccessDenied, aBracket.Commit());
  }
  const std::chrono::duration<double> aTaken = std::chrono::steady_clock::now() - aStart;
  EXPECT_LT(aTaken.count(), 3.0);  // one wait of two seconds, not eleven
  aOther.Run("ROLLBACK");
  EXPECT_EQ(lSuccess, Write("value1", "new"));
}

TEST_F(StoreFaultTest, AStoreHeldByOneProgramAloneIsUnreadableAndNotEmpty) {
  Fill();
  auto pOther = std::make_unique<Stranger>(szStore);
  pOther->Run("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE; UPDATE vals SET data = 'y'");
  EXPECT_EQ(lAccessDenied, Read("value1"));  // 6 would say that there is no such key
  EXPECT_EQ(lAccessDenied, Write("value1", "new"));
  EXPECT_FALSE(OpenStore(szMessage));
  EXPECT_NE(std::string::npos, szMessage.find("in use")) << szMessage;
  pOther.reset();
  EXPECT_TRUE(OpenStore(szMessage)) << szMessage;
  EXPECT_EQ(lSuccess, Read("value1"));
}

TEST_F(StoreFaultTest, WithoutTheRightToWriteNothingIsLost) {
  const auto AsSomebodyElse = [] { return geteuid() != 0 || setuid(65534) == 0; };
  Fill();
  fs::permissions(szStore, fs::perms(0444));
  EXPECT_EQ(0, InChild([&] {
              if (!AsSomebodyElse()) return 1;
              if (OpenStore(szMessage) || szMessage.empty()) return 2;
              if (Write("value1", "new") != lAccessDenied) return 3;
              const auto lRead = Read("value1");
              return lRead == lSuccess || lRead == lAccessDenied ? 0 : 4;
            }));
  ASSERT_EQ(lSuccess, Read("value1"));  // open here, so its journal is there and can be read
  for (const char* const szEnd : {"", "-wal", "-shm"})
    fs::permissions(szStore + szEnd, fs::perms(0444));
  EXPECT_EQ(0, InChild([&] {
              if (!AsSomebodyElse()) return 1;
              Environment::Set("KESTROVA_REGISTRY", szStore);
              CloseStore();
              if (OpenStore(szMessage) || szMessage.find("cannot be written") == std::string::npos) return 2;
              return Read("value1") == lSuccess && Write("value1", "new") == lAccessDenied ? 0 : 3;
            }));
}

TEST_F(StoreFaultTest, APlaceThatCannotHoldAStore) {
  aHome.Write("file", "");
  fs::create_directory(aHome.Path("folder"));
  ASSERT_EQ(0, mkfifo(aHome.Path("pipe").c_str(), 0600));
  for (const auto& szPlace : {aHome.Path("folder"), aHome.Path("pipe"), aHome.Path("file/registry.db"),
                              std::string("/proc/nowhere/registry.db"), std::string("/dev/full")}) {
    SCOPED_TRACE(szPlace);
    CloseStore();
    Environment::Set("KESTROVA_REGISTRY", szPlace);
    EXPECT_FALSE(OpenStore(szMessage));
    EXPECT_NE(std::string::npos, szMessage.find(szPlace)) << szMessage;
    EXPECT_EQ(lAccessDenied, Create());
    EXPECT_EQ(lAccessDenied, Read("value1"));
  }
}

TEST_F(StoreFaultTest, AFullDiskKeepsWhatWasThere) {
  Fill();
  EXPECT_EQ(0, InChild([] {
              signal(SIGXFSZ, SIG_IGN);  // the write then fails as on a full disk
              std::string szIgnored;
              if (!OpenStore(szIgnored)) return 1;
              rlimit aLimit{};
              getrlimit(RLIMIT_FSIZE, &aLimit);
              aLimit.rlim_cur = 400000;
              setrlimit(RLIMIT_FSIZE, &aLimit);
              std::int32_t lCode = lSuccess;
              int lWritten = 0;
              for (; lCode == lSuccess && lWritten < 5000; ++lWritten)
                lCode = Write("more" + std::to_string(lWritten), "z");
              if (lCode != lAccessDenied || lWritten < 2) return 2;
              for (int i = 0; i < lWritten - 1; ++i) {
                if (Read("more" + std::to_string(i)) != lSuccess) return 3;
              }
              Transaction aBracket;
              Write("small", "z");
              Write("large", std::string(1000000, 'z'));
              if (aBracket.Commit() != lAccessDenied) return 4;
              if (Read("small") != lNotFound || Read("large") != lNotFound) return 5;
              aLimit.rlim_cur = 1;
              setrlimit(RLIMIT_FSIZE, &aLimit);
              if (OpenStore(szIgnored) || szIgnored.find("full or failing") == std::string::npos) return 6;
              aLimit.rlim_cur = aLimit.rlim_max;  // somebody tidies up
              setrlimit(RLIMIT_FSIZE, &aLimit);
              return Write("large", std::string(1000000, 'z')) == lSuccess ? 0 : 7;
            }));
  for (int i = 0; i < 500; ++i)
    EXPECT_EQ(lSuccess, Read("value" + std::to_string(i)));
  EXPECT_EQ(lSuccess, Read("large"));
}

TEST_F(StoreFaultTest, AKeyMadeInABracketThatFailedIsGoneWithItsHandle) {
  EXPECT_EQ(lSuccess, Create());
  EXPECT_EQ(0, InChild([] {
              CloseStore();
              signal(SIGXFSZ, SIG_IGN);
              std::string szIgnored;
              OpenStore(szIgnored);
              Key hMade = 0;
              {
                const Transaction aBracket;
                RegCreateKeyExA(HKEY_LOCAL_MACHINE, "Software\\Made", 0x3F, hMade);
                rlimit aLimit{};
                getrlimit(RLIMIT_FSIZE, &aLimit);
                aLimit.rlim_cur = 1;
                setrlimit(RLIMIT_FSIZE, &aLimit);
              }
              rlimit aLimit{};
              getrlimit(RLIMIT_FSIZE, &aLimit);
              aLimit.rlim_cur = aLimit.rlim_max;
              setrlimit(RLIMIT_FSIZE, &aLimit);
              Key hOther = 0;  // gets the number that the lost key had
              if (RegCreateKeyExA(HKEY_LOCAL_MACHINE, "Software\\Other", 0x3F, hOther) != lSuccess) return 1;
              if (RegSetValueExA(hMade, "v", REG_SZ, "x", 2) != lInvalidHandle) return 2;
              return RegOpenKeyExA(HKEY_LOCAL_MACHINE, "Software\\Made", 0x3F, hMade) == lNotFound ? 0 : 3;
            }));
}

TEST_F(StoreFaultTest, AStoreThatIsReplacedIsFollowed) {
  EXPECT_EQ(lSuccess, Create());
  EXPECT_EQ(lSuccess, Write("old", "x"));
  for (const char* const szEnd : {"", "-wal"})  // as when another process sets it aside
    fs::rename(szStore + szEnd, aHome.Path("elsewhere") + szEnd);
  EXPECT_EQ(lSuccess, Create());
  EXPECT_EQ(lSuccess, Write("new", "x"));
  EXPECT_EQ(lNotFound, Read("old"));
  EXPECT_TRUE(fs::exists(szStore));
}

TEST_F(StoreFaultTest, OnlyTheUserReadsTheStore) {
  Environment::Set("KESTROVA_REGISTRY", aHome.Path("new/folder/registry.db"));
  EXPECT_EQ(lSuccess, Create());
  EXPECT_EQ(fs::perms(0700), fs::status(aHome.Path("new/folder")).permissions());
  for (const char* const szEnd : {"", "-wal", "-shm"})
    EXPECT_EQ(fs::perms(0600), fs::status(StoreName() + szEnd).permissions()) << szEnd;
}

TEST_F(StoreFaultTest, NamesAreBytesAndBounded) {
  const std::string szBytes = "caf\xE9 \xFF/";  // no UTF-8
  Key hKey = 0;
  EXPECT_EQ(lSuccess, RegCreateKeyExA(HKEY_LOCAL_MACHINE, szBytes.c_str(), 0x3F, hKey));
  EXPECT_EQ(lSuccess, RegSetValueExA(hKey, szBytes.c_str(), REG_SZ, szBytes.c_str(), 9));
  RegCloseKey(hKey);
  CloseStore();
  EXPECT_EQ(lSuccess, RegOpenKeyExA(HKEY_LOCAL_MACHINE, ("CAF" + szBytes.substr(3)).c_str(), 0x3F, hKey));
  std::array<char, 256> aBuffer{};
  std::uint32_t lSize = 256;
  EXPECT_EQ(lSuccess, RegQueryValueExA(hKey, szBytes.c_str(), nullptr, aBuffer.data(), &lSize));
  EXPECT_EQ(szBytes, aBuffer.data());
  EXPECT_EQ(lSuccess, RegCreateKeyExA(hKey, std::string(255, 'k').c_str(), 0x3F, hKey));
  EXPECT_EQ(lInvalidParameter, RegCreateKeyExA(hKey, ("a\\" + std::string(256, 'k')).c_str(), 0x3F, hKey));
}

TEST_F(StoreFaultTest, ValuesKeepTheOrderTheyWereMadeIn) {
  EXPECT_EQ(lSuccess, Create());
  for (const char* const szName : {"Domain2", "Domain10", "Domain1", "Domain2"})
    EXPECT_EQ(lSuccess, Write(szName, "x"));
  EXPECT_EQ(lSuccess, Write("domain10", "rewritten"));
  Key hKey = 0;
  RegOpenKeyExA(HKEY_LOCAL_MACHINE, szPath, 0x3F, hKey);
  std::string szListed;
  std::array<char, 64> aName{};
  for (std::uint32_t i = 0, lSize = 64;
       RegEnumValueA(hKey, i, aName.data(), &lSize, nullptr, nullptr, nullptr) == lSuccess; ++i, lSize = 64) {
    szListed += aName.data() + std::string(" ");
  }
  EXPECT_EQ("Domain2 Domain10 Domain1 ", szListed);
}

}  // namespace

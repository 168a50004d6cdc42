// What a store must survive on any system: its writer killed, two writers at once. What is particular to the
// SQLite file is tested in posix/StoreFaultTest.cpp.
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <map>
#include <random>
#include <sstream>
#include <thread>
#include <vector>

#include "platform/Registry.h"
#include "support/ChildProcess.h"
#include "support/TestHome.h"

using namespace Registry;

namespace {

// All numbers below the writers' key, by value name.
std::map<std::string, std::int32_t> Stored() {
  std::map<std::string, std::int32_t> aStored;
  Key hKey = 0;
  RegOpenKeyExA(HKEY_LOCAL_MACHINE, "Software\\StoreWriter", 0x3F, hKey);
  std::array<char, 256> aName{};
  std::int32_t lNumber = 0;
  for (std::uint32_t i = 0;; ++i) {
    std::uint32_t lName = 256;
    std::uint32_t lSize = 4;
    if (RegEnumValueA(hKey, i, aName.data(), &lName, nullptr, &lNumber, &lSize) != lSuccess) break;
    aStored[aName.data()] = lNumber;
  }
  RegCloseKey(hKey);
  CloseStore();  // the next writer is to find the store as a kill left it
  return aStored;
}

std::int32_t LastAcknowledged(const std::string& szOutput) {
  std::istringstream aLines(szOutput.substr(0, szOutput.rfind('\n') + 1));
  std::int32_t lLast = 0;
  while (aLines >> lLast) {
  }
  return lLast;
}

class StoreTest : public testing::Test {
 protected:
  TestHome aHome;
  const std::string szWriter = ChildProcess::BuiltProgram("store-writer");
};

TEST_F(StoreTest, AKilledWriterLosesNothingThatWasAcknowledged) {
  std::mt19937 aRandom(20261121);
  std::int32_t lInAll = 0;
  for (int lRound = 0; lRound < 40; ++lRound) {
    const bool bBracket = lRound % 2 == 1;
    const auto szPrefix = "r" + std::to_string(lRound) + "_";
    std::vector<std::string> aArguments{szPrefix, "1000000"};
    if (bBracket) aArguments.emplace_back("bracket");
    ChildProcess aWriter(szWriter, aArguments);
    ASSERT_TRUE(aWriter.WaitForOutput("\n", 10)) << aWriter.Errors();
    std::this_thread::sleep_for(std::chrono::microseconds(aRandom() % 20000));  // the moment of the kill
    aWriter.Kill();
    ASSERT_EQ(ChildProcess::lKilled, aWriter.Wait(5));
    const auto lLast = LastAcknowledged(aWriter.Output());
    lInAll += lLast;
    const auto aStored = Stored();
    if (bBracket) {
      const auto lFirst = aStored.at(szPrefix + "a");
      EXPECT_GE(lFirst, lLast);
      EXPECT_EQ(lFirst, aStored.at(szPrefix + "b"));
      EXPECT_EQ(lFirst, aStored.at(szPrefix + "c"));
    } else {
      for (std::int32_t i = 1; i <= lLast; ++i)
        ASSERT_TRUE(aStored.contains(szPrefix + std::to_string(i))) << i << " of " << lLast;
    }
  }
  EXPECT_GT(lInAll, 40);
  std::string szMessage;
  EXPECT_TRUE(OpenStore(szMessage)) << szMessage;
  EXPECT_EQ("", szMessage);
}

TEST_F(StoreTest, TwoWritersAtOnceBothArrive) {
  // From nothing: both make the store.
  ChildProcess aOne(szWriter, {"one", "400"});
  ChildProcess aTwo(szWriter, {"two", "400"});
  EXPECT_EQ(0, aOne.Wait(30)) << aOne.Errors();
  EXPECT_EQ(0, aTwo.Wait(30)) << aTwo.Errors();
  EXPECT_EQ(800U, Stored().size());
}

TEST_F(StoreTest, AnotherProcessesChangesAreSeenByAnOpenKey) {
  ASSERT_EQ(0, ChildProcess(szWriter, {"v", "1"}).Wait(10));
  Key hKey = 0;
  ASSERT_EQ(lSuccess, RegOpenKeyExA(HKEY_LOCAL_MACHINE, "Software\\StoreWriter", 0x3F, hKey));
  std::array<char, 256> aName{};
  std::uint32_t lName = 256;
  EXPECT_EQ(lNoMoreItems, RegEnumValueA(hKey, 1, aName.data(), &lName, nullptr, nullptr, nullptr));
  ASSERT_EQ(0, ChildProcess(szWriter, {"v", "2"}).Wait(10));
  EXPECT_EQ(lSuccess, RegEnumValueA(hKey, 1, aName.data(), &lName, nullptr, nullptr, nullptr));
  RegCloseKey(hKey);
}

}  // namespace

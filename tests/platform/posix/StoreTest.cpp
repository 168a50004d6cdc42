// What the store must survive: its writer killed, two writers at once. Its file in every bad way is tested in
// StoreFaultTest.cpp.
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <random>
#include <sstream>
#include <thread>

#include "support/ChildProcess.h"
#include "support/RawRegistry.h"
#include "support/TestHome.h"

namespace {

// The number that a writer left, -1 where there is none.
std::int32_t Stored(const std::string& szName) {
  const auto szBytes = RawRegistry::Get("Software\\StoreWriter", szName);
  std::int32_t lNumber = -1;
  if (szBytes != "[2]" && szBytes.size() == 4) std::memcpy(&lNumber, szBytes.data(), 4);
  return lNumber;
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
  for (int lRound = 0; lRound < 24; ++lRound) {
    const bool bBracket = lRound % 2 == 1;
    const auto szPrefix = "r" + std::to_string(lRound) + "_";
    ChildProcess aWriter(szWriter, {szPrefix, "1000000", bBracket ? "bracket" : "single"});
    ASSERT_TRUE(aWriter.WaitForOutput("\n", 10)) << aWriter.Errors();
    std::this_thread::sleep_for(std::chrono::microseconds(aRandom() % 20000));  // the moment of the kill
    aWriter.Kill();
    ASSERT_EQ(ChildProcess::lKilled, aWriter.Wait(5));
    const auto lLast = LastAcknowledged(aWriter.Output());
    for (std::int32_t i = 1; i <= lLast && !bBracket; ++i)
      ASSERT_EQ(i, Stored(szPrefix + std::to_string(i))) << i << " of " << lLast;
    if (bBracket) {
      EXPECT_GE(Stored(szPrefix + "a"), lLast);
      EXPECT_EQ(Stored(szPrefix + "a"), Stored(szPrefix + "b"));
      EXPECT_EQ(Stored(szPrefix + "a"), Stored(szPrefix + "c"));
    }
    Registry::CloseStore();  // the next writer is to find the store as the kill left it
  }
  std::string szMessage;
  EXPECT_TRUE(Registry::OpenStore(szMessage)) << szMessage;
  EXPECT_EQ("", szMessage);
}

TEST_F(StoreTest, TwoWritersAtOnceBothArrive) {
  ChildProcess aOne(szWriter, {"one", "300"}), aTwo(szWriter, {"two", "300"});  // both make the store
  EXPECT_EQ(0, aOne.Wait(30)) << aOne.Errors();
  EXPECT_EQ(0, aTwo.Wait(30)) << aTwo.Errors();
  for (int i = 1; i <= 300; ++i)
    ASSERT_TRUE(Stored("one" + std::to_string(i)) == i && Stored("two" + std::to_string(i)) == i);
}

}  // namespace

// What the store must survive: its writer killed, two writers at once. Its file in every bad way is tested in
// StoreFaultTest.cpp.
#include <gtest/gtest.h>

#include <random>

#include "platform/Files.h"
#include "support/RawRegistry.h"
#include "support/TestHome.h"
#include "support/posix/InChild.h"

namespace {

constexpr char szPath[] = "Software\\StoreTest";

bool Write(const std::string& szName, int lNumber) {
  return RawRegistry::Put(szPath, szName, Registry::REG_SZ, std::to_string(lNumber)) == Registry::lSuccess;
}

std::string Read(const std::string& szName) {
  return RawRegistry::Get(szPath, szName);
}

TEST(StoreTest, AKilledWriterLosesNothingThatWasAcknowledged) {
  const TestHome aHome;
  std::mt19937 aRandom(20261121);
  for (int lRound = 0; lRound < 24; ++lRound) {
    const auto szRound = std::to_string(lRound) + "_", szDone = aHome.Path(szRound);
    const auto lMicroseconds = static_cast<useconds_t>(1 + aRandom() % 30'000);
    EXPECT_EQ(-SIGALRM, InChild([&] {
      for (int i = 1; Write(szRound + std::to_string(i), i); ++i) {
        Registry::Transaction aBracket;
        if (!Write(szRound + "a", i) || !Write(szRound + "b", i)) return 1;
        if (aBracket.Commit() != Registry::lSuccess || !Files::Append(szDone, ".")) return 2;
        if (i == 1) ualarm(lMicroseconds, 0);  // ends the process wherever it is then
      }
      return 3;
    }));
    const int lDone = static_cast<int>(Files::FileSize(szDone).value_or(0));
    for (int i = 1; i <= lDone; ++i)
      ASSERT_EQ(Read(szRound + std::to_string(i)), std::to_string(i)) << " of " << lDone;
    EXPECT_EQ(Read(szRound + "a"), Read(szRound + "b"));
    EXPECT_GE(lDone, 1);
    EXPECT_GE(std::stoi("0" + Read(szRound + "a")), lDone);
  }
  const auto aState = Registry::OpenStore();
  EXPECT_EQ(Registry::StoreCondition::Ready, aState.iCondition);
  EXPECT_EQ("", aState.szKept);
}

TEST(StoreTest, TwoWritersAtOnceBothArrive) {
  const TestHome aHome;
  EXPECT_EQ(0, InChild([] {
              const pid_t lOther = fork();  // both make the store
              int lStatus = 0;
              for (int i = 1; i <= 300; ++i)
                if (!Write((lOther == 0 ? "one" : "two") + std::to_string(i), i)) return 1;
              if (lOther != 0) waitpid(lOther, &lStatus, 0);
              return lStatus == 0 ? 0 : 2;
            }));
  for (int i = 1; i <= 300; ++i) {
    ASSERT_EQ(Read("one" + std::to_string(i)), std::to_string(i));
    ASSERT_EQ(Read("two" + std::to_string(i)), std::to_string(i));
  }
}

}  // namespace

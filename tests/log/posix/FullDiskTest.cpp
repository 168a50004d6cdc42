#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

#include "log/CheckLog.h"
#include "persistence/Settings.h"
#include "support/TestHome.h"

namespace {

// While it lives, no file of this process grows beyond the given size.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t lBytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &aBefore);
    const rlimit aLimit{lBytes, aBefore.rlim_max};
    setrlimit(RLIMIT_FSIZE, &aLimit);
  }
  ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &aBefore); }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit aBefore{};
};

TEST(FullDiskTest, ALineIsWrittenWholeOrNotAtAll) {
  const TestHome aHome;
  Settings.LogPeriod = 1;
  CheckLog::CurrentLogFile = aHome.Path("D.kvl");
  const std::string szEnd = "[END CHECK]\r\n";
  {
    const FileSizeLimit aFull(szEnd.size() + 5);
    CheckLog::WriteLog(false, false, true);
    CheckLog::WriteLog(false, false, true);
    EXPECT_EQ(aHome.Read("D.kvl"), szEnd);
  }
  CheckLog::WriteLog(false, false, true);
  EXPECT_EQ(aHome.Read("D.kvl"), szEnd + szEnd);
}

}  // namespace

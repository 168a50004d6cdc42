#include <gtest/gtest.h>

#include <vector>

#include "check/ResultCodes.h"

TEST(ResultCodes, EveryHeaderHasOneMeaning) {
  struct Case {
    const char *szHeader, *szCode, *szText;
    std::int16_t iBackupOutcome = 2;
  };
  std::vector<Case> aCases = {
      {"http/1.1 404 Not Found", "404", "404 File Not Found"},
      {"HTTP/1.1 501 x", "501", "501 Not implemented"},
      {"HTTP/1.1 504 x", "504", "504 Gateway Time-Out"},
      {"HTTP/1.1 101 x", "1xx", "1xx Informational Response Received", 5},
      {"HTTP/1.1 418 x", "4xx", "4xx Request Error Response Received"},
      {"HTTP/1.1 599 x", "5xx", "5xx Server Error Response Received"},
      {"HTTP/1.1 600 x", "0", "Unrecognized Response Code"},
  };
  for (const char* szUp : {"HTTP/1.0 200 OK", "HTTP/1.1 202", "HTTP/1.1 302 Found",
                           "HTTP/1.1 304 Not Modified", "HTTP/1.1 2000", "X: y\r\nHTTP/1.1 200 OK"})
    aCases.push_back({szUp, "up", ""});
  for (const char* szNoCode : {"", "HTTP/1.1", "HTTP/1.1 20", "HTTP/1.1 099", "HTTP/1.1 000", "HTTP/1.1  200",
                               "HTTP/1.1 +12", "HTTP/1.1 1e2", "SSH-2.0-x"})
    aCases.push_back({szNoCode, "0", "Unrecognized Reponse Code"});
  for (const Case& aCase : aCases) {
    const Classification aResult = ClassifyResponse(aCase.szHeader);
    EXPECT_EQ(aResult.bUp ? "up" : aResult.szCode, aCase.szCode) << aCase.szHeader;
    EXPECT_EQ(aResult.aText.Text(), aCase.szText) << aCase.szHeader;
    EXPECT_EQ(aResult.iBackupOutcome, aCase.iBackupOutcome) << aCase.szHeader;
  }
}

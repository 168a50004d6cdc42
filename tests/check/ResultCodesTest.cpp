#include <gtest/gtest.h>

#include "check/ResultCodes.h"

// What an answer means otherwise, the simulated machine holds against its book.
TEST(ResultCodes, AnOddAnswerToTheIPCheckIsToldFromAFailure) {
  for (const char* szOdd : {"HTTP/1.1 101 x", "HTTP/1.1 206 x", "HTTP/1.1 307 x"})
    EXPECT_EQ(ClassifyResponse(szOdd).iBackupOutcome, iServerAnswered) << szOdd;
  for (const char* szFailure : {"HTTP/1.1 404 x", "HTTP/1.1 418 x", "HTTP/1.1 599 x", "HTTP/1.1 600 x", ""})
    EXPECT_EQ(ClassifyResponse(szFailure).iBackupOutcome, iServerFailed) << szFailure;
}

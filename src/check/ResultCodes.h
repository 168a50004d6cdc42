// ResultCodes: what one HTTP answer means. A result code is a short decimal text: a status, a class "1xx" to
// "5xx", "0" (no usable status line), "8001" (time-out), "8080" (transport error).
#pragma once

#include <cstdint>
#include <string>

#include "log/ResultText.h"

// The outcome of a failed request as an answer to the IP check.
inline constexpr std::int16_t iServerFailed = 2;
inline constexpr std::int16_t iServerAnswered = 5;

struct Classification {
  bool bUp = false;    // 200, 201, 202, 302, 304
  std::string szCode;  // empty when up
  ResultText aText;
  std::int16_t iBackupOutcome = iServerFailed;
  ResultText aLogStatus;  // the log's own wording where it differs from aText
};

// The status code out of a raw response header: the three digits behind the first "HTTP/" and blank (RFC 9112
// section 4), without leading zeros; "0" when there is no such thing.
std::string GetResponseCode(const std::string& szHeader);

Classification ClassifyResponse(const std::string& szHeader);

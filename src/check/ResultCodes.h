// ResultCodes: what the outcome of one request means. A result code is a short decimal text: a status, a
// class "1xx" to "5xx", or one of the three below.
#pragma once

#include <cstdint>
#include <string>

#include "log/ResultText.h"

inline constexpr char szCodeUnreadable[] = "0";  // no usable status line
inline constexpr char szCodeTimedOut[] = "8001";
inline constexpr char szCodeError[] = "8080";  // of the transport

// What the outcome says where it is that of an IP check.
inline constexpr std::int16_t iServerFine = 1;
inline constexpr std::int16_t iServerFailed = 2;
inline constexpr std::int16_t iServerAnswered = 5;  // with a status that is neither

struct Classification {
  bool bUp = false;    // 200, 201, 202, 302, 304
  std::string szCode;  // empty when up
  ResultText aText;
  std::int16_t iBackupOutcome = iServerFailed;
  ResultText aLogStatus;  // the log's own wording where it differs from aText

  const ResultText& LogText() const { return aLogStatus.Empty() ? aText : aLogStatus; }
};

// The status code out of a raw response header: the three digits behind the first "HTTP/" and blank (RFC 9112
// section 4), without leading zeros; "0" when there is no such thing.
std::string GetResponseCode(const std::string& szHeader);

// szHeader: the raw header, empty where something came that is no HTTP.
Classification ClassifyResponse(const std::string& szHeader);
Classification ClassifyTimeOut();
// The client's error number and its text.
Classification ClassifyError(std::int32_t lError, const std::string& szInfo);
// A state that no client should report.
Classification ClassifyUnknownState(std::int16_t iInetState);

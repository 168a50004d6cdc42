#include "simulated/Rules.h"

#include <map>

#include "base/Text.h"

namespace Simulated::Rules {

namespace {

const std::map<int, std::string> aListed = {
    {204, "204 No Content"},          {301, "301 Moved Permanently"},
    {400, "400 Bad Request"},         {401, "401 Unauthorized"},
    {403, "403 Forbidden"},           {404, "404 File Not Found"},
    {405, "405 Method Not Allowed"},  {500, "500 Internal Server Error"},
    {501, "501 Not implemented"},     {502, "502 Bad Gateway"},
    {503, "503 Service Unavailable"}, {504, "504 Gateway Time-Out"},
};

const char* const aClasses[] = {"",
                                "1xx Informational Response Received",
                                "2xx Success Response Received",
                                "3xx Redirectional Response Received",
                                "4xx Request Error Response Received",
                                "5xx Server Error Response Received"};

bool IsDigit(char ch) {
  return ch >= '0' && ch <= '9';
}

// The three digits behind the first "HTTP/" and blank; 0 where there are none, or the first is a zero.
int StatusIn(const std::string& szHeader) {
  const auto lName = Text::LowerCase(szHeader).find("http/");
  if (lName == std::string::npos) return 0;
  const auto lBlank = szHeader.find(' ', lName);
  if (lBlank == std::string::npos || szHeader.size() < lBlank + 4) return 0;
  int lStatus = 0;
  for (auto lAt = lBlank + 1; lAt < lBlank + 4; ++lAt) {
    if (!IsDigit(szHeader[lAt])) return 0;
    lStatus = lStatus * 10 + (szHeader[lAt] - '0');
  }
  return lStatus < 100 ? 0 : lStatus;
}

}  // namespace

Verdict OfHeader(const std::string& szHeader) {
  const int lStatus = StatusIn(szHeader);
  if (lStatus == 0)
    return {.szCode = "0",
            .szText = "Unrecognized Reponse Code",
            .szLogText = "Response Recevied; but server returned an unrecognized response code"};
  if (lStatus == 200 || lStatus == 201 || lStatus == 202 || lStatus == 302 || lStatus == 304)
    return {.bUp = true};
  if (const auto pListed = aListed.find(lStatus); pListed != aListed.end())
    return {.szCode = std::to_string(lStatus), .szText = pListed->second};
  const int lClass = lStatus / 100;
  if (lClass > 5) return {.szCode = "0", .szText = "Unrecognized Response Code"};
  return {.szCode = std::to_string(lClass) + "xx", .szText = aClasses[lClass]};
}

Verdict OfError(int lCode, const std::string& szInfo) {
  return {.szCode = "8080", .szText = "ERROR:  " + std::to_string(lCode) + " " + szInfo};
}

Verdict OfTimeOut() {
  return {.szCode = "8001", .szText = "Request Timed-Out"};
}

std::string KeyName(const std::string& szUrl) {
  std::string szName;
  for (const char ch : szUrl)
    szName += ch == '\\' ? std::string("%5c") : std::string(1, ch);
  return Text::Trim(Text::LowerCase(szName));
}

}  // namespace Simulated::Rules

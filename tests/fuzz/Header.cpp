// A response, line by line as libcurl hands it over, and what its status line means.
#include "check/ResultCodes.h"
#include "fuzz/Fuzz.h"
#include "platform/curl/ResponseHeader.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t lSize) {
  auto szBytes = Fuzz::Bytes(pData, lSize);
  ResponseHeader aHeader;
  while (!szBytes.empty()) {
    const auto lEnd = std::min(szBytes.find('\n'), szBytes.size() - 1) + 1;
    if (!aHeader.TakeLine(szBytes.substr(0, lEnd))) break;
    szBytes.remove_prefix(lEnd);
  }
  Fuzz::Require(aHeader.Text().size() <= ResponseHeader::lMostKept);
  const auto szCode = GetResponseCode(aHeader.Text());
  Fuzz::Require(szCode == szCodeUnreadable || (szCode.size() == 3 && szCode[0] != '0'));
  const auto aResult = ClassifyResponse(aHeader.Text());
  Fuzz::Require(aResult.bUp == aResult.szCode.empty());
  return 0;
}

#include "platform/curl/RequestUrl.h"

#include <algorithm>
#include <string_view>

namespace {

bool IsBareIPv6(std::string_view szHost) {
  return std::count(szHost.begin(), szHost.end(), ':') > 1 &&
         szHost.find_first_not_of("0123456789abcdefABCDEF:.") == std::string_view::npos;
}

}  // namespace

std::string RequestUrl_Escape(const std::string& szURL) {
  constexpr std::string_view szHex = "0123456789ABCDEF";
  const auto lScheme = szURL.find("://");
  const auto lHost = lScheme == std::string::npos ? 0 : lScheme + 3;
  const auto lPath = std::min(szURL.find_first_of("/?#", lHost), szURL.size());
  const std::string szHost = szURL.substr(lHost, lPath - lHost);

  std::string szResult = szURL.substr(0, lHost) + (IsBareIPv6(szHost) ? "[" + szHost + "]" : szHost);
  for (const char ch : std::string_view(szURL).substr(lPath)) {
    const auto lByte = static_cast<unsigned char>(ch);
    if (lByte > 0x20 && lByte < 0x7F)
      szResult += ch;
    else
      (szResult += '%').append({szHex[lByte >> 4], szHex[lByte & 15]});
  }
  return szResult;
}

#include "alert/modBackUpEmailContent.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "base/Strings.h"

namespace {

struct MessageText {
  std::string_view szCode;
  std::array<std::int32_t, 3> aSentences;  // joined by a blank; 0: no more
};

// The classes have their texts here beside the others, although a class code is no number and so is never
// looked up.
constexpr MessageText aTexts[] = {
    {"204", {IDS_ALERT_204}},
    {"301", {IDS_ALERT_301}},
    {"400", {IDS_ALERT_400, IDS_ALERT_CHECK_SERVER}},
    {"401", {IDS_ALERT_401}},
    {"403", {IDS_ALERT_403}},
    {"404", {IDS_ALERT_404, IDS_ALERT_CHECK_SERVER}},
    {"405", {IDS_ALERT_405, IDS_ALERT_CHECK_SERVER, IDS_ALERT_W3}},
    {"500", {IDS_ALERT_500, IDS_ALERT_CHECK_SERVER, IDS_ALERT_W3}},
    {"501", {IDS_ALERT_501, IDS_ALERT_CHECK_SERVER, IDS_ALERT_W3}},
    {"502", {IDS_ALERT_502, IDS_ALERT_CHECK_GATEWAY, IDS_ALERT_W3}},
    {"503", {IDS_ALERT_503, IDS_ALERT_CHECK_GATEWAY, IDS_ALERT_W3}},
    {"504", {IDS_ALERT_504, IDS_ALERT_CHECK_GATEWAY, IDS_ALERT_W3}},
    {"8001", {IDS_ALERT_8001}},
    {"8080", {IDS_ALERT_8080}},
    {"1xx", {IDS_ALERT_1XX}},
    {"2xx", {IDS_ALERT_2XX}},
    {"3xx", {IDS_ALERT_3XX}},
    {"4xx", {IDS_ALERT_4XX, IDS_ALERT_CHECK_SERVER}},
    {"5xx", {IDS_ALERT_5XX, IDS_ALERT_CHECK_SERVER, IDS_ALERT_W3}},
};

std::string Join(const MessageText& aText) {
  std::string szText;
  for (const std::int32_t lSentence : aText.aSentences)
    if (lSentence != 0) szText += (szText.empty() ? "" : " ") + LoadResString(lSentence);
  return szText;
}

}  // namespace

std::string modBackUpEmailContent::BuiltInMessage(std::int32_t lCode) {
  const auto* pText = std::ranges::find(aTexts, std::to_string(lCode), &MessageText::szCode);
  const std::string szText =
      pText != std::end(aTexts) ? Join(*pText) : LoadResString(IDS_ALERT_OTHER) + "\r\n\r\n%HEADER%";
  return LoadResString(IDS_ALERT_GREETING) + "\r\n\r\n" + szText + "\r\n\r\n" +
         LoadResString(IDS_ALERT_REGARDS) + "\r\n" + LoadResString(IDS_ALERT_SIGNATURE) + "\r\n";
}

#include "persistence/StoreMessages.h"

#include "base/Strings.h"

namespace {

using Condition = Registry::StoreCondition;

// 0: there is nothing to say.
std::int32_t TextOf(Condition iCondition) {
  switch (iCondition) {
    case Condition::Ready:
      return 0;
    case Condition::Unreachable:
      return IDS_STORE_UNREACHABLE;
    case Condition::Locked:
      return IDS_STORE_LOCKED;
    case Condition::ReadOnly:
      return IDS_STORE_READ_ONLY;
    case Condition::Full:
      return IDS_STORE_FULL;
    case Condition::Foreign:
      return IDS_STORE_FOREIGN;
    case Condition::Damaged:
      return IDS_STORE_DAMAGED_STAYS;
    case Condition::Lost:
      return IDS_STORE_LOST;
    case Condition::KeyRefused:
      return IDS_STORE_KEY_REFUSED;
    case Condition::KeyFailed:
      return IDS_STORE_KEY_FAILED;
    case Condition::NotShared:
      return IDS_STORE_KEY_NOT_SHARED;
    case Condition::Private:
      return IDS_STORE_NOT_SHARED;
    case Condition::Failed:
      break;
  }
  return IDS_STORE_FAILED;
}

}  // namespace

std::string StoreMessages::Compose(const Registry::StoreState& aState) {
  const auto szCopied = aState.dtCopied ? FormatGeneral(*aState.dtCopied) : std::string();
  const auto Fill = [&](std::int32_t lText, const std::string& szSecond) {
    return FillResString(lText, {Registry::StoreName(), szSecond, szCopied});
  };
  std::string szText;
  if (aState.bRecovered)
    szText = Fill(aState.szKept.empty() ? IDS_STORE_WAS_MISSING
                  : aState.dtCopied     ? IDS_STORE_FROM_COPY
                                        : IDS_STORE_FROM_ROWS,
                  aState.szKept);
  const auto lText = TextOf(aState.iCondition);
  if (lText == 0) return szText;
  if (!szText.empty()) szText += ' ';
  return szText + Fill(lText, aState.szSystem);
}

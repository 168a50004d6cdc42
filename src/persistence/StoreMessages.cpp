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
  std::string szText;
  if (!aState.szKept.empty())
    szText = FillResString(IDS_STORE_DAMAGED, {Registry::StoreName(), aState.szKept});
  const auto lText = TextOf(aState.iCondition);
  if (lText != 0) {
    if (!szText.empty()) szText += ' ';
    szText += FillResString(lText, {Registry::StoreName(), aState.szSystem});
  }
  return szText;
}

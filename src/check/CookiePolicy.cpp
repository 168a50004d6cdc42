#include "check/CookiePolicy.h"

#include <string>

#include "persistence/ProductKeys.h"
#include "persistence/RegistryAccess.h"

using namespace RegistryAccess;

namespace {

constexpr char szValue[] = "AllowCookies";
// While a pass runs, the user's own value is also kept here: a number, or an empty text where there was none.
constexpr char szKept[] = "SavedAllowCookies";

// What is kept goes only when it stands in its place again: where there are no brackets, or one holds only
// half, the user's own value would be lost.
void PutBack(std::optional<std::int32_t> aSaved) {
  const auto lCode =
      aSaved ? RegWriteValue(Registry::HKEY_CURRENT_USER, ProductKeys::szInternetSettings, szValue, *aSaved,
                             lTypeNumber)
             : RegRemoveValue(Registry::HKEY_CURRENT_USER, ProductKeys::szInternetSettings, szValue);
  if (lCode == Registry::lSuccess || lCode == Registry::lNotFound || lCode == Registry::lInvalidHandle)
    RegRemoveValue(Registry::HKEY_LOCAL_MACHINE, ProductKeys::szAllowCookie, szKept);
}

// What is kept, where the program's own value stands in the user's place; 0, or the registry's code.
std::int32_t ReadKept(Variant& aKept) {
  std::int32_t lType = 0;
  return RegReadValue(Registry::HKEY_LOCAL_MACHINE, ProductKeys::szAllowCookie, szKept, aKept, lType);
}

}  // namespace

CookiePolicy::CookiePolicy(std::int16_t iAllowType) {
  // Where the store refused to put the user's value back, the one that is found now is the program's own:
  // kept in its turn, the user's would be lost for good.
  RestoreAfterKill();
  Variant aValue;
  const auto lKept = ReadKept(aValue);
  if (lKept != Registry::lNotFound && lKept != Registry::lInvalidHandle) return;
  std::int32_t lType = 0;
  const std::int32_t lCode =
      RegReadValue(Registry::HKEY_CURRENT_USER, ProductKeys::szInternetSettings, szValue, aValue, lType);
  const bool bNumber = lCode == Registry::lSuccess && std::holds_alternative<std::int32_t>(aValue);
  if (!bNumber && lCode != Registry::lNotFound) return;

  const Registry::Transaction aBoth;
  RegCreatePath(Registry::HKEY_LOCAL_MACHINE, ProductKeys::szAllowCookie);
  std::int32_t lKeptType = lTypeNumber;
  if (bNumber) {
    SavedAllowCookies = std::get<std::int32_t>(aValue);
  } else {
    aValue = std::string();
    lKeptType = lTypeText;
  }
  const auto lNowKept =
      RegWriteValue(Registry::HKEY_LOCAL_MACHINE, ProductKeys::szAllowCookie, szKept, aValue, lKeptType);
  bReplaced = lNowKept == Registry::lSuccess &&
              RegWriteValue(Registry::HKEY_CURRENT_USER, ProductKeys::szInternetSettings, szValue,
                            std::int32_t{iAllowType}, lTypeNumber) == Registry::lSuccess;
  if (!bReplaced) RegRemoveValue(Registry::HKEY_LOCAL_MACHINE, ProductKeys::szAllowCookie, szKept);
}

CookiePolicy::~CookiePolicy() {
  if (!bReplaced) return;
  const Registry::Transaction aBoth;
  PutBack(SavedAllowCookies);
}

void CookiePolicy::RestoreAfterKill() {
  Variant aKept;
  if (ReadKept(aKept) != Registry::lSuccess) return;
  const Registry::Transaction aBoth;
  if (const auto* pNumber = std::get_if<std::int32_t>(&aKept)) {
    PutBack(*pNumber);
  } else {
    PutBack(std::nullopt);
  }
}

#include "alert/IPCheckMeaning.h"

#include <array>
#include <cstddef>

#include "platform/Inet.h"

namespace {

// What became of the request by name. A status of any kind, and even a broken answer, means that a machine
// lives there.
enum ByName : std::size_t { NameStatus, NameBroken, NameSilent, NameUnknown };
enum ByIP : std::size_t { IPGood, IPStatus, IPBroken, IPSilent };

constexpr std::array<std::array<StringId, 4>, 4> aMeanings = {{
    {IDS_IP_STATUS_GOOD, IDS_IP_STATUS_STATUS, IDS_IP_STATUS_BROKEN, IDS_IP_STATUS_SILENT},
    {IDS_IP_BROKEN_GOOD, IDS_IP_BROKEN_STATUS, IDS_IP_BROKEN_BROKEN, IDS_IP_BROKEN_SILENT},
    {IDS_IP_SILENT_GOOD, IDS_IP_SILENT_STATUS, IDS_IP_SILENT_BROKEN, IDS_IP_SILENT_SILENT},
    {IDS_IP_UNKNOWN_GOOD, IDS_IP_UNKNOWN_STATUS, IDS_IP_UNKNOWN_BROKEN, IDS_IP_UNKNOWN_SILENT},
}};

bool IsStatus(const RequestFacts& aRequest) {
  return aRequest.szCode.size() == 3;  // "404", "4xx"
}

// Something came, but no status line, or not the whole answer.
bool IsBroken(const RequestFacts& aRequest) {
  return aRequest.szCode == "0" || !aRequest.szHeader.empty();
}

}  // namespace

StringId IPCheckMeaning::Of(const RequestFacts& aByName, const RequestFacts& aByIP) {
  const ByName iByName = IsStatus(aByName)                            ? NameStatus
                         : IsBroken(aByName)                          ? NameBroken
                         : aByName.lErrorNumber == Inet::lNameUnknown ? NameUnknown
                                                                      : NameSilent;
  const ByIP iByIP = aByIP.szCode.empty() ? IPGood
                     : IsStatus(aByIP)    ? IPStatus
                     : IsBroken(aByIP)    ? IPBroken
                                          : IPSilent;
  if (iByName == NameStatus && aByName.szCode == aByIP.szCode) return IDS_IP_STATUS_SAME;
  return aMeanings[iByName][iByIP];
}

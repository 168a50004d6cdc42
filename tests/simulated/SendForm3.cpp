#include "platform/SendForm3.h"

#include <algorithm>

#include "simulated/Machine.h"

namespace {
constexpr std::int32_t lGone = 7;  // the client's number for a server that cannot be reached
}  // namespace

using namespace Simulated;

std::int32_t SendForm3(const std::string&, const std::string& szServer, std::int32_t lPort,
                       const std::string& szSender, const std::string&, const std::string& szFrom,
                       const std::string& szRecipient, const std::string& szSubject,
                       const std::string& szBody, const std::string&, std::int32_t, std::int32_t,
                       const std::string&, const std::string&, MailCall& aCall) {
  const Call aEntry;
  auto& aMachine = ThisMachine();
  if (aEntry.bGone) return lGone;
  const Mail aMail{szServer, lPort, szSender, szFrom, szRecipient, szSubject, szBody};
  const auto aDelivery = aMachine.pSurroundings->Deliver(aMail);
  aMachine.Pass(std::min<double>(aDelivery.dSeconds, std::max(aCall.lSeconds, 2)));
  aCall.szServerReply = aDelivery.szReply;
  aCall.szError = aDelivery.szError;
  aMachine.pWitness->Mailed(aMail, aDelivery.lResult);
  return aDelivery.lResult;
}

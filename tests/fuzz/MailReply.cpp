// What a mail server says, at the stage that the first byte names: the call ends, and hands on nothing that a
// terminal obeys.
#include "fuzz/Fuzz.h"
#include "platform/SendForm3.h"
#include "servers/SmtpServer.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t lSize) {
  if (lSize == 0) return 0;
  constexpr int lStages = 7;
  SmtpServer aServer;
  aServer.At(static_cast<SmtpServer::Stage>(pData[0] % lStages),
             {Fault::Send(std::string(Fuzz::Bytes(pData + 1, lSize - 1))), Fault::HalfClose()});
  MailCall aCall;
  aCall.lSeconds = 2;
  SendForm3("", "127.0.0.1", aServer.Port(), "a@example.com", "", "Kestrova <a@example.com>", "b@example.com",
            "Kestrova Alert", "Text\r\n.\r\nmore", "", 0, 0, "", "Kestrova", aCall);
  for (const char ch : aCall.szServerReply)
    Fuzz::Require(static_cast<unsigned char>(ch) >= 0x20 && ch != 0x7F);
  return 0;
}

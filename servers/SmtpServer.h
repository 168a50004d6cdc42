// SmtpServer: a mail server on 127.0.0.1 (RFC 5321) that behaves, or misbehaves at the stage it is told to,
// and keeps every mail it took. The destructor stops all conversations at once, whatever they are doing.
//
//   SmtpServer aServer;
//   aServer.At(SmtpServer::Stage::Recipient, Smtp::Say("550 5.1.1 no such user"));
//
// All members may be called from any thread, at any time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "servers/Fault.h"

namespace Smtp {

// Its line end is added.
inline const auto Say = [](const std::string& szReply) {
  return Fault::Answer{Fault::Send(szReply + "\r\n")};
};

}  // namespace Smtp

class SmtpServer {
 public:
  // Text is the reply to the text's final dot.
  enum class Stage { Greeting, Hello, Sender, Recipient, Data, Text, Quit };

  SmtpServer();
  ~SmtpServer();
  SmtpServer(const SmtpServer&) = delete;
  SmtpServer& operator=(const SmtpServer&) = delete;

  std::uint16_t Port() const;
  void At(Stage iStage, const Fault::Answer& aAnswer);  // instead of the good reply

  struct Mail {
    std::string szSender;                  // as between the angle brackets
    std::vector<std::string> aRecipients;  // likewise
    std::string szText;                    // headers and body, lines as they came, stuffed dots taken out
  };
  std::vector<Mail> Mails() const;  // every text that came in whole
  std::size_t Connections() const;

 private:
  struct State;
  std::unique_ptr<State> pState;
};

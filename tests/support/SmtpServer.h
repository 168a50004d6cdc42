// SmtpServer: a mail server on 127.0.0.1 (RFC 5321) that behaves, or misbehaves at the stage it is told to,
// and keeps every mail it took. Each client has a thread of its own; the destructor stops all at once,
// whatever they are doing.
//
//   SmtpServer aServer;
//   aServer.At(SmtpServer::Stage::Recipient, Smtp::Say("550 5.1.1 no such user"));
//
// All members may be called from any thread, at any time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "support/TalkServer.h"

namespace Smtp {

// What happens at a stage instead of the good reply.
struct Act {
  enum class Kind { Say, Drop, Reset, Endless };
  Kind iKind;
  std::string szBytes;             // raw
  std::int32_t lMilliseconds = 0;  // pause before it; -1 until the client goes
  bool bThenDrop = false;
};

// Its line end is added.
inline const auto Say = [](const std::string& szReply, std::int32_t lMilliseconds = 0) {
  return Act{Act::Kind::Say, szReply + "\r\n", lMilliseconds};
};
inline const auto SayRaw = [](std::string szBytes, bool bThenDrop = false) {
  return Act{Act::Kind::Say, std::move(szBytes), 0, bThenDrop};
};
inline const auto Drop = [] { return Act{Act::Kind::Drop, {}}; };       // closes without a word
inline const auto Reset = [] { return Act{Act::Kind::Reset, {}}; };     // the same with a reset
inline const auto Stall = [] { return Act{Act::Kind::Drop, {}, -1}; };  // no reply until the client goes
inline const auto Endless = [](std::string szBytes) { return Act{Act::Kind::Endless, std::move(szBytes)}; };

}  // namespace Smtp

class SmtpServer {
 public:
  // Text is the reply to the text's final dot.
  enum class Stage { Greeting, Hello, Sender, Recipient, Data, Text, Quit };

  // Port 0: the system chooses. Throws std::runtime_error when the port cannot be had.
  explicit SmtpServer(std::uint16_t iPort = 0);

  std::uint16_t Port() const { return aServer.Port(); }
  void At(Stage iStage, Smtp::Act aAct);

  struct Mail {
    std::string szSender;                  // as between the angle brackets
    std::vector<std::string> aRecipients;  // likewise
    std::string szText;                    // headers and body, lines as they came, stuffed dots taken out
  };
  std::vector<Mail> Mails() const { return Locked(aMails); }  // every text that came in whole
  std::size_t Connections() const { return Locked(lConnections); }

 private:
  template <typename Value>
  Value Locked(const Value& aValue) const {
    const std::lock_guard aGuard(aLock);
    return aValue;
  }
  struct Conversation {
    TalkServer::Client& aClient;
    Mail aMail = {};
    std::string szInput = {};
    char chReplied = '\0';  // the last reply's first digit

    bool ReadLine(std::string& szLine);
  };
  void Talk(TalkServer::Client& aClient);
  bool Obey(Conversation& aTalk, const std::string& szLine);
  bool Reply(Conversation& aTalk, Stage iStage, const std::string& szGood);
  bool TakeText(Conversation& aTalk);

  mutable std::mutex aLock;  // guards the rest
  std::map<Stage, Smtp::Act> aActs;
  std::vector<Mail> aMails;
  std::size_t lConnections = 0;
  TalkServer aServer;  // the last, so that it goes before what its threads use
};

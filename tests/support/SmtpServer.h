// SmtpServer: a mail server on 127.0.0.1 (RFC 5321) that behaves, or misbehaves at the stage it is told to,
// and keeps every mail it took. One thread of its own, one client after the other; the destructor stops it at
// once, whatever it is doing.
//
//   SmtpServer aServer;
//   aServer.At(SmtpServer::Stage::Recipient, Smtp::Say("550 5.1.1 no such user"));
//
// All members may be called from any thread, at any time.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "support/Sockets.h"

namespace Smtp {

// What happens at a stage instead of the good reply.
struct Act {
  enum class Kind { Say, Drop, Reset, Stall, Endless };
  Kind iKind;
  std::string szBytes;             // raw for SayRaw and Endless
  std::int32_t lMilliseconds = 0;  // pause before it
  bool bThenDrop = false;
};

Act Say(const std::string& szReply, std::int32_t lMilliseconds = 0);  // its line end is added
Act SayRaw(std::string szBytes, bool bThenDrop = false);
Act Drop();   // closes without a word
Act Reset();  // the same with a reset
Act Stall();  // no reply until the client goes
Act Endless(const std::string& szBytes);

}  // namespace Smtp

class SmtpServer {
 public:
  // Text is the reply to the text's final dot.
  enum class Stage { Greeting, Hello, Sender, Recipient, Data, Text, Quit };

  // Port 0: the system chooses. Throws std::runtime_error when the port cannot be had.
  explicit SmtpServer(std::uint16_t iPort = 0);
  ~SmtpServer();
  SmtpServer(const SmtpServer&) = delete;
  SmtpServer& operator=(const SmtpServer&) = delete;

  std::uint16_t Port() const { return iPort; }
  void At(Stage iStage, Smtp::Act aAct);
  void Behave();                          // forgets every At
  void BareLineFeeds(bool bBare = true);  // the good replies end in LF only

  struct Mail {
    std::string szSender;                  // as between the angle brackets
    std::vector<std::string> aRecipients;  // likewise
    std::string szText;                    // headers and body, lines as they came, stuffed dots taken out
    bool bTaken;                           // the reply to it was a 2xx one
  };
  std::vector<Mail> Mails() const;  // every text that came in whole
  std::size_t Connections() const;
  // True once so many texts have come in whole; false when the time ran out first.
  bool WaitForMails(std::size_t lCount, std::int32_t lMilliseconds = 5000) const;

 private:
  void Run();
  void Talk();
  void Obey(const std::string& szLine, bool& bGoOn);
  bool Reply(Stage iStage, const std::string& szGood, char& chKind);
  bool SendAll(const std::string& szBytes);
  bool ReadLine(std::string& szLine);
  bool ReadText(std::string& szText);
  bool Fill();
  bool Wait(bool bRead, bool bWrite, std::int32_t lMilliseconds);
  bool TakeText();

  std::uint16_t iPort;
  Sockets::Handle hListener;
  Sockets::Bell aBell;

  // The thread's own: the conversation.
  Sockets::Handle hClient = Sockets::hNone;
  std::string szInput;
  std::string szSender;
  std::vector<std::string> aRecipients;

  mutable std::mutex aLock;  // guards the rest
  mutable std::condition_variable aChanged;
  bool bStop = false;
  bool bBareLineFeeds = false;
  std::map<Stage, Smtp::Act> aActs;
  std::vector<Mail> aMails;
  std::size_t lConnections = 0;
  std::thread aThread;
};

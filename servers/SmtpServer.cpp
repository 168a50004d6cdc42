#include "servers/SmtpServer.h"

#include <map>

#include "base/Text.h"
#include "servers/TalkServer.h"

struct SmtpServer::State {
  std::mutex aLock;
  std::map<Stage, Fault::Answer> aAnswers{{Stage::Greeting, Smtp::Say("220 localhost ready")},
                                          {Stage::Hello, Smtp::Say("250-localhost\r\n250 SIZE 10485760")},
                                          {Stage::Sender, Smtp::Say("250 2.1.0 fine")},
                                          {Stage::Recipient, Smtp::Say("250 2.1.5 fine")},
                                          {Stage::Data, Smtp::Say("354 go on")},
                                          {Stage::Text, Smtp::Say("250 2.0.0 taken")},
                                          {Stage::Quit, Smtp::Say("221 2.0.0 goodbye")}};
  std::vector<Mail> aMails;
  TalkServer aServer{[this](TalkServer::Client& aClient) { return Talk(aClient); }};

  Fault::Answer AnswerAt(Stage iStage) {
    const std::lock_guard aGuard(aLock);
    return aAnswers[iStage];
  }

  TalkServer::Talk Talk(TalkServer::Client& aClient) {
    const std::map<std::string, Stage> aVerbs = {{"EHLO", Stage::Hello},  {"HELO", Stage::Hello},
                                                 {"MAIL", Stage::Sender}, {"RCPT", Stage::Recipient},
                                                 {"DATA", Stage::Data},   {"QUIT", Stage::Quit}};
    Stage iStage = Stage::Greeting;
    std::string szInput;
    Mail aMail;
    for (;;) {
      const Fault::Answer aAnswer = AnswerAt(iStage);
      co_await TalkServer::Do(aClient, aAnswer);
      if (iStage == Stage::Quit) co_return;
      if (iStage == Stage::Data && aAnswer.front().szBytes.starts_with('3')) {
        std::string szLine = co_await ReadLine(aClient, szInput);
        while (szLine != ".\r\n") {
          aMail.szText += szLine.substr(szLine.starts_with('.') ? 1 : 0);
          szLine = co_await ReadLine(aClient, szInput);
        }
        Keep(std::exchange(aMail, {}));
        iStage = Stage::Text;
        continue;
      }
      const std::string szLine = co_await ReadLine(aClient, szInput);
      const auto lFrom = szLine.find('<') + 1;
      const std::string szAddress = szLine.substr(lFrom, szLine.rfind('>') - lFrom);
      iStage = aVerbs.at(Text::UpperCase(szLine.substr(0, 4)));
      if (iStage == Stage::Sender) aMail.szSender = szAddress;
      if (iStage == Stage::Recipient) aMail.aRecipients.push_back(szAddress);
    }
  }

  // With its line end; a bare line feed ends none.
  static asio::awaitable<std::string> ReadLine(TalkServer::Client& aClient, std::string& szInput) {
    const auto lSize =
        co_await asio::async_read_until(aClient, asio::dynamic_buffer(szInput), "\r\n", asio::use_awaitable);
    std::string szLine = szInput.substr(0, lSize);
    szInput.erase(0, lSize);
    co_return szLine;
  }

  void Keep(Mail aMail) {
    const std::lock_guard aGuard(aLock);
    aMails.push_back(std::move(aMail));
  }
};

SmtpServer::SmtpServer() : pState(std::make_unique<State>()) {
}

SmtpServer::~SmtpServer() = default;

std::uint16_t SmtpServer::Port() const {
  return pState->aServer.Port();
}

void SmtpServer::At(Stage iStage, const Fault::Answer& aAnswer) {
  const std::lock_guard aGuard(pState->aLock);
  pState->aAnswers[iStage] = aAnswer;
}

std::vector<SmtpServer::Mail> SmtpServer::Mails() const {
  const std::lock_guard aGuard(pState->aLock);
  return pState->aMails;
}

std::size_t SmtpServer::Connections() const {
  return pState->aServer.Accepted();
}

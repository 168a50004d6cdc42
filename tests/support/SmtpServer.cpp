#include "support/SmtpServer.h"

#include <utility>

#include "platform/Text.h"

SmtpServer::SmtpServer(std::uint16_t iPort) : aServer(iPort, [this](auto& aClient) { Talk(aClient); }) {
}

void SmtpServer::At(Stage iStage, Smtp::Act aAct) {
  const std::lock_guard aGuard(aLock);
  aActs.insert_or_assign(iStage, std::move(aAct));
}

void SmtpServer::Talk(TalkServer::Client& aClient) {
  {
    const std::lock_guard aGuard(aLock);
    ++lConnections;
  }
  Conversation aTalk{aClient};
  bool bGoOn = Reply(aTalk, Stage::Greeting, "220 localhost ready");
  for (std::string szLine; bGoOn && aTalk.ReadLine(szLine);)
    bGoOn = Obey(aTalk, szLine);
}

// False when the conversation is over, as all that follow.
bool SmtpServer::Obey(Conversation& aTalk, const std::string& szLine) {
  const std::string szVerb = Text::UpperCase(szLine.substr(0, 4));
  const auto lFrom = szLine.find('<') + 1;
  const std::string szAddress = szLine.substr(lFrom, szLine.rfind('>') - lFrom);
  if (szVerb == "EHLO" || szVerb == "HELO")
    return Reply(aTalk, Stage::Hello, "250-localhost\r\n250 SIZE 10485760");
  if (szVerb == "MAIL") {
    aTalk.aMail.szSender = szAddress;
    return Reply(aTalk, Stage::Sender, "250 2.1.0 fine");
  }
  if (szVerb == "RCPT") {
    aTalk.aMail.aRecipients.push_back(szAddress);
    return Reply(aTalk, Stage::Recipient, "250 2.1.5 fine");
  }
  if (szVerb == "DATA")
    return Reply(aTalk, Stage::Data, "354 go on") && (aTalk.chReplied != '3' || TakeText(aTalk));
  if (szVerb != "QUIT") return aTalk.aClient.Send("502 5.5.1 what?\r\n");
  Reply(aTalk, Stage::Quit, "221 2.0.0 goodbye");
  return false;
}

// Up to the line with the dot, byte for byte but for the stuffed dots.
bool SmtpServer::TakeText(Conversation& aTalk) {
  for (std::string szLine; aTalk.ReadLine(szLine);) {
    if (szLine != ".\r\n") {
      aTalk.aMail.szText += szLine.substr(szLine.starts_with('.') ? 1 : 0);
      continue;
    }
    {
      const std::lock_guard aGuard(aLock);
      aMails.push_back(std::exchange(aTalk.aMail, {}));
    }
    return Reply(aTalk, Stage::Text, "250 2.0.0 taken");
  }
  return false;
}

bool SmtpServer::Reply(Conversation& aTalk, Stage iStage, const std::string& szGood) {
  Smtp::Act aAct = Smtp::Say(szGood);
  {
    const std::lock_guard aGuard(aLock);
    if (const auto pFound = aActs.find(iStage); pFound != aActs.end()) aAct = pFound->second;
  }
  aTalk.chReplied = aAct.szBytes.empty() ? '\0' : aAct.szBytes.front();
  if (!aTalk.aClient.Pause(aAct.lMilliseconds)) return false;
  switch (aAct.iKind) {
    case Smtp::Act::Kind::Say:
      return aTalk.aClient.Send(aAct.szBytes) && !aAct.bThenDrop;
    case Smtp::Act::Kind::Endless:
      while (aTalk.aClient.Send(aAct.szBytes)) {
      }
      return false;
    case Smtp::Act::Kind::Reset:
      aTalk.aClient.Reset();
      return false;
    case Smtp::Act::Kind::Drop:
      return false;
  }
  return false;
}

// With its line end; a bare line feed ends none.
bool SmtpServer::Conversation::ReadLine(std::string& szLine) {
  std::size_t lEnd = 0;
  while ((lEnd = szInput.find("\r\n")) == std::string::npos)
    if (!aClient.Receive(szInput)) return false;
  szLine = szInput.substr(0, lEnd + 2);
  szInput.erase(0, lEnd + 2);
  return true;
}

#include "support/SmtpServer.h"

#include <utility>

#include "platform/Text.h"

SmtpServer::SmtpServer(std::uint16_t iWanted) : iPort(iWanted), hListener(Sockets::Listen(iPort)) {
  aThread = std::thread([this] { Run(); });
}

SmtpServer::~SmtpServer() {
  {
    const std::lock_guard aGuard(aLock);
    bStop = true;
  }
  aBell.Ring();
  aThread.join();
  Sockets::Close(hListener);
}

void SmtpServer::At(Stage iStage, Smtp::Act aAct) {
  const std::lock_guard aGuard(aLock);
  aActs.insert_or_assign(iStage, std::move(aAct));
}

void SmtpServer::Run() {
  for (;;) {
    std::vector<Sockets::Watch> aWatches = {{aBell.Socket(), true}, {hListener, true}};
    Sockets::Wait(aWatches, -1);
    if (aWatches[0].bReadable) return;  // rung only to stop
    hClient = Sockets::Accept(hListener);
    if (hClient == Sockets::hNone) continue;
    {
      const std::lock_guard aGuard(aLock);
      ++lConnections;
    }
    szInput.clear();
    aRecipients.clear();
    Talk();
    Sockets::Close(hClient);
    hClient = Sockets::hNone;
  }
}

void SmtpServer::Talk() {
  char chKind = 0;
  bool bGoOn = Reply(Stage::Greeting, "220 localhost ready", chKind);
  for (std::string szLine; bGoOn && ReadLine(szLine);)
    Obey(szLine, bGoOn);
}

void SmtpServer::Obey(const std::string& szLine, bool& bGoOn) {
  const std::string szVerb = Text::UpperCase(szLine.substr(0, 4));
  const auto lFrom = szLine.find('<') + 1;
  const std::string szAddress = szLine.substr(lFrom, szLine.rfind('>') - lFrom);
  char chKind = 0;
  if (szVerb == "EHLO" || szVerb == "HELO") {
    bGoOn = Reply(Stage::Hello, "250-localhost\r\n250 SIZE 10485760", chKind);
  } else if (szVerb == "MAIL") {
    szSender = szAddress;
    bGoOn = Reply(Stage::Sender, "250 2.1.0 fine", chKind);
  } else if (szVerb == "RCPT") {
    bGoOn = Reply(Stage::Recipient, "250 2.1.5 fine", chKind);
    if (chKind == '2') aRecipients.push_back(szAddress);
  } else if (szVerb == "DATA") {
    bGoOn = Reply(Stage::Data, "354 go on", chKind) && (chKind != '3' || TakeText());
  } else if (szVerb == "QUIT") {
    Reply(Stage::Quit, "221 2.0.0 goodbye", chKind);
    bGoOn = false;
  } else {
    bGoOn = SendAll("502 5.5.1 what?\r\n");
  }
}

bool SmtpServer::TakeText() {
  std::string szText;
  if (!ReadText(szText)) return false;
  {
    const std::lock_guard aGuard(aLock);
    aMails.push_back({szSender, aRecipients, std::move(szText)});
  }
  char chKind = 0;
  return Reply(Stage::Text, "250 2.0.0 taken", chKind);
}

// False when the conversation is over. chKind: the first digit of what was replied.
bool SmtpServer::Reply(Stage iStage, const std::string& szGood, char& chKind) {
  Smtp::Act aAct = Smtp::Say(szGood);
  {
    const std::lock_guard aGuard(aLock);
    if (const auto pFound = aActs.find(iStage); pFound != aActs.end()) aAct = pFound->second;
  }
  chKind = aAct.szBytes.empty() ? '\0' : aAct.szBytes.front();
  if (aAct.lMilliseconds > 0 && !Wait(false, false, aAct.lMilliseconds)) return false;
  switch (aAct.iKind) {
    case Smtp::Act::Kind::Say:
      return SendAll(aAct.szBytes) && !aAct.bThenDrop;
    case Smtp::Act::Kind::Drop:
      return false;
    case Smtp::Act::Kind::Reset:
      Sockets::Reset(std::exchange(hClient, Sockets::hNone));
      return false;
    case Smtp::Act::Kind::Stall:
      while (Fill()) {
      }
      return false;
    case Smtp::Act::Kind::Endless:
      while (SendAll(aAct.szBytes)) {
      }
      return false;
  }
  return false;
}

bool SmtpServer::SendAll(const std::string& szBytes) {
  for (std::size_t lSent = 0; lSent < szBytes.size();) {
    const auto lTaken = Sockets::Send(hClient, std::string_view(szBytes).substr(lSent));
    if (lTaken < 0 || (lTaken == 0 && !Wait(false, true, -1))) return false;
    lSent += static_cast<std::size_t>(lTaken);
  }
  const std::lock_guard aGuard(aLock);
  return !bStop;
}

// Without its line end. False when the client has gone or the server stops.
bool SmtpServer::ReadLine(std::string& szLine) {
  std::size_t lEnd = 0;
  while ((lEnd = szInput.find('\n')) == std::string::npos)
    if (!Fill()) return false;
  szLine = szInput.substr(0, lEnd);
  if (szLine.ends_with('\r')) szLine.pop_back();
  szInput.erase(0, lEnd + 1);
  return true;
}

// Up to the line with the dot, byte for byte but for the stuffed dots.
bool SmtpServer::ReadText(std::string& szText) {
  for (;;) {
    std::size_t lEnd = 0;
    while ((lEnd = szInput.find("\r\n")) == std::string::npos)
      if (!Fill()) return false;
    const std::string szLine = szInput.substr(0, lEnd + 2);
    szInput.erase(0, lEnd + 2);
    if (szLine == ".\r\n") return true;
    szText += szLine.starts_with('.') ? szLine.substr(1) : szLine;
  }
}

// Waits for more input. False when the client has gone or the server stops.
bool SmtpServer::Fill() {
  if (!Wait(true, false, -1)) return false;
  char aBuffer[16384];
  const auto lGot = Sockets::Receive(hClient, aBuffer, sizeof aBuffer);
  if (lGot > 0) szInput.append(aBuffer, static_cast<std::size_t>(lGot));
  return lGot >= 0;
}

// False when the server stops.
bool SmtpServer::Wait(bool bRead, bool bWrite, std::int32_t lMilliseconds) {
  std::vector<Sockets::Watch> aWatches = {{aBell.Socket(), true}};
  if (bRead || bWrite) aWatches.push_back({hClient, bRead, bWrite});
  Sockets::Wait(aWatches, lMilliseconds);
  return !aWatches[0].bReadable;
}

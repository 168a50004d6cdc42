#include "demo/DemoSites.h"

#include <cstdio>
#include <stdexcept>

#include "base/Text.h"
#include "persistence/ProductKeys.h"
#include "platform/Files.h"

namespace {

constexpr std::int32_t lSlowMilliseconds = 1500;
constexpr std::int32_t lShortTimeOut = 2;  // seconds; the server that never answers costs this in each pass
constexpr std::int32_t lTimeOut = 10;
constexpr char szNameThatFails[] = "name-fails.kestrova.invalid";  // RFC 2606: never resolves

std::string Line(const std::string& szURL, std::int32_t lSeconds) {
  return szURL + ",,4,1," + std::to_string(lSeconds) + "\r\n";
}

std::string TextValue(const std::string& szName, const std::string& szText) {
  return "\"" + szName + "\"=\"" + Text::Replace(Text::Replace(szText, "\\", "\\\\"), "\"", "\\\"") +
         "\"\r\n";
}

std::string NumberValue(const std::string& szName, std::uint32_t lNumber) {
  char szHex[16];
  std::snprintf(szHex, sizeof szHex, "%08x", lNumber);
  return "\"" + szName + "\"=dword:" + szHex + "\r\n";
}

std::string KeyLine(const std::string& szPath) {
  return "\r\n[HKEY_LOCAL_MACHINE\\" + szPath + "]\r\n";
}

}  // namespace

void DemoSites::Serve(FaultServer& aServer) {
  using namespace Fault;
  Answer aSlow = {Delay(lSlowMilliseconds)};
  for (auto& aStep : Ok())
    aSlow.push_back(aStep);
  aServer.Serve("/fine", Ok());
  aServer.Serve("/slow", aSlow);
  aServer.Serve("/moved", {Send("HTTP/1.1 302 Found\r\nLocation: /fine\r\nContent-Length: 0\r\n\r\n")});
  aServer.Serve("/missing", Status("404 Not Found"));
  aServer.Serve("/broken", Status("500 Internal Server Error"));
  aServer.Serve("/silent", {Hang()});
  // Fails in the first two passes and the fourth and fifth: two outages with a recovery between them.
  const Answer aBusy = Status("503 Service Unavailable");
  aServer.ServeInOrder("/flaky", {aBusy, aBusy, Ok(), aBusy, aBusy, Ok()});
  aServer.Serve("/", Ok());
}

std::string DemoSites::List(const FaultServer& aServer, std::uint16_t iRefusing) {
  std::string szList;
  for (const char* szPath : {"/fine", "/slow", "/moved", "/missing", "/broken", "/flaky"})
    szList += Line(aServer.Site(szPath), lTimeOut);
  return szList + Line(aServer.Site("/silent"), lShortTimeOut) +
         Line("127.0.0.1:" + std::to_string(iRefusing) + "/refused", lTimeOut);
}

std::string DemoSites::RegistryFile(const FaultServer& aServer, std::uint16_t iMailPort,
                                    const std::string& szLogFolder) {
  std::string szFile = "Windows Registry Editor Version 5.00\r\n";
  szFile += KeyLine(ProductKeys::szSetup) + NumberValue("startup", 1);  // no welcome
  szFile += KeyLine(ProductKeys::szTimer) + NumberValue("Interval", 1) + NumberValue("Warning", 1);
  szFile += KeyLine(ProductKeys::szManager) + TextValue("Email", "manager@kestrova.invalid") +
            TextValue("Name", "Demo Manager") + TextValue("SMTP", "127.0.0.1") +
            NumberValue("SMTPPort", iMailPort);
  szFile += KeyLine(ProductKeys::szLog) + TextValue("LogPath", szLogFolder) + NumberValue("LogPeriod", 1);
  szFile += KeyLine(std::string(ProductKeys::szAddress) + "\\" + szNameThatFails) + NumberValue("Index", 1) +
            TextValue("URL", szNameThatFails) + TextValue("IP", aServer.Address()) +
            NumberValue("Enabled", 1) + NumberValue("Status", 4) + NumberValue("Timeout", lTimeOut);
  return szFile;
}

std::size_t DemoSites::KeepMails(const SmtpServer& aServer, const std::string& szFolder,
                                 std::size_t lWritten) {
  const auto aMails = aServer.Mails();
  for (; lWritten < aMails.size(); ++lWritten) {
    char szName[32];
    std::snprintf(szName, sizeof szName, "%c%02zu.eml", Files::chSeparator, lWritten + 1);
    if (!Files::WriteWhole(szFolder + szName, aMails[lWritten].szText))
      throw std::runtime_error("cannot write into " + szFolder);
  }
  return lWritten;
}

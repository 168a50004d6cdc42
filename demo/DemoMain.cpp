// kestrova-demo FOLDER: plays the sites and the mail server of the demonstration until interrupted. Into the
// folder it writes the list (demo.kvd), the settings (settings.reg), every mail that comes in
// (mails/01.eml, ...), and, once all of it stands, an empty file named "ready".
//
// kestrova-demo --week FOLDER: plays the last week instead, in a few seconds (see DemoWeek.h), and ends.
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

#include "demo/DemoSites.h"
#include "demo/DemoWeek.h"
#include "persistence/modBasic.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Terminal.h"

namespace {

constexpr double dPollSeconds = 0.05;

void Write(const std::string& szFile, const std::string& szBytes) {
  if (!Files::WriteWhole(szFile, szBytes)) throw std::runtime_error("cannot write " + szFile);
}

void Play(const std::string& szFolder) {
  const std::string szInside = szFolder + Files::chSeparator;
  for (const char* szName : {"mails", "Logs"})
    if (modBasic::MakeFolderPath(szInside + szName) != 0)
      throw std::runtime_error("cannot make the folder " + szInside + szName);
  FaultServer aServer;
  SmtpServer aMailServer;
  DemoSites::Serve(aServer);
  Write(szInside + "demo.kvd", DemoSites::List(aServer, FaultServer::RefusingPort()));
  Write(szInside + "settings.reg", DemoSites::RegistryFile(aServer, aMailServer.Port(), szInside + "Logs"));
  Write(szInside + "ready", "");

  std::size_t lWritten = 0;
  while (!Terminal::Interrupted()) {
    lWritten = DemoSites::KeepMails(aMailServer, szInside + "mails", lWritten);
    Clock::Wait(dPollSeconds);
  }
}

}  // namespace

int main(int iCount, char** aValues) {
  const bool bWeek = iCount == 3 && std::string(aValues[1]) == "--week";
  const bool bFolder = iCount > 1 && *aValues[iCount - 1] != '-';
  if (!bFolder || (!bWeek && iCount != 2)) {
    std::cerr << "usage: kestrova-demo [--week] FOLDER\n";
    return 2;
  }
  try {
    const auto szFolder = std::filesystem::absolute(aValues[iCount - 1]).string();
    if (bWeek) {
      std::cout << DemoWeek::Play(szFolder, DemoWeek::LastMonday()) << " passes\n";
      return 0;
    }
    Terminal::CatchInterrupt();
    Play(szFolder);
  } catch (const std::exception& aError) {
    std::cerr << "kestrova-demo: " << aError.what() << '\n';
    return 2;
  }
  return 0;
}

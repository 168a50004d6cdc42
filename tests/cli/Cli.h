// Cli: kestrova-cli as a process over a store of the test's own.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <regex>
#include <string>
#include <vector>

#include "platform/Files.h"
#include "platform/Registry.h"
#include "servers/FaultServer.h"
#include "support/ChildProcess.h"
#include "support/TestHome.h"

inline constexpr double dMostSeconds = 20;

// GoogleTest's own regular expressions know no "[...]" on Windows.
MATCHER_P(HasPattern, szPattern, std::string("holds \"") + szPattern + "\"") {
  return std::regex_search(arg, std::regex(szPattern));
}

class Cli : public testing::Test {
 protected:
  struct Result {
    int iCode = 0;
    std::string szOutput, szErrors;
  };

  static std::string Program() { return ChildProcess::BuiltProgram("kestrova-cli"); }

  static Result Run(const std::vector<std::string>& aArguments) {
    Registry::CloseStore();  // the program's turn
    ChildProcess aProgram(Program(), aArguments);
    const int iCode = aProgram.Wait(dMostSeconds);
    return {iCode, aProgram.Output(), aProgram.Errors()};
  }

  // Lines of a list file; each site is given as the server has it.
  static std::string ListOf(const std::vector<std::string>& aSites, std::int32_t lTimeOut = 10) {
    std::string szList;
    for (const auto& szSite : aSites)
      szList += szSite + ",,4,1," + std::to_string(lTimeOut) + "\r\n";
    return szList;
  }

  void ImportList(const std::string& szList) {
    aHome.Write("list.kvd", szList);
    const Result aResult = Run({"import", "--replace", aHome.Path("list.kvd")});
    ASSERT_EQ(aResult.iCode, 0) << aResult.szErrors;
  }

  // The text of the check log, of which a test has one at most.
  std::string Log() const {
    const auto aFiles = Files::List(aHome.Path("Logs"), ".kvl");
    return aFiles.empty() ? "" : aHome.Read(std::string("Logs") + Files::chSeparator + aFiles.front());
  }

  // Bytes that a terminal would obey: controls other than the line end, DEL, and the one C1 control in
  // UTF-8 that the tests send.
  static bool HasTerminalControls(std::string szText) {
    std::erase_if(szText, [](char ch) { return ch == '\n' || ch == '\r'; });
    const auto IsControl = [](unsigned char ch) { return std::iscntrl(ch) != 0; };
    return std::ranges::any_of(szText, IsControl) || szText.find("\xC2\x9B") != std::string::npos;
  }

  TestHome aHome;
  FaultServer aServer;
};

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

// Nothing that a terminal would obey: controls other than the line end, DEL, and the one C1 control in UTF-8
// that the tests send.
MATCHER(IsPlain, "holds no control of a terminal") {
  const auto IsControl = [](unsigned char ch) { return std::iscntrl(ch) != 0 && ch != '\n' && ch != '\r'; };
  return std::ranges::none_of(arg, IsControl) && arg.find("\xC2\x9B") == std::string::npos;
}

// What a program has come to: FieldsAre(code, output, errors).
struct Result {
  int iCode = 0;
  std::string szOutput, szErrors;
  friend void PrintTo(const Result& a, std::ostream* p) {
    *p << a.iCode << "; " << a.szOutput << "; " << a.szErrors;
  }
};

// Refused, and the reason said in one line.
inline auto Refuses(const std::string& szReason = "") {
  using namespace testing;
  return FieldsAre(2, "", AllOf(HasPattern("^kestrova-cli: [^\n]*\n$"), HasSubstr(szReason)));
}

class Cli : public testing::Test {
 protected:
  static std::string Program() { return ChildProcess::BuiltProgram("kestrova-cli"); }

  static Result Run(const std::vector<std::string>& aArguments) { return Started(Program(), aArguments); }
  // By a shell, which can set limits and ignore signals for the program.
  static Result Shell(const std::string& szScript) { return Started("/bin/sh", {"-c", szScript}); }
  static Result Started(const std::string& szProgram, const std::vector<std::string>& aArguments,
                        double dSeconds = dMostSeconds) {
    Registry::CloseStore();  // the program's turn
    ChildProcess aProgram(szProgram, aArguments);
    const int iCode = aProgram.Wait(dSeconds);
    return {iCode, aProgram.Output(), aProgram.Errors()};
  }

  // Lines of a list file; each site is given as the server has it.
  static std::string ListOf(const std::vector<std::string>& aSites, std::int32_t lTimeOut = 10) {
    std::string szList;
    for (const auto& szSite : aSites)
      szList += szSite + ",,4,1," + std::to_string(lTimeOut) + "\r\n";
    return szList;
  }
  static std::string ListOf(int lSites) {
    std::string szList;
    for (int i = 0; i < lSites; ++i)
      szList += ListOf({"s" + std::to_string(i) + ".invalid"});
    return szList;
  }

  void ImportList(const std::string& szList) {
    aHome.Write("list.kvd", szList);
    ASSERT_THAT(Run({"import", "--replace", aHome.Path("list.kvd")}), testing::Field(&Result::iCode, 0));
  }

  // The text of the check log, of which a test has one at most.
  std::string Log() const {
    const auto aFiles = Files::List(aHome.Path("Logs"), ".kvl");
    return aFiles.empty() ? "" : aHome.Read(std::string("Logs") + Files::chSeparator + aFiles.front());
  }

  TestHome aHome;
  FaultServer aServer;
};

// Stand: what every trial stands on: a home, a web server of which half the sites fail, a mail server, and a
// store that can be put back as it was.
#pragma once

#include <map>
#include <random>
#include <string>
#include <vector>

#include "servers/FaultServer.h"
#include "servers/SmtpServer.h"
#include "support/ChildProcess.h"
#include "support/TestHome.h"

class Stand {
 public:
  // The store lies in that folder, and the logs; empty: in the home. The list has lSites good sites, that are
  // up, and as many that have failed once: the next pass mails each of them.
  explicit Stand(int lSites, const std::string& szFolder = {});

  struct Result {
    int iCode = 0;
    std::string szOutput, szErrors;
  };
  static Result Run(const std::vector<std::string>& aArguments);
  static std::string Program() { return ChildProcess::BuiltProgram("kestrova-cli"); }

  void PutBack();      // store and logs as they were at first
  void KeepAsFirst();  // as they are now
  std::string StorePath(const std::string& szName = "registry.db") const { return szFolder + "/" + szName; }
  std::string LogPath() const;  // of the only log

  using List = std::map<std::string, std::string>;  // by URL: status, IP address and time-out
  static List Listed();  // by the program, which must succeed and complain of nothing
  static List Parsed(const std::string& szJson);

  std::map<std::string, int> Mailed() const;  // how often, by URL, since MailsBefore
  std::size_t lMailsBefore = 0;

  double Random() { return std::uniform_real_distribution<>(0, 1)(aRandom); }
  int Below(int lPast) { return std::uniform_int_distribution<>(0, lPast - 1)(aRandom); }

  const int lSites;
  TestHome aHome;
  FaultServer aWeb;
  SmtpServer aMail;

 private:
  std::string szFolder;
  std::map<std::string, std::string> aFirst;  // files of the folder and what is in them
  std::mt19937 aRandom{20261122};
};

// What came of a trial, by its name; is said at its end.
class Tally {
 public:
  explicit Tally(std::string szOf) : szTrial(std::move(szOf)) {}
  ~Tally();
  Tally(const Tally&) = delete;
  Tally& operator=(const Tally&) = delete;
  int& operator[](const std::string& szWhat) { return aTimes[szWhat]; }

 private:
  std::string szTrial;
  std::map<std::string, int> aTimes;
};

// Ends the process where something is not as it must be.
void Must(bool bHolds, const std::string& szWhat);

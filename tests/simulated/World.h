// World: what lies beyond the machine. Every address that is asked has a server with a life of its own; there
// is one mail server.
#pragma once

#include <map>
#include <string>

#include "simulated/Machine.h"
#include "simulated/Random.h"

namespace Simulated {

class World : public Surroundings {
 public:
  explicit World(std::uint64_t lSeed) : aRandom(lSeed) {}

  Conversation Answer(const std::string& szURL) override;
  Delivery Deliver(const Mail& aMail) override;

 private:
  enum class Habit : std::uint8_t { Good, Outages, Flapping, Slow, Silent, Odd };
  struct Server {
    Habit iHabit = Habit::Good;
    bool bFails = false;  // at present
    int lTrouble = 0;     // what its present outage looks like
    double dUntil = 0;    // boot seconds
  };

  Server& ServerOf(const std::string& szURL);
  void LiveOn(Server& aServer);
  Conversation Succeed(double dSeconds);
  Conversation Fail(int lTrouble, double dSeconds);
  Conversation Respond(const std::string& szHeader, double dSeconds);

  Random aRandom;
  std::map<std::string, Server> aServers;
  bool bMailFails = false;
  double dMailUntil = 0;
};

}  // namespace Simulated

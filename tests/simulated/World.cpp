#include "simulated/World.h"

#include <algorithm>
#include <array>

namespace Simulated {

namespace {

// The client's failures, as its library numbers and names them, and how far the request came before.
struct ClientFailure {
  std::int32_t lCode;
  const char* szInfo;
  std::int16_t iReached;
};
constexpr std::array<ClientFailure, 11> aFailures = {{
    {6, "Couldn't resolve host name", 1},
    {7, "Couldn't connect to server", 3},
    {52, "Server returned nothing (no headers no data)", 10},
    {56, "Failure when receiving data from the peer", 10},
    {18, "Transferred a partial file", 10},
    {8, "Weird server reply", 10},
    {27, "Out of memory", 7},
    {55, "Failed sending data to the peer", 6},
    {3, "URL using bad/illegal format or missing URL", 0},
    {1, "Unsupported protocol", 0},
    {2, "Failed initialization", 0},
}};

// Answers that are failures: by their status alone, and whole headers.
constexpr std::array aBadStatuses = {500, 503, 404, 403, 401, 400, 405, 501, 502, 504, 204, 301,
                                     206, 203, 300, 307, 418, 429, 599, 505, 101, 600, 999, 103};
constexpr std::array aBadHeaders = {"",
                                    "HTTP/1.1",
                                    "HTTP/1.1 20",
                                    "HTTP/1.1 1e2",
                                    "HTTP/1.1  200",
                                    "SSH-2.0-x",
                                    "HTTP/1.1 000 None",
                                    "HTTP/1.1 099 Low",
                                    "http/1.1 404 not found",
                                    "HTTP/1.1 500 %HEADER% %URL%\r\nX: \x1b[2J\x07",
                                    "HTTP/1.1 404\r\nHTTP/1.1: 200 OK",
                                    "HTTP/2 503 Busy\r\nLocation: /a,b"};
constexpr std::array aGoodHeaders = {"HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 5",
                                     "HTTP/1.0 200 OK",
                                     "HTTP/1.1 201 Made",
                                     "HTTP/1.1 202 Taken",
                                     "HTTP/1.1 302 Found\r\nLocation: /else",
                                     "HTTP/1.1 304 Same",
                                     "http/1.1 200",
                                     "HTTP/1.1 2000",
                                     "X: y\r\nHTTP/1.1 200 OK"};

constexpr auto lTroubles = static_cast<int>(aFailures.size() + aBadStatuses.size() + aBadHeaders.size());

// The states that come before the last one, spread over the time.
void Progress(Conversation& aTalk, std::int16_t iTo, double dSeconds) {
  for (std::int16_t iState = 1; iState <= iTo; ++iState)
    aTalk.aSteps.push_back({dSeconds * iState / 11, iState});
}

}  // namespace

Conversation World::Respond(const std::string& szHeader, double dSeconds) {
  Conversation aTalk;
  Progress(aTalk, 10, dSeconds);
  aTalk.aSteps.push_back({dSeconds, 12});
  aTalk.szHeader = szHeader;
  return aTalk;
}

Conversation World::Succeed(double dSeconds) {
  const auto lWhich = aRandom.Chance(0.9) ? 0 : aRandom.Below(static_cast<std::int32_t>(aGoodHeaders.size()));
  return Respond(aGoodHeaders[static_cast<std::size_t>(lWhich)], dSeconds);
}

Conversation World::Fail(int lTrouble, double dSeconds) {
  auto lWhich = static_cast<std::size_t>(lTrouble);
  if (lWhich < aBadStatuses.size())
    return Respond("HTTP/1.1 " + std::to_string(aBadStatuses[lWhich]) + " Bad\r\nRetry-After: 5", dSeconds);
  lWhich -= aBadStatuses.size();
  if (lWhich < aBadHeaders.size()) return Respond(aBadHeaders[lWhich], dSeconds);
  const auto& aFailure = aFailures[lWhich - aBadHeaders.size()];
  Conversation aTalk;
  Progress(aTalk, aFailure.iReached, dSeconds);
  aTalk.aSteps.push_back({aFailure.iReached == 0 ? 0 : dSeconds, 11});
  aTalk.lCode = aFailure.lCode;
  aTalk.szInfo = aFailure.szInfo;
  return aTalk;
}

World::Server& World::ServerOf(const std::string& szURL) {
  using enum Habit;
  static const std::vector<Habit> aHabits = {Good,     Good,     Good,    Good,    Good,    Good,    Good,
                                             Good,     Good,     Outages, Outages, Outages, Outages, Outages,
                                             Flapping, Flapping, Slow,    Silent,  Odd,     Odd};
  const auto [pFound, bNew] = aServers.try_emplace(szURL);
  if (bNew) pFound->second.iHabit = aRandom.Pick(aHabits);
  return pFound->second;
}

// Up and down for times that are random around an hour and a day.
void World::LiveOn(Server& aServer) {
  const auto dNow = ThisMachine().Boot();
  while (aServer.dUntil <= dNow) {
    aServer.bFails = aServer.iHabit != Habit::Good ? !aServer.bFails : aRandom.Chance(0.02);
    aServer.lTrouble = aRandom.Below(lTroubles);
    const double dMean = aServer.bFails ? 5400 : 28800;
    aServer.dUntil = std::max(aServer.dUntil, dNow - dMean) + aRandom.Between(0.05, 2.0) * dMean;
  }
}

Conversation World::Answer(const std::string& szURL) {
  if (aRandom.Chance(0.003)) return {{{0, 11}}, {}, 7, "Couldn't connect to server", true};
  auto& aServer = ServerOf(szURL);
  LiveOn(aServer);
  double dSeconds = aRandom.Between(0.004, 0.4);
  switch (aServer.iHabit) {
    case Habit::Flapping:
      return aRandom.Chance(0.5) ? Succeed(dSeconds) : Fail(aServer.lTrouble, dSeconds);
    case Habit::Slow:
      dSeconds = aRandom.Between(0.3, 9.0);
      break;
    case Habit::Silent: {
      if (!aServer.bFails) break;
      auto aTalk = Respond({}, 1);
      aTalk.aSteps.resize(static_cast<std::size_t>(aRandom.Below(10)));
      return aTalk;
    }
    case Habit::Odd:
      if (aServer.bFails) aServer.lTrouble = aRandom.Below(lTroubles);
      break;
    default:
      break;
  }
  return aServer.bFails ? Fail(aServer.lTrouble, dSeconds) : Succeed(dSeconds);
}

Delivery World::Deliver(const Mail&) {
  const auto dNow = ThisMachine().Boot();
  if (dMailUntil <= dNow) {
    bMailFails = !bMailFails && aRandom.Chance(0.4);
    dMailUntil = dNow + aRandom.Between(3600.0, 200000.0);
  }
  if (!bMailFails) return {aRandom.Between(0.1, 1.5), 0, "250 2.0.0 taken", ""};
  // No name, no connection, refused at log-in, sender, recipient or text, hung up, silent to the limit.
  static const std::vector<Delivery> aRefusals = {
      {0.2, 6, "", "Couldn't resolve host name"},
      {0.1, 7, "", "Couldn't connect to server"},
      {0.5, 67, "535 no", "Login denied"},
      {0.5, 55, "550 5.1.1 no such user", "Failed sending data to the peer"},
      {0.5, 56, "554 no", "Failure when receiving data from the peer"},
      {0.5, 52, "", "Server returned nothing (no headers no data)"},
      {30, 28, "", "Timeout was reached"}};
  return aRandom.Pick(aRefusals);
}

}  // namespace Simulated

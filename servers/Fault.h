// Fault: what a server does with a client, step by step, rightly or wrongly.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Fault {

struct Step {
  enum class Kind { Send, Endless, Delay, HoldUntil, Hang, HalfClose, Close, Reset };
  Kind iKind;
  std::string szBytes = {};
  std::int32_t lMilliseconds = 0;
  std::shared_ptr<const std::atomic<bool>> pGo = {};
};
using Answer = std::vector<Step>;

inline const auto Send = [](std::string szBytes) { return Step{Step::Kind::Send, std::move(szBytes)}; };
Step Endless(const std::string& szBytes);  // again and again until the client goes
inline const auto Delay = [](std::int32_t lMilliseconds) {
  return Step{Step::Kind::Delay, {}, lMilliseconds};
};
inline const auto HoldUntil = [](std::shared_ptr<const std::atomic<bool>> pGo) {  // somebody has made it true
  return Step{Step::Kind::HoldUntil, {}, 0, std::move(pGo)};
};
inline const auto Hang = [] { return Step{Step::Kind::Hang}; };  // nothing more until the client goes
// The client reads the end, the connection stays open for the next step.
inline const auto HalfClose = [] { return Step{Step::Kind::HalfClose}; };
inline const auto Close = [] { return Step{Step::Kind::Close}; };
inline const auto Reset = [] { return Step{Step::Kind::Reset}; };  // closes with a reset

}  // namespace Fault

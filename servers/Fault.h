// Fault: what a server of the tests does with a client, step by step, rightly or wrongly.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace Fault {

struct Step {
  enum class Kind { Send, Endless, Delay, Hang, HalfClose, Close, Reset };
  Kind iKind;
  std::string szBytes = {};
  std::int32_t lMilliseconds = 0;
};
using Answer = std::vector<Step>;

inline const auto Send = [](std::string szBytes) { return Step{Step::Kind::Send, std::move(szBytes)}; };
Step Endless(const std::string& szBytes);  // again and again until the client goes
inline const auto Delay = [](std::int32_t lMilliseconds) {
  return Step{Step::Kind::Delay, {}, lMilliseconds};
};
inline const auto Hang = [] { return Step{Step::Kind::Hang}; };  // nothing more until the client goes
// The client reads the end, the connection stays open for the next step.
inline const auto HalfClose = [] { return Step{Step::Kind::HalfClose}; };
inline const auto Close = [] { return Step{Step::Kind::Close}; };
inline const auto Reset = [] { return Step{Step::Kind::Reset}; };  // closes with a reset

}  // namespace Fault

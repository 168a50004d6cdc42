// LogFilter: which lines of a history are of interest, and the way from one find to the next.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "history/LogHistory.h"

struct LogFilter {
  static constexpr std::uint32_t Bit(Outcome iOutcome) { return 1U << static_cast<unsigned>(iOutcome); }
  static constexpr std::uint32_t lEvery = 0x3F;
  static const std::uint32_t lFailures;

  std::string szSite;                // as in LogHistory::Sites, letter case ignored; empty: all
  std::uint32_t lOutcomes = lEvery;  // bits of the outcomes wanted
  enum class Remark : std::uint8_t { Any, Mail, FailedMail, IPCheck };
  Remark iRemark = Remark::Any;  // what an entry's comment must tell of
  std::string szWords;           // every blank-separated word must occur in the line, letter case ignored

  bool Empty() const;

  // The lines that pass, in order. An empty filter gives every line; any other the entries and unread lines
  // that pass, and before the first of a pass its start line.
  std::vector<LogHistory::LineRef> Apply(const LogHistory& aHistory) const;
};

inline constexpr std::uint32_t LogFilter::lFailures = Bit(Outcome::Warning) | Bit(Outcome::Down);

namespace LogFind {
// Places in aLines of the next line after (before) lFrom that holds every word; it starts again at the other
// end. nullopt in lFrom: from the first (last) line on. nullopt: no line holds them, or there is no word.
std::optional<std::size_t> Next(const LogHistory& aHistory, const std::vector<LogHistory::LineRef>& aLines,
                                std::optional<std::size_t> lFrom, std::string_view szWords);
std::optional<std::size_t> Previous(const LogHistory& aHistory,
                                    const std::vector<LogHistory::LineRef>& aLines,
                                    std::optional<std::size_t> lFrom, std::string_view szWords);
}  // namespace LogFind

// A check log of about a million lines: 50 sites, each of which fails now and then.
#pragma once

#include <string>

#include "support/LogScript.h"

inline std::string LongLog() {
  constexpr std::size_t lPasses = 1'000'000 / 52;
  LogScript aScript;
  for (std::size_t lPass = 0; lPass < lPasses; ++lPass, aScript.End().After(30)) {
    aScript.Start();
    for (std::size_t lSite = 0; lSite < 50; ++lSite) {
      const auto szSite = "site" + std::to_string(lSite) + ".example.com/index.html";
      const auto lPhase = (lPass + lSite * 37) % 400;
      lPhase == 0 ? aScript.Warn(szSite) : lPhase < 3 ? aScript.Down(szSite) : aScript.Up(szSite);
    }
  }
  return aScript.szText;
}

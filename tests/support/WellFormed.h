// What tests ask of a page.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "support/TestHome.h"

inline std::size_t Occurrences(const std::string& szText, const std::string& szPart) {
  std::size_t lCount = 0;
  for (auto lAt = szText.find(szPart); lAt != std::string::npos; lAt = szText.find(szPart, lAt + 1))
    ++lCount;
  return lCount;
}

// A strict parser takes the page.
inline void ExpectWellFormed(const TestHome& aHome, const std::string& szPage) {
  aHome.Write("page.htm", szPage);
  const auto szOut = " > \"" + aHome.Path("out.txt") + "\" 2>&1";
  if (std::system(("xmllint --version" + szOut).c_str()) != 0) GTEST_SKIP() << "xmllint is not installed";
  EXPECT_EQ(std::system(("xmllint --noout \"" + aHome.Path("page.htm") + "\"" + szOut).c_str()), 0)
      << aHome.Read("out.txt").substr(0, 2000);
}

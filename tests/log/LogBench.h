// What every test that reads a log begins with.
#pragma once

#include <gtest/gtest.h>

#include "log/LogHistory.h"
#include "support/LogWeek.h"
#include "support/TestHome.h"

inline const DateTime dtMonday = JoinDateTime({2026, 1, 5, 8, 0, 0});

// The text as the file D.kvl, read.
struct Opened : LogHistory {
  Opened(const TestHome& aHome, const std::string& szText) {
    aHome.Write("D.kvl", szText);
    EXPECT_TRUE(Open({aHome.Path("D.kvl")}));
  }
};

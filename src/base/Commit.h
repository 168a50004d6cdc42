// Which state of the sources a program was built from.
#pragma once

// The commit's first twelve digits, with "-dirty" behind them where files differed from it; "unknown" where
// the sources were no checkout.
const char* CommitName();

// The day of that commit, as 2026-11-22; empty where the sources were no checkout.
const char* CommitDay();

// TestMail: a mail that the operator asks for, to see whether alerts would arrive.
#pragma once

#include <string>

#include "persistence/Settings.h"

struct TestMailResult {
  bool bSent = false;
  std::string szSaid;   // one sentence: where it went, or what went wrong
  std::string szReply;  // what the mail server answered, as a sentence
};

// Sends it with these settings, whose address and mail server must be set. Blocks for at most 30 seconds.
TestMailResult SendTestMail(const SettingsRecord& aSettings);

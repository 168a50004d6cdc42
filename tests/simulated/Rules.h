// Rules: what an answer means, in the model's own words. Written from what the program promises, without a
// look at how it keeps it; so its texts stand here once more.
#pragma once

#include <string>

namespace Simulated::Rules {

struct Verdict {
  bool bUp = false;
  std::string szCode = {}, szText = {};
  std::string szLogText = {};  // where the log says it otherwise
};

Verdict OfHeader(const std::string& szHeader);
Verdict OfError(int lCode, const std::string& szInfo);
Verdict OfTimeOut();

// The name of a site's key.
std::string KeyName(const std::string& szUrl);

}  // namespace Simulated::Rules

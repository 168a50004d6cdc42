// Check logs made up for tests, in exactly the form the writer gives them.
#pragma once

#include <cstddef>
#include <string>

#include "platform/DateTime.h"

namespace LogWeek {

// Writes a log line by line.
class Script {
 public:
  explicit Script(DateTime dtStart) : dtNow(dtStart) {}
  Script& Start(bool bManual = false);
  Script& Entry(const std::string& szAddress, const std::string& szText, int lClass,
                const std::string& szComment = {},
                int lSeconds = 1);  // and moves on by lSeconds
  Script& Up(const std::string& szSite) { return Entry("http://" + szSite, "Site OK", 1); }
  Script& Warn(const std::string& szSite) { return Entry("http://" + szSite, "404 File Not Found", 4); }
  Script& Down(const std::string& szSite) { return Entry("http://" + szSite, "404 File Not Found", 2); }
  Script& Raw(const std::string& szBytes);
  Script& End() { return Raw("[END CHECK]\r\n"); }
  Script& After(double dMinutes);
  DateTime Now() const { return dtNow; }
  const std::string& Text() const { return szText; }

 private:
  DateTime dtNow;
  std::string szText;
};

// Monday 1/5/2026 8:00 AM to Sunday: six sites looked at every 30 minutes; outages short and long, one with
// an IP check, mails that go and one that does not, a night on which the computer was off, passes by hand,
// one stopped, a site switched off, a torn line and a hostile name.
std::string Text();

// Passes over 50 sites: 52 lines each.
std::string Long(std::size_t lPasses);

}  // namespace LogWeek

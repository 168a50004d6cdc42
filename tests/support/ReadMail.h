// ReadMail: a mail as a mail reader sees it: the headers, and the body as text (RFC 5322; RFC 2045
// section 6.7).
#pragma once

#include <map>
#include <string>

struct ReadMail {
  explicit ReadMail(const std::string& szMail);  // raw, line ends CR LF or LF

  // The header's value, unfolded, if it is there exactly once; else a text that says so.
  std::string Only(const std::string& szLowerCaseName) const;

  std::multimap<std::string, std::string> aHeaders;  // by lower-case name
  std::string szBody;  // decoded, line ends LF; the last line has one, also where the writer had none
};

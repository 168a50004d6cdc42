// ResponseHeader: gathers the header lines of one response as they come in, and says where it stands. A
// response may be preceded by interim ones (1xx, RFC 9110 section 15.2) and followed by trailer fields (RFC
// 9112 section 7.1.2); what is kept is the header of the final one, or of an interim one while none followed.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

class ResponseHeader {
 public:
  // Bytes: interim headers and trailers included; and of the lines that are kept, later ones are dropped.
  static constexpr std::size_t lMostOnWire = std::size_t{256} * 1024;
  static constexpr std::size_t lMostKept = std::size_t{64} * 1024;

  // Takes the next line with its line end. False when more came than any honest server sends.
  bool TakeLine(std::string_view szLine);

  bool StatusLineSeen() const { return bStatusLineSeen; }
  bool Complete() const { return bComplete; }         // up to its blank line
  bool Interim() const { return bInterim; }           // no final one followed so far
  const std::string& Text() const { return szText; }  // without the blank line

 private:
  std::string szText;
  std::size_t lOnWire = 0;
  bool bStatusLineSeen = false;
  bool bInterim = false;
  bool bComplete = false;
};

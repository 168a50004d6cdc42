// SendForm3: sends one mail through an SMTP server (RFC 5321, message form RFC 5322, MIME RFC 2045 to 2047).
// Synchronous, bounded to 30 seconds in all whatever the server does, one mail at most, no retry.
#pragma once

#include <cstdint>
#include <string>

inline constexpr std::int32_t lSmtpPort = 25;

// What the caller wants of one call, and what he gets to know of it.
struct MailCall {
  // Limit for the whole call, look-up and goodbye included; a smaller number than 2 counts as 2.
  std::int32_t lSeconds = 30;
  // Out, for a person, without control characters: the last reply line of the server ("550 5.1.1 no such
  // user"), empty when none came; and the client's text for the error number, empty after a success.
  std::string szServerReply = {};
  std::string szError = {};
};

// The fourteen arguments of the mail call. Those named Unused are accepted and have no effect.
//   szSender, szRecipient   bare addresses of the envelope
//   szFrom                  the From line, with display name
//   szBody                  8-bit text, UTF-8; lines end in CR LF or LF. Its lines arrive as they are
//   szMailer                the X-Mailer line
// 0, or the client's error number (never 999). Refused without a connection: an empty or multi-line address
// or server, a port above 65535. A port below 1 stands for lSmtpPort. An error after the whole text was
// handed over means that delivery is unknown.
std::int32_t SendForm3(const std::string& szUnused1, const std::string& szServer, std::int32_t lPort,
                       const std::string& szSender, const std::string& szUnused5, const std::string& szFrom,
                       const std::string& szRecipient, const std::string& szSubject,
                       const std::string& szBody, const std::string& szUnused10, std::int32_t lUnused11,
                       std::int32_t lUnused12, const std::string& szUnused13, const std::string& szMailer,
                       MailCall& aCall);

// MailMessage: writes the text of a mail (RFC 5322) with one readable part (RFC 2045 to 2047). A body of
// plain ASCII lines goes as it is; any other is declared as UTF-8 and sent as quoted-printable, so that it
// survives every server on its way and each line arrives as it was written.
#pragma once

#include <string>

namespace MailMessage {

// The whole message, its lines ended by CR LF, with the present time of the Clock as its Date and a
// Message-ID that no other mail has. Body: lines end in CR LF or LF. Bytes that are no UTF-8 are taken for
// Latin-1. Control characters become "?" in the body, tabs apart, and blanks in the subject and the mailer's
// name; szFrom and szTo must hold none.
std::string Compose(const std::string& szFrom, const std::string& szTo, const std::string& szSubject,
                    const std::string& szBody, const std::string& szMailer);

}  // namespace MailMessage

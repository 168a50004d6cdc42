// RequestUrl: turns an address as an operator writes it into one that can stand in a request line.
#pragma once

#include <string>

// Escapes blanks, control and 8-bit bytes behind the host (RFC 3986 section 2.1); escapes that are there
// already stay. A bare IPv6 address gets its brackets. The host part is otherwise left as it is, wrong or
// right.
std::string RequestUrl_Escape(const std::string& szURL);

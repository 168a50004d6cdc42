// TextGlue: text between the core (bytes, by intent UTF-8) and the widgets (wxString). Lossless: bytes that
// are no UTF-8, as old site lists hold them, become private characters and turn back into the same bytes. The
// toolkit's own FromUTF8 would answer an empty text for them, and an edit would then wipe the address.
#pragma once

#include <wx/string.h>

#include <string>
#include <string_view>

#include "base/Strings.h"

wxString ToWx(std::string_view szText);
std::string FromWx(const wxString& szText);

// A text of the string table for a widget. CR LF becomes one line end.
wxString ResText(std::int32_t lNumber);

// A message's text for a box: CR LF becomes one line end.
wxString ToWxLines(std::string_view szText);

// Text that an operator or a server supplied, for a label: "&" would otherwise become an underline.
wxString ToWxLabel(std::string_view szText);

// Breaks words of more than 80 characters: an address of 200 has no blank at which a line could break, and
// would make a box wider than the screen.
wxString BreakLongWords(const wxString& szText);

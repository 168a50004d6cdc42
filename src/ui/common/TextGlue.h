// TextGlue: text between the core (bytes, by intent UTF-8) and the widgets (wxString). Lossless: bytes that
// are no UTF-8, as old site lists hold them, become private characters and turn back into the same bytes. The
// toolkit's own FromUTF8 would answer an empty text for them, and an edit would then wipe the address.
#pragma once

#include <wx/string.h>

#include <string>
#include <string_view>

#include "base/Strings.h"

class wxWindow;

wxString ToWx(std::string_view szText);
std::string FromWx(const wxString& szText);

// A text of the string table for a widget. CR LF becomes one line end.
wxString ResText(std::int32_t lNumber);

// A message's text for a box: CR LF becomes one line end.
wxString ToWxLines(std::string_view szText);

// Text that an operator or a server supplied, for a label: "&" would otherwise become an underline.
wxString ToWxLabel(std::string_view szText);

// The lines of a box or a tip over the main window of that one, which it is not to exceed: an address of 200
// characters has no blank at which a line could break. nullptr: a window of the usual width.
wxString BreakLines(const wxString& szText, const wxWindow* pOver);

// Boxes: the program's message boxes, with its title. They wait for the operator.
#pragma once

#include <string>

class wxWindow;

namespace Boxes {

// With an OK button. szMore: a second part, set off from the first; may be empty.
void Say(wxWindow* pOwner, const std::string& szText, const std::string& szMore = {});

// With the toolkit's buttons (wxYES_NO and the like); answers the identifier of the one pressed, that of
// Cancel where the box was closed.
int Ask(wxWindow* pOwner, const std::string& szText, long lButtons, const std::string& szMore = {});

}  // namespace Boxes

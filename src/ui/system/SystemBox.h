// SystemBox: what the toolkit cannot do with a message box that is the system's own.
#pragma once

#include <wx/dialog.h>

namespace SystemBox {

// Answers an open box as its close button would. False where nobody but the operator can; it stays open then.
bool Dismiss(wxDialog& aBox);

}  // namespace SystemBox

// AccessibleName: what a screen reader calls a control that has no text of its own and no label beside it.
// The toolkit passes this on for few controls only.
#pragma once

class wxString;
class wxWindow;

namespace AccessibleName {

void Set(wxWindow& aControl, const wxString& szName);
wxString Get(const wxWindow& aControl);  // empty where the system tells none

}  // namespace AccessibleName

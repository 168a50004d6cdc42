// AccessibleName: what a screen reader calls a control that has no text of its own and no label beside it.
// The toolkit passes this on for few controls only.
#pragma once

class wxString;
class wxWindow;

namespace AccessibleName {

void Set(wxWindow& aControl, const wxString& szName);
// Names what takes the keyboard within that window: a field and a choice by the label before it, as they were
// made, what has neither label nor text by szElse (empty: not at all).
void SetFromLabels(wxWindow& aWithin, const wxString& szElse);
wxString Get(const wxWindow& aControl);  // empty where the system tells none

}  // namespace AccessibleName

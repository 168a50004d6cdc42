#include "ui/system/AccessibleName.h"

#include <gtk/gtk.h>
#include <wx/choice.h>
#include <wx/listctrl.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <vector>

namespace {

// A control that scrolls stands in a window of GTK's that does it; both take the keyboard.
std::vector<AtkObject*> ObjectsOf(const wxWindow& aControl) {
  if (!aControl.GetHandle()) return {};
  GtkWidget* pWidget = GTK_WIDGET(aControl.GetHandle());
  GtkWidget* pInner = GTK_IS_SCROLLED_WINDOW(pWidget) ? gtk_bin_get_child(GTK_BIN(pWidget)) : nullptr;
  if (!pInner) return {gtk_widget_get_accessible(pWidget)};
  return {gtk_widget_get_accessible(pInner), gtk_widget_get_accessible(pWidget)};
}

void Label(const wxWindow& aControl, const wxWindow& aLabel) {
  for (AtkObject* pControl : ObjectsOf(aControl))
    for (AtkObject* pLabel : ObjectsOf(aLabel))
      atk_object_add_relationship(pControl, ATK_RELATION_LABELLED_BY, pLabel);
}

}  // namespace

void AccessibleName::Set(wxWindow& aControl, const wxString& szName) {
  for (AtkObject* pObject : ObjectsOf(aControl))
    atk_object_set_name(pObject, szName.utf8_str());
}

void AccessibleName::SetFromLabels(wxWindow& aWithin, const wxString& szElse) {
  const wxWindow* pLabel = nullptr;
  for (wxWindow* pChild : aWithin.GetChildren()) {
    if (dynamic_cast<wxListCtrl*>(pChild)) continue;  // has rows: AccessibleRows
    if (dynamic_cast<wxStaticText*>(pChild)) {
      pLabel = pChild;
      continue;
    }
    const bool bChoice = dynamic_cast<wxChoice*>(pChild);
    const bool bNamed = !bChoice && !Get(*pChild).empty();
    if (pLabel && (bChoice || (dynamic_cast<wxTextCtrl*>(pChild) && !bNamed)))
      Label(*pChild, *pLabel);
    else if (!szElse.empty() && !bNamed && pChild->AcceptsFocus())
      Set(*pChild, szElse);
    if (pChild->AcceptsFocus()) pLabel = nullptr;
    SetFromLabels(*pChild, szElse);
  }
}

wxString AccessibleName::Get(const wxWindow& aControl) {
  const auto aObjects = ObjectsOf(aControl);
  const char* const szName = aObjects.empty() ? nullptr : atk_object_get_name(aObjects.front());
  return szName ? wxString::FromUTF8(szName) : wxString();
}

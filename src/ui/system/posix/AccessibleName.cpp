#include "ui/system/AccessibleName.h"

#include <dlfcn.h>
#include <wx/window.h>

namespace {

template <typename Function>
Function* Find(const char* szName) {
  return reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, szName));
}

// wxWidgets has loaded GTK but does not pass this on.
void* ObjectOf(const wxWindow& aControl) {
  const auto aAccessible = Find<void*(void*)>("gtk_widget_get_accessible");
  return aAccessible && aControl.GetHandle() ? aAccessible(aControl.GetHandle()) : nullptr;
}

}  // namespace

void AccessibleName::Set(wxWindow& aControl, const wxString& szName) {
  const auto aSetName = Find<void(void*, const char*)>("atk_object_set_name");
  void* pObject = ObjectOf(aControl);
  if (pObject && aSetName) aSetName(pObject, szName.utf8_str());
}

wxString AccessibleName::Get(const wxWindow& aControl) {
  const auto aGetName = Find<const char*(void*)>("atk_object_get_name");
  void* pObject = ObjectOf(aControl);
  const char* const szName = pObject && aGetName ? aGetName(pObject) : nullptr;
  return szName ? wxString::FromUTF8(szName) : wxString();
}

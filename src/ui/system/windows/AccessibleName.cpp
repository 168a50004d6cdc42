#include "ui/system/AccessibleName.h"

#include <wx/access.h>
#include <wx/scrolwin.h>
#include <wx/textctrl.h>
#include <wx/window.h>

#include "platform/windows/System.h"

// clang-format off (needs windows.h before it)
#include <initguid.h>
#include <oleacc.h>
// clang-format on

namespace {

// Tells the name itself and leaves all other questions to the control.
class Named : public wxAccessible {
 public:
  Named(wxWindow* pControl, const wxString& szText) : wxAccessible(pControl), szName(szText) {}

  wxAccStatus GetName(int lChild, wxString* pName) override {
    if (lChild != wxACC_SELF) return wxACC_NOT_IMPLEMENTED;
    *pName = szName;
    return wxACC_OK;
  }

 private:
  const wxString szName;
};

}  // namespace

void AccessibleName::Set(wxWindow& aControl, const wxString& szName) {
  aControl.SetAccessible(new Named(&aControl, szName));
}

// The system itself reads the label before a field.
void AccessibleName::SetFromLabels(wxWindow& aWithin, const wxString& szElse) {
  for (wxWindow* pChild : aWithin.GetChildren()) {
    const bool bUnlabelled = dynamic_cast<wxTextCtrl*>(pChild) && Get(*pChild).empty();
    if (!szElse.empty() && (bUnlabelled || dynamic_cast<wxScrolledCanvas*>(pChild))) Set(*pChild, szElse);
    SetFromLabels(*pChild, szElse);
  }
}

wxString AccessibleName::Get(const wxWindow& aControl) {
  IAccessible* pObject = nullptr;
  if (FAILED(AccessibleObjectFromWindow(static_cast<HWND>(aControl.GetHWND()),
                                        static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible,
                                        reinterpret_cast<void**>(&pObject))))
    return {};
  VARIANT aSelf;
  aSelf.vt = VT_I4;
  aSelf.lVal = CHILDID_SELF;
  BSTR szName = nullptr;
  const wxString szFound =
      SUCCEEDED(pObject->get_accName(aSelf, &szName)) && szName ? wxString(szName) : wxString();
  SysFreeString(szName);
  pObject->Release();
  return szFound;
}

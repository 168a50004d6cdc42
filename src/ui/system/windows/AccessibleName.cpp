#include "ui/system/AccessibleName.h"

#include <wx/window.h>

#include "platform/windows/System.h"

// clang-format off (needs windows.h before it)
#include <initguid.h>
#include <oleacc.h>
// clang-format on

// Said of the window itself, beside whatever the control tells.
void AccessibleName::Set(wxWindow& aControl, const wxString& szName) {
  IAccPropServices* pServices = nullptr;
  CoInitialize(nullptr);
  if (FAILED(CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices,
                              reinterpret_cast<void**>(&pServices))))
    return;
  pServices->SetHwndPropStr(static_cast<HWND>(aControl.GetHWND()), static_cast<DWORD>(OBJID_CLIENT),
                            CHILDID_SELF, PROPID_ACC_NAME, szName.wc_str());
  pServices->Release();
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

// What assistive tools are told of the list.
#include <gtest/gtest.h>
#include <wx/bookctrl.h>

#include "ui/Accessible.h"
#include "ui/Program.h"
#include "ui/common/TextGlue.h"
#include "ui/system/AccessibleName.h"

// clang-format off (needs windows.h before it)
#include <oleacc.h>

#include "platform/windows/System.h"
// clang-format on

namespace {

VARIANT Child(long lChild) {
  VARIANT aChild;
  aChild.vt = VT_I4;
  aChild.lVal = static_cast<LONG>(lChild);
  return aChild;
}

wxString NameOf(IAccessible* pList, long lChild) {
  BSTR szName = nullptr;
  const wxString szFound =
      SUCCEEDED(pList->get_accName(Child(lChild), &szName)) && szName ? wxString(szName) : wxString();
  SysFreeString(szName);
  return szFound;
}

wxString DescriptionOf(IAccessible* pList) {
  BSTR szText = nullptr;
  const wxString szFound = SUCCEEDED(pList->get_accDescription(Child(CHILDID_SELF), &szText)) && szText
                               ? wxString(szText)
                               : wxString();
  SysFreeString(szText);
  return szFound;
}

long StateOf(IAccessible* pList, long lChild) {
  VARIANT aState = Child(0);
  return SUCCEEDED(pList->get_accState(Child(lChild), &aState)) ? aState.lVal : 0;
}

}  // namespace

Texts Nameless(const wxWindow& aWindow) {
  Texts aFound;
  for (const wxWindow* pChild : aWindow.GetChildren()) {
    if (!pChild->IsShown()) continue;
    if (pChild->AcceptsFocus() && pChild->IsEnabled() && AccessibleName::Get(*pChild).empty() &&
        !dynamic_cast<const wxBookCtrlBase*>(pChild))  // a row of tabs has no name, its tabs have
      aFound.push_back(FromWx(pChild->GetClassInfo()->GetClassName()));
    for (const std::string& szMore : Nameless(*pChild))
      aFound.push_back(szMore);
  }
  return aFound;
}

TEST(Accessible, TheListIsReadRowByRow) {
  Program aProgram({Site("a.test", 1, 3, "10.0.0.1"), Site("b.test", 0, 3)});
  SiteList& aList = *aProgram.Main().lvwMain;
  aList.ShowRemark(2, "404 File Not Found");
  ASSERT_TRUE(Focused(&aList));
  IAccessible* pList = nullptr;
  ASSERT_TRUE(SUCCEEDED(AccessibleObjectFromWindow(static_cast<HWND>(aList.GetHWND()),
                                                   static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible,
                                                   reinterpret_cast<void**>(&pList))));
  LONG lCount = 0;
  EXPECT_TRUE(SUCCEEDED(pList->get_accChildCount(&lCount)) && lCount == 2) << lCount;
  EXPECT_EQ(NameOf(pList, CHILDID_SELF), "The sites");
  EXPECT_EQ(DescriptionOf(pList), "Web Address, IP Address, Comments");
  EXPECT_EQ(NameOf(pList, 1), "1, http://a.test, 10.0.0.1, Unsuccessful");
  EXPECT_EQ(NameOf(pList, 2), "2, http://b.test, 404 File Not Found, Disabled");
  EXPECT_EQ(NameOf(pList, 3), "");
  VARIANT aRole = Child(0);
  EXPECT_TRUE(SUCCEEDED(pList->get_accRole(Child(2), &aRole)) && aRole.lVal == ROLE_SYSTEM_LISTITEM);
  aList.SelectSlot(2);
  EXPECT_EQ(StateOf(pList, 1) & STATE_SYSTEM_SELECTED, 0);
  EXPECT_EQ(StateOf(pList, 2) & (STATE_SYSTEM_SELECTED | STATE_SYSTEM_FOCUSED),
            STATE_SYSTEM_SELECTED | STATE_SYSTEM_FOCUSED);
  VARIANT aFocus = Child(0);
  EXPECT_TRUE(SUCCEEDED(pList->get_accFocus(&aFocus)) && aFocus.lVal == 2) << aFocus.lVal;
  LONG lX = 0, lY = 0, lWidth = 0, lHeight = 0;
  EXPECT_TRUE(SUCCEEDED(pList->accLocation(&lX, &lY, &lWidth, &lHeight, Child(2))));
  EXPECT_TRUE(aList.GetScreenRect().Contains(wxRect(lX, lY, 100, lHeight)));
  pList->Release();
}

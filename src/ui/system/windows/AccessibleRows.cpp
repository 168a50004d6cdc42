#include "ui/system/AccessibleRows.h"

#include <wx/access.h>

#include <utility>

namespace {

// Children are counted from 1. What this leaves open the system answers for its own list.
class Rows : public wxAccessible {
 public:
  Rows(wxListView& aOwner, std::function<wxString()> aTitle, std::function<wxString(long)> aName)
      : wxAccessible(&aOwner), aList(aOwner), Title(std::move(aTitle)), Name(std::move(aName)) {}

  wxAccStatus GetChildCount(int* pCount) override {
    *pCount = aList.GetItemCount();
    return wxACC_OK;
  }
  wxAccStatus GetName(int lChild, wxString* pName) override {
    if (lChild == wxACC_SELF) {
      *pName = Title();
      return wxACC_OK;
    }
    if (!Known(lChild)) return wxACC_INVALID_ARG;
    *pName = Name(lChild - 1);
    return wxACC_OK;
  }
  wxAccStatus GetDescription(int lChild, wxString* pText) override {
    if (lChild != wxACC_SELF) return wxACC_NOT_IMPLEMENTED;
    *pText = AccessibleRows::Headers(aList);
    return wxACC_OK;
  }
  wxAccStatus GetRole(int lChild, wxAccRole* pRole) override {
    *pRole = lChild == wxACC_SELF ? wxROLE_SYSTEM_LIST : wxROLE_SYSTEM_LISTITEM;
    return wxACC_OK;
  }
  wxAccStatus GetState(int lChild, long* pState) override {
    if (lChild == wxACC_SELF) return wxACC_NOT_IMPLEMENTED;
    if (!Known(lChild)) return wxACC_INVALID_ARG;
    const int lRow = lChild - 1;
    *pState = wxACC_STATE_SYSTEM_SELECTABLE | wxACC_STATE_SYSTEM_FOCUSABLE;
    if (aList.IsSelected(lRow)) *pState |= wxACC_STATE_SYSTEM_SELECTED;
    if (aList.GetFocusedItem() == lRow && aList.HasFocus()) *pState |= wxACC_STATE_SYSTEM_FOCUSED;
    const long lTop = aList.GetTopItem();
    if (lRow < lTop || lRow > lTop + aList.GetCountPerPage()) *pState |= wxACC_STATE_SYSTEM_OFFSCREEN;
    return wxACC_OK;
  }
  wxAccStatus GetLocation(wxRect& aPlace, int lChild) override {
    if (lChild == wxACC_SELF || !Known(lChild)) return wxACC_NOT_IMPLEMENTED;
    aList.GetItemRect(lChild - 1, aPlace);
    aPlace.SetPosition(aList.ClientToScreen(aPlace.GetPosition()));
    return wxACC_OK;
  }
  wxAccStatus GetFocus(int* pChild, wxAccessible** pObject) override {
    if (!aList.HasFocus() || aList.GetFocusedItem() < 0) return wxACC_NOT_IMPLEMENTED;
    *pChild = static_cast<int>(aList.GetFocusedItem()) + 1;
    *pObject = nullptr;
    return wxACC_OK;
  }

 private:
  bool Known(int lChild) const { return lChild >= 1 && lChild <= aList.GetItemCount(); }

  wxListView& aList;
  const std::function<wxString()> Title;
  const std::function<wxString(long)> Name;
};

}  // namespace

void AccessibleRows::Tell(wxListView& aList, std::function<wxString()> Title,
                          std::function<wxString(long)> Name) {
  aList.SetAccessible(new Rows(aList, std::move(Title), std::move(Name)));
}

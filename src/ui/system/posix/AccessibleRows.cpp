// The list's window gets an accessible object of its own, and each row one when it is asked for. GTK asks a
// widget's class for that object, once, when the first tool asks GTK.
#include "ui/system/AccessibleRows.h"

#include <gtk/gtk-a11y.h>
#include <gtk/gtk.h>

#include <map>
#include <utility>

namespace {

constexpr const char* szKey = "kestrova-rows";

// What hangs on the widget of a list's rows until that is destroyed.
struct List {
  wxListView& aList;
  wxWindow& aWindow;  // within the list: draws the rows and has the keyboard
  std::function<wxString()> Title;
  std::function<wxString(long)> Name;
  AtkObject* pObject = nullptr;   // nullptr: no tool has asked
  std::map<int, gpointer> aRows;  // those that somebody holds; else nullptr

  // Tools may hold the objects for longer.
  ~List() {
    for (auto& [lRow, pRow] : aRows)
      if (pRow) g_object_remove_weak_pointer(G_OBJECT(pRow), &pRow);
    if (!pObject) return;
    gtk_accessible_set_widget(GTK_ACCESSIBLE(pObject), nullptr);
    g_object_unref(pObject);
  }
  bool Known(int lRow) const { return lRow >= 0 && lRow < aList.GetItemCount(); }
  wxRect PlaceOf(int lRow) const {  // on the screen
    wxRect aPlace;
    aList.GetItemRect(lRow, aPlace);
    aPlace.SetPosition(aList.ClientToScreen(aPlace.GetPosition()));
    return aPlace;
  }
};

List* ListOf(GtkWidget* pWidget) {
  return pWidget ? static_cast<List*>(g_object_get_data(G_OBJECT(pWidget), szKey)) : nullptr;
}

// nullptr when the list is gone.
List* ListOf(gpointer pRows) {
  return ListOf(gtk_accessible_get_widget(GTK_ACCESSIBLE(pRows)));
}

// --- one row

struct RowObject {
  AtkObject aParent;
  int lRow;
};
struct RowClass {
  AtkObjectClass aParent;
};

List* ListOfRow(gpointer pRow) {
  AtkObject* pRows = ATK_OBJECT(pRow)->accessible_parent;
  List* pList = pRows ? ListOf(pRows) : nullptr;
  return pList && pList->Known(static_cast<RowObject*>(pRow)->lRow) ? pList : nullptr;
}

int RowOf(gpointer pRow) {
  return static_cast<RowObject*>(pRow)->lRow;
}

// Its text changes while it stands there.
const char* RowName(AtkObject* pRow) {
  List* pList = ListOfRow(pRow);
  g_free(pRow->name);
  pRow->name = g_strdup(pList ? pList->Name(RowOf(pRow)).utf8_str().data() : "");
  return pRow->name;
}

AtkStateSet* RowStates(AtkObject* pRow) {
  AtkStateSet* pStates = atk_state_set_new();
  const auto Add = [pStates](AtkStateType iState, bool bHolds) {
    if (bHolds) atk_state_set_add_state(pStates, iState);
  };
  const List* pList = ListOfRow(pRow);
  Add(ATK_STATE_DEFUNCT, !pList);
  if (!pList) return pStates;
  const int lRow = RowOf(pRow);
  const long lTop = pList->aList.GetTopItem();
  const bool bSeen = lRow >= lTop && lRow < lTop + pList->aList.GetCountPerPage();
  const bool bFocus = pList->aList.GetFocusedItem() == lRow;
  for (const auto iState : {ATK_STATE_ENABLED, ATK_STATE_SENSITIVE, ATK_STATE_SELECTABLE, ATK_STATE_FOCUSABLE,
                            ATK_STATE_TRANSIENT, ATK_STATE_VISIBLE})
    Add(iState, true);
  Add(ATK_STATE_SHOWING, bSeen && pList->aList.IsShownOnScreen());
  Add(ATK_STATE_SELECTED, pList->aList.IsSelected(lRow));
  Add(ATK_STATE_ACTIVE, bFocus);
  Add(ATK_STATE_FOCUSED, bFocus && pList->aWindow.HasFocus());
  return pStates;
}

int RowIndex(AtkObject* pRow) {
  return RowOf(pRow);
}

void RowExtents(AtkComponent* pRow, int* pX, int* pY, int* pWidth, int* pHeight, AtkCoordType iFrom) {
  const List* pList = ListOfRow(pRow);
  wxRect aPlace = pList ? pList->PlaceOf(RowOf(pRow)) : wxRect();
  if (pList && iFrom == ATK_XY_WINDOW)
    aPlace.Offset(-wxGetTopLevelParent(&pList->aList)->GetScreenPosition());
  if (pList && iFrom == ATK_XY_PARENT) aPlace.Offset(-pList->aWindow.GetScreenPosition());
  *pX = aPlace.x;
  *pY = aPlace.y;
  *pWidth = aPlace.width;
  *pHeight = aPlace.height;
}

gboolean RowTakeFocus(AtkComponent* pRow) {
  List* pList = ListOfRow(pRow);
  if (!pList) return FALSE;
  pList->aList.SetFocus();
  pList->aList.Focus(RowOf(pRow));
  return TRUE;
}

void MakeRowClass(gpointer pClass, gpointer) {
  AtkObjectClass* pObject = ATK_OBJECT_CLASS(pClass);
  pObject->get_name = RowName;
  pObject->ref_state_set = RowStates;
  pObject->get_index_in_parent = RowIndex;
}

void MakeRowComponent(gpointer pInterface, gpointer) {
  auto* pComponent = static_cast<AtkComponentIface*>(pInterface);
  pComponent->get_extents = RowExtents;
  pComponent->grab_focus = RowTakeFocus;
}

GType RowType() {
  static const GType lType = [] {
    const GType lNew = g_type_register_static_simple(ATK_TYPE_OBJECT, "KestrovaRow", sizeof(RowClass),
                                                     MakeRowClass, sizeof(RowObject), nullptr, GTypeFlags());
    const GInterfaceInfo aComponent = {MakeRowComponent, nullptr, nullptr};
    g_type_add_interface_static(lNew, ATK_TYPE_COMPONENT, &aComponent);
    return lNew;
  }();
  return lType;
}

AtkObject* RefRow(List& aList, int lRow) {
  gpointer& pRow = aList.aRows[lRow];
  if (pRow) return ATK_OBJECT(g_object_ref(pRow));
  pRow = g_object_new(RowType(), nullptr);
  g_object_add_weak_pointer(G_OBJECT(pRow), &pRow);
  static_cast<RowObject*>(pRow)->lRow = lRow;
  atk_object_set_role(ATK_OBJECT(pRow), ATK_ROLE_LIST_ITEM);
  atk_object_set_parent(ATK_OBJECT(pRow), aList.pObject);
  return ATK_OBJECT(pRow);
}

// --- all rows

using RowsObject = GtkContainerAccessible;
using RowsClass = GtkContainerAccessibleClass;
AtkObjectClass* pRowsParent = nullptr;

int RowsCount(AtkObject* pRows) {
  const List* pList = ListOf(pRows);
  return pList ? pList->aList.GetItemCount() : 0;
}

AtkObject* RowsChild(AtkObject* pRows, int lRow) {
  List* pList = ListOf(pRows);
  return pList && pList->Known(lRow) ? RefRow(*pList, lRow) : nullptr;
}

// A tool does not ask for a thousand rows when it meets the list, but for the one that is told.
AtkStateSet* RowsStates(AtkObject* pRows) {
  AtkStateSet* pStates = pRowsParent->ref_state_set(pRows);
  atk_state_set_add_state(pStates, ATK_STATE_MANAGES_DESCENDANTS);
  return pStates;
}

// Columns come and go while it stands there.
const char* RowsDescription(AtkObject* pRows) {
  const List* pList = ListOf(pRows);
  g_free(pRows->description);
  pRows->description = g_strdup(pList ? AccessibleRows::Headers(pList->aList).utf8_str().data() : "");
  return pRows->description;
}

AtkObject* RowsAtPoint(AtkComponent* pRows, int lX, int lY, AtkCoordType iFrom) {
  List* pList = ListOf(pRows);
  if (!pList) return nullptr;
  wxPoint aAt(lX, lY);
  if (iFrom == ATK_XY_WINDOW) aAt += wxGetTopLevelParent(&pList->aList)->GetScreenPosition();
  if (iFrom == ATK_XY_PARENT) aAt += pList->aList.GetScreenPosition();
  // Rows are hit below the headers, whatever their places are counted from.
  int lFlags = 0;
  const long lRow = pList->aList.HitTest(pList->aWindow.ScreenToClient(aAt), lFlags);
  return lRow >= 0 ? RefRow(*pList, static_cast<int>(lRow)) : nullptr;
}

gboolean SelectRow(AtkSelection* pRows, int lRow) {
  List* pList = ListOf(pRows);
  if (!pList || !pList->Known(lRow)) return FALSE;
  pList->aList.Select(lRow);
  pList->aList.Focus(lRow);
  return TRUE;
}

gboolean SelectNone(AtkSelection* pRows) {
  List* pList = ListOf(pRows);
  if (!pList) return FALSE;
  for (long lRow = pList->aList.GetFirstSelected(); lRow >= 0; lRow = pList->aList.GetNextSelected(lRow))
    pList->aList.Select(lRow, false);
  return TRUE;
}

// The row that is the n-th selected one, from 0; -1 for none.
long NthSelected(const List& aList, int n) {
  long lRow = aList.aList.GetFirstSelected();
  for (; lRow >= 0 && n > 0; --n)
    lRow = aList.aList.GetNextSelected(lRow);
  return lRow;
}

AtkObject* SelectedRow(AtkSelection* pRows, int n) {
  List* pList = ListOf(pRows);
  const long lRow = pList ? NthSelected(*pList, n) : -1;
  return lRow >= 0 ? RefRow(*pList, static_cast<int>(lRow)) : nullptr;
}

int SelectedCount(AtkSelection* pRows) {
  const List* pList = ListOf(pRows);
  return pList ? pList->aList.GetSelectedItemCount() : 0;
}

gboolean IsRowSelected(AtkSelection* pRows, int lRow) {
  const List* pList = ListOf(pRows);
  return pList && pList->Known(lRow) && pList->aList.IsSelected(lRow);
}

gboolean UnselectRow(AtkSelection* pRows, int n) {
  List* pList = ListOf(pRows);
  const long lRow = pList ? NthSelected(*pList, n) : -1;
  if (lRow < 0) return FALSE;
  pList->aList.Select(lRow, false);
  return TRUE;
}

void MakeRowsClass(gpointer pClass, gpointer) {
  AtkObjectClass* pObject = ATK_OBJECT_CLASS(pClass);
  pRowsParent = ATK_OBJECT_CLASS(g_type_class_peek_parent(pClass));
  pObject->get_description = RowsDescription;
  pObject->get_n_children = RowsCount;
  pObject->ref_child = RowsChild;
  pObject->ref_state_set = RowsStates;
}

void MakeRowsComponent(gpointer pInterface, gpointer) {
  static_cast<AtkComponentIface*>(pInterface)->ref_accessible_at_point = RowsAtPoint;
}

void MakeRowsSelection(gpointer pInterface, gpointer) {
  auto* pSelection = static_cast<AtkSelectionIface*>(pInterface);
  pSelection->add_selection = SelectRow;
  pSelection->clear_selection = SelectNone;
  pSelection->ref_selection = SelectedRow;
  pSelection->get_selection_count = SelectedCount;
  pSelection->is_child_selected = IsRowSelected;
  pSelection->remove_selection = UnselectRow;
}

GType RowsType() {
  static const GType lType = [] {
    const GType lNew =
        g_type_register_static_simple(GTK_TYPE_CONTAINER_ACCESSIBLE, "KestrovaRows", sizeof(RowsClass),
                                      MakeRowsClass, sizeof(RowsObject), nullptr, GTypeFlags());
    const GInterfaceInfo aComponent = {MakeRowsComponent, nullptr, nullptr};
    const GInterfaceInfo aSelection = {MakeRowsSelection, nullptr, nullptr};
    g_type_add_interface_static(lNew, ATK_TYPE_COMPONENT, &aComponent);
    g_type_add_interface_static(lNew, ATK_TYPE_SELECTION, &aSelection);
    return lNew;
  }();
  return lType;
}

AtkObject* (*pUsualAccessible)(GtkWidget*) = nullptr;

AtkObject* AccessibleOf(GtkWidget* pWidget) {
  List* pList = ListOf(pWidget);
  if (!pList) return pUsualAccessible(pWidget);
  if (!pList->pObject) {
    pList->pObject = ATK_OBJECT(g_object_new(RowsType(), "widget", pWidget, nullptr));
    atk_object_initialize(pList->pObject, pWidget);
    atk_object_set_role(pList->pObject, ATK_ROLE_LIST);
    atk_object_set_name(pList->pObject, pList->Title().utf8_str());
  }
  return pList->pObject;
}

// Tools follow the row in focus.
void Changed(GtkWidget* pWidget, long lRow) {
  List* pList = ListOf(pWidget);
  if (!pList || !pList->pObject) return;
  g_signal_emit_by_name(pList->pObject, "selection-changed");
  if (!pList->Known(static_cast<int>(lRow)) || pList->aList.GetFocusedItem() != lRow) return;
  AtkObject* pRow = RefRow(*pList, static_cast<int>(lRow));
  g_signal_emit_by_name(pList->pObject, "active-descendant-changed", pRow);
  g_object_unref(pRow);
}

// The list is a frame of the toolkit's around headers and rows; the window of the rows has no public type.
wxWindow* RowsWindow(const wxListView& aList) {
  for (wxWindow* pChild : aList.GetChildren())
    if (static_cast<void*>(pChild) == static_cast<void*>(aList.m_mainWin)) return pChild;
  return nullptr;
}

}  // namespace

void AccessibleRows::Tell(wxListView& aList, std::function<wxString()> Title,
                          std::function<wxString(long)> Name) {
  wxWindow* pRows = RowsWindow(aList);
  if (!pRows) return;
  GtkWidget* pWidget = GTK_WIDGET(pRows->GetHandle());
  GtkWidgetClass* pClass = GTK_WIDGET_GET_CLASS(pWidget);
  if (pClass->get_accessible != AccessibleOf) {
    pUsualAccessible = pClass->get_accessible;
    pClass->get_accessible = AccessibleOf;
  }
  auto* pNew = new List{aList, *pRows, std::move(Title), std::move(Name), nullptr, {}};
  g_object_set_data_full(G_OBJECT(pWidget), szKey, pNew,
                         [](gpointer pOld) { delete static_cast<List*>(pOld); });
  g_signal_connect(pWidget, "destroy", G_CALLBACK(+[](GtkWidget* pGone, gpointer) {
                     g_object_set_data(G_OBJECT(pGone), szKey, nullptr);
                   }),
                   nullptr);
  for (const auto& aType : {wxEVT_LIST_ITEM_SELECTED, wxEVT_LIST_ITEM_DESELECTED, wxEVT_LIST_ITEM_FOCUSED})
    aList.Bind(aType, [pWidget](wxListEvent& aEvent) {
      aEvent.Skip();
      Changed(pWidget, aEvent.GetIndex());
    });
}

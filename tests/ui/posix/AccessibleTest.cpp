// What assistive tools find when they walk from a window down to its controls.
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <functional>
#include <memory>

#include "ui/Accessible.h"
#include "ui/Program.h"

namespace {

struct Unref {
  void operator()(gpointer pObject) const { g_object_unref(pObject); }
};
using Object = std::unique_ptr<AtkObject, Unref>;

bool Has(AtkObject* pObject, AtkStateType iState) {
  AtkStateSet* pStates = atk_object_ref_state_set(pObject);
  const bool bHas = atk_state_set_contains_state(pStates, iState);
  g_object_unref(pStates);
  return bHas;
}

// The window's objects from the top, as far as they are on the screen; within what the visitor declines it
// does not go.
void Walk(AtkObject* pObject, const std::function<bool(AtkObject*)>& aVisit) {
  if (!aVisit(pObject)) return;
  for (int i = 0; i < atk_object_get_n_accessible_children(pObject); ++i)
    if (const Object pChild{atk_object_ref_accessible_child(pObject, i)}) Walk(pChild.get(), aVisit);
}

AtkObject* Top(const wxWindow& aWindow) {
  return gtk_widget_get_accessible(GTK_WIDGET(aWindow.GetHandle()));
}

Object FindList(const wxWindow& aWindow) {
  Object pFound;
  Walk(Top(aWindow), [&](AtkObject* pObject) {
    if (atk_object_get_role(pObject) == ATK_ROLE_LIST && Has(pObject, ATK_STATE_SHOWING))
      pFound.reset(ATK_OBJECT(g_object_ref(pObject)));
    return !pFound;
  });
  return pFound;
}

Object RowOf(const Object& pList, int lRow) {
  return Object(atk_object_ref_accessible_child(pList.get(), lRow));
}

std::string NameOf(AtkObject* pObject) {
  const char* szName = atk_object_get_name(pObject);
  return szName ? szName : "";
}

}  // namespace

Texts Nameless(const wxWindow& aWindow) {
  Texts aFound;
  Walk(Top(aWindow), [&](AtkObject* pObject) {
    AtkRelationSet* pRelations = atk_object_ref_relation_set(pObject);
    const bool bLabelled = atk_relation_set_contains(pRelations, ATK_RELATION_LABELLED_BY);
    g_object_unref(pRelations);
    // A row of tabs has no name, its tabs have.
    if (atk_object_get_role(pObject) != ATK_ROLE_PAGE_TAB_LIST && Has(pObject, ATK_STATE_FOCUSABLE) &&
        Has(pObject, ATK_STATE_SHOWING) && NameOf(pObject).empty() && !bLabelled)
      aFound.push_back(atk_role_get_name(atk_object_get_role(pObject)));
    if (Has(pObject, ATK_STATE_MANAGES_DESCENDANTS) && atk_object_get_n_accessible_children(pObject) > 0 &&
        NameOf(Object(atk_object_ref_accessible_child(pObject, 0)).get()).empty())
      aFound.push_back("a row");
    return !Has(pObject, ATK_STATE_MANAGES_DESCENDANTS);
  });
  return aFound;
}

TEST(Accessible, TheListIsReadRowByRow) {
  Object pList, pFirst;
  {
    Program aProgram({Site("a.test", 1, 3, "10.0.0.1"), Site("b.test", 0, 3)});
    SiteList& aList = *aProgram.Main().lvwMain;
    aList.ShowRemark(2, "404 File Not Found");
    ASSERT_TRUE(Focused(&aList));
    pList = FindList(aProgram.Main());
    ASSERT_TRUE(pList);
    EXPECT_EQ(NameOf(pList.get()), "The sites");
    EXPECT_STREQ(atk_object_get_description(pList.get()), "Web Address, IP Address, Comments");
    ASSERT_EQ(atk_object_get_n_accessible_children(pList.get()), 2);
    pFirst = RowOf(pList, 0);
    const Object pSecond = RowOf(pList, 1);
    EXPECT_EQ(NameOf(pFirst.get()), "1, http://a.test, 10.0.0.1, Unsuccessful");
    EXPECT_EQ(NameOf(pSecond.get()), "2, http://b.test, 404 File Not Found, Disabled");
    aList.ShowRemark(1, "Site OK");
    EXPECT_EQ(NameOf(pFirst.get()), "1, http://a.test, 10.0.0.1, Unsuccessful, Site OK");
    EXPECT_EQ(RowOf(pList, 0).get(), pFirst.get()) << "a row is known again";
    EXPECT_FALSE(RowOf(pList, 2));

    // Going to a row tells which.
    std::string szTold;
    g_signal_connect(
        pList.get(), "active-descendant-changed",
        G_CALLBACK(+[](AtkObject*, AtkObject* pRow, std::string* pTold) { *pTold = NameOf(pRow); }), &szTold);
    aList.SelectSlot(2);
    EXPECT_TRUE(szTold.starts_with("2, http://b.test")) << szTold;
    EXPECT_TRUE(Has(pSecond.get(), ATK_STATE_SELECTED) && Has(pSecond.get(), ATK_STATE_FOCUSED));
    EXPECT_FALSE(Has(pFirst.get(), ATK_STATE_SELECTED));

    // And the tool may choose one, or ask what is at a place.
    EXPECT_TRUE(atk_selection_add_selection(ATK_SELECTION(pList.get()), 0));
    EXPECT_EQ(aProgram.Slots(), "1* 2");
    EXPECT_EQ(atk_selection_get_selection_count(ATK_SELECTION(pList.get())), 1);
    int lX = 0, lY = 0, lWidth = 0, lHeight = 0;
    atk_component_get_extents(ATK_COMPONENT(pSecond.get()), &lX, &lY, &lWidth, &lHeight, ATK_XY_SCREEN);
    EXPECT_TRUE(aList.GetScreenRect().Contains(wxRect(lX, lY, 100, lHeight)));
    const Object pAt{atk_component_ref_accessible_at_point(ATK_COMPONENT(pList.get()), lX + 40,
                                                           lY + lHeight / 2, ATK_XY_SCREEN)};
    EXPECT_EQ(pAt.get(), pSecond.get());
  }
  // A tool may hold on to what is gone.
  EXPECT_EQ(atk_object_get_n_accessible_children(pList.get()), 0);
  EXPECT_TRUE(Has(pFirst.get(), ATK_STATE_DEFUNCT));
  EXPECT_EQ(NameOf(pFirst.get()), "");
}

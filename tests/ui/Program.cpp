#include "ui/Program.h"

#include "persistence/Settings.h"
#include "support/Stored.h"
#include "ui/common/EventPump.h"
#include "ui/common/TextGlue.h"
#include "ui/main/modMain.h"

Program::Program(const std::vector<SiteRecord>& aStored, Start iStart) : aClock(46096.5) {
  Settings = {};  // as in a process that has just begun
  if (iStart == Start::Later) Stored::Put(ProductKeys::szSetup, "startup", std::int32_t{1});
  // Every site carries its place in the index, so that slots follow the order given.
  for (std::size_t i = 0; i < aStored.size(); ++i)
    modAddress::WriteSiteRecord(aStored[i], static_cast<std::int32_t>(i) + 1);
  modMain::Main();
  pMain = modMain::MainWindow();
  if (!pMain) return;
  for (std::size_t i = 0; i < aStored.size() && lSiteCount == static_cast<std::int32_t>(aStored.size()); ++i)
    modAddress::SetStatus(static_cast<std::int32_t>(i) + 1, aStored[i].Status);
  pMain->Display_lvwMainEx(0);
  EventPump::Run();
  // A window manager gives it the keyboard a moment later, and would take it from what opens meanwhile.
  if (iStart == Start::Later) Until([this] { return pMain->IsActive(); });
}

Program::~Program() {
  if (pMain) modMain::RequestExit();
  Until([this] { return !pMain; });
  Settle();
}

std::string Program::Panel(int iPanel) {
  return FromWx(Main().sbrMain->GetStatusText(iPanel - 1));
}

std::string Program::Slots() {
  std::string szSlots;
  for (std::int32_t i = 0; i < Main().RowCount(); ++i) {
    const std::int32_t lSlot = Main().lvwMain->RowAt(i)->lSlot;
    szSlots += (i > 0 ? " " : "") + std::to_string(lSlot) + (lSlot == Main().SelectedSlot() ? "*" : "");
  }
  return szSlots;
}

std::string Program::RowText(std::int32_t lSlot) {
  const SiteList::Row* pRow = Main().lvwMain->RowOf(lSlot);
  if (!pRow) return "(no row)";
  static const char* const aLights[] = {"none", "Green", "Yellow", "Red"};
  return std::string(pRow->bChecked ? "[x] " : "[ ] ") + pRow->szAddress +
         (pRow->szIP.empty() ? "" : " (" + pRow->szIP + ")") + " " + aLights[pRow->iLight] + ":" +
         (pRow->szLightText.empty() ? "" : " <" + pRow->szLightText + ">") + " " + pRow->szRemark;
}

SiteRecord Site(const std::string& szURL, int lEnabled, int lStatus, const std::string& szIP) {
  return {szIP, szURL, static_cast<std::uint8_t>(lStatus), static_cast<std::uint8_t>(lEnabled), 60, ""};
}

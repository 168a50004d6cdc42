#include "support/RecordingView.h"

#include <algorithm>

bool RecordingView::Has(const std::string& szEvent) const {
  return std::ranges::find(aEvents, szEvent) != aEvents.end();
}

void RecordingView::ShowPanel(int iPanel, const std::string& szText) {
  if (iPanel != 1) aEvents.push_back("panel " + std::to_string(iPanel) + ": " + szText);
}

void RecordingView::ClearRemarks() {
  aRemarks.clear();
  aEvents.emplace_back("remarks cleared");
}

void RecordingView::EnsureRowVisible(std::int32_t lSlot) {
  aEvents.push_back("visible " + std::to_string(lSlot));
}

void RecordingView::ShowLight(std::int32_t lSlot, std::int16_t iIcon) {
  aLights[lSlot] = iIcon;
  aEvents.push_back("light " + std::to_string(lSlot) + ": " + std::to_string(iIcon));
}

void RecordingView::ShowLightText(std::int32_t lSlot, const std::string& szText) {
  aEvents.push_back("light text " + std::to_string(lSlot) + ": " + szText);
}

void RecordingView::ShowRemark(std::int32_t lSlot, const std::string& szText) {
  aRemarks[lSlot] = szText;
  aEvents.push_back("remark " + std::to_string(lSlot) + ": " + szText);
}

void RecordingView::SiteRecorded(std::int32_t lSlot) {
  aEvents.push_back("recorded " + std::to_string(lSlot));
  if (OnRecorded) OnRecorded();
}

void RecordingView::SoundBell() {
  ++lBells;
  aEvents.emplace_back("bell");
}

void RecordingView::EnableCommand(MenuCommand iCommand, bool bEnable) {
  lLocked += bEnable ? -1 : 1;
  if (iCommand == MenuCommand::mH_About) aEvents.emplace_back(bEnable ? "unlocked" : "locked");
}

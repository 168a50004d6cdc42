// PassView: the terminal's view of a pass, which also keeps the files for other tools and can speak to
// programs instead of a person: one JSON object a line, or the one line of a monitoring plugin.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "cli/CliCommands.h"
#include "cli/TerminalView.h"
#include "fleet/PassFiles.h"

class PassView : public TerminalView {
 public:
  // bSinglePass: no other follows.
  PassView(const PassOptions& aGiven, bool bSinglePass);
  std::set<std::int32_t> aSlots;  // the sites that count; empty: all

  // After a pass: writes the files and says what it found. False when a file could not be written.
  bool EndPass();
  // One line, and the plugin's exit code: 0 OK, 1 warning, 2 critical, 3 unknown. szComplaint: what was the
  // matter beside the sites, empty where nothing was.
  int AnswerAsPlugin(const std::string& szComplaint) const;

  void ClearRemarks() override;
  void OpenProgress() override;
  void ShowProgressStatus(const std::string& szText) override;
  void ShowRemark(std::int32_t lSlot, const std::string& szText) override;
  void ShowLightText(std::int32_t lSlot, const std::string& szText) override;
  void SiteRecorded(std::int32_t lSlot) override;
  void ShowMessage(const std::string& szText) override;

 private:
  bool ForPrograms() const { return aOptions.bJson || aOptions.bPlugin; }
  void SayPassBegins() const;
  void SaySite(std::int32_t lSlot) const;
  void SayPassEnds() const;

  struct Found {
    int lUp = 0, lWarning = 0, lDown = 0, lDisabled = 0;
    std::vector<std::string> aDown;
  };
  Found CountSites() const;

  PassOptions aOptions;
  PassFiles aFiles;
  bool bSiteStopped = false;
  double dBegan = 0;  // steady seconds
};

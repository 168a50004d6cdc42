// Answers: what the operator answers to boxes and file dialogs, in order, and what those said. A dialog that
// nobody expects is cancelled and fails the test.
#pragma once

#include <gtest/gtest.h>
#include <wx/filedlg.h>
#include <wx/modalhook.h>
#include <wx/msgdlg.h>
#include <wx/timer.h>

#include <string>
#include <vector>

#include "resources/TextGlue.h"

class Answers : public wxModalDialogHook {
 public:
  // "ok", "yes", "no", "cancel", or the path to choose in a file dialog.
  explicit Answers(std::vector<std::string> aGiven) : aScript(std::move(aGiven)) { Register(); }
  ~Answers() override {
    Unregister();
    EXPECT_EQ(lNext, aScript.size()) << "a dialog did not come";
  }
  // A box's text; a file dialog's title, filter and suggested name, joined by "|".
  std::vector<std::string> aSaid;
  std::vector<std::string> aFolders;  // where each file dialog opened

 protected:
  int Enter(wxDialog* pDialog) override {
    if (pDialog == pShown) return wxID_NONE;  // the toolkit asks once more on the way to showing it
    auto* pFile = dynamic_cast<wxFileDialog*>(pDialog);
    const auto* pBox = dynamic_cast<wxMessageDialog*>(pDialog);
    if (pFile) {
      aSaid.push_back(FromWx(pFile->GetMessage() + "|" + pFile->GetWildcard() + "|" + pFile->GetFilename()));
      aFolders.push_back(FromWx(pFile->GetDirectory()));
    } else {
      aSaid.push_back(FromWx(pBox ? pBox->GetMessage() : pDialog->GetTitle()));
    }
    if (pBox) {
      EXPECT_EQ(pBox->GetCaption(), "Kestrova");
    }
    if (lNext == aScript.size()) {
      ADD_FAILURE() << "not expected: " << aSaid.back();
      return wxID_CANCEL;
    }
    const std::string szAnswer = aScript[lNext++];
    if (szAnswer == "ok") return wxID_OK;
    if (szAnswer == "yes") return wxID_YES;
    if (szAnswer == "no") return wxID_NO;
    if (szAnswer == "cancel" || !pFile) return wxID_CANCEL;
    return Choose(*pFile, ToWx(szAnswer));
  }

 private:
  // GTK's file dialog knows its choice only once it is shown and has read the folder: then it is really
  // shown, and ended as soon as it knows.
  int Choose(wxFileDialog& aDialog, const wxString& szPath) {
    aDialog.SetPath(szPath);
    if (aDialog.GetPath() == szPath) return wxID_OK;
    lTries = 250;
    pShown = &aDialog;
    aTimer.Bind(wxEVT_TIMER, [this, &aDialog, szPath](wxTimerEvent&) {
      if (!aDialog.IsModal() || (--lTries > 0 && aDialog.GetPath() != szPath)) return;
      aTimer.Stop();
      pShown = nullptr;
      EXPECT_EQ(aDialog.GetPath(), szPath);
      aDialog.EndModal(wxID_OK);
    });
    aTimer.Start(20);
    return wxID_NONE;
  }

  wxTimer aTimer;
  int lTries = 0;
  const wxDialog* pShown = nullptr;
  std::vector<std::string> aScript;
  std::size_t lNext = 0;
};

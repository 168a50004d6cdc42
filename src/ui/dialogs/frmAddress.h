// frmAddress: the site editor. It shows the site that AddressRules is set to, lets AddressRules judge and
// correct what is typed, and stores at OK. Runs beside a pass; see frmDialog.
#pragma once

#include <array>
#include <functional>

#include "editing/AddressRules.h"
#include "ui/common/frmDialog.h"

class wxCheckBox;
class wxStaticBoxSizer;
class wxStaticText;

class frmAddress : public frmDialog {
 public:
  // AddressMode, AddressIndex and EditCopy are set. Not shown yet.
  explicit frmAddress(MainHost& aHost);

  wxStaticBoxSizer* fraAddress;
  wxStaticText *lblURL, *lblIPAddress, *lblTimeOut, *lblTimeUnit;
  wxTextCtrl *txtURL, *txtIP1, *txtIP2, *txtIP3, *txtIP4, *txtTimeOut;
  wxCheckBox* chkEnable;

 protected:
  void cmdOK_Click() override;
  bool LeaveField(wxWindow* pLeft, wxWindow* pNext) override;

 private:
  void BuildControls();
  void LayOut();
  void BindOctet(int iBox);

  void txtURL_Change();
  void txtIP_Change(int iBox);
  void txtIP_KeyUp(int iBox, wxKeyEvent& aEvent);
  void txtTimeOut_Change();

  AddressRules::Form ReadForm() const;
  void ShowForm(const AddressRules::Form& aForm);
  wxTextCtrl* Octet(int iBox) const;  // 1 to 4; 0 is the URL
  // Shows a message, then puts the focus into the box with its text selected.
  void Say(const std::string& szText, wxTextCtrl* pBox);

  AddressRules::Flaw iFlawSaid = AddressRules::Flaw::None;
  int lKeyDown = 0;      // the key that went down in an octet box
  int iAutoEntered = 0;  // the octet box that a third digit has led to and nothing was typed in yet
};

#include "ui/dialogs/frmAddress.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include "base/Text.h"
#include "check/CheckEngine.h"
#include "ui/common/TextGlue.h"
#include "ui/common/frmNotice.h"
#include "ui/system/AccessibleName.h"
#include "ui/system/WindowScale.h"

using AddressRules::Flaw;
using AddressRules::OctetKey;
using AddressRules::Verdict;

namespace {

constexpr int lOctets = 4;
constexpr int lURLCharacters = 44;

}  // namespace

frmAddress::frmAddress(MainHost& aHost)
    : frmDialog(aHost, AddressRules::AddressMode == 1 ? IDS_EDIT_SITE : IDS_NEW_SITE,
                HelpContext::lSiteEditor) {
  // The slot that log, terminal and list know the site by.
  if (AddressRules::AddressMode == 1) SetTitle(GetTitle() + " " + std::to_string(AddressRules::AddressIndex));
  BuildControls();
  LayOut();
  ShowForm(AddressRules::OpeningForm());
  txtURL->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { txtURL_Change(); });
  txtTimeOut->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { txtTimeOut_Change(); });
  for (wxTextCtrl* pBox : {txtURL, txtTimeOut})
    pBox->Bind(wxEVT_TEXT_ENTER, [this](wxCommandEvent&) {
      if (!Leaving()) cmdOK_Click();
    });
  for (int iBox = 1; iBox <= lOctets; ++iBox)
    BindOctet(iBox);
  chkEnable->Bind(wxEVT_KEY_DOWN, [](wxKeyEvent& aEvent) {
    aEvent.Skip();
    const int lKey = aEvent.GetKeyCode();
    if (lKey == WXK_LEFT || lKey == WXK_RIGHT || lKey == WXK_TAB) wxBell();
  });
  txtURL->SetFocus();
  txtURL->SelectAll();
}

void frmAddress::BuildControls() {
  fraAddress = new wxStaticBoxSizer(wxVERTICAL, this, ResText(IDS_SITE_ADDRESS));
  wxStaticBox* pBox = fraAddress->GetStaticBox();
  // Created in tab order, each label before its field: that is how a screen reader finds the name.
  lblURL = new wxStaticText(pBox, wxID_ANY, ResText(IDS_URL));
  const auto NewText = [&](const char* szName, std::int32_t lLabel, std::int32_t lTip) {
    auto* pText = new wxTextCtrl(pBox, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                                 wxTE_PROCESS_ENTER, wxDefaultValidator, szName);
    pText->SetHelpText(ResText(lLabel));
    if (lTip != 0) pText->SetToolTip(ResText(lTip));
    SelectOnFocus(pText);
    return pText;
  };
  txtURL = NewText("txtURL", IDS_URL, IDS_TIP_URL);
  lblIPAddress = new wxStaticText(pBox, wxID_ANY, ResText(IDS_IP_ADDRESS));
  txtIP1 = NewText("txtIP1", IDS_IP_ADDRESS, IDS_TIP_IP);
  txtIP2 = NewText("txtIP2", IDS_IP_ADDRESS, IDS_TIP_IP);
  txtIP3 = NewText("txtIP3", IDS_IP_ADDRESS, IDS_TIP_IP);
  txtIP4 = NewText("txtIP4", IDS_IP_ADDRESS, IDS_TIP_IP);
  for (int iBox = 1; iBox <= lOctets; ++iBox)
    AccessibleName::Set(*Octet(iBox), ToWx(FillResString(IDS_OCTET, {std::to_string(iBox)})));
  lblTimeOut = new wxStaticText(pBox, wxID_ANY, ResText(IDS_TIME_OUT));
  txtTimeOut = NewText("txtTimeOut", IDS_TIME_OUT, 0);
  lblTimeUnit = new wxStaticText(pBox, wxID_ANY, ResText(IDS_SECONDS));
  chkEnable = new wxCheckBox(pBox, wxID_ANY, ResText(IDS_ENABLE));
  // Else the label before it would be taken for its name.
  AccessibleName::Set(*chkEnable, ResText(IDS_ENABLE));
  lblURL->SetToolTip(ResText(IDS_TIP_URL));
  lblIPAddress->SetToolTip(ResText(IDS_TIP_IP));
  chkEnable->SetToolTip(ResText(IDS_TIP_ENABLE));
}

void frmAddress::LayOut() {
  const auto Twips = [this](int lTwips) { return WindowScale::FromTwips(*this, lTwips); };
  wxStaticBox* pBox = fraAddress->GetStaticBox();
  FitTo(txtURL, wxString('n', lURLCharacters));
  FitTo(txtTimeOut, "00000");
  auto* pOctets = new wxBoxSizer(wxHORIZONTAL);
  for (int iBox = 1; iBox <= lOctets; ++iBox) {
    FitTo(Octet(iBox), "0000");
    if (iBox > 1)
      pOctets->Add(new wxStaticText(pBox, wxID_ANY, "."),
                   wxSizerFlags().Bottom().Border(wxLEFT | wxRIGHT | wxBOTTOM, Twips(45)));
    pOctets->Add(Octet(iBox), wxSizerFlags().CentreVertical());
  }
  auto* pTimeOut = new wxBoxSizer(wxHORIZONTAL);
  pTimeOut->Add(txtTimeOut, wxSizerFlags().CentreVertical());
  pTimeOut->Add(lblTimeUnit, wxSizerFlags().CentreVertical().Border(wxLEFT, Twips(90)));

  auto* pGrid = new wxFlexGridSizer(2, Twips(120), Twips(90));
  pGrid->AddGrowableCol(1);
  const auto aLabel = wxSizerFlags().CentreVertical().Right();
  pGrid->Add(lblURL, aLabel);
  pGrid->Add(txtURL, wxSizerFlags(1).Expand());
  pGrid->Add(lblIPAddress, aLabel);
  pGrid->Add(pOctets);
  pGrid->Add(lblTimeOut, aLabel);
  pGrid->Add(pTimeOut);
  pGrid->AddSpacer(0);
  pGrid->Add(chkEnable);
  fraAddress->Add(pGrid, wxSizerFlags(1).Expand().Border(wxALL, Twips(150)));

  auto* pColumn = new wxBoxSizer(wxVERTICAL);
  pColumn->Add(fraAddress, wxSizerFlags(1).Expand().Border(wxALL, Twips(150)));
  pColumn->Add(MakeButtons(), wxSizerFlags().Right().Border(wxLEFT | wxRIGHT | wxBOTTOM, Twips(150)));
  SetSizerAndFit(pColumn);
  CentreOnParent();
}

wxTextCtrl* frmAddress::Octet(int iBox) const {
  wxTextCtrl* const aBoxes[] = {txtURL, txtIP1, txtIP2, txtIP3, txtIP4};
  return aBoxes[iBox];
}

void frmAddress::BindOctet(int iBox) {
  wxTextCtrl* pBox = Octet(iBox);
  pBox->Bind(wxEVT_TEXT, [this, iBox](wxCommandEvent&) { txtIP_Change(iBox); });
  pBox->Bind(wxEVT_TEXT_ENTER, [](wxCommandEvent&) {});  // goes on when the key comes up
  pBox->Bind(wxEVT_KEY_DOWN, [this](wxKeyEvent& aEvent) {
    lKeyDown = aEvent.GetKeyCode();
    // The toolkit would move the focus at once, by the place of the boxes on the screen.
    aEvent.Skip(lKeyDown != WXK_UP && lKeyDown != WXK_DOWN);
  });
  pBox->Bind(wxEVT_KEY_UP, [this, iBox](wxKeyEvent& aEvent) { txtIP_KeyUp(iBox, aEvent); });
  // The dot that is typed from habit after three digits, when the next box has the focus already.
  pBox->Bind(wxEVT_CHAR, [this, iBox](wxKeyEvent& aEvent) {
    const bool bHabit = iAutoEntered == iBox && aEvent.GetUnicodeKey() == '.';
    iAutoEntered = 0;
    aEvent.Skip(!bHabit);
  });
  pBox->Bind(wxEVT_KILL_FOCUS, [this, iBox](wxFocusEvent& aEvent) {
    aEvent.Skip();
    if (iAutoEntered == iBox) iAutoEntered = 0;
    lKeyDown = 0;
  });
}

void frmAddress::txtURL_Change() {
  const auto aChange = AddressRules::ChangeURL(Get(txtURL));
  Put(txtURL, aChange.szText);
  const auto iFlaw = AddressRules::FlawOf(aChange.szText);
  const bool bNew = iFlaw != Flaw::None && iFlaw != iFlawSaid;
  iFlawSaid = iFlaw;
  if (!aChange.bAgent && !bNew) return;
  const auto lHint = iFlaw == Flaw::Https ? IDS_HTTPS_HINT : IDS_BACKSLASH_HINT;
  CallAfter([this, lMessage = aChange.bAgent ? IDS_NO_AGENT : lHint] {
    if (Leaving() || !IsEnabled()) return;
    new frmNotice(this, LoadResString(lMessage), [this] { FocusAtEnd(txtURL); });
  });
}

void frmAddress::txtIP_Change(int iBox) {
  const bool bDot = Get(Octet(iBox)).find('.') != std::string::npos;
  const auto aChange = AddressRules::ChangeOctet(Get(Octet(iBox)));
  Put(Octet(iBox), aChange.szText);
  if (aChange.bBeep) wxBell();
  if (!aChange.bNext || iBox == lOctets || !Octet(iBox)->HasFocus()) return;
  Octet(iBox + 1)->SetFocus();
  iAutoEntered = bDot ? 0 : iBox + 1;
}

void frmAddress::txtIP_KeyUp(int iBox, wxKeyEvent& aEvent) {
  aEvent.Skip();
  const int lKey = aEvent.GetKeyCode();
  // A key that went down elsewhere, in a box that was closed with Enter for one, is not for this field.
  if (lKey != lKeyDown || aEvent.HasAnyModifiers()) return;
  OctetKey iKey = OctetKey::Enter;
  switch (lKey) {
    case WXK_RETURN:
    case WXK_NUMPAD_ENTER:
      break;
    case WXK_LEFT:
      iKey = OctetKey::Left;
      break;
    case WXK_UP:
      iKey = OctetKey::Up;
      break;
    case WXK_RIGHT:
      iKey = OctetKey::Right;
      break;
    case WXK_DOWN:
      iKey = OctetKey::Down;
      break;
    default:
      return;
  }
  const int iTo = AddressRules::MoveFromOctet(iBox, iKey);
  if (iTo >= 0) Octet(iTo)->SetFocus();
}

void frmAddress::txtTimeOut_Change() {
  const auto aChange = AddressRules::ChangeTimeOut(Get(txtTimeOut));
  Put(txtTimeOut, aChange.szText);
  if (aChange.bBeep) wxBell();
}

bool frmAddress::LeaveField(wxWindow* pLeft, wxWindow*) {
  if (pLeft != txtTimeOut) return true;
  const auto aAnswer = AddressRules::LeaveTimeOut(Get(txtTimeOut));
  if (aAnswer.lMessage == 0) return true;
  Put(txtTimeOut, aAnswer.szText);
  Say(LoadResString(aAnswer.lMessage), txtTimeOut);
  return false;
}

void frmAddress::Say(const std::string& szText, wxTextCtrl* pBox) {
  new frmNotice(this, szText, [pBox] {
    pBox->SetFocus();
    pBox->SelectAll();
  });
}

AddressRules::Form frmAddress::ReadForm() const {
  return {Get(txtURL),
          {Get(txtIP1), Get(txtIP2), Get(txtIP3), Get(txtIP4)},
          Get(txtTimeOut),
          chkEnable->GetValue()};
}

void frmAddress::ShowForm(const AddressRules::Form& aForm) {
  Put(txtURL, aForm.szURL);
  for (int iBox = 1; iBox <= lOctets; ++iBox)
    Put(Octet(iBox), aForm.aOctets[static_cast<std::size_t>(iBox) - 1]);
  Put(txtTimeOut, aForm.szTimeOut);
  chkEnable->SetValue(aForm.bEnabled);
}

void frmAddress::cmdOK_Click() {
  auto aForm = ReadForm();
  SiteRecord aRecord;
  const auto aVerdict = AddressRules::Check(aForm, aRecord);
  ShowForm(aForm);
  if (!aVerdict.szMessage.empty()) {
    Say(aVerdict.szMessage, aVerdict.iField == Verdict::Field::TimeOut ? txtTimeOut : txtURL);
    return;
  }
  const auto aResult = AddressRules::Store(aRecord);
  Host.SeeThatAllIsStored();
  if (aResult.bAddressChanged) Host.Engine().DropRequest(aResult.lSlot);
  Host.Display_lvwMain(aResult.lSlot);
  Leave();
}

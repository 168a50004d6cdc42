// AddressRules: what the site editor accepts, how it corrects what is typed, and how a finished site is
// stored. No window: the editor asks here and shows the answer. It owns what an editor is opened with.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "persistence/modAddress.h"

namespace AddressRules {

// Set by the command that opens the editor.
extern std::int16_t AddressMode;          // 0 a new site, 1 a site that is edited
extern std::int32_t AddressIndex;         // the slot to be written
extern std::vector<SiteRecord> EditCopy;  // one element: the edited site as it was

// What stands in the editor's fields.
struct Form {
  std::string szURL;
  std::array<std::string, 4> aOctets;
  std::string szTimeOut;
  bool bEnabled = false;
};
Form OpeningForm();

// A text after a change, as it has to stand in its box.
struct UrlChange {
  std::string szText;  // without "http:", "http:/" and "http://", and without control characters
  bool bAgent;         // an agent was removed: say so
};
UrlChange ChangeURL(const std::string& szText);

// Why an address can never be asked as it stands: a scheme that is not asked, or a backslash where the
// server's name ends. It is stored all the same; whoever enters it is told.
enum class Flaw { None, Https, Backslash };
Flaw FlawOf(const std::string& szURL);

struct OctetChange {
  std::string szText;  // digits only
  bool bBeep;
  bool bNext;  // go on to the next box
};
OctetChange ChangeOctet(const std::string& szText);

struct TimeOutChange {
  std::string szText;  // empty or a plain number
  bool bBeep;
};
TimeOutChange ChangeTimeOut(const std::string& szText);

// Where a key that is released in octet box 1 to 4 leads: an octet box, 0 for the URL, -1 for nowhere.
enum class OctetKey { Enter, Left, Up, Right, Down };
int MoveFromOctet(int iBox, OctetKey iKey);

// A time-out as it has to stand when its box is left. lMessage 0: it was fine.
struct TimeOutAnswer {
  std::string szText;
  std::int32_t lMessage;
};
TimeOutAnswer LeaveTimeOut(const std::string& szText);

// What OK says to the form. The form is changed as the operator shall see it.
struct Verdict {
  enum class Field { None, URL, TimeOut };
  std::string szMessage;  // empty: accepted
  Field iField = Field::None;
};
// Accepted: aRecord is what Store takes.
Verdict Check(Form& aForm, SiteRecord& aRecord);

// No further site can be added.
bool ListIsFull();

// Writes an accepted site into the list and the registry. An edited site keeps its number even if its key
// changes; the new key is written before the old one goes.
struct StoreResult {
  std::int32_t lSlot;
  bool bAddressChanged;  // an edited site got another URL or IP: a request in flight asks the old one
};
StoreResult Store(const SiteRecord& aRecord);

}  // namespace AddressRules

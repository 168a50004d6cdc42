// OptionsRules: what the options dialog accepts, in which order it checks, how it corrects, and what OK
// stores. No window: the dialog asks here, shows what it is told and hands the operator's answer back.
#pragma once

#include <cstdint>
#include <string>

#include "persistence/Settings.h"

namespace OptionsRules {

inline constexpr std::int32_t lMostInterval = 1425;  // minutes from pass to pass

// The fields that are checked or filtered.
enum class Field { None, TimerInterval, TimerWarning, MgrEmail, SMTPPort, LogPath, MaxLogFiles };

// What stands in the dialog.
struct Form {
  std::string szTimerInterval, szTimerWarning;
  std::string szMgrEmail, szMgrName, szSMTP, szSMTPPort;
  std::int16_t LogPeriod = 1;  // 0 none, 1 daily, 2 weekly
  std::string szLogPath, szMaxLogFiles;
  bool bDiskMaxLogFiles = false;
  bool bDiskNoLogDisabled = false;
  bool bCookieDisable = false;

  // Which controls of the Logs page can be used: the folder and both boxes, and the count.
  bool FolderEnabled() const { return LogPeriod != 0; }
  bool CountEnabled() const { return LogPeriod != 0 && bDiskMaxLogFiles; }
};

// A number field after a change. Only digits may stand in it: any other change is taken back.
struct Change {
  bool bRejected;
  std::int32_t lMessage;  // of a rejected change; 0: a bell is enough
};
Change ChangeNumber(Field iField, const std::string& szNew);

// What looks wrong in the mail settings, said beside them; 0 for nothing. Nothing is refused.
std::int32_t MailHint(const Form& aForm);

enum class Buttons { OK, YesNo, YesNoCancel };
enum class Answer { OK, Yes, No, Cancel };

// What a check found. Empty message: nothing.
struct Finding {
  std::string szMessage;
  std::string szMore = {};  // what was done about it; may be empty
  Buttons iButtons = Buttons::OK;
  bool bSelectAll = false;  // the field's text is to be selected
  // The two timer fields disagree. Either of them may be the wrong one, so going to the other is allowed.
  bool bRelation = false;
};

// One dialog's checks. They remember what the operator has insisted on, so that it is asked once.
class Checks {
 public:
  explicit Checks(const Form& aOpening);

  // The field is left. It is corrected in the form.
  Finding Leave(Field iField, Form& aForm);
  // The same at OK, where nothing may pass that would lose logs silently.
  Finding Confirm(Field iField, Form& aForm);

  // The operator's answer to a finding; bConfirm: to one of OK. True: the field may be left. aFurther:
  // another message to show; the field then keeps the focus.
  bool Answered(Field iField, bool bConfirm, Answer iAnswer, Form& aForm, Finding& aFurther);

 private:
  static Finding LeaveLogPath(Form& aForm);
  Finding LeaveMaxLogFiles(Form& aForm, bool bConfirm) const;
  Finding Check(Field iField, bool bConfirm, Form& aForm) const;

  const std::int32_t lOpeningFiles;  // stored already: asked about when the field is left, not at OK
  std::int32_t lAcceptedFiles = 0;   // a high number that was insisted on
};

// The checks of OK, in tab order.
inline constexpr Field aConfirmOrder[] = {Field::TimerInterval, Field::TimerWarning, Field::MgrEmail,
                                          Field::LogPath, Field::MaxLogFiles};

Form OpeningForm(const SettingsRecord& aSettings);
SettingsRecord RecordOf(const Form& aForm);

// Stores and writes every setting. True when a timer value differs from that of the settings the dialog was
// opened with: the next pass then comes after the warning interval from now.
bool Store(const Form& aForm, const SettingsRecord& aOpening);

}  // namespace OptionsRules

#include <gtest/gtest.h>

#include <map>

#include "base/Strings.h"
#include "editing/OptionsRules.h"

using namespace OptionsRules;
using enum Field;

namespace {

const std::map<Field, std::string Form::*> aTextOf = {{TimerInterval, &Form::szTimerInterval},
                                                      {TimerWarning, &Form::szTimerWarning},
                                                      {MgrEmail, &Form::szMgrEmail},
                                                      {MaxLogFiles, &Form::szMaxLogFiles}};

Form FormWith(const std::string& szInterval, const std::string& szWarning) {
  Form aForm;
  aForm.szTimerInterval = szInterval;
  aForm.szTimerWarning = szWarning;
  aForm.szMaxLogFiles = "7";
  aForm.bDiskMaxLogFiles = true;
  return aForm;
}

TEST(OptionsRulesTest, AFieldIsMendedOrRefusedAsItIsLeft) {
  const struct {
    Field iField;
    const char *szText, *szOther;  // the other one of the two timers
    int lMessage;
    const char* szLeft;
  } aCases[] = {
      {TimerInterval, "60", "15", 0, "60"},
      {TimerInterval, "3", "2", IDS_INTERVAL_RANGE, "5"},
      {TimerInterval, "2000", "15", IDS_INTERVAL_RANGE, "1425"},
      {TimerInterval, "30", "30", 0, "30"},
      {TimerInterval, "30", "70", IDS_INTERVAL_RELATION, "30"},
      {TimerInterval, "3", "15", IDS_INTERVAL_RELATION, "3"},
      {TimerInterval, "", "", IDS_INTERVAL_RANGE, "5"},
      {TimerInterval, "99999999999", "15", IDS_INTERVAL_RANGE, "1425"},
      {TimerWarning, "70", "100", IDS_WARNING_RANGE, "60"},
      {TimerWarning, "", "100", IDS_WARNING_RANGE, "5"},
      {TimerWarning, "30", "30", 0, "30"},
      {TimerWarning, "70", "30", IDS_WARNING_RELATION, "70"},
      {MgrEmail, "", "", 0, ""},
      {MgrEmail, "a@b.c", "", 0, "a@b.c"},
      {MgrEmail, "a@b", "", IDS_EMAIL_INVALID, "a@b"},
      {MgrEmail, "a.b", "", IDS_EMAIL_INVALID, "a.b"},
      {MaxLogFiles, "", "", IDS_FILES_MINIMUM, "1"},
      {MaxLogFiles, "25", "", 0, "25"},
      {MaxLogFiles, "26", "", IDS_FILES_MANY, "26"},
      {MaxLogFiles, "3000", "", IDS_FILES_MANY, "3000"},
      {MaxLogFiles, "5000", "", IDS_FILES_MAXIMUM, "3000"},
  };
  for (const auto& aCase : aCases) {
    auto aForm = FormWith(aCase.szOther, aCase.szOther);
    Checks aChecks(aForm);
    auto& szText = aForm.*aTextOf.at(aCase.iField);
    szText = aCase.szText;
    EXPECT_EQ(aChecks.Leave(aCase.iField, aForm).szMessage, LoadResString(aCase.lMessage)) << aCase.szText;
    EXPECT_EQ(szText, aCase.szLeft);
  }
}

}  // namespace

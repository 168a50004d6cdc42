#include <gtest/gtest.h>

#include <random>

#include "check/Schedule.h"
#include "dialogs/OptionsRules.h"
#include "platform/Files.h"
#include "platform/Text.h"
#include "resources/Strings.h"
#include "support/Stored.h"
#include "support/TestHome.h"

using namespace OptionsRules;
using Stored::Get;

namespace {

const char szIntervalRelation[] = "The Auto-Check Interval must be greater than the Warning Alert Interval.";
const char szIntervalRange[] = "Time Interval has to be between 5 minutes and 1425 minutes.";
const char szWarningRelation[] = "The Warning Interval must be less than the Timer Interval.";
const char szWarningRange[] = "Please enter an integer from 5 to 60.";
const char szTooFew[] = "A minimum of 1 is required in the maximum log fiels field.";
const char szTooMany[] = "A maximum of 3000 can be set in this field.";
const char szMany[] =
    "A number beyond 25 is very high and defeats the purpose of disk conservation.\r\n"
    "Would you like to change the number to a smaller number?";

Form FormWith(const std::string& szInterval, const std::string& szWarning) {
  Form aForm;
  aForm.szTimerInterval = szInterval;
  aForm.szTimerWarning = szWarning;
  aForm.szMaxLogFiles = "7";
  aForm.bDiskMaxLogFiles = true;
  return aForm;
}

TEST(OptionsRulesTest, TimersRelationFirstThenBounds) {
  const struct {
    const char *szInterval, *szWarning;
    Field iField;
    const char *szMessage, *szLeft;
  } aCases[] = {
      {"60", "15", Field::TimerInterval, "", "60"},
      {"3", "2", Field::TimerInterval, szIntervalRange, "5"},
      {"2000", "15", Field::TimerInterval, szIntervalRange, "1425"},
      {"1425", "15", Field::TimerInterval, "", "1425"},
      {"30", "30", Field::TimerInterval, "", "30"},
      {"30", "70", Field::TimerInterval, szIntervalRelation, "30"},
      {"3", "15", Field::TimerInterval, szIntervalRelation, "3"},
      {"", "", Field::TimerInterval, szIntervalRange, "5"},
      {"99999999999", "15", Field::TimerInterval, szIntervalRange, "1425"},
      {"100", "70", Field::TimerWarning, szWarningRange, "60"},
      {"100", "4", Field::TimerWarning, szWarningRange, "5"},
      {"100", "", Field::TimerWarning, szWarningRange, "5"},
      {"30", "30", Field::TimerWarning, "", "30"},
      {"30", "70", Field::TimerWarning, szWarningRelation, "70"},
      {"3", "4", Field::TimerWarning, szWarningRelation, "4"},
      {"100", "60", Field::TimerWarning, "", "60"},
  };
  for (const auto& aCase : aCases) {
    auto aForm = FormWith(aCase.szInterval, aCase.szWarning);
    Checks aChecks(aForm);
    EXPECT_EQ(aChecks.Leave(aCase.iField, aForm).szMessage, aCase.szMessage)
        << aCase.szInterval << " " << aCase.szWarning;
    EXPECT_EQ(aCase.iField == Field::TimerInterval ? aForm.szTimerInterval : aForm.szTimerWarning,
              aCase.szLeft)
        << aCase.szInterval << " " << aCase.szWarning;
  }
}

TEST(OptionsRulesTest, MailAndCount) {
  const struct {
    const char* szEmail;
    bool bFine;
  } aMails[] = {{"", true},     {"a@b.c", true}, {"a.b@c", true}, {"a@b", false},
                {"a.b", false}, {" ", false},    {"@.", true}};
  for (const auto& aCase : aMails) {
    auto aForm = FormWith("60", "15");
    aForm.szMgrEmail = aCase.szEmail;
    const auto aFinding = Checks(aForm).Leave(Field::MgrEmail, aForm);
    EXPECT_EQ(aFinding.szMessage, aCase.bFine ? "" : "Please enter a valid e-mail address.") << aCase.szEmail;
    EXPECT_EQ(aFinding.bSelectAll, !aCase.bFine);
    EXPECT_EQ(aForm.szMgrEmail, aCase.szEmail);
  }
  const struct {
    const char *szCount, *szMessage, *szLeft;
  } aCounts[] = {{"0", szTooFew, "1"},       {"", szTooFew, "1"},  {"1", "", "1"},
                 {"25", "", "25"},           {"26", szMany, "26"}, {"3000", szMany, "3000"},
                 {"5000", szTooMany, "3000"}};
  for (const auto& aCase : aCounts) {
    auto aForm = FormWith("60", "15");
    Checks aChecks(aForm);
    aForm.szMaxLogFiles = aCase.szCount;
    const auto aFinding = aChecks.Leave(Field::MaxLogFiles, aForm);
    EXPECT_EQ(aFinding.szMessage, aCase.szMessage) << aCase.szCount;
    EXPECT_EQ(aForm.szMaxLogFiles, aCase.szLeft) << aCase.szCount;
    EXPECT_EQ(aFinding.iButtons == Buttons::YesNo, aCase.szMessage == std::string(szMany));
    // What cannot be used cannot be corrected either.
    aForm.szMaxLogFiles = aCase.szCount;
    aForm.bDiskMaxLogFiles = false;
    EXPECT_EQ(aChecks.Confirm(Field::MaxLogFiles, aForm).szMessage, "");
  }
}

TEST(OptionsRulesTest, ANumberThatWasInsistedOnIsNotAskedAgain) {
  auto aForm = FormWith("60", "15");
  Checks aChecks(aForm);
  Finding aFurther;
  aForm.szMaxLogFiles = "100";
  EXPECT_EQ(aChecks.Leave(Field::MaxLogFiles, aForm).szMessage, szMany);
  EXPECT_FALSE(aChecks.Answered(Field::MaxLogFiles, Answer::Yes, aForm, aFurther));
  EXPECT_EQ(aChecks.Leave(Field::MaxLogFiles, aForm).szMessage, szMany);
  EXPECT_TRUE(aChecks.Answered(Field::MaxLogFiles, Answer::No, aForm, aFurther));
  EXPECT_EQ(aChecks.Confirm(Field::MaxLogFiles, aForm).szMessage, "");
  aForm.szMaxLogFiles = "101";
  EXPECT_EQ(aChecks.Confirm(Field::MaxLogFiles, aForm).szMessage, szMany);
  Checks aNext(aForm);
  EXPECT_EQ(aNext.Confirm(Field::MaxLogFiles, aForm).szMessage, "") << "stored already";
}

TEST(OptionsRulesTest, LogFolder) {
  const TestHome aHome;
  auto aForm = FormWith("60", "15");
  Checks aChecks(aForm);
  Finding aFurther;
  const auto Question = [](const std::string& szPath) {
    return "The folder " + szPath + " does not exist.\r\n\r\nCreate it now?";
  };
  aForm.szLogPath = aHome.Folder() + "\r\n";
  EXPECT_EQ(aChecks.Leave(Field::LogPath, aForm).szMessage, "");
  EXPECT_EQ(aForm.szLogPath, aHome.Folder());

  const std::string szDeep = aHome.Path("one") + Files::chSeparator + "two";
  aForm.szLogPath = " " + szDeep;
  const auto aFinding = aChecks.Leave(Field::LogPath, aForm);
  EXPECT_EQ(aFinding.szMessage, Question(szDeep));
  EXPECT_EQ(aFinding.iButtons, Buttons::YesNoCancel);
  EXPECT_FALSE(aChecks.Answered(Field::LogPath, Answer::Cancel, aForm, aFurther));
  EXPECT_EQ(aChecks.Confirm(Field::LogPath, aForm).szMessage, Question(szDeep));
  EXPECT_TRUE(aChecks.Answered(Field::LogPath, Answer::No, aForm, aFurther));
  EXPECT_EQ(aChecks.Confirm(Field::LogPath, aForm).szMessage, "") << "the operator does not want it made";
  EXPECT_FALSE(Files::FolderExists(szDeep));
  EXPECT_TRUE(aChecks.Answered(Field::LogPath, Answer::Yes, aForm, aFurther));
  EXPECT_TRUE(Files::FolderExists(szDeep));

  aHome.Write("file", "x");
  const struct {
    std::string szPath, szConfirm, szCreated;
  } aCases[] = {
      {"", "Please enter the folder to store the log files.",
       "Please enter the folder to store the log files."},
      {"no/such", "no/such does not name a folder from its drive or root on.\r\nPlease enter the whole path.",
       "no/such does not name a folder from its drive or root on.\r\nPlease enter the whole path."},
      {aHome.Path("file"), Question(aHome.Path("file")),
       "The folder " + aHome.Path("file") +
           " could not be created.\r\nPlease check the path and that you may write there, or choose another "
           "folder."},
  };
  for (const auto& aCase : aCases) {
    aForm.szLogPath = aCase.szPath;
    EXPECT_EQ(aChecks.Leave(Field::LogPath, aForm).szMessage, Question(aCase.szPath));
    EXPECT_EQ(aChecks.Confirm(Field::LogPath, aForm).szMessage, aCase.szConfirm);
    EXPECT_FALSE(aChecks.Answered(Field::LogPath, Answer::Yes, aForm, aFurther));
    EXPECT_EQ(aFurther.szMessage, aCase.szCreated);
    aForm.LogPeriod = 0;
    EXPECT_EQ(aChecks.Confirm(Field::LogPath, aForm).szMessage, "") << "no log, no folder";
    aForm.LogPeriod = 1;
  }
}

TEST(OptionsRulesTest, OnlyDigitsAreLetIn) {
  const struct {
    Field iField;
    const char* szNew;
    bool bRejected;
    std::int32_t lMessage;
  } aCases[] = {{Field::TimerInterval, "12", false, 0},
                {Field::TimerInterval, "", false, 0},
                {Field::TimerInterval, "1x", true, 0},
                {Field::SMTPPort, "-1", true, 0},
                {Field::TimerWarning, "1.5", true, IDS_WARNING_RANGE},
                {Field::MaxLogFiles, " 7", true, IDS_FILES_INTEGER},
                {Field::MaxLogFiles, "\xD9\xA1", true, IDS_FILES_INTEGER}};
  for (const auto& aCase : aCases) {
    const auto aChange = ChangeNumber(aCase.iField, aCase.szNew);
    EXPECT_EQ(aChange.bRejected, aCase.bRejected) << aCase.szNew;
    EXPECT_EQ(aChange.lMessage, aCase.lMessage) << aCase.szNew;
  }
}

TEST(OptionsRulesTest, AnyInputEndsInBounds) {
  std::mt19937 aRandom(4711);
  const auto Number = [&] {
    std::string szNumber;
    for (auto lLength = aRandom() % 12; lLength > 0; --lLength)
      szNumber += static_cast<char>('0' + aRandom() % 10);
    return aRandom() % 2 ? szNumber : std::to_string(aRandom() % 90);
  };
  int lAccepted = 0;
  for (int i = 0; i < 20000; ++i) {
    auto aForm = FormWith(Number(), Number());
    aForm.szMaxLogFiles = Number();
    aForm.szSMTPPort = Number();
    aForm.bDiskMaxLogFiles = aRandom() % 2 == 0;
    aForm.LogPeriod = 0;
    Checks aChecks(aForm);
    // An operator who presses OK again after each correction comes through, or is told of the relation.
    std::string szLast;
    for (int lTry = 0; lTry < 5; ++lTry) {
      szLast.clear();
      for (const Field iField : aConfirmOrder)
        if (szLast.empty()) szLast = aChecks.Confirm(iField, aForm).szMessage;
    }
    if (!szLast.empty()) {
      ASSERT_EQ(szLast, szIntervalRelation);
      continue;
    }
    ++lAccepted;
    const auto aRecord = RecordOf(aForm);
    ASSERT_TRUE(aRecord.Interval >= 5 && aRecord.Interval <= 1425);
    ASSERT_TRUE(aRecord.Warning >= 5 && aRecord.Warning <= 60 && aRecord.Warning <= aRecord.Interval);
    ASSERT_TRUE(aRecord.MaxLogFiles >= 1 && aRecord.MaxLogFiles <= 3000);
    ASSERT_GE(aRecord.SMTPPort, 0);
  }
  EXPECT_GT(lAccepted, 5000);
}

TEST(OptionsRulesTest, OpensWithTheSettingsAndStoresThem) {
  const TestHome aHome;
  const TestClock aClock(JoinDateTime({2026, 11, 21, 17, 0, 0}));
  LoadSettings();
  Settings.AllowType = 0;  // as in a first run
  Settings.LogPeriod = 9;
  Settings.DiskLogMaxFiles = 5;
  auto aForm = OpeningForm();
  EXPECT_EQ(
      aForm.szTimerInterval + " " + aForm.szTimerWarning + " " + aForm.szSMTPPort + " " + aForm.szMaxLogFiles,
      "60 15 25 7");
  EXPECT_EQ(aForm.LogPeriod, 1);
  EXPECT_FALSE(aForm.bCookieDisable);
  EXPECT_TRUE(aForm.bDiskMaxLogFiles && aForm.CountEnabled());

  const auto dtBefore = NextCheckTime;
  aForm.szMgrEmail = "a@b.c\n";
  aForm.szMgrName = "Ann";
  aForm.szSMTP = "mail.test";
  aForm.szSMTPPort = "";
  aForm.szMaxLogFiles = "";
  aForm.LogPeriod = 2;
  aForm.bDiskMaxLogFiles = aForm.bDiskNoLogDisabled = false;
  aForm.bCookieDisable = true;
  EXPECT_FALSE(Store(aForm, 60, 15));
  EXPECT_EQ(NextCheckTime, dtBefore) << "the schedule is only set anew by another interval";
  const struct {
    const char *szKey, *szName, *szValue;
  } aStored[] = {{ProductKeys::szTimer, "Interval", "60"},      {ProductKeys::szTimer, "Warning", "15"},
                 {ProductKeys::szManager, "Email", "a@b.c"},    {ProductKeys::szManager, "Name", "Ann"},
                 {ProductKeys::szManager, "SMTP", "mail.test"}, {ProductKeys::szManager, "SMTPPort", "0"},
                 {ProductKeys::szLog, "LogPeriod", "2"},        {ProductKeys::szLog, "MaxLogFiles", "1"},
                 {ProductKeys::szLog, "DiskLogMaxFiles", "0"},  {ProductKeys::szLog, "DiskLogDisabled", "0"},
                 {ProductKeys::szAllowCookie, "AllowType", "2"}};
  for (const auto& aValue : aStored)
    EXPECT_EQ(Get(aValue.szKey, aValue.szName), aValue.szValue) << aValue.szName;
  aForm.szTimerWarning = "20";
  EXPECT_TRUE(Store(aForm, 60, 15));
  EXPECT_EQ(Schedule::NextPanelText(), "Next: 5:20:00 PM");
}

}  // namespace

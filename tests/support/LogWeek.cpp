#include "support/LogWeek.h"

namespace LogWeek {

Script& Script::Start(bool bManual) {
  return Raw("[START CHECK: " + std::string(bManual ? "MANUAL" : "AUTO") + " - " + FormatGeneral(dtNow) +
             "]\r\n");
}

Script& Script::Entry(const std::string& szAddress, const std::string& szStatus, int lClass,
                      const std::string& szComment, int lSeconds) {
  szText += FormatGeneral(dtNow) + "," + szAddress + "," + szStatus + "," + std::to_string(lSeconds % 60) +
            "," + szComment + "," + std::to_string(lClass) + "\r\n";
  dtNow = AddSeconds(dtNow, lSeconds);
  return *this;
}

Script& Script::Raw(const std::string& szBytes) {
  szText += szBytes;
  return *this;
}

Script& Script::After(double dMinutes) {
  dtNow = AddMinutes(dtNow, dMinutes);
  return *this;
}

namespace {

// One site's failures: passes from lFirst to lLast.
struct Failure {
  const char* szSite;
  int lFirst, lLast;
  const char* szText;
  const char* szIpText;  // nullptr: no IP check
  const char* szMail;
};

constexpr Failure aFailures[] = {
    {"www.example.com", 60, 61, "503 Service Unavailable", nullptr, "E-mail Notification Sent"},
    {"shop.example.com/basket", 31, 52, "500 Internal Server Error", "Site OK", "E-mail Notification Sent"},
    {"shop.example.com/basket", 130, 130, "Request Timed-Out", nullptr, ""},
    {"intranet.example.com:8080/status", 200, 260, "ERROR:  7 Could not connect to server",
     "Request Timed-Out", "E-mail Notification Failed"},
    {"mail.example.com/health?full=1,2,3", 90, 90, "404 File Not Found", nullptr, ""},
    {"mail.example.com/health?full=1,2,3", 259, 260, "404 File Not Found", nullptr,
     "E-mail Notification Sent"},
};

void Check(Script& aScript, const std::string& szSite, int lPass) {
  for (const auto& aFailure : aFailures) {
    if (szSite != aFailure.szSite || lPass < aFailure.lFirst || lPass > aFailure.lLast) continue;
    const bool bSecond = lPass == aFailure.lFirst + 1;
    const auto szAddress = "http://" + szSite;
    if (bSecond && aFailure.szIpText)
      aScript.Entry("(1) " + szAddress + "<BR>(2) http://192.0.2.17",
                    std::string("(1) ") + aFailure.szText + "<BR>(2) " + aFailure.szIpText, 2,
                    std::string("<SPAN class=\"Emphasis\">IP Check Performed</SPAN>; ") + aFailure.szMail,
                    21);
    else
      aScript.Entry(szAddress, aFailure.szText, lPass == aFailure.lFirst ? 4 : 2,
                    bSecond ? aFailure.szMail : "", 9);
    return;
  }
  aScript.Up(szSite);
}

}  // namespace

std::string Text() {
  const std::string aSites[] = {"www.example.com", "shop.example.com/basket",
                                "intranet.example.com:8080/status", "mail.example.com/health?full=1,2,3",
                                "docs.example.net"};
  Script aScript(JoinDateTime({2026, 1, 5, 8, 0, 0}));
  const auto dtFirst = aScript.Now();
  for (int lPass = 0; lPass <= 260; ++lPass) {
    const bool bManual = lPass == 0 || lPass == 61 || lPass == 150;
    aScript.After((dtFirst + lPass / 48.0 + (lPass > 110 ? 9.5 / 24 : 0) - aScript.Now()) * 1440)
        .Start(bManual);
    for (const auto& szSite : aSites) {
      if (lPass == 150 && szSite == aSites[3]) {
        aScript.Entry("http://" + szSite, "", 2, "Manually Stopped.", 4);
        break;
      }
      Check(aScript, szSite, lPass);
    }
    if (lPass != 150)
      aScript.Entry("http://old.example.org/<script>alert(1)</script>",
                    lPass < 100 ? "Site OK" : "Unknown Site: Site #", lPass < 100 ? 1 : 3, "", 0);
    if (lPass == 75) aScript.Raw("1/6/2026 9:32:0\r\n");
    if (lPass != 110) aScript.End();
  }
  return aScript.Text();
}

std::string Long(std::size_t lPasses) {
  Script aScript(JoinDateTime({2024, 1, 1, 0, 0, 0}));
  for (std::size_t lPass = 0; lPass < lPasses; ++lPass) {
    aScript.Start();
    for (std::size_t lSite = 0; lSite < 50; ++lSite) {
      const auto szSite = "site" + std::to_string(lSite) + ".example.com/index.html";
      const auto lPhase = (lPass + lSite * 37) % 400;
      lPhase == 0 ? aScript.Warn(szSite) : lPhase < 3 ? aScript.Down(szSite) : aScript.Up(szSite);
    }
    aScript.End().After(30);
  }
  return aScript.Text();
}

}  // namespace LogWeek

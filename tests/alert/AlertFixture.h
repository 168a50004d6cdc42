// What every test of an alert stands on: a manager and a site that has failed.
#pragma once

#include <gtest/gtest.h>

#include "alert/AlertSender.h"
#include "base/Text.h"
#include "support/TestHome.h"

class AlertFixture : public testing::Test {
 protected:
  AlertFixture() {
    aSettings.Name = "Ada";
    aSettings.Email = "manager@example.org";
    aSettings.SMTP = "127.0.0.1";
    aSite.IP = "192.0.2.7";
    aSite.URL = "www.example.org/shop";
    aSite.TimeOut = 30;
    aFacts.aByName.szURL = "http://www.example.org/shop";
    aFacts.aByName.szErrorText = "Couldn't connect to server";
    aFacts.aByName.lErrorNumber = 7;
    aFacts.aByName.szHeader = "HTTP/1.1 418 I'm a teapot\r\nServer: pot\r\n\r\n";
  }

  std::string Parse(const std::string& szText) const {
    return AlertText::ParseEmailContent(szText, aSite, aSettings, aFacts);
  }
  std::string Compose(const std::string& szCode) const {
    return AlertText::ComposeBody(szCode, aSite, aSettings, aFacts);
  }
  std::int32_t Send(const std::string& szCode) const { return SendEmail(szCode, aSite, aSettings, aFacts); }
  void CheckedByIP(bool bAnswered) {
    aFacts.aByIP = {.szURL = "http://192.0.2.7", .szCode = bAnswered ? "" : "8001"};
  }

  TestHome aHome;
  SiteRecord aSite;
  SettingsRecord aSettings;
  CheckFacts aFacts;
};

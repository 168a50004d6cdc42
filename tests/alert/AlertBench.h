// What every test of an alert stands on: a manager, a site that has failed, a mail server.
#pragma once

#include <gtest/gtest.h>

#include "alert/AlertSender.h"
#include "base/Text.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "servers/SmtpServer.h"
#include "support/TestHome.h"

class AlertBench : public testing::Test {
 protected:
  AlertBench() {
    Settings = {};
    Settings.Name = "Ada";
    Settings.Email = "manager@example.org";
    Settings.SMTP = "127.0.0.1";
    Settings.SMTPPort = aServer.Port();
    aSites.assign(3, {});
    aSites[2].IP = "192.0.2.7";
    aSites[2].URL = "www.example.org/shop";
    aSites[2].TimeOut = 30;
    lSiteCount = 2;
    aFacts.szRequestURL = "http://www.example.org/shop";
    aFacts.szResponseInfo = "Couldn't connect to server";
    aFacts.lResponseCode = 7;
    aFacts.szHeader = "HTTP/1.1 418 I'm a teapot\r\nServer: pot\r\n\r\n";
  }

  std::string Parse(const std::string& szText) const {
    return AlertText::ParseEmailContent(szText, 2, aFacts);
  }
  std::string Compose(const std::string& szCode) const { return AlertText::ComposeBody(szCode, 2, aFacts); }
  void CheckedByIP(bool bAnswered) {
    aFacts.bIPCheckPerformed = true;
    aFacts.bIPAnswered = bAnswered;
    aFacts.szRequestURL = "http://192.0.2.7";
  }

  TestHome aHome;
  SmtpServer aServer;
  CheckFacts aFacts;
};

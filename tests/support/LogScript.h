// A check log made up for tests, in exactly the form the writer gives it, from Monday 1/5/2026 8:00 AM on.
#pragma once

#include <string>

#include "base/DateTime.h"
#include "history/LogHistory.h"
#include "log/CheckLog.h"
#include "support/TestHome.h"

inline const DateTime dtMonday = JoinDateTime({2026, 1, 5, 8, 0, 0});

struct LogScript {
  DateTime dtNow = dtMonday;
  std::string szText = {};

  LogScript& Raw(const std::string& szBytes) {
    szText += szBytes;
    return *this;
  }
  LogScript& Start(bool bManual = false) {
    return Raw((bManual ? "[START CHECK: MANUAL - " : "[START CHECK: AUTO - ") + FormatGeneral(dtNow) +
               "]\r\n");
  }
  LogScript& Entry(const std::string& szAddress, const std::string& szStatus, int lClass,
                   const std::string& szComment = {}, int lSeconds = 1) {  // and moves on by lSeconds
    Raw(FormatGeneral(dtNow) + "," + szAddress + "," + szStatus + "," + std::to_string(lSeconds) + "," +
        szComment + "," + std::to_string(lClass) + "\r\n");
    return After(lSeconds / 60.0);
  }
  LogScript& Up(const std::string& szSite) {
    return Entry("http://" + szSite, "Site OK", CheckLog::iClassSuccess);
  }
  LogScript& Warn(const std::string& szSite) {
    return Entry("http://" + szSite, "404 File Not Found", CheckLog::iClassFirstFailure);
  }
  LogScript& Down(const std::string& szSite) {
    return Entry("http://" + szSite, "404 File Not Found", CheckLog::iClassFailure);
  }
  LogScript& End() { return Raw("[END CHECK]\r\n"); }
  LogScript& After(double dMinutes) {
    dtNow = AddMinutes(dtNow, dMinutes);
    return *this;
  }
};

// The text as the file D.kvl, read.
struct Opened : LogHistory {
  Opened(const TestHome& aHome, const std::string& szText) {
    aHome.Write("D.kvl", szText);
    Open({aHome.Path("D.kvl")});
  }
};

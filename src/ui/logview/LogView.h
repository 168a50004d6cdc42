// LogView: the application object of the log viewer, apart from main.cpp.
#pragma once

#include <wx/app.h>

#include <string>
#include <vector>

class frmLogView;

class LogView : public wxApp {
 public:
  bool OnInit() override;
  int OnRun() override;
  // Failures in handlers and timers are never fatal.
  bool OnExceptionInMainLoop() override { return true; }
  void OnUnhandledException() override {}

  // Opens the window and does what the paths ask for: shows the logs, writes the page; with none it offers to
  // open one.
  static frmLogView* Start(const std::vector<std::string>& aPaths);

 private:
  bool bNoWindow = false;  // there is nothing to show, or another viewer shows it
};

// App: the application object, apart from main.cpp so that the tests can run it too.
#pragma once

#include <wx/app.h>

class App : public wxApp {
 public:
  bool OnInit() override;
  // Failures in handlers and timers are never fatal.
  bool OnExceptionInMainLoop() override { return true; }
  void OnUnhandledException() override {}

 protected:
  // What every run needs, program or test, without starting anything.
  bool PrepareWindows();
};

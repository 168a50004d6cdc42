// frmSplash: the program's name while it loads. Never in front of other windows: a message about the store
// may come up meanwhile.
#pragma once

#include <wx/frame.h>

class frmSplash : public wxFrame {
 public:
  frmSplash();
};

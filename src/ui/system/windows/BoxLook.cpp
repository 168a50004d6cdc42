#include "ui/system/BoxLook.h"

const bool BoxLook::bPictured = true;

// The toolkit's own stock picture is another one under Wine than its message boxes show.
wxIcon BoxLook::Picture() {
  return wxIcon("wxICON_INFORMATION", wxBITMAP_TYPE_ICO_RESOURCE);
}

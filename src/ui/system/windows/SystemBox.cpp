#include "ui/system/SystemBox.h"

// The toolkit does not know the box's window. With the session Windows ends it itself.
bool SystemBox::Dismiss(wxDialog&) {
  return false;
}

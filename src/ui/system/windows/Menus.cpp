#include "ui/system/Menus.h"

#include "platform/windows/System.h"

void Menus::CloseOpen() {
  EndMenu();
}

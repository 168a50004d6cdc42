#include "ui/system/BoxLook.h"

const bool BoxLook::bPictured = false;

wxIcon BoxLook::Picture() {
  return {};
}

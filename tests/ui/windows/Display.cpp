#include "ui/Display.h"

bool Display::Start() {
  return true;
}

void Display::Stop() {
}

bool Display::StartTray() {
  return true;
}

void Display::StopTray() {
}

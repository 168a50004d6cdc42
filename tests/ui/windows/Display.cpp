#include "ui/Display.h"

bool Display::Start() {
  return true;
}

void Display::Stop() {
}

void Display::Sync() {
}

bool Display::StartTray() {
  return true;
}

void Display::StopTray() {
}

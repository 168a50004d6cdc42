#include "ui/system/WindowScale.h"

#include <wx/window.h>

#include <cmath>

namespace {
constexpr double dTwipsPerInch = 1440;
}

double WindowScale::TextDPI(const wxWindow& aWindow) {
  return aWindow.GetDPI().y;
}

int WindowScale::FromTwips(const wxWindow& aWindow, int lTwips) {
  return static_cast<int>(std::lround(lTwips * TextDPI(aWindow) / dTwipsPerInch));
}

int WindowScale::ToTwips(const wxWindow& aWindow, int lPixels) {
  return static_cast<int>(std::lround(lPixels * dTwipsPerInch / TextDPI(aWindow)));
}

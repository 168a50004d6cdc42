#include "ui/system/WindowScale.h"

#include <dlfcn.h>
#include <wx/window.h>

#include <cmath>

namespace {

constexpr double dTwipsPerInch = 1440;
constexpr double dUsual = 96;

// GTK keeps window positions in logical pixels, which follow the screen's scale factor but not the user's
// text scaling; that stands only in GDK, which wxWidgets has loaded but does not pass on.
double ScreenResolution() {
  using DefaultScreen = void* (*)();
  using Resolution = double (*)(void*);
  const auto aScreen = reinterpret_cast<DefaultScreen>(dlsym(RTLD_DEFAULT, "gdk_screen_get_default"));
  const auto aResolution = reinterpret_cast<Resolution>(dlsym(RTLD_DEFAULT, "gdk_screen_get_resolution"));
  void* pScreen = aScreen ? aScreen() : nullptr;
  const double dResolution = pScreen && aResolution ? aResolution(pScreen) : -1;
  return dResolution > 0 ? dResolution : dUsual;
}

}  // namespace

double WindowScale::TextDPI(const wxWindow&) {
  static const double dResolution = ScreenResolution();
  return dResolution;
}

int WindowScale::FromTwips(const wxWindow& aWindow, int lTwips) {
  return static_cast<int>(std::lround(lTwips * TextDPI(aWindow) / dTwipsPerInch));
}

int WindowScale::ToTwips(const wxWindow& aWindow, int lPixels) {
  return static_cast<int>(std::lround(lPixels * dTwipsPerInch / TextDPI(aWindow)));
}

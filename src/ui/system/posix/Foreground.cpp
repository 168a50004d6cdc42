#include "ui/system/Foreground.h"

#include <dlfcn.h>
#include <wx/toplevel.h>

#include <cstdint>

namespace {

template <typename Function>
Function* Find(const char* szName) {
  return reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, szName));
}

}  // namespace

void Foreground::Offer() {
}

// A window manager compares when windows were last used: this one just now. wxWidgets has loaded GTK but does
// not pass this on; without an X display there is no such time.
void Foreground::Take(wxTopLevelWindow& aWindow) {
  const auto aWindowOf = Find<void*(void*)>("gtk_widget_get_window");
  const auto aIsX11 = Find<unsigned long()>("gdk_x11_window_get_type");
  const auto aIsA = Find<int(void*, unsigned long)>("g_type_check_instance_is_a");
  const auto aTimeNow = Find<std::uint32_t(void*)>("gdk_x11_get_server_time");
  const auto aSetTime = Find<void(void*, std::uint32_t)>("gdk_x11_window_set_user_time");
  void* pWindow = aWindowOf && aWindow.GetHandle() ? aWindowOf(aWindow.GetHandle()) : nullptr;
  if (pWindow && aIsX11 && aIsA && aIsA(pWindow, aIsX11()) && aTimeNow && aSetTime)
    aSetTime(pWindow, aTimeNow(pWindow));
  aWindow.Raise();
}

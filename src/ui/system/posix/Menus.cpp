#include "ui/system/Menus.h"

#include <dlfcn.h>

#include <cstddef>

namespace {

template <typename Function>
Function* Find(const char* szName) {
  return reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, szName));
}

}  // namespace

// wxWidgets knows no way to close a menu, but has loaded GTK, whose open menu holds the grab.
void Menus::CloseOpen() {
  const auto aCurrent = Find<void*()>("gtk_grab_get_current");
  const auto aMenuType = Find<std::size_t()>("gtk_menu_shell_get_type");
  const auto aIsA = Find<int(void*, std::size_t)>("g_type_check_instance_is_a");
  const auto aCancel = Find<void(void*)>("gtk_menu_shell_cancel");
  if (!aCurrent || !aMenuType || !aIsA || !aCancel) return;
  void* pHolder = aCurrent();
  if (pHolder && aIsA(pHolder, aMenuType())) aCancel(pHolder);
}

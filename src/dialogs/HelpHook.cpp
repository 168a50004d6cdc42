#include "dialogs/HelpHook.h"

#include <utility>

namespace {

std::function<void(std::int32_t)>& Presenter() {
  static std::function<void(std::int32_t)> aPresenter;
  return aPresenter;
}

}  // namespace

void HelpHook::SetPresenter(std::function<void(std::int32_t lContext)> aPresenter) {
  Presenter() = std::move(aPresenter);
}

bool HelpHook::Show(std::int32_t lContext) {
  if (!Presenter()) return false;
  Presenter()(lContext);
  return true;
}

#include "platform/MsgBox.h"

#include <cstdio>
#include <utility>

#include "base/Text.h"

namespace {

std::function<void(const std::string&)>& Presenter() {
  static std::function<void(const std::string&)> aPresenter;
  return aPresenter;
}

}  // namespace

void MsgBox(const std::string& szText) {
  if (Presenter()) {
    Presenter()(szText);
  } else {
    std::fprintf(stderr, "%s\n", Text::Replace(szText, "\r\n", "\n").c_str());
  }
}

void MsgBox_SetPresenter(std::function<void(const std::string&)> aPresenter) {
  Presenter() = std::move(aPresenter);
}

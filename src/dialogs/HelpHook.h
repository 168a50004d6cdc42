// HelpHook: what F1 opens in a dialog. The dialogs name a topic by its help context number; the program puts
// in place what shows the help book. Without it the bell rings.
#pragma once

#include <cstdint>
#include <functional>

namespace HelpHook {

inline constexpr std::int32_t lContents = 0;  // the book's own first page
inline constexpr std::int32_t lTimerPage = 20001;
inline constexpr std::int32_t lManagerPage = 20002;
inline constexpr std::int32_t lLogsPage = 20003;
inline constexpr std::int32_t lCookiesPage = 20004;

void SetPresenter(std::function<void(std::int32_t lContext)> aPresenter);

// False when there is nothing that could show it.
bool Show(std::int32_t lContext);

}  // namespace HelpHook

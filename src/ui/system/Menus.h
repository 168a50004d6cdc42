// Menus: the pop-up menu that is open now, if any. An open one keeps the call that showed it waiting for the
// operator, and its window must not go away beneath that call.
#pragma once

namespace Menus {

// Closes it as Esc does, without running a command. Harmless when there is none.
void CloseOpen();

}  // namespace Menus

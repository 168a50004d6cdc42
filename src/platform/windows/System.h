// windows.h as the rest of the code can stand it.
#pragma once

// Brings windows.h, which by itself would bring its predecessor.
#include <winsock2.h>

// Under these names the registry seam has constants of its own; as macros they would break them. The code
// here that needs the system's own takes these instead.
inline const HKEY hSystemCurrentUser = HKEY_CURRENT_USER;
inline const HKEY hSystemLocalMachine = HKEY_LOCAL_MACHINE;

#undef HKEY_CURRENT_USER
#undef HKEY_LOCAL_MACHINE
#undef REG_SZ
#undef REG_BINARY
#undef REG_DWORD

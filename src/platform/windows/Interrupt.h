// What Ctrl-C wakes: set by the console's handler, taken back by the wait that it ended.
#pragma once

#include "platform/windows/System.h"

HANDLE InterruptEvent();

// What assistive tools find in a window, where the systems have their own ways to tell it.
#pragma once

#include <wx/window.h>

#include "ui/Operator.h"

// The kinds of what takes the keyboard, or is a row, and would be read as nothing but its kind.
Texts Nameless(const wxWindow& aWindow);

// BoxLook: how the system's own message boxes look, for a box of ours that stands beside them.
#pragma once

#include <wx/icon.h>

namespace BoxLook {

// A picture beside the text, the button as wide as its word; else neither, the text in the middle and the
// button across the box.
extern const bool bPictured;
// That picture, for something to know; not Ok where there is none.
wxIcon Picture();

}  // namespace BoxLook

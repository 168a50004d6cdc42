// Foreground: how a program that the operator has just started hands the screen to one that runs already.
// Systems keep windows from coming forward that nobody has touched.
#pragma once

class wxTopLevelWindow;

namespace Foreground {

// By the program that was started: others may come forward now.
void Offer();
// By the other one: this window comes forward and takes the keyboard.
void Take(wxTopLevelWindow& aWindow);

}  // namespace Foreground

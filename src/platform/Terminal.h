// Terminal: what a program without windows needs to know of its terminal.
#pragma once

namespace Terminal {

bool OutputIsTerminal();  // standard output
bool ErrorIsTerminal();   // standard error
// Colour is wanted: a terminal, TERM is not "dumb", NO_COLOR is not set (no-color.org).
bool ColourWanted();

// From now on Ctrl-C, hang-up and termination only set a flag. A second Ctrl-C after the first was
// seen ends the process at once.
void CatchInterrupt();
bool Interrupted();
void ClearInterrupt();

}  // namespace Terminal

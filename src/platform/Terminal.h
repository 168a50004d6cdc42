// Terminal: what a program without windows needs to know of its terminal.
#pragma once

namespace Terminal {

bool OutputIsTerminal();  // standard output
bool ErrorIsTerminal();   // standard error
// How many characters a line of the terminal on standard output holds; 0 where it is none, or does not say.
int Columns();
// Colour is wanted: a terminal, TERM is not "dumb", NO_COLOR is not set (no-color.org).
bool ColourWanted();

// From now on Ctrl-C, hang-up and termination only set a flag; one that whoever started us had ignored (as
// nohup does) stays ignored. A second one after the first was seen ends the process at once.
void CatchInterrupt();
bool Interrupted();
// The number of the signal that came first, 0 for none.
int InterruptSignal();
// A second one came before the first was seen: what holds the program up now is to be given up.
bool InterruptedAgain();
// Nobody reads standard output any more: the pipe's other end is closed.
bool OutputClosed();
void ClearInterrupt();

}  // namespace Terminal

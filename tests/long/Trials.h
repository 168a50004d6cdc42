// The long trials: what only the real programs on the real system show, tried as often as wanted. Each prints
// what came of it and ends the process with 1 at the first thing that must not be.
#pragma once

#include <string>

namespace Trials {

// The program is killed at any moment: in a pass, in the mail, in an import, in a registry import, in an
// edit; so many times each. What it acknowledged is there, what it had begun is there whole or not at all,
// and at most the mail that was under way is repeated.
void Kills(int lTimes);
void EditForEver();  // what is killed in an edit: a process of its own

// One bit of the store is turned, with and without the copy beside it: no site is lost in silence.
void Bits(int lTimes);
// A log is cut, overwritten or continued with zeros, and the next pass appended to it: every other line reads
// as before.
void Logs(int lTimes);
// Store and log lie on a small file system, in this folder, that has hardly any room left.
void Disk(int lTimes, const std::string& szFolder);

// watch on a hurried clock over sites that come and go: memory and descriptors at the tenth part and at the
// end.
void Soak(int lSeconds);

}  // namespace Trials

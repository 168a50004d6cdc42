// Manual: what is made of the same table of commands as --help: the manual page, and the completion for bash.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace Manual {

// As man reads it (the man macros of troff).
std::string Page(const CLI::App& aApp);
// A script for bash to source.
std::string Completion(const CLI::App& aApp);

}  // namespace Manual

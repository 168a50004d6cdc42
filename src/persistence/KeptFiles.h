// KeptFiles: the files that are written at each pass for other tools, by the operator's wish. Values of their
// own below the product's key; every program that runs passes looks at them anew at each one.
#pragma once

#include <string>

namespace KeptFiles {

enum class Kind { Metrics, Page };

// The path; empty: not wanted, or not to be read.
std::string Read(Kind iKind);
// An empty path takes the wish back. False when the store does not have it afterwards.
bool Store(Kind iKind, const std::string& szPath);

}  // namespace KeptFiles

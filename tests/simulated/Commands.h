// Commands: what an operator does to list and settings, by the program's own rules, with the book changed
// alongside. Each is planned first, so that what a kill or a failing call leaves can be judged.
#pragma once

#include <cstdint>

#include "simulated/PassBook.h"
#include "simulated/Random.h"

namespace Simulated::Commands {

void Add(PassBook& aBook, Random& aRandom);
// The slot whose request in flight asks an old address now; 0 for none.
std::int32_t Edit(PassBook& aBook, Random& aRandom, std::int32_t lSlot);
void Delete(PassBook& aBook, Random& aRandom);
void Import(PassBook& aBook, Random& aRandom);
void Export(PassBook& aBook, Random& aRandom);
void ChangeOptions(PassBook& aBook, Random& aRandom);

}  // namespace Simulated::Commands

// StoreMessages: what an operator is told of the store.
#pragma once

#include <string>

#include "platform/Registry.h"

namespace StoreMessages {

// One or two plain sentences: what is the matter and what to do. Empty when there is nothing to say.
std::string Compose(const Registry::StoreState& aState);

}  // namespace StoreMessages

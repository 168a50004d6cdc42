// modBackUpEmailContent: the built-in alert texts, used where the Messages folder has none.
#pragma once

#include <cstdint>
#include <string>

namespace modBackUpEmailContent {

// The whole built-in message for a result code, placeholders not yet filled. A code without a text of its own
// gets the text for unrecognizable codes.
std::string BuiltInMessage(std::int32_t lCode);

}  // namespace modBackUpEmailContent

// SiteChoice: which sites of the list an argument "--site TEXT|N" names.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>

namespace SiteChoice {

// The site of that number, or those whose URL or IP address holds the text, letter case ignored; all where it
// is empty. Nothing after it has said that there is none.
std::optional<std::set<std::int32_t>> Read(const std::string& szSite);

}  // namespace SiteChoice

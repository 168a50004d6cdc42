// IPCheckMeaning: what the results of a site's two requests, by its name and by its IP address, say together
// about where the fault lies. The help book's page on the IP check shows every sentence.
#pragma once

#include "alert/CheckFacts.h"
#include "base/Strings.h"

namespace IPCheckMeaning {

// The sentences for a pair of results.
StringId Of(const RequestFacts& aByName, const RequestFacts& aByIP);

}  // namespace IPCheckMeaning

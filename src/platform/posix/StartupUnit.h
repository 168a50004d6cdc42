// StartupUnit: the text of the service, made while the program is built from the file that the package holds
// too.
#pragma once

// "%program" and a line "%environment" are to be filled in.
extern const char szStartupUnit[];

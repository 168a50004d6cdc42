// DemoSites: the sites of the demonstration, as a server plays them and as the list names them.
#pragma once

#include <cstdint>
#include <string>

#include "support/FaultServer.h"

namespace DemoSites {

// Makes the server play the sites.
void Serve(FaultServer& aServer);

// The list file (.kvd). iRefusing: a port on which nothing listens.
std::string List(const FaultServer& aServer, std::uint16_t iRefusing);

// The settings, and the one site that a list file cannot hold because its IP address names a port, as a
// registry file. szLogFolder: made by the caller.
std::string RegistryFile(const FaultServer& aServer, std::uint16_t iMailPort, const std::string& szLogFolder);

}  // namespace DemoSites

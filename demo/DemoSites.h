// DemoSites: the sites of the demonstration, as a server plays them and as the list names them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "servers/FaultServer.h"
#include "servers/SmtpServer.h"

namespace DemoSites {

// Makes the server play the sites.
void Serve(FaultServer& aServer);

// The list file (.kvd). iRefusing: a port on which nothing listens.
std::string List(const FaultServer& aServer, std::uint16_t iRefusing);

// The settings, and the one site that a list file cannot hold because its IP address names a port, as a
// registry file. szLogFolder: made by the caller.
std::string RegistryFile(const FaultServer& aServer, std::uint16_t iMailPort, const std::string& szLogFolder);

// Writes the mails from number lWritten on as files 01.eml, 02.eml, ...; returns how many there are now.
// Throws std::runtime_error when it cannot.
std::size_t KeepMails(const SmtpServer& aServer, const std::string& szFolder, std::size_t lWritten);

}  // namespace DemoSites

// FleetPlan: what a folder for Prometheus is made of, as values: the settings that matter there, the texts of
// the mails, and where the servers are.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "platform/SendForm3.h"

struct FleetPlan {
  std::int32_t lInterval = 3600;  // seconds between two probes of a site
  std::int32_t lShards = 1;       // Prometheus servers that share the sites

  std::string szManager;  // as the mail greets them
  std::string szEmail, szMailServer;
  std::int32_t lMailPort = lSmtpPort;
  // The mail's text by result code ("404", "4xx", "8001"; "0" for all others), and what is put behind it by
  // the outcome of the look by IP address ("answered", "failed"). Placeholders not yet filled.
  std::map<std::string, std::string> aMessages;

  std::string szBlackbox = "127.0.0.1:9115";
  std::string szAlertmanager = "127.0.0.1:9093";

  // Without both there is nobody to mail to.
  bool Mails() const { return !szEmail.empty() && !szMailServer.empty(); }
};

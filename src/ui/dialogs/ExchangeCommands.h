// ExchangeCommands: the main window's commands "Export List" and "Import List": their file dialogs,
// questions, notices and closing messages around ListExchange.
#pragma once

class MainHost;

namespace ExchangeCommands {

void ExportList(MainHost& aHost);
void ImportList(MainHost& aHost);

}  // namespace ExchangeCommands

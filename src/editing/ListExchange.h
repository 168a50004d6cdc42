// ListExchange: the site list as a text file (.kvd), one site a line: URL,IP,Status,Enabled,TimeOut with CR
// LF line ends, no quoting, no header. The dialogs around it are elsewhere; this is the work itself.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "persistence/modAddress.h"

namespace ListExchange {

// Called after each site with the number done; lets a progress bar move. May be empty.
using Progress = std::function<void(std::int32_t lDone)>;

// "KVList-20261121.kvd"
std::string DefaultFileName();
// The name with ".kvd" appended where it is missing.
std::string CompleteFileName(const std::string& szName);

// The folder both file dialogs open in: the last one used, else the desktop.
std::string StartFolder();
void RememberFolder(const std::string& szFile);

// Writes the whole list. False when the file cannot be written; an existing file then keeps its content.
bool Export(const std::string& szFile, const Progress& aProgress);

// One line into a record. False when the line is no site.
bool ParseLine(const std::string& szLine, SiteRecord& aRecord);

enum class Reading { Fine, Unreadable, Corrupt, TooMany };
// Reads and checks a whole file. Line ends CR LF or LF, a byte-order mark and blank lines are passed over.
// lBadLine: number of the first line that is no site. TooMany: the list would pass its capacity.
Reading Read(const std::string& szFile, std::vector<SiteRecord>& aRecords, std::int32_t& lBadLine);

// What of the records can never answer as it stands, a sentence for each kind; empty for nothing.
std::vector<std::string> Flaws(const std::vector<SiteRecord>& aRecords);

// Stores the records, all or none. Sites that are not among them stay. bReplace only changes the remark that
// a site which is already stored gets. Renumbers and reloads the list. False when they could not be stored;
// list and store are then as before.
bool Import(const std::vector<SiteRecord>& aRecords, bool bReplace, const Progress& aProgress);

}  // namespace ListExchange

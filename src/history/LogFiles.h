// LogFiles: which logs the viewer is to show. Nothing here opens a window or reads more than names and a few
// bytes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace LogFiles {

struct Arguments {
  std::vector<std::string> aLogs;  // files and folders
  std::string szPage;              // where to write the page; empty: nowhere
  std::string szSite;              // whose entries are wanted; empty: all
};

inline constexpr char szSiteOption[] = "--site";

// "LOG", "LOG PAGE" as the monitor gives them, or any number of logs and folders with or without a page
// behind; "--site ADDRESS" in front of them. A second path that is a log or a folder itself is shown and
// never written over; with more than two paths only a last one that ends in ".htm" or ".html" is a page.
Arguments Read(const std::vector<std::string>& aPaths);

// A name that logs have (".kvl"), whether there is such a file or not: nothing else may be written under it,
// and the viewer would read it as a log.
bool NamesLog(const std::string& szPath);

// The logs of the folder whose day, week or month (by their names) reaches into the last lDays days before
// the newest of them. In name order; empty where no name tells its time.
std::vector<std::string> Recent(const std::string& szFolder, std::int32_t lDays);

// The logs of that log's folder whose names tell of a later time than its own, in name order; none where its
// name tells no time.
std::vector<std::string> Later(const std::string& szLog);

// The one before it there; empty where none is, or its name tells no time.
std::string Earlier(const std::string& szLog);

// The folder that the monitor writes its logs to; empty where it is not known.
std::string MonitorFolder();

// The folder part, and the name alone.
std::string FolderOf(const std::string& szPath);
std::string NameOf(const std::string& szPath);

}  // namespace LogFiles

// The commands of kestrova-cli. Each answers an exit code (see Report.h) and has said why when it is 2.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "persistence/KeptFiles.h"

// What check and watch are asked for beside the pass itself.
struct PassOptions {
  bool bRestart = false;          // check: earlier results do not count
  bool bJson = false;             // one JSON object a line
  bool bPlugin = false;           // check: as a monitoring plugin
  bool bVerbose = false;          // watch: every site of every pass, not only what changes
  std::string szMetrics, szPage;  // files of this run alone
  std::string szSite;             // check: of this number, or with this in the address; empty: all
};

namespace CliCommands {

// One pass now, or passes on the schedule until interrupted. Both hold the single-instance lock.
int Check(const PassOptions& aOptions = {});
int Watch(const PassOptions& aOptions = {});

// Whether the monitor starts by itself.
enum class StartupWish { On, Off, Status };
int Startup(StartupWish iWish);

// The file of that kind that every pass writes. Empty and not bOff: says which.
int Keep(KeptFiles::Kind iKind, const std::string& szFile, bool bOff);

int List(bool bJson, const std::string& szSite);

int Import(const std::string& szFile, bool bReplace);
int Export(const std::string& szFile);

// The folder for Prometheus. szFrom: a list file to take the sites from; empty: the stored ones.
int ExportPrometheus(const std::string& szFolder, const std::string& szFrom, std::int32_t lShards);

int RegistryExport(const std::string& szFile);
int RegistryImport(const std::string& szFile);
int RegistryShare();

struct LogArguments {
  std::vector<std::string> aFiles;  // "-": standard input; none: the folder of the settings
  std::string szHtml, szCsv;        // empty: not asked for; "-": standard output
  std::string szEntries;            // "all", or how many of the last; empty: those around failures
  std::string szSite;               // empty: all
  std::string szFrom, szTo;         // see LogPeriod::Moment; empty: from its beginning, to its end
  bool bSummary = false, bOutages = false, bFailures = false, bJson = false;
  bool bPasses = false, bSlow = false, bWhen = false;
  std::vector<std::string> aWhatIf;  // "Interval=5", "Warning=2"; empty: not asked for
  std::string szAgainst;             // "before", or when the other period begins; empty: nothing is compared
};
int Log(LogArguments a);

// lSite 0: any.
int AlertPreview(const std::string& szCode, std::int32_t lSite);
int AlertTest();

}  // namespace CliCommands

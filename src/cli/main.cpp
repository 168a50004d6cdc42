// kestrova-cli: the arguments. What the commands do stands in Command*.cpp.
#include <CLI/CLI.hpp>
#include <exception>
#include <functional>
#include <iostream>

#include "base/Commit.h"
#include "base/Strings.h"
#include "cli/CliCommands.h"
#include "cli/Manual.h"
#include "cli/Report.h"
#include "fleet/PrometheusFolder.h"
#include "platform/MsgBox.h"

namespace {

// What the arguments fill in.
struct Arguments {
  PassOptions aPass;
  CliCommands::LogArguments aLog;
  bool bJson = false, bOff = false, bShow = false, bReplace = false, bAdd = false, bTest = false;
  std::string szFile, szCode, szFolder, szFrom, szSite;
  std::int32_t lSite = 0, lShards = 1;
  std::function<int()> aCommand;
};

CLI::App* AddVerb(CLI::App& aParent, const char* szName, std::int32_t lAbout, std::int32_t lExamples) {
  CLI::App* pVerb = aParent.add_subcommand(szName, LoadResString(lAbout));
  if (lExamples != 0) pVerb->footer(LoadResString(lExamples));
  return pVerb;
}

void AddPassFiles(CLI::App* pVerb, PassOptions& aPass) {
  pVerb->add_option("--metrics", aPass.szMetrics, LoadResString(IDS_CLI_PASS_METRICS))->type_name("FILE");
  pVerb->add_option("--page", aPass.szPage, LoadResString(IDS_CLI_PASS_PAGE))->type_name("FILE");
}

void AddSite(CLI::App* pVerb, std::string& szSite) {
  pVerb->add_option("--site", szSite, LoadResString(IDS_CLI_ONLY_SITE))->type_name("TEXT|N");
}

void AddChecking(CLI::App& aApp, Arguments& a) {
  CLI::App* pCheck = AddVerb(aApp, "check", IDS_CLI_CHECK, IDS_CLI_CHECK_EXAMPLES);
  pCheck->add_flag("--restart", a.aPass.bRestart, LoadResString(IDS_CLI_CHECK_RESTART));
  auto* pJson = pCheck->add_flag("--json", a.aPass.bJson, LoadResString(IDS_CLI_PASS_JSON));
  pCheck->add_flag("--plugin", a.aPass.bPlugin, LoadResString(IDS_CLI_CHECK_PLUGIN))->excludes(pJson);
  AddPassFiles(pCheck, a.aPass);
  AddSite(pCheck, a.aPass.szSite);
  pCheck->callback([&a] { a.aCommand = [&a] { return CliCommands::Check(a.aPass); }; });
  CLI::App* pWatch = AddVerb(aApp, "watch", IDS_CLI_WATCH, IDS_CLI_WATCH_EXAMPLES);
  auto* pVerbose = pWatch->add_flag("--verbose", a.aPass.bVerbose, LoadResString(IDS_CLI_WATCH_VERBOSE));
  pWatch->add_flag("--json", a.aPass.bJson, LoadResString(IDS_CLI_PASS_JSON))->excludes(pVerbose);
  AddPassFiles(pWatch, a.aPass);
  pWatch->callback([&a] { a.aCommand = [&a] { return CliCommands::Watch(a.aPass); }; });
}

// What every pass leaves for other tools.
void AddKeeping(CLI::App& aApp, Arguments& a) {
  const auto Add = [&](const char* szName, KeptFiles::Kind iKind, std::int32_t lAbout, std::int32_t lExamples,
                       std::int32_t lFile) {
    CLI::App* pVerb = AddVerb(aApp, szName, lAbout, lExamples);
    auto* pWhat = pVerb->add_option_group("what");
    pWhat->add_option("FILE", a.szFile, LoadResString(lFile));
    pWhat->add_flag("--off", a.bOff, LoadResString(IDS_CLI_KEEP_OFF));
    pWhat->add_flag("--show", a.bShow, LoadResString(IDS_CLI_KEEP_SHOW));
    pWhat->require_option(1);
    pVerb->callback(
        [&a, iKind] { a.aCommand = [&a, iKind] { return CliCommands::Keep(iKind, a.szFile, a.bOff); }; });
  };
  Add("metrics", KeptFiles::Kind::Metrics, IDS_CLI_METRICS, IDS_CLI_METRICS_EXAMPLES, IDS_CLI_METRICS_FILE);
  Add("page", KeptFiles::Kind::Page, IDS_CLI_PAGE, IDS_CLI_PAGE_EXAMPLES, IDS_CLI_PAGE_FILE);
}

void AddListing(CLI::App& aApp, Arguments& a) {
  CLI::App* pList = AddVerb(aApp, "list", IDS_CLI_LIST, IDS_CLI_LIST_EXAMPLES);
  pList->add_flag("--json", a.bJson, LoadResString(IDS_CLI_LIST_JSON));
  AddSite(pList, a.szSite);
  pList->callback([&a] { a.aCommand = [&a] { return CliCommands::List(a.bJson, a.szSite); }; });

  CLI::App* pImport = AddVerb(aApp, "import", IDS_CLI_IMPORT, IDS_CLI_IMPORT_EXAMPLES);
  auto* pMode = pImport->add_option_group("mode");
  pMode->add_flag("--replace", a.bReplace, LoadResString(IDS_CLI_IMPORT_REPLACE));
  pMode->add_flag("--add", a.bAdd, LoadResString(IDS_CLI_IMPORT_ADD));
  pMode->require_option(1);
  pImport->add_option("FILE", a.szFile, LoadResString(IDS_CLI_IMPORT_FILE))->required();
  pImport->callback([&a] { a.aCommand = [&a] { return CliCommands::Import(a.szFile, a.bReplace); }; });

  CLI::App* pExport = AddVerb(aApp, "export", IDS_CLI_EXPORT, IDS_CLI_EXPORT_EXAMPLES);
  auto* pWhere = pExport->add_option_group("where");
  pWhere->add_option("FILE", a.szFile, LoadResString(IDS_CLI_EXPORT_FILE));
  auto* pFolder = pWhere->add_option("--prometheus", a.szFolder, LoadResString(IDS_CLI_EXPORT_PROMETHEUS));
  pFolder->type_name("FOLDER");
  pWhere->require_option(1);
  pExport->add_option("--shards", a.lShards, LoadResString(IDS_CLI_EXPORT_SHARDS))
      ->type_name("N")
      ->needs(pFolder)
      ->check(CLI::Range(1, PrometheusFolder::lMostShards));
  pExport->add_option("--from", a.szFrom, LoadResString(IDS_CLI_EXPORT_FROM))
      ->type_name("LIST")
      ->needs(pFolder);
  pExport->callback([&a] {
    a.aCommand = [&a] {
      return a.szFolder.empty() ? CliCommands::Export(a.szFile)
                                : CliCommands::ExportPrometheus(a.szFolder, a.szFrom, a.lShards);
    };
  });
}

void AddRegistry(CLI::App& aApp, Arguments& a) {
  CLI::App* pRegistry = AddVerb(aApp, "registry", IDS_CLI_REGISTRY, IDS_CLI_REGISTRY_EXAMPLES);
  pRegistry->require_subcommand(1);
  CLI::App* pExport = AddVerb(*pRegistry, "export", IDS_CLI_REGISTRY_EXPORT, IDS_CLI_REGISTRY_EXAMPLES);
  pExport->add_option("FILE", a.szFile, LoadResString(IDS_CLI_REGISTRY_FILE))->required();
  pExport->callback([&a] { a.aCommand = [&a] { return CliCommands::RegistryExport(a.szFile); }; });
  CLI::App* pImport = AddVerb(*pRegistry, "import", IDS_CLI_REGISTRY_IMPORT, IDS_CLI_REGISTRY_EXAMPLES);
  pImport->add_option("FILE", a.szFile, LoadResString(IDS_CLI_REGISTRY_FILE))->required();
  pImport->callback([&a] { a.aCommand = [&a] { return CliCommands::RegistryImport(a.szFile); }; });
  AddVerb(*pRegistry, "share", IDS_CLI_REGISTRY_SHARE, 0)->callback([&a] {
    a.aCommand = [] { return CliCommands::RegistryShare(); };
  });
}

void AddLog(CLI::App& aApp, Arguments& a) {
  CLI::App* pLog = AddVerb(aApp, "log", IDS_CLI_LOG, IDS_CLI_LOG_EXAMPLES);
  auto& aLog = a.aLog;
  pLog->add_option("FILE", aLog.aFiles, LoadResString(IDS_CLI_LOG_FILES));
  pLog->add_flag("--summary", aLog.bSummary, LoadResString(IDS_CLI_LOG_SUMMARY));
  pLog->add_flag("--outages", aLog.bOutages, LoadResString(IDS_CLI_LOG_OUTAGES));
  pLog->add_flag("--failures", aLog.bFailures, LoadResString(IDS_CLI_LOG_FAILURES));
  pLog->add_option("--site", aLog.szSite, LoadResString(IDS_CLI_LOG_SITE))->type_name("ADDRESS");
  pLog->add_option("--from", aLog.szFrom, LoadResString(IDS_CLI_LOG_FROM))->type_name("WHEN");
  pLog->add_option("--to", aLog.szTo, LoadResString(IDS_CLI_LOG_TO))->type_name("WHEN");
  pLog->add_flag("--passes", aLog.bPasses, LoadResString(IDS_CLI_LOG_PASSES));
  pLog->add_flag("--slow", aLog.bSlow, LoadResString(IDS_CLI_LOG_SLOW));
  pLog->add_flag("--when", aLog.bWhen, LoadResString(IDS_CLI_LOG_WHEN));
  pLog->add_option("--against", aLog.szAgainst, LoadResString(IDS_CLI_LOG_AGAINST))->type_name("WHEN");
  pLog->add_option("--what-if", aLog.aWhatIf, LoadResString(IDS_CLI_LOG_WHAT_IF))
      ->type_name("NAME=MINUTES")
      ->expected(1)
      ->take_all();
  pLog->add_flag("--json", aLog.bJson, LoadResString(IDS_CLI_LOG_AS_JSON));
  pLog->add_option("--html", aLog.szHtml, LoadResString(IDS_CLI_LOG_HTML))->type_name("FILE");
  pLog->add_option("--entries", aLog.szEntries, LoadResString(IDS_CLI_LOG_ENTRIES))
      ->type_name("N|all")
      ->check((CLI::IsMember({"all"}) | CLI::PositiveNumber).description(""));
  pLog->add_option("--csv", aLog.szCsv, LoadResString(IDS_CLI_LOG_CSV))->type_name("FILE");
  pLog->callback([&a] { a.aCommand = [&a] { return CliCommands::Log(a.aLog); }; });
}

void AddAlert(CLI::App& aApp, Arguments& a) {
  CLI::App* pAlert = AddVerb(aApp, "alert", IDS_CLI_ALERT, IDS_CLI_ALERT_EXAMPLES);
  auto* pWhat = pAlert->add_option_group("what");
  auto* pPreview = pWhat->add_option("--preview", a.szCode, LoadResString(IDS_CLI_ALERT_PREVIEW));
  pPreview->type_name("CODE");
  pWhat->add_flag("--test", a.bTest, LoadResString(IDS_CLI_ALERT_TEST));
  pWhat->require_option(1);
  pAlert->add_option("--site", a.lSite, LoadResString(IDS_CLI_ALERT_SITE))->type_name("N")->needs(pPreview);
  pAlert->callback([&a] {
    a.aCommand = [&a] {
      return a.bTest ? CliCommands::AlertTest() : CliCommands::AlertPreview(a.szCode, a.lSite);
    };
  });
}

void AddStartup(CLI::App& aApp, Arguments& a) {
  CLI::App* pStartup = AddVerb(aApp, "startup", IDS_CLI_STARTUP, IDS_CLI_STARTUP_EXAMPLES);
  pStartup->require_subcommand(1);
  const auto Add = [&](const char* szName, StringId iAbout, CliCommands::StartupWish iWish) {
    AddVerb(*pStartup, szName, iAbout, 0)->callback([&a, iWish] {
      a.aCommand = [iWish] { return CliCommands::Startup(iWish); };
    });
  };
  Add("on", IDS_CLI_STARTUP_TURN_ON, CliCommands::StartupWish::On);
  Add("off", IDS_CLI_STARTUP_TURN_OFF, CliCommands::StartupWish::Off);
  Add("status", IDS_CLI_STARTUP_STATUS, CliCommands::StartupWish::Status);
}

// What is made of all the others.
void AddManual(CLI::App& aApp, Arguments& a) {
  const auto Print = [](const std::string& szText) {
    Report::Say(szText);
    return Report::iAllUp;
  };
  AddVerb(aApp, "completion", IDS_CLI_COMPLETION, IDS_CLI_COMPLETION_EXAMPLES)->callback([&a, &aApp, Print] {
    a.aCommand = [&aApp, Print] { return Print(Manual::Completion(aApp)); };
  });
  AddVerb(aApp, "manual", IDS_CLI_MANUAL, 0)->callback([&a, &aApp, Print] {
    a.aCommand = [&aApp, Print] { return Print(Manual::Page(aApp)); };
  });
}

// One line for whatever is wrong with the arguments.
std::string Explain(const CLI::App& aApp, const CLI::ParseError& aError, int iCount, char** aValues) {
  if (iCount < 2) return LoadResString(IDS_CLI_NO_VERB);
  const std::string szFirst = aValues[1];
  const auto aVerbs = aApp.get_subcommands([](const CLI::App*) { return true; });
  bool bKnown = szFirst.starts_with("-");
  for (const CLI::App* pVerb : aVerbs)
    bKnown = bKnown || pVerb->check_name(szFirst);
  if (!bKnown) return FillResString(IDS_CLI_UNKNOWN_VERB, {szFirst});
  return FillResString(IDS_CLI_SEE_HELP, {aError.what()});
}

int Run(int iCount, char** aValues) {
  CLI::App aApp(LoadResString(IDS_CLI_ABOUT), "kestrova-cli");
  aApp.set_version_flag("--version", std::string("kestrova-cli " KESTROVA_VERSION " (") + CommitName() + ")");
  aApp.footer(LoadResString(IDS_CLI_EXAMPLES) + "\n" + LoadResString(IDS_CLI_EXIT_CODES));
  aApp.require_subcommand(1);
  Arguments aArguments;
  AddChecking(aApp, aArguments);
  AddListing(aApp, aArguments);
  AddRegistry(aApp, aArguments);
  AddLog(aApp, aArguments);
  AddAlert(aApp, aArguments);
  AddKeeping(aApp, aArguments);
  AddStartup(aApp, aArguments);
  AddManual(aApp, aArguments);
  try {
    aApp.parse(iCount, aValues);
  } catch (const CLI::Success& aAnswer) {  // --help, --version
    return aApp.exit(aAnswer);
  } catch (const CLI::ParseError& aError) {
    return Report::Fail(Explain(aApp, aError, iCount, aValues));
  }
  return aArguments.aCommand();
}

}  // namespace

int main(int iCount, char** aValues) {
  MsgBox_SetPresenter([](const std::string& szText) { Report::Complain(szText); });
  int iResult = Report::iFailed;
  try {
    iResult = Run(iCount, aValues);
  } catch (const std::exception& aError) {
    return Report::Fail(FillResString(IDS_CLI_UNEXPECTED, {aError.what()}));
  }
  if (!std::cout.flush()) return Report::Fail(LoadResString(IDS_CLI_OUTPUT_FAILED));
  return Report::ListMayBeIncomplete() && iResult < Report::iFailed ? Report::iFailed : iResult;
}

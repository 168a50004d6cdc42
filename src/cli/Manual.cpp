#include "cli/Manual.h"

#include <CLI/CLI.hpp>

#include "base/Strings.h"
#include "base/Text.h"

namespace {

std::vector<const CLI::App*> Verbs(const CLI::App& aApp) {
  const auto aAll = aApp.get_subcommands([](const CLI::App* p) { return !p->get_name().empty(); });
  return {aAll.begin(), aAll.end()};
}

// Those of its groups too; "--help" is everywhere and need not be said.
std::vector<const CLI::Option*> Options(const CLI::App& aVerb) {
  std::vector<const CLI::Option*> aOptions;
  for (const CLI::Option* pOption : aVerb.get_options())
    if (!pOption->check_lname("help")) aOptions.push_back(pOption);
  for (const CLI::App* pGroup :
       aVerb.get_subcommands([](const CLI::App* p) { return p->get_name().empty(); }))
    for (const CLI::Option* pOption : Options(*pGroup))
      aOptions.push_back(pOption);
  return aOptions;
}

bool IsPositional(const CLI::Option& aOption) {
  return aOption.get_lnames().empty();
}

bool TakesValue(const CLI::Option& aOption) {
  return aOption.get_items_expected_max() > 0;
}

std::string NameOf(const CLI::Option& aOption) {
  return IsPositional(aOption) ? aOption.get_name(true) : "--" + aOption.get_lnames().front();
}

// " FILE", without the bounds that a number keeps to.
std::string Value(const CLI::Option& aOption) {
  if (IsPositional(aOption) || !TakesValue(aOption)) return {};
  const std::string szType = aOption.get_type_name();
  return " " + szType.substr(0, szType.find(':'));
}

// --- the page

// For a line of troff: no command, no escape, and hyphens that can be copied.
std::string Roff(std::string szText) {
  szText = Text::Replace(Text::Replace(szText, "\\", "\\e"), "-", "\\-");
  return szText.starts_with('.') || szText.starts_with('\'') ? "\\&" + szText : szText;
}

// Paragraphs; lines that are indented stand as they are.
std::string Paragraphs(const std::string& szText) {
  std::string szPage;
  bool bAsTheyAre = false;
  for (std::size_t lAt = 0; lAt < szText.size();) {
    const std::size_t lEnd = std::min(szText.find('\n', lAt), szText.size());
    const std::string szLine = szText.substr(lAt, lEnd - lAt);
    lAt = lEnd + 1;
    const bool bIndented = szLine.starts_with(' ');
    if (bIndented != bAsTheyAre) szPage += bIndented ? ".PP\n.nf\n" : ".fi\n.PP\n";
    bAsTheyAre = bIndented;
    szPage += Roff(szLine) + "\n";
  }
  return szPage + (bAsTheyAre ? ".fi\n" : "");
}

std::string Usage(const std::string& szVerb, const CLI::App& aVerb) {
  std::string szUsage = ".SS \"" + Roff(szVerb);
  for (const CLI::Option* pOption : Options(aVerb))
    if (IsPositional(*pOption))
      szUsage += (pOption->get_required() ? " " : " [") + Roff(NameOf(*pOption)) +
                 (pOption->get_items_expected_max() > 1 ? "..." : "") + (pOption->get_required() ? "" : "]");
    else
      szUsage += " [" + Roff(NameOf(*pOption)) + Value(*pOption) + "]";
  return szUsage + "\"\n";
}

std::string Section(const std::string& szVerb, const CLI::App& aVerb) {
  std::string szPage;
  const auto aVerbs = Verbs(aVerb);
  if (aVerbs.empty()) {
    szPage = Usage(szVerb, aVerb) + Paragraphs(aVerb.get_description() + ".");
    for (const CLI::Option* pOption : Options(aVerb))
      szPage += ".TP\n.B " + Roff(NameOf(*pOption)) + Value(*pOption) + "\n" +
                Paragraphs(pOption->get_description());
  }
  for (const CLI::App* pVerb : aVerbs)
    szPage += Section(szVerb + " " + pVerb->get_name(), *pVerb);
  const bool bSaid = aVerb.get_footer().empty() || aVerb.get_footer() == aVerb.get_parent()->get_footer();
  return bSaid ? szPage : szPage + ".PP\n" + Paragraphs(aVerb.get_footer());
}

// --- the completion

std::string Words(const std::vector<std::string>& aWords) {
  std::string szWords;
  for (const auto& szWord : aWords)
    szWords += (szWords.empty() ? "" : " ") + szWord;
  return szWords;
}

// One branch for each command and each option with a value: what may stand there.
std::string Branches(const std::string& szVerb, const CLI::App& aVerb) {
  std::vector<std::string> aWords;
  std::string szBranches;
  std::string szFiles;
  for (const CLI::Option* pOption : Options(aVerb)) {
    const std::string szType = IsPositional(*pOption) ? NameOf(*pOption) : pOption->get_type_name();
    const std::string szKind = szType == "FOLDER" ? "-d" : szType == "FILE" || szType == "LIST" ? "-f" : "";
    if (IsPositional(*pOption)) {
      szFiles = szKind;
      continue;
    }
    aWords.push_back(NameOf(*pOption));
    if (TakesValue(*pOption))
      szBranches += "    \"" + szVerb + " " + NameOf(*pOption) + "\") files=" + szKind + " words= ;;\n";
  }
  for (const CLI::App* pVerb : Verbs(aVerb)) {
    aWords.push_back(pVerb->get_name());
    szBranches += Branches(szVerb.empty() ? pVerb->get_name() : szVerb + " " + pVerb->get_name(), *pVerb);
  }
  aWords.emplace_back("--help");
  return szBranches + "    \"" + szVerb + "\") files=" + szFiles + " words=\"" + Words(aWords) + "\" ;;\n";
}

}  // namespace

std::string Manual::Page(const CLI::App& aApp) {
  const std::string szName = Roff(aApp.get_name());
  std::string szPage = ".TH KESTROVA\\-CLI 1 \"\" \"Kestrova " KESTROVA_VERSION "\" \"User Commands\"\n";
  szPage += ".SH NAME\n" + szName + " \\- " + Roff(LoadResString(IDS_MANUAL_NAME)) + "\n.SH SYNOPSIS\n.B " +
            szName + "\n.I COMMAND\n.RI [ ARGUMENT ]...\n.br\n.B " + szName +
            "\n.RB [ \\-\\-help | \\-\\-version ]\n";
  szPage += ".SH DESCRIPTION\n" + Paragraphs(aApp.get_description()) + ".PP\n" +
            Paragraphs(LoadResString(IDS_CLI_EXAMPLES)) + ".SH COMMANDS\n";
  for (const CLI::App* pVerb : Verbs(aApp))
    szPage += Section(pVerb->get_name(), *pVerb);
  const auto Add = [&](const char* szTitle, StringId iText) {
    szPage += std::string(".SH ") + szTitle + "\n" + Paragraphs(LoadResString(iText));
  };
  Add("\"EXIT STATUS\"", IDS_CLI_EXIT_CODES);
  szPage += ".PP\n" + Paragraphs(LoadResString(IDS_MANUAL_STATUS));
  Add("ENVIRONMENT", IDS_MANUAL_ENVIRONMENT);
  Add("FILES", IDS_MANUAL_FILES);
  Add("\"SEE ALSO\"", IDS_MANUAL_SEE_ALSO);
  szPage.pop_back();  // the end of the last line is the printer's
  return szPage;
}

std::string Manual::Completion(const CLI::App& aApp) {
  return R"(# Completion of kestrova-cli for bash, made by "kestrova-cli completion".

# What may stand behind the words: "files" for compgen, or "words".
_kestrova_cli_what() {
  case $1 in
)" + Branches("", aApp) +
         R"(    *) return 1 ;;
  esac
}

_kestrova_cli() {
  local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} verb= word files= words=
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    [[ $word == -* ]] && break
    verb=${verb:+$verb }$word
  done
  until _kestrova_cli_what "$verb"; do
    if [[ $verb == *" "* ]]; then verb=${verb% *}; else verb=; fi
  done
  if [[ $before == -* ]]; then _kestrova_cli_what "$verb $before"; fi
  if [[ -n $files && $current != -* ]]; then
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen "$files" -- "$current")
  else
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  fi
}
complete -F _kestrova_cli kestrova-cli)";
}

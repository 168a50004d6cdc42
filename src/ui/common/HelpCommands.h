// HelpCommands: the Help menu's commands and F1. The help book is the file Kestrova.hlp beside the program;
// it is read anew whenever its window is opened.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

class MainHost;
class wxWindow;

// The numbers of the help book's topics; they stand in its contents file too.
namespace HelpContext {
inline constexpr std::int32_t lMain = 20000;
inline constexpr std::int32_t lTimer = 20001;  // the four pages of the options dialog
inline constexpr std::int32_t lManager = 20002;
inline constexpr std::int32_t lLogs = 20003;
inline constexpr std::int32_t lCookies = 20004;
inline constexpr std::int32_t lSiteEditor = 20005;
inline constexpr std::int32_t lExchange = 20006;
inline constexpr std::int32_t lLights = 20007;
inline constexpr std::int32_t lViewer = 20008;
inline constexpr std::int32_t lFirstSite = 20009;
}  // namespace HelpContext

namespace HelpCommands {

// The help book's full path, set once at the start of the program.
extern std::string szHelpFile;

// Opens the help window at its first page, or at a topic. A number that the book does not know shows the
// first page; a missing or unreadable book is said.
void Topics(MainHost& aHost);
void ShowContext(MainHost& aHost, std::int32_t lContext);

// F1 in this window, wherever its focus is, opens the topic that the function names at that moment.
void BindF1(wxWindow& aWindow, MainHost& aHost, std::function<std::int32_t()> aContext);
void BindF1(wxWindow& aWindow, MainHost& aHost, std::int32_t lContext);

// Starts the tour program, or says that it is missing.
void Tour(MainHost& aHost);

// Opens the page about new versions in a web browser. Its address is a stored value, read each time; only
// http and https addresses are opened. Without one it says which version this is and where it lies.
void Updates(MainHost& aHost);

}  // namespace HelpCommands

// The house stands on floors: an include only points down, and only the platform knows the system. A slip
// here builds and runs well on one machine, so nothing else would notice.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>

namespace fs = std::filesystem;

namespace {

const std::map<std::string, int> aFloors = {{"platform", 0}, {"resources", 0}, {"persistence", 1}, {"log", 2},
                                            {"alert", 3},    {"check", 4},     {"dialogs", 5},     {"app", 6},
                                            {"cli", 6},      {"logview", 6},   {"tour", 6}};

// Headers that only one system or one library behind the seam has.
const std::regex aSystemHeader(
    R"(#include <(windows\.h|winsock|shlobj|shellapi|sqlite3\.h|curl/|unistd\.h|fcntl\.h|sys/|netdb\.h|poll\.h|signal\.h|csignal|pwd\.h|gtk/|gdk/|X11/))");
const std::regex aOwnHeader("#include \"([a-z]+)/");
const std::regex aSystemSwitch(
    R"(#\s*(if|ifdef|ifndef|elif).*(_WIN32|__linux__|__WXMSW__|__WXGTK__|__unix__))");

template <typename Visit>
void EachLine(const fs::path& aFolder, Visit aVisit) {
  for (const auto& aEntry : fs::recursive_directory_iterator(aFolder)) {
    const auto szEnding = aEntry.path().extension();
    if (szEnding != ".h" && szEnding != ".cpp") continue;
    std::ifstream aFile(aEntry.path());
    std::string szLine;
    for (int lLine = 1; std::getline(aFile, szLine); ++lLine) {
      aVisit(fs::relative(aEntry.path(), aFolder), szLine,
             aEntry.path().string() + ":" + std::to_string(lLine) + ": " + szLine);
    }
  }
}

}  // namespace

TEST(Floors, IncludesOnlyPointDown) {
  std::set<std::string> aSeen;
  EachLine(fs::path(KESTROVA_SOURCE) / "src",
           [&](const fs::path& aFile, const std::string& szLine, const std::string& szWhere) {
             const std::string szFloor = aFile.begin()->string();
             aSeen.insert(szFloor);
             ASSERT_TRUE(aFloors.contains(szFloor)) << "a folder that has no floor: " << szFloor;
             std::smatch aMatch;
             if (!std::regex_search(szLine, aMatch, aOwnHeader)) return;
             const std::string szTo = aMatch[1];
             ASSERT_TRUE(aFloors.contains(szTo)) << szWhere;
             EXPECT_TRUE(szTo == szFloor || aFloors.at(szTo) < aFloors.at(szFloor) || aFloors.at(szTo) == 0)
                 << szWhere;
           });
  EXPECT_GE(aSeen.size(), 7U);
}

TEST(Floors, OnlyThePlatformKnowsTheSystem) {
  EachLine(fs::path(KESTROVA_SOURCE) / "src", [&](const fs::path& aFile, const std::string& szLine,
                                                  const std::string& szWhere) {
    EXPECT_FALSE(std::regex_search(szLine, aSystemSwitch)) << szWhere;
    // Below the seam a file lies in the folder of its system or library.
    const bool bBelow = *aFile.begin() == "platform" && std::distance(aFile.begin(), aFile.end()) > 2;
    EXPECT_FALSE(!bBelow && std::regex_search(szLine, aSystemHeader)) << szWhere;
  });
}

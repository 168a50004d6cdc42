// The help book as it is written: nothing in it leads nowhere, and nothing in it cannot be reached.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

const fs::path aBook = fs::path(KESTROVA_SOURCE) / "src/resources/help";

std::string Read(const fs::path& aFile) {
  std::ostringstream aText;
  aText << std::ifstream(aFile, std::ios::binary).rdbuf();
  return aText.str();
}

// Every first group that the expression finds.
std::multiset<std::string> Find(const std::string& szText, const std::string& szExpression) {
  const std::regex aExpression(szExpression, std::regex::icase);
  std::multiset<std::string> aFound;
  for (std::sregex_iterator i(szText.begin(), szText.end(), aExpression), aEnd; i != aEnd; ++i)
    aFound.insert((*i)[1]);
  return aFound;
}

std::map<std::string, std::string> Pages() {
  std::map<std::string, std::string> aPages;
  for (const auto& aEntry : fs::directory_iterator(aBook))
    if (aEntry.path().extension() == ".html") aPages[aEntry.path().filename().string()] = Read(aEntry.path());
  return aPages;
}

}  // namespace

TEST(HelpBook, EveryPageStandsInTheContentsAndEveryEntryHasItsPage) {
  const auto aPages = Pages();
  EXPECT_GE(aPages.size(), 15U);
  const auto szContents = Read(aBook / "kestrova.hhc"), szIndex = Read(aBook / "kestrova.hhk");
  const char szEntry[] = "name=\"Local\" value=\"([^\"]*)\"";
  const auto aListed = Find(szContents, szEntry);
  for (const auto& [szPage, szText] : aPages)
    EXPECT_TRUE(aListed.contains(szPage)) << szPage;
  for (const auto& szPage : Find(szContents + szIndex, szEntry))
    EXPECT_TRUE(aPages.contains(szPage)) << szPage;
  const auto aTopics = Find(szContents, "name=\"ID\" value=\"([0-9]*)\"");
  for (int lTopic = 20000; lTopic <= 20009; ++lTopic)
    EXPECT_EQ(aTopics.count(std::to_string(lTopic)), 1U) << lTopic;
}

TEST(HelpBook, EveryLinkAndPictureIsThere) {
  const auto aPages = Pages();
  for (const auto& [szPage, szText] : aPages) {
    for (const auto& szLink : Find(szText, "href=\"([^\"#]*)"))
      EXPECT_TRUE(aPages.contains(szLink)) << szPage << " leads to " << szLink;
    for (const auto& szPicture : Find(szText, "<img src=\"([^\"]*)\""))
      EXPECT_TRUE(fs::exists(aBook / szPicture)) << szPage << " shows " << szPicture;
  }
}

// The toolkit's page reader forgives nothing: a tag left open runs on over the rest of the page.
TEST(HelpBook, EveryTagIsClosed) {
  const std::regex aTag("<(/?)(?!(?:meta|img|br|hr)\\b)([a-zA-Z][a-zA-Z0-9]*)[^>]*>");
  for (const auto& [szPage, szText] : Pages()) {
    std::vector<std::string> aOpen;
    for (std::sregex_iterator i(szText.begin(), szText.end(), aTag), aEnd; i != aEnd; ++i) {
      if ((*i)[1].length() == 0) {
        aOpen.push_back((*i)[2]);
      } else {
        ASSERT_TRUE(!aOpen.empty() && aOpen.back() == (*i)[2]) << szPage << " at " << i->position();
        aOpen.pop_back();
      }
    }
    EXPECT_EQ(aOpen, std::vector<std::string>{}) << szPage;
  }
}

// The help book as it is written: nothing in it leads nowhere, and nothing in it cannot be reached.
#include <gtest/gtest.h>

#include <algorithm>
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
std::vector<std::string> Find(const std::string& szText, const std::string& szExpression) {
  const std::regex aExpression(szExpression, std::regex::icase);
  std::vector<std::string> aFound;
  for (std::sregex_iterator i(szText.begin(), szText.end(), aExpression), aEnd; i != aEnd; ++i)
    aFound.push_back((*i)[1]);
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
  const auto szContents = Read(aBook / "kestrova.hhc");
  const auto aListed = Find(szContents, "name=\"Local\" value=\"([^\"]*)\"");
  for (const auto& [szPage, szText] : aPages)
    EXPECT_NE(std::find(aListed.begin(), aListed.end(), szPage), aListed.end()) << szPage;
  for (const auto& szPage : aListed)
    EXPECT_TRUE(aPages.contains(szPage)) << szPage;
  for (const auto& szPage : Find(Read(aBook / "kestrova.hhk"), "name=\"Local\" value=\"([^\"]*)\""))
    EXPECT_TRUE(aPages.contains(szPage)) << "in the index: " << szPage;
  const auto aTopics = Find(szContents, "name=\"ID\" value=\"([0-9]*)\"");
  const std::set<std::string> aDifferent(aTopics.begin(), aTopics.end());
  EXPECT_EQ(aDifferent.size(), aTopics.size()) << "a topic's number twice";
  for (int lTopic = 20000; lTopic <= 20009; ++lTopic)
    EXPECT_TRUE(aDifferent.contains(std::to_string(lTopic))) << lTopic;
}

TEST(HelpBook, EveryLinkAndPictureIsThere) {
  std::set<std::string> aShown;
  const auto aPages = Pages();
  for (const auto& [szPage, szText] : aPages) {
    for (const auto& szLink : Find(szText, "href=\"([^\"]*)\"")) {
      const auto szTarget = szLink.substr(0, szLink.find('#'));
      EXPECT_TRUE(aPages.contains(szTarget)) << szPage << " leads to " << szLink;
    }
    const auto aPictures = Find(szText, "<img src=\"([^\"]*)\"");
    EXPECT_EQ(Find(szText, "(<img src=\"[^\"]*\" alt=\"[^\"]+\">)").size(), aPictures.size())
        << szPage << ": a picture without words for who cannot see it";
    for (const auto& szPicture : aPictures) {
      aShown.insert(szPicture);
      ASSERT_TRUE(fs::exists(aBook / szPicture)) << szPage << " shows " << szPicture;
      EXPECT_TRUE(Read(aBook / szPicture).starts_with("\x89PNG")) << szPicture;
      EXPECT_LT(fs::file_size(aBook / szPicture), 100'000U) << szPicture;
    }
  }
  for (const auto& aEntry : fs::directory_iterator(aBook / "pictures"))
    EXPECT_TRUE(aShown.contains("pictures/" + aEntry.path().filename().string()))
        << "shown nowhere: " << aEntry.path();
}

// The toolkit's page reader forgives nothing: a tag left open runs on over the rest of the page.
TEST(HelpBook, EveryTagIsClosed) {
  const std::regex aTag("<(/?)([a-zA-Z][a-zA-Z0-9]*)[^>]*>");
  const std::set<std::string> aSingle{"meta", "img", "br", "hr", "param"};
  auto aFiles = Pages();
  for (const char* szFile : {"kestrova.hhc", "kestrova.hhk"})
    aFiles[szFile] = std::regex_replace(Read(aBook / szFile), std::regex("</?li>"), "");
  for (const auto& [szPage, szText] : aFiles) {
    std::vector<std::string> aOpen;
    for (std::sregex_iterator i(szText.begin(), szText.end(), aTag), aEnd; i != aEnd; ++i) {
      const std::string szName = (*i)[2];
      if (aSingle.contains(szName)) continue;
      if ((*i)[1].length() == 0) {
        aOpen.push_back(szName);
        continue;
      }
      ASSERT_FALSE(aOpen.empty()) << szPage << ": " << i->str();
      ASSERT_EQ(aOpen.back(), szName) << szPage << " at " << i->position();
      aOpen.pop_back();
    }
    EXPECT_TRUE(aOpen.empty()) << szPage << ": " << (aOpen.empty() ? "" : aOpen.back());
  }
}

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/Files.h"
#include "support/TestHome.h"

namespace fs = std::filesystem;

namespace {

class FilesTest : public testing::Test {
 protected:
  TestHome aHome;
};

TEST_F(FilesTest, ListsRegularFilesWithExactlyThatEnding) {
  for (const char* const szName :
       {"W-19991115.kvl", "D-19991116.kvl", "D-19991115.kvl", "x.kvlbak", "kvl", "y.txt"})
    aHome.Write(szName, "");
  fs::create_directory(aHome.Path("folder.kvl"));
  auto aNames = Files::List(aHome.Folder(), ".kvl");
  EXPECT_EQ((std::vector<std::string>{"D-19991115.kvl", "D-19991116.kvl", "W-19991115.kvl"}), aNames);
  EXPECT_TRUE(Files::List(aHome.Path("missing"), ".kvl").empty());
}

TEST_F(FilesTest, TellsFilesFromFoldersAndTheGoneFromTheFailed) {
  aHome.Write("file", "12345");
  EXPECT_TRUE(Files::FileExists(aHome.Path("file")));
  EXPECT_FALSE(Files::FileExists(aHome.Folder()));
  EXPECT_TRUE(Files::FolderExists(aHome.Folder()));
  EXPECT_FALSE(Files::FolderExists(aHome.Path("file")));
  EXPECT_EQ(5U, Files::FileSize(aHome.Path("file")));
  EXPECT_EQ(std::nullopt, Files::FileSize(aHome.Path("missing")));
  EXPECT_TRUE(Files::MakeFolder(aHome.Path("new")));
  EXPECT_TRUE(Files::MakeFolder(aHome.Path("new")));
  EXPECT_FALSE(Files::MakeFolder(aHome.Path("file")));
  EXPECT_FALSE(Files::MakeFolder(aHome.Path("a/b")));
  EXPECT_EQ(Files::Deletion::Done, Files::Delete(aHome.Path("file")));
  EXPECT_EQ(Files::Deletion::Gone, Files::Delete(aHome.Path("file")));
  EXPECT_EQ(Files::Deletion::Gone, Files::Delete(aHome.Path("no/file")));
  EXPECT_EQ(Files::Deletion::Failed, Files::Delete(aHome.Path("new")));
}

TEST_F(FilesTest, ReadsNoMoreThanAsked) {
  const std::string szBytes("a\0b\r\n\xFF", 6);
  aHome.Write("file", szBytes);
  EXPECT_EQ(szBytes, Files::ReadWhole(aHome.Path("file"), 6));
  EXPECT_EQ(std::nullopt, Files::ReadWhole(aHome.Path("file"), 5));
  EXPECT_EQ(szBytes, Files::ReadWhole(aHome.Path("file"), UINT64_MAX));
  EXPECT_EQ("b\r", Files::ReadPiece(aHome.Path("file"), 2, 2));
  EXPECT_EQ("", Files::ReadPiece(aHome.Path("file"), 100, 2));
  EXPECT_EQ(std::nullopt, Files::ReadWhole(aHome.Path("missing"), 5));
  EXPECT_EQ(std::nullopt, Files::ReadPiece(aHome.Folder(), 0, 5));
}

TEST_F(FilesTest, AppendsAndReplaces) {
  EXPECT_TRUE(Files::Append(aHome.Path("log"), "one\r\n"));
  EXPECT_TRUE(Files::Append(aHome.Path("log"), "two\r\n"));
  EXPECT_EQ("one\r\ntwo\r\n", aHome.Read("log"));
  EXPECT_FALSE(Files::Append(aHome.Path("no/log"), "x"));
  EXPECT_FALSE(Files::Append(aHome.Folder(), "x"));
  EXPECT_TRUE(Files::WriteWhole(aHome.Path("list"), "a long content"));
  EXPECT_TRUE(Files::WriteWhole(aHome.Path("list"), "short"));
  EXPECT_EQ("short", aHome.Read("list"));
  EXPECT_FALSE(Files::WriteWhole(aHome.Path("no/list"), "x"));
  EXPECT_FALSE(Files::WriteWhole(aHome.Folder(), "x"));
  EXPECT_EQ((std::vector<std::string>{"list", "log"}), aHome.Names());  // nothing left beside
}

}  // namespace

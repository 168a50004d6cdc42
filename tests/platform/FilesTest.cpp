#include <gtest/gtest.h>

#include "platform/Files.h"
#include "support/TestHome.h"

namespace {

using Names = std::vector<std::string>;

TEST(Files, AreListedReadAndReplaced) {
  const TestHome aHome;
  for (const char* const szName : {"W-1.kvl", "D-2.kvl", "D-1.kvl", "x.kvlbak", "kvl", "folder.kvl/file"})
    aHome.Write(szName, "12345");
  EXPECT_EQ((Names{"D-1.kvl", "D-2.kvl", "W-1.kvl"}), Files::List(aHome.Folder(), ".kvl"));
  EXPECT_TRUE(Files::List(aHome.Path("missing"), ".kvl").empty());
  const auto szFile = aHome.Path("x.kvlbak"), szFolder = aHome.Path("folder.kvl"), szNone = aHome.Path("a/b");
  EXPECT_EQ(5U, Files::FileSize(szFile));
  EXPECT_EQ(std::nullopt, Files::FileSize(szNone));
  EXPECT_TRUE(Files::MakeFolder(aHome.Path("new")) && Files::MakeFolder(aHome.Path("new")));
  EXPECT_FALSE(Files::MakeFolder(szFile) || Files::MakeFolder(szNone));
  EXPECT_EQ(Files::Deletion::Done, Files::Delete(szFile));
  EXPECT_EQ(Files::Deletion::Gone, Files::Delete(szFile));
  EXPECT_EQ(Files::Deletion::Failed, Files::Delete(szFolder));
  const auto szBytes = std::string("a\0b\r\n\xFF", 6);
  aHome.Write("kvl", szBytes);
  EXPECT_EQ(szBytes, Files::ReadWhole(aHome.Path("kvl"), 6));
  EXPECT_EQ(std::nullopt, Files::ReadWhole(aHome.Path("kvl"), 5));
  EXPECT_EQ("b\r", Files::ReadPiece(aHome.Path("kvl"), 2, 2));
  EXPECT_EQ(std::nullopt, Files::ReadPiece(szFolder, 0, 5));

  EXPECT_TRUE(Files::WriteWhole(aHome.Path("list"), "long") && Files::WriteWhole(aHome.Path("list"), "new"));
  EXPECT_EQ("new", aHome.Read("list"));
  EXPECT_TRUE(Files::Same(aHome.Path("list"), aHome.Path(".") + Files::chSeparator + "list"));
  EXPECT_FALSE(Files::Same(aHome.Path("list"), aHome.Path("kvl")));
  EXPECT_EQ(aHome.Path("list"), Files::Absolute(aHome.Path("list")));
  EXPECT_TRUE(Files::Same(Files::Absolute("."), "."));
  for (const auto& szBad : {aHome.Path("no/file"), aHome.Folder()})
    EXPECT_FALSE(Files::Append(szBad, "x") || Files::WriteWhole(szBad, "x"));
  EXPECT_EQ(6U + 1, aHome.Names().size()) << "something is left beside";
}

}  // namespace

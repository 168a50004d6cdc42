// A program that the system's package manager has installed.
#include <gtest/gtest.h>

#include "persistence/Settings.h"
#include "platform/Environment.h"
#include "platform/Files.h"
#include "platform/Shell.h"
#include "support/TestHome.h"

namespace {

TEST(PackagedTest, KeepsItsLogsOutOfTheProgramFolderEvenForRoot) {
  const TestHome aHome;
  Settings = {};
  const std::string szPackaged = "/usr/lib/kestrova-test";
  Environment::Set("KESTROVA_HOME", szPackaged);
  LoadSettings();
  EXPECT_EQ(Settings.LogPath, Shell::UserDataFolder() + "/Logs");
  EXPECT_TRUE(Files::FolderExists(Settings.LogPath));
  EXPECT_FALSE(Files::FolderExists(szPackaged));
  Environment::Set("KESTROVA_HOME", "/usr/local/kestrova");
  EXPECT_EQ(Shell::DefaultLogFolder(), "/usr/local/kestrova/Logs");
  Environment::Unset("KESTROVA_HOME");
  EXPECT_EQ(Shell::DefaultLogFolder(), Shell::UserDataFolder() + "/Logs") << "a program in its build folder";
}

}  // namespace

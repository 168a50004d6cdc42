// What is alike on every system, by std::filesystem. Where systems differ in locks, sharing and renaming,
// what writes and reads stands in posix/ and windows/.
#include "platform/Files.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <system_error>

#include "base/Text.h"

namespace fs = std::filesystem;

namespace {

// On Windows a path is UTF-16 inside and is made from UTF-8; what is no UTF-8 throws there and names no file.
std::optional<fs::path> ToPath(const std::string& szPath) {
  try {
    return fs::path(szPath);
  } catch (const std::exception&) {
    return {};
  }
}

fs::file_type TypeOf(const std::optional<fs::path>& aPath) {
  std::error_code aIgnored;  // no answer counts as nothing there
  return aPath ? fs::status(*aPath, aIgnored).type() : fs::file_type::none;
}

std::string NameOf(const fs::directory_entry& aEntry) {
  try {
    return aEntry.path().filename().string();
  } catch (const std::exception&) {
    return {};
  }
}

bool EndsIn(const std::string& szName, const std::string& szEnding) {
  return Files::bCaseMatters ? szName.ends_with(szEnding) : Text::EndsWithNoCase(szName, szEnding);
}

bool ComesBefore(const std::string& szLeft, const std::string& szRight) {
  return Files::bCaseMatters ? szLeft < szRight : Text::UpperCase(szLeft) < Text::UpperCase(szRight);
}

}  // namespace

bool Files::FolderExists(const std::string& szPath) {
  return TypeOf(ToPath(szPath)) == fs::file_type::directory;
}

bool Files::FileExists(const std::string& szPath) {
  return TypeOf(ToPath(szPath)) == fs::file_type::regular;
}

std::optional<std::uint64_t> Files::FileSize(const std::string& szPath) {
  const auto aPath = ToPath(szPath);
  if (TypeOf(aPath) != fs::file_type::regular) return {};
  std::error_code aFailed;
  const auto lSize = fs::file_size(*aPath, aFailed);
  if (aFailed) return {};
  return lSize;
}

std::vector<std::string> Files::List(const std::string& szFolder, const std::string& szEnding) {
  std::vector<std::string> aNames;
  const auto aPath = ToPath(szFolder);
  if (!aPath) return aNames;
  std::error_code aFailed;
  for (fs::directory_iterator aEntry(*aPath, aFailed), aEnd; !aFailed && aEntry != aEnd;
       aEntry.increment(aFailed)) {
    std::error_code aGone;  // between the listing and this question
    auto szName = NameOf(*aEntry);
    if (EndsIn(szName, szEnding) && aEntry->is_regular_file(aGone)) aNames.push_back(std::move(szName));
  }
  std::sort(aNames.begin(), aNames.end(), ComesBefore);
  return aNames;
}

std::string Files::Absolute(const std::string& szPath) {
  const auto aPath = ToPath(szPath);
  std::error_code aFailed;
  const auto aWhole = aPath ? fs::absolute(*aPath, aFailed) : fs::path();
  return !aPath || aFailed ? szPath : aWhole.string();
}

bool Files::Same(const std::string& szOne, const std::string& szOther) {
  const auto aOne = ToPath(szOne), aOther = ToPath(szOther);
  std::error_code aMissing;
  return szOne == szOther || (aOne && aOther && fs::equivalent(*aOne, *aOther, aMissing));
}

bool Files::MakeFolder(const std::string& szPath) {
  const auto aPath = ToPath(szPath);
  std::error_code aFailed;
  return aPath && (fs::create_directory(*aPath, aFailed) || FolderExists(szPath));
}

Files::Deletion Files::Delete(const std::string& szPath) {
  const auto aPath = ToPath(szPath);
  std::error_code aFailed;
  if (!aPath || fs::is_directory(fs::symlink_status(*aPath, aFailed))) return Deletion::Failed;
  if (fs::remove(*aPath, aFailed)) return Deletion::Done;
  const bool bGone =
      !aFailed || aFailed == std::errc::no_such_file_or_directory || aFailed == std::errc::not_a_directory;
  return bGone ? Deletion::Gone : Deletion::Failed;
}

std::optional<std::string> Files::ReadWhole(const std::string& szPath, std::uint64_t lMost) {
  auto szBytes = ReadPiece(szPath, 0, lMost < UINT64_MAX ? lMost + 1 : lMost);
  if (szBytes && szBytes->size() > lMost) return {};
  return szBytes;
}

bool Files::WriteWhole(const std::string& szPath, std::string_view szBytes) {
  Replacement aNew(szPath);
  aNew.Write(szBytes);
  return aNew.Commit();
}

// Stands in a test's program folder under another program's name and writes down how it was started: its own
// name, then each argument on a line, in started.txt of that folder.
#include <cstdlib>
#include <filesystem>
#include <fstream>

int main(int lCount, char** aArguments) {
  namespace fs = std::filesystem;
  const char* const szHome = std::getenv("KESTROVA_HOME");
  if (szHome == nullptr) return 1;
  const fs::path aFolder(szHome);
  {
    std::ofstream aFile(aFolder / "starting.txt", std::ios::binary);
    aFile << fs::path(aArguments[0]).stem().string() << '\n';
    for (int i = 1; i < lCount; ++i)
      aFile << aArguments[i] << '\n';
  }
  // Under its final name only when it is whole.
  fs::rename(aFolder / "starting.txt", aFolder / "started.txt");
  return 0;
}

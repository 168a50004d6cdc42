#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

#include "long/Trials.h"

int main(int lCount, char** aWords) {
  const std::string szWhich = lCount > 1 ? aWords[1] : "";
  const int lTimes = lCount > 2 ? std::atoi(aWords[2]) : 0;
  const std::map<std::string, void (*)(int)> aTrials = {
      {"kills", Trials::Kills}, {"bits", Trials::Bits}, {"logs", Trials::Logs}, {"soak", Trials::Soak}};
  if (szWhich == "edit")
    Trials::EditForEver();
  else if (szWhich == "disk" && lTimes > 0 && lCount == 4)
    Trials::Disk(lTimes, aWords[3]);
  else if (aTrials.contains(szWhich) && lTimes > 0 && lCount == 3)
    aTrials.at(szWhich)(lTimes);
  else
    return std::fprintf(stderr,
                        "kestrova-trials kills N | bits N | logs N | disk N FOLDER | soak SECONDS\n"
                        "  N: how often each. FOLDER: on a small file system of its own.\n"),
           2;
  return 0;
}

#include <algorithm>
#include <filesystem>

#include "history/LogHistory.h"
#include "long/Stand.h"
#include "long/Trials.h"
#include "platform/Files.h"

namespace fs = std::filesystem;

namespace {

std::string Slurp(const std::string& szPath) {
  return Files::ReadWhole(szPath, UINT32_MAX).value_or("");
}

std::size_t Entries(const std::string& szPath) {
  LogHistory aHistory;
  std::size_t lEntries = 0;
  if (!aHistory.Open({szPath})) return 0;
  for (const auto& aLine : aHistory.Lines())
    lEntries += aHistory.Line(aLine).iKind == LineKind::Entry ? 1 : 0;
  return lEntries;
}

// Fills the file system up to so many bytes.
class Ballast {
 public:
  Ballast(const std::string& szFolder, std::uint64_t lRoom) : szPath(szFolder + "/ballast") {
    const auto lFree = fs::space(szFolder).available;
    if (lFree > lRoom) Files::Append(szPath, std::string(lFree - lRoom, 'x'));
  }
  ~Ballast() { Files::Delete(szPath); }
  Ballast(const Ballast&) = delete;
  Ballast& operator=(const Ballast&) = delete;

 private:
  std::string szPath;
};

}  // namespace

void Trials::Bits(int lTimes) {
  Stand aStand(30);
  const auto aGood = Stand::Listed();
  const auto szGood = Slurp(aStand.StorePath());
  for (const bool bCopy : {true, false}) {
    Tally aTally(std::to_string(lTimes) + (bCopy ? " bits turned beside the copy" : " without it"));
    for (int i = 0; i < lTimes; ++i) {
      aStand.PutBack();
      if (!bCopy) fs::remove(aStand.StorePath("registry.db.good"));
      auto szTurned = szGood;
      const auto lBit = static_cast<std::size_t>(aStand.Random() * static_cast<double>(szGood.size() * 8));
      szTurned[lBit / 8] = static_cast<char>(szTurned[lBit / 8] ^ (1 << (lBit % 8)));
      Must(Files::WriteWhole(aStand.StorePath(), szTurned), "the store can be written");
      const auto aResult = Stand::Run({"list", "--json"});
      if (aResult.iCode == 2 && aResult.szOutput.empty()) {
        ++aTally["refused with 2"];
        continue;
      }
      // A bit in an address makes another address of it.
      const auto aList = Stand::Parsed(aResult.szOutput);
      const auto lMissing = aGood.size() - std::min(aGood.size(), aList.size());
      const auto lDifferent =
          static_cast<std::size_t>(std::ranges::count_if(aGood,
                                                         [&](const auto& aSite) {
                                                           return !aList.contains(aSite.first) ||
                                                                  aList.at(aSite.first) != aSite.second;
                                                         })) -
          lMissing;
      const auto szWhich = " (bit " + std::to_string(lBit) + (bCopy ? ", with the copy)" : ", without)");
      const bool bSaid = !aResult.szErrors.empty();
      Must(lMissing == 0 || bSaid, "no site is missing in silence" + szWhich);
      Must(lDifferent <= 1 || bSaid, "one bit changes one site at most" + szWhich);
      Must(!bCopy || lMissing <= 1, "the copy has every site" + szWhich);
      if (aResult.iCode == 2) {
        ++aTally["listed with 2 and the reason"];
        const bool bAgain = !Stand::Run({"check"}).szErrors.empty();
        const auto aPutBack = bCopy || !bAgain ? Stand::Listed() : Stand::List();
        const auto IsThere = [&](const auto& aSite) { return aPutBack.contains(aSite.first); };
        Must(std::ranges::all_of(aGood, IsThere) || (!bCopy && bAgain),
             "a site is put back, or without the copy named" + szWhich);
        continue;
      }
      ++aTally[bSaid ? "mended and said" : lDifferent > 0 ? "a value of one site" : "without effect"];
    }
  }
}

void Trials::Logs(int lTimes) {
  constexpr std::size_t lSites = 10;
  Stand aStand(lSites);
  for (int i = 0; i < 5; ++i)
    Stand::Run({"check"});
  aStand.KeepAsFirst();
  const auto szLog = aStand.LogPath(), szWhole = Slurp(szLog);
  Tally aTally(std::to_string(lTimes) + " torn logs, a pass appended to each");
  for (int i = 0; i < lTimes; ++i) {
    aStand.PutBack();
    const auto lAt = static_cast<std::size_t>(aStand.Random() * static_cast<double>(szWhole.size()));
    const auto szKept = szWhole.substr(0, lAt), szTail = szWhole.substr(lAt);
    std::size_t lTouched = 1;
    auto szTorn = szKept;
    if (i % 3 == 0) {
      ++aTally["cut"];
    } else if (i % 3 == 1) {
      ++aTally["overwritten"];
      const auto lLost = std::min<std::size_t>(szTail.size(), 40);
      lTouched += static_cast<std::size_t>(std::ranges::count(szTail.substr(0, lLost), '\n'));
      for (std::size_t l = 0; l < lLost; ++l)
        szTorn += static_cast<char>(aStand.Random() * 256);
      szTorn += szTail.substr(lLost);
    } else {
      ++aTally["continued with zeros"];
      szTorn += std::string(4096, '\0');
    }
    Must(Files::WriteWhole(szLog, i % 3 == 1 ? szWhole : szKept), "the log can be written");
    const auto lWanted = Entries(szLog);
    Must(Files::WriteWhole(szLog, szTorn), "the torn log can be written");
    Must(Entries(szLog) + lTouched >= lWanted, "every line that was not touched is read");
    Must(Stand::Run({"check"}).iCode == 1, "a torn log does not hinder a pass");
    Must(Entries(szLog) + lTouched >= lWanted + 2 * lSites, "the lines of the pass behind are read");
    Must(Stand::Run({"log", szLog, "--summary", "--html", aStand.aHome.Path("log.htm")}).iCode == 0,
         "a torn log can be told");
  }
}

void Trials::Disk(int lTimes, const std::string& szFolder) {
  Stand aStand(10, szFolder);
  std::string szMany;
  for (int i = 0; i < 300; ++i)
    szMany += "www.site" + std::to_string(i) + ".invalid,,4,1,60\r\n";
  aStand.aHome.Write("many.kvd", szMany);
  const auto aBefore = Stand::Listed();
  Tally aTally("full disk");
  for (int i = 0; i < lTimes; ++i) {
    aStand.PutBack();
    const bool bImport = i % 2 == 0;
    Stand::Result aResult;
    {
      const Ballast aBallast(szFolder, static_cast<std::uint64_t>(aStand.Below(bImport ? 400 : 120)) * 1024);
      aResult =
          Stand::Run(bImport ? std::vector<std::string>{"import", "--add", aStand.aHome.Path("many.kvd")}
                             : std::vector<std::string>{"check"});
    }
    const auto aAfter = Stand::Listed();
    if (bImport) {
      ++aTally[aResult.iCode == 0 ? "imports stored" : "imports refused with 2 and not there"];
      Must(aAfter.size() == aBefore.size() + (aResult.iCode == 0 ? 300 : 0),
           "an import on a full disk is whole, or none and said");
      Must(aResult.iCode == 0 || std::ranges::count(aResult.szErrors, '\n') == 1, "it is said in one line");
      continue;
    }
    Must(aAfter.size() == aBefore.size(), "no site is lost");
    const auto bSaid = aResult.iCode == 2;
    const auto lFirst = aStand.aMail.Mails().size();
    Stand::Run({"check"});
    const auto lAgain = static_cast<int>(aStand.aMail.Mails().size() - lFirst);
    Must(bSaid || lAgain == 0, "no mail is repeated where nothing was said");
    Must(bSaid || Entries(aStand.LogPath()) == 60, "no line of the log is missing where nothing was said");
    ++aTally[bSaid ? "passes that said so" : "passes kept whole"];
    aTally["mails again after those"] += lAgain;
  }
}

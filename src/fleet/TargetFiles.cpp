#include "fleet/TargetFiles.h"

#include <algorithm>

#include "base/Text.h"
#include "base/Utf8.h"

namespace {

constexpr std::size_t lPieceBytes = std::size_t{1} << 16U;

// FNV-1a over the address in lower case.
std::uint64_t HashOf(std::string_view szSite) {
  std::uint64_t lHash = 14695981039346656037U;
  for (const char ch : szSite) {
    const auto iByte = static_cast<unsigned char>(ch >= 'A' && ch <= 'Z' ? ch + ('a' - 'A') : ch);
    lHash = (lHash ^ iByte) * 1099511628211U;
  }
  return lHash;
}

// As a JSON string, quotes with it. The fewest escapes that JSON asks for; bytes that are no UTF-8 and
// control characters are shown as such.
void AppendQuoted(std::string& szOut, std::string_view szText) {
  szOut += '"';
  const bool bPlain = std::ranges::all_of(szText, [](char ch) { return ch >= 0x20 && ch < 0x7F; });
  for (const char ch : bPlain ? std::string(szText) : Utf8::Clean(szText)) {
    if (ch == '"' || ch == '\\') szOut += '\\';
    szOut += ch;
  }
  szOut += '"';
}

// The address as it may stand in a request: the path's blanks and all that is not ASCII as "%20".
std::string Escaped(std::string_view szAddress) {
  constexpr std::string_view szHex = "0123456789ABCDEF";
  const std::size_t lPath = std::min(szAddress.find_first_of("/?#"), szAddress.size());
  std::string szEscaped(szAddress.substr(0, lPath));
  for (const char ch : szAddress.substr(lPath)) {
    const auto lByte = static_cast<unsigned char>(ch);
    if (lByte > 0x20 && lByte < 0x7F && ch != '\\')
      szEscaped += ch;
    else
      (szEscaped += '%').append({szHex[lByte >> 4U], szHex[lByte & 15U]});
  }
  return szEscaped;
}

}  // namespace

// Jump consistent hashing (Lamping and Veach, 2014).
std::int32_t ShardOf(std::string_view szSite, std::int32_t lShards) {
  std::uint64_t lKey = HashOf(szSite);
  std::int64_t lBucket = -1;
  std::int64_t lNext = 0;
  while (lNext < lShards) {
    lBucket = lNext;
    lKey = lKey * 2862933555777941757U + 1;
    lNext =
        static_cast<std::int64_t>(static_cast<double>(lBucket + 1) *
                                  (static_cast<double>(1LL << 31) / static_cast<double>((lKey >> 33U) + 1)));
  }
  return static_cast<std::int32_t>(lBucket + 1);
}

std::string TargetFiles::Name(std::int32_t lShard, std::int32_t lShards) {
  return lShards == 1 ? "targets.json" : "targets-" + std::to_string(lShard) + ".json";
}

TargetFiles::TargetFiles(const std::string& szFolder, std::int32_t lShards) {
  for (std::int32_t n = 1; n <= lShards; ++n)
    aPieces.emplace_back(szFolder + Files::chSeparator + Name(n, lShards)).szBytes = "[";
}

void TargetFiles::Add(const SiteRecord& aSite, std::int64_t lSlot) {
  const bool bByIP = Text::IsBlank(aSite.URL);
  const std::string szSite = Text::Trim(bByIP ? aSite.IP : aSite.URL);
  if (!aSite.TakesPart() || szSite.empty()) return;
  const std::int32_t lTimeOut =
      std::clamp(aSite.TimeOut, SiteRecord::lShortestTimeOut, SiteRecord::lLongestTimeOut);
  aTimeOuts.insert(lTimeOut);
  ++lCount;

  const auto lShards = static_cast<std::int32_t>(aPieces.size());
  Piece& aPiece = aPieces[static_cast<std::size_t>(lShards == 1 ? 0 : ShardOf(szSite, lShards) - 1)];
  std::string& szOut = aPiece.szBytes;
  szOut += aPiece.bFirst ? "\n" : ",\n";
  aPiece.bFirst = false;
  szOut += "  {\"targets\": [";
  AppendQuoted(szOut, "http://" + Escaped(szSite));
  szOut += "], \"labels\": {\"site\": ";
  AppendQuoted(szOut, szSite);
  szOut +=
      ", \"slot\": \"" + std::to_string(lSlot) + "\", \"timeout\": \"" + std::to_string(lTimeOut) + "s\"";
  if (const std::string szIP = Text::Trim(aSite.IP); !szIP.empty() && !bByIP) {
    szOut += ", \"ip\": ";
    AppendQuoted(szOut, szIP);
  }
  szOut += "}}";
  if (szOut.size() < lPieceBytes) return;
  aPiece.aFile.Write(szOut);
  szOut.clear();
}

bool TargetFiles::Finish() {
  return std::ranges::all_of(aPieces,
                             [](Piece& aPiece) { return aPiece.aFile.Write(aPiece.szBytes + "\n]\n"); });
}

bool TargetFiles::Commit() {
  return std::ranges::all_of(aPieces, [](Piece& aPiece) { return aPiece.aFile.Commit(); });
}

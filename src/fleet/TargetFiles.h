// TargetFiles: the sites as Prometheus discovers them from files: JSON, one site a line, one file for each
// shard. Written as the sites come, so that a list of any length takes the same memory.
#pragma once

#include <cstdint>
#include <deque>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "persistence/modAddress.h"
#include "platform/Files.h"

// The shard of a site, 1 to lShards. It depends on the address alone, letter case ignored, and when the
// number of shards grows by one, only the sites that go to the new one move.
std::int32_t ShardOf(std::string_view szSite, std::int32_t lShards);

class TargetFiles {
 public:
  // Beside the files of that folder; nothing is replaced before Commit.
  TargetFiles(const std::string& szFolder, std::int32_t lShards);

  // A site that is disabled, or has no address at all, is passed over.
  void Add(const SiteRecord& aSite, std::int64_t lSlot);
  // After the last site. False when any of the files could not be written, and none may be committed then.
  bool Finish();
  // False when one could not be put in place. Those before it are then new already.
  bool Commit();

  std::int64_t Count() const { return lCount; }
  const std::set<std::int32_t>& TimeOuts() const { return aTimeOuts; }  // in use, seconds

  // "targets.json", or "targets-2.json" where there are several shards.
  static std::string Name(std::int32_t lShard, std::int32_t lShards);

 private:
  struct Piece {
    explicit Piece(const std::string& szPath) : aFile(szPath) {}
    Files::Replacement aFile;
    std::string szBytes;  // not written yet
    bool bFirst = true;
  };

  std::deque<Piece> aPieces;
  std::set<std::int32_t> aTimeOuts;
  std::int64_t lCount = 0;
};

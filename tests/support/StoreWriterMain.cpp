// store-writer PREFIX COUNT [bracket]: writes values to the store one after the other, PREFIX1, PREFIX2, ...,
// and prints each number once the registry has acknowledged it. With "bracket" it rewrites the three values
// PREFIXa, PREFIXb and PREFIXc with the number in one bracket instead. Ends with 1 at the first refusal.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "support/RawRegistry.h"

using namespace Registry;

namespace {

bool Write(const std::string& szName, std::int32_t lNumber) {
  const std::string szBytes(reinterpret_cast<const char*>(&lNumber), 4);
  const auto lCode = RawRegistry::Put("Software\\StoreWriter", szName, REG_DWORD, szBytes);
  if (lCode != lSuccess) std::fprintf(stderr, "%s: code %d\n", szName.c_str(), lCode);
  return lCode == lSuccess;
}

bool WriteBracket(const std::string& szPrefix, std::int32_t lNumber) {
  Transaction aBracket;
  for (const char* const szEnd : {"a", "b", "c"}) {
    if (!Write(szPrefix + szEnd, lNumber)) return false;
  }
  return aBracket.Commit() == lSuccess;
}

}  // namespace

int main(int lCount, char** aArguments) {
  if (lCount < 3) return 2;
  const std::string szPrefix = aArguments[1];
  for (std::int32_t i = 1; i <= std::atoi(aArguments[2]); ++i) {
    if (!(lCount > 3 && aArguments[3] == std::string("bracket") ? WriteBracket(szPrefix, i)
                                                                : Write(szPrefix + std::to_string(i), i)))
      return 1;
    std::printf("%d\n", i);
    std::fflush(stdout);
  }
  return 0;
}

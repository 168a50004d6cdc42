// A file in the registry editor's text form, in both of its encodings.
#include "fuzz/Fuzz.h"
#include "persistence/RegFileParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t lSize) {
  std::vector<RegFileParser::Change> aChanges;
  std::string szError;
  const std::string szBytes(Fuzz::Bytes(pData, lSize));
  for (const std::string& szText : {szBytes, RegFileParser::szHeader + std::string("\r\n") + szBytes}) {
    const bool bRead = RegFileParser::Parse(szText, aChanges, szError);
    Fuzz::Require(bRead != !szError.empty() || szText.empty());
    szError.clear();
    aChanges.clear();
  }
  return 0;
}

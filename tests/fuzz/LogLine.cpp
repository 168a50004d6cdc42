// A line of a check log: its fields lie in it, in order.
#include "log/LogLine.h"

#include "fuzz/Fuzz.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t lSize) {
  const auto szLine = Fuzz::Bytes(pData, lSize);
  PlacedLine aLine;
  ReadLogLine(szLine, aLine);
  if (aLine.iKind != LineKind::Entry) return 0;
  const auto aFields = SplitLogLine(szLine, aLine);
  std::string szAgain;
  for (const auto szField : {aFields.CheckTime, aFields.Address, aFields.StatusText, aFields.Elapsed,
                             aFields.Comment, aFields.ResultClass})
    szAgain.append(szAgain.empty() ? "" : ",").append(szField);
  Fuzz::Require(szAgain == szLine);
  return 0;
}

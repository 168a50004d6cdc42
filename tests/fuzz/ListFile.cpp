// A line of a list file: what is taken can be written and is read as the same again.
#include "editing/ListExchange.h"
#include "fuzz/Fuzz.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t lSize) {
  SiteRecord aRecord;
  if (!ListExchange::ParseLine(std::string(Fuzz::Bytes(pData, lSize)), aRecord)) return 0;
  Fuzz::Require(aRecord.URL.find_first_of(",\r\n") == std::string::npos);
  SiteRecord aAgain;
  const auto szLine = aRecord.URL + "," + aRecord.IP + "," + std::to_string(aRecord.Status) + "," +
                      std::to_string(aRecord.Enabled) + "," + std::to_string(aRecord.TimeOut);
  Fuzz::Require(ListExchange::ParseLine(szLine, aAgain));
  Fuzz::Require(aAgain.URL == aRecord.URL && aAgain.IP == aRecord.IP && aAgain.TimeOut == aRecord.TimeOut);
  return 0;
}

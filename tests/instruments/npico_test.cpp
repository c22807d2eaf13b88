#include <cmath>

#include "support/support.h"

using namespace kem::test;

namespace {

std::string Scan(const std::string& section, const std::string& parameters, const std::string& numbers) {
  return "\n\r\n" + section + "\nStart= 10\nEnd= 0\nStep= 0.5\n" + parameters + "\n" + numbers +
         "\nskipped\nfirst comment\r\nsecond\n\nnot kept\n";
}

PrnType Load(const std::string& text) {
  const TempFolder folder;
  return PrnType(folder.Write("scan", text).c_str(), 0);
}

}  // namespace

TEST_CASE("npico: parameters, comments and the division by the integration time") {
  ReadNextFlag = 0;
  const PrnType r = Load(Scan("[TimeScan]",
                              "Repeat= 3\nIntTime= 2\nInput= diode second\nOffset= 1.5\nLaserline= 532\n"
                              "BackScans= 4\nNrPoints= 3",
                              "1 2\n3"));
  REQUIRE(r.nY == 3);
  CHECK(r.allocType == AllocY);
  CHECK(r.fileType == FileNPico);
  CHECK_BITS(r.yArray[0], 0.5f);
  CHECK_BITS(r.yArray[2], 1.5f);
  CHECK_BITS(r.xStart, 10);
  CHECK_BITS(r.xStep, -0.5f);  // it runs from Start to End
  CHECK(r.npico.npicoScanType == 1);
  CHECK_BITS(r.npico.npicoRepeat, 3);
  CHECK(std::string(r.npico.npicoInput) == "diode");
  CHECK_BITS(r.npico.npicoLaserLine, 532);
  CHECK(r.npico.npicoBackScans == 4);
  CHECK(std::string(r.npico.npicoComments[0]) == "first comment");
  CHECK(std::string(r.npico.npicoComments[1]) == "second");
  CHECK(std::string(r.npico.npicoComments[3]).empty());
  CHECK(ReadNextFlag == 0);
}

TEST_CASE("npico: scan speed, missing time, and points that no rule covers") {
  CHECK_BITS(Load(Scan("[Delay]", "Step= 0.1\nScanSpeed= 0.05\nNrPoints= 1", "4")).npico.npicoIntTime, -2);
  CHECK(std::isinf(Load(Scan("[Delay]", "NrPoints= 1", "4")).yArray[0]));
  const PrnType missing = Load(Scan("[Delay]", "IntTime= 1\nNrPoints= 3", "4 end 5"));
  CHECK_BITS(missing.yArray[0], 4);
  CHECK_BITS(missing.yArray[1], 0);
  CHECK_BITS(Load(Scan("[Delay]", "NrPoints= 1:2", "4 5")).yArray[0], 0);
}

TEST_CASE("npico: signal over reference, two signals by alternate calls") {
  CHECK_BITS(Load(Scan("[DcDelay]", "NrPoints= 2:2", "1 4 7 0")).yArray[0], 250);
  CHECK_BITS(Load(Scan("[DcDelay]", "NrPoints= 2:2", "1 4 7 0")).yArray[1], 7);
  ReadNextFlag = 0;
  const std::string two = Scan("[DcDelay]", "NrPoints= 2:4", "1 4 3 2 5 0 6 0");
  const PrnType first = Load(two);
  CHECK(ReadNextFlag == 1);
  CHECK_BITS(first.yArray[0], 250);
  CHECK_BITS(first.yArray[1], 5);
  const PrnType second = Load(two);
  CHECK(ReadNextFlag == 0);
  CHECK_BITS(second.yArray[0], 1500);
  CHECK_BITS(second.yArray[1], 6);
}

TEST_CASE("npico: what is refused, and damaged files") {
  CHECK(!Load("something\n[Delay]\nNrPoints= 1\n1\n"));
  CHECK(!Load("[Delay]\nStart= 1\n"));
  CHECK(!Load("[Delay]\nNrPoints= -1\n1\n"));
  const std::string long_ = Scan("[Delay]", "IntTime= 1\n" + std::string(500, 'x') + "\nNrPoints= 1", "4");
  CHECK_BITS(Load(long_).yArray[0], 4);
  LoadEveryPrefix("cut", Scan("[DcDelay]", "NrPoints= 2:4", "1 4 3 2 5 0 6 0"), 200);
}

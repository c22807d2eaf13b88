#include "support/loads.h"

using namespace kem::test;

namespace {

std::string Scan(const std::string& section, const std::string& parameters, const std::string& numbers) {
  return "\n\r\n" + section + "\nStart= 10\nEnd= 0\nStep= 0.5\n" + parameters + "\n" + numbers +
         "\nskipped\nfirst comment\r\nsecond\n\nnot kept\n";
}

std::string Values(const std::string& section, const std::string& parameters, const std::string& numbers) {
  const PrnType r = Load("scan", Scan(section, parameters, numbers));
  return Numbers({r.yArray, static_cast<std::size_t>(r.nY)});
}

}  // namespace

TEST_CASE("npico: parameters, comments and the division by the integration time") {
  ReadNextFlag = 0;
  const PrnType r = Load("scan", Scan("[TimeScan]",
                                      "Repeat= 3\nIntTime= 2\nInput= diode second\nOffset= 1.5\nLaserline= 532\n"
                                      "BackScans= 4\nNrPoints= 3",
                                      "1 2\n3"));
  // It runs from Start to End.
  CHECK(Facts(r) == "8 Y 3x3 x 10 0 -0.5 y 0.5 1.5 1 = 0.5 1 1.5 | Time (s)|Intensity|");
  CHECK(HeaderOf(r) == "1|1.5|diode|first comment|second|||532|2|3|4|");
  CHECK(ReadNextFlag == 0);
}

TEST_CASE("npico: scan speed, missing time, and points that no rule covers") {
  CHECK(HeaderOf(Load("scan", Scan("[Delay]", "Step= 0.1\nScanSpeed= 0.05\nNrPoints= 1", "4"))) ==
        "0|0||first comment|second|||0|-2|0|0|");
  CHECK(Values("[Delay]", "NrPoints= 1", "4") == " inf");
  CHECK(Values("[Delay]", "IntTime= 1\nNrPoints= 3", "4 end 5") == " 4 0 0");
  CHECK(Values("[Delay]", "NrPoints= 1:2", "4 5") == " 0");
  CHECK(Values("[Delay]", "IntTime= 1\n" + std::string(500, 'x') + "\nNrPoints= 1", "4") == " 4");
}

TEST_CASE("npico: signal over reference, two signals by alternate calls") {
  CHECK(Values("[DcDelay]", "NrPoints= 2:2", "1 4 7 0") == " 250 7");
  ReadNextFlag = 0;
  for (const char* values : {" 250 5", " 1500 6", " 250 5"}) {
    CHECK(Values("[DcDelay]", "NrPoints= 2:4", "1 4 3 2 5 0 6 0") == values);
    CHECK(ReadNextFlag == (values == std::string(" 250 5")));
  }
}

TEST_CASE("npico: what is refused, and damaged files") {
  for (const char* text :
       {"something\n[Delay]\nNrPoints= 1\n1\n", "[Delay]\nStart= 1\n", "[Delay]\nNrPoints= -1\n1\n"})
    CHECK(!Load("scan", text));
}

#include "support/loads.h"

using namespace kem::test;

namespace {

using Fields = std::vector<std::pair<std::size_t, std::string>>;

// A status text that goes by position, with a comment behind it.
std::string ByPosition(const Fields& fields) {
  std::vector<std::string> all(83, "0");
  for (const auto& [index, value] : fields) all[index] = value;
  std::string text;
  for (const std::string& field : all) text += field + ",";
  return text + "comment, with commas";
}

Bytes Header(const std::string& status, int width, int height, int type) {
  Bytes bytes;
  bytes.Text("IM");
  for (const int v : {static_cast<int>(status.size()), width, height, 0, 0, type})
    bytes.Put(static_cast<std::int16_t>(v));
  return bytes.PadTo(64, 'x').Text(status);
}

PrnType Loaded(const std::string& bytes) { return Load("scan.img", bytes); }

// The parameters that a status text gives.
std::string Parsed(std::string status) {
  PrnType r;
  r.fileType = FileHPDTA;
  r.hpdta = {};
  r.ParseHPDTAStatus(status.data(), &r.hpdta);
  return HeaderOf(r);
}

}  // namespace

TEST_CASE("hpdta: status by position") {
  const Fields fields = {{5, "2"},  {11, "12-05-2016"}, {12, "10:21:05"}, {30, "5 s"}, {35, "7"},
                         {40, "x"}, {51, "#1290"},      {55, "*0614925"}, {63, "12"}};
  CHECK(Parsed(ByPosition(fields)) ==
        "0|12-05-2016 10:21:05|Acquire|5 s|7|0|0|0|0|0|0|0|0|1290|614925|12|comment, with commas|");
  const std::string none = Parsed("");
  for (const char* mode : {"8", "-1", "", "x"}) CHECK(Parsed(",,,,," + std::string(mode)) == none);
  CHECK(Parsed(",,,,,0") == "0||NoAcquisition||0|0|||0|0|0|0|0|0|0|||");
  CHECK(Parsed(",,,,,7,,,,,," + std::string(200, 'd')) ==
        "0|" + std::string(131, 'd') + "|Background||0|0|||0|0|0|0|0|0|0|||");
  CHECK(Parsed(",,,,,,,,,,,12-05-2016,10:21") ==
        "0|12-05-2016 10:21|||0|0|||0|0|0|0|0|0|0|||");  // the last has no comma
}

TEST_CASE("hpdta: status by key") {
  const std::string whole =
      "[Application],Date=\"12-05-2016\",Time=\"10:21\",Date2=1\r\n[Acquisition],NrExposure=60,NrTrigger=0,"
      "ExposureTime=5 s,AcqMode=4,areSource=\"0,ExposureTime=1\",x[ExternalDevices],ExposureTime=10\r\n"
      "[Streak camera],Gain=1,MCP Gain=\"50\"\r\n[Scaling],ScalingXType=2,ScalingXScale=1.5,ScalingXUnit=\"nm\","
      "ScalingXScalingFile=\"#0001379,0672\",ScalingYScalingFile=\"S20\",ScalingYType=2[Comment],UserComment=\"a, "
      "b\"";
  CHECK(Parsed(whole) == "0|12-05-2016 10:21|AnalogIntegration|5 s|60|60|nm||1.5|0|0|2|1|1379|0|50|a, b|");
  CHECK(Parsed("[Acquisition],NrTrigger=5,NrExposure=2") == "0||||5|2|||0|0|0|1|1|0|0|||");
  for (const std::size_t n : Prefixes(whole.size(), whole.size()))  // never a position of the Y table, so no table
    for (std::string part : {"[" + whole.substr(n), "[" + whole.substr(0, n)}) {
      HPDTAHeaderType block = {};
      PrnType().ParseHPDTAStatus(part.data(), &block);
      CHECK(block.hpdtaYScalingType == 1);
    }
}

TEST_CASE("hpdta: values, linear axes and tables") {
  const std::string status = ByPosition({{48, "1"}, {49, "0.5"}, {50, "nm"}, {52, "1"}, {53, "2"}, {54, "ns"}});
  const std::string pixels = "\1\2\3\4\xff\x80\7\x88";
  const PrnType r = Loaded(Header(status, 2, 4, 0).Text(pixels));
  CHECK(Facts(r) ==
        "15 Z 2x4 idle x 0 1 0.5 y 0 8 2 z 1 255 = 1 3 255 ... / 2 4 128 ... | nm|ns|Intensity (arb. units)");
  // 16 bits, 32 bits, a value that the file lacks, an unknown type
  for (const auto& [type, height, last] :
       {std::tuple{2, 2, 34823.0f}, {3, 1, 2282193151.0f}, {2, 3, 0.0f}, {1, 1, 0.0f}})
    CHECK(Loaded(Header(status, 2, height, type).Text(pixels)).zArray[1][height - 1] == last);

  const Bytes header = Header(ByPosition({{51, "#1000"}, {55, "#1008"}}), 2, 3, 0).PadTo(1000, '\1');
  const PrnType tables = Loaded(Bytes(header).Put(9.0f).Put(8.0f).Put(5.0f).Put(6.0f));
  CHECK(Facts(tables) ==
        "15 XYZ 2x3 idle x 8 9 1: 9 8 y 0 6 1: 5 6 0 z 1 1 = 1 1 1 / 1 1 1 | 0|0|Intensity (arb. units)");
  CHECK(Loaded(Header(ByPosition({{51, "#-5"}, {55, "#70"}}), 2, 3, 0)).xArray[1] == 0);

  for (const auto& [width, height] : {std::pair{0, 2}, {2, 0}, {-1, 2}, {2, -1}})
    CHECK(!Loaded(Header(status, width, height, 0)));
  CHECK(!Loaded(std::string("IM\xff\xff\2\0\2\0", 8)));
}

TEST_CASE("hpdta: days since a date") {
  const auto days = [](const char* acquired, int day, int month, int year) {
    return Loaded(Header(ByPosition({{11, acquired}}), 1, 1, 0)).HPDTATime(day, month, year);
  };
  CHECK(days("01-03-2016", 28, 2, 2016) == 2);
  CHECK(days("01-03-2016", 2, 3, 2016) == -1);
  for (const auto& [d, m, y] : {std::tuple{30, 2, 2016}, {257, 1, 2016}, {1, 13, 2016}, {1, 1, 70000}})
    CHECK(days("01-03-2016", d, m, y) == 0);
  for (const char* date : {"29.08.2018", "31-02-2016", "1-3", ""}) CHECK(days(date, 28, 2, 2016) == 0);
  CHECK(PrnType().HPDTATime(28, 2, 2016) == 0);
}

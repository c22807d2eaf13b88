#include "support/support.h"

using namespace kem::test;

namespace {

using Floats = std::vector<float>;
using Texts = std::vector<std::string>;
using Fields = std::vector<std::pair<std::size_t, std::string>>;

// A status text that goes by position, with a comment behind it.
std::string ByPosition(const Fields& fields) {
  Texts all(83, "0");
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

PrnType Loaded(const std::string& bytes) { return {TempFolder().Write("scan.img", bytes).c_str(), 0}; }

HPDTAHeaderType Parsed(std::string status) {
  HPDTAHeaderType block = {};
  PrnType().ParseHPDTAStatus(status.data(), &block);
  return block;
}

Texts TextsOf(const HPDTAHeaderType& b) {
  return {b.hpdtaAcqMode, b.hpdtaDate, b.hpdtaAcqTime, b.hpdtaGain, b.hpdtaComment};
}

std::vector<int> NumbersOf(const HPDTAHeaderType& b) {
  return {b.hpdtaAcqNumber, b.hpdtaExposures, b.hpdtaXTablePos, b.hpdtaYTablePos};
}

}  // namespace

TEST_CASE("hpdta: status by position") {
  const Fields fields = {{5, "2"},  {11, "12-05-2016"}, {12, "10:21:05"}, {30, "5 s"}, {35, "7"},
                         {40, "x"}, {51, "#1290"},      {55, "*0614925"}, {63, "12"}};
  const HPDTAHeaderType b = Parsed(ByPosition(fields));
  CHECK(TextsOf(b) == Texts{"Acquire", "12-05-2016 10:21:05", "5 s", "12", "comment, with commas"});
  CHECK(NumbersOf(b) == std::vector{7, 0, 1290, 614925});
  for (const char* odd : {"9", "-1", "", "x"}) CHECK(TextsOf(Parsed(ByPosition({{5, odd}})))[0].empty());
  CHECK(TextsOf(Parsed(ByPosition({{11, std::string(200, 'd')}})))[1] == std::string(131, 'd'));
  CHECK(TextsOf(Parsed(",,,,,,,,,,,12-05-2016,10:21"))[1] == "12-05-2016 10:21");  // the last has no comma
}

TEST_CASE("hpdta: status by key") {
  const std::string whole =
      "[Application],Date=\"12-05-2016\",Time=\"10:21\",Date2=1\r\n[Acquisition],NrExposure=60,NrTrigger=0,"
      "ExposureTime=5 s,AcqMode=4,areSource=\"0,ExposureTime=1\",x[ExternalDevices],ExposureTime=10\r\n"
      "[Streak camera],Gain=1,MCP Gain=\"50\"\r\n[Scaling],ScalingXType=2,ScalingXScale=1.5,ScalingXUnit=\"nm\","
      "ScalingXScalingFile=\"#0001379,0672\",ScalingYScalingFile=\"S20\",ScalingYType=2[Comment],UserComment=\"a, "
      "b\"";
  const HPDTAHeaderType b = Parsed(whole);
  CHECK(TextsOf(b) == Texts{"AnalogIntegration", "12-05-2016 10:21", "5 s", "50", "a, b"});
  CHECK(NumbersOf(b) == std::vector{60, 60, 1379, 0});
  CHECK(b.hpdtaXScalingType == 2);
  CHECK(b.hpdtaXScale == 1.5f);
  CHECK(Parsed("[Acquisition],NrTrigger=5,NrExposure=2").hpdtaAcqNumber == 5);
  for (const std::size_t n : Prefixes(whole.size(), whole.size()))  // never a position of the Y table, so no table
    for (const std::string& part : {"[" + whole.substr(n), "[" + whole.substr(0, n)})
      CHECK(Parsed(part).hpdtaYScalingType == 1);
}

TEST_CASE("hpdta: values, linear axes and tables") {
  const std::string status = ByPosition({{48, "1"}, {49, "0.5"}, {50, "nm"}, {52, "1"}, {53, "2"}, {54, "ns"}});
  const std::string pixels = "\1\2\3\4\xff\x80\7\x88";
  const PrnType r = Loaded(Header(status, 2, 4, 0).Text(pixels));
  REQUIRE(r.allocType == AllocZ);
  CHECK(r.fileType == FileHPDTA);
  CHECK(r.active == 0);
  CHECK(Floats{r.zArray[1][0], r.zArray[0][2], r.xStart, r.xStep, r.xEnd, r.yEnd} == Floats{2, 255, 0, 0.5f, 1, 8});
  CHECK(std::string(r.hpdta.hpdtaYUnit) == "ns");
  // 16 bits, 32 bits, a value that the file lacks, an unknown type
  for (const auto& [type, height, last] :
       {std::tuple{2, 2, 34823.0f}, {3, 1, 2282193151.0f}, {2, 3, 0.0f}, {1, 1, 0.0f}})
    CHECK(Loaded(Header(status, 2, height, type).Text(pixels)).zArray[1][height - 1] == last);

  const Bytes header = Header(ByPosition({{51, "#1000"}, {55, "#1008"}}), 2, 3, 0).PadTo(1000, '\1');
  const PrnType tables = Loaded(Bytes(header).Put(9.0f).Put(8.0f).Put(5.0f).Put(6.0f));
  REQUIRE(tables.allocType == AllocXYZ);
  CHECK(Floats{tables.xArray[0], tables.yArray[1], tables.yArray[2]} == Floats{9, 6, 0});
  CHECK(Loaded(Header(ByPosition({{51, "#-5"}, {55, "#70"}}), 2, 3, 0)).xArray[1] == 0);

  for (const auto& [width, height] : {std::pair{0, 2}, {2, 0}, {-1, 2}, {2, -1}})
    CHECK(!Loaded(Header(status, width, height, 0)));
  CHECK(!Loaded(std::string("IM\xff\xff\2\0\2\0", 8)));
  const std::string image = Header(ByPosition({{51, "#90"}, {55, "#300"}}), 5, 4, 3).PadTo(400);
  LoadEveryPrefix("cut.img", image, 80);
  LoadDamaged("hurt.img", image, 200);
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

TEST_CASE("hpdta: real images") {
  if (!HaveSamples()) return;
  const auto load = [](const char* name) { return PrnType((SampleFolder() + "/hpdta/" + name).c_str(), 0); };
  const auto sum = [](const PrnType& r) {
    double total = 0;
    for (int i = 0; i < r.nX; ++i) total += Sum({r.zArray[i], static_cast<std::size_t>(r.nY)});
    return total;
  };
  const PrnType a = load("operate_mode.img");
  REQUIRE(a.allocType == AllocXYZ);
  REQUIRE(a.nX == 672);
  REQUIRE(a.nY == 512);
  CHECK(Floats{a.zArray[0][0], a.zArray[1][0], a.zArray[3][0], a.zArray[0][1], a.zMax} ==
        Floats{365, 0, 235, 624, 2876657});
  CHECK(Floats{a.xArray[0], a.xArray[671], a.yArray[511]} == Floats{526.844482f, 472.252014f, 16.0093956f});
  CHECK(sum(a) == 7061710453.0);
  CHECK(TextsOf(a.hpdta) == Texts{"AnalogIntegration", "20/01/2023 11:34:55.147", "5 s", "50", ""});
  CHECK(NumbersOf(a.hpdta) == std::vector{60, 60, 1379631, 1382319});
  CHECK(sum(load("photon_counting.img")) == 110996);
  const PrnType other = load("xaxis_other.img");
  REQUIRE(other.allocType == AllocZ);
  CHECK(Floats{other.zMax, other.xEnd, other.yEnd} == Floats{649, 1344, 1016});
  const PrnType early = load("positional_header_SYNTHETIC_PIXELS.img");
  CHECK(sum(early) == 628992000);
  CHECK(Floats{early.xEnd, early.yEnd} == Floats{535, 10});
}

#include "support/support.h"

using namespace kem::test;

namespace {

using Fields = std::vector<std::pair<int, std::string>>;

// A status text that goes by position, with a comment behind it.
std::string ByPosition(const Fields& fields) {
  std::vector<std::string> all(83, "0");
  for (const auto& [index, value] : fields) all[static_cast<std::size_t>(index)] = value;
  std::string text;
  for (const std::string& field : all) text += field + ",";
  return text + "comment, with commas";
}

Bytes Header(const std::string& status, int width, int height, int dataType) {
  Bytes bytes;
  bytes.Text("IM");
  for (const int v : {static_cast<int>(status.size()), width, height, 0, 0, dataType})
    bytes.Put(static_cast<std::int16_t>(v));
  return bytes.PadTo(64, 'x').Text(status);
}

PrnType Loaded(const std::string& bytes) { return {TempFolder().Write("scan.img", bytes).c_str(), 0}; }

const Fields kLinear = {{48, "1"}, {49, "0.5"}, {50, "nm"}, {52, "1"}, {53, "2"}, {54, "ns"}};

HPDTAHeaderType Parsed(std::string status) {
  HPDTAHeaderType block = {};
  PrnType().ParseHPDTAStatus(status.data(), &block);
  return block;
}

void CheckTexts(std::initializer_list<std::pair<const char*, const char*>> texts) {
  for (const auto& [text, expected] : texts) CHECK(std::string(text) == expected);
}

}  // namespace

TEST_CASE("hpdta: status by position") {
  const HPDTAHeaderType b = Parsed(ByPosition({{5, "2"},
                                               {11, "12-05-2016"},
                                               {12, "10:21:05"},
                                               {30, "5 s"},
                                               {35, "7"},
                                               {40, "x"},
                                               {51, "#1290"},
                                               {55, "*0614925"},
                                               {63, "12"}}));
  CheckTexts({{b.hpdtaAcqMode, "Acquire"},
              {b.hpdtaDate, "12-05-2016 10:21:05"},
              {b.hpdtaAcqTime, "5 s"},
              {b.hpdtaGain, "12"},
              {b.hpdtaComment, "comment, with commas"}});
  CHECK(b.hpdtaAcqNumber == 7);
  CHECK(b.hpdtaExposures == 0);
  CHECK(b.hpdtaXTablePos == 1290);
  CHECK(b.hpdtaYTablePos == 614925);
  for (const char* odd : {"9", "-1", "", "x"})
    CHECK(std::string(Parsed(ByPosition({{5, odd}})).hpdtaAcqMode).empty());
  const std::string date(200, 'd');
  CHECK(std::string(Parsed(ByPosition({{11, date}})).hpdtaDate) == std::string(131, 'd'));
  CHECK(std::string(Parsed(",,,,,,,,,,,12-05-2016,10:21").hpdtaDate) ==
        "12-05-2016 10:21");  // the last has no comma
}

TEST_CASE("hpdta: status by key") {
  const std::string whole =
      "[Application],Date=\"12-05-2016\",Time=\"10:21\",Date2=1\r\n[Acquisition],NrExposure=60,NrTrigger=0,"
      "ExposureTime=5 s,AcqMode=4,areSource=\"0,ExposureTime=1\",x[ExternalDevices],ExposureTime=10\r\n"
      "[Streak camera],Gain=1,MCP Gain=\"50\"\r\n[Scaling],ScalingXType=2,ScalingXScale=1.5,ScalingXUnit=\"nm\","
      "ScalingXScalingFile=\"#0001379,0672\",ScalingYScalingFile=\"S20\",ScalingYType=2[Comment],UserComment=\"a, "
      "b\"";
  const HPDTAHeaderType b = Parsed(whole);
  CheckTexts({{b.hpdtaDate, "12-05-2016 10:21"},
              {b.hpdtaAcqMode, "AnalogIntegration"},
              {b.hpdtaAcqTime, "5 s"},
              {b.hpdtaGain, "50"},
              {b.hpdtaComment, "a, b"}});
  CHECK(b.hpdtaExposures == 60);
  CHECK(b.hpdtaAcqNumber == 60);
  CHECK(Parsed("[Acquisition],NrTrigger=5,NrExposure=2").hpdtaAcqNumber == 5);
  CHECK(b.hpdtaXScalingType == 2);
  CHECK_BITS(b.hpdtaXScale, 1.5f);
  CHECK(b.hpdtaXTablePos == 1379);
  for (const std::size_t n : Prefixes(whole.size(), whole.size()))  // never a position of the Y table, so no table
    for (const std::string& part : {"[" + whole.substr(n), "[" + whole.substr(0, n)})
      CHECK(Parsed(part).hpdtaYScalingType == 1);
}

TEST_CASE("hpdta: values, linear axes and tables") {
  const std::string status = ByPosition(kLinear);
  const std::string pixels = "\1\2\3\4\xff\x80\7\x88";
  const PrnType r = Loaded(Header(status, 2, 4, 0).Text(pixels));
  REQUIRE(r.allocType == AllocZ);
  CHECK(r.fileType == FileHPDTA);
  CHECK(r.active == 0);
  const std::pair<float, float> values[] = {{r.zArray[1][0], 2}, {r.zArray[0][2], 255}, {r.xStart, 0},
                                            {r.xStep, 0.5f},     {r.xEnd, 1},           {r.yEnd, 8}};
  for (const auto& [value, expected] : values) CHECK_BITS(value, expected);
  CHECK(std::string(r.hpdta.hpdtaYUnit) == "ns");
  const auto last = [&](int type, int height) {
    return Loaded(Header(status, 2, height, type).Text(pixels)).zArray[1][height - 1];
  };
  CHECK_BITS(last(2, 2), 0x8807);
  CHECK_BITS(last(3, 1), static_cast<float>(0x880780ffU));
  CHECK_BITS(last(2, 3), 0);  // not in the file
  CHECK_BITS(last(1, 1), 0);  // unknown

  const PrnType tables = Loaded(Header(ByPosition({{51, "#1000"}, {55, "#1008"}}), 2, 3, 0)
                                    .PadTo(1000, '\1')
                                    .Put(9.0f)
                                    .Put(8.0f)
                                    .Put(5.0f)
                                    .Put(6.0f));
  REQUIRE(tables.allocType == AllocXYZ);
  CHECK_BITS(tables.xArray[0], 9);
  CHECK_BITS(tables.yArray[1], 6);
  CHECK_BITS(tables.yArray[2], 0);
  CHECK_BITS(Loaded(Header(ByPosition({{51, "#-5"}, {55, "#70"}}), 2, 3, 0)).xArray[1], 0);

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
  for (const auto& [d, m, y] :
       {std::tuple{30, 2, 2016}, {257, 1, 2016}, {1, 13, 2016}, {1, 1, 70000}, {-1, 1, 2016}})
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
  const std::pair<float, float> values[] = {
      {a.zArray[0][0], 365},      {a.zArray[1][0], 0},          {a.zArray[3][0], 235},        {a.zArray[0][1], 624},
      {a.xArray[0], 526.844482f}, {a.xArray[671], 472.252014f}, {a.yArray[511], 16.0093956f}, {a.zMax, 2876657}};
  for (const auto& [value, expected] : values) CHECK_BITS(value, expected);
  CHECK(sum(a) == 7061710453.0);
  CheckTexts(
      {{a.hpdta.hpdtaDate, "20/01/2023 11:34:55.147"}, {a.hpdta.hpdtaGain, "50"}, {a.hpdta.hpdtaYUnit, "us"}});
  CHECK(a.hpdta.hpdtaExposures == 60);
  CHECK(sum(load("photon_counting.img")) == 110996);
  const PrnType other = load("xaxis_other.img");
  REQUIRE(other.nY == 508);
  CHECK(other.allocType == AllocZ);
  CHECK_BITS(other.zMax, 649);
  CHECK_BITS(other.xEnd, 1344);
  const PrnType early = load("positional_header_SYNTHETIC_PIXELS.img");
  CHECK(sum(early) == 628992000);
  CHECK_BITS(early.xEnd, 535);
  CHECK(early.HPDTATime(2, 1, 1970) == -1);
}

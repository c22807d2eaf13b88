#include <cstring>

#include "support/formats.h"

using namespace kem::test;

namespace {

template <std::size_t N>
void Set(char (&field)[N], const std::string& text) {
  std::snprintf(field, N, "%s", text.c_str());
}

std::string Comment(const PrnType& r, int size = 4000) {
  std::string text(static_cast<std::size_t>(size), '?');
  r.CommentBlock(text.data(), size);
  return text.c_str();
}

std::string Log(const PrnType& r, int level) {
  return Printed([&] { r.PrintLog(level); });
}

// The part of the report that stands behind shape and ranges.
std::string Header(const PrnType& r) { return Log(r, 3).substr(Log(r, 2).size()); }

std::string Titles(const PrnType& r) {
  char x[132] = "before", y[132] = "", z[132] = "";
  r.LabelAxes(x, y, z);
  return std::string(x) + "|" + y + "|" + z;
}

// A record of a type whose texts are their fields' names and whose numbers count up, floats by halves.
PrnType Numbered(int fileType) {
  PrnType r(AllocY, 2);
  r.fileType = fileType;
  r.yArray[0] = r.yArray[1] = 0;
  Set(r.xLabel, "xl");
  Set(r.yLabel, "yl");
  Set(r.zLabel, "  zl ");
  for (const int k : {0, 1, 3, 11}) Set(r.commentLines[k], "comment " + std::to_string(k));
  int next = 1;
  for (const KemParameter& p : KemParameters(fileType)) {
    auto* at = const_cast<char*>(static_cast<const char*>(p.in(r)));
    const bool text = p.kind == KemParameterKind::Text;
    const bool bytes = p.kind == KemParameterKind::Bytes;
    for (int k = 0; k < (bytes ? p.count / 4 : p.count); ++k, ++next) {
      const float half = static_cast<float>(next) + 0.5f;
      if (text) std::snprintf(at + kTextSize * k, kTextSize, "%s", p.name);
      if (!text) std::memcpy(at + 4 * k, p.kind == KemParameterKind::Int ? static_cast<void*>(&next) : &half, 4);
    }
  }
  return r;
}

std::string Names(int fileType) {
  constexpr const char* kKinds[] = {"text", "int", "float", "byte"};
  std::string names;
  for (const KemParameter& p : KemParameters(fileType))
    names += std::string(" ") + p.name + ' ' + kKinds[static_cast<int>(p.kind)] + 'x' + std::to_string(p.count);
  return names;
}

// The bytes of the header area that a copy carries; texts without an end are cut.
std::string Carried(int fileType) {
  PrnType from(AllocY, 1), to;
  from.fileType = fileType;
  std::memset(from.headerArea, 'h', sizeof from.headerArea);
  to.CopyHeader(from);
  CHECK(to.fileType == fileType);
  const auto same = [&](std::size_t k) { return k < sizeof to.headerArea && (&to.headerArea[0][0])[k] == 'h'; };
  std::string ranges;
  for (std::size_t k = 0; k < sizeof to.headerArea; ++k) {
    if (same(k) && (k == 0 || !same(k - 1))) ranges += ' ' + std::to_string(k) + '-';
    if (same(k) && !same(k + 1)) ranges += std::to_string(k);
  }
  return ranges;
}

// Lines as one.
std::string Joined(const std::string& lines) {
  std::string joined;
  for (const char c : lines) joined += c == '\n' ? " /" : std::string(1, c);
  return joined;
}

std::string Shown(const std::string& name, const PrnType& r) {
  return "# " + name + "\ntitles " + Titles(r) + "\nreport " + Joined(Header(r)) + "\ncomments " +
         Joined(Comment(r)) + '\n';
}

// A record of a type, after a change.
template <class Change>
std::string Shown(const std::string& name, int fileType, Change change) {
  PrnType r = Numbered(fileType);
  change(r);
  return Shown(name, r);
}

std::string Listed(int fileType) {
  const PrnType r = Numbered(fileType);
  const std::string shape = Log(r, 1);
  const std::string dx = Written(r, &PrnType::WriteDX);
  const auto dataType = dx.find("##DATA TYPE=");
  return Shown(std::to_string(fileType) + Joined(shape.substr(shape.find("allocated : 2\n") + 13)), r) +
         dx.substr(dataType, dx.find('\n', dataType) - dataType) + "\nparameters" + Names(fileType) + "\ncopied" +
         Carried(fileType) + '\n';
}

}  // namespace

TEST_CASE("report: what every file type shows and copies is what the listing says") {
  std::string listing;
  for (int type = -1; type <= FileIccdImage + 1; ++type) listing += Listed(type);
  for (const int kind : {-1, 0, 1, 2, 3, 4, 5})
    listing +=
        Shown("scan kind " + std::to_string(kind), FileNPico, [kind](PrnType& r) { r.npico.npicoScanType = kind; });
  for (const int code : {0, 1, 16, 17})
    listing += Shown("sweep range " + std::to_string(code), FileHama,
                     [code](PrnType& r) { r.hama.hamaSweepRange = code; });
  listing += Shown("one range", FileCary45, [](PrnType& r) { r.cary45.cary45IndependentNir = 0; });
  for (const int type : {FileP2D, FileOMA})
    listing += Shown("long texts", type, [](PrnType& r) {
      Set(r.xLabel, std::string(100, 'x') + ' ' + std::string(30, 'y'));
      Set(r.yLabel, std::string(131, 'x'));
    });
  CheckApproved("record/headers.txt", listing);
}

TEST_CASE("report: comment blocks of generic records, and their limits") {
  PrnType grid(AllocZ, 1, 1);
  grid.zArray[0][0] = 1;
  Set(grid.commentLines[3], "three");
  CHECK(Comment(grid) == "\nthree\n");
  Set(grid.commentLines[0], std::string(131, 'a'));
  CHECK(Comment(grid) == std::string(130, 'a') + "\nthree\n");  // so that readers of 131 characters take it
  CHECK(Comment(grid, 4) == "aaa");
  PrnType curve(AllocY, 1);
  CHECK(Comment(curve).empty());
  char untouched[] = "as it was";
  PrnType().CommentBlock(untouched, sizeof untouched);
  CHECK(std::string(untouched) == "as it was");
}

TEST_CASE("report: shape and ranges") {
  PrnType curve(AllocY, 3);
  Set(curve.fileName, "c");
  for (int k = 0; k < 3; ++k) curve.yArray[k] = static_cast<float>(k);
  curve.xEnd = 2;
  curve.MinMax();
  CHECK(Log(curve, 0).empty());
  CHECK(Log(curve, 1) == "c\nX array defined   : 0 -> 2 , 1\nY array allocated : 3\n.cvt file\nNot Active\n");
  CHECK(Log(curve, 2) == Log(curve, 1) + "X-axis :0 -> 2 , 1\nY-axis :0 -> 2 , 1\nZ-axis :0 -> 0\n");
  PrnType grid(AllocXZ, 2, 2);
  CHECK(Log(grid, 1).find("Z array allocated : 2 x 2\n.p3d or .b3d file\n") != std::string::npos);
}

TEST_CASE("report: values stand six to a line, the first padded") {
  PrnType curve(AllocXY, 7);
  for (int k = 0; k < 7; ++k) curve.xArray[k] = curve.yArray[k] = static_cast<float>(k);
  const std::string values = "           0 1 2 3 4 5 \n6 \n";
  CHECK(Log(curve, 5).substr(Log(curve, 4).size()) == "----[X]----\n" + values + "----[Y]----\n" + values);
  PrnType grid(AllocZ, 2, 2);
  for (int i = 0; i < 2; ++i)
    for (int j = 0; j < 2; ++j) grid.zArray[i][j] = static_cast<float>(10 * i + j);
  CHECK(Log(grid, 5).substr(Log(grid, 4).size()) == "----[Z]----\n           0 10 \n1 11 \n");
}

TEST_CASE("report: the summary line") {
  char line[132];
  PrnType empty;
  Set(empty.fileName, "e");
  empty.GetLabel(line);
  CHECK(std::string(line) == std::string(18, ' ') + "e NONE   0       ");
  PrnType grid(AllocXYZ, 12, 34567);
  Set(grid.fileName, "a name of more than nineteen");
  grid.GetLabel(line);
  CHECK(std::string(line) == "a name of more than nineteen XYZ   12 x 34567");
}

#include <limits>
#include <nlohmann/json.hpp>

#include "kem/dataset.h"
#include "support/command.h"

using namespace kem::test;
using Json = nlohmann::json;

namespace {

// A pair of files: a curve of three points, or a grid of 3 x 2.
std::string WritePair(const TempFolder& folder, const std::string& name, bool grid, const std::string& more = "",
                      float first = 1) {
  Bytes values(std::endian::big);
  for (const float v : {first, 2.5f, 1e-7f, 10.0f, 20.0f, 30.0f}) values.Put(v);
  folder.Write(name + ".DTA", values);
  return folder.Write(name + ".DSC",
                      "#DESC\nBSEQ BIG\nIKKF REAL\nXTYP IDX\nYTYP " + std::string(grid ? "IDX" : "NODATA") +
                          "\nZTYP NODATA\nIRFMT F\nXPTS 3\nXMIN 0.1\nXWID 0.2\nYPTS 2\nYMIN 5\nYWID 1\n"
                          "XNAM 'Field, \"B\"'\nXUNI 'G'\nIRNAM 'I'\nIRUNI '\xB5V'\n" +
                          more + "#SPL\nMWFQ 9.4e+09\n");
}

std::string WriteColumns(const TempFolder& folder, const std::string& name) {
  return folder.Write(name, "NXY 3 nm\nred\ngreen\nblue\n\n\nset\n\n1 10 20 30\n2 11 21 31\n");
}

}  // namespace

TEST_CASE("kem: a command line that cannot be understood has status 2 and one sentence") {
  struct Case {
    const char* arguments;
    const char* err;
  };
  const Case cases[] = {
      {"", "kem: a command is expected; kem --help lists the commands\n"},
      {"--none", "kem: a command is expected; kem --help lists the commands\n"},
      {"melt x", "kem: there is no command melt; kem --help lists the commands\n"},
      {"help conv", "kem: help: there is no command conv; did you mean convert?\n"},
      {"inof x", "kem: there is no command inof; did you mean info?\n"},
      {"info", "kem: info: FILE is required\n"},
      {"info --level 9 x", "kem: info: --level: a whole number from 1 to 5 is needed, not 9\n"},
      {"median -w 3.5 x", "kem: median: --width: a whole number from 2 to 1000000 is needed, not 3.5\n"},
      {"slant -p 1 2 3 nan x", "kem: slant: --points: a finite number is needed, not nan\n"},
      {"cut --x 1 x", "kem: cut: --x: a number is needed, not x\n"},
      {"cut x --x 1", "kem: cut: --x takes two numbers\n"},
      {"convert x", "kem: convert: name a format by --to or by the extension of the output\n"},
      {"convert x -o y.pdf", "kem: convert: name a format by --to or by the extension of the output\n"},
      {"convert x y -o z.prn", "kem: convert: --output is for one file, --dir for several\n"},
      {"convert x -o z.prn -d w", "kem: convert: --output excludes --dir\n"},
  };
  for (const Case& c : cases) {
    CAPTURE(c.arguments);
    const Result result = Kem(c.arguments);
    CHECK(result.status == 2);
    CHECK(result.err == c.err);
    CHECK(result.out.empty());
  }
  CHECK(Kem("convert x --to pdf").err.starts_with("kem: convert: --to: no format pdf, but there are prn, "));
}

TEST_CASE("kem: help, manual page and completion come from one description") {
  CHECK(Kem("--version").out == std::string("kem ") + KemVersion() + '\n');
  CHECK(Kem("help").out == Kem("--help").out);
  CHECK(Kem("help convert").out == Kem("convert -h").out);
  const std::string manual = Kem("help --man").out;
  const std::string completion = Kem("help --completion bash").out;
  for (const std::string command : {"info", "items", "convert", "help"}) {
    CHECK(Kem("--help").out.find("\n  " + command + ' ') != std::string::npos);
    CHECK(manual.find("\n.SS kem " + command + ' ') != std::string::npos);
    CHECK(completion.find("\n    " + command + ") words='-h --help ") != std::string::npos);
  }
  CHECK(Kem("slant -h").out.find("-p,--points X1 VALUE1 X2 VALUE2 (required)\n") != std::string::npos);
  CHECK(manual.find("\n.B \\-o,\\-\\-output \\fIFILE\\fR\n") != std::string::npos);
}

TEST_CASE("kem: a file that cannot be read is named with the reason, and stops no other") {
  const TempFolder folder;
  const std::string good = Example("raman.prn");
  const std::string pointer = "version https://git-lfs.github.com/spec/v1\n";
  const std::string galactic("\x80\x4B\0\x15", 4);
  WritePair(folder, "alone", false);
  fs::remove(folder.Path("alone.DTA"));
  folder.Write("image.par", ";\n;  scan JSS\nFormat : 1\n");
  folder.Write("absent.DSC", pointer);
  folder.Write("parted.spc", galactic);
  const std::pair<std::string, std::string> cases[] = {
      {folder.Path("none.prn"), "no such file"},
      {folder.Write("odd.txt", "1 2 3\n"), "unknown format"},
      {folder.Write("profile.prf", "x"), "recognised as HPDTA profile, but kem cannot read this layout"},
      {folder.Path("alone.DSC"), "recognised as Bruker BES3T, but alone.DTA, which belongs to it, is missing"},
      {WritePair(folder, "igd", false, "YTYP IGD\n"), "DATA: 3D Data not supported yet!"},
      {folder.Write("absent.DTA", "x"), "not a pair of data files: absent.DSC is a pointer of git-lfs to the data"},
      {folder.Write("ir.spc", galactic), "not a Bruker ESR spc/par file: it begins like a Galactic spc file"},
      {folder.Write("uv.SPC", "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"),
       "not a Bruker ESR spc/par file: it begins like a Shimadzu spc file"},
      {folder.Write("image.spc", "xx"),
       "not a Bruker ESR spc/par file: image.par has no line that begins with JSS, DOS, GST or JEX"},
      {folder.Write("parted.par", "GSI 1\n"),
       "not a Bruker ESR spc/par file: it has no line that begins with JSS, DOS, GST or JEX"},
      {folder.Write("table.cvt", "ca\nx\ny\n\n\n\n1 2\n3 4\n"),
       "not a CVT file: it is a table with several numbers in a line"},
      {folder.Path("gone\x7f"), "no such file"},
  };
  std::string all = Quoted(good);
  std::string err;
  for (const auto& [file, reason] : cases) {
    all += Quoted(file);
    const std::string name = file.ends_with("\x7f") ? folder.Path("gone\\x7f") : file;
    err.append("kem: ").append(name).append(": ").append(reason).append("\n");
  }
  const Result result = Kem("info --classic --level 1 " + all + Quoted(good));
  const std::string report = Printed([&good] { PrnType(good.c_str(), 0).PrintLog(1); });
  CHECK(result.status == 1);
  CHECK(result.err == err);
  CHECK(result.out == report + '\n' + report);
  const std::string red = Quoted(folder.Write("red#2", "XY\n\x1b[31mred\n\x9bm\n\n\n\n\n1 2\n3 4\n"));
  CHECK(Kem("info --classic " + red).out.find(" \\x1b[31mred\nZ-axis : \\x9bm\n") != std::string::npos);
  CHECK(Kem("items --classic " + red).out.ends_with("\tcurve 2\t\\x9bm\n"));
  CHECK(
      Kem("calc --classic -o " + Quoted(folder.Path("red.csv")) + "\"1*'" + folder.Path("red#2") + "'\"").status ==
      0);
}

TEST_CASE("kem info: JSON holds shape, axes, values, parameters and comment of every file") {
  const TempFolder folder;
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const std::string curve = WritePair(folder, "curve", false, "", nan);
  const Result result = Kem("info --json " + Quoted(curve) + Quoted(folder.Path("none")) +
                            Quoted(WriteColumns(folder, "columns")) + "--item 2");
  CHECK(result.status == 1);
  const Json both = Json::parse(result.out);
  REQUIRE(both.size() == 1);  // the curve has no second item
  CHECK(both[0]["itemName"] == "green");
  CHECK(both[0]["item"] == 2);
  CHECK(both[0]["items"] == 3);
  CHECK(both[0]["axes"][0] ==
        Json{{"name", "nm"}, {"unit", ""}, {"points", 2}, {"stored", true}, {"first", 1}, {"last", 2}});
  CHECK(both[0]["values"]["max"] == 21);

  const Json full = Json::parse(Kem("info -j " + Quoted(curve)).out)[0];
  CHECK(full["values"] == Json{{"name", "I"},
                               {"unit", "\u00b5V"},
                               {"type", "f32"},
                               {"complex", false},
                               {"count", 3},
                               {"min", 1e-7f},
                               {"max", 2.5}});
  CHECK(full["parameters"].back() ==
        Json{{"section", "SPL"}, {"key", "MWFQ"}, {"text", "9.4e+09"}, {"number", 9.4e9}, {"unit", "Hz"}});
  CHECK(full["notes"][1] == Json{{"severity", "doubtful"}, {"text", "values that are not finite: 1"}});

  const Json one = Json::parse(Kem("info -j --classic " + Quoted(curve)).out)[0];
  CHECK(one["format"] == "Bruker BES3T");
  CHECK(one["fileType"] == 14);
  CHECK(one["shape"] == "curve");
  CHECK(one["x"]["start"] == 0.1);  // not 0.10000000149
  CHECK(one["values"] == Json{{"title", "I (\u00b5V)"}, {"min", nullptr}, {"max", nullptr}});
  CHECK(one["parameters"]["bes3tMwFrequency"] == 9.4e9);
  CHECK(one["parameters"].size() == 14);
  CHECK(one["comment"][1] == "Micro. Freq.= 9.4e+09");

  const Json grid = Json::parse(Kem("info -j --classic " + Quoted(WritePair(folder, "grid", true))).out)[0];
  CHECK(grid["shape"] == "grid");
  CHECK(grid["y"] ==
        Json{{"title", "I (\u00b5V)"}, {"points", 2}, {"stored", false}, {"start", 5}, {"end", 6}, {"step", 1}});
  CHECK(grid["values"]["max"] == 30);
}

TEST_CASE("kem convert: csv keeps every digit, quotes titles, and lists grids with X varying fastest") {
  const TempFolder folder;
  const std::string titles = "\"Field, \"\"B\"\" (G)\",I (\u00b5V)";
  CHECK(Kem("convert --to csv " + Quoted(WritePair(folder, "curve", false))).status == 0);
  CHECK(ReadBytes(folder.Path("curve.csv")) == titles + "\n0.1,1\n0.2,2.5\n0.3,1e-07\n");
  CHECK(Kem("convert --to csv " + Quoted(WritePair(folder, "grid", true))).status == 0);
  CHECK(ReadBytes(folder.Path("grid.csv")) ==
        "\"Field, \"\"B\"\" (G)\",Y,I (\u00b5V)\n0.1,5,1\n0.2,5,2.5\n0.3,5,1e-07\n0.1,6,10\n0.2,6,20\n0.3,6,30\n");
}

TEST_CASE("kem convert: what is written reads back as the same dataset, or it is told what does not") {
  const TempFolder folder;
  const std::string single = folder.Write("single.csv", "Field (G),I (V)\n1.5,0.1\n2.5,1e-7\n0.5,12345678\n");
  const std::string text =
      folder.Write("text.csv", "# TITLE: a\n# [SPL]\n# MWFQ: 9.5e9 Hz\n# note: ##x $$y\nx,y\n1,2\n3,4.123456789\n");
  const std::string binary = folder.Path("single.b2d");
  CHECK(Kem("convert --quiet -o " + Quoted(binary) + Quoted(single)).status == 0);
  const std::string esr = Example("nitroxide.DSC");
  const std::string streak = Example("streak.p3d");
  const std::tuple<std::string, const char*, const char*> cases[] = {
      {esr, "prn", "X is rounded, 42 parameters are left out"},
      {esr, "cvt", "X is rounded, the title is left out, 42 parameters are left out"},
      {esr, "p2d", "X is rounded, 42 parameters are left out"},
      {esr, "b2d", "X is rounded, 42 parameters are left out"},
      {esr, "csv", "the title is left out, 42 parameters are left out; --header keeps that"},
      {esr, "csv --header", ""},
      {esr, "dx", ""},
      {streak, "p3d", ""},
      {streak, "b3d", ""},
      {streak, "csv --header", ""},
      {single, "prn", "values are rounded"},
      {single, "dx", ""},
      {single, "b2d", "values are rounded"},
      {binary, "csv", ""},
      {binary, "dx", ""},
      {binary, "prn", "values are rounded"},
      {text, "dx", "1 parameter is left out"},
      {text, "csv --header", ""},
      {text, "csv", "the title is left out, 2 parameters are left out; --header keeps that"},
  };
  for (const auto& one : cases) {
    const std::string source = std::get<0>(one);
    const std::string format = std::get<1>(one);
    const std::string lost = std::get<2>(one);
    const std::string out = folder.Path("out.v2." + format.substr(0, format.find(' ')));
    const Result result = Kem("convert -fo " + Quoted(out) + Quoted(source) + "--to " + format);
    CAPTURE(source);
    CAPTURE(format);
    CHECK(result.status == 0);
    const auto told = result.err.find(": ", result.err.find("not keep"));
    CHECK((result.err.empty() ? "" : result.err.substr(told + 2)) == (lost.empty() ? "" : lost + '\n'));
    const kem::Dataset before = kem::Open(source);
    const kem::Dataset after = kem::Open(out);
    const bool titled = !before.title.empty() && lost.find("the title") == lost.npos;
    CHECK(after.title == (titled ? before.title : after.title));
    REQUIRE(after.axes.size() == before.axes.size());
    REQUIRE(after.values.Count() == before.values.Count());
    CHECK(after.name + after.unit == before.name + before.unit);
    const double precision = lost.find("rounded") == lost.npos ? 1e-14 : 2e-6;
    for (std::size_t a = 0; a < before.axes.size(); ++a) {
      CHECK(after.axes[a].name + after.axes[a].unit == before.axes[a].name + before.axes[a].unit);
      for (std::size_t k = 0; k < before.axes[a].Count(); ++k)
        REQUIRE(after.axes[a][k] == doctest::Approx(before.axes[a][k]).epsilon(precision));
    }
    const bool floats = before.values.Type() == kem::NumberType::F32;
    for (std::size_t k = 0; k < before.values.Count(); ++k) {
      const double read = after.values.Real(k);
      REQUIRE((floats ? static_cast<float>(read) : read) ==
              doctest::Approx(before.values.Real(k)).epsilon(precision));
    }
  }
  const std::string back = Kem("info " + Quoted(folder.Path("out.v2.dx"))).out;
  CHECK(back.find("  $MWFQ = 9.5e9 Hz\n") != std::string::npos);
  CHECK(back.find("  $note = # #x $ $y\n") != std::string::npos);
}

TEST_CASE("kem convert: a linear axis has its coordinates and its count in every format") {
  const TempFolder folder;
  std::string steps = "[P2D]\nX\nY\n\n[X] DEFINITION\n0 100 0.1\n[Y]\n";
  for (int k = 0; k <= 1000; ++k) steps += std::to_string(k) + ' ';
  const std::string even = folder.Write("even.p2d", steps);
  const std::string odd = WritePair(folder, "odd", false, "XPTS 9001\nXMIN 0\nXWID 9000.045\n");
  const std::tuple<std::string, const char*, int, const char*> cases[] = {
      // sums of steps would end at 99.999, steps of six digits at 9000.09
      {even, "csv", 1001, "\n99.9,999\n100,1000\n"},
      {even, "prn", 1001, "\n99.9   999\n100   1000\n"},
      {even, "dx", 1001, "\n100  1000\n##END="},
      {even, "cvt", 1001, "\n\"increment  :\" 0.1\n"},
      {odd, "cvt", 9001, "\n8999.04\n9000.04\n"},
      {odd, "p2d", 9001, " 8999.04 9000.04 \n[Y]\n"},
      {even, "p2d", 1001, "[X] DEFINITION\n0 100 0.1\n"},
      {WritePair(folder, "grid", true), "p3d", 3, "[X] ARRAY 3\n0.1 0.2 0.3 \n[Y] ARRAY 2\n5 6 \n"},
  };
  for (const auto& [source, format, points, text] : cases) {
    const std::string out = folder.Path(std::string("out.") + format);
    CAPTURE(out);
    REQUIRE(Kem("convert --classic -f -o " + Quoted(out) + Quoted(source)).status == 0);
    CHECK(ReadLines(out).find(text) != std::string::npos);
    if (std::string_view(format) != "csv") CHECK(PrnType(out.c_str(), 0).nX == points);
  }
  CHECK(Kem("stats " + Quoted(even)).out.find("greatest  1000 at 100\n") != std::string::npos);
}

TEST_CASE("kem convert: what must not or cannot be written leaves everything as it was") {
  const TempFolder folder;
  const std::string source = WritePair(folder, "grid", true);
  const std::string curve = WritePair(folder, "curve", false);
  const std::string out = folder.Write("old.csv", "precious");
  std::string rows = "XY\n\n\n\n\n\n\n";
  for (int k = 0; k < 32768; ++k) rows += "1 2\n";
  const std::string endless = folder.Write("long.prn", rows);
  const std::string holey = WritePair(folder, "holey", false, "", std::numeric_limits<float>::infinity());
  Bytes comment;
  comment.Text("[B2D]\n").Put(2 << 24).PadTo(36).Put(2 | 2 << 16).Put(0).Put(0).Text("X\nY\nsee [X] ARRAY\n");
  const std::pair<std::string, std::string> cases[] = {
      {Quoted(holey) + "--to p2d", ": has inf as value 1, which p2d cannot hold; b2d can\n"},
      {Quoted(folder.Write("note.b2d", comment)) + "--to p2d",
       "note.p2d would read back as curve 1 instead of curve 2\n"},
      {Quoted(source) + "--to prn", ": prn holds curves only, and this is a grid of 3 x 2 points\n"},
      {Quoted(curve) + "--to b3d", ": b3d holds grids only, and this is a curve\n"},
      {Quoted(endless) + "--to b2d", ": b2d holds at most 32767 points along an axis, and this has 32768\n"},
      {Quoted(source) + "-o " + Quoted(out), ": " + out + " exists already; --force overwrites it\n"},
      {Quoted(source) + "-f --to csv -o " + Quoted(folder.Path(".")), " is no ordinary file\n"},
      {Quoted(source) + "-o " + Quoted(folder.Path("no/x.csv")), "x.csv cannot be created: "},
      {Quoted(source) + "--item 2 --to csv", ": holds no item 2\n"},
#ifndef _WIN32
      {Quoted(source) + "--force -o /dev/null --to csv", ": /dev/null is no ordinary file\n"},
#endif
  };
  const auto before = Names(folder.Path("."));
  for (const auto& [arguments, sentence] : cases) {
    const Result result = Kem("convert --classic --quiet " + arguments);
    CAPTURE(result.err);
    CHECK(result.status == 1);
    CHECK(result.err.starts_with("kem: " + arguments.substr(1, arguments.find('"', 1) - 1) + ": "));
    CHECK(result.err.find(sentence) != std::string::npos);
    CHECK(Names(folder.Path(".")) == before);
  }
#ifndef _WIN32
  fs::create_symlink("nowhere", folder.Path("link.csv"));
  CHECK(Kem("convert --to csv -o " + Quoted(folder.Path("link.csv")) + Quoted(source)).status == 1);
  fs::remove(folder.Path("link.csv"));
  fs::permissions(out, fs::perms(0600));
  const Result full =
      Kem("convert -f -o " + Quoted(out) + Quoted(Example("raman.prn")), "trap '' XFSZ; ulimit -f 8; ");
  CHECK(full.status == 1);
  CHECK(full.err.find(" cannot be written completely: File too large\n") != std::string::npos);
  CHECK(Names(folder.Path(".")) == before);
#endif
  CHECK(ReadBytes(out) == "precious");
  CHECK(Kem("convert --force -o " + Quoted(out) + Quoted(source)).status == 0);
#ifndef _WIN32
  CHECK(fs::status(out).permissions() == fs::perms(0600));
#endif
  CHECK(ReadBytes(out).starts_with("\"Field"));
}

TEST_CASE("kem: a pair counts once, and two files of a name are not made one") {
  const TempFolder folder;
  const std::string pair = WritePair(folder, "pair", false);
  folder.Write("pair.XGF", "axis");
  fs::copy(pair, folder.Path("small.dsc"));
  fs::copy(folder.Path("pair.DTA"), folder.Path("small.dta"));
  folder.Write("pair.prn", "XY\n\n\n\n\n\n\n1 2\n3 4\n");
  const std::string none = folder.Path("none");
  const std::string out = folder.Path("new/folder");
  std::string all;
  for (const char* name : {"pair.DSC", "none", "pair.DTA", "pair.XGF", "pair.prn", "small.dta"})
    all += Quoted(folder.Path(name));
  const Result result = Kem("convert --quiet --force --to csv --dir " + Quoted(out) + all);
  CHECK(result.status == 1);
  CHECK(result.out.empty());
  CHECK(result.err.find("kem: " + none + ": no such file\n") == 0);
  CHECK(result.err.find("pair.csv has just been made from " + pair + '\n') != std::string::npos);
  CHECK(result.err.ends_with("kem: 2 written, 2 failed, 2 partner files\n"));
  CHECK(Names(out) == std::set<std::string>{"pair.csv", "small.csv"});
#ifndef _WIN32
  fs::remove(folder.Path("pair.DTA"));
  fs::create_symlink("pair.DTA", folder.Path("pair.DTA"));
  CHECK(Kem("info --classic " + Quoted(pair))
            .err.ends_with("pair.DTA, which belongs to it: Too many levels of symbolic links\n"));
  fs::remove(folder.Path("pair.DTA"));
  CHECK(Kem("info --classic " + Quoted(pair), "mkfifo " + Quoted(folder.Path("pair.DTA")) + "; ")
            .err.ends_with("pair.DTA, which belongs to it: is no ordinary file\n"));
#endif
}

TEST_CASE("kem: standard input and output, names longer than the library takes, and what is no file") {
  const TempFolder folder;
  const std::string deep = std::string(60, 'd') + '/' + std::string(90, 'n') + ".v1";
  fs::create_directory(folder.Path(std::string(60, 'd')));
  CHECK(Kem("convert --to csv " + Quoted(WritePair(folder, deep, false))).status == 0);
  CHECK(ReadBytes(folder.Path(deep + ".csv")).ends_with("\n0.1,1\n0.2,2.5\n0.3,1e-07\n"));
  const std::string set = WriteColumns(folder, "set.txt");
  const std::string name = std::string(90, 'n') + "_02.txt";
  fs::copy(set, folder.Path(deep.substr(0, 151) + ".txt"));
  const std::string longest = Quoted(folder.Path(deep.substr(0, 151) + ".txt")) + "--item 2 ";
  CHECK(Kem("info --classic " + longest).out.find(name + '\n') < 132);
  CHECK(Kem("info " + longest).out.find("item      2 of 3 green\n") != std::string::npos);

  CHECK(Kem("info --item 2 - <" + Quoted(set))
            .out.starts_with("-\nformat    columns of text\nitem      2 of 3 green\n"));
  CHECK(Kem("convert --to csv --item 2 - <" + Quoted(set)).out == "nm,green\n1,20\n2,21\n");
  CHECK(Kem("convert --to csv -ao - " + Quoted(set))
            .err.ends_with("item 3 'blue': standard output takes one item only\n"));
  CHECK(Kem("info - <" + Quoted(WritePair(folder, "pair", false))).err ==
        "kem: -: its values, a file of the same name with .DTA, are missing\n");
#ifndef _WIN32
  CHECK(Kem("info " + Quoted(folder.Path("pipe")), "mkfifo " + Quoted(folder.Path("pipe")) + "; ").err ==
        "kem: " + folder.Path("pipe") + ": is a pipe; kem reads files, and standard input as -\n");
  CHECK(Kem("info /dev/null").err == "kem: /dev/null: is a device\n");
  fs::create_directory(folder.Path("left"));
  for (const std::string signal : {"HUP", "INT", "QUIT", "TERM", "PIPE", "XFSZ"}) {
    const std::string waits = "while [ -z \"$(ls -A left)\" ]; do sleep .01; done; ";
    Kem("info - <&3", "cd " + Quoted(folder.Path("")) + "; exec 3<>pipe; (" + waits + "kill -" + signal +
                          " $$)& TMPDIR=left exec ");
    CHECK(Names(folder.Path("left")).empty());
  }
#endif
}

TEST_CASE("kem items: each item is listed and converted under its number") {
  const TempFolder folder;
  fs::create_directory(folder.Path("run.d"));
  const std::string source = WriteColumns(folder, "run.d/set.txt");
  CHECK(Kem("items " + Quoted(source)).out == source + ": 3 items\n1\tred\n2\tgreen\n3\tblue\n");
  const Result first = Kem("convert --to csv " + Quoted(source));
  CHECK(first.status == 0);
  CHECK(first.err == "kem: " + source + ": holds further items; --all-items takes them too\nkem: " + source +
                         ": csv does not keep all of it: the title is left out; --header keeps that\n");
  CHECK(Kem("convert --quiet --to csv -f " + Quoted(source)).err.empty());
  CHECK(Kem("convert --to csv --item 3 " + Quoted(source)).status == 0);
  CHECK(Names(folder.Path("run.d")) == std::set<std::string>{"set.txt", "set.csv", "set_03_blue.csv"});
  const Result all = Kem("convert --to csv --all-items " + Quoted(source));
  CHECK(all.status == 1);
  CHECK(all.err.find(": item 3 'blue': ") != std::string::npos);
  CHECK(Kem("convert -a -o " + Quoted(folder.Path("run.d/x.y.csv")) + Quoted(source)).status == 0);
  CHECK(Names(folder.Path("run.d")) ==
        std::set<std::string>{"set.txt", "set.csv", "set_01_red.csv", "set_02_green.csv", "set_03_blue.csv",
                              "x.y_01_red.csv", "x.y_02_green.csv", "x.y_03_blue.csv"});
  CHECK(ReadBytes(folder.Path("run.d/set_02_green.csv")) == "nm,green\n1,20\n2,21\n");
  CHECK(Kem("convert -a --to prn " + Quoted(Example("raman.prn")) + "-d " + Quoted(folder.Path("one"))).status ==
        0);
  CHECK(Names(folder.Path("one")) == std::set<std::string>{"raman.prn"});
}

TEST_CASE("kem: files that announce more than they hold") {
  const TempFolder folder;
  const std::string scan = folder.Write("scan", "[Delay]\nIntTime= 1\nNrPoints= 2147483646\n");
  const std::string image = folder.Write("a.par", "JSS\rXPLS 1\rSSX 1024\rSSY 1025\r");
  folder.Write("a.spc", "ab");
  std::string series(140, '\0');
  const std::string oma = folder.Write("series", series.replace(0, 4, "EG&G").replace(125, 2, "\xFF\xFF"));
  for (const char* command : {"info ", "items ", "convert -a --to csv "}) {
    CHECK(Kem(command + Quoted(scan)).err ==
          "kem: " + scan + ": announces 2147483646 values, the file has 40 bytes\n");
    CHECK(Kem(std::string(command) + "--classic " + Quoted(image)).err ==
          "kem: " + image + ": announces 1049600 values, the file has 2 bytes\n");
  }
  CHECK(Kem("info --classic " + Quoted(oma)).err.starts_with("kem: " + oma + ": holds no points\n"));
  const Result items = Kem("items --classic " + Quoted(oma));
  CHECK(items.status == 1);
  CHECK(items.out == oma + ": 1 item\n1\tcurve 0\tY\n");
  CHECK(items.err == "kem: " + oma + ": announces 65535 items, the file has 140 bytes\n");
}

TEST_CASE("kem items: files that count from 0, and signals that alternate") {
  const TempFolder folder;
  Bytes curves;
  curves.Text("\xFC\xFF\x04\x81").Put(std::int16_t{3}).Put(std::int16_t{1});
  for (const char* title : {"first", "second", "third"}) {
    Bytes header;
    header.Text("nm").PadTo(29, ' ').Text(title).PadTo(213, ' ').Text(std::string(1, '\0') + '\1');
    curves.Text(std::string(header)).Put(std::int16_t{1}).Put(7).Put(0).Put(0);
  }
  const std::string iccd = folder.Write("set.crv", curves);
  CHECK(Kem("items " + Quoted(iccd)).out == iccd + ": 3 items\n1\tfirst\n2\tsecond\n3\tthird\n");
  CHECK(Kem("convert --to csv --item 3 " + Quoted(iccd)).status == 0);
  CHECK(Kem("info --item 4 " + Quoted(iccd)).err == "kem: " + iccd + ": holds no item 4, but 3\n");
  CHECK(Names(folder.Path(".")) == std::set<std::string>{"set.crv", "set_03_third.csv"});

  const std::string scan =
      folder.Write("scan.txt", "[DcDelay]\nStart= 0\nEnd= 1\nStep= 1\nNrPoints= 2:4\n1 1 3 1\n2 1 4 1\n\n\n");
  CHECK(Kem("convert --to csv --all-items " + Quoted(scan)).status == 0);
  CHECK(ReadBytes(folder.Path("scan_01_first-signal.csv")) == "Delay Time (ps),Intensity\n0,1000\n1,2000\n");
  CHECK(ReadBytes(folder.Path("scan_02_second-signal.csv")) == "Delay Time (ps),Intensity\n0,3000\n1,4000\n");
  CHECK(Kem("info --item 3 " + Quoted(scan)).err == "kem: " + scan + ": holds no item 3, but 2\n");
}

TEST_CASE("kem: real spectra") {
  if (!HaveSamples()) return;
  const TempFolder folder;
  const std::string samples = SampleFolder() + "/bes3t/";
  const Json strong = Json::parse(Kem("info --json " + Quoted(samples + "strong1.dsc")).out)[0];
  CHECK(strong["axes"][0]["last"] == 3425);
  CHECK(strong["values"]["max"] == 15748);
  CHECK(Kem("items " + Quoted(samples + "calib_4col.DSC")).out.find(": 2 items\n") != std::string::npos);
  CHECK(Kem("convert -a --to csv -d " + Quoted(folder.Path(".")) + Quoted(samples + "calib_4col.DSC")).status == 0);
  CHECK(Names(folder.Path(".")).size() == 2);
  CHECK(ReadBytes(folder.Path("calib_4col_02.csv")).ends_with("\n94400,-1380,-227\n"));
}

// The commands that calculate: their results are those of the library's members.
#include <nlohmann/json.hpp>

#include "kem/dataset.h"
#include "support/command.h"
#include "support/records.h"

using namespace kem::test;
using Json = nlohmann::json;

namespace {

using Record = std::unique_ptr<PrnType>;

Record Copy(const PrnType& record) { return std::make_unique<PrnType>(record); }

// Runs a command that writes, with the output in front of its arguments, and loads what it wrote without loss.
Record Written(const std::string& command, const std::string& arguments, const PrnType& expected) {
  const TempFolder folder;
  const std::string out = folder.Path(expected.Is3D() ? "out.b3d" : "out.b2d");
  const Result result = Kem(command + " -o " + Quoted(out) + arguments);
  CHECK(result.err.empty());
  CHECK(result.status == 0);
  return std::make_unique<PrnType>(out.c_str(), 0);
}

// Files on the command line are those of the examples, without their folder.
void InExamples() { fs::current_path(KEM_EXAMPLES); }

}  // namespace

TEST_CASE("kem: operations write what the members return") {
  InExamples();
  const PrnType curve("raman.prn", 0);
  const PrnType grid("streak.p3d", 0);
  const auto changed = [](const PrnType& source, auto change) {
    Record record = Copy(source);
    change(*record);
    return record;
  };
  const auto moved = [](const PrnType& source, char axis, std::string operation, float value) {
    return Copy(source.AxisOp(axis, operation.data(), value));
  };
  const PrnType esr("nitroxide.DSC", 0);
  const auto xs = XOf(esr);
  const std::pair<std::string, Record> cases[] = {
      {"slice streak.p3d --y 1 2", Take(grid.XSlice(1, 2, 0))},
      {"slice streak.p3d --x 460 430 --mean", Take(grid.YSlice(460, 430, 1))},
      {"cut raman.prn --x 500 600", Take(curve.Cut(500, 600, 0, 0))},
      {"cut streak.p3d --y 1 2", Take(grid.Cut(430, 619, 1, 2))},
      {"reduce raman.prn --x 3", Take(curve.Reduce(3, 1))},
      {"reduce streak.p3d -x 2 -y 3", Take(grid.Reduce(2, 3))},
      {"resample raman.prn --x 600 500 2.5", Take(curve.InterpolateY(600, 500, -2.5f))},
      {"resample streak.p3d --x 440 450 1 --y 0 3 .5", Take(grid.InterpolateZ(440, 450, 1, 0, 3, 0.5f))},
      {"resample raman.prn --like nitroxide.DSC",
       Take(curve.InterpolateXY(const_cast<float*>(xs.data()), static_cast<int>(xs.size())))},
      {"axis raman.prn --x *2", moved(curve, 'x', "*", 2)},
      {"axis nitroxide.DSC --x -3308.5", moved(esr, 'x', "-", 3308.5f)},
      {"axis streak.p3d -x inv -y +2", moved(*moved(grid, 'x', "inv", 0), 'y', "+", 2)},
      {"swap streak.p3d", changed(grid, [](PrnType& r) { r.SwapXY(); })},
      {"sort raman.prn", changed(curve, [](PrnType& r) { r.SortAxes(); })},
      {"median raman.prn -w 4", Take(curve.Median2D(5))},
      {"median streak.p3d -w 3", Take(grid.Median3D(3))},
      {"smooth raman.prn -w 9", Take(curve.XSmooth(9))},
      {"smooth streak.p3d -w 5 --along y", Take(grid.YSmooth(5))},
      {"diff streak.p3d", Take(grid.XDiff())},
      {"diff streak.p3d -l y", Take(grid.YDiff())},
      {"baseline raman.prn --x 450 3000", changed(curve, [](PrnType& r) { r.SubLinBackX(450, 3000); })},
      {"baseline streak.p3d --y 1 2", changed(grid, [](PrnType& r) { r.SubLinBackY(1, 2); })},
      {"slant raman.prn --points 450 1 3000 2", changed(curve, [](PrnType& r) { r.Slant(450, 1, 3000, 2); })},
      {"integrate raman.prn", Take(curve.RunningIntegral())},
      {"integrate streak.p3d --x 440 450", Take(grid.IntegrateX(440, 450))},
      {"integrate streak.p3d --y 1 2", Take(grid.IntegrateY(1, 2))},
  };
  for (const auto& one : cases) {
    CAPTURE(one.first);
    const auto& [arguments, expected] = one;
    REQUIRE(expected->nY > 0);
    expected->MinMax();  // as loading does; medians keep the ranges of their source
    const auto end = arguments.find(' ');
    CHECK(SameData(*Written(arguments.substr(0, end), arguments.substr(end), *expected), *expected));
  }
}

TEST_CASE("kem calc: expressions are calculated with the library's operators") {
  InExamples();
  PrnType a("raman.prn", 0);
  PrnType b("raman_background.prn", 0);
  PrnType grid("streak.p3d", 0);
  PrnType half = a * 0.5f;
  PrnType two = a.Set(2);
  PrnType square = a ^ 2.0f;
  PrnType rest = a - half;
  const std::pair<std::string, PrnType> cases[] = {
      {"raman.prn - 0.5*raman.prn", rest},
      {"raman.prn+raman_background.prn", a + b},
      {"columns.nxy#3+1", PrnType("columns.nxy", 3) + 1.0f},
      {"streak.p3d & 'streak.p3d'", grid & grid},
      {"3 & raman.prn", a * 3.0f},
      {"2 - raman.prn", two - a},
      {"2/raman.prn", two / a},
      {"./raman.prn / -1e-2", a / -1e-2f},
      {"(-raman.prn^2)", -square},
      {"raman.prn * 2^-1^2", half},
      {"raman.prn ^ (8 / 2 / 2)", square},
      {"-Log((((raman.prn))))", -a.Log()},
      {"ATan( ASinH(raman.prn) )", a.ASinH().ATan()},
      {"raman.prn * Exp(0) / Inv(.5)", a / 2.0f},
      {"Set(raman.prn, 1 + 1)", two},
      {"-'raman.prn' - 1", (-a) - 1.0f},
  };
  for (const auto& one : cases) {
    CAPTURE(one.first);
    const auto& [expression, expected] = one;
    REQUIRE(!!expected);
    CHECK(SameData(*Written("calc", Quoted(expression), expected), expected));
  }
}

TEST_CASE("kem calc: a faulty expression has status 2, one that cannot be calculated 1") {
  InExamples();
  struct Case {
    std::string expression;
    int status;
    const char* sentence;
  };
  const Case cases[] = {
      {" ", 2, "position 2: a file, a number, a function or ( is expected"},
      {"raman.prn - ", 2, "position 13: a file, a number, a function or ( is expected"},
      {"(raman.prn", 2, "position 11: ) is expected"},
      {"raman.prn)", 2, "position 10: an operator is expected"},
      {"'raman.prn", 2, "position 1: this quote is not closed"},
      {"1 + Foo(2)", 2, "position 5: there is no function Foo"},
      {"Sin(1, 2)", 2, "position 1: Sin takes 1 operand"},
      {"Set(raman.prn)", 2, "position 1: Set takes 2 operands, a file and a number"},
      {"2 * 1e99", 2, "position 5: this number is beyond single precision"},
      {std::string(5000, '('), 2, "position 1001: the expression is too long"},
      {"2 * 3", 2, "the expression names no file"},
      {"Set(raman.prn, raman.prn)", 1, "position 16: Set takes a number here"},
      {"raman.prn / (1 - 1)", 1,
       "position 11: raman.prn (curve 1401) / 1-1: a division by 0 and the power 0 are not defined"},
      {"-streak.p3d + raman.prn", 1,
       "position 13: _streak.p3d (grid 64 x 100) + raman.prn (curve 1401): a curve and a grid do not go together"},
      {"raman.prn & nitroxide.DSC", 1,
       "position 11: raman.prn (curve 1401) & nitroxide.DSC (curve 1024): their counts of points differ"},
  };
  const TempFolder folder;
  for (const Case& c : cases) {
    CAPTURE(c.expression);
    const Result result = Kem("calc -o " + Quoted(folder.Path("out.csv")) + "-- " + Quoted(c.expression));
    CHECK(result.status == c.status);
    CHECK(result.err == "kem: calc: " + std::string(c.sentence) + '\n');
  }
  CHECK(Names(folder.Path(".")).empty());
  const std::string part = folder.Path("part.b3d");
  CHECK(Kem("cut streak.p3d --x 430 445 --y 0 1.8 -o " + Quoted(part)).status == 0);
  const std::pair<std::string, std::string> others[] = {
      {"none.prn*2", "none.prn: no such file"},
      {"raman.prn/10", "raman.prn/10: no such file; a division needs blanks, raman.prn / 10"},
      {"columns.nxy#4*2", "columns.nxy: holds no item 4, but 3"},
      {"raman.prn/ nitroxide.DSC",
       "calc: nitroxide.DSC covers 0 of 1401 points of raman.prn; it counts as 0 at the others"},
      {"streak.p3d + '" + part + "'",
       "calc: " + part + " covers 60 of 6400 points of streak.p3d; it goes on along its outermost lines"},
  };
  for (const auto& [expression, sentence] : others)
    CHECK(Kem("calc --to b3d -fo " + Quoted(folder.Path("out.b2d")) + Quoted(expression))
              .err.find("kem: " + sentence + '\n') == 0);
}

TEST_CASE("kem: an operation that does not suit a file is refused with the reason") {
  InExamples();
  struct Case {
    std::string arguments;
    int status;
    const char* sentence;
  };
  const Case cases[] = {
      {"slice streak.p3d", 2, "slice: --x or --y is required"},
      {"baseline streak.p3d --x 1 2 --y 1 2", 2, "baseline: --x excludes --y"},
      {"smooth raman.prn -w 6", 2, "smooth: --width: one of 5, 7, 9, 13, 17, 21 is needed, not 6"},
      {"slant raman.prn", 2, "slant: --points is required"},
      {"slice raman.prn --x 1 2", 1, "raman.prn: is a curve, and only grids have slices"},
      {"slice streak.p3d --y -2 -1", 1, "streak.p3d: has no samples within the bounds"},
      {"cut streak.p3d --x 430.5 431", 1, "streak.p3d: has no samples within the bounds"},
      {"cut raman.prn --y 1 2", 1, "raman.prn: is a curve; only grids have a Y axis"},
      {"reduce streak.p3d -x 65", 1, "streak.p3d: has fewer samples than become one"},
      {"resample raman.prn --x 1 2 0", 1, "raman.prn: cannot be resampled in steps of 0"},
      {"resample streak.p3d --x 1 2 1", 1, "streak.p3d: is a grid, and needs --y too"},
      {"resample streak.p3d --like raman.prn", 1, "streak.p3d: is a grid 64 x 100, unlike raman.prn, a curve 1401"},
      {"smooth raman.prn -w 5 -l y", 1, "raman.prn: is a curve; only grids have a Y axis"},
      {"baseline raman.prn --x 450 100", 1, "raman.prn: its X axis goes from 400 to 3200 and does not reach 100"},
      {"slant raman.prn -p 450 1 450 2", 1, "raman.prn: the two coordinates are the same"},
      {"integrate streak.p3d", 1, "streak.p3d: is a grid, which is integrated along either --x or --y"},
  };
  const TempFolder folder;
  for (const Case& c : cases) {
    CAPTURE(c.arguments);
    const Result result = Kem(c.arguments + (" -o " + Quoted(folder.Path("out.csv"))));
    CHECK(result.status == c.status);
    CHECK(result.err == "kem: " + std::string(c.sentence) + '\n');
    CHECK(Names(folder.Path(".")).empty());
  }
}

TEST_CASE("kem: slices are named after the axes, and several files go into a folder") {
  InExamples();
  const TempFolder folder;
  const std::string out = Quoted(folder.Path("."));
  CHECK(Kem("slice streak.p3d --x 442 445 --to csv -d " + out).status == 0);
  CHECK(ReadBytes(folder.Path("streak.csv")).starts_with("Time (ns),Intensity (counts)\n0,38\n"));
  folder.Write("fixed.par", "JSS 0\nHCF 10\nHSW 4\n");
  folder.Write("fixed.spc", Bytes(std::endian::big).Put(7).Put(8));
  for (const auto& [name, start] : {std::pair("streak.p3d", "Time (ns),Wavelength (nm),Intensity (counts)\n0,430,"),
                                    std::pair("nitroxide.DSC", "Intensity,Field (G)\n-66,3308.7\n"),
                                    std::pair("", "Intensity,Field (G)\n7,8\n8,12\n")}) {
    const std::string source = *name ? name : folder.Path("fixed.par");
    CHECK(Kem("swap -fo " + Quoted(folder.Path("streak.csv")) + Quoted(source)).status == 0);
    CHECK(ReadBytes(folder.Path("streak.csv")).starts_with(start));
  }
  const Result several = Kem("diff --to b2d -d " + out + "raman.prn streak.p3d nitroxide.DSC");
  CHECK(several.status == 1);
  CHECK(
      several.err ==
      "kem: streak.p3d: b2d holds curves only, and this is a grid of 50 x 100 points\nkem: 2 written, 1 failed\n");
  CHECK(Kem("reduce -x 2 --to csv -a columns.nxy -d " + out).status == 0);
  CHECK(Names(folder.Path(".")) ==
        std::set<std::string>{"streak.csv", "raman.b2d", "nitroxide.b2d", "columns_01_no-quencher.csv",
                              "columns_02_10-mM-quencher.csv", "columns_03_25-mM-quencher.csv", "fixed.par",
                              "fixed.spc"});
}

TEST_CASE("kem integrate, stats and histogram print what the members return") {
  InExamples();
  const PrnType curve("raman.prn", 0);
  const PrnType grid("streak.p3d", 0);
  const auto integral = [](const std::string& arguments) { return std::stof(Kem("integrate " + arguments).out); };
  CHECK_BITS(integral("raman.prn"), curve.Integral(400, 3200, 0, 0));
  CHECK_BITS(integral("raman.prn --x 500 600.5"), curve.Integral(500, 600.5f, 0, 0));
  CHECK_BITS(integral("streak.p3d --x 440 450 --y 1 2"), grid.Integral(440, 450, 1, 2));
  CHECK(integral("nitroxide.DSC --absolute") ==
        doctest::Approx(PrnType("nitroxide.DSC", 0).AbsIntegral(3308.7f, 3408.7f, 0, 0))
            .epsilon(2e-3));  // whose steps drift
  CHECK_BITS(integral("raman.prn --x 500 inf"), curve.Integral(500, 3200, 0, 0));
  const Result beyond = Kem("integrate raman.prn --x 0 500");
  CHECK_BITS(std::stof(beyond.out), curve.Integral(400, 500, 0, 0));
  const std::string reach = "kem: raman.prn: its X axis goes from 400 to 3200 and does not reach ";
  CHECK(beyond.err == reach + "0; 400 to 500 is taken\n");
  CHECK(Kem("stats raman.prn --x 0 399").err == reach + "0\n");

  const Json stats = Json::parse(Kem("stats --json raman.prn streak.p3d").out);
  REQUIRE(stats.size() == 2);
  float low = 0, high = 0, x = 0, y = 0, other = 0;
  grid.MinMaxZ(430, 619, 0, 20, low, high, other, other, x, y);
  const Json& of = stats[1];
  CHECK(of["shape"] == "grid");
  CHECK(of["points"] == Json{64, 100});
  CHECK(of["x"] == Json{{"start", 430}, {"end", 619}, {"unit", "nm"}});
  CHECK(of["max"] == Json{{"value", high}, {"x", x}, {"y", 2.8}});
  CHECK_BITS(of["min"]["value"].get<float>(), low);
  CHECK_BITS(of["noise"].get<float>(), grid.NoiseLevel());
  CHECK_BITS(of["integral"].get<float>(), grid.Integral(430, 619, 0, 19.8f));
  CHECK(stats[0]["max"].size() == 2);

  const TempFolder folder;
  const std::string line = folder.Write("a,b.prn", "XY\n\n\n\n\n\n\n1 0\n2 4\n3 1\n4 4\n");
  CHECK(Kem("stats --x 4 1.5 " + Quoted(line)).out ==
        line +
            ": curve 4\n  X         4 to 1.5\n  least     1 at 3\n  greatest  4 at 2\n  spacing   0.6666667\n"
            "  integral  6.5\n");
  CHECK(Kem("stats --x 2.1 2.2 " + Quoted(line)).err == "kem: " + line + ": has no samples within the bounds\n");
  // The steps of this axis add up to one step less than its range: 716 if that were left out of account.
  std::string steps = "[P2D]\nX\nY\n\n[X] DEFINITION\n3395 3495 0.0977517\n[Y]\n";
  for (int k = 0; k < 1024; ++k) steps += k < 1023 ? "1 " : "1000 ";
  CHECK(integral(Quoted(folder.Write("steps.p2d", steps))) == doctest::Approx(148.83).epsilon(1e-4));
  CHECK(Kem("value -x 3 " + Quoted(line) + "raman.prn").out == line + "\t1\n");
  CHECK(Kem("value -x 2.5 " + Quoted(line)).out == "2.5\n");
  CHECK(Kem("value -nx 2.5 " + Quoted(line)).out == "4\n");
  CHECK_BITS(std::stof(Kem("value -x 440.5 -y 2 streak.p3d").out), grid.At(440.5f, 2));
  CHECK(Kem("value -x 440 streak.p3d").err == "kem: streak.p3d: is a grid, and needs --y too\n");
  CHECK(Kem("histogram -b 2 " + Quoted(line)).out == line + ": 0 to 4\n0\t2\t2\n2\t4\t2\n");
  CHECK(Kem("histogram -b 4 --csv " + Quoted(line))
            .out.ends_with(",b.prn\",0,1,1\n\"" + line + "\",1,2,1\n\"" + line + "\",2,3,0\n\"" + line +
                           "\",3,4,2\n"));
}

TEST_CASE("kem: X in other units, in what is printed and written, and where that has no meaning") {
  InExamples();
  struct Case {
    const char* arguments;
    int status;
    const char* text;  // printed, or the sentence
  };
  const Case cases[] = {
      {"convert --to csv -o - nitroxide.DSC --x-unit millitesla", 0, "Field (mT),Intensity\n330.87,-66\n"},
      {"convert --to csv -o - nitroxide.DSC --axis g", 0, "g,Intensity\n2.0363047194146646,-66\n"},
      {"convert --to csv -o - nitroxide.DSC --axis g --frequency 9.5e9", 0, "g,Intensity\n2.051420449039164,-66\n"},
      {"convert --to csv -o - streak.p3d --x-unit eV", 0, "Energy (eV),Time (ns),Intensity (counts)\n2.883353"},
      {"convert --to dx -o - nitroxide.DSC --x-unit mT", 0, "\n##XLABEL=Field\n##XUNITS=mT\n"},
      {"info nitroxide.DSC --x-unit T", 0, "axis      Field (T): 1024 points, 0.33087 to 0.34087 in steps"},
      {"stats nitroxide.DSC --x-unit mT", 0, "  X         330.87 to 340.87 mT\n"},
      {"info -j streak.p3d --x-unit um", 0, "\"unit\": \"um\""},
      {"value -x 333 nitroxide.DSC --x-unit mT", 0, "108.5125\n"},
      {"info raman.prn --x-unit nm", 1,
       "raman.prn: its X axis 'Raman shift': a shift has no wavelength of its own"},
      {"info raman.prn --axis g", 1, "raman.prn: its X axis 'Raman shift': cm-1 cannot be converted into T"},
      {"stats streak.p3d --x-unit ns", 1, "streak.p3d: its X axis 'Wavelength': nm cannot be converted into ns"},
      {"info raman.prn --x-unit parsec", 2, "info: --x-unit: one of T, mT, "},
      {"info raman.prn --axis g --frequency 0", 2, "info: --frequency: a number above 0 is needed, not 0"},
      {"info --classic raman.prn --x-unit eV", 2, "info: --classic excludes --x-unit"},
  };
  for (const Case& c : cases) {
    CAPTURE(c.arguments);
    const Result result = Kem(c.arguments);
    CHECK(result.status == c.status);
    const std::string& said = c.status == 0 ? result.out : result.err;
    CHECK(said.substr(0, 4000).find(c.text) != std::string::npos);
  }
}

TEST_CASE("kem: folders, patterns and what is up to date, one file after the other or several at a time") {
  const TempFolder folder;
  const std::string data = folder.Path("data");
  for (const char* inner : {"data/a/b", "data/.hidden"}) fs::create_directories(folder.Path(inner));
  for (const char* name : {"nitroxide.DSC", "nitroxide.DTA", "raman.prn"})
    for (const char* to : {"data/", "data/a/b/", "data/.hidden/"})
      fs::copy(Example(name), folder.Path(std::string(to) + name));
  folder.Write("data/notes.txt", "no spectrum, and #DESC is only named\n");
  folder.Write("data/a/cut.DSC", "#DESC\n");
  fs::current_path(folder.Path("."));
  const auto run = [](const std::string& arguments, int status) {
    const Result result = Kem("convert --quiet --to csv " + arguments);
    CHECK(result.status == status);
    return result.err;
  };
  const std::string failed = "kem: data/a/cut.DSC: IKKF names no kind of values (REAL or CPLX)\n";
  CHECK(run("data --dir flat --jobs 2", 0) == "kem: 2 written, 1 partner file, 1 other file\n");
  CHECK(Names("flat") == std::set<std::string>{"nitroxide.csv", "raman.csv"});
  const std::string all = "-r data --dir data/out --keep-tree --update --report r.json --jobs ";
  CHECK(run(all + "1", 1) == failed + "kem: 4 written, 1 failed, 2 partner files, 1 other file\n");
  CHECK(ReadBytes("data/out/a/b/raman.csv") == ReadBytes("flat/raman.csv"));
  const Json report = Json::parse(ReadBytes("r.json"));
  REQUIRE(report.size() == 6);
  CHECK(report[0]["state"] == "written");
  CHECK(fs::path(report[0]["outputs"][0]["output"].get<std::string>()) == fs::path("data/out/a/b/nitroxide.csv"));
  CHECK(report[2]["errors"].size() == 1);
  CHECK(report[4]["state"] == "left out");
  fs::last_write_time("data/raman.prn", fs::last_write_time("data/out/raman.csv") + std::chrono::hours(1));
  fs::remove("data/a/cut.DSC");
  CHECK(run(all + "2", 0) == "kem: 1 written, 3 up to date, 2 partner files, 5 other files\n");
  fs::last_write_time("data/raman.prn", fs::last_write_time("flat/raman.csv") - std::chrono::hours(1));
  CHECK(run(all + "2", 0) == "kem: 0 written, 4 up to date, 2 partner files, 5 other files\n");
  CHECK(run("data/*/b/[m-o]*.D?? data/**/r?man.prn --dir flat2", 1)
            .ends_with("kem: 2 written, 1 failed, 1 partner file\n"));
  CHECK(run("data/x*y", 1) == "kem: data/x*y: no file matches this pattern\nkem: 0 written, 1 failed\n");
  fs::create_directory("empty");
  CHECK(Kem("check empty").err == "kem: empty: holds no files\n");
#ifndef _WIN32
  for (int k = 0; k < 3000; ++k) fs::create_symlink(Example("streak.p3d"), "empty/" + std::to_string(k) + ".p3d");
  const Result ended = Kem("convert --quiet --to csv empty --dir ended --jobs 2",
                           "trap : INT; (until [ -e ended/1.csv ]; do sleep .01; done; kill -INT $$)& exec ");
  CHECK(ended.status == 130);
  CHECK(ended.err.starts_with("kem: " + std::to_string(Names("ended").size()) + " written, "));
  CHECK(ended.err.ends_with(" not reached\n"));
#endif
  InExamples();
}

TEST_CASE("kem convert --join: a column for each curve, at coordinates that agree or are made to") {
  const TempFolder folder;
  const std::string a = folder.Write("a.csv", "Field (mT),I (V)\n1,10\n2,20\n3,30\n");
  const std::string b = folder.Write("b.csv", "Field (mT),I (V),J\n1,5,7\n2,6,8\n3,7,9\n");
  const std::string c = folder.Write("c.csv", "Field (G),I\n25,25\n15,15\n35,5\n");
  const auto joined = [](const std::string& arguments) {
    const Result result = Kem("convert --quiet --join --to csv -o - " + arguments);
    return result.status == 0 ? result.out : result.err;
  };
  CHECK(joined(Quoted(a) + Quoted(b)) == "Field (mT),a (V),b I (V)\n1,10,5\n2,20,6\n3,30,7\n");
  CHECK(joined("-a " + Quoted(b) + Quoted(a)) == "Field (mT),b I (V),b J,a (V)\n1,5,7,10\n2,6,8,20\n3,7,9,30\n");
  CHECK(joined("--resample " + Quoted(a) + Quoted(c)) == "Field (mT),a (V),c\n1,10,nan\n2,20,20\n3,30,15\n");
  const std::string refusals[] = {"its X is in 'G', that of " + a + " in 'mT'; --x-unit converts\n",
                                  "its X coordinate 1 is 2.5, that of " + a +
                                      " 1; --resample takes its values to the coordinates of the first\n"};
  CHECK(joined(Quoted(a) + Quoted(c)).find(refusals[0]) != std::string::npos);
  CHECK(joined("--x-unit mT " + Quoted(a) + Quoted(c)).find(refusals[1]) != std::string::npos);
  CHECK(joined(Quoted(a) + Quoted(Example("streak.p3d")))
            .ends_with("kem: - is not written, because not all files can be joined\n"));
  CHECK(Kem("convert --join --to prn -o x.prn " + Quoted(a)).status == 2);
}

TEST_CASE("kem: the classic reading tells where it is not what the file says") {
  const TempFolder folder;
  const std::string file = folder.Write(
      "f.dx",
      "##TITLE=t\n##JCAMP-DX=4.24\n##XFACTOR=1\n##YFACTOR=0.5\n##NPOINTS=2\n##XYDATA=(XY..XY)\n1 2\n3 4\n##END=\n");
  const Result classic = Kem("convert --classic --to csv " + Quoted(file) + Quoted(Example("raman.prn")) + "-d " +
                             Quoted(folder.Path(".")));
  CHECK(classic.err ==
        "kem: " + file + ": values are 1 to 2 in the file, but 2 to 4 in the record (--classic)\nkem: 2 written\n");
  CHECK(ReadBytes(folder.Path("f.csv")).ends_with("\n1,2\n3,4\n"));
  CHECK(Kem("convert --to csv -f " + Quoted(file)).status == 0);
  CHECK(ReadBytes(folder.Path("f.csv")) == "X,Y\n1,1\n3,2\n");
}

TEST_CASE("kem: complex values, matrices, metadata; check, identify and formats") {
  const TempFolder folder;
  const auto csv = [&](const std::string& options, const std::string& file) {
    CHECK(Kem("convert --quiet -fo " + Quoted(folder.Path("out.csv")) + options + Quoted(file)).err.empty());
    return ReadBytes(folder.Path("out.csv"));
  };
  folder.Write("c.spc", Bytes(std::endian::big).Put(1).Put(2).Put(3).Put(4));
  const std::string pair = folder.Write("c.par", "JSS 16\nHCF 100\nHSW 20\n");
  CHECK(csv("", pair) == "Field (G),Intensity re,Intensity im\n90,1,2\n110,3,4\n");
  CHECK(csv("--part imaginary ", pair).ends_with("\n90,2\n110,4\n"));
  CHECK(Kem("convert --to p2d " + Quoted(pair))
            .err.starts_with("kem: " + pair +
                             ": values are complex; --part tells which part to take, and the real "));
  const std::string lattice = folder.Write("l.txt", "(nm),y,z\n1,7,1\n2,7,2.5\n1,8,3\n2,8,4\n");
  CHECK(csv("", lattice) == "(nm),y,z\n1,7,1\n2,7,2.5\n1,8,3\n2,8,4\n");
  CHECK(csv("--matrix ", lattice) == "y \\ (nm),1,2\n7,1,2.5\n8,3,4\n");
  CHECK(csv("--metadata ", pair).size() > 9);
  CHECK(Json::parse(ReadBytes(folder.Path("out.json")))["parameters"][1]["key"] == "HCF");

  const std::string cut = folder.Write("cut.p2d", "[P2D]\nX\nY\n\n[X] DEFINITION\n0 2 1\n[Y]\n1 2");
  const Result checked = Kem("check " + Quoted(lattice) + Quoted(cut));
  CHECK(checked.status == 4);
  CHECK(checked.out == cut + ": damaged: numbers that are missing and are 0: 1\n");
  CHECK(Kem("check " + Quoted(lattice)).status == 0);
  CHECK(Kem("check " + Quoted(cut) + Quoted(folder.Path("none"))).status == 1);
  CHECK(Json::parse(Kem("check -j " + Quoted(cut)).out)[0]["state"] == "damaged");
  CHECK(Kem("identify " + Quoted(cut)).out == cut + ": P2D text curve (begins with [P2D])\n");
  CHECK(Json::parse(Kem("formats --json").out)["read"].size() == kem::Formats().size());
  const std::string none =
      folder.Write("n.dx", "##TITLE=a\n##BLOCKS=1\n##TITLE=b\n##XUNITS=1/CM\n##XYDATA=(X++(Y..Y))\n##END=\n");
  CHECK(Kem("info " + Quoted(none)).out ==
        none +
            "\nformat    JCAMP-DX\ntitle     b\nvalues    0 f64, no values\naxis      (1/CM): 0 points\n"
            "  TITLE = b\n  XUNITS = 1/CM\n[LINK]\n  TITLE = a\n  BLOCKS = 1\n");
}

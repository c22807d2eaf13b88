// The table of commands.
#include "command.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace kem::tool {
namespace {

constexpr Command kCommands[] = {
    {"info", "Show what files hold: shape, axes, titles and acquisition parameters",
     R"(The item, if a file holds several, counts from 1. Notes on what is doubtful go to
standard error. A number in the JSON document is null where a file holds none that
is finite; docs/schema describes it. Texts that are no UTF-8 are taken for Latin-1.
With --classic it is the report of the record that hosts of the library receive.

Example:
  kem info --json scan.DSC)",
     DefineInfo},
    {"items", "List the items of files that hold several",
     R"(Prints for each item its number and its name, with a tab in between. An item is one
variable of a file, a block or page of JCAMP-DX, a spectrum of a series.

Example:
  kem items columns.nxy)",
     DefineItems},
    {"check", "Tell whether files are whole",
     R"(Opens every item and prints what is damaged or doubtful. The status is 0 when all
are whole, 4 when one is damaged, and 1 when one cannot be read.

Example:
  kem check *.DSC)",
     DefineCheck},
    {"identify", "Tell which format files have, and what tells so", R"(Example:
  kem identify cw.par)",
     DefineIdentify},
    {"formats", "List the formats that are read and written", R"(Example:
  kem formats --json)",
     DefineFormats},
    {"convert", "Write files in another format",
     R"(Files may be patterns, "data/**/*.DSC" in quotes, and folders, with -r those in them,
too; what no format recognises is left out there, and so is what has the format
asked for. Results go beside their sources, with the extension of the format, unless
--output or --dir say otherwise. Existing files are left alone without --force,
and a file appears only when it is complete. Of several items the first is
converted; another one is picked by --item, and _NN put behind its name. All that
holds for the other commands that write files, too.

A csv table begins with the axis titles. A curve has a line X,Y for each point, a
grid a line X,Y,Z for each point with X varying fastest, as plotting programs,
spreadsheets and data frames load it. Its numbers read back without loss, and so do
those of dx; in the other text formats they have six digits and are finite. A linear axis of which
six digits of start, end and step would make another one is written point by point.

Examples:
  kem convert --to csv -r measurements --dir tables --keep-tree --update
  kem convert --join *.DSC --resample -o all.csv)",
     DefineConvert},
    {"plot", "Draw curves or a grid, in the terminal or into a file",
     R"(gnuplot draws, which has to be installed (Debian's package gnuplot-nox). Curves of all
files come into one picture, complex ones as two curves; a grid is an image over its
own axes, however they are spaced, with a bar of colours. Titles and units are those
of the file. --script writes the commands for gnuplot and their data.

Examples:
  kem plot scan.DSC
  kem plot --stack *.DSC -o overlay.svg
  kem plot streak.p3d --log z --x 430 500 -o streak.png)",
     DefinePlot},
    {"slice", "Cut curves out of grids, along X or along Y",
     R"(A band of one axis is summed, or averaged, and the result is a curve over the
other axis.

Example:
  kem slice streak.p3d --x 440 450 --mean -o decay.prn)",
     DefineSlice},
    {"cut", "Keep the part of curves or grids inside bounds", R"(The axes of the result ascend.

Example:
  kem cut scan.DSC --x 3340 3380 -o line.dx)",
     DefineCut},
    {"reduce", "Make one sample of several neighbours, by their mean",
     R"(What remains at the end of an axis is dropped.

Example:
  kem reduce streak.p3d -x 4 -y 2 -o small.b3d)",
     DefineReduce},
    {"resample", "Interpolate onto other coordinates",
     R"(Values lie on the line through two neighbours. A curve is 0 where it had no
samples; a grid goes on along its last lines.

Example:
  kem resample raman.prn --like reference.prn -o same.b2d)",
     DefineResample},
    {"axis", "Calculate with the coordinates of an axis",
     R"(An operation is one of + - * / ^ with a number behind it, or one of inv, exp, log
(to base 10), ln, sin, cos, tan, asin, acos, atan, sinh, cosh, tanh, asinh, acosh,
atanh and s, which changes the sign. Coordinates that a function is not defined
for become 0. Titles and values stay as they are.

Examples:
  kem axis scan.DSC --x -3480 -o around_zero.prn
  kem axis --x '*8065.54' --to prn --dir wavenumbers *.prn)",
     DefineAxis},
    {"swap", "Exchange X and Y: transpose grids, invert curves", R"(Titles go with their axes.

Example:
  kem swap streak.p3d -o turned.b3d)",
     DefineSwap},
    {"sort", "Put axes into ascending order", R"(Example:
  kem sort raman.prn -o ascending.b2d)",
     DefineSort},
    {"calc", "Calculate with files and numbers",
     R"--(An expression has the operators + - * / ^ and &, parentheses, and the functions
Exp, Log (to base 10), Ln, Sin, Cos, Tan, ASin, ACos, ATan, SinH, CosH, TanH,
ASinH, ACosH, ATanH, Inv and Set(FILE, NUMBER), which makes every value that
number. A name with a blank or one of + - * ^ & ( ) , in it, or one that begins
like a number, stands in quotes of either kind. A / in the middle of a name is part
of it: a / b divides, a/b is the file b in the folder a. Of a file that holds several
items scan.DSC#2 is the second.

^ binds before a sign and groups from the right: -a^2 is -(a^2). Then come * / &
and then + and -, from the left. An expression may begin with a minus; one that
begins like an option, "-old.prn", stands in parentheses, or behind --.

The result has the axes and titles of the left file. A right file with other axes
is interpolated onto them: a curve is 0 where it has no samples, so that + and -
leave the left value there, * and / give 0 and ^ gives 1; a grid goes on along its
last lines. & multiplies point by point, whatever the axes. Where the right file is
0 a quotient is 0, and a negative base takes the exponent rounded down. Divided by
the number 0, or to the power of it, is refused.

Numbers are calculated among each other in the same way, in single precision. A
number in front of a file changes places with it under + * and &. Under - / and ^
it stands for Set(FILE, NUMBER): 2 - a is Set(a, 2) - a.

Examples:
  kem calc "scan.DSC - 0.5 * empty.DSC" -o difference.prn
  kem calc "-Log('sample.prn' / 'reference.prn')" -o absorbance.csv)--",
     DefineCalc},
    {"median", "Take out spikes by the median of neighbouring values",
     R"(A span of grids reaches as far along X as along Y.

Example:
  kem median -w 3 streak.p3d -o clean.b3d)",
     DefineMedian},
    {"smooth", "Smooth by the quadratic filter of Savitzky and Golay",
     R"(Half the width, rounded down, is lost at either end.

Example:
  kem smooth -w 9 --to prn --dir smooth *.prn)",
     DefineSmooth},
    {"diff", "Differentiate",
     R"(Gives the slope per sample, not divided by the spacing of the axis. Seven of at
least 16 samples are lost at either end.

Example:
  kem diff scan.DSC -o slope.prn)",
     DefineDiff},
    {"baseline", "Subtract the straight line through two points of the data", R"(Example:
  kem baseline raman.prn --x 450 3000 -o flat.prn)",
     DefineBaseline},
    {"slant", "Multiply curves by a linear factor that gives two values", R"(Example:
  kem slant raman.prn -p 450 1 3000 2 -o even.prn)",
     DefineSlant},
    {"value", "Show the value at a coordinate",
     R"(It lies on the line through the two samples nearest to the coordinate, of a grid
along X and then along Y. Of several records each stands behind its name and a tab.

Example:
  kem value -x 450 -y 2.5 streak.p3d)",
     DefineValue},
    {"integrate", "Integrate: as a number, or with an output as a curve",
     R"(Prints the integral between bounds; of several records each behind its name and a
tab. With --output, --dir or --to it writes a curve instead: the running integral
of a curve, or the integral of a grid along the axis whose bounds are given,
divided by the number of samples inside them.

Example:
  kem integrate raman.prn --x 990 1010)",
     DefineIntegrate},
    {"stats", "Show ranges, extremes and their places, noise and integral",
     R"(The noise of a grid is the sum of the absolute differences of neighbours along Y,
divided by the number of samples. Of curves the same is shown of the abscissae, as
their spacing.

Example:
  kem stats --x 990 1010 --json *.prn)",
     DefineStats},
    {"histogram", "Count the values in equal parts of their range",
     R"(Prints lower bound, upper bound and count of each part.

Example:
  kem histogram --bins 50 --csv streak.p3d)",
     DefineHistogram},
    {"help", "Explain a command", "", DefineHelp},
};

// How many letters have to be inserted, left out or exchanged to make one word of another.
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t k = 0; k < b.size(); ++k) {
      const std::size_t exchanged = diagonal + (a[i] == b[k] ? 0 : 1);
      diagonal = row[k + 1];
      row[k + 1] = std::min({exchanged, diagonal + 1, row[k] + 1});
    }
  }
  return row.back();
}

// The command whose beginning was given, or that is a letter away, or two when the first one is right; null if
// there is none.
const Command* Meant(std::string_view name) {
  const Command* nearest = nullptr;
  std::size_t least = 3;
  for (const Command& command : kCommands) {
    const std::string_view other = command.name;
    const std::size_t distance = other.starts_with(name) ? 0 : Distance(name, other);
    if (distance >= least || distance > (name.front() == other.front() ? 2 : 1)) continue;
    least = distance;
    nearest = &command;
  }
  return nearest;
}

}  // namespace

std::span<const Command> Commands() { return kCommands; }

std::string NoCommand(std::string_view name) {
  const Command* meant = name.empty() ? nullptr : Meant(name);
  return "there is no command " + std::string(name) +
         (meant ? std::string("; did you mean ") + meant->name + '?' : "; kem --help lists the commands");
}

}  // namespace kem::tool

#include "jcamp.h"

#include <algorithm>
#include <iterator>

#include "describe.h"
#include "portable.h"
#include "text.h"

namespace kem::tool {
namespace {

// What a block says of itself; of a JCAMP-DX file these are not copied.
constexpr std::string_view kOwnLabels[] = {
    "TITLE",  "JCAMP-DX", "BLOCKS",     "XLABEL", "YLABEL", "XUNITS",   "YUNITS",   "XFACTOR",  "YFACTOR",
    "FIRSTX", "LASTX",    "DELTAX",     "MAXX",   "MINX",   "MAXY",     "MINY",     "FIRSTY",   "NPOINTS",
    "XYDATA", "XYPOINTS", "RESOLUTION", "CLASS",  "SYMBOL", "VAR_NAME", "VAR_TYPE", "VAR_FORM", "VAR_DIM",
    "UNITS",  "FIRST",    "LAST",       "MIN",    "MAX",    "FACTOR",   "NTUPLES",  "PAGE",
};

// Labels of the standard that say when and where, and what other formats call these.
struct Origin {
  const char* label;
  std::string_view keys[3];
};
constexpr Origin kOrigins[] = {{"DATA TYPE", {"DATA TYPE"}},
                               {"ORIGIN", {"ORIGIN", "SOFTWARE"}},
                               {"OWNER", {"OWNER", "OPER", "JON"}},
                               {"DATE", {"DATE", "JDA", "Date"}},
                               {"TIME", {"TIME", "JTM", "Time"}}};

// Text as a value: a comment and a label must not begin in it.
std::string ValueOf(std::string_view text) {
  std::string value;
  for (std::size_t k = 0; k < text.size(); ++k) {
    const bool lineStart = k == 0 || text[k - 1] == '\n';
    const bool doubled = k > 0 && text[k] == text[k - 1];
    if (text[k] == '$' && doubled) value += ' ';
    if (text[k] == '#' && (doubled || lineStart)) value += ' ';
    value += text[k];
  }
  return value;
}

class Block {
 public:
  void Add(std::string_view label, std::string_view value) {
    text_.append("##").append(label).append("=").append(ValueOf(value)) += '\n';
  }
  void Add(std::string_view label, double number) {
    std::string value;
    portable::AppendShortest(value, number);
    Add(label, value);
  }
  void AddPoint(double x, double y) {
    portable::AppendShortest(text_, x);
    text_ += ", ";
    portable::AppendShortest(text_, y);
    text_ += '\n';
  }
  std::string Take() && { return std::move(text_); }

 private:
  std::string text_;
};

// A label in one line, as those of users begin with a dollar sign.
std::string UserLabel(std::string_view key) {
  std::string label = key.starts_with('$') || key.starts_with('.') ? "" : "$";
  for (const char c : key) label += c == '=' || c == '\n' ? ' ' : c;
  return label;
}

void AddOrigins(Block& block, const Dataset& d) {
  for (const auto& [label, keys] : kOrigins)
    for (const std::string_view key : keys) {
      const Parameter* found = key.empty() ? nullptr : d.Find(key);
      if (!found) continue;
      block.Add(label, found->text);
      break;
    }
  if (!d.Find("DATA TYPE")) block.Add("DATA TYPE", "SPECTRUM");
}

void AddParameters(Block& block, const Dataset& d) {
  for (const Parameter& p : d.parameters) {
    const bool standard = std::any_of(std::begin(kOrigins), std::end(kOrigins),
                                      [&p](const Origin& origin) { return p.key == origin.label; });
    if (!standard && !IsJcampLabel(p.key)) block.Add(UserLabel(p.key), WithUnit(p));
  }
}

}  // namespace

bool IsJcampLabel(std::string_view key) {
  return std::find(std::begin(kOwnLabels), std::end(kOwnLabels), UpperCase(std::string(key))) !=
         std::end(kOwnLabels);
}

std::string JcampOf(const Dataset& d) {
  const Axis& x = d.axes[0];
  const std::size_t count = d.values.Count();
  Block block;
  block.Add("TITLE", d.title);
  block.Add("JCAMP-DX", "4.24");
  AddOrigins(block, d);
  AddParameters(block, d);
  block.Add("BLOCKS", 1);  // behind which hosts look for units
  block.Add("XLABEL", x.name);
  block.Add("XUNITS", x.unit);
  block.Add("YLABEL", d.name);
  block.Add("YUNITS", d.unit);
  block.Add("XFACTOR", 1);
  block.Add("YFACTOR", 1);
  block.Add("FIRSTX", x.Start());
  block.Add("LASTX", x.End());
  if (x.IsLinear()) block.Add("DELTAX", x.Step());
  block.Add("FIRSTY", count > 0 ? d.values.Real(0) : 0);
  block.Add("NPOINTS", static_cast<double>(count));
  block.Add("XYDATA", "(XY..XY)");
  for (std::size_t k = 0; k < count; ++k) block.AddPoint(x[k], d.values.Real(k));
  block.Add("END", "");
  return std::move(block).Take();
}

}  // namespace kem::tool

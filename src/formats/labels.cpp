#include "formats/labels.h"

#include "text/fields.h"

namespace kem::formats {
using namespace text;

void WriteLabels(OutputFile& out, const PrnType& record) {
  constexpr int kCommentSize = 1023;
  text::Text x = {};
  text::Text y = {};
  text::Text z = {};
  char comment[kCommentSize] = {};
  record.LabelAxes(x, y, z);
  record.CommentBlock(comment, kCommentSize);
  out << x << '\n' << y << '\n';
  if (record.Is3D()) out << z << '\n';
  out << comment << '\n';
}

}  // namespace kem::formats

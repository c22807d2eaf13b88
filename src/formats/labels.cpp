#include "formats/labels.h"

#include "load/text.h"

namespace kem::formats {

void WriteLabels(load::OutputFile& out, const PrnType& record) {
  constexpr int kCommentSize = 1023;
  load::Text x = {};
  load::Text y = {};
  load::Text z = {};
  char comment[kCommentSize] = {};
  record.LabelAxes(x, y, z);
  record.CommentBlock(comment, kCommentSize);
  out << x << '\n' << y << '\n';
  if (record.Is3D()) out << z << '\n';
  out << comment << '\n';
}

}  // namespace kem::formats

#include "formats/labels.h"

#include "record/headers.h"

namespace kem::formats {

void WriteLabels(OutputFile& out, const PrnType& r) {
  constexpr int kCommentSize = 1023;
  const auto titles = record::RowOf(r.fileType).titles(r);
  char comment[kCommentSize] = {};
  r.CommentBlock(comment, kCommentSize);
  out << titles.x << '\n' << titles.y << '\n';
  if (r.Is3D()) out << titles.z << '\n';
  out << comment << '\n';
}

}  // namespace kem::formats

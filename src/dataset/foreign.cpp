#include "dataset/foreign.h"

#include <algorithm>

namespace kem::dataset {
namespace {

using namespace std::string_view_literals;

struct Mark {
  std::size_t at;
  std::string_view bytes;
  const char* extension;  // that the name must have; empty for any
  const char* format;
  const char* refusal;
};

constexpr Mark kMarks[] = {
    {0, "version https://git-lfs", "", "git-lfs pointer",
     "is a git-lfs pointer; the data themselves were not fetched"},
    {0, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, ".spc", "Shimadzu spectrum",
     "is a Shimadzu spectrum (OLE2), which kem does not read"},
    {0, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, "", "OLE2 document", "is an OLE2 document, which kem does not read"},
    {1, "\x4B"sv, ".spc", "Galactic SPC", "is a Galactic SPC file, which kem does not read"},
    {1, "\x4D"sv, ".spc", "Galactic SPC", "is a Galactic SPC file, which kem does not read"},
    {4, "JED-2200", "", "JEOL image", "is a JEOL image, which kem does not read"},
    {0, "\x89HDF\r\n"sv, "", "HDF5", "is an HDF5 file, which kem does not read"},
    {0, "\x89PNG\r\n"sv, "", "PNG", "is a PNG picture, which kem does not read"},
    {0, "II*\0"sv, "", "TIFF", "is a TIFF picture, which kem does not read"},
    {0, "MM\0*"sv, "", "TIFF", "is a TIFF picture, which kem does not read"},
    {0, "PK\x03\x04"sv, "", "ZIP", "is a ZIP archive, which kem does not read"},
    {0, "\x1F\x8B"sv, "", "gzip", "is compressed by gzip, which kem does not read"},
    {0, "%PDF-", "", "PDF", "is a PDF document, which kem does not read"},
};

constexpr std::size_t kCard = 80;

// AT1 shares the first card with FITS, but has another one in front of the counts.
bool IsFits(std::string_view head) {
  if (!head.starts_with("SIMPLE  =")) return false;
  return head.substr(std::min(head.size(), 2 * kCard), 8) == "NAXIS   " &&
         (head.find("END     ") != head.npos || head.size() > 36 * kCard);
}

}  // namespace

std::optional<Foreign> ForeignFormat(Source& source) {
  const std::string_view head = source.Head();
  for (const Mark& mark : kMarks) {
    if (head.substr(std::min(mark.at, head.size()), mark.bytes.size()) != mark.bytes) continue;
    if (*mark.extension && !source.HasExtension(mark.extension)) continue;
    return Foreign{mark.format, "bytes at " + std::to_string(mark.at), mark.refusal};
  }
  if (IsFits(head))
    return Foreign{"FITS", "cards SIMPLE and NAXIS", "is a FITS file and not AT1; kem does not read it"};
  return std::nullopt;
}

}  // namespace kem::dataset

// A small file of every format.
#pragma once

#include <string>
#include <vector>

#include "support/formats.h"

namespace kem::test {

struct SmallFile {
  std::string name;
  std::string bytes;
  std::string partner = "";  // the other file of a pair
  std::string partnerBytes = "";
};

// The exchange formats' are written by the library.
inline std::vector<SmallFile> WrittenFiles() {
  Rng rng(kSeed);
  const PrnType curve = RandomRecord(rng, AllocXY, 9, 9);
  const PrnType grid = RandomRecord(rng, AllocXYZ, 3, 4);
  return {{"a.prn", Written(curve, &PrnType::WriteXYPrn)}, {"a.cvt", Written(curve, &PrnType::WriteCvt)},
          {"a.dx", Written(curve, &PrnType::WriteDX)},     {"a.p2d", Written(curve, &PrnType::WriteP2D)},
          {"a.b2d", Written(curve, &PrnType::WriteB2D)},   {"a.p3d", Written(grid, &PrnType::WriteP3D)},
          {"a.b3d", Written(grid, &PrnType::WriteB3D)}};
}

inline std::vector<SmallFile> SmallFiles() {
  using Word = std::uint16_t;
  const std::string numbers(64, '\1');
  const std::string descriptor =
      "#DESC\nBSEQ BIG\nIKKF REAL\nIRFMT S\nXFMT S\nXPTS 3\nYPTS 3\nZTYP NODATA\nXNAM 'the magnetic field'\n";
  const std::string cards = "SIMPLE" + std::string(314, ' ') + "NY = 2" + std::string(74, ' ') + "NX = 3";
  std::vector<SmallFile> files = {
      {"a.nxy", "NXY 2 nm\nred\ngreen\n\n\nset\n\n1 10 20\n2 11 21\n"},
      {"a.par", "JSS\nJON me\nDOS\n", "a.spc", numbers},
      {"b.par", "JSS\nXPLS 1\nSSX 3\nSSY 2\nXXWI 5\nXYWI 5\n", "b.spc", numbers},
      {"a.DSC", descriptor + "XTYP IDX\nYTYP NODATA\n#SPL\nCMNT a long comment on a small file\n", "a.DTA",
       numbers},
      {"b.DSC", descriptor + "XTYP IGD\nYTYP NODATA\n#SPL\n", "b.DTA", numbers},
      {"c.DSC", descriptor + "XTYP IDX\nYTYP IDX\n#SPL\n", "c.DTA", numbers},
      {"a.raw", Bytes(std::endian::big).Text("HPK8TMAP").Put(3).Put(1).Put(7).Put(500.0f).Put(0.1f).Put(320)},
      {"a.img", Bytes().Text("IM").Put(Word(62)).Put(Word(3)).Put(Word(2)).PadTo(12).Put(Word(2)).PadTo(64).Text(
                    "[Scaling],ScalingXType=2,ScalingXScalingFile=\"#0000064,0003\"")},
      {"b.img", Bytes()
                    .Text("\xFE\xFF\x04\x81")
                    .Text(std::string("\xFF\xFF\0\0\0\x0A\0\0\0\x0E", 10))
                    .PadTo(214)
                    .Put(Word(1))
                    .Put(Word(2))
                    .Put(Word(2))
                    .Put(Word(3))
                    .PadTo(258)},
      {"a.crv",
       Bytes().Text("\xFC\xFF\x04\x81").Put(Word(1)).Put(Word(2)).PadTo(8 + 215).Put(Word(2)).Text(numbers)},
      {"a.dsw",
       Bytes().PadTo(93).Put(7.0f).PadTo(1113).Put(9.0f).Put(1.0f).Put(8.0f).Put(2.0f).Put(7.0f).PadTo(1999)},
      {"a.ms0", "Version\nMulti\n2\n3\n4\n5\n6\nX\nY\n9\n3\n1\n12\n13\n14\n15\n1 10 2 20 3 30\n"},
      {"a.m3d", Bytes().Text("Multi-3D").PadTo(32).Put(Word(1)).Put(Word(2)).PadTo(1200)},
      {"a.dat", Bytes()
                    .Text("EG&G")
                    .PadTo(125)
                    .Put(Word(1))
                    .PadTo(308)
                    .Put(1.0f)
                    .PadTo(2136)
                    .Put(Word(2))
                    .PadTo(2144)
                    .Put(Word(2))
                    .PadTo(2184)
                    .Put(1)
                    .Put(3.0f)
                    .Put(1.0f)},
      {"a.txt", "[DcDelay]\nStart= 1\nEnd= 0\nStep= 0.5\nIntTime= 1\nNrPoints= 2:2\n1 4 7 0\n\nfirst\n"},
      {"a.ccd", Bytes().Text(cards).PadTo(2900)},
  };
  for (SmallFile& file : WrittenFiles()) files.push_back(std::move(file));
  return files;
}

}  // namespace kem::test

// The classic reading of any file, then report, writers and operations: nothing crashes, whatever a file holds.
#include <iostream>
#include <memory>
#include <new>

#include "fuzz/input.h"
#include "kem.h"

namespace {

void Report(const PrnType& r) {
  char titles[3][kTextSize];
  char text[4096];
  r.LabelAxes(titles[0], titles[1], titles[2]);
  r.GetLabel(titles[0]);
  r.CommentBlock(text, sizeof text);
  r.PrintLog(r.nX < 100 && r.nY < 100 ? 5 : 3);
}

void WriteAll(const PrnType& r, const kem::fuzz::Folder& folder) {
  std::string name = folder.Path("out").string();
  for (const auto write : {&PrnType::WriteP3D, &PrnType::WriteB3D, &PrnType::WriteP2D, &PrnType::WriteB2D,
                           &PrnType::WriteCvt, &PrnType::WriteXYPrn, &PrnType::WriteDX})
    (r.*write)(name.data());
}

void Operate(const PrnType& r) {
  const PrnType sum = r + r;
  const PrnType quotient = r / sum;
  const std::unique_ptr<PrnType> results[] = {std::unique_ptr<PrnType>(&r.XSmooth(5)),
                                              std::unique_ptr<PrnType>(&r.Median2D(5)),
                                              std::unique_ptr<PrnType>(&r.Median3D(3)),
                                              std::unique_ptr<PrnType>(&r.Cut(1, 3, 1, 3)),
                                              std::unique_ptr<PrnType>(&r.XSlice(0, 10, 1)),
                                              std::unique_ptr<PrnType>(&r.Reduce(2, 2)),
                                              std::unique_ptr<PrnType>(&r.XDiff()),
                                              std::unique_ptr<PrnType>(&r.RunningIntegral()),
                                              std::unique_ptr<PrnType>(&r.DeleteClosest(1, 1))};
  PrnType turned(r);
  turned.SwapXY();
  turned.SortAxes();
  (void)r.Integral(1, 3, 1, 3);
  (void)r.At(1.5f, 1.5f);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const kem::fuzz::Folder folder;
  static std::ostream* const silent = [] {
    ReadMostMissing = 1 << 16;
    std::cout.rdbuf(nullptr);
    std::cerr.rdbuf(nullptr);
    return &std::cout;
  }();
  silent->clear();
  constexpr int kMostPoints = 20000;
  try {
    const PrnType record(folder.Write({data, size}).string().c_str(), size > 1 ? data[1] % 4 - 1 : 0);
    if (!record) return 0;
    if (record.nX > kMostPoints || record.nY > kMostPoints || record.nX * record.nY > kMostPoints * 4) return 0;
    Report(record);
    WriteAll(record, folder);
    Operate(record);
  } catch (const std::bad_alloc&) {  // announced far more than there is
  }
  return 0;
}

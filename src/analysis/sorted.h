// Records whose axes ascend.
#pragma once

#include <optional>

#include "kem.h"

namespace kem::analysis {

// Whether SortAxes would leave a record as it is.
bool AxesAscend(const PrnType& record);

// A record as SortAxes would leave it: itself where its axes ascend already, else a sorted copy.
class Sorted {
 public:
  explicit Sorted(const PrnType& source) : source_(source) {
    if (AxesAscend(source)) return;
    copy_.emplace(source);
    copy_->SortAxes();
  }

  const PrnType& operator*() const { return copy_ ? *copy_ : source_; }
  const PrnType* operator->() const { return &**this; }

 private:
  const PrnType& source_;
  std::optional<PrnType> copy_;
};

}  // namespace kem::analysis

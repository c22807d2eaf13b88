#include "record/findings.h"

#include <iostream>

#include "kem.h"

namespace kem::record {
namespace {

const Findings kForHost{&ReadNextFlag,  &WriteFailedFlag, &ReadXFactor, &ReadYFactor,
                        &ReadAnnounced, &ReadFileBytes,   &std::cout,   true};

thread_local const Findings* ofThread = &kForHost;

}  // namespace

const Findings& Found() { return *ofThread; }

Aside::Aside()
    : findings_{&readNext, &writeFailed, &xFactor, &yFactor, &announced, &fileBytes, &messages, false},
      before_(ofThread) {
  ofThread = &findings_;
}

Aside::~Aside() { ofThread = before_; }

}  // namespace kem::record

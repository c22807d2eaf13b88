// Sets of ranks that change one by one while the ranks of their medians move little.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "analysis/ranking.h"

namespace kem::analysis {

// In place of std::popcount, which is a call where the processor is not known to count.
inline std::size_t CountBits(std::uint64_t bits) {
  bits -= bits >> 1 & 0x5555555555555555;
  bits = (bits & 0x3333333333333333) + (bits >> 2 & 0x3333333333333333);
  bits = (bits + (bits >> 4)) & 0x0f0f0f0f0f0f0f0f;
  return bits * 0x0101010101010101 >> 56;
}

// Eight bytes, the first of them lowest.
inline std::uint64_t WordOf(const std::uint8_t* bytes) {
  static_assert(std::endian::native == std::endian::little);
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

// The place of the bit that is set and has `below` others below it.
inline std::size_t BitAt(std::uint64_t bits, std::size_t below) {
  for (; below > 0; --below) bits &= bits - 1;
  return static_cast<std::size_t>(std::countr_zero(bits));
}

// One byte for each rank, which takes one instruction to change: for spans that many values enter and leave with
// each step. The set knows how many members lie below the block where it was last searched, and starts there again.
class ByteSet {
 public:
  void Clear(std::size_t size) {
    members_.assign((size / kBlock + 1) * kBlock, 0);
    block_ = 0;
    below_ = 0;
  }
  void Add(Ranks ranks) { below_ += Change(ranks, 1); }
  void Remove(Ranks ranks) { below_ -= Change(ranks, 0); }
  // The member with `place` members below it.
  std::size_t At(std::size_t place) {
    while (below_ > place) below_ -= InBlock(block_ -= kBlock);
    for (std::size_t here; below_ + (here = InBlock(block_)) <= place; block_ += kBlock) below_ += here;
    std::size_t left = place - below_;
    std::size_t at = block_;
    for (std::size_t here; (here = Eight(at) * kEachByte >> 56) <= left; at += 8) left -= here;
    // In each byte the count of members up to it, then the highest bit where that is no more than are left.
    const std::uint64_t upTo = Eight(at) * kEachByte;
    const std::uint64_t few = ((left | 0x80) * kEachByte - upTo) & 0x80 * kEachByte;
    return at + ((few >> 7) * kEachByte >> 56);
  }

 private:
  static constexpr std::size_t kBlock = 64;
  static constexpr std::uint64_t kEachByte = 0x0101010101010101;

  // Returns how many ranks lie below the block. A byte may be part of anything: what stands in members of the class
  // would be read anew behind each.
  std::size_t Change(Ranks ranks, std::uint8_t to) {
    std::uint8_t* const members = members_.data();
    const std::size_t block = block_;
    std::size_t below = 0;
    for (const std::uint32_t rank : ranks) {
      members[rank] = to;
      below += rank < block;
    }
    return below;
  }

  std::uint64_t Eight(std::size_t at) const { return WordOf(&members_[at]); }
  std::size_t InBlock(std::size_t at) const {
    std::uint64_t sums = 0;
    for (std::size_t k = 0; k < kBlock; k += 8) sums += Eight(at + k);
    return sums * kEachByte >> 56;
  }

  std::vector<std::uint8_t> members_;
  std::size_t block_ = 0;
  std::size_t below_ = 0;
};

// One bit for each rank. Values of a few levels only have ranks that lie far apart, so that the set also knows
// which of its words have members at all.
class LargeSet {
 public:
  void Clear(std::size_t size) {
    words_.assign(size / 64 + 1, 0);
    used_.assign(words_.size() / 64 + 1, 0);
    word_ = 0;
    below_ = 0;
  }
  void Add(Ranks ranks) {
    for (const std::uint32_t rank : ranks) {
      const std::size_t word = rank / 64;
      words_[word] |= std::uint64_t{1} << rank % 64;
      used_[word / 64] |= std::uint64_t{1} << word % 64;
      below_ += word < word_;
    }
  }
  void Remove(Ranks ranks) {
    for (const std::uint32_t rank : ranks) {
      const std::size_t word = rank / 64;
      words_[word] &= ~(std::uint64_t{1} << rank % 64);
      if (words_[word] == 0) used_[word / 64] &= ~(std::uint64_t{1} << word % 64);
      below_ -= word < word_;
    }
  }
  // The member with `place` members below it.
  std::size_t At(std::size_t place) {
    while (below_ > place) below_ -= CountBits(words_[word_ = Before(word_)]);
    for (std::size_t here; below_ + (here = CountBits(words_[word_])) <= place; word_ = Behind(word_))
      below_ += here;
    return word_ * 64 + BitAt(words_[word_], place - below_);
  }

 private:
  // The next words that have members.
  std::size_t Before(std::size_t word) const {
    std::size_t k = word / 64;
    std::uint64_t bits = used_[k] & ~(~std::uint64_t{0} << word % 64);
    while (bits == 0) bits = used_[--k];
    return k * 64 + 63 - static_cast<std::size_t>(std::countl_zero(bits));
  }
  std::size_t Behind(std::size_t word) const {
    std::size_t k = word / 64;
    std::uint64_t bits = used_[k] & (~std::uint64_t{1} << word % 64);
    while (bits == 0) bits = used_[++k];
    return k * 64 + static_cast<std::size_t>(std::countr_zero(bits));
  }

  std::vector<std::uint64_t> words_;
  std::vector<std::uint64_t> used_;
  std::size_t word_ = 0;
  std::size_t below_ = 0;
};

// One bit for each rank, and the member that has a certain number of others below it: for spans that one value
// enters and one leaves with each step, so that this member stays, or the one before or behind it takes its place.
class MedianSet {
 public:
  // The median has `place` of the members below it.
  void Start(std::size_t size, Ranks members, std::size_t place) {
    bits_.assign(size / 8 + 1 + 2 * kMargin, 0);
    for (const std::uint32_t rank : members) Byte(rank) |= Bit(rank);
    std::uint32_t at = 0;
    below_ = 0;
    for (std::size_t here; below_ + (here = CountBits(WordFrom(at))) <= place; at += 64) below_ += here;
    median_ = at + static_cast<std::uint32_t>(BitAt(WordFrom(at), place - below_));
    below_ = place_ = place;
  }
  std::uint32_t Median() const { return median_; }

  void Exchange(std::uint32_t leaving, std::uint32_t entering) {
    Byte(leaving) &= static_cast<std::uint8_t>(~Bit(leaving));
    Byte(entering) |= Bit(entering);
    below_ = below_ + (entering < median_) - (leaving < median_);
    const std::size_t upTo = below_ + (leaving != median_);
    if (below_ > place_) {
      median_ = Before(median_);
      --below_;
    } else if (upTo <= place_) {
      median_ = Behind(median_);
      below_ = upTo;
    }
  }

 private:
  static constexpr std::size_t kMargin = 8;     // bytes of no members on either side
  static constexpr std::uint32_t kLooked = 56;  // ranks that a word has from any place in its first byte on

  static std::uint8_t Bit(std::uint32_t rank) { return static_cast<std::uint8_t>(1U << rank % 8); }
  std::uint8_t& Byte(std::uint32_t rank) { return bits_[kMargin + rank / 8]; }
  std::uint64_t WordFrom(std::uint32_t rank) const { return WordOf(&bits_[kMargin + rank / 8]); }
  std::uint64_t WordUpTo(std::uint32_t rank) const { return WordOf(&bits_[kMargin + rank / 8 - 7]); }

  // The next members.
  std::uint32_t Behind(std::uint32_t rank) const {
    for (++rank;; rank += kLooked)
      if (const std::uint64_t bits = WordFrom(rank) >> rank % 8; bits != 0)
        return rank + static_cast<std::uint32_t>(std::countr_zero(bits));
  }
  std::uint32_t Before(std::uint32_t rank) const {
    for (--rank;; rank -= kLooked)
      if (const std::uint64_t bits = WordUpTo(rank) << (7 - rank % 8); bits != 0)
        return rank - static_cast<std::uint32_t>(std::countl_zero(bits));
  }

  std::vector<std::uint8_t> bits_;
  std::uint32_t median_ = 0;
  std::size_t below_ = 0;
  std::size_t place_ = 0;
};

}  // namespace kem::analysis

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

// The spans of up to eight neighbours, as one byte for each rank whose bits say which of the spans have it: a rank
// enters or leaves all of them at once. Each span knows how many of its ranks lie below the block where its last
// median was, and is searched from there on.
class SpanSets {
 public:
  static constexpr int kSpans = 8;

  // For ranks below `size`.
  void Start(std::size_t size) {
    held_.resize((size / kBlock + 1) * kBlock);
    used_.resize(size / kBlock + kMany + kWord + 1);
    blocks_ = Lanes{};
  }

  // Makes the spans empty. Of the ranks of a column, span k has those at the places reached[k].
  void Clear(std::span<const Span> reached, Index height) {
    std::fill(held_.begin(), held_.end(), std::uint8_t{0});
    std::fill(used_.begin(), used_.end(), std::uint8_t{0});
    below_ = Lanes{};
    spans_.assign(static_cast<std::size_t>(height), 0);
    lanes_.assign(static_cast<std::size_t>(height), Lanes{});
    for (std::size_t k = 0; k < reached.size(); ++k)
      for (auto at = static_cast<std::size_t>(reached[k].from); at < static_cast<std::size_t>(reached[k].to);
           ++at) {
        spans_[at] = static_cast<std::uint8_t>(spans_[at] | Bit(k));
        lanes_[at].Set(k, kTrue);
      }
  }

  void Add(Ranks column) { Change<true>(column); }
  void Remove(Ranks column) { Change<false>(column); }

  // The rank in a span that has `place` others below it, when one of them is left out.
  std::size_t At(std::size_t span, std::size_t place, std::uint32_t except) {
    std::size_t block = blocks_.Of(span);
    std::size_t below = below_.Of(span) - (except < block);
    held_[except] ^= Bit(span);
    while (below > place) {
      const std::size_t here = InBlock(block -= kBlock, span);
      below -= here;
      if (here == 0) block = FirstEmpty(block, span);
    }
    for (std::size_t here; below + (here = InBlock(block, span)) <= place; block += kBlock) {
      below += here;
      if (here == 0) block = LastEmpty(block, span);
    }
    std::size_t left = place - below;
    std::size_t at = block + kWord * Pass(Counts(block, span), left);
    at += Pass(Eight(at, span), left);
    held_[except] ^= Bit(span);
    used_[except / kBlock] = kAll;
    blocks_.Set(span, block);
    below_.Set(span, below + (except < block));
    return at;
  }

 private:
  // A number for each span, or -1 for true. Every processor has vectors of four.
  using Four [[gnu::vector_size(16)]] = int;
  struct Lanes {
    Four low = {};
    Four high = {};

    std::size_t Of(std::size_t span) const {
      return static_cast<std::size_t>(span < 4 ? low[span] : high[span - 4]);
    }
    void Set(std::size_t span, std::size_t to) { (span < 4 ? low : high)[span % 4] = static_cast<int>(to); }

    Lanes operator&(const Lanes& other) const { return {low & other.low, high & other.high}; }
    Lanes operator+(const Lanes& other) const { return {low + other.low, high + other.high}; }
    Lanes operator-(const Lanes& other) const { return {low - other.low, high - other.high}; }
    Lanes Above(std::uint32_t rank) const {
      const int number = static_cast<int>(rank);
      return {low > number, high > number};
    }
  };
  static constexpr std::size_t kTrue = ~std::size_t{0};

  static constexpr std::size_t kWord = 8;
  static constexpr std::size_t kBlock = 64;
  static constexpr std::size_t kMany = 256;  // blocks that are passed at once
  static constexpr std::uint8_t kAll = 0xff;
  static constexpr std::uint64_t kEachByte = 0x0101010101010101;

  static std::uint8_t Bit(std::size_t span) { return static_cast<std::uint8_t>(1U << span); }

  // A byte may be part of anything: what stands in members of the class would be read anew behind each.
  template <bool kEnter>
  void Change(Ranks column) {
    std::uint8_t* const held = held_.data();
    std::uint8_t* const used = used_.data();
    const std::uint8_t* const spans = spans_.data();
    const Lanes* const lanes = lanes_.data();
    const Lanes blocks = blocks_;
    Lanes below = below_;
    for (std::size_t k = 0; k < column.size(); ++k) {
      const std::uint32_t rank = column[k];
      const Lanes counted = lanes[k] & blocks.Above(rank);
      held[rank] = kEnter ? spans[k] : 0;
      if (kEnter) used[rank / kBlock] = kAll;
      below = kEnter ? below - counted : below + counted;
    }
    below_ = below;
  }

  static std::uint64_t Eight(const std::uint8_t* bytes, std::size_t span) {
    return WordOf(bytes) >> span & kEachByte;
  }
  std::uint64_t Eight(std::size_t rank, std::size_t span) const { return Eight(&held_[rank], span); }
  std::size_t InBlock(std::size_t at, std::size_t span) const {
    std::uint64_t sums = 0;
    for (std::size_t k = 0; k < kBlock; k += kWord) sums += Eight(at + k, span);
    return sums * kEachByte >> 56;
  }

  // In each byte the count of a word of a block.
  std::uint64_t Counts(std::size_t block, std::size_t span) const {
    std::uint64_t counts = 0;
    for (std::size_t k = 0; k < kBlock / kWord; ++k)
      counts |= (Eight(block + k * kWord, span) * kEachByte >> 56) << 8 * k;
    return counts;
  }

  // How many of eight counts, the lowest byte first, are no more than `left` together, which they are taken from.
  static std::size_t Pass(std::uint64_t counts, std::size_t& left) {
    // In each byte the sum up to it, then the highest bit where that is no more than are left.
    const std::uint64_t upTo = counts * kEachByte;
    const std::uint64_t few = ((left | 0x80) * kEachByte - upTo) & 0x80 * kEachByte;
    const std::size_t passed = (few >> 7) * kEachByte >> 56;
    left -= upTo << 8 >> 8 * passed & 0xff;
    return passed;
  }

  // The end of the empty blocks that begin, or end, with one. Values of a few levels leave many of them between two
  // medians.
  std::size_t LastEmpty(std::size_t block, std::size_t span) {
    std::size_t k = block / kBlock;
    used_[k] &= static_cast<std::uint8_t>(~Bit(span));
    for (++k; NoneUsed(k, span);) k += kMany;
    std::uint64_t word;
    while ((word = Eight(&used_[k], span)) == 0) k += kWord;
    return (k + static_cast<std::size_t>(std::countr_zero(word)) / 8 - 1) * kBlock;
  }
  std::size_t FirstEmpty(std::size_t block, std::size_t span) {
    std::size_t k = block / kBlock;
    used_[k] &= static_cast<std::uint8_t>(~Bit(span));
    while (k >= kMany && NoneUsed(k - kMany, span)) k -= kMany;
    while (k >= kWord && Eight(&used_[k - kWord], span) == 0) k -= kWord;
    while ((used_[k - 1] & Bit(span)) == 0) --k;
    return k * kBlock;
  }
  bool NoneUsed(std::size_t block, std::size_t span) const {
    std::uint8_t any = 0;
    for (const std::uint8_t spans : std::span(&used_[block], kMany)) any |= spans;
    return (any & Bit(span)) == 0;
  }

  std::vector<std::uint8_t> held_;   // by rank, the spans that have it
  std::vector<std::uint8_t> used_;   // by block, spans outside of which it is known to be
  std::vector<std::uint8_t> spans_;  // by the place in a column, the spans that reach it
  std::vector<Lanes> lanes_;         // the same, as truths
  Lanes blocks_ = {};
  Lanes below_ = {};
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

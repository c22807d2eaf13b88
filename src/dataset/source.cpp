#include "dataset/source.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include "load/files.h"
#include "record/storage.h"
#include "record/vectors.h"
#include "text/words.h"

namespace kem::dataset {
using namespace text;
namespace {

namespace fs = std::filesystem;

bool IsFile(const fs::path& path) {
  std::error_code error;
  return fs::is_regular_file(path, error);
}

fs::path CompanionPath(const fs::path& path, std::string_view extension) {
  const std::string own = NameOf(path.extension());
  const std::string alike = own == Lower(own) ? Lower(std::string(extension)) : Upper(std::string(extension));
  return load::PathOf(load::PartnerOf(NameOf(path), alike));
}

template <class Bits>
void Swap(std::byte* bytes, std::size_t count) {
  record::WithVectors([bytes, count] {
    for (std::size_t k = 0; k < count; ++k) {
      Bits value;
      std::memcpy(&value, bytes + k * sizeof value, sizeof value);
      Bits swapped = 0;
      for (std::size_t b = 0; b < sizeof value; ++b)
        swapped = static_cast<Bits>(swapped | ((value >> (8 * b)) & 0xff) << (8 * (sizeof value - 1 - b)));
      std::memcpy(bytes + k * sizeof value, &swapped, sizeof value);
    }
  });
}

void ToNative(std::endian order, NumberType type, std::byte* bytes, std::size_t numbers) {
  if (order == std::endian::native) return;
  switch (SizeOf(type)) {
    case 2:
      return Swap<std::uint16_t>(bytes, numbers);
    case 4:
      return Swap<std::uint32_t>(bytes, numbers);
    case 8:
      return Swap<std::uint64_t>(bytes, numbers);
    default:
      return;
  }
}

}  // namespace

void Fail(ErrorCode code, const fs::path& file, std::string_view problem) {
  const std::string subject = file.empty() ? "the dataset" : NameOf(file);
  throw Error(code, subject + ": " + std::string(problem));
}

std::string NameOf(const fs::path& file) {
  const auto text = file.u8string();
  return {text.begin(), text.end()};
}

Source::Source(fs::path path) : path_(std::move(path)) {
  std::error_code error;
  const fs::file_status status = fs::status(path_, error);
  if (status.type() == fs::file_type::not_found) Fail(ErrorCode::NotFound, path_, "no such file");
  if (fs::is_directory(status)) Fail(ErrorCode::UnknownFormat, path_, "is a folder");
  if (!error && !fs::is_regular_file(status)) Fail(ErrorCode::UnknownFormat, path_, "is no ordinary file");
  in_.open(path_, std::ios::binary);
  if (!error) size_ = fs::file_size(path_, error);
  if (in_ && !error) return;
  const std::error_condition reason =
      error ? error.default_error_condition() : std::generic_category().default_error_condition(errno);
  Fail(reason == std::errc::permission_denied ? ErrorCode::PermissionDenied : ErrorCode::ReadFailed, path_,
       reason.message());
}

std::string_view Source::Head() {
  constexpr std::size_t kHead = 4096;
  return std::string_view(Begin(std::min<std::uint64_t>(size_, kHead))).substr(0, kHead);
}

const std::string& Source::Content() { return Begin(size_); }

const std::string& Source::Begin(std::uint64_t size) {
  const std::size_t had = content_.size();
  if (had < size) {
    content_.resize(size);
    Read(had, std::as_writable_bytes(std::span(content_).subspan(had)));
  }
  return content_;
}

std::ifstream& Source::Stream() {
  in_.clear();
  in_.seekg(0);
  return in_;
}

void Source::Read(std::uint64_t at, std::span<std::byte> to) {
  in_.clear();
  errno = 0;
  in_.seekg(static_cast<std::streamoff>(at));
  in_.read(reinterpret_cast<char*>(to.data()), static_cast<std::streamsize>(to.size()));
  if (in_.bad()) Fail(ErrorCode::ReadFailed, path_, std::generic_category().message(errno ? errno : EIO));
  if (static_cast<std::size_t>(in_.gcount()) != to.size()) Fail(ErrorCode::Damaged, path_, "ends too early");
}

Source* Source::Companion(std::string_view extension) {
  const auto kept = companions_.find(extension);
  if (kept != companions_.end()) return kept->second.get();
  const fs::path path = CompanionPath(path_, extension);
  auto companion = IsFile(path) ? std::make_unique<Source>(path) : nullptr;
  return companions_.emplace(extension, std::move(companion)).first->second.get();
}

bool Source::HasExtension(std::string_view extension) const {
  return EqualButCase(NameOf(path_.extension()), extension);
}

std::uint64_t HeldValues(const Source& source, const Layout& layout) {
  return source.Size() < layout.at ? 0 : (source.Size() - layout.at) / (SizeOf(layout.type) * layout.columns);
}

// Large enough to cost few calls, small enough to be turned round while it is in the cache.
constexpr std::size_t kChunk = std::size_t{1} << 18;

Values ReadValues(Source& source, const Layout& layout, std::size_t count) {
  const std::size_t size = SizeOf(layout.type);
  const std::size_t point = size * layout.columns;
  const std::size_t kept = size * layout.taken;
  auto bytes = record::NewBytes(count * kept);
  const bool all = layout.taken == layout.columns;
  std::vector<std::byte> whole(all ? 0 : std::min(count, kChunk / point + 1) * point);
  for (std::size_t done = 0; done < count;) {
    const std::size_t points = std::min(count - done, kChunk / point + 1);
    std::byte* to = bytes.get() + done * kept;
    source.Read(layout.at + done * point,
                all ? std::span(to, points * point) : std::span(whole).first(points * point));
    if (!all)
      for (std::size_t k = 0; k < points; ++k)
        std::memcpy(to + k * kept, whole.data() + k * point + layout.column * size, kept);
    ToNative(layout.order, layout.type, to, points * layout.taken);
    done += points;
  }
  return {layout.type, layout.taken == 2, count, std::move(bytes)};
}

}  // namespace kem::dataset

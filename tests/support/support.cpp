#include "support/support.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <utility>

#if defined(__linux__) && defined(__GLIBCXX__)
#include <sys/syscall.h>

namespace {
thread_local int readsBeforeError = INT_MAX;
}

// Takes the place of the system's, for the standard library as well.
extern "C" ssize_t read(int file, void* to, std::size_t size) {
  if (readsBeforeError-- > 0) return syscall(SYS_read, file, to, size);
  errno = EIO;
  return -1;
}
#endif

namespace kem::test {

void LoadWithReadErrors([[maybe_unused]] const std::string& path) {
#if defined(__linux__) && defined(__GLIBCXX__)
  const auto fails = [](int reads, auto load) {
    readsBeforeError = reads;
    const bool loaded = load();
    const int error = errno;
    const bool failed = std::exchange(readsBeforeError, INT_MAX) < 0;
    CAPTURE(reads);
    CHECK((failed || reads > 0));
    if (failed) CHECK((!loaded && error == EIO));
    return failed;
  };
  const auto load = [&path] { return !!PrnType(path.c_str(), 0); };
  const auto list = [&path] {
    return KemItems(
               path.c_str(), [](const KemItem&, void*) {}, nullptr) > 0;
  };
  int reads = 0;
  while (fails(reads, load) + fails(reads, list) > 0) ++reads;
#endif
}

TempFolder::TempFolder() {
  static std::atomic<int> count = 0;
  static const unsigned run = std::random_device{}();
  // The project's formats are told by name, so the folder's own name must not look like one of them.
  path_ = std::filesystem::temp_directory_path() / ("kem-" + std::to_string(run) + "-" + std::to_string(count++));
  std::filesystem::create_directories(path_);
}

TempFolder::~TempFolder() {
  namespace fs = std::filesystem;
  std::error_code ignored;
  if (const char* seeds = std::getenv("KEM_SEEDS"))
    fs::copy(path_, fs::path(seeds) / path_.filename(), fs::copy_options::recursive, ignored);
  fs::remove_all(path_, ignored);
}

std::string TempFolder::Write(const std::string& name, const std::string& bytes) const {
  std::string path = Path(name);
  std::ofstream(PathOf(path), std::ios::binary) << bytes;
  return path;
}

std::string ReadBytes(const std::string& path) {
  std::ifstream in(PathOf(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::string ReadLines(const std::string& path) {
  std::ifstream in(PathOf(path));
  return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<std::size_t> Prefixes(std::size_t size, std::size_t dense) {
  constexpr std::size_t kStride = 97;
  constexpr std::size_t kTail = 12;
  std::vector<std::size_t> lengths;
  for (std::size_t n = 0; n < size; n += n < dense || n + kTail >= size ? 1 : kStride) lengths.push_back(n);
  return lengths;
}

// The file behind the stream is exchanged: under Windows the library has a C++ run time of its own, with its own
// streams.
std::string Printed(const std::function<void()>& run, std::FILE* stream) {
  const TempFolder folder;
  const std::string path = folder.Path("printed");
  {
    const auto put = [stream](int file) {
      std::fflush(stream);
      dup2(file, fileno(stream));
      close(file);
    };
    const std::shared_ptr<void> putBack(nullptr, [put, before = dup(fileno(stream))](void*) { put(before); });
    put(creat(path.c_str(), 0600));
    run();
  }
  return ReadLines(path);
}

std::string SampleFolder() {
  const char* folder = std::getenv("KEM_SAMPLES");
  return folder ? folder : "";
}

bool HaveSamples() {
  if (!SampleFolder().empty()) return true;
  MESSAGE("skipped: KEM_SAMPLES names no folder of real instrument files");
  return false;
}

void CheckApproved(const std::string& file, const std::string& text) {
  const std::string path = std::string(KEM_TESTS) + '/' + file;
  if (std::getenv("KEM_APPROVE")) std::ofstream(path, std::ios::binary) << text;
  CHECK(text == ReadLines(path));
}

double Sum(std::span<const float> values) {
  double sum = 0;
  for (const float v : values) sum += v;
  return sum;
}

}  // namespace kem::test

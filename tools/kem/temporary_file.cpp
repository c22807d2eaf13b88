#include "temporary_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#ifdef _WIN32
#include <io.h>
#endif
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <mutex>
#include <new>
#include <random>
#include <system_error>

#include "system.h"

namespace kem::tool {
namespace {

namespace fs = std::filesystem;

// ------------------------------------------------------------ signals

// Paths to remove; an empty one is free. A signal's handler can read nothing that allocates memory.
char paths[128][4096];
std::mutex pathsMutex;

// Files of a run are finished one by one when it is to end.
std::atomic<bool> finishes = false;
std::atomic<bool> interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free);  // so that a signal may write it

void RemovePath(const char* path) {
  if (unlink(path) != 0) rmdir(path);
}

// What came last lies inside what came first.
void RemoveAll(int signal) {
  if (signal == SIGINT && finishes && !interrupted.exchange(true)) {
    std::signal(signal, RemoveAll);
    return;
  }
  for (auto* path = std::end(paths); path-- != std::begin(paths);)
    if (**path) RemovePath(*path);
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

// A path stays.
void Forget(Removed& path) {
  const std::lock_guard lock(pathsMutex);
  *path.release() = '\0';
}

constexpr int kSignals[] = {
    SIGINT,  SIGTERM,
#ifdef SIGHUP
    SIGHUP,  SIGQUIT, SIGPIPE,
#endif
#ifdef SIGXFSZ
    SIGXFSZ,
#endif
};

std::string Message(int error) { return std::generic_category().message(error); }

// ------------------------------------------------------------ files

// Makes something under a name that is new in a folder.
template <class Make>
Removed MakeNew(const fs::path& folder, Make make, Problem& problem) {
  std::random_device random;
  for (int tries = 0; tries < 100; ++tries) {
    char name[32];
    std::snprintf(name, sizeof name, ".kem-%08x.tmp", static_cast<unsigned>(random()));
    Removed path = RemovedLater(folder / name);
    if (make(PathOf(path.get()))) return path;
    const int error = errno;
    Forget(path);
    if (error != EEXIST || tries == 99) problem = Message(error);
    if (error != EEXIST) break;
  }
  return nullptr;
}

#ifdef _WIN32

int Create(const fs::path& path) {
  return _wopen(path.c_str(), _O_RDWR | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
}

bool CreateFolder(const fs::path& path) { return _wmkdir(path.c_str()) == 0; }

void TakeMode(int, const fs::path&) {}

// An existing target makes it fail.
int MoveToNew(const fs::path& from, const fs::path& to) {
  return _wrename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

#else

int Create(const fs::path& path) { return open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600); }

bool CreateFolder(const fs::path& path) { return mkdir(path.c_str(), 0700) == 0; }

// What new files of this process are denied; asking for it changes it for a moment.
const mode_t mask = [] {
  const mode_t denied = umask(0);
  umask(denied);
  return denied;
}();

// The mode of the file that is replaced, or that of any new file.
void TakeMode(int file, const fs::path& target) {
  struct stat status = {};
  const bool replaces = stat(target.c_str(), &status) == 0;
  (void)!fchmod(file, replaces ? status.st_mode & 0777 : 0666 & ~mask);  // some file systems know no modes
}

// A second link fails when there is a target. Where there are no links an empty file, which can be made without
// replacing another, keeps the place.
int MoveToNew(const fs::path& from, const fs::path& to) {
  if (link(from.c_str(), to.c_str()) == 0) return unlink(from.c_str()) == 0 ? 0 : errno;
  if (errno == EEXIST) return errno;
  const int place = Create(to);
  if (place < 0) return errno;
  close(place);
  if (rename(from.c_str(), to.c_str()) == 0) return 0;
  const int error = errno;
  unlink(to.c_str());
  return error;
}

#endif

}  // namespace

void HandleInterrupts() {
  for (const int signal : kSignals)
    if (std::signal(signal, SIG_IGN) != SIG_IGN) std::signal(signal, RemoveAll);
}

void Removal::operator()(char* path) const {
  RemovePath(path);
  const std::lock_guard lock(pathsMutex);
  *path = '\0';
}

InterruptsWait::InterruptsWait(bool wait) { finishes = wait; }
InterruptsWait::~InterruptsWait() { finishes = false; }

bool Interrupted() { return interrupted; }

Removed RemovedLater(const fs::path& path) {
  const std::string name = path.string();
  const std::lock_guard lock(pathsMutex);
  auto* slot = std::find_if(std::begin(paths), std::end(paths), [](const char* p) { return !*p; });
  if (slot == std::end(paths) || name.size() >= sizeof *slot) throw std::bad_alloc();
  std::memcpy(*slot, name.c_str(), name.size() + 1);
  return Removed(*slot);
}

fs::path TemporaryFolder() {
  std::error_code error;
  const fs::path folder = fs::temp_directory_path(error);
  return error ? "." : folder;
}

Removed NewTemporaryFolder(Problem& problem) { return MakeNew(TemporaryFolder(), CreateFolder, problem); }

TemporaryFile::TemporaryFile(const fs::path& folder)
    : path_(MakeNew(
          folder, [this](const fs::path& path) { return (file_ = Create(path)) >= 0; }, problem_)) {}

void TemporaryFile::Close() {
  if (file_ >= 0) close(file_);
  file_ = -1;
}

// Windows keeps the path of an open file as it is.
std::string TemporaryFile::Name() const {
#ifdef _WIN32
  return path_.get();
#else
  return "/dev/fd/" + std::to_string(file_);
#endif
}

Problem TemporaryFile::MoveTo(const fs::path& target, bool replace) {
  TakeMode(file_, target);
  Close();
  std::error_code error;
  if (replace)
    fs::rename(PathOf(path_.get()), target, error);
  else if (const int code = MoveToNew(PathOf(path_.get()), target))
    error.assign(code, std::generic_category());
  if (error) return error.message();
  Forget(path_);
  return {};
}

void SetBinary([[maybe_unused]] std::FILE* stream) {
#ifdef _WIN32
  _setmode(_fileno(stream), _O_BINARY);
#endif
}

}  // namespace kem::tool

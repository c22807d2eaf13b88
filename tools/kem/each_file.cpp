#include "each_file.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <exception>
#include <iostream>
#include <mutex>
#include <new>
#include <sstream>
#include <system_error>
#include <thread>

#include "command.h"
#include "input.h"
#include "source.h"
#include "system.h"
#include "temporary_file.h"
#include "text.h"

namespace kem::tool {
namespace {

std::size_t Columns() { return static_cast<std::size_t>(SizeOfTerminal(stderr).columns); }

// As many whole characters of a text in UTF-8 as surely fit: those of East Asia take two columns.
std::string Fitting(std::string_view text, std::size_t columns) {
  std::string fitting;
  for (std::size_t at = 0, next = 0; at < text.size(); at = next) {
    for (next = at + 1; next < text.size() && (text[next] & 0xC0) == 0x80;) ++next;
    const std::size_t width = static_cast<unsigned char>(text[at]) >= 0xE1 ? 2 : 1;
    if (width > columns) break;
    columns -= width;
    const bool control = static_cast<unsigned char>(text[at]) < ' ' || text[at] == 0x7F;
    fitting += control ? "?" : text.substr(at, next - at);
  }
  return fitting;
}

// One line of a terminal that is written over and over, and cleared before anything else is said.
bool barIsShown = false;

void ClearProgress() {
  if (barIsShown) std::cerr << '\r' << std::string(Columns() - 1, ' ') << '\r' << std::flush;
  barIsShown = false;
}

void ShowProgress(std::size_t done, std::size_t count, const std::string& file) {
  ClearProgress();
  const std::size_t width = Columns();
  const std::size_t bar = std::min<std::size_t>(width / 3, 30);
  const std::size_t filled = bar * done / count;
  std::string line = '[' + std::string(filled, '#') + std::string(bar - filled, '.') + "] ";
  line += std::to_string(done) + '/' + std::to_string(count) + ' ' + file;
  std::cerr << Fitting(line, width - 1) << std::flush;
  barIsShown = true;
}

// ------------------------------------------------------------ turns

thread_local Turn* thisTurn = nullptr;

// A file in a folder is left out when it is none of ours; one of another maker is named.
bool IsOurs(const std::string& file) {
  std::string maker;
  const Problem problem = Attempted(PathOf(file), [&] {
    maker = Identify(PathOf(file)).format;
    for (const FormatInfo& format : kem::Formats())
      if (format.name == maker) maker.clear();
  });
  if (problem.empty() && !maker.empty()) Tell(file, "is left out: " + maker);
  return problem.empty() && maker.empty();
}

using Action = std::function<bool(const std::string&)>;
using TakeTurn = std::function<void(Turn&)>;

Turn::State Attempt(Turn& turn, const Pass& pass, const Action& action) {
  const std::string& file = turn.file.name;
  try {
    if (pass.settled && pass.settled(turn)) return turn.state;
    if (turn.file.found && !IsOurs(file)) return Turn::State::Skipped;
    if (!action(file)) return Turn::State::Failed;
    return turn.outputs.empty() && turn.upToDate > 0 ? Turn::State::UpToDate : Turn::State::Done;
  } catch (const std::bad_alloc&) {
    NoProblem(file, "there is not enough memory for it");
  } catch (const std::exception& error) {
    NoProblem(file, error.what());
  }
  return Turn::State::Failed;
}

void Take(Turn& turn, const Pass& pass, const Action& action) {
  thisTurn = &turn;
  turn.state = Attempt(turn, pass, action);
  thisTurn = nullptr;
}

// Of what files lose the first one is told.
class LossOnce {
 public:
  void Tell(Turn& turn) {
    if (turn.lost.empty()) return;
    if (!told_) tool::Tell(turn.file.name, turn.lost);
    turn.notes.push_back(turn.lost);
    told_ = true;
  }

 private:
  bool told_ = false;
};

void OneByOne(std::span<Turn> turns, const TakeTurn& take, const std::function<void(std::size_t)>& finished) {
  LossOnce loss;
  for (std::size_t k = 0; k < turns.size() && !Interrupted(); ++k) {
    finished(k);
    take(turns[k]);
    loss.Tell(turns[k]);
  }
}

// Threads take the next file each; this one prints what they tell.
class Threads {
 public:
  Threads(std::span<Turn> turns, const TakeTurn& take, std::size_t count)
      : turns_(turns), take_(take), ready_(turns.size()) {
    for (Turn& turn : turns) turn.keepsMessages = true;
    try {
      for (; threads_.size() < count; ++working_) threads_.emplace_back([this] { Work(); });
    } catch (const std::system_error&) {  // those that there are will do
      if (threads_.empty()) throw;
    }
  }
  ~Threads() {
    for (std::thread& thread : threads_) thread.join();
  }

  // Waits for a file; one that no thread will take any more stays as it is.
  void WaitFor(std::size_t k) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return ready_[k] || working_ == 0; });
  }

 private:
  void Work() {
    for (std::size_t k = 0; !Interrupted() && (k = next_++) < turns_.size();) {
      take_(turns_[k]);
      const std::lock_guard lock(mutex_);
      ready_[k] = true;
      changed_.notify_one();
    }
    const std::lock_guard lock(mutex_);
    --working_;
    changed_.notify_one();
  }

  std::span<Turn> turns_;
  const TakeTurn& take_;
  std::vector<bool> ready_;
  std::atomic<std::size_t> next_ = 0;
  std::atomic<std::size_t> working_ = 0;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::thread> threads_;
};

void SeveralAtATime(std::span<Turn> turns, const TakeTurn& take, std::size_t count,
                    const std::function<void(std::size_t)>& finished) {
  LossOnce loss;
  Threads threads(turns, take, count);
  for (std::size_t k = 0; k < turns.size(); ++k) {
    finished(k);
    threads.WaitFor(k);
    if (!turns[k].messages.empty()) ClearProgress();
    std::cerr << turns[k].messages << std::flush;
    loss.Tell(turns[k]);
  }
}

// ------------------------------------------------------------ summary

std::string Summary(std::span<const Turn> turns, std::size_t partners, std::string_view done) {
  const auto count = [turns](Turn::State state) {
    return static_cast<std::size_t>(
        std::count_if(turns.begin(), turns.end(), [state](const Turn& turn) { return turn.state == state; }));
  };
  const auto all = [turns](Turn::State state, auto outputsOf) {
    std::size_t number = 0;
    for (const Turn& turn : turns) number += outputsOf(turn) > 0 ? outputsOf(turn) : turn.state == state ? 1 : 0;
    return number;
  };
  std::string text = std::to_string(all(Turn::State::Done, [](const Turn& turn) { return turn.outputs.size(); }));
  text.append(" ").append(done);
  const auto add = [&text](std::size_t number, const char* what, const char* ending = "") {
    if (number > 0) text += ", " + std::to_string(number) + ' ' + what + (number == 1 ? "" : ending);
  };
  add(all(Turn::State::UpToDate, [](const Turn& turn) { return turn.upToDate; }), "up to date");
  add(count(Turn::State::Failed), "failed");
  add(partners, "partner file", "s");
  add(count(Turn::State::Skipped), "other file", "s");
  add(count(Turn::State::Waiting), "not reached");
  return text;
}

}  // namespace

Turn* ThisTurn() { return thisTurn; }

void Complain(std::string_view sentence) {
  if (thisTurn && thisTurn->keepsMessages) {
    std::ostringstream text;
    text << "kem: " << Printable{sentence} << '\n';
    thisTurn->messages += text.str();
    return;
  }
  ClearProgress();
  std::cerr << "kem: " << Printable{sentence} << std::endl;
}

bool NoProblem(std::string_view file, const Problem& problem) {
  if (problem.empty()) return true;
  Complain(std::string(file) + ": " + problem);
  if (thisTurn) thisTurn->errors.push_back(problem);
  return false;
}

int EachFile(const FileList& files, const Pass& pass, const Action& action) {
  Listing listing = ListOf(files);
  bool complete = true;
  for (const std::string& folder : listing.empty) complete = NoProblem(folder, "holds no files");
  std::vector<Turn> turns;
  for (File& file : listing.files) turns.push_back({.file = std::move(file)});
  const bool several = !pass.done.empty() && (turns.size() > 1 || !files.IsOne());
  const InterruptsWait interrupts(several);
  const bool withBar = several && isatty(fileno(stderr)) != 0;
  const auto progress = [&](std::size_t k) {
    if (withBar) ShowProgress(k, turns.size(), turns[k].file.name);
  };
  const TakeTurn take = [&](Turn& turn) { Take(turn, pass, action); };
  const std::size_t jobs = std::min(pass.jobs, turns.size());
  if (jobs > 1)
    SeveralAtATime(turns, take, jobs, progress);
  else
    OneByOne(turns, take, progress);
  ClearProgress();
  if (several) Complain(Summary(turns, listing.partners, pass.done));
  if (pass.report) pass.report(turns);
  if (Interrupted()) return kInterrupted;
  for (const Turn& turn : turns) complete &= turn.state != Turn::State::Failed;
  return complete ? 0 : kFailed;
}

}  // namespace kem::tool

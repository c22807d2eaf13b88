// The one door: opens a file, chooses its reader by name and then by content, and runs it.
#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>

#include "host/detect.h"
#include "kem.h"
#include "load/block.h"
#include "load/files.h"
#include "record/findings.h"
#include "record/storage.h"
#include "text/fields.h"

namespace kem::host {
using namespace load;
using namespace record;
using namespace text;
namespace {

// A partner that is missing or a read error ends the load; a refusal leaves the content tests their turn.
enum class Outcome { Loaded, Refused, Failed };

// The name's first bytes as one text: a NUL ends what can be searched.
std::string_view SearchableStart(std::ifstream& in, Text& start) {
  SeekTo(in, 0);
  in.read(start, kTextSize);
  start[std::min<std::streamsize>(in.gcount(), kTextSize - 1)] = '\0';
  return TextOf(start);
}

const char* PartnerExtension(const LoadState& state, Pairing pairing) {
  if (pairing == Pairing::Bruker) return state.pairRole == 0 ? ".spc" : ".par";
  return Contains(state.name, ".dhd") ? ".dat" : ".dhd";
}

bool OpenPartner(LoadState& state, Pairing pairing) {
  const std::string partner = PartnerOf(state.name, PartnerExtension(state, pairing));
  return partner.size() < kTextSize && OpenForReading(state.partner, partner);
}

Outcome Dispatch(PrnType& record, LoadState& state, const Format& format) {
  if (state.main.is_open()) SeekTo(state.main, 0);
  if (format.pairing != Pairing::None && !OpenPartner(state, format.pairing)) return Outcome::Failed;
  void* const extension = record.extension;
  *Found().announced = 0;
  *Found().fileBytes = 0;
  const bool loaded = format.read(record, state) != 0;
  if (!loaded) RestoreExtension(record, extension);
  state.format = &format;
  const bool unread = state.main.bad() || state.partner.bad();
  state.partner.close();
  return loaded ? Outcome::Loaded : unread ? Outcome::Failed : Outcome::Refused;
}

// Lets the tests of one pass choose a reader and runs it.
Outcome Try(PrnType& record, LoadState& state, const Test* test) {
  if (!test) return Outcome::Refused;
  if (test->set) test->set(state);
  state.count = 0;
  return Dispatch(record, state, *test->format);
}

Outcome TryByContent(PrnType& record, LoadState& state) {
  if (!state.main.is_open()) return Outcome::Refused;
  Text start;
  return Try(record, state, FirstHit(ContentTests(), SearchableStart(state.main, start)));
}

bool OpenMain(LoadState& state) { return state.name.size() < kTextSize && OpenForReading(state.main, state.name); }

bool Load(PrnType& record, LoadState& state) {
  if (!OpenMain(state)) return false;
  const Test* byName = FirstHit(NameTests(), state.name);
  if (byName) {
    const Outcome outcome = Try(record, state, byName);
    if (outcome != Outcome::Refused) return outcome == Outcome::Loaded;
  } else if (state.index == -1) {
    return Dispatch(record, state, PlainColumns()) == Outcome::Loaded;
  }
  return TryByContent(record, state) == Outcome::Loaded;
}

}  // namespace
}  // namespace kem::host

using namespace kem::host;
using namespace kem::record;
using namespace kem::text;

void PrnType::ReadFile(const char* name, int index) {
  const EmptyOnThrow guard(*this);
  xStep = 0;
  yStep = 0;
  *Found().xFactor = 1;
  *Found().yFactor = 1;
  errno = 0;
  // A copy of the name: it may lie in this record, where readers store texts.
  LoadState state{.name = name, .index = index, .main = {}, .partner = {}};
  if (!Load(*this, state)) {
    allocType = AllocNone;
    return;
  }
  CopyText(fileName, state.name);
  if ((state.multi3D || state.nxy || state.oma || *Found().readNext != 0) && state.count > 1)
    MakeNumberedFileName(fileName, index == 0 ? 1 : index);
  if (ExtensionCreateHook && Found().forHost) ExtensionCreateHook(&extension);
}

// Items are counted by the reader of the first, except by those that know of a second one at most.
int KemItems(const char* name, void (*take)(const KemItem& item, void* host), void* host) {
  const int before = std::exchange(*Found().readNext, 0);
  PrnType first("", 0);  // empty, and made without a hook
  const EmptyOnThrow guard(first);
  errno = 0;
  LoadState state{.name = name, .index = 0, .main = {}, .partner = {}};
  const bool loaded = Load(first, state);
  const bool several = std::exchange(*Found().readNext, before) != 0;
  if (!loaded) return 0;
  KemItem item{.index = 0, .allocType = first.allocType, .nX = first.nX, .nY = first.nY, .title = {}};
  Text titles[2];
  first.LabelAxes(titles[0], first.Is3D() ? titles[1] : item.title, first.Is3D() ? item.title : titles[1]);
  ItemList items(several ? static_cast<std::size_t>(std::max(state.count, 2)) : 1, item);
  const int announced = static_cast<int>(items.size());
  for (int k = 0; k < announced && several; ++k)
    items[static_cast<std::size_t>(k)].index = state.format->firstIndex + k;
  if (several && state.format->list) state.format->list(state, items);
  if (state.main.bad()) return 0;
  if (items.empty()) items.push_back(item);
  for (const KemItem& one : items) take(one, host);
  return announced;
}

const char* KemFormatName(const char* name) {
  LoadState state{.name = name, .index = 0, .main = {}, .partner = {}};
  if (!OpenMain(state)) return nullptr;
  const Test* test = FirstHit(NameTests(), name);
  Text start;
  if (!test) test = FirstHit(ContentTests(), SearchableStart(state.main, start));
  return test ? test->format->name : nullptr;
}

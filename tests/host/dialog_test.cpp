// The chooser under Linux, with a zenity and a kdialog that note how they were called and answer as told.
#include <signal.h>
#include <sys/time.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "support/support.h"

using namespace kem::test;

namespace {

class Desktop {
 public:
  explicit Desktop(const char* name, const std::vector<std::string>& choosers = {"zenity", "kdialog"}) {
    setenv("PATH", folder_.Path("").c_str(), 1);
    setenv("XDG_CURRENT_DESKTOP", name, 1);
    for (const auto& chooser : choosers) {
      const std::string path =
          folder_.Write(chooser, "#!/bin/sh\nprintf '%s\\n' " + chooser + " \"$@\" >" + folder_.Path("call") +
                                     "\n/bin/sleep 0.1; printf %s \"$ANSWER\"; exit $STATUS\n");
      std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    }
    Answer("/scan.DSC\n", 0);
  }
  ~Desktop() { setenv("PATH", path_.c_str(), 1); }
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  static void Answer(const std::string& text, int status) {
    setenv("ANSWER", text.c_str(), 1);
    setenv("STATUS", std::to_string(status).c_str(), 1);
  }
  // The program and its arguments, one a line.
  std::string Call() const { return ReadBytes(folder_.Path("call")); }

 private:
  TempFolder folder_;
  std::string path_ = std::getenv("PATH");
};

// Result and text of the buffer; one that was not touched reads "#".
std::string Choose(int size = 260) {
  std::vector<char> buffer(static_cast<std::size_t>(std::max(size, 0)) + 2, '\0');
  buffer[0] = '#';
  const int result = KemFileName(buffer.data(), size);
  return std::to_string(result) + ' ' + buffer.data();
}

std::ptrdiff_t OpenFiles() { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); }

}  // namespace

TEST_CASE("dialog: the desktop decides on the chooser, and what it lacks is replaced") {
  const Desktop none("GNOME", {});
  CHECK(Choose() == "1 #");
  const Desktop lacking("KDE", {"zenity"});
  CHECK(Choose() == "0 /scan.DSC");
  const Desktop other("GNOME", {"kdialog"});
  CHECK(Choose() == "0 /scan.DSC");
}

TEST_CASE("dialog: title and filters reach each chooser as it takes them") {
  const Desktop gnome("ubuntu:GNOME");
  Choose();
  const std::string zenity = gnome.Call();
  CHECK(zenity.starts_with(
      "zenity\n--file-selection\n--title=Select a File\n"
      "--file-filter=Exp Files | *.[sS][pP][cC] *.[pP][aA][rR] *.[eE][sS][rR] *.[dD][sS][cC] *.[dD][tT][aA] "
      "*.[iI][mM][gG] *.[pP][rR][fF] *.[sS][tT][rR] *.[dD][hH][dD] *.[mM]3[dD] *.[mM][sS]0 *.[sS][sS]0 "
      "*.[mM][sS][uU] *.[dD][aA][tT] *.[cC][vV][tT] *.[pP][rR][nN] *.[bB]3[dD] *[pP]2[dD] *.[bB]2[dD] "
      "*.[dD][sS][wW] *.[cC][rR][vV]\n--file-filter=Bruker X-band (*.spc;*.par;*.esr) | *.[sS]"));
  CHECK(zenity.ends_with("\n--file-filter=All Files (*.*) | *\n"));
  CHECK(std::count(zenity.begin(), zenity.end(), '\n') == 3 + 13);

  const Desktop kde("KDE");
  Choose();
  const std::string kdialog = kde.Call();
  CHECK(kdialog.starts_with(
      "kdialog\n--title\nSelect a File\n--getopenfilename\n.\nExp Files (*.[sS][pP][cC] *.[pP]"));
  CHECK(
      kdialog.ends_with(" | PRN (*.prn) (*.[pP][rR][nN]) | P3D,B3D,P2D,B2D (*.[pP]3[dD] *.[bB]3[dD] *[pP]2[dD] "
                        "*.[bB]2[dD]) | All Files (*.*) (*)\n"));
}

TEST_CASE("dialog: answers of the chooser") {
  const Desktop desktop("GNOME");
  const std::string longest(100000, 'x');
  const struct {
    std::string answer;
    int status;
    int size;
    std::string expected;
  } kCases[] = {
      {"/a b/'c\" $d.prn\n", 0, 260, "0 /a b/'c\" $d.prn"},
      {"/a\nb\n\n", 0, 260, "0 /a\nb\n"},  // a name may end in a line feed; the chooser adds one
      {longest, 0, 100001, "0 " + longest},
      {"/123456\n", 0, 8, "0 /123456"},
      {"/1234567\n", 0, 8, "0 "},
      {"/a\n", 0, 1, "0 "},
      {"", 1, 260, "1 #"},
      {"/a\n", 255, 260, "1 #"},
      {"\n", 0, 260, "1 #"},
      {"/a\n", 0, 0, "1 #"},
      {"/a\n", 0, -1, "1 #"},
  };
  for (const auto& c : kCases) {
    CAPTURE(c.answer.substr(0, 20));
    CAPTURE(c.size);
    Desktop::Answer(c.answer, c.status);
    CHECK(Choose(c.size) == c.expected);
  }
}

TEST_CASE("dialog: bears signals and leaves neither a descriptor nor a child") {
  const Desktop desktop("GNOME");
  const auto before = OpenFiles();
  struct sigaction action = {}, alarmBefore = {};
  action.sa_handler = [](int) {};
  sigaction(SIGALRM, &action, &alarmBefore);
  const itimerval every = {{0, 10000}, {0, 10000}}, never = {};
  setitimer(ITIMER_REAL, &every, nullptr);
  CHECK(Choose() == "0 /scan.DSC");
  setitimer(ITIMER_REAL, &never, nullptr);
  sigaction(SIGALRM, &alarmBefore, nullptr);

  const auto childBefore = signal(SIGCHLD, SIG_IGN);
  CHECK(Choose() == "0 /scan.DSC");
  signal(SIGCHLD, childBefore);

  CHECK(OpenFiles() == before);
  CHECK(waitpid(-1, nullptr, WNOHANG) == -1);
}

#include "tools/edit/temp_path.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

// What the signal handler removes: a few paths at most are held at a time
// (an export holds its directory and the file in it).
constexpr int kSlots = 4;
constexpr size_t kLongestPath = 4096;

struct Slot {
  char path[kLongestPath];
  volatile std::sig_atomic_t used;
  volatile std::sig_atomic_t directory;
};

Slot g_slots[kSlots];
bool g_handlersInstalled = false;
const int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

// Removes every held path, the files before the directories they may stand
// in, then ends the process as the signal would have. Only
// async-signal-safe calls.
extern "C" void RemoveHeldPaths(int signal) {
  for (int directories = 0; directories < 2; ++directories) {
    for (Slot& slot : g_slots) {
      if (slot.used == 0 || slot.directory != directories) continue;
      if (directories != 0) {
        ::rmdir(slot.path);
      } else {
        ::unlink(slot.path);
      }
    }
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

// The signals that end the process, held back while the slots change, so
// that the handler never sees a slot half written.
class SignalsHeld {
 public:
  SignalsHeld() {
    sigset_t set;
    sigemptyset(&set);
    for (int signal : kSignals) sigaddset(&set, signal);
    sigprocmask(SIG_BLOCK, &set, &m_before);
  }
  ~SignalsHeld() { sigprocmask(SIG_SETMASK, &m_before, nullptr); }
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;

 private:
  sigset_t m_before;
};

// A signal that the process ignores (as under nohup) stays ignored.
void InstallHandlers() {
  if (g_handlersInstalled) return;
  g_handlersInstalled = true;
  for (int signal : kSignals) {
    struct sigaction before;
    if (sigaction(signal, nullptr, &before) != 0 || before.sa_handler == SIG_IGN) continue;
    struct sigaction action;
    std::memset(&action, 0, sizeof action);
    action.sa_handler = RemoveHeldPaths;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
  }
}

std::vector<char> Pattern(const std::string& directory, const char* prefix) {
  const std::string pattern = directory + "/" + prefix + "-XXXXXX";
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');
  return name;
}

}  // namespace

bool TempPath::MakeFile(const std::string& directory, const char* prefix) {
  Remove();
  std::vector<char> name = Pattern(directory, prefix);
  // Made and held with the signals held back: no moment in which it
  // exists unheld.
  SignalsHeld held;
  const int fd = ::mkstemp(name.data());
  if (fd < 0) return false;
  ::close(fd);
  Register(name.data(), false);
  return true;
}

bool TempPath::MakeDirectory(const std::string& directory, const char* prefix) {
  Remove();
  std::vector<char> name = Pattern(directory, prefix);
  SignalsHeld held;
  if (::mkdtemp(name.data()) == nullptr) return false;
  Register(name.data(), true);
  return true;
}

void TempPath::Hold(const std::string& path) {
  Remove();
  SignalsHeld held;
  Register(path, false);
}

bool TempPath::MoveTo(const std::string& target) {
  SignalsHeld held;
  if (::rename(m_path.c_str(), target.c_str()) != 0) return false;
  Unregister();
  return true;
}

void TempPath::Remove() {
  if (m_path.empty()) return;
  SignalsHeld held;
  if (m_directory) {
    ::rmdir(m_path.c_str());
  } else {
    std::remove(m_path.c_str());
  }
  Unregister();
}

void TempPath::Register(const std::string& path, bool directory) {
  m_path = path;
  m_directory = directory;
  InstallHandlers();
  // A path too long for a slot is still removed on every other way out.
  if (path.size() >= kLongestPath) return;
  for (int i = 0; i < kSlots; ++i) {
    if (g_slots[i].used != 0) continue;
    std::memcpy(g_slots[i].path, path.c_str(), path.size() + 1);
    g_slots[i].directory = directory ? 1 : 0;
    g_slots[i].used = 1;
    m_slot = i;
    return;
  }
}

void TempPath::Unregister() {
  if (m_slot >= 0) g_slots[m_slot].used = 0;
  m_slot = -1;
  m_path.clear();
}

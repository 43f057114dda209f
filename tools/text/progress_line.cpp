#include "tools/text/progress_line.h"

#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace progress_line {
namespace {

using Clock = std::chrono::steady_clock;

struct State {
  std::mutex mutex;
  std::condition_variable wake;
  std::thread drawer;
  bool enabled = false;
  bool stopping = false;
  bool drawn = false;  // the line is on the terminal
  Clock::time_point shownFrom;
  std::string what;
  std::uint64_t total = 0;
  std::atomic<std::uint64_t> position{0};

  // A command that ends without Stop (an exception on its way out) still
  // ends its drawing thread.
  ~State() {
    {
      std::lock_guard<std::mutex> lock(mutex);
      stopping = true;
    }
    wake.notify_all();
    if (drawer.joinable()) drawer.join();
  }
};

State& Shared() {
  static State state;
  return state;
}

void Put(const std::string& text) {
  size_t done = 0;
  while (done < text.size()) {
    const ssize_t wrote = ::write(STDERR_FILENO, text.data() + done, text.size() - done);
    if (wrote <= 0) return;
    done += static_cast<size_t>(wrote);
  }
}

// The line as it stands now; called with the mutex held.
void Draw(State& state) {
  std::string line = "\rdevdef: " + state.what;
  if (state.total > 0) {
    const std::uint64_t at = state.position.load(std::memory_order_relaxed);
    const std::uint64_t percent = at >= state.total ? 100 : at * 100 / state.total;
    line += ": " + std::to_string(percent) + "%";
  }
  // Clears what a longer line before left behind it.
  line += "\033[K";
  Put(line);
  state.drawn = true;
}

void DrawLoop(State* state) {
  std::unique_lock<std::mutex> lock(state->mutex);
  while (!state->stopping) {
    if (Clock::now() >= state->shownFrom) Draw(*state);
    state->wake.wait_for(lock, std::chrono::milliseconds(100));
  }
}

}  // namespace

void Enable(bool wanted) {
  State& state = Shared();
  std::lock_guard<std::mutex> lock(state.mutex);
  state.enabled = wanted && ::isatty(STDERR_FILENO) == 1;
  double delay = 1.0;
  if (const char* text = std::getenv("DEVDEF_PROGRESS_DELAY")) {
    char* end = nullptr;
    const double value = std::strtod(text, &end);
    if (end != text && value >= 0 && value < 1e6) delay = value;
  }
  state.shownFrom = Clock::now() + std::chrono::microseconds(static_cast<long long>(delay * 1e6));
}

void Start(const std::string& what, std::uint64_t total) {
  State& state = Shared();
  std::lock_guard<std::mutex> lock(state.mutex);
  if (!state.enabled) return;
  state.what = what;
  state.total = total;
  state.position.store(0, std::memory_order_relaxed);
  // Past the delay a phase shows at once: a short one is seen too.
  if (Clock::now() >= state.shownFrom) Draw(state);
  if (!state.drawer.joinable()) {
    state.stopping = false;
    state.drawer = std::thread(DrawLoop, &state);
  }
}

std::atomic<std::uint64_t>& Position() { return Shared().position; }

void Stop() {
  State& state = Shared();
  {
    std::lock_guard<std::mutex> lock(state.mutex);
    if (!state.drawer.joinable()) return;
    state.stopping = true;
  }
  state.wake.notify_all();
  state.drawer.join();
  std::lock_guard<std::mutex> lock(state.mutex);
  if (state.drawn) Put("\r\033[K");
  state.drawn = false;
}

}  // namespace progress_line

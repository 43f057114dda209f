#include "tools/lsp/server_loop.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <nlohmann/json.hpp>
#include <thread>
#include <vector>

#include "tools/lsp/language_server.h"
#include "tools/lsp/protocol/message_framing.h"
#include "tools/lsp/protocol/message_parsing.h"

using nlohmann::json;

namespace {

// The input, read until it ends or Stop is called from another thread.
class FdByteSource : public ByteSource {
 public:
  explicit FdByteSource(int fd) : m_fd(fd) {
    if (::pipe(m_wake) != 0) m_wake[0] = m_wake[1] = -1;
  }
  ~FdByteSource() override {
    if (m_wake[0] >= 0) ::close(m_wake[0]);
    if (m_wake[1] >= 0) ::close(m_wake[1]);
  }
  FdByteSource(const FdByteSource&) = delete;
  FdByteSource& operator=(const FdByteSource&) = delete;

  size_t Read(char* buffer, size_t size) override {
    for (;;) {
      pollfd fds[2] = {{m_fd, POLLIN, 0}, {m_wake[0], POLLIN, 0}};
      const int ready = ::poll(fds, m_wake[0] >= 0 ? 2 : 1, -1);
      if (ready < 0) {
        if (errno == EINTR) continue;
        return 0;
      }
      if (m_wake[0] >= 0 && fds[1].revents != 0) return 0;
      const ssize_t got = ::read(m_fd, buffer, size);
      if (got < 0 && (errno == EINTR || errno == EAGAIN)) continue;
      return got > 0 ? static_cast<size_t>(got) : 0;
    }
  }

  void Stop() {
    const char byte = 0;
    if (m_wake[1] >= 0 && ::write(m_wake[1], &byte, 1) < 0) {
      // The reader then ends with the input.
    }
  }

 private:
  int m_fd;
  int m_wake[2];
};

// A message as the reading thread hands it over.
struct Incoming {
  json message;         // discarded when the body was no JSON
  std::string problem;  // a problem of the stream instead of a message
  bool analysisOver = false;  // instead of a message: the worker's analysis is over
};

// How long the client must be quiet before the whole analysis of a changed
// document starts on the worker's thread: longer than editors wait between
// the changes of one run of typing, so that a keystroke rarely waits for it.
constexpr std::chrono::milliseconds kQuiet(300);

// The messages read and not yet taken.
class Inbox {
 public:
  void Put(Incoming incoming) {
    {
      std::lock_guard<std::mutex> lock(m_mutex);
      m_items.push_back(std::move(incoming));
    }
    m_ready.notify_one();
  }
  void End() {
    {
      std::lock_guard<std::mutex> lock(m_mutex);
      m_ended = true;
    }
    m_ready.notify_one();
  }
  // Everything that arrived, waiting for at least one; empty once the
  // input ended. With a quiet time: false when nothing came within it.
  std::deque<Incoming> TakeAll() {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_ready.wait(lock, [this] { return !m_items.empty() || m_ended; });
    std::deque<Incoming> taken;
    taken.swap(m_items);
    return taken;
  }
  bool TakeAll(std::chrono::milliseconds quiet, std::deque<Incoming>* taken) {
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_ready.wait_for(lock, quiet, [this] { return !m_items.empty() || m_ended; })) return false;
    taken->swap(m_items);
    return true;
  }
  // Whether a change or close of the document waits.
  bool ChangeWaiting(const std::string& uri) {
    std::lock_guard<std::mutex> lock(m_mutex);
    for (const Incoming& item : m_items) {
      const json& message = item.message;
      if (!message.is_object()) continue;
      auto method = message.find("method");
      if (method == message.end() || (*method != "textDocument/didChange" && *method != "textDocument/didClose")) {
        continue;
      }
      const json* document = message.contains("params") ? &message["params"] : nullptr;
      if (document != nullptr && document->is_object() && document->contains("textDocument")) {
        const json& identifier = (*document)["textDocument"];
        if (identifier.is_object() && identifier.contains("uri") && identifier["uri"] == uri) return true;
      }
    }
    return false;
  }

 private:
  std::mutex m_mutex;
  std::condition_variable m_ready;
  std::deque<Incoming> m_items;
  bool m_ended = false;
};

void ReadMessages(FdByteSource& source, Inbox& inbox) {
  FrameReader reader(source);
  std::string body;
  for (;;) {
    const FrameReader::Result result = reader.Next(&body);
    if (result == FrameReader::Result::kEnd) break;
    Incoming incoming;
    if (result == FrameReader::Result::kProblem) {
      incoming.problem = body;
    } else {
      incoming.message = ParseMessage(body);
    }
    inbox.Put(std::move(incoming));
  }
  inbox.End();
}

// Writes a whole message; false when the output failed.
bool WriteAll(int fd, const std::string& bytes) {
  size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t put = ::write(fd, bytes.data() + written, bytes.size() - written);
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) return false;
    written += static_cast<size_t>(put);
  }
  return true;
}

}  // namespace

int RunLanguageServer(int input, int output, const ServerSettings& settings, const std::string& version) {
  bool outputFailed = false;
  LanguageServer server(settings, version, [&](const std::string& body) {
    if (!outputFailed && !(WriteAll(output, FrameHeader(body.size())) && WriteAll(output, body))) outputFailed = true;
  });
  FdByteSource source(input);
  Inbox inbox;
  std::thread reader([&source, &inbox] { ReadMessages(source, inbox); });
  server.SetAnalysisDone([&inbox] {
    Incoming over;
    over.analysisOver = true;
    inbox.Put(std::move(over));
  });

  bool idle = false;  // whether the client was quiet since the last analysis started
  while (!server.Exited() && !outputFailed) {
    std::deque<Incoming> batch;
    if (idle || server.AnalysisRunning()) {
      batch = inbox.TakeAll();
    } else if (!inbox.TakeAll(kQuiet, &batch)) {
      server.StartAnalysis();
      idle = true;
      continue;
    }
    if (batch.empty()) break;  // the input ended
    for (Incoming& incoming : batch) {
      if (LanguageServer::IsCancellation(incoming.message)) server.Handle(incoming.message);
    }
    for (Incoming& incoming : batch) {
      idle = false;
      if (incoming.analysisOver) {
        server.FinishAnalysis(false);
        continue;
      }
      if (!incoming.problem.empty()) {
        server.Log(incoming.problem);
      } else if (incoming.message.is_discarded()) {
        server.RejectUnparsable();
      } else if (!LanguageServer::IsCancellation(incoming.message)) {
        server.Handle(incoming.message);
      }
      if (server.Exited() || outputFailed) break;
    }
    server.ForgetCancellations();
    if (!server.Exited()) server.PublishDue([&inbox](const std::string& uri) { return inbox.ChangeWaiting(uri); });
  }
  server.StopAnalysis();
  source.Stop();
  reader.join();
  return server.ExitCode();
}

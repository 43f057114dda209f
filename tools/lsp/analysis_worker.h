// The whole analysis of a document on a thread of its own, while the server
// answers from the analysis it has. One job at a time: a job is the text of
// one version of a document, and its result is taken by the server's
// thread, which drops it when the document changed in the meantime.
#ifndef DEVDEF_TOOLS_LSP_ANALYSIS_WORKER_H_
#define DEVDEF_TOOLS_LSP_ANALYSIS_WORKER_H_

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>

#include "tools/analysis/library_lock.h"
#include "tools/text/buffer_encoding.h"

struct AnalysisJob {
  std::string uri;
  std::int64_t version = 0;  // the caller's mark of the text
  std::string name;
  std::string bytes;  // in encoding
  BufferEncoding encoding = BufferEncoding::kUtf8;
  AnalysisOptions options;
};

struct AnalysisResult {
  std::string uri;
  std::int64_t version = 0;
  BufferEncoding encoding = BufferEncoding::kUtf8;
  AnalysisPtr analysis;  // null when there was no job
};

class AnalysisWorker {
 public:
  // done is called on the worker's thread when a job is over.
  explicit AnalysisWorker(std::function<void()> done = std::function<void()>()) : m_done(std::move(done)) {}
  // Waits for the running job and drops its result.
  ~AnalysisWorker();
  AnalysisWorker(const AnalysisWorker&) = delete;
  AnalysisWorker& operator=(const AnalysisWorker&) = delete;

  void SetDone(std::function<void()> done) { m_done = std::move(done); }
  // Whether a job was started and its result not taken.
  bool Busy() const { return m_thread.joinable(); }
  // The document of the job, while Busy.
  const std::string& Uri() const { return m_result.uri; }
  // Whether the job is over (Take then does not wait).
  bool Over() const { return m_over.load(std::memory_order_acquire); }
  // Starts a job; the worker must not be busy.
  void Start(AnalysisJob job);
  // Waits for the job to end and gives its result.
  AnalysisResult Take();

 private:
  std::function<void()> m_done;
  std::thread m_thread;
  std::atomic<bool> m_over{false};
  AnalysisResult m_result;  // written by the thread until it ends
};

#endif  // DEVDEF_TOOLS_LSP_ANALYSIS_WORKER_H_

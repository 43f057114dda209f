#include "tools/lsp/analysis_worker.h"

#include <utility>

AnalysisWorker::~AnalysisWorker() {
  if (m_thread.joinable()) m_thread.join();
}

void AnalysisWorker::Start(AnalysisJob job) {
  m_over.store(false, std::memory_order_release);
  m_result = AnalysisResult();
  m_result.uri = job.uri;
  m_result.version = job.version;
  m_thread = std::thread([this](AnalysisJob work) {
    // A buffer analysed as UTF-8 may have lost the characters that kept it
    // from being single-byte text: the whole text decides, as for a read
    // on the server's thread.
    if (work.encoding == BufferEncoding::kUtf8) work.encoding = EncodeBuffer(work.bytes);
    AnalysisPtr analysis = ReadLocked(work.name, std::move(work.bytes), work.options);
    m_result.encoding = work.encoding;
    m_result.analysis = std::move(analysis);
    m_over.store(true, std::memory_order_release);
    if (m_done) m_done();
  }, std::move(job));
}

AnalysisResult AnalysisWorker::Take() {
  if (!m_thread.joinable()) return AnalysisResult();
  m_thread.join();
  AnalysisResult result = std::move(m_result);
  m_result = AnalysisResult();
  return result;
}

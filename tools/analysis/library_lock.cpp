#include "tools/analysis/library_lock.h"

#include <utility>

std::recursive_mutex& LibraryLock() {
  static std::recursive_mutex lock;
  return lock;
}

void LockedAnalysisDeleter::operator()(Analysis* analysis) const {
  std::lock_guard<std::recursive_mutex> hold(LibraryLock());
  delete analysis;
}

AnalysisPtr ReadLocked(const std::string& name, std::string bytes, const AnalysisOptions& options) {
  std::lock_guard<std::recursive_mutex> hold(LibraryLock());
  return AnalysisPtr(Analysis::ReadText(name, std::move(bytes), options).release());
}

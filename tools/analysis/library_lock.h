// The library reads into class-wide name lists and reports to one
// process-wide observer, so only one thread at a time may read, look at a
// definition line again (Analysis::Fields) or destroy an analysis (its
// controller empties the lists). Every such step of the language server's
// threads and of the Python module holds this lock; the thread that holds
// it may take it again.
#ifndef DEVDEF_TOOLS_ANALYSIS_LIBRARY_LOCK_H_
#define DEVDEF_TOOLS_ANALYSIS_LIBRARY_LOCK_H_

#include <memory>
#include <mutex>

#include "tools/analysis/analysis.h"

std::recursive_mutex& LibraryLock();

// Destroys an analysis under the lock.
struct LockedAnalysisDeleter {
  void operator()(Analysis* analysis) const;
};
using AnalysisPtr = std::unique_ptr<Analysis, LockedAnalysisDeleter>;

// An analysis of text read under the lock.
AnalysisPtr ReadLocked(const std::string& name, std::string bytes, const AnalysisOptions& options);

#endif  // DEVDEF_TOOLS_ANALYSIS_LIBRARY_LOCK_H_

// What a catalogue read from Python holds: its analysis, the encoding its
// names are decoded with, and the Python strings of its header lists, made
// once. Every view (kind, manufacturer, device, definition) holds the state
// by shared pointer, so a view the caller keeps keeps its catalogue alive.
//
// The library's name lists and the text of GetDevicePackage belong to the
// whole process, and a read starts them anew. Python may hold several
// catalogues at once, so every use of the library goes through the library
// lock, and a catalogue puts its own names back into the process-wide lists
// (Use::Lists) before it asks the library for a package name.
#ifndef DEVDEF_PYTHON_SRC_CATALOGUE_STATE_H_
#define DEVDEF_PYTHON_SRC_CATALOGUE_STATE_H_

#include <pybind11/pybind11.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "tools/analysis/analysis.h"
#include "python/src/python_errors.h"
#include "tools/analysis/library_lock.h"
#include "tools/text/text_encoding.h"

namespace devdef_python {

namespace py = pybind11;

// How a file is read: the keyword arguments of devdef.read.
struct ReadOptions {
  int layout = 0;
  int generation = 5;
  bool checkIds = false;
  std::string encoding;  // empty: detected from the bytes
};

class CatalogueState {
 public:
  // Takes the analysis of a usable file; the encoding asked for (ReadOptions)
  // or else the one the bytes suggest.
  CatalogueState(AnalysisPtr analysis, const ReadOptions& options, py::object path);
  ~CatalogueState();
  CatalogueState(const CatalogueState&) = delete;
  CatalogueState& operator=(const CatalogueState&) = delete;

  Analysis& A() const { return *m_analysis; }
  TextEncoding Encoding() const { return m_encoding; }
  int Generation() const { return m_options.generation; }
  // The options it was read with.
  const ReadOptions& Options() const { return m_options; }
  // The path as the caller gave it, or None for bytes.
  const py::object& Path() const { return m_path; }

  // Bytes of the file as text, in the catalogue's encoding.
  py::str Text(const char* bytes, size_t length) const;
  py::str Text(const std::string& bytes) const { return Text(bytes.data(), bytes.size()); }
  py::str Text(const CString& text) const;
  // The name of entry number of a header list (0: housings, 1: adapters,
  // 2: modules), or None when the list has no such entry.
  py::object ListName(int list, unsigned number) const;
  // The whole list as Python strings.
  py::list ListNames(int list) const;
  // The line (1-based) of a byte of the file.
  long LineOf(std::uint32_t offset) const;
  // Its line and column, the column in characters of the line decoded.
  LineColumn PlaceOf(std::uint32_t offset) const;
  // The record of a device of the catalogue, or kNoRecord; an index made on
  // first use, so that a script's look-ups do not each walk the devices.
  std::uint32_t DeviceRecordOf(const DEVICE_ITEM* device) const;

  // The library held for this catalogue: the lock taken and the run's
  // encoding set to the catalogue's, for the tool's parts that decode
  // names with it (the name matcher, finding and edit messages).
  class Use {
   public:
    explicit Use(const CatalogueState& state);
    // The process-wide name lists hold this catalogue's names from here on.
    void Lists();

   private:
    const CatalogueState& m_state;
    std::lock_guard<std::recursive_mutex> m_hold;
  };

 private:
  AnalysisPtr m_analysis;
  TextEncoding m_encoding = TextEncoding::kWindows1252;
  ReadOptions m_options;
  py::object m_path;
  mutable std::unordered_map<const DEVICE_ITEM*, std::uint32_t> m_deviceRecords;
  mutable std::vector<py::object> m_names[3];
  mutable bool m_namesMade[3] = {false, false, false};
};

using StatePtr = std::shared_ptr<CatalogueState>;

// The process-wide name lists no longer hold any catalogue's names as
// Use::Lists put them there (a read, an edit's read-back or a destroyed
// controller changed them). Called with the library lock held.
void ForgetListOwner();

}  // namespace devdef_python

#endif  // DEVDEF_PYTHON_SRC_CATALOGUE_STATE_H_

// The position-aware read of a definition file that every command of the
// tool shares: the library's own controller reads the file, watched through
// its virtual readers, and every construct it made is given its exact place
// in the file; the findings say where the reading differs from what the file
// looks like and what a write will not keep.
#ifndef DEVDEF_TOOLS_ANALYSIS_ANALYSIS_H_
#define DEVDEF_TOOLS_ANALYSIS_ANALYSIS_H_

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "devdef/devdef.h"
#include "tools/analysis/finding.h"
#include "tools/analysis/source_map.h"

struct AnalysisOptions {
  int layout = 0;  // 0: the layout the file's version line names
  int generation = 5;
  bool checkIds = false;
  std::string pathPrefix;  // the controller's path prefix: where its device list export goes
};

// Where a device stands: its name on its line, its block from "{" to "}"
// (or to where the block ended), and each definition read into it, in the
// order of its m_DefArray.
struct DevicePlace {
  TextRange name;
  TextRange block;
  std::vector<TextRange> definitions;
};

// Where the entries of one header list stand, in the order of the list.
struct ListPlaces {
  std::vector<TextRange> entries;
};

class Analysis {
 public:
  // Reads the file at path with the controller of its layout. When the file
  // cannot be read, Read() is false and the reason is in Error(). The
  // process-wide name lists are emptied first and hold this file's lists
  // while the analysis lives, so only one analysis is alive at a time.
  static std::unique_ptr<Analysis> ReadFile(const std::string& path, const AnalysisOptions& options);

  // The same for text that is no file of its own (standard input, an
  // editor's buffer), shown under name.
  static std::unique_ptr<Analysis> ReadText(const std::string& name, std::string bytes,
                                            const AnalysisOptions& options);

  ~Analysis();
  Analysis(const Analysis&) = delete;
  Analysis& operator=(const Analysis&) = delete;

  // True when the library read the file (ReadDefFile gave 1).
  bool Read() const { return m_read; }
  // True when the file was read and is a definition file: it has a version
  // line that the reader took. What the commands work on.
  bool Usable() const { return m_read && m_hasVersion; }
  // Why the file is not usable, in one line (what was expected and what was
  // found); empty when it is.
  const std::string& Error() const { return m_error; }
  // The layout the file was read as: the option, else the version line's;
  // -1 when the file names none.
  int Layout() const { return m_layout; }
  const std::string& Path() const { return m_path; }
  const std::string& Bytes() const { return m_bytes; }
  const SourceMap& Map() const { return m_map; }
  KCDeviceDefCtrl& Controller() { return *m_ctrl; }

  // Places of what the read made; null for what it did not make.
  const TextRange* VersionPlace() const { return m_hasVersion ? &m_version : nullptr; }
  const TextRange* KindPlace(POSITION kind) const;
  const TextRange* ManufacturerPlace(POSITION manufacturer) const;
  const DevicePlace* PlaceOf(const DEVICE_ITEM& device) const;
  // The place of the definition at index of the device's m_DefArray.
  const TextRange* DefinitionPlace(const DEVICE_ITEM& device, int index) const;
  // 0: HOUSING_LIST, 1: ADAPTER_LIST, 2: MODUL_LIST.
  const ListPlaces& ListPlace(int list) const { return m_lists[list]; }
  // The names of a header list as this file gave them, kept apart from the
  // process-wide lists, which the next analysis empties: a number of a
  // definition is an index into them.
  const std::vector<std::string>& ListNames(int list) const { return m_listNames[list]; }

  // False when the replay of the read lost its step somewhere: places and
  // findings may then be off. True for every file known.
  bool Exact() const { return m_exact; }

  // Every finding, in the order of the file; identical findings of one place
  // merged.
  const std::vector<Finding>& Findings() const { return m_findings; }

 private:
  Analysis();
  friend class AnalysisBuilder;
  // Reads m_bytes, which the library reads from libraryPath.
  void ReadThrough(const std::string& libraryPath, const AnalysisOptions& options);

  std::string m_path;
  std::string m_bytes;
  SourceMap m_map;
  std::unique_ptr<KCDeviceDefCtrl> m_ctrl;
  bool m_read = false;
  bool m_exact = true;
  std::string m_error;
  int m_layout = -1;
  bool m_hasVersion = false;
  TextRange m_version;
  std::unordered_map<const void*, TextRange> m_kinds;
  std::unordered_map<const void*, TextRange> m_manufacturers;
  std::unordered_map<const DEVICE_ITEM*, DevicePlace> m_devices;
  ListPlaces m_lists[3];
  std::vector<std::string> m_listNames[3];
  std::vector<Finding> m_findings;
};

#endif  // DEVDEF_TOOLS_ANALYSIS_ANALYSIS_H_

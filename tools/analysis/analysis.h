// The read of a definition file that every part of the tool shares: the
// library's own controller reads the file, and the reader reports each of
// its steps (devdef/reader/read_observer.h) to the analysis, which keeps
// them as flat records in file order with their bytes, and says where the
// reading differs from how the file looks and what a write will not keep.
// One parse: no part of the tool reads the file's grammar again.
#ifndef DEVDEF_TOOLS_ANALYSIS_ANALYSIS_H_
#define DEVDEF_TOOLS_ANALYSIS_ANALYSIS_H_

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "devdef/devdef.h"
#include "tools/analysis/finding.h"
#include "tools/analysis/read_recorder.h"
#include "tools/analysis/records.h"
#include "tools/analysis/source_map.h"

struct AnalysisOptions {
  int layout = 0;  // 0: the layout the file's version line names
  int generation = 5;
  bool checkIds = false;
  std::string pathPrefix;  // the controller's path prefix: where its device list export goes
  // Where the read stands, in bytes, stored now and then for a progress
  // display; null for none.
  std::atomic<std::uint64_t>* progress = nullptr;
};

class AnalysisCtrl;  // tools/analysis/analysis_ctrl.h

class Analysis {
 public:
  // Reads the file at path with the controller of its layout. When the file
  // cannot be read, Read() is false and the reason is in Error(). The
  // process-wide name lists are emptied first and hold this file's lists
  // while the analysis lives, so only one analysis is alive at a time.
  static std::unique_ptr<Analysis> ReadFile(const std::string& path, const AnalysisOptions& options);
  // The same for text that is no file of its own (standard input, an
  // editor's buffer), shown under name.
  static std::unique_ptr<Analysis> ReadText(const std::string& name, std::string bytes, const AnalysisOptions& options);

  ~Analysis();
  Analysis(const Analysis&) = delete;
  Analysis& operator=(const Analysis&) = delete;

  // True when the library read the file (ReadDefFile gave 1).
  bool Read() const { return m_read; }
  // True when the file was read and is a definition file: it has a version
  // line that the reader took, or one that a byte order mark or white space
  // hides from the reader (a finding says so). What the commands work on.
  bool Usable() const { return m_read && m_error.empty(); }
  // Why the file is not usable, in one line; empty when it is.
  const std::string& Error() const { return m_error; }
  // The layout the file was read as: the option, else the version line's;
  // -1 when the file names none.
  int Layout() const { return m_layout; }
  // The layout the version line the reader took names; -1 when it took
  // none.
  int DeclaredLayout() const { return m_records.versionTaken ? m_records.versionLayout : -1; }
  const std::string& Path() const { return m_path; }
  std::string_view Bytes() const;
  // Offsets as lines and columns; made on first use.
  const SourceMap& Map() const;
  KCDeviceDefCtrl& Controller();

  // The records, in the order the reader met them, which is also the
  // catalogue's walk order.
  const std::vector<KindRecord>& Kinds() const { return m_records.kinds; }
  const std::vector<ManufacturerRecord>& Manufacturers() const { return m_records.manufacturers; }
  const std::vector<DeviceRecord>& Devices() const { return m_records.devices; }
  const std::vector<DefinitionRecord>& Definitions() const { return m_records.definitions; }
  // The places of the entries of a header list (0: HOUSING_LIST, 1:
  // ADAPTER_LIST, 2: MODUL_LIST), in the order of the list.
  const std::vector<ByteSpan>& ListEntries(int list) const { return m_records.listEntries[list]; }
  // The version line the reader took (empty when it took none), and the
  // device block lines that the reader read as a housing list (layout 7),
  // without comment and white space at their ends.
  ByteSpan VersionLine() const { return m_records.version; }
  const std::vector<ByteSpan>& HousingLines() const { return m_records.housingLines; }
  // The entries of those lines whose numbers went to their devices'
  // m_HousingIds, in the order of the file (so of each device's list).
  const std::vector<HousingNumberRecord>& HousingNumbers() const { return m_records.housingNumbers; }
  // The header list keywords that opened lists, and the DEVICE_HOUSING_LIST:
  // keyword of each housing line.
  const std::vector<ListKeywordRecord>& ListKeywords() const { return m_records.listKeywords; }
  const std::vector<ByteSpan>& HousingKeywords() const { return m_records.housingKeywords; }
  // The names of a header list as this file gave them, kept apart from the
  // process-wide lists, which the next analysis empties: a number of a
  // definition is an index into them.
  const std::vector<std::string>& ListNames(int list) const { return m_listNames[list]; }

  // The definition of a record as the catalogue holds it.
  DEVICE_KVRXDEF_ITEM& DefinitionOf(std::uint32_t definition) const;
  // The record of a device of the catalogue, or kNoRecord; a walk over the
  // records.
  std::uint32_t DeviceRecordOf(const DEVICE_ITEM* device) const;

  // The number fields of a definition line as the reader reads them: its
  // line reader runs again on the line, watched. With keyword, also where
  // its keyword (KVR3DEF: ...) starts in the file.
  std::vector<FieldRecord> Fields(std::uint32_t definition, std::uint32_t* keyword = nullptr);
  // The word that a definition's id stands in.
  ByteSpan IdWord(std::uint32_t definition) const;

  // Every finding, in the order of the file; identical findings of one
  // place merged.
  const Findings& FindingsOf() const { return m_records.findings; }
  // What a finding says (the file's bytes, as they are), with the line of
  // its cause for a consequence of a failed line; what a related place or
  // message form says. A message of its own (MessageForm::kText) is one of
  // the texts of owner, the findings the finding belongs to: this
  // analysis's, or findings about this file made elsewhere (a write's).
  std::string MessageOf(const Finding& finding, const Findings& owner) const;
  std::string MessageOf(const MessageArgs& says, const Findings& owner) const;
  std::string MessageOf(const Finding& finding) const { return MessageOf(finding, m_records.findings); }

 private:
  Analysis();
  // Reads the file at libraryPath with the controller of layout.
  void ReadWith(const std::string& libraryPath, const AnalysisOptions& options, int layout);
  void ReadThrough(const std::string& libraryPath, const AnalysisOptions& options);
  // Findings about what the read made, once it is over: a file without a
  // version line, duplicate ids, numbers without names and what the layout
  // 7 writer does not keep of a definition (catalogue_checks.cpp).
  void CheckCatalogue();
  void CheckDefinitions();
  std::string Text(ByteSpan span) const;
  // The word at begin, as it looks: up to a blank, tab or ":" (or "," in a
  // list) or the end of the line.
  ByteSpan WordFrom(std::uint32_t begin, std::uint32_t lineEnd, bool list) const;
  long LineOf(std::uint32_t offset) const;
  std::string BraceProblemText(std::uint32_t problem, std::uint32_t stop) const;

  std::string m_path;
  std::string m_text;  // the bytes of ReadText, which the library reads from a file of their own
  std::unique_ptr<AnalysisCtrl> m_ctrl;
  bool m_read = false;
  std::string m_error;
  int m_layout = -1;
  ReadRecords m_records;
  mutable std::unique_ptr<SourceMap> m_map;
  std::vector<std::string> m_listNames[3];
  // A device outside the catalogue that Fields reads lines into.
  CList<DEVICE_ITEM, DEVICE_ITEM&> m_scratch{1};
};

#endif  // DEVDEF_TOOLS_ANALYSIS_ANALYSIS_H_

// The read loop of the library, replayed beside the real one. The library's
// controller calls its virtual readers (header lists, device blocks,
// definition lines) at fixed points of its loop; an observing controller
// passes each call on to this replay, which runs the loop's own steps up to
// that point over the same bytes, checks that it stands where the library
// stands, and takes the library's state back from every call. So every
// kind, manufacturer, device, block, definition line, list entry and skipped
// line gets its exact bytes, and the replay knows what each line became.
#ifndef DEVDEF_TOOLS_ANALYSIS_READ_REPLAY_H_
#define DEVDEF_TOOLS_ANALYSIS_READ_REPLAY_H_

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "devdef/devdef.h"
#include "tools/analysis/source_map.h"

// Bytes [begin, end) of the file.
struct ByteSpan {
  size_t begin = 0;
  size_t end = 0;
};

// Another place a finding refers to, with what happened there.
struct RelatedSpan {
  ByteSpan span;
  std::string message;
  bool cause = false;  // the failed line behind a consequence
};

// A finding as the replay makes it, on bytes rather than lines.
struct RawFinding {
  const char* kind;
  ByteSpan span;
  std::string message;
  std::vector<RelatedSpan> related;
};

// What the replay found out about one device.
struct DeviceSpans {
  ByteSpan name;
  ByteSpan block;
  std::vector<ByteSpan> definitions;  // in the order of m_DefArray
};

// A definition of the catalogue: its device, its index in m_DefArray and
// the bytes of its line.
struct DefinitionSpan {
  DEVICE_ITEM* device;
  int index;
  ByteSpan span;
};

// A kind or manufacturer the loop made, with the kind it belongs to.
struct MadeEntry {
  ByteSpan span;
  size_t kind;  // for a manufacturer: the index of its kind among the kinds made
};

class ReadReplay {
 public:
  // bytes must outlive the replay, and so must map, made of the same bytes.
  ReadReplay(const std::string& bytes, const SourceMap& map, int layout);

  // The calls of the observing controller, with the library's state.
  void BeforeLists(size_t bufPos, POSITION posKind, POSITION posManuf);
  void AfterLists(int result, size_t bufPos, unsigned char current, bool tokenEmpty, int lineState);
  // housingTarget: the device the block's housing numbers go to, or null.
  void BeforeBlock(size_t bufPos, DEVICE_ITEM& device, DEVICE_ITEM* housingTarget);
  void AfterDefinitionLine(size_t bufPos, int result, bool added);
  void AfterBlock(int result, size_t bufPos, unsigned char current, bool tokenEmpty, int lineState);
  // Runs the loop's steps over the rest of the bytes once the read is over.
  void Finish();

  // False when the replay ever stood elsewhere than the library: then
  // places may be wrong. It never is for any file the tests and fuzzing
  // have seen.
  bool Consistent() const { return m_consistent; }
  bool VersionFound() const { return m_versionRead; }
  const ByteSpan& VersionSpan() const { return m_versionSpan; }
  const std::vector<MadeEntry>& Kinds() const { return m_kinds; }
  const std::vector<MadeEntry>& Manufacturers() const { return m_manufacturers; }
  std::unordered_map<const DEVICE_ITEM*, DeviceSpans>& Devices() { return m_devices; }
  // Definitions in the order of the file: the device and the index in its
  // m_DefArray.
  const std::vector<DefinitionSpan>& DefinitionOrder() const { return m_definitionOrder; }
  const std::vector<ByteSpan>& ListEntries(int list) const { return m_listEntries[list]; }
  std::vector<RawFinding>& Findings() { return m_findings; }

 private:
  enum class Stop { kNone, kLists, kBlock };
  // How a line looks to a person, whatever the reader makes of it.
  enum class Look { kBlank, kComment, kQuote, kBlockOpen, kBlockClose, kDefinition, kManufacturer, kList,
                    kVersion, kKind, kDevice };

  // The loop: passes up to the next call of a virtual reader or the end.
  void Run();
  void Pass();
  void AfterListStep();
  void Tail();
  void EndLine();
  // The recognisers the loop calls directly.
  void Version();
  void Manufacturer();
  void Kind();
  bool Device();
  // Arrives at a call of the library: the replay must stand there too.
  void Arrive(Stop stop, size_t bufPos);

  // What a scan of a list in braces finds, as the reader scans it.
  struct BraceScan {
    bool opened = false;
    bool closed = false;
    size_t stop = 0;                 // the "}" or the end of the text
    std::vector<ByteSpan> entries;   // stored, in order
    std::vector<ByteSpan> lost;      // ended by "}" or ";" instead of a separator
    bool Read() const { return opened && closed && !entries.empty(); }
  };
  BraceScan ScanBraces(size_t from, size_t to) const;
  std::string BraceProblem(const BraceScan& scan) const;

  // Device blocks, header lists (block_replay.cpp, list_replay.cpp).
  void ReplayBlock(int result, size_t bufPos);
  void ReplayHousingLine(size_t first, size_t last, size_t keyword);
  void ReplayOneLineList(int list, size_t lineStart);
  void ReplayBraceList(int list, int result, size_t from, size_t to, size_t keywordStart);
  // The first delimiter of a header list line, or the line end.
  size_t ListDelimiter(size_t from) const;
  // The header list whose keyword opens the line, with a delimiter behind it
  // on the line: 0 HOUSING_LIST, 1 ADAPTER_LIST, 2 MODUL_LIST; -1 for none.
  int ListKeyword(size_t lineStart) const;
  static CStringArray& ListOf(int list);

  // Lines: where the line holding pos ends, and how it looks.
  size_t LineEndFrom(size_t pos) const;
  Look LookOf(size_t lineStart) const;
  bool LooksLikeBlockLine(Look look) const;
  // Bytes as text, and names as the library holds them ("_" read as blank).
  std::string Text(size_t begin, size_t end) const;
  std::string Name(size_t begin, size_t end) const;
  ByteSpan Trimmed(size_t begin, size_t end) const;

  // Findings; a consequence names its cause and the cause lists it.
  size_t Add(const char* kind, size_t begin, size_t end, std::string message);
  void AddConsequence(const char* kind, size_t begin, size_t end, std::string message);
  void Inconsistent() { m_consistent = false; }

  const unsigned char* m_b;
  size_t m_n;
  const SourceMap& m_map;
  int m_layout;

  // The loop's state as the replay runs it.
  size_t m_pos = 0;
  unsigned char m_current = 0;
  bool m_tokenEmpty = true;
  int m_lineState = 0;
  bool m_haveKind = false;
  bool m_haveManuf = false;
  bool m_versionRead = false;
  Stop m_stop = Stop::kNone;
  size_t m_stopAt = 0;

  // The line being read: its start, whether it started open, what it made.
  size_t m_lineStart = 0;
  bool m_lineFresh = true;
  bool m_lineMade = false;
  // Skipped after a failed block: from here to the line end.
  bool m_dropArmed = false;
  size_t m_dropFrom = 0;
  // The finding that started the running cascade of misread lines, or -1.
  long m_cause = -1;
  size_t m_causeLine = 0;

  // The device whose block is being read.
  DEVICE_ITEM* m_device = nullptr;
  DEVICE_ITEM* m_housingTarget = nullptr;
  size_t m_deviceLine = 0;
  size_t m_blockFrom = 0;
  bool m_deviceMisread = false;
  struct DefinitionCall {
    size_t lineEnd;
    int result;
    bool added;
  };
  std::vector<DefinitionCall> m_definitionCalls;
  int m_housingsBefore = 0;
  int m_housingsTaken = 0;

  // Header lists: sizes before a call of the list reader.
  int m_listSizes[3] = {0, 0, 0};

  bool m_consistent = true;
  ByteSpan m_versionSpan;
  std::vector<MadeEntry> m_kinds;
  std::vector<MadeEntry> m_manufacturers;
  std::unordered_map<const DEVICE_ITEM*, DeviceSpans> m_devices;
  std::vector<DefinitionSpan> m_definitionOrder;
  std::vector<ByteSpan> m_listEntries[3];
  std::vector<RawFinding> m_findings;
};

#endif  // DEVDEF_TOOLS_ANALYSIS_READ_REPLAY_H_

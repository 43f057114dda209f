#include "tools/analysis/analysis.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

#include "tools/analysis/catalogue_checks.h"
#include "tools/analysis/observing_ctrl.h"
#include "tools/analysis/read_replay.h"
#include "tools/text/line_end.h"

namespace {

// The whole file, or false with the reason.
bool ReadBytes(const std::string& path, std::string& bytes, std::string& error) {
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) {
    error = "cannot open '" + path + "': " + std::strerror(errno);
    return false;
  }
  char block[65536];
  size_t got = 0;
  while ((got = std::fread(block, 1, sizeof block, file)) > 0) {
    bytes.append(block, got);
    if (bytes.size() > static_cast<size_t>(INT_MAX) - 1) break;
  }
  const bool failed = std::ferror(file) != 0;
  const int readErrno = errno;
  std::fclose(file);
  if (failed) {
    error = "cannot read '" + path + "': " + std::strerror(readErrno);
    return false;
  }
  if (bytes.size() > static_cast<size_t>(INT_MAX) - 1) {
    error = "cannot read '" + path + "': files of 2 GiB and more are not read";
    return false;
  }
  return true;
}

// The layout of the first version line the reader would take, or -1: the
// first line that is no comment, opens with the keyword in any case, has a
// line end and a number behind its first "=".
int DeclaredLayout(const std::string& bytes) {
  size_t start = 0;
  while (start < bytes.size()) {
    size_t end = start;
    while (end < bytes.size() && !IsLineEnd(bytes[end])) ++end;
    if (end >= bytes.size()) return -1;
    const char first = bytes[start];
    if (end > start && first != ';' && first != '/' && end - start >= 18) {
      bool keyword = true;
      for (size_t i = 0; i < 18 && keyword; ++i) {
        keyword = DevdefToLower(static_cast<unsigned char>(bytes[start + i])) ==
                  static_cast<unsigned char>("def_layout_version"[i]);
      }
      const size_t equals = bytes.find('=', start);
      int number = 0;
      if (keyword && equals < end &&
          DevdefScanDecimal(bytes.substr(equals + 1, end - equals - 1).c_str(), &number) == 1) {
        return number;
      }
    }
    start = end + 1;
  }
  return -1;
}

}  // namespace

// Fills an Analysis from a read and its replay.
class AnalysisBuilder {
 public:
  AnalysisBuilder(Analysis& analysis, ReadReplay& replay) : m_a(analysis), m_replay(replay) {}

  void TakePlaces() {
    if (m_replay.VersionFound()) {
      m_a.m_hasVersion = true;
      m_a.m_version = Range(m_replay.VersionSpan());
    }
    const std::vector<MadeEntry>& kinds = m_replay.Kinds();
    const std::vector<MadeEntry>& manufacturers = m_replay.Manufacturers();
    CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& list = m_a.m_ctrl->getDeviceList();
    if (static_cast<size_t>(list.GetCount()) != kinds.size()) m_a.m_exact = false;
    size_t kindIndex = 0;
    size_t manufIndex = 0;
    for (POSITION k = list.GetHeadPosition(); k != nullptr && kindIndex < kinds.size(); ++kindIndex) {
      const POSITION kindPos = k;
      TAG_KIND_OF_DEVICE& kind = list.GetNext(k);
      m_a.m_kinds[kindPos] = Range(kinds[kindIndex].span);
      m_names.push_back(NamePlace{&kind.m_Name, "kind", kinds[kindIndex].span});
      if (kind.m_pManufList == nullptr) continue;
      for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != nullptr;) {
        const POSITION manufPos = m;
        TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(m);
        while (manufIndex < manufacturers.size() && manufacturers[manufIndex].kind < kindIndex) ++manufIndex;
        if (manufIndex >= manufacturers.size() || manufacturers[manufIndex].kind != kindIndex) {
          m_a.m_exact = false;
          continue;
        }
        m_a.m_manufacturers[manufPos] = Range(manufacturers[manufIndex].span);
        m_names.push_back(NamePlace{&manuf.m_Name, "manufacturer", manufacturers[manufIndex].span});
        ++manufIndex;
      }
    }
    for (auto& entry : m_replay.Devices()) {
      DevicePlace& place = m_a.m_devices[entry.first];
      place.name = Range(entry.second.name);
      place.block = Range(entry.second.block);
      place.definitions.reserve(entry.second.definitions.size());
      for (const ByteSpan& span : entry.second.definitions) place.definitions.push_back(Range(span));
    }
    const CStringArray* names[] = {&DEVICE_ITEM::m_PackageList, &DEVICE_ITEM::m_AdapterList, &DEVICE_ITEM::m_ModulList};
    for (int i = 0; i < 3; ++i) {
      for (const ByteSpan& span : m_replay.ListEntries(i)) m_a.m_lists[i].entries.push_back(Range(span));
      m_a.m_listNames[i].reserve(static_cast<size_t>(names[i]->GetSize()));
      for (int n = 0; n < names[i]->GetSize(); ++n) {
        const CString& name = (*names[i])[n];
        m_a.m_listNames[i].emplace_back(static_cast<LPCTSTR>(name), static_cast<size_t>(name.GetLength()));
      }
    }
  }

  void TakeFindings(int layout) {
    std::vector<RawFinding>& raw = m_replay.Findings();
    if (!m_replay.VersionFound()) {
      size_t end = 0;
      while (end < m_a.m_bytes.size() && !IsLineEnd(m_a.m_bytes[end])) ++end;
      raw.push_back(RawFinding{"no-version", ByteSpan{0, end},
                               "no version line \"DEF_LAYOUT_VERSION = N\" that the reader takes: it passes over "
                               "every line of the file",
                               {}});
    }
    if (layout == 2 && m_replay.VersionFound()) {
      raw.push_back(RawFinding{"layout2-writer", m_replay.VersionSpan(),
                               "a write of this layout 2 file puts out definition lines with one value, which the "
                               "layout 2 reader refuses: the written file loses every definition",
                               {}});
    }
    for (const auto& entry : m_replay.Devices()) {
      DEVICE_ITEM& device = const_cast<DEVICE_ITEM&>(*entry.first);
      m_names.push_back(NamePlace{&device.m_DeviceName, "device", entry.second.name});
      if (layout == 7 && device.m_DeviceFlags != 0) {
        raw.push_back(RawFinding{"layout7-writer", entry.second.name,
                                 "the mark in front of the device name is not written back", {}});
      }
    }
    CheckNames(m_names, raw);
    CheckDefinitions(m_a.m_bytes, m_replay.DefinitionOrder(), layout, m_a.m_map, raw);

    std::stable_sort(raw.begin(), raw.end(), [](const RawFinding& x, const RawFinding& y) {
      return x.span.begin != y.span.begin ? x.span.begin < y.span.begin : x.span.end < y.span.end;
    });
    for (RawFinding& finding : raw) {
      if (!m_a.m_findings.empty()) {
        Finding& last = m_a.m_findings.back();
        if (last.range.begin == finding.span.begin && last.range.end == finding.span.end &&
            last.message == finding.message && std::strcmp(last.kind->id, finding.kind) == 0) {
          ++last.count;
          continue;
        }
      }
      Finding out;
      out.kind = FindFindingKind(finding.kind);
      out.severity = out.kind->severity;
      out.range = Range(finding.span);
      out.message = std::move(finding.message);
      for (RelatedSpan& related : finding.related) {
        out.related.push_back(RelatedPlace{Range(related.span), std::move(related.message), related.cause});
      }
      m_a.m_findings.push_back(std::move(out));
    }
  }

 private:
  TextRange Range(ByteSpan span) const { return m_a.m_map.RangeOf(span.begin, span.end); }

  Analysis& m_a;
  ReadReplay& m_replay;
  std::vector<NamePlace> m_names;
};

Analysis::Analysis() = default;
Analysis::~Analysis() = default;

std::unique_ptr<Analysis> Analysis::ReadFile(const std::string& path, const AnalysisOptions& options) {
  std::unique_ptr<Analysis> analysis(new Analysis());
  analysis->m_path = path;
  if (!ReadBytes(path, analysis->m_bytes, analysis->m_error)) return analysis;
  // A pipe (a process substitution, /dev/stdin) gives its bytes once: the
  // library reads them from a file of their own.
  struct stat info;
  if (::stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode)) {
    return ReadText(path, std::move(analysis->m_bytes), options);
  }
  analysis->ReadThrough(path, options);
  return analysis;
}

std::unique_ptr<Analysis> Analysis::ReadText(const std::string& name, std::string bytes,
                                             const AnalysisOptions& options) {
  std::unique_ptr<Analysis> analysis(new Analysis());
  analysis->m_path = name;
  analysis->m_bytes = std::move(bytes);
  // The library reads files by their path: the text goes to a file of its own.
  const char* dir = std::getenv("TMPDIR");
  std::string temp = std::string(dir != nullptr && *dir != '\0' ? dir : "/tmp") + "/devdef-text-XXXXXX";
  const int fd = ::mkstemp(&temp[0]);
  if (fd < 0) {
    analysis->m_error = "cannot make a temporary file for '" + name + "': " + std::strerror(errno);
    return analysis;
  }
  const std::string& text = analysis->m_bytes;
  size_t written = 0;
  while (written < text.size()) {
    const ssize_t got = ::write(fd, text.data() + written, text.size() - written);
    if (got <= 0) break;
    written += static_cast<size_t>(got);
  }
  ::close(fd);
  if (written == text.size()) {
    analysis->ReadThrough(temp, options);
  } else {
    analysis->m_error = "cannot write a temporary file for '" + name + "': " + std::strerror(errno);
  }
  std::remove(temp.c_str());
  return analysis;
}

namespace {

// The library's message boxes during a read: the analysis says what they
// say in its own words, so the boxes themselves are not shown.
int SilentBox(const char*, const char*, unsigned int) { return IDOK; }

bool LooksBinary(const std::string& bytes) {
  const size_t length = std::min<size_t>(bytes.size(), 4096);
  size_t control = 0;
  for (size_t i = 0; i < length; ++i) {
    const unsigned char c = static_cast<unsigned char>(bytes[i]);
    if (c == 0) return true;
    if (c < 0x20 && !DevdefIsSpace(c)) ++control;
  }
  return control * 10 > length;
}

}  // namespace

void Analysis::ReadThrough(const std::string& libraryPath, const AnalysisOptions& options) {
  m_map = SourceMap(m_bytes);
  const int declared = DeclaredLayout(m_bytes);
  m_layout = options.layout != 0 ? options.layout : declared;
  const int controllerLayout = m_layout == 2 || m_layout == 7 ? m_layout : 1;

  ReadReplay replay(m_bytes, m_map, controllerLayout);
  const int checkIds = options.checkIds ? 1 : 0;
  if (controllerLayout == 2) {
    m_ctrl.reset(new ObservingCtrl<KCDeviceDefCtrlV2>(replay, CString(options.pathPrefix.c_str()), options.generation, checkIds));
  } else if (controllerLayout == 7) {
    m_ctrl.reset(new ObservingCtrl<KCDeviceDefCtrlV3>(replay, CString(options.pathPrefix.c_str()), options.generation, checkIds,
                                                      static_cast<cKvr5CfgContent*>(nullptr)));
  } else {
    m_ctrl.reset(new ObservingCtrl<KCDeviceDefCtrl>(replay, CString(options.pathPrefix.c_str()), options.generation, checkIds));
  }
  // The name lists belong to the whole process: this read starts them anew.
  m_ctrl->RemoveDefLists();
  const AFX_MESSAGEBOX_HANDLER shown = AfxSetMessageBoxHandler(&SilentBox);
  m_read = m_ctrl->ReadDefFile(libraryPath.c_str(), false) != 0;
  AfxSetMessageBoxHandler(shown);
  const std::string quoted = "'" + m_path + "'";
  if (!m_read) {
    if (declared != -1 && options.layout != 0 && declared != options.layout) {
      m_error = quoted + " declares layout " + std::to_string(declared) + ", but --layout " +
                std::to_string(options.layout) + " reads only layout " + std::to_string(options.layout) +
                " files: leave --layout out";
    } else if (declared != -1 && declared != controllerLayout) {
      m_error = quoted + " declares layout " + std::to_string(declared) +
                ", which devdef does not read (it reads layouts 1, 2 and 7" +
                (declared == 3 ? "; layout 3 is what devdef convert writes)" : ")");
    } else {
      m_error = "cannot read " + quoted;
    }
    return;
  }
  replay.Finish();
  m_exact = replay.Consistent();
  AnalysisBuilder builder(*this, replay);
  builder.TakePlaces();
  builder.TakeFindings(controllerLayout);
  if (m_hasVersion) return;
  if (m_bytes.empty()) {
    m_error = quoted + " is empty: a definition file opens with a line \"DEF_LAYOUT_VERSION = N\"";
  } else if (LooksBinary(m_bytes)) {
    m_error = quoted + " is not a definition file: it holds binary data and no line \"DEF_LAYOUT_VERSION = N\"";
  } else {
    m_error = quoted + " is not a definition file: no line opens with \"DEF_LAYOUT_VERSION = N\"";
    for (const Finding& finding : m_findings) {
      if (std::strcmp(finding.kind->id, "version") != 0) continue;
      m_error += " (line " + std::to_string(finding.range.start.line) + ": " + finding.message + ")";
      break;
    }
  }
}

const TextRange* Analysis::KindPlace(POSITION kind) const {
  auto found = m_kinds.find(kind);
  return found != m_kinds.end() ? &found->second : nullptr;
}

const TextRange* Analysis::ManufacturerPlace(POSITION manufacturer) const {
  auto found = m_manufacturers.find(manufacturer);
  return found != m_manufacturers.end() ? &found->second : nullptr;
}

const DevicePlace* Analysis::PlaceOf(const DEVICE_ITEM& device) const {
  auto found = m_devices.find(&device);
  return found != m_devices.end() ? &found->second : nullptr;
}

const TextRange* Analysis::DefinitionPlace(const DEVICE_ITEM& device, int index) const {
  const DevicePlace* place = PlaceOf(device);
  if (place == nullptr || index < 0 || static_cast<size_t>(index) >= place->definitions.size()) return nullptr;
  return &place->definitions[static_cast<size_t>(index)];
}

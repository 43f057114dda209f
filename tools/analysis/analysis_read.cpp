// Reading a file into an analysis: the library reads it with the
// controller of its layout, watched by the recorder, and what the read
// made is checked.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tools/analysis/analysis.h"
#include "tools/analysis/analysis_ctrl.h"

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

// Whether the file could be opened for reading, with the reason if not: the
// library says only that it could not read it.
bool CanOpen(const std::string& path, std::string& error) {
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) {
    error = "cannot open '" + path + "': " + std::strerror(errno);
    return false;
  }
  std::fclose(file);
  return true;
}

// The library's message boxes during a read: the analysis says what they
// say in its own words, so the boxes themselves are not shown.
int SilentBox(const char*, const char*, unsigned int) { return IDOK; }

bool LooksBinary(std::string_view bytes) {
  const size_t length = std::min<size_t>(bytes.size(), 4096);
  size_t control = 0;
  for (size_t i = 0; i < length; ++i) {
    const unsigned char c = static_cast<unsigned char>(bytes[i]);
    if (c == 0) return true;
    if (c < 0x20 && !DevdefIsSpace(c)) ++control;
  }
  return control * 10 > length;
}

bool Readable(int layout) { return layout == 1 || layout == 2 || layout == 7; }

}  // namespace

Analysis::Analysis() = default;
Analysis::~Analysis() = default;

std::unique_ptr<Analysis> Analysis::ReadFile(const std::string& path, const AnalysisOptions& options) {
  std::unique_ptr<Analysis> analysis(new Analysis());
  analysis->m_path = path;
  // A pipe (a process substitution, /dev/stdin) gives its bytes once: the
  // library reads them from a file of their own.
  struct stat info;
  if (::stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode) && !S_ISDIR(info.st_mode)) {
    std::string bytes;
    if (!ReadBytes(path, bytes, analysis->m_error)) return analysis;
    return ReadText(path, std::move(bytes), options);
  }
  if (!CanOpen(path, analysis->m_error)) return analysis;
  if (S_ISDIR(info.st_mode)) {
    analysis->m_error = "cannot read '" + path + "': " + std::strerror(EISDIR);
    return analysis;
  }
  if (info.st_size > static_cast<off_t>(INT_MAX) - 1) {
    analysis->m_error = "cannot read '" + path + "': files of 2 GiB and more are not read";
    return analysis;
  }
  analysis->ReadThrough(path, options);
  return analysis;
}

std::unique_ptr<Analysis> Analysis::ReadText(const std::string& name, std::string bytes,
                                             const AnalysisOptions& options) {
  std::unique_ptr<Analysis> analysis(new Analysis());
  analysis->m_path = name;
  analysis->m_text = std::move(bytes);
  // The library reads files by their path: the text goes to a file of its own.
  const char* dir = std::getenv("TMPDIR");
  std::string temp = std::string(dir != nullptr && *dir != '\0' ? dir : "/tmp") + "/devdef-text-XXXXXX";
  const int fd = ::mkstemp(&temp[0]);
  if (fd < 0) {
    analysis->m_error = "cannot make a temporary file for '" + name + "': " + std::strerror(errno);
    return analysis;
  }
  const std::string& text = analysis->m_text;
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
  // The text is kept as it was given; the reader's copy goes.
  analysis->m_records.bytes.reset();
  return analysis;
}

void Analysis::ReadWith(const std::string& libraryPath, const AnalysisOptions& options, int layout) {
  m_records = ReadRecords();
  m_map.reset();
  m_ctrl.reset();  // its destruction empties the name lists
  m_ctrl = AnalysisCtrl::Make(layout, options);
  // The name lists belong to the whole process: this read starts them anew.
  m_ctrl->Ctrl().RemoveDefLists();
  ReadRecorder recorder(m_records, layout);
  recorder.ReportTo(options.progress);
  const AFX_MESSAGEBOX_HANDLER shown = AfxSetMessageBoxHandler(&SilentBox);
  {
    DevdefReadObserverScope watching(&recorder);
    m_read = m_ctrl->Ctrl().ReadDefFile(libraryPath.c_str(), false) != 0;
  }
  AfxSetMessageBoxHandler(shown);
}

void Analysis::ReadThrough(const std::string& libraryPath, const AnalysisOptions& options) {
  // The controller of the layout asked for, else of layout 7; when the
  // version line the reader took names another layout it reads, the file
  // is read again with that one.
  const int first = options.layout != 0 ? options.layout : 7;
  ReadWith(libraryPath, options, first);
  const int declared = m_records.versionTaken ? m_records.versionLayout : -1;
  if (!m_read && options.layout == 0 && declared != first && Readable(declared)) {
    ReadWith(libraryPath, options, declared);
  }
  m_layout = options.layout != 0 ? options.layout : declared;
  // A version line that the reader does not see for a byte order mark or
  // white space in front of it: the file is read as the layout that line
  // names (the reader passes over every line all the same) and the finding
  // says why.
  std::uint32_t keyword = 0;
  const bool hidden =
      !m_records.versionTaken && LineLooks(Bytes(), first).HiddenVersionLine(&keyword) != kNoRecord;
  if (hidden && options.layout == 0) {
    const std::string_view bytes = Bytes();
    const size_t equals = bytes.substr(0, LineLooks(bytes, first).LineEnd(keyword)).find('=', keyword);
    const int named = equals != std::string_view::npos
                          ? std::atoi(std::string(bytes.substr(equals + 1, 12)).c_str())
                          : -1;
    m_layout = Readable(named) ? named : first;
    if (m_layout != first) ReadWith(libraryPath, options, m_layout);
  }
  const std::string quoted = "'" + m_path + "'";
  if (!m_read) {
    if (declared != -1 && options.layout != 0 && declared != options.layout) {
      m_error = quoted + " declares layout " + std::to_string(declared) + ", but --layout " +
                std::to_string(options.layout) + " reads only layout " + std::to_string(options.layout) +
                " files: leave --layout out";
    } else if (declared != -1 && !Readable(declared)) {
      m_error = quoted + " declares layout " + std::to_string(declared) +
                ", which devdef does not read (it reads layouts 1, 2 and 7" +
                (declared == 3 ? "; layout 3 is what devdef convert writes)" : ")");
    } else {
      m_error = "cannot read " + quoted;
    }
    return;
  }
  const CStringArray* names[] = {&DEVICE_ITEM::m_PackageList, &DEVICE_ITEM::m_AdapterList, &DEVICE_ITEM::m_ModulList};
  for (int i = 0; i < 3; ++i) {
    m_listNames[i].clear();
    m_listNames[i].reserve(static_cast<size_t>(names[i]->GetSize()));
    for (int n = 0; n < names[i]->GetSize(); ++n) {
      const CString& name = (*names[i])[n];
      m_listNames[i].emplace_back(static_cast<LPCTSTR>(name), static_cast<size_t>(name.GetLength()));
    }
  }
  CheckCatalogue();
  m_records.findings.Finish();
  if (m_records.versionTaken || hidden) return;
  const std::string_view bytes = Bytes();
  if (bytes.empty()) {
    m_error = quoted + " is empty: a definition file opens with a line \"DEF_LAYOUT_VERSION = N\"";
  } else if (LooksBinary(bytes)) {
    m_error = quoted + " is not a definition file: it holds binary data and no line \"DEF_LAYOUT_VERSION = N\"";
  } else {
    m_error = quoted + " is not a definition file: no line opens with \"DEF_LAYOUT_VERSION = N\"";
    for (const Finding& finding : m_records.findings.List()) {
      if (finding.kind != FindingKind::kVersion) continue;
      m_error += " (line " + std::to_string(LineOf(finding.span.begin)) + ": " + MessageOf(finding) + ")";
      break;
    }
  }
}


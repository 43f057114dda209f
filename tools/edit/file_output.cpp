#include "tools/edit/file_output.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <vector>

#include "tools/text/output_status.h"

namespace {

std::string DirectoryOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

// Files are created with the usual permissions, not mkstemp's 0600.
void SetDefaultMode(int fd) {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  ::fchmod(fd, 0666 & ~mask);
}

// A temporary file beside path; empty on failure, with errno set.
std::string MakeTempFile(const std::string& path) {
  std::string pattern = DirectoryOf(path) + "/.devdef-tmp-XXXXXX";
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');
  const int fd = ::mkstemp(name.data());
  if (fd < 0) return std::string();
  SetDefaultMode(fd);
  ::close(fd);
  return name.data();
}

void ReportException(CException* e) {
  char text[1024];
  if (e->GetErrorMessage(text, sizeof text)) std::fprintf(stderr, "devdef: %s\n", text);
  e->Delete();
}

bool CommitTemp(const std::string& temp, const std::string& target) {
  if (::rename(temp.c_str(), target.c_str()) == 0) return true;
  std::fprintf(stderr, "devdef: cannot create '%s': %s\n", target.c_str(), std::strerror(errno));
  std::remove(temp.c_str());
  return false;
}

// Counts the device rows and adapter rows of an export file.
bool CountExportRows(const std::string& path, int* devices, int* adapters) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::string line;
  *devices = *adapters = 0;
  bool banner = true;
  while (std::getline(in, line)) {
    if (banner) {
      banner = false;
      continue;
    }
    if (line.compare(0, 2, "\t\t") == 0) {
      ++*adapters;
    } else if (!line.empty()) {
      ++*devices;
    }
  }
  return !banner;
}

}  // namespace

// Writes the catalogue (or its conversion) into the file at path through an
// archive. The library's result, or -1 after a failure it reported.
int WriteThroughLibrary(KCDeviceDefCtrl& ctrl, DefOutput what, const std::string& path) {
  try {
    CFile file(path.c_str(), CFile::modeCreate | CFile::modeWrite);
    CArchive ar(&file, CArchive::store);
    const int result = what == DefOutput::kConvert ? ctrl.ConvertDefFileToVersion3(ar) : ctrl.WriteDefFile(ar);
    ar.Close();
    file.Close();
    return result;
  } catch (CException* e) {
    ReportException(e);
    return -1;
  }
}

void ReportFailedWrite(DefOutput what) {
  std::fprintf(stderr, "devdef: %s\n",
               what == DefOutput::kConvert
                   ? "the conversion stopped: a definition's text does not open with seven numbers"
                   : "the catalogue could not be written");
}

namespace {

// Copies the file at from to the open stream to, named toName in messages;
// false with a message on failure.
bool CopyTo(const std::string& from, std::FILE* to, const std::string& toName) {
  std::FILE* in = std::fopen(from.c_str(), "rb");
  if (in == nullptr) {
    std::fprintf(stderr, "devdef: cannot read back '%s': %s\n", from.c_str(), std::strerror(errno));
    return false;
  }
  char block[65536];
  size_t got = 0;
  bool written = true;
  while (written && (got = std::fread(block, 1, sizeof block, in)) > 0) written = std::fwrite(block, 1, got, to) == got;
  const bool read = std::ferror(in) == 0;
  std::fclose(in);
  if (!read) {
    std::fprintf(stderr, "devdef: cannot read back '%s'\n", from.c_str());
    return false;
  }
  return OutputReached(to, toName);
}

std::string TempDirectory() {
  const char* dir = std::getenv("TMPDIR");
  return dir != nullptr && *dir != '\0' ? dir : "/tmp";
}

}  // namespace

WriteOutcome WriteDefinitionFile(KCDeviceDefCtrl& ctrl, DefOutput what, const std::string& requestedPath,
                                 const std::function<bool(const std::string&)>& verify) {
  // Standard output, a device or a pipe cannot take a file renamed into
  // place: the bytes are written and checked in a temporary file first, then
  // copied there.
  const bool toStdout = requestedPath == "-";
  std::string outPath = requestedPath;
  struct stat info;
  if (!toStdout && ::lstat(outPath.c_str(), &info) == 0 && S_ISLNK(info.st_mode)) {
    // A symbolic link is followed, so that the file it names is replaced and
    // the link stays.
    char* real = ::realpath(outPath.c_str(), nullptr);
    if (real != nullptr) {
      outPath = real;
      std::free(real);
    }
  }
  const bool special = toStdout || (::stat(outPath.c_str(), &info) == 0 && !S_ISREG(info.st_mode));
  if (!toStdout && special && S_ISDIR(info.st_mode)) {
    std::fprintf(stderr, "devdef: '%s' is a directory\n", outPath.c_str());
    return WriteOutcome::kFailed;
  }
  const std::string temp = MakeTempFile(special ? TempDirectory() + "/out" : outPath);
  if (temp.empty()) {
    std::fprintf(stderr, "devdef: cannot write into the directory of '%s': %s\n",
                 special ? TempDirectory().c_str() : outPath.c_str(), std::strerror(errno));
    return WriteOutcome::kFailed;
  }
  const int result = WriteThroughLibrary(ctrl, what, temp);
  if (result != 1) {
    if (result == 0) ReportFailedWrite(what);
    std::remove(temp.c_str());
    return WriteOutcome::kFailed;
  }
  if (verify && !verify(temp)) {
    std::remove(temp.c_str());
    return WriteOutcome::kRefused;
  }
  if (!special) return CommitTemp(temp, outPath) ? WriteOutcome::kWritten : WriteOutcome::kFailed;
  bool ok = false;
  if (toStdout) {
    ok = CopyTo(temp, stdout, "standard output");
  } else {
    std::FILE* target = std::fopen(outPath.c_str(), "wb");
    if (target == nullptr) {
      std::fprintf(stderr, "devdef: cannot write '%s': %s\n", outPath.c_str(), std::strerror(errno));
    } else {
      ok = CopyTo(temp, target, "'" + outPath + "'");
      if (std::fclose(target) != 0 && ok) {
        std::fprintf(stderr, "devdef: cannot write '%s': %s\n", outPath.c_str(), std::strerror(errno));
        ok = false;
      }
    }
  }
  std::remove(temp.c_str());
  return ok ? WriteOutcome::kWritten : WriteOutcome::kFailed;
}

std::string MakeExportDirectory(const std::string& dir) {
  std::string pattern = dir + "/.devdef-export-XXXXXX";
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');
  if (::mkdtemp(name.data()) == nullptr) {
    std::fprintf(stderr, "devdef: cannot write into '%s': %s\n", dir.c_str(), std::strerror(errno));
    return std::string();
  }
  return name.data();
}

bool ExportDeviceList(const Analysis& analysis, KCDeviceDefCtrlV3& ctrl, const std::string& exportDir,
                      const std::string& dir) {
  const std::string tempFile = exportDir + "/k4devicelist.txt";
  ctrl.WriteK4DeviceList();
  // The library swallows failures of the export, so the file is checked:
  // one row for each device and for each adapter of generation 4.
  int devices = 0;
  int adapters = 0;
  const int expectedDevices = static_cast<int>(analysis.Devices().size());
  int expectedAdapters = 0;
  for (const DeviceRecord& device : analysis.Devices()) {
    for (int i = 0; i < device.device->m_DefArray.GetSize(); ++i) {
      const DEVICE_KVRXDEF_ITEM& def = device.device->m_DefArray[i];
      if (def.m_KvrType == 4) expectedAdapters += def.m_AdapterIds.GetSize();
    }
  }
  bool ok = CountExportRows(tempFile, &devices, &adapters) && devices == expectedDevices && adapters == expectedAdapters;
  if (!ok) std::fprintf(stderr, "devdef: the device list could not be written completely into '%s'\n", dir.c_str());
  if (ok) ok = CommitTemp(tempFile, dir + "/k4devicelist.txt");
  std::remove(tempFile.c_str());
  return ok;
}

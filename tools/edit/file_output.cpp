#include "tools/edit/file_output.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "tools/edit/temp_path.h"
#include "tools/text/output_status.h"

namespace {

void SayOnStandardError(const std::string& message, int) { std::fprintf(stderr, "devdef: %s\n", message.c_str()); }

WriteProblemSink g_sink = &SayOnStandardError;

// Says a problem of a write, formatted as printf does, with the errno that
// stood when it was found.
__attribute__((format(printf, 1, 2))) void Problem(const char* format, ...) {
  const int error = errno;
  char text[2048];
  va_list args;
  va_start(args, format);
  std::vsnprintf(text, sizeof text, format, args);
  va_end(args);
  g_sink(text, error);
  errno = error;
}

std::string DirectoryOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

// A file that replaces another takes its mode, and its owner and group as
// far as this process may give them (root may, others keep their own
// group when it is the file's); a new file gets the usual permissions,
// not those of a temporary file.
void SetModeOf(const std::string& temp, const struct stat* replaced) {
  if (replaced == nullptr) {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    ::chmod(temp.c_str(), 0666 & ~mask);
    return;
  }
  // Else at least the group, where it is one of ours; else the file keeps
  // this process's owner and group.
  if (::chown(temp.c_str(), replaced->st_uid, replaced->st_gid) != 0 &&
      ::chown(temp.c_str(), static_cast<uid_t>(-1), replaced->st_gid) != 0) {
  }
  // After the owner, which clears the set-user-ID and set-group-ID bits.
  ::chmod(temp.c_str(), replaced->st_mode & 07777);
}

// A file that may not be written is not replaced, as other tools leave
// it: one the process may not write to, and one that no one may write to
// (root may write to any, but a file made read-only is meant to stay).
bool RefuseReadOnly(const std::string& path, const struct stat& info) {
  if (::access(path.c_str(), W_OK) != 0) {
    Problem("cannot write '%s': %s; nothing written", path.c_str(), std::strerror(errno));
    return true;
  }
  if ((info.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
    errno = EACCES;
    Problem("'%s' is read-only; nothing written", path.c_str());
    return true;
  }
  return false;
}

void ReportException(CException* e) {
  char text[1024];
  if (e->GetErrorMessage(text, sizeof text)) Problem("%s", text);
  e->Delete();
}

bool CommitTemp(TempPath& temp, const std::string& target) {
  if (temp.MoveTo(target)) return true;
  Problem("cannot create '%s': %s", target.c_str(), std::strerror(errno));
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

// Copies the file at from to the open stream to, named toName in messages;
// false with a message on failure.
bool CopyTo(const std::string& from, std::FILE* to, const std::string& toName) {
  std::FILE* in = std::fopen(from.c_str(), "rb");
  if (in == nullptr) {
    Problem("cannot read back '%s': %s", from.c_str(), std::strerror(errno));
    return false;
  }
  char block[65536];
  size_t got = 0;
  bool written = true;
  while (written && (got = std::fread(block, 1, sizeof block, in)) > 0) written = std::fwrite(block, 1, got, to) == got;
  const bool read = std::ferror(in) == 0;
  std::fclose(in);
  if (!read) {
    Problem("cannot read back '%s'", from.c_str());
    return false;
  }
  return OutputReached(to, toName);
}

std::string TempDirectory() {
  const char* dir = std::getenv("TMPDIR");
  return dir != nullptr && *dir != '\0' ? dir : "/tmp";
}

// Writes bytes into the file at path; 1, or -1 after a failure it reported.
int WriteBytesTo(const std::string& bytes, const std::string& path) {
  std::FILE* out = std::fopen(path.c_str(), "wb");
  if (out == nullptr) {
    Problem("cannot write '%s': %s", path.c_str(), std::strerror(errno));
    return -1;
  }
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), out) == bytes.size();
  if (std::fclose(out) != 0 || !written) {
    Problem("cannot write '%s': %s", path.c_str(), std::strerror(errno));
    return -1;
  }
  return 1;
}

// Has write put its output into the file at path; 1, or -1 after a
// failure it reported.
int WriteStreamTo(const std::function<void(std::FILE*)>& write, const std::string& path) {
  std::FILE* out = std::fopen(path.c_str(), "wb");
  if (out == nullptr) {
    Problem("cannot write '%s': %s", path.c_str(), std::strerror(errno));
    return -1;
  }
  write(out);
  // The errno of a failed write is still there when nothing failed since.
  const bool failed = std::fflush(out) != 0 || std::ferror(out) != 0;
  const int error = errno;
  const bool closed = std::fclose(out) == 0;
  if (failed || !closed) {
    if (failed) errno = error;
    Problem("cannot write '%s': %s", path.c_str(), std::strerror(errno));
    return -1;
  }
  return 1;
}

// The file at requestedPath ("-": standard output) made by write (into a
// temporary file, giving 1, 0 or -1 as WriteThroughLibrary) and verified.
WriteOutcome WriteVia(const std::string& requestedPath, const std::function<int(const std::string&)>& write,
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
  const bool exists = !toStdout && ::stat(outPath.c_str(), &info) == 0;
  const bool special = toStdout || (exists && !S_ISREG(info.st_mode));
  if (!toStdout && special && S_ISDIR(info.st_mode)) {
    errno = EISDIR;
    Problem("'%s' is a directory", outPath.c_str());
    return WriteOutcome::kFailed;
  }
  if (exists && !special && RefuseReadOnly(outPath, info)) return WriteOutcome::kFailed;
  TempPath temp;
  if (!temp.MakeFile(special ? TempDirectory() : DirectoryOf(outPath), ".devdef-tmp")) {
    Problem("cannot write into the directory of '%s': %s",
                 special ? TempDirectory().c_str() : outPath.c_str(), std::strerror(errno));
    return WriteOutcome::kFailed;
  }
  const int result = write(temp.Path());
  if (result != 1) return result == 0 ? WriteOutcome::kStopped : WriteOutcome::kFailed;
  if (verify && !verify(temp.Path())) return WriteOutcome::kRefused;
  if (!special) {
    SetModeOf(temp.Path(), exists ? &info : nullptr);
    return CommitTemp(temp, outPath) ? WriteOutcome::kWritten : WriteOutcome::kFailed;
  }
  bool ok = false;
  if (toStdout) {
    ok = CopyTo(temp.Path(), stdout, "standard output");
  } else {
    std::FILE* target = std::fopen(outPath.c_str(), "wb");
    if (target == nullptr) {
      Problem("cannot write '%s': %s", outPath.c_str(), std::strerror(errno));
    } else {
      ok = CopyTo(temp.Path(), target, "'" + outPath + "'");
      if (std::fclose(target) != 0 && ok) {
        Problem("cannot write '%s': %s", outPath.c_str(), std::strerror(errno));
        ok = false;
      }
    }
  }
  return ok ? WriteOutcome::kWritten : WriteOutcome::kFailed;
}

}  // namespace

WriteProblemSink SetWriteProblemSink(WriteProblemSink sink) {
  const WriteProblemSink previous = g_sink;
  g_sink = sink != nullptr ? sink : &SayOnStandardError;
  return previous;
}

WriteOutcome WriteDefinitionFile(KCDeviceDefCtrl& ctrl, DefOutput what, const std::string& outPath,
                                 const std::function<bool(const std::string&)>& verify) {
  return WriteVia(outPath, [&](const std::string& temp) { return WriteThroughLibrary(ctrl, what, temp); }, verify);
}

WriteOutcome WriteFileBytes(const std::string& bytes, const std::string& outPath) {
  return WriteVia(outPath, [&](const std::string& temp) { return WriteBytesTo(bytes, temp); }, nullptr);
}

WriteOutcome WriteFileStream(const std::function<void(std::FILE*)>& write, const std::string& outPath) {
  return WriteVia(outPath, [&](const std::string& temp) { return WriteStreamTo(write, temp); }, nullptr);
}

bool MakeExportDirectory(const std::string& dir, TempPath* exportDir) {
  if (exportDir->MakeDirectory(dir, ".devdef-export")) return true;
  Problem("cannot write into '%s': %s", dir.c_str(), std::strerror(errno));
  return false;
}

bool ExportDeviceList(const Analysis& analysis, KCDeviceDefCtrlV3& ctrl, const std::string& exportDir,
                      const std::string& dir) {
  const std::string target = dir + "/k4devicelist.txt";
  struct stat info;
  const bool exists = ::stat(target.c_str(), &info) == 0;
  if (exists && S_ISREG(info.st_mode) && RefuseReadOnly(target, info)) return false;
  TempPath tempFile;
  tempFile.Hold(exportDir + "/k4devicelist.txt");
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
  const bool complete = CountExportRows(tempFile.Path(), &devices, &adapters) && devices == expectedDevices &&
                        adapters == expectedAdapters;
  if (!complete) {
    Problem("the device list could not be written completely into '%s'", dir.c_str());
    return false;
  }
  SetModeOf(tempFile.Path(), exists && S_ISREG(info.st_mode) ? &info : nullptr);
  return CommitTemp(tempFile, target);
}

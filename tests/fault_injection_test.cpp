// Failing files under the writers, the conversion and the export, and files
// that no reader can make sense of.
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>

#include "devdef/devdef.h"
#include "tests/test_support.h"

namespace {

// A file that takes a number of bytes and then fails like a full disk; the
// bytes of the failing write that still fit are kept, as a disk would.
class FailingFile : public CMemFile {
 public:
  explicit FailingFile(size_t limit) : m_limit(limit) {}
  void Write(const void* lpBuf, UINT nCount) override {
    const size_t length = static_cast<size_t>(GetLength());
    if (length + nCount > m_limit) {
      CMemFile::Write(lpBuf, static_cast<UINT>(m_limit - length));
      throw new CFileException(CFileException::diskFull, 28, "full");
    }
    CMemFile::Write(lpBuf, nCount);
  }

 private:
  size_t m_limit;
};

bool IsFullDevice() {
  struct stat full;
  return ::stat("/dev/full", &full) == 0 && S_ISCHR(full.st_mode);
}

const char kLayout1[] =
    "DEF_LAYOUT_VERSION = 1\nHOUSING_LIST DIP8, PLCC32;\nADAPTER_LIST A_B_DIP8/ZIF;\nMODUL_LIST M0;\n"
    "Kind:\n:Maker\nDev\n{\nKVR5DEF: 1 0 0 0 0 : x\nKVR3DEF: 2 1 0 0 0 : hidden\n}\nNext\n{\n}\n";
const char kLayout2[] =
    "DEF_LAYOUT_VERSION = 2\nHOUSING_LIST DIP8;\nKind:\n:Maker\nDev\n{\n"
    "KVR5DEF: 1 0 0 1 2 3 0 : 1 2 3 4 5 6 7 text\nKVR4DEF: 2 0 0 1 2 3 0 : 1 2 3 4 5 6 7\n}\n";
const char kLayout7[] =
    "DEF_LAYOUT_VERSION = 7\nHOUSING_LIST { DIP8, PLCC32 }\nADAPTER_LIST { A_B_DIP8/ZIF }\nKind:\n:Maker\n"
    "Dev\n{\nKVR5DEF: 1 0 0 0 1 2 3 4 5 6 7 8 9 10 11 : x\nKVR4DEF: 2 1 0 0 1 2 3 4 5 6 7 8 9 10 11 : y\n}\n";

struct WriterCase {
  const char* name;
  std::function<std::unique_ptr<KCDeviceDefCtrl>()> make;
  const char* text;
  bool convert;
};

std::vector<WriterCase> WriterCases() {
  return {
      {"layout 1 writer", [] { return std::make_unique<KCDeviceDefCtrl>("", 5, 0); }, kLayout1, false},
      {"layout 2 writer", [] { return std::make_unique<KCDeviceDefCtrlV2>("", 5, 0); }, kLayout2, false},
      {"conversion", [] { return std::make_unique<KCDeviceDefCtrlV2>("", 5, 0); }, kLayout2, true},
      {"layout 7 writer", [] { return std::make_unique<KCDeviceDefCtrlV3>("", 5, 0, nullptr); }, kLayout7, false},
  };
}

// Runs the writer of c over file; true when a CFileException reached here.
bool ThrowsDiskFull(KCDeviceDefCtrl& ctrl, const WriterCase& c, CFile& file) {
  CArchive ar(&file, CArchive::store);
  try {
    if (c.convert) {
      ctrl.ConvertDefFileToVersion3(ar);
    } else {
      ctrl.WriteDefFile(ar);
    }
  } catch (CFileException* e) {
    EXPECT_EQ(e->m_cause, CFileException::diskFull) << c.name;
    e->Delete();
    return true;
  }
  return false;
}

// A layout 7 catalogue whose text is several blocks of 64 KB long, with the
// number of pieces its writer puts out.
std::string LongCatalogue(int* pPieces) {
  std::string text = "DEF_LAYOUT_VERSION = 7\nK:\n:M\n";
  const int devices = 2000;
  for (int d = 0; d < devices; ++d) {
    text += "D" + std::to_string(d) + "\n{\n";
    for (int i = 0; i < 2; ++i) {
      text += "KVR5DEF: " + std::to_string(2 * d + i + 1) + " 0 0 1 1 2 3 4 5 6 7 8 9 10 11 : text\n";
    }
    text += "}\n";
  }
  // The version and header lines, a kind, a manufacturer, then per device
  // its name line, its definitions and its closing line.
  *pPieces = 4 + 1 + 1 + devices * (1 + 2 + 1);
  return text;
}

// Writes ctrl's catalogue into a new plain file at path, in a child process
// whose files cannot grow beyond limit bytes. True when the write operation
// passed a CFileException out.
bool WriteWithSizeLimit(KCDeviceDefCtrl& ctrl, const char* path, rlim_t limit) {
  const pid_t child = ::fork();
  if (child == 0) {
    std::signal(SIGXFSZ, SIG_IGN);  // a write past the limit fails instead
    const rlimit size{limit, limit};
    int code = ::setrlimit(RLIMIT_FSIZE, &size) == 0 ? 2 : 3;
    try {
      CFile file(path, CFile::modeCreate | CFile::modeWrite);
      CArchive ar(&file, CArchive::store);
      ctrl.WriteDefFile(ar);
    } catch (CFileException* e) {
      e->Delete();
      code = code == 2 ? 0 : 3;
    }
    ::_exit(code);
  }
  int status = 0;
  return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

// The library's own plain file gets the pieces in blocks, a subclass of it
// every piece; either way a failure reaches the caller with the bytes in
// front of it in the file, whether it falls in the first block or a later
// one.
TEST(FaultInjection, PlainFilesGetBlocksOthersEveryPiece) {
  int pieces = 0;
  const std::string text = LongCatalogue(&pieces);
  KCDeviceDefCtrlV3 ctrl("", 5, 0, nullptr);
  ASSERT_EQ(ReadText(ctrl, text), 1);
  const std::string whole = Written(ctrl);
  ASSERT_GT(whole.size(), 3u * 65536);

  struct CountingFile : CFile {
    using CFile::CFile;
    void Write(const void* lpBuf, UINT nCount) override {
      ++writes;
      CFile::Write(lpBuf, nCount);
    }
    int writes = 0;
  };
  TempFile target("");
  {
    CountingFile file(target.Path(), CFile::modeCreate | CFile::modeWrite);
    CArchive ar(&file, CArchive::store);
    EXPECT_EQ(ctrl.WriteDefFile(ar), 1);
    EXPECT_EQ(file.writes, pieces);
  }
  {
    CFile file(target.Path(), CFile::modeCreate | CFile::modeWrite);
    CArchive ar(&file, CArchive::store);
    EXPECT_EQ(ctrl.WriteDefFile(ar), 1);
    // Written through before the operation returned, not at the close.
    EXPECT_EQ(CFile(target.Path(), CFile::modeRead).GetLength(), whole.size());
  }
  std::ifstream written(target.Path(), std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(written), {}), whole);

  for (size_t limit : {size_t{0}, size_t{100}, size_t{65536}, size_t{65537 + 4000}, whole.size() - 1}) {
    EXPECT_TRUE(WriteWithSizeLimit(ctrl, target.Path(), static_cast<rlim_t>(limit))) << "limit " << limit;
    std::ifstream cut(target.Path(), std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(cut), {}), whole.substr(0, limit)) << "limit " << limit;
  }
  EXPECT_FALSE(WriteWithSizeLimit(ctrl, target.Path(), static_cast<rlim_t>(whole.size())));
  EXPECT_EQ(Written(ctrl), whole);
  ctrl.RemoveDefLists();
}

// Whatever byte the file fails at, the exception reaches the caller, the
// file holds the bytes up to that point, and the catalogue is as it was.
TEST(FaultInjection, WritersPassEveryFailureToTheCaller) {
  for (const WriterCase& c : WriterCases()) {
    std::unique_ptr<KCDeviceDefCtrl> ctrl = c.make();
    ASSERT_EQ(ReadText(*ctrl, c.text), 1) << c.name;
    int result = 0;
    const std::string whole = Written(*ctrl, c.convert, &result);
    ASSERT_EQ(result, 1) << c.name;
    for (size_t limit = 0; limit < whole.size(); ++limit) {
      FailingFile file(limit);
      EXPECT_TRUE(ThrowsDiskFull(*ctrl, c, file)) << c.name << " failing at " << limit;
      EXPECT_EQ(Contents(file), whole.substr(0, limit)) << c.name;
    }
    EXPECT_EQ(Written(*ctrl, c.convert), whole) << c.name;
    ctrl->RemoveDefLists();
  }
}

TEST(FaultInjection, FullDevice) {
  if (!IsFullDevice()) GTEST_SKIP() << "no /dev/full on this machine";
  for (const WriterCase& c : WriterCases()) {
    std::unique_ptr<KCDeviceDefCtrl> ctrl = c.make();
    ASSERT_EQ(ReadText(*ctrl, c.text), 1) << c.name;
    const std::string whole = Written(*ctrl, c.convert);
    CFile file("/dev/full", CFile::modeCreate | CFile::modeWrite);
    EXPECT_TRUE(ThrowsDiskFull(*ctrl, c, file)) << c.name;
    EXPECT_EQ(Written(*ctrl, c.convert), whole) << c.name;
    ctrl->RemoveDefLists();
  }

  // The export swallows the failure: its file is a link to the full device.
  char dir[] = "/tmp/devdef-full-XXXXXX";
  ASSERT_NE(::mkdtemp(dir), nullptr);
  const std::string prefix = std::string(dir) + "/";
  ASSERT_EQ(::symlink("/dev/full", (prefix + "k4devicelist.txt").c_str()), 0);
  KCDeviceDefCtrlV3 ctrl(prefix.c_str(), 5, 0, nullptr);
  ASSERT_EQ(ReadText(ctrl, kLayout7), 1);
  const std::string whole = Written(ctrl);
  ctrl.WriteK4DeviceList();
  EXPECT_EQ(Written(ctrl), whole);
  EXPECT_TRUE(IsFullDevice());  // written through, never replaced
  ctrl.RemoveDefLists();
  std::remove((prefix + "k4devicelist.txt").c_str());
  ::rmdir(dir);
}

// Files that cannot be read, or hold nothing a reader takes: no crash and
// the documented result, with the catalogue left as it was.
TEST(FaultInjection, FilesNoReaderTakes) {
  MessageCapture boxes;
  TestCtrl ctrl("", 5, 0);

  // A socket opens for nobody, root included; without root, so does a file
  // without read permission.
  char dir[] = "/tmp/devdef-unreadable-XXXXXX";
  ASSERT_NE(::mkdtemp(dir), nullptr);
  const std::string socketPath = std::string(dir) + "/socket.def";
  const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_GE(fd, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, socketPath.c_str(), sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(ctrl.ReadDefFile(socketPath.c_str(), true), 0);
  ASSERT_EQ(boxes.Boxes().size(), 1u);
  EXPECT_NE(boxes.Boxes()[0].text.find("socket.def"), std::string::npos);
  ::close(fd);
  std::remove(socketPath.c_str());
  if (::geteuid() != 0) {
    TempFile locked("DEF_LAYOUT_VERSION = 1\nK:\n");
    ASSERT_EQ(::chmod(locked.Path(), 0), 0);
    EXPECT_EQ(ctrl.ReadDefFile(locked.Path(), false), 0);
  }
  ::rmdir(dir);
  EXPECT_EQ(ctrl.ReadDefFile("/tmp", false), 0);
  EXPECT_EQ(ctrl.getDeviceList().GetCount(), 0);

  // A file over 2 GiB (sparse: it takes no disk) is refused like an
  // unreadable one.
  {
    TempFile huge("");
    ASSERT_EQ(::truncate(huge.Path(), (2LL << 30) + 1), 0);
    EXPECT_EQ(ctrl.ReadDefFile(huge.Path(), false), 0);
  }

  EXPECT_EQ(ReadText(ctrl, ""), 1);
  EXPECT_EQ(ctrl.m_nFileLayout, -1);
  EXPECT_EQ(ReadText(ctrl, std::string(1 << 16, '\0')), 1);
  EXPECT_EQ(ctrl.m_nFileLayout, -1);

  // 100 MB on one line without a line end: the line is never complete, so
  // nothing is read from it.
  const std::string line = "DEF_LAYOUT_VERSION = 1 " + std::string(100u << 20, 'x');
  EXPECT_EQ(ReadText(ctrl, line), 1);
  EXPECT_EQ(ctrl.m_nFileLayout, -1);
  EXPECT_EQ(ctrl.getDeviceList().GetCount(), 0);
  EXPECT_EQ(boxes.Boxes().size(), 1u);
}

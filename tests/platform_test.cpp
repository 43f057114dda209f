// The class-library layer: the string, array, list, file, archive, message box
// and runtime behaviours the readers and writers rely on.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "devdef/devdef.h"
#include "tests/test_support.h"

namespace {

const unsigned char* U(const char* text) { return reinterpret_cast<const unsigned char*>(text); }

TEST(CStringTest, TrimAndReplace) {
  CString text(" \t\v\f\r\nword \x85\xA0 \t\r\n");
  text.TrimLeft();
  text.TrimRight();
  EXPECT_EQ(text, CString("word \x85\xA0"));  // 0x85 and 0xA0 are no white space, whatever the locale
  CString list("a, b;, ;");
  list.TrimRight(" \t,;");
  EXPECT_EQ(list, "a, b");

  CString three("   ");
  EXPECT_EQ(three.Replace("  ", " "), 1);  // one pass left to right, no overlaps
  EXPECT_EQ(three, "  ");
  CString blanks("a     b");
  EXPECT_EQ(blanks.Replace("  ", " "), 2);
  EXPECT_EQ(blanks, "a   b");
  EXPECT_EQ(blanks.Replace(' ', '_'), 3);
  EXPECT_EQ(blanks.Replace("", "x"), 0);
  EXPECT_EQ(blanks.Replace("_", "--"), 3);  // the replacement is not searched again
  EXPECT_EQ(blanks, "a------b");
}

TEST(CStringTest, CutsClampTheirIndexes) {
  const CString text("abcdef");
  EXPECT_EQ(text.Mid(2), "cdef");
  EXPECT_EQ(text.Mid(4, 10), "ef");
  EXPECT_EQ(text.Mid(-3, 2), "ab");
  EXPECT_EQ(text.Left(-1), "");
  EXPECT_EQ(text.Left(99), "abcdef");
  EXPECT_EQ(text.Find('c', 3), -1);
  EXPECT_EQ(text.Find("de"), 3);
  EXPECT_EQ(text.Find("de", 70), -1);
  EXPECT_EQ(text.Find('a', -3), 0);
  EXPECT_EQ(text.Find("ab", -3), 0);
  EXPECT_EQ(text.Find(nullptr), -1);
  EXPECT_EQ(text.Find('a', 6), -1);
  EXPECT_TRUE(text != CString("abc"));
  EXPECT_FALSE("abcdef" != text);
  CString same(text);
  EXPECT_EQ(same.Replace('a', 'a'), 0);
  EXPECT_EQ(same.Replace(nullptr, "x"), 0);
  EXPECT_EQ(same.Replace("zz", "x"), 0);
  EXPECT_EQ(same.Replace("cd", nullptr), 1);
  EXPECT_EQ(same, "abef");
  same = static_cast<LPCTSTR>(nullptr);
  EXPECT_TRUE(same.IsEmpty());
  CString words("xy");
  EXPECT_EQ(words.Insert(99, "ef"), 4);  // an index past the end appends
  EXPECT_EQ(words.Insert(-1, nullptr), 4);
  EXPECT_EQ(words.Insert(-1, "<"), 5);
  EXPECT_EQ(words, "<xyef");

  CString edit("abc");
  edit.Delete(0);
  EXPECT_EQ(edit, "bc");
  EXPECT_EQ(edit.Insert(edit.GetLength(), 'd'), 3);
  EXPECT_EQ(edit.Insert(99, 'e'), 4);
  EXPECT_EQ(edit.Insert(-4, 'a'), 5);
  EXPECT_EQ(edit, "abcde");
  EXPECT_EQ(edit.Delete(10, 2), 5);
  EXPECT_EQ(edit.Delete(3, 99), 3);
  EXPECT_EQ(edit.Delete(-2, 1), 2);
  EXPECT_EQ(edit, "bc");
}

TEST(CStringTest, AppendFormatCompare) {
  CString text;
  text += static_cast<const char*>(nullptr);
  text += 'a';
  text += "b";
  text += text;
  EXPECT_EQ(text, "abab");
  text.Format("%d:%X", -5, 255u);
  EXPECT_EQ(text, "-5:FF");
  text.Format("<%s>", static_cast<LPCTSTR>(text));  // formatting from its own text
  EXPECT_EQ(text, "<-5:FF>");
  text.Format("%s", std::string(1000, 'x').c_str());
  EXPECT_EQ(text.GetLength(), 1000);
  CString withNul("a", 1);
  withNul += '\0';
  withNul += 'b';
  EXPECT_EQ(withNul.GetLength(), 3);  // bytes of any value are kept
  EXPECT_EQ(CString("ABC").CompareNoCase("abc"), 0);
  EXPECT_NE(CString("\xC4").CompareNoCase("\xE4"), 0);
  EXPECT_GT(CString("\xE4").Compare("z"), 0);  // bytes compare as unsigned
  EXPECT_TRUE(CString("z") < CString("\xE4"));
  EXPECT_TRUE("x" == CString("x"));
  EXPECT_TRUE(CString("x") != "X");
  EXPECT_FALSE(CString("a\0b", 3) == CString("a\0c", 3));  // compared over the whole length
  EXPECT_TRUE(CString("ab") < CString("abc"));

  // Pieces of a string's own text, appended while its block moves and
  // assigned over it.
  CString own("0123456789");
  std::string model = "0123456789";
  for (int i = 0; i < 5; ++i) {
    own.Append(static_cast<LPCTSTR>(own) + 5, own.GetLength() - 5);
    model += model.substr(5);
  }
  EXPECT_EQ(std::string(own), model);
  own = static_cast<LPCTSTR>(own) + 3;
  EXPECT_EQ(std::string(own), model.substr(3));
  // Byte by byte across the room of a short block (32767) into a long one,
  // and back to a short copy.
  CString grown;
  std::string grownModel;
  for (int i = 0; i < 40000; ++i) {
    grown += static_cast<char>('a' + i % 26);
    grownModel += static_cast<char>('a' + i % 26);
    if (i == 32766 || i == 32767) {
      EXPECT_EQ(std::string(grown), grownModel);
    }
  }
  EXPECT_EQ(std::string(grown), grownModel);
  grown.Delete(0, 39990);
  EXPECT_EQ(std::string(grown), grownModel.substr(39990));
  EXPECT_EQ(std::string(CString(grown)), grownModel.substr(39990));
  CString exact('x', 32767);
  exact += 'y';
  EXPECT_EQ(exact.GetLength(), 32768);
  EXPECT_EQ(exact.Find('y'), 32767);
  own.Empty();
  EXPECT_STREQ(own, "");
  CString buffer;
  std::strcpy(buffer.GetBuffer(5), "hi");
  buffer.ReleaseBuffer();
  EXPECT_EQ(buffer.GetLength(), 2);
  CString none;
  none.ReleaseBuffer();
  EXPECT_STREQ(none.GetBuffer(0), "");
  EXPECT_TRUE(CString(CString()).IsEmpty());

  // Empty strings, white space only, a string assigned to itself.
  CString blank;
  EXPECT_EQ(blank.Compare(""), 0);
  EXPECT_EQ(blank.CompareNoCase(nullptr), 0);
  EXPECT_TRUE(blank.TrimLeft().TrimRight().IsEmpty());
  blank = " \t ";
  EXPECT_TRUE(blank.Trim().IsEmpty());
  EXPECT_EQ(CString('x', 0), "");
  EXPECT_EQ(CString("ab").Insert(1, ""), 2);
  CString self("self");
  self = *&self;
  EXPECT_EQ(self, "self");
  EXPECT_FALSE(CString("a") == CString("ab"));
  std::memcpy(self.GetBuffer(4), "full", 4);  // no zero byte in the buffer
  self.ReleaseBuffer();
  EXPECT_EQ(self, "full");
  self.AppendFormat("%s", std::string(300, 'y').c_str());
  EXPECT_EQ(self.GetLength(), 304);
}

TEST(Containers, ArraysGrowAndKeepTheirElements) {
  CStringArray names;
  for (int i = 0; i < 2000; ++i) names.SetAtGrow(names.GetSize(), std::to_string(i).c_str());
  for (int i = 0; i < 2000; i += 37) EXPECT_EQ(names[i], std::to_string(i).c_str());
  names.RemoveAt(1, 1997);
  ASSERT_EQ(names.GetSize(), 3);
  EXPECT_EQ(Names(names), (std::vector<std::string>{"0", "1998", "1999"}));
  names.RemoveAt(5);  // past the end: nothing happens
  names.RemoveAt(1);
  EXPECT_EQ(Names(names), (std::vector<std::string>{"0", "1999"}));
  names.SetSize(1);
  names.SetSize(3);
  EXPECT_EQ(Names(names), (std::vector<std::string>{"0", "", ""}));  // no stale text comes back
  names.SetSize(0);
  EXPECT_TRUE(names.IsEmpty());

  names.SetAtGrow(-1, "lost");  // a negative index stores nothing
  names.SetAtGrow(0, "a");
  names.SetAtGrow(0, CString("b"));  // an index in range overwrites
  names.RemoveAt(0, 0);
  names.RemoveAt(-1);
  names.SetSize(-4);
  EXPECT_TRUE(names.IsEmpty());

  CWordArray words;
  words.SetAtGrow(3, 70);  // grows with zeros in front
  words.SetAtGrow(words.GetSize(), 0xFFFF);
  EXPECT_EQ(Words(words), (std::vector<int>{0, 0, 0, 70, 0xFFFF}));
  // Short number lists live inside the array object; the elements survive
  // every move between there and the heap.
  words.RemoveAt(0, 3);
  words.FreeExtra();
  EXPECT_EQ(Words(words), (std::vector<int>{70, 0xFFFF}));
  CWordArray moved(std::move(words));
  EXPECT_TRUE(words.IsEmpty());
  EXPECT_EQ(words.GetData(), nullptr);
  for (int i = 0; i < 5; ++i) moved.Add(static_cast<WORD>(i));
  moved.SetSize(3);
  moved.FreeExtra();
  EXPECT_EQ(Words(moved), (std::vector<int>{70, 0xFFFF, 0}));
}

TEST(Containers, ListNodesNeverMove) {
  CList<CString, CString&> list(3);
  CString first("first");
  const POSITION head = list.AddTail(first);
  const CString* address = &list.GetAt(head);
  for (int i = 0; i < 1000; ++i) {
    CString item(std::to_string(i).c_str());
    list.AddTail(item);
  }
  CString front("front");
  list.AddHead(front);
  EXPECT_EQ(&list.GetAt(head), address);
  EXPECT_EQ(*address, "first");
  EXPECT_EQ(list.GetCount(), 1002);
  EXPECT_EQ(list.GetTail(), "999");
  list.RemoveTail();
  EXPECT_EQ(list.GetTail(), "998");

  POSITION pos = list.GetHeadPosition();
  EXPECT_EQ(list.GetNext(pos), "front");
  EXPECT_EQ(pos, head);
  EXPECT_EQ(list.GetNext(pos), "first");
  EXPECT_EQ(list.GetNext(pos), "0");
  int walked = 3;
  for (; pos != nullptr; list.GetNext(pos)) ++walked;
  EXPECT_EQ(walked, 1001);
  list.RemoveAt(head);  // from the middle: the neighbours close up
  pos = list.GetHeadPosition();
  EXPECT_EQ(list.GetNext(pos), "front");
  EXPECT_EQ(list.GetNext(pos), "0");
  list.RemoveAt(nullptr);
  EXPECT_EQ(list.GetCount(), 1000);

  list.RemoveAll();
  EXPECT_EQ(list.GetCount(), 0);
  EXPECT_EQ(list.GetHeadPosition(), nullptr);
  list.AddTail(first);
  list.RemoveTail();  // down to empty by removal, then used again
  EXPECT_EQ(list.GetHeadPosition(), nullptr);
  CString again("again");
  const POSITION only = list.AddHead(again);
  EXPECT_EQ(list.GetTailPosition(), only);
  EXPECT_EQ(list.GetTail(), "again");
}

// Runs body; true if it threw an E*, which is then freed.
template <class E, class Body>
bool Throws(Body body) {
  try {
    body();
  } catch (E* e) {
    e->Delete();
    return true;
  }
  return false;
}

// Opens path for reading; returns the cause of the failure, or -1.
int OpenFailure(const char* path, CString* pFileName) {
  try {
    CFile file(path, CFile::modeRead);
  } catch (CFileException* e) {
    const int cause = e->m_cause;
    *pFileName = e->m_strFileName;
    e->Delete();
    return cause;
  }
  return -1;
}

TEST(Files, ReadWriteAndFailures) {
  TempFile temp("");
  {
    CFile file(temp.Path(), CFile::modeCreate | CFile::modeWrite);
    file.Write("hello", 5);
    file.Write(" world", 6);
  }
  {
    CFile file(temp.Path(), CFile::modeRead);
    EXPECT_EQ(file.GetLength(), 11u);
    char buffer[16] = {};
    EXPECT_EQ(file.Read(buffer, sizeof buffer), 11u);
    EXPECT_STREQ(buffer, "hello world");
    EXPECT_EQ(file.Read(buffer, sizeof buffer), 0u);
  }
  CFile truncated(temp.Path(), CFile::modeCreate | CFile::modeWrite);
  EXPECT_EQ(truncated.GetLength(), 0u);

  CString name;
  EXPECT_EQ(OpenFailure("/nonexistent/devdef/x.def", &name), CFileException::fileNotFound);
  EXPECT_EQ(name, "/nonexistent/devdef/x.def");
  EXPECT_NE(OpenFailure("/tmp", &name), -1);  // a directory is no file to read
  EXPECT_EQ(name, "/tmp");

  CMemFile mem;
  mem.Write("hello world", 11);
  mem.Seek(-5, CFile::end);
  mem.Write("WORLD!", 6);  // overwrites, then extends
  EXPECT_EQ(mem.GetLength(), 12u);
  char buffer[16] = {};
  EXPECT_EQ(mem.Seek(6, CFile::begin), 6u);
  EXPECT_EQ(mem.Read(buffer, sizeof buffer), 6u);
  EXPECT_STREQ(buffer, "WORLD!");
  EXPECT_TRUE(Throws<CFileException>([&] { mem.Seek(-1, CFile::begin); }));
}

TEST(Files, ArchiveBuffersUntilFlush) {
  std::string big(10000, '\0');
  for (size_t i = 0; i < big.size(); ++i) big[i] = static_cast<char>(i % 251);
  CMemFile file;
  {
    CArchive ar(&file, CArchive::store);
    EXPECT_EQ(ar.GetFile(), &file);
    ar.Write("abc", 3);
    EXPECT_EQ(file.GetLength(), 0u);
    ar.Flush();
    EXPECT_EQ(file.GetLength(), 3u);
    ar.Write(big.data(), static_cast<UINT>(big.size()));
    EXPECT_GT(file.GetLength(), 3u);
    EXPECT_LT(file.GetLength(), 10003u);  // the tail still waits in the buffer
  }  // destruction flushes the rest
  ASSERT_EQ(file.GetLength(), 10003u);
  file.SeekToBegin();
  CArchive in(&file, CArchive::load);
  std::string back(10003, '\0');
  EXPECT_EQ(in.Read(&back[0], 10003), 10003u);
  EXPECT_EQ(back, "abc" + big);

  CArchive none(nullptr, CArchive::store);
  EXPECT_EQ(none.GetFile(), nullptr);
  EXPECT_TRUE(Throws<CArchiveException>([&] { none.Write("x", 1); }));

  // A file that refuses the bytes: Close reports it, destruction must not.
  TempFile temp("x");
  CFile readOnly(temp.Path(), CFile::modeRead);
  {
    CArchive lost(&readOnly, CArchive::store);
    lost.Write("abc", 3);
  }
  CArchive ar(&readOnly, CArchive::store);
  ar.Write("abc", 3);
  EXPECT_TRUE(Throws<CFileException>([&] { ar.Close(); }));
  EXPECT_EQ(ar.GetFile(), nullptr);
}

TEST(MessageBoxes, HandlerAndReports) {
  MessageCapture boxes;
  AfxMessageBox("text", MB_ICONEXCLAMATION);
  MessageBoxA(nullptr, "body", "caption", MB_ICONEXCLAMATION);
  try {
    CFile file("/nonexistent/devdef/report.def", CFile::modeRead);
  } catch (CFileException* e) {
    e->ReportError();
    e->Delete();
  }
  const AFX_MESSAGEBOX_HANDLER capture = AfxSetMessageBoxHandler(nullptr);  // back to the default
  const AFX_MESSAGEBOX_HANDLER fallback = AfxSetMessageBoxHandler(capture);
  EXPECT_NE(fallback, nullptr);
  EXPECT_NE(fallback, capture);
  ASSERT_EQ(boxes.Boxes().size(), 3u);
  EXPECT_EQ(boxes.Boxes()[0].text, "text");
  EXPECT_EQ(boxes.Boxes()[0].caption, "(null)");
  EXPECT_EQ(boxes.Boxes()[0].type, 0x30u);
  EXPECT_EQ(boxes.Boxes()[1].caption, "caption");
  EXPECT_EQ(boxes.Boxes()[1].text, "body");
  EXPECT_NE(boxes.Boxes()[2].text.find("/nonexistent/devdef/report.def"), std::string::npos);
}

// What the number readers make of text: the value, or "none".
std::string Decimal(const char* text) {
  int value = 0;
  return DevdefScanDecimal(text, &value) == 1 ? std::to_string(value) : "none";
}
std::string Hex(const char* text) {
  unsigned value = 0;
  return DevdefScanHex(text, &value) == 1 ? std::to_string(value) : "none";
}

TEST(Runtime, ComparisonsAndNumberReaders) {
  EXPECT_EQ(_mbsicmp(U("Ab"), U("aB")), 0);
  EXPECT_NE(_mbsicmp(U("\xC4"), U("\xE4")), 0);  // only ASCII letters fold
  EXPECT_LT(_mbscmp(U("A"), U("a")), 0);
  EXPECT_GT(_mbscmp(U("\x80"), U("a")), 0);

  EXPECT_EQ(Decimal(" \t\n-12abc"), "-12");
  EXPECT_EQ(Decimal("12abc"), "12");
  EXPECT_EQ(Decimal("4294967297"), "1");  // wraps modulo 2^32
  EXPECT_EQ(Decimal("4294967295"), "-1");
  for (const char* bad : {"-", "", " ", "+-5", "- 5", "abc"}) EXPECT_EQ(Decimal(bad), "none") << bad;
  int value = 7;
  EXPECT_EQ(DevdefScanDecimal("-", &value), 0);
  EXPECT_EQ(value, 7);  // nothing stored on failure

  EXPECT_EQ(Hex("1F"), "31");
  EXPECT_EQ(Hex(" 0x1f,"), "31");
  EXPECT_EQ(Hex("-1"), "4294967295");
  EXPECT_EQ(Hex("123456789"), std::to_string(0x23456789u));
  EXPECT_EQ(Hex("g"), "none");
}

}  // namespace

TEST(Files, ClosedFilesSeeksAndOpenFailures) {
  CFile closed;
  EXPECT_TRUE(Throws<CFileException>([&] { closed.GetLength(); }));
  EXPECT_TRUE(Throws<CFileException>([&] { closed.GetPosition(); }));
  EXPECT_TRUE(Throws<CFileException>([&] { closed.Seek(0, CFile::begin); }));
  EXPECT_TRUE(Throws<CFileException>([&] { closed.Write("x", 1); }));
  char buffer[8] = {};
  EXPECT_TRUE(Throws<CFileException>([&] { closed.Read(buffer, 1); }));
  closed.Close();
  closed.Abort();

  CFileException error;
  EXPECT_FALSE(closed.Open("", CFile::modeRead, &error));
  EXPECT_EQ(error.m_cause, CFileException::fileNotFound);

  TempFile temp("abcdef");
  CFile both(temp.Path(), CFile::modeReadWrite | CFile::modeNoTruncate);
  EXPECT_EQ(both.Seek(-2, CFile::end), 4u);
  both.Write("XY", 2);
  EXPECT_EQ(both.GetPosition(), 6u);
  both.SeekToBegin();
  EXPECT_EQ(both.Seek(1, CFile::current), 1u);
  EXPECT_EQ(both.Read(buffer, 5), 5u);
  EXPECT_STREQ(buffer, "bcdXY");
  EXPECT_TRUE(Throws<CFileException>([&] { both.Seek(-10, CFile::begin); }));

  // A memory file has no name to open; its moves are its own.
  CMemFile mem;
  EXPECT_FALSE(mem.Open("x", CFile::modeRead, &error));
  EXPECT_EQ(error.m_cause, CFileException::genericException);
  mem.Seek(3, CFile::begin);
  mem.Write("z", 1);  // the gap fills with zero bytes
  EXPECT_EQ(mem.GetPosition(), 4u);
  EXPECT_EQ(Contents(mem), std::string("\0\0\0z", 4));
  mem.Seek(10, CFile::begin);
  EXPECT_EQ(mem.Read(buffer, 1), 0u);
  mem.Close();
  mem.Abort();
}

TEST(Files, ArchiveModesAndOwnBuffer) {
  CMemFile file;
  char own[4];
  {
    CArchive ar(&file, CArchive::store, sizeof own, own);
    ar.Write("abcdefghij", 10);  // passes through the four bytes in pieces
    EXPECT_TRUE(Throws<CArchiveException>([&] {
      char byte;
      ar.Read(&byte, 1);
    }));
  }
  EXPECT_EQ(Contents(file), "abcdefghij");
  file.SeekToBegin();
  CArchive in(&file, CArchive::load);
  EXPECT_TRUE(in.IsLoading());
  EXPECT_TRUE(Throws<CArchiveException>([&] { in.Write("x", 1); }));
  char back[16] = {};
  EXPECT_EQ(in.Read(back, 0), 0u);
  EXPECT_EQ(in.Read(back, sizeof back), 10u);
  EXPECT_STREQ(back, "abcdefghij");
  in.Flush();  // nothing to flush when loading

  // Abort drops what waits in the buffer; so does bNoFlushOnDelete.
  CMemFile dropped;
  {
    CArchive ar(&dropped, CArchive::store);
    ar.Write("abc", 3);
    ar.Abort();
    EXPECT_EQ(ar.GetFile(), nullptr);
  }
  {
    CArchive ar(&dropped, CArchive::store | CArchive::bNoFlushOnDelete);
    ar.Write("abc", 3);
  }
  EXPECT_EQ(dropped.GetLength(), 0u);
}

TEST(Exceptions, CausesAndTheirReports) {
  const struct {
    int osError;
    int cause;
  } mapping[] = {{0, CFileException::none},
                 {ENOENT, CFileException::fileNotFound},
                 {ENOTDIR, CFileException::badPath},
                 {EMFILE, CFileException::tooManyOpenFiles},
                 {EACCES, CFileException::accessDenied},
                 {EISDIR, CFileException::invalidFile},
                 {ENOSPC, CFileException::diskFull},
                 {ESPIPE, CFileException::badSeek},
                 {EIO, CFileException::hardIO},
                 {EBUSY, CFileException::sharingViolation},
                 {ENXIO, CFileException::genericException}};
  for (const auto& m : mapping) EXPECT_EQ(CFileException::OsErrorToException(m.osError), m.cause) << m.osError;

  // Each cause has its own words; the name of the file is in every report.
  std::set<std::string> texts;
  for (int cause = CFileException::none; cause <= CFileException::endOfFile + 1; ++cause) {
    CFileException e(cause, 0, "the.def");
    char text[256];
    UINT help = 7;
    ASSERT_TRUE(e.GetErrorMessage(text, sizeof text, &help));
    EXPECT_EQ(help, 0u);
    EXPECT_NE(std::string(text).find("'the.def'"), std::string::npos);
    texts.insert(text);
  }
  EXPECT_EQ(texts.size(), static_cast<size_t>(CFileException::endOfFile + 1));  // two are unspecified
  std::set<std::string> archiveTexts;
  for (int cause = CArchiveException::none; cause <= CArchiveException::badSchema + 1; ++cause) {
    char text[256];
    ASSERT_TRUE(CArchiveException(cause).GetErrorMessage(text, sizeof text));
    EXPECT_NE(std::string(text).find("(unnamed)"), std::string::npos);
    archiveTexts.insert(text);
  }
  EXPECT_EQ(archiveTexts.size(), static_cast<size_t>(CArchiveException::badSchema + 1));  // two are unspecified

  char small[8];
  EXPECT_TRUE(CFileException(CFileException::diskFull, ENOSPC).GetErrorMessage(small, sizeof small));
  EXPECT_EQ(std::strlen(small), sizeof small - 1);  // cut, and ended
  EXPECT_FALSE(CFileException().GetErrorMessage(small, 0));
  EXPECT_FALSE(CFileException().GetErrorMessage(nullptr, 8));

  // A report shows the text in a box; the default handler writes stderr.
  MessageCapture boxes;
  CArchiveException(CArchiveException::readOnly, "a.def").ReportError();
  ASSERT_EQ(boxes.Boxes().size(), 1u);
  EXPECT_NE(boxes.Boxes()[0].text.find("loading only"), std::string::npos);
  const AFX_MESSAGEBOX_HANDLER capture = AfxSetMessageBoxHandler(nullptr);
  testing::internal::CaptureStderr();
  EXPECT_EQ(MessageBoxA(nullptr, "body", "caption", 0), IDOK);
  EXPECT_EQ(AfxMessageBox("plain"), IDOK);
  MessageBoxA(nullptr, nullptr, "", 0);
  MessageBoxA(nullptr, nullptr, "caption", 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "caption: body\nplain\n\ncaption: \n");
  AfxSetMessageBoxHandler(capture);
}

TEST(Exceptions, BaseClassReport) {
  class Plain : public CException {};
  MessageCapture boxes;
  Plain plain;
  char text[64];
  UINT help = 3;
  ASSERT_TRUE(plain.GetErrorMessage(text, sizeof text, &help));
  EXPECT_EQ(help, 0u);
  plain.ReportError();
  ASSERT_EQ(boxes.Boxes().size(), 1u);
  EXPECT_EQ(boxes.Boxes()[0].text, "An unknown error occurred.");
  // An exception on the stack is not freed by Delete.
  class OnStack : public CException {
   public:
    OnStack() : CException(FALSE) {}
  } onStack;
  onStack.Delete();
}

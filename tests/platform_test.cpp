// The class-library layer: the string, array, list, file and archive
// behaviours the readers and writers rely on.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "devdef/devdef.h"
#include "tests/test_support.h"

namespace {

TEST(CStringTest, TrimReplaceAndCut) {
  CString text(" \t\v\f\r\nword \x85 \t\r\n");
  text.TrimLeft();
  text.TrimRight();
  EXPECT_EQ(text, "word \x85");  // 0x85 is no white space, whatever the locale
  CString list("a, b;, ;");
  list.TrimRight(" \t,;");
  EXPECT_EQ(list, "a, b");

  CString blanks("a     b");
  EXPECT_EQ(blanks.Replace("  ", " "), 2);  // one pass over non-overlapping pairs
  EXPECT_EQ(blanks, "a   b");
  EXPECT_EQ(blanks.Replace('_', ' '), 0);
  EXPECT_EQ(blanks.Replace(' ', '_'), 3);
  EXPECT_EQ(blanks.Replace("", "x"), 0);

  CString cut("abcdef");
  EXPECT_EQ(cut.Mid(2), "cdef");
  EXPECT_EQ(cut.Mid(4, 10), "ef");
  EXPECT_EQ(cut.Mid(-3, 2), "ab");
  EXPECT_EQ(cut.Mid(9), "");
  EXPECT_EQ(cut.Left(-1), "");
  EXPECT_EQ(cut.Left(99), "abcdef");
  EXPECT_EQ(cut.Find('c'), 2);
  EXPECT_EQ(cut.Find('c', 3), -1);
  EXPECT_EQ(cut.Find("de"), 3);
  EXPECT_EQ(cut.Find("de", 7), -1);
  cut.Delete(0);
  cut.Insert(cut.GetLength(), 'g');
  EXPECT_EQ(cut, "bcdefg");
  cut.Delete(10, 2);
  EXPECT_EQ(cut.GetLength(), 6);
}

TEST(CStringTest, AppendFormatCompare) {
  CString text;
  text += static_cast<const char*>(nullptr);
  text += 'a';
  text += CString("b");
  text += "c";
  EXPECT_EQ(text, "abc");
  text.Format("%d:%X", -5, 255u);
  EXPECT_EQ(text, "-5:FF");
  text.Format("%s", std::string(1000, 'x').c_str());
  EXPECT_EQ(text.GetLength(), 1000);
  CString withNul("a", 1);
  withNul += '\0';
  withNul += 'b';
  EXPECT_EQ(withNul.GetLength(), 3);  // bytes of any value are kept
  EXPECT_EQ(CString("ABC").CompareNoCase("abc"), 0);
  EXPECT_NE(CString("\xC4").CompareNoCase("\xE4"), 0);  // only ASCII letters fold
  EXPECT_TRUE(CString("a") < CString("b"));
  EXPECT_TRUE("x" == CString("x"));
}

TEST(Containers, ArraysGrowAndKeepTheirElements) {
  CStringArray names;
  for (int i = 0; i < 2000; ++i) names.SetAtGrow(names.GetSize(), std::to_string(i).c_str());
  ASSERT_EQ(names.GetSize(), 2000);
  EXPECT_EQ(names[0], "0");
  EXPECT_EQ(names[1999], "1999");
  names.RemoveAt(1, 1998);
  ASSERT_EQ(names.GetSize(), 2);
  EXPECT_EQ(names[1], "1999");
  names.SetSize(0);
  EXPECT_EQ(names.GetSize(), 0);
  CByteArray bytes;
  bytes.SetSize(5);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(bytes[i], 0);
  CWordArray words;
  words.SetAtGrow(3, 70);  // grows with zeros in front
  EXPECT_EQ(Words(words), (std::vector<int>{0, 0, 0, 70}));
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
  EXPECT_EQ(list.GetHead(), "front");
  EXPECT_EQ(list.GetTail(), "999");
  list.RemoveTail();
  EXPECT_EQ(list.GetTail(), "998");
  int walked = 0;
  for (POSITION pos = list.GetHeadPosition(); pos != nullptr; list.GetNext(pos)) ++walked;
  EXPECT_EQ(walked, 1001);
  list.RemoveAll();
  EXPECT_EQ(list.GetHeadPosition(), nullptr);
  CString again("again");
  list.AddTail(again);
  EXPECT_EQ(list.GetCount(), 1);
}

TEST(Files, ReadWriteAndFailures) {
  TempFile temp("hello");
  {
    CFile file(temp.Path(), CFile::modeRead);
    EXPECT_EQ(file.GetLength(), 5u);
    char buffer[8] = {};
    EXPECT_EQ(file.Read(buffer, sizeof buffer), 5u);
    EXPECT_STREQ(buffer, "hello");
  }
  {
    CFile file(temp.Path(), CFile::modeCreate | CFile::modeWrite);
    file.Write("new", 3);
  }
  CFile reread(temp.Path(), CFile::modeRead);
  EXPECT_EQ(reread.GetLength(), 3u);

  for (const char* path : {"/nonexistent/devdef/x", "/tmp"}) {
    int cause = -1;
    try {
      CFile file(path, CFile::modeRead);
    } catch (CFileException* e) {
      cause = e->m_cause;
      EXPECT_EQ(e->m_strFileName, path);
      e->Delete();
    }
    EXPECT_EQ(cause, path[1] == 'n' ? CFileException::fileNotFound : CFileException::invalidFile);
  }
}

TEST(Files, ArchiveBuffersUntilFlush) {
  CMemFile file;
  {
    CArchive ar(&file, CArchive::store);
    EXPECT_EQ(ar.GetFile(), &file);
    ar.Write("abc", 3);
    EXPECT_EQ(file.GetLength(), 0u);
    ar.Flush();
    EXPECT_EQ(file.GetLength(), 3u);
    const std::string big(10000, 'x');
    ar.Write(big.data(), static_cast<UINT>(big.size()));
    EXPECT_EQ(file.GetLength() % 4096, 3u);  // whole buffers reached the file
  }  // destruction flushes the rest
  EXPECT_EQ(file.GetLength(), 10003u);

  CArchive none(nullptr, CArchive::store);
  EXPECT_EQ(none.GetFile(), nullptr);
  bool thrown = false;
  try {
    none.Write("x", 1);
  } catch (CArchiveException* e) {
    thrown = true;
    e->Delete();
  }
  EXPECT_TRUE(thrown);
}

TEST(MessageBoxes, HandlerAndReports) {
  {
    MessageCapture boxes;
    AfxMessageBox("text", MB_ICONEXCLAMATION);
    MessageBoxA(nullptr, "body", "caption", MB_OK);
    CFileException error(CFileException::fileNotFound, 2, "/some/file.def");
    error.ReportError();
    ASSERT_EQ(boxes.Boxes().size(), 3u);
    EXPECT_EQ(boxes.Boxes()[0].caption, "(null)");
    EXPECT_EQ(boxes.Boxes()[0].type, 0x30u);
    EXPECT_EQ(boxes.Boxes()[1].caption, "caption");
    EXPECT_NE(boxes.Boxes()[2].text.find("/some/file.def"), std::string::npos);
    EXPECT_NE(boxes.Boxes()[2].text.find("not found"), std::string::npos);
  }
  AFX_MESSAGEBOX_HANDLER previous = AfxSetMessageBoxHandler(nullptr);
  EXPECT_NE(previous, nullptr);
  EXPECT_NE(AfxSetMessageBoxHandler(previous), nullptr);  // null installed the default
}

TEST(Runtime, NumberReadersWrapAndStop) {
  int value = 0;
  EXPECT_EQ(DevdefScanDecimal(" \t-12abc", &value), 1);
  EXPECT_EQ(value, -12);
  EXPECT_EQ(DevdefScanDecimal("4294967297", &value), 1);
  EXPECT_EQ(value, 1);
  value = 7;
  EXPECT_EQ(DevdefScanDecimal("-", &value), 0);
  EXPECT_EQ(DevdefScanDecimal("+-5", &value), 0);
  EXPECT_EQ(value, 7);
  unsigned hex = 0;
  EXPECT_EQ(DevdefScanHex("1F", &hex), 1);
  EXPECT_EQ(hex, 31u);
  EXPECT_EQ(DevdefScanHex("0x1f", &hex), 1);
  EXPECT_EQ(hex, 31u);
  EXPECT_EQ(DevdefScanHex("-1", &hex), 1);
  EXPECT_EQ(hex, 0xFFFFFFFFu);
  EXPECT_EQ(DevdefScanHex("g", &hex), 0);
  EXPECT_EQ(_mbsicmp(reinterpret_cast<const unsigned char*>("Ab"), reinterpret_cast<const unsigned char*>("aB")), 0);
  EXPECT_LT(_mbscmp(reinterpret_cast<const unsigned char*>("A"), reinterpret_cast<const unsigned char*>("a")), 0);
}

}  // namespace

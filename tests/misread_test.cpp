// What check says of numbers the reader takes differently from how they
// look, and how columns are counted for the file's encoding.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tools/analysis/analysis.h"
#include "tools/text/text_encoding.h"

namespace {

const char kLayout1Head[] =
    "DEF_LAYOUT_VERSION = 1\nHOUSING_LIST A, B;\nADAPTER_LIST X, Y;\nMODUL_LIST M, N;\nK:\n:Man\nDEV\n{\n";
const char kLayout7Head[] =
    "DEF_LAYOUT_VERSION = 7\nHOUSING_LIST { A, B }\nADAPTER_LIST { X, Y }\nMODUL_LIST M, N;\nK:\n:Man\nDEV\n{\n";

// The messages of the number findings of one definition line.
std::vector<std::string> NumberFindings(const char* head, const std::string& line) {
  std::unique_ptr<Analysis> analysis =
      Analysis::ReadText("t.def", std::string(head) + line + "\n}\n", AnalysisOptions());
  EXPECT_TRUE(analysis->Usable()) << analysis->Error();
  std::vector<std::string> messages;
  for (const Finding& finding : analysis->FindingsOf().List()) {
    if (finding.kind == FindingKind::kNumber) messages.push_back(analysis->MessageOf(finding));
  }
  return messages;
}

TEST(Misread, EachNumberTheReaderTakesOtherwiseIsSaidWithTheValueItBecame) {
  struct Case {
    const char* head;
    const char* line;
    const char* message;  // empty: read as it looks
  };
  const Case cases[] = {
      {kLayout1Head, "KVR5DEF: 10O3 1 0 0 5 : t", "id '10O3' is read as 10: the reader passes over 'O3' behind the digits"},
      {kLayout1Head, "KVR5DEF: 0x3 1 0 0 5 : t", "id '0x3' is read as 0: the field is decimal, so the reader stops in front of the 'x'"},
      {kLayout1Head, "KVR5DEF: 3.5 1 0 0 5 : t", "id '3.5' is read as 3: the field holds whole numbers, so the reader passes over '.5'"},
      {kLayout1Head, "KVR5DEF: 44x 1 0 0 5 : t", "id '44x' is read as 44: the reader passes over 'x' behind the digits"},
      {kLayout1Head, "KVR5DEF: 4294967297 1 0 0 5 : t", "id '4294967297' is read as 1: the field holds 32 bits"},
      {kLayout1Head, "KVR5DEF: 99999999999 1 0 0 5 : t", "id '99999999999' is read as 1215752191: the field holds 32 bits"},
      {kLayout1Head, "KVR5DEF: -1 1 0 0 5 : t", "id '-1' is read as 4294967295: the field holds no sign"},
      {kLayout1Head, "KVR5DEF: 1 -1 0 0 5 : t", "package '-1' is read as 65535: the field holds no sign"},
      {kLayout1Head, "KVR5DEF: 1 1,0 0 0 5 : t", "package '1,0' is read as 1: the reader passes over ',0' behind the digits"},
      {kLayout1Head, "KVR5DEF: 1 0 0 65536 5 : t", "adapter '65536' is read as 0: the field holds 16 bits"},
      {kLayout1Head, "KVR5DEF: 1 0 0 0,1x 5 : t", "adapter '1x' is read as 1: the reader passes over 'x' behind the digits"},
      {kLayout1Head, "KVR5DEF: 1 0 0 0 5e3 : t", "value 2 '5e3' is read as 5: the reader passes over 'e3' behind the digits"},
      {kLayout1Head, "KVR5DEF: 4294967295 0 0 0 +5 : t", ""},
      {kLayout1Head, "KVR5DEF: 007 0 0 0,1 5 : t", ""},
      {kLayout7Head, "KVR5DEF: 1 0 0 0 16 0 1 2 0x1F 0 5 6 a 1 0 : t", ""},
      {kLayout7Head, "KVR5DEF: 1 0,1x 0 0 16 0 1 2 1F 0 5 6 A 1 0 : t", "package '1x' is read as 1: the reader passes over 'x' behind the digits"},
      {kLayout7Head, "KVR5DEF: 1 0 0 0 0x16 0 1 2 1F 0 5 6 A 1 0 : t", "value 0 '0x16' is read as 0: the field is decimal, so the reader stops in front of the 'x'"},
      {kLayout7Head, "KVR5DEF: 1 0 0 0 16 0 1 2 1FG 0 5 6 A 1 0 : t", "value 4 '1FG' is read as 31: the reader passes over 'G' behind the digits"},
      {kLayout7Head, "KVR5DEF: 1 0 0 0 16 0 1 2 100000000 0 5 6 A 1 0 : t", "value 4 '100000000' is read as 0: the field holds 32 bits"},
  };
  for (const Case& c : cases) {
    const std::vector<std::string> found = NumberFindings(c.head, c.line);
    if (*c.message == '\0') {
      EXPECT_TRUE(found.empty()) << c.line << ": " << (found.empty() ? "" : found[0]);
    } else {
      EXPECT_EQ(found, std::vector<std::string>{c.message}) << c.line;
    }
  }
}

TEST(Misread, ASemicolonInATextAndAHiddenVersionLineAreSaid) {
  std::unique_ptr<Analysis> cut =
      Analysis::ReadText("t.def", std::string(kLayout1Head) + "KVR5DEF: 1 0 0 0 5 : 8 KB; fast mode\n}\n", AnalysisOptions());
  ASSERT_EQ(cut->FindingsOf().List().size(), 1u);
  const Finding& text = cut->FindingsOf().List()[0];
  EXPECT_EQ(text.kind, FindingKind::kTextCut);
  EXPECT_EQ(cut->MessageOf(text), "the text ends at the \";\": the reader takes 'fast mode' for a comment, so the "
                                  "definition's text ends in front of it and a write drops it");

  for (const std::string& head : {std::string("\xEF\xBB\xBF"), std::string(" \t")}) {
    std::unique_ptr<Analysis> hidden =
        Analysis::ReadText("t.def", head + std::string(kLayout1Head) + "KVR5DEF: 1 0 0 0 5 : x\n}\n", AnalysisOptions());
    EXPECT_TRUE(hidden->Usable()) << hidden->Error();
    EXPECT_EQ(hidden->Layout(), 1);
    ASSERT_EQ(hidden->FindingsOf().List().size(), 1u);
    const Finding& finding = hidden->FindingsOf().List()[0];
    EXPECT_EQ(finding.kind, FindingKind::kNoVersion);
    EXPECT_EQ(finding.span.begin, 0u);
    EXPECT_NE(hidden->MessageOf(finding).find("in front of DEF_LAYOUT_VERSION"), std::string::npos);
  }
  // A file with no version line at all is still no definition file.
  EXPECT_FALSE(Analysis::ReadText("t.def", "K:\n:Man\n", AnalysisOptions())->Usable());
}

TEST(Columns, CountUtf8BytesForVimAndCharactersForSarif) {
  struct Case {
    TextEncoding encoding;
    const char* before;
    long utf8Bytes;
    long codePoints;
  };
  const Case cases[] = {
      {TextEncoding::kUtf8, "", 1, 1},
      {TextEncoding::kUtf8, "abc", 4, 4},
      {TextEncoding::kUtf8, "\xC3\xA9t\xE2\x82\xAC", 7, 4},    // é t €
      {TextEncoding::kUtf8, "\xF0\x9F\x98\x80", 5, 2},         // one character of four bytes
      {TextEncoding::kUtf8, "\xFF" "a", 3, 3},                 // an ill-formed byte counts one
      {TextEncoding::kWindows1252, "\xE9t\x80", 7, 4},         // é t €, one byte each in the file
      {TextEncoding::kLatin1, "\xE9\x80", 5, 3},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ColumnOf(c.encoding, c.before, ColumnUnit::kUtf8Bytes), c.utf8Bytes) << c.before;
    EXPECT_EQ(ColumnOf(c.encoding, c.before, ColumnUnit::kCodePoints), c.codePoints) << c.before;
  }
}

}  // namespace

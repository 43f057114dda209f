// Two files of the same meaning: how many lines differ, and what kind of
// difference each is, as the reading of each file tells it.
#include "tools/diff/same_meaning.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "tools/diff/catalogue_diff.h"

namespace {

const std::string kBase =
    "DEF_LAYOUT_VERSION = 1 \n"
    "; a catalogue\n"
    "HOUSING_LIST P;\n"
    "ADAPTER_LIST A;\n"
    "MODUL_LIST M;\n"
    "K:\n"
    ":M\n"
    "X\n"
    "{\n"
    "KVR5DEF: 1 0 0 0 8 : x\n"
    "KVR5DEF: 2 0 0 0 9 : y\n"
    "}\n"
    "Y\n"
    "{\n"
    "KVR5DEF: 3 0 0 0 8 : z\n"
    "}\n";

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  const size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

TEST(SameMeaning, WhatDiffers) {
  const std::string y = "Y\n{\nKVR5DEF: 3 0 0 0 8 : z\n}\n";
  const struct {
    std::string newText;
    const char* differs;
  } cases[] = {
      {Replaced(kBase, "; a catalogue", "; the catalogue"), "1 line differs: comments"},
      {Replaced(kBase, "MODUL_LIST M;\n", "MODUL_LIST M;\n\n  \n"), "2 lines differ: blank lines"},
      {Replaced(Replaced(kBase, y, ""), ":M\n", ":M\n" + y), "4 lines differ: order"},
      {Replaced(kBase, "KVR5DEF: 1 0 0 0 8 : x\nKVR5DEF: 2 0 0 0 9 : y\n",
                "KVR5DEF: 2 0 0 0 9 : y\nKVR5DEF: 1 0 0 0 8 : x\n"),
       "1 line differs: order"},
      {Replaced(kBase, "KVR5DEF: 1 0 0 0 8", "KVR5DEF: 1\t0 0  0 8"), "1 line differs: spacing"},
      {std::regex_replace(kBase, std::regex("\n"), "\r\n"), "16 lines differ: line ends"},
      {Replaced(kBase, ": x\n", ": x ; a note\n"), "1 line differs: comments"},
      {Replaced(kBase, "KVR5DEF: 1 0 0 0 8", "KVR5DEF: 1 0 0 0 08"), "1 line differs: lines written otherwise"},
      {Replaced(kBase, ": y\n", ": y\nKVR5DEF: 9 0 0 0:no value\n"), "1 line differs: lines the reader drops"},
      {Replaced(Replaced(kBase, "; a catalogue\n", ""), "MODUL_LIST M;\n", "MODUL_LIST M;\n; a catalogue\n"),
       "1 line differs: comments"},
      {Replaced(Replaced(kBase, y, ""), ":M\n", ":M\n" + y) + "; the end\n", "5 lines differ: comments, order"},
  };
  std::unique_ptr<Analysis> oldFile = Analysis::ReadText("old.def", kBase, AnalysisOptions());
  for (const auto& c : cases) {
    std::unique_ptr<Analysis> newFile = Analysis::ReadText("new.def", c.newText, AnalysisOptions());
    ASSERT_TRUE(newFile->Usable()) << c.newText;
    // Each case changes no meaning.
    EXPECT_TRUE(DiffCatalogues(*oldFile, *newFile, DiffOptions()).empty()) << c.newText;
    EXPECT_EQ(CompareLines(*oldFile, *newFile).Text(), c.differs) << c.newText;
  }
}

}  // namespace

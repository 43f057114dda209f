// The analysis's records tell the truth about the read: for every golden
// file and example, and for those files damaged at random, every record
// holds what the catalogue got, in the catalogue's order. The findings'
// table is the one the manual shows.
#include <gtest/gtest.h>

#include <dirent.h>
#include <strings.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "devdef/platform/number_scan.h"
#include "tools/analysis/analysis.h"

namespace {

std::string FileText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

std::vector<std::string> DefinitionFiles() {
  std::vector<std::string> files;
  for (const std::string dir : {DEVDEF_SOURCE_DIR "/tests/golden", DEVDEF_SOURCE_DIR "/examples"}) {
    DIR* listing = opendir(dir.c_str());
    if (listing == nullptr) continue;
    while (dirent* entry = readdir(listing)) {
      const std::string name = entry->d_name;
      if (name.size() > 4 && name.compare(name.size() - 4, 4, ".def") == 0) files.push_back(dir + "/" + name);
    }
    closedir(listing);
  }
  return files;
}

std::string Text(const Analysis& analysis, ByteSpan span) {
  return std::string(analysis.Bytes().substr(span.begin, span.end - span.begin));
}

// Whether a kind's bytes hold its name: they are its name, or (layout 7)
// a header list keyword whose list in braces the loop read before it went
// on to the ":", keeping the keyword in the name.
bool KindNameHolds(const std::string& bytes, const std::string& name);

// A name as the reader makes it of its bytes: "_" read as a blank.
std::string Named(std::string bytes) {
  for (char& c : bytes) c = c == '_' ? ' ' : c;
  return bytes;
}

bool KindNameHolds(const std::string& bytes, const std::string& name) {
  if (Named(bytes) == name) return true;
  for (const char* keyword : {"HOUSING_LIST", "ADAPTER_LIST"}) {
    if (strncasecmp(bytes.c_str(), keyword, 12) == 0 && bytes.find('}') != std::string::npos &&
        Named(bytes.substr(0, 12)) == name.substr(0, 12)) {
      return true;
    }
  }
  return false;
}

std::string Bytes(const CString& text) { return std::string(text, static_cast<size_t>(text.GetLength())); }

// A decimal number as "%d" reads it.
unsigned int Number(const std::string& text) {
  unsigned int number = 0;
  EXPECT_NE(DevdefScanNumber(text.c_str(), false, &number, nullptr), nullptr) << text;
  return number;
}

// Every record holds what the catalogue got, and the records stand in the
// catalogue's walk order.
void ExpectRecordsHoldTheCatalogue(Analysis& analysis) {
  size_t kind = 0;
  size_t manufacturer = 0;
  size_t device = 0;
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds = analysis.Controller().getDeviceList();
  ASSERT_EQ(analysis.Kinds().size(), static_cast<size_t>(kinds.GetCount()));
  for (POSITION k = kinds.GetHeadPosition(); k != nullptr; ++kind) {
    TAG_KIND_OF_DEVICE& kindItem = kinds.GetNext(k);
    const KindRecord& kindRecord = analysis.Kinds()[kind];
    ASSERT_EQ(kindRecord.kind, &kindItem);
    EXPECT_TRUE(KindNameHolds(Text(analysis, kindRecord.name), Bytes(kindItem.m_Name))) << Bytes(kindItem.m_Name);
    const int manufacturers = kindItem.m_pManufList != nullptr ? kindItem.m_pManufList->GetCount() : 0;
    ASSERT_EQ(kindRecord.manufacturerCount, static_cast<std::uint32_t>(manufacturers));
    ASSERT_EQ(kindRecord.firstManufacturer, manufacturer);
    for (POSITION m = manufacturers > 0 ? kindItem.m_pManufList->GetHeadPosition() : nullptr; m != nullptr;
         ++manufacturer) {
      TAG_DEVICE_MANUF& manufItem = kindItem.m_pManufList->GetNext(m);
      const ManufacturerRecord& manufRecord = analysis.Manufacturers()[manufacturer];
      ASSERT_EQ(manufRecord.manufacturer, &manufItem);
      EXPECT_EQ(manufRecord.kind, kind);
      EXPECT_EQ(Named(Text(analysis, manufRecord.name)), Bytes(manufItem.m_Name));
      ASSERT_EQ(manufRecord.firstDevice, device);
      const int devices = manufItem.m_pDeviceList != nullptr ? manufItem.m_pDeviceList->GetCount() : 0;
      ASSERT_EQ(manufRecord.deviceCount, static_cast<std::uint32_t>(devices));
      for (POSITION d = devices > 0 ? manufItem.m_pDeviceList->GetHeadPosition() : nullptr; d != nullptr; ++device) {
        DEVICE_ITEM& deviceItem = manufItem.m_pDeviceList->GetNext(d);
        const DeviceRecord& deviceRecord = analysis.Devices()[device];
        ASSERT_EQ(deviceRecord.device, &deviceItem);
        std::string name = Named(Text(analysis, deviceRecord.name));
        if (deviceItem.m_DeviceFlags != 0) name.erase(0, 1);
        EXPECT_EQ(name, Bytes(deviceItem.m_DeviceName));
        ASSERT_EQ(deviceRecord.definitionCount, static_cast<std::uint32_t>(deviceItem.m_DefArray.GetSize()));
        for (std::uint32_t i = 0; i < deviceRecord.definitionCount; ++i) {
          const std::uint32_t definition = deviceRecord.firstDefinition + i;
          ASSERT_EQ(&analysis.DefinitionOf(definition), &deviceItem.m_DefArray[static_cast<int>(i)]);
          const DEVICE_KVRXDEF_ITEM& def = deviceItem.m_DefArray[static_cast<int>(i)];
          // The line ends with the definition's text, and its id is where
          // the record says.
          const std::string line = Text(analysis, analysis.Definitions()[definition].line);
          const std::string text = Bytes(def.m_DefLine);
          ASSERT_GE(line.size(), text.size());
          EXPECT_EQ(line.substr(line.size() - text.size()), text);
          EXPECT_EQ(Number(Text(analysis, analysis.IdWord(definition))), def.m_DefID);
          // Each field's bytes hold the number stored for it.
          for (const FieldRecord& field : analysis.Fields(definition)) {
            if (field.field == kDevdefFieldValue) continue;
            unsigned int number = Number(Text(analysis, field.taken));
            if (field.field == kDevdefFieldPackage || field.field == kDevdefFieldAdapter) number &= 0xFFFF;
            EXPECT_EQ(number, field.value) << line;
          }
        }
      }
    }
  }
  EXPECT_EQ(device, analysis.Devices().size());
  EXPECT_EQ(manufacturer, analysis.Manufacturers().size());
  // Header list keywords and housing lines: the keyword's bytes, and each
  // housing number's bytes the number its device got.
  static const char* const keywords[] = {"HOUSING_LIST", "ADAPTER_LIST", "MODUL_LIST"};
  for (const ListKeywordRecord& keyword : analysis.ListKeywords()) {
    ASSERT_TRUE(keyword.list >= 0 && keyword.list < 3);
    EXPECT_EQ(strcasecmp(Text(analysis, keyword.keyword).c_str(), keywords[keyword.list]), 0);
  }
  ASSERT_EQ(analysis.HousingKeywords().size(), analysis.HousingLines().size());
  for (const ByteSpan& keyword : analysis.HousingKeywords()) EXPECT_EQ(Text(analysis, keyword), "DEVICE_HOUSING_LIST:");
  for (const HousingNumberRecord& entry : analysis.HousingNumbers()) {
    const CWordArray& ids = analysis.Devices()[entry.device].device->m_HousingIds;
    ASSERT_LT(entry.index, static_cast<std::uint32_t>(ids.GetSize()));
    EXPECT_EQ(Number(Text(analysis, entry.entry)) & 0xFFFF, ids[static_cast<int>(entry.index)]);
  }
  // The findings in the order of the file.
  const std::vector<Finding>& findings = analysis.FindingsOf().List();
  for (size_t i = 1; i < findings.size(); ++i) EXPECT_LE(findings[i - 1].span.begin, findings[i].span.begin);
}

std::unique_ptr<Analysis> Analyse(const std::string& text) {
  AnalysisOptions options;
  return Analysis::ReadText("text.def", text, options);
}

TEST(Analysis, RecordsHoldTheCatalogueOfEveryFile) {
  const std::vector<std::string> files = DefinitionFiles();
  ASSERT_GT(files.size(), 40u);
  for (const std::string& file : files) {
    SCOPED_TRACE(file);
    std::unique_ptr<Analysis> analysis = Analysis::ReadFile(file, AnalysisOptions());
    if (analysis->Read()) ExpectRecordsHoldTheCatalogue(*analysis);
  }
}

TEST(Analysis, RecordsHoldTheCatalogueOfDamagedFiles) {
  unsigned seed = 12345;
  auto next = [&seed](size_t bound) {
    seed = seed * 1103515245u + 12345u;
    return static_cast<size_t>((seed >> 8) % bound);
  };
  const char* const pieces[] = {"}", "{", "\n", "\r", ":", " ", "\"", ";", "KVR5DEF:", "_", ",", "\xB0"};
  for (const char* name : {"instruments.def", "programmers_v2.def", "adapters_v7.def", "damaged.def"}) {
    const std::string file = FileText(std::string(DEVDEF_SOURCE_DIR "/examples/") + name);
    for (int round = 0; round < 150; ++round) {
      std::string text = file;
      for (int edit = 0; edit <= round % 4; ++edit) {
        const size_t at = next(text.size() + 1);
        if (next(3) == 0) {
          text.erase(at, next(20));
        } else {
          text.insert(at, pieces[next(sizeof pieces / sizeof pieces[0])]);
        }
      }
      SCOPED_TRACE(std::string(name) + " round " + std::to_string(round) + "\n" + text);
      std::unique_ptr<Analysis> analysis = Analyse(text);
      if (analysis->Read()) ExpectRecordsHoldTheCatalogue(*analysis);
      if (HasFatalFailure()) return;
    }
  }
}

// A line of 200,000 adapter numbers without names: each finding points at
// its own number, in time proportional to the line.
TEST(Analysis, EachOfManyUnnamedNumbersAtItsColumn) {
  const int count = 200000;
  std::string line = "KVR5DEF: 1 0 0 ";
  for (int i = 0; i < count; ++i) line += i == 0 ? "9" : ",9";
  std::unique_ptr<Analysis> analysis = Analyse("DEF_LAYOUT_VERSION = 1\nHOUSING_LIST DIP8;\nADAPTER_LIST A;\n"
                                               "MODUL_LIST BASE;\nK:\n:M\nD\n{\n" + line + " 28 : text\n}\n");
  std::vector<long> columns;
  for (const Finding& finding : analysis->FindingsOf().List()) {
    if (finding.kind == FindingKind::kBadNumber) columns.push_back(analysis->Map().PointOf(finding.span.begin).column);
  }
  ASSERT_EQ(columns.size(), static_cast<size_t>(count));
  EXPECT_EQ(columns.front(), 16);
  EXPECT_EQ(columns.back(), 16 + 2 * (count - 1));
}

// The manual shows every kind of the table, with its severity and its
// explanation as the table has them, and no kind the table lacks.
TEST(Analysis, TheManualShowsTheTableOfFindings) {
  const std::string manual = FileText(DEVDEF_SOURCE_DIR "/docs/check.md");
  size_t sections = 0;
  for (size_t at = manual.find("\n### "); at != std::string::npos; at = manual.find("\n### ", at + 1)) ++sections;
  EXPECT_EQ(sections, AllFindingKinds().size());
  for (const FindingInfo& info : AllFindingKinds()) {
    const std::string heading = std::string("\n### ") + info.id + "\n\nSeverity: **" + SeverityName(info.severity) +
                                "**. " + info.explanation + "\n";
    EXPECT_NE(manual.find(heading), std::string::npos) << info.id;
  }
}

}  // namespace

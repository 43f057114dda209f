// The published page's writer: the data the page's script reads holds
// every device with its definitions as the catalogue has them, names
// decoded as the run decodes them, and nothing in a name can end the data's
// element or the header's markup.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "tools/analysis/analysis.h"
#include "tools/output/output_buffer.h"
#include "tools/output/published_page.h"
#include "tools/text/text_encoding.h"

namespace {

using nlohmann::json;

std::string PageOf(const Analysis& analysis, const PublishOptions& options) {
  std::string page;
  {
    OutputBuffer out(&page);
    WritePublishedPage(out, analysis, options);
  }
  return page;
}

// The JSON document of the page's data element.
json DataOf(const std::string& page) {
  const std::string open = "<script type=\"application/json\" id=\"data\">";
  const size_t begin = page.find(open);
  EXPECT_NE(begin, std::string::npos);
  const size_t end = page.find("</script>", begin);
  return json::parse(page.substr(begin + open.size(), end - begin - open.size()));
}

// A column of numbers as the page's script reads it: base-64 digits of
// five bits, least significant first, 32 and above saying another follows;
// signed ones zigzagged.
std::vector<std::int64_t> Numbers(const json& column, bool isSigned = false) {
  static const std::string kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::vector<std::int64_t> numbers;
  std::uint64_t value = 0;
  int shift = 0;
  for (const char c : column.get<std::string>()) {
    const std::uint64_t digit = kDigits.find(c);
    value |= (digit & 31) << shift;
    shift += 5;
    if (digit >= 32) continue;
    const auto half = static_cast<std::int64_t>(value >> 1);
    numbers.push_back(!isSigned ? static_cast<std::int64_t>(value) : (value & 1) ? -half - 1 : half);
    value = 0;
    shift = 0;
  }
  EXPECT_EQ(shift, 0);
  return numbers;
}

// A device's definitions as the page's script reads them: the differences
// of ids added up.
struct PageDefinition {
  std::int64_t id;
  std::int64_t generation;
  bool hidden;
  std::int64_t module;
  std::string text;
  std::vector<std::int64_t> packages;
  std::vector<std::int64_t> adapters;
};

std::vector<std::vector<PageDefinition>> DefinitionsOf(const json& data) {
  std::vector<std::vector<PageDefinition>> devices;
  const json& defs = data["definition"];
  const auto counts = Numbers(data["device"]["definitions"]);
  const auto ids = Numbers(defs["id"], true);
  const auto generations = Numbers(defs["generation"]);
  const auto modules = Numbers(defs["module"]);
  const auto texts = Numbers(defs["text"]);
  const auto packages = Numbers(defs["packages"]);
  const auto adapters = Numbers(defs["adapters"]);
  std::int64_t id = 0;
  size_t d = 0, p = 0, a = 0;
  for (const std::int64_t count : counts) {
    devices.emplace_back();
    for (std::int64_t k = 0; k < count; ++k, ++d) {
      PageDefinition def;
      def.id = id += ids.at(d);
      def.generation = generations.at(d) / 2;
      def.hidden = generations.at(d) % 2 == 1;
      def.module = modules.at(d);
      def.text = data["texts"][static_cast<size_t>(texts.at(d))];
      def.packages.assign(packages.begin() + p + 1, packages.begin() + p + 1 + packages.at(p));
      p += 1 + def.packages.size();
      def.adapters.assign(adapters.begin() + a + 1, adapters.begin() + a + 1 + adapters.at(a));
      a += 1 + def.adapters.size();
      devices.back().push_back(def);
    }
  }
  EXPECT_EQ(d, ids.size());
  EXPECT_EQ(p, packages.size());
  EXPECT_EQ(a, adapters.size());
  return devices;
}

std::unique_ptr<Analysis> Read(const std::string& path) {
  auto analysis = Analysis::ReadFile(path, AnalysisOptions{});
  SetShownEncoding(DetectTextEncoding(analysis->Bytes()));
  return analysis;
}

TEST(PublishedPage, HoldsEveryDeviceWithItsDefinitionsAsTheCatalogueHasThem) {
  for (const char* example : {"instruments.def", "adapters_v7.def", "programmers_v2.def"}) {
    SCOPED_TRACE(example);
    const auto analysis = Read(std::string(DEVDEF_SOURCE_DIR "/examples/") + example);
    ASSERT_TRUE(analysis->Usable());
    PublishOptions options;
    options.file = example;
    const json data = DataOf(PageOf(*analysis, options));
    const auto devices = DefinitionsOf(data);
    ASSERT_EQ(devices.size(), analysis->Devices().size());
    const auto groupSteps = Numbers(data["device"]["group"], true);
    const auto lineSteps = Numbers(data["device"]["line"], true);
    const auto groups = Numbers(data["groups"]);
    std::int64_t group = 0, line = 0;
    for (size_t i = 0; i < devices.size(); ++i) {
      const DeviceRecord& at = analysis->Devices()[i];
      const ManufacturerRecord& maker = analysis->Manufacturers()[at.manufacturer];
      EXPECT_EQ(data["device"]["name"][i], ShownText(at.device->m_DeviceName));
      // The device's group, as the differences add up, names its kind and
      // manufacturer; its line is where its name stands.
      group += groupSteps.at(i);
      line += lineSteps.at(i);
      EXPECT_EQ(data["kinds"][static_cast<size_t>(groups.at(2 * group))],
                ShownText(analysis->Kinds()[maker.kind].kind->m_Name));
      EXPECT_EQ(data["makers"][static_cast<size_t>(groups.at(2 * group + 1))], ShownText(maker.manufacturer->m_Name));
      EXPECT_EQ(line, analysis->Map().PointOf(at.name.begin).line);
      ASSERT_EQ(devices[i].size(), at.definitionCount);
      for (std::uint32_t k = 0; k < at.definitionCount; ++k) {
        const DEVICE_KVRXDEF_ITEM& def = analysis->DefinitionOf(at.firstDefinition + k);
        const PageDefinition& shown = devices[i][k];
        EXPECT_EQ(shown.id, def.m_DefID);
        EXPECT_EQ(shown.generation, def.m_KvrType);
        EXPECT_EQ(shown.hidden, def.IsHidden());
        EXPECT_EQ(shown.text, ShownText(def.m_DefLine));
        ASSERT_EQ(shown.packages.size(), static_cast<size_t>(def.m_PackageIds.GetSize()));
        for (int p = 0; p < def.m_PackageIds.GetSize(); ++p) EXPECT_EQ(shown.packages[p], def.m_PackageIds[p]);
        ASSERT_EQ(shown.adapters.size(), static_cast<size_t>(def.m_AdapterIds.GetSize()));
        for (int a = 0; a < def.m_AdapterIds.GetSize(); ++a) EXPECT_EQ(shown.adapters[a], def.m_AdapterIds[a]);
        EXPECT_EQ(shown.module, def.m_ModulId);
      }
    }
    EXPECT_EQ(data["packages"].size(), analysis->ListNames(0).size());
  }
}

TEST(PublishedPage, LeavesHiddenDefinitionsOutWhenAskedAndSharesEachText) {
  const auto analysis = Read(DEVDEF_SOURCE_DIR "/examples/instruments.def");
  PublishOptions options;
  options.visibleOnly = true;
  const json data = DataOf(PageOf(*analysis, options));
  size_t visible = 0;
  for (const DeviceRecord& at : analysis->Devices()) visible += static_cast<size_t>(at.device->GetNumDevDefs());
  size_t shown = 0;
  for (const auto& device : DefinitionsOf(data)) {
    for (const PageDefinition& def : device) {
      EXPECT_FALSE(def.hidden);
      ++shown;
    }
  }
  EXPECT_EQ(shown, visible);
  EXPECT_LT(shown, analysis->Definitions().size());
  EXPECT_TRUE(data["visibleOnly"].get<bool>());
  std::set<std::string> texts(data["texts"].begin(), data["texts"].end());
  EXPECT_EQ(texts.size(), data["texts"].size());
}

TEST(PublishedPage, NoNameEndsTheDataOrTheMarkupAndWindows1252IsDecoded) {
  // An adapter and a text that would end the script, a device name and a
  // text that would open a comment, markup in names, and a Windows-1252
  // byte (0xE9, e acute) that makes the file no UTF-8. (A "/" in a kind
  // or device line opens a comment.)
  const std::string bytes =
      "DEF_LAYOUT_VERSION = 1 \nHOUSING_LIST DIP8;\nADAPTER_LIST A</script>;\nMODUL_LIST BASE;\n\n"
      "K<b>:\n\n:M&amp;\n\nD\xE9vice<!--\n{\nKVR5DEF: 1 0 0 0 8 : a </SCRIPT> \"text\" <!-- \\ end\n}\n"
      // Ids that step up past 32 bits and down again.
      "E\n{\nKVR5DEF: 3000000000 0 0 0 8 : x\n}\nF\n{\nKVR5DEF: 2 0 0 0 8 : y\n}\n";
  const auto analysis = Analysis::ReadText("a<b>&\".def", bytes, AnalysisOptions{});
  ASSERT_TRUE(analysis->Usable()) << analysis->Error();
  SetShownEncoding(DetectTextEncoding(analysis->Bytes()));
  PublishOptions options;
  options.file = "dir/a<b>&\".def";
  options.date = "2026-01-02";
  options.generation = 5;
  const std::string page = PageOf(*analysis, options);
  // One script element of data and one of the script, and no comment.
  size_t closings = 0;
  for (size_t at = page.find("</script"); at != std::string::npos; at = page.find("</script", at + 1)) ++closings;
  EXPECT_EQ(closings, 2u);
  EXPECT_EQ(page.find("</SCRIPT"), std::string::npos);
  EXPECT_EQ(page.find("<!--"), std::string::npos);
  EXPECT_EQ(page.find("{{"), std::string::npos);
  EXPECT_NE(page.find("<title>Devices of a&lt;b&gt;&amp;&quot;.def</title>"), std::string::npos);
  EXPECT_NE(page.find("<code>dir/a&lt;b&gt;&amp;&quot;.def</code>"), std::string::npos);
  EXPECT_NE(page.find("<time>2026-01-02</time>"), std::string::npos);

  const json data = DataOf(page);
  EXPECT_EQ(data["kinds"], json::array({"K<b>"}));
  EXPECT_EQ(data["makers"], json::array({"M&amp;"}));
  EXPECT_EQ(data["adapters"], json::array({"A</script>"}));
  EXPECT_EQ(data["device"]["name"], json::array({"D\u00e9vice<!--", "E", "F"}));
  const auto devices = DefinitionsOf(data);
  ASSERT_EQ(devices.size(), 3u);
  EXPECT_EQ(devices[0].at(0).id, 1);
  EXPECT_EQ(devices[1].at(0).id, 3000000000);
  EXPECT_EQ(devices[2].at(0).id, 2);
  EXPECT_EQ(data["texts"][0], " a </SCRIPT> \"text\" <!-- \\ end");
}

TEST(PublishedPage, TakesTheTitleGiven) {
  const auto analysis = Read(DEVDEF_SOURCE_DIR "/examples/adapters_v7.def");
  PublishOptions options;
  options.file = "examples/adapters_v7.def";
  options.title = "Adapters <2026>";
  const std::string page = PageOf(*analysis, options);
  EXPECT_NE(page.find("<h1>Adapters &lt;2026&gt;</h1>"), std::string::npos);
  EXPECT_NE(page.find("layout 7"), std::string::npos);
}

}  // namespace

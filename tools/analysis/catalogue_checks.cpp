// Findings about what the read made rather than how it read, once it is
// over: a file without a version line, duplicate ids, numbers without a
// name, and what the layout 7 writer does not keep of a definition.
#include <algorithm>
#include <utility>

#include "tools/analysis/analysis.h"

namespace {

// The word of the field of this kind and index, or the whole line when the
// reader gave no such field. A line gives its fields in the order of kind
// and index, so a line of many numbers costs one search per number.
ByteSpan FieldSpan(const std::vector<FieldRecord>& fields, int field, int index, ByteSpan line) {
  const auto found = std::lower_bound(fields.begin(), fields.end(), std::make_pair(field, index),
                                      [](const FieldRecord& record, const std::pair<int, int>& key) {
                                        return record.field != key.first ? record.field < key.first
                                                                         : record.index < key.second;
                                      });
  return found != fields.end() && found->field == field && found->index == index ? found->word : line;
}

}  // namespace

void Analysis::CheckCatalogue() {
  Findings& findings = m_records.findings;
  if (!m_records.versionTaken) {
    const LineLooks looks(Bytes(), m_layout);
    // A version line that a byte order mark or white space hides is said
    // where it stands; otherwise the file has none at all.
    std::uint32_t keyword = 0;
    const std::uint32_t hidden = looks.HiddenVersionLine(&keyword);
    if (hidden == kNoRecord) {
      findings.Add(FindingKind::kNoVersion, ByteSpan{0, looks.LineEnd(0)}, Says(MessageForm::kNoVersion));
    } else if (hidden == 0 && Bytes().substr(0, 3) == "\xEF\xBB\xBF") {
      findings.Add(FindingKind::kNoVersion, ByteSpan{0, looks.LineEnd(0)}, Says(MessageForm::kVersionBehindMark));
    } else {
      findings.Add(FindingKind::kNoVersion, ByteSpan{hidden, looks.LineEnd(hidden)},
                   Says(MessageForm::kVersionBehindBlanks, keyword - hidden));
    }
  }
  CheckDefinitions();
}

void Analysis::CheckDefinitions() {
  Findings& findings = m_records.findings;
  const std::vector<DefinitionRecord>& definitions = m_records.definitions;
  // The fields of one definition at a time, read again only for a
  // definition that has something to say.
  std::uint32_t fieldsOf = kNoRecord;
  std::vector<FieldRecord> fields;
  auto fieldSpan = [&](std::uint32_t definition, int field, int index) {
    if (fieldsOf != definition) {
      fields = Fields(definition);
      fieldsOf = definition;
    }
    return FieldSpan(fields, field, index, definitions[definition].line);
  };

  // The definitions that the read found to have something to say: numbers
  // without a name and what the layout 7 writer loses.
  const int packages = DEVICE_ITEM::m_PackageList.GetSize();
  const int adapters = DEVICE_ITEM::m_AdapterList.GetSize();
  const int modules = DEVICE_ITEM::m_ModulList.GetSize();
  for (std::uint32_t d : m_records.noteworthy) {
    DEVICE_KVRXDEF_ITEM& def = DefinitionOf(d);
    for (int p = 0; p < def.m_PackageIds.GetSize(); ++p) {
      if (def.m_PackageIds[p] >= packages) {
        findings.Add(FindingKind::kBadNumber, fieldSpan(d, kDevdefFieldPackage, p),
                     Says(MessageForm::kBadPackage, def.m_PackageIds[p]));
      }
    }
    if (def.m_ModulId >= static_cast<DWORD>(modules)) {
      findings.Add(FindingKind::kBadNumber, fieldSpan(d, kDevdefFieldModule, 0),
                   Says(MessageForm::kBadModule, def.m_ModulId));
    }
    for (int a = 0; a < def.m_AdapterIds.GetSize(); ++a) {
      if (def.m_AdapterIds[a] >= adapters) {
        findings.Add(FindingKind::kBadNumber, fieldSpan(d, kDevdefFieldAdapter, a),
                     Says(MessageForm::kBadAdapter, def.m_AdapterIds[a]));
      }
    }
    if (m_layout != 7) continue;
    const ByteSpan line = definitions[d].line;
    if ((def.m_MarkFlags & ~m_records.devices[definitions[d].device].device->m_DeviceFlags) != 0) {
      findings.Add(FindingKind::kLayout7Writer, line, Says(MessageForm::kDefinitionMarkNotWritten));
    }
    if (def.m_PackageIds.GetSize() > 1) {
      findings.Add(FindingKind::kLayout7Writer, line, Says(MessageForm::kSecondPackageNotWritten));
    }
    if (def.m_DefValues[10] > 9) {
      findings.Add(FindingKind::kLayout7Writer, fieldSpan(d, kDevdefFieldValue, 10),
                   Says(MessageForm::kValue10, def.m_DefValues[10]));
    }
  }

  // Ids used more than once: the definitions sorted by id, in file order
  // within an id. Ids that ascend through the file have none.
  if (m_records.idsAscend) return;
  std::vector<std::pair<DWORD, std::uint32_t>> ids;
  ids.reserve(definitions.size());
  for (const DeviceRecord& device : m_records.devices) {
    for (std::uint32_t i = 0; i < device.definitionCount; ++i) {
      ids.emplace_back(device.device->m_DefArray[static_cast<int>(i)].m_DefID, device.firstDefinition + i);
    }
  }
  std::sort(ids.begin(), ids.end());
  for (size_t run = 0; run < ids.size();) {
    size_t end = run + 1;
    while (end < ids.size() && ids[end].first == ids[run].first) ++end;
    if (end - run > 1) {
      const std::uint32_t id = ids[run].first;
      const ByteSpan first = IdWord(ids[run].second);
      std::vector<ByteSpan> again;
      for (size_t i = run + 1; i < end; ++i) {
        again.push_back(IdWord(ids[i].second));
        const std::uint32_t used = findings.Add(FindingKind::kDuplicateId, again.back(),
                                                Says(MessageForm::kIdAlreadyUsed, id, first.begin));
        findings.Relate(used, first, Says(MessageForm::kIdFirstUsedHere, id), false);
      }
      const std::uint32_t usedAgain =
          findings.Add(FindingKind::kDuplicateId, first, Says(MessageForm::kIdUsedAgain, id, again.front().begin));
      for (const ByteSpan& span : again) findings.Relate(usedAgain, span, Says(MessageForm::kIdUsedAgainHere, id), false);
    }
    run = end;
  }
}

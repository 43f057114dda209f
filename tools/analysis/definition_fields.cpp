// A definition's number fields, as its layout's line reader reads the line
// again, watched; and the words they stand in.
#include "tools/analysis/analysis.h"
#include "tools/analysis/analysis_ctrl.h"
#include "tools/analysis/number_look.h"

namespace {

// Collects the fields a definition line reader reports.
class FieldCollector : public DevdefReadObserver {
 public:
  FieldCollector() { m_bFields = true; }
  void DefinitionField(int nField, int nIndex, int nBegin, int nEnd, bool bHex, DWORD nValue) override {
    FieldRecord field;
    field.hex = bHex;
    field.field = nField;
    field.index = nIndex;
    field.taken = ByteSpan{static_cast<std::uint32_t>(nBegin), static_cast<std::uint32_t>(nEnd)};
    field.value = nValue;
    fields.push_back(field);
  }
  void DefinitionKeyword(int nBegin) override { keyword = nBegin; }
  std::vector<FieldRecord> fields;
  int keyword = 0;
};

}  // namespace

std::vector<FieldRecord> Analysis::Fields(std::uint32_t definition, std::uint32_t* keyword) {
  const ByteSpan line = m_records.definitions[definition].line;
  const std::string_view bytes = Bytes();
  const CString text(bytes.data() + line.begin, static_cast<int>(line.end - line.begin));
  if (m_scratch.IsEmpty()) {
    DEVICE_ITEM device;
    m_scratch.AddTail(device);
  }
  FieldCollector collector;
  {
    DevdefReadObserverScope watching(&collector);
    m_ctrl->ReadDefinitionLine(m_scratch.GetHeadPosition(), text);
  }
  m_scratch.GetHead().m_DefArray.SetSize(0);
  if (keyword != nullptr) *keyword = line.begin + static_cast<std::uint32_t>(collector.keyword);
  // Into the file, each with the word it stands in, as it looks.
  for (FieldRecord& field : collector.fields) {
    field.taken.begin += line.begin;
    field.taken.end += line.begin;
    field.word = WordFrom(field.taken.begin, line.end, ListField(m_layout, field.field));
  }
  return std::move(collector.fields);
}

ByteSpan Analysis::IdWord(std::uint32_t definition) const {
  const DefinitionRecord& record = m_records.definitions[definition];
  return WordFrom(record.id, record.line.end, false);
}

ByteSpan Analysis::WordFrom(std::uint32_t begin, std::uint32_t lineEnd, bool list) const {
  return NumberWord(Bytes(), begin, lineEnd, list);
}

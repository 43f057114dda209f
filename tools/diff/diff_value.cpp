#include "tools/diff/diff_value.h"

#include <utility>

namespace {

void AppendLiteral(const DiffValue& value, std::string& out) {
  switch (value.type) {
    case DiffValue::Type::kNone:
      out += "null";
      return;
    case DiffValue::Type::kNumber:
      out += std::to_string(value.number);
      return;
    case DiffValue::Type::kText:
      out += '"';
      for (const char c : value.text) {
        if (c == '"' || c == '\\') out += '\\';
        out += c;
      }
      out += '"';
      return;
    case DiffValue::Type::kList:
      out += '[';
      for (size_t i = 0; i < value.items.size(); ++i) {
        if (i > 0) out += ',';
        AppendLiteral(value.items[i], out);
      }
      out += ']';
      return;
  }
}

}  // namespace

DiffValue DiffValue::Number(long long number) {
  DiffValue value;
  value.type = Type::kNumber;
  value.number = number;
  return value;
}

DiffValue DiffValue::Text(std::string bytes) {
  DiffValue value;
  value.type = Type::kText;
  value.text = std::move(bytes);
  return value;
}

DiffValue DiffValue::List(std::vector<DiffValue> items) {
  DiffValue value;
  value.type = Type::kList;
  value.items = std::move(items);
  return value;
}

bool DiffValue::operator==(const DiffValue& other) const {
  if (type != other.type) return false;
  switch (type) {
    case Type::kNone:
      return true;
    case Type::kNumber:
      return number == other.number;
    case Type::kText:
      return text == other.text;
    case Type::kList:
      return items == other.items;
  }
  return false;
}

std::string DiffValue::Literal() const {
  std::string out;
  AppendLiteral(*this, out);
  return out;
}

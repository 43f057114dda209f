// The value of a field in a change: none, a number, a name or text as the
// file's bytes, or a list of values. The output forms show the bytes as the
// run's encoding decodes them.
#ifndef DEVDEF_TOOLS_DIFF_DIFF_VALUE_H_
#define DEVDEF_TOOLS_DIFF_DIFF_VALUE_H_

#include <string>
#include <vector>

struct DiffValue {
  enum class Type { kNone, kNumber, kText, kList };

  static DiffValue None() { return DiffValue(); }
  static DiffValue Number(long long number);
  static DiffValue Text(std::string bytes);
  static DiffValue List(std::vector<DiffValue> items);

  // Equal when of the same type with equal contents.
  bool operator==(const DiffValue& other) const;
  bool operator!=(const DiffValue& other) const { return !(*this == other); }

  // The value as a literal: null, 12, "bytes" (with '"' and '\' escaped by
  // a '\'), [a,b]. Two values have the same literal exactly when they are
  // equal.
  std::string Literal() const;

  Type type = Type::kNone;
  long long number = 0;          // kNumber
  std::string text;              // kText
  std::vector<DiffValue> items;  // kList
};

#endif  // DEVDEF_TOOLS_DIFF_DIFF_VALUE_H_

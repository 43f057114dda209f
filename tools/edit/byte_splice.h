// Replacements of byte spans: applied to a text, composed one edit after
// another into replacements of the first text, and offsets of an edited
// text traced back to the text it was made from.
#ifndef DEVDEF_TOOLS_EDIT_BYTE_SPLICE_H_
#define DEVDEF_TOOLS_EDIT_BYTE_SPLICE_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/edit/edit_engine.h"

// Sorts replacements by their place; false when two of them overlap (two
// insertions at one place are kept in the order given).
bool SortReplacements(std::vector<ByteReplacement>* replacements);

// bytes with the sorted, non-overlapping replacements made.
std::string ApplyReplacements(std::string_view bytes, const std::vector<ByteReplacement>& replacements);

// The replacements that turn a text of originalSize bytes into the result
// of first (which turn it into a middle text) followed by second (in
// offsets of the middle text). Both sorted; the result is sorted, holds no
// empty replacement, and joins those that touch. Linear in the two lists
// and the bytes they insert.
std::vector<ByteReplacement> ComposeReplacements(const std::vector<ByteReplacement>& first, std::uint32_t originalSize,
                                                 const std::vector<ByteReplacement>& second);

// Offsets of an edited text traced back to the text the replacements were
// made on.
class OffsetMap {
 public:
  explicit OffsetMap(const std::vector<ByteReplacement>& replacements);
  // The offset in the old text of the byte at offset of the edited text;
  // a byte that a replacement put there maps to the start of the span it
  // replaced, and *replaced (when given) names that replacement, else -1.
  std::uint32_t ToOld(std::uint32_t offset, long* replaced = nullptr) const;
  // A span of the edited text as a span of the old.
  ByteSpan ToOld(ByteSpan span) const;

 private:
  const std::vector<ByteReplacement>& m_replacements;
  std::vector<std::uint32_t> m_newBegins;  // where each replacement's bytes start in the edited text
};

#endif  // DEVDEF_TOOLS_EDIT_BYTE_SPLICE_H_

#include "tools/edit/byte_splice.h"

#include <algorithm>

bool SortReplacements(std::vector<ByteReplacement>* replacements) {
  std::stable_sort(replacements->begin(), replacements->end(),
                   [](const ByteReplacement& a, const ByteReplacement& b) { return a.span.begin < b.span.begin; });
  for (size_t i = 1; i < replacements->size(); ++i) {
    const ByteSpan before = (*replacements)[i - 1].span;
    const ByteSpan span = (*replacements)[i].span;
    // Two insertions at one place are fine; a span that starts inside the
    // one before is not.
    if (span.begin < before.end) return false;
  }
  return true;
}

std::string ApplyReplacements(std::string_view bytes, const std::vector<ByteReplacement>& replacements) {
  size_t size = bytes.size();
  for (const ByteReplacement& r : replacements) size += r.bytes.size() - (r.span.end - r.span.begin);
  std::string out;
  out.reserve(size);
  std::uint32_t at = 0;
  for (const ByteReplacement& r : replacements) {
    out.append(bytes.data() + at, r.span.begin - at);
    out += r.bytes;
    at = r.span.end;
  }
  out.append(bytes.data() + at, bytes.size() - at);
  return out;
}

namespace {

// A piece of an edited text: bytes of the original [begin, end), or bytes
// of a replacement (text).
struct Piece {
  bool original;
  std::uint32_t begin;
  std::uint32_t end;
  std::string text;
  std::uint32_t Length() const { return original ? end - begin : static_cast<std::uint32_t>(text.size()); }
};

// The first piece of part of piece: its bytes from offset on (keep: how
// many), as a piece of its own.
Piece Part(const Piece& piece, std::uint32_t offset, std::uint32_t keep) {
  if (piece.original) return Piece{true, piece.begin + offset, piece.begin + offset + keep, std::string()};
  return Piece{false, 0, 0, piece.text.substr(offset, keep)};
}

}  // namespace

std::vector<ByteReplacement> ComposeReplacements(const std::vector<ByteReplacement>& first, std::uint32_t originalSize,
                                                 const std::vector<ByteReplacement>& second) {
  // The middle text as pieces.
  std::vector<Piece> middle;
  std::uint32_t at = 0;
  for (const ByteReplacement& r : first) {
    if (r.span.begin > at) middle.push_back(Piece{true, at, r.span.begin, std::string()});
    if (!r.bytes.empty()) middle.push_back(Piece{false, 0, 0, r.bytes});
    at = r.span.end;
  }
  if (originalSize > at) middle.push_back(Piece{true, at, originalSize, std::string()});

  // The last text as pieces: the middle's, cut where second replaces.
  std::vector<Piece> last;
  size_t piece = 0;
  std::uint32_t pieceStart = 0;  // the middle offset of middle[piece]
  std::uint32_t used = 0;        // bytes of middle[piece] already passed
  // Copies (copy) or skips the middle's bytes up to offset.
  auto advance = [&](std::uint32_t offset, bool copy) {
    while (piece < middle.size() && pieceStart + used < offset) {
      const Piece& p = middle[piece];
      const std::uint32_t take = std::min(p.Length() - used, offset - pieceStart - used);
      if (copy) last.push_back(Part(p, used, take));
      used += take;
      if (used == p.Length()) {
        pieceStart += p.Length();
        used = 0;
        ++piece;
      }
    }
  };
  for (const ByteReplacement& r : second) {
    advance(r.span.begin, true);
    advance(r.span.end, false);
    if (!r.bytes.empty()) last.push_back(Piece{false, 0, 0, r.bytes});
  }
  advance(0xFFFFFFFFu, true);

  // The gaps between the original bytes that stay are the replacements.
  std::vector<ByteReplacement> out;
  std::uint32_t kept = 0;  // the end of the original bytes kept so far
  std::string text;
  auto flush = [&](std::uint32_t upTo) {
    if (upTo != kept || !text.empty()) out.push_back(ByteReplacement{ByteSpan{kept, upTo}, std::move(text)});
    text.clear();
  };
  for (Piece& p : last) {
    if (!p.original) {
      text += p.text;
      continue;
    }
    if (p.begin != kept || !text.empty()) flush(p.begin);
    kept = p.end;
  }
  flush(originalSize);
  return out;
}

OffsetMap::OffsetMap(const std::vector<ByteReplacement>& replacements) : m_replacements(replacements) {
  long long delta = 0;
  m_newBegins.reserve(replacements.size());
  for (const ByteReplacement& r : replacements) {
    m_newBegins.push_back(static_cast<std::uint32_t>(r.span.begin + delta));
    delta += static_cast<long long>(r.bytes.size()) - (r.span.end - r.span.begin);
  }
}

std::uint32_t OffsetMap::ToOld(std::uint32_t offset, long* replaced) const {
  if (replaced != nullptr) *replaced = -1;
  // The last replacement that starts at or in front of offset.
  const auto it = std::upper_bound(m_newBegins.begin(), m_newBegins.end(), offset);
  if (it == m_newBegins.begin()) return offset;
  const size_t i = static_cast<size_t>(it - m_newBegins.begin()) - 1;
  const ByteReplacement& r = m_replacements[i];
  const std::uint32_t newEnd = m_newBegins[i] + static_cast<std::uint32_t>(r.bytes.size());
  if (offset < newEnd) {
    if (replaced != nullptr) *replaced = static_cast<long>(i);
    return r.span.begin;
  }
  return r.span.end + (offset - newEnd);
}

ByteSpan OffsetMap::ToOld(ByteSpan span) const {
  const std::uint32_t begin = ToOld(span.begin);
  long replaced = -1;
  std::uint32_t end = span.end > span.begin ? ToOld(span.end - 1, &replaced) : begin;
  if (span.end > span.begin) end = replaced >= 0 ? m_replacements[static_cast<size_t>(replaced)].span.end : end + 1;
  return ByteSpan{begin, std::max(begin, end)};
}

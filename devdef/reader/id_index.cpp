#include "devdef/reader/id_index.h"

#include <algorithm>

namespace {

// A 32-bit id lies in one of 2^26 words of 64 bits.
const std::uint64_t kWordLimit = std::uint64_t{1} << 26;
// The bitmap may always take this many words beyond one word per id.
const std::uint64_t kFreeWords = 1024;

}  // namespace

bool DevdefIdIndex::Add(DWORD nId) { return m_bBitmap ? AddToBitmap(nId) : AddToTable(nId); }

bool DevdefIdIndex::AddToBitmap(DWORD nId) {
  const std::uint64_t id = nId;
  if (m_bits.empty() || id < m_nBase || id - m_nBase >= 64 * m_bits.size()) {
    if (!WidenBitmap(nId)) {
      MoveToTable();
      return AddToTable(nId);
    }
  }
  const std::uint64_t bit = id - m_nBase;
  std::uint64_t& word = m_bits[static_cast<size_t>(bit >> 6)];
  const std::uint64_t mask = std::uint64_t{1} << (bit & 63);
  if ((word & mask) != 0) return true;
  word |= mask;
  ++m_nCount;
  return false;
}

bool DevdefIdIndex::WidenBitmap(DWORD nId) {
  const std::uint64_t idWord = nId >> 6;
  const std::uint64_t size = m_bits.size();
  const std::uint64_t baseWord = m_nBase >> 6;
  const std::uint64_t endWord = baseWord + size;
  // The tightest range that holds the id, and one at least twice as large
  // (grown towards the id), so that ids that keep rising or falling widen
  // the bitmap only now and then.
  std::uint64_t lo = size == 0 ? idWord : std::min(idWord, baseWord);
  std::uint64_t hi = size == 0 ? idWord + 1 : std::max(idWord + 1, endWord);
  std::uint64_t roomyLo = lo;
  std::uint64_t roomyHi = hi;
  if (size > 0 && idWord < baseWord) {
    roomyLo = std::min(lo, baseWord - std::min(baseWord, size));
  } else if (size > 0) {
    roomyHi = std::min(std::max(hi, endWord + size), kWordLimit);
  }
  const std::uint64_t allowed = m_nCount + 1 + kFreeWords;
  if (roomyHi - roomyLo <= allowed) {
    lo = roomyLo;
    hi = roomyHi;
  } else if (hi - lo > allowed) {
    return false;
  }
  std::vector<std::uint64_t> bits(static_cast<size_t>(hi - lo), 0);
  for (std::uint64_t i = 0; i < size; ++i)
    bits[static_cast<size_t>(baseWord - lo + i)] = m_bits[static_cast<size_t>(i)];
  m_bits.swap(bits);
  m_nBase = lo << 6;
  return true;
}

void DevdefIdIndex::MoveToTable() {
  std::vector<std::uint64_t> bits;
  bits.swap(m_bits);
  m_bBitmap = false;
  m_nCount = 0;
  for (size_t w = 0; w < bits.size(); ++w) {
    for (std::uint64_t word = bits[w]; word != 0; word &= word - 1) {
      int bit = 0;
      while (((word >> bit) & 1) == 0) ++bit;
      AddToTable(static_cast<DWORD>(m_nBase + 64 * w + static_cast<std::uint64_t>(bit)));
    }
  }
}

size_t DevdefIdIndex::SlotOf(DWORD nId) const {
  // Runs of 16 ids keep their order in neighbouring slots (a cache line),
  // while the runs are spread by Fibonacci hashing. The table size is a
  // power of two.
  const std::uint64_t run = static_cast<std::uint64_t>(nId >> 4) * 0x9E3779B97F4A7C15ull;
  return static_cast<size_t>(((run >> 32) << 4) | (nId & 15u)) & (m_slots.size() - 1);
}

bool DevdefIdIndex::AddToTable(DWORD nId) {
  if (nId == 0) {
    const bool had = m_bHasZero;
    if (!had) ++m_nCount;
    m_bHasZero = true;
    return had;
  }
  if ((m_nCount + 1) * 2 > m_slots.size()) GrowTable();
  for (size_t slot = SlotOf(nId);; slot = (slot + 1) & (m_slots.size() - 1)) {
    if (m_slots[slot] == nId) return true;
    if (m_slots[slot] == 0) {
      m_slots[slot] = nId;
      ++m_nCount;
      return false;
    }
  }
}

void DevdefIdIndex::GrowTable() {
  std::vector<DWORD> old(m_slots.empty() ? 1024 : m_slots.size() * 2, 0);
  old.swap(m_slots);
  // The ids go in again; the doubled table never grows on the way.
  m_nCount = m_bHasZero ? 1 : 0;
  for (DWORD id : old) {
    if (id != 0) AddToTable(id);
  }
}

#include "tools/lsp/block_reading.h"

#include <algorithm>
#include <string>

namespace {

// Whether the message of a form names a line by its number, which the
// small text counts differently from the file.
bool NamesALine(const MessageArgs& says) {
  switch (says.form) {
    case MessageForm::kNoManufacturer:
    case MessageForm::kLostFirstBlockLine:
    case MessageForm::kNoBlock:
    case MessageForm::kSecondVersion:
    case MessageForm::kIdUsedAgain:
    case MessageForm::kIdAlreadyUsed:
      return true;
    case MessageForm::kListNotRead:
    case MessageForm::kHousingNotRead:
      return says.b == kBraceNoOpenClosed;
    default:
      return false;
  }
}

bool Within(ByteSpan span, size_t begin, size_t end) { return span.begin >= begin && span.end <= end; }
bool Meets(ByteSpan span, size_t begin, size_t end) {
  return span.begin < end && (span.end > begin || (span.begin == span.end && span.begin >= begin));
}

// Whether two findings say the same of the same places, related places
// included, each in its own findings.
bool SameFinding(const Findings& xs, const Finding& x, const Findings& ys, const Finding& y) {
  if (x.kind != y.kind || x.severity != y.severity || x.span != y.span || !(x.says == y.says) || x.count != y.count ||
      x.after != y.after || x.relatedCount != y.relatedCount) {
    return false;
  }
  const RelatedPlace* r = ys.RelatedBegin(y);
  for (const RelatedPlace* p = xs.RelatedBegin(x); p != xs.RelatedEnd(x); ++p, ++r) {
    if (p->span != r->span || !(p->says == r->says) || p->cause != r->cause) return false;
  }
  return true;
}

// The ids of a device's definitions, in order.
bool SameIds(const DEVICE_ITEM& x, const DEVICE_ITEM& y) {
  if (x.m_DefArray.GetSize() != y.m_DefArray.GetSize()) return false;
  for (int i = 0; i < x.m_DefArray.GetSize(); ++i) {
    if (x.m_DefArray[i].m_DefID != y.m_DefArray[i].m_DefID) return false;
  }
  return true;
}

// A line with the first byte of its line end: [start, end).
struct Piece {
  size_t begin = 0;
  size_t end = 0;
};

bool WholeLine(std::string_view bytes, size_t offset, Piece* line) {
  line->begin = LineStartOf(bytes, offset);
  line->end = LineEndFrom(bytes, offset);
  if (line->end >= bytes.size()) return false;
  ++line->end;
  return true;
}

}  // namespace

bool ReadBlockAgain(const Analysis& base, const BlockEdits& edits, std::string_view bytes, const SourceMap& map,
                    const AnalysisOptions& options, BlockReading* reading) {
  if (!edits.InOneBlock() || !base.Usable() || options.checkIds || base.Kinds().empty()) return false;
  if (map.LineCount() != base.Map().LineCount()) return false;
  const std::string_view old = base.Bytes();
  const DeviceRecord& device = base.Devices()[edits.Device()];
  const ManufacturerRecord& manufacturer = base.Manufacturers()[device.manufacturer];
  const KindRecord& kind = base.Kinds()[manufacturer.kind];
  // The device must go to its manufacturer under the last kind, as it does
  // in the small text.
  const std::vector<KindRecord>& kinds = base.Kinds();
  const auto lastKind = std::upper_bound(kinds.begin(), kinds.end(), device.name.begin,
                                         [](size_t at, const KindRecord& k) { return at < k.name.begin; });
  if (lastKind == kinds.begin() || static_cast<std::uint32_t>(lastKind - 1 - kinds.begin()) != manufacturer.kind) {
    return false;
  }
  // The pieces, in the base's offsets (all in front of the edits, so the
  // same in the text now), and the device's lines.
  const size_t header = LineStartOf(old, kinds.front().name.begin);
  Piece kindLine;
  Piece manufacturerLine;
  Piece deviceLines;
  if (!WholeLine(old, kind.name.begin, &kindLine) || !WholeLine(old, manufacturer.name.begin, &manufacturerLine) ||
      !WholeLine(old, device.block.end, &deviceLines)) {
    return false;
  }
  deviceLines.begin = LineStartOf(old, device.name.begin);
  if (deviceLines.begin != device.name.begin || header > kindLine.begin || kindLine.end > manufacturerLine.begin ||
      manufacturerLine.end > deviceLines.begin) {
    return false;
  }
  const long long delta = edits.Delta();
  const size_t deviceEnd = static_cast<size_t>(static_cast<long long>(deviceLines.end) + delta);

  // The base's findings: those in front of the device's lines and behind
  // them stay; none of them may reach into those lines.
  const Findings& findings = base.FindingsOf();
  const std::vector<Finding>& list = findings.List();
  auto byBegin = [](const Finding& f, size_t at) { return f.span.begin < at; };
  const size_t before = static_cast<size_t>(
      std::lower_bound(list.begin(), list.end(), deviceLines.begin, byBegin) - list.begin());
  const size_t behind = static_cast<size_t>(
      std::lower_bound(list.begin() + static_cast<long>(before), list.end(), deviceLines.end, byBegin) - list.begin());
  for (size_t i = 0; i < list.size(); ++i) {
    const Finding& f = list[i];
    const bool inside = i >= before && i < behind;
    if (inside ? (f.span.end > deviceLines.end || f.kind == FindingKind::kDuplicateId)
               : Meets(f.span, deviceLines.begin, deviceLines.end)) {
      return false;
    }
    if (inside) continue;
    for (const RelatedPlace* p = findings.RelatedBegin(f); p != findings.RelatedEnd(f); ++p) {
      if (Meets(p->span, deviceLines.begin, deviceLines.end)) return false;
    }
  }

  // The small text.
  std::string text;
  text.reserve(header + (kindLine.end - kindLine.begin) + (manufacturerLine.end - manufacturerLine.begin) +
               (deviceEnd - deviceLines.begin));
  text.append(bytes.data(), header);
  const size_t kindAt = text.size();
  text.append(bytes.data() + kindLine.begin, kindLine.end - kindLine.begin);
  const size_t manufacturerAt = text.size();
  text.append(bytes.data() + manufacturerLine.begin, manufacturerLine.end - manufacturerLine.begin);
  const size_t deviceAt = text.size();
  text.append(bytes.data() + deviceLines.begin, deviceEnd - deviceLines.begin);
  const size_t size = text.size();

  AnalysisOptions same = options;
  same.layout = base.Layout();
  AnalysisPtr small = ReadLocked(base.Path(), std::move(text), same);
  const Analysis& s = *small;
  if (!s.Usable() || s.Kinds().size() != 1 || s.Manufacturers().size() != 1 || s.Devices().size() != 1) return false;
  const DeviceRecord& again = s.Devices().front();
  const long long shift = static_cast<long long>(deviceAt) - static_cast<long long>(deviceLines.begin);
  if (s.Kinds().front().name.begin != kind.name.begin - kindLine.begin + kindAt ||
      s.Manufacturers().front().name.begin != manufacturer.name.begin - manufacturerLine.begin + manufacturerAt ||
      again.name.begin != device.name.begin + shift || !again.closed ||
      static_cast<long long>(again.block.end) != device.block.end + shift + delta ||
      !SameIds(*device.device, *again.device) || !(s.VersionLine() == base.VersionLine())) {
    return false;
  }
  for (int l = 0; l < 3; ++l) {
    if (s.ListEntries(l).size() != base.ListEntries(l).size()) return false;
  }

  // Its findings: those in front of the first kind are the base's; those of
  // the device's lines take the place of the base's.
  const Findings& found = s.FindingsOf();
  const std::vector<Finding>& fresh = found.List();
  size_t firstKind = 0;
  while (firstKind < fresh.size() && fresh[firstKind].span.begin < header) ++firstKind;
  size_t baseHeader = 0;
  while (baseHeader < list.size() && list[baseHeader].span.begin < header) ++baseHeader;
  if (firstKind != baseHeader) return false;
  for (size_t i = 0; i < firstKind; ++i) {
    if (!SameFinding(found, fresh[i], findings, list[i])) return false;
  }
  size_t first = firstKind;
  while (first < fresh.size() && fresh[first].span.begin < deviceAt) {
    if (fresh[first].span.end > deviceAt) return false;
    ++first;
  }
  for (size_t i = first; i < fresh.size(); ++i) {
    const Finding& f = fresh[i];
    if (!Within(f.span, deviceAt, size) || f.kind == FindingKind::kDuplicateId || f.kind == FindingKind::kMisread ||
        f.after != kNoRecord || NamesALine(f.says)) {
      return false;
    }
    for (const RelatedPlace* p = found.RelatedBegin(f); p != found.RelatedEnd(f); ++p) {
      if (!Within(p->span, deviceAt, size) || NamesALine(p->says)) return false;
    }
  }

  reading->lineShift = map.PointOf(deviceLines.begin).line - s.Map().PointOf(deviceAt).line;
  reading->first = static_cast<std::uint32_t>(first);
  reading->count = static_cast<std::uint32_t>(fresh.size() - first);
  reading->before = static_cast<std::uint32_t>(before);
  reading->behind = static_cast<std::uint32_t>(behind);
  reading->analysis = std::move(small);
  return true;
}

#include "tools/diagnostics/finding_text.h"

#include "tools/text/text_encoding.h"

std::string FindingMessage(const Analysis& analysis, const Findings& findings, const ShownFinding& shown,
                           ColumnUnit unit) {
  return ShownText(analysis.MessageOf(*shown.finding, findings)) + RepeatSuffix(analysis, shown, unit);
}

std::string RepeatSuffix(const Analysis& analysis, const ShownFinding& shown, ColumnUnit unit) {
  if (shown.count <= 1) return std::string();
  std::string suffix = " (" + std::to_string(shown.count) + " times";
  if (shown.Spread()) {
    suffix += ", columns " + std::to_string(ShownPoint(analysis, shown.finding->span.begin, unit).column) + "-" +
              std::to_string(ShownPoint(analysis, shown.last.begin, unit).column);
  }
  return suffix + ")";
}

std::string RelatedMessage(const Analysis& analysis, const Findings& findings, const RelatedPlace& place) {
  return ShownText(analysis.MessageOf(place.says, findings));
}

TextPoint ShownPoint(const Analysis& analysis, size_t offset, ColumnUnit unit) {
  TextPoint point = analysis.Map().PointOf(offset);
  if (point.line < 1 || point.column <= 1) return point;
  const size_t lineStart = offset - static_cast<size_t>(point.column - 1);
  point.column = ColumnOf(ShownEncoding(), analysis.Bytes().substr(lineStart, offset - lineStart), unit);
  return point;
}

TextRange ShownRange(const Analysis& analysis, ByteSpan span, ColumnUnit unit) {
  TextRange range = analysis.Map().RangeOf(span);
  range.start = ShownPoint(analysis, span.begin, unit);
  range.stop = ShownPoint(analysis, span.end, unit);
  return range;
}

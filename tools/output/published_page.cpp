#include "tools/output/published_page.h"

#include <string>
#include <string_view>

#include "tools/text/text_encoding.h"

namespace {

void Escaped(OutputBuffer& out, std::string_view text) {
  for (const char c : text) {
    switch (c) {
      case '&':
        out.Append("&amp;");
        break;
      case '<':
        out.Append("&lt;");
        break;
      case '>':
        out.Append("&gt;");
        break;
      case '"':
        out.Append("&quot;");
        break;
      default:
        out.Append(c);
    }
  }
}

void Cell(OutputBuffer& out, std::string_view text) {
  out.Append("<td>");
  Escaped(out, text);
  out.Append("</td>");
}

}  // namespace

// A plain table of the devices, one row each with the ids of the
// definitions shown.
void WritePublishedPage(OutputBuffer& out, const Analysis& analysis, const PublishOptions& options) {
  const std::string title = options.title.empty() ? options.file : options.title;
  out.Append("<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>");
  Escaped(out, title);
  out.Append("</title></head><body>\n<table>\n<tr><th>kind</th><th>manufacturer</th><th>device</th><th>ids</th>"
             "<th>line</th></tr>\n");
  for (const DeviceRecord& record : analysis.Devices()) {
    const DEVICE_ITEM& device = *record.device;
    const ManufacturerRecord& manufacturer = analysis.Manufacturers()[record.manufacturer];
    std::string ids;
    for (int i = 0; i < device.m_DefArray.GetSize(); ++i) {
      if (options.visibleOnly && device.m_DefArray[i].IsHidden()) continue;
      if (!ids.empty()) ids += ' ';
      ids += std::to_string(device.m_DefArray[i].m_DefID);
      if (device.m_DefArray[i].IsHidden()) ids += " (hidden)";
    }
    out.Append("<tr>");
    Cell(out, ShownText(analysis.Kinds()[manufacturer.kind].kind->m_Name));
    Cell(out, ShownText(manufacturer.manufacturer->m_Name));
    Cell(out, ShownText(device.m_DeviceName));
    Cell(out, ids);
    Cell(out, std::to_string(analysis.Map().PointOf(record.name.begin).line));
    out.Append("</tr>\n");
  }
  out.Append("</table>\n</body></html>\n");
}

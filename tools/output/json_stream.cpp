#include "tools/output/json_stream.h"

#include <utility>

using nlohmann::json;

namespace {

std::string Dump(const json& value) { return value.dump(2, ' ', false, json::error_handler_t::replace); }

}  // namespace

void JsonStream::Put(const std::string& text, size_t depth) {
  // A text dumped at the top is indented for depth: its line ends are the
  // only ones in it, since strings hold theirs escaped.
  const std::string indent(2 * depth, ' ');
  size_t from = 0;
  for (size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', from)) {
    std::fwrite(text.data() + from, 1, end + 1 - from, out_);
    std::fputs(indent.c_str(), out_);
    from = end + 1;
  }
  std::fwrite(text.data() + from, 1, text.size() - from, out_);
}

void JsonStream::StartElement() {
  if (open_.empty()) return;
  Open& array = open_.back();
  std::fputs(array.empty ? "\n" : ",\n", out_);
  array.empty = false;
  // The array's elements stand one level deeper than its key, which stands
  // one level deeper than its object.
  const std::string indent(2 * (2 * open_.size()), ' ');
  std::fputs(indent.c_str(), out_);
}

void JsonStream::OpenObject(json object, const char* key) {
  object[key] = json::array();
  const std::string text = Dump(object);
  // The key stands at the object's first level; keys are unique there and
  // the same text inside a string would have its quotes escaped.
  const std::string marker = "\n  \"" + std::string(key) + "\": []";
  const size_t at = text.find(marker);
  const size_t depth = 2 * open_.size();
  StartElement();
  Put(text.substr(0, at + marker.size() - 1), depth);
  open_.push_back(Open{text.substr(at + marker.size()), true});
}

void JsonStream::Element(const json& value) {
  StartElement();
  Put(Dump(value), 2 * open_.size());
}

void JsonStream::CloseObject() {
  Open array = std::move(open_.back());
  open_.pop_back();
  const size_t depth = 2 * open_.size();
  if (!array.empty) {
    std::fputs("\n", out_);
    std::fputs(std::string(2 * (depth + 1), ' ').c_str(), out_);
  }
  std::fputs("]", out_);
  Put(array.rest, depth);
  if (open_.empty()) std::fputs("\n", out_);
}

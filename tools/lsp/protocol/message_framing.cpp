#include "tools/lsp/protocol/message_framing.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr size_t kBufferSize = 65536;
// Header lines are short; of a longer line the last this many bytes are
// kept, where a header that follows garbage stands.
constexpr size_t kMaxLine = 4096;
constexpr char kContentLength[] = "content-length";

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool EqualsIgnoringCase(const std::string& text, size_t at, const char* word) {
  const size_t length = std::strlen(word);
  if (at + length > text.size()) return false;
  for (size_t i = 0; i < length; ++i) {
    if (Lower(text[at + i]) != word[i]) return false;
  }
  return true;
}

std::string Trim(const std::string& text, size_t begin, size_t end) {
  while (begin < end && (text[begin] == ' ' || text[begin] == '\t')) ++begin;
  while (end > begin && (text[end - 1] == ' ' || text[end - 1] == '\t')) --end;
  return text.substr(begin, end - begin);
}

// The place of the last "Content-Length" followed by blanks and ":" in the
// line, or npos; *colon is the ":".
size_t FindContentLength(const std::string& line, size_t* colon) {
  const size_t length = sizeof kContentLength - 1;
  for (size_t at = line.size() >= length ? line.size() - length + 1 : 0; at-- > 0;) {
    if (!EqualsIgnoringCase(line, at, kContentLength)) continue;
    size_t behind = at + length;
    while (behind < line.size() && (line[behind] == ' ' || line[behind] == '\t')) ++behind;
    if (behind < line.size() && line[behind] == ':') {
      *colon = behind;
      return at;
    }
  }
  return std::string::npos;
}

// A header's value as a length; false when it is no decimal number or too
// long to be one.
bool ParseLength(const std::string& value, size_t* length) {
  if (value.empty() || value.size() > 18) return false;
  size_t number = 0;
  for (char c : value) {
    if (c < '0' || c > '9') return false;
    number = number * 10 + static_cast<size_t>(c - '0');
  }
  *length = number;
  return true;
}

bool IsToken(const std::string& name) {
  if (name.empty()) return false;
  for (char c : name) {
    const bool ok = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
    if (!ok) return false;
  }
  return true;
}

}  // namespace

StringByteSource::StringByteSource(std::string bytes, size_t chunk)
    : m_bytes(std::move(bytes)), m_chunk(chunk > 0 ? chunk : 1) {}

size_t StringByteSource::Read(char* buffer, size_t size) {
  const size_t count = std::min({size, m_chunk, m_bytes.size() - m_at});
  std::memcpy(buffer, m_bytes.data() + m_at, count);
  m_at += count;
  return count;
}

FrameReader::FrameReader(ByteSource& source) : m_source(source), m_buffer(kBufferSize) {}

bool FrameReader::Fill() {
  if (m_begin < m_end) return true;
  if (m_ended) return false;
  m_begin = 0;
  m_end = m_source.Read(m_buffer.data(), m_buffer.size());
  if (m_end == 0) m_ended = true;
  return m_end > 0;
}

bool FrameReader::ReadLine(bool* cut) {
  m_line.clear();
  *cut = false;
  bool any = false;
  while (Fill()) {
    any = true;
    const char* from = m_buffer.data() + m_begin;
    const size_t available = m_end - m_begin;
    const void* newline = std::memchr(from, '\n', available);
    const size_t take = newline != nullptr ? static_cast<size_t>(static_cast<const char*>(newline) - from) : available;
    m_line.append(from, take);
    m_begin += newline != nullptr ? take + 1 : take;
    if (m_line.size() > 2 * kMaxLine) {
      m_line.erase(0, m_line.size() - kMaxLine);
      *cut = true;
    }
    if (newline != nullptr) {
      if (!m_line.empty() && m_line.back() == '\r') m_line.pop_back();
      return true;
    }
  }
  return any;
}

bool FrameReader::ReadBody(size_t size, std::string* out) {
  if (out != nullptr) out->reserve(std::min<size_t>(size, size_t{1} << 24));
  while (size > 0) {
    if (!Fill()) return false;
    const size_t take = std::min(size, m_end - m_begin);
    if (out != nullptr) out->append(m_buffer.data() + m_begin, take);
    m_begin += take;
    size -= take;
  }
  return true;
}

FrameReader::Result FrameReader::Next(std::string* body) {
  for (;;) {
    bool cut = false;
    if (!ReadLine(&cut)) {
      if (!m_inHeader) return Result::kEnd;
      m_inHeader = false;
      *body = "the stream ended inside a header block";
      return Result::kProblem;
    }
    if (m_line.empty()) {
      if (!m_inHeader) continue;  // blank lines between messages
      m_inHeader = false;
      const size_t length = m_length;
      m_length = std::string::npos;
      if (length == std::string::npos) {
        *body = "a header block without Content-Length: the message behind it is passed over";
        return Result::kProblem;
      }
      if (length > kMaxMessageBody) {
        ReadBody(length, nullptr);
        *body = "a message of " + std::to_string(length) + " bytes, more than the server takes: passed over";
        return Result::kProblem;
      }
      body->clear();
      if (!ReadBody(length, body)) {
        *body = "the stream ended inside a message body";
        return Result::kProblem;
      }
      return Result::kMessage;
    }
    m_inHeader = true;
    size_t colon = 0;
    const size_t header = FindContentLength(m_line, &colon);
    if (header != std::string::npos) {
      size_t length = 0;
      if (!ParseLength(Trim(m_line, colon + 1, m_line.size()), &length)) {
        *body = "a Content-Length that is no number: '" + m_line.substr(0, 80) + "'";
        return Result::kProblem;
      }
      m_length = length;
      if (header > 0 || cut) {
        *body = "bytes that are no header in front of Content-Length: passed over";
        return Result::kProblem;
      }
      continue;
    }
    colon = m_line.find(':');
    if (cut || colon == std::string::npos || !IsToken(Trim(m_line, 0, colon))) {
      *body = "a line that is no header: '" + m_line.substr(0, 80) + "' is passed over";
      return Result::kProblem;
    }
    // Content-Type and any other header: the body is UTF-8 JSON whatever
    // they say.
  }
}

std::string FrameHeader(size_t bodySize) { return "Content-Length: " + std::to_string(bodySize) + "\r\n\r\n"; }

std::string FrameMessage(const std::string& body) {
  std::string message = FrameHeader(body.size());
  message.reserve(message.size() + body.size());
  message += body;
  return message;
}

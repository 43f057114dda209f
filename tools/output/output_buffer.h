// What the tool prints, gathered into blocks of 64 KB in front of a stream:
// one write per full block instead of one per piece, and numbers turned
// into digits without a format string. The stream's own error state still
// records a failed write, so the command's output status
// (tools/text/output_status.h) sees it as before.
#ifndef DEVDEF_TOOLS_OUTPUT_OUTPUT_BUFFER_H_
#define DEVDEF_TOOLS_OUTPUT_OUTPUT_BUFFER_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

class OutputBuffer {
 public:
  static constexpr size_t kSize = 64 * 1024;

  explicit OutputBuffer(std::FILE* out);
  // Gathers into text instead, which a full block is appended to.
  explicit OutputBuffer(std::string* text);
  // Hands what is left to the stream.
  ~OutputBuffer();
  OutputBuffer(const OutputBuffer&) = delete;
  OutputBuffer& operator=(const OutputBuffer&) = delete;

  void Append(const char* bytes, size_t length) {
    if (length <= kSize - used_) {
      std::memcpy(data_.get() + used_, bytes, length);
      used_ += length;
    } else {
      AppendLong(bytes, length);
    }
  }
  void Append(std::string_view text) { Append(text.data(), text.size()); }
  void Append(char c) {
    if (used_ == kSize) Flush();
    data_[used_++] = c;
  }
  // count copies of c.
  void AppendRepeated(char c, size_t count);
  // Decimal digits, a minus sign in front of a negative number.
  void AppendUnsigned(std::uint64_t value);
  void AppendSigned(std::int64_t value);

  // Hands the bytes gathered so far to the stream (not flushing the
  // stream itself): before anything else prints to it.
  void Flush();

 private:
  void AppendLong(const char* bytes, size_t length);

  std::FILE* out_ = nullptr;
  std::string* text_ = nullptr;
  std::unique_ptr<char[]> data_;
  size_t used_ = 0;
};

#endif  // DEVDEF_TOOLS_OUTPUT_OUTPUT_BUFFER_H_

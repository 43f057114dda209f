#include "tools/output/output_buffer.h"

OutputBuffer::OutputBuffer(std::FILE* out) : out_(out), data_(new char[kSize]) {}

OutputBuffer::OutputBuffer(std::string* text) : text_(text), data_(new char[kSize]) {}

OutputBuffer::~OutputBuffer() { Flush(); }

void OutputBuffer::Flush() {
  if (used_ == 0) return;
  if (text_ != nullptr) {
    text_->append(data_.get(), used_);
    used_ = 0;
    return;
  }
  // A short write sets the stream's error indicator, which the output
  // status reads; the bytes are let go either way, as stdio does.
  std::fwrite(data_.get(), 1, used_, out_);
  used_ = 0;
}

void OutputBuffer::AppendLong(const char* bytes, size_t length) {
  while (length > 0) {
    if (used_ == kSize) Flush();
    const size_t part = length < kSize - used_ ? length : kSize - used_;
    std::memcpy(data_.get() + used_, bytes, part);
    used_ += part;
    bytes += part;
    length -= part;
  }
}

void OutputBuffer::AppendRepeated(char c, size_t count) {
  while (count > 0) {
    if (used_ == kSize) Flush();
    const size_t part = count < kSize - used_ ? count : kSize - used_;
    std::memset(data_.get() + used_, c, part);
    used_ += part;
    count -= part;
  }
}

void OutputBuffer::AppendUnsigned(std::uint64_t value) {
  char digits[20];
  size_t at = sizeof digits;
  do {
    digits[--at] = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value != 0);
  Append(digits + at, sizeof digits - at);
}

void OutputBuffer::AppendSigned(std::int64_t value) {
  if (value >= 0) {
    AppendUnsigned(static_cast<std::uint64_t>(value));
    return;
  }
  Append('-');
  // The magnitude of the most negative value does not fit in its type.
  AppendUnsigned(static_cast<std::uint64_t>(-(value + 1)) + 1);
}

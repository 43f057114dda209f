// The base protocol of the language server: messages framed by a header
// block ("Content-Length: N", other headers, an empty line) and N bytes of
// body. The reader never gives up on its stream: a line that is no header
// is reported and passed over, and a "Content-Length" header found at the
// end of such a line starts the next message, so a wrong length costs the
// messages it spoils and no more.
#ifndef DEVDEF_TOOLS_LSP_PROTOCOL_MESSAGE_FRAMING_H_
#define DEVDEF_TOOLS_LSP_PROTOCOL_MESSAGE_FRAMING_H_

#include <cstddef>
#include <string>
#include <vector>

// Where the reader gets its bytes from.
class ByteSource {
 public:
  virtual ~ByteSource() = default;
  // Reads up to size bytes into buffer; 0 at the end of the stream.
  virtual size_t Read(char* buffer, size_t size) = 0;
};

// Bytes held in memory, handed out in pieces of at most chunk bytes (so that
// tests and fuzzing see headers and bodies split anywhere).
class StringByteSource : public ByteSource {
 public:
  explicit StringByteSource(std::string bytes, size_t chunk = 65536);
  size_t Read(char* buffer, size_t size) override;

 private:
  std::string m_bytes;
  size_t m_at = 0;
  size_t m_chunk;
};

// The largest body the reader takes; a longer one is read past and reported.
constexpr size_t kMaxMessageBody = size_t{1} << 30;

class FrameReader {
 public:
  enum class Result { kMessage, kProblem, kEnd };

  // source must outlive the reader.
  explicit FrameReader(ByteSource& source);

  // The next message: kMessage with its body in *body, kProblem with what
  // was wrong with the stream in *body (reading goes on behind it), or kEnd
  // when the stream ended.
  Result Next(std::string* body);

 private:
  // One header line without its line end into m_line; false at the end.
  // A line longer than any header is cut, the rest passed over.
  bool ReadLine(bool* cut);
  bool Fill();
  // Moves up to size bytes of the body into out (or drops them when out is
  // null); false when the stream ended first.
  bool ReadBody(size_t size, std::string* out);

  ByteSource& m_source;
  std::vector<char> m_buffer;
  size_t m_begin = 0;
  size_t m_end = 0;
  std::string m_line;
  bool m_ended = false;
  // Inside a header block, with the length it gave so far (npos: none).
  bool m_inHeader = false;
  size_t m_length = std::string::npos;
};

// The header block of a body of bodySize bytes.
std::string FrameHeader(size_t bodySize);
// A message's body with its header block, ready to be written.
std::string FrameMessage(const std::string& body);

#endif  // DEVDEF_TOOLS_LSP_PROTOCOL_MESSAGE_FRAMING_H_

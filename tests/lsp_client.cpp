#include "tests/lsp_client.h"

#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <sstream>

#include "tools/lsp/server_loop.h"
#include "tools/text/buffer_encoding.h"

using nlohmann::json;

namespace {

// The server's output, waited for at most 10 s at a time.
class PipeSource : public ByteSource {
 public:
  explicit PipeSource(int fd) : m_fd(fd) {}
  size_t Read(char* buffer, size_t size) override {
    pollfd waiting = {m_fd, POLLIN, 0};
    if (::poll(&waiting, 1, 10000) <= 0) return 0;
    const ssize_t got = ::read(m_fd, buffer, size);
    return got > 0 ? static_cast<size_t>(got) : 0;
  }

 private:
  int m_fd;
};

json Message(const std::string& method, const json& params) {
  return json{{"jsonrpc", "2.0"}, {"method", method}, {"params", params}};
}

}  // namespace

std::string ExampleText(const char* name) {
  std::ifstream in(std::string(DEVDEF_EXAMPLES_DIR) + "/" + name, std::ios::binary);
  std::stringstream bytes;
  bytes << in.rdbuf();
  return DecodeBuffer(BufferEncoding::kWindows1252, bytes.str());
}

DirectClient::DirectClient(const json& initializeParams)
    : server(ServerSettings(), "test", [this](const std::string& body) { sent.push_back(json::parse(body)); }) {
  Request("initialize", initializeParams);
  Notify("initialized", json::object());
}

json DirectClient::Request(const std::string& method, const json& params) {
  const int id = m_nextId++;
  json message = Message(method, params);
  message["id"] = id;
  server.Handle(message);
  for (const json& reply : sent) {
    if (reply.contains("id") && reply["id"] == id) return reply;
  }
  return nullptr;
}

void DirectClient::Notify(const std::string& method, const json& params) {
  json message = Message(method, params);
  server.Handle(message);
}

void DirectClient::Open(const std::string& uri, const std::string& text, int version) {
  Notify("textDocument/didOpen",
         {{"textDocument", {{"uri", uri}, {"languageId", "devdef"}, {"version", version}, {"text", text}}}});
}

std::vector<json> DirectClient::Publish(const LanguageServer::ChangeWaiting& waiting) {
  const size_t before = sent.size();
  server.PublishDue(waiting);
  return std::vector<json>(sent.begin() + static_cast<long>(before), sent.end());
}

json DirectClient::At(const std::string& method, const std::string& uri, long line, long character) {
  return Request(method, {{"textDocument", {{"uri", uri}}},
                          {"position", {{"line", line}, {"character", character}}},
                          {"context", {{"includeDeclaration", true}}}})["result"];
}

PipeClient::PipeClient() {
  std::signal(SIGPIPE, SIG_IGN);
  if (::pipe(m_in) != 0 || ::pipe(m_out) != 0) std::abort();
  m_source.reset(new PipeSource(m_out[0]));
  m_reader.reset(new FrameReader(*m_source));
  m_thread = std::thread([this] {
    m_status = RunLanguageServer(m_in[0], m_out[1], ServerSettings(), "test");
    ::close(m_out[1]);
  });
}

PipeClient::~PipeClient() {
  if (m_in[1] >= 0) ::close(m_in[1]);
  if (m_thread.joinable()) m_thread.join();
  ::close(m_in[0]);
  ::close(m_out[0]);
}

void PipeClient::Write(const std::string& bytes) {
  size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t put = ::write(m_in[1], bytes.data() + written, bytes.size() - written);
    if (put <= 0) return;
    written += static_cast<size_t>(put);
  }
}

void PipeClient::Send(const json& message) { Write(FrameMessage(message.dump())); }

json PipeClient::Receive() {
  std::string body;
  for (;;) {
    const FrameReader::Result result = m_reader->Next(&body);
    if (result == FrameReader::Result::kEnd) return nullptr;
    if (result == FrameReader::Result::kMessage) return json::parse(body, nullptr, false);
  }
}

int PipeClient::CloseAndWait() {
  ::close(m_in[1]);
  m_in[1] = -1;
  return Wait();
}

int PipeClient::Wait() {
  if (m_thread.joinable()) m_thread.join();
  return m_status;
}

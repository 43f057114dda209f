// The language server's protocol layer: framing that survives a damaged
// stream, JSON-RPC errors for every kind of bad message, the lifecycle, and
// the end of the server on exit and at the end of its input.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/lsp_client.h"
#include "tools/lsp/protocol/message_framing.h"

using nlohmann::json;

namespace {

// Every message and problem the reader finds in the bytes, handed to it a
// byte at a time: "M:" + body or "P" for a problem.
std::vector<std::string> Frames(const std::string& bytes) {
  StringByteSource source(bytes, 1);
  FrameReader reader(source);
  std::vector<std::string> out;
  std::string body;
  for (FrameReader::Result result; (result = reader.Next(&body)) != FrameReader::Result::kEnd;) {
    out.push_back(result == FrameReader::Result::kMessage ? "M:" + body : "P");
  }
  return out;
}

int ErrorCode(const json& reply) { return reply.contains("error") ? reply["error"]["code"].get<int>() : 0; }

TEST(LspFraming, ReadsMessagesAndRecoversFromDamagedStreams) {
  EXPECT_EQ(Frames("Content-Length: 2\r\n\r\n{}content-length:3\r\nContent-Type: x\r\n\r\n[1]"),
            (std::vector<std::string>{"M:{}", "M:[1]"}));
  // A line that is no header is passed over; the message behind it is read.
  EXPECT_EQ(Frames("garbage\r\nContent-Length: 2\r\n\r\n{}"), (std::vector<std::string>{"P", "M:{}"}));
  // A length too short: the rest of the body runs into the next header,
  // whose Content-Length is still found at the end of the line.
  EXPECT_EQ(Frames("Content-Length: 3\r\n\r\n{\"a\":1}Content-Length: 2\r\n\r\n{}"),
            (std::vector<std::string>{"M:{\"a", "P", "M:{}"}));
  EXPECT_EQ(Frames("Content-Type: x\r\n\r\nContent-Length: 2\r\n\r\n{}"), (std::vector<std::string>{"P", "M:{}"}));
  EXPECT_EQ(Frames("Content-Length: 12x\r\n\r\nContent-Length: 1\n\n7"), (std::vector<std::string>{"P", "P", "M:7"}));
  // The end of the stream inside a body or a header block.
  EXPECT_EQ(Frames("Content-Length: 9\r\n\r\n{}"), (std::vector<std::string>{"P"}));
  EXPECT_EQ(Frames("Content-Length: 9\r\n"), (std::vector<std::string>{"P"}));
  // A header line of any length costs its own bytes only.
  EXPECT_EQ(Frames(std::string(100000, 'x') + "Content-Length: 2\r\n\r\n{}"), (std::vector<std::string>{"P", "M:{}"}));
}

TEST(LspProtocol, AnswersBadMessagesWithTheirErrors) {
  PipeClient client;
  // Before initialize: requests get ServerNotInitialized, notifications nothing.
  client.Send({{"jsonrpc", "2.0"}, {"method", "textDocument/didOpen"}, {"params", json::object()}});
  client.Send({{"jsonrpc", "2.0"}, {"id", 1}, {"method", "textDocument/hover"}, {"params", json::object()}});
  EXPECT_EQ(ErrorCode(client.Receive()), -32002);

  client.Send({{"jsonrpc", "2.0"}, {"id", "init"}, {"method", "initialize"}, {"params", json::object()}});
  const json init = client.Receive();
  EXPECT_EQ(init["id"], "init");
  EXPECT_EQ(init["result"]["capabilities"],
            json::parse(R"({"positionEncoding":"utf-16","textDocumentSync":{"openClose":true,"change":2},
                           "hoverProvider":true,"definitionProvider":true,"referencesProvider":true,
                           "documentSymbolProvider":true,"foldingRangeProvider":true,"completionProvider":{},
                           "renameProvider":{"prepareProvider":true},
                           "codeActionProvider":{"codeActionKinds":["quickfix"]},
                           "semanticTokensProvider":{"full":true,"range":true,"legend":{
                             "tokenTypes":["namespace","type","class","keyword","variable","enumMember","number",
                                           "string","decorator"],
                             "tokenModifiers":["declaration","deprecated","misread"]}}})"));
  client.Send({{"jsonrpc", "2.0"}, {"id", 2}, {"method", "initialize"}, {"params", json::object()}});
  EXPECT_EQ(ErrorCode(client.Receive()), -32600);

  struct Case {
    std::string body;
    int code;
    json id;
  };
  const std::vector<Case> cases = {
      {"{\"jsonrpc\":\"2.0\",\"id\":3,", -32700, nullptr},
      {"{\"jsonrpc\":\"2.0\",\"id\":3,\"method\":\"x\",\"params\":\"\xff\"}", -32700, nullptr},
      {"[1,2]", -32600, nullptr},
      {"{\"id\":4,\"method\":\"shutdown\"}", -32600, 4},
      {"{\"jsonrpc\":\"2.0\",\"id\":[5],\"method\":\"shutdown\"}", -32600, nullptr},
      {"{\"jsonrpc\":\"2.0\",\"id\":6,\"method\":7}", -32600, 6},
      {"{\"jsonrpc\":\"2.0\",\"id\":7,\"method\":\"textDocument/formatting\",\"params\":{}}", -32601, 7},
      {"{\"jsonrpc\":\"2.0\",\"id\":8,\"method\":\"$/unknown\"}", -32601, 8},
      {"{\"jsonrpc\":\"2.0\",\"id\":9,\"method\":\"textDocument/hover\",\"params\":{}}", -32602, 9},
      {"{\"jsonrpc\":\"2.0\",\"id\":14,\"method\":\"textDocument/hover\",\"params\":null}", -32602, 14},
      {"{\"jsonrpc\":\"2.0\",\"id\":10,\"method\":\"textDocument/hover\",\"params\":{\"textDocument\":{\"uri\":\"u\"},"
       "\"position\":{\"line\":\"1\",\"character\":0}}}",
       -32602, 10},
  };
  for (const Case& c : cases) {
    client.Write(FrameMessage(c.body));
    const json reply = client.Receive();
    EXPECT_EQ(ErrorCode(reply), c.code) << c.body;
    EXPECT_EQ(reply["id"], c.id) << c.body;
  }
  // Unknown notifications and responses are passed over without an answer;
  // a request for a document that is not open has an empty answer.
  client.Send({{"jsonrpc", "2.0"}, {"method", "$/setTrace"}, {"params", {{"value", "off"}}}});
  client.Send({{"jsonrpc", "2.0"}, {"id", 99}, {"result", nullptr}});
  client.Send({{"jsonrpc", "2.0"},
               {"id", 11},
               {"method", "textDocument/documentSymbol"},
               {"params", {{"textDocument", {{"uri", "file:///none.def"}}}}}});
  EXPECT_EQ(client.Receive(), json::parse(R"({"jsonrpc":"2.0","id":11,"result":[]})"));

  // Messages without parameters may carry "params": null.
  client.Send({{"jsonrpc", "2.0"}, {"id", 12}, {"method", "shutdown"}, {"params", nullptr}});
  EXPECT_EQ(client.Receive(), json::parse(R"({"jsonrpc":"2.0","id":12,"result":null})"));
  client.Send({{"jsonrpc", "2.0"}, {"id", 13}, {"method", "textDocument/foldingRange"}, {"params", json::object()}});
  EXPECT_EQ(ErrorCode(client.Receive()), -32600);
  client.Send({{"jsonrpc", "2.0"}, {"method", "exit"}, {"params", nullptr}});
  EXPECT_EQ(client.Wait(), 0);
}

TEST(LspProtocol, EndsAtTheEndOfItsInputAndOnExitWithoutShutdown) {
  {
    PipeClient client;
    client.Write("Content-Length: 50\r\n\r\n{\"a\":");  // cut off
    EXPECT_EQ(client.CloseAndWait(), 1);
  }
  PipeClient client;
  client.Send({{"jsonrpc", "2.0"}, {"method", "exit"}});
  EXPECT_EQ(client.Wait(), 1);
}

TEST(LspProtocol, DiagnosticsFollowChangesThroughTheStream) {
  PipeClient client;
  client.Send({{"jsonrpc", "2.0"}, {"id", 1}, {"method", "initialize"}, {"params", json::object()}});
  client.Receive();
  const std::string uri = "file:///t.def";
  const std::string good = "DEF_LAYOUT_VERSION = 1\nHOUSING_LIST A;\nADAPTER_LIST B;\nMODUL_LIST C;\n";
  client.Send(
      {{"jsonrpc", "2.0"},
       {"method", "textDocument/didOpen"},
       {"params", {{"textDocument", {{"uri", uri}, {"languageId", "devdef"}, {"version", 1}, {"text", good}}}}}});
  json published = client.Receive();
  EXPECT_EQ(published["method"], "textDocument/publishDiagnostics");
  EXPECT_EQ(published["params"]["version"], 1);
  EXPECT_EQ(published["params"]["diagnostics"], json::array());
  client.Send({{"jsonrpc", "2.0"},
               {"method", "textDocument/didChange"},
               {"params",
                {{"textDocument", {{"uri", uri}, {"version", 2}}},
                 {"contentChanges", {{{"text", good + "K:\n:M\nD\n{\nKVR5DEF: 1 0 0 0 0 : x\n"}}}}}}});
  published = client.Receive();
  EXPECT_EQ(published["params"]["version"], 2);
  ASSERT_EQ(published["params"]["diagnostics"].size(), 1u);
  EXPECT_EQ(published["params"]["diagnostics"][0]["code"], "cut-off");
  client.Send(
      {{"jsonrpc", "2.0"}, {"method", "textDocument/didClose"}, {"params", {{"textDocument", {{"uri", uri}}}}}});
  EXPECT_EQ(client.Receive()["params"], json::parse(R"({"uri":"file:///t.def","diagnostics":[]})"));
  EXPECT_EQ(client.CloseAndWait(), 1);
}

TEST(LspProtocol, CancelledRequestsAndStaleDiagnostics) {
  DirectClient client;
  json cancel = {{"jsonrpc", "2.0"}, {"method", "$/cancelRequest"}, {"params", {{"id", 40}}}};
  client.server.Handle(cancel);
  json request = {{"jsonrpc", "2.0"}, {"id", 40}, {"method", "shutdown"}};
  client.server.Handle(request);
  EXPECT_EQ(ErrorCode(client.sent.back()), -32800);

  const std::string uri = "file:///s.def";
  client.Open(uri, "DEF_LAYOUT_VERSION = 1\n");
  client.Notify("textDocument/didChange",
                {{"textDocument", {{"uri", uri}, {"version", 2}}}, {"contentChanges", {{{"text", "no version"}}}}});
  // A change of the document waits: nothing is published for a text that
  // is already gone; once it is handled, only the newest text's are.
  EXPECT_TRUE(client.Publish([&uri](const std::string& waiting) { return waiting == uri; }).empty());
  const std::vector<json> published = client.Publish();
  ASSERT_EQ(published.size(), 1u);
  EXPECT_EQ(published[0]["params"]["version"], 2);
  EXPECT_EQ(published[0]["params"]["diagnostics"][0]["code"], "no-version");
  EXPECT_TRUE(client.Publish().empty());
}

}  // namespace

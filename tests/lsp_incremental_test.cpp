// Changes sent as ranges, as editors send each keystroke: the diagnostics
// after any run of random edits are those of a fresh server given the
// whole text, whether the server read the edited block alone or the whole
// file; the whole analysis on the worker's thread confirms them, or is
// dropped when the text changed while it ran; requests right after a
// change answer from the text as it is now.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

#include "tests/lsp_client.h"

using nlohmann::json;

namespace {

const char kUri[] = "file:///typed.def";

// The protocol's position of a byte of UTF-8 text: LF, CR and CR LF end a
// line; characters count in UTF-16 code units.
json PositionOf(const std::string& text, size_t offset) {
  long line = 0;
  long character = 0;
  for (size_t i = 0; i < offset; ++i) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    if (c == '\n' || (c == '\r' && (i + 1 >= text.size() || text[i + 1] != '\n'))) {
      ++line;
      character = 0;
    } else if (c == '\r') {
      // The LF behind it ends the line.
    } else if ((c & 0xC0) != 0x80) {
      character += c >= 0xF0 ? 2 : 1;
    }
  }
  return {{"line", line}, {"character", character}};
}

json Range(const std::string& text, size_t begin, size_t end) {
  return {{"start", PositionOf(text, begin)}, {"end", PositionOf(text, end)}};
}

// Replaces bytes [begin, end) of the client's copy and the server's.
void Edit(DirectClient& client, std::string& text, size_t begin, size_t end, const std::string& with, int version) {
  client.Notify("textDocument/didChange",
                {{"textDocument", {{"uri", kUri}, {"version", version}}},
                 {"contentChanges", json::array({{{"range", Range(text, begin, end)}, {"text", with}}})}});
  text.replace(begin, end - begin, with);
}

// The diagnostics a fresh server publishes for text.
json FreshDiagnostics(const std::string& text, int version) {
  DirectClient fresh;
  fresh.Open(kUri, text, version);
  const std::vector<json> published = fresh.Publish();
  return published.empty() ? json() : published.back()["params"];
}

json LastDiagnostics(const std::vector<json>& published) {
  return published.empty() ? json() : published.back()["params"];
}

// A place at or in front of offset that a position can name: not inside a
// UTF-8 character or between the CR and LF of a line end.
size_t Boundary(const std::string& text, size_t offset) {
  while (offset > 0 && offset < text.size() && (static_cast<unsigned char>(text[offset]) & 0xC0) == 0x80) --offset;
  if (offset > 0 && offset < text.size() && text[offset - 1] == '\r' && text[offset] == '\n') --offset;
  return offset;
}

// Random edits as a person makes them: mostly a character or two typed or
// deleted on a definition line, now and then anywhere, a line end, a brace
// or a character that only UTF-8 has.
struct Typist {
  std::mt19937 random;
  explicit Typist(unsigned seed) : random(seed) {}

  size_t Below(size_t n) { return n == 0 ? 0 : std::uniform_int_distribution<size_t>(0, n - 1)(random); }

  size_t last = 0;  // where the last edit was

  size_t Place(const std::string& text) {
    last = Where(text);
    return last;
  }

  size_t Where(const std::string& text) {
    if (last < text.size() && Below(10) < 6) {
      // Typing on: a few characters from the last edit.
      return Boundary(text, std::min(text.size(), last + Below(3)));
    }
    if (Below(10) < 7) {
      // On a definition line, behind its keyword.
      std::vector<size_t> lines;
      for (size_t at = text.find("KVR"); at != std::string::npos; at = text.find("KVR", at + 1)) lines.push_back(at);
      if (!lines.empty()) {
        const size_t line = lines[Below(lines.size())];
        size_t end = line;
        while (end < text.size() && text[end] != '\n' && text[end] != '\r') ++end;
        return Boundary(text, line + 8 + Below(end > line + 8 ? end - line - 8 + 1 : 1));
      }
    }
    return Boundary(text, Below(text.size() + 1));
  }

  std::string Typed() {
    static const char* const pieces[] = {"1", "7", "0", "x", "a", " ", ",", ":", ";", "_", "9", "3",
                                          "\xC2\xB0", "\xC3\x9F", "\n", "}", "{", "\r\n", "KVR5DEF: ", "\xCE\xA9"};
    const size_t weights = Below(100);
    if (weights < 70) return pieces[Below(12)];
    if (weights < 80) return pieces[12 + Below(2)];
    if (weights < 97) return pieces[14 + Below(5)];
    return pieces[19];
  }
};

std::vector<std::string> Samples() {
  return {
      ExampleText("adapters_v7.def"),
      ExampleText("instruments.def"),
      ExampleText("damaged.def"),
      ExampleText("programmers_v2.def"),
      // CR line ends, CR LF, marks, ids used twice, a number without a
      // name, a housing line, a block cut off by the end of the file.
      "DEF_LAYOUT_VERSION = 7 \rHOUSING_LIST {\rDIP8,\rSO8,\r}\rADAPTER_LIST {\rA1,\r}\rMODUL_LIST M0,\r"
      "Memory:\r:Acme\rAT24C02\r{\rKVR5DEF: 1 0 0 0 0 0 0 0 0 0 0 0 0 0 : one\rKVR5DEF: 2 1 0 0 0 0 0 0 0 0 0 0 0 0 : "
      "two\r}\rAT24C04\r{\rKVR5DEF: 3 0 0 0 0 0 0 0 0 0 0 0 0 0 : three\r}\r",
      "DEF_LAYOUT_VERSION = 7 \r\nHOUSING_LIST {\r\nDIP8,\r\n}\r\nADAPTER_LIST {\r\nA1,\r\n}\r\nMODUL_LIST M0,\r\n"
      "Memory:\r\n\r\n:Acme\r\n\r\n\xC2\xB0" "AT24C02\r\n{\r\nKVR5DEF: 5 0 0 0 0 0 0 0 0 0 0 0 0 0 : one\r\n"
      "DEVICE_HOUSING_LIST: 0, 1\r\n}\r\n\r\nAT24C04\r\n{\r\nKVR5DEF: 5 3 0 0 0 0 0 0 0 0 0 0 0 0 : twice\r\n}\r\n"
      "\r\nLogic:\r\n\r\n:Other\r\n\r\nGAL16\r\n{\r\nKVR5DEF: 9 0 0 0 0 0 0 0 0 0 0 0 0 0 : last\r\n",
  };
}

TEST(LspIncremental, RandomEditsGiveTheDiagnosticsOfTheWholeText) {
  unsigned seed = 1;
  size_t blockReads = 0;
  size_t edits = 0;
  for (const std::string& sample : Samples()) {
    Typist typist(seed++);
    DirectClient client;
    std::string text = sample;
    client.Open(kUri, text, 1);
    client.Publish();
    for (int version = 2; version < 90; ++version) {
      if (version % 15 == 0) {
        // Back to the sample, replaced whole, before random edits wreck it.
        text = sample;
        client.Notify("textDocument/didChange", {{"textDocument", {{"uri", kUri}, {"version", version++}}},
                                                 {"contentChanges", json::array({{{"text", text}}})}});
      }
      const std::string previous = text;
      const size_t begin = typist.Place(text);
      if (typist.Below(3) == 0) {
        size_t end = begin;
        for (size_t n = 1 + typist.Below(3); n > 0 && end < text.size(); --n) {
          ++end;
          while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) ++end;
          if (end < text.size() && text[end - 1] == '\r' && text[end] == '\n') ++end;
        }
        Edit(client, text, begin, end, "", version);
      } else {
        Edit(client, text, begin, begin, typist.Typed(), version);
      }
      ++edits;
      const size_t before = client.server.BlockPublications();
      const json published = LastDiagnostics(client.Publish());
      blockReads += client.server.BlockPublications() - before;
      ASSERT_EQ(published, FreshDiagnostics(text, version))
          << "sample " << seed - 1 << ", version " << version << ", at " << begin << ", before:\n"
          << previous << "\nafter:\n" << text;
      if (version % 7 == 0 && client.server.StartAnalysis()) {
        // The whole analysis agrees with what was published: nothing more.
        const size_t sent = client.sent.size();
        client.server.FinishAnalysis(true);
        EXPECT_EQ(client.sent.size(), sent);
      }
    }
  }
  // Many keystrokes were checked by reading their block alone (the others
  // changed lines, braces or ids, or moved to another block).
  EXPECT_GT(blockReads * 8, edits) << blockReads << " of " << edits;
}

// Requests right after a change, before any whole analysis of the new
// text, answer as a fresh server does; within the changed block too.
TEST(LspIncremental, RequestsAfterAChangeAnswerFromTheNewText) {
  std::string text = ExampleText("adapters_v7.def");
  DirectClient client;
  client.Open(kUri, text, 1);
  client.Publish();
  // A digit typed into the id of the first definition, and a line end
  // typed into the second: after the first, lines stand where they stood.
  const size_t first = text.find("KVR5DEF: ") + 9;
  Edit(client, text, first, first, "7", 2);
  client.Publish();
  DirectClient fresh;
  fresh.Open(kUri, text, 2);
  long lines = 0;
  for (char c : text) lines += c == '\n';
  for (const char* method : {"textDocument/hover", "textDocument/definition"}) {
    for (long line = 0; line <= lines; ++line) {
      for (long character : {0L, 3L, 10L, 12L, 16L}) {
        ASSERT_EQ(client.At(method, kUri, line, character), fresh.At(method, kUri, line, character))
            << method << " " << line << ":" << character;
      }
    }
  }
  const size_t second = text.find("KVR5DEF: ", first) + 12;
  Edit(client, text, second, second, "\n", 3);
  DirectClient after;
  after.Open(kUri, text, 3);
  for (long line = 0; line <= lines + 1; ++line) {
    ASSERT_EQ(client.At("textDocument/hover", kUri, line, 12), after.At("textDocument/hover", kUri, line, 12)) << line;
  }
}

// The whole analysis of a text that changed while it ran is dropped: its
// diagnostics are never published, and the next one is of the newest text.
TEST(LspIncremental, StaleAnalysisIsDroppedAndReplaced) {
  std::string text = ExampleText("instruments.def");
  DirectClient client;
  client.Open(kUri, text, 1);
  client.Publish();
  const size_t at = text.find("KVR");
  Edit(client, text, at, at + 3, "XVR", 2);  // the line is no definition any more
  ASSERT_TRUE(client.server.StartAnalysis());
  Edit(client, text, at, at + 3, "KVR", 3);
  size_t sent = client.sent.size();
  client.server.FinishAnalysis(true);
  EXPECT_EQ(client.sent.size(), sent);  // version 2 is gone
  const json published = LastDiagnostics(client.Publish());
  EXPECT_EQ(published["version"], 3);
  EXPECT_EQ(published, FreshDiagnostics(text, 3));
  // A document closed while its analysis ran.
  Edit(client, text, at, at, "1", 4);
  ASSERT_TRUE(client.server.StartAnalysis());
  client.Notify("textDocument/didClose", {{"textDocument", {{"uri", kUri}}}});
  sent = client.sent.size();
  client.server.FinishAnalysis(true);
  EXPECT_EQ(client.sent.size(), sent);
  EXPECT_FALSE(client.server.StartAnalysis());
}

// Over the streams: the whole analysis starts when the client is quiet,
// and exit while it runs ends the server cleanly.
TEST(LspIncremental, ExitWhileTheAnalysisRuns) {
  std::string text = ExampleText("adapters_v7.def");
  // Big enough that its analysis takes a while.
  std::string big = text;
  const size_t tree = text.find("\nAdapters:");
  for (int i = 0; i < 300 && tree != std::string::npos; ++i) big += text.substr(tree + 1);
  PipeClient client;
  client.Send({{"jsonrpc", "2.0"}, {"id", 1}, {"method", "initialize"}, {"params", json::object()}});
  EXPECT_TRUE(client.Receive().contains("result"));
  client.Send({{"jsonrpc", "2.0"},
               {"method", "textDocument/didOpen"},
               {"params", {{"textDocument", {{"uri", kUri}, {"languageId", "devdef"}, {"version", 1}, {"text", big}}}}}});
  EXPECT_EQ(client.Receive()["params"]["version"], 1);
  const size_t at = big.rfind("KVR5DEF: ") + 9;
  client.Send({{"jsonrpc", "2.0"},
               {"method", "textDocument/didChange"},
               {"params",
                {{"textDocument", {{"uri", kUri}, {"version", 2}}},
                 {"contentChanges", json::array({{{"range", Range(big, at, at)}, {"text", "1"}}})}}}});
  EXPECT_EQ(client.Receive()["params"]["version"], 2);
  std::this_thread::sleep_for(std::chrono::milliseconds(320));
  client.Send({{"jsonrpc", "2.0"}, {"id", 2}, {"method", "shutdown"}});
  EXPECT_TRUE(client.Receive().contains("result"));
  client.Send({{"jsonrpc", "2.0"}, {"method", "exit"}});
  EXPECT_EQ(client.Wait(), 0);
}

}  // namespace

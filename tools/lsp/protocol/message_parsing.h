// The JSON of an incoming message. A didChange carries a whole document in
// one string, which a general parser reads a byte at a time; here each
// string value of 64 KiB or more is decoded in a pass of its own over its
// plain runs, and the rest of the message by the JSON library. A string
// this pass does not take as well-formed sends the whole message to the
// library, so what is accepted and what is refused stays the library's.
#ifndef DEVDEF_TOOLS_LSP_PROTOCOL_MESSAGE_PARSING_H_
#define DEVDEF_TOOLS_LSP_PROTOCOL_MESSAGE_PARSING_H_

#include <nlohmann/json.hpp>
#include <string>

// The message's JSON; a discarded value when it is no JSON. Strings of
// longString bytes or more (in the body) are decoded on their own.
nlohmann::json ParseMessage(const std::string& body, size_t longString = 65536);

#endif  // DEVDEF_TOOLS_LSP_PROTOCOL_MESSAGE_PARSING_H_

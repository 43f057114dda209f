// JSON-RPC 2.0 as the language server protocol uses it: what an incoming
// message is, the bodies of responses, errors and notifications, the error
// codes, and access to parameters that answers a malformed one with
// InvalidParams.
#ifndef DEVDEF_TOOLS_LSP_PROTOCOL_JSON_RPC_H_
#define DEVDEF_TOOLS_LSP_PROTOCOL_JSON_RPC_H_

#include <cstdint>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

// Error codes of JSON-RPC and of the protocol.
enum RpcErrorCode : int {
  kParseError = -32700,
  kInvalidRequest = -32600,
  kMethodNotFound = -32601,
  kInvalidParams = -32602,
  kInternalError = -32603,
  kServerNotInitialized = -32002,
  kRequestCancelled = -32800,
  kRequestFailed = -32803,  // a request that was understood but could not be carried out
};

// Thrown by a handler: the request is answered with this error.
struct RpcError : std::runtime_error {
  RpcError(int errorCode, const std::string& message) : std::runtime_error(message), code(errorCode) {}
  int code;
};

// An incoming message as the protocol sees it.
struct RpcMessage {
  enum Kind { kRequest, kNotification, kResponse, kInvalid };
  Kind kind = kInvalid;
  std::string method;
  nlohmann::json id;                       // a request's (number or string); null when it has none usable
  const nlohmann::json* params = nullptr;  // null when the message has none
  std::string problem;                     // why it is kInvalid
};

// Classifies a parsed message; params points into message.
RpcMessage ClassifyMessage(const nlohmann::json& message);

// Bodies of outgoing messages. Text that is no UTF-8 is sent as U+FFFD.
std::string ResponseBody(const nlohmann::json& id, const nlohmann::json& result);
// A response whose result is already JSON text.
std::string ResponseBody(const nlohmann::json& id, const std::string& resultJson);
// A value as JSON text.
std::string JsonText(const nlohmann::json& value);
std::string ErrorBody(const nlohmann::json& id, int code, const std::string& message);
std::string NotificationBody(const char* method, const nlohmann::json& params);

// A member of a parameter object; InvalidParams when object is no object or
// lacks it.
const nlohmann::json& Member(const nlohmann::json& object, const char* key);
// The same for a member that must be a string, an integer or an object.
const std::string& StringMember(const nlohmann::json& object, const char* key);
std::int64_t IntegerMember(const nlohmann::json& object, const char* key);
const nlohmann::json& ObjectMember(const nlohmann::json& object, const char* key);

#endif  // DEVDEF_TOOLS_LSP_PROTOCOL_JSON_RPC_H_

#include "tools/lsp/protocol/json_rpc.h"

using nlohmann::json;

namespace {

std::string Dump(const json& message) { return message.dump(-1, ' ', false, json::error_handler_t::replace); }

}  // namespace

RpcMessage ClassifyMessage(const json& message) {
  RpcMessage out;
  if (!message.is_object()) {
    out.problem = message.is_array() ? "batches of messages are not taken" : "a message is a JSON object";
    return out;
  }
  auto id = message.find("id");
  const bool hasId = id != message.end();
  const bool idUsable = hasId && (id->is_string() || id->is_number_integer() || id->is_number_unsigned());
  if (idUsable) out.id = *id;
  auto version = message.find("jsonrpc");
  if (version == message.end() || *version != "2.0") {
    out.problem = "the message has no \"jsonrpc\": \"2.0\"";
    return out;
  }
  auto method = message.find("method");
  if (method == message.end()) {
    if (hasId && (message.contains("result") || message.contains("error")))
      out.kind = RpcMessage::kResponse;
    else
      out.problem = "the message has no method";
    return out;
  }
  if (!method->is_string()) {
    out.problem = "the method is no string";
    return out;
  }
  if (hasId && !idUsable) {
    out.problem = "the id is neither a number nor a string";
    return out;
  }
  // Requests and notifications without parameters (shutdown, exit) come
  // from some clients with "params": null, which counts as none.
  auto params = message.find("params");
  if (params != message.end() && !params->is_null()) {
    if (!params->is_object() && !params->is_array()) {
      out.problem = "the params are neither an object nor an array";
      return out;
    }
    out.params = &*params;
  }
  out.method = method->get<std::string>();
  out.kind = hasId ? RpcMessage::kRequest : RpcMessage::kNotification;
  return out;
}

std::string ResponseBody(const json& id, const json& result) {
  return Dump(json{{"jsonrpc", "2.0"}, {"id", id}, {"result", result}});
}

std::string ResponseBody(const json& id, const std::string& resultJson) {
  // Made in one piece: a result of megabytes (the outline or the semantic
  // tokens of a large file) is copied once.
  const std::string head = "{\"jsonrpc\":\"2.0\",\"id\":" + Dump(id) + ",\"result\":";
  std::string body;
  body.reserve(head.size() + resultJson.size() + 1);
  body += head;
  body += resultJson;
  body += '}';
  return body;
}

std::string JsonText(const json& value) { return Dump(value); }

std::string ErrorBody(const json& id, int code, const std::string& message) {
  return Dump(json{{"jsonrpc", "2.0"}, {"id", id}, {"error", {{"code", code}, {"message", message}}}});
}

std::string NotificationBody(const char* method, const json& params) {
  return Dump(json{{"jsonrpc", "2.0"}, {"method", method}, {"params", params}});
}

const json& Member(const json& object, const char* key) {
  if (!object.is_object()) throw RpcError(kInvalidParams, std::string("no object holding '") + key + "'");
  auto found = object.find(key);
  if (found == object.end()) throw RpcError(kInvalidParams, std::string("'") + key + "' is missing");
  return *found;
}

const std::string& StringMember(const json& object, const char* key) {
  const json& value = Member(object, key);
  if (!value.is_string()) throw RpcError(kInvalidParams, std::string("'") + key + "' is no string");
  return value.get_ref<const std::string&>();
}

std::int64_t IntegerMember(const json& object, const char* key) {
  const json& value = Member(object, key);
  if (value.is_number_unsigned()) {
    if (value.get<std::uint64_t>() <= static_cast<std::uint64_t>(INT64_MAX)) {
      return static_cast<std::int64_t>(value.get<std::uint64_t>());
    }
  } else if (value.is_number_integer()) {
    return value.get<std::int64_t>();
  }
  throw RpcError(kInvalidParams, std::string("'") + key + "' is no integer");
}

const json& ObjectMember(const json& object, const char* key) {
  const json& value = Member(object, key);
  if (!value.is_object()) throw RpcError(kInvalidParams, std::string("'") + key + "' is no object");
  return value;
}

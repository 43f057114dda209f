// Printing a large JSON document piece by piece, byte for byte as
// nlohmann::json::dump(2) prints it whole: an object whose one array field
// is filled element by element, where an element may again be such an
// object. Only one element is held in memory at a time.
#ifndef DEVDEF_TOOLS_OUTPUT_JSON_STREAM_H_
#define DEVDEF_TOOLS_OUTPUT_JSON_STREAM_H_

#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

class JsonStream {
 public:
  explicit JsonStream(std::FILE* out) : out_(out) {}

  // Opens an object with the fields of object and the array field key, whose
  // elements follow: at the top, or as the next element of the open array.
  void OpenObject(nlohmann::json object, const char* key);
  // The next element of the open array.
  void Element(const nlohmann::json& value);
  // Closes the open array and the object around it; the top one ends with a
  // line end, as the tool prints every document.
  void CloseObject();

 private:
  struct Open {
    std::string rest;  // what follows the array's "[" in the object's text
    bool empty = true;
  };
  void StartElement();
  void Put(const std::string& text, size_t depth);

  std::FILE* out_;
  std::vector<Open> open_;
};

#endif  // DEVDEF_TOOLS_OUTPUT_JSON_STREAM_H_

// JsonText: indented JSON appended straight to a string, for the writer,
// which would otherwise build a whole document in memory to print it once.
// Keeps the commas and the indentation (four blanks a level); the caller
// keeps the nesting right (every Begin has its End, a key before each value
// of an object). Strings are escaped as JSON needs, bytes that are not UTF-8
// written as U+FFFD. Doubles print in their shortest exact form, whole ones
// with ".0". Owns nothing but a borrowed string; single-threaded.
#ifndef TCS_OTIO_JSON_TEXT_H_
#define TCS_OTIO_JSON_TEXT_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tcs::otio {

class JsonText {
 public:
  explicit JsonText(std::string& out) : out_(out) {}

  JsonText& BeginObject();
  JsonText& EndObject();
  JsonText& BeginArray();
  JsonText& EndArray();
  JsonText& Key(std::string_view key);
  JsonText& String(std::string_view text);
  JsonText& Double(double value);
  JsonText& Unsigned(uint64_t value);
  JsonText& Bool(bool value);
  JsonText& Null();

  // Key(key) then the value.
  JsonText& Field(std::string_view key, std::string_view text) { return Key(key).String(text); }
  JsonText& Field(std::string_view key, const char* text) { return Key(key).String(text); }

 private:
  void BeforeValue();
  void Quote(std::string_view text);
  void NewLine();
  void Begin(char open);
  void End(char close);

  std::string& out_;
  struct Level {
    bool empty = true;
  };
  std::vector<Level> levels_;
  bool afterKey_ = false;
};

}  // namespace tcs::otio

#endif  // TCS_OTIO_JSON_TEXT_H_

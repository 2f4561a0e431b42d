// A small JSON writer for --json output: objects, arrays, strings (escaped),
// numbers, booleans and null, written compactly to a stream. Commas are its
// business; the caller only nests. Not thread-safe; one per output.
#ifndef TCS_TOOLS_TCS_JSON_WRITER_H_
#define TCS_TOOLS_TCS_JSON_WRITER_H_

#include <cstdint>
#include <ostream>
#include <string_view>
#include <vector>

namespace tcs::cli {

class JsonWriter {
 public:
  explicit JsonWriter(std::ostream& out) : out_(out) {}

  JsonWriter& BeginObject() { return Open('{'); }
  JsonWriter& EndObject() { return Close('}'); }
  JsonWriter& BeginArray() { return Open('['); }
  JsonWriter& EndArray() { return Close(']'); }
  // The next value is this member of the enclosing object.
  JsonWriter& Key(std::string_view key);
  JsonWriter& String(std::string_view text);
  JsonWriter& Number(uint64_t value);
  JsonWriter& Bool(bool value);
  JsonWriter& Null();

 private:
  JsonWriter& Open(char bracket);
  JsonWriter& Close(char bracket);
  void BeforeValue();
  void Quoted(std::string_view text);

  std::ostream& out_;
  std::vector<bool> first_;  // per open container: no element written yet
  bool afterKey_ = false;
};

}  // namespace tcs::cli

#endif  // TCS_TOOLS_TCS_JSON_WRITER_H_

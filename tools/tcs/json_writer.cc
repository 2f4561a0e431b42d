#include "json_writer.h"

#include <cstdio>

namespace tcs::cli {

void JsonWriter::BeforeValue() {
  if (afterKey_) {
    afterKey_ = false;
    return;
  }
  if (!first_.empty()) {
    if (!first_.back()) out_ << ',';
    first_.back() = false;
  }
}

void JsonWriter::Quoted(std::string_view text) {
  out_ << '"';
  for (const char ch : text) {
    const auto c = static_cast<unsigned char>(ch);
    switch (c) {
      case '"': out_ << "\\\""; break;
      case '\\': out_ << "\\\\"; break;
      case '\n': out_ << "\\n"; break;
      case '\r': out_ << "\\r"; break;
      case '\t': out_ << "\\t"; break;
      default:
        if (c < 0x20) {
          char escaped[8];
          std::snprintf(escaped, sizeof escaped, "\\u%04x", c);
          out_ << escaped;
        } else {
          out_ << ch;
        }
    }
  }
  out_ << '"';
}

JsonWriter& JsonWriter::Open(char bracket) {
  BeforeValue();
  out_ << bracket;
  first_.push_back(true);
  return *this;
}

JsonWriter& JsonWriter::Close(char bracket) {
  first_.pop_back();
  out_ << bracket;
  if (first_.empty()) out_ << '\n';
  return *this;
}

JsonWriter& JsonWriter::Key(std::string_view key) {
  BeforeValue();
  Quoted(key);
  out_ << ':';
  afterKey_ = true;
  return *this;
}

JsonWriter& JsonWriter::String(std::string_view text) {
  BeforeValue();
  Quoted(text);
  return *this;
}

JsonWriter& JsonWriter::Number(uint64_t value) {
  BeforeValue();
  out_ << value;
  return *this;
}

JsonWriter& JsonWriter::Bool(bool value) {
  BeforeValue();
  out_ << (value ? "true" : "false");
  return *this;
}

JsonWriter& JsonWriter::Null() {
  BeforeValue();
  out_ << "null";
  return *this;
}

}  // namespace tcs::cli

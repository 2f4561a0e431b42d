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

namespace {

// The length of the well-formed UTF-8 sequence at text[i], 0 when there is
// none (a stray continuation byte, an overlong or cut-off sequence, a
// surrogate, a code point past U+10FFFF).
size_t Utf8Length(std::string_view text, size_t i) {
  const auto c = static_cast<unsigned char>(text[i]);
  const size_t n = c >= 0xF0 && c <= 0xF4 ? 4 : c >= 0xE0 ? 3 : c >= 0xC2 && c < 0xE0 ? 2 : 0;
  if (n == 0 || c > 0xF4 || i + n > text.size()) return 0;
  const auto second = static_cast<unsigned char>(text[i + 1]);
  if ((c == 0xE0 && second < 0xA0) || (c == 0xED && second > 0x9F) ||
      (c == 0xF0 && second < 0x90) || (c == 0xF4 && second > 0x8F)) {
    return 0;
  }
  for (size_t k = 1; k < n; ++k) {
    if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80) return 0;
  }
  return n;
}

}  // namespace

// Bytes that are not UTF-8 (names from lists written in another code page)
// are written as the code points of the same value (\u0080 to \u00ff), so the
// output stays valid UTF-8.
void JsonWriter::Quoted(std::string_view text) {
  out_ << '"';
  for (size_t i = 0; i < text.size(); ++i) {
    const char ch = text[i];
    const auto c = static_cast<unsigned char>(ch);
    if (c >= 0x80) {
      const size_t n = Utf8Length(text, i);
      if (n == 0) {
        char escaped[8];
        std::snprintf(escaped, sizeof escaped, "\\u%04x", c);
        out_ << escaped;
      } else {
        out_ << text.substr(i, n);
        i += n - 1;
      }
      continue;
    }
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

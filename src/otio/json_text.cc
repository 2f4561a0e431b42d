#include "otio/json_text.h"

#include <charconv>
#include <cmath>

namespace tcs::otio {
namespace {

constexpr char kHex[] = "0123456789abcdef";
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

// The length of the UTF-8 sequence at text[i], or 0 when it is not one.
size_t Utf8Length(std::string_view text, size_t i) {
  const auto byte = [&](size_t k) { return static_cast<unsigned char>(text[k]); };
  const unsigned char lead = byte(i);
  size_t length;
  uint32_t point;
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
    point = lead & 0x1F;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    point = lead & 0x0F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    point = lead & 0x07;
  } else {
    return 0;
  }
  if (i + length > text.size()) return 0;
  for (size_t k = 1; k < length; ++k) {
    if ((byte(i + k) & 0xC0) != 0x80) return 0;
    point = point << 6 | (byte(i + k) & 0x3F);
  }
  // Overlong forms, surrogates and points past U+10FFFF are not UTF-8.
  if ((length == 3 && point < 0x800) || (length == 4 && point < 0x10000) || point > 0x10FFFF ||
      (point >= 0xD800 && point <= 0xDFFF)) {
    return 0;
  }
  return length;
}

}  // namespace

void JsonText::NewLine() {
  out_ += '\n';
  out_.append(levels_.size() * 4, ' ');
}

void JsonText::BeforeValue() {
  if (afterKey_) {
    afterKey_ = false;
    return;
  }
  if (levels_.empty()) return;
  if (!levels_.back().empty) out_ += ',';
  levels_.back().empty = false;
  NewLine();
}

void JsonText::Begin(char open) {
  BeforeValue();
  out_ += open;
  levels_.push_back({});
}

void JsonText::End(char close) {
  const bool empty = levels_.back().empty;
  levels_.pop_back();
  if (!empty) NewLine();
  out_ += close;
}

JsonText& JsonText::BeginObject() {
  Begin('{');
  return *this;
}
JsonText& JsonText::EndObject() {
  End('}');
  return *this;
}
JsonText& JsonText::BeginArray() {
  Begin('[');
  return *this;
}
JsonText& JsonText::EndArray() {
  End(']');
  return *this;
}

JsonText& JsonText::Key(std::string_view key) {
  BeforeValue();
  Quote(key);
  out_ += ": ";
  afterKey_ = true;
  return *this;
}

JsonText& JsonText::String(std::string_view text) {
  BeforeValue();
  Quote(text);
  return *this;
}

void JsonText::Quote(std::string_view text) {
  out_ += '"';
  for (size_t i = 0; i < text.size();) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    if (c >= 0x80) {
      const size_t length = Utf8Length(text, i);
      if (length == 0) {
        out_ += kReplacement;
        ++i;
      } else {
        out_.append(text.substr(i, length));
        i += length;
      }
      continue;
    }
    if (c == '"' || c == '\\') {
      out_ += '\\';
      out_ += static_cast<char>(c);
    } else if (c == '\n') {
      out_ += "\\n";
    } else if (c == '\t') {
      out_ += "\\t";
    } else if (c == '\r') {
      out_ += "\\r";
    } else if (c < 0x20) {
      out_ += "\\u00";
      out_ += kHex[c >> 4];
      out_ += kHex[c & 15];
    } else {
      out_ += static_cast<char>(c);
    }
    ++i;
  }
  out_ += '"';
}

JsonText& JsonText::Double(double value) {
  BeforeValue();
  char text[32];
  const auto [end, error] = std::to_chars(text, text + sizeof text, value);
  std::string_view written(text, error == std::errc() ? size_t(end - text) : 0);
  out_ += written;
  if (written.find_first_of(".e") == std::string_view::npos) out_ += ".0";
  return *this;
}

JsonText& JsonText::Unsigned(uint64_t value) {
  BeforeValue();
  char text[24];
  const auto [end, error] = std::to_chars(text, text + sizeof text, value);
  out_.append(text, error == std::errc() ? size_t(end - text) : 0);
  return *this;
}

JsonText& JsonText::Bool(bool value) {
  BeforeValue();
  out_ += value ? "true" : "false";
  return *this;
}

JsonText& JsonText::Null() {
  BeforeValue();
  out_ += "null";
  return *this;
}

}  // namespace tcs::otio

// CTCRange::SetEffect: duration rule, caller's text, cut, standard names.
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "record/tc_range.h"

namespace {

constexpr uint32_t kNone = 0xFFFFFFFF;

// A range whose every field holds something SetEffect must replace or keep.
CTCRange RangeWith(uint32_t duration) {
  CTCRange r;
  r.effectCode = 77;
  r.effectDuration = duration;
  std::strcpy(r.effectText, "previous");
  return r;
}

TEST(SetEffect, EdgeCases) {
  struct Case {
    const char* what;
    uint32_t old_duration;
    uint32_t code;
    const char* text;  // null: no text
    uint32_t duration;
    uint32_t want_duration;
    const char* want_text;
  };
  const Case cases[] = {
      {"dissolve by name", 0, 0, nullptr, 15, 15, "Disolve"},
      {"a cut has no text", 8, 22, nullptr, 0, 0, ""},
      {"a cut takes the caller's text", 8, 5, "mix", 0, 0, "mix"},
      {"no effect ignores a text", 8, kNone, "mix", 30, 30, ""},
      {"no effect, keep a zero duration", 0, kNone, nullptr, kNone, 20, ""},
      {"a code without a name", 8, 9, nullptr, 10, 10, ""},
      {"keep a zero duration", 0, 47, nullptr, kNone, 20, "Cross"},
      {"keep a none duration", kNone, 47, nullptr, kNone, 20, "Cross"},
      {"keep a real duration", 12, 47, nullptr, kNone, 12, "Cross"},
      {"an empty text is no text", 8, 1, "", 10, 10, "Horizontal"},
      {"caller's text beats the name", 8, 1, "my wipe", 10, 10, "my wipe"},
      {"inverted dissolve", 8, 500, nullptr, 3, 3, "Disolve Inverted"},
      {"radial diagonal", 8, 246, nullptr, 3, 3, "Radial bottom-left, top-right"},
      {"247 has no name", 8, 247, nullptr, 3, 3, ""},
      {"504 has no name", 8, 504, nullptr, 3, 3, ""},
      {"duration 1 is not a cut", 0, 2, nullptr, 1, 1, "Vertical"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    CTCRange r = RangeWith(c.old_duration);
    std::string text_copy = c.text == nullptr ? "" : c.text;
    r.SetEffect(c.code, c.text == nullptr ? nullptr : text_copy.data(), c.duration);
    EXPECT_EQ(r.effectCode, c.code);
    EXPECT_EQ(r.effectDuration, c.want_duration);
    EXPECT_STREQ(r.effectText, c.want_text);
  }
}

// Exactly 48 codes have a name: all codes up to well past the named ones,
// then a spread of large ones up to 0xFFFFFFFF.
TEST(SetEffect, Exactly48CodesHaveNames) {
  size_t named = 0;
  for (uint64_t code = 0; code <= 0xFFFFFFFFu; code = code < 2048 ? code + 1 : code * 3 + 1) {
    CTCRange r = RangeWith(5);
    r.SetEffect(static_cast<uint32_t>(code), nullptr, 25);
    if (r.effectText[0] != '\0') ++named;
  }
  EXPECT_EQ(named, 48u);
}

// The longest text is 4095 characters; a longer one is cut, in the caller's
// buffer as well.
TEST(SetEffect, LongTextsAreCutAt4095InBothCopies) {
  for (size_t length : {4095u, 4096u, 5000u}) {
    SCOPED_TRACE(length);
    std::vector<char> text(length, 'x');
    text.push_back('\0');
    CTCRange r = RangeWith(0);
    r.SetEffect(3, text.data(), 0);
    EXPECT_EQ(std::string(r.effectText), std::string(4095, 'x'));
    EXPECT_EQ(std::strlen(text.data()), 4095u);
  }
}

}  // namespace

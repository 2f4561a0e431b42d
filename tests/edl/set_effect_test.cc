// CTCRange::SetEffect: duration rule, caller's text, cut, standard names.
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lookup/tc_range.h"

namespace {

// The transition names as hosts and translators know them.
const std::map<uint32_t, std::string>& NameTable() {
  static const std::map<uint32_t, std::string> table = {
      {0, "Disolve"},
      {1, "Horizontal"},
      {2, "Vertical"},
      {3, "Upper left"},
      {4, "Upper right"},
      {5, "Lower right"},
      {6, "Lower left"},
      {7, "Four corners"},
      {8, "Four squares"},
      {21, "Barn doors vertical"},
      {22, "Barn doors horizontal"},
      {23, "Top center"},
      {24, "Right center"},
      {25, "Bottom center"},
      {26, "Left center"},
      {42, "Diagonal NE to SW"},
      {43, "Triangles top/bottom"},
      {44, "Triangles left/right"},
      {45, "Diagonal stripe SW to NE"},
      {46, "Diagonal stripe NW to SE"},
      {47, "Cross"},
      {48, "Diamond Box"},
      {61, "Wedge top"},
      {62, "Wedge right"},
      {63, "Wedge bottom"},
      {64, "Wedge left"},
      {65, "V"},
      {66, "V right"},
      {67, "V inverted"},
      {68, "V left"},
      {101, "Box"},
      {102, "Diamond"},
      {128, "4-point star"},
      {130, "Heart"},
      {201, "Radial 12 o'clock"},
      {202, "Radial 3 o'clock"},
      {203, "Radial 6 o'clock"},
      {204, "Radial 9 o'clock"},
      {241, "Radial top-left corner"},
      {242, "Radial bottom-left corner"},
      {243, "Radial bottom-right corner"},
      {244, "Radial top-right corner"},
      {245, "Radial top-left, bottom-right"},
      {246, "Radial bottom-left, top-right"},
      {500, "Disolve Inverted"},
      {501, "Horizontal Inverted"},
      {502, "Vertical Inverted"},
      {503, "Upper left Inverted"},
  };
  return table;
}

constexpr uint32_t kNone = 0xFFFFFFFF;

// A range whose every field holds something SetEffect must replace or keep.
CTCRange RangeWith(uint32_t duration) {
  CTCRange r;
  r.start = 100;
  r.length = 50;
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
      {"247 has no name", 8, 247, nullptr, 3, 3, ""},
      {"499 has no name", 8, 499, nullptr, 3, 3, ""},
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
    EXPECT_EQ(r.start, 100u);
    EXPECT_EQ(r.length, 50u);
  }
}

// Every code gets its name from the table, and every code outside it an
// empty text: all codes up to well past the table, then a spread of large
// ones up to 0xFFFFFFFF.
TEST(SetEffect, EveryCodeOutsideTheTableHasNoName) {
  std::vector<uint32_t> codes;
  for (uint32_t code = 0; code <= 2048; ++code) codes.push_back(code);
  for (uint64_t code = 2049; code <= 0xFFFFFFFFu; code = code * 3 + 1) {
    codes.push_back(static_cast<uint32_t>(code));
  }
  codes.push_back(0x7FFFFFFF);
  codes.push_back(0x80000000);
  codes.push_back(0xFFFFFFFE);
  codes.push_back(0xFFFFFFFF);
  size_t named = 0;
  for (uint32_t code : codes) {
    CTCRange r = RangeWith(5);
    r.SetEffect(code, nullptr, 25);
    const auto it = NameTable().find(code);
    const std::string want = it == NameTable().end() ? "" : it->second;
    if (it != NameTable().end()) ++named;
    ASSERT_EQ(r.effectText, want) << "code " << code;
  }
  EXPECT_EQ(named, 48u);
}

// The longest text is 4095 characters; a longer one is cut, in the caller's
// buffer as well.
TEST(SetEffect, LongTextsAreCutAt4095InBothCopies) {
  for (size_t length : {4094u, 4095u, 4096u, 5000u}) {
    SCOPED_TRACE(length);
    std::string text(length, 'x');
    for (size_t i = 0; i < length; ++i) text[i] = static_cast<char>('a' + i % 26);
    std::vector<char> buffer(text.begin(), text.end());
    buffer.push_back('\0');
    CTCRange r = RangeWith(0);
    r.SetEffect(3, buffer.data(), 0);
    const size_t kept = length < 4095 ? length : 4095;
    EXPECT_EQ(std::string(r.effectText), text.substr(0, kept));
    EXPECT_EQ(std::strlen(buffer.data()), kept);
    // Past the cut the caller's bytes are untouched.
    for (size_t i = 4096; i < length; ++i) ASSERT_EQ(buffer[i], text[i]) << i;
  }
}

// A caller may pass the range's own text back in.
TEST(SetEffect, OwnTextPassedBackIsKept) {
  CTCRange r = RangeWith(9);
  r.SetEffect(42, r.effectText, kNone);
  EXPECT_STREQ(r.effectText, "previous");
  EXPECT_EQ(r.effectDuration, 9u);
}

}  // namespace

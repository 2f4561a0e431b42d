// CTCRange::SetEffect: duration rule, caller's text, cut, standard names.
#include <cstring>
#include <map>
#include <string>
#include <tuple>

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

// The duration rule (0xFFFFFFFF keeps a real duration, else gives 20), the
// caller's text over the standard name, no text for a cut without one or for
// no effect; a text is cut at 4095 characters, in the caller's buffer too.
TEST(SetEffect, DurationAndTextRules) {
  struct Case {
    const char* what;
    uint32_t old_duration, code;
    const char* text;  // null: no text
    uint32_t duration, want_duration;
    const char* want_text;
  };
  const Case cases[] = {
      {"a cut has no text", 8, 22, nullptr, 0, 0, ""},
      {"a cut takes the caller's text", 8, 5, "mix", 0, 0, "mix"},
      {"no effect ignores a text", 8, kNone, "mix", 30, 30, ""},
      {"no effect, keep a zero duration", 0, kNone, nullptr, kNone, 20, ""},
      {"keep a zero duration", 0, 47, nullptr, kNone, 20, "Cross"},
      {"keep a none duration", kNone, 47, nullptr, kNone, 20, "Cross"},
      {"keep a real duration", 12, 47, nullptr, kNone, 12, "Cross"},
      {"an empty text is no text", 8, 1, "", 10, 10, "Horizontal"},
      {"caller's text beats the name", 8, 1, "my wipe", 10, 10, "my wipe"},
      {"duration 1 is not a cut", 0, 2, nullptr, 1, 1, "Vertical"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    CTCRange r = RangeWith(c.old_duration);
    std::string text_copy = c.text == nullptr ? "" : c.text;
    r.SetEffect(c.code, c.text == nullptr ? nullptr : text_copy.data(), c.duration);
    EXPECT_EQ((std::tuple{r.effectCode, r.effectDuration, std::string(r.effectText)}),
              (std::tuple{c.code, c.want_duration, std::string(c.want_text)}));
  }
  for (size_t length : {4095u, 4096u, 5000u}) {
    std::string text(length, 'x');
    CTCRange r = RangeWith(0);
    r.SetEffect(3, text.data(), 0);
    EXPECT_EQ(std::string(r.effectText) + "|" + text.c_str(), std::string(4095, 'x') + "|" + std::string(4095, 'x'));
  }
}

// The 48 standard names, exactly as hosts and translators spell them; every
// other code, from 0 to well past the named ones and then a spread of large
// ones up to 0xFFFFFFFF, gets an empty text.
TEST(SetEffect, EveryCodeGetsItsStandardNameOrNone) {
  const std::map<uint32_t, std::string> names = {
      {0, "Disolve"}, {1, "Horizontal"}, {2, "Vertical"}, {3, "Upper left"}, {4, "Upper right"},
      {5, "Lower right"}, {6, "Lower left"}, {7, "Four corners"}, {8, "Four squares"},
      {21, "Barn doors vertical"}, {22, "Barn doors horizontal"}, {23, "Top center"},
      {24, "Right center"}, {25, "Bottom center"}, {26, "Left center"}, {42, "Diagonal NE to SW"},
      {43, "Triangles top/bottom"}, {44, "Triangles left/right"}, {45, "Diagonal stripe SW to NE"},
      {46, "Diagonal stripe NW to SE"}, {47, "Cross"}, {48, "Diamond Box"}, {61, "Wedge top"},
      {62, "Wedge right"}, {63, "Wedge bottom"}, {64, "Wedge left"}, {65, "V"}, {66, "V right"},
      {67, "V inverted"}, {68, "V left"}, {101, "Box"}, {102, "Diamond"}, {128, "4-point star"},
      {130, "Heart"}, {201, "Radial 12 o'clock"}, {202, "Radial 3 o'clock"},
      {203, "Radial 6 o'clock"}, {204, "Radial 9 o'clock"}, {241, "Radial top-left corner"},
      {242, "Radial bottom-left corner"}, {243, "Radial bottom-right corner"},
      {244, "Radial top-right corner"}, {245, "Radial top-left, bottom-right"},
      {246, "Radial bottom-left, top-right"}, {500, "Disolve Inverted"},
      {501, "Horizontal Inverted"}, {502, "Vertical Inverted"}, {503, "Upper left Inverted"},
  };
  ASSERT_EQ(names.size(), 48u);
  for (uint64_t code = 0; code <= 0xFFFFFFFFu; code = code < 2048 ? code + 1 : code * 3 + 1) {
    CTCRange r = RangeWith(5);
    r.SetEffect(static_cast<uint32_t>(code), nullptr, 25);
    const auto name = names.find(static_cast<uint32_t>(code));
    EXPECT_EQ(r.effectText, name != names.end() ? name->second : "") << "code " << code;
  }
}

}  // namespace

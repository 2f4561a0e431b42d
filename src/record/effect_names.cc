#include "record/effect_names.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace tcs {
namespace {

struct EffectNameEntry {
  uint32_t code;
  const char* name;
};

// The names are kept exactly as hosts and translators spell them, the
// dissolve's single 's' included.
constexpr std::array kEffectNames = std::to_array<EffectNameEntry>({
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
});

static_assert(kEffectNames.size() == 48);
static_assert(std::ranges::is_sorted(kEffectNames, {}, &EffectNameEntry::code) &&
                  std::ranges::adjacent_find(kEffectNames, {}, &EffectNameEntry::code) ==
                      kEffectNames.end(),
              "binary search needs strictly increasing codes");

}  // namespace

const char* EffectName(uint32_t code) {
  const auto* entry = std::ranges::lower_bound(kEffectNames, code, {}, &EffectNameEntry::code);
  return (entry != kEffectNames.end() && entry->code == code) ? entry->name : "";
}

}  // namespace tcs

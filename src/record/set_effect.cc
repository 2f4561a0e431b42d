// CTCRange::SetEffect: the one place that sets a range's transition code,
// duration and text together.
#include <cstring>

#include "record/effect_names.h"
#include "record/tc_range.h"

namespace {

constexpr unsigned int kNoEffect = 0xFFFFFFFF;
constexpr unsigned int kKeepDuration = 0xFFFFFFFF;
// What "keep the current duration" gives a range that has none.
constexpr uint32_t kDefaultDuration = 20;
constexpr size_t kMaxEffectText = CTCRange::kEffectTextSize - 1;

}  // namespace

// Order matters: the duration is settled first, and a caller's text wins over
// the cut rule, so a cut may carry a text of its own.
void CTCRange::SetEffect(unsigned int code, char* text, unsigned int duration) {
  effectCode = code;

  if (duration != kKeepDuration) {
    effectDuration = duration;
  } else if (effectDuration == 0 || effectDuration == kKeepDuration) {
    effectDuration = kDefaultDuration;
  }

  if (text != nullptr && text[0] != '\0' && code != kNoEffect) {
    // An over-long text is cut in the caller's buffer too, so the caller's
    // copy and the range's agree. strnlen never reads past the cut.
    size_t length = strnlen(text, kMaxEffectText + 1);
    if (length > kMaxEffectText) {
      text[kMaxEffectText] = '\0';
      length = kMaxEffectText;
    }
    // memmove: a caller may hand the range its own effectText.
    std::memmove(effectText, text, length);
    effectText[length] = '\0';
    return;
  }

  if (effectDuration == 0) {
    effectText[0] = '\0';
    return;
  }

  const char* name = tcs::EffectName(effectCode);
  std::memcpy(effectText, name, std::strlen(name) + 1);
}

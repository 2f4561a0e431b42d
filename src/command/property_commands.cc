// TCSSUB_PROPERTY get and set on the clip record that covers `position` on
// channel 0.
#include "command/property_commands.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "command/clip_search.h"
#include "lookup/search_mode.h"
#include "platform/clip.h"
#include "space/space.h"
#include "space/space_lock.h"

namespace tcs {
namespace {

constexpr uint32_t kCoverMode = SearchMode::CoverOnly().word();
constexpr uint32_t kPropertyChannel = 0;
// What a reply sets in `flags`: the texts, and the points of an effect.
constexpr uint32_t kTextReply = TCSF_TEXT;
constexpr uint32_t kEffectReply = TCSF_TEXT | TCSF_OUT | TCSF_IN;
static_assert(kEffectReply == 0x2500);
// `position` after a property was read or written.
constexpr uint32_t kPropertyDone = 1;

// The effect text with its zero, cut to the bytes the host declared after
// offset 76: a record declared at 80 bytes gets exactly 4 bytes and no zero.
// Below 77 bytes nothing is declared there, and nothing is written.
void ReplyEffectText(TCSCMD& record, const CTCRange& range) {
  if (record.size <= TCSCMD_TEXT_OFFSET) return;
  const size_t text_bytes = strnlen(range.effectText, sizeof range.effectText - 1) + 1;
  const size_t room = record.size - TCSCMD_TEXT_OFFSET;
  std::memcpy(TcsCmdReplyText(record), range.effectText, std::min(text_bytes, room));
}

// longText up to its zero, or up to the record's end when it has none.
std::string LongText(const TCSCMD& record) {
  return std::string(record.longText, strnlen(record.longText, sizeof record.longText));
}

// The clip record covering `position` on channel 0, or null; returns the
// search's result. REQUIRES: the space's lock, held while clip is used.
uint32_t FindPropertyClip(CTimeCodeSpace& space, const TCSCMD& record, CClip*& clip) {
  return FindClip(space, kCoverMode, record.position, clip, kPropertyChannel);
}

}  // namespace

uint32_t GetProperty(CTimeCodeSpace& space, TCSCMD& record) {
  SpaceLock lock(space);  // held until the last use of the record
  CClip* clip = nullptr;
  const uint32_t result = FindPropertyClip(space, record, clip);
  if (clip == nullptr) return result;

  const char* text = nullptr;
  switch (record.selector) {
    case TCSPROP_EFFECT:
    case TCSPROP_EFFECT_ALT:
      record.inPoint = clip->effectCode;
      record.outPoint = clip->effectDuration;
      ReplyEffectText(record, *clip);
      record.flags |= kEffectReply;
      record.position = kPropertyDone;
      return result;
    case TCSPROP_COMMENT:
      text = clip->comment;
      break;
    case TCSPROP_REEL:
      text = clip->reel;
      break;
    case TCSPROP_NAME:
      text = clip->name;
      break;
    default:
      return result;
  }
  // The clip library's replies take the full 4096 bytes whatever `size` says.
  CClip::GetString(TcsCmdReplyText(record), text, TCSCMD_REPLY_TEXT_SIZE);
  record.flags |= kTextReply;
  record.position = kPropertyDone;
  return result;
}

uint32_t SetProperty(CTimeCodeSpace& space, TCSCMD& record) {
  SpaceLock lock(space);  // held until the last use of the record
  CClip* clip = nullptr;
  const uint32_t result = FindPropertyClip(space, record, clip);
  if (clip == nullptr) return result;

  switch (record.selector) {
    case TCSPROP_COMMENT:
      clip->SetComment(LongText(record).c_str());
      break;
    case TCSPROP_REEL:
      clip->SetReel(LongText(record).c_str());
      break;
    case TCSPROP_EFFECT:
    case TCSPROP_EFFECT_ALT:
      // Given the host's own buffer: a text longer than an effect text is
      // cut there, in the record.
      clip->SetEffect(record.inPoint, record.longText, record.outPoint);
      break;
    default:
      return result;
  }
  record.position = kPropertyDone;
  space.Stamp();
  return result;
}

}  // namespace tcs

#include "platform/clip.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "platform/clip_notes.h"

namespace {

// A heap copy of at most `max` characters of text; null for a null or empty
// text. Throws std::bad_alloc. The caller frees the old text only after the
// copy exists, so a failure leaves the record as it was.
char* Dup(const char* text, size_t max) {
  if (text == nullptr || text[0] == '\0') return nullptr;
  const size_t n = strnlen(text, max);
  char* copy = static_cast<char*>(std::malloc(n + 1));
  if (copy == nullptr) throw std::bad_alloc();
  std::memcpy(copy, text, n);
  copy[n] = '\0';
  return copy;
}

constexpr size_t kNoLimit = static_cast<size_t>(-1);

// The copy of text that takes the place of old; old is freed only once the
// copy is made, so text may be old itself. The pointer fields are packed, so
// they are passed and assigned by value.
char* Replaced(char* old, const char* text, size_t max) {
  char* copy = Dup(text, max);
  std::free(old);
  return copy;
}

}  // namespace

// The description is cleared in the body: a virtual base is built by the
// most derived class, so in a host's class derived from this one the
// initialiser CLIPINFO() would not run and the text pointers would be
// whatever the memory held.
CClip::CClip() : CTCRange(CTCRange::TextUnset{}) {
  effectText[0] = '\0';
  static_cast<CLIPINFO&>(*this) = CLIPINFO();
}

CClip::~CClip() {
  std::free(clipName);
  std::free(name);
  std::free(comment);
  std::free(reel);
}

// The empty text is its first byte: the 4 KB text buffer is not written
// over again (every new record is cleared once more before it is filled,
// and a whole buffer written twice was a quarter of an EDL import).
void CClip::ClearClip() {
  start = 0;
  length = 0;
  effectCode = 0;
  effectDuration = 0;
  effectText[0] = '\0';
  std::free(clipName);
  std::free(name);
  std::free(comment);
  std::free(reel);
  static_cast<CLIPINFO&>(*this) = CLIPINFO();
  hostTag = 0;
  channel = 0;
}

void CClip::SetClip(const CClip* other) {
  if (other == this) return;
  if (other == nullptr) {
    ClearClip();
    return;
  }
  start = other->start;
  length = other->length;
  effectCode = other->effectCode;
  effectDuration = other->effectDuration;
  const size_t used = strnlen(other->effectText, kEffectTextSize - 1);
  std::memcpy(effectText, other->effectText, used);
  effectText[used] = '\0';
  SetClip(static_cast<const CLIPINFO*>(other));
  hostTag = other->hostTag;
  channel = other->channel;
}

void CClip::SetClip(const CLIPINFO* info) {
  if (info == nullptr || info == static_cast<const CLIPINFO*>(this)) return;
  // All copies first: a failed allocation leaves this record unchanged.
  std::unique_ptr<char, decltype(&std::free)> new_clip_name(Dup(info->clipName, kClipNameMax),
                                                            &std::free);
  std::unique_ptr<char, decltype(&std::free)> new_name(Dup(info->name, kNoLimit), &std::free);
  std::unique_ptr<char, decltype(&std::free)> new_comment(Dup(info->comment, kNoLimit),
                                                          &std::free);
  char* new_reel = Dup(info->reel, kNoLimit);
  std::free(clipName);
  std::free(name);
  std::free(comment);
  std::free(reel);
  clipName = new_clip_name.release();
  name = new_name.release();
  comment = new_comment.release();
  reel = new_reel;
  sourceIn = info->sourceIn;
  sourceOut = info->sourceOut;
  sourceOrigin = info->sourceOrigin;
  sourceEnd = info->sourceEnd;
  std::memcpy(libReserved, info->libReserved, sizeof libReserved);
  videoMask = info->videoMask;
  audioMask = info->audioMask;
  auxMask = info->auxMask;
  std::memcpy(libTrailer, info->libTrailer, sizeof libTrailer);
}

void CClip::GetString(char* buffer, const char* text, unsigned long size) {
  if (buffer == nullptr || size == 0) return;
  const size_t n = text == nullptr ? 0 : strnlen(text, size - 1);
  if (n != 0) std::memcpy(buffer, text, n);
  buffer[n] = '\0';
}

void CClip::SetName(const char* text) { name = Replaced(name, text, kNoLimit); }
void CClip::SetReel(const char* text) { reel = Replaced(reel, text, kNoLimit); }
void CClip::SetComment(const char* text) {
  comment = Replaced(comment, text, kNoLimit);
  clsSetBareNotes(this, 0);
}
void CClip::SetClipName(const char* text) { clipName = Replaced(clipName, text, kClipNameMax); }

extern "C" unsigned int findChannel(unsigned int mask, unsigned int* rest, unsigned int base) {
  if (mask == 0) {
    if (rest != nullptr) *rest = 0;
    return 0xFFFFFFFFu;
  }
  const unsigned int bit = static_cast<unsigned int>(__builtin_ctz(mask));
  if (rest != nullptr) *rest = mask & (mask - 1);
  return base + bit;
}

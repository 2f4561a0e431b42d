// EffectTextPool: one shared copy of each distinct effect text buffer that a
// lookup's play clips carry. Most play clips carry an empty text or one of
// the standard effect names, so a channel of any size holds only a handful
// of 4 KB buffers.
//
// A play clip takes its text when it is made and keeps it, so a later
// SetEffect on the record changes nothing here. The pool keeps the text up
// to its terminator (all 4096 bytes when there is none) followed by zeros:
// what a record's buffer holds past its terminator, stale bytes of a longer
// text it held before, is not part of its text and is not kept.
//
// Each pooled text counts the play clips that hold it and is freed with the
// last one. Acquire reads the buffer only up to the terminator and allocates
// only for a text not yet pooled; Release never allocates.
//
// Thread safety: none; owned by one lookup and used under its space's lock.
#ifndef TCS_LOOKUP_EFFECT_TEXT_POOL_H_
#define TCS_LOOKUP_EFFECT_TEXT_POOL_H_

#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>

#include "record/tc_range.h"

namespace tcs {

struct PooledText {
  char bytes[CTCRange::kEffectTextSize];
  uint32_t refs;
  uint32_t used;  // characters before the terminator; the rest is zero
};

class EffectTextPool {
 public:
  EffectTextPool() = default;
  EffectTextPool(const EffectTextPool&) = delete;
  EffectTextPool& operator=(const EffectTextPool&) = delete;
  ~EffectTextPool() = default;

  // The pooled copy of a 4096-byte buffer, with one more holder.
  const PooledText* Acquire(const char* buffer);
  // One holder fewer; the text is freed with its last holder.
  void Release(const PooledText* text);

  size_t distinct() const { return texts_.size(); }

 private:
  // Keys view the bytes of the text they map to, up to `used`.
  std::unordered_map<std::string_view, std::unique_ptr<PooledText>> texts_;
  // The empty text while pooled: most play clips hold it, and it needs no
  // hashing.
  PooledText* empty_ = nullptr;
};

}  // namespace tcs

#endif  // TCS_LOOKUP_EFFECT_TEXT_POOL_H_

// PlayClipNode: a play clip as a lookup stores it. The range, the transition
// code and duration and the record pointer are kept in the node; the 4 KB
// effect text is shared from the lookup's EffectTextPool, so a tree node is
// 32 bytes and a descent touches no text. CopyTo makes the full CPlayClip a
// query hands out.
//
// Nodes are made, changed and freed only by their CTCLookup, which keeps
// each node's text holder counted in its pool.
#ifndef TCS_LOOKUP_PLAY_CLIP_NODE_H_
#define TCS_LOOKUP_PLAY_CLIP_NODE_H_

#include <cstdint>
#include <cstring>

#include "lookup/effect_text_pool.h"
#include "record/play_clip.h"

namespace tcs {

struct PlayClipNode {
  uint32_t start;
  uint32_t length;
  uint32_t effectCode;
  uint32_t effectDuration;
  CClip* clip;
  const PooledText* text;

  const char* effectText() const { return text->bytes; }

  void CopyTo(CPlayClip& out) const {
    out.start = start;
    out.length = length;
    out.effectCode = effectCode;
    out.effectDuration = effectDuration;
    std::memcpy(out.effectText, text->bytes, sizeof out.effectText);
    out.clip = clip;
  }
};

static_assert(sizeof(PlayClipNode) == 32);

}  // namespace tcs

#endif  // TCS_LOOKUP_PLAY_CLIP_NODE_H_

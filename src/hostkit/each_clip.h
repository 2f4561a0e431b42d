// EachClip, ClipAt and TextsOf: every clip of one channel in start order,
// the clip at a frame, and what a row's record carries, read through the
// listing entry points as a host reads a space. Header
// only, so that the interchange libraries use it without linking the host
// kit. The caller holds no lock: a host's edit between two batches is seen
// from the frame the listing resumes at.
#ifndef TCS_HOSTKIT_EACH_CLIP_H_
#define TCS_HOSTKIT_EACH_CLIP_H_

#include <cstdint>
#include <string_view>

#include "tcs.h"

namespace tcs::host {

inline constexpr unsigned int kClipBatch = 256;  // rows asked for at a time

// Calls each(const TCSCLIP&) for every clip of `channel`. Returns TCS_OK, or
// the status of the listing call that failed (the clips before it handed
// over).
template <typename Each>
uint32_t EachClip(CTimeCodeSpace* space, uint32_t channel, Each&& each) {
  TCSCLIP rows[kClipBatch];
  unsigned int from = 0;
  unsigned int count = 0;
  do {
    const uint32_t status =
        tcsGetClips(space, channel, from, TCS_NO_TIMECODE, rows, kClipBatch, &count, &from);
    if (status != TCS_OK) return status;
    for (unsigned int i = 0; i < count; ++i) each(rows[i]);
  } while (from != TCS_NO_TIMECODE);
  return TCS_OK;
}

// What a listed row's record carries besides its timing: its texts (empty
// where it has none, and for a row without a record), the clip library's
// speed and the counting of its source timecodes. The texts are the record's own, valid while it stays in the space.
struct RecordTexts {
  std::string_view name;
  std::string_view reel;
  std::string_view comment;
  std::string_view clipName;
  bool hasSpeed = false;
  int32_t speedMilliFps = 0;  // thousandths of a source frame a second
  uint32_t speedEntry = 0;
  uint32_t bareNotes = 0;  // clsGetBareNotes: the comment's lines written bare
  uint32_t sourceCounting = CLS_SOURCE_AS_LIST;  // clsGetSourceCounting
};

inline RecordTexts TextsOf(const TCSCLIP& row) {
  RecordTexts texts;
  if (row.info == nullptr) return texts;
  const auto view = [](const char* text) { return text != nullptr ? text : std::string_view(); };
  texts.name = view(row.info->name);
  texts.reel = view(row.info->reel);
  texts.comment = view(row.info->comment);
  texts.clipName = view(row.info->clipName);
  texts.hasSpeed = clsGetClipSpeed(row.info, &texts.speedMilliFps, &texts.speedEntry) != 0;
  texts.bareNotes = clsGetBareNotes(row.info);
  texts.sourceCounting = clsGetSourceCounting(row.info);
  return texts;
}

// The row of the clip that starts or plays at `at` (the first a listing
// from `at` gives: where several start there together, the first listed).
// False when there is none, or the call fails.
inline bool ClipAt(CTimeCodeSpace* space, uint32_t channel, uint32_t at, TCSCLIP& row) {
  unsigned int count = 0;
  unsigned int next = 0;
  return tcsGetClips(space, channel, at, at + 1, &row, 1, &count, &next) == TCS_OK && count == 1;
}

}  // namespace tcs::host

#endif  // TCS_HOSTKIT_EACH_CLIP_H_

// EditRequest: one timeline edit as a host asks for it (overwrite, ripple
// insert, blank, ripple delete, trim, move on a set of channels), checked
// and turned into the command record that tcsSetMode takes. The tcs tool and
// the Python module send their edits through it, so both send the same
// records. Uses only the C entry points of tcs.h. Plain values; no state.
#ifndef TCS_HOSTKIT_EDIT_REQUEST_H_
#define TCS_HOSTKIT_EDIT_REQUEST_H_

#include <cstdint>
#include <optional>
#include <string>

#include "tcs.h"

namespace tcs::host {

enum class EditKind { kOverwrite, kInsert, kBlank, kDelete, kTrim, kMove };

struct EditRequest {
  EditKind kind = EditKind::kOverwrite;
  uint32_t videoMask = 0;  // the channels: bit c is channel c (0..31)
  uint32_t audioMask = 0;  // bit k is channel 32 + k
  // overwrite: at, source in, source out; insert: at, duration; blank and
  // delete: from, to; trim: at, source in, source out; move: at, to.
  uint32_t a = 0, b = 0, c = 0;
  std::string name;  // overwrite: the clip's name
};

// What is wrong with the request on its own (no channel, a source out not
// after its in, a gap under 2 frames, an empty or over-long name), or
// nothing.
std::optional<std::string> Problem(const EditRequest& edit);

// What the space says against a request: a trim or move needs a clip that
// starts exactly at its AT on every channel, and a ripple insert must not
// fall inside a clip; the space would otherwise change nothing, silently.
struct SpaceProblem {
  enum Kind { kNoClipStarts, kInsideClip } kind;
  uint32_t channel;
  std::string clip_name;  // kInsideClip: the clip it falls in
  // "no clip starts at AT on V1", "AT lies inside a clip on V1 (NAME);
  // insert at a cut", with AT as the caller writes timecodes.
  std::string Text(const std::string& at) const;
};
std::optional<SpaceProblem> ProblemIn(CTimeCodeSpace* space, const EditRequest& edit);

// The command record. REQUIRES: !Problem(edit).
//   insert: the space moves later clips one frame past the range it is given,
//   so the range sent is one frame shorter than the gap asked for.
TCSCMD Record(const EditRequest& edit);

}  // namespace tcs::host

#endif  // TCS_HOSTKIT_EDIT_REQUEST_H_

// The edit path: one command of the host's record becomes one edit of the
// space. The drawings show channel contents before and after; A, B, C are
// play clips, `.` is blank.
#include "command/edit_commands.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

#include "lookup/lookup.h"
#include "record/timecode.h"
#include "platform/clip.h"
#include "space/space.h"
#include "space/status_log.h"
#include "tcs_status.h"

namespace tcs {
namespace {

constexpr uint32_t kPointFlags = TCSF_AT | TCSF_IN | TCSF_OUT;
constexpr uint32_t kAllChannels = 0xFFFFFFFFu;

// The host's flags, decoded once.
struct EditFlags {
  explicit EditFlags(uint32_t f)
      : pos((f & TCSF_POS) != 0),
        at((f & TCSF_AT) != 0),
        in((f & TCSF_IN) != 0),
        out((f & TCSF_OUT) != 0),
        all((f & TCSF_ALL) != 0),
        text((f & TCSF_TEXT) != 0),
        alt_pos((f & TCSF_ALTPOS) != 0),
        all_marks((f & TCSF_MARKS) == TCSF_MARKS),
        any_point((f & kPointFlags) != 0),
        ripple(f & TCSF_RIPPLE) {}

  bool pos, at, in, out, all, text, alt_pos;
  bool all_marks;   // TCSF_POS, TCSF_IN and TCSF_OUT together
  bool any_point;   // one of TCSF_AT, TCSF_IN, TCSF_OUT
  uint32_t ripple;  // TCSF_RIPPLE is TCS_EDIT_RIPPLE's bit, passed on as it is
};
static_assert(TCSF_RIPPLE == TCS_EDIT_RIPPLE);

// A command's arguments. Every field comes from the working copy `w`, except
// the two reads the insert makes of the host's own record (`host`): the first
// byte of longText, which picks the clip form, and the comment text.
struct Edit {
  const TCSCMD& host;
  const TCSCMD& w;
  EditFlags flags;
  uint32_t in, out, video_mask, audio_mask;
};

// The host's text as the comment: up to its zero, and never past the end of
// the 4188-byte record, should the host leave both texts unended.
std::string HostComment(const TCSCMD& host) {
  const char* text = host.text;
  return std::string(text, strnlen(text, TCSCMD_SIZE - TCSCMD_TEXT_OFFSET));
}

uint32_t Refuse() { return LogStatus(TCS_ERR_BAD_ARGUMENTS); }

// An out point past the last start becomes the last start minus the in point:
// deliberately not a clamp to the end of the timeline.
uint32_t BoundOut(uint32_t in, uint32_t out) { return out > kLastStart ? kLastStart - in : out; }

// The clip form of TCSCMD_INSERT: a new clip record over its channels.
//
//   before  | A         | B     |
//   after   | A | C       |  B  |     C laid over [start, start + length)
//
// C runs between pos and pos + (out - in): with the out point before the in
// point, C ends at pos instead of starting there.
uint32_t InsertClip(CTimeCodeSpace& space, const Edit& e) {
  if (!e.flags.any_point) return Refuse();
  const uint32_t pos = e.flags.alt_pos ? e.w.subCommand : e.w.position;
  const uint32_t out = e.flags.all_marks ? BoundOut(e.in, e.out) : e.out;
  if (e.in == kNoTimecode || out == kNoTimecode) return Refuse();
  const Span range = TwoPointRule(pos, pos + (out - e.in));

  CClip clip;
  clip.ClearClip();
  clip.start = range.start;
  clip.length = range.length;
  clip.sourceIn = e.in;
  clip.sourceOut = out;
  clip.SetClipName(e.w.text);
  clip.SetName(e.w.longText);
  clip.videoMask = e.video_mask;
  clip.audioMask = e.audio_mask;
  if (e.host.text[0] != '\0') clip.SetComment(HostComment(e.host).c_str());
  // Refused files (no add notification) are the space's to log.
  space.InsertFile(0, &clip);
  return TCS_OK;
}

// TCSCMD_INSERT: the clip form when longText names a clip, else the range form.
//
//   ripple      | A |  B  |   ->   | A | ....... |  B  |   B moves out - in + 1 later
//   no ripple   | A    B  |   ->   | A | .. |  B  |       [in, out) blanked
uint32_t Insert(CTimeCodeSpace& space, const Edit& e) {
  if (e.flags.text && e.host.longText[0] != '\0') return InsertClip(space, e);
  if (!e.flags.all_marks) return Refuse();
  space.ModifyRange(e.in, e.out, e.video_mask, e.audio_mask, e.flags.ripple | TCS_EDIT_INSERT);
  return TCS_OK;
}

// TCSCMD_CLEAR: blank [in, out'), or every video and audio channel whole.
//
//   no ripple   | A  B  C |   ->   | A .. C |
//   ripple      | A  B  C |   ->   | A C |     the gap closes
uint32_t Clear(CTimeCodeSpace& space, const Edit& e) {
  const uint32_t flags = e.flags.ripple | TCS_EDIT_BLANK;
  if (e.flags.all_marks) {
    space.ModifyRange(e.in, BoundOut(e.in, e.out), e.video_mask, e.audio_mask, flags);
    return TCS_OK;
  }
  if (e.flags.all) {
    space.ModifyRange(0, kLastStart, kAllChannels, kAllChannels, flags);
    return TCS_OK;
  }
  return Refuse();
}

// TCSCMD_DELETE: the range [in, out) goes; no bound is put on out.
//
//   ripple      | A  B  C |   ->   | A C |     later clips close the gap
//   no ripple   | A  B  C |   ->   | A .. C |
uint32_t Delete(CTimeCodeSpace& space, const Edit& e) {
  if (!e.flags.all_marks) return Refuse();
  space.ModifyRange(e.in, e.out, e.video_mask, e.audio_mask, e.flags.ripple | TCS_EDIT_DELETE);
  return TCS_OK;
}

// TCSCMD_TRIM on the clip that starts at position:
//
//   gap (ripple)   |A| B |   ->   |A| ..... | B |   B moves in - position + 1 later
//   move (AT)      |A| B |   ->   |A|  ..  | B |    B's start becomes in
//   trim (IN/OUT)  |A| B |   ->   |A| B' |          B plays source in..out
// Without TCSF_POS the command is accepted and does nothing.
uint32_t Trim(CTimeCodeSpace& space, const Edit& e) {
  if (!e.flags.pos) return TCS_OK;
  const uint32_t at = e.w.position;
  if (e.flags.ripple != 0) {
    space.ModifyRange(at, e.in, e.video_mask, e.audio_mask, TCS_EDIT_INSERT | TCS_EDIT_RIPPLE);
    return TCS_OK;
  }
  if (e.flags.at) {
    space.TrimRange(at, e.in, e.out, e.video_mask, e.audio_mask, 1);
    return TCS_OK;
  }
  if (e.flags.in || e.flags.out) {
    space.TrimRange(at, e.in, e.out, e.video_mask, e.audio_mask, 0);
    return TCS_OK;
  }
  return Refuse();
}

// How many bytes of the record the host filled. 0 stands for the 56 bytes of
// the fixed fields and is written back; more than a record counts as a record.
uint32_t DeclaredSize(TCSCMD& record) {
  if (record.size == 0) record.size = TCSCMD_DEFAULT_SIZE;
  return std::min(record.size, TCSCMD_SIZE);
}

}  // namespace

uint32_t RunEditCommand(CTimeCodeSpace& space, TCSCMD& record) {
  // The working copy holds the declared bytes and zeros past them, so an
  // undeclared field reads as 0 (an undeclared longText as empty). `size`
  // says how much of the fixed 4188-byte record the host filled in, not how
  // much it owns: the insert's two host reads (the first byte of longText,
  // and text for the comment) are made in the host's record whatever `size`
  // says, everything else in the copy.
  TCSCMD w{};
  std::memcpy(&w, &record, DeclaredSize(record));
  // A longText that runs to the record's end without its zero ends one
  // character short of it, inside the copy.
  w.longText[sizeof w.longText - 1] = '\0';

  const Edit e{record, w, EditFlags(w.flags), w.inPoint, w.outPoint, w.videoMask, w.audioMask};
  switch (w.command) {
    case TCSCMD_INSERT:
      return Insert(space, e);
    case TCSCMD_CLEAR:
      return Clear(space, e);
    case TCSCMD_DELETE:
      return Delete(space, e);
    case TCSCMD_TRIM:
      return Trim(space, e);
    default:
      return TCS_OK;
  }
}

}  // namespace tcs

#include "edit_request.h"

#include <cstring>

#include "each_clip.h"

namespace tcs::host {
namespace {

TCSCMD NewRecord(uint32_t command, const EditRequest& edit) {
  TCSCMD cmd;
  std::memset(&cmd, 0, sizeof cmd);
  cmd.type = TCSCMD_TYPE;
  cmd.size = sizeof cmd;
  cmd.command = command;
  cmd.videoMask = edit.videoMask;
  cmd.audioMask = edit.audioMask;
  return cmd;
}

std::string Name(uint32_t channel) {
  char text[8];
  tcsChannelName(channel, text, sizeof text);
  return text;
}

// The clip starting or playing at `at` on `channel`: its start and name.
struct Found {
  uint32_t start;
  std::string name;
};

std::optional<Found> ClipAt(CTimeCodeSpace* space, uint32_t channel, uint32_t at) {
  TCSCLIP row;
  if (at == TCS_NO_TIMECODE || !host::ClipAt(space, channel, at, row) ||
      at - row.start >= row.length) {
    return std::nullopt;
  }
  return Found{row.start, row.info != nullptr && row.info->name != nullptr ? row.info->name : ""};
}

}  // namespace

std::optional<std::string> Problem(const EditRequest& edit) {
  if (edit.videoMask == 0 && edit.audioMask == 0) return "name at least one channel";
  switch (edit.kind) {
    case EditKind::kOverwrite:
      if (edit.c <= edit.b) return "the source out point must follow the in point";
      if (edit.name.empty() || edit.name.size() >= sizeof(TCSCMD{}.longText)) {
        return "give the clip a name";
      }
      return std::nullopt;
    case EditKind::kInsert:
      if (edit.b < 2) return "a gap is at least 2 frames long";
      return std::nullopt;
    case EditKind::kBlank:
    case EditKind::kDelete:
      if (edit.b <= edit.a) return "TO must follow FROM";
      return std::nullopt;
    case EditKind::kTrim:
      if (edit.c <= edit.b) return "the source out point must follow the in point";
      return std::nullopt;
    case EditKind::kMove:
      return std::nullopt;
  }
  return "unknown edit";
}

std::string SpaceProblem::Text(const std::string& at) const {
  if (kind == kNoClipStarts) return "no clip starts at " + at + " on " + Name(channel);
  return at + " lies inside a clip on " + Name(channel) + " (" + clip_name + "); insert at a cut";
}

std::optional<SpaceProblem> ProblemIn(CTimeCodeSpace* space, const EditRequest& edit) {
  const bool needs_start = edit.kind == EditKind::kTrim || edit.kind == EditKind::kMove;
  if (!needs_start && edit.kind != EditKind::kInsert) return std::nullopt;
  for (uint32_t c = 0; c < 64; ++c) {
    if (((c < 32 ? edit.videoMask : edit.audioMask) >> (c % 32) & 1) == 0) continue;
    const std::optional<Found> clip = ClipAt(space, c, edit.a);
    const bool starts = clip && clip->start == edit.a;
    if (needs_start && !starts) return SpaceProblem{SpaceProblem::kNoClipStarts, c, ""};
    if (!needs_start && clip && !starts) {
      return SpaceProblem{SpaceProblem::kInsideClip, c, clip->name};
    }
  }
  return std::nullopt;
}

TCSCMD Record(const EditRequest& edit) {
  switch (edit.kind) {
    case EditKind::kOverwrite: {
      TCSCMD cmd = NewRecord(TCSCMD_INSERT, edit);
      cmd.flags = TCSF_TEXT | TCSF_POS | TCSF_IN | TCSF_OUT;
      cmd.position = edit.a;
      cmd.inPoint = edit.b;
      cmd.outPoint = edit.c;
      std::memcpy(cmd.longText, edit.name.c_str(), edit.name.size() + 1);
      return cmd;
    }
    case EditKind::kInsert: {
      TCSCMD cmd = NewRecord(TCSCMD_INSERT, edit);
      cmd.flags = TCSF_MARKS | TCSF_RIPPLE;
      cmd.inPoint = cmd.position = edit.a;
      cmd.outPoint = edit.a + edit.b - 1;
      return cmd;
    }
    case EditKind::kBlank:
    case EditKind::kDelete: {
      const bool ripple = edit.kind == EditKind::kDelete;
      TCSCMD cmd = NewRecord(ripple ? TCSCMD_DELETE : TCSCMD_CLEAR, edit);
      cmd.flags = TCSF_MARKS | (ripple ? TCSF_RIPPLE : 0);
      cmd.inPoint = cmd.position = edit.a;
      cmd.outPoint = edit.b;
      return cmd;
    }
    case EditKind::kTrim:
    case EditKind::kMove: {
      TCSCMD cmd = NewRecord(TCSCMD_TRIM, edit);
      cmd.position = edit.a;
      cmd.inPoint = edit.b;
      if (edit.kind == EditKind::kTrim) {
        cmd.flags = TCSF_POS | TCSF_IN | TCSF_OUT;
        cmd.outPoint = edit.c;
      } else {
        cmd.flags = TCSF_POS | TCSF_AT;
      }
      return cmd;
    }
  }
  return NewRecord(0, edit);
}

}  // namespace tcs::host

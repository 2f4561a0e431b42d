#include "cmx3600/warning.h"

namespace tcs::cmx3600 {

std::string_view WarningKindName(WarningKind kind) {
  switch (kind) {
    case WarningKind::kUnknownLine: return "unknown line";
    case WarningKind::kBadEventLine: return "bad event line";
    case WarningKind::kBadAudioLine: return "bad AUD line";
    case WarningKind::kRecordOutBeforeIn: return "record out before record in";
    case WarningKind::kFramePastRate: return "frame field past the rate";
    case WarningKind::kImpliedDissolve: return "transition without edit type";
    case WarningKind::kGluedTracks: return "glued track field";
    case WarningKind::kAmbiguousTracks: return "ambiguous track field";
    case WarningKind::kTracksDropped: return "tracks above 32";
    case WarningKind::kTransitionNumbers: return "transition event numbers differ";
    case WarningKind::kKeyAsCut: return "key read as a cut";
    case WarningKind::kSpeedIgnored: return "speed change";
    case WarningKind::kSplitIgnored: return "split edit";
    case WarningKind::kZeroLength: return "zero-length event";
    case WarningKind::kSourceLength: return "source length";
    case WarningKind::kOverlap: return "overlapping events";
    case WarningKind::kBadNote: return "bad note";
    case WarningKind::kUnknownFrameCode: return "unknown FCM";
    case WarningKind::kPastTimelineEnd: return "past the end of the timeline";
    case WarningKind::kNameCut: return "name cut";
  }
  return "warning";
}

bool RefusedWhenStrict(WarningKind kind) {
  return uint32_t(kind) <= uint32_t(WarningKind::kGluedTracks);
}

}  // namespace tcs::cmx3600

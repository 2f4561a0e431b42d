#include "platform/edl_import.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "cmx3600/reader.h"
#include "cmx3600/writer.h"
#include "platform/clip.h"
#include "platform/clip_counting.h"
#include "platform/clip_notes.h"
#include "platform/clip_speed.h"
#include "platform/edl_rate.h"
#include "platform/errlog.h"
#include "record/tcs_clip.h"
#include "record/timecode.h"
#include "tcs_status.h"

extern "C" __attribute__((weak)) uint32_t _tcsAddEdlLine(CTimeCodeSpace* space,
                                                          const EDLLINE* line, uint64_t tag);
extern "C" __attribute__((weak)) unsigned int tcsAddClip(CTimeCodeSpace* space, CClip* clip,
                                                         unsigned int channel);
extern "C" __attribute__((weak)) unsigned int tcsGetClips(CTimeCodeSpace* space,
                                                          unsigned int channel, unsigned int from,
                                                          unsigned int to, TCSCLIP* clips,
                                                          unsigned int capacity,
                                                          unsigned int* count, unsigned int* next);

namespace tcs::translator {
namespace {

constexpr uint32_t kMaxLoggedWarnings = 100;
constexpr unsigned int kWarningSeverity = 0x80000000u;

struct Import {
  CTimeCodeSpace* space;
  const char* function;  // edlReadFile or edlReadText, for log lines
  const char* label;     // the path; null for a text from memory
  EDLWARNINGFN onWarning;
  void* context;
  uint32_t logged = 0;
  std::string name;     // a name cut to what an export carries
  std::string comment;  // a comment with a FROM CLIP NAME note added
};

void Report(Import& import, uint32_t line, cmx3600::WarningKind kind, std::string_view text,
            bool fatal) {
  const std::string message(text);
  if (import.onWarning != nullptr) {
    const EDLWARNING warning{line, uint32_t(kind), fatal ? 1u : 0u, message.c_str()};
    import.onWarning(import.context, &warning);
  } else if (fatal && import.label != nullptr) {
    ErrOut("%s(%s) line %u: %s", import.function, import.label, line, message.c_str());
  } else if (fatal) {
    ErrOut("%s line %u: %s", import.function, line, message.c_str());
  } else if (import.logged < kMaxLoggedWarnings) {
    ErrFmtOut(kWarningSeverity, line, 0, "WARNING(%s) %s%sline %u: %s", import.function,
              import.label != nullptr ? import.label : "", import.label != nullptr ? " " : "",
              line, message.c_str());
  } else if (import.logged == kMaxLoggedWarnings) {
    ErrFmtOut(kWarningSeverity, line, 0, "WARNING(%s) %s: further warnings not shown",
              import.function, import.label != nullptr ? import.label : "text");
  }
  if (!fatal) ++import.logged;
}

void OnWarning(void* context, const cmx3600::Warning& warning) {
  Report(*static_cast<Import*>(context), warning.line, warning.kind, warning.text, warning.fatal);
}

char* Text(std::string_view text) {
  return text.empty() ? nullptr : const_cast<char*>(text.data());  // NUL-terminated by the reader
}

// The aux channels of this codec's own TCS AUX note. An EDL line lays video
// and audio channels only, so the translator lays these itself: the same
// record, placed as the line places it, without video and audio masks.
void AddAux(CTimeCodeSpace* space, const EDLLINE& line, uint32_t aux, uint64_t tag) {
  CClip record;
  record.ClearClip();
  record.SetClip(&line.clip);
  record.start = ClampStart(line.recordIn);
  record.length = LengthRule(record.start, line.clip.sourceOut - line.clip.sourceIn);
  record.hostTag = tag;
  record.SetEffect(line.effectCode, nullptr, line.effectDuration);
  record.videoMask = 0;
  record.audioMask = 0;
  record.auxMask = aux;
  for (unsigned bit = 0; bit < 32; ++bit) {
    if (((aux >> bit) & 1u) != 0) tcsAddClip(space, &record, 64 + bit);
  }
}

// The name of the clip that plays on `channel` in the frame before `at`,
// which a transition starting at `at` comes from; empty where none plays.
std::string_view NameBefore(CTimeCodeSpace* space, uint32_t channel, uint32_t at) {
  TCSCLIP rows[4];
  unsigned int count = 0;
  unsigned int next = 0;
  if (at == 0 || tcsGetClips == nullptr ||
      tcsGetClips(space, channel, at - 1, at, rows, 4, &count, &next) != TCS_OK) {
    return {};
  }
  // Of several that start together, the last listed plays.
  for (unsigned int i = count; i-- > 0;) {
    const TCSCLIP& row = rows[i];
    if (at - 1 - row.start >= row.length) continue;
    return row.info != nullptr && row.info->name != nullptr ? row.info->name : "";
  }
  return {};
}

uint32_t FirstChannel(const cmx3600::Event& event) {
  unsigned int rest = 0;
  if (event.video != 0) return findChannel(event.video, &rest, 0);
  if (event.audio != 0) return findChannel(event.audio, &rest, 32);
  return findChannel(event.aux, &rest, 64);
}

// A two-line transition names the clip it comes from. Where that is not the
// clip that plays before it in the space (which is what a writer names), the
// name is kept with the incoming clip, as the note it was read from: a last
// line "FROM CLIP NAME: ..." of its comment, marked as standing bare. A
// writer of the whole space names the outgoing clip from it. True when the
// comment was extended (import.comment, `bare` updated).
bool KeepOutgoingName(Import& import, const cmx3600::Event& event, uint32_t& bare) {
  // A note spells a name with control characters as blanks, and no blank at
  // either end.
  if (!event.hasOutgoing || event.outgoingName.empty() ||
      cmx3600::NoteReadsBackAs(NameBefore(import.space, FirstChannel(event), event.recordIn),
                               event.outgoingName)) {
    return false;
  }
  const std::string_view comment = event.hasComment ? event.comment : std::string_view();
  const uint32_t lines =
      comment.empty() ? 0 : uint32_t(std::count(comment.begin(), comment.end(), '\n')) + 1;
  import.comment.assign(comment);
  if (lines != 0) import.comment += '\n';
  import.comment += "FROM CLIP NAME: ";
  import.comment.append(event.outgoingName);
  if (lines < 32) bare |= 1u << lines;
  return true;
}

void OnEvent(void* context, const cmx3600::Event& event) {
  Import& import = *static_cast<Import*>(context);
  EDLLINE line;
  std::memset(&line, 0, sizeof line);
  line.clip.sourceIn = event.sourceIn;
  line.clip.sourceOut = event.sourceOut;
  // The space cuts a clip that runs past the end of the timeline; its source
  // out is cut with it, so that what the space plays and what an export of it
  // writes agree. Otherwise two such clips that differ only in the frames the
  // space never plays would stay two events here and come back as one.
  const uint32_t span = event.sourceOut - event.sourceIn;
  const uint32_t kept = LengthRule(ClampStart(event.recordIn), span);
  if (kept != span) {
    Report(import, event.line, cmx3600::WarningKind::kPastTimelineEnd,
           "event runs past the end of the timeline: cut at its end", false);
    line.clip.sourceOut = event.sourceIn + kept;
  }
  line.clip.videoMask = event.video;
  line.clip.audioMask = event.audio;
  line.clip.name = Text(event.name);
  // A longer name would be cut by the next export, and two clips that differ
  // only past the cut would stop being told apart.
  if (event.name.size() > EDLLINE_NAME_MAX) {
    Report(import, event.line, cmx3600::WarningKind::kNameCut,
           "clip name cut to the 4097 bytes an export carries", false);
    import.name.assign(event.name.substr(0, EDLLINE_NAME_MAX));
    line.clip.name = import.name.data();
  }
  line.clip.reel = Text(event.reel);
  line.clip.comment = event.hasComment ? const_cast<char*>(event.comment.data()) : nullptr;
  uint32_t bare = event.bareNotes;
  if (KeepOutgoingName(import, event, bare)) line.clip.comment = import.comment.data();
  clsSetBareNotes(&line.clip, bare);
  line.clip.clipName = Text(event.clipName);
  line.unused80 = event.number;
  line.recordIn = event.recordIn;
  line.recordOut = event.recordOut;
  // The clip library keeps the speed with the record, through every edit,
  // and how its source timecodes counted.
  if (event.hasSpeed) clsSetClipSpeed(&line.clip, event.speedMilliFps, event.speedEntry);
  clsSetSourceCounting(&line.clip, event.sourceCounting == cmx3600::SourceCounting::kDropFrame
                                       ? CLS_SOURCE_DROP_FRAME
                                   : event.sourceCounting == cmx3600::SourceCounting::kNonDrop
                                       ? CLS_SOURCE_NON_DROP
                                       : CLS_SOURCE_AS_LIST);
  line.transition = event.transition ? EDLLINE_WIPE : EDLLINE_CUT;
  line.effectCode = event.effectCode;
  line.effectDuration = event.effectDuration;
  _tcsAddEdlLine(import.space, &line, event.line);
  if (event.aux != 0) AddAux(import.space, line, event.aux, event.line);
}

uint32_t SourceCode(cmx3600::RateSource source) {
  switch (source) {
    case cmx3600::RateSource::kOwnNote:
      return EDL_RATE_OWN_NOTE;
    case cmx3600::RateSource::kDropFrame:
      return EDL_RATE_DROP_FRAME;
    case cmx3600::RateSource::kFrameFields:
      return EDL_RATE_FRAME_FIELDS;
    case cmx3600::RateSource::kNoEvents:
      break;
  }
  return EDL_RATE_NO_EVENTS;
}

}  // namespace

uint32_t ImportText(CTimeCodeSpace* space, std::string_view text, const EDLSETTINGS* settings,
                    const char* label, EDLWARNINGFN on_warning, void* context,
                    EDLREADRATE* rate) {
  Import import{space, label != nullptr ? "edlReadFile" : "edlReadText", label, on_warning,
                context, 0, {}, {}};
  cmx3600::ReadSettings read;
  read.rate = RateOf(settings);
  read.strict = settings != nullptr && settings->strict != 0;
  read.keepRate = settings != nullptr && settings->keepRate != 0;
  read.findRate = settings != nullptr && settings->findRate != 0;
  cmx3600::EventReader reader(read, &OnEvent, &OnWarning, &import);
  const bool whole = reader.Read(text);
  if (rate != nullptr) {
    const cmx3600::RateScan& scan = reader.rateScan();
    const timecode::FrameRate counted = read.findRate ? scan.rate : read.rate;
    *rate = {counted.fps, counted.dropFrame ? 1u : 0u,
             read.findRate ? SourceCode(scan.source) : EDL_RATE_GIVEN, scan.highestFrame,
             scan.eventLines};
  }
  return whole ? TCS_OK : TCS_ERR_BAD_ARGUMENTS;
}

}  // namespace tcs::translator

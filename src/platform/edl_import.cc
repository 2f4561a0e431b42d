#include "platform/edl_import.h"

#include <cstring>
#include <string>

#include "cmx3600/reader.h"
#include "platform/clip.h"
#include "platform/clip_notes.h"
#include "platform/clip_speed.h"
#include "platform/edl_rate.h"
#include "platform/errlog.h"
#include "record/timecode.h"
#include "tcs_status.h"

extern "C" __attribute__((weak)) uint32_t _tcsAddEdlLine(CTimeCodeSpace* space,
                                                          const EDLLINE* line, uint64_t tag);
extern "C" __attribute__((weak)) unsigned int tcsAddClip(CTimeCodeSpace* space, CClip* clip,
                                                         unsigned int channel);

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
  std::string name;  // a name cut to what an export carries
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
  clsSetBareNotes(&line.clip, event.bareNotes);
  line.clip.clipName = Text(event.clipName);
  line.unused80 = event.number;
  line.recordIn = event.recordIn;
  line.recordOut = event.recordOut;
  // The clip library keeps the speed with the record, through every edit.
  if (event.hasSpeed) clsSetClipSpeed(&line.clip, event.speedMilliFps, event.speedEntry);
  line.transition = event.transition ? EDLLINE_WIPE : EDLLINE_CUT;
  line.effectCode = event.effectCode;
  line.effectDuration = event.effectDuration;
  _tcsAddEdlLine(import.space, &line, event.line);
  if (event.aux != 0) AddAux(import.space, line, event.aux, event.line);
}

}  // namespace

uint32_t ImportText(CTimeCodeSpace* space, std::string_view text, const EDLSETTINGS* settings,
                    const char* label, EDLWARNINGFN on_warning, void* context) {
  Import import{space, label != nullptr ? "edlReadFile" : "edlReadText", label, on_warning,
                context, 0, {}};
  cmx3600::ReadSettings read;
  read.rate = RateOf(settings);
  read.strict = settings != nullptr && settings->strict != 0;
  read.keepRate = settings != nullptr && settings->keepRate != 0;
  cmx3600::EventReader reader(read, &OnEvent, &OnWarning, &import);
  return reader.Read(text) ? TCS_OK : TCS_ERR_BAD_ARGUMENTS;
}

}  // namespace tcs::translator

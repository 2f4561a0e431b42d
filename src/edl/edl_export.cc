// Each step of the export probes first and steps second:
//
//   walk record ──copy──> probe record ──step, fresh marks──> the event's
//        │                                 channels exactly, a copy of its
//        │                                 clip record -> one line
//        └──step, marks accumulating──> past the same event
//
// The probe and the walk start from the same record, so they find the same
// event; only the masks differ (the walk's keep the channels reported at the
// current position, so the next step moves on).
#include "edl/edl_export.h"

#include <cstring>
#include <memory>

#include "command/clip_walk.h"
#include "command/tcs_cmd.h"
#include "platform/clip.h"
#include "platform/qvos.h"
#include "record/edl_line.h"
#include "record/timecode.h"
#include "space/registry.h"
#include "space/status_log.h"
#include "tcs_status.h"

// The translator is the host's. A process whose libraries define none leaves
// these references null; the export then answers as if the file could not
// be opened, instead of the library failing to load.
#pragma weak edlOpen
#pragma weak edlWriteLine
#pragma weak edlClose

namespace tcs {
namespace {

// The line and the five buffers its text pointers point to, zero-filled once
// and reused for every line: fields the export never writes stay 0, and
// extraText stays empty.
struct LineBlock {
  EDLLINE line;
  char clipName[11];
  char name[EDLLINE_NAME_MAX + 2];
  char comment[4609];
  char reel[65];
  char extraText[4611];
};

std::unique_ptr<LineBlock> NewLineBlock() {
  auto block = std::make_unique<LineBlock>();  // value-initialised: all zeros
  block->line.clip.clipName = block->clipName;
  block->line.clip.name = block->name;
  block->line.clip.comment = block->comment;
  block->line.clip.reel = block->reel;
  block->line.extraText = block->extraText;
  return block;
}

std::unique_ptr<EDLSETTINGS> OwnSettings(const EDLSETTINGS* settings) {
  auto own = std::make_unique<EDLSETTINGS>();
  if (settings != nullptr) {
    std::memcpy(own.get(), settings, sizeof *own);
  } else {
    own->revision = 1;
  }
  return own;
}

std::unique_ptr<TCSCMD> NewWalkRecord() {
  auto walk = std::make_unique<TCSCMD>();
  walk->command = TCSCMD_GET;
  walk->subCommand = TCSSUB_NEXT;
  walk->position = 0;
  walk->inPoint = 0;
  walk->outPoint = kNoTimecode;  // no limit on the first step
  return walk;
}

// One event: the probe record's position, source points and masks, the
// clip copy's texts and transition. Cut or wipe goes by the effect text
// alone, so a code without a name goes out as a cut with its code and
// duration.
void FillLine(LineBlock& block, const TCSCMD& probe, const CClip& clip,
              const EDLSETTINGS& settings) {
  EDLLINE& line = block.line;
  line.lineFlags = EDLLINE_EXPORT_FLAGS;
  line.clip.sourceIn = probe.inPoint;
  line.clip.sourceOut = probe.outPoint;
  line.settingsWord = settings.lineWord;
  line.clip.videoMask = probe.videoMask;
  line.clip.audioMask = probe.audioMask;
  line.clip.auxMask = probe.auxMask;
  line.recordIn = probe.position;
  line.recordOut = probe.position + probe.outPoint - probe.inPoint;
  CClip::GetString(block.name, clip.name, EDLLINE_NAME_MAX + 1);
  CClip::GetString(block.reel, clip.reel, 64);
  CClip::GetString(block.clipName, clip.clipName, 10);
  CClip::GetString(block.comment, clip.comment, 4608);
  line.effectCode = clip.effectCode;
  line.effectDuration = clip.effectDuration;
  line.transition = clip.effectText[0] == '\0' ? EDLLINE_CUT : EDLLINE_WIPE;
}

// Proof that the walk moves on. On an ordinary timeline every event either
// starts later than the last or, at the same start, names a channel not yet
// reported there, and this never stops it. A record whose length wraps past
// the end of the timeline can send the walk back to an earlier start, or
// round again to the same event; the export stops there rather than loop.
// Event starts are play clip starts, and each start admits at most twenty
// new channels, so an export that passes this check always ends.
class WalkProgress {
 public:
  // True, and remembered, when the probed event is new.
  bool Advances(const TCSCMD& probe) {
    if (probe.position > position_) {
      position_ = probe.position;
      video_ = probe.videoMask;
      audio_ = probe.audioMask;
      return true;
    }
    const uint32_t new_video = probe.videoMask & ~video_;
    const uint32_t new_audio = probe.audioMask & ~audio_;
    if (probe.position != position_ || (new_video | new_audio) == 0) return false;
    video_ |= new_video;
    audio_ |= new_audio;
    return true;
  }

 private:
  // The walk record's own start: position 0, nothing reported.
  uint32_t position_ = 0;
  uint32_t video_ = 0;
  uint32_t audio_ = 0;
};

// Everything one export needs besides the translator's handle, allocated
// before the file is opened so that a failed allocation leaves no file open.
struct ExportScratch {
  std::unique_ptr<LineBlock> block = NewLineBlock();
  std::unique_ptr<TCSCMD> walk = NewWalkRecord();
  std::unique_ptr<TCSCMD> probe = std::make_unique<TCSCMD>();
  CClip clip;  // receives a copy of each event's clip record
};

// Closes the translator's file however the walk is left.
class TranslatorFile {
 public:
  explicit TranslatorFile(void* handle) : handle_(handle) {}
  TranslatorFile(const TranslatorFile&) = delete;
  TranslatorFile& operator=(const TranslatorFile&) = delete;
  ~TranslatorFile() { edlClose(handle_); }
  void* get() const { return handle_; }

 private:
  void* const handle_;
};

bool TranslatorLinked() {
  return edlOpen != nullptr && edlWriteLine != nullptr && edlClose != nullptr;
}

void WalkSpace(CTimeCodeSpace& space, const TranslatorFile& file, ExportScratch& scratch,
               const EDLSETTINGS& settings) {
  TCSCMD& walk = *scratch.walk;
  TCSCMD& probe = *scratch.probe;
  WalkProgress progress;
  do {
    probe = walk;
    if (FindNextClip(space, probe, true, &scratch.clip) != kNotFound) {
      if (!progress.Advances(probe)) break;
      FillLine(*scratch.block, probe, scratch.clip, settings);
      edlWriteLine(file.get(), &scratch.block->line);
    }
    FindNextClip(space, walk, false, nullptr);
  } while (walk.position != kNoTimecode);
}

}  // namespace

uint32_t WriteEdl(CTimeCodeSpace* space, const char* path, const EDLSETTINGS* settings) {
  // Checked before the old file is touched: a bad handle deletes nothing.
  if (!IsOpenSpace(space)) return LogStatus(TCS_ERR_BAD_HANDLE);
  if (path == nullptr) return TCS_RESULT_NONE;
  ExportScratch scratch;
  scratch.clip.ClearClip();
  const std::unique_ptr<EDLSETTINGS> own = OwnSettings(settings);
  if (qvOSFileExists(path)) qvOSDeleteFile(path);
  if (!TranslatorLinked()) return TCS_RESULT_NONE;
  void* const handle = edlOpen(path, EDL_ACCESS_WRITE, EDL_CREATE_ALWAYS, own.get());
  if (handle == nullptr) return TCS_RESULT_NONE;
  const TranslatorFile file(handle);
  WalkSpace(*space, file, scratch, *own);
  return TCS_OK;
}

}  // namespace tcs

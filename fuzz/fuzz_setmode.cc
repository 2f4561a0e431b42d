// Drives one live space with a sequence of calls decoded from the input:
// command records of every command, sub-command, flag and field with sizes
// from 0 to 4188, the clip, search, current-clip and walk entry points, and
// the EDL line exchange and export, up to 32 calls an input, with
// notifications that sometimes refuse or throw. The checks of FuzzHost run
// after every call that may change the space, and at the input's end.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "fuzz/fuzz_host.h"
#include "tcs.h"

namespace {

using tcs_fuzz::FuzzHost;
using tcs_fuzz::PickChannel;
using tcs_fuzz::PickLength;
using tcs_fuzz::PickMask;
using tcs_fuzz::PickTime;

uint32_t PickCommand(FuzzedDataProvider& in) {
  if (in.ConsumeIntegralInRange<int>(0, 7) == 0) return in.ConsumeIntegral<uint32_t>();
  static const uint32_t kCommands[] = {TCSCMD_INSERT, TCSCMD_CLEAR, TCSCMD_DELETE,
                                       TCSCMD_TRIM,   TCSCMD_GET,   TCSCMD_SET,
                                       TCSCMD_GET_ALT};
  return in.ConsumeBool() ? in.PickValueInArray(kCommands)
                          : in.ConsumeIntegralInRange<uint32_t>(0, 24);
}

uint32_t PickFlags(FuzzedDataProvider& in) {
  static const uint32_t kBits[] = {TCSF_MODE, TCSF_POS,  TCSF_AT,     TCSF_IN,    TCSF_OUT,
                                   TCSF_ALL,  TCSF_TEXT, TCSF_ALTPOS, TCSF_RIPPLE};
  if (in.ConsumeIntegralInRange<int>(0, 7) == 0) return in.ConsumeIntegral<uint32_t>();
  uint32_t flags = 0;
  const uint16_t pick = in.ConsumeIntegral<uint16_t>();
  for (size_t k = 0; k < sizeof kBits / sizeof kBits[0]; ++k) {
    if ((pick >> k) & 1u) flags |= kBits[k];
  }
  return flags;
}

uint32_t PickSubCommand(FuzzedDataProvider& in, uint32_t command) {
  static const uint32_t kSubs[] = {TCSSUB_NEXT, TCSSUB_NEXT_EVENT, TCSSUB_PROPERTY,
                                   TCSSUB_CHANGESTAMP, TCSSUB_BACKUP, 95, 0};
  // The insert reads subCommand as a position under TCSF_ALTPOS.
  if (command == TCSCMD_INSERT && in.ConsumeBool()) return PickTime(in);
  return in.ConsumeIntegralInRange<int>(0, 9) == 0 ? in.ConsumeIntegral<uint32_t>()
                                                   : in.PickValueInArray(kSubs);
}

// The host's record is always a full 4188-byte buffer (replies may write
// 4096 bytes of text whatever `size` says); `size` ranges over 0..4188 and
// the bytes past it hold whatever the input gave them.
void SetMode(FuzzHost& host, FuzzedDataProvider& in) {
  const uint32_t command = PickCommand(in);
  const uint32_t size = in.ConsumeBool() ? TCSCMD_SIZE
                                         : in.ConsumeIntegralInRange<uint32_t>(0, TCSCMD_SIZE);
  auto full_record = std::make_unique<TCSCMD>();
  TCSCMD& full = *full_record;
  full.type = in.ConsumeIntegralInRange<int>(0, 15) == 0 ? in.ConsumeIntegral<uint32_t>()
                                                          : TCSCMD_TYPE;
  full.size = size;
  full.command = command;
  full.flags = PickFlags(in);
  full.selector = in.ConsumeBool() ? in.ConsumeIntegralInRange<uint32_t>(0, 17)
                                   : in.ConsumeIntegral<uint32_t>();
  full.videoMask = PickMask(in);
  full.audioMask = PickMask(in);
  full.auxMask = PickMask(in);
  full.subCommand = PickSubCommand(in, command);
  full.position = PickTime(in);
  full.inPoint = PickTime(in);
  full.outPoint = in.ConsumeBool() ? full.inPoint + PickLength(in) : PickTime(in);
  const std::string text = in.ConsumeRandomLengthString(12);
  std::strncpy(full.text, text.c_str(), sizeof full.text);
  const std::string long_text = in.ConsumeRandomLengthString(sizeof full.longText + 8);
  std::memcpy(full.longText, long_text.data(), std::min(long_text.size(), sizeof full.longText));
  TCSCMD* record = &full;
  if (in.ConsumeIntegralInRange<int>(0, 31) == 0) record = nullptr;
  tcsSetMode(in.ConsumeIntegralInRange<int>(0, 31) == 0 ? nullptr : host.space, record);
}

// The translator's side of the line exchange: a line handed in (texts and
// fields from the input, any of them missing), a line asked for (its texts
// read in full, so a dangling one shows), or the whole space exported.
void EdlExchange(FuzzHost& host, FuzzedDataProvider& in) {
  CTimeCodeSpace* const space = in.ConsumeIntegralInRange<int>(0, 31) == 0 ? nullptr : host.space;
  switch (in.ConsumeIntegralInRange<int>(0, 3)) {
    case 0:
    case 1: {
      std::string texts[4];
      for (std::string& text : texts) text = in.ConsumeRandomLengthString(24);
      EDLLINE line{};
      line.clip.sourceIn = PickTime(in);
      line.clip.sourceOut = in.ConsumeBool() ? line.clip.sourceIn + PickLength(in) : PickTime(in);
      line.clip.sourceOrigin = in.ConsumeBool() ? 0 : PickTime(in);
      line.clip.videoMask = PickMask(in);
      line.clip.audioMask = PickMask(in);
      line.clip.auxMask = PickMask(in);
      line.clip.clipName = in.ConsumeBool() ? texts[0].data() : nullptr;
      line.clip.name = in.ConsumeBool() ? texts[1].data() : nullptr;
      line.clip.comment = in.ConsumeBool() ? texts[2].data() : nullptr;
      line.clip.reel = in.ConsumeBool() ? texts[3].data() : nullptr;
      line.recordIn = PickTime(in);
      line.recordOut = in.ConsumeBool() ? line.recordIn + PickLength(in) : PickTime(in);
      line.transition = in.ConsumeBool() ? 'C' : in.ConsumeIntegral<uint8_t>();
      line.effectCode = in.ConsumeIntegral<uint8_t>();
      line.effectDuration = PickLength(in);
      _tcsAddEdlLine(space, in.ConsumeIntegralInRange<int>(0, 31) == 0 ? nullptr : &line,
                     in.ConsumeIntegral<uint64_t>());
      break;
    }
    case 2: {
      // The host lends buffers of exactly the sizes the exchange promises to
      // keep within: 9 bytes for the short name, 4096 for the name.
      auto clip_name = std::make_unique<char[]>(9);
      auto name = std::make_unique<char[]>(4096);
      EDLLINE line;
      std::memset(&line, 0xA5, sizeof line);
      line.clip.clipName = clip_name.get();
      line.clip.name = name.get();
      line.clip.comment = nullptr;
      line.clip.reel = nullptr;
      line.extraText = nullptr;
      if (_tcsGetEdlLine(space, &line, 0, in.ConsumeBool() ? 1 : 0) == 0 &&
          (strnlen(clip_name.get(), 9) == 9 || strnlen(name.get(), 4096) == 4096)) {
        FuzzHost::Broken("a line's text fills its buffer without its zero");
      }
      break;
    }
    default: {
      EDLSETTINGS settings;
      edlInitSettings(&settings, in.PickValueInArray({24u, 25u, 30u}), in.ConsumeBool());
      const std::string path = tcs_fuzz::FuzzDir() + "/export.edl";
      tcsWriteEdl(space, path.c_str(), 0, in.ConsumeBool() ? &settings : nullptr);
    }
  }
}

// The walk keeps its record between calls, as a host does.
struct Walk {
  TCSCMD record{};
  void Restart(FuzzedDataProvider& in) {
    record = TCSCMD{};
    record.position = in.ConsumeBool() ? 0 : PickTime(in);
    record.outPoint = record.position == 0 ? 0xFFFFFFFFu : 0;
    if (in.ConsumeBool()) {
      record.flags = PickFlags(in);
      record.selector = in.ConsumeIntegral<uint8_t>();
      record.videoMask = PickMask(in);
      record.audioMask = PickMask(in);
    }
  }
};

// Returns false for a step that only asks: those leave the full checks to
// the next step that may change the space (and to the end of the input).
bool Step(FuzzHost& host, Walk& walk, FuzzedDataProvider& in) {
  CTimeCodeSpace* const space = host.space;
  bool asks_only = false;
  switch (in.ConsumeIntegralInRange<int>(0, 14)) {
    case 0:
    case 1:
    case 2:
      SetMode(host, in);
      break;
    case 3:
    case 4: {
      CClip clip;
      tcs_fuzz::FillClip(in, clip);
      tcsAddClip(space, &clip, PickChannel(in));
      break;
    }
    case 5: {
      CClip* found = nullptr;
      const uint32_t result =
          tcsTranslate(space, in.ConsumeIntegral<uint8_t>(), PickTime(in),
                       in.ConsumeBool() ? &found : nullptr, PickChannel(in));
      if ((result == 0x80000001u) != (found == nullptr) && found != nullptr) {
        FuzzHost::Broken("tcsTranslate handed out a record with not found");
      }
      asks_only = true;
      break;
    }
    case 6: {
      CClip* found = nullptr;
      tcsFindClip(space, in.ConsumeIntegral<uint8_t>(), PickTime(in), &found, PickChannel(in));
      if (found != nullptr && found->owner != space) FuzzHost::Broken("found a foreign record");
      asks_only = true;
      break;
    }
    case 7: {
      CClip copy;
      if (tcsGetCurClip(space, &copy) == 0 && in.ConsumeBool()) {
        copy.sourceIn = PickTime(in);
        copy.sourceOut = copy.sourceIn + copy.length;
      } else {
        tcs_fuzz::FillClip(in, copy);
      }
      tcsSetCurClip(space, &copy);
      break;
    }
    case 8:
    case 9: {
      if (in.ConsumeIntegralInRange<int>(0, 7) == 0) walk.Restart(in);
      CClip clip;
      const uint32_t start =
          tcsFindNextClip(space, &walk.record, in.ConsumeIntegral<uint8_t>() & 1,
                          in.ConsumeBool() ? &clip : nullptr);
      // A clip may itself start at 0x80000001 (or a host's mode select it).
      if (start == 0x80000001u && walk.record.position != 0xFFFFFFFFu &&
          walk.record.position != start) {
        FuzzHost::Broken("the walk ended without clearing its position");
      }
      asks_only = true;
      break;
    }
    case 10:
      host.pattern = in.ConsumeIntegral<uint32_t>();
      host.throw_every = in.ConsumeIntegralInRange<uint32_t>(0, 9);
      asks_only = true;
      break;
    case 11:
      switch (in.ConsumeIntegralInRange<int>(0, 3)) {
        case 0:
          space->RebuildLookup();
          break;
        case 1:
          space->DestroyLookup();
          break;
        case 2:
          space->DeleteClip(space->lastClip, in.ConsumeIntegral<uint32_t>());
          break;
        default:
          space->TrimRange(PickTime(in), PickTime(in), PickTime(in), PickMask(in), PickMask(in),
                           in.ConsumeIntegralInRange<int>(-1, 2));
      }
      break;
    case 12:
      // Sharing the space and closing the share leaves it open and unchanged.
      if (tcsOpen(space, nullptr, nullptr) != space || tcsClose(space) != 0) {
        FuzzHost::Broken("sharing the space failed");
      }
      asks_only = true;
      break;
    case 13:
      EdlExchange(host, in);
      break;
    default:
      tcsClipActive(in.ConsumeBool() ? space : nullptr);
      asks_only = true;
  }
  return !asks_only;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider in(data, size);
  // One input in four binds its space to a file, for the backups and the
  // stamps that read the file's time; the rest spare the file system.
  FuzzHost host(size != 0 && (data[0] & 3) == 0 ? "space.tl" : nullptr);
  Walk walk;
  walk.record.outPoint = 0xFFFFFFFFu;
  for (int steps = 0; steps < 32 && in.remaining_bytes() > 0; ++steps) {
    if (Step(host, walk, in)) host.Check();
  }
  return 0;
}

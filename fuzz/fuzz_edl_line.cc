// The EDL translator's line exchange on its own, in memory: lines handed in
// through _tcsAddEdlLine with arbitrary bytes in every field, each of their
// five text pointers null or pointing at one of a few short texts taken from
// the input, and lines stepped back out through _tcsGetEdlLine, with records
// deleted in between. The checks of FuzzHost run after every step that may
// change the space (a line handed in, a deletion) and at the input's end;
// each line stepped out is checked on its own as it comes.
//
// Each line given back must name one channel and exactly the range of a play
// clip there, carry its record's source in, keep its texts inside the
// buffers lent for them, leave the other three texts alone and every other
// field zero. Every input ends with a walk from the first line to the end,
// which must give every play clip of the space exactly once.
//
// No file is touched: the space is bound to none.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/fuzz_host.h"
#include "tcs.h"

namespace {

using tcs_fuzz::FuzzHost;
using tcs_fuzz::PickLength;
using tcs_fuzz::PickMask;
using tcs_fuzz::PickTime;

constexpr uint32_t kNoMoreLines = 0x80000001u;
constexpr uint32_t kChannels = 96;
constexpr size_t kClipNameBuffer = 9;
constexpr size_t kNameBuffer = 4096;
constexpr int kMaxChannelsPerLine = 6;
constexpr int kSteps = 32;

// The texts the lines point at; each ends with its zero.
std::vector<std::string> TakeTexts(FuzzedDataProvider& in) {
  std::vector<std::string> texts(in.ConsumeIntegralInRange<size_t>(1, 6));
  for (std::string& text : texts) text = in.ConsumeRandomLengthString(32);
  return texts;
}

char* PickText(FuzzedDataProvider& in, std::vector<std::string>& texts) {
  const size_t k = in.ConsumeIntegralInRange<size_t>(0, texts.size());
  return k == texts.size() ? nullptr : texts[k].data();
}

void AddLine(FuzzHost& host, FuzzedDataProvider& in, std::vector<std::string>& texts) {
  EDLLINE line;
  std::memset(&line, 0, sizeof line);
  const std::vector<uint8_t> bytes = in.ConsumeBytes<uint8_t>(sizeof line);
  if (!bytes.empty()) std::memcpy(&line, bytes.data(), bytes.size());
  // Raw times mostly clamp to the end of the timeline or wrap: half the
  // lines take theirs where edits meet instead.
  if (in.ConsumeBool()) {
    line.clip.sourceIn = PickTime(in);
    line.clip.sourceOut = line.clip.sourceIn + PickLength(in);
    line.recordIn = PickTime(in);
  }
  // A line names up to 96 channels; past a few, each one only makes the
  // checks after every line slower (they grow with the play clips).
  if (std::popcount(line.clip.videoMask) + std::popcount(line.clip.audioMask) +
          std::popcount(line.clip.auxMask) > kMaxChannelsPerLine ||
      in.ConsumeBool()) {
    line.clip.videoMask = PickMask(in);
    line.clip.audioMask = in.ConsumeBool() ? PickMask(in) : 0;
    line.clip.auxMask = in.ConsumeIntegralInRange<int>(0, 7) == 0 ? PickMask(in) : 0;
  }
  line.clip.clipName = PickText(in, texts);
  line.clip.name = PickText(in, texts);
  line.clip.comment = PickText(in, texts);
  line.clip.reel = PickText(in, texts);
  line.extraText = PickText(in, texts);
  const std::vector<std::string> before = texts;
  _tcsAddEdlLine(host.space, &line, in.ConsumeIntegral<uint64_t>());
  if (texts != before) FuzzHost::Broken("adding a line wrote into its texts");
}

// The buffers a translator lends for one line: exactly as long as promised
// for the two texts the library fills, and three more it must not touch.
// Made once per process (ASan fills every new block, which would cost more
// than the line); Refill() puts back the 0xA5 bytes a line overwrote.
struct LineBuffers {
  LineBuffers() {
    std::memset(clip_name.get(), 0xA5, kClipNameBuffer);
    std::memset(name.get(), 0xA5, kNameBuffer);
  }
  void Refill() {
    std::memset(clip_name.get(), 0xA5, std::min(strnlen(clip_name.get(), kClipNameBuffer) + 1,
                                                kClipNameBuffer));
    std::memset(name.get(), 0xA5, std::min(strnlen(name.get(), kNameBuffer) + 1, kNameBuffer));
  }
  std::unique_ptr<char[]> clip_name = std::make_unique<char[]>(kClipNameBuffer);
  std::unique_ptr<char[]> name = std::make_unique<char[]>(kNameBuffer);
  char comment[8] = "comment";
  char reel[8] = "reel";
  char extra[8] = "extra";
};

// One line out, checked. Returns the line's channel and start, or nothing
// at the end.
std::optional<std::pair<uint32_t, uint32_t>> GetLine(FuzzHost& host, uint32_t first) {
  static LineBuffers buffers;
  buffers.Refill();
  EDLLINE line;
  std::memset(&line, 0xA5, sizeof line);
  line.clip.clipName = buffers.clip_name.get();
  line.clip.name = buffers.name.get();
  line.clip.comment = buffers.comment;
  line.clip.reel = buffers.reel;
  line.extraText = buffers.extra;
  if (_tcsGetEdlLine(host.space, &line, 0, first) != 0) FuzzHost::Broken("a line was refused");
  if (std::strcmp(buffers.comment, "comment") != 0 || std::strcmp(buffers.reel, "reel") != 0 ||
      std::strcmp(buffers.extra, "extra") != 0) {
    FuzzHost::Broken("a line wrote into a text it does not fill");
  }
  if (line.clip.clipName != buffers.clip_name.get() || line.clip.name != buffers.name.get() ||
      line.clip.comment != buffers.comment || line.clip.reel != buffers.reel ||
      line.extraText != buffers.extra) {
    FuzzHost::Broken("a line moved a text pointer");
  }

  // Every field but the filled ones must be zero.
  EDLLINE rest = line;
  rest.clip.sourceIn = rest.clip.sourceOut = 0;
  rest.clip.videoMask = rest.clip.audioMask = rest.clip.auxMask = 0;
  rest.clip.clipName = rest.clip.name = rest.clip.comment = rest.clip.reel = nullptr;
  rest.extraText = nullptr;
  rest.recordIn = rest.recordOut = 0;
  static const EDLLINE kZero{};
  if (std::memcmp(&rest, &kZero, sizeof rest) != 0) FuzzHost::Broken("a line kept old bytes");

  const uint32_t video = line.clip.videoMask;
  const uint32_t audio = line.clip.audioMask;
  const uint32_t aux = line.clip.auxMask;
  if (line.recordIn == kNoMoreLines) {
    if (line.recordOut != kNoMoreLines || (video | audio | aux) != 0) {
      FuzzHost::Broken("the end of the lines names a play clip");
    }
    return std::nullopt;
  }
  if (std::popcount(video) + std::popcount(audio) + std::popcount(aux) != 1) {
    FuzzHost::Broken("a line names no single channel");
  }
  const uint32_t channel = video != 0   ? std::countr_zero(video)
                           : audio != 0 ? 32 + std::countr_zero(audio)
                                        : 64 + std::countr_zero(aux);
  const CTCLookup* lookup = host.space->LookupOf(channel);
  if (lookup == nullptr || lookup->empty()) FuzzHost::Broken("a line on an empty channel");
  const CTCLookup::Position it = lookup->findle(line.recordIn);
  if (it == lookup->end() || it->start != line.recordIn ||
      line.recordOut != it->start + it->length) {
    FuzzHost::Broken("a line's range is no play clip of its channel");
  }
  if (it->clip != nullptr && line.clip.sourceIn != it->clip->sourceIn) {
    FuzzHost::Broken("a line's source in is not its record's");
  }
  if (strnlen(buffers.clip_name.get(), kClipNameBuffer) == kClipNameBuffer ||
      strnlen(buffers.name.get(), kNameBuffer) == kNameBuffer) {
    FuzzHost::Broken("a line's text fills its buffer without its zero");
  }
  return std::make_pair(channel, line.recordIn);
}

size_t CountPlayClips(const CTimeCodeSpace& space) {
  size_t count = 0;
  for (uint32_t c = 0; c < kChannels; ++c) {
    if (const CTCLookup* lookup = space.LookupOf(c)) count += lookup->size();
  }
  return count;
}

// From the first line to the end: every play clip once, then the end. The
// lines only ask, so the full checks run once, after the walk (after each
// line they would cost the square of the clips).
void WalkAll(FuzzHost& host) {
  const size_t count = CountPlayClips(*host.space);
  std::set<std::pair<uint32_t, uint32_t>> given;
  for (size_t k = 0; k <= count; ++k) {
    const auto key = GetLine(host, k == 0 ? 1 : 0);
    if (!key) {
      host.Check();
      if (given.size() != count) FuzzHost::Broken("the lines ended before every play clip");
      return;
    }
    if (!given.insert(*key).second) FuzzHost::Broken("a play clip was given twice");
  }
  FuzzHost::Broken("the lines did not end after every play clip");
}

// One step; true when it may have changed the space.
bool Step(FuzzHost& host, FuzzedDataProvider& in, std::vector<std::string>& texts) {
  switch (in.ConsumeIntegralInRange<int>(0, 9)) {
    case 0:
    case 1:
    case 2:
    case 3:
      AddLine(host, in, texts);
      return true;
    case 4:
    case 5:
    case 6: {
      // A few lines, now and then from the first again, between edits.
      const int lines = in.ConsumeIntegralInRange<int>(1, 4);
      for (int k = 0; k < lines; ++k) {
        const bool restart = in.ConsumeIntegralInRange<int>(0, 7) == 0;
        GetLine(host, restart ? in.ConsumeIntegral<uint32_t>() : 0);
      }
      return false;
    }
    case 7:
      if (host.space->lastClip == nullptr) return false;
      host.space->DeleteClip(host.space->lastClip, in.ConsumeIntegral<uint32_t>());
      return true;
    case 8:
      host.pattern = in.ConsumeIntegral<uint32_t>();
      host.throw_every = in.ConsumeIntegralInRange<uint32_t>(0, 9);
      return false;
    default:
      // Refused whatever space it names (there is no line); the checks hold
      // the space to that.
      _tcsAddEdlLine(in.ConsumeBool() ? nullptr : host.space, nullptr, 0);
      return true;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider in(data, size);
  std::vector<std::string> texts = TakeTexts(in);
  FuzzHost host(nullptr);
  for (int steps = 0; steps < kSteps && in.remaining_bytes() > 0; ++steps) {
    if (Step(host, in, texts)) host.Check();
  }
  WalkAll(host);
  return 0;
}

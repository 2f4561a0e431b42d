// tcs edit: edit operations given as arguments, each sent to the space as one
// command record through tcsSetMode (the path a host's control layer takes),
// then the result written as an EDL. Every operation names its channels as
// V1..V32 / A1..A32 (or 0..63), several joined by '+'; times are timecodes or
// frame counts.
//
//   overwrite=CH,AT,IN,OUT,NAME  lay source IN..OUT of NAME over CH from AT
//   insert=CH,AT,DURATION        open a gap of DURATION at AT; later clips move on
//                                (the space moves them one frame past the range it
//                                is given, so the range sent is DURATION - 1 long)
//   blank=CH,FROM,TO             clear FROM..TO, leaving a gap
//   delete=CH,FROM,TO            remove FROM..TO; later clips move back
//   trim=CH,AT,IN,OUT            the clip that starts at AT plays source IN..OUT
//   move=CH,AT,TO                the clip that starts at AT moves to start at TO
#include <cstring>
#include <iostream>

#include "channels.h"
#include "cli.h"
#include "timeline.h"

namespace tcs::cli {
namespace {

struct Op {
  std::string kind;
  std::vector<std::string> fields;
};

Op Split(const std::string& text) {
  const size_t equals = text.find('=');
  if (equals == std::string::npos) UsageFail("'" + text + "' is not an edit operation (KIND=ARGS)");
  Op op{text.substr(0, equals), {}};
  // The name of an overwrite is the rest of the text, commas and all.
  const size_t fieldCount = op.kind == "overwrite" ? 5 : std::string::npos;
  size_t at = equals + 1;
  while (true) {
    const size_t comma = op.fields.size() + 1 == fieldCount ? std::string::npos : text.find(',', at);
    op.fields.push_back(text.substr(at, comma - at));
    if (comma == std::string::npos) break;
    at = comma + 1;
  }
  return op;
}

ChannelMasks MasksArg(const std::string& text, const std::string& what) {
  ChannelMasks masks;
  size_t at = 0;
  while (true) {
    const size_t plus = text.find('+', at);
    const std::string one = text.substr(at, plus - at);
    const std::optional<uint32_t> channel = ParseChannel(one);
    if (!channel || *channel >= 64) {
      UsageFail(what + ": '" + one + "' is not a channel an edit can name (V1..V32, A1..A32, 0..63)");
    }
    (*channel < 32 ? masks.video : masks.audio) |= 1u << (*channel % 32);
    if (plus == std::string::npos) break;
    at = plus + 1;
  }
  return masks;
}

TCSCMD NewRecord(uint32_t command, ChannelMasks masks) {
  TCSCMD cmd{};
  cmd.type = TCSCMD_TYPE;
  cmd.size = sizeof cmd;
  cmd.command = command;
  cmd.videoMask = masks.video;
  cmd.audioMask = masks.audio;
  return cmd;
}

// A trim or move needs a clip that starts exactly at `at` on every channel
// of `masks`, and a ripple insert must not fall inside a clip: otherwise the
// space would change nothing, silently.
enum class AtRule { kClipStarts, kNotInsideClip };

void RequireAt(const Timeline& timeline, ChannelMasks masks, uint32_t at, AtRule rule,
               const std::string& what) {
  for (uint32_t c = 0; c < 64; ++c) {
    if (((c < 32 ? masks.video : masks.audio) >> (c % 32) & 1) == 0) continue;
    CClip* clip = nullptr;
    tcsTranslate(timeline.space(), 0, at, &clip, c);
    const bool starts = clip != nullptr && clip->start == at;
    if (rule == AtRule::kClipStarts && !starts) {
      Fail(what + ": no clip starts at " + timeline.Tc(at) + " on " + ChannelName(c));
    }
    if (rule == AtRule::kNotInsideClip && clip != nullptr && !starts) {
      Fail(what + ": " + timeline.Tc(at) + " lies inside a clip on " + ChannelName(c) +
           " (" + (clip->name != nullptr ? clip->name : "") + "); insert at a cut");
    }
  }
}

TCSCMD Build(const Timeline& timeline, const std::string& text, const std::string& what) {
  const Op op = Split(text);
  const FrameRate rate = timeline.rate();
  const auto want = [&](size_t n, const char* form) {
    if (op.fields.size() != n) UsageFail(what + ": write " + form);
  };
  const auto time = [&](size_t i) { return TimecodeArg(op.fields[i], rate, what); };
  if (op.kind == "overwrite") {
    want(5, "overwrite=CH,AT,IN,OUT,NAME");
    TCSCMD cmd = NewRecord(TCSCMD_INSERT, MasksArg(op.fields[0], what));
    cmd.flags = TCSF_TEXT | TCSF_POS | TCSF_IN | TCSF_OUT;
    cmd.position = time(1);
    cmd.inPoint = time(2);
    cmd.outPoint = time(3);
    if (cmd.outPoint <= cmd.inPoint) UsageFail(what + ": the source out point must follow the in point");
    const std::string& name = op.fields[4];
    if (name.empty() || name.size() >= sizeof cmd.longText) UsageFail(what + ": give the clip a name");
    std::memcpy(cmd.longText, name.c_str(), name.size() + 1);
    return cmd;
  }
  if (op.kind == "insert") {
    want(3, "insert=CH,AT,DURATION");
    TCSCMD cmd = NewRecord(TCSCMD_INSERT, MasksArg(op.fields[0], what));
    cmd.flags = TCSF_MARKS | TCSF_RIPPLE;
    cmd.inPoint = cmd.position = time(1);
    const uint32_t duration = time(2);
    if (duration < 2) UsageFail(what + ": a gap is at least 2 frames long");
    cmd.outPoint = cmd.inPoint + duration - 1;
    RequireAt(timeline, {cmd.videoMask, cmd.audioMask}, cmd.position, AtRule::kNotInsideClip, what);
    return cmd;
  }
  if (op.kind == "blank" || op.kind == "delete") {
    want(3, op.kind == "blank" ? "blank=CH,FROM,TO" : "delete=CH,FROM,TO");
    TCSCMD cmd = NewRecord(op.kind == "blank" ? TCSCMD_CLEAR : TCSCMD_DELETE,
                           MasksArg(op.fields[0], what));
    cmd.flags = TCSF_MARKS | (op.kind == "delete" ? TCSF_RIPPLE : 0);
    cmd.inPoint = cmd.position = time(1);
    cmd.outPoint = time(2);
    if (cmd.outPoint <= cmd.inPoint) UsageFail(what + ": TO must follow FROM");
    return cmd;
  }
  if (op.kind == "trim" || op.kind == "move") {
    const bool trim = op.kind == "trim";
    want(trim ? 4 : 3, trim ? "trim=CH,AT,IN,OUT" : "move=CH,AT,TO");
    TCSCMD cmd = NewRecord(TCSCMD_TRIM, MasksArg(op.fields[0], what));
    cmd.position = time(1);
    cmd.inPoint = time(2);
    if (trim) {
      cmd.flags = TCSF_POS | TCSF_IN | TCSF_OUT;
      cmd.outPoint = time(3);
      if (cmd.outPoint <= cmd.inPoint) UsageFail(what + ": the source out point must follow the in point");
    } else {
      cmd.flags = TCSF_POS | TCSF_AT;
    }
    RequireAt(timeline, {cmd.videoMask, cmd.audioMask}, cmd.position, AtRule::kClipStarts, what);
    return cmd;
  }
  UsageFail(what + ": unknown operation '" + op.kind +
            "' (overwrite, insert, blank, delete, trim, move)");
}

}  // namespace

int RunEdit(const Args& args) {
  const std::optional<std::string> out = args.Value("-o");
  if (!out || out->empty()) UsageFail("give the file to write with -o OUT.edl");
  const std::vector<std::string>& positional = args.positional();
  if (positional.size() < 2) UsageFail("give at least one edit operation");
  const Timeline timeline(positional[0], args.FpsOverride(), args.ReadOptions());
  for (size_t i = 1; i < positional.size(); ++i) {
    const std::string what = "operation " + std::to_string(i) + " (" + positional[i] + ")";
    TCSCMD cmd = Build(timeline, positional[i], what);
    ErrorLogCapture log;
    const uint32_t status = tcsSetMode(timeline.space(), &cmd);
    if (status != 0 || !log.lines().empty()) {
      char code[16];
      std::snprintf(code, sizeof code, "0x%X", status);
      Fail(what + ": refused" + (log.lines().empty() ? std::string(" (") + code + ")" : ": " + log.Joined()));
    }
  }
  timeline.WriteEdl(*out);
  std::cout << "wrote " << *out << " (" << positional.size() - 1
            << (positional.size() == 2 ? " operation)\n" : " operations)\n");
  return 0;
}

}  // namespace tcs::cli

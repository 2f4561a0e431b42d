#include "edl_writer.h"

#include <algorithm>
#include <tuple>
#include <vector>

#include "cmx3600/comment_lines.h"
#include "cmx3600/line.h"
#include "cmx3600/writer.h"
#include "each_clip.h"

namespace tcs::host {
namespace {

constexpr uint32_t kChannels = 96;

// One listed clip, its texts borrowed from the space (nothing edits it
// while the text is built).
struct Clip {
  uint32_t start;
  uint32_t length;
  uint32_t sourceIn;
  uint32_t sourceOut;
  bool transition;
  uint32_t effectCode;
  uint32_t effectDuration;
  RecordTexts texts;
  uint32_t channel;
  // Into a transition: what plays before it on the channel (see Outgoing).
  uint32_t outgoingSource;
  std::string_view outgoingReel;
  std::string_view outgoingName;
  // The line of the comment that names the outgoing clip (see Outgoing), not
  // written as a note; kNoLine for none.
  uint32_t outgoingNote;
  bool sourceDrop;  // its source timecodes count drop-frame (see SourceDrop)

  // Everything an event carries, in the order events are written.
  auto Key() const {
    return std::tie(start, length, sourceIn, sourceOut, transition, effectCode, effectDuration,
                    texts.hasSpeed, texts.speedMilliFps, texts.speedEntry, texts.reel, texts.name,
                    texts.clipName, texts.comment, outgoingSource, outgoingReel, outgoingName,
                    sourceDrop);
  }
};

// A clip read from a list that counted its source timecodes otherwise than
// its record timecodes (an FCM: line above it) counts them so again, at a
// rate that has drop-frame; any other counts them as the list.
bool SourceDrop(const RecordTexts& texts, timecode::FrameRate rate) {
  if (!timecode::CanDropFrame(rate.fps) || texts.sourceCounting == CLS_SOURCE_AS_LIST) {
    return rate.dropFrame;
  }
  return texts.sourceCounting == CLS_SOURCE_DROP_FRAME;
}

Clip ClipOf(const TCSCLIP& row) {
  Clip clip{};
  clip.channel = row.channel;
  clip.start = row.start;
  clip.length = row.length;
  clip.sourceIn = row.sourceIn;
  // The frames played (see KeepPlayed): a record whose source runs longer
  // than its place on the timeline plays only these, and an event line whose
  // source and record lengths differ is read with its source out moved to
  // match.
  clip.sourceOut = row.sourceIn + row.length;
  // Cut or transition goes by the effect text, as the space shows it.
  clip.transition = row.effectText[0] != '\0';
  clip.effectCode = row.effectCode;
  clip.effectDuration = row.effectDuration;
  clip.texts = TextsOf(row);
  return clip;
}

// A moved clip may lie over its neighbours. A clip plays from its start up
// to the next clip's start on its channel (the last of several that start
// together plays), as the space's lookups answer; what a later start hides
// never plays, and a list cannot say it without an event over an event,
// which every reader lays as an overwrite. So each clip of the channel
// (those from `first` on, in record order) keeps the frames it plays, and
// one that plays none goes.
void KeepPlayed(std::vector<Clip>& clips, size_t first) {
  size_t kept = first;
  for (size_t i = first; i < clips.size(); ++i) {
    Clip clip = clips[i];
    if (i + 1 < clips.size()) {
      const uint64_t room = uint64_t(clips[i + 1].start) - clip.start;
      if (room < clip.length) clip.length = uint32_t(room);
    }
    if (clip.length == 0) continue;
    clip.sourceOut = clip.sourceIn + clip.length;
    clips[kept++] = clip;
  }
  clips.resize(kept);
}

constexpr uint32_t kNoLine = UINT32_MAX;

// The line of a comment, among the first 32, that stood bare as a FROM CLIP
// NAME note, with its value; kNoLine for none. The reader takes such a note
// as a name, never as a comment line: only a translator keeping the outgoing
// name a list gave a transition puts one there.
uint32_t OutgoingNote(const RecordTexts& texts, std::string_view& name) {
  std::string_view comment = texts.comment;
  for (uint32_t n = 0; n < 32 && !comment.empty(); ++n) {
    const size_t end = comment.find('\n');
    std::string_view value;
    if ((texts.bareNotes >> n & 1) != 0 &&
        cmx3600::LabelOf(comment.substr(0, end), value) == cmx3600::NoteLabel::kFromClipName) {
      name = value;
      return n;
    }
    if (end == std::string_view::npos) break;
    comment.remove_prefix(end + 1);
  }
  return kNoLine;
}

// A transition is written as editors write it, in two lines: a cut of no
// length into the outgoing source, then the transition. The outgoing source
// is the clip that plays up to the transition on its channel, where it left
// off; black (BL) where nothing does. It is named as that clip is, or as the
// list the transition was read from named it, where that kept a name.
void Outgoing(std::vector<Clip>& clips, size_t first) {
  for (size_t i = first; i < clips.size(); ++i) {
    Clip& clip = clips[i];
    clip.outgoingNote = kNoLine;
    if (!clip.transition) continue;
    const Clip* before = i > first ? &clips[i - 1] : nullptr;
    if (before != nullptr && uint64_t(before->start) + before->length == clip.start) {
      clip.outgoingSource = before->sourceOut;
      clip.outgoingReel = before->texts.reel;
      clip.outgoingName = before->texts.name;
    } else {
      clip.outgoingReel = "BL";
    }
    clip.outgoingNote = OutgoingNote(clip.texts, clip.outgoingName);
  }
}

// The comment's lines as notes, but the one that named the outgoing clip.
void AppendNotes(std::string& out, const Clip& clip) {
  const RecordTexts& texts = clip.texts;
  if (clip.outgoingNote == kNoLine) {
    cmx3600::AppendCommentLines(out, texts.comment, texts.bareNotes);
    return;
  }
  size_t from = 0;
  for (uint32_t n = 0; n < clip.outgoingNote; ++n) from = texts.comment.find('\n', from) + 1;
  const size_t end = texts.comment.find('\n', from);
  if (from != 0) cmx3600::AppendCommentLines(out, texts.comment.substr(0, from - 1), texts.bareNotes);
  if (end != std::string_view::npos) {
    cmx3600::AppendCommentLines(out, texts.comment.substr(end + 1),
                                clip.outgoingNote < 31 ? texts.bareNotes >> (clip.outgoingNote + 1) : 0);
  }
}

// A list's M2 line names the source frame its speed enters at, and readers
// play the event from its source in at that speed: they take the two as
// one frame. A clip whose head was cut starts past its entry, its source in
// counted at the timeline's rate. Where the frames cut make a whole number
// of source frames at the clip's speed, it goes out from the source frame it
// starts on, entering its speed there, which plays every frame as before.
// Otherwise (half speed, one frame cut) no M2 line can spell where it
// starts; it goes out as kept, the entry and the source in apart, which this
// codec reads back as it was.
void EnterSpeedAtHead(Clip& clip, uint32_t fps) {
  RecordTexts& texts = clip.texts;
  if (!texts.hasSpeed || clip.sourceIn == texts.speedEntry) return;
  const int64_t scaled = (int64_t(clip.sourceIn) - texts.speedEntry) * texts.speedMilliFps;
  const int64_t per = int64_t(fps) * 1000;
  if (scaled % per != 0) return;
  const int64_t first = texts.speedEntry + scaled / per;
  if (first < 0 || first > int64_t(UINT32_MAX) - clip.length) return;
  texts.speedEntry = clip.sourceIn = uint32_t(first);
  clip.sourceOut = clip.sourceIn + clip.length;
}

uint32_t ListAll(CTimeCodeSpace* space, timecode::FrameRate rate, std::vector<Clip>& clips) {
  unsigned int masks[3] = {};
  uint32_t status = tcsGetChannels(space, &masks[0], &masks[1], &masks[2]);
  if (status != TCS_OK) return status;
  for (uint32_t channel = 0; channel < kChannels; ++channel) {
    if (((masks[channel / 32] >> (channel % 32)) & 1u) == 0) continue;
    const size_t first = clips.size();
    status = EachClip(space, channel, [&clips](const TCSCLIP& row) { clips.push_back(ClipOf(row)); });
    if (status != TCS_OK) return status;
    KeepPlayed(clips, first);
    for (size_t i = first; i < clips.size(); ++i) {
      EnterSpeedAtHead(clips[i], rate.fps);
      clips[i].sourceDrop = SourceDrop(clips[i].texts, rate);
    }
    Outgoing(clips, first);
  }
  return TCS_OK;
}

cmx3600::Event EventOf(const Clip& clip) {
  cmx3600::Event event;
  event.sourceIn = clip.sourceIn;
  event.sourceOut = clip.sourceOut;
  event.recordIn = clip.start;
  event.recordOut = clip.start + clip.length;
  event.transition = clip.transition;
  event.effectCode = clip.effectCode;
  event.effectDuration = clip.effectDuration;
  event.hasSpeed = clip.texts.hasSpeed;
  event.speedMilliFps = clip.texts.speedMilliFps;
  event.speedEntry = clip.texts.speedEntry;
  event.reel = clip.texts.reel;
  event.name = clip.texts.name;
  event.clipName = clip.texts.clipName;
  event.hasOutgoing = clip.transition;
  event.outgoingSource = clip.outgoingSource;
  event.outgoingReel = clip.outgoingReel;
  event.outgoingName = clip.outgoingName;
  event.sourceCounting = clip.sourceDrop ? cmx3600::SourceCounting::kDropFrame
                                         : cmx3600::SourceCounting::kNonDrop;
  // The comment goes after the event's other lines (AppendCommentLines).
  return event;
}

uint32_t& MaskOf(cmx3600::Event& event, uint32_t channel) {
  return channel < 32 ? event.video : channel < 64 ? event.audio : event.aux;
}

void AddChannel(cmx3600::Event& event, uint32_t channel) {
  MaskOf(event, channel) |= 1u << (channel % 32);
}

}  // namespace

uint32_t AppendSpaceEdl(CTimeCodeSpace* space, const EdlText& how, std::string& out) {
  std::vector<Clip> clips;
  const uint32_t status = ListAll(space, how.rate, clips);
  if (status != TCS_OK) return status;
  // Channel by channel the rows come in record order: a stable sort by
  // what an event carries keeps equal clips in channel order.
  std::stable_sort(clips.begin(), clips.end(),
                   [](const Clip& a, const Clip& b) { return a.Key() < b.Key(); });

  cmx3600::AppendHeader(out, how.title, how.rate);
  // The FCM: line in force counts the source timecodes of the events after
  // it; each event is preceded by one where its counting differs.
  bool drop_in_force = how.rate.dropFrame;
  uint32_t number = 0;
  size_t i = 0;
  while (i < clips.size()) {
    cmx3600::Event event = EventOf(clips[i]);
    AddChannel(event, clips[i].channel);
    size_t j = i + 1;
    // At most one clip of a channel starts at a frame (KeepPlayed).
    for (; j < clips.size() && clips[j].Key() == clips[i].Key(); ++j) {
      AddChannel(event, clips[j].channel);
    }
    if (clips[i].sourceDrop != drop_in_force) {
      drop_in_force = clips[i].sourceDrop;
      cmx3600::AppendFrameCode(out, drop_in_force);
    }
    cmx3600::AppendEvent(out, event, ++number, how.rate);
    AppendNotes(out, clips[i]);
    i = j;
  }
  return TCS_OK;
}

}  // namespace tcs::host

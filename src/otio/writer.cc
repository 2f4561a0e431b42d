// Writing: every clip of every channel, through the listing entry points,
// as one Timeline.1 of Track.1s with Gap.1s between the clips.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "hostkit/each_clip.h"
#include "otio/json_text.h"
#include "otio/otio.h"
#include "otio/source_file.h"
#include "tcs.h"

namespace tcs::otio {
namespace {


// What the writer keeps of a listed clip: the rows' pointers are borrowed.
struct Row {
  uint32_t start;
  uint32_t length;
  uint32_t sourceIn;
  uint32_t effectCode;
  uint32_t effectDuration;
  std::string effectText;
  std::string name;
  std::string reel;
  std::string comment;
  std::string clipName;
  bool speed = false;  // the clip library's speed: thousandths of a source frame a second
  int32_t milliFps = 0;
  uint32_t speedEntry = 0;
};

std::string Text(const char* text) { return text != nullptr ? text : ""; }

std::vector<Row> ChannelRows(CTimeCodeSpace* space, uint32_t channel) {
  std::vector<Row> rows;
  host::EachClip(space, channel, [&rows](const TCSCLIP& c) {
    // Copies: the rows outlive this listing.
    const host::RecordTexts t = host::TextsOf(c);
    rows.push_back(Row{c.start, c.length, c.sourceIn, c.effectCode, c.effectDuration,
                       Text(c.effectText), std::string(t.name), std::string(t.reel),
                       std::string(t.comment), std::string(t.clipName), t.hasSpeed,
                       t.speedMilliFps, t.speedEntry});
  });
  return rows;
}

// Writes the document's objects; every time at one rate.
class Writer {
 public:
  Writer(JsonText& json, FrameRate rate, WriteResult& result)
      : json_(json), rate_(RateValue(rate)), fps_(rate.fps), result_(result) {}

  void Time(std::string_view key, double frames) {
    json_.Key(key).BeginObject();
    json_.Field("OTIO_SCHEMA", "RationalTime.1").Key("rate").Double(rate_);
    json_.Key("value").Double(frames).EndObject();
  }
  void Range(std::string_view key, double start, double duration) {
    json_.Key(key).BeginObject().Field("OTIO_SCHEMA", "TimeRange.1");
    Time("duration", duration);
    Time("start_time", start);
    json_.EndObject();
  }
  // The fields every item has after its metadata and name.
  void ItemTail(const Row* speed = nullptr) {
    json_.Key("effects").BeginArray();
    if (speed != nullptr) TimeEffect(*speed);
    json_.EndArray();
    json_.Key("markers").BeginArray().EndArray();
    json_.Key("enabled").Bool(true);
  }

  void Track(uint32_t channel, const std::vector<Row>& rows, uint32_t origin);

 private:
  void Clip(const Row& row, uint32_t length);
  void TimeEffect(const Row& row);
  void Gap(uint32_t length);
  void Transition(const Row& row);

  JsonText& json_;
  double rate_;
  uint32_t fps_;
  WriteResult& result_;
};

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  size_t from = 0;
  while (from <= text.size()) {
    size_t end = text.find('\n', from);
    if (end == std::string::npos) end = text.size();
    lines.push_back(text.substr(from, end - from));
    from = end + 1;
  }
  return lines;
}

void Writer::Clip(const Row& row, uint32_t length) {
  json_.BeginObject().Field("OTIO_SCHEMA", "Clip.2");
  json_.Key("metadata").BeginObject();
  if (!row.reel.empty() || !row.comment.empty()) {
    json_.Key("cmx_3600").BeginObject();
    if (!row.reel.empty()) json_.Field("reel", row.reel);
    if (!row.comment.empty()) {
      json_.Key("comments").BeginArray();
      for (const std::string& line : Lines(row.comment)) json_.String(line);
      json_.EndArray();
    }
    json_.EndObject();
  }
  const bool entry = row.speed && row.speedEntry != row.sourceIn;
  if (!row.clipName.empty() || entry) {
    json_.Key("tcspace").BeginObject();
    if (!row.clipName.empty()) json_.Field("clip_name", row.clipName);
    if (entry) json_.Key("speed_entry").Unsigned(row.speedEntry);
    json_.EndObject();
  }
  json_.EndObject();
  json_.Field("name", row.name);
  Range("source_range", row.sourceIn, length);
  ItemTail(row.speed ? &row : nullptr);
  const std::string file = SourceFileOf(row.comment);
  json_.Key("media_references").BeginObject().Key("DEFAULT_MEDIA").BeginObject();
  json_.Field("OTIO_SCHEMA", file.empty() ? "MissingReference.1" : "ExternalReference.1");
  json_.Key("metadata").BeginObject().EndObject().Field("name", "");
  json_.Key("available_range").Null();
  if (!file.empty()) json_.Field("target_url", file);
  json_.EndObject().EndObject();
  json_.Field("active_media_reference_key", "DEFAULT_MEDIA").EndObject();
}

// A speed as OpenTimelineIO spells it: source frames per record frame, a
// freeze frame for 0.
void Writer::TimeEffect(const Row& row) {
  const bool freeze = row.milliFps == 0;
  json_.BeginObject().Field("OTIO_SCHEMA", freeze ? "FreezeFrame.1" : "LinearTimeWarp.1");
  json_.Key("metadata").BeginObject().EndObject().Field("name", "");
  json_.Field("effect_name", freeze ? "FreezeFrame" : "LinearTimeWarp");
  json_.Key("time_scalar").Double(row.milliFps / (fps_ * 1000.0)).EndObject();
}

void Writer::Gap(uint32_t length) {
  json_.BeginObject().Field("OTIO_SCHEMA", "Gap.1");
  json_.Key("metadata").BeginObject().EndObject().Field("name", "");
  Range("source_range", 0, length);
  ItemTail();
  json_.EndObject();
}

// A transition into `row`, wholly after the cut: in_offset 0, so the clips
// before and after it stay where they are.
void Writer::Transition(const Row& row) {
  char code[16];
  if (row.effectCode == 0) {
    std::snprintf(code, sizeof code, "D");
  } else {
    std::snprintf(code, sizeof code, "W%03u", row.effectCode);
  }
  json_.BeginObject().Field("OTIO_SCHEMA", "Transition.1");
  json_.Key("metadata").BeginObject().Key("cmx_3600").BeginObject();
  json_.Field("transition", code).EndObject().EndObject();
  json_.Field("name", row.effectText);
  Time("in_offset", 0);
  Time("out_offset", row.effectDuration);
  json_.Field("transition_type", row.effectCode == 0 ? "SMPTE_Dissolve" : "SMPTE_Wipe");
  json_.EndObject();
}

void Writer::Track(uint32_t channel, const std::vector<Row>& rows, uint32_t origin) {
  char name[8];
  tcsChannelName(channel, name, sizeof name);
  json_.BeginObject().Field("OTIO_SCHEMA", "Track.1");
  json_.Key("metadata").BeginObject().EndObject().Field("name", name);
  json_.Key("source_range").Null();
  ItemTail();
  json_.Key("children").BeginArray();
  uint32_t at = origin;
  for (size_t i = 0; i < rows.size(); ++i) {
    const Row& row = rows[i];
    uint32_t length = row.length;
    // Clips may overlap on a channel (a moved clip): from the start of the
    // next one, the next one plays.
    if (i + 1 < rows.size() && rows[i + 1].start - row.start < length) {
      length = rows[i + 1].start - row.start;
      result_.warnings.push_back(
          {row.name.empty() ? "Clip" : row.name,
           std::string(name) + ": cut at frame " + std::to_string(rows[i + 1].start) +
               " where the next clip starts"});
    }
    if (row.start > at) Gap(row.start - at);
    if (!row.effectText.empty() && row.effectDuration > 0) Transition(row);
    Clip(row, length);
    at = row.start + length;
    ++result_.clips;
  }
  json_.EndArray();
  json_.Field("kind", channel >= 32 && channel < 64 ? "Audio" : "Video").EndObject();
}

WriteResult Fail(Status status, const std::string& message) {
  WriteResult result;
  result.status = status;
  result.error = message;
  return result;
}

// The first record frame of any channel in `masks`.
uint32_t Origin(CTimeCodeSpace* space, const unsigned int masks[3]) {
  uint32_t origin = TCS_NO_TIMECODE;
  for (uint32_t channel = 0; channel < 96; ++channel) {
    if ((masks[channel / 32] >> (channel % 32) & 1u) == 0) continue;
    TCSCLIP first;
    unsigned int count = 0, next = 0;
    if (tcsGetClips(space, channel, 0, TCS_NO_TIMECODE, &first, 1, &count, &next) == TCS_OK &&
        count == 1) {
      origin = std::min(origin, first.start);
    }
  }
  return origin == TCS_NO_TIMECODE ? 0 : origin;
}

}  // namespace

WriteResult WriteOtioText(CTimeCodeSpace* space, const WriteOptions& options, std::string* out) {
  unsigned int masks[3];
  if (out == nullptr) return Fail(Status::kCannotWrite, "no output");
  if (tcsGetChannels(space, &masks[0], &masks[1], &masks[2]) != TCS_OK) {
    return Fail(Status::kSpaceRefused, "the space is not open");
  }
  WriteResult result;
  const FrameRate rate = tcs::timecode::MakeFrameRate(options.rate.fps, options.rate.dropFrame,
                                                      options.rate.fractional);
  const uint32_t origin = Origin(space, masks);
  std::string text;
  JsonText json(text);
  Writer writer(json, rate, result);
  json.BeginObject().Field("OTIO_SCHEMA", "Timeline.1");
  json.Key("metadata").BeginObject().Key("tcspace").BeginObject();
  json.Key("fps").Unsigned(rate.fps).Key("drop_frame").Bool(rate.dropFrame);
  json.EndObject().EndObject();
  json.Field("name", options.name);
  writer.Time("global_start_time", origin);
  json.Key("tracks").BeginObject().Field("OTIO_SCHEMA", "Stack.1");
  json.Key("metadata").BeginObject().EndObject().Field("name", "tracks");
  json.Key("source_range").Null();
  writer.ItemTail();
  json.Key("children").BeginArray();
  for (uint32_t channel = 0; channel < 96; ++channel) {
    if ((masks[channel / 32] >> (channel % 32) & 1u) == 0) continue;
    const std::vector<Row> rows = ChannelRows(space, channel);
    if (rows.empty()) continue;
    writer.Track(channel, rows, origin);
    ++result.tracks;
  }
  json.EndArray().EndObject().EndObject();
  text += '\n';
  *out = std::move(text);
  return result;
}

WriteResult WriteOtioFile(CTimeCodeSpace* space, const std::string& path,
                          const WriteOptions& options) {
  std::string text;
  WriteResult result = WriteOtioText(space, options, &text);
  if (result.status != Status::kOk) {
    result.error = path + ": " + result.error;
    return result;
  }
  std::string temporary = path + ".tcs-XXXXXX";
  const int fd = mkstemp(temporary.data());
  if (fd < 0) return Fail(Status::kCannotWrite, path + ": " + std::strerror(errno));
  bool written = true;
  for (size_t done = 0; done < text.size() && written;) {
    const ssize_t n = write(fd, text.data() + done, text.size() - done);
    if (n < 0 && errno == EINTR) continue;
    written = n > 0;
    if (written) done += size_t(n);
  }
  const int error = errno;
  if (close(fd) != 0 && written) written = false;
  if (written) {
    const mode_t mask = umask(0);
    umask(mask);
    chmod(temporary.c_str(), 0666 & ~mask);
    if (std::rename(temporary.c_str(), path.c_str()) == 0) return result;
  }
  const int cause = written ? errno : error;
  unlink(temporary.c_str());
  return Fail(Status::kCannotWrite, "cannot write " + path + ": " + std::strerror(cause));
}

}  // namespace tcs::otio

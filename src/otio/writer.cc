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

#include <nlohmann/json.hpp>

#include "otio/otio.h"
#include "otio/source_file.h"
#include "tcs.h"

namespace tcs::otio {
namespace {

using Ordered = nlohmann::ordered_json;

constexpr unsigned int kBatch = 256;

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
};

std::string Text(const char* text) { return text != nullptr ? text : ""; }

std::vector<Row> ChannelRows(CTimeCodeSpace* space, uint32_t channel) {
  std::vector<Row> rows;
  TCSCLIP batch[kBatch];
  unsigned int from = 0;
  unsigned int count = 0;
  do {
    if (tcsGetClips(space, channel, from, TCS_NO_TIMECODE, batch, kBatch, &count, &from) != TCS_OK) {
      break;
    }
    for (unsigned int i = 0; i < count; ++i) {
      const TCSCLIP& c = batch[i];
      Row row{c.start, c.length, c.sourceIn, c.effectCode, c.effectDuration, Text(c.effectText),
              "", "", "", ""};
      if (c.info != nullptr) {
        row.name = Text(c.info->name);
        row.reel = Text(c.info->reel);
        row.comment = Text(c.info->comment);
        row.clipName = Text(c.info->clipName);
      }
      rows.push_back(std::move(row));
    }
  } while (from != TCS_NO_TIMECODE);
  return rows;
}

class Writer {
 public:
  Writer(const WriteOptions& options, WriteResult& result)
      : rate_(RateValue(options.rate)), result_(result) {}

  Ordered Time(double frames) const {
    return Ordered{{"OTIO_SCHEMA", "RationalTime.1"}, {"rate", rate_}, {"value", frames}};
  }
  Ordered Range(double start, double duration) const {
    return Ordered{{"OTIO_SCHEMA", "TimeRange.1"},
                   {"duration", Time(duration)},
                   {"start_time", Time(start)}};
  }

  Ordered Track(uint32_t channel, const std::vector<Row>& rows, uint32_t origin);

 private:
  Ordered Clip(const Row& row, uint32_t length) const;
  Ordered Gap(uint32_t length) const;
  Ordered Transition(const Row& row) const;

  double rate_;
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

Ordered Writer::Clip(const Row& row, uint32_t length) const {
  Ordered cmx = Ordered::object();
  if (!row.reel.empty()) cmx["reel"] = row.reel;
  if (!row.comment.empty()) cmx["comments"] = Lines(row.comment);
  Ordered metadata = Ordered::object();
  if (!cmx.empty()) metadata["cmx_3600"] = cmx;
  if (!row.clipName.empty()) metadata["tcspace"] = Ordered{{"clip_name", row.clipName}};

  const std::string file = SourceFileOf(row.comment);
  Ordered reference{{"OTIO_SCHEMA", file.empty() ? "MissingReference.1" : "ExternalReference.1"},
                    {"metadata", Ordered::object()},
                    {"name", ""},
                    {"available_range", nullptr}};
  if (!file.empty()) reference["target_url"] = file;
  return Ordered{{"OTIO_SCHEMA", "Clip.2"},
                 {"metadata", metadata},
                 {"name", row.name},
                 {"source_range", Range(row.sourceIn, length)},
                 {"effects", Ordered::array()},
                 {"markers", Ordered::array()},
                 {"enabled", true},
                 {"media_references", Ordered{{"DEFAULT_MEDIA", reference}}},
                 {"active_media_reference_key", "DEFAULT_MEDIA"}};
}

Ordered Writer::Gap(uint32_t length) const {
  return Ordered{{"OTIO_SCHEMA", "Gap.1"},     {"metadata", Ordered::object()},
                 {"name", ""},                 {"source_range", Range(0, length)},
                 {"effects", Ordered::array()}, {"markers", Ordered::array()},
                 {"enabled", true}};
}

// A transition into `row`, wholly after the cut: in_offset 0, so the clips
// before and after it stay where they are.
Ordered Writer::Transition(const Row& row) const {
  char code[16];
  if (row.effectCode == 0) {
    std::snprintf(code, sizeof code, "D");
  } else {
    std::snprintf(code, sizeof code, "W%03u", row.effectCode);
  }
  return Ordered{{"OTIO_SCHEMA", "Transition.1"},
                 {"metadata", Ordered{{"cmx_3600", Ordered{{"transition", code}}}}},
                 {"name", row.effectText},
                 {"in_offset", Time(0)},
                 {"out_offset", Time(row.effectDuration)},
                 {"transition_type", row.effectCode == 0 ? "SMPTE_Dissolve" : "SMPTE_Wipe"}};
}

Ordered Writer::Track(uint32_t channel, const std::vector<Row>& rows, uint32_t origin) {
  char name[8];
  tcsChannelName(channel, name, sizeof name);
  Ordered children = Ordered::array();
  uint32_t at = origin;
  for (size_t i = 0; i < rows.size(); ++i) {
    const Row& row = rows[i];
    uint32_t length = row.length;
    // Clips may overlap on a channel (a moved clip): from the start of the
    // next one, the next one plays.
    if (i + 1 < rows.size() && rows[i + 1].start - row.start < length) {
      length = rows[i + 1].start - row.start;
      result_.warnings.push_back({row.name.empty() ? "Clip" : row.name,
                                  std::string(name) + ": cut at frame " +
                                      std::to_string(rows[i + 1].start) + " where the next clip starts"});
    }
    if (row.start > at) children.push_back(Gap(row.start - at));
    if (!row.effectText.empty() && row.effectDuration > 0) children.push_back(Transition(row));
    children.push_back(Clip(row, length));
    at = row.start + length;
    ++result_.clips;
  }
  return Ordered{{"OTIO_SCHEMA", "Track.1"},
                 {"metadata", Ordered::object()},
                 {"name", name},
                 {"source_range", nullptr},
                 {"effects", Ordered::array()},
                 {"markers", Ordered::array()},
                 {"enabled", true},
                 {"children", children},
                 {"kind", channel >= 32 && channel < 64 ? "Audio" : "Video"}};
}

WriteResult Fail(Status status, const std::string& message) {
  WriteResult result;
  result.status = status;
  result.error = message;
  return result;
}

}  // namespace

WriteResult WriteOtioText(CTimeCodeSpace* space, const WriteOptions& options, std::string* out) {
  unsigned int masks[3];
  if (out == nullptr) return Fail(Status::kCannotWrite, "no output");
  if (tcsGetChannels(space, &masks[0], &masks[1], &masks[2]) != TCS_OK) {
    return Fail(Status::kSpaceRefused, "the space is not open");
  }
  WriteResult result;
  std::vector<std::pair<uint32_t, std::vector<Row>>> channels;
  uint32_t origin = TCS_NO_TIMECODE;
  for (uint32_t channel = 0; channel < 96; ++channel) {
    if ((masks[channel / 32] >> (channel % 32) & 1u) == 0) continue;
    std::vector<Row> rows = ChannelRows(space, channel);
    if (rows.empty()) continue;
    origin = std::min(origin, rows.front().start);
    channels.emplace_back(channel, std::move(rows));
  }
  if (origin == TCS_NO_TIMECODE) origin = 0;

  Writer writer(options, result);
  Ordered tracks = Ordered::array();
  for (const auto& [channel, rows] : channels) tracks.push_back(writer.Track(channel, rows, origin));
  result.tracks = static_cast<uint32_t>(channels.size());
  Ordered own{{"fps", options.rate.fps}, {"drop_frame", options.rate.dropFrame}};
  Ordered timeline{
      {"OTIO_SCHEMA", "Timeline.1"},
      {"metadata", Ordered{{"tcspace", own}}},
      {"name", options.name},
      {"global_start_time", writer.Time(origin)},
      {"tracks", Ordered{{"OTIO_SCHEMA", "Stack.1"},
                         {"metadata", Ordered::object()},
                         {"name", "tracks"},
                         {"source_range", nullptr},
                         {"effects", Ordered::array()},
                         {"markers", Ordered::array()},
                         {"enabled", true},
                         {"children", tracks}}}};
  // Texts that are not UTF-8 (names from old lists) are written with the
  // replacement character rather than refused.
  *out = timeline.dump(4, ' ', false, Ordered::error_handler_t::replace);
  *out += '\n';
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

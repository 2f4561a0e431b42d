// Reading: parse the whole document, flatten each track of its timeline,
// place the tracks on channels and round every clip to whole frames; only
// when all of that succeeded are the clips laid, one _tcsAddEdlLine each.
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "otio/channel_plan.h"
#include "otio/flatten.h"
#include "otio/json_fields.h"
#include "otio/otio.h"
#include "otio/pieces.h"
#include "otio/read_error.h"
#include "tcs.h"

namespace tcs::otio {
namespace {

// The space's timeline: starts up to 99 hours at 30 frames per second; a
// clip ends at the latest one frame after that.
constexpr double kLastStart = 10692000;
constexpr double kTimelineEnd = 10692001;
constexpr double kMaxSource = 4294967295.0;
constexpr int kMaxCollectionDepth = 16;

double Round(double frames) { return std::floor(frames + 0.5); }

// One clip on one channel, in whole frames.
struct Line {
  uint32_t channel;
  uint32_t recordIn;
  uint32_t recordOut;
  uint32_t sourceIn;
  uint32_t effectCode;
  uint32_t effectFrames;
  uint32_t texts;
  bool speed;
  int32_t milliFps;  // the speed as the clip library keeps it
  uint32_t speedEntry;
};

const Json* FindTimeline(const Json& value, int depth) {
  const Schema schema = SchemaOf(value, "the file");
  if (schema.name == "Timeline") return &value;
  if (schema.name != "SerializableCollection" || depth > kMaxCollectionDepth) return nullptr;
  const Json* children = Field(value, "children");
  if (children == nullptr || !children->is_array()) return nullptr;
  for (const Json& child : *children) {
    if (child.is_null()) continue;
    if (const Json* found = FindTimeline(child, depth + 1)) return found;
  }
  return nullptr;
}

// The rate of the first clip's source_range, depth first.
std::optional<double> FirstClipRate(const Json& value, int depth) {
  if (depth > kMaxNesting || !value.is_object()) return std::nullopt;
  const std::optional<std::string> schema = TextField(value, "OTIO_SCHEMA");
  if (schema && schema->rfind("Clip.", 0) == 0) {
    const Json* range = Field(value, "source_range");
    const Json* duration = range ? Field(*range, "duration") : nullptr;
    const Json* rate = duration ? Field(*duration, "rate") : nullptr;
    if (rate != nullptr && rate->is_number()) return rate->get<double>();
    return std::nullopt;
  }
  const Json* children = Field(value, "children");
  if (children == nullptr || !children->is_array()) return std::nullopt;
  for (const Json& child : *children) {
    if (const std::optional<double> rate = FirstClipRate(child, depth + 1)) return rate;
  }
  return std::nullopt;
}

FrameRate TimelineRate(const Json& timeline, const ReadOptions& options) {
  if (options.rate) return *options.rate;
  std::optional<double> value;
  if (const Json* start = Field(timeline, "global_start_time")) {
    const Json* rate = Field(*start, "rate");
    if (rate != nullptr && rate->is_number()) value = rate->get<double>();
  }
  if (!value) {
    if (const Json* tracks = Field(timeline, "tracks")) value = FirstClipRate(*tracks, 0);
  }
  if (!value) return tcs::timecode::MakeFrameRate(24, false);
  std::optional<FrameRate> rate = RateFromValue(*value);
  if (!rate) {
    std::ostringstream text;
    text << "the timeline's rate of " << *value
         << " is not one a space counts (whole rates to 120, 23.976, 29.97, 59.94)";
    throw ReadError(Status::kBadValue, text.str());
  }
  const Json* metadata = Field(timeline, "metadata");
  const Json* own = metadata ? Field(*metadata, "tcspace") : nullptr;
  const Json* drop = own ? Field(*own, "drop_frame") : nullptr;
  if (drop != nullptr && drop->is_boolean() && rate->fractional &&
      tcs::timecode::CanDropFrame(rate->fps)) {
    rate->dropFrame = drop->get<bool>();
  }
  return *rate;
}

// The pieces of one track as whole-frame lines on `channel`, with a warning
// for each piece the space cannot hold as it is.
void AddLines(const Flat& flat, double globalStart, uint32_t channel, uint32_t fps,
              const Flattener& flattener, std::vector<Warning>& warnings,
              std::vector<Line>& lines) {
  for (const Piece& piece : flat.pieces) {
    const std::string& name = flattener.texts()[piece.texts].name;
    const std::string label = name.empty() ? "Clip" : name;
    double in = Round(globalStart + piece.start);
    double out = Round(globalStart + piece.end);
    double source = Round(piece.sourceIn);
    if (out <= in) {
      warnings.push_back({label, "shorter than a frame at the timeline's rate: not read"});
      continue;
    }
    if (out <= 0 || in > kLastStart) {
      warnings.push_back({label, "outside the space's timeline (frames 0 to 10692000): not read"});
      continue;
    }
    const bool cutAtStart = in < 0;
    if (cutAtStart) {
      warnings.push_back({label, "starts before frame 0: cut"});
      source -= in;
      in = 0;
    }
    if (out > kTimelineEnd) {
      warnings.push_back({label, "runs past the end of the space's timeline: cut"});
      out = kTimelineEnd;
    }
    if (source < 0) {
      warnings.push_back({label, "source starts before frame 0: read from frame 0"});
      source = 0;
    }
    if (source + (out - in) > kMaxSource) {
      warnings.push_back({label, "source frames past 2^32: not read"});
      continue;
    }
    Line line{channel, uint32_t(in), uint32_t(out), uint32_t(source), 0, 0, piece.texts,
              false, 0, 0};
    if (piece.speed) {
      // The clip library keeps thousandths of a source frame per second at
      // the timeline's nominal rate.
      const double entry = Round(piece.speedEntry);
      line.speed = true;
      line.milliFps = static_cast<int32_t>(std::llround(piece.timeScalar * fps * 1000));
      line.speedEntry = entry >= 0 && entry <= kMaxSource ? uint32_t(entry) : line.sourceIn;
    }
    const double effect = Round(piece.effectFrames);
    if (piece.transition && !cutAtStart && effect >= 1) {
      line.effectCode = piece.effectCode;
      line.effectFrames = effect < kMaxSource ? uint32_t(effect) : uint32_t(kMaxSource);
    }
    lines.push_back(line);
  }
}

// The nlohmann message without its "[json.exception...] " prefix.
std::string ParseMessage(const std::exception& error) {
  std::string text = error.what();
  if (text.rfind("[json.exception", 0) == 0) {
    const size_t close = text.find("] ");
    if (close != std::string::npos) text.erase(0, close + 2);
  }
  return text;
}

ReadResult Fail(Status status, const std::string& message) {
  ReadResult result;
  result.status = status;
  result.error = message;
  return result;
}

char* Text(const std::string& text) { return const_cast<char*>(text.c_str()); }

}  // namespace

ReadResult ReadOtioText(CTimeCodeSpace* space, std::string_view text, const ReadOptions& options) {
  unsigned int masks[3];
  if (tcsGetChannels(space, &masks[0], &masks[1], &masks[2]) != TCS_OK) {
    return Fail(Status::kSpaceRefused, "the space is not open");
  }
  // Every value of the document lives in the arena and dies before it.
  JsonArena arena;
  JsonArena::Scope scope(arena);
  Json document;
  try {
    document = Json::parse(text.begin(), text.end());
  } catch (const Json::exception& error) {
    return Fail(Status::kNotJson, "not JSON: " + ParseMessage(error));
  }

  ReadResult result;
  std::vector<Line> lines;
  std::vector<ClipTexts> texts;
  try {
    const Json* timeline = FindTimeline(document, 0);
    if (timeline == nullptr) return Fail(Status::kNotTimeline, "no Timeline in the file");
    result.name = NameOf(*timeline);
    result.rate = TimelineRate(*timeline, options);
    const TimeScale scale(RateValue(result.rate));
    const Json* start = Field(*timeline, "global_start_time");
    const double globalStart = start != nullptr ? scale.Frames(*start, "global_start_time") : 0;

    Flattener flattener(scale, result.warnings);
    std::vector<TrackInfo> infos;
    std::vector<Flat> flats;
    if (const Json* stack = Field(*timeline, "tracks")) {
      if (SchemaOf(*stack, "tracks").name != "Stack") {
        return Fail(Status::kNotTimeline, "the timeline's tracks are not a Stack");
      }
      const std::optional<Span> window = scale.RangeField(*stack, "source_range", "tracks");
      const Json* children = Field(*stack, "children");
      if (children != nullptr && !children->is_array()) {
        throw ReadError(Status::kBadValue, "tracks: children is not a list");
      }
      const size_t count = children != nullptr ? children->size() : 0;
      for (size_t i = 0; i < count; ++i) {
        const Json& child = (*children)[i];
        SchemaOf(child, "tracks");
        infos.push_back({NameOf(child), TextField(child, "kind").value_or("Video")});
        Flat flat = flattener.Composition(child, 1);
        if (window) flat = Trim(flat, window->start, window->duration);
        flats.push_back(std::move(flat));
      }
    }
    const std::vector<std::optional<TrackPlacement>> plan = PlanChannels(infos, result.warnings);
    for (size_t i = 0; i < plan.size(); ++i) {
      if (!plan[i]) continue;
      result.tracks.push_back(*plan[i]);
      AddLines(flats[i], globalStart, plan[i]->channel, result.rate.fps, flattener,
               result.warnings, lines);
    }
    texts = flattener.texts();
  } catch (const ReadError& error) {
    return Fail(error.status(), error.what());
  } catch (const Json::exception& error) {
    return Fail(Status::kBadValue, ParseMessage(error));
  }

  for (const Line& line : lines) {
    const ClipTexts& clip = texts[line.texts];
    EDLLINE edl;
    std::memset(&edl, 0, sizeof edl);
    edl.clip.sourceIn = line.sourceIn;
    edl.clip.sourceOut = line.sourceIn + (line.recordOut - line.recordIn);
    if (line.channel < 32) {
      edl.clip.videoMask = 1u << line.channel;
    } else {
      edl.clip.audioMask = 1u << (line.channel - 32);
    }
    edl.clip.name = Text(clip.name);
    edl.clip.reel = clip.reel.empty() ? nullptr : Text(clip.reel);
    edl.clip.comment = clip.comment.empty() ? nullptr : Text(clip.comment);
    edl.clip.clipName = clip.clipName.empty() ? nullptr : Text(clip.clipName);
    edl.recordIn = line.recordIn;
    edl.recordOut = line.recordOut;
    edl.effectCode = line.effectCode;
    edl.effectDuration = line.effectFrames;
    if (line.speed) clsSetClipSpeed(&edl.clip, line.milliFps, line.speedEntry);
    const uint32_t status = _tcsAddEdlLine(space, &edl, 0);
    if (status != TCS_OK) {
      result.status = Status::kSpaceRefused;
      result.error = "the space refused a clip (status " + std::to_string(status) + ")";
      return result;
    }
    ++result.clips;
  }
  return result;
}

ReadResult ReadOtioFile(CTimeCodeSpace* space, const std::string& path, const ReadOptions& options) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) {
    return Fail(Status::kCannotOpen, path + ": is a directory, not an .otio file");
  }
  std::ifstream in(path, std::ios::binary);
  if (!in.is_open()) return Fail(Status::kCannotOpen, path + ": " + std::strerror(errno));
  std::string text;
  try {
    text.assign(std::istreambuf_iterator<char>(in), {});
  } catch (const std::exception&) {
    return Fail(Status::kCannotOpen, path + ": cannot be read");
  }
  if (in.bad()) return Fail(Status::kCannotOpen, path + ": cannot be read");
  ReadResult result = ReadOtioText(space, text, options);
  if (result.status != Status::kOk) result.error = path + ": " + result.error;
  return result;
}

const char* StatusName(Status status) {
  switch (status) {
    case Status::kOk: return "ok";
    case Status::kCannotOpen: return "cannot open";
    case Status::kCannotWrite: return "cannot write";
    case Status::kNotJson: return "not JSON";
    case Status::kNotTimeline: return "not a timeline";
    case Status::kBadSchema: return "bad schema";
    case Status::kBadValue: return "bad value";
    case Status::kTooDeep: return "nested too deep";
    case Status::kSpaceRefused: return "space refused";
  }
  return "unknown";
}

}  // namespace tcs::otio

#include "otio/json_fields.h"

#include <charconv>
#include <cmath>
#include <string>
#include <utility>

#include "otio/rate.h"
#include "otio/read_error.h"

namespace tcs::otio {
namespace {

// The newest version of each schema that OpenTimelineIO loads; Sequence and
// Filler are the old names of Track and Gap.
constexpr std::pair<std::string_view, int> kNewest[] = {
    {"Timeline", 1},          {"Stack", 1},
    {"Track", 1},             {"Sequence", 1},
    {"Clip", 2},              {"Gap", 1},
    {"Filler", 1},            {"Transition", 1},
    {"Marker", 2},            {"SerializableCollection", 1},
    {"ExternalReference", 1}, {"MissingReference", 1},
    {"GeneratorReference", 1}, {"ImageSequenceReference", 1},
    {"Effect", 1},            {"TimeEffect", 1},
    {"LinearTimeWarp", 1},    {"FreezeFrame", 1},
    {"RationalTime", 1},      {"TimeRange", 1},
    {"TimeTransform", 1},     {"SerializableObject", 1},
    {"SerializableObjectWithMetadata", 1},
};

constexpr double kMaxFrames = 1099511627776.0;  // 2^40

int NewestVersion(std::string_view name) {
  for (const auto& [known, version] : kNewest) {
    if (known == name) return version;
  }
  return 0;
}

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

}  // namespace

bool IsKnownSchema(std::string_view name) { return NewestVersion(name) != 0; }

Schema SchemaOf(const Json& value, std::string_view where) {
  if (!value.is_object()) {
    throw ReadError(Status::kBadSchema, std::string(where) + ": expected an object");
  }
  const auto found = value.find("OTIO_SCHEMA");
  if (found == value.end() || !found->is_string()) {
    throw ReadError(Status::kBadSchema, std::string(where) + ": object without OTIO_SCHEMA");
  }
  const std::string& text = found->get_ref<const std::string&>();
  const size_t dot = text.rfind('.');
  Schema schema;
  bool named = dot != std::string::npos && dot != 0 && dot + 1 < text.size();
  if (named) {
    const char* end = text.data() + text.size();
    const auto [ptr, error] = std::from_chars(text.data() + dot + 1, end, schema.version);
    named = error == std::errc() && ptr == end;
  }
  if (!named) {
    throw ReadError(Status::kBadSchema,
                    std::string(where) + ": schema " + Quoted(text) + " is not Name.version");
  }
  schema.name = text.substr(0, dot);
  const int newest = NewestVersion(schema.name);
  if (schema.version < 1 || (newest != 0 && schema.version > newest)) {
    throw ReadError(Status::kBadSchema,
                    std::string(where) + ": schema " + Quoted(text) + " has a version this reader " +
                        "does not know" +
                        (newest != 0 ? " (newest " + schema.name + "." + std::to_string(newest) + ")"
                                     : ""));
  }
  return schema;
}

const Json* Field(const Json& object, std::string_view key) {
  if (!object.is_object()) return nullptr;
  const auto found = object.find(key);
  if (found == object.end() || found->is_null()) return nullptr;
  return &*found;
}

std::optional<std::string> TextField(const Json& object, std::string_view key) {
  const Json* field = Field(object, key);
  if (field == nullptr || !field->is_string()) return std::nullopt;
  return field->get<std::string>();
}

std::string NameOf(const Json& object) { return TextField(object, "name").value_or(""); }

double TimeScale::Frames(const Json& time, std::string_view item) const {
  const std::string where(item);
  if (!time.is_object()) throw ReadError(Status::kBadValue, where + ": a time is not an object");
  const Json* rate = Field(time, "rate");
  const Json* value = Field(time, "value");
  if (rate == nullptr || value == nullptr || !rate->is_number() || !value->is_number()) {
    throw ReadError(Status::kBadValue, where + ": a time without a numeric rate and value");
  }
  const double r = rate->get<double>();
  const double v = value->get<double>();
  if (!std::isfinite(r) || r <= 0) {
    throw ReadError(Status::kBadValue, where + ": a time has a rate of " + rate->dump());
  }
  if (!std::isfinite(v)) throw ReadError(Status::kBadValue, where + ": a time is not finite");
  const double frames = v * (rate_ / CanonicalRate(r));
  if (!(std::fabs(frames) <= kMaxFrames)) {
    throw ReadError(Status::kBadValue, where + ": a time of " + value->dump() + " at rate " +
                                           rate->dump() + " is out of range");
  }
  return frames;
}

std::optional<Span> TimeScale::RangeField(const Json& object, std::string_view key,
                                          std::string_view item) const {
  const Json* range = Field(object, key);
  if (range == nullptr) return std::nullopt;
  const std::string where(item);
  const Json* start = Field(*range, "start_time");
  const Json* duration = Field(*range, "duration");
  if (start == nullptr || duration == nullptr) {
    throw ReadError(Status::kBadValue, where + ": " + std::string(key) +
                                           " needs a start_time and a duration");
  }
  Span span{Frames(*start, item), Frames(*duration, item)};
  if (span.duration < 0) {
    throw ReadError(Status::kBadValue, where + ": negative duration in " + std::string(key));
  }
  return span;
}

}  // namespace tcs::otio

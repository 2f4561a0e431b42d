// The typed fields of OpenTimelineIO objects as the reader takes them from a
// parsed document: schema names and versions, texts, and times converted to
// frames of the space's rate. Every malformed field is a ReadError naming the
// item it belongs to. Pure functions over a document the caller owns.
#ifndef TCS_OTIO_JSON_FIELDS_H_
#define TCS_OTIO_JSON_FIELDS_H_

#include <optional>
#include <string>
#include <string_view>

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <vector>

#include "otio/json_arena.h"

namespace tcs::otio {

// A parsed document, its maps and vectors taken from the thread's JsonArena
// while one is in scope.
using Json = nlohmann::basic_json<std::map, std::vector, std::string, bool, std::int64_t,
                                  std::uint64_t, double, ArenaAllocator>;

struct Schema {
  std::string name;  // "Clip"
  int version = 0;   // 2
};

// The object's OTIO_SCHEMA, split. kBadSchema when `value` is not an object
// with a "Name.N" schema, or when N is past the newest version of a schema
// this reader knows (or is 0). Schemas it does not know pass with their
// version: the caller decides what an unknown object means where it is.
Schema SchemaOf(const Json& value, std::string_view where);
bool IsKnownSchema(std::string_view name);

// The "name" field, or "" when absent or null.
std::string NameOf(const Json& object);
// object[key] as text, or empty when absent, null or not a string.
std::optional<std::string> TextField(const Json& object, std::string_view key);
// object[key] when it is present and not null.
const Json* Field(const Json& object, std::string_view key);

// A span of time in frames of the space's rate, not yet rounded.
struct Span {
  double start = 0;
  double duration = 0;
};

// Converts RationalTimes of any rate to frames at `rate` (frames per second,
// exact): value * rate / its rate, with both rates snapped to the exact
// value of the standard rate they name (see CanonicalRate).
class TimeScale {
 public:
  explicit TimeScale(double rate) : rate_(rate) {}
  double rate() const { return rate_; }
  // kBadValue for a rate of 0, a negative or non-finite rate or value, a
  // time past 2^40 frames, or a value that is not a RationalTime.
  double Frames(const Json& rationalTime, std::string_view item) const;
  // A TimeRange; also kBadValue for a negative duration. Empty for null or
  // absent.
  std::optional<Span> RangeField(const Json& object, std::string_view key,
                                 std::string_view item) const;

 private:
  double rate_;
};

}  // namespace tcs::otio

#endif  // TCS_OTIO_JSON_FIELDS_H_

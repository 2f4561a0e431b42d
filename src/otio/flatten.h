// Flattener: turns one composition of a parsed OpenTimelineIO document (a
// Track, a Stack, or anything nested in them) into the pieces of clips that
// play, in order, on one timeline: a Track lays its children end to end
// (transitions take no time), a Stack shows each child over the ones before
// it, and a composition's source_range trims what it shows. Owns the texts
// of the clips it met; borrows the document and the warning list.
// Single-threaded; one per document.
#ifndef TCS_OTIO_FLATTEN_H_
#define TCS_OTIO_FLATTEN_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "otio/json_fields.h"
#include "otio/otio.h"

namespace tcs::otio {

// What a clip of the file says besides its timing, shared by every piece
// cut from it.
struct ClipTexts {
  std::string name;
  std::string reel;
  std::string comment;   // lines joined by '\n'
  std::string clipName;  // the short name, where the file kept one
};

// A stretch of one clip, in frames of the space's rate (not yet rounded),
// in the time of the composition that holds it.
struct Piece {
  double start = 0;
  double end = 0;
  double sourceIn = 0;  // the source frame that plays at `start`
  uint32_t texts = 0;   // index into Flattener::texts()
  bool transition = false;  // a transition into the clip, starting at `start`
  uint32_t effectCode = 0;
  double effectFrames = 0;
  // A time effect: source frames per record frame (negative: reverse; 0: a
  // freeze), from the source frame `speedEntry` on, which a cut keeps.
  bool speed = false;
  double timeScalar = 1;
  double speedEntry = 0;
};

struct Flat {
  std::vector<Piece> pieces;  // by start, none overlapping
  double duration = 0;
};

class Flattener {
 public:
  Flattener(const TimeScale& scale, std::vector<Warning>& warnings)
      : scale_(scale), warnings_(warnings) {}

  // A Track or Stack (or a lone item, as a composition of one), trimmed by
  // its own source_range. `depth` counts the compositions around it;
  // kTooDeep past kMaxNesting.
  Flat Composition(const Json& composition, int depth);
  const std::vector<ClipTexts>& texts() const { return texts_; }

 private:
  Flat Track(const Json& track, const std::string& name, int depth);
  Flat Stack(const Json& stack, const std::string& name, int depth);
  // One clip at `at` of its track; returns its duration.
  double Clip(const Json& clip, double at, std::vector<Piece>& out);
  ClipTexts TextsOf(const Json& clip, const std::string& name, const Span& source);
  // Warnings for effects and markers an item carries that the space cannot
  // hold. For a clip (`isClip`) the first time effect is kept: its scalar
  // is returned instead of warned about, and markers are the clip's.
  std::optional<double> WarnEffects(const Json& item, const std::string& name, bool isClip);
  void Warn(const std::string& item, const std::string& text) { warnings_.push_back({item, text}); }

  const TimeScale& scale_;
  std::vector<Warning>& warnings_;
  std::vector<ClipTexts> texts_;
};

}  // namespace tcs::otio

#endif  // TCS_OTIO_FLATTEN_H_

#include "otio/flatten.h"

#include <cmath>
#include <cstdio>
#include <string>

#include "otio/pieces.h"
#include "otio/read_error.h"
#include "otio/source_file.h"

namespace tcs::otio {
namespace {

// The name an item goes by in warnings: its own, else its schema.
std::string Label(const Json& item, const Schema& schema) {
  std::string name = NameOf(item);
  return name.empty() ? schema.name : name;
}

const Json* Metadata(const Json& item, std::string_view space) {
  const Json* metadata = Field(item, "metadata");
  return metadata != nullptr ? Field(*metadata, space) : nullptr;
}

void AddLine(std::string& comment, const std::string& line) {
  if (!comment.empty()) comment += '\n';
  comment += line;
}

// The comment lines OpenTimelineIO's EDL adapter keeps: a list of texts (or
// one text).
std::string Comments(const Json& cmx) {
  std::string comment;
  const Json* comments = Field(cmx, "comments");
  if (comments == nullptr) return comment;
  if (comments->is_string()) return comments->get<std::string>();
  if (!comments->is_array()) return comment;
  bool first = true;
  for (const Json& line : *comments) {
    if (!line.is_string()) continue;
    if (!first) comment += '\n';
    comment += line.get_ref<const std::string&>();
    first = false;
  }
  return comment;
}

// The media reference a clip plays: Clip.2 names it among its references,
// Clip.1 holds one.
const Json* ActiveReference(const Json& clip, const Schema& schema) {
  if (schema.version == 1) return Field(clip, "media_reference");
  const Json* references = Field(clip, "media_references");
  if (references == nullptr || !references->is_object()) return nullptr;
  const std::string key = TextField(clip, "active_media_reference_key").value_or("DEFAULT_MEDIA");
  return Field(*references, key);
}

// A speed past this many source frames per record frame is not a speed.
constexpr double kMaxTimeScalar = 1000;

std::string FrameText(double frames) {
  char text[32];
  std::snprintf(text, sizeof text, "%.0f", frames);
  return text;
}

// A transition waiting for the clip after it.
struct PendingTransition {
  bool active = false;
  std::string name;
  uint32_t code = 0;
  double frames = 0;
};

// The wipe code a transition's EDL metadata gives ("W001" -> 1; "D" -> 0).
std::optional<uint32_t> EdlCode(const Json& transition) {
  const Json* cmx = Metadata(transition, "cmx_3600");
  const std::optional<std::string> text = cmx ? TextField(*cmx, "transition") : std::nullopt;
  if (!text || text->empty()) return std::nullopt;
  if (*text == "D") return 0u;
  if ((*text)[0] != 'W' || text->size() < 2 || text->size() > 7) return std::nullopt;
  uint32_t code = 0;
  for (size_t i = 1; i < text->size(); ++i) {
    const char c = (*text)[i];
    if (c < '0' || c > '9') return std::nullopt;
    code = code * 10 + uint32_t(c - '0');
  }
  return code;
}

}  // namespace

Flat Flattener::Composition(const Json& composition, int depth) {
  const Schema schema = SchemaOf(composition, "a composition");
  const std::string name = Label(composition, schema);
  if (depth > kMaxNesting) {
    throw ReadError(Status::kTooDeep, name + ": compositions nested more than " +
                                          std::to_string(kMaxNesting) + " deep");
  }
  Flat flat;
  if (schema.name == "Track" || schema.name == "Sequence") {
    flat = Track(composition, name, depth);
  } else if (schema.name == "Stack") {
    flat = Stack(composition, name, depth);
  } else if (schema.name == "Clip") {
    flat.duration = Clip(composition, 0, flat.pieces);
    return flat;
  } else {
    // A gap, or an object this reader does not know: time and nothing in it.
    if (schema.name != "Gap" && schema.name != "Filler") Warn(name, schema.name + " not read");
    const std::optional<Span> range = scale_.RangeField(composition, "source_range", name);
    flat.duration = range ? range->duration : 0;
    return flat;
  }
  WarnEffects(composition, name, false);
  if (const std::optional<Span> range = scale_.RangeField(composition, "source_range", name)) {
    return Trim(flat, range->start, range->duration);
  }
  return flat;
}

Flat Flattener::Track(const Json& track, const std::string& name, int depth) {
  Flat flat;
  const Json* children = Field(track, "children");
  if (children == nullptr) return flat;
  if (!children->is_array()) throw ReadError(Status::kBadValue, name + ": children is not a list");
  const Json* enabled = Field(track, "enabled");
  if (enabled != nullptr && enabled->is_boolean() && !enabled->get<bool>()) {
    Warn(name, "disabled track read as enabled");
  }
  double at = 0;
  PendingTransition pending;
  for (const Json& child : *children) {
    const Schema schema = SchemaOf(child, name);
    const std::string label = Label(child, schema);
    if (schema.name == "Transition") {
      if (pending.active) Warn(pending.name, "transition followed by another: not kept");
      const Json* in = Field(child, "in_offset");
      const Json* out = Field(child, "out_offset");
      const double before = in ? scale_.Frames(*in, label) : 0;
      const double after = out ? scale_.Frames(*out, label) : 0;
      if (before < 0 || after < 0) throw ReadError(Status::kBadValue, label + ": negative offset");
      pending = {true, label, 0, before + after};
      const std::string type = TextField(child, "transition_type").value_or("");
      if (const std::optional<uint32_t> code = EdlCode(child)) {
        pending.code = *code;
      } else if (type != "SMPTE_Dissolve") {
        Warn(label, "transition type \"" + type + "\" read as a dissolve");
      }
      if (before > 0) {
        Warn(label, "starts " + FrameText(before) +
                        " frames before the cut; the space starts it at the cut");
      }
      continue;
    }
    const size_t first = flat.pieces.size();
    double duration = 0;
    if (schema.name == "Clip") {
      duration = Clip(child, at, flat.pieces);
    } else if (schema.name == "Track" || schema.name == "Sequence" || schema.name == "Stack") {
      const Flat nested = Composition(child, depth + 1);
      for (Piece piece : nested.pieces) {
        piece.start += at;
        piece.end += at;
        flat.pieces.push_back(piece);
      }
      duration = nested.duration;
    } else {
      if (schema.name != "Gap" && schema.name != "Filler") Warn(label, schema.name + " not read");
      const std::optional<Span> range = scale_.RangeField(child, "source_range", label);
      duration = range ? range->duration : 0;
      WarnEffects(child, label, false);
    }
    if (pending.active) {
      const bool intoClip = schema.name == "Clip" && flat.pieces.size() > first &&
                            flat.pieces[first].start == at;
      if (intoClip) {
        Piece& clip = flat.pieces[first];
        clip.transition = pending.frames > 0;
        clip.effectCode = pending.code;
        clip.effectFrames = pending.frames;
      } else {
        Warn(pending.name, "transition into " + label + ", not into a clip: not kept");
      }
      pending.active = false;
    }
    at += duration;
  }
  if (pending.active) Warn(pending.name, "transition at the end of a track: not kept");
  flat.duration = at;
  return flat;
}

Flat Flattener::Stack(const Json& stack, const std::string& name, int depth) {
  Flat flat;
  const Json* children = Field(stack, "children");
  if (children == nullptr) return flat;
  if (!children->is_array()) throw ReadError(Status::kBadValue, name + ": children is not a list");
  for (const Json& child : *children) {
    SchemaOf(child, name);
    flat = Overlay(flat, Composition(child, depth + 1));
  }
  return flat;
}

double Flattener::Clip(const Json& clip, double at, std::vector<Piece>& out) {
  const Schema schema = SchemaOf(clip, "a clip");
  const std::string name = NameOf(clip);
  const std::string label = name.empty() ? schema.name : name;
  std::optional<Span> source = scale_.RangeField(clip, "source_range", label);
  const Json* reference = ActiveReference(clip, schema);
  if (!source && reference != nullptr) {
    SchemaOf(*reference, label);
    source = scale_.RangeField(*reference, "available_range", label);
  }
  if (!source) {
    Warn(label, "clip without a source_range or an available_range: not read");
    return 0;
  }
  const std::optional<double> speed = WarnEffects(clip, label, true);
  const Json* enabled = Field(clip, "enabled");
  if (enabled != nullptr && enabled->is_boolean() && !enabled->get<bool>()) {
    Warn(label, "disabled clip read as a gap");
    return source->duration;
  }
  if (source->duration > 0) {
    Piece piece;
    piece.start = at;
    piece.end = at + source->duration;
    piece.sourceIn = source->start;
    if (speed) {
      piece.speed = true;
      piece.timeScalar = *speed;
      piece.speedEntry = source->start;
      if (const Json* own = Metadata(clip, "tcspace")) {
        const Json* entry = Field(*own, "speed_entry");
        if (entry != nullptr && entry->is_number()) piece.speedEntry = entry->get<double>();
      }
    }
    piece.texts = static_cast<uint32_t>(texts_.size());
    texts_.push_back(TextsOf(clip, name, *source));
    if (reference != nullptr && SchemaOf(*reference, label).name == "ExternalReference") {
      const std::string url = TextField(*reference, "target_url").value_or("");
      std::string& comment = texts_.back().comment;
      if (!url.empty() && SourceFileOf(comment) != url) {
        AddLine(comment, std::string(kSourceFileLabel) + url);
      }
    }
    out.push_back(piece);
  }
  return source->duration;
}

ClipTexts Flattener::TextsOf(const Json& clip, const std::string& name, const Span& source) {
  ClipTexts texts;
  texts.name = name;
  if (const Json* cmx = Metadata(clip, "cmx_3600")) {
    texts.reel = TextField(*cmx, "reel").value_or("");
    texts.comment = Comments(*cmx);
  }
  if (const Json* own = Metadata(clip, "tcspace")) {
    texts.clipName = TextField(*own, "clip_name").value_or("");
  }
  const Json* markers = Field(clip, "markers");
  if (markers == nullptr || !markers->is_array()) return texts;
  for (const Json& marker : *markers) {
    const Schema schema = SchemaOf(marker, name);
    if (schema.name != "Marker") continue;
    const std::string label = NameOf(marker);
    std::string line = "MARKER: " + label;
    if (const std::optional<Span> range = scale_.RangeField(marker, "marked_range", label)) {
      line += " at source frame " + FrameText(range->start);
      if (range->duration > 0) line += " for " + FrameText(range->duration);
      if (range->start < source.start || range->start >= source.start + source.duration) {
        line += " (outside the clip)";
      }
    }
    if (const std::optional<std::string> color = TextField(marker, "color")) {
      line += " " + *color;
    }
    if (const std::optional<std::string> note = TextField(marker, "comment"); note && !note->empty()) {
      line += ": " + *note;
    }
    AddLine(texts.comment, line);
  }
  return texts;
}

std::optional<double> Flattener::WarnEffects(const Json& item, const std::string& name,
                                             bool isClip) {
  std::optional<double> scalar;
  if (const Json* effects = Field(item, "effects"); effects != nullptr && effects->is_array()) {
    for (const Json& effect : *effects) {
      const Schema schema = SchemaOf(effect, name);
      const bool timeEffect = schema.name == "LinearTimeWarp" || schema.name == "FreezeFrame";
      const Json* value = Field(effect, "time_scalar");
      const double given = schema.name == "FreezeFrame" ? 0
                           : value != nullptr && value->is_number() ? value->get<double>()
                                                                     : 1;
      if (timeEffect && isClip && !scalar && std::fabs(given) <= kMaxTimeScalar) {
        scalar = given;
      } else if (timeEffect) {
        Warn(name, (schema.name == "FreezeFrame" ? std::string("freeze frame")
                                                  : "speed " + (value ? value->dump() : "1")) +
                       " not kept: " +
                       (!isClip ? "only a clip keeps a speed"
                        : scalar ? "the clip keeps its first time effect"
                                 : "past what the space can hold"));
      } else {
        const std::string effectName = TextField(effect, "effect_name").value_or(schema.name);
        Warn(name, "effect \"" + effectName + "\" not kept");
      }
    }
  }
  if (isClip) return scalar;
  if (const Json* markers = Field(item, "markers"); markers != nullptr && markers->is_array()) {
    for (const Json& marker : *markers) {
      Warn(name, "marker \"" + NameOf(marker) + "\" not kept: only clips keep markers");
    }
  }
  return scalar;
}

}  // namespace tcs::otio

#include "space_object.h"

#include <pybind11/stl.h>

#include <cstring>
#include <stdexcept>
#include <utility>

#include "clip_type.h"
#include "each_clip.h"
#include "edit_request.h"
#include "event_walk.h"
#include "library_call.h"

namespace py = pybind11;

namespace tcs::py_module {
namespace {


std::string Text(const char* text) { return text != nullptr ? text : ""; }

std::string ChannelName(uint32_t channel) {
  char name[8] = "?";
  tcsChannelName(channel, name, sizeof name);
  return name;
}

// The play clip starting or playing at `at` on `channel`, as a row.
bool RowAt(CTimeCodeSpace* space, uint32_t channel, uint32_t at, TCSCLIP& row) {
  return at != TCS_NO_TIMECODE && tcs::host::ClipAt(space, channel, at, row);
}

std::vector<uint32_t> ChannelsWithClips(CTimeCodeSpace* space) {
  unsigned int masks[3] = {0, 0, 0};
  std::vector<uint32_t> channels;
  if (tcsGetChannels(space, &masks[0], &masks[1], &masks[2]) != TCS_OK) return channels;
  for (uint32_t c = 0; c < 96; ++c) {
    if ((masks[c / 32] >> (c % 32) & 1) != 0) channels.push_back(c);
  }
  return channels;
}

// A notification's exception: the library catches what a notification
// throws, logs it and counts it as answer 0, so the Python exception goes on
// as a C++ one. The library's log line does not carry its text, so the text
// is a RuntimeWarning of its own.
[[noreturn]] void Rethrow(py::error_already_set& error, const char* notification) {
  const std::string text = error.what();
  const std::string warning =
      std::string("tcspace: ") + notification + " raised " + text + "; the library goes on";
  if (PyErr_WarnEx(PyExc_RuntimeWarning, warning.c_str(), 1) != 0) PyErr_Clear();
  throw std::runtime_error(text);
}

}  // namespace

Clip::Clip(std::shared_ptr<SpaceState> state, const TCSCLIP& row)
    : channel(row.channel),
      start(row.start),
      length(row.length),
      source_in(row.sourceIn),
      source_out(row.sourceOut),
      transition_frames(row.effectText[0] != '\0' ? row.effectDuration : 0),
      transition_code(row.effectCode),
      transition(row.effectText),
      rate(state != nullptr ? state->rate : FrameRate{}),
      state_(std::move(state)),
      record_(row.clip),
      stamp_(state_ != nullptr ? state_->edits.load() : 0) {
  if (row.info != nullptr) {
    name = Text(row.info->name);
    reel = Text(row.info->reel);
    comment = Text(row.info->comment);
    clip_name = Text(row.info->clipName);
    if (int32_t milli = 0; clsGetClipSpeed(row.info, &milli, nullptr) != 0) speed_milli = milli;
  }
}

Clip Clip::Detached(const TCSCLIP& row, FrameRate rate) {
  Clip clip(nullptr, row);
  clip.rate = rate;
  return clip;
}

bool Clip::Alive() const {
  if (state_ == nullptr) return true;
  CTimeCodeSpace* space = state_->space;
  if (space == nullptr) return false;
  const uint64_t now = state_->edits.load();
  if (stamp_ == now) return true;
  LogLines log;
  TCSCLIP row;
  const bool listed = Call([&] { return RowAt(space, channel, start, row); }, log);
  if (!listed || row.clip != record_ || row.start != start || row.length != length ||
      row.sourceIn != source_in || row.sourceOut != source_out) {
    return false;
  }
  stamp_ = now;
  return true;
}

void Clip::RequireAlive() const {
  if (Alive()) return;
  const std::string where = state_->space == nullptr ? " belongs to a closed space"
                                                      : " has left its space";
  const py::object errors = py::module_::import("tcspace.errors");
  const py::object error = errors.attr("stale")("the clip '" + name + "' at frame " +
                                                std::to_string(start) + " of " +
                                                ChannelName(channel) + where);
  PyErr_SetObject(errors.attr("StaleClipError").ptr(), error.ptr());
  throw py::error_already_set();
}

Space::Space(FrameRate rate) : state_(std::make_shared<SpaceState>()) {
  state_->rate = rate;
  LogLines log;
  state_->space = Call([] { return tcsOpen(nullptr, nullptr, nullptr); }, log);
  if (state_->space == nullptr) RaiseStatus(TCS_RESULT_NONE, log, "opening a space");
  // The library takes file inserts only while the host listens to additions.
  tcsSetAddCallback(state_->space, state_.get(), &OnAdd);
  tcsSetDelCallback(state_->space, state_.get(), &OnDelete);
}

Space::~Space() {
  // A space collected without close() tells Python nothing more: no Python
  // code runs from a destructor.
  state_->listening = false;
  state_->on_add = py::none();
  state_->on_delete = py::none();
  try {
    Close();
  } catch (py::error_already_set& error) {
    error.discard_as_unraisable("closing a tcspace.Space");
  }
}

void Space::Close() {
  CTimeCodeSpace* space = state_->space;
  if (space == nullptr) return;
  ++state_->edits;
  LogLines log;
  const uint32_t status = Call([&] { return tcsClose(space); }, log);
  state_->space = nullptr;
  Check(status, log, "close");
}

CTimeCodeSpace* Space::Handle(const char* what) const {
  if (state_->space == nullptr) {
    RaiseStatus(TCS_ERR_BAD_HANDLE, {}, std::string(what) + ": the space is closed");
  }
  return state_->space;
}

unsigned int Space::OnAdd(void* context, CTimeCodeSpace*, CClip* clip) {
  auto* state = static_cast<SpaceState*>(context);
  if (!state->listening.load()) return 0;
  py::gil_scoped_acquire gil;
  if (!state->on_add || state->on_add.is_none()) return 0;
  TCSCLIP row;
  if (tcsDescribeClip(clip, &row) != TCS_OK) return 0;
  try {
    const py::object answer = state->on_add(Clip::Detached(row, state->rate));
    return answer.is_none() || PyObject_IsTrue(answer.ptr()) == 1 ? 0 : 1;
  } catch (py::error_already_set& error) {
    Rethrow(error, "on_add");
  }
}

unsigned int Space::OnDelete(void* context, CTimeCodeSpace*, CClip* clip) {
  auto* state = static_cast<SpaceState*>(context);
  if (!state->listening.load()) return 0;
  py::gil_scoped_acquire gil;
  if (!state->on_delete || state->on_delete.is_none()) return 0;
  TCSCLIP row;
  if (tcsDescribeClip(clip, &row) != TCS_OK) return 0;
  try {
    state->on_delete(Clip::Detached(row, state->rate));
  } catch (py::error_already_set& error) {
    Rethrow(error, "on_delete");
  }
  return 0;
}

uint32_t ChannelArg(const py::handle& value) {
  if (py::isinstance<py::int_>(value) && !py::isinstance<py::bool_>(value)) {
    const long long channel = value.cast<long long>();
    if (channel < 0 || channel >= 96) throw py::value_error("a channel is 0..95");
    return static_cast<uint32_t>(channel);
  }
  if (py::isinstance<py::str>(value)) {
    const std::string text = value.cast<std::string>();
    unsigned int masks[3] = {0, 0, 0};
    LogLines log;
    const unsigned int status =
        Call([&] { return tcsParseChannels(text.c_str(), &masks[0], &masks[1], &masks[2]); }, log);
    const unsigned int any = masks[0] | masks[1] | masks[2];
    if (status == TCS_OK && text.find('+') == std::string::npos && any != 0) {
      for (uint32_t c = 0; c < 96; ++c) {
        if ((masks[c / 32] >> (c % 32) & 1) != 0) return c;
      }
    }
    throw py::value_error("not a channel: '" + text + "' (V1..V32, A1..A32, X1..X32 or 0..95)");
  }
  throw py::type_error("a channel is a name such as 'V1' or a number 0..95");
}

namespace {

// The channels of an edit: "V1+A1", a channel name or number, or a list of
// them. Edits reach video and audio channels (0..63) only.
std::pair<uint32_t, uint32_t> EditChannels(const py::handle& value) {
  uint32_t masks[2] = {0, 0};
  const auto add = [&](uint32_t c) {
    if (c >= 64) throw py::value_error("an edit names video and audio channels (V1..V32, A1..A32)");
    masks[c / 32] |= 1u << (c % 32);
  };
  if (py::isinstance<py::str>(value)) {
    const std::string text = value.cast<std::string>();
    size_t at = 0;
    while (true) {
      const size_t plus = text.find('+', at);
      add(ChannelArg(py::str(text.substr(at, plus - at))));
      if (plus == std::string::npos) break;
      at = plus + 1;
    }
  } else if (py::isinstance<py::int_>(value)) {
    add(ChannelArg(value));
  } else if (py::isinstance<py::sequence>(value)) {
    for (const py::handle item : value) add(ChannelArg(item));
  } else {
    throw py::type_error("channels are 'V1+A1', a channel, or a list of channels");
  }
  return {masks[0], masks[1]};
}

}  // namespace

std::vector<std::string> Space::Channels() const {
  CTimeCodeSpace* space = Handle("channels");
  LogLines log;
  const std::vector<uint32_t> channels = Call([&] { return ChannelsWithClips(space); }, log);
  Warn(log);
  std::vector<std::string> names;
  for (const uint32_t c : channels) names.push_back(ChannelName(c));
  return names;
}

std::vector<Clip> Space::Clips(const py::handle& channel_arg) const {
  const uint32_t channel = ChannelArg(channel_arg);
  CTimeCodeSpace* space = Handle("clips");
  LogLines log;
  std::vector<Clip> clips;
  const uint32_t status = Call(
      [&] {
        unsigned int count = 0;
        if (uint32_t s = tcsGetClipCount(space, channel, &count); s != TCS_OK) return s;
        clips.reserve(count);
        return tcs::host::EachClip(
            space, channel, [&](const TCSCLIP& row) { clips.emplace_back(state_, row); });
      },
      log);
  Check(status, log, "clips");
  return clips;
}

std::vector<Playing> Space::At(const py::handle& at_arg) const {
  const uint32_t at = FramesArg(at_arg, state_->rate, "at");
  CTimeCodeSpace* space = Handle("at");
  LogLines log;
  std::vector<Playing> playing;
  Call(
      [&] {
        for (const uint32_t c : ChannelsWithClips(space)) {
          Playing p{ChannelName(c), std::nullopt, std::nullopt};
          uint32_t source = tcsTranslate(space, 0, at, nullptr, c);
          TCSCLIP row;
          if (source != TCS_NOT_FOUND && RowAt(space, c, at, row)) {
            p.clip.emplace(state_, row);
            // A clip with a speed of its own plays another source frame.
            source = clsPlayedSource(row.info, source, state_->rate.fps);
            p.source = Timecode{source, state_->rate};
          }
          playing.push_back(std::move(p));
        }
        return 0;
      },
      log);
  Warn(log);
  return playing;
}

std::vector<Event> Space::Events() const {
  CTimeCodeSpace* space = Handle("events");
  const FrameRate rate = state_->rate;
  LogLines log;
  const std::vector<host::WalkEvent> walked = Call([&] { return host::WalkEvents(space); }, log);
  Warn(log);
  std::vector<Event> events;
  events.reserve(walked.size());
  for (const host::WalkEvent& w : walked) {
    Event e{{w.recordIn, rate}, {w.recordOut(), rate}, {w.sourceIn, rate}, {w.sourceOut, rate},
            {}, w.name, w.transition};
    for (uint32_t c = 0; c < 64; ++c) {
      if (((c < 32 ? w.videoMask : w.audioMask) >> (c % 32) & 1) != 0) {
        e.channels.push_back(ChannelName(c));
      }
    }
    events.push_back(std::move(e));
  }
  return events;
}

void Space::Edit(int kind, const py::handle& channels, const py::handle& a, const py::handle& b,
                 const py::handle& c, const std::string& name) {
  static const char* const kNames[] = {"overwrite", "insert", "blank", "delete", "trim", "move"};
  const char* what = kNames[kind];
  host::EditRequest edit;
  edit.kind = static_cast<host::EditKind>(kind);
  std::tie(edit.videoMask, edit.audioMask) = EditChannels(channels);
  edit.a = FramesArg(a, state_->rate, what);
  if (!b.is_none()) edit.b = FramesArg(b, state_->rate, what);
  if (!c.is_none()) edit.c = FramesArg(c, state_->rate, what);
  edit.name = name;
  if (const std::optional<std::string> problem = host::Problem(edit)) {
    throw py::value_error(std::string(what) + ": " + *problem);
  }
  CTimeCodeSpace* space = Handle(what);
  LogLines log;
  std::optional<host::SpaceProblem> refused;
  ++state_->edits;
  const uint32_t status = Call(
      [&] {
        refused = host::ProblemIn(space, edit);
        if (refused) return uint32_t{TCS_OK};
        TCSCMD cmd = host::Record(edit);
        return static_cast<uint32_t>(tcsSetMode(space, &cmd));
      },
      log);
  ++state_->edits;
  if (refused) {
    throw py::value_error(std::string(what) + ": " +
                          refused->Text(Timecode{edit.a, state_->rate}.Text()));
  }
  Check(status, log, what);
}

}  // namespace tcs::py_module

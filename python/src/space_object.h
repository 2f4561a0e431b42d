// The Python face of a space: Space (an open space that closes on exit from
// a with-block), Clip (a play clip as listed: read-only, and raising once
// its record has left the space), Event (one step of the event walk) and
// Playing (what plays on a channel at a frame).
//
// Thread safety: every call into the library goes through LibraryCall, so a
// Space may be shared by Python threads. SpaceState's fields are read and
// written only while the interpreter's lock is held.
#ifndef TCS_PYTHON_SPACE_OBJECT_H_
#define TCS_PYTHON_SPACE_OBJECT_H_

#include <pybind11/pybind11.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "rates.h"
#include "tcs.h"

namespace tcs::py_module {

// What a Space and its Clips share. Outlives the space when clips do.
struct SpaceState {
  CTimeCodeSpace* space = nullptr;  // null once closed
  std::atomic<uint64_t> edits{0};   // raised by every call that may change the space
  FrameRate rate;
  std::string rate_reason = "given";  // where the rate came from
  std::string title;                  // the file's title, written back
  // What the file read into the space could not carry as written.
  std::vector<std::pair<uint32_t, std::string>> warnings;
  pybind11::object on_add = pybind11::none();  // None or a callable
  pybind11::object on_delete = pybind11::none();
  // Whether either is set: read by the notifications before they take the
  // interpreter's lock, so that a file of many clips read with no Python
  // listening never takes it.
  std::atomic<bool> listening{false};
};

class Clip {
 public:
  Clip(std::shared_ptr<SpaceState> state, const TCSCLIP& row);
  // A copy of a record handed to a notification: never stale.
  static Clip Detached(const TCSCLIP& row, FrameRate rate);

  // Raises StaleClipError when the record has left the space (or the space
  // is closed); the values below are copies and are never read from it.
  void RequireAlive() const;
  bool Alive() const;

  uint32_t channel, start, length, source_in, source_out, transition_frames, transition_code;
  std::optional<int32_t> speed_milli;  // source frames per 1000 s where the clip has a speed
  std::string name, reel, comment, clip_name, transition;
  FrameRate rate;

 private:
  std::shared_ptr<SpaceState> state_;  // null: detached
  const CClip* record_ = nullptr;      // identity only: never dereferenced
  mutable uint64_t stamp_ = 0;         // state_->edits when last known listed
};

struct Event {
  Timecode record_in, record_out, source_in, source_out;
  std::vector<std::string> channels;
  std::string name, transition;
};

struct Playing {
  std::string channel;
  std::optional<Clip> clip;
  std::optional<Timecode> source;
};

class Space {
 public:
  explicit Space(FrameRate rate);
  ~Space();
  Space(const Space&) = delete;
  Space& operator=(const Space&) = delete;

  void Close();
  bool closed() const { return state_->space == nullptr; }
  CTimeCodeSpace* Handle(const char* what) const;  // raises BadHandleError once closed
  const std::shared_ptr<SpaceState>& state() const { return state_; }

  std::vector<std::string> Channels() const;
  std::vector<Clip> Clips(const pybind11::handle& channel) const;
  std::vector<Playing> At(const pybind11::handle& at) const;
  std::vector<Event> Events() const;
  // Sends a checked edit; `edit` is an EditRequest whose channels and times
  // are filled in from the arguments.
  void Edit(int kind, const pybind11::handle& channels, const pybind11::handle& a,
            const pybind11::handle& b, const pybind11::handle& c, const std::string& name);

 private:
  static unsigned int OnAdd(void* state, CTimeCodeSpace* space, CClip* clip);
  static unsigned int OnDelete(void* state, CTimeCodeSpace* space, CClip* clip);
  std::shared_ptr<SpaceState> state_;
};

// A channel given as a name ("V1", "a2", "X3") or a number 0..95.
uint32_t ChannelArg(const pybind11::handle& value);

void BindSpace(pybind11::module_& m);

}  // namespace tcs::py_module

#endif  // TCS_PYTHON_SPACE_OBJECT_H_

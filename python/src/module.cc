// The compiled part of `import tcspace`: spaces, clips, edits, the walk,
// timecodes and files, over the library's C entry points.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "clip_type.h"
#include "rates.h"
#include "space_object.h"
#include "timeline_io.h"

namespace py = pybind11;
using namespace tcs::py_module;

namespace {

void BindClip(py::module_& m) {
  AddClipType(m);

  py::class_<Event>(m, "Event", "One event of the walk: a clip start with the clips of the "
                                "same source that start with it on other channels.")
      .def_readonly("record_in", &Event::record_in)
      .def_readonly("record_out", &Event::record_out)
      .def_readonly("source_in", &Event::source_in)
      .def_readonly("source_out", &Event::source_out)
      .def_readonly("channels", &Event::channels, "Channel names, video first.")
      .def_readonly("name", &Event::name)
      .def_readonly("transition", &Event::transition, "'' for a cut.")
      .def("__repr__", [](const Event& e) {
        std::string channels;
        for (const std::string& c : e.channels) channels += (channels.empty() ? "" : "+") + c;
        return "<tcspace.Event " + e.record_in.Text() + " " + channels + " '" + e.name + "'>";
      });

  py::class_<Playing>(m, "Playing", "What one channel plays at a record frame.")
      .def_readonly("channel", &Playing::channel)
      .def_readonly("clip", &Playing::clip, "The Clip, or None where nothing plays.")
      .def_readonly("source", &Playing::source, "The source frame it plays, or None.")
      .def("__repr__", [](const Playing& p) {
        if (!p.clip) return "<tcspace.Playing " + p.channel + ": nothing>";
        return "<tcspace.Playing " + p.channel + ": '" + p.clip->name + "' source " +
               p.source->Text() + ">";
      });
}

void Listen(SpaceState& state) {
  state.listening = !state.on_add.is_none() || !state.on_delete.is_none();
}

enum EditKind { kOverwrite, kInsert, kBlank, kDelete, kTrim, kMove };

void BindSpaceClass(py::module_& m) {
  const py::object none = py::none();
  py::class_<Space>(m, "Space", R"doc(
A time code space: up to 96 channels of clips laid out by record timecode.

Space(fps=None) opens an empty space (30 frames per second unless fps says
otherwise); tcspace.read(path) opens one holding a file. Use it in a with-
block, or call close(): closing deletes every clip (on_delete hears of each).

Channels are named 'V1'..'V32', 'A1'..'A32', 'X1'..'X32' (or numbered 0..95);
an edit names several joined by '+' ('V1+A1'). Timecodes are text at the
space's rate ('01:00:00:00', drop-frame '01:00:00;02'), frame counts, or
Timecode objects. Edits are sent as the command records the tcs tool sends;
a refused edit raises a TcsError. Safe to share between threads.)doc")
      .def(py::init([](const py::object& fps) {
             return std::make_unique<Space>(fps.is_none() ? FrameRate{} : RateArg(fps));
           }),
           py::arg("fps") = none)
      .def("close", &Space::Close, "Deletes every clip and closes the space. Idempotent.")
      .def_property_readonly("closed", &Space::closed)
      .def_property_readonly("rate", [](const Space& s) { return s.state()->rate; },
                             "The FrameRate timecodes are shown and read at.")
      .def_property_readonly("rate_reason", [](const Space& s) { return s.state()->rate_reason; },
                             "Where the rate came from: 'given', or what in the file gave it.")
      .def_property_readonly("warnings", [](const Space& s) { return s.state()->warnings; },
                             "(line, text) for each line of the file read that could not be "
                             "carried as written.")
      .def("__enter__", [](Space& s) -> Space& { return s; }, py::return_value_policy::reference)
      .def("__exit__", [](Space& s, const py::args&) { s.Close(); })
      .def("channels", &Space::Channels, "The names of the channels that hold clips.")
      .def("clips", [](const Space& s, const py::object& ch) { return ClipList(s.Clips(ch)); },
           py::arg("channel"),
           "Every clip of a channel in record order, each once.")
      .def("at", &Space::At, py::arg("timecode"),
           "What plays at a record timecode on every channel that holds clips.")
      .def("events", &Space::Events,
           "The event walk, as the EDL export steps it (it visits V1..V4 and A1..A16).")
      .def(
          "overwrite",
          [](Space& s, const py::object& ch, const py::object& at, const py::tuple& source,
             const std::string& name) {
            if (source.size() != 2) throw py::value_error("source=(in, out)");
            s.Edit(kOverwrite, ch, at, source[0], source[1], name);
          },
          py::arg("channels"), py::arg("at"), py::arg("source"), py::arg("name"),
          "Lays source frames source=(in, out) of `name` over the channels from `at`.")
      .def(
          "insert",
          [](Space& s, const py::object& ch, const py::object& at, const py::object& duration) {
            s.Edit(kInsert, ch, at, duration, py::none(), "");
          },
          py::arg("channels"), py::arg("at"), py::arg("duration"),
          "Opens a gap of `duration` frames at a cut; later clips move on (ripple).")
      .def(
          "blank",
          [](Space& s, const py::object& ch, const py::object& from, const py::object& to) {
            s.Edit(kBlank, ch, from, to, py::none(), "");
          },
          py::arg("channels"), py::arg("start"), py::arg("end"), "Clears [start, end), leaving a gap.")
      .def(
          "delete",
          [](Space& s, const py::object& ch, const py::object& from, const py::object& to) {
            s.Edit(kDelete, ch, from, to, py::none(), "");
          },
          py::arg("channels"), py::arg("start"), py::arg("end"),
          "Removes [start, end); later clips move back (ripple).")
      .def(
          "trim",
          [](Space& s, const py::object& ch, const py::object& at, const py::tuple& source) {
            if (source.size() != 2) throw py::value_error("source=(in, out)");
            s.Edit(kTrim, ch, at, source[0], source[1], "");
          },
          py::arg("channels"), py::arg("at"), py::arg("source"),
          "The clip starting at `at` plays source=(in, out) instead.")
      .def(
          "move",
          [](Space& s, const py::object& ch, const py::object& at, const py::object& to) {
            s.Edit(kMove, ch, at, to, py::none(), "");
          },
          py::arg("channels"), py::arg("at"), py::arg("to"),
          "The clip starting at `at` moves to start at `to`.")
      .def_property(
          "on_add", [](const Space& s) { return s.state()->on_add; },
          [](Space& s, const py::object& fn) {
            if (!fn.is_none() && !PyCallable_Check(fn.ptr())) throw py::type_error("on_add takes a callable or None");
            s.state()->on_add = fn;
            Listen(*s.state());
          },
          "Called with each Clip about to be added; returning False refuses it. An exception "
          "in it is logged (as a RuntimeWarning) and counts as accepting.")
      .def_property(
          "on_delete", [](const Space& s) { return s.state()->on_delete; },
          [](Space& s, const py::object& fn) {
            if (!fn.is_none() && !PyCallable_Check(fn.ptr())) throw py::type_error("on_delete takes a callable or None");
            s.state()->on_delete = fn;
            Listen(*s.state());
          },
          "Called with each Clip as it leaves the space.")
      .def("write", &WriteFile, py::arg("path"),
           "Writes the space as a file: OpenTimelineIO where the name ends in .otio, else an EDL.")
      .def("__repr__", [](const Space& s) {
        return std::string("<tcspace.Space ") + (s.closed() ? "closed" : "open") + " at " +
               RateSpelling(s.state()->rate) + " fps>";
      });
}

}  // namespace

namespace tcs::py_module {

void BindSpace(py::module_& m) {
  BindClip(m);
  BindSpaceClass(m);
}

}  // namespace tcs::py_module

PYBIND11_MODULE(_tcspace, m) {
  m.doc() = "The compiled core of tcspace; import tcspace instead.";
  BindRates(m);
  BindSpace(m);
  m.def(
      "read",
      [](const std::string& path, const py::object& fps, bool strict) {
        return ReadFile(path, fps.is_none() ? std::nullopt : std::optional<FrameRate>(RateArg(fps)),
                        strict);
      },
      py::arg("path"), py::arg("fps") = py::none(), py::arg("strict") = false,
      "Opens a space holding the timeline of `path` (an EDL, or OpenTimelineIO where the "
      "name ends in .otio), at `fps` or at the rate the file gives, found as the tcs tool "
      "finds it (space.rate_reason says how). What the reader could not carry as written is "
      "listed in space.warnings; for an EDL, strict=True stops at the first line it cannot "
      "read instead, with a TcsError.");
}

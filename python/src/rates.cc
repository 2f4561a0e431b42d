#include "rates.h"

#include <pybind11/operators.h>

#include <functional>

#include "timecode/timecode.h"

namespace py = pybind11;

namespace tcs::py_module {

std::string Timecode::Text() const { return timecode::TimecodeString(frames, rate); }

std::string RateSpelling(FrameRate rate) {
  if (rate.fractional) {
    const char* base = rate.fps == 24 ? "23.976" : rate.fps == 30 ? "29.97" : "59.94";
    return std::string(base) + (rate.dropFrame ? "df" : "");
  }
  return std::to_string(rate.fps) + (rate.dropFrame ? "df" : "");
}

FrameRate RateArg(const py::handle& value) {
  if (py::isinstance<FrameRate>(value)) return value.cast<FrameRate>();
  std::string text;
  if (py::isinstance<py::str>(value)) {
    text = value.cast<std::string>();
  } else if (py::isinstance<py::int_>(value) && !py::isinstance<py::bool_>(value)) {
    text = py::str(value).cast<std::string>();
  } else if (py::isinstance<py::float_>(value)) {
    const double fps = value.cast<double>();
    const double known[] = {23.976, 29.97, 59.94};
    const char* spelled[] = {"23.976", "29.97", "59.94"};
    for (int i = 0; i < 3; ++i) {
      if (fps > known[i] - 0.005 && fps < known[i] + 0.005) text = spelled[i];
    }
    if (text.empty() && fps == static_cast<double>(static_cast<int>(fps))) {
      text = std::to_string(static_cast<int>(fps));
    }
  }
  const std::optional<FrameRate> rate = timecode::ParseFrameRate(text);
  if (!rate) {
    throw py::value_error("not a frame rate: " + py::repr(value).cast<std::string>() +
                          " (24, 25, 30, 48, 50, 60, 23.976, 29.97, 29.97df, 59.94, "
                          "59.94df, or a whole rate up to 120)");
  }
  return *rate;
}

uint32_t FramesArg(const py::handle& value, FrameRate rate, const char* what) {
  if (py::isinstance<Timecode>(value)) return value.cast<Timecode>().frames;
  if (py::isinstance<py::int_>(value) && !py::isinstance<py::bool_>(value)) {
    const long long frames = value.cast<long long>();
    if (frames < 0 || frames > kLastFrame) {
      throw py::value_error(std::string(what) + ": frame " + std::to_string(frames) +
                            " is not on the timeline (0.." + std::to_string(kLastFrame) + ")");
    }
    return static_cast<uint32_t>(frames);
  }
  if (py::isinstance<py::str>(value)) {
    std::string error;
    const std::optional<uint32_t> frames =
        timecode::ParseTimecode(value.cast<std::string>(), rate, kLastFrame, &error);
    if (!frames) throw py::value_error(std::string(what) + ": " + error);
    return *frames;
  }
  throw py::type_error(std::string(what) + ": give a timecode as text, a frame count or a Timecode");
}

void BindRates(py::module_& m) {
  py::class_<FrameRate>(m, "FrameRate", R"doc(
A frame rate: how timecodes count frames. Immutable.

FrameRate("25"), FrameRate(24), FrameRate(29.97) (29.97 counts drop-frame),
FrameRate("29.97df"), FrameRate("23.976"), FrameRate("59.94df").

fps is the nominal count (24, 25, 30, 60, ...), drop_frame whether
timecodes skip labels to keep to the clock, fractional whether the picture
runs at fps * 1000/1001.)doc")
      .def(py::init([](const py::object& value) { return RateArg(value); }), py::arg("rate"))
      .def_property_readonly("fps", [](const FrameRate& r) { return r.fps; })
      .def_property_readonly("drop_frame", [](const FrameRate& r) { return r.dropFrame; })
      .def_property_readonly("fractional", [](const FrameRate& r) { return r.fractional; })
      .def("__str__", [](const FrameRate& r) { return timecode::FrameRateText(r); })
      .def("__repr__", [](const FrameRate& r) { return "FrameRate('" + RateSpelling(r) + "')"; })
      .def("__eq__", [](const FrameRate& a, const py::object& b) {
        return py::isinstance<FrameRate>(b) && a == b.cast<FrameRate>();
      })
      .def("__hash__", [](const FrameRate& r) {
        return std::hash<uint32_t>()(r.fps * 4 + r.dropFrame * 2 + r.fractional);
      });

  py::class_<Timecode>(m, "Timecode", R"doc(
A record or source position: a frame count and the rate it is shown at.
Immutable; str() gives "HH:MM:SS:FF" ("HH:MM:SS;FF" drop-frame), int() the
frame count. Compares and hashes by frame count, also against ints.

Timecode("01:00:00:00", "25"), Timecode(90000, FrameRate("25")),
Timecode.parse("00:10:00;00", "29.97df").frames == 17982.)doc")
      .def(py::init([](const py::object& value, const py::object& rate) {
             const FrameRate r = rate.is_none() ? FrameRate{} : RateArg(rate);
             return Timecode{FramesArg(value, r, "Timecode"), r};
           }),
           py::arg("value"), py::arg("rate") = py::none())
      .def_static(
          "parse",
          [](const std::string& text, const py::object& rate) {
            const FrameRate r = rate.is_none() ? FrameRate{} : RateArg(rate);
            return Timecode{FramesArg(py::str(text), r, "Timecode"), r};
          },
          py::arg("text"), py::arg("rate") = py::none(), "Reads a timecode or a frame count at a rate.")
      .def_property_readonly("frames", [](const Timecode& t) { return t.frames; })
      .def_property_readonly("rate", [](const Timecode& t) { return t.rate; })
      .def("__str__", &Timecode::Text)
      .def("__repr__", [](const Timecode& t) {
        return "Timecode('" + t.Text() + "', '" + RateSpelling(t.rate) + "')";
      })
      .def("__int__", [](const Timecode& t) { return t.frames; })
      .def("__index__", [](const Timecode& t) { return t.frames; })
      .def("__hash__", [](const Timecode& t) { return std::hash<uint32_t>()(t.frames); })
      .def("__eq__", [](const Timecode& a, const py::object& b) {
        if (py::isinstance<Timecode>(b)) return a.frames == b.cast<Timecode>().frames;
        if (py::isinstance<py::int_>(b)) return py::int_(a.frames).equal(b);
        return false;
      })
      .def("__lt__", [](const Timecode& a, const py::object& b) {
        return a.frames < FramesArg(b, a.rate, "Timecode");
      })
      .def("__add__", [](const Timecode& a, long long frames) {
        return Timecode{FramesArg(py::int_(a.frames + frames), a.rate, "Timecode +"), a.rate};
      })
      .def("__sub__", [](const Timecode& a, const py::object& b) -> py::object {
        if (py::isinstance<Timecode>(b)) {
          return py::int_(static_cast<long long>(a.frames) - b.cast<Timecode>().frames);
        }
        const long long frames = static_cast<long long>(a.frames) - b.cast<long long>();
        return py::cast(Timecode{FramesArg(py::int_(frames), a.rate, "Timecode -"), a.rate});
      });
}

}  // namespace tcs::py_module

#include "clip_type.h"

#include <pybind11/stl.h>

#include <new>
#include <optional>
#include <string>

#include "tcs.h"

namespace py = pybind11;

namespace tcs::py_module {
namespace {

struct ClipObject {
  PyObject_HEAD
  Clip clip;
};

PyTypeObject clip_type = {PyVarObject_HEAD_INIT(nullptr, 0)};

Clip& Of(PyObject* self) { return reinterpret_cast<ClipObject*>(self)->clip; }

void Dealloc(PyObject* self) {
  Of(self).~Clip();
  Py_TYPE(self)->tp_free(self);
}

std::string ChannelName(uint32_t channel) {
  char name[8] = "?";
  tcsChannelName(channel, name, sizeof name);
  return name;
}

// A getter: the value `fn` gives once the clip is known to be alive; a
// StaleClipError (or any Python error) comes back as null.
template <typename Fn>
PyObject* Get(PyObject* self, Fn fn) {
  try {
    const Clip& clip = Of(self);
    clip.RequireAlive();
    return py::cast(fn(clip)).release().ptr();
  } catch (py::error_already_set& error) {
    error.restore();
  } catch (const std::exception& error) {
    PyErr_SetString(PyExc_RuntimeError, error.what());
  }
  return nullptr;
}

template <auto fn>
PyObject* Getter(PyObject* self, void*) {
  return Get(self, fn);
}

template <auto fn>
PyGetSetDef Field(const char* name) {
  return {name, &Getter<fn>, nullptr, nullptr, nullptr};
}

PyGetSetDef getters[] = {
    Field<[](const Clip& c) { return ChannelName(c.channel); }>("channel"),
    Field<[](const Clip& c) { return c.channel; }>("channel_number"),
    Field<[](const Clip& c) { return Timecode{c.start, c.rate}; }>("record_in"),
    Field<[](const Clip& c) { return Timecode{c.start + c.length, c.rate}; }>("record_out"),
    Field<[](const Clip& c) { return c.length; }>("length"),
    Field<[](const Clip& c) { return Timecode{c.source_in, c.rate}; }>("source_in"),
    Field<[](const Clip& c) { return Timecode{c.source_out, c.rate}; }>("source_out"),
    Field<[](const Clip& c) { return c.name; }>("name"),
    Field<[](const Clip& c) { return c.reel; }>("reel"),
    Field<[](const Clip& c) { return c.comment; }>("comment"),
    Field<[](const Clip& c) { return c.clip_name; }>("clip_name"),
    Field<[](const Clip& c) { return c.transition; }>("transition"),
    Field<[](const Clip& c) { return c.transition_frames; }>("transition_frames"),
    Field<[](const Clip& c) { return c.transition_code; }>("transition_code"),
    Field<[](const Clip& c) -> std::optional<double> {
      if (!c.speed_milli) return std::nullopt;
      return *c.speed_milli / 1000.0;
    }>("speed"),
    {"alive",
     [](PyObject* self, void*) -> PyObject* {
       try {
         return PyBool_FromLong(Of(self).Alive());
       } catch (py::error_already_set& error) {
         error.restore();
         return nullptr;
       }
     },
     nullptr, "Whether the record still plays where it was listed.", nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr}};

PyObject* Repr(PyObject* self) {
  try {
    const Clip& c = Of(self);
    const std::string text = "<tcspace.Clip " + ChannelName(c.channel) + " " +
                             Timecode{c.start, c.rate}.Text() + "-" +
                             Timecode{c.start + c.length, c.rate}.Text() + " '" + c.name + "'" +
                             (c.Alive() ? "" : " (stale)") + ">";
    return PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace");
  } catch (py::error_already_set& error) {
    error.restore();
    return nullptr;
  }
}

constexpr char kDoc[] =
    "A clip as a channel plays it: channel, record_in, record_out, length, source_in,\n"
    "source_out, name, reel, comment, clip_name, transition ('' for a cut),\n"
    "transition_frames, transition_code and speed (source frames per second where an\n"
    "M2 line gave the clip a speed of its own, negative in reverse, 0 a freeze; else\n"
    "None). Read-only. Reading any of them once the\n"
    "record has left the space (an edit cut it away, or the space was closed) raises\n"
    "StaleClipError; `alive` tells without raising.";

}  // namespace

void AddClipType(py::module_& m) {
  clip_type.tp_name = "tcspace.Clip";
  clip_type.tp_basicsize = sizeof(ClipObject);
  clip_type.tp_dealloc = &Dealloc;
  clip_type.tp_repr = &Repr;
  clip_type.tp_flags = Py_TPFLAGS_DEFAULT;
  clip_type.tp_doc = kDoc;
  clip_type.tp_getset = getters;
  if (PyType_Ready(&clip_type) < 0) throw py::error_already_set();
  Py_INCREF(&clip_type);
  m.add_object("Clip", py::handle(reinterpret_cast<PyObject*>(&clip_type)));
}

py::object NewClipObject(Clip&& clip) {
  ClipObject* object = PyObject_New(ClipObject, &clip_type);
  if (object == nullptr) throw py::error_already_set();
  new (&object->clip) Clip(std::move(clip));
  return py::reinterpret_steal<py::object>(reinterpret_cast<PyObject*>(object));
}

py::list ClipList(std::vector<Clip>&& clips) {
  py::list list(clips.size());
  for (size_t i = 0; i < clips.size(); ++i) {
    PyList_SET_ITEM(list.ptr(), static_cast<Py_ssize_t>(i),
                    NewClipObject(std::move(clips[i])).release().ptr());
  }
  return list;
}

}  // namespace tcs::py_module

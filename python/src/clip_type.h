// The Python type of a Clip, written against the interpreter's own API
// rather than as a bound class: a listing makes one object per clip, and a
// bound class costs a second allocation and an entry in the binding's
// registry of instances for each. One allocation here; the Clip lives inside
// the object.
#ifndef TCS_PYTHON_CLIP_TYPE_H_
#define TCS_PYTHON_CLIP_TYPE_H_

#include <pybind11/pybind11.h>

#include <vector>

#include "space_object.h"

namespace tcs::py_module {

// Registers tcspace.Clip in the module.
void AddClipType(pybind11::module_& m);
// A new Python Clip holding `clip`. REQUIRES: the interpreter's lock.
pybind11::object NewClipObject(Clip&& clip);
// A list of new Clips. REQUIRES: the interpreter's lock.
pybind11::list ClipList(std::vector<Clip>&& clips);

}  // namespace tcs::py_module

namespace pybind11::detail {

// Clips go to Python as the type above; Python never hands one back.
template <>
struct type_caster<tcs::py_module::Clip> {
  PYBIND11_TYPE_CASTER(tcs::py_module::Clip, const_name("Clip"));
  bool load(handle, bool) { return false; }
  static handle cast(tcs::py_module::Clip clip, return_value_policy, handle) {
    return tcs::py_module::NewClipObject(std::move(clip)).release();
  }
};

}  // namespace pybind11::detail

#endif  // TCS_PYTHON_CLIP_TYPE_H_

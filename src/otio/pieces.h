// The two operations compositions apply to the pieces of their children:
// a trim to a window of time, and a stack of one timeline over another.
// Pure functions on sorted, non-overlapping piece lists.
#ifndef TCS_OTIO_PIECES_H_
#define TCS_OTIO_PIECES_H_

#include <vector>

#include "otio/flatten.h"

namespace tcs::otio {

// The pieces within [from, from + duration), cut at both ends and moved so
// that `from` becomes 0. A piece cut at its start starts later in its
// source too, and loses its transition (which played at the start).
Flat Trim(const Flat& flat, double from, double duration);

// `upper` shown over `lower`: every frame of an upper piece is the upper
// clip's; lower pieces show only where no upper piece is.
//
//   lower   | A         | B     |
//   upper       | C |     | D       |
//   result  | A | C | A | B | D       |
Flat Overlay(const Flat& lower, const Flat& upper);

}  // namespace tcs::otio

#endif  // TCS_OTIO_PIECES_H_

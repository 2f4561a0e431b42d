#include "otio/pieces.h"

#include <algorithm>

namespace tcs::otio {
namespace {

// The part of `piece` within [from, to); empty when none is.
bool Cut(const Piece& piece, double from, double to, Piece& out) {
  const double start = std::max(piece.start, from);
  const double end = std::min(piece.end, to);
  if (!(start < end)) return false;
  out = piece;
  if (start != piece.start) {
    out.sourceIn += start - piece.start;
    out.transition = false;
    out.effectCode = 0;
    out.effectFrames = 0;
  }
  out.start = start;
  out.end = end;
  return true;
}

}  // namespace

Flat Trim(const Flat& flat, double from, double duration) {
  Flat out;
  out.duration = duration;
  const double to = from + duration;
  for (const Piece& piece : flat.pieces) {
    Piece kept;
    if (!Cut(piece, from, to, kept)) continue;
    kept.start -= from;
    kept.end -= from;
    out.pieces.push_back(kept);
  }
  return out;
}

Flat Overlay(const Flat& lower, const Flat& upper) {
  Flat out;
  out.duration = std::max(lower.duration, upper.duration);
  const std::vector<Piece>& top = upper.pieces;
  size_t u = 0;  // the first upper piece that ends after the current lower start
  for (const Piece& piece : lower.pieces) {
    while (u < top.size() && top[u].end <= piece.start) ++u;
    // The holes the upper pieces leave in [piece.start, piece.end).
    double from = piece.start;
    for (size_t i = u; i < top.size() && top[i].start < piece.end; ++i) {
      Piece part;
      if (Cut(piece, from, top[i].start, part)) out.pieces.push_back(part);
      from = std::max(from, top[i].end);
    }
    Piece rest;
    if (Cut(piece, from, piece.end, rest)) out.pieces.push_back(rest);
  }
  out.pieces.insert(out.pieces.end(), top.begin(), top.end());
  std::sort(out.pieces.begin(), out.pieces.end(),
            [](const Piece& a, const Piece& b) { return a.start < b.start; });
  return out;
}

}  // namespace tcs::otio

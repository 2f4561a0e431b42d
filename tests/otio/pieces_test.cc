// Overlay and Trim against a frame-by-frame model: for random piece lists on
// whole frames, every frame of the result shows the clip (and source frame)
// the model says: the upper list's where it has a piece, else the lower's;
// within a trim window, shifted. A transition stays only on a piece whose
// start was not cut.
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <vector>

#include "otio/pieces.h"
#include "support/random_channel.h"

namespace {

using tcs::otio::Flat;
using tcs::otio::Piece;
using tcs_test::Dice;

struct Frame {
  uint32_t texts;
  double source;
  friend bool operator==(const Frame&, const Frame&) = default;
};
using Model = std::map<int, Frame>;

Flat RandomFlat(Dice& dice, uint32_t firstText) {
  Flat flat;
  int at = dice(0, 5);
  const uint32_t pieces = dice(0, 8);
  for (uint32_t i = 0; i < pieces; ++i) {
    Piece p;
    p.start = at;
    p.end = at + dice(1, 9);
    p.sourceIn = dice(0, 1000);
    p.texts = firstText + i;
    p.transition = dice(0, 1) == 1;
    flat.pieces.push_back(p);
    at = static_cast<int>(p.end) + dice(0, 4);
  }
  flat.duration = at;
  return flat;
}

Model Frames(const Flat& flat) {
  Model model;
  for (const Piece& p : flat.pieces) {
    for (int f = static_cast<int>(p.start); f < p.end; ++f) {
      EXPECT_EQ(model.count(f), 0u) << "pieces overlap at " << f;
      model[f] = {p.texts, p.sourceIn + (f - p.start)};
    }
  }
  return model;
}

void CheckShape(const Flat& flat) {
  for (size_t i = 0; i < flat.pieces.size(); ++i) {
    EXPECT_LT(flat.pieces[i].start, flat.pieces[i].end);
    if (i > 0) {
      EXPECT_LE(flat.pieces[i - 1].end, flat.pieces[i].start);
    }
  }
}

TEST(OtioPieces, OverlayAndTrimShowWhatTheFrameModelShows) {
  tcs_test::ForEachSeed("TCS_OTIO_PIECES", 1, 500, [](uint64_t seed) {
    Dice dice(seed);
    const Flat lower = RandomFlat(dice, 0);
    const Flat upper = RandomFlat(dice, 100);
    const Flat shown = tcs::otio::Overlay(lower, upper);
    CheckShape(shown);
    Model expected = Frames(lower);
    for (const auto& [frame, what] : Frames(upper)) expected[frame] = what;
    EXPECT_EQ(Frames(shown), expected) << "seed " << seed;
    EXPECT_EQ(shown.duration, std::max(lower.duration, upper.duration));

    const int from = dice(0, 30);
    const int length = dice(0, 30);
    const Flat window = tcs::otio::Trim(shown, from, length);
    CheckShape(window);
    Model cut;
    for (const auto& [frame, what] : expected) {
      if (frame >= from && frame < from + length) cut[frame - from] = what;
    }
    EXPECT_EQ(Frames(window), cut) << "seed " << seed;
    EXPECT_EQ(window.duration, length);

    // A transition survives only where its piece still starts as it did.
    for (const Flat* flat : {&shown, &window}) {
      const double shift = flat == &window ? from : 0;
      for (const Piece& p : flat->pieces) {
        if (!p.transition) continue;
        const Flat& origin = p.texts >= 100 ? upper : lower;
        const Piece& made = origin.pieces[p.texts % 100];
        EXPECT_TRUE(made.transition);
        EXPECT_EQ(p.start + shift, made.start) << "seed " << seed;
      }
    }
  });
}

}  // namespace

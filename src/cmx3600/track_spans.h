// TrackSpans: what plays where on one track while a list's events are laid
// over each other in file order, as a space lays them (a later event
// overwrites an earlier one), so that the reader can name the earlier events
// a later one covers. Owns its spans. Events in record order, as most lists
// are, cost one append each; the first event out of order moves the spans
// into a balanced tree.
//
// Thread safety: none; one reader's.
#ifndef TCS_CMX3600_TRACK_SPANS_H_
#define TCS_CMX3600_TRACK_SPANS_H_

#include <cstdint>
#include <map>
#include <vector>

namespace tcs::cmx3600 {

class TrackSpans {
 public:
  // Lays [in, out) of the event on `line` over what is there. Calls
  // covered(earlier_line) for each span it covers part of, in record order:
  // an earlier event that a later one split in two may be named twice.
  // REQUIRES: in < out.
  template <typename Covered>
  void Lay(uint32_t in, uint32_t out, uint32_t line, Covered covered) {
    if (tree_.empty() && (ordered_.empty() || ordered_.back().out <= in)) {
      ordered_.push_back({in, out, line});
      return;
    }
    LayInTree(in, out, line, [](void* c, uint32_t l) { (*static_cast<Covered*>(c))(l); },
              &covered);
  }

 private:
  struct Span {
    uint32_t in, out, line;
  };
  void LayInTree(uint32_t in, uint32_t out, uint32_t line, void (*covered)(void*, uint32_t),
                 void* context);

  std::vector<Span> ordered_;  // while every span came after the last
  // Once one did not: record in -> (record out, line), spans disjoint.
  std::map<uint32_t, std::pair<uint32_t, uint32_t>> tree_;
};

}  // namespace tcs::cmx3600

#endif  // TCS_CMX3600_TRACK_SPANS_H_

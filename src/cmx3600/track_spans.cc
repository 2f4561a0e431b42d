#include "cmx3600/track_spans.h"

namespace tcs::cmx3600 {

// Overwrite, drawn for one earlier span E and the new span N:
//   |   E   |        ->  |E|  N  |E|      (N inside E: E keeps both ends)
//      | N |
void TrackSpans::LayInTree(uint32_t in, uint32_t out, uint32_t line,
                           void (*covered)(void*, uint32_t), void* context) {
  if (!ordered_.empty()) {
    for (const Span& span : ordered_) {
      tree_.emplace_hint(tree_.end(), span.in, std::make_pair(span.out, span.line));
    }
    ordered_.clear();
    ordered_.shrink_to_fit();
  }
  auto it = tree_.upper_bound(in);
  if (it != tree_.begin()) --it;
  while (it != tree_.end() && it->first < out) {
    const uint32_t start = it->first, end = it->second.first, earlier = it->second.second;
    if (end <= in) {
      ++it;
      continue;
    }
    covered(context, earlier);
    it = tree_.erase(it);
    if (start < in) tree_.emplace(start, std::make_pair(in, earlier));
    if (end > out) tree_.emplace(out, std::make_pair(end, earlier));
  }
  tree_.emplace(in, std::make_pair(out, line));
}

}  // namespace tcs::cmx3600

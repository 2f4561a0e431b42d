#include "otio/json_arena.h"

#include <algorithm>
#include <cstdint>

namespace tcs::otio {

thread_local JsonArena* JsonArena::current_ = nullptr;

void* JsonArena::Allocate(size_t bytes, size_t align) {
  const size_t pad = (align - reinterpret_cast<uintptr_t>(next_) % align) % align;
  if (next_ == nullptr || pad + bytes > left_) {
    // Blocks double up to kLargestBlock: a few dozen hold any document.
    blockSize_ = std::max(std::min(blockSize_ * 2, kLargestBlock), bytes + align);
    blocks_.emplace_back(new std::byte[blockSize_]);
    next_ = blocks_.back().get();
    left_ = blockSize_;
    return Allocate(bytes, align);
  }
  void* out = next_ + pad;
  next_ += pad + bytes;
  left_ -= pad + bytes;
  return out;
}

}  // namespace tcs::otio

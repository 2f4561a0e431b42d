#include "lookup/node_arena.h"

#include <cassert>

namespace tcs {

NodeArena::~NodeArena() {
  // The container that drew on the arena is gone; whatever it did not give
  // back is released with the blocks.
  ReleaseBlocks();
}

void* NodeArena::Allocate(size_t size, size_t align) {
  if (object_size_ == 0 && align <= alignof(std::max_align_t)) {
    object_size_ = size;
    constexpr size_t kAlign = alignof(std::max_align_t);
    const size_t at_least = size < sizeof(FreeSlot) ? sizeof(FreeSlot) : size;
    slot_size_ = (at_least + kAlign - 1) / kAlign * kAlign;
  }
  ++changes_;
  if (!FromSlots(size, align)) return ::operator new(size, std::align_val_t(align));
  void* slot;
  if (free_ != nullptr) {
    slot = free_;
    free_ = free_->next;
  } else {
    if (bump_ == bump_end_) AddBlock();
    slot = bump_;
    bump_ += slot_size_;
  }
  ++live_;
  return slot;
}

void NodeArena::Deallocate(void* p, size_t size, size_t align) {
  ++changes_;
  if (!FromSlots(size, align)) {
    ::operator delete(p, std::align_val_t(align));
    return;
  }
  assert(live_ > 0);
  if (--live_ == 0) {
    ReleaseBlocks();
    return;
  }
  auto* slot = static_cast<FreeSlot*>(p);
  slot->next = free_;
  free_ = slot;
}

// The block header takes one slot, so every slot keeps the alignment of
// the block itself.
void NodeArena::AddBlock() {
  const size_t bytes = (next_block_slots_ + 1) * slot_size_;
  char* memory = static_cast<char*>(::operator new(bytes));
  auto* block = reinterpret_cast<Block*>(memory);
  block->next = blocks_;
  blocks_ = block;
  bump_ = memory + slot_size_;
  bump_end_ = memory + bytes;
  reserved_ += bytes;
  if (next_block_slots_ < kLastBlockSlots) next_block_slots_ *= 2;
}

void NodeArena::ReleaseBlocks() {
  while (blocks_ != nullptr) {
    Block* next = blocks_->next;
    ::operator delete(blocks_);
    blocks_ = next;
  }
  free_ = nullptr;
  bump_ = bump_end_ = nullptr;
  next_block_slots_ = kFirstBlockSlots;
  reserved_ = 0;
}

}  // namespace tcs

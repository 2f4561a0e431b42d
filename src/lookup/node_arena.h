// NodeArena: the memory of one tree's nodes, carved in equal slots from
// blocks that grow from 16 to 1024 slots. Nodes of a channel that was built
// in order sit next to each other, so a walk in start order reads memory in
// order and a descent stays within few pages; the 4 KB clip records that the
// host allocates in between never separate them. A freed slot is reused by
// the next node; all blocks go back to the heap when the last node is freed.
//
// ArenaAllocator<T> is the allocator a node-based container uses to draw on
// an arena. Only single objects of the first size asked for come from the
// slots; anything else goes to the global heap, so the allocator stays
// correct whatever a container rebinds it to.
//
// Thread safety: none; the arena belongs to one container and is used under
// whatever serialises that container. It must outlive the container.
#ifndef TCS_LOOKUP_NODE_ARENA_H_
#define TCS_LOOKUP_NODE_ARENA_H_

#include <cstddef>
#include <cstdint>
#include <new>

namespace tcs {

class NodeArena {
 public:
  NodeArena() = default;
  NodeArena(const NodeArena&) = delete;
  NodeArena& operator=(const NodeArena&) = delete;
  ~NodeArena();

  void* Allocate(size_t size, size_t align);
  void Deallocate(void* p, size_t size, size_t align);

  size_t live() const { return live_; }
  // Counts every Allocate and Deallocate: the container's nodes are the
  // same set of objects for as long as it stands still.
  uint64_t changes() const { return changes_; }
  // Bytes held from the heap, headers included: for memory accounting.
  size_t reserved() const { return reserved_; }

 private:
  struct FreeSlot {
    FreeSlot* next;
  };
  struct Block {
    Block* next;
  };
  static constexpr size_t kFirstBlockSlots = 16;
  static constexpr size_t kLastBlockSlots = 1024;

  bool FromSlots(size_t size, size_t align) const {
    return size == object_size_ && align <= alignof(std::max_align_t);
  }
  void AddBlock();
  void ReleaseBlocks();

  size_t object_size_ = 0;  // the first single size asked for; 0 until then
  size_t slot_size_ = 0;
  size_t next_block_slots_ = kFirstBlockSlots;
  FreeSlot* free_ = nullptr;
  char* bump_ = nullptr;      // the unused tail of the newest block
  char* bump_end_ = nullptr;
  Block* blocks_ = nullptr;
  size_t live_ = 0;
  size_t reserved_ = 0;
  uint64_t changes_ = 0;
};

template <class T>
class ArenaAllocator {
 public:
  using value_type = T;

  explicit ArenaAllocator(NodeArena* arena) : arena_(arena) {}
  template <class U>
  ArenaAllocator(const ArenaAllocator<U>& other) : arena_(other.arena()) {}  // NOLINT: rebind

  T* allocate(size_t n) {
    if (n == 1) return static_cast<T*>(arena_->Allocate(sizeof(T), alignof(T)));
    return static_cast<T*>(::operator new(n * sizeof(T), std::align_val_t(alignof(T))));
  }
  void deallocate(T* p, size_t n) {
    if (n == 1) {
      arena_->Deallocate(p, sizeof(T), alignof(T));
    } else {
      ::operator delete(p, std::align_val_t(alignof(T)));
    }
  }

  NodeArena* arena() const { return arena_; }
  template <class U>
  bool operator==(const ArenaAllocator<U>& other) const {
    return arena_ == other.arena();
  }

 private:
  NodeArena* arena_;
};

}  // namespace tcs

#endif  // TCS_LOOKUP_NODE_ARENA_H_

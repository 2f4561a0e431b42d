// JsonArena: the memory of one parsed document. A document of 100,000 clips
// is millions of small maps and vectors; taken from a few large blocks and
// given back all at once, they cost a fraction of what the heap charges to
// allocate and free them one by one.
//
// While an arena is in scope on a thread (JsonArena::Scope), every
// ArenaAllocator on that thread takes memory from it and gives none back;
// out of scope, ArenaAllocator is the heap. REQUIRES: a value made in scope
// is destroyed in the same scope, and none made out of scope is destroyed
// in it (the reader keeps its document and every copy inside one scope).
// Single-threaded per arena.
#ifndef TCS_OTIO_JSON_ARENA_H_
#define TCS_OTIO_JSON_ARENA_H_

#include <cstddef>
#include <memory>
#include <new>
#include <vector>

namespace tcs::otio {

class JsonArena {
 public:
  JsonArena() = default;
  JsonArena(const JsonArena&) = delete;
  JsonArena& operator=(const JsonArena&) = delete;

  void* Allocate(size_t bytes, size_t align);

  // Makes `arena` the thread's arena until the scope ends.
  class Scope {
   public:
    explicit Scope(JsonArena& arena) : previous_(current_) { current_ = &arena; }
    ~Scope() { current_ = previous_; }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    JsonArena* previous_;
  };
  static JsonArena* current() { return current_; }

 private:
  static constexpr size_t kFirstBlock = 64 * 1024;
  static constexpr size_t kLargestBlock = 16 * 1024 * 1024;
  static thread_local JsonArena* current_;
  std::vector<std::unique_ptr<std::byte[]>> blocks_;
  std::byte* next_ = nullptr;
  size_t left_ = 0;
  size_t blockSize_ = kFirstBlock;
};

template <class T>
struct ArenaAllocator {
  using value_type = T;
  ArenaAllocator() = default;
  template <class U>
  ArenaAllocator(const ArenaAllocator<U>&) {}

  T* allocate(size_t n) {
    if (JsonArena* arena = JsonArena::current()) {
      return static_cast<T*>(arena->Allocate(n * sizeof(T), alignof(T)));
    }
    return std::allocator<T>().allocate(n);
  }
  void deallocate(T* p, size_t n) {
    if (JsonArena::current() == nullptr) std::allocator<T>().deallocate(p, n);
  }
  template <class U>
  bool operator==(const ArenaAllocator<U>&) const { return true; }
};

}  // namespace tcs::otio

#endif  // TCS_OTIO_JSON_ARENA_H_

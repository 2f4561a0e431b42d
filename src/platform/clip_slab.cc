#include "platform/clip_slab.h"

#include <sys/mman.h>

#include <cstdint>
#include <mutex>
#include <new>

#include "platform/clip.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TCS_CLIP_SLAB_ASAN 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define TCS_CLIP_SLAB_ASAN 1
#endif
#if !defined(TCS_CLIP_SLAB_ASAN) && __has_include(<valgrind/valgrind.h>)
#include <valgrind/valgrind.h>
#define TCS_CLIP_SLAB_VALGRIND 1
#endif

namespace tcs::platform {
namespace {

constexpr size_t kSlabBytes = size_t{1} << 20;
constexpr size_t kRecordSize = sizeof(CClip);
constexpr size_t kSlotAlign = alignof(std::max_align_t);
constexpr size_t kSlotSize = (kRecordSize + kSlotAlign - 1) / kSlotAlign * kSlotAlign;

struct FreeSlot {
  FreeSlot* next;
};

// The head of a slab, at its first byte; the slots follow. A slab is
// aligned to its size, so a record's slab is its address rounded down.
struct Slab {
  Slab* prev;  // in the list of slabs with a free slot
  Slab* next;
  FreeSlot* free;  // slots given back
  char* bump;      // the slots never given out
  size_t live;
  bool open;  // on the list
};

constexpr size_t kFirstSlot = (sizeof(Slab) + 63) / 64 * 64;
static_assert(kFirstSlot + kSlotSize <= kSlabBytes);
static_assert(kSlotSize >= sizeof(FreeSlot));

char* SlotsEnd(Slab* slab) { return reinterpret_cast<char*>(slab) + kSlabBytes; }

void Reset(Slab* slab) {
  *slab = Slab{};
  slab->bump = reinterpret_cast<char*>(slab) + kFirstSlot;
}

// A slab aligned to kSlabBytes: twice the size mapped, the ends given back.
// Its pages are filled in one call where the kernel can (a fault for each
// page costs more than the filling). Null when the kernel has no memory.
Slab* MapSlab() {
  void* mapped = mmap(nullptr, 2 * kSlabBytes, PROT_READ | PROT_WRITE,
                      MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) return nullptr;
  const auto base = reinterpret_cast<uintptr_t>(mapped);
  const uintptr_t aligned = (base + kSlabBytes - 1) & ~(kSlabBytes - 1);
  if (aligned > base) munmap(mapped, aligned - base);
  const uintptr_t tail = aligned + kSlabBytes;
  if (base + 2 * kSlabBytes > tail) munmap(reinterpret_cast<void*>(tail), base + 2 * kSlabBytes - tail);
  auto* slab = reinterpret_cast<Slab*>(aligned);
#ifdef MADV_POPULATE_WRITE
  madvise(slab, kSlabBytes, MADV_POPULATE_WRITE);
#endif
  Reset(slab);
  return slab;
}

// The slabs of the process. Constant-initialised and trivially destroyed,
// so records freed while the process ends still find it.
struct Slabs {
  std::mutex mutex;
  Slab* open = nullptr;   // slabs with a free slot, the last opened first
  Slab* empty = nullptr;  // slabs whose records are all gone
  size_t count = 0;

  void Open(Slab* slab) {
    slab->prev = nullptr;
    slab->next = open;
    if (open != nullptr) open->prev = slab;
    open = slab;
    slab->open = true;
  }
  void Close(Slab* slab) {
    if (slab->prev != nullptr) slab->prev->next = slab->next;
    if (slab->next != nullptr) slab->next->prev = slab->prev;
    if (open == slab) open = slab->next;
    slab->open = false;
  }

  void* Take() {
    std::lock_guard<std::mutex> guard(mutex);
    if (open == nullptr) {
      Slab* slab = empty;
      if (slab != nullptr) {
        empty = slab->next;
      } else {
        slab = MapSlab();
        if (slab == nullptr) throw std::bad_alloc();
        ++count;
      }
      Open(slab);
    }
    Slab* slab = open;
    void* slot;
    if (slab->free != nullptr) {
      slot = slab->free;
      slab->free = slab->free->next;
    } else {
      slot = slab->bump;
      slab->bump += kSlotSize;
    }
    ++slab->live;
    if (slab->free == nullptr && slab->bump + kSlotSize > SlotsEnd(slab)) Close(slab);
    return slot;
  }

  void Give(void* record) {
    std::lock_guard<std::mutex> guard(mutex);
    auto* slab = reinterpret_cast<Slab*>(reinterpret_cast<uintptr_t>(record) & ~(kSlabBytes - 1));
    slab->free = new (record) FreeSlot{slab->free};
    if (--slab->live != 0) {
      if (!slab->open) Open(slab);
      return;
    }
    if (slab->open) Close(slab);
    Reset(slab);
    slab->next = empty;
    empty = slab;
  }
};

constinit Slabs slabs;

bool FromSlabs(size_t size) {
#if defined(TCS_CLIP_SLAB_ASAN)
  (void)size;
  return false;
#elif defined(TCS_CLIP_SLAB_VALGRIND)
  static const bool on_valgrind = RUNNING_ON_VALGRIND != 0;
  return size == kRecordSize && !on_valgrind;
#else
  return size == kRecordSize;
#endif
}

}  // namespace

}  // namespace tcs::platform

void* CClip::operator new(size_t size) {
  if (!tcs::platform::FromSlabs(size)) return ::operator new(size);
  return tcs::platform::slabs.Take();
}

void CClip::operator delete(void* record, size_t size) noexcept {
  if (record == nullptr) return;
  if (!tcs::platform::FromSlabs(size)) {
    ::operator delete(record);
    return;
  }
  tcs::platform::slabs.Give(record);
}

size_t clsTrimRecordSlabs() {
  using tcs::platform::slabs;
  std::lock_guard<std::mutex> guard(slabs.mutex);
  size_t released = 0;
  while (slabs.empty != nullptr) {
    tcs::platform::Slab* slab = slabs.empty;
    slabs.empty = slab->next;
    munmap(slab, tcs::platform::kSlabBytes);
    ++released;
  }
  slabs.count -= released;
  return released;
}

size_t clsRecordSlabs() {
  std::lock_guard<std::mutex> guard(tcs::platform::slabs.mutex);
  return tcs::platform::slabs.count;
}

#include "lookup/effect_text_pool.h"

#include <cassert>
#include <cstring>

namespace tcs {
namespace {

constexpr size_t kSize = CTCRange::kEffectTextSize;

}  // namespace

const PooledText* EffectTextPool::Acquire(const char* buffer) {
  if (buffer[0] == '\0' && empty_ != nullptr) {
    ++empty_->refs;
    return empty_;
  }
  const uint32_t used = uint32_t(strnlen(buffer, kSize));
  const auto found = texts_.find(std::string_view(buffer, used));
  if (found != texts_.end()) {
    ++found->second->refs;
    return found->second.get();
  }
  auto text = std::make_unique<PooledText>();  // zeroed past the text
  std::memcpy(text->bytes, buffer, used);
  text->refs = 1;
  text->used = used;
  PooledText* pooled = text.get();
  texts_.emplace(std::string_view(pooled->bytes, used), std::move(text));
  if (used == 0) empty_ = pooled;
  return pooled;
}

void EffectTextPool::Release(const PooledText* text) {
  assert(text != nullptr && text->refs > 0);
  if (--const_cast<PooledText*>(text)->refs != 0) return;
  if (text == empty_) empty_ = nullptr;
  texts_.erase(std::string_view(text->bytes, text->used));
}

}  // namespace tcs

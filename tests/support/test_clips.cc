#include "support/test_clips.h"

#include <atomic>

namespace tcs_test {
namespace {

std::atomic<unsigned int> fake_now{0};

unsigned int FakeNow() { return fake_now.load(); }

}  // namespace

std::unique_ptr<CClip> MakeClip(uint32_t start, uint32_t length, uint32_t source_in,
                                const char* name) {
  auto clip = std::make_unique<CClip>();
  clip->ClearClip();
  clip->start = start;
  clip->length = length;
  clip->sourceIn = source_in;
  clip->sourceOut = source_in + length;
  clip->SetName(name);
  return clip;
}

FakeClock::FakeClock(unsigned int start_ms) {
  fake_now = start_ms;
  vsyncSetClock(&FakeNow);
}

FakeClock::~FakeClock() { vsyncSetClock(nullptr); }

void FakeClock::Set(unsigned int ms) { fake_now = ms; }

void NotificationLog::Install(CTimeCodeSpace* space) {
  tcsSetAddCallback(space, this, &NotificationLog::OnAdd);
  tcsSetDelCallback(space, this, &NotificationLog::OnDel);
}

unsigned int NotificationLog::OnAdd(void* context, CTimeCodeSpace*, CClip* clip) {
  auto* self = static_cast<NotificationLog*>(context);
  self->added.push_back(clip);
  return self->refuse ? 1 : 0;
}

unsigned int NotificationLog::OnDel(void* context, CTimeCodeSpace*, CClip* clip) {
  static_cast<NotificationLog*>(context)->deleted.push_back(clip);
  return 0;
}

std::vector<CClip*> ListedClips(const CTimeCodeSpace& space) {
  std::vector<CClip*> clips;
  for (CClip* c = space.firstClip; c != nullptr; c = c->next) clips.push_back(c);
  return clips;
}

}  // namespace tcs_test

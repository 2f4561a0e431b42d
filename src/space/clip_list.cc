// The clip list: every record enters through __AddClipToList and leaves
// through __DelClipFromList, with the host told on both occasions.
#include <memory>

#include "platform/errlog.h"
#include "space/space.h"
#include "space/space_lock.h"

CClip* CTimeCodeSpace::__AddClipToList(uint32_t, CClip* clip, uint32_t channel) {
  tcs::SpaceLock guard(*this);
  // Stamped even when the host refuses: the attempt is a change to report.
  Stamp();
  if (AddClipCallback(clip) != 0) return nullptr;
  auto copy = std::make_unique<CClip>();
  copy->ClearClip();
  copy->SetClip(clip);
  copy->owner = this;
  copy->channel = channel;
  copy->prev = lastClip;
  copy->next = nullptr;
  CClip* listed = copy.release();
  if (lastClip != nullptr) {
    lastClip->next = listed;
  } else {
    firstClip = listed;
  }
  lastClip = listed;
  return listed;
}

void CTimeCodeSpace::__DelClipFromList(CClip* clip) {
  if (clip == nullptr || clip->owner != this) return;
  Stamp();
  tcs::SpaceLock guard(*this);
  if (clip->next != nullptr) clip->next->prev = clip->prev;
  if (clip->prev != nullptr) clip->prev->next = clip->next;
  if (firstClip == clip) firstClip = clip->next;
  if (lastClip == clip) lastClip = clip->prev;
  clip->owner = nullptr;
  clip->next = nullptr;
  clip->prev = nullptr;
  // The last search's result must not outlive its record: the current clip
  // is gone with it, and tcsGetCurClip/tcsSetCurClip then say so.
  if (currentPlayClip.clip == clip) {
    currentPlayClip = CPlayClip();
    clipActive = 0;
  }
  // Deleted whatever the host does: a throwing notification is caught inside.
  std::unique_ptr<CClip> doomed(clip);
  DelClipCallback(clip);
}

namespace {

// The host's answer; a throwing host function is logged and answers 0.
uint32_t Notify(TcsClipCallback callback, void* context, CTimeCodeSpace* space, CClip* clip,
                const char* message) {
  if (callback == nullptr) return 0;
  try {
    return callback(context, space, clip);
  } catch (...) {
    ErrFmtOut(0x80000000u, 0, 0, "WARNING(tcSpaceXMap): %s\n\r", message);
    return 0;
  }
}

}  // namespace

uint32_t CTimeCodeSpace::AddClipCallback(CClip* clip) {
  return Notify(addClipCallback, addClipContext, this, clip, "EXP on TCS Add Clip Callback ");
}

uint32_t CTimeCodeSpace::DelClipCallback(CClip* clip) {
  return Notify(delClipCallback, delClipContext, this, clip, "EXP on TCS Del Clip Callback ");
}

uint32_t CTimeCodeSpace::ChangeClipCallback(CClip* clip) {
  return Notify(changeClipCallback, changeClipContext, this, clip,
                "EXP on TCS Change Clip Callback ");
}

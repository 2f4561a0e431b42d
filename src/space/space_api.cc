// The space's entry points: each resolves its handle and calls one function.
// A handle that is null or not open (never opened, or closed) gets the
// entry point's handle status instead of a crash.
#include "space/space_api.h"

#include <cstring>
#include <optional>
#include <string>

#include "platform/errlog.h"
#include "record/channel_set.h"
#include "space/clip_listing.h"
#include "space/current_clip.h"
#include "space/listing_api.h"
#include "space/registry.h"
#include "space/space.h"
#include "space/space_lock.h"
#include "space/space_query.h"
#include "space/status_log.h"
#include "tcs_status.h"

extern "C" {

CTimeCodeSpace* tcsOpen(CTimeCodeSpace* handle, void*, const char* path) {
  return tcs::OpenSpace(handle, path);
}

unsigned int tcsClose(CTimeCodeSpace* handle) { return tcs::CloseSpace(handle); }

}  // extern "C"

namespace {

// The setters also refuse a handle that is not open: storing into a closed
// space would write freed memory. Each logs with its own format.
unsigned int SetCallback(CTimeCodeSpace* space, const char* format,
                         TcsClipCallback CTimeCodeSpace::*function_field,
                         void* CTimeCodeSpace::*context_field, void* context,
                         TcsClipCallback callback) {
  if (!tcs::IsOpenSpace(space)) {
    ErrOut(format, static_cast<unsigned long>(TCS_ERR_SETTER_NULL_SPACE));
    return TCS_ERR_SETTER_NULL_SPACE;
  }
  space->*context_field = context;
  space->*function_field = callback;
  return TCS_OK;
}

}  // namespace

extern "C" {

unsigned int tcsSetAddCallback(CTimeCodeSpace* space, void* context, TcsClipCallback callback) {
  return SetCallback(space, "clsSetAddCallback(0x%lX)", &CTimeCodeSpace::addClipCallback,
                     &CTimeCodeSpace::addClipContext, context, callback);
}

unsigned int tcsSetDelCallback(CTimeCodeSpace* space, void* context, TcsClipCallback callback) {
  return SetCallback(space, "clsSetDelCallback(0x%lX)", &CTimeCodeSpace::delClipCallback,
                     &CTimeCodeSpace::delClipContext, context, callback);
}

// No operation issues a change notification, so nothing is stored.
unsigned int tcsSetChangeCallback(CTimeCodeSpace*, void*, TcsClipCallback) { return TCS_OK; }

unsigned int tcsAddClip(CTimeCodeSpace* space, CClip* clip, unsigned int channel) {
  if (!tcs::IsOpenSpace(space)) return tcs::LogStatus(TCS_ERR_BAD_HANDLE);
  if (clip == nullptr) return tcs::LogStatus(TCS_ERR_BAD_ARGUMENTS);
  tcs::CorrectAddedClip(*clip);
  if (space->AddClip(0, clip, channel) == nullptr) return tcs::LogStatus(TCS_ERR_ADD_REFUSED);
  return TCS_OK;
}

unsigned int tcsSetCurClip(CTimeCodeSpace* space, CClip* clip) {
  if (!tcs::IsOpenSpace(space)) return tcs::LogStatus(TCS_ERR_NULL_SPACE);
  if (clip == nullptr) return tcs::LogStatus(TCS_ERR_BAD_ARGUMENTS);
  return tcs::SetCurrentClip(*space, *clip);
}

unsigned int tcsGetCurClip(CTimeCodeSpace* space, CClip* clip) {
  if (!tcs::IsOpenSpace(space)) return tcs::LogStatus(TCS_ERR_NULL_SPACE);
  if (clip == nullptr) return tcs::LogStatus(TCS_ERR_BAD_ARGUMENTS);
  return tcs::GetCurrentClip(*space, *clip);
}

unsigned int tcsClipActive(CTimeCodeSpace* space) {
  if (!tcs::IsOpenSpace(space)) return 0;
  tcs::SpaceLock guard(*space);
  return space->clipActive;
}

// clipOut may be null when the host wants only the position.
unsigned int tcsTranslate(CTimeCodeSpace* space, unsigned int mode, unsigned int timecode,
                          CClip** clipOut, unsigned int channel) {
  if (!tcs::IsOpenSpace(space)) return tcs::LogStatus(TCS_ERR_BAD_HANDLE);
  CClip* found = nullptr;
  const uint32_t result = tcs::TranslateOrFind(*space, mode, timecode, channel, found);
  if (clipOut != nullptr) *clipOut = found;
  return result;
}

}  // extern "C"

extern "C" {

unsigned int tcsGetChannels(CTimeCodeSpace* space, unsigned int* videoMask,
                            unsigned int* audioMask, unsigned int* auxMask) {
  if (!tcs::IsOpenSpace(space)) return tcs::LogStatus(TCS_ERR_BAD_HANDLE);
  if (videoMask == nullptr || audioMask == nullptr || auxMask == nullptr) {
    return tcs::LogStatus(TCS_ERR_BAD_ARGUMENTS);
  }
  const tcs::ChannelSet set = tcs::ChannelsWithClips(*space);
  *videoMask = set.video();
  *audioMask = set.audio();
  *auxMask = set.aux();
  return TCS_OK;
}

unsigned int tcsGetClipCount(CTimeCodeSpace* space, unsigned int channel, unsigned int* count) {
  if (!tcs::IsOpenSpace(space)) return tcs::LogStatus(TCS_ERR_BAD_HANDLE);
  if (channel >= CTimeCodeSpace::kChannels || count == nullptr) {
    return tcs::LogStatus(TCS_ERR_BAD_ARGUMENTS);
  }
  *count = tcs::ClipCount(*space, channel);
  return TCS_OK;
}

unsigned int tcsGetClips(CTimeCodeSpace* space, unsigned int channel, unsigned int from,
                         unsigned int to, TCSCLIP* clips, unsigned int capacity,
                         unsigned int* count, unsigned int* next) {
  if (!tcs::IsOpenSpace(space)) return tcs::LogStatus(TCS_ERR_BAD_HANDLE);
  if (channel >= CTimeCodeSpace::kChannels || count == nullptr || next == nullptr ||
      (clips == nullptr && capacity != 0)) {
    return tcs::LogStatus(TCS_ERR_BAD_ARGUMENTS);
  }
  if (to < from) return tcs::LogStatus(TCS_ERR_BAD_RANGE);
  const tcs::ListedClips listed = tcs::ListClips(*space, channel, from, to, clips, capacity);
  *count = listed.count;
  *next = listed.next;
  return TCS_OK;
}

unsigned int tcsDescribeClip(CClip* clip, TCSCLIP* row) {
  if (clip == nullptr || row == nullptr) return tcs::LogStatus(TCS_ERR_BAD_ARGUMENTS);
  tcs::DescribeRecord(*clip, *row);
  return TCS_OK;
}

unsigned int tcsChannelName(unsigned int channel, char* text, unsigned int size) {
  const std::string name = tcs::ChannelSet::Name(channel);
  if (name.empty() || text == nullptr || size < 4) return tcs::LogStatus(TCS_ERR_BAD_ARGUMENTS);
  std::memcpy(text, name.c_str(), name.size() + 1);
  return TCS_OK;
}

unsigned int tcsParseChannels(const char* text, unsigned int* videoMask, unsigned int* audioMask,
                              unsigned int* auxMask) {
  if (text == nullptr || videoMask == nullptr || audioMask == nullptr || auxMask == nullptr) {
    return tcs::LogStatus(TCS_ERR_BAD_ARGUMENTS);
  }
  const std::optional<tcs::ChannelSet> set = tcs::ChannelSet::Parse(text);
  if (!set) return tcs::LogStatus(TCS_ERR_BAD_ARGUMENTS);
  *videoMask = set->video();
  *audioMask = set->audio();
  *auxMask = set->aux();
  return TCS_OK;
}

}  // extern "C"

// The space's edits: pick the channels, take the lock, hand the work to each
// channel's lookup, keep the clip list in step and stamp.
#include "record/channel_set.h"
#include "record/timecode.h"
#include "space/space.h"
#include "space/space_lock.h"
#include "space/status_log.h"
#include "tcs_status.h"

CClip* CTimeCodeSpace::AddClip(uint32_t x, CClip* record, uint32_t channel) {
  channel = ChannelOrZero(channel);
  Stamp();
  tcs::SpaceLock guard(*this);
  CClip* copy = __AddClipToList(x, record, channel);
  if (copy == nullptr) return nullptr;
  // Should this allocation fail, the copy stays listed without a play clip;
  // RebuildLookup gives it one.
  if (lookups[channel] == nullptr) lookups[channel] = new CTCLookup(this);
  lookups[channel]->AddClip(copy, 0);
  return copy;
}

uint32_t CTimeCodeSpace::DeleteClip(CClip* record, uint32_t flags) {
  if (record == nullptr) return TCS_OK;
  Stamp();
  tcs::SpaceLock guard(*this);
  // Only the caller's insert and blank bits pass, never ripple: with neither
  // the record's range is blanked on its channel, taking the record with it;
  // with either the operation field is a combination, which changes nothing.
  if (CTCLookup* lookup = LookupOf(record->channel)) {
    const uint32_t start = record->start;
    lookup->ModifyRange(start, start + record->length,
                        (flags & (TCS_EDIT_INSERT | TCS_EDIT_BLANK)) | TCS_EDIT_DELETE);
  }
  return TCS_OK;
}

CPlayClip* CTimeCodeSpace::RemoveClip(CPlayClip& pc) {
  tcs::SpaceLock guard(*this);  // also guards the lookup's creation
  CTCLookup* lookup = LookupOf(pc.clip != nullptr ? pc.clip->channel : 0);
  if (lookup == nullptr) return nullptr;
  Stamp();
  return lookup->RemoveClip(pc);
}

uint32_t CTimeCodeSpace::InsertFile(uint32_t flags, CClip* record) {
  // A file goes in only while the host listens to additions.
  if (addClipCallback == nullptr) return tcs::LogStatus(TCS_ERR_NO_ADD_CALLBACK);
  Stamp();
  tcs::SpaceLock guard(*this);
  const uint32_t start = record->start;
  // A refused range (logged by ModifyRange) still lets the record in.
  ModifyRange(start, start + record->length, record->videoMask, record->audioMask, flags);
  // A refused addition on one channel does not stop the others.
  tcs::ChannelSet(record->videoMask, record->audioMask)
      .ForEach([&](uint32_t channel) { AddClip(flags, record, channel); });
  return TCS_OK;
}

uint32_t CTimeCodeSpace::TrimRange(uint32_t at, uint32_t in, uint32_t out, uint32_t videoMask,
                                   uint32_t audioMask, int shift) {
  Stamp();
  tcs::SpaceLock guard(*this);
  tcs::ChannelSet(videoMask, audioMask).ForEach([&](uint32_t channel) {
    if (CTCLookup* lookup = lookups[channel]) lookup->TrimRange(at, in, out, shift);
  });
  return TCS_OK;
}

uint32_t CTimeCodeSpace::ModifyRange(uint32_t start, uint32_t end, uint32_t videoMask,
                                     uint32_t audioMask, uint32_t flags) {
  tcs::SpaceLock guard(*this);
  if (!(start < end) || end - start > tcs::kFullLength) {
    return tcs::LogStatus(TCS_ERR_BAD_RANGE);
  }
  tcs::ChannelSet(videoMask, audioMask).ForEach([&](uint32_t channel) {
    if (CTCLookup* lookup = lookups[channel]) lookup->ModifyRange(start, end, flags);
  });
  Stamp();
  return TCS_OK;
}

void CTimeCodeSpace::RebuildLookup() {
  tcs::SpaceLock guard(*this);
  DestroyLookup();
  Stamp();
  // Only the records listed when the rebuild begins are replayed, in list
  // order (a later record overwrites an earlier one where they overlap).
  // Pieces that a replay splits off are appended behind them and already have
  // their play clips; replaying them would overwrite their own play clip.
  // Records of length 0 play nowhere and are skipped: replaying one would
  // only cut the play clip it lies in.
  // A record's successor is taken before its replay: the replay can remove
  // only records that already have play clips, which lie behind it.
  CClip* const last = lastClip;
  for (CClip* record = firstClip; record != nullptr;) {
    CClip* const next = record->next;
    if (record->length != 0) {
      CTCLookup*& lookup = lookups[record->channel];
      if (lookup == nullptr) lookup = new CTCLookup(this);
      lookup->AddClip(record, 0);
    }
    if (record == last) break;
    record = next;
  }
}

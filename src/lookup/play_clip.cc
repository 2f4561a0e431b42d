#include "lookup/play_clip.h"

#include "platform/clip.h"

void CPlayClip::Construct(CClip* record) {
  static_cast<CTCRange&>(*this) = static_cast<const CTCRange&>(*record);
  clip = record;
}

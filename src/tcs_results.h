// Query results that are not statuses, named for C hosts: they are answers,
// never logged. Plain C.
#ifndef TCS_RESULTS_H_
#define TCS_RESULTS_H_

// The not-found answer of every query (tcsTranslate, tcsFindClip, the walk).
#define TCS_NOT_FOUND 0x80000001u
// "None" as a timecode or position: the end of a walk or of a listing.
#define TCS_NO_TIMECODE 0xFFFFFFFFu
// One past the last frame of the timeline (99 hours at 30 frames/s).
#define TCS_TIMELINE_END 10692001u

#endif  // TCS_RESULTS_H_

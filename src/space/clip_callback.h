// The host's notification function: (context, space, record) -> answer.
// Plain C.
#ifndef TCS_SPACE_CLIP_CALLBACK_H_
#define TCS_SPACE_CLIP_CALLBACK_H_

#ifdef __cplusplus
class CTimeCodeSpace;
class CClip;
#else
typedef struct CTimeCodeSpace CTimeCodeSpace;
typedef struct CClip CClip;
#endif

typedef unsigned int (*TcsClipCallback)(void* context, CTimeCodeSpace* space, CClip* clip);

#endif  // TCS_SPACE_CLIP_CALLBACK_H_

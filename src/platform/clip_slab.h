/* The memory of the process's clip records. A record is over 4 KB (its
 * transition text is held inline), and a list of 100,000 multi-track events
 * makes 170,000 of them: drawn from the heap one by one, each is a malloc
 * among the reader's small temporaries and a page fault for every page it
 * spans. Here records of the library's own size are carved in equal slots
 * from 1 MiB slabs that the kernel maps and fills in one call. A freed slot
 * is reused first. A slab whose records are all gone stays mapped for the
 * next records, as the heap keeps what it has held; clsTrimRecordSlabs
 * gives such slabs back, as malloc_trim does for the heap. (Given back at
 * once, or left to the kernel with MADV_FREE, a host that closes a long
 * list and reads another paid every page fault again: 40% slower.)
 *
 * Anything of another size (a host's class derived from CClip) comes from
 * the global heap. Under AddressSanitizer and valgrind every record does,
 * so that their checks see each record as the heap block it is.
 *
 * Thread safety: records are made and freed from any thread; one mutex. */
#ifndef TCS_PLATFORM_CLIP_SLAB_H_
#define TCS_PLATFORM_CLIP_SLAB_H_

#include <stddef.h>

#include "tcs_export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Slabs the clip library has mapped, the empty ones included. */
TCS_EXPORT size_t clsRecordSlabs(void);
/* Unmaps every slab that holds no record; returns how many. */
TCS_EXPORT size_t clsTrimRecordSlabs(void);

#ifdef __cplusplus
}  /* extern "C" */
#endif

#endif  /* TCS_PLATFORM_CLIP_SLAB_H_ */

/* The public header compiles as plain C and its entry points link. */
#include <stddef.h>

#include "tcs.h"

int main(void) {
  CTimeCodeSpace* space = tcsOpen(NULL, NULL, NULL);
  if (space == NULL) return 1;
  if (tcsClipActive(space) != 0) return 2;
  if (tcsClose(space) != 0) return 3;
  return 0;
}

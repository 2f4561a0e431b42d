/* A host in a few lines: open a space, listen to additions, lay two clips on
   channel 0 through the command record, overwrite part of one, list what the
   channel plays, ask what plays at a timecode, write the timeline as an EDL,
   close. */
#include <stdio.h>
#include <string.h>

#include "tcs.h"

/* The add notification: counts the clips and accepts each (answer 0). */
static unsigned int on_add(void* added, CTimeCodeSpace* space, CClip* clip) {
  (void)space, (void)clip;
  return ++*(int*)added, 0;
}

/* Overwrites channel 0 from `at` with source frames [in, out) of `name`. */
static void add_clip(CTimeCodeSpace* space, unsigned at, unsigned in, unsigned out,
                     const char* name) {
  static TCSCMD cmd;
  memset(&cmd, 0, sizeof cmd);
  cmd.type = TCSCMD_TYPE, cmd.size = sizeof cmd, cmd.command = TCSCMD_INSERT;
  cmd.flags = TCSF_TEXT | TCSF_POS | TCSF_IN | TCSF_OUT, cmd.videoMask = 1;
  cmd.position = at, cmd.inPoint = in, cmd.outPoint = out;
  strncpy(cmd.longText, name, sizeof cmd.longText - 1);
  tcsSetMode(space, &cmd);
}

/* HH:MM:SS:FF at 30 frames per second. */
static const char* tc(unsigned f, char* s) {
  sprintf(s, "%02u:%02u:%02u:%02u", f / 108000, f / 1800 % 60, f / 30 % 60, f % 30);
  return s;
}

/* Every clip of channel 0, in record order, a few rows at a time. */
static void list_channel(CTimeCodeSpace* space) {
  TCSCLIP rows[2];
  unsigned from = 0, n, i;
  char a[16], b[16];
  do {
    if (tcsGetClips(space, 0, from, TCS_NO_TIMECODE, rows, 2, &n, &from) != TCS_OK) return;
    for (i = 0; i < n; ++i) {
      printf("  %s - %s  %s\n", tc(rows[i].start, a), tc(rows[i].start + rows[i].length, b),
             rows[i].info && rows[i].info->name ? rows[i].info->name : "");
    }
  } while (from != TCS_NO_TIMECODE);
}

int main(void) {
  int added = 0;
  char a[16], b[16];
  CTimeCodeSpace* space = tcsOpen(NULL, NULL, NULL);
  tcsSetAddCallback(space, &added, on_add);
  add_clip(space, 0, 1000, 1300, "opening");
  add_clip(space, 300, 5000, 5600, "interview");
  add_clip(space, 600, 9000, 9090, "breaking");
  list_channel(space);
  unsigned source = tcsTranslate(space, 0, 450, NULL, 0);
  printf("%d clips added; %s plays source %s\n", added, tc(450, a), tc(source, b));
  unsigned written = tcsWriteEdl(space, "host_example.edl", 0, NULL);
  puts(written == TCS_OK ? "wrote host_example.edl" : "could not write host_example.edl");
  return tcsClose(space) == TCS_OK && written == TCS_OK ? 0 : 1;
}

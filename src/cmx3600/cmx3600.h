// The CMX 3600 codec: edit decision list text to plain events and back. A
// library of its own, built on the timecode library alone: it knows nothing
// of spaces, channels or clips. This header gathers its parts:
//  - Event (event.h): one event as plain data;
//  - EventReader (reader.h): text, from a file's bytes or any buffer, to
//    events, tolerant of what real lists hold, or strict;
//  - Warning (warning.h): what a reader could not carry, as data;
//  - AppendHeader / AppendEvent (writer.h): events to text;
//  - AppendCommentLines (comment_lines.h): a comment's lines as the notes
//    they were read from;
//  - ScanRate (rate_scan.h): the frame rate a list counts at;
//  - ScanTitle (title_scan.h): the title it gives itself.
#ifndef TCS_CMX3600_CMX3600_H_
#define TCS_CMX3600_CMX3600_H_

#include "cmx3600/comment_lines.h"
#include "cmx3600/event.h"
#include "cmx3600/rate_scan.h"
#include "cmx3600/reader.h"
#include "cmx3600/title_scan.h"
#include "cmx3600/warning.h"
#include "cmx3600/writer.h"

#endif  // TCS_CMX3600_CMX3600_H_

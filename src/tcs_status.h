// Every status code of the library, each with its meaning. No other file
// spells these numbers. Query results (not-found, none) are not statuses and
// have names of their own in record/timecode.h.
#ifndef TCS_STATUS_H_
#define TCS_STATUS_H_

#define TCS_OK 0x00000000u
// Null or unknown space handle; null command record.
#define TCS_ERR_BAD_HANDLE 0xA8080004u
// Null space handle (or null line) in the current-clip and EDL line entry points.
#define TCS_ERR_NULL_SPACE 0xA8080005u
// The space has no current clip.
#define TCS_ERR_NO_CURRENT_CLIP 0xA808F003u
// A file insert while no add notification is registered.
#define TCS_ERR_NO_ADD_CALLBACK 0xA808F005u
// Empty, reversed or too long range.
#define TCS_ERR_BAD_RANGE 0xA808F013u
// The clip could not be added: the host's add notification refused it.
#define TCS_ERR_ADD_REFUSED 0xA808F01Au
// Command record of the wrong type or version.
#define TCS_ERR_BAD_RECORD_TYPE 0xA8087004u
// Unacceptable clip record or command arguments.
#define TCS_ERR_BAD_ARGUMENTS 0xA8087013u
// Null space handle given to a callback setter.
#define TCS_ERR_SETTER_NULL_SPACE 0xE8090004u
// tcsSetMode: null space, unknown sub-command, end of a walk; no failed
// deletion in a backup restore.
#define TCS_RESULT_NONE 0xFFFFFFFFu

#endif  // TCS_STATUS_H_

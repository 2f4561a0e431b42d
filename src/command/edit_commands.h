// The edit path of tcsSetMode: turns an edit command of the host's record
// into one edit of the space (InsertFile, ModifyRange or TrimRange).
//
// Reads the record's fields from a copy of the bytes the host declared in
// `size`, except two reads of the host's record itself: the first byte of
// longText and the comment text of an inserted clip. The record must be a
// full 4188 bytes. Writes nothing into it except `size` when it is 0. Takes no lock of its own: the
// space operation it calls takes the space's lock for its own duration.
#ifndef TCS_COMMAND_EDIT_COMMANDS_H_
#define TCS_COMMAND_EDIT_COMMANDS_H_

#include <cstdint>

#include "command/tcs_cmd.h"

class CTimeCodeSpace;

namespace tcs {

// 0 for every command that it does not refuse (the space logs its own
// refusals); TCS_ERR_BAD_ARGUMENTS, logged, when the record lacks the flags
// its command needs, with the space untouched. Commands other than 7 to 10
// return 0 and change nothing.
uint32_t RunEditCommand(CTimeCodeSpace& space, TCSCMD& record);

}  // namespace tcs

#endif  // TCS_COMMAND_EDIT_COMMANDS_H_

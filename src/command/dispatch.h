// The dispatch of tcsSetMode: checks the host's command record and the space
// and sends the command to the edit path, a get or a set sub-command.
//
// Takes no lock of its own; the operations it calls take the space's lock
// where they touch the space. The host serialises the clip walk and the
// property searches on one space, which share the space's current clip.
#ifndef TCS_COMMAND_DISPATCH_H_
#define TCS_COMMAND_DISPATCH_H_

#include <cstdint>

#include "command/tcs_cmd.h"

class CTimeCodeSpace;

namespace tcs {

// In this order: a null record gives TCS_ERR_BAD_HANDLE (logged); a null space
// gives TCS_RESULT_NONE, with `position` set to it, not logged; a record of
// another type gives TCS_ERR_BAD_RECORD_TYPE (logged). Then ignored commands
// give 0, gets and sets their sub-command's result, and every other command
// the edit path's.
uint32_t DispatchCommand(CTimeCodeSpace* space, TCSCMD* record);

}  // namespace tcs

#endif  // TCS_COMMAND_DISPATCH_H_

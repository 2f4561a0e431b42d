// TCSSUB_PROPERTY: reading and writing a property of the clip that covers
// the record's `position` on channel 0.
//
// Each call holds the space's lock from the search to the last access of the
// clip record, so an edit on another thread cannot remove or change the
// record in between. The search still fills the space's current clip, which
// the host serialises with its other searches.
#ifndef TCS_COMMAND_PROPERTY_COMMANDS_H_
#define TCS_COMMAND_PROPERTY_COMMANDS_H_

#include <cstdint>

#include "command/tcs_cmd.h"

class CTimeCodeSpace;

namespace tcs {

// The queried position when a clip covers it (0x80000001 otherwise, record
// untouched). Fills the reply fields the selector names.
uint32_t GetProperty(CTimeCodeSpace& space, TCSCMD& record);
// The queried position when a clip covers it (0x80000001 otherwise). A
// selector that names a settable property also stamps the space.
uint32_t SetProperty(CTimeCodeSpace& space, TCSCMD& record);

}  // namespace tcs

#endif  // TCS_COMMAND_PROPERTY_COMMANDS_H_

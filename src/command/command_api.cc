// The exported entry point of the command record.
#include "command/command_api.h"

#include "command/dispatch.h"

extern "C" unsigned int tcsSetMode(CTimeCodeSpace* space, TCSCMD* record) {
  return tcs::DispatchCommand(space, record);
}

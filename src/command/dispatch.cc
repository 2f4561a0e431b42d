// tcsSetMode's checks and its dispatch by command and sub-command.
#include "command/dispatch.h"

#include "backup/backup_restore.h"
#include "command/change_stamp.h"
#include "command/clip_walk.h"
#include "command/edit_commands.h"
#include "command/property_commands.h"
#include "record/timecode.h"
#include "space/registry.h"
#include "space/space.h"
#include "space/status_log.h"
#include "tcs_status.h"

namespace tcs {
namespace {

bool IsIgnored(uint32_t command) {
  return command < TCSCMD_IGNORED_LIMIT && ((TCSCMD_IGNORED_MASK >> command) & 1u) != 0;
}

// One step of the clip walk kept in the record. The walk's own end
// (kNotFound) reads as `end_result`: "none" under a get, kNotFound under a set.
uint32_t StepWalk(CTimeCodeSpace& space, TCSCMD& record, bool fresh_marks,
                  uint32_t end_result) {
  const uint32_t start = FindNextClip(space, record, fresh_marks, nullptr);
  return start == kNotFound ? end_result : start;
}

// TCSCMD_GET and TCSCMD_GET_ALT.
uint32_t Get(CTimeCodeSpace& space, TCSCMD& record) {
  switch (record.subCommand) {
    case TCSSUB_NEXT:
      return StepWalk(space, record, false, TCS_RESULT_NONE);
    case TCSSUB_NEXT_EVENT:
      return StepWalk(space, record, true, TCS_RESULT_NONE);
    case TCSSUB_PROPERTY:
      return GetProperty(space, record);
    case TCSSUB_CHANGESTAMP:
      return PollChangeStamp(space, record);
    case TCSSUB_BACKUP:
      return CountBackups(space.fileName);
    default:
      return TCS_RESULT_NONE;
  }
}

// TCSCMD_SET.
uint32_t Set(CTimeCodeSpace& space, TCSCMD& record) {
  switch (record.subCommand) {
    case TCSSUB_NEXT:
      return StepWalk(space, record, false, kNotFound);
    case TCSSUB_NEXT_EVENT:
      return StepWalk(space, record, true, kNotFound);
    case TCSSUB_PROPERTY:
      return SetProperty(space, record);
    case TCSSUB_CHANGESTAMP:
      return SetChangeStamp(space, record);
    case TCSSUB_BACKUP:
      // `position` names the backup to restore and receives the result; the
      // restored file's name goes to the reply text.
      record.position = RestoreBackup(space.fileName, record.position, TcsCmdReplyText(record));
      return record.position;
    default:
      return TCS_RESULT_NONE;
  }
}

}  // namespace

uint32_t DispatchCommand(CTimeCodeSpace* space, TCSCMD* record) {
  if (record == nullptr) return LogStatus(TCS_ERR_BAD_HANDLE);
  if (space == nullptr) {
    // An answer, not an error: not logged, and given before the type check.
    record->position = TCS_RESULT_NONE;
    return TCS_RESULT_NONE;
  }
  // A handle that is not open (closed, or never opened) is not dereferenced.
  if (!IsOpenSpace(space)) return LogStatus(TCS_ERR_BAD_HANDLE);
  if (record->type != TCSCMD_TYPE) return LogStatus(TCS_ERR_BAD_RECORD_TYPE);
  if (IsIgnored(record->command)) return TCS_OK;
  switch (record->command) {
    case TCSCMD_GET:
    case TCSCMD_GET_ALT:
      return Get(*space, *record);
    case TCSCMD_SET:
      return Set(*space, *record);
    default:
      return RunEditCommand(*space, *record);
  }
}

}  // namespace tcs

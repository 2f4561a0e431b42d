#include "support/command_record.h"

namespace tcs_test {

std::unique_ptr<TCSCMD> NewCommand(uint32_t command, uint32_t flags, uint32_t sub_command) {
  auto record = std::make_unique<TCSCMD>();
  record->type = TCSCMD_TYPE;
  record->size = TCSCMD_SIZE;
  record->command = command;
  record->flags = flags;
  record->subCommand = sub_command;
  return record;
}

void PrintTo(const PlaySpan& span, std::ostream* os) {
  *os << "[" << span.start << ", +" << span.length << ") src " << span.source_in;
}

std::vector<PlaySpan> PlaySpans(const CTimeCodeSpace& space, uint32_t channel) {
  std::vector<PlaySpan> spans;
  const CTCLookup* lookup = space.LookupOf(channel);
  if (lookup == nullptr) return spans;
  for (const CPlayClip& pc : *lookup) {
    spans.push_back({pc.start, pc.length, pc.clip != nullptr ? pc.clip->sourceIn : 0});
  }
  return spans;
}

}  // namespace tcs_test

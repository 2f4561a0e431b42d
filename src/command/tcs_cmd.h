// TCSCMD: the versioned command record of the host's control layer, and the
// state of the clip walk. A wire format of 4188 bytes in the host's byte
// order; every field is pinned below. Plain C.
//
// `text` (offset 76) is 9 bytes as input; replies write up to 4096 bytes from
// offset 76, over `longText`. Use TcsCmdReplyText() for those writes.
#ifndef TCS_COMMAND_TCS_CMD_H_
#define TCS_COMMAND_TCS_CMD_H_

#include <stdint.h>

#define TCSCMD_TYPE 0xFA250200u
#define TCSCMD_SIZE 4188u
#define TCSCMD_DEFAULT_SIZE 56u   // what a size of 0 stands for
#define TCSCMD_TEXT_OFFSET 76u
#define TCSCMD_REPLY_TEXT_SIZE 4096u

// Commands.
#define TCSCMD_INSERT 7u
#define TCSCMD_CLEAR 8u
#define TCSCMD_DELETE 9u
#define TCSCMD_TRIM 10u
#define TCSCMD_GET 14u
#define TCSCMD_SET 15u
#define TCSCMD_GET_ALT 16u
// Commands below 22 whose bit is set here are accepted and ignored.
#define TCSCMD_IGNORED_MASK 0x2E3067u
#define TCSCMD_IGNORED_LIMIT 22u

// Flag bits.
#define TCSF_MODE 0x10u
#define TCSF_POS 0x20u
#define TCSF_AT 0x40u
#define TCSF_IN 0x100u
#define TCSF_OUT 0x400u
#define TCSF_ALL 0x1000u
#define TCSF_TEXT 0x2000u
#define TCSF_ALTPOS 0x10000u
#define TCSF_RIPPLE 0x200000u
#define TCSF_MARKS 0x520u  // TCSF_POS | TCSF_IN | TCSF_OUT

// Sub-commands of TCSCMD_GET, TCSCMD_GET_ALT and TCSCMD_SET.
#define TCSSUB_NEXT 93u
#define TCSSUB_NEXT_EVENT 94u
#define TCSSUB_PROPERTY 97u
#define TCSSUB_CHANGESTAMP 0x10004u
#define TCSSUB_BACKUP 0x10009u

// Property selectors of TCSSUB_PROPERTY.
#define TCSPROP_EFFECT 1u
#define TCSPROP_EFFECT_ALT 2u
#define TCSPROP_COMMENT 4u
#define TCSPROP_REEL 8u
#define TCSPROP_NAME 16u

typedef struct TCSCMD {
  uint8_t hostReserved[24];  // the host's control layer's; never read or written
  uint32_t type;             // TCSCMD_TYPE
  uint32_t size;             // bytes the host filled, from offset 0
  uint8_t notRead[4];
  uint32_t command;
  uint32_t flags;
  uint32_t selector;
  uint32_t videoMask;        // bit c: channel c
  uint32_t audioMask;        // bit k: channel 32 + k
  uint32_t auxMask;          // bit k: channel 64 + k
  uint32_t subCommand;       // or a record position (TCSF_ALTPOS)
  uint32_t position;
  uint32_t inPoint;
  uint32_t outPoint;
  char text[9];              // input: at most 8 characters
  char longText[4103];       // input: a zero-terminated text
} TCSCMD;

#ifdef __cplusplus
#include <cstddef>
#include <type_traits>
static_assert(sizeof(TCSCMD) == 4188);
static_assert(offsetof(TCSCMD, hostReserved) == 0);
static_assert(offsetof(TCSCMD, type) == 24);
static_assert(offsetof(TCSCMD, size) == 28);
static_assert(offsetof(TCSCMD, notRead) == 32);
static_assert(offsetof(TCSCMD, command) == 36);
static_assert(offsetof(TCSCMD, flags) == 40);
static_assert(offsetof(TCSCMD, selector) == 44);
static_assert(offsetof(TCSCMD, videoMask) == 48);
static_assert(offsetof(TCSCMD, audioMask) == 52);
static_assert(offsetof(TCSCMD, auxMask) == 56);
static_assert(offsetof(TCSCMD, subCommand) == 60);
static_assert(offsetof(TCSCMD, position) == 64);
static_assert(offsetof(TCSCMD, inPoint) == 68);
static_assert(offsetof(TCSCMD, outPoint) == 72);
static_assert(offsetof(TCSCMD, text) == 76);
static_assert(offsetof(TCSCMD, longText) == 85);
static_assert(std::is_standard_layout_v<TCSCMD> && std::is_trivially_copyable_v<TCSCMD>);

// The reply text: 4096 bytes from offset 76, over text and longText.
inline char* TcsCmdReplyText(TCSCMD& cmd) {
  return reinterpret_cast<char*>(&cmd) + TCSCMD_TEXT_OFFSET;
}
static_assert(TCSCMD_TEXT_OFFSET + TCSCMD_REPLY_TEXT_SIZE <= sizeof(TCSCMD));
#endif

#endif  // TCS_COMMAND_TCS_CMD_H_

// This codec's own note for the aux channels of an event, which no track
// field spells: "* TCS AUX: X1 X5 X32" (bit n of the mask is Xn+1). Pure
// functions; safe from any thread.
#ifndef TCS_CMX3600_AUX_NOTE_H_
#define TCS_CMX3600_AUX_NOTE_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace tcs::cmx3600 {

// Appends the note line, CR LF included, for a mask that is not 0.
void AppendAuxNote(std::string& out, uint32_t aux);

// Adds the channels the note's value ("X1 X5", any case) names to `aux`.
// False, with `aux` unchanged, when a word is not X1 to X32.
bool ParseAuxNote(std::string_view value, uint32_t& aux);

}  // namespace tcs::cmx3600

#endif  // TCS_CMX3600_AUX_NOTE_H_

#include "cmx3600/aux_note.h"

namespace tcs::cmx3600 {

void AppendAuxNote(std::string& out, uint32_t aux) {
  out += "* TCS AUX:";
  for (unsigned bit = 0; bit < 32; ++bit) {
    if (((aux >> bit) & 1u) == 0) continue;
    const unsigned number = bit + 1;
    out += " X";
    if (number >= 10) out += char('0' + number / 10);
    out += char('0' + number % 10);
  }
  out += "\r\n";
}

bool ParseAuxNote(std::string_view value, uint32_t& aux) {
  uint32_t found = 0;
  size_t i = 0;
  while (i < value.size()) {
    if (value[i] == ' ' || value[i] == '\t') {
      ++i;
      continue;
    }
    size_t end = i;
    while (end < value.size() && value[end] != ' ' && value[end] != '\t') ++end;
    const std::string_view word = value.substr(i, end - i);
    if (word.size() < 2 || word.size() > 3 || (word[0] != 'X' && word[0] != 'x')) return false;
    unsigned number = 0;
    for (char c : word.substr(1)) {
      if (c < '0' || c > '9') return false;
      number = number * 10 + unsigned(c - '0');
    }
    if (number < 1 || number > 32 || word[1] == '0') return false;
    found |= 1u << (number - 1);
    i = end;
  }
  if (found == 0) return false;
  aux |= found;
  return true;
}

}  // namespace tcs::cmx3600

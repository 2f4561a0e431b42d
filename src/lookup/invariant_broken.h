// The one report of a broken structure invariant, shared by the checkers of
// the lookup and of the space (CheckInvariants(), which tests run after every
// step). Names the structure and the rule, then aborts.
#ifndef TCS_LOOKUP_INVARIANT_BROKEN_H_
#define TCS_LOOKUP_INVARIANT_BROKEN_H_

#include <cstdio>
#include <cstdlib>

namespace tcs {

[[noreturn]] inline void InvariantBroken(const char* structure, const char* what) {
  std::fprintf(stderr, "%s invariant broken: %s\n", structure, what);
  std::abort();
}

}  // namespace tcs

#endif  // TCS_LOOKUP_INVARIANT_BROKEN_H_

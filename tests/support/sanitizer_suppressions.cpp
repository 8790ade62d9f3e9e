// What the sanitizers find in libraries and what is not ours to mend. They call these functions by name.

#include "support/sanitizers.h"

// NOLINTBEGIN(bugprone-reserved-identifier)

#ifdef TONVEX_THREAD_SANITIZER
// FluidSynth loads samples on OpenMP threads. libgomp is built without the sanitizer, which therefore does
// not see how its threads hand memory to each other.
extern "C" const char* __tsan_default_suppressions() {
    return "race:libgomp.so\n";
}
#endif

#ifdef TONVEX_ADDRESS_SANITIZER
// Refusing some damaged fonts FluidSynth loses 48 bytes. A whole instance that we lost would still show,
// as our own Synth_Instance.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfluidsynth.so\n";
}
#endif

// NOLINTEND(bugprone-reserved-identifier)

// How the few loops that use wide registers are compiled.
//
// A function with ZELVANE_CLONES is compiled once for AVX2 and once for the baseline, and the loader chooses.
// If ZELVANE_LOADER_PICKS is defined, a function may also be written several times with [[gnu::target]].
// Contraction of multiply and add is off for all of them, so a result does not depend on the machine.
// Inline every function that such a function calls (ZELVANE_INLINE). Otherwise it is compiled only for the
// baseline.
#pragma once

#if defined(__GNUC__) && !defined(__clang__) && !defined(ZELVANE_PLAIN_LANES)
#define ZELVANE_VECTOR_LANES 1
#endif

// Sanitizers start after the choice of the loader.
#if defined(ZELVANE_VECTOR_LANES) && defined(__x86_64__) && defined(__linux__) && !defined(ZELVANE_SANITIZED)
#define ZELVANE_LOADER_PICKS 1
#define ZELVANE_CLONES [[gnu::target_clones("avx2", "default")]]
#else
#define ZELVANE_CLONES
#endif

#if defined(__GNUC__)
#define ZELVANE_INLINE [[gnu::always_inline]] inline  // into each of the clones
#define ZELVANE_INLINE_LAMBDA __attribute__((always_inline))
#else
#define ZELVANE_INLINE inline
#define ZELVANE_INLINE_LAMBDA
#endif

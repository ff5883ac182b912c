#pragma once

/// Compiles a hot function once for each level of the processor; the loader picks the widest that runs. Every clone
/// gives the same bits, since contraction is off. Clang 14 has no such clones, and sanitizers do not get along with the
/// resolvers that pick them.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(QSF2SQL_SANITIZED)
#define QSF_VECTOR_CLONES __attribute__((target_clones("default", "arch=x86-64-v3", "arch=x86-64-v4")))
/// Before a loop: no element depends on another one's store.
#define QSF_INDEPENDENT_ELEMENTS _Pragma("GCC ivdep")
#else
#define QSF_VECTOR_CLONES
#define QSF_INDEPENDENT_ELEMENTS
#endif

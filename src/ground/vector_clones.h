// One source, several instruction sets: the compiler makes a version of the function for each and the loader picks one.
// What is made this way counts, converts and compares, so that every machine finds the same numbers.
#pragma once

#if defined(__x86_64__) && defined(__gnu_linux__) && __has_attribute(target_clones) && !defined(TRIMORA_SANITIZED)
#define TRIMORA_VECTOR_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define TRIMORA_VECTOR_CLONES
#endif

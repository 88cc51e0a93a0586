// Positions in a file, also beyond 2 GB on Windows, where a long is too short for them.
#pragma once
#include <cstdio>

namespace trimora::rooms {

#ifdef _WIN32
inline constexpr auto tell_offset = _ftelli64;
inline constexpr auto seek_offset = _fseeki64;
#else
inline constexpr auto tell_offset = std::ftell;
inline constexpr auto seek_offset = std::fseek;
#endif

}  // namespace trimora::rooms

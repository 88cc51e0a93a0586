// Why a value of b1 or b2 is refused, in the words that options and menu share.
#pragma once
#include <string>

namespace trimora::rooms {

inline std::string negval_too_low(int initnegval) {
  return "The minimum number of sequences for a conserved position must be bigger than or equal to " +
         std::to_string(initnegval) + " (half the number of sequences + 1)";
}
inline constexpr char negval_too_high[] =
    "The minimum number of sequences for a conserved position must be lower than or equal to the minimum number of sequences for a flank position";
inline constexpr char flankval_too_low[] =
    "The minimum number of sequences for a flank position must be bigger than or equal to the minimum number of sequences for a conserved position";
inline std::string flankval_too_high(int numseq) {
  return "The minimum number of sequences for a flank position must be lower than or equal to " +
         std::to_string(numseq) + " (the number of sequences)";
}

}  // namespace trimora::rooms

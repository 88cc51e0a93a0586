// Why a value of b1 or b2 is refused, in the words that options and menu share. %i is the bound that was missed.
#pragma once

inline constexpr char negvaltoolow[] =
    "The minimum number of sequences for a conserved position must be bigger than or equal to %i (half the number of sequences + 1)";
inline constexpr char negvaltoohigh[] =
    "The minimum number of sequences for a conserved position must be lower than or equal to the minimum number of sequences for a flank position";
inline constexpr char flankvaltoolow[] =
    "The minimum number of sequences for a flank position must be bigger than or equal to the minimum number of sequences for a conserved position";
inline constexpr char flankvaltoohigh[] =
    "The minimum number of sequences for a flank position must be lower than or equal to %i (the number of sequences)";

// Which files a run writes, and how.
// Words     toggle: a switch, 1 on and 0 off
#pragma once
#include <cstddef>
#include <string>

#include "selection/selection_state.h"

namespace trimora::rooms {

/// Values of OutputState::tog_viewfile.
inline constexpr int noreport = 0;
inline constexpr int htmlreport = 1;
inline constexpr int textreport = 2;
inline constexpr int shortreport = 3;

struct OutputState : SelectionState {
  char tog_seqfile = 1;            // -s  the selected blocks
  char tog_viewfile = htmlreport;  // -p  results and parameters: none, HTML, text or short
  char tog_maskfile = 0;           // -k  the mask
  char tog_psfile = 0;             // -d  the PostScript map
  char tog_ncbfile = 0;            // -n  the nonconserved blocks
  char tog_ungappedfile = 0;       // -u  the ungapped alignment
  std::string exten = "-tr";       // -e  suffix of the files written, 1 to 5 characters
  int breakcount = 60;             // -v  characters per line of the report, 50 to 32000
};

inline constexpr Range breakcountrange = {50, 32000};
inline constexpr std::size_t longestexten = 5;  // characters of a suffix

}  // namespace trimora::rooms

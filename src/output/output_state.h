// Which files a run writes, and how.
// Words     toggle: a switch, 1 on and 0 off
#pragma once
#include <cstddef>
#include <string>

#include "selection/selection_state.h"

namespace trimora::rooms {

/// Values of OutputState::tog_viewfile.
inline constexpr int no_report = 0;
inline constexpr int html_report = 1;
inline constexpr int text_report = 2;
inline constexpr int short_report = 3;

struct OutputState : SelectionState {
  char tog_seqfile = 1;             // -s  the selected blocks
  char tog_viewfile = html_report;  // -p  results and parameters: none, HTML, text or short
  char tog_maskfile = 0;            // -k  the mask
  char tog_psfile = 0;              // -d  the PostScript map
  char tog_ncbfile = 0;             // -n  the nonconserved blocks
  char tog_ungappedfile = 0;        // -u  the ungapped alignment
  std::string exten = "-tr";        // -e  suffix of the files written, 1 to 5 characters
  int breakcount = 60;              // -v  characters per line of the report, 50 to 32000
  std::string form;                 // ending of the selected blocks' file, after the suffix
  bool escaped = false;             // in the HTML report: names and letters that a browser would take for its own
};

inline constexpr Range breakcount_range = {50, 32000};
inline constexpr std::size_t longest_exten = 5;  // characters of a suffix

}  // namespace trimora::rooms

// The names of the files of one alignment: its path, the suffix, and an ending of their own.
#pragma once
#include <string>

#include "output/output_state.h"

namespace trimora::rooms {

inline std::string seqfile(const OutputState& run) {
  return run.fichero1 + run.exten;
}
inline std::string viewfile(const OutputState& run) {
  constexpr const char* endings[] = {"", ".htm", ".txt", ".txts"};  // no_report, html_report, text_report, short_report
  return seqfile(run) + endings[static_cast<unsigned char>(run.tog_viewfile)];
}
inline std::string maskfile(const OutputState& run) {
  return seqfile(run) + "Mask";
}
inline std::string psfile(const OutputState& run) {
  return seqfile(run) + "PS";
}
inline std::string ncbfile(const OutputState& run) {
  return seqfile(run) + "Comp";
}
/// Whatever the suffix: the ungapped alignment does not depend on the parameters.
inline std::string ungappedfile(const OutputState& run) {
  return run.fichero1 + "--";
}

}  // namespace trimora::rooms

// Sets of block parameters under names, for those who choose by what they want and cite it. study/ measured them.
#pragma once
#include <string_view>

#include "trimora/trimora.h"  // Parameters

namespace trimora::rooms {

struct Preset {
  std::string_view name;
  std::string_view stands_for;  // in options of trimora-run, or in words
  Parameters parameters;        // b0 and b1 follow from the others and from the alignment; b6 is on
};

// clang-format off
inline constexpr Preset presets[] = {
  //                                         kind b1  b2                    b3 b4  b0  gaps      similarity every
  {"classic", "-b2=85% -b3=8 -b4=10 -b5=n", {}},
  {"relaxed", "-b2=51% -b3=8 -b4=5 -b5=h",  {{}, {}, Sequences{51, true}, 8, 5,  {}, Gaps::half}},
  {"none",    "every column that holds a residue is kept, but for inserts",
                                            {{}, {}, {},                  8, 10, {}, Gaps::none, true,  true}},
};
// clang-format on

}  // namespace trimora::rooms

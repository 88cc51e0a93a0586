#include "selection/reduced_views.h"

#include <algorithm>

#include "ground/failure.h"

namespace trimora::rooms {

Table<char> makelettrimora(const SelectedBlocks& blocks, int nupo) {
  return allocating("lettrimora", [&] {
    Table<char> lettrimora(nupo, '.');
    for (const Stretch& block : blocks.newpos) {
      for (int p = block.first; p <= block.last; ++p) lettrimora[p] = '#';
    }
    return lettrimora;
  });
}

Ungapped ungap(const Alignment& ali) {
  constexpr int tile = 4096;  // positions looked at together: their marks stay in the first cache
  char gapped[tile];
  Ungapped ungapped;
  Stretch stretch{1, 0};  // the positions without a gap up to where we are
  const auto keep = [&] {
    if (stretch.length() > 0) ungapped.newlet.push_back(stretch);
  };
  allocating("newlet", [&] {
    for (int start = 1; start <= ali.nupo; start += tile) {
      const int width = std::min(tile, ali.nupo - start + 1);
      std::fill_n(gapped, width, '\0');
      for (int i = 1; i <= ali.numseq; ++i) {
        const char* text = ali.let[i].from(start);
        for (int c = 0; c < width; ++c) gapped[c] = text[c] == '-' ? 1 : gapped[c];
      }
      for (int c = 0; c < width; ++c) {
        if (gapped[c] == 0) {
          stretch.last = start + c;
        } else {
          keep();
          stretch = {start + c + 1, start + c};
        }
      }
    }
    keep();
  });
  ungapped.nupoung = total_length(ungapped.newlet);
  return ungapped;
}

}  // namespace trimora::rooms

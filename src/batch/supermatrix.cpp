#include "batch/supermatrix.h"

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>

#include "ground/speaker.h"
#include "trimora_run/notes.h"

namespace trimora::rooms {

void Supermatrix::add(const Alignment& ali, const Selection& found, const BatchState& run) {
  if (!whole_) return;
  whole_ = false;
  allconcat(all_, ali, found.blocks, found.ungapped);
  if (byname()) {
    species_.add(ali.name);
  } else {
    lastnames_ = ali.name;
  }
  if (arguments_.partitions) {
    const std::string name = partitionnames_.take(run.fichero1);
    letall_.add(name, found.blocks.newpos);
    letall_init_.add(name, {{1, ali.nupo}});
    newletall_.add(name, found.ungapped.newlet);
  }
  whole_ = true;
}

void Supermatrix::save(const Forms& forms, const BatchState& files, Messages& messages) const {
  const auto rowof = [&](std::size_t alignment, int i) { return byname() ? species_.row(alignment, i) : i; };
  const std::string model = !arguments_.model.empty() ? arguments_.model : files.seq_type == 'P' ? "LG" : "DNA";
  const auto saveone = [&](const std::optional<Concatenation>& all, const std::string& path, const Partitions& parts) {
    if (!all) return;
    const Sheet sheet = sheetof(*all, byname() ? species_.name() : lastnames_, rowof);
    saveforms(path, sheet, forms, files);
    if (sheet.width > 0) notespecies(sheet, path, messages);
    if (arguments_.partitions) parts.save(path, model, files.seq_type == 'C');
  };
  saveone(all_.letall, allfile(files), letall_);
  if (all_.letall) std::fprintf(prints, "Trimora alignment in batch: %lld positions\n\n", all_.letall->columns());
  saveone(all_.letall_init, allfile_init(files), letall_init_);
  saveone(all_.newletall, allungfile(files), newletall_);
}

}  // namespace trimora::rooms

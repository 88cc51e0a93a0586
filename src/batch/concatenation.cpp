#include "batch/concatenation.h"

#include <utility>

#include "ground/failure.h"
#include "ground/path.h"
#include "output/output_file.h"
#include "output/record.h"

namespace trimora::rooms {

void Concatenation::append(const Alignment& ali, const std::vector<Stretch>& stretches) {
  const int width = total_length(stretches);
  allocating(buffer_, [&] {
    std::vector<char> letters;
    letters.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(ali.numseq));
    for (int i = 1; i <= ali.numseq; ++i) {
      const Row row = ali.let[i];
      for (const Stretch& stretch : stretches) {
        const char* first = row.from(stretch.first);
        letters.insert(letters.end(), first, first + stretch.length());
      }
    }
    parts_.push_back({Rows(std::move(letters), width), width});
  });
  columns_ += width;
}

void Concatenation::write(OutputFile& out, const Table<std::string>& name, const InputState& run) const {
  for (int i = 1; i <= name.size(); ++i) {
    write_record(out, run, name[i], [&](Body& body) {
      for (const Part& part : parts_) body.add(part.rows[i].from(1), part.width);
    });
  }
}

namespace {
bool concatenates(const BatchState& run) {
  return run.tog_sb == 1 && run.tog_sub == 1;
}

std::string base(const BatchState& run) {
  return getpath(run.fichero1).path_file + getpath(run.filename).name_file;
}
}  // namespace

bool concatenates_ungapped(const BatchState& run) {
  return concatenates(run) && run.tog_allungfile == 1;
}

Concatenations allalloc(const BatchState& run) {
  Concatenations all;
  if (concatenates(run) && run.tog_allfile == 1) all.letall.emplace("letall");
  if (concatenates(run) && run.tog_allfile_init == 1) all.letall_init.emplace("letall_init");
  if (concatenates_ungapped(run)) all.newletall.emplace("newletall");
  return all;
}

void allconcat(Concatenations& all, const Alignment& ali, const SelectedBlocks& blocks, const Ungapped& ungapped) {
  if (all.letall) all.letall->append(ali, blocks.newpos);
  if (all.newletall) all.newletall->append(ali, ungapped.newlet);
  if (all.letall_init) all.letall_init->append(ali, {{1, ali.nupo}});
}

std::string allfile_init(const BatchState& run) {
  return base(run) + ".seq";
}

std::string allfile(const BatchState& run) {
  return base(run) + run.exten + ".seq";
}

std::string allungfile(const BatchState& run) {
  return base(run) + "--.seq";
}

}  // namespace trimora::rooms

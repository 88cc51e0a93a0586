#include <cstddef>
#include <cstdio>
#include <string>

#include "ground/version.h"
#include "trimora/calculate.h"
#include "trimora/console.h"
#include "trimora/menus.h"

namespace trimora::rooms {

namespace {

constexpr std::size_t longestfilename = 199;

const char* type_line(char seq_type) {
  switch (seq_type) {
    case 'D': return "t. Type Of Sequence: DNA\n";
    case 'P': return "t. Type Of Sequence: Protein\n";
    case 'C': return "t. Type Of Sequence: Codons\n";
    default: return "";
  }
}

void show_main(const RunState& run) {
  if (run.menu == '\n') std::puts("\n");
  std::puts("******************************************************");
  std::printf("                    TRIMORA %s                     \n", version_text);
  std::puts("SELECTION OF CONSERVED BLOCKS FROM MULTIPLE ALIGNMENTS");
  std::puts("        FOR THEIR USE IN PHYLOGENETIC ANALYSIS        ");
  std::puts("******************************************************");
  const bool loaded = !run.filename.empty();
  if (loaded) {
    std::printf(run.tog_sb == 1 ? "\nCURRENT FILE (paths file): %s\n" : "\nCURRENT FILE: %s\n", run.filename.c_str());
    std::printf("%s", type_line(run.seq_type));
  }
  std::printf("\no. Open File\n\nb. Block Parameters\n\ns. Saving Options");
  std::printf(loaded ? "\n\ng. Get Blocks" : "\n\ng. (Get Blocks)");
  std::printf("\n\nq. Quit\n\n\nYour Choice: ");
}

/// Choice o: another file. One that cannot be opened leaves the current one as it is.
void ask_file(RunState& run) {
  const std::string current = run.filename;
  std::puts("Please enter a DNA or protein alignment in NBRF/PIR or FASTA format or a paths file.");
  std::printf("File Name: ");
  run.filename = read_answer();
  if (run.filename.size() > longestfilename) run.filename.clear();
  openfile(run);
  if (run.filename.empty()) run.filename = current;
}

/// Choice t: the next type of sequence.
void change_type(RunState& run) {
  switch (run.seq_type) {
    case 'D': run.seq_type = 'P'; break;
    case 'P':
      run.seq_type = 'C';
      if (run.posblen2 < codon_posblen_range.least) {
        run.posblen = run.posblen2 = static_cast<int>(codon_posblen_range.least);
        std::puts("\nWarning: Minimum Length Of A Block changed to 5 for codon alignments\n");
      }
      break;
    case 'C': run.seq_type = 'D'; break;
  }
}

}  // namespace

void menu_main(RunState& run) {
  do {
    show_main(run);
    read_choice(run);
    switch (run.menu) {
      case 'o': ask_file(run); break;
      case 'b': menu_block_options(run); break;
      case 's': menu_saving_options(run); break;
      case 'g': get_blocks(run); break;
      case 't': change_type(run); break;
      case 'q':
      case '\n': break;
      default: std::puts("* Unrecognized option *");
    }
  } while (run.menu != 'g' && run.menu != 'q');
}

}  // namespace trimora::rooms

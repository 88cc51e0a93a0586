#include <cstdio>
#include <utility>

#include "trimora/console.h"
#include "trimora/menus.h"

namespace trimora::rooms {

namespace {

void show_saving_options(const RunState& run) {
  const auto toggle = [](const char* line, char value) {
    constexpr const char* saved[] = {"Don't Save", "Save", "Save Text", "Save Short"};
    std::printf("%s%s", line, saved[static_cast<unsigned char>(value)]);
  };
  if (run.menu == '\n') std::puts("\n");
  std::puts("SAVING OPTIONS");
  toggle("\ns. Selected Blocks: ...................................... ", run.tog_seqfile);
  toggle("\np. Results And Parameters File: .......................... ", run.tog_viewfile);
  std::printf("\ne. Generic File Extension: ............................... %s", run.exten.c_str());
  if (run.tog_expmen == 1) {
    std::printf("\n\nv. Characters Per Line In Results And Parameters File: ... %i", run.breakcount);
    toggle("\nn. Nonconserved Blocks: .................................. ", run.tog_ncbfile);
    toggle("\nu. Ungapped Alignment: ................................... ", run.tog_ungappedfile);
    toggle("\nk. Mask File With The Selected Blocks: ................... ", run.tog_maskfile);
    toggle("\nd. Postscript File With The Selected Blocks: ............. ", run.tog_psfile);
  }
  if (run.tog_sb == 1) {
    toggle("\n\na. Concatenated Blocks From Alignments In Batch: ......... ", run.tog_allfile);
    toggle("\nc. Concatenated Input Alignments In Batch: ............... ", run.tog_allfile_init);
    toggle("\nw. Concatenated Ungapped Alignments In Batch: ............ ", run.tog_allungfile);
  }
  std::printf("\n\nz. Extended Saving Options\nm. Go To Main Menu\n\n\nYour Choice: ");
}

void change(char& toggle) {
  toggle = toggle == 0 ? 1 : 0;
}

/// Choices a, c and w: a concatenation needs the same number of sequences in all alignments. The user is told once.
void change_concatenation(char& toggle, RunState& run) {
  change(toggle);
  run.tog_sub = 1;
  if (std::exchange(run.warn, 0) == 0) return;
  std::printf("\nWARNING: You have selected to concatenate the input files. ");
  std::printf(
      "You should be sure that all files have sequences in correlated order and that your alignment program didn't change the order of the sequences. ");
  std::puts("Sequence names of the last file in the paths file will be used for the concatenated files \n");
}

/// Choice v: characters per line of the report.
void ask_break_count(RunState& run) {
  std::printf("Characters Per Line In Results And Parameters File [50-32000]: ");
  const auto v = read_number();
  if (v && breakcount_range.holds(*v)) {
    run.breakcount = static_cast<int>(*v);
  } else {
    std::printf(not_allowed);
  }
}

}  // namespace

void menu_saving_options(RunState& run) {
  do {
    show_saving_options(run);
    read_choice(run);
    switch (run.menu) {
      case 's': change(run.tog_seqfile); break;
      case 'p': run.tog_viewfile = static_cast<char>((run.tog_viewfile + 1) % (short_report + 1)); break;
      case 'e':
        ask_exten(run);
        std::puts("\n");
        break;
      case 'v':
        ask_break_count(run);
        std::puts("\n");
        break;
      case 'n': change(run.tog_ncbfile); break;
      case 'u': change(run.tog_ungappedfile); break;
      case 'k': change(run.tog_maskfile); break;
      case 'd': change(run.tog_psfile); break;
      case 'a': change_concatenation(run.tog_allfile, run); break;
      case 'c': change_concatenation(run.tog_allfile_init, run); break;
      case 'w': change_concatenation(run.tog_allungfile, run); break;
      case 'z': run.tog_expmen = 1 - run.tog_expmen; break;
      case 'm':
      case '\n': break;
      default: std::puts("* Unrecognized option *");
    }
  } while (run.menu != 'm');
}

}  // namespace trimora::rooms

#include <cstdio>
#include <utility>

#include "trimora/console.h"
#include "trimora/menus.h"
#include "trimora/reasons.h"

namespace trimora::rooms {

namespace {

bool loaded(const RunState& run) {
  return !run.filename.empty();
}

void show_block_options(const RunState& run) {
  if (run.menu == '\n') std::puts("\n");
  std::puts(loaded(run) ? "BLOCK PARAMETERS" : "BLOCK PARAMETERS (Missing values will be set after opening a file)");
  // Without a file b1 and b2 have no value, and not a single one while each alignment of a batch has its own.
  const auto sequences = [&](const char* line, int value) {
    std::printf("%s", line);
    if (!loaded(run)) return;
    if (run.tog_sb == 1 && run.tog_sub == 0) {
      std::printf("Default");
    } else {
      std::printf("%i", value);
    }
  };
  sequences("\n1. Minimum Number Of Sequences For A Conserved Position: . ", run.negval);
  sequences("\n2. Minimum Number Of Sequences For A Flank Position: ..... ", run.flankval);
  std::printf("\n3. Maximum Number Of Contiguous Nonconserved Positions: .. %i", run.negblen);
  std::printf("\n4. Minimum Length Of A Block: ............................ %i", run.posblen2);
  const char* gaps[] = {"", "None", "With Half", "All"};  // no_gaps, with_half, all_gaps
  std::printf("\n5. Allowed Gap Positions: ................................ %s", gaps[run.tog_gaps]);
  if (run.tog_expmenb == 1) {
    std::printf("\n");
    if (run.seq_type == 'P') {
      std::printf("\n6. Use Similarity Matrix: ................................ %s", run.tog_sim == 1 ? "Yes" : "No");
    }
    std::printf("\ne. Generic File Extension: ............................... %s", run.exten.c_str());
  }
  std::printf("\n\nr. Restore Defaults");
  std::printf(loaded(run) ? "\ng. Get Blocks" : "\ng. (Get Blocks)");
  std::printf("\n\nz. Extended Block Options\nm. Go To Main Menu\n\n\nYour Choice: ");
}

/// Take b1 or b2, which then holds for every alignment of a batch, and say once what that asks of them.
void take(long long v, int& parameter, RunState& run) {
  parameter = static_cast<int>(v);
  run.tog_sub = 1;
  if (std::exchange(run.warn, 0) == 0) return;
  std::printf("\nWARNING: you have changed a parameter that is related to the number of sequences. ");
  std::puts("You should be sure that all alignments have the same number of sequences \n");
}

/// Choice 1: b1.
void ask_conserved(RunState& run) {
  if (!loaded(run)) {
    std::printf("%s\n\n", no_file);
    return;
  }
  std::puts("(BIGGER values DECREASE the selected number of positions)");
  std::printf("Minimum Number Of Sequences For A Conserved Position [%i-%i]: ", run.initnegval, run.flankval);
  const auto v = read_number();
  if (v && negval_range(run).holds(*v)) {
    take(*v, run.negval, run);
  } else {
    std::printf(not_allowed);
    if (v && *v < run.initnegval) std::printf("\n%s", negval_too_low(run.initnegval).c_str());
    if (v && *v > run.flankval) {
      std::printf("\n%s", negval_too_high);
      if (run.flankval < run.numseq) {
        std::printf("\nTry increasing the Minimum Number Of Sequences For A Flank Position");
      }
    }
  }
  std::puts("\n");
}

/// Choice 2: b2.
void ask_flank(RunState& run) {
  if (!loaded(run)) {
    std::printf("%s\n\n", no_file);
    return;
  }
  std::puts("(BIGGER values DECREASE the selected number of positions)");
  std::printf("Minimum Number Of Sequences For A Flank Position [%i-%i]: ", run.negval, run.numseq);
  const auto v = read_number();
  if (v && flankval_range(run).holds(*v)) {
    take(*v, run.flankval, run);
  } else {
    std::printf(not_allowed);
    if (v && *v > run.numseq) std::printf("\n%s", flankval_too_high(run.numseq).c_str());
    if (v && *v < run.negval) {
      std::printf("\n%s", flankval_too_low);
      if (run.initnegval < run.negval) {
        std::printf("\nTry decreasing the minimum number of sequences for a conserved position");
      }
    }
  }
  std::puts("\n");
}

/// Choice 3: b3, with or without a file.
void ask_nonconserved(RunState& run) {
  std::puts("(BIGGER values INCREASE the selected number of positions)");
  std::printf("Maximum Number Of Contiguous Nonconserved Positions [0-32000]: ");
  const auto v = read_number();
  if (v && negblen_range.holds(*v)) {
    run.negblen = static_cast<int>(*v);
  } else {
    std::printf(not_allowed);
    if (v && *v < negblen_range.least) {
      std::printf("\nThe maximum number of contiguous nonconserved positions must be positive");
    }
  }
  std::puts("\n");
}

/// Choice 4: b4, and b0 with it. Codons need room for a whole one.
void ask_length(RunState& run) {
  if (run.seq_type == '-') {
    std::printf("\n%s", no_file);
  } else {
    const bool codons = run.seq_type == 'C';
    const Range range = codons ? codon_posblen_range : posblen_range;
    std::puts("(BIGGER values DECREASE the selected number of positions)");
    std::printf("Minimum Length Of A Block [%lld - %lld]: ", range.least, range.most);
    const auto v = read_number();
    if (v && range.holds(*v)) {
      run.posblen = run.posblen2 = static_cast<int>(*v);
    } else {
      std::printf(not_allowed);
      if (v && *v < range.least) {
        std::printf("The minimum length of a block after gap cleaning must be %lld or bigger%s\n", range.least,
                    codons ? " for codon sequences" : "");
      }
    }
  }
  std::puts("\n");
}

void restore_defaults(RunState& run) {
  const RunState defaults;
  run.tog_gaps = defaults.tog_gaps;
  run.posblen2 = defaults.posblen2;
  run.tog_sim = defaults.tog_sim;
  run.negblen = defaults.negblen;
  run.posblen = defaults.posblen;
  derive_defaults(run);
}

}  // namespace

void menu_block_options(RunState& run) {
  do {
    show_block_options(run);
    read_choice(run);
    switch (run.menu) {
      case '1': ask_conserved(run); break;
      case '2': ask_flank(run); break;
      case '3': ask_nonconserved(run); break;
      case '4': ask_length(run); break;
      case '5': run.tog_gaps = run.tog_gaps % all_gaps + 1; break;
      case '6': run.tog_sim = 1 - run.tog_sim; break;
      case 'e':
        ask_exten(run);
        std::puts("\n");
        break;
      case 'g': get_blocks(run); break;
      case 'r': restore_defaults(run); break;
      case 'z': run.tog_expmenb = 1 - run.tog_expmenb; break;
      case 'm':
      case '\n': break;
      default: std::puts("* Unrecognized option *");
    }
  } while (run.menu != 'm');
}

}  // namespace trimora::rooms

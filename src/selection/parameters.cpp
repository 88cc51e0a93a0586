#include "selection/parameters.h"

#include <algorithm>
#include <string>

#include "ground/failure.h"

namespace trimora::rooms {

namespace {

void check(const char* name, long long value, const Range& range, const std::string& what = "") {
  if (range.holds(value)) return;
  throw Failure{.kind = Failure::Kind::bad_argument,
                .name = name,
                .detail = std::string(name) + " is " + std::to_string(value) + ", and has to be from " +
                          std::to_string(range.least) + " to " + std::to_string(range.most) + what};
}

/// b1 and b2, which bound each other.
void set_sequences(const Parameters& parameters, SelectionState& run) {
  derive_defaults(run);
  const std::optional<Sequences>&b1 = parameters.b1, &b2 = parameters.b2;
  for (const auto& share : {b1, b2}) {
    if (share && share->percent) check("a share of the sequences", share->number, {0, 100}, " per cent");
  }
  const std::string of = " of the " + std::to_string(run.numseq) + " sequences";
  if (b1) {
    const int value = number_of(*b1, run.numseq);
    run.negval = b1->percent ? std::max(run.initnegval, value) : value;
  }
  const bool follows = !b2 || b2->percent || b2->number == 0;  // b2 is then at least b1
  if (b2) run.flankval = number_of(*b2, run.numseq);
  if (follows) run.flankval = std::max(run.negval, run.flankval);
  check("b1", run.negval, {run.initnegval, follows ? run.numseq : std::max(run.initnegval, run.flankval)},
        of + (follows ? " (half of them + 1, up to all)" : " (half of them + 1, up to b2)"));
  check("b2", run.flankval, flankval_range(run), of + " (b1, up to all)");
}

}  // namespace

int number_of(const Sequences& sequences, int numseq) {
  if (!sequences.percent) return sequences.number;
  return static_cast<int>(static_cast<long long>(numseq) * sequences.number / 100);
}

void set_parameters(const Parameters& parameters, SelectionState& run) {
  check("b3", parameters.b3, negblen_range);
  check("b4", parameters.b4, posblen_range);
  check("b0", parameters.b0.value_or(parameters.b4), posblen_range);
  set_sequences(parameters, run);
  run.negblen = parameters.b3;
  run.posblen2 = parameters.b4;
  run.posblen = parameters.b0.value_or(parameters.b4);
  run.tog_gaps = parameters.gaps == Gaps::none ? no_gaps : parameters.gaps == Gaps::half ? with_half : all_gaps;
  run.tog_sim = parameters.similarity ? 1 : 0;
  run.every = parameters.every;
}

}  // namespace trimora::rooms

// Any bytes as an alignment. The last ones choose the parameters; all files are written.
#include "fuzz.h"

using namespace trimora::rooms;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider bytes(data, size);
  RunState run;
  const char type = bytes.PickValueInArray({'P', 'D', 'C'});
  run.tog_gaps = bytes.ConsumeIntegralInRange(1, 3);
  run.tog_sim = bytes.ConsumeIntegralInRange(0, 1);
  run.tog_viewfile = bytes.ConsumeIntegralInRange<char>(1, 3);
  run.breakcount = bytes.ConsumeIntegralInRange(50, 90);
  run.negblen = bytes.ConsumeIntegralInRange(0, 12);
  run.posblen = bytes.ConsumeIntegralInRange(2, 12);
  run.posblen2 = bytes.ConsumeIntegralInRange(2, 12);
  const int b1 = bytes.ConsumeIntegral<std::uint8_t>();
  const int b2 = bytes.ConsumeIntegral<std::uint8_t>();
  run.tog_maskfile = run.tog_psfile = run.tog_ncbfile = run.tog_ungappedfile = 1;

  const std::string text = bytes.ConsumeRemainingBytesAsString();
  if (foreign(text)) return 0;
  files_after({{"in", text}}, [&] {
    run.filename = "in";
    const Alignment ali = *openfile(run);
    run.seq_type = type;
    run.flankval = run.initnegval + b2 % (run.numseq - run.initnegval + 1);
    run.negval = run.initnegval + b1 % (run.flankval - run.initnegval + 1);
    calculate(run, ali);
    check_run(ali, run);
  });
  return 0;
}

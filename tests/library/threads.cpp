// Two threads read, select, explain, trim and write different alignments through the public header: threads EXAMPLES FOLDER
// Each has to get, every time, what one thread alone gets. Under ThreadSanitizer (preset `threads`) no access may race.
#include <trimora/trimora.h>

#include <cstdio>
#include <fstream>
#include <latch>
#include <sstream>
#include <string>
#include <thread>

namespace {

struct Job {
  std::string input, output;
  trimora::Parameters parameters;
  trimora::Form form;
};

std::string content(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

/// Everything that the library makes of an alignment, as one text; also when it refuses.
std::string all_of(const Job& job) {
  const trimora::Alignment ali = trimora::read(job.input);
  const trimora::Selection s = trimora::select(ali, job.parameters);
  const trimora::Alignment trimmed = trimora::trim(ali, s);
  trimora::write(trimmed, job.form, job.output);
  std::string all = content(job.output) + std::string(ali.format()) + std::string(ali.row(0));
  for (const std::string& reason : trimora::reasons(ali, job.parameters)) all += reason + '\n';
  for (const float score : s.scores) all += std::to_string(score) + '\n';
  all += trimora::write(trimora::read_text(trimora::write(ali, trimora::Form::fasta)), trimora::Form::nexus);
  try {
    trimora::read(job.input + ".missing");
  } catch (const trimora::Error& error) {
    all += error.what();
  }
  return all;
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc != 3) return 2;
  const std::string examples = argv[1], folder = argv[2];
  trimora::Parameters half;
  half.gaps = trimora::Gaps::half;
  half.b2 = trimora::percent(80);
  const Job jobs[] = {{examples + "/globins.fas", folder + "/protein.out", half, trimora::Form::phylip},
                      {examples + "/primates_mt.pir", folder + "/dna.out", {}, trimora::Form::trimora}};
  const std::string alone[] = {all_of(jobs[0]), all_of(jobs[1])};
  bool same[] = {true, true};
  std::latch both(2);
  const auto work = [&](std::size_t k) {
    both.arrive_and_wait();
    for (int round = 0; round < 20; ++round) same[k] = same[k] && all_of(jobs[k]) == alone[k];
  };
  {
    std::thread first(work, 0), second(work, 1);
    first.join();
    second.join();
  }
  if (alone[0].size() < 10000 || alone[1].size() < 10000 || !same[0] || !same[1]) {
    std::printf("two threads get something else than one: %d %d\n", same[0], same[1]);
    return 1;
  }
} catch (const trimora::Error& error) {
  std::printf("%s\n", error.what());
  return 1;
}

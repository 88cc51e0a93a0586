#include "ground/terminal.h"
#include "trimora_run/trimora_run.h"

int main(int argc, char* argv[]) {
  [[maybe_unused]] const Terminal terminal;
  return trimora_run(argc, argv);
}

#include "ground/terminal.h"
#include "trimora_run/entry.h"
#include "trimora_run/interruption.h"
#include "trimora_run/terminal.h"

int main(int argc, char* argv[]) {
  trimora::rooms::open_standard_streams();
  trimora::rooms::handle_interruptions();
  [[maybe_unused]] const Terminal terminal;
  return trimora::rooms::trimora_run_main(argc, argv);
}

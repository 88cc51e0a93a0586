#include "ground/terminal.h"
#include "trimora/entry.h"

int main(int argc, char* argv[]) {
  [[maybe_unused]] const Terminal terminal;
  return trimora::rooms::trimora_main(argc, argv);
}

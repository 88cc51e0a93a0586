#include "driver/entry.h"
#include "ground/terminal.h"

int main(int argc, char* argv[]) {
  [[maybe_unused]] const Terminal terminal;
  return trimora(argc, argv);
}

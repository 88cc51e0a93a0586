#include "driver/entry.h"

int main(int argc, char* argv[]) {
  return trimora_run(argc, argv);
}

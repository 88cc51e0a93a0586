#include "trimora_run/trimora_run.h"

int main(int argc, char* argv[]) {
  return trimora_run(argc, argv);
}

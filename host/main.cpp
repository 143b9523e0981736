// Entry point of compensa.

#include <fcntl.h>
#include <unistd.h>

#include "host/esecuzione.h"
#include "host/file_sicuro.h"

namespace {

// A standard descriptor that came closed would be given to the next file that is opened, and the
// report would end up in it. Opened for reading only, it refuses to be written.
void OccupaDescrittoriStandard() {
  for (const int descrittore : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (fcntl(descrittore, F_GETFD) < 0) open("/dev/null", O_RDONLY);
}

}  // namespace

int main(int argc, char** argv) {
  OccupaDescrittoriStandard();
  PreparaSegnali();
  return Programma(argc, argv);
}

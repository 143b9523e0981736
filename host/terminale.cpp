// The standard error, unbuffered, so that its lines keep their place among those of other programs.

#include "host/terminale.h"

#include <unistd.h>

#include <cerrno>
#include <string>

void ScriviErrori(std::string_view testo) {
  while (!testo.empty()) {
    const ssize_t scritti = write(STDERR_FILENO, testo.data(), testo.size());
    if (scritti < 0 && errno == EINTR) continue;
    if (scritti <= 0) return;
    testo.remove_prefix(static_cast<std::size_t>(scritti));
  }
}

void MostraMessaggi(const Diagnostica& diagnostica) {
  std::string testo;
  for (const std::string& riga : diagnostica.Righe()) testo += riga + "\n";
  ScriviErrori(testo);
}

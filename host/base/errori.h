#pragma once

// What can go wrong outside the network: faults of the operating system and of the command line.

#include <stdexcept>
#include <string>
#include <string_view>

namespace compensa {

// The reason of a failed system call in Italian, from its errno.
std::string Motivo(int codice);

// An output that could not be written; what() is the message, in Italian.
class ErroreUscita : public std::runtime_error {
 public:
  // "non si può <azione> <nome>: <motivo>"
  ErroreUscita(std::string_view azione, const std::string& nome, int codice);
  int Codice() const { return CodiceErrno; }

 private:
  int CodiceErrno;
};

// A command line or a choice of files that makes no sense; what() is the message, in Italian.
class ErroreUso : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The message when there is no memory left to make one with.
inline constexpr std::string_view kMemoriaInsufficiente =
    "compensa: errore: memoria insufficiente\n";

// Memory that a run needs and cannot have; what() tells how much, in Italian.
class ErroreMemoria : public std::runtime_error {
 public:
  // "memoria insufficiente: <bisogno>"
  explicit ErroreMemoria(const std::string& bisogno)
      : std::runtime_error("memoria insufficiente: " + bisogno) {}
};

}  // namespace compensa

#pragma once

// The report of a run, gathered in memory and written out when the run is over.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "kzt5cmrg/scrittore.h"

namespace compensa {

// Encodings in which the program writes its texts.
enum class Codifica { Utf8, Windows1252 };

// The report writer of the program. A text or a number that is wider than its column is written in
// full: columns may shift, nothing is lost. A value that was not given is written as "-".
class Rapporto final : public CFileOutTmp {
 public:
  void ScriviStringa(TTestoCr testo, int larghezza) override;
  void ScriviStringaLn(TTestoCr testo, int larghezza) override;
  void ScriviNumero(double valore, int larghezza, int decimali) override;
  void ScriviNumeroLn(double valore, int larghezza, int decimali) override;
  void ScriviSpazi(int n) override;
  void SaltaRiga(int n) override;

  // The report so far in Windows-1252, lines ended by '\n'.
  const std::string& Byte() const { return Testo; }

  // Passes the report on in the encoding asked for, in pieces of moderate size.
  void Versa(Codifica codifica, const std::function<void(std::string_view)>& scrivi) const;

 private:
  std::string Testo;
};

}  // namespace compensa

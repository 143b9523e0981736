#pragma once

// Messages on what was read: data first, text at the very end.

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/codici.h"
#include "host/base/soggetto.h"
#include "host/base/testi.h"

namespace compensa {

// Place of a record in a file: line and column count from 1, 0 = unknown. The column counts
// characters, not bytes.
struct Posizione {
  std::string_view File;  // outlives the messages
  int Riga = 0;
  int Colonna = 0;
};

enum class Gravita { Errore, Avviso };

// What is wrong with a record or a field. Every text may be empty; all are UTF-8.
struct Guasto {
  Codice Quale = Codice::Altro;
  Riguardo Riguarda = Riguardo::SecondoCodice;
  Soggetto Record = {};
  std::string Campo = {};  // key or column
  std::string Problema = {};
  std::string Trovato = {};  // what stands there, already quoted if it is a text
  std::string Voluto = {};   // what should stand there, as object of "serve"
  std::string Suggerimento = {};
};

struct Messaggio {
  Gravita Livello = Gravita::Errore;
  std::string File = {};
  int Riga = 0;     // from 1, 0 = unknown
  int Colonna = 0;  // likewise
  Guasto Cosa = {};
};

// The adjustments that a message concerns, by itself or by its code.
Riguardo RiguardoDi(const Guasto& guasto);

// A warning with its place.
Messaggio AvvisoSu(const Posizione& dove, Guasto guasto);

// What is wrong in words, without the place.
std::string TestoGuasto(const Guasto& guasto);

// The message on one line, without line end:
//   file:riga:colonna: errore: record, campo: problema: trovato x, serve y (suggerimento)
// without the word of its gravity if wanted.
std::string TestoMessaggio(const Messaggio& messaggio, bool conGravita = true);
std::vector<std::string> Testi(const std::vector<Messaggio>& messaggi, bool conGravita = true);

// Collects the messages of a reading, of a check. What is kept is bounded, whatever the file: the first
// errors, and of each code the first warnings; the others are counted.
class Diagnostica {
 public:
  static constexpr std::size_t kMostrati = 50;

  // Keeps so many warnings of each code.
  explicit Diagnostica(std::size_t avvisiPerCodice = kMostrati) : Massimo(avvisiPerCodice) {}

  // Files come out in the order in which they were named here, or in their first message.
  void NominaFile(std::string_view file);
  void Errore(const Posizione& dove, Guasto guasto);
  void Avviso(const Posizione& dove, Guasto guasto);
  // All that another one has collected.
  void Accoda(const Diagnostica& altra);

  std::size_t Errori() const { return NErrori; }
  std::size_t Avvisi() const { return NAvvisi; }
  bool HaErrori() const { return NErrori > 0; }
  // Adjustments that the warnings concern.
  Riguardo Riguarda() const { return Interessate; }
  // True when one more error would only be counted: no need to work out a suggestion for it.
  bool Colma() const { return NErrori >= kConservati; }

  // The messages that are shown: in file order all warnings kept and the first kMostrati errors, then
  // how many of each are not shown.
  std::vector<Messaggio> Messaggi() const;
  std::vector<std::string> Righe() const { return Testi(Messaggi()); }

 private:
  static constexpr std::size_t kConservati = 1000;  // errors kept for sorting

  void Aggiungi(Gravita livello, const Posizione& dove, Guasto guasto);

  std::size_t Massimo;
  std::vector<std::string> File;
  std::vector<Messaggio> Raccolti;
  std::array<std::size_t, static_cast<std::size_t>(Codice::NonMostrati) + 1> AvvisiPerCodice{};
  std::size_t NErrori = 0, NAvvisi = 0, NTaciuti = 0;
  Riguardo Interessate{}, DeiTaciuti{};
};

}  // namespace compensa

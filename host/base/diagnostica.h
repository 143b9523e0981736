#pragma once

// Messages on what was read: data first, text at the very end.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

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
  std::string Record = {};  // the record, for instance: punto "V1"
  std::string Campo = {};   // key or column
  std::string Problema = {};
  std::string Trovato = {};  // what stands there, already quoted if it is a text
  std::string Voluto = {};   // what should stand there, as object of "serve"
  std::string Suggerimento = {};
};

struct Messaggio {
  Gravita Livello = Gravita::Errore;
  std::string File;
  int Riga = 0;     // from 1, 0 = unknown
  int Colonna = 0;  // likewise
  Guasto Cosa;
};

// The message on one line, without line end:
//   file:riga:colonna: errore: record, campo: problema: trovato x, serve y (suggerimento)
std::string TestoMessaggio(const Messaggio& messaggio);

// A text of the file between quotes, cut to a readable length, with control characters and bytes that
// are not UTF-8 shown as \xNN.
std::string Cita(std::string_view testo);

// Names of records as messages show them.
std::string NomePunto(std::string_view punto);
std::string NomeStazione(std::string_view stazione);
std::string NomeOsservazione(std::string_view stazione, std::string_view punto);

// Collects the messages of one reading.
class Diagnostica {
 public:
  // Files come out in the order in which they were named here, or in their first message.
  void NominaFile(std::string_view file);
  void Errore(const Posizione& dove, Guasto guasto);
  void Avviso(const Posizione& dove, Guasto guasto);
  // Warnings that are not told one by one: Righe counts them at the end.
  void TaciAvvisi(std::size_t quanti) { NTaciuti += quanti; }

  std::size_t Errori() const { return NErrori; }
  std::size_t Avvisi() const { return NAvvisi; }
  bool HaErrori() const { return NErrori > 0; }
  // True when one more error would only be counted: no need to work out a suggestion for it.
  bool Colma() const { return NErrori >= kConservati; }

  // The messages that are shown, in file order: all warnings, and the first kMostrati errors.
  std::vector<Messaggio> Messaggi() const;
  // Their texts, and last how many warnings and errors are not shown.
  std::vector<std::string> Righe() const;

  static constexpr std::size_t kMostrati = 50;

 private:
  static constexpr std::size_t kConservati = 1000;  // errors kept for sorting; others are counted

  void Aggiungi(Gravita livello, const Posizione& dove, Guasto guasto);

  std::vector<std::string> File;
  std::vector<Messaggio> Raccolti;
  std::size_t NErrori = 0;
  std::size_t NAvvisi = 0;
  std::size_t NTaciuti = 0;
};

}  // namespace compensa

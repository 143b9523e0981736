#pragma once

// One record of an SDR book: its columns in the two versions of the format, and its fields.

#include <array>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "host/base/diagnostica.h"
#include "host/importazione/raccolta.h"

namespace compensa {

// Columns from 1, both included.
struct Colonne {
  int Da, A;
  std::string_view Nome = {};
};

inline constexpr Colonne kTipo{1, 2, "tipo di riga"};
inline constexpr Colonne kProvenienza{3, 4, "provenienza"};
inline constexpr Colonne kVersione{5, 20, "versione"};
inline constexpr Colonne kUnitaAngoli{41, 41, "unità degli angoli"};
inline constexpr Colonne kUnitaDistanze{42, 42, "unità delle distanze"};
inline constexpr Colonne kOrdine{45, 45, "ordine delle coordinate"};
inline constexpr Colonne kZeroVerticale{51, 51, "zero degli angoli verticali"};

struct Tracciato {
  Colonne Punto;  // of set-ups and of coordinates; the station of a shot
  std::array<Colonne, 3> Coordinate;
  Colonne Altezza, DescrizioneStazione, DescrizionePunto;
  Colonne Segnale;
  Colonne Mira, Distanza, Verticale, Direzione, Codice;
};

inline constexpr Tracciato kSdr33 = {
    .Punto = {5, 20, "punto"},
    .Coordinate = {{{21, 36, "coordinata"}, {37, 52, "coordinata"}, {53, 68, "quota"}}},
    .Altezza = {69, 84, "altezza strumentale"},
    .DescrizioneStazione = {85, 100},
    .DescrizionePunto = {69, 84},
    .Segnale = {5, 20, "altezza del prisma"},
    .Mira = {21, 36, "punto collimato"},
    .Distanza = {37, 52, "distanza inclinata"},
    .Verticale = {53, 68, "angolo verticale"},
    .Direzione = {69, 84, "direzione"},
    .Codice = {85, 100}};
inline constexpr Tracciato kSdr20 = {
    .Punto = {5, 8, "punto"},
    .Coordinate = {{{9, 18, "coordinata"}, {19, 28, "coordinata"}, {29, 38, "quota"}}},
    .Altezza = {39, 48, "altezza strumentale"},
    .DescrizioneStazione = {49, 64},
    .DescrizionePunto = {39, 54},
    .Segnale = {5, 14, "altezza del prisma"},
    .Mira = {9, 12, "punto collimato"},
    .Distanza = {13, 22, "distanza inclinata"},
    .Verticale = {23, 32, "angolo verticale"},
    .Direzione = {33, 42, "direzione"},
    .Codice = {43, 58}};

// The current record. Fields are read on request; a wrong one is empty and an error is out.
class RigaSdr {
 public:
  RigaSdr(std::string_view file, Diagnostica& diagnostica) : File(file), Diario(diagnostica) {}

  void Vai(const RigaTesto& riga) { Riga = riga; }
  std::string_view Intera() const { return Riga.Testo; }

  int Numero() const { return Riga.Numero; }

  // Without blanks around it; empty if the line ends before it.
  std::string Testo(const Colonne& c) const {
    return std::string(SenzaBianchi(Tratto(Riga.Testo, c.Da, c.A)));
  }
  std::string Nome(const Colonne& c);              // it is an error if it is blank
  std::optional<double> Numero(const Colonne& c);  // empty also if the field is blank
  std::optional<double> Metri(const Colonne& c);   // likewise
  // One digit out of those admitted.
  std::optional<double> Codice(const Colonne& c, std::string_view ammessi, std::string voluto);

  // The first character of the field that is not blank, or the place of the field.
  Posizione Dove(const Colonne& c) const;
  void Errore(const Colonne& c, std::string problema, std::string voluto = {},
              std::string suggerimento = {});
  // Says of the first record of a kind what holds for all of them.
  void AvvisaUnaVolta(const std::string& chiave, const Colonne& c, std::string problema,
                      std::string suggerimento);

  double MetriPerUnita = 1.0;  // of the lengths of the file

 private:
  std::string Record() const;

  std::string_view File;
  Diagnostica& Diario;
  RigaTesto Riga;
  std::set<std::string> Avvisati;
};

}  // namespace compensa

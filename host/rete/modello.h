#pragma once

// A network as the program holds it: the module's records, what they point to, and where each record
// was read, so that every message can name the place.

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "host/base/diagnostica.h"
#include "kzt5cmrg/record.h"

namespace compensa {

using namespace kzt5cmrg;  // codes and limits of the records

// Whether a value of a record was given.
constexpr bool Assegnato(double valore) { return valore < kNonDato; }

// Whether a distance of the kind is a slope one, of no use on the plane without its zenith angle.
constexpr bool Inclinata(int tipo) {
  return tipo == kInclinata || tipo == kInclinataTipo6 || tipo == kInclinataTipo7;
}

// What the file says of the project; passed on to the outputs.
struct Progetto {
  std::string Nome;         // UTF-8
  std::optional<int> Epsg;  // code of the coordinate system
};

// Roles of a point as the file gives them; a job may lower those of the record to kNonUsato.
struct RuoliPunto {
  int Pla = kIncognito;
  int Alt = kIncognito;
};

// Where the options stand; of one that the file does not give, the table where it would.
struct PosizioniOpzioni {
  Posizione SqmDirezione, SqmDistCostante, SqmDistProporzionale, Cartografiche;
  Posizione Coefficiente, Raggio;  // of the curvature and refraction
  Posizione Epsg;                  // of the project
};

// The network read from a file. Records address each other by index; texts and vectors of the
// records point into the storage here. Movable, not copyable: a copy would point into the original.
struct Rete {
  Rete() = default;
  Rete(Rete&&) = default;
  Rete& operator=(Rete&&) = default;
  Rete(const Rete&) = delete;
  Rete& operator=(const Rete&) = delete;

  Progetto DatiProgetto;
  TOpzCr Opzioni{};
  CCalcDsOr CurvaturaRifrazione{};
  std::vector<TCoorCr> Punti;
  std::vector<TStaCr> Stazioni;

  std::vector<std::string> Nomi;      // of the points, UTF-8
  std::vector<std::string> NomiAnsi;  // the same in Windows-1252: TCoorCr::Nome points here
  std::vector<std::vector<TOssCr>>
      Osservazioni;  // of each station: TStaCr::Osservazioni points here

  std::vector<RuoliPunto> RuoliIniziali;  // of the points
  // Points whose plane coordinates were computed, not given: 1; empty before that.
  std::vector<char> PiantaCalcolata;

  std::deque<std::string> NomiFile;   // the files read, as a message names them
  std::vector<std::string> Impronte;  // SHA-256 of what was read of each; empty if not asked for
  PosizioniOpzioni DoveOpzioni;
  std::vector<Posizione> PosizioniPunti;
  std::vector<Posizione> PosizioniStazioni;
  std::vector<std::vector<Posizione>> PosizioniOsservazioni;
};

}  // namespace compensa

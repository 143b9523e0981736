#pragma once

// A field book as the readers of foreign formats find it: shots as they were read, before faces are
// joined and before anything that the book lacks is completed.
//
// Whatever the file says in its own units stands here in metres and gon, directions clockwise, zenith
// angles from the zenith. A value that the file does not give is empty, never zero.

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/rete/modello.h"

namespace compensa {

// A role that the file states; empty where it states none.
struct RuoliLetti {
  std::optional<int> Pla;
  std::optional<int> Alt;
};

// Coordinates of a field book are approximations, unless its format says that a point is fixed.
struct PuntoLibretto {
  std::string Nome;  // UTF-8, padding removed
  std::optional<double> Est, Nord, Quota;
  RuoliLetti Ruoli;
  Posizione Dove;
};

// Face of the instrument: Ignota = the format does not say, the zenith angle may.
enum class Faccia { Ignota, Prima, Seconda };

// One shot. Direction and zenith angle are as read, on whichever face.
struct BattutaLibretto {
  std::string Punto;
  Faccia Lato = Faccia::Ignota;
  std::optional<double> Direzione;
  std::optional<double> Zenit;
  std::optional<double> Segnale;  // height of the target
  std::optional<double> Distanza;
  int TipoDist = kInclinata;
  std::optional<double> SqmDirezione;  // [gon], where the format gives them by observation
  std::optional<double> SqmDistanza;   // [m]
  double SqmDistProporzionale = 0.0;   // what it grows by with the distance [m/km]
  Posizione Dove;
};

// One set-up of the instrument with its own circle; a point may have several.
struct PostazioneLibretto {
  std::string Punto;
  std::optional<double> Altezza;
  bool AltezzaNota = true;
  std::optional<double> EccDistanza, EccDirezione;
  std::vector<BattutaLibretto> Battute;  // in reading order
  Posizione Dove;
};

// Records that were read and not carried over, all of one kind and for one reason.
struct Tralasciati {
  std::string Genere;  // as the surveyor knows it, plural: "righe di livellazione (WI 330-336)"
  std::string Motivo;
  int Quanti = 0;
  int PrimaRiga = 0;
  std::string_view File = {};  // of that line, once several books are joined
};

// Options that a file states for the whole network.
struct OpzioniLibretto {
  std::optional<double> SqmDirezione;          // [gon], of an angle between two directions
  std::optional<double> SqmDistCostante;       // [m]
  std::optional<double> SqmDistProporzionale;  // [m/km]
  std::optional<int> TipoCalcolo;              // bits of Calcolo
  std::optional<int> Iterazioni;
  std::optional<bool> Cartografiche;
  std::optional<CCalcDsOr> CurvaturaRifrazione;
};

struct Libretto {
  Progetto DatiProgetto;
  OpzioniLibretto Opzioni;
  std::vector<PuntoLibretto> Punti;
  std::vector<PostazioneLibretto> Postazioni;
  std::vector<Tralasciati> Esclusi;
  std::vector<std::string> Note;     // notes of the surveyor that the file carries, UTF-8
  std::deque<std::string> NomiFile;  // positions point here

  // Counts records that are not carried over; riga is the line of the first. file lies in NomiFile.
  void Tralascia(const std::string& genere, const std::string& motivo, int riga, int quanti = 1,
                 std::string_view file = {});
};

}  // namespace compensa

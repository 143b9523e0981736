#pragma once

// What a call of compensa importa asks for.

#include <optional>
#include <string>
#include <vector>

namespace compensa {

// Which way the axes of ambiguous coordinates point: first letter X, second letter Y.
enum class Assi { EstNord, NordEst };

// How angles without an unambiguous notation are written in a field book.
enum class UnitaAngoli {
  Gon,
  GradiDecimali,  // 57.5412 = decimal degrees
  GradiCompatti,  // 57.32284 = 57 deg 32' 28.4"
  GradiPrimi,     // 57-32-28.4
};

enum class ModoFacce {
  Media,     // the two faces of a target become one observation
  Separate,  // face II is turned into face I and kept as an observation of its own
};

// What the readers themselves need to know.
struct OpzioniLettura {
  std::optional<UnitaAngoli> Angoli;       // CSV
  std::optional<Assi> AssiXY;              // of columns or fields named X and Y
  std::optional<std::string> Mappa;        // CSV: file that maps foreign headers to ours
  std::optional<std::string> Stazione;     // name of the set-up of a file that has none
  std::optional<double> AltezzaStrumento;  // of that set-up [m]
  std::optional<int> CodiceStazioneGsi;    // code of WI 41 that marks a set-up
  bool SegnalePersistente = false;         // GSI: a target height holds until the next one
  bool IgnoraNonSupportati = false;  // gkf: leave out what cannot be carried instead of refusing
};

struct OpzioniImporta {
  std::vector<std::string> File;
  std::string Uscita;                  // network file in TOML; "-" = standard output
  std::optional<std::string> Formato;  // name of a reader; empty = by content
  OpzioniLettura Lettura;

  ModoFacce Facce = ModoFacce::Media;
  bool Medie = false;              // repeated shots of a set-up become their mean
  std::vector<std::string> Fissi;  // fixed in plan and in height where they have a height
  std::vector<std::string> FissiPlanimetria;
  std::vector<std::string> FissiAltimetria;
  std::vector<std::string> Escludi;            // points left out, with the shots to them
  std::optional<std::string> Coordinate;       // CSV table of points
  std::optional<double> SqmDirezione;          // [gon]
  std::optional<double> SqmDistCostante;       // [m]
  std::optional<double> SqmDistProporzionale;  // [m/km]
  std::optional<std::string> Nome;             // of the project
  std::optional<int> Epsg;
  std::optional<int> TipoCalcolo;  // bits of Calcolo
  bool Cartografiche = false;
  bool Curvatura = false;          // apply curvature and refraction
  bool SenzaApprossimate = false;  // leave coordinates that the book lacks to compensa
  bool Quieto = false;
};

}  // namespace compensa

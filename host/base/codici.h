#pragma once

// What messages say, each kind of them under a name of its own that programs can rely on.

#include <cstdint>
#include <span>
#include <string_view>

namespace compensa {

// Which of the two adjustments a message concerns.
enum class Riguardo : std::uint8_t {
  SecondoCodice = 0,
  Planimetria = 1,
  Altimetria = 2,
  Entrambe = 3
};

constexpr Riguardo operator|(Riguardo a, Riguardo b) {
  return static_cast<Riguardo>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr Riguardo RiguardoDi(bool planimetria) {
  return planimetria ? Riguardo::Planimetria : Riguardo::Altimetria;
}
constexpr bool Comprende(Riguardo riguardo, bool planimetria) {
  return (static_cast<unsigned>(riguardo) & static_cast<unsigned>(RiguardoDi(planimetria))) != 0;
}

// In the order of the table in codici.cpp.
enum class Codice : std::uint8_t {
  Altro,
  // Reading of files
  FileNonLetto,
  Sintassi,
  NumeroNonAmmesso,
  ParolaSconosciuta,
  ChiaveSconosciuta,
  ChiaveMancante,
  TipoSbagliato,
  NomeNonValido,
  PuntoSconosciuto,
  PuntoDoppio,
  VisualeSuSeStessa,
  SqmMancante,
  ValoreIncompleto,
  // Import of field books
  SqmAssunto,
  SqmDiversi,
  FacceDiscordi,
  FacceNonUnite,
  MediaDiscorde,
  CoordinateDiverse,
  CoordinateNonImportate,
  OpzioneSenzaEffetto,
  // Coordinates that the file does not give
  PuntoNonRaggiunto,
  QuotaNonRaggiunta,
  // Records that an adjustment passes over
  FissoNonUsato,
  PuntoSenzaCoordinate,
  PuntoSenzaQuota,
  StazioneVuota,
  StazioneEsclusa,
  OsservazioneVuota,
  PuntoOsservatoEscluso,
  DirezioneSola,
  DistanzaSenzaZenit,
  DistanzaSenzaDirezione,
  DistanzaNonRiducibile,
  EstremiCoincidenti,
  VisualeInQuotaIncompleta,
  VisualeSenzaPeso,
  AltezzaStrumentoMancante,
  AltezzaStrumentoIndeterminata,
  AltezzaSegnaleMancante,
  // What hangs together
  GruppoStaccato,
  PuntoSenzaOsservazioni,
  PuntoIndeterminato,
  // Values that were hardly read that way
  ZenitVerticale,
  ZenitOltreMezzoGiro,
  AngoloVerticale,
  AltezzaStrumentoInverosimile,
  AltezzaSegnaleInverosimile,
  VisualeRipetuta,
  NomiSimili,
  PuntiCoincidenti,
  // Closures
  DistanzaNonTorna,
  DislivelloNonTorna,
  TriangoloNonChiude,
  ChiusureNonTornano,
  // Readings, coordinates and options against each other
  CoordinateDiscordi,
  LetturaDiscorde,
  EstNordScambiati,
  RiduzioniMancanti,
  FusoIgnoto,
  FuoriFuso,
  NordFuoriItalia,
  DistanzaSenzaQuote,
  VersoSbagliato,
  DirezioniInGradi,
  ScalaDistanze,
  SqmInverosimile,
  RifrazioneInverosimile,
  RaggioInverosimile,
  EpsgNonPiano,
  EpsgIgnoto,
  EpsgDiscorde,
  // After the adjustment
  RidondanzaNulla,
  SigmaZeroGrande,
  SigmaZeroPiccolo,
  WOltreLimite,
  DislivelliImprecisi,
  PuntiSenzaControllo,
  LettureSenzaControllo,
  ApprossimateLontane,
  TipoDistanzaSbagliato,
  // Of the messages themselves
  NonMostrati,
};

struct VoceCodice {
  Codice Quale;
  std::string_view Parola;  // stable: what programs read
  Riguardo Riguarda = Riguardo::Entrambe;
};

// All of them, in the order of Codice.
std::span<const VoceCodice> Codici();

const VoceCodice& VoceDi(Codice codice);

}  // namespace compensa

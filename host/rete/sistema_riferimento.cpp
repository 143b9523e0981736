// Table of the plane systems in use in Italy, all transverse Mercator with its origin on the
// equator, and their definitions in the notation of OGC 01-009 (WKT 1).

#include "host/rete/sistema_riferimento.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "host/base/numeri.h"
#include "host/base/unita.h"

namespace compensa {

namespace {

struct Geografico {
  int Codice;
  std::string_view Nome;
  std::string_view Datum;  // with its ellipsoid and code
};

constexpr std::string_view kMonteMario =
    R"(DATUM["Monte_Mario",SPHEROID["International 1924",6378388,297,)"
    R"(AUTHORITY["EPSG","7022"]],AUTHORITY["EPSG","6265"]])";
constexpr std::string_view kEd50 =
    R"(DATUM["European_Datum_1950",SPHEROID["International 1924",6378388,297,)"
    R"(AUTHORITY["EPSG","7022"]],AUTHORITY["EPSG","6230"]])";
constexpr std::string_view kRdn2008 =
    R"(DATUM["Rete_Dinamica_Nazionale_2008",SPHEROID["GRS 1980",6378137,298.257222101,)"
    R"(AUTHORITY["EPSG","7019"]],AUTHORITY["EPSG","1132"]])";
constexpr std::string_view kEtrs89 =
    R"(DATUM["European_Terrestrial_Reference_System_1989",SPHEROID["GRS 1980",6378137,)"
    R"(298.257222101,AUTHORITY["EPSG","7019"]],AUTHORITY["EPSG","6258"]])";
constexpr std::string_view kIgm95 =
    R"(DATUM["Istituto_Geografico_Militaire_1995",SPHEROID["GRS 1980",6378137,298.257222101,)"
    R"(AUTHORITY["EPSG","7019"]],AUTHORITY["EPSG","6670"]])";

constexpr std::string_view kWgs84 =
    R"(DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563,AUTHORITY["EPSG","7030"]],)"
    R"(AUTHORITY["EPSG","6326"]])";

constexpr std::array<Geografico, 6> kGeografici{{{4326, "WGS 84", kWgs84},
                                                 {4265, "Monte Mario", kMonteMario},
                                                 {4230, "ED50", kEd50},
                                                 {6706, "RDN2008", kRdn2008},
                                                 {4258, "ETRS89", kEtrs89},
                                                 {4670, "IGM95", kIgm95}}};

enum class Assi { EstNord, NordEst };  // order in which the register lists the coordinates

struct Piano {
  int Codice;
  std::string_view Nome;
  int Geografico;
  int Meridiano;  // central [degrees from Greenwich]
  double Scala;
  int FalsoEst;  // [m]
  Assi Ordine = Assi::EstNord;
};

constexpr int InMetri(double km) { return static_cast<int>(km * kMetriPerKm); }
constexpr int kFusoUtm = InMetri(kFalsoEstUtm);
constexpr int kFusoOvest = InMetri(kFalsoEstOvest);
constexpr int kFusoEst = InMetri(kFalsoEstEst);
constexpr int kGaussBoagaOvest = 3003;
constexpr int kGaussBoagaEst = 3004;

constexpr std::array<Piano, 23> kPiani{{
    {kGaussBoagaOvest, "Monte Mario / Italy zone 1", 4265, 9, kScalaCentrale, kFusoOvest},
    {kGaussBoagaEst, "Monte Mario / Italy zone 2", 4265, 15, kScalaCentrale, kFusoEst},
    {23032, "ED50 / UTM zone 32N", 4230, 9, kScalaCentrale, kFusoUtm},
    {23033, "ED50 / UTM zone 33N", 4230, 15, kScalaCentrale, kFusoUtm},
    {23034, "ED50 / UTM zone 34N", 4230, 21, kScalaCentrale, kFusoUtm},
    {7791, "RDN2008 / UTM zone 32N", 6706, 9, kScalaCentrale, kFusoUtm},
    {7792, "RDN2008 / UTM zone 33N", 6706, 15, kScalaCentrale, kFusoUtm},
    {7793, "RDN2008 / UTM zone 34N", 6706, 21, kScalaCentrale, kFusoUtm},
    {7794, "RDN2008 / Italy zone (E-N)", 6706, 12, 0.9985, 7000000},
    {7795, "RDN2008 / Zone 12 (E-N)", 6706, 12, 1, 3000000},
    {6707, "RDN2008 / UTM zone 32N (N-E)", 6706, 9, kScalaCentrale, kFusoUtm, Assi::NordEst},
    {6708, "RDN2008 / UTM zone 33N (N-E)", 6706, 15, kScalaCentrale, kFusoUtm, Assi::NordEst},
    {6709, "RDN2008 / UTM zone 34N (N-E)", 6706, 21, kScalaCentrale, kFusoUtm, Assi::NordEst},
    {6875, "RDN2008 / Italy zone (N-E)", 6706, 12, 0.9985, 7000000, Assi::NordEst},
    {6876, "RDN2008 / Zone 12 (N-E)", 6706, 12, 1, 3000000, Assi::NordEst},
    {25832, "ETRS89 / UTM zone 32N", 4258, 9, kScalaCentrale, kFusoUtm},
    {25833, "ETRS89 / UTM zone 33N", 4258, 15, kScalaCentrale, kFusoUtm},
    {25834, "ETRS89 / UTM zone 34N", 4258, 21, kScalaCentrale, kFusoUtm},
    {32632, "WGS 84 / UTM zone 32N", 4326, 9, kScalaCentrale, kFusoUtm},
    {32633, "WGS 84 / UTM zone 33N", 4326, 15, kScalaCentrale, kFusoUtm},
    {32634, "WGS 84 / UTM zone 34N", 4326, 21, kScalaCentrale, kFusoUtm},
    {3064, "IGM95 / UTM zone 32N", 4670, 9, kScalaCentrale, kFusoUtm},
    {3065, "IGM95 / UTM zone 33N", 4670, 15, kScalaCentrale, kFusoUtm},
}};

// Codes that cannot be those of plane coordinates in metres: geographic and geocentric systems and
// systems of heights.
constexpr std::array kNonPiani = {4230, 4258, 4265, 4326, 4670, 4806, 4937, 4978, 4979,
                                  5214, 5773, 6704, 6705, 6706, 9721, 9722, 7409};

// Codes of the register for what every definition names.
constexpr int kGreenwich = 8901;
constexpr int kGrado = 9122;
constexpr int kMetro = 9001;

constexpr std::string_view kNomeIgnoto = "coordinate piane senza sistema di riferimento dichiarato";

std::string Autorita(int codice) {
  return R"(AUTHORITY["EPSG",")" + std::to_string(codice) + "\"]";
}

std::string Wkt(const Piano& piano) {
  const auto& g = *std::find_if(kGeografici.begin(), kGeografici.end(),
                                [&](const Geografico& x) { return x.Codice == piano.Geografico; });
  const auto parametro = [](std::string_view nome, const std::string& valore) {
    return "PARAMETER[\"" + std::string(nome) + "\"," + valore + "],";
  };
  const std::string_view assi = piano.Ordine == Assi::EstNord
                                    ? R"(AXIS["Easting",EAST],AXIS["Northing",NORTH],)"
                                    : R"(AXIS["Northing",NORTH],AXIS["Easting",EAST],)";
  std::string wkt = "PROJCS[\"" + std::string(piano.Nome) + "\",GEOGCS[\"" + std::string(g.Nome);
  wkt += "\"," + std::string(g.Datum) + R"(,PRIMEM["Greenwich",0,)" + Autorita(kGreenwich);
  wkt += R"(],UNIT["degree",0.0174532925199433,)" + Autorita(kGrado) + "]," + Autorita(g.Codice);
  wkt += R"(],PROJECTION["Transverse_Mercator"],)" + parametro("latitude_of_origin", "0");
  wkt += parametro("central_meridian", std::to_string(piano.Meridiano));
  wkt += parametro("scale_factor", NumeroBreve(piano.Scala));
  wkt +=
      parametro("false_easting", std::to_string(piano.FalsoEst)) + parametro("false_northing", "0");
  wkt += R"(UNIT["metre",1,)" + Autorita(kMetro) + "]," + std::string(assi);
  return wkt + Autorita(piano.Codice) + "]";
}

// Null for a code outside the table.
const Piano* Cerca(int codice) {
  for (const Piano& piano : kPiani)
    if (piano.Codice == codice) return &piano;
  return nullptr;
}

// falsoEst is the one that the coordinates show, 0 if they show none.
SistemaRiferimento DiCodice(int codice, double falsoEst, std::string nota) {
  const Piano* piano = Cerca(codice);
  if (piano == nullptr) return {codice, "EPSG:" + std::to_string(codice), "", std::move(nota)};
  if (falsoEst > 0.0 && falsoEst != piano->FalsoEst)
    nota += "; attenzione: le coordinate hanno un falso Est di " + NumeroBreve(falsoEst) +
            " m, il codice di " + std::to_string(piano->FalsoEst) + " m";
  if (piano->Ordine == Assi::NordEst)
    nota +=
        "; il codice elenca prima il Nord e poi l'Est: nelle geometrie x resta l'Est e y il Nord";
  return {codice, std::string(piano->Nome), Wkt(*piano), std::move(nota)};
}

SistemaRiferimento DaFalsoEst(double falsoEst) {
  const auto nota = [](std::string_view zona) {
    return "fuso " + std::string(zona) +
           " riconosciuto dal falso Est: il file della rete non dà epsg";
  };
  if (falsoEst == kFusoOvest)
    return DiCodice(kGaussBoagaOvest, falsoEst, nota("Gauss-Boaga Ovest"));
  if (falsoEst == kFusoEst) return DiCodice(kGaussBoagaEst, falsoEst, nota("Gauss-Boaga Est"));
  if (falsoEst == kFusoUtm)
    return {
        0, std::string(kNomeIgnoto), "",
        "falso Est di 500 km: il fuso non si può sapere dalle coordinate; per averlo serve epsg "
        "nel file della rete"};
  return {0, std::string(kNomeIgnoto), "",
          "il file della rete non dice il sistema delle coordinate (manca epsg): possono essere "
          "locali"};
}

}  // namespace

GenereCodice GenereDi(int epsg) {
  if (epsg <= 0 || std::find(kNonPiani.begin(), kNonPiani.end(), epsg) != kNonPiani.end())
    return GenereCodice::NonPiano;
  return Cerca(epsg) == nullptr ? GenereCodice::Ignoto : GenereCodice::Piano;
}

PianoNoto PianoDi(int epsg) {
  const Piano* piano = Cerca(epsg);
  return {piano->Nome, static_cast<double>(piano->FalsoEst)};
}

SistemaRiferimento RiconosciSistema(const Risultati& r) {
  const std::optional<int> dato = r.DatiProgetto.Epsg;
  if (!dato) return DaFalsoEst(r.FalsoEst);
  if (GenereDi(*dato) != GenereCodice::NonPiano)
    return DiCodice(*dato, r.FalsoEst, "codice dato dal file della rete");
  return {0, std::string(kNomeIgnoto), "",
          "il codice EPSG " + std::to_string(*dato) +
              " del file della rete non è quello di un sistema di coordinate piane"};
}

std::string TestoSistema(const SistemaRiferimento& sistema) {
  if (sistema.Codice <= 0) return sistema.Nota;
  const std::string codice = "EPSG:" + std::to_string(sistema.Codice);
  return codice + (sistema.Nome == codice ? "" : " " + sistema.Nome) + "; " + sistema.Nota;
}

}  // namespace compensa

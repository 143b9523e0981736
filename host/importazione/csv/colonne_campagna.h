#pragma once

// The columns of a field book in CSV, their titles, and the words that stand in them.

#include <array>
#include <cstddef>
#include <string_view>

#include "host/file_rete/csv.h"
#include "host/importazione/csv/titoli_csv.h"
#include "host/rete/campi.h"

namespace compensa {

// clang-format off
// In the order of kColonneCampagna.
enum ColonnaCampagna : std::size_t {
  kCStazione, kCAltezza, kCNota, kCEccDist, kCEccDir, kCGiro, kCPunto, kCFaccia, kCDir, kCZen,
  kCDist, kCDistIncl, kCDistOrizz, kCTipo, kCSegnale, kCSqmDir, kCSqmMgon, kCSqmCc, kCSqmDist,
  kCSqmMm, kCSqmZen, kCEst, kCNord, kCQuota, kCCommento, kCCodice,
};
// By the names under which messages speak of them.
inline constexpr std::array<ColonnaCsv, 26> kColonneCampagna{{
    {"stazione"}, {"hs"}, {"altezza_nota"}, {"ecc_distanza"}, {"ecc_direzione"}, {"giro"},
    {"a", true}, {"faccia"}, {"dir"}, {"zen"}, {"dist"}, {"dist_inclinata"}, {"dist_orizzontale"},
    {"tipo"}, {"hp"}, {"sqm_dir"}, {"sqm_dir_mgon"}, {"sqm_dir_cc"}, {"sqm_dist"}, {"sqm_dist_mm"},
    {"sqm_zen"}, {"est"}, {"nord"}, {"quota"}, {"note"}, {"codice"},
}};

// Titles of angles that do not say where they count from ("verticale", "V") are not among them.
inline constexpr SinonimoCsv kSinonimiCampagna[] = {
    {"stazione", kCStazione}, {"staz", kCStazione}, {"da", kCStazione}, {"from", kCStazione},
    {"station", kCStazione}, {"punto_stazione", kCStazione}, {"punto_di_stazione", kCStazione},
    {"nome_stazione", kCStazione},
    {"hs", kCAltezza}, {"altezza", kCAltezza}, {"hi", kCAltezza}, {"h_stazione", kCAltezza},
    {"h_strumento", kCAltezza}, {"altezza_strumento", kCAltezza},
    {"altezza_dello_strumento", kCAltezza}, {"altezza_strumentale", kCAltezza},
    {"altezza_stazione", kCAltezza}, {"instrument_height", kCAltezza},
    {"altezza_nota", kCNota}, {"hs_nota", kCNota},
    {"ecc_distanza", kCEccDist}, {"eccentricita_distanza", kCEccDist},
    {"ecc_direzione", kCEccDir}, {"eccentricita_direzione", kCEccDir},
    {"giro", kCGiro}, {"strato", kCGiro}, {"serie", kCGiro}, {"messa_in_stazione", kCGiro},
    {"set", kCGiro}, {"round", kCGiro},
    {"a", kCPunto}, {"punto", kCPunto}, {"to", kCPunto}, {"target", kCPunto}, {"mira", kCPunto},
    {"collimato", kCPunto}, {"battuto", kCPunto}, {"punto_collimato", kCPunto},
    {"punto_battuto", kCPunto}, {"punto_osservato", kCPunto}, {"punto_mirato", kCPunto},
    {"faccia", kCFaccia}, {"cerchio", kCFaccia}, {"posizione", kCFaccia}, {"face", kCFaccia},
    {"dir", kCDir}, {"direzione", kCDir}, {"hz", kCDir}, {"ha", kCDir}, {"azimutale", kCDir},
    {"angolo_orizzontale", kCDir}, {"angolo_azimutale", kCDir}, {"direzione_azimutale", kCDir},
    {"lettura_azimutale", kCDir}, {"lettura_orizzontale", kCDir}, {"direction", kCDir},
    {"zen", kCZen}, {"zenit", kCZen}, {"zenitale", kCZen}, {"za", kCZen}, {"zenith", kCZen},
    {"angolo_zenitale", kCZen}, {"distanza_zenitale", kCZen}, {"lettura_zenitale", kCZen},
    {"dist", kCDist}, {"distanza", kCDist}, {"distance", kCDist},
    {"dist_inclinata", kCDistIncl}, {"distanza_inclinata", kCDistIncl}, {"di", kCDistIncl},
    {"sd", kCDistIncl}, {"slope_distance", kCDistIncl},
    {"dist_orizzontale", kCDistOrizz}, {"distanza_orizzontale", kCDistOrizz},
    {"dist_ridotta", kCDistOrizz}, {"distanza_ridotta", kCDistOrizz}, {"hd", kCDistOrizz},
    {"horizontal_distance", kCDistOrizz},
    {"tipo", kCTipo}, {"tipo_distanza", kCTipo}, {"tipo_dist", kCTipo},
    {"hp", kCSegnale}, {"segnale", kCSegnale}, {"prisma", kCSegnale}, {"h_prisma", kCSegnale},
    {"altezza_prisma", kCSegnale}, {"altezza_segnale", kCSegnale}, {"altezza_mira", kCSegnale},
    {"altezza_del_prisma", kCSegnale}, {"altezza_del_segnale", kCSegnale}, {"hr", kCSegnale},
    {"target_height", kCSegnale},
    {"sqm_dir", kCSqmDir}, {"sqm_direzione", kCSqmDir}, {"sqm_dir_gon", kCSqmDir},
    {"sqm_dir_mgon", kCSqmMgon}, {"sqm_direzione_mgon", kCSqmMgon}, {"sqm_dir_cc", kCSqmCc},
    {"sqm_direzione_cc", kCSqmCc}, {"sqm_dist", kCSqmDist}, {"sqm_distanza", kCSqmDist},
    {"sqm_dist_m", kCSqmDist}, {"sqm_dist_mm", kCSqmMm}, {"sqm_distanza_mm", kCSqmMm},
    {"sqm_zen", kCSqmZen}, {"sqm_zenit", kCSqmZen}, {"sqm_zen_cc", kCSqmZen},
    {"sqm_zen_mgon", kCSqmZen},
    {"est", kCEst}, {"e", kCEst}, {"east", kCEst}, {"nord", kCNord}, {"n", kCNord},
    {"north", kCNord}, {"quota", kCQuota}, {"q", kCQuota}, {"z", kCQuota},
    {"note", kCCommento}, {"nota", kCCommento}, {"descrizione", kCCommento},
    {"commento", kCCommento}, {"codice", kCCodice}, {"code", kCCodice},
};

inline constexpr std::array<ParolaNota, 14> kParoleFaccia{{
    {"I", 1}, {"II", 2}, {"1", 1}, {"2", 2}, {"CS", 1}, {"CD", 2}, {"C.S.", 1}, {"C.D.", 2},
    {"C.S", 1}, {"C.D", 2}, {"sinistra", 1}, {"destra", 2}, {"F1", 1}, {"F2", 2},
}};
inline constexpr std::array<ParolaNota, 5> kParoleTipoBrevi{{
    {"i", kInclinata}, {"o", kOrizzontale}, {"ridotta", kOrizzontale}, {"sd", kInclinata},
    {"hd", kOrizzontale},
}};
// clang-format on

inline constexpr double kSqmDirMassimo = 0.1;   // [gon]; more is a number in another unit
inline constexpr double kSqmDistMassimo = 1.0;  // [m]; likewise

// A standard deviation in the unit of its column; above the largest it is a number in another unit.
struct ColonnaSqm {
  ColonnaCampagna Quale;
  RegolaNumero Regola;
  double Massimo;
  double Unita;  // [gon] or [m]
};
constexpr RegolaNumero RegolaSqm(std::string_view nome, std::string_view unita) {
  return {nome, unita, 0.0, kNonDato, true};
}
inline constexpr std::array<ColonnaSqm, 3> kSqmDirezioni{{
    {kCSqmDir, RegolaSqm("sqm_dir", "gon"), kSqmDirMassimo, 1.0},
    {kCSqmMgon, RegolaSqm("sqm_dir_mgon", "mgon"), kSqmDirMassimo / kGonPerMgon, kGonPerMgon},
    {kCSqmCc, RegolaSqm("sqm_dir_cc", "cc"), kSqmDirMassimo / kGonPerCc, kGonPerCc},
}};
inline constexpr std::array<ColonnaSqm, 2> kSqmDistanze{{
    {kCSqmDist, RegolaSqm("sqm_dist", "m"), kSqmDistMassimo, 1.0},
    {kCSqmMm, RegolaSqm("sqm_dist_mm", "mm"), kSqmDistMassimo / kMetriPerMm, kMetriPerMm},
}};

}  // namespace compensa

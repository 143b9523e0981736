#pragma once

// What each field of a network file may hold: the rules that the TOML and the CSV reader share.

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "host/base/diagnostica.h"
#include "host/base/unita.h"
#include "kzt5cmrg/record.h"

namespace compensa {

using namespace kzt5cmrg;  // codes and limits of the records

// What a network file may ask for, and what holds where it is silent.
inline constexpr int kIterazioniMassime = 1000;
inline constexpr double kCoefficientePredefinito = 0.13;  // of refraction
inline constexpr double kRaggioPredefinito = 6378000.0;   // of the earth [m]

// Range of a number. No value may reach kNonDato, where the records begin to mean "not given".
struct RegolaNumero {
  std::string_view Nome;   // key or column
  std::string_view Unita;  // empty = none
  double Minimo = -kNonDato;
  double Massimo = kNonDato;
  bool MinimoEscluso = false;
};

inline constexpr RegolaNumero kEst{"est", "m"};
inline constexpr RegolaNumero kNord{"nord", "m"};
inline constexpr RegolaNumero kQuota{"quota", "m"};
inline constexpr RegolaNumero kAltezza{"altezza", "m"};
inline constexpr RegolaNumero kSegnale{"segnale", "m"};
inline constexpr RegolaNumero kDirezione{"direzione", "gon", 0.0, kGiroGon};
inline constexpr RegolaNumero kZenit{"zenit", "gon", 0.0, kGiroGon};
inline constexpr double kOrizzonte = kRettoGon;  // zenith angle of a horizontal sight
inline constexpr RegolaNumero kDistanza{"distanza", "m", 0.0, kNonDato, true};
inline constexpr RegolaNumero kEccDistanza{"ecc_distanza", "m", 0.0};
inline constexpr RegolaNumero kEccDirezione{"ecc_direzione", "gon", 0.0, kGiroGon};
inline constexpr RegolaNumero kSqmDirezione{"sqm_direzione", "gon", 0.0};
inline constexpr RegolaNumero kSqmDistCostante{"sqm_distanza_costante", "m", 0.0};
inline constexpr RegolaNumero kSqmDistProporzionale{"sqm_distanza_proporzionale", "m/km", 0.0};
inline constexpr RegolaNumero kCoefficiente{"coefficiente", ""};
inline constexpr RegolaNumero kRaggio{"raggio", "m", 0.0, kNonDato, true};

// The same rule under the name that a field has elsewhere.
constexpr RegolaNumero Rinominata(RegolaNumero regola, std::string_view nome) {
  regola.Nome = nome;
  return regola;
}

bool Ammesso(const RegolaNumero& regola, double valore);

// "un numero da 0 a 400 [gon]"
std::string NumeroVoluto(const RegolaNumero& regola);

// The fault of a value that is not Ammesso; trovato is how the file writes it.
Guasto GuastoNumero(Soggetto record, const RegolaNumero& regola, std::string trovato,
                    double valore);

// A word of the file and the code that it stands for.
struct ParolaNota {
  std::string_view Testo;
  int Valore;
};

inline constexpr std::array<ParolaNota, 4> kParoleCalcolo{{
    {"planimetria", kCalcoloPlanimetria},
    {"altimetria", kCalcoloAltimetria},
    {"plano-altimetria", kCalcoloPlanimetria | kCalcoloAltimetria},
    {"nessuno", 0},
}};
inline constexpr std::array<ParolaNota, 3> kParoleRuolo{{
    {"incognito", kIncognito},
    {"fisso", kFisso},
    {"escluso", kNonUsato},
}};
inline constexpr std::array<ParolaNota, 4> kParoleTipo{{
    {"orizzontale", kOrizzontale},
    {"inclinata", kInclinata},
    {"piana", kPiana},
    {"fuori_centro", kFuoriCentro10},
}};
inline constexpr std::array<int, 8> kTipiDistanza = {
    kOrizzontale,    kInclinata,     kPiana,         kInclinataTipo6,
    kInclinataTipo7, kFuoriCentro10, kFuoriCentro20, kFuoriCentro30};
inline constexpr std::array<ParolaNota, 10> kParoleVero{{
    {"si", 1},
    {"sì", 1},
    {"sÌ", 1},
    {"true", 1},
    {"vero", 1},
    {"1", 1},
    {"no", 0},
    {"false", 0},
    {"falso", 0},
    {"0", 0},
}};

// Without regard to the case of ASCII letters.
std::optional<int> CercaParola(std::span<const ParolaNota> parole, std::string_view testo);

// "una parola tra "incognito", "fisso", "escluso""
std::string ParoleVolute(std::span<const ParolaNota> parole);

bool TipoNoto(int tipo);
std::string TipoVoluto();  // the words and the codes of a kind of distance

// The fault of a text that is none of the words, with the nearest of them.
Guasto GuastoParola(Soggetto record, std::string_view campo, std::span<const ParolaNota> parole,
                    std::string_view trovato, std::string voluto);

// The fault of a key or column that does not exist, with the nearest that does.
Guasto ChiaveSconosciuta(Soggetto record, std::string_view genere, std::string_view trovata,
                         std::span<const std::string_view> note);

}  // namespace compensa

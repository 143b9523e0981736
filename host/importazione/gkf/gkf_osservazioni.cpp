// An <obs> of a .gkf file as set-ups of the field book.
//
// The readings of the circle form one set-up. Direction, zenith angle and distance of a target are
// elements of their own: the n-th of each belong to one shot, unless the heights of the target that
// they state differ. An element with an instrument height, or a station, of its own goes to a
// set-up of its own without directions. An angle from bs to fs is two readings of a fresh circle,
// 0 and the angle; consecutive angles with the same bs share it.
//
// The network's standard deviation is that of an angle, the difference of two directions of
// standard deviation s each: s sqrt 2.

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <unordered_map>

#include "host/base/gkf_formato.h"
#include "host/base/numeri.h"
#include "host/base/unita.h"
#include "host/importazione/angoli.h"
#include "host/importazione/gkf/gkf_contesto.h"
#include "host/rete/campi.h"

namespace compensa {

namespace gkf {
namespace {

constexpr RegolaNumero kAltezzaDh{"from_dh", "m"};
constexpr RegolaNumero kVal{"val", "m", 0.0, kNonDato, true};

enum Genere : std::size_t { kDir, kZen, kObliqua, kGeneri };  // of the elements that form a shot

constexpr std::array<std::string_view, 8> kElementi = {
    "direction", "z-angle", "s-distance", "distance", "angle", "azimuth", "dh", "cov-mat"};
constexpr std::array<std::string_view, 3> kAttributiObs = {"from", "orientation", "from_dh"};
constexpr std::array<std::string_view, 7> kAttributi = {"from",    "to",    "val",   "stdev",
                                                        "from_dh", "to_dh", "extern"};
constexpr std::array<std::string_view, 9> kAttributiAngolo = {
    "from", "bs", "fs", "val", "stdev", "from_dh", "bs_dh", "fs_dh", "extern"};

// A shot under construction.
struct Battuta {
  BattutaLibretto Dati;
  std::array<bool, kGeneri> Ha{};
  std::optional<double> AltezzaDetta;  // of the target, where an element states it
};

// Shots of one set-up by target.
struct Bersaglio {
  std::vector<std::size_t> Battute;
  std::array<std::size_t, kGeneri> PrimaLibera{};  // all before it have that kind
  std::size_t SenzaDistanza = 0;                   // likewise, for horizontal distances
};

struct Messa {
  PostazioneLibretto Dati;
  std::vector<Battuta> Battute;
  std::unordered_map<std::string, Bersaglio> PerNome;
  std::string Mira;  // backsight of a set-up made of angles, else empty
};

class LettoreObs {
 public:
  LettoreObs(const pugi::xml_node& obs, const Predefiniti& predefiniti, Contesto& contesto)
      : Obs(obs), Predefinite(predefiniti), C(contesto), Da(Contesto::Valore(obs, "from")) {}

  void Leggi();

 private:
  void ScegliAltezza();
  void LeggiElemento(const pugi::xml_node& e, std::optional<double> varianza);
  void LeggiLettura(const pugi::xml_node& e, Genere genere, std::optional<double> varianza);
  void LeggiOrizzontale(const pugi::xml_node& e, std::optional<double> varianza);
  void LeggiAngolo(const pugi::xml_node& e, std::optional<double> varianza);
  bool Completa(Battuta& b, const pugi::xml_node& e, Genere genere, std::optional<double> varianza);
  bool CompletaDistanza(BattutaLibretto& b, const pugi::xml_node& e,
                        std::optional<double> varianza);
  std::optional<double> SqmAngolo(const pugi::xml_node& e, const Angolo& val,
                                  std::optional<double> predefinito, std::optional<double> varianza,
                                  double fattore);
  Messa& Postazione(const pugi::xml_node& e, const std::string& da, double altezza);
  Messa& Nuova(const pugi::xml_node& e, const std::string& da, double altezza);
  Battuta& Cerca(Messa& messa, const pugi::xml_node& e, const std::string& a, Genere genere,
                 std::optional<double> altezza);
  double AltezzaDi(const pugi::xml_node& e);
  std::string DaDi(const pugi::xml_node& e);
  void Consegna();

  pugi::xml_node Obs;
  const Predefiniti& Predefinite;
  Contesto& C;
  std::string Da;
  double Altezza = 0.0;  // of the set-up with the circle
  std::vector<Messa> Messe;
  std::size_t Centrale = std::string::npos;  // the set-up with the circle
};

// What the set-up states, or else what holds for its first element that needs a height.
void LettoreObs::ScegliAltezza() {
  if (Contesto::Ha(Obs, "from_dh")) {
    Altezza = C.Numero(Obs, "from_dh", kAltezzaDh).value_or(0.0);
    return;
  }
  for (const pugi::xml_node& e : Obs.children()) {
    const std::string_view nome = e.name();
    if (nome != "z-angle" && nome != "s-distance") continue;
    const NumeroLetto letto = LeggiNumero(Contesto::Valore(e, "from_dh"));
    if (letto.Esito == EsitoNumero::Valido) Altezza = letto.Valore;
    return;  // a wrong one is reported where the element is read
  }
}

double LettoreObs::AltezzaDi(const pugi::xml_node& e) {
  if (Contesto::Ha(e, "from_dh")) return C.Numero(e, "from_dh", kAltezzaDh).value_or(Altezza);
  if (!Contesto::Ha(Obs, "from_dh"))
    C.Conta(
        Gravita::Avviso, Obs,
        {.Record = "<obs>",
         .Campo = "from_dh",
         .Problema = "visuali senza l'altezza dello strumento: in questo formato vale 0, nota"});
  return Contesto::Ha(Obs, "from_dh") ? Altezza : 0.0;
}

std::string LettoreObs::DaDi(const pugi::xml_node& e) {
  const std::string_view propria = Contesto::Valore(e, "from");
  if (!propria.empty()) return std::string(propria);
  if (Da.empty()) C.Errore(e, "from", "manca il punto di stazione", "from, qui o in <obs>");
  return Da;
}

Messa& LettoreObs::Nuova(const pugi::xml_node& e, const std::string& da, double altezza) {
  Messa messa;
  messa.Dati.Punto = da;
  messa.Dati.Altezza = altezza;
  messa.Dati.Dove = C.Dove(e);
  Messe.push_back(std::move(messa));
  return Messe.back();
}

// The set-up with the circle if station and height are its own, else the last one that was opened
// if they are that one's, else a new one.
Messa& LettoreObs::Postazione(const pugi::xml_node& e, const std::string& da, double altezza) {
  if (da == Da && altezza == Altezza) {
    if (Centrale == std::string::npos) {
      Centrale = Messe.size();
      return Nuova(Obs, Da, Altezza);
    }
    return Messe[Centrale];
  }
  if (!Messe.empty()) {
    Messa& ultima = Messe.back();
    if (ultima.Mira.empty() && ultima.Dati.Punto == da && ultima.Dati.Altezza == altezza)
      return ultima;
  }
  return Nuova(e, da, altezza);
}

// The first shot of the target that lacks this kind and has the same target height.
Battuta& LettoreObs::Cerca(Messa& messa, const pugi::xml_node& e, const std::string& a,
                           Genere genere, std::optional<double> altezza) {
  Bersaglio& bersaglio = messa.PerNome[a];
  std::size_t& libera = bersaglio.PrimaLibera[genere];
  while (libera < bersaglio.Battute.size() && messa.Battute[bersaglio.Battute[libera]].Ha[genere])
    ++libera;
  for (std::size_t i = libera; i < bersaglio.Battute.size(); ++i) {
    Battuta& b = messa.Battute[bersaglio.Battute[i]];
    const bool diverse = altezza && b.AltezzaDetta && *altezza != *b.AltezzaDetta;
    if (b.Ha[genere] || diverse) continue;
    if (altezza) b.AltezzaDetta = altezza;
    b.Ha[genere] = true;
    return b;
  }
  bersaglio.Battute.push_back(messa.Battute.size());
  Battuta& nuova = messa.Battute.emplace_back();
  nuova.Dati.Punto = a;
  nuova.Dati.Dove = C.Dove(e);
  nuova.Ha[genere] = true;
  nuova.AltezzaDetta = altezza;
  return nuova;
}

std::optional<double> LettoreObs::SqmAngolo(const pugi::xml_node& e, const Angolo& val,
                                            std::optional<double> predefinito,
                                            std::optional<double> varianza, double fattore) {
  std::optional<double> sqm;
  if (varianza) {
    sqm = val.Sqm(std::sqrt(*varianza));
  } else if (Contesto::Ha(e, "stdev")) {
    if (const std::optional<double> stdev = C.Stdev(e)) sqm = val.Sqm(*stdev);
  } else if (predefinito) {
    sqm = *predefinito * kGonPerCc;
  }
  if (!sqm) return std::nullopt;
  C.SqmLetti.AggiungiAngolo(*sqm * fattore);
  return *sqm * fattore;
}

bool LettoreObs::CompletaDistanza(BattutaLibretto& b, const pugi::xml_node& e,
                                  std::optional<double> varianza) {
  const std::optional<double> distanza = C.Numero(e, "val", kVal, true);
  if (!distanza) return false;
  b.Distanza = distanza;
  const ModelloDistanza* modello = nullptr;
  if (varianza) {
    b.SqmDistanza = std::sqrt(*varianza) * kMetriPerMm;
  } else if (Contesto::Ha(e, "stdev")) {
    if (const std::optional<double> stdev = C.Stdev(e)) b.SqmDistanza = *stdev * kMetriPerMm;
  } else if (Predefinite.Distanza) {
    modello = &*Predefinite.Distanza;
    b.SqmDistanza =
        (modello->A + modello->B * std::pow(*distanza / kMetriPerKm, modello->C)) * kMetriPerMm;
  }
  if (b.SqmDistanza) C.SqmLetti.AggiungiDistanza(*distanza, *b.SqmDistanza, modello);
  return true;
}

bool LettoreObs::Completa(Battuta& b, const pugi::xml_node& e, Genere genere,
                          std::optional<double> varianza) {
  if (genere == kObliqua) {
    b.Dati.TipoDist = kInclinata;
    return CompletaDistanza(b.Dati, e, varianza);
  }
  const std::optional<Angolo> val = C.LeggiVal(e);
  if (!val) return false;
  if (genere == kDir) {
    b.Dati.Direzione = NelGiro(C.Orario ? val->Gon : -val->Gon);
    b.Dati.SqmDirezione = SqmAngolo(e, *val, Predefinite.Direzione, varianza, std::numbers::sqrt2);
    return true;
  }
  if (!Ammesso(kZenit, val->Gon)) {
    C.Errore(e, "val", "numero fuori dai limiti", NumeroVoluto(kZenit));
    return false;
  }
  b.Dati.Zenit = val->Gon;
  if (varianza || Contesto::Ha(e, "stdev"))
    C.Conta(Gravita::Avviso, e,
            {.Record = "<z-angle>",
             .Campo = "stdev",
             .Problema = "non serve: le visuali in quota si pesano con la distanza"});
  return true;
}

// A direction, a zenith angle or a slope distance.
void LettoreObs::LeggiLettura(const pugi::xml_node& e, Genere genere,
                              std::optional<double> varianza) {
  const std::optional<std::string> a = C.Nome(e, "to");
  const std::string da = DaDi(e);
  if (!a || da.empty()) return;
  const bool inQuota = genere != kDir;
  std::optional<double> segnale = C.Numero(e, "to_dh", Rinominata(kSegnale, "to_dh"));
  if (inQuota && !Contesto::Ha(e, "to_dh")) {
    segnale = 0.0;
    C.Conta(Gravita::Avviso, e,
            {.Record = "<obs>",
             .Campo = "to_dh",
             .Problema = "visuali senza l'altezza del segnale: in questo formato vale 0, nota"});
  }
  const double altezza = inQuota ? AltezzaDi(e) : Altezza;
  Battuta& b = Cerca(Postazione(e, da, altezza), e, *a, genere, segnale);
  Completa(b, e, genere, varianza);
}

// A horizontal distance completes the first shot of its target that has none. The network uses a
// distance only with its zenith angle: alone it gets that of the horizon, and no target height, so
// that no height follows from it.
void LettoreObs::LeggiOrizzontale(const pugi::xml_node& e, std::optional<double> varianza) {
  const std::optional<std::string> a = C.Nome(e, "to");
  const std::string da = DaDi(e);
  if (!a || da.empty()) return;
  Messa& messa = Postazione(e, da, da == Da ? Altezza : 0.0);
  Bersaglio& bersaglio = messa.PerNome[*a];
  const auto occupata = [&](std::size_t i) {
    const Battuta& b = messa.Battute[bersaglio.Battute[i]];
    return b.Dati.Distanza.has_value() || b.Ha[kObliqua];
  };
  std::size_t& i = bersaglio.SenzaDistanza;
  while (i < bersaglio.Battute.size() && occupata(i)) ++i;
  if (i == bersaglio.Battute.size()) {
    bersaglio.Battute.push_back(messa.Battute.size());
    Battuta& nuova = messa.Battute.emplace_back();
    nuova.Dati.Punto = *a;
    nuova.Dati.Dove = C.Dove(e);
  }
  Battuta& b = messa.Battute[bersaglio.Battute[i]];
  b.Dati.TipoDist = kOrizzontale;
  if (CompletaDistanza(b.Dati, e, varianza) && !b.Ha[kZen]) b.Dati.Zenit = kOrizzonte;
}

void LettoreObs::LeggiAngolo(const pugi::xml_node& e, std::optional<double> varianza) {
  const std::optional<std::string> bs = C.Nome(e, "bs");
  const std::optional<std::string> fs = C.Nome(e, "fs");
  const std::string da = DaDi(e);
  const std::optional<Angolo> val = C.LeggiVal(e);
  if (!bs || !fs || da.empty() || !val) return;
  const bool stessa = !Messe.empty() && Messe.back().Mira == *bs && Messe.back().Dati.Punto == da;
  if (!stessa) {
    Messa& nuova = Nuova(e, da, Altezza);
    nuova.Mira = *bs;
    Battuta& zero = nuova.Battute.emplace_back();
    zero.Dati.Punto = *bs;
    zero.Dati.Direzione = 0.0;
    zero.Dati.Dove = nuova.Dati.Dove;
  }
  Battuta& avanti = Messe.back().Battute.emplace_back();
  avanti.Dati.Punto = *fs;
  avanti.Dati.Direzione = NelGiro(C.Orario ? val->Gon : -val->Gon);
  avanti.Dati.SqmDirezione = SqmAngolo(e, *val, Predefinite.Angolo, varianza, 1.0);
  avanti.Dati.Dove = C.Dove(e);
}

void LettoreObs::LeggiElemento(const pugi::xml_node& e, std::optional<double> varianza) {
  const std::string_view nome = e.name();
  const bool angolo = nome == "angle";
  const bool noto = std::find(kElementi.begin(), kElementi.end(), nome) != kElementi.end();
  if (noto && angolo) C.ControllaAttributi(e, kAttributiAngolo);
  if (noto && !angolo && nome != "azimuth") C.ControllaAttributi(e, kAttributi);
  if (nome == "direction") return LeggiLettura(e, kDir, varianza);
  if (nome == "z-angle") return LeggiLettura(e, kZen, varianza);
  if (nome == "s-distance") return LeggiLettura(e, kObliqua, varianza);
  if (angolo) return LeggiAngolo(e, varianza);
  if (nome == "azimuth") return C.NonSupportato(e, "azimut", 1);
  if (nome == "dh") return C.NonSupportato(e, "dislivelli misurati (<dh>)", 1);
  C.ElementoSconosciuto(e, kElementi);
}

void LettoreObs::Consegna() {
  for (Messa& messa : Messe) {
    for (Battuta& b : messa.Battute) {
      if (b.Ha[kZen] || b.Ha[kObliqua]) b.Dati.Segnale = b.AltezzaDetta;
      messa.Dati.Battute.push_back(std::move(b.Dati));
    }
    C.Libro.Postazioni.push_back(std::move(messa.Dati));
  }
}

void LettoreObs::Leggi() {
  C.ControllaAttributi(Obs, kAttributiObs);
  if (Contesto::Ha(Obs, "orientation"))
    C.Libro.Tralascia("orientamenti approssimati (orientation)",
                      "l'orientamento di una stazione è un'incognita", C.Dove(Obs).Riga);
  const std::vector<double> varianze = LeggiVarianze(Obs, C);
  ScegliAltezza();
  std::vector<std::pair<pugi::xml_node, std::optional<double>>> orizzontali;
  std::size_t i = 0;
  for (const pugi::xml_node& e : Obs.children()) {
    if (e.type() != pugi::node_element || std::string_view(e.name()) == "cov-mat") continue;
    const std::optional<double> varianza =
        i < varianze.size() ? std::optional(varianze[i]) : std::nullopt;
    ++i;
    if (std::string_view(e.name()) == "distance") {
      C.ControllaAttributi(e, kAttributi);
      orizzontali.emplace_back(e, varianza);
    } else {
      LeggiElemento(e, varianza);
    }
  }
  for (const auto& [e, varianza] : orizzontali) LeggiOrizzontale(e, varianza);
  Consegna();
}

}  // namespace

void LeggiObs(const pugi::xml_node& obs, const Predefiniti& predefiniti, Contesto& contesto) {
  LettoreObs(obs, predefiniti, contesto).Leggi();
}

}  // namespace gkf

}  // namespace compensa

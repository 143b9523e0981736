// An <obs> of a .gkf file as set-ups of the field book.
//
// The readings of the circle form one set-up. Direction, zenith angle and distance of a target are
// elements of their own: the n-th of each belong to one shot, unless the heights of the target that
// they state differ. An element with an instrument height, or a station, of its own goes to a
// set-up of its own without directions. An angle from bs to fs is two readings of a fresh circle,
// 0 and the angle, the difference of two directions of standard deviation s: its own is s sqrt 2.
// Consecutive angles with the same bs share the circle.

#include "host/importazione/gkf/osservazioni_gkf.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <unordered_map>

#include "host/base/numeri.h"
#include "host/base/unita.h"
#include "host/file_rete/parole_gkf.h"
#include "host/importazione/angoli.h"
#include "host/rete/campi.h"

namespace compensa::gkf {

namespace {

constexpr char kCovarianze[] = "cov-mat";
constexpr RegolaNumero kAltezzaAsse{"", "m"};
constexpr RegolaNumero kLunghezza{"", "m", 0.0, kNonDato, true};
constexpr RegolaNumero kScarto{"", "", 0.0, kNonDato, true};

enum Genere : std::size_t { kDir, kZen, kDist, kGeneri };  // of the elements that form a shot

// A shot under construction.
struct Battuta {
  BattutaLibretto Dati;
  std::array<bool, kGeneri> Ha{};
  std::optional<double> AltezzaDetta;  // of the target, where an element states it
};

// Shots of one set-up to one target.
struct Bersaglio {
  std::vector<std::size_t> Battute;
  std::array<std::size_t, kGeneri> PrimaLibera{};  // all before it have that kind
};

struct Messa {
  PostazioneLibretto Dati;
  std::vector<Battuta> Battute;
  std::unordered_map<std::string, Bersaglio> PerNome;
  std::string Mira;  // backsight of a set-up made of angles, else empty
};

// An angle in gon, and the standard deviation of one unit beside it: cc, or arc seconds.
struct AngoloLetto {
  double Gon, GonPerUnita;
};

bool E(const pugi::xml_node& nodo, std::string_view nome) { return nodo.name() == nome; }

// The diagonal of the covariance matrix, whose upper band stands by rows from the diagonal on.
// Returns what is wrong with it, empty if nothing.
std::string LeggiBanda(std::string_view testo, int dim, int banda, std::vector<double>& varianze) {
  const std::vector<std::string_view> parole = ParoleDi(testo);
  std::size_t letta = 0;
  for (int i = 0; i < dim; ++i)
    for (int j = 0; j <= std::min(banda, dim - 1 - i); ++j) {
      if (letta == parole.size())
        return "la matrice ha meno numeri di quanti ne vogliono dim e band";
      const std::string_view scritto = parole[letta++];
      const NumeroLetto v = LeggiNumero(scritto);
      if (v.Esito != EsitoNumero::Valido) return Cita(scritto) + " non è un numero";
      if (j == 0 && !(v.Valore > 0.0)) return Cita(scritto) + " non è una varianza";
      if (j == 0) varianze.push_back(v.Valore);
    }
  return {};
}

// A variance for each observation; empty if there is no matrix, or a wrong one.
std::vector<double> LeggiVarianze(const pugi::xml_node& obs, ElementiXml& xml) {
  const pugi::xml_node m = obs.child(kCovarianze);
  if (m.empty()) return {};
  const auto osservazioni = std::count_if(obs.begin(), obs.end(), [&](const pugi::xml_node& e) {
    return e.type() == pugi::node_element && e != m;
  });
  const int dim = LeggiIntero(ElementiXml::Valore(m, "dim")).value_or(-1);
  const int banda = LeggiIntero(ElementiXml::Valore(m, "band")).value_or(-1);
  std::vector<double> varianze;
  if (dim != osservazioni) {
    xml.Errore(m, "dim", "la matrice non ha una riga per osservazione",
               std::to_string(osservazioni));
  } else if (banda < 0 || banda > std::max(dim - 1, 0)) {
    xml.Errore(m, "band", "larghezza di banda non valida", "un intero da 0 a dim - 1");
  } else if (std::string problema = LeggiBanda(m.child_value(), dim, banda, varianze);
             !problema.empty()) {
    xml.Errore(m, "", std::move(problema));
    varianze.clear();
  } else if (banda > 0) {
    xml.Conta(Gravita::Avviso, m,
              {.Record = "<cov-mat>",
               .Problema = "le correlazioni fra le osservazioni si perdono: restano le varianze"});
  }
  return varianze;
}

using Varianza = std::optional<double>;  // of an observation, in the unit of the file

class LettoreObs {
 public:
  LettoreObs(const pugi::xml_node& obs, const Predefiniti& predefiniti,
             const Convenzioni& convenzioni, ElementiXml& xml)
      : Obs(obs),
        Predefinite(predefiniti),
        Modo(convenzioni),
        X(xml),
        Da(ElementiXml::Valore(obs, kFrom)) {}

  // Horizontal distances last: they complete the shots that lack one.
  void Leggi() {
    if (ElementiXml::Ha(Obs, "orientation"))
      X.Tralascia(Obs, "orientamenti approssimati (orientation)",
                  "l'orientamento di una stazione è un'incognita");
    const std::vector<double> varianze = LeggiVarianze(Obs, X);
    Altezza = AltezzaDelCerchio();
    std::vector<std::pair<pugi::xml_node, Varianza>> elementi;
    for (const pugi::xml_node& e : Obs.children()) {
      if (e.type() != pugi::node_element || E(e, kCovarianze)) continue;
      const std::size_t i = elementi.size();
      elementi.emplace_back(e, i < varianze.size() ? Varianza(varianze[i]) : std::nullopt);
    }
    std::stable_partition(elementi.begin(), elementi.end(),
                          [](const auto& e) { return !E(e.first, kDistance); });
    for (const auto& [e, varianza] : elementi) LeggiElemento(e, varianza);
    Consegna();
  }

 private:
  // What the set-up states, or else what holds for its first element that needs a height.
  double AltezzaDelCerchio() {
    if (ElementiXml::Ha(Obs, kFromHeight))
      return X.Numero(Obs, kFromHeight, kAltezzaAsse).value_or(0.0);
    for (const pugi::xml_node& e : Obs.children())
      if (E(e, kZAngle) || E(e, kSDistance)) {
        const NumeroLetto letto = LeggiNumero(ElementiXml::Valore(e, kFromHeight));
        return letto.Esito == EsitoNumero::Valido ? letto.Valore
                                                  : 0.0;  // reported where it is read
      }
    return 0.0;
  }

  void AvvisaAltezza(const pugi::xml_node& e, const char* attributo, const std::string& di) {
    X.Conta(Gravita::Avviso, e,
            {.Record = "<obs>",
             .Campo = attributo,
             .Problema = "visuali senza l'altezza " + di + ": in questo formato vale 0, nota"});
  }

  double AltezzaDi(const pugi::xml_node& e) {
    if (ElementiXml::Ha(e, kFromHeight))
      return X.Numero(e, kFromHeight, kAltezzaAsse).value_or(Altezza);
    if (ElementiXml::Ha(Obs, kFromHeight)) return Altezza;
    AvvisaAltezza(Obs, kFromHeight, "dello strumento");
    return 0.0;
  }

  std::string Stazione(const pugi::xml_node& e) {
    const std::string_view propria = ElementiXml::Valore(e, kFrom);
    if (!propria.empty()) return std::string(propria);
    if (Da.empty()) X.Errore(e, kFrom, "manca il punto di stazione", "from, qui o in <obs>");
    return Da;
  }

  Messa& Nuova(const pugi::xml_node& e, const std::string& da, double altezza) {
    Messa& messa = Messe.emplace_back();
    messa.Dati.Punto = da;
    messa.Dati.Altezza = altezza;
    messa.Dati.Dove = X.Dove(e);
    return messa;
  }

  // The set-up with the circle if station and height are its own, else the last one that was opened
  // if they are that one's, else a new one.
  Messa& Postazione(const pugi::xml_node& e, const std::string& da, double altezza) {
    if (da == Da && altezza == Altezza) {
      if (Centrale != std::string::npos) return Messe[Centrale];
      Centrale = Messe.size();
      return Nuova(Obs, Da, Altezza);
    }
    if (!Messe.empty() && Messe.back().Mira.empty() && Messe.back().Dati.Punto == da &&
        Messe.back().Dati.Altezza == altezza)
      return Messe.back();
    return Nuova(e, da, altezza);
  }

  // The first shot of the target that lacks this kind and has the same target height.
  Battuta& Cerca(Messa& messa, const pugi::xml_node& e, const std::string& a, Genere genere,
                 std::optional<double> altezza) {
    Bersaglio& bersaglio = messa.PerNome[a];
    std::size_t& libera = bersaglio.PrimaLibera[genere];
    while (libera < bersaglio.Battute.size() && messa.Battute[bersaglio.Battute[libera]].Ha[genere])
      ++libera;
    Battuta* trovata = nullptr;
    for (std::size_t i = libera; i < bersaglio.Battute.size() && trovata == nullptr; ++i) {
      Battuta& b = messa.Battute[bersaglio.Battute[i]];
      const bool diverse = altezza && b.AltezzaDetta && *altezza != *b.AltezzaDetta;
      if (!b.Ha[genere] && !diverse) trovata = &b;
    }
    if (trovata == nullptr) {
      bersaglio.Battute.push_back(messa.Battute.size());
      trovata = &messa.Battute.emplace_back();
      trovata->Dati.Punto = a;
      trovata->Dati.Dove = X.Dove(e);
    }
    if (altezza) trovata->AltezzaDetta = altezza;
    trovata->Ha[genere] = true;
    return *trovata;
  }

  // In gon, or in degrees-minutes-seconds; a hyphen after an e belongs to an exponent.
  std::optional<AngoloLetto> Angolo(const pugi::xml_node& e) {
    const std::string_view testo = ElementiXml::Valore(e, kVal);
    const bool trattini = testo.find('-', 1) != std::string_view::npos &&
                          testo.find_first_of("eE") == std::string_view::npos;
    if (testo.empty() || !trattini) {
      const std::optional<double> gon = X.Numero(e, kVal, {"", "gon"}, true);
      return gon ? std::optional(AngoloLetto{*gon, kGonPerCc}) : std::nullopt;
    }
    const std::optional<double> gon = LeggiAngolo(testo, UnitaAngoli::GradiPrimi);
    if (gon) return AngoloLetto{*gon, kGonPerSecondo};
    X.Errore(e, kVal, "angolo non valido",
             "gradi-primi-secondi, con primi e secondi minori di 60, o un numero [gon]");
    return std::nullopt;
  }

  // In the unit of the file.
  std::optional<double> Scarto(const pugi::xml_node& e, Varianza varianza,
                               std::optional<double> predefinito) {
    if (varianza) return std::sqrt(*varianza);
    return ElementiXml::Ha(e, kStdev) ? X.Numero(e, kStdev, kScarto) : predefinito;
  }

  // A distance enters the plan only with its zenith angle: a horizontal one alone gets that of the
  // horizon, and no target height, so that no height follows from it.
  void LeggiDistanza(const pugi::xml_node& e, BattutaLibretto& b, Varianza varianza) {
    const bool inclinata = E(e, kSDistance);
    b.TipoDist = inclinata ? kInclinata : kOrizzontale;
    b.Distanza = X.Numero(e, kVal, kLunghezza, true);
    if (!b.Distanza) return;
    if (!inclinata && !b.Zenit) b.Zenit = kOrizzonte;
    if (const std::optional<double> mm = Scarto(e, varianza, std::nullopt)) {
      b.SqmDistanza = *mm * kMetriPerMm;
    } else if (Predefinite.Distanza && !ElementiXml::Ha(e, kStdev)) {
      b.SqmDistanza = Predefinite.Distanza->A * kMetriPerMm;
      b.SqmDistProporzionale = Predefinite.Distanza->B * kMetriPerMm;
    }
  }

  void LeggiZenit(const pugi::xml_node& e, BattutaLibretto& b, Varianza varianza) {
    const std::optional<AngoloLetto> angolo = Angolo(e);
    if (!angolo) return;
    if (!Ammesso(kZenit, angolo->Gon))
      return X.Errore(e, kVal, "numero fuori dai limiti", NumeroVoluto(kZenit));
    b.Zenit = angolo->Gon;
    if (varianza || ElementiXml::Ha(e, kStdev))
      X.Conta(Gravita::Avviso, e,
              {.Record = "<z-angle>",
               .Campo = kStdev,
               .Problema = "non serve: le visuali in quota si pesano con la distanza"});
  }

  void LeggiLettura(const pugi::xml_node& e, Genere genere, Varianza varianza) {
    const std::string a = X.Nome(e, kTo);
    const std::string da = Stazione(e);
    if (a.empty() || da.empty()) return;
    std::optional<double> segnale;
    double altezza = Altezza;
    if (E(e, kDistance)) {
      if (da != Da) altezza = 0.0;
    } else {
      segnale = X.Numero(e, kToHeight, kSegnale);
      if (genere != kDir) altezza = AltezzaDi(e);
      if (genere != kDir && !ElementiXml::Ha(e, kToHeight)) {
        segnale = 0.0;
        AvvisaAltezza(e, kToHeight, "del segnale");
      }
    }
    BattutaLibretto& b = Cerca(Postazione(e, da, altezza), e, a, genere, segnale).Dati;
    if (genere == kDist) return LeggiDistanza(e, b, varianza);
    if (genere == kZen) return LeggiZenit(e, b, varianza);
    const std::optional<AngoloLetto> angolo = Angolo(e);
    if (!angolo) return;
    b.Direzione = SulCerchio(*angolo);
    if (const auto scarto = Scarto(e, varianza, Predefinite.Direzione))
      b.SqmDirezione = *scarto * angolo->GonPerUnita;
  }

  void LeggiAngoloFra(const pugi::xml_node& e, Varianza varianza) {
    const std::string bs = X.Nome(e, kBs);
    const std::string fs = X.Nome(e, kFs);
    const std::string da = Stazione(e);
    const std::optional<AngoloLetto> angolo = Angolo(e);
    if (bs.empty() || fs.empty() || da.empty() || !angolo) return;
    if (Messe.empty() || Messe.back().Mira != bs || Messe.back().Dati.Punto != da) {
      Messa& nuova = Nuova(e, da, Altezza);
      nuova.Mira = bs;
      BattutaLibretto& zero = nuova.Battute.emplace_back().Dati;
      zero.Punto = bs;
      zero.Direzione = 0.0;
      zero.Dove = nuova.Dati.Dove;
    }
    BattutaLibretto& avanti = Messe.back().Battute.emplace_back().Dati;
    avanti.Punto = fs;
    avanti.Direzione = SulCerchio(*angolo);
    avanti.Dove = X.Dove(e);
    if (const auto scarto = Scarto(e, varianza, Predefinite.Angolo))
      avanti.SqmDirezione = *scarto * angolo->GonPerUnita / std::numbers::sqrt2;
  }

  void LeggiElemento(const pugi::xml_node& e, Varianza varianza) {
    if (E(e, kDirection)) return LeggiLettura(e, kDir, varianza);
    if (E(e, kZAngle)) return LeggiLettura(e, kZen, varianza);
    if (E(e, kSDistance) || E(e, kDistance)) return LeggiLettura(e, kDist, varianza);
    if (E(e, kAngle)) return LeggiAngoloFra(e, varianza);
    if (E(e, "azimuth")) NonSupportato(e, "azimut", 1, Modo.Ignora, X);
    if (E(e, kDh)) NonSupportato(e, "dislivelli misurati (<dh>)", 1, Modo.Ignora, X);
  }

  void Consegna() {
    for (Messa& messa : Messe) {
      for (Battuta& b : messa.Battute) {
        if (b.Ha[kZen] || (b.Ha[kDist] && b.Dati.TipoDist == kInclinata))
          b.Dati.Segnale = b.AltezzaDetta;
        messa.Dati.Battute.push_back(std::move(b.Dati));
      }
      X.Libro.Postazioni.push_back(std::move(messa.Dati));
    }
  }

  double SulCerchio(const AngoloLetto& angolo) const {
    return NelGiro(Modo.Orario ? angolo.Gon : -angolo.Gon);
  }

  pugi::xml_node Obs;
  const Predefiniti& Predefinite;
  const Convenzioni& Modo;
  ElementiXml& X;
  std::string Da;
  double Altezza = 0.0;  // of the set-up with the circle
  std::vector<Messa> Messe;
  std::size_t Centrale = std::string::npos;  // the set-up with the circle
};

}  // namespace

std::string RecordDi(const pugi::xml_node& nodo) {
  if (E(nodo, kPoint)) return NomePunto(ElementiXml::Valore(nodo, kId)).Testo();
  if (E(nodo, kObs)) return NomeStazione(ElementiXml::Valore(nodo, kFrom)).Testo();
  const std::string elemento = "<" + std::string(nodo.name()) + ">";
  if (!E(nodo.parent(), kObs) || E(nodo, kCovarianze)) return elemento;
  std::string_view da = ElementiXml::Valore(nodo, kFrom);
  if (da.empty()) da = ElementiXml::Valore(nodo.parent(), kFrom);
  return elemento + ", " +
         NomeOsservazione(da, ElementiXml::Valore(nodo, E(nodo, kAngle) ? kFs : kTo)).Testo();
}

void NonSupportato(const pugi::xml_node& nodo, const std::string& genere, int quanti, bool ignora,
                   ElementiXml& xml) {
  if (quanti == 0) return;
  if (ignora)
    return xml.Libro.Tralascia(genere, "la rete non ha osservazioni di questo genere",
                               xml.Dove(nodo).Riga, quanti);
  xml.Conta(Gravita::Errore, nodo,
            {.Record = "<" + std::string(nodo.name()) + ">",
             .Problema = "la rete non ha osservazioni di questo genere: " + genere,
             .Suggerimento = "--ignora-non-supportati tralascia queste osservazioni"},
            quanti);
}

void LeggiObs(const pugi::xml_node& obs, const Predefiniti& predefiniti,
              const Convenzioni& convenzioni, ElementiXml& xml) {
  LettoreObs(obs, predefiniti, convenzioni, xml).Leggi();
}

}  // namespace compensa::gkf

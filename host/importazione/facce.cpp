// Face I and face II.
//   dir' = dir - 200 (mod 400)     zen' = 400 - zen                             [gon]
//   c = wrap(dirII - 200 - dirI) / 2     i = (zenI + zenII - 400) / 2
// A mean of directions is the first one plus the mean of the differences from it, each wrapped to
// half a turn: 399.9998 and 0.0004 give 0.0001.

#include "host/importazione/facce.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "host/base/numeri.h"
#include "host/base/unita.h"
#include "host/importazione/angoli.h"
#include "host/rete/campi.h"
#include "host/rete/statistica.h"
#include "host/rete/visuali.h"

namespace compensa {

namespace {

constexpr double kTolleranzaSegnale = 0.0005;  // target heights that count as the same [m]
constexpr double kLimiteSqm = 3.0;  // standard deviations from which a reading is suspect
constexpr int kDecimaliGon = 5;

// A difference of directions brought to half a turn.
double Avvolgi(double gon) { return std::remainder(gon, kGiroGon); }

// Whether a shot is on face II. The circle cannot err on which side of the zenith it is, a note can.
bool Seconda(const std::string& stazione, const BattutaLibretto& b, Diagnostica& diario) {
  const bool dallaNota = b.Lato == Faccia::Seconda;
  if (!b.Zenit) return dallaNota;
  const bool seconda = *b.Zenit > kMezzoGiroGon;
  if (b.Lato != Faccia::Ignota && seconda != dallaNota) {
    diario.Avviso(b.Dove, {.Record = NomeOsservazione(stazione, b.Punto),
                           .Campo = "faccia",
                           .Problema = std::string("il libretto dice cerchio ") +
                                       (dallaNota ? "destro" : "sinistro") +
                                       ", lo zenit l'altro: vale lo zenit",
                           .Trovato = NumeroFisso(*b.Zenit, kDecimaliGon)});
  }
  return seconda;
}

void Gira(BattutaLibretto& b) {
  if (b.Direzione) b.Direzione = NelGiro(*b.Direzione - kMezzoGiroGon);
  if (b.Zenit) b.Zenit = kGiroGon - *b.Zenit;
  b.Lato = Faccia::Prima;
}

// Values of some field where the shots give it.
using Battute = std::vector<const BattutaLibretto*>;
using Campo = std::optional<double> BattutaLibretto::*;

std::vector<double> Valori(const Battute& battute, Campo campo) {
  std::vector<double> valori;
  for (const BattutaLibretto* b : battute)
    if ((*b).*campo) valori.push_back(*((*b).*campo));
  return valori;
}

std::optional<double> Media(const std::vector<double>& valori) {
  if (valori.empty()) return std::nullopt;
  return std::accumulate(valori.begin(), valori.end(), 0.0) / static_cast<double>(valori.size());
}

std::optional<double> MediaSulGiro(const std::vector<double>& direzioni) {
  if (direzioni.empty()) return std::nullopt;
  double somma = 0.0;
  for (const double d : direzioni) somma += Avvolgi(d - direzioni.front());
  return NelGiro(direzioni.front() + somma / static_cast<double>(direzioni.size()));
}

// Of the mean of as many shots as give the value; the largest of theirs counts.
std::optional<double> SqmMedia(const Battute& battute, Campo sqm, std::size_t letture) {
  const std::vector<double> valori = Valori(battute, sqm);
  if (valori.empty()) return std::nullopt;
  const double peggiore = *std::max_element(valori.begin(), valori.end());
  return peggiore / std::sqrt(static_cast<double>(std::max<std::size_t>(letture, 1)));
}

// Shots of one target, all on face I, as one.
BattutaLibretto Unita(const Battute& battute) {
  BattutaLibretto unita = *battute.front();
  const auto direzioni = Valori(battute, &BattutaLibretto::Direzione);
  const auto distanze = Valori(battute, &BattutaLibretto::Distanza);
  unita.Direzione = MediaSulGiro(direzioni);
  unita.Zenit = Media(Valori(battute, &BattutaLibretto::Zenit));
  unita.Distanza = Media(distanze);
  for (const BattutaLibretto* b : battute) {
    if (!unita.Segnale) unita.Segnale = b->Segnale;
    if (b->Distanza && !battute.front()->Distanza) unita.TipoDist = b->TipoDist;
  }
  unita.SqmDirezione = SqmMedia(battute, &BattutaLibretto::SqmDirezione, direzioni.size());
  unita.SqmDistanza = SqmMedia(battute, &BattutaLibretto::SqmDistanza, distanze.size());
  unita.SqmDistProporzionale /= std::sqrt(std::max(static_cast<double>(distanze.size()), 1.0));
  return unita;
}

// Why two shots of a target are no readings of the same thing; empty if they are.
std::string Ostacolo(const BattutaLibretto& a, const BattutaLibretto& b) {
  if (a.Segnale && b.Segnale && std::abs(*a.Segnale - *b.Segnale) > kTolleranzaSegnale) {
    return "le altezze del segnale sono diverse, " + NumeroFisso(*a.Segnale, 3) + " e " +
           NumeroFisso(*b.Segnale, 3) + " m";
  }
  if (a.Distanza && b.Distanza && a.TipoDist != b.TipoDist)
    return "le distanze sono di tipo diverso";
  return {};
}

class Riduzione {
 public:
  Riduzione(ModoFacce modo, bool medie, const SqmLetture& sqm, Diagnostica& diagnostica)
      : Modo(modo), ConMedie(medie), Sqm(sqm), Diario(diagnostica) {}

  void Riduci(PostazioneLibretto& postazione) {
    std::vector<BattutaLibretto>& battute = postazione.Battute;
    std::vector<bool> girata(battute.size());
    for (std::size_t i = 0; i < battute.size(); ++i)
      girata[i] = Seconda(postazione.Punto, battute[i], Diario);
    std::vector<int> compagna(battute.size(), kSola);
    if (Modo == ModoFacce::Media) Accoppia(postazione, girata, compagna);
    for (std::size_t i = 0; i < battute.size(); ++i) {
      if (girata[i]) Gira(battute[i]);
      if (girata[i] && compagna[i] == kSola) ++Esito.Girate;
    }
    UnisciCoppie(postazione, compagna);
    if (ConMedie) UnisciRipetute(postazione);
  }

  EsitoFacce Concludi() {
    Esito.Collimazione = Riassumi(&CoppiaFacce::Collimazione);
    Esito.Indice = Riassumi(&CoppiaFacce::Indice);
    for (const CoppiaFacce& coppia : Esito.Coppie) {
      Segnala(coppia, coppia.Collimazione, Esito.Collimazione, "collimazione");
      Segnala(coppia, coppia.Indice, Esito.Indice, "indice");
    }
    return std::move(Esito);
  }

 private:
  static constexpr int kSola = -1;   // no partner
  static constexpr int kUnita = -2;  // goes into its partner's place

  // Pairs shots by target in reading order. The earlier one of a pair gets the index of the later.
  void Accoppia(const PostazioneLibretto& postazione, const std::vector<bool>& girata,
                std::vector<int>& compagna) {
    struct Attesa {
      std::vector<std::size_t> Lati[2];
    };
    std::unordered_map<std::string_view, Attesa> bersagli;
    for (std::size_t i = 0; i < girata.size(); ++i)
      bersagli[postazione.Battute[i].Punto].Lati[girata[i] ? 1 : 0].push_back(i);
    for (std::size_t i = 0; i < girata.size(); ++i) {
      const Attesa& attesa = bersagli[postazione.Battute[i].Punto];
      const auto& prime = attesa.Lati[0];
      const auto& seconde = attesa.Lati[1];
      const auto& mie = girata[i] ? seconde : prime;
      const auto& altre = girata[i] ? prime : seconde;
      const auto posto =
          static_cast<std::size_t>(std::lower_bound(mie.begin(), mie.end(), i) - mie.begin());
      if (posto >= altre.size() || altre[posto] < i) continue;
      const std::size_t primaFaccia = girata[i] ? altre[posto] : i;
      const std::size_t secondaFaccia = girata[i] ? i : altre[posto];
      if (!Registra(postazione, primaFaccia, secondaFaccia)) continue;
      compagna[i] = static_cast<int>(altre[posto]);
      compagna[altre[posto]] = kUnita;
    }
  }

  // Notes collimation and index of a pair; false, with a warning, if it is none.
  bool Registra(const PostazioneLibretto& postazione, std::size_t prima, std::size_t seconda) {
    const BattutaLibretto& a = postazione.Battute[prima];
    const BattutaLibretto& b = postazione.Battute[seconda];
    if (const std::string ostacolo = Ostacolo(a, b); !ostacolo.empty()) {
      Diario.Avviso(b.Dove, {.Record = NomeOsservazione(postazione.Punto, b.Punto),
                             .Problema = "letture coniugate non unite: " + ostacolo});
      return false;
    }
    CoppiaFacce coppia;
    coppia.Stazione = postazione.Punto;
    coppia.Punto = a.Punto;
    coppia.Dove = a.Dove;
    if (a.Direzione && b.Direzione)
      coppia.Collimazione = Avvolgi(*b.Direzione - kMezzoGiroGon - *a.Direzione) / 2.0;
    if (a.Zenit && b.Zenit) coppia.Indice = (*a.Zenit + *b.Zenit - kGiroGon) / 2.0;
    Esito.Coppie.push_back(std::move(coppia));
    return true;
  }

  void UnisciCoppie(PostazioneLibretto& postazione, const std::vector<int>& compagna) {
    std::vector<BattutaLibretto> unite;
    for (std::size_t i = 0; i < compagna.size(); ++i) {
      const BattutaLibretto& battuta = postazione.Battute[i];
      if (compagna[i] == kUnita) continue;
      if (compagna[i] == kSola) {
        unite.push_back(battuta);
        continue;
      }
      const BattutaLibretto& altra = postazione.Battute[static_cast<std::size_t>(compagna[i])];
      ControllaDistanze(postazione, {&battuta, &altra});
      unite.push_back(Unita({&battuta, &altra}));
    }
    postazione.Battute = std::move(unite);
  }

  void UnisciRipetute(PostazioneLibretto& postazione) {
    std::vector<std::vector<std::size_t>> gruppi;
    std::unordered_map<std::string_view, std::vector<std::size_t>> gruppiDi;  // of a target
    for (std::size_t i = 0; i < postazione.Battute.size(); ++i) {
      const BattutaLibretto& battuta = postazione.Battute[i];
      std::vector<std::size_t>& noti = gruppiDi[battuta.Punto];
      const auto suo = std::find_if(noti.begin(), noti.end(), [&](std::size_t g) {
        return Ostacolo(postazione.Battute[gruppi[g].front()], battuta).empty();
      });
      if (suo != noti.end()) {
        gruppi[*suo].push_back(i);
        continue;
      }
      if (!noti.empty()) {
        Diario.Avviso(
            battuta.Dove,
            {.Record = NomeOsservazione(postazione.Punto, battuta.Punto),
             .Problema = "lettura ripetuta non unita: " +
                         Ostacolo(postazione.Battute[gruppi[noti.front()].front()], battuta)});
      }
      noti.push_back(gruppi.size());
      gruppi.push_back({i});
    }
    std::vector<BattutaLibretto> unite;
    unite.reserve(gruppi.size());
    for (const auto& gruppo : gruppi) {
      Battute battute;
      for (const std::size_t i : gruppo) battute.push_back(&postazione.Battute[i]);
      if (battute.size() > 1) {
        ControllaDistanze(postazione, battute);
        ControllaDirezioni(postazione, battute);
        Esito.LettureUnite += static_cast<int>(battute.size());
        ++Esito.Medie;
      }
      unite.push_back(battute.size() == 1 ? *battute.front() : Unita(battute));
    }
    postazione.Battute = std::move(unite);
  }

  // A mean would hide a reading that is wrong.
  void ControllaDistanze(const PostazioneLibretto& postazione, const Battute& battute) {
    const std::vector<double> distanze = Valori(battute, &BattutaLibretto::Distanza);
    if (distanze.size() < 2) return;
    const auto [minima, massima] = std::minmax_element(distanze.begin(), distanze.end());
    const double sqm = Sqm.DistCostante + Sqm.DistProporzionale * *massima / kMetriPerKm;
    if (*massima - *minima <= kLimiteSqm * std::sqrt(2.0) * sqm) return;
    Diario.Avviso(battute.back()->Dove,
                  {.Record = NomeOsservazione(postazione.Punto, battute.front()->Punto),
                   .Campo = "distanza",
                   .Problema = "le letture di cui si fa la media discordano: da " +
                               NumeroFisso(*minima, 4) + " a " + NumeroFisso(*massima, 4) + " m"});
  }

  void ControllaDirezioni(const PostazioneLibretto& postazione, const Battute& battute) {
    const std::vector<double> direzioni = Valori(battute, &BattutaLibretto::Direzione);
    double divario = 0.0;
    for (const double d : direzioni)
      divario = std::max(divario, std::abs(Avvolgi(d - direzioni.front())));
    if (divario <= kLimiteSqm * std::sqrt(2.0) * Sqm.Direzione) return;
    Diario.Avviso(battute.back()->Dove,
                  {.Record = NomeOsservazione(postazione.Punto, battute.front()->Punto),
                   .Campo = "direzione",
                   .Problema = "le letture di cui si fa la media discordano di " +
                               NumeroFisso(divario, kDecimaliGon) + " gon"});
  }

  Riassunto Riassumi(std::optional<double> CoppiaFacce::*campo) const {
    std::vector<double> valori;
    for (const CoppiaFacce& coppia : Esito.Coppie)
      if (coppia.*campo) valori.push_back(*(coppia.*campo));
    Riassunto riassunto{.Quanti = static_cast<int>(valori.size())};
    if (valori.empty()) return riassunto;
    riassunto.Media = *Media(valori);
    double quadrati = 0.0;
    for (const double v : valori) quadrati += (v - riassunto.Media) * (v - riassunto.Media);
    if (valori.size() > 1)
      riassunto.Scarto = std::sqrt(quadrati / static_cast<double>(valori.size() - 1));
    riassunto.Mediana = Mediana(std::move(valori));
    return riassunto;
  }

  void Segnala(const CoppiaFacce& coppia, const std::optional<double>& valore,
               const Riassunto& riassunto, std::string_view nome) {
    const double limite = kLimiteSqm * Sqm.Direzione;
    if (!valore || std::abs(*valore - riassunto.Mediana) <= limite) return;
    Diario.Avviso(coppia.Dove, {.Record = NomeOsservazione(coppia.Stazione, coppia.Punto),
                                .Campo = std::string(nome),
                                .Problema = "le letture coniugate discordano dalle altre",
                                .Trovato = ConSegno(*valore),
                                .Voluto = "un valore da " + ConSegno(riassunto.Mediana - limite) +
                                          " a " + ConSegno(riassunto.Mediana + limite) + " [gon]"});
  }

  ModoFacce Modo;
  bool ConMedie;
  SqmLetture Sqm;
  Diagnostica& Diario;
  EsitoFacce Esito;
};

}  // namespace

std::string ConSegno(double gon) {
  const std::string testo = NumeroFisso(std::abs(gon), kDecimaliGon);
  const bool nullo = testo.find_first_not_of("0.") == std::string::npos;
  return (gon < 0.0 && !nullo ? "-" : "+") + testo;
}

EsitoFacce RiduciFacce(Libretto& libretto, ModoFacce modo, bool medie, const SqmLetture& sqm,
                       Diagnostica& diagnostica) {
  Riduzione riduzione(modo, medie, sqm, diagnostica);
  for (PostazioneLibretto& postazione : libretto.Postazioni) riduzione.Riduci(postazione);
  return riduzione.Concludi();
}

}  // namespace compensa

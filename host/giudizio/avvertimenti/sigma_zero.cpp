// Whether the observations are as good as the options promise. Under them the square of sigma zero
// over its a-priori value, times the redundancy n, is a chi-square variable with n degrees of
// freedom, so that sigma zero lies between sqrt(chi2(0.025) / n) and sqrt(chi2(0.975) / n) in 95 %
// of all networks (K.-R. Koch, Parameter Estimation and Hypothesis Testing in Linear Models, 1999,
// 4.2). Heights have no such test: their weights are only relative.

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "host/base/numeri.h"
#include "host/giudizio/avvertimenti/dopo.h"
#include "host/rete/grandezze.h"
#include "host/rete/statistica.h"

namespace compensa {

namespace {

// Of a warning on a network without gross errors: the largest of many w has a limit of its own.
constexpr double kRischio = 0.05;
// Factor up to which standard deviations may be misjudged; beyond, something else is wrong.
constexpr double kFattoreCredibile = 10.0;
constexpr int kDecimali = 3;
constexpr int kDecimaliW = 2;

class Esame {
 public:
  Esame(const Rete& rete, const Risultati& risultati) : R(rete), E(risultati) {}
  Rilievi Esegui();

 private:
  void EsaminaRidondanza(const RisultatoCompensazione& c, bool planimetria);
  void EsaminaSigmaZero();
  static double LimiteW(const RisultatoCompensazione& c);
  bool ErratoPerLeOpzioni(const Equazione& e) const;
  void EsaminaW(const RisultatoCompensazione& c);
  std::string PeggioreDi(const RisultatoCompensazione& c) const;
  void Aggiungi(Codice codice, const Posizione& dove, bool planimetria, std::string problema,
                std::string forse) {
    Trovati.push_back(
        {dove,
         {.Quale = codice,
          .Riguarda = RiguardoDi(planimetria),
          .Record = planimetria ? TipoSoggetto::Planimetria : TipoSoggetto::Altimetria,
          .Problema = std::move(problema),
          .Suggerimento = std::move(forse)}});
  }
  Posizione FileRete() const {
    return {R.NomiFile.empty() ? std::string_view() : std::string_view(R.NomiFile.front())};
  }

  const Rete& R;
  const Risultati& E;
  Rilievi Trovati;
};

void Esame::EsaminaRidondanza(const RisultatoCompensazione& c, bool planimetria) {
  if (!c.Compiuta() || c.Ridondanza() != 0) return;
  Aggiungi(Codice::RidondanzaNulla, FileRete(), planimetria,
           "ridondanza 0 (" + TestoEquazioniIncognite(c) +
               "): nessuna osservazione controlla le altre, sigma zero e precisioni escono 0 e non "
               "dicono niente",
           "un errore passerebbe tutto nel risultato: aggiungere osservazioni");
}

// With little redundancy no w can grow, and the largest points at nothing.
std::string Esame::PeggioreDi(const RisultatoCompensazione& c) const {
  if (c.EquazioneWMassimo == kNessuno) return {};
  const Equazione& e = E.Equazioni[static_cast<std::size_t>(c.EquazioneWMassimo)];
  if (!(e.W > kWSospetta)) return {};
  return ", a cominciare da " + TestoEquazione(E, e) + " con w " + NumeroFisso(e.W, kDecimaliW);
}

void Esame::EsaminaSigmaZero() {
  const RisultatoCompensazione& c = E.Planimetria;
  const bool pesi = std::any_of(E.Equazioni.begin(), E.Equazioni.end(),
                                [](const Equazione& e) { return Presente(e.SqmPriori); });
  if (!c.Compiuta() || !Presente(c.SigmaZeroRapporto) || c.Ridondanza() <= 0 || !pesi) return;
  const LimitiSigmaZero limiti = CalcolaLimitiSigmaZero(c.Ridondanza());
  const double sigma = c.SigmaZeroRapporto;
  if (sigma >= limiti.Minimo && sigma <= limiti.Massimo) return;
  const std::string problema =
      "sigma zero " + NumeroFisso(sigma, kDecimali) + " fuori dai limiti " +
      NumeroFisso(limiti.Minimo, kDecimali) + " … " + NumeroFisso(limiti.Massimo, kDecimali) +
      " (chi quadrato al 95 %, ridondanza " + std::to_string(c.Ridondanza()) + "): ";
  const std::string volte = "moltiplicati per " + NumeroFisso(sigma, kDecimaliW);
  if (sigma > limiti.Massimo)
    Aggiungi(
        Codice::SigmaZeroGrande, R.DoveOpzioni.SqmDirezione, true,
        problema + "le osservazioni sono peggiori di quanto promettono gli s.q.m. delle opzioni",
        "prima cercare un errore grossolano" + PeggioreDi(c) +
            (sigma <= kFattoreCredibile ? "; se non c'è, gli s.q.m. vanno " + volte
                                        : "; di tanto sbagliano, più che gli s.q.m., i nomi, le "
                                          "coordinate, le unità o le opzioni"));
  else
    Aggiungi(
        Codice::SigmaZeroPiccolo, R.DoveOpzioni.SqmDirezione, true,
        problema + "le osservazioni sono migliori di quanto promettono gli s.q.m. delle opzioni",
        std::string("s.q.m. troppo grandi, o in un'altra unità?") +
            (sigma * kFattoreCredibile >= 1.0 ? " se sono di uno stesso strumento vanno " + volte
                                              : ""));
}

// What the largest w of good observations may reach. With little redundancy no w can come to the
// limits of a normal variable, whatever the error.
double Esame::LimiteW(const RisultatoCompensazione& c) {
  const double normale =
      std::max(kWSospetta, std::sqrt(QuantileChiQuadro(1.0 - kRischio / c.Equazioni, 1.0)));
  if (c.Ridondanza() < 2 || std::sqrt(c.Ridondanza()) > normale) return normale;
  return LimiteTau(kRischio, c.Equazioni, c.Ridondanza());
}

// Where few observations happen to agree very well, one that is only as good as promised stands out
// too: the error must be one by the options as well.
bool Esame::ErratoPerLeOpzioni(const Equazione& e) const {
  const double sqm =
      e.Tipo == TipoEquazione::Dislivello ? SqmDislivelloAtteso(R, E, e) : e.SqmPriori;
  return !(std::abs(e.Residuo) <= kWSospetta * sqm * std::sqrt(e.Ridondanza));
}

// Only the largest: a gross error makes its neighbours' w grow too.
void Esame::EsaminaW(const RisultatoCompensazione& c) {
  if (!c.Compiuta() || c.EquazioneWMassimo == kNessuno || c.Ridondanza() <= 0) return;
  const Equazione& e = E.Equazioni[static_cast<std::size_t>(c.EquazioneWMassimo)];
  const double limite = LimiteW(c);
  if (!(e.W > limite) || (limite < kWSospetta && !ErratoPerLeOpzioni(e))) return;
  const auto s = static_cast<std::size_t>(e.Stazione);
  Trovati.push_back(
      {R.PosizioniOsservazioni[s][static_cast<std::size_t>(e.Osservazione)],
       {.Quale = Codice::WOltreLimite,
        .Riguarda = RiguardoDi(e.Tipo != TipoEquazione::Dislivello),
        .Record = SoggettoDi(E, e),
        .Problema = "w " + NumeroFisso(e.W, kDecimaliW) + ", limite " +
                    NumeroFisso(limite, kDecimaliW) + ", il più grande",
        .Suggerimento = "errore grossolano? controllare la lettura e i punti, poi ricompensare"}});
}

Rilievi Esame::Esegui() {
  EsaminaRidondanza(E.Planimetria, true);
  EsaminaRidondanza(E.Altimetria, false);
  EsaminaSigmaZero();
  EsaminaW(E.Planimetria);
  EsaminaW(E.Altimetria);
  return std::move(Trovati);
}

}  // namespace

Rilievi ControllaSigmaZero(const Rete& rete, const Risultati& risultati) {
  return Esame(rete, risultati).Esegui();
}

}  // namespace compensa

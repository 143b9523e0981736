// Whether the observations are as good as the options promise. Under them the square of sigma zero
// over its a-priori value, times the redundancy n, is a chi-square variable with n degrees of
// freedom, so that sigma zero lies between sqrt(chi2(0.025) / n) and sqrt(chi2(0.975) / n) in 95 %
// of all networks (K.-R. Koch, Parameter Estimation and Hypothesis Testing in Linear Models, 1999,
// 4.2). Heights have no such test: their weights are only relative.

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "host/avvertimenti/dopo.h"
#include "host/numeri.h"
#include "host/sommario.h"
#include "host/statistica.h"
#include "host/uscite/grandezze.h"

namespace {

// Of a warning on a network without gross errors: the largest of many w has a limit of its own.
constexpr double kRischio = 0.05;
constexpr int kDecimali = 3;
constexpr int kDecimaliW = 2;

class Esame {
 public:
  Esame(const Rete& rete, const Risultati& risultati) : R(rete), E(risultati) {}
  Rilievi Esegui();

 private:
  void EsaminaRidondanza(const RisultatoCompensazione& c, const char* quale);
  void EsaminaSigmaZero();
  void EsaminaW(const RisultatoCompensazione& c);
  std::string PeggioreDi(const RisultatoCompensazione& c) const;
  void Aggiungi(const Posizione& dove, const char* record, std::string problema,
                std::string forse) {
    Trovati.push_back(
        {dove,
         {.Record = record, .Problema = std::move(problema), .Suggerimento = std::move(forse)}});
  }
  Posizione FileRete() const {
    return {R.NomiFile.empty() ? std::string_view() : std::string_view(R.NomiFile.front())};
  }

  const Rete& R;
  const Risultati& E;
  Rilievi Trovati;
};

void Esame::EsaminaRidondanza(const RisultatoCompensazione& c, const char* quale) {
  if (!c.Compiuta() || c.Ridondanza() != 0) return;
  Aggiungi(FileRete(), quale,
           "ridondanza 0 (" + std::to_string(c.Equazioni) +
               (c.Equazioni == 1 ? " equazione, " : " equazioni, ") + std::to_string(c.Incognite) +
               (c.Incognite == 1 ? " incognita" : " incognite") +
               "): nessuna osservazione controlla le altre, sigma zero e precisioni "
               "escono 0 e non dicono niente",
           "un errore passerebbe tutto nel risultato: aggiungere osservazioni");
}

// With little redundancy no w can grow, and the largest points at nothing.
std::string Esame::PeggioreDi(const RisultatoCompensazione& c) const {
  if (c.EquazioneWMassimo == kNessuno) return {};
  const Equazione& e = E.Equazioni[static_cast<std::size_t>(c.EquazioneWMassimo)];
  if (!(e.W > kWSospetta)) return {};
  return ", a cominciare da " + TestoEquazione(E, e) + " con W " + NumeroFisso(e.W, kDecimaliW);
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
  if (sigma > limiti.Massimo) {
    const std::string peggiore = PeggioreDi(c);
    Aggiungi(R.DoveOpzioni.SqmDirezione, "planimetria",
             problema + "le osservazioni sono peggiori di quanto promettono gli sqm delle opzioni",
             "prima cercare un errore grossolano" + peggiore +
                 "; se non c'è, gli sqm vanno moltiplicati per " + NumeroFisso(sigma, kDecimaliW));
    return;
  }
  Aggiungi(R.DoveOpzioni.SqmDirezione, "planimetria",
           problema + "le osservazioni sono migliori di quanto promettono gli sqm delle opzioni",
           "sqm troppo grandi, o in un'altra unità? se sono di uno stesso strumento vanno "
           "moltiplicati per " +
               NumeroFisso(sigma, kDecimaliW));
}

// Only the largest: a gross error makes its neighbours' w grow too.
void Esame::EsaminaW(const RisultatoCompensazione& c) {
  if (!c.Compiuta() || c.EquazioneWMassimo == kNessuno) return;
  const Equazione& e = E.Equazioni[static_cast<std::size_t>(c.EquazioneWMassimo)];
  const double limite =
      std::max(kWSospetta, std::sqrt(QuantileChiQuadro(1.0 - kRischio / c.Equazioni, 1.0)));
  if (!(e.W > limite)) return;
  const auto s = static_cast<std::size_t>(e.Stazione);
  Trovati.push_back(
      {R.PosizioniOsservazioni[s][static_cast<std::size_t>(e.Osservazione)],
       {.Record = TestoEquazione(E, e),
        .Problema = "W " + NumeroFisso(e.W, kDecimaliW) + ", limite " +
                    NumeroFisso(limite, kDecimaliW) + ", il più grande",
        .Suggerimento = "errore grossolano? controllare la lettura e i punti, poi ricompensare"}});
}

Rilievi Esame::Esegui() {
  EsaminaRidondanza(E.Planimetria, "planimetria");
  EsaminaRidondanza(E.Altimetria, "altimetria");
  EsaminaSigmaZero();
  EsaminaW(E.Planimetria);
  EsaminaW(E.Altimetria);
  return std::move(Trovati);
}

}  // namespace

Rilievi ControllaSigmaZero(const Rete& rete, const Risultati& risultati) {
  return Esame(rete, risultati).Esegui();
}

// Points after the adjustment.
//   control      A redundancy number r says which part of an error of the observation shows in its
//                residual. A point all of whose observations have r near 0 takes every error of
//                theirs unseen, whatever sigma zero says of the rest of the network. The r of an
//                angle is that of both its readings: those of a point are looked at besides.
//   correction   Coordinates that have moved far against the sights of their point: the equations
//                are linear, and the iterations may have found another solution than the true one.

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "host/base/numeri.h"
#include "host/giudizio/avvertimenti/dopo.h"
#include "host/giudizio/avvertimenti/letture_punti.h"
#include "host/giudizio/indeterminazione/correzioni.h"

namespace compensa {

namespace {

constexpr double kControllo = 0.01;  // an r below this shows less than a hundredth of an error
constexpr int kDecimali = 3;
constexpr double kNonToccato = -std::numeric_limits<double>::infinity();
constexpr double kIllimitato = std::numeric_limits<double>::infinity();

class Esame {
 public:
  Esame(const Rete& rete, const Risultati& risultati) : R(rete), E(risultati) {}
  Rilievi Esegui();

 private:
  std::array<int, 3> Toccati(const Equazione& e) const;
  std::vector<char> SenzaControllo(bool pianta) const;
  void RiferisciSenzaControllo(bool pianta, const std::vector<char>& soli);
  void RiferisciLettureSole(const std::vector<LetturaSola>& sole);
  void EsaminaControllo(bool pianta);
  std::vector<double> VisualiPiuCorte() const;
  bool EsaminaSpostamento(double correzione);
  void EsaminaCorrezione();
  double Spostamento(std::size_t i) const;
  const RisultatoPunto& Punto(int i) const { return E.Punti[static_cast<std::size_t>(i)]; }

  const Rete& R;
  const Risultati& E;
  Rilievi Trovati;
};

// The points of an equation, kNessuno for none.
std::array<int, 3> Esame::Toccati(const Equazione& e) const {
  const RisultatoStazione& s = E.Stazioni[static_cast<std::size_t>(e.Stazione)];
  const auto collimato = [&](int i) {
    return i == kNessuno ? kNessuno : s.Osservazioni[static_cast<std::size_t>(i)].Punto;
  };
  return {s.Punto, collimato(e.Osservazione), collimato(e.Riferimento)};
}

// Of the redundancy numbers of a point the largest counts; rounding may bring them all below 0.
std::vector<char> Esame::SenzaControllo(bool pianta) const {
  std::vector<double> massima(E.Punti.size(), kNonToccato);
  for (const Equazione& e : E.Equazioni) {
    if ((e.Tipo != TipoEquazione::Dislivello) != pianta) continue;
    for (const int p : Toccati(e))
      if (p != kNessuno) {
        double& m = massima[static_cast<std::size_t>(p)];
        m = std::max(m, e.Ridondanza);
      }
  }
  std::vector<char> soli(E.Punti.size(), 0);
  for (std::size_t i = 0; i < E.Punti.size(); ++i) {
    const RuoliPunto& ruoli = E.Punti[i].Ruoli;
    const bool compensato = (pianta ? ruoli.Pla : ruoli.Alt) == kCompensato;
    soli[i] = compensato && massima[i] != kNonToccato && massima[i] <= kControllo ? 1 : 0;
  }
  return soli;
}

void Esame::RiferisciSenzaControllo(bool pianta, const std::vector<char>& soli) {
  std::vector<std::size_t> quali;
  for (std::size_t i = 0; i < soli.size(); ++i)
    if (soli[i] != 0) quali.push_back(i);
  if (quali.empty()) return;
  const std::size_t quanti = quali.size();
  const std::string nomi = Elenca(quali, [&](std::size_t i) { return Cita(E.Punti[i].Nome); });
  Trovati.push_back(
      {R.PosizioniPunti[quali.front()],
       {.Quale = Codice::PuntiSenzaControllo,
        .Riguarda = RiguardoDi(pianta),
        .Record = pianta ? TipoSoggetto::Planimetria : TipoSoggetto::Altimetria,
        .Problema = (quanti == 1 ? "un punto è determinato"
                                 : std::to_string(quanti) + " punti sono determinati") +
                    std::string(" senza alcun controllo: ") + nomi,
        .Suggerimento = quanti == 1 ? "un errore nelle sue osservazioni non si vedrebbe: "
                                      "aggiungerne, o non fidarsene come punto di appoggio"
                                    : "un errore nelle loro osservazioni non si vedrebbe: "
                                      "aggiungerne, o non fidarsene come punti di appoggio"}});
}

void Esame::RiferisciLettureSole(const std::vector<LetturaSola>& sole) {
  if (sole.empty()) return;
  const std::string nomi = Elenca(sole, [&](const LetturaSola& sola) {
    const RisultatoStazione& s = E.Stazioni[static_cast<std::size_t>(sola.Stazione)];
    const int verso = s.Osservazioni[static_cast<std::size_t>(sola.Osservazione)].Punto;
    return Cita(Punto(sola.Punto).Nome) + (sola.Distanza ? " (distanza da " : " (direzione da ") +
           Cita(Punto(s.Punto).Nome) + " a " + Cita(Punto(verso).Nome) + ")";
  });
  const bool uno = sole.size() == 1;
  Trovati.push_back(
      {R.PosizioniOsservazioni[static_cast<std::size_t>(sole.front().Stazione)]
                              [static_cast<std::size_t>(sole.front().Osservazione)],
       {.Quale = Codice::LettureSenzaControllo,
        .Record = TipoSoggetto::Planimetria,
        .Problema =
            (uno ? "un punto dipende" : std::to_string(sole.size()) + " punti dipendono ciascuno") +
            std::string(" da una lettura che nessun'altra controlla: ") + nomi,
        .Suggerimento = uno ? "un suo errore sposterebbe il punto senza mostrarsi: ripeterla, o "
                              "misurare il punto anche da un'altra parte"
                            : "un errore in una di esse sposterebbe il punto senza mostrarsi: "
                              "ripeterle, o misurare i punti anche da un'altra parte"}});
}

void Esame::EsaminaControllo(bool pianta) {
  const RisultatoCompensazione& c = pianta ? E.Planimetria : E.Altimetria;
  if (!c.Compiuta() || c.Ridondanza() <= 0) return;
  std::vector<char> soli = SenzaControllo(pianta);
  std::vector<LetturaSola> sole;
  if (pianta)
    for (const LetturaSola& sola : CercaLettureSole(E)) {
      char& solo = soli[static_cast<std::size_t>(sola.Punto)];
      if (sola.Tutte)
        solo = 1;
      else if (solo == 0)
        sole.push_back(sola);
    }
  RiferisciSenzaControllo(pianta, soli);
  RiferisciLettureSole(sole);
}

// From the approximate to the adjusted coordinates [m].
double Esame::Spostamento(std::size_t i) const {
  const RisultatoPunto& p = E.Punti[i];
  const double d = std::hypot(p.Est - p.EstIniziale, p.Nord - p.NordIniziale);
  return p.Ruoli.Pla == kCompensato && Presente(d) ? d : 0.0;
}

// Of each point, at the adjusted coordinates [m].
std::vector<double> Esame::VisualiPiuCorte() const {
  std::vector<double> corta(E.Punti.size(), kIllimitato);
  for (const Equazione& e : E.Equazioni) {
    if (e.Tipo == TipoEquazione::Dislivello) continue;
    const std::array<int, 3> punti = Toccati(e);
    for (const int collimato : {punti[1], punti[2]}) {
      if (collimato == kNessuno) continue;
      const double D = std::hypot(Punto(collimato).Est - Punto(punti[0]).Est,
                                  Punto(collimato).Nord - Punto(punti[0]).Nord);
      for (const int p : {punti[0], collimato}) {
        double& sua = corta[static_cast<std::size_t>(p)];
        sua = std::min(sua, D);
      }
    }
  }
  return corta;
}

// The iterations tell the largest correction only; which points were too far for their own sights
// follows from where they have ended.
bool Esame::EsaminaSpostamento(double correzione) {
  const std::vector<double> corta = VisualiPiuCorte();
  std::size_t quanti = 0;
  std::size_t peggiore = 0;
  double rapporto = 0.0;
  for (std::size_t i = 0; i < E.Punti.size(); ++i) {
    const double suo = Spostamento(i) / corta[i];
    if (!(suo > kParteLecita)) continue;
    ++quanti;
    if (suo > rapporto) rapporto = suo, peggiore = i;
  }
  if (quanti == 0) return false;
  Trovati.push_back(
      {R.PosizioniPunti[peggiore],
       {.Quale = Codice::ApprossimateLontane,
        .Record = NomePunto(E.Punti[peggiore].Nome),
        .Problema = "coordinate approssimate a " + NumeroFisso(Spostamento(peggiore), kDecimali) +
                    " m da quelle compensate, più di un decimo della sua visuale più corta, " +
                    NumeroFisso(corta[peggiore], kDecimali) + " m" +
                    (quanti > 1 ? " (così " + std::to_string(quanti) + " punti)" : "") +
                    "; correzione massima della prima iterazione " +
                    NumeroFisso(correzione, kDecimali) + " m",
        .Suggerimento = "il calcolo può aver trovato un'altra soluzione: scrivere le coordinate "
                        "compensate al posto delle approssimate e ricompensare; se il risultato "
                        "non cambia è buono"}});
  return true;
}

// Adjusted coordinates are no places to measure from where there are none, or hardly any. What the
// observations leave free moves by any amount, from good approximations too.
void Esame::EsaminaCorrezione() {
  const RisultatoCompensazione& c = E.Planimetria;
  if (c.Iterazioni.empty() || (c.GradiLiberi > 0 && !c.ApprossimateLontane)) return;
  if (c.Fine == Esito::Riuscita && EsaminaSpostamento(c.Iterazioni.front().CorrezioneMassima))
    return;
  const std::optional<CorrezioneEccessiva> estrema = CercaCorrezioneEccessiva(E);
  if (!estrema) return;
  const auto punto = static_cast<std::size_t>(estrema->Punto);
  const bool calcolate = !R.PiantaCalcolata.empty() && R.PiantaCalcolata[punto] != 0;
  Trovati.push_back(
      {R.PosizioniPunti[punto],
       {.Quale = Codice::ApprossimateLontane,
        .Record = NomePunto(E.Punti[punto].Nome),
        .Problema = "l'iterazione " + std::to_string(estrema->Iterazione) + " lo ha corretto di " +
                    NumeroFisso(estrema->Correzione, kDecimali) +
                    " m, più di un decimo della sua visuale più corta, " +
                    NumeroFisso(estrema->Visuale, kDecimali) + " m secondo le approssimate",
        .Suggerimento = std::string("coordinate approssimate troppo lontane dal vero: ") +
                        (calcolate ? "sono calcolate da misure fra cui una è sbagliata, o la rete "
                                     "non le determina abbastanza: controllare le misure, o darle "
                                     "nel file"
                                   : "migliorarle, o toglierle e lasciare che siano calcolate, poi "
                                     "ricompensare")}});
}

Rilievi Esame::Esegui() {
  EsaminaControllo(true);
  EsaminaControllo(false);
  EsaminaCorrezione();
  return std::move(Trovati);
}

}  // namespace

Rilievi ControllaPunti(const Rete& rete, const Risultati& risultati) {
  return Esame(rete, risultati).Esegui();
}

}  // namespace compensa

// The lines that the surveyor reads on the terminal while a network is adjusted and when it is
// done.

#include "host/uscite/sommario.h"

#include <algorithm>

#include "host/base/codifica.h"
#include "host/base/diagnostica.h"
#include "host/base/numeri.h"
#include "host/base/testi.h"
#include "host/rete/grandezze.h"

namespace compensa {

namespace {

constexpr std::string_view kCancellaRiga = "\r\x1b[K";
constexpr std::size_t kPuntiNominati = 5;
constexpr int kColonnaEtichetta = 13;
constexpr std::size_t kMotiMostrati = 10;  // of an adjustment
constexpr std::size_t kRigheMostrate = 20;

std::string_view Nome(const Risultati& r, int punto) {
  return r.Punti[static_cast<std::size_t>(punto)].Nome;
}

std::string PuntiNominati(const Risultati& r, const std::vector<int>& punti) {
  return Elenca(
      punti, [&](int punto) { return Cita(Nome(r, punto)); }, kPuntiNominati);
}

}  // namespace

std::string TestoNonCalcolati(const Risultati& r, const RisultatoCompensazione& c) {
  return Conta(c.PuntiNonCalcolati.size(), "punto incognito non calcolato",
               "punti incogniti non calcolati") +
         ": " + PuntiNominati(r, c.PuntiNonCalcolati);
}

std::string TestoEsito(const Risultati& r, const RisultatoCompensazione& c) {
  switch (c.Fine) {
    case Esito::NonRichiesta: return "non richiesta";
    case Esito::Riuscita:
      if (c.GradiLiberi > 0) return "non determinabile, risultati da non usare";
      if (c.PuntiNonCalcolati.empty()) return "riuscita";
      return (c.NienteCalcolato() ? "non riuscita, " : "incompleta, ") + TestoNonCalcolati(r, c);
    case Esito::NonConvergente: return "non convergente";
    case Esito::NonDeterminabile:
      return (c.PuntiNonDeterminabili.size() == 1 ? "punto non determinabile: "
                                                  : "punti non determinabili: ") +
             PuntiNominati(r, c.PuntiNonDeterminabili);
    case Esito::NonEseguita: return "non eseguita";
    case Esito::PuntiFissiInsufficienti:
      return "interrotta, meno di due punti fissi (" + std::to_string(c.Fissi) + ")";
    case Esito::PiuIncognite: return "interrotta, più incognite che osservazioni";
    case Esito::NormaleSingolare:
      return std::string("interrotta, ") +
             (c.ApprossimateLontane ? "coordinate approssimate troppo lontane"
                                    : "rete indeterminata") +
             " (matrice normale singolare)";
    case Esito::NonFinita:
      return "non riuscita, i risultati non sono numeri finiti (una visuale verticale, o un valore "
             "fuori misura?)";
  }
  return {};
}

namespace {

std::string TestoSigmaZero(const Risultati& r, const RisultatoCompensazione& c) {
  if (!c.Compiuta()) return "-";
  if (!Presente(c.SigmaZero)) return "non calcolabile (nessuna ridondanza)";
  constexpr int kDecimaliPla = 3;
  constexpr int kDecimaliAlt = 4;
  return &c == &r.Planimetria ? NumeroFisso(c.SigmaZeroRapporto, kDecimaliPla) + " * 10-6 (km-rad)"
                              : NumeroFisso(c.SigmaZeroRapporto, kDecimaliAlt) + " m";
}

std::string TestoRidondanza(const RisultatoCompensazione& c) {
  if (!c.Contate()) return "-";
  return std::to_string(c.Ridondanza()) + " (" + TestoEquazioniIncognite(c) + ")";
}

std::string TestoIterazioni(const Risultati& r, const RisultatoCompensazione& c) {
  if (&c == &r.Altimetria) return c.Compiuta() ? "nessuna (equazioni lineari)" : "-";
  if (c.Iterazioni.empty()) return "-";
  constexpr int kDecimali = 4;
  const Iterazione& ultima = c.Iterazioni.back();
  std::string testo = std::to_string(ultima.Numero);
  if (Presente(ultima.CorrezioneMassima))
    testo +=
        ", ultima correzione massima " + NumeroFisso(ultima.CorrezioneMassima, kDecimali) + " m";
  return testo;
}

std::string TestoWMassimo(const Risultati& r, const RisultatoCompensazione& c) {
  if (c.EquazioneWMassimo == kNessuno) return "-";
  constexpr int kDecimali = 2;
  const Equazione& e = r.Equazioni[static_cast<std::size_t>(c.EquazioneWMassimo)];
  return NumeroFisso(e.W, kDecimali) + ", " + TestoEquazione(r, e);
}

// "Esito:       planimetria riuscita; altimetria riuscita"
template <class Testo>
std::string Riga(const Risultati& r, const std::string& etichetta, Testo testo) {
  std::string riga = etichetta + ":";
  riga.append(static_cast<std::size_t>(std::max(kColonnaEtichetta - ContaCaratteri(riga), 1)), ' ');
  bool prima = true;
  for (const auto& [nome, c] :
       {std::pair("planimetria ", &r.Planimetria), std::pair("altimetria ", &r.Altimetria)}) {
    if (c->Fine == Esito::NonRichiesta) continue;
    if (!std::exchange(prima, false)) riga += "; ";
    riga += nome + testo(*c);
  }
  return prima ? riga + "nessuna compensazione richiesta" : riga;
}

}  // namespace

std::array<std::string, 5> RigheSommario(const Risultati& r) {
  using C = RisultatoCompensazione;
  return {Riga(r, "Esito", [&](const C& c) { return TestoEsito(r, c); }),
          Riga(r, "Sigma zero", [&](const C& c) { return TestoSigmaZero(r, c); }),
          Riga(r, "Ridondanza", [&](const C& c) { return TestoRidondanza(c); }),
          Riga(r, "Iterazioni", [&](const C& c) { return TestoIterazioni(r, c); }),
          Riga(r, "w massimo", [&](const C& c) { return TestoWMassimo(r, c); })};
}

std::vector<std::string> RigheMotiLiberi(const Risultati& r) {
  std::vector<std::string> righe;
  const auto aggiungi = [&](const std::string& testo) {
    std::string riga = righe.empty() ? "Moti liberi:" : "";
    riga.resize(kColonnaEtichetta, ' ');
    righe.push_back(riga + testo);
  };
  for (const auto& [nome, c] :
       {std::pair("planimetria, ", &r.Planimetria), std::pair("altimetria, ", &r.Altimetria)}) {
    const std::size_t mostrati = std::min(c->MotiLiberi.size(), kMotiMostrati);
    for (std::size_t i = 0; i < mostrati; ++i) aggiungi(nome + c->MotiLiberi[i].Parole);
    if (mostrati < c->MotiLiberi.size())
      aggiungi(nome + std::string("in tutto ") + std::to_string(c->GradiLiberi) +
               " moti indipendenti: gli altri sono in --json e --html");
  }
  return righe;
}

std::vector<std::string> PrimeRighe(const std::vector<std::string>& righe) {
  if (righe.size() <= kRigheMostrate + 1) return righe;
  std::vector<std::string> prime(righe.begin(),
                                 righe.begin() + static_cast<std::ptrdiff_t>(kRigheMostrate));
  prime.push_back(EAltri(righe.size() - kRigheMostrate, Genere::Femminile) +
                  " righe come queste, tutte nella pagina (--html) e nei risultati JSON (--json)");
  return prime;
}

void RigaAvanzamento::Mostra(const Iterazione& iterazione) {
  constexpr int kDecimali = 4;
  std::string riga(kCancellaRiga);
  riga += "Iterazione " + std::to_string(iterazione.Numero);
  if (Presente(iterazione.CorrezioneMedia))
    riga += ": correzione media " + NumeroFisso(iterazione.CorrezioneMedia, kDecimali) +
            " m, massima " + NumeroFisso(iterazione.CorrezioneMassima, kDecimali) + " m";
  else
    riga += " in corso";
  Scrivi(riga);
  Scritta = true;
}

void RigaAvanzamento::Cancella() {
  if (std::exchange(Scritta, false)) Scrivi(kCancellaRiga);
}

}  // namespace compensa

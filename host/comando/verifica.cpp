// The page that the surveyor reads before adjusting: counts, approximate coordinates, connections,
// closures, findings, verdict. The verdict is that of an adjustment whose report goes nowhere.

#include "host/comando/verifica.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

#include "host/approssimate/approssimate.h"
#include "host/base/file_sicuro.h"
#include "host/base/numeri.h"
#include "host/base/percorsi.h"
#include "host/base/terminale.h"
#include "host/base/testi.h"
#include "host/calcolo/calcolo.h"
#include "host/calcolo/rapporto.h"
#include "host/file_rete/lettura_rete.h"
#include "host/giudizio/avvertimenti/avvertimenti.h"
#include "host/giudizio/controlli/connessione.h"
#include "host/giudizio/controlli/rilievi.h"
#include "host/importazione/lettore.h"
#include "host/rete/campi.h"
#include "host/rete/visuali.h"
#include "host/uscite/sommario.h"

namespace compensa {

namespace {

constexpr int kColonna = 14;  // where the text after a label begins
constexpr std::size_t kNoteMostrate = 200;
constexpr std::size_t kOstacoliMostrati = 20;

std::string Riga(std::string_view etichetta, const std::string& testo) {
  std::string riga(etichetta);
  riga += ":";
  riga.resize(std::max<std::size_t>(riga.size() + 1, kColonna), ' ');
  return riga + testo + "\n";
}

std::string Ruoli(const Rete& rete, int RuoliPunto::*quale) {
  std::array<int, 3> conteggi{};
  for (const RuoliPunto& r : rete.RuoliIniziali)
    if (r.*quale >= 0 && r.*quale < 3) ++conteggi[static_cast<std::size_t>(r.*quale)];
  return Conta(conteggi[kFisso], "fisso", "fissi") + ", " +
         Conta(conteggi[kIncognito], "incognito", "incogniti") + ", " +
         Conta(conteggi[kNonUsato], "escluso", "esclusi");
}

std::string Stazioni(const Rete& rete) {
  int fuoriCentro = 0;
  int incognite = 0;
  int senza = 0;
  for (const TStaCr& s : rete.Stazioni) {
    fuoriCentro += BraccioFuoriCentro(s) > 0.0 ? 1 : 0;
    incognite += Assegnato(s.AltStrum) && s.AltStrumNota == kAltezzaIncognita ? 1 : 0;
    senza += Assegnato(s.AltStrum) ? 0 : 1;
  }
  std::string testo = std::to_string(rete.Stazioni.size());
  if (fuoriCentro > 0) testo += ", fuori centro " + std::to_string(fuoriCentro);
  if (incognite > 0) testo += ", con altezza strumentale incognita " + std::to_string(incognite);
  if (senza > 0) testo += ", senza altezza strumentale " + std::to_string(senza);
  return testo;
}

std::string Osservazioni(const Rete& rete) {
  int osservazioni = 0;
  int direzioni = 0;
  int zenit = 0;
  int distanze = 0;
  std::array<int, kTipiDistanza.size()> perTipo{};
  for (const TStaCr& s : rete.Stazioni)
    for (const TOssCr& o : s.Osservazioni) {
      ++osservazioni;
      direzioni += Assegnato(o.Direzione) ? 1 : 0;
      zenit += Assegnato(o.Zenit) ? 1 : 0;
      if (!Assegnato(o.Distanza)) continue;
      ++distanze;
      const auto* tipo = std::find(kTipiDistanza.begin(), kTipiDistanza.end(), o.TipoDist);
      if (tipo != kTipiDistanza.end())
        ++perTipo[static_cast<std::size_t>(tipo - kTipiDistanza.begin())];
    }
  std::string testo = std::to_string(osservazioni) + ": " +
                      Conta(direzioni, "direzione", "direzioni") + ", " + std::to_string(zenit) +
                      " zenit, " + Conta(distanze, "distanza", "distanze");
  std::string tipi;
  for (std::size_t t = 0; t < perTipo.size(); ++t) {
    if (perTipo[t] == 0) continue;
    std::string nome = "tipo " + std::to_string(kTipiDistanza[t]);
    for (const ParolaNota& parola : kParoleTipo)
      if (parola.Valore == kTipiDistanza[t]) nome = parola.Testo;
    tipi += (tipi.empty() ? "" : ", ") + nome + " " + std::to_string(perTipo[t]);
  }
  return tipi.empty() ? testo : testo + " (" + tipi + ")";
}

std::string TestoMancanti(const Collegamento& c) {
  return Conta(c.Mancanti, "punto incognito", "punti incogniti");
}

std::string TestoCollegamento(const Collegamento& c) {
  if (!c.Richiesto) return "non richiesta";
  if (c.Gruppi.empty()) return "nessun punto vi entra";
  std::string testo;
  if (c.Mancanti > 0)
    testo = TestoMancanti(c) + (c.Mancanti == 1 ? " non vi entra, " : " non vi entrano, ");
  testo += c.Gruppi.size() > 1 ? std::to_string(c.Gruppi.size()) + " gruppi di punti separati"
           : c.Mancanti > 0    ? "gli altri collegati"
                               : "tutti i punti collegati";
  return testo + "; " + Conta(c.Equazioni, "equazione", "equazioni") + ", " +
         Conta(c.Incognite, "incognita", "incognite") + ", " +
         Conta(c.GradiLiberta(), "grado", "gradi") + " di libertà";
}

std::string TestoChiusure(const ChiusureControllate& c) {
  constexpr int kDecimali = 4;
  std::string testo = Conta(c.Distanze, "distanza", "distanze") + " e " +
                      Conta(c.Dislivelli, "dislivello", "dislivelli") + " nei due versi, " +
                      Conta(c.Triangoli, "triangolo", "triangoli");
  if (c.Triangoli > 0)
    testo += " (s.q.m. di un angolo secondo Ferrero " + NumeroFisso(c.Ferrero, kDecimali) + " gon)";
  return testo;
}

std::string TestoApprossimate(const EsitoApprossimate& esito) {
  std::string testo;
  const auto elenca = [&](const std::vector<std::string>& righe) {
    for (std::size_t i = 0; i < std::min(righe.size(), kNoteMostrate); ++i)
      testo += "  " + righe[i] + "\n";
    if (righe.size() > kNoteMostrate)
      testo += "  " + EAltri(righe.size() - kNoteMostrate, Genere::Femminile) + "\n";
  };
  if (!esito.Note.empty()) {
    testo += "\nCoordinate approssimate che verrebbero calcolate\n";
    elenca(esito.Note);
  }
  if (!esito.NonRaggiunti.empty()) {
    testo += "\nPunti che restano senza coordinate\n";
    std::vector<std::string> mancanti;
    for (const Messaggio& m : esito.NonRaggiunti) mancanti.push_back(TestoGuasto(m.Cosa));
    elenca(mancanti);
  }
  return testo;
}

// In file order, without the word that says how grave a message is.
std::string TestoRilievi(const Rete& rete, const Rilievi& rilievi) {
  Diagnostica ordinati(kNoteMostrate);
  for (const std::string& file : rete.NomiFile) ordinati.NominaFile(file);
  for (const Rilievo& r : rilievi) ordinati.Avviso(r.Dove, r.Cosa);
  std::string testo;
  for (const std::string& riga : Testi(ordinati.Messaggi(), false)) testo += "  " + riga + "\n";
  return testo;
}

// "12 punti incogniti in planimetria e 3 punti incogniti in altimetria"
std::string Esclusi(const Connessione& connessione) {
  std::string testo;
  for (const auto& [nome, c] : {std::pair(" in planimetria", &connessione.Pla),
                                std::pair(" in altimetria", &connessione.Alt)})
    if (c->Mancanti > 0) testo += (testo.empty() ? "" : " e ") + TestoMancanti(*c) + nome;
  return testo;
}

// Whether a network can be adjusted is for the adjustment to say: nobody else knows whether its
// iterations converge, and what a place of its own leaves free. Its report goes nowhere.
Risultati Prova(Rete& rete) {
  Rapporto nessuno;
  return Compensa(rete, nessuno);
}

// Why an adjustment does not come to its end: what counting shows, else its outcome and what the
// observations leave free.
std::vector<std::string> Ostacoli(const Risultati& prova, const Connessione& connessione) {
  std::vector<std::string> ostacoli;
  for (const auto& [nome, compensazione, collegamento] :
       {std::tuple("planimetria: ", &prova.Planimetria, &connessione.Pla),
        std::tuple("altimetria: ", &prova.Altimetria, &connessione.Alt)}) {
    const RisultatoCompensazione& c = *compensazione;
    if (c.Fine == Esito::NonRichiesta || c.Fine == Esito::NonEseguita ||
        (c.Fine == Esito::Riuscita && c.GradiLiberi == 0 && !c.NienteCalcolato()))
      continue;
    const std::vector<std::string>& contati = collegamento->Ostacoli;
    ostacoli.insert(ostacoli.end(), contati.begin(), contati.end());
    if (!contati.empty()) continue;
    ostacoli.push_back(nome + TestoEsito(prova, c));
    for (const MotoLibero& moto : c.MotiLiberi) {
      if (ostacoli.size() == kOstacoliMostrati) break;
      ostacoli.push_back(nome + moto.Parole);
    }
  }
  return ostacoli;
}

std::string Verdetto(const std::vector<std::string>& ostacoli, const Connessione& connessione,
                     std::size_t rilievi) {
  std::string testo = "la rete non si può compensare così com'è";
  if (ostacoli.empty()) {
    const std::string esclusi = Esclusi(connessione);
    testo = esclusi.empty() ? "la rete si può compensare"
                            : "la rete si compensa solo in parte, senza " + esclusi;
    if (rilievi > 0)
      testo += rilievi == 1 ? "; un rilievo da guardare prima"
                            : "; " + std::to_string(rilievi) + " rilievi da guardare prima";
  }
  testo = Riga("Verdetto", testo);
  for (const std::string& o : ostacoli) testo += std::string(kColonna, ' ') + o + "\n";
  return testo;
}

}  // namespace

Stato Verifica(const OpzioniVerifica& opzioni) {
  Diagnostica lettura;
  std::optional<Rete> letta =
      LeggiRete(PercorsoDa(opzioni.File), lettura, false, DescrizioneLibretto);
  MostraMessaggi(lettura);
  if (!letta) return kStatoRete;
  Rete& rete = *letta;

  Rilievi rilievi = ControllaRipetizioni(rete);
  const EsitoApprossimate approssimate = CalcolaApprossimate(rete);
  Connessione connessione = EsaminaConnessione(rete);
  ChiusureControllate chiusure;
  Accoda(rilievi, std::move(connessione.Trovati));
  Accoda(rilievi, ControllaChiusure(rete, &chiusure));
  Accoda(rilievi, ControllaPosti(rete));
  Accoda(rilievi, ControllaLetture(rete));
  Accoda(rilievi, ControllaMancanze(rete));
  Accoda(rilievi, ControllaPlausibilita(rete));

  std::string testo =
      Riga("Rete", opzioni.File +
                       (rete.DatiProgetto.Nome.empty() ? "" : ", " + Cita(rete.DatiProgetto.Nome)));
  testo += Riga("Punti", std::to_string(rete.Punti.size()) + "; in planimetria " +
                             Ruoli(rete, &RuoliPunto::Pla) + "; in altimetria " +
                             Ruoli(rete, &RuoliPunto::Alt));
  testo += Riga("Stazioni", Stazioni(rete));
  testo += Riga("Osservazioni", Osservazioni(rete));
  testo += Riga("Planimetria", TestoCollegamento(connessione.Pla));
  testo += Riga("Altimetria", TestoCollegamento(connessione.Alt));
  testo += Riga("Chiusure", TestoChiusure(chiusure));
  testo += TestoApprossimate(approssimate);
  if (!rilievi.empty()) testo += "\nRilievi\n" + TestoRilievi(rete, rilievi);
  const Risultati prova = Prova(rete);
  const std::vector<std::string> ostacoli = Ostacoli(prova, connessione);
  testo +=
      "\n" + Verdetto(ostacoli, connessione, rilievi.size() + approssimate.NonRaggiunti.size());
  FileSicuro uscita("-");
  uscita.Scrivi(testo);
  uscita.Conferma();
  return TutteRiuscite(prova) ? kStatoRiuscito : kStatoNonCompensata;
}

}  // namespace compensa

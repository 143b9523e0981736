// One line a network: outcome, sigma zero and redundancy in plan and in height, the largest w of
// both, files.

#include "host/uscite/tabella_reti.h"

#include <algorithm>
#include <array>

#include "host/base/codifica.h"
#include "host/base/numeri.h"
#include "host/base/terminale.h"

namespace compensa {

namespace {

using Compensazione = std::optional<RisultatoCompensazione>;

constexpr std::size_t kColonne = 9;
using RigaTabella = std::array<std::string, kColonne>;
constexpr std::array<bool, kColonne> kNumerica = {false, false, true, true, false,
                                                  true,  true,  true, false};

std::string Nessuno() { return "-"; }

std::string Parola(const EsitoRete& rete, const Compensazione& c) {
  if (!c) return rete.Fine == kStatoRiuscito ? Nessuno() : "errore";
  switch (c->Fine) {
    case Esito::NonRichiesta: return Nessuno();
    case Esito::Riuscita:
      if (c->GradiLiberi > 0) return "non determinabile";
      if (c->PuntiNonCalcolati.empty()) return "riuscita";
      return c->NienteCalcolato() ? "non riuscita" : "incompleta";
    case Esito::NonConvergente: return "non convergente";
    case Esito::NonDeterminabile: return "non determinabile";
    case Esito::NonEseguita: return "non eseguita";
    case Esito::PuntiFissiInsufficienti:
    case Esito::PiuIncognite:
    case Esito::NormaleSingolare: return "interrotta";
    case Esito::NonFinita: return "non riuscita";
  }
  return {};
}

std::string SigmaZero(const Compensazione& c, int decimali) {
  const bool ce = c && c->Compiuta() && Presente(c->SigmaZeroRapporto) && Presente(c->SigmaZero);
  return ce ? NumeroFisso(c->SigmaZeroRapporto, decimali) : Nessuno();
}

std::string Ridondanza(const Compensazione& c) {
  return c && c->Contate() ? std::to_string(c->Ridondanza()) : Nessuno();
}

RigaTabella RigaDi(const EsitoRete& rete) {
  constexpr int kDecimaliPla = 3;
  constexpr int kDecimaliAlt = 4;
  constexpr int kDecimaliW = 2;
  std::string scritti;
  for (const std::string& file : rete.Scritti) scritti += (scritti.empty() ? "" : " ") + file;
  return {rete.Rete,
          Parola(rete, rete.Planimetria),
          SigmaZero(rete.Planimetria, kDecimaliPla),
          Ridondanza(rete.Planimetria),
          Parola(rete, rete.Altimetria),
          SigmaZero(rete.Altimetria, kDecimaliAlt),
          Ridondanza(rete.Altimetria),
          Presente(rete.WMassimo) ? NumeroFisso(rete.WMassimo, kDecimaliW) : Nessuno(),
          scritti.empty() ? Nessuno() : scritti};
}

}  // namespace

void Riassumi(const Risultati& risultati, EsitoRete& esito) {
  esito.Planimetria = risultati.Planimetria;
  esito.Altimetria = risultati.Altimetria;
  for (const RisultatoCompensazione* c : {&risultati.Planimetria, &risultati.Altimetria}) {
    if (c->EquazioneWMassimo == kNessuno) continue;
    const double w = risultati.Equazioni[static_cast<std::size_t>(c->EquazioneWMassimo)].W;
    if (!Presente(esito.WMassimo) || w > esito.WMassimo) esito.WMassimo = w;
  }
}

std::string TabellaReti(const std::vector<EsitoRete>& esiti, bool colori) {
  std::vector<RigaTabella> righe = {{"Rete", "Planimetria", "s0 [10-6]", "ridond.", "Altimetria",
                                     "s0 [m]", "ridond.", "w max", "File scritti"}};
  for (const EsitoRete& esito : esiti) righe.push_back(RigaDi(esito));
  std::array<int, kColonne> larghezze{};
  for (const RigaTabella& riga : righe)
    for (std::size_t i = 0; i < kColonne; ++i)
      larghezze[i] = std::max(larghezze[i], ContaCaratteri(riga[i]));
  std::string tabella;
  for (const RigaTabella& riga : righe) {
    for (std::size_t i = 0; i < kColonne; ++i) {
      const std::string spazi(static_cast<std::size_t>(larghezze[i] - ContaCaratteri(riga[i])),
                              ' ');
      const bool esito = (i == 1 || i == 4) && &riga != &righe.front();
      const std::string cella = ColoraEsiti(riga[i], colori && esito);
      if (i > 0) tabella += "  ";
      tabella += kNumerica[i] ? spazi + cella : cella;
      if (!kNumerica[i] && i + 1 < kColonne) tabella += spazi;
    }
    tabella += '\n';
  }
  return tabella;
}

}  // namespace compensa

// The network under construction: points by name, set-ups, and the checks that need more than one
// field.

#include "host/file_rete/costruttore.h"

#include <algorithm>
#include <utility>

#include "host/base/codifica.h"
#include "host/base/suggerimenti.h"
#include "host/base/testi.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

constexpr int kIterazioniPredefinite = 10;
constexpr int kCalcoloPredefinito = kCalcoloPlanimetria | kCalcoloAltimetria;

// Control characters, in UTF-8: the report and the tables have one line for a point.
bool ConControlli(std::string_view nome) {
  while (!nome.empty()) {
    const Carattere c = PrimoCarattere(nome);
    if (c.Codice < 0x20 || (c.Codice >= 0x7F && c.Codice < 0xA0)) return true;
    nome.remove_prefix(std::max<std::size_t>(c.Lunghezza, 1));
  }
  return false;
}

}  // namespace

std::string_view CostruttoreRete::RegistraFile(std::string nome) {
  Diario.NominaFile(nome);
  return InCorso.NomiFile.emplace_back(std::move(nome));
}

bool CostruttoreRete::NomeAmmesso(const PuntoLetto& punto, std::string_view nome,
                                  std::string& ansi) {
  Guasto guasto{.Record = NomePunto(nome), .Campo = "nome"};
  std::string_view mancante;
  std::optional<std::string> tradotto = InWindows1252(nome, &mancante);
  if (nome.empty()) {
    guasto = {.Record = "punto", .Campo = "nome", .Problema = "il nome è vuoto"};
  } else if (ConControlli(nome)) {
    guasto.Problema = "il nome contiene caratteri di controllo";
  } else if (!tradotto) {
    guasto.Problema = "il carattere " + Cita(mancante) + " (" +
                      CodiceUnicode(PrimoCarattere(mancante).Codice) +
                      ") non esiste nella codifica Windows-1252 del rapporto";
  } else {
    ansi = std::move(*tradotto);
    return true;
  }
  Diario.Errore(punto.DoveNome, std::move(guasto));
  return false;
}

void CostruttoreRete::AggiungiPunto(const PuntoLetto& punto) {
  const std::string_view nome = SenzaBianchi(punto.Nome);
  std::string ansi;
  const bool ammesso = NomeAmmesso(punto, nome, ansi);
  if (nome.empty()) return;
  const int indice = static_cast<int>(InCorso.Punti.size());
  const auto [voce, nuovo] = IndiceDaNome.try_emplace(std::string(nome), indice);
  if (!nuovo) {
    const Posizione& primo = InCorso.PosizioniPunti[static_cast<std::size_t>(voce->second)];
    if (ammesso) {
      Diario.Errore(punto.DoveNome,
                    {.Record = NomePunto(nome),
                     .Problema = "punto doppio: è già alla riga " + std::to_string(primo.Riga)});
    }
    return;
  }
  TCoorCr record{};
  record.Est = punto.Est;
  record.Nord = punto.Nord;
  record.Quota = punto.Quota;
  record.TipoPla = punto.Ruoli.Pla;
  record.TipoAlt = punto.Ruoli.Alt;
  InCorso.Punti.push_back(record);
  InCorso.Nomi.emplace_back(nome);
  InCorso.NomiAnsi.push_back(std::move(ansi));
  InCorso.RuoliIniziali.push_back(punto.Ruoli);
  InCorso.PosizioniPunti.push_back(punto.Dove);
}

int CostruttoreRete::CercaPunto(std::string_view nome) const {
  const auto voce = IndiceDaNome.find(SenzaBianchi(nome));
  return voce == IndiceDaNome.end() ? -1 : voce->second;
}

void CostruttoreRete::PuntoSconosciuto(std::string_view nome, const Posizione& dove,
                                       std::string record, std::string_view campo) {
  if (MancanoPunti) return;
  const std::string_view cercato = SenzaBianchi(nome);
  Guasto guasto{.Record = std::move(record), .Campo = std::string(campo)};
  if (cercato.empty()) {
    guasto.Problema = "il nome del punto è vuoto";
  } else {
    guasto.Problema = Cita(cercato) + " non è tra i punti";
    const std::string_view vicino = Suggeriti++ < Diagnostica::kMostrati
                                        ? PiuVicino(cercato, InCorso.Nomi)
                                        : std::string_view();
    if (!vicino.empty()) guasto.Suggerimento = "forse " + Cita(vicino) + "?";
  }
  Diario.Errore(dove, std::move(guasto));
}

int CostruttoreRete::TrovaPunto(std::string_view nome, const Posizione& dove,
                                const std::string& record, std::string_view campo) {
  const int indice = CercaPunto(nome);
  if (indice < 0) PuntoSconosciuto(nome, dove, record, campo);
  return indice;
}

int CostruttoreRete::AggiungiStazione(StazioneLetta stazione) {
  Postazioni.push_back(std::move(stazione));
  InCorso.Osservazioni.emplace_back();
  InCorso.PosizioniOsservazioni.emplace_back();
  return static_cast<int>(Postazioni.size()) - 1;
}

void CostruttoreRete::AggiungiOsservazione(int stazione, const TOssCr& osservazione,
                                           const Posizione& dove) {
  const auto s = static_cast<std::size_t>(stazione);
  if (osservazione.Punto >= 0 && osservazione.Punto == Postazioni[s].Punto) {
    const std::string& nome = Postazioni[s].Nome;
    Diario.Errore(dove, {.Record = NomeOsservazione(nome, nome),
                         .Problema = "il punto osservato è la stazione stessa",
                         .Suggerimento = "uno strumento fuori centro si dà con l'eccentricità"});
  }
  UsaDirezioni = UsaDirezioni || Assegnato(osservazione.Direzione);
  UsaDistanze = UsaDistanze || (Assegnato(osservazione.Distanza) && Assegnato(osservazione.Zenit));
  InCorso.Osservazioni[s].push_back(osservazione);
  InCorso.PosizioniOsservazioni[s].push_back(dove);
}

void CostruttoreRete::CompletaOpzioni() {
  TOpzCr& opzioni = InCorso.Opzioni;
  opzioni.SqmDir = Lette.SqmDirezione.Valore.value_or(0.0);
  opzioni.SqmDistCost = Lette.SqmDistCostante.Valore.value_or(0.0);
  opzioni.SqmDistProp = Lette.SqmDistProporzionale.Valore.value_or(0.0);
  opzioni.MaxIter = Lette.Iterazioni.Valore.value_or(kIterazioniPredefinite);
  opzioni.TipoCalcolo = Lette.Calcolo.Valore.value_or(kCalcoloPredefinito);
  opzioni.Cartografiche = Lette.Cartografiche.Valore.value_or(false) ? 1 : 0;
  const auto dove = [&](const auto& letto) { return letto.Presente ? letto.Dove : Lette.Dove; };
  PosizioniOpzioni& posizioni = InCorso.DoveOpzioni;
  posizioni.SqmDirezione = dove(Lette.SqmDirezione);
  posizioni.SqmDistCostante = dove(Lette.SqmDistCostante);
  posizioni.SqmDistProporzionale = dove(Lette.SqmDistProporzionale);
  posizioni.Cartografiche = dove(Lette.Cartografiche);
}

void CostruttoreRete::SqmMancante(const Posizione& dove, std::string_view campo,
                                  std::string_view di, std::string_view unita, bool nullo) {
  Diario.Errore(dove, {.Record = "opzioni",
                       .Campo = std::string(campo),
                       .Problema = (nullo ? "lo scarto quadratico medio "
                                          : "manca lo scarto quadratico medio ") +
                                   std::string(di) + (nullo ? " è nullo" : ""),
                       .Voluto = "un numero maggiore di 0 [" + std::string(unita) + "]"});
}

// A weight is the reciprocal of a variance: what is weighted needs a standard deviation above 0.
void CostruttoreRete::ControllaSqm() {
  if ((InCorso.Opzioni.TipoCalcolo & kCalcoloPlanimetria) == 0) return;
  const Letto<double>& dir = Lette.SqmDirezione;
  if (UsaDirezioni && (!dir.Presente || dir.Valore == 0.0)) {
    SqmMancante(dir.Presente ? dir.Dove : Lette.Dove, kSqmDirezione.Nome, "delle direzioni",
                kSqmDirezione.Unita, dir.Presente);
  }
  const Letto<double>& dist = Lette.SqmDistCostante;
  const Letto<double>& prop = Lette.SqmDistProporzionale;
  const bool nullo = dist.Valore == 0.0 && !(prop.Presente && prop.Valore != 0.0);
  if (UsaDistanze && (!dist.Presente || nullo)) {
    SqmMancante(dist.Presente ? dist.Dove : Lette.Dove, kSqmDistCostante.Nome, "delle distanze",
                kSqmDistCostante.Unita, dist.Presente);
  }
}

void CostruttoreRete::CompletaStazione(const StazioneLetta& letta) {
  const std::string record = NomeStazione(letta.Nome);
  if (letta.AltezzaNota.Valore && !letta.Altezza.Presente) {
    const bool nota = *letta.AltezzaNota.Valore;
    Diario.Errore(
        letta.AltezzaNota.Dove,
        {.Record = record,
         .Campo = "altezza_nota",
         .Problema = nota ? "altezza dello strumento detta nota ma non data"
                          : "altezza dello strumento incognita senza valore approssimato",
         .Voluto = nota ? "anche altezza [m]" : "anche altezza, con un valore approssimato [m]"});
  }
  const bool fuoriCentro = letta.EccDistanza.Valore.value_or(0.0) > 0.0;
  if (fuoriCentro && !letta.EccDirezione.Presente) {
    Diario.Errore(letta.EccDistanza.Dove, {.Record = record,
                                           .Campo = "eccentricita",
                                           .Problema = "manca la direzione dell'eccentricità",
                                           .Voluto = NumeroVoluto(kEccDirezione)});
  }
  if (letta.EccDirezione.Presente && !letta.EccDistanza.Presente) {
    Diario.Errore(letta.EccDirezione.Dove, {.Record = record,
                                            .Campo = "eccentricita",
                                            .Problema = "manca la distanza dell'eccentricità",
                                            .Voluto = NumeroVoluto(kEccDistanza)});
  }
  TStaCr stazione{};
  stazione.Punto = letta.Punto;
  stazione.AltStrum = letta.Altezza.Valore.value_or(kValoreMancante);
  stazione.AltStrumNota =
      letta.AltezzaNota.Valore.value_or(true) ? kAltezzaNota : kAltezzaIncognita;
  stazione.EccDistanza = letta.EccDistanza.Valore.value_or(0.0);
  stazione.EccDirezione = letta.EccDirezione.Valore.value_or(0.0);
  InCorso.Stazioni.push_back(stazione);
  InCorso.PosizioniStazioni.push_back(letta.Dove);
}

void CostruttoreRete::Collega() {
  for (std::size_t i = 0; i < InCorso.Punti.size(); ++i) {
    InCorso.Punti[i].Nome = InCorso.NomiAnsi[i];
  }
  for (std::size_t s = 0; s < InCorso.Stazioni.size(); ++s) {
    InCorso.Stazioni[s].Osservazioni = InCorso.Osservazioni[s];
  }
}

std::optional<Rete> CostruttoreRete::Completa() {
  CompletaOpzioni();
  ControllaSqm();
  for (const StazioneLetta& letta : Postazioni) CompletaStazione(letta);
  if (Diario.HaErrori()) return std::nullopt;
  Collega();
  return std::move(InCorso);
}

}  // namespace compensa

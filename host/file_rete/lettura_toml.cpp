// The network file in TOML: its tables one by one, each key under its rule.

#include "host/file_rete/lettura_toml.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "host/base/percorsi.h"
#include "host/base/testo_file.h"
#include "host/file_rete/campi_rete.h"
#include "host/file_rete/csv.h"
#include "host/file_rete/lettura_csv.h"
#include "host/file_rete/sintassi_toml.h"
#include "host/file_rete/tabella_toml.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

constexpr int kFormato = 1;

constexpr std::array<std::string_view, 2> kChiaviProgetto = {"nome", "epsg"};
constexpr std::array<std::string_view, 6> kChiaviOpzioni = {
    "calcolo",    "sqm_direzione", "sqm_distanza_costante", "sqm_distanza_proporzionale",
    "iterazioni", "cartografiche"};
constexpr std::array<std::string_view, 3> kChiaviCurvatura = {"attiva", "coefficiente", "raggio"};
constexpr std::array<std::string_view, 6> kChiaviPunto = {"nome",  "est",         "nord",
                                                          "quota", "planimetria", "altimetria"};
constexpr std::array<std::string_view, 5> kChiaviStazione = {"punto", "altezza", "altezza_nota",
                                                             "eccentricita", "osservazioni"};
constexpr std::array<std::string_view, 2> kChiaviEccentricita = {"distanza", "direzione"};
constexpr std::array<std::string_view, 6> kChiaviOsservazione = {"punto",   "direzione", "zenit",
                                                                 "segnale", "distanza",  "tipo"};
static_assert(StessiCampi(SezioneRete::File, kChiaviFile));
static_assert(StessiCampi(SezioneRete::Progetto, kChiaviProgetto));
static_assert(StessiCampi(SezioneRete::Opzioni, kChiaviOpzioni));
static_assert(StessiCampi(SezioneRete::Curvatura, kChiaviCurvatura));
static_assert(StessiCampi(SezioneRete::Punto, kChiaviPunto));
static_assert(StessiCampi(SezioneRete::Stazione, kChiaviStazione));
static_assert(StessiCampi(SezioneRete::Eccentricita, kChiaviEccentricita));
static_assert(StessiCampi(SezioneRete::Osservazione, kChiaviOsservazione));

// A table of the file by its key, nothing and perhaps a message if it is not there.
std::optional<Tabella> Sezione(const Tabella& madre, const std::string& chiave, std::string voluto,
                               const Lettura& l) {
  const toml::node* nodo = madre.Nodo(chiave);
  if (nodo == nullptr) return std::nullopt;
  if (nodo->as_table() != nullptr) return Tabella(*nodo->as_table(), chiave, l);
  madre.Sbagliato(chiave, std::move(voluto));
  return std::nullopt;
}

// Calls leggi(table, ordinal from 1) for each table of an array.
template <class Leggi>
void PerOgniTabella(const Tabella& madre, std::string_view chiave, std::string voluto,
                    const Lettura& l, Leggi leggi) {
  const toml::array* elenco = madre.Nodo(chiave)->as_array();
  if (elenco == nullptr || elenco->empty()) {
    madre.Sbagliato(chiave, std::move(voluto));
    return;
  }
  int ordinale = 0;
  for (const toml::node& elemento : *elenco) {
    ++ordinale;
    if (const toml::table* tabella = elemento.as_table()) {
      leggi(*tabella, ordinale);
    } else {
      l.Diario.Errore(l.Dove(elemento),
                      {.Record = std::string(chiave) + " n. " + std::to_string(ordinale),
                       .Trovato = Descrivi(elemento),
                       .Voluto = "una tabella"});
    }
  }
}

void LeggiProgetto(const Tabella& file, const Lettura& l) {
  const auto progetto = Sezione(file, "progetto", "una tabella [progetto]", l);
  if (!progetto) return;
  progetto->RifiutaAltreChiavi(kChiaviProgetto);
  if (progetto->Nodo("nome") != nullptr) {
    l.Rete.DatiProgetto().Nome = progetto->Nome("nome").Valore.value_or("");
  }
  const Letto<int> epsg =
      progetto->Intero("epsg", 1, std::numeric_limits<int>::max(), "un intero positivo");
  l.Rete.DatiProgetto().Epsg = epsg.Valore;
  l.Rete.DoveOpzioni().Epsg = epsg.Dove;
}

void LeggiOpzioni(const Tabella& file, const Lettura& l) {
  OpzioniLette& lette = l.Rete.Opzioni();
  lette.Dove = {l.File, 1, 1};
  const auto opzioni = Sezione(file, "opzioni", "una tabella [opzioni]", l);
  if (!opzioni) return;
  opzioni->RifiutaAltreChiavi(kChiaviOpzioni);
  lette.Dove = opzioni->Dove();
  lette.Calcolo = opzioni->Parola("calcolo", kParoleCalcolo, ParoleVolute(kParoleCalcolo));
  lette.SqmDirezione = opzioni->Numero(kSqmDirezione);
  lette.SqmDistCostante = opzioni->Numero(kSqmDistCostante);
  lette.SqmDistProporzionale = opzioni->Numero(kSqmDistProporzionale);
  lette.Iterazioni = opzioni->Intero("iterazioni", 1, kIterazioniMassime,
                                     "un intero da 1 a " + std::to_string(kIterazioniMassime));
  lette.Cartografiche = opzioni->Vero("cartografiche");
}

void LeggiCurvatura(const Tabella& file, const Lettura& l) {
  CCalcDsOr& curvatura = l.Rete.CurvaturaRifrazione();
  curvatura = {0, kCoefficientePredefinito, kRaggioPredefinito};
  const auto tabella =
      Sezione(file, "curvatura_rifrazione", "una tabella [curvatura_rifrazione]", l);
  if (!tabella) return;
  tabella->RifiutaAltreChiavi(kChiaviCurvatura);
  curvatura.CorrCurvRifr = tabella->Vero("attiva").Valore.value_or(false) ? 1 : 0;
  const Letto<double> coefficiente = tabella->Numero(kCoefficiente);
  const Letto<double> raggio = tabella->Numero(kRaggio);
  curvatura.CoeffRifr = coefficiente.Valore.value_or(kCoefficientePredefinito);
  curvatura.RaggioTerra = raggio.Valore.value_or(kRaggioPredefinito);
  l.Rete.DoveOpzioni().Coefficiente = coefficiente.Dove;
  l.Rete.DoveOpzioni().Raggio = raggio.Dove;
}

void LeggiPunto(Tabella punto, const Lettura& l) {
  const Letto<std::string> nome = punto.Nome("nome");
  if (nome.Valore) punto.Chiama(NomePunto(*nome.Valore));
  punto.RifiutaAltreChiavi(kChiaviPunto);
  PuntoLetto letto{.Dove = punto.Dove(),
                   .DoveNome = nome.Dove,
                   .Est = punto.NumeroOMancante(kEst),
                   .Nord = punto.NumeroOMancante(kNord),
                   .Quota = punto.NumeroOMancante(kQuota)};
  const std::string voluto = ParoleVolute(kParoleRuolo);
  letto.Ruoli.Pla = punto.Parola("planimetria", kParoleRuolo, voluto).Valore.value_or(kIncognito);
  letto.Ruoli.Alt = punto.Parola("altimetria", kParoleRuolo, voluto).Valore.value_or(kIncognito);
  if (!nome.Valore) return;
  letto.Nome = *nome.Valore;
  l.Rete.AggiungiPunto(letto);
}

void LeggiOsservazione(Tabella osservazione, const std::string& stazione, int indice,
                       const Lettura& l) {
  const Letto<std::string> punto = osservazione.Nome("punto");
  if (punto.Valore) osservazione.Chiama(NomeOsservazione(stazione, *punto.Valore));
  osservazione.RifiutaAltreChiavi(kChiaviOsservazione);
  TOssCr record{};
  record.Punto = -1;
  if (punto.Valore) {
    record.Punto = l.Rete.TrovaPunto(*punto.Valore, punto.Dove, osservazione.NomeRecord());
  }
  record.Direzione = osservazione.NumeroOMancante(kDirezione);
  record.Zenit = osservazione.NumeroOMancante(kZenit);
  record.AltSegnale = osservazione.NumeroOMancante(kSegnale);
  record.Distanza = osservazione.NumeroOMancante(kDistanza);
  record.TipoDist = osservazione.Tipo();
  l.Rete.AggiungiOsservazione(indice, record, osservazione.Dove());
}

void LeggiStazione(Tabella stazione, const Lettura& l) {
  const Letto<std::string> nome = stazione.Nome("punto");
  if (nome.Valore) stazione.Chiama(NomeStazione(*nome.Valore));
  stazione.RifiutaAltreChiavi(kChiaviStazione);
  StazioneLetta letta;
  letta.Nome = nome.Valore.value_or("?");
  letta.Dove = stazione.Dove();
  if (nome.Valore) letta.Punto = l.Rete.TrovaPunto(*nome.Valore, nome.Dove, stazione.NomeRecord());
  letta.Altezza = stazione.Numero(kAltezza);
  letta.AltezzaNota = stazione.Vero("altezza_nota");
  if (auto ecc =
          Sezione(stazione, "eccentricita", "una tabella { distanza = …, direzione = … }", l)) {
    ecc->Chiama(stazione.NomeRecord() + ", eccentricita");
    ecc->RifiutaAltreChiavi(kChiaviEccentricita);
    letta.EccDistanza = ecc->Numero(Rinominata(kEccDistanza, "distanza"));
    letta.EccDirezione = ecc->Numero(Rinominata(kEccDirezione, "direzione"));
  }
  const std::string record = letta.Nome;
  const int indice = l.Rete.AggiungiStazione(std::move(letta));
  const toml::node* osservazioni = stazione.Nodo("osservazioni");
  const bool vuote =
      osservazioni == nullptr || (osservazioni->is_array() && osservazioni->as_array()->empty());
  if (vuote) return;
  PerOgniTabella(
      stazione, "osservazioni", "un elenco [ { punto = … }, … ]", l,
      [&](const toml::table& tabella, int n) {
        LeggiOsservazione(
            Tabella(tabella, stazione.NomeRecord() + ", osservazione n. " + std::to_string(n), l),
            record, indice, l);
      });
}

// Reads the CSV table that a key names, if it can be read; false if not.
template <class Leggi>
bool LeggiTabellaCsv(const Tabella& file, std::string_view chiave,
                     const std::filesystem::path& cartella, const Lettura& l, Leggi leggi) {
  const std::string& nome = file.Nodo(chiave)->as_string()->get();
  const auto controllo = [](char c) { return static_cast<unsigned char>(c) < 0x20; };
  if (nome.empty() || std::any_of(nome.begin(), nome.end(), controllo)) {
    file.Sbagliato(chiave, "il nome di un file CSV");
    return false;
  }
  const std::filesystem::path percorso = cartella / PercorsoDa(nome);
  const std::optional<std::string> testo =
      LeggiTesto(percorso, kMassimoCsv, l.Dove(*file.Nodo(chiave)), std::string(chiave), l.Diario,
                 l.Rete.NuovaImpronta());
  if (!testo) return false;
  leggi(*testo, l.Rete.RegistraFile(percorso.string()), l.Rete, l.Diario);
  return true;
}

void LeggiPunti(const Tabella& file, const std::filesystem::path& cartella, const Lettura& l) {
  if (file.Nodo("punti") == nullptr) {
    file.Manca("punti", "[[punti]] o punti = \"file.csv\"");
    l.Rete.PuntiIncompleti();
  } else if (file.Nodo("punti")->is_string()) {
    if (!LeggiTabellaCsv(file, "punti", cartella, l, LeggiPuntiCsv)) l.Rete.PuntiIncompleti();
  } else {
    const toml::array* elenco = file.Nodo("punti")->as_array();
    if (elenco == nullptr || elenco->empty()) l.Rete.PuntiIncompleti();
    PerOgniTabella(file, "punti", "[[punti]] o il nome di un file CSV", l,
                   [&](const toml::table& tabella, int n) {
                     LeggiPunto(Tabella(tabella, "punto n. " + std::to_string(n), l), l);
                   });
  }
}

void LeggiStazioni(const Tabella& file, const std::filesystem::path& cartella, const Lettura& l) {
  const toml::node* tabella = file.Nodo("osservazioni");
  if (tabella != nullptr && file.Nodo("stazioni") != nullptr) {
    l.Diario.Errore(l.Dove(*tabella),
                    {.Campo = "osservazioni",
                     .Problema = "le osservazioni stanno o in un file CSV o in [[stazioni]]"});
  } else if (tabella != nullptr && !tabella->is_string()) {
    file.Sbagliato("osservazioni", "il nome di un file CSV",
                   "nel file TOML le osservazioni stanno dentro [[stazioni]]");
  } else if (tabella != nullptr) {
    LeggiTabellaCsv(file, "osservazioni", cartella, l, LeggiOsservazioniCsv);
  } else if (file.Nodo("stazioni") == nullptr && l.Rete.Opzioni().Calcolo.Valore != 0) {
    file.Manca("stazioni", "[[stazioni]] o osservazioni = \"file.csv\"");
  }
  if (file.Nodo("stazioni") == nullptr) return;
  PerOgniTabella(file, "stazioni", "[[stazioni]]", l, [&](const toml::table& t, int n) {
    LeggiStazione(Tabella(t, "stazione n. " + std::to_string(n), l), l);
  });
}

void LeggiFile(const toml::table& radice, const std::filesystem::path& cartella, const Lettura& l) {
  const Tabella file(radice, "", l);
  file.RifiutaAltreChiavi(kChiaviFile);
  if (file.Nodo("formato") == nullptr) {
    file.Manca("formato", "formato = " + std::to_string(kFormato));
  }
  file.Intero("formato", kFormato, kFormato, std::to_string(kFormato));
  LeggiProgetto(file, l);
  LeggiOpzioni(file, l);
  LeggiCurvatura(file, l);
  LeggiPunti(file, cartella, l);
  LeggiStazioni(file, cartella, l);
}

}  // namespace

void LeggiToml(std::string_view testo, std::string_view file, const std::filesystem::path& cartella,
               CostruttoreRete& rete, Diagnostica& diagnostica) {
  if (std::optional<Ostacolo> ostacolo = PrimaDelParser(testo, file)) {
    diagnostica.Errore(ostacolo->Dove, std::move(ostacolo->Cosa));
    return;
  }
  const Lettura lettura{file, rete, diagnostica};
  try {
    const toml::table radice = toml::parse(testo);
    LeggiFile(radice, cartella, lettura);
  } catch (const toml::parse_error& errore) {
    const Posizione dove = lettura.Dove(errore.source());
    diagnostica.Errore(dove, GuastoSintassi(errore.description(), RigaDelTesto(testo, dove.Riga)));
  } catch (const StatoImprevisto&) {
    diagnostica.Errore({file, 0, 0}, GuastoSintassi("", ""));
  }
}

}  // namespace compensa

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
std::optional<Tabella> Sezione(const Tabella& madre, std::string_view chiave, std::string voluto,
                               const Lettura& l, bool dentro = false) {
  const NodoToml* nodo = madre.Nodo(chiave);
  if (nodo == nullptr) return std::nullopt;
  if (nodo->Genere == GenereToml::Tabella)
    return Tabella(*nodo, chiave, l, 0, dentro ? &madre : nullptr);
  madre.Sbagliato(chiave, std::move(voluto));
  return std::nullopt;
}

// Calls leggi(table, ordinal from 1) for each table of an array.
template <class Leggi>
void PerOgniTabella(const Tabella& madre, std::string_view chiave, std::string voluto,
                    const Lettura& l, Leggi leggi) {
  const NodoToml* elenco = madre.Nodo(chiave);
  if (elenco->Genere != GenereToml::Elenco || elenco->Primo == 0) {
    madre.Sbagliato(chiave, std::move(voluto));
    return;
  }
  int ordinale = 0;
  for (const NodoToml* n = l.Toml.Primo(*elenco); n != nullptr; n = l.Toml.Prossimo(*n)) {
    ++ordinale;
    if (n->Genere == GenereToml::Tabella) {
      leggi(*n, ordinale);
    } else {
      l.Diario.Errore(l.Toml.Dove(*n),
                      {.Record = std::string(chiave) + " n. " + std::to_string(ordinale),
                       .Trovato = l.Toml.Descrivi(*n),
                       .Voluto = "una tabella"});
    }
  }
}

void LeggiProgetto(const Tabella& file, const Lettura& l) {
  const auto progetto = Sezione(file, "progetto", "una tabella [progetto]", l);
  if (!progetto) return;
  progetto->RifiutaAltreChiavi(kChiaviProgetto);
  if (progetto->Nodo("nome") != nullptr)
    l.Rete.DatiProgetto().Nome = Tabella(*progetto).LeggiNome("nome").value_or("");
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
  lette.Calcolo = opzioni->ConPosto("calcolo", opzioni->Parola("calcolo", kParoleCalcolo));
  lette.SqmDirezione = opzioni->NumeroConPosto(kSqmDirezione);
  lette.SqmDistCostante = opzioni->NumeroConPosto(kSqmDistCostante);
  lette.SqmDistProporzionale = opzioni->NumeroConPosto(kSqmDistProporzionale);
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
  const Letto<double> coefficiente = tabella->NumeroConPosto(kCoefficiente);
  const Letto<double> raggio = tabella->NumeroConPosto(kRaggio);
  curvatura.CoeffRifr = coefficiente.Valore.value_or(kCoefficientePredefinito);
  curvatura.RaggioTerra = raggio.Valore.value_or(kRaggioPredefinito);
  l.Rete.DoveOpzioni().Coefficiente = coefficiente.Dove;
  l.Rete.DoveOpzioni().Raggio = raggio.Dove;
}

void LeggiPunto(Tabella punto, const Lettura& l) {
  const std::optional<std::string>& nome = punto.LeggiNome("nome");
  punto.RifiutaAltreChiavi(kChiaviPunto);
  PuntoLetto letto{.Dove = punto.Dove(),
                   .DoveNome = nome ? punto.Dove("nome") : Posizione{},
                   .Est = punto.NumeroOMancante(kEst),
                   .Nord = punto.NumeroOMancante(kNord),
                   .Quota = punto.NumeroOMancante(kQuota)};
  letto.Ruoli.Pla = punto.Parola("planimetria", kParoleRuolo).value_or(kIncognito);
  letto.Ruoli.Alt = punto.Parola("altimetria", kParoleRuolo).value_or(kIncognito);
  if (!nome) return;
  letto.Nome = *nome;
  l.Rete.AggiungiPunto(letto);
}

void LeggiOsservazione(Tabella osservazione, int indice, const Lettura& l) {
  const std::optional<std::string>& punto = osservazione.LeggiNome("punto");
  osservazione.RifiutaAltreChiavi(kChiaviOsservazione);
  TOssCr record{};
  record.Punto = punto ? l.Rete.CercaPunto(*punto) : -1;
  if (punto && record.Punto < 0)
    l.Rete.PuntoSconosciuto(*punto, osservazione.Dove("punto"), osservazione.NomeRecord());
  record.Direzione = osservazione.NumeroOMancante(kDirezione);
  record.Zenit = osservazione.NumeroOMancante(kZenit);
  record.AltSegnale = osservazione.NumeroOMancante(kSegnale);
  record.Distanza = osservazione.NumeroOMancante(kDistanza);
  record.TipoDist = osservazione.Parola("tipo", kParoleTipo).value_or(kOrizzontale);
  l.Rete.AggiungiOsservazione(indice, record, osservazione.Dove());
}

void LeggiStazione(Tabella stazione, const Lettura& l) {
  const std::optional<std::string>& nome = stazione.LeggiNome("punto");
  stazione.RifiutaAltreChiavi(kChiaviStazione);
  StazioneLetta letta;
  letta.Nome = nome.value_or("?");
  letta.Dove = stazione.Dove();
  if (nome) letta.Punto = l.Rete.TrovaPunto(*nome, stazione.Dove("punto"), stazione.NomeRecord());
  letta.Altezza = stazione.NumeroConPosto(kAltezza);
  letta.AltezzaNota = stazione.Vero("altezza_nota");
  if (auto ecc = Sezione(stazione, "eccentricita", "una tabella { distanza = …, direzione = … }", l,
                         true)) {
    ecc->RifiutaAltreChiavi(kChiaviEccentricita);
    letta.EccDistanza = ecc->NumeroConPosto(Rinominata(kEccDistanza, "distanza"));
    letta.EccDirezione = ecc->NumeroConPosto(Rinominata(kEccDirezione, "direzione"));
  }
  const int indice = l.Rete.AggiungiStazione(std::move(letta));
  const NodoToml* osservazioni = stazione.Nodo("osservazioni");
  if (osservazioni == nullptr ||
      (osservazioni->Genere == GenereToml::Elenco && osservazioni->Primo == 0))
    return;
  PerOgniTabella(stazione, "osservazioni", "un elenco [ { punto = … }, … ]", l,
                 [&](const NodoToml& nodo, int n) {
                   LeggiOsservazione(Tabella(nodo, "osservazione", l, n, &stazione), indice, l);
                 });
}

// Reads the CSV table that a key names, if it can be read; false if not.
template <class Leggi>
bool LeggiTabellaCsv(const Tabella& file, std::string_view chiave,
                     const std::filesystem::path& cartella, const Lettura& l, Leggi leggi) {
  const std::string nome = l.Toml.Testo(*file.Nodo(chiave));
  const auto controllo = [](char c) { return static_cast<unsigned char>(c) < 0x20; };
  if (nome.empty() || std::any_of(nome.begin(), nome.end(), controllo)) {
    file.Sbagliato(chiave, "il nome di un file CSV");
    return false;
  }
  const std::filesystem::path percorso = cartella / PercorsoDa(nome);
  const std::optional<std::string> testo =
      LeggiTesto(percorso, kMassimoCsv, file.Dove(chiave), std::string(chiave), l.Diario,
                 l.Rete.NuovaImpronta());
  if (!testo) return false;
  leggi(*testo, l.Rete.RegistraFile(percorso.string()), l.Rete, l.Diario);
  return true;
}

void LeggiPunti(const Tabella& file, const std::filesystem::path& cartella, const Lettura& l) {
  if (file.Nodo("punti") == nullptr) {
    file.Manca("punti", "[[punti]] o punti = \"file.csv\"");
    l.Rete.PuntiIncompleti();
  } else if (file.Nodo("punti")->Genere == GenereToml::Testo) {
    if (!LeggiTabellaCsv(file, "punti", cartella, l, LeggiPuntiCsv)) l.Rete.PuntiIncompleti();
  } else {
    if (file.Nodo("punti")->Primo == 0) l.Rete.PuntiIncompleti();
    PerOgniTabella(file, "punti", "[[punti]] o il nome di un file CSV", l,
                   [&](const NodoToml& nodo, int n) {
                     LeggiPunto({nodo, "punto", l, n}, l);
                   });
  }
}

void LeggiStazioni(const Tabella& file, const std::filesystem::path& cartella, const Lettura& l) {
  const NodoToml* tabella = file.Nodo("osservazioni");
  if (tabella != nullptr && file.Nodo("stazioni") != nullptr) {
    l.Diario.Errore(l.Toml.Dove(*tabella),
                    {.Campo = "osservazioni",
                     .Problema = "le osservazioni stanno o in un file CSV o in [[stazioni]]"});
  } else if (tabella != nullptr && tabella->Genere != GenereToml::Testo) {
    file.Sbagliato("osservazioni", "il nome di un file CSV",
                   "nel file TOML le osservazioni stanno dentro [[stazioni]]");
  } else if (tabella != nullptr) {
    LeggiTabellaCsv(file, "osservazioni", cartella, l, LeggiOsservazioniCsv);
  } else if (file.Nodo("stazioni") == nullptr && l.Rete.Opzioni().Calcolo.Valore != 0) {
    file.Manca("stazioni", "[[stazioni]] o osservazioni = \"file.csv\"");
  }
  if (file.Nodo("stazioni") == nullptr) return;
  PerOgniTabella(file, "stazioni", "[[stazioni]]", l, [&](const NodoToml& nodo, int n) {
    LeggiStazione({nodo, "stazione", l, n}, l);
  });
}

void LeggiFile(const std::filesystem::path& cartella, const Lettura& l) {
  const Tabella file(l.Toml.Radice(), "", l);
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
  const DocumentoToml documento(testo, file, diagnostica);
  if (documento.Valido()) LeggiFile(cartella, {file, documento, rete, diagnostica});
}

}  // namespace compensa

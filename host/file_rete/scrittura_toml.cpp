// The network file, section by section. Lists are laid out in columns: numbers end together, what a
// row does not give leaves a blank as wide as the column.

#include "host/file_rete/scrittura_toml.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>

#include "host/base/codifica.h"
#include "host/base/numeri.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

constexpr int kDecimaliLunghezze = 3;       // coordinates, heights
constexpr int kDecimaliLetture = 4;         // angles in gon, distances in metres
constexpr int kDecimaliMassimiColonna = 8;  // beyond them a value stands on its own
constexpr int kDecimaliNumeroBreve = 17;
constexpr double kTroppoGrande = 1.0e15;   // from here on with an exponent
constexpr int kLarghezzaMassima = 40;      // of a column: longer texts stick out
constexpr std::size_t kColonnaUnita = 36;  // where the comments of the options begin
constexpr int kLarghezzaCommento = 98;

bool Controllo(char c) { return static_cast<unsigned char>(c) < 0x20 || c == '\x7F'; }

std::size_t Decimali(std::string_view numero) {
  const std::size_t punto = numero.find('.');
  return punto == std::string_view::npos ? 0 : numero.size() - punto - 1;
}

// One row after the other of a list of inline tables. A cell without text leaves a blank.
struct Cella {
  std::string Testo;
  double Valore = kValoreMancante;  // a number, if Testo is empty
};

struct Colonna {
  std::string_view Chiave;
  int DecimaliMinimi = 0;
  bool Numerica = false;
  std::vector<Cella> Celle = {};
};

bool Vuota(const Cella& cella) { return cella.Testo.empty() && !Assegnato(cella.Valore); }

// Gives the numbers of a column their texts, with equal decimals, and returns the column's width.
int Componi(Colonna& colonna) {
  auto decimali = static_cast<std::size_t>(colonna.DecimaliMinimi);
  for (Cella& cella : colonna.Celle) {
    if (!Assegnato(cella.Valore)) continue;
    cella.Testo = NumeroToml(cella.Valore, colonna.DecimaliMinimi);
    const std::size_t propri = Decimali(cella.Testo);
    if (propri <= kDecimaliMassimiColonna) decimali = std::max(decimali, propri);
  }
  int larghezza = 0;
  for (Cella& cella : colonna.Celle) {
    const bool fisso = Assegnato(cella.Valore) && cella.Testo.find('e') == std::string::npos;
    const std::size_t propri = Decimali(cella.Testo);
    if (fisso && propri < decimali) cella.Testo.append(decimali - propri, '0');
    larghezza = std::max(larghezza, ContaCaratteri(cella.Testo));
  }
  return std::min(larghezza, kLarghezzaMassima);
}

std::string Bianchi(int quanti) {
  return std::string(static_cast<std::size_t>(std::max(quanti, 0)), ' ');
}

// The rows of the columns, each as "  { key = value, ... },".
void ScriviElenco(std::vector<Colonna>& colonne, std::size_t righe,
                  const std::function<void(std::string_view)>& scrivi) {
  std::vector<int> larghezze;
  larghezze.reserve(colonne.size());
  for (Colonna& colonna : colonne) larghezze.push_back(Componi(colonna));
  std::string riga;
  for (std::size_t r = 0; r < righe; ++r) {
    riga = "  {";
    std::string attesa;  // blanks that only matter if something follows
    for (std::size_t c = 0; c < colonne.size(); ++c) {
      const Colonna& colonna = colonne[c];
      if (larghezze[c] == 0) continue;
      const Cella& cella = colonna.Celle[r];
      const int manca = larghezze[c] - ContaCaratteri(cella.Testo);
      if (Vuota(cella)) {
        attesa += Bianchi(static_cast<int>(colonna.Chiave.size()) + larghezze[c] + 5);
        continue;
      }
      if (c > 0) riga += ',';
      riga += attesa + ' ';
      riga += colonna.Chiave;
      riga += " = " + (colonna.Numerica ? Bianchi(manca) : "") + cella.Testo;
      attesa = colonna.Numerica ? "" : Bianchi(manca);
    }
    scrivi(riga + " },\n");
  }
}

// The word of a code; the code itself if it has none.
std::string Parola(std::span<const ParolaNota> parole, int codice) {
  for (const ParolaNota& parola : parole)
    if (parola.Valore == codice) return TestoToml(parola.Testo);
  return std::to_string(codice);
}

std::string Ruolo(int ruolo) { return ruolo == kIncognito ? "" : Parola(kParoleRuolo, ruolo); }

std::string Tipo(int tipo) { return tipo == kOrizzontale ? "" : Parola(kParoleTipo, tipo); }

void ScriviPunti(const Rete& rete, const std::function<void(std::string_view)>& scrivi) {
  scrivi(
      "# I punti: coordinate e quote in metri, note quelle dei punti fissi, approssimate le "
      "altre.\n"
      "# Un ruolo che non è scritto è \"incognito\"; gli altri sono \"fisso\" ed \"escluso\".\n"
      "punti = [\n");
  std::vector<Colonna> colonne = {{"nome"},
                                  {"est", kDecimaliLunghezze, true},
                                  {"nord", kDecimaliLunghezze, true},
                                  {"quota", kDecimaliLunghezze, true},
                                  {"planimetria"},
                                  {"altimetria"}};
  for (std::size_t i = 0; i < rete.Punti.size(); ++i) {
    const TCoorCr& punto = rete.Punti[i];
    colonne[0].Celle.push_back({TestoToml(rete.Nomi[i])});
    colonne[1].Celle.push_back({"", punto.Est});
    colonne[2].Celle.push_back({"", punto.Nord});
    colonne[3].Celle.push_back({"", punto.Quota});
    colonne[4].Celle.push_back({Ruolo(rete.RuoliIniziali[i].Pla)});
    colonne[5].Celle.push_back({Ruolo(rete.RuoliIniziali[i].Alt)});
  }
  ScriviElenco(colonne, rete.Punti.size(), scrivi);
  scrivi("]\n");
}

std::string SenzaControlli(std::string_view testo) {
  std::string pulito = Utf8Valido(testo) ? std::string(testo) : DaWindows1252(testo);
  std::replace_if(pulito.begin(), pulito.end(), Controllo, ' ');
  return pulito;
}

// "key = value   # comment", the comments one below the other.
std::string Riga(const std::string& chiaveValore, const std::string& commento = {}) {
  std::string riga = chiaveValore;
  if (!commento.empty()) {
    riga.append(std::max(kColonnaUnita, riga.size() + 2) - riga.size(), ' ');
    riga += "# " + SenzaControlli(commento);
  }
  return riga + "\n";
}

std::string ConNota(const std::string& unita, const std::string& nota) {
  return nota.empty() ? unita : unita + ": " + nota;
}

std::string SezioneProgetto(const Rete& rete) {
  const auto& progetto = rete.DatiProgetto;
  if (progetto.Nome.empty() && !progetto.Epsg) return {};
  std::string testo = "\n[progetto]\n";
  if (!progetto.Nome.empty()) testo += "nome = " + TestoToml(progetto.Nome) + "\n";
  if (progetto.Epsg) testo += "epsg = " + std::to_string(*progetto.Epsg) + "\n";
  return testo;
}

std::string SezioneOpzioni(const Rete& rete, const IntestazioneToml& intestazione) {
  const TOpzCr& o = rete.Opzioni;
  const auto numero = [](std::string_view chiave, double valore, int decimali) {
    return std::string(chiave) + " = " + NumeroToml(valore, decimali);
  };
  std::string testo = "\n[opzioni]\n";
  testo += Riga("calcolo = " + Parola(kParoleCalcolo, o.TipoCalcolo));
  if (o.SqmDir != 0.0) {
    testo += Riga(numero(kSqmDirezione.Nome, o.SqmDir, kDecimaliLetture),
                  ConNota("gon, di un angolo fra due direzioni", intestazione.NotaSqmDirezione));
  }
  if (o.SqmDistCost != 0.0 || o.SqmDistProp != 0.0) {
    testo += Riga(numero(kSqmDistCostante.Nome, o.SqmDistCost, kDecimaliLunghezze),
                  ConNota("m", intestazione.NotaSqmDistanza));
    testo += Riga(numero(kSqmDistProporzionale.Nome, o.SqmDistProp, kDecimaliLunghezze),
                  ConNota("m per km", intestazione.NotaSqmProporzionale));
  }
  testo += Riga("iterazioni = " + std::to_string(o.MaxIter));
  testo += Riga(std::string("cartografiche = ") + (o.Cartografiche != 0 ? "true" : "false"));
  return testo;
}

std::string SezioneCurvatura(const Rete& rete) {
  const CCalcDsOr& c = rete.CurvaturaRifrazione;
  return std::string("\n[curvatura_rifrazione]\n") +
         Riga(std::string("attiva = ") + (c.CorrCurvRifr != 0 ? "true" : "false")) +
         Riga("coefficiente = " + NumeroToml(c.CoeffRifr, 2)) +
         Riga("raggio = " + NumeroToml(c.RaggioTerra, 1), "m");
}

void ScriviStazione(const Rete& rete, std::size_t s,
                    const std::function<void(std::string_view)>& scrivi) {
  const TStaCr& stazione = rete.Stazioni[s];
  const auto nome = [&](int punto) {
    return TestoToml(rete.Nomi[static_cast<std::size_t>(punto)]);
  };
  std::string testa = "\n[[stazioni]]\npunto = " + nome(stazione.Punto) + "\n";
  if (Assegnato(stazione.AltStrum))
    testa += "altezza = " + NumeroToml(stazione.AltStrum, kDecimaliLunghezze) + "\n";
  if (stazione.AltStrumNota == kAltezzaIncognita) testa += "altezza_nota = false\n";
  if (stazione.EccDistanza != 0.0 || stazione.EccDirezione != 0.0) {
    testa += "eccentricita = { distanza = " + NumeroToml(stazione.EccDistanza, kDecimaliLunghezze) +
             ", direzione = " + NumeroToml(stazione.EccDirezione, kDecimaliLetture) + " }\n";
  }
  const auto& osservazioni = rete.Osservazioni[s];
  if (osservazioni.empty()) {
    scrivi(testa);
    return;
  }
  scrivi(testa + "osservazioni = [\n");
  std::vector<Colonna> colonne = {{"punto"},
                                  {"direzione", kDecimaliLetture, true},
                                  {"zenit", kDecimaliLetture, true},
                                  {"segnale", kDecimaliLunghezze, true},
                                  {"distanza", kDecimaliLetture, true},
                                  {"tipo"}};
  for (const TOssCr& o : osservazioni) {
    colonne[0].Celle.push_back({nome(o.Punto)});
    colonne[1].Celle.push_back({"", o.Direzione});
    colonne[2].Celle.push_back({"", o.Zenit});
    colonne[3].Celle.push_back({"", o.AltSegnale});
    colonne[4].Celle.push_back({"", o.Distanza});
    colonne[5].Celle.push_back({Tipo(o.TipoDist)});
  }
  ScriviElenco(colonne, osservazioni.size(), scrivi);
  scrivi("]\n");
}

// A paragraph as comment lines. What it is indented by, all its lines are.
std::string Commento(const std::string& grezzo) {
  const std::string testo = SenzaControlli(grezzo);
  const std::size_t inizio = std::min(testo.find_first_not_of(' '), testo.size());
  if (inizio == testo.size()) return "#\n";
  const std::string rientro = "# " + testo.substr(0, inizio);
  std::string commento, riga;
  for (std::size_t i = inizio; i < testo.size();) {
    const std::size_t fine = std::min(testo.find(' ', i), testo.size());
    const std::string parola = testo.substr(i, fine - i);
    const int lunga = ContaCaratteri(riga) + ContaCaratteri(parola) + static_cast<int>(inizio) + 3;
    if (!riga.empty() && lunga > kLarghezzaCommento) {
      commento += rientro + riga + "\n";
      riga.clear();
    }
    riga += (riga.empty() ? "" : " ") + parola;
    i = fine + 1;
  }
  return commento + rientro + riga + "\n";
}

}  // namespace

std::string TestoToml(std::string_view testo) {
  constexpr std::string_view kEsadecimali = "0123456789ABCDEF";
  std::string scritto = "\"";
  for (const char c : testo) {
    if (c == '"' || c == '\\') {
      scritto += '\\';
      scritto += c;
    } else if (Controllo(c)) {
      const auto byte = static_cast<unsigned char>(c);
      scritto += "\\u00";
      scritto += kEsadecimali[byte >> 4U];
      scritto += kEsadecimali[byte & 0xFU];
    } else {
      scritto += c;
    }
  }
  return scritto + '"';
}

std::string NumeroToml(double valore, int decimali) {
  std::string testo = NumeroBreve(valore);
  if (testo.find('e') != std::string::npos) {
    if (std::abs(valore) >= kTroppoGrande) return testo;
    std::string disteso = NumeroFisso(valore, kDecimaliNumeroBreve);
    if (LeggiNumero(disteso).Valore != valore) return testo;
    disteso.erase(disteso.find_last_not_of('0') + 1);
    if (LeggiNumero(disteso).Valore != valore) return testo;
    testo = std::move(disteso);
  }
  if (testo.find('.') == std::string::npos) testo += '.';
  const std::size_t propri = Decimali(testo);
  const std::size_t voluti = static_cast<std::size_t>(std::max(decimali, 1));
  if (propri < voluti) testo.append(voluti - propri, '0');
  return testo;
}

void ScriviRete(const Rete& rete, const IntestazioneToml& intestazione,
                const std::function<void(std::string_view)>& scrivi) {
  std::string testa;
  for (const std::string& riga : intestazione.Righe) testa += Commento(riga);
  if (!testa.empty()) testa += "\n";
  scrivi(testa + "formato = 1\n\n");
  ScriviPunti(rete, scrivi);
  scrivi(SezioneProgetto(rete) + SezioneOpzioni(rete, intestazione) + SezioneCurvatura(rete));
  scrivi(
      "\n# Le stazioni, con le letture nell'ordine in cui sono state fatte: direzioni e zenit in "
      "gon,\n"
      "# altezze e distanze in metri. Ogni messa in stazione ha il suo cerchio.");
  if (rete.Stazioni.empty()) scrivi("\n");
  for (std::size_t s = 0; s < rete.Stazioni.size(); ++s) ScriviStazione(rete, s, scrivi);
}

}  // namespace compensa

// The command line parser, fed with the table of the options. An option whose value may be left out
// is settled before: the next word is its value unless it is an option, or a network.

#include "host/comando/parole_comando.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <limits>
#include <utility>

#include "host/base/diagnostica.h"
#include "host/base/errori.h"
#include "host/base/numeri.h"
#include "host/base/suggerimenti.h"

namespace compensa {

namespace {

constexpr std::string_view kEstensioneRete = ".toml";
constexpr const char* kInterruttoreAcceso = "true";  // what the parser gives a switch

bool SembraOpzione(std::string_view parola) { return parola.size() > 1 && parola.front() == '-'; }

bool SembraRete(std::string_view parola) {
  if (parola.size() < kEstensioneRete.size()) return false;
  const std::string_view coda = parola.substr(parola.size() - kEstensioneRete.size());
  return DistanzaTesti(coda, kEstensioneRete, 0) == 0;  // whatever the case
}

std::string Lunga(std::string_view nome) { return "--" + std::string(nome); }

[[noreturn]] void RifiutaSenzaValore(const Opzione& opzione) {
  throw ErroreUso(
      "opzione --" + std::string(opzione.Nome) +
      (opzione.Valore.empty() ? ": non vuole un valore" : ": vuole un valore, una volta sola"));
}

// The option that a message of the parser begins with, or ends with.
std::string OpzioneNominata(const std::string& messaggio) {
  const std::size_t inizio = messaggio.find('-');
  if (inizio == std::string::npos) return {};
  return messaggio.substr(inizio, messaggio.find_first_of(" :,", inizio) - inizio);
}

[[noreturn]] void RifiutaSconosciuta(const Comando& comando, const std::string& parola) {
  std::vector<std::string> note;
  for (const Gruppo& gruppo : comando.Gruppi)
    for (const Opzione& opzione : gruppo.Opzioni)
      for (const std::string& nome : ParoleOpzione(opzione))
        if (nome.starts_with("--")) note.push_back(nome);
  const std::string_view vicina = PiuVicino(parola.substr(0, parola.find('=')), note);
  throw ErroreUso("opzione sconosciuta " + Cita(parola) +
                  (vicina.empty() ? "" : " (forse " + std::string(vicina) + "?)"));
}

std::string NomiPerCli(const Opzione& opzione) {
  std::string nomi;
  for (const std::string& nome : ParoleOpzione(opzione)) nomi += (nomi.empty() ? "" : ",") + nome;
  return nomi;
}

using Definite = std::vector<std::pair<const Opzione*, const CLI::Option*>>;

// The options as the parser holds them: it cannot look them up by name when memory is short.
Definite Definisci(CLI::App& app, const Comando& comando, std::vector<std::string>& resto) {
  Definite definite;
  app.set_help_flag();
  app.allow_extras();
  app.add_option("argomenti", resto);
  for (const Gruppo& gruppo : comando.Gruppi)
    for (const Opzione& opzione : gruppo.Opzioni) {
      CLI::Option* definita = opzione.Valore.empty() ? app.add_flag(NomiPerCli(opzione))
                                                     : app.add_option(NomiPerCli(opzione));
      if (opzione.Elenco) definita->take_all();
      definite.emplace_back(&opzione, definita);
    }
  return definite;
}

}  // namespace

ParoleComando::ParoleComando(const Comando& comando, const std::vector<std::string>& parole)
    : Cosa(comando) {
  Distribuisci(TogliSenzaValore(parole));
}

// Without them every option that is left has a value, as the parser wants it.
std::vector<std::string> ParoleComando::TogliSenzaValore(const std::vector<std::string>& parole) {
  std::vector<std::string> rimaste;
  for (std::size_t i = 0; i < parole.size(); ++i) {
    if (parole[i] == "--") {
      rimaste.insert(rimaste.end(), parole.begin() + static_cast<std::ptrdiff_t>(i), parole.end());
      break;
    }
    const Opzione* opzione = TrovaOpzione(Cosa, parole[i]);
    const bool altra = i + 1 < parole.size() && !SembraOpzione(parole[i + 1]);
    if (opzione != nullptr && !opzione->Valore.empty() && altra &&
        !(opzione->Facoltativo && SembraRete(parole[i + 1]))) {
      rimaste.push_back(parole[i]);
      rimaste.push_back(parole[++i]);
    } else if (opzione != nullptr && !opzione->Valore.empty() && !opzione->Facoltativo) {
      if (i + 1 == parole.size() || TrovaOpzione(Cosa, parole[i + 1]) != nullptr)
        RifiutaSenzaValore(*opzione);
      rimaste.push_back(parole[i]);
      rimaste.push_back(parole[++i]);  // begins with a dash, as a negative number does
    } else if (opzione != nullptr && opzione->Facoltativo) {
      if (!Valori.try_emplace(std::string(opzione->Nome)).second) RifiutaSenzaValore(*opzione);
    } else {
      rimaste.push_back(parole[i]);
    }
  }
  return rimaste;
}

void ParoleComando::Distribuisci(const std::vector<std::string>& parole) {
  CLI::App app;
  const Definite definite = Definisci(app, Cosa, Resto);
  try {
    app.parse(std::vector<std::string>(parole.rbegin(), parole.rend()));  // the last word first
  } catch (const CLI::ParseError& errore) {
    const Opzione* opzione = TrovaOpzione(Cosa, OpzioneNominata(errore.what()));
    if (opzione == nullptr) throw ErroreUso("riga di comando non comprensibile");
    RifiutaSenzaValore(*opzione);
  }
  for (const std::string& parola : app.remaining())
    if (parola != "--")
      SembraOpzione(parola) ? RifiutaSconosciuta(Cosa, parola) : Resto.push_back(parola);
  for (const auto& [opzione, letta] : definite) {
    if (letta->count() == 0) continue;
    const bool interruttore = opzione->Valore.empty();
    if (interruttore && letta->results() != std::vector<std::string>{kInterruttoreAcceso})
      RifiutaSenzaValore(*opzione);
    if (!Valori.try_emplace(std::string(opzione->Nome), letta->results()).second)
      RifiutaSenzaValore(*opzione);
  }
  Aiuto = Data("aiuto");
  Versione = Data("versione");
}

bool ParoleComando::Data(std::string_view nome) const { return Valori.find(nome) != Valori.end(); }

std::optional<std::string> ParoleComando::Testo(std::string_view nome) const {
  const auto dati = Valori.find(nome);
  if (dati == Valori.end() || dati->second.empty()) return std::nullopt;
  if (!dati->second.front().empty()) return dati->second.front();
  const Opzione* opzione = TrovaOpzione(Cosa, Lunga(nome));
  throw ErroreUso("opzione " + Lunga(nome) +
                  (opzione->Genere == GenereValore::File || opzione->Genere == GenereValore::Rete
                       ? ": il nome del file è vuoto"
                       : ": il valore è vuoto"));
}

std::vector<std::string> ParoleComando::Elenco(std::string_view nome) const {
  std::vector<std::string> elenco;
  const auto dati = Valori.find(nome);
  if (dati == Valori.end()) return elenco;
  for (const std::string& valore : dati->second)
    for (std::size_t da = 0; da <= valore.size();) {
      const std::size_t a = std::min(valore.find(',', da), valore.size());
      const std::size_t primo = std::min(valore.find_first_not_of(' ', da), a);
      std::string voce = valore.substr(primo, a - primo);
      voce.erase(voce.find_last_not_of(' ') + 1);
      if (voce.empty())
        throw ErroreUso("opzione " + Lunga(nome) + ": trovato " + Cita(valore) +
                        ", servono nomi separati da virgole");
      elenco.push_back(std::move(voce));
      da = a + 1;
    }
  return elenco;
}

std::optional<double> ParoleComando::Numero(std::string_view nome,
                                            const RegolaNumero& regola) const {
  const std::optional<std::string> testo = Testo(nome);
  if (!testo) return std::nullopt;
  const NumeroLetto letto = LeggiNumero(*testo, true);
  if (letto.Esito == EsitoNumero::Valido && Ammesso(regola, letto.Valore)) return letto.Valore;
  throw ErroreUso("opzione " + Lunga(nome) + ": trovato " + Cita(*testo) + ", serve " +
                  NumeroVoluto(regola));
}

std::optional<int> ParoleComando::Intero(std::string_view nome, int minimo) const {
  const std::optional<std::string> testo = Testo(nome);
  if (!testo) return std::nullopt;
  const std::optional<int> letto = LeggiIntero(*testo);
  if (letto && *letto >= minimo) return letto;
  throw ErroreUso("opzione " + Lunga(nome) + ": trovato " + Cita(*testo) + ", serve un intero da " +
                  std::to_string(minimo) + " a " + std::to_string(std::numeric_limits<int>::max()));
}

std::optional<int> ParoleComando::Parola(std::string_view nome,
                                         std::span<const ParolaNota> parole) const {
  const std::optional<std::string> testo = Testo(nome);
  if (!testo) return std::nullopt;
  const std::optional<int> trovata = CercaParola(parole, *testo);
  if (trovata) return trovata;
  std::vector<std::string_view> note;
  for (const ParolaNota& parola : parole) note.push_back(parola.Testo);
  const std::string_view vicina = PiuVicino(*testo, note);
  throw ErroreUso("opzione " + Lunga(nome) + ": trovato " + Cita(*testo) + ", serve " +
                  ParoleVolute(parole) + (vicina.empty() ? "" : " (forse " + Cita(vicina) + "?)"));
}

}  // namespace compensa

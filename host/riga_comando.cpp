// The command line: options, help and messages in Italian.

#include "host/riga_comando.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <string_view>
#include <vector>

#include "host/campi.h"
#include "host/diagnostica.h"
#include "host/errori.h"
#include "host/suggerimenti.h"
#include "host/versione.h"

namespace {

constexpr std::string_view kCodificaUtf8 = "utf-8";
constexpr std::string_view kCodifica1252 = "windows-1252";
constexpr std::string_view kArgomentoRete = "RETE.toml";
constexpr std::size_t kColonnaDescrizioni = 30;

constexpr const char* kDescrizione =
    "compensa - compensazione rigorosa di reti topografiche di appoggio\n"
    "\n"
    "Legge una rete da un file, la compensa ai minimi quadrati in planimetria e in\n"
    "altimetria e scrive il rapporto di calcolo.\n";

constexpr const char* kNote =
    "Il file della rete è descritto in LEGGIMI.md, i risultati JSON in docs/json.md.\n"
    "I file di uscita compaiono solo se completi: un errore o Ctrl-C non lascia file a\n"
    "metà e non tocca quelli che c'erano. Il nome \"-\" indica l'uscita standard.\n"
    "Messaggi, avanzamento e sommario vanno sull'uscita degli errori.\n"
    "\n"
    "Esempi:\n"
    "  compensa rete.toml                          rapporto sullo schermo\n"
    "  compensa rete.toml -o rapporto.txt          rapporto in un file\n"
    "  compensa rete.toml -o rapporto.txt --json risultati.json\n"
    "  compensa rete.toml -q --codifica windows-1252 > rapporto.txt\n"
    "  compensa rete.toml -o rapporto.txt --json - | jq .planimetria\n"
    "\n"
    "Stato di uscita:\n"
    "  0   tutte le compensazioni richieste sono riuscite\n"
    "  1   rete non determinabile, oppure una compensazione si è interrotta o non è\n"
    "      arrivata a convergenza (il rapporto dice perché)\n"
    "  2   uso sbagliato della riga di comando\n"
    "  3   file della rete sbagliato o non leggibile\n"
    "  4   uscita che non si può scrivere, o memoria insufficiente\n"
    "  70  errore interno del programma";

class FormatoItaliano : public CLI::Formatter {
 public:
  FormatoItaliano() {
    label("Positionals", "Argomenti");
    column_width(kColonnaDescrizioni);
  }
  std::string make_usage(const CLI::App* /*app*/, std::string /*nome*/) const override {
    return "Uso: compensa " + std::string(kArgomentoRete) + " [OPZIONI]\n";
  }
  std::string make_option_opts(const CLI::Option* opzione) const override {
    return opzione->get_positional() ? "" : CLI::Formatter::make_option_opts(opzione);
  }
};

struct Lette {
  std::string Rete;
  std::string Rapporto = "-";
  std::string Json;
  std::string CodificaRapporto{kCodificaUtf8};
  bool Quieto = false;
};

void Definisci(CLI::App& app, Lette& lette) {
  app.formatter(std::make_shared<FormatoItaliano>());
  app.footer(kNote);
  app.allow_extras();
  app.option_defaults()->group("Opzioni");
  app.set_help_flag("-h,--aiuto,--help", "mostra questo testo ed esce");
  app.set_version_flag("--versione,--version", std::string(kVersioneProgramma),
                       "mostra la versione ed esce");
  app.add_option(std::string(kArgomentoRete), lette.Rete, "file della rete");
  app.add_option("-o,--rapporto", lette.Rapporto,
                 "dove scrivere il rapporto\n(se manca: uscita standard)")
      ->option_text("FILE");
  app.add_option("--codifica", lette.CodificaRapporto,
                 "codifica del rapporto: utf-8 o windows-1252\n(se manca: utf-8)")
      ->option_text("CODIFICA");
  app.add_option("--json", lette.Json,
                 "dove scrivere i risultati per altri programmi\n(se manca: non vengono scritti)")
      ->option_text("FILE");
  app.add_flag("-q,--quieto", lette.Quieto,
               "solo gli errori: niente avvisi, avanzamento\ne sommario");
}

// The option that a message of the library begins with, or ends with.
std::string OpzioneNominata(const std::string& messaggio) {
  const std::size_t inizio = messaggio.find('-');
  if (inizio == std::string::npos) return {};
  return messaggio.substr(inizio, messaggio.find_first_of(" :,", inizio) - inizio);
}

[[noreturn]] void Rifiuta(const CLI::App& app, const CLI::ParseError& errore) {
  const std::string nome = OpzioneNominata(errore.what());
  const CLI::Option* opzione = nome.empty() ? nullptr : app.get_option_no_throw(nome);
  if (opzione == nullptr) throw ErroreUso("riga di comando non comprensibile");
  throw ErroreUso("opzione " + nome +
                  (opzione->get_expected_max() == 0 ? ": non vuole un valore"
                                                    : ": vuole un valore, una volta sola"));
}

// What no option and no argument has taken.
void RifiutaResto(const CLI::App& app) {
  for (const std::string& parola : app.remaining()) {
    if (parola == "--") continue;
    if (parola.size() < 2 || parola.front() != '-')
      throw ErroreUso("argomento di troppo " + Cita(parola) + ": una sola rete per volta");
    std::vector<std::string> note;
    for (const CLI::Option* opzione : app.get_options())
      for (const std::string& lunga : opzione->get_lnames()) note.push_back("--" + lunga);
    const std::string_view vicina = PiuVicino(parola.substr(0, parola.find('=')), note);
    throw ErroreUso("opzione sconosciuta " + Cita(parola) +
                    (vicina.empty() ? "" : " (forse " + std::string(vicina) + "?)"));
  }
}

Codifica CodificaDi(const std::string& nome) {
  constexpr ParolaNota kCodifiche[] = {{kCodificaUtf8, static_cast<int>(Codifica::Utf8)},
                                       {kCodifica1252, static_cast<int>(Codifica::Windows1252)}};
  const std::optional<int> trovata = CercaParola(kCodifiche, nome);
  if (!trovata)
    throw ErroreUso("opzione --codifica: trovato " + Cita(nome) + ", serve " +
                    ParoleVolute(kCodifiche));
  return static_cast<Codifica>(*trovata);
}

}  // namespace

std::variant<Argomenti, TestoRichiesto> LeggiRigaComando(int argc, const char* const* argv) {
  CLI::App app(kDescrizione, std::string(kNomeProgramma));
  Lette lette;
  Definisci(app, lette);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    return TestoRichiesto{app.help()};
  } catch (const CLI::CallForVersion&) {
    return TestoRichiesto{std::string(kNomeProgramma) + " " + app.version() + "\n"};
  } catch (const CLI::ParseError& errore) {
    Rifiuta(app, errore);
  }
  RifiutaResto(app);
  if (lette.Rete.empty()) throw ErroreUso("manca il file della rete");
  const auto data = [&](const char* nome) { return app.count(nome) > 0; };
  if (data("--rapporto") && lette.Rapporto.empty())
    throw ErroreUso("opzione --rapporto: il nome del file è vuoto");
  if (data("--json") && lette.Json.empty())
    throw ErroreUso("opzione --json: il nome del file è vuoto");
  Argomenti argomenti{lette.Rete, lette.Rapporto, std::nullopt, CodificaDi(lette.CodificaRapporto),
                      lette.Quieto};
  if (data("--json")) argomenti.Json = lette.Json;
  return argomenti;
}

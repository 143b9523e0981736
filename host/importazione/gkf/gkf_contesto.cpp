// Places, attributes and counted messages of the .gkf reader.
//
// The XML parser tells where an element begins; where one of its attributes stands is found again
// in the text, and only when a message needs it.

#include "host/importazione/gkf/gkf_contesto.h"

#include <algorithm>
#include <cmath>

#include "host/base/codifica.h"
#include "host/base/gkf_formato.h"
#include "host/base/numeri.h"
#include "host/base/suggerimenti.h"
#include "host/base/testi.h"
#include "host/base/unita.h"
#include "host/importazione/angoli.h"

namespace compensa {

namespace gkf {
namespace {

constexpr std::size_t kPasso = 1024;  // between places whose columns are kept: a line may be a file
constexpr RegolaNumero kStdev{"stdev", "", 0.0, kNonDato, true};

// A hyphen between digits parts degrees, minutes and seconds; after an e it belongs to an exponent.
bool ConTrattini(std::string_view testo) {
  return testo.find('-', 1) != std::string_view::npos &&
         testo.find_first_of("eE") == std::string_view::npos;
}

Guasto Sconosciuto(const pugi::xml_node& nodo, std::string_view genere, std::string_view nome,
                   std::span<const std::string_view> noti) {
  const std::string_view vicino = PiuVicino(nome, noti);
  return {.Record = "<" + std::string(nodo.name()) + ">",
          .Problema = std::string(genere) + " " + Cita(nome) + " sconosciuto: non è letto",
          .Suggerimento = vicino.empty() ? "" : "forse " + Cita(vicino) + "?"};
}

}  // namespace

Luoghi::Luoghi(std::string_view testo, std::string_view file) : Testo(testo), File(file) {
  Inizi.push_back(0);
  for (std::size_t i = 0; i < testo.size(); ++i) {
    const bool solo = testo[i] == '\r' && (i + 1 == testo.size() || testo[i + 1] != '\n');
    if (testo[i] == '\n' || solo) Inizi.push_back(i + 1);
  }
  Tappe.push_back(0);
  for (std::size_t i = 0; i + kPasso <= testo.size(); i += kPasso)
    Tappe.push_back(Tappe.back() + ContaCaratteri(testo.substr(i, kPasso)));
}

int Luoghi::Caratteri(std::size_t scarto) const {
  const std::size_t tappa = scarto / kPasso;
  return Tappe[tappa] + ContaCaratteri(Testo.substr(tappa * kPasso, scarto - tappa * kPasso));
}

Posizione Luoghi::Dove(std::size_t scarto) const {
  scarto = std::min(scarto, Testo.size());
  const auto dopo = std::upper_bound(Inizi.begin(), Inizi.end(), scarto);
  const std::size_t inizio = *(dopo - 1);
  const int prima = scarto - inizio < kPasso ? ContaCaratteri(Testo.substr(inizio, scarto - inizio))
                                             : Caratteri(scarto) - Caratteri(inizio);
  return {File, static_cast<int>(dopo - Inizi.begin()), prima + 1};
}

double Angolo::Sqm(double valore) const {
  return valore * (Sessagesimale ? kGonPerSecondo : kGonPerCc);
}

Contesto::Contesto(std::string_view testo, std::string_view file, const OpzioniLettura& lettura,
                   Libretto& libretto, Diagnostica& diagnostica)
    : Lettura(lettura), Libro(libretto), Diario(diagnostica), Testo(testo), Posti(testo, file) {}

Posizione Contesto::Dove(const pugi::xml_node& nodo) {
  const std::ptrdiff_t apre = nodo.type() == pugi::node_pi ? 2 : 1;  // "<?" or "<" before the name
  return Posti.Dove(static_cast<std::size_t>(std::max(nodo.offset_debug() - apre, {})));
}

Posizione Contesto::Dove(const pugi::xml_node& nodo, std::string_view attributo) {
  const std::ptrdiff_t inizio = nodo.offset_debug();
  if (inizio < 0) return Dove(nodo);
  auto i = static_cast<std::size_t>(inizio) + std::string_view(nodo.name()).size();
  while (true) {
    i = Testo.find_first_not_of(kBianchiEFini, i);
    const std::size_t uguale = Testo.find_first_of("=>", i);
    if (uguale == std::string_view::npos || Testo[uguale] == '>') return Dove(nodo);
    const std::size_t apre = Testo.find_first_of("\"'", uguale);
    if (apre == std::string_view::npos) return Dove(nodo);
    if (SenzaBianchi(Testo.substr(i, uguale - i), kBianchiEFini) == attributo)
      return Posti.Dove(apre + 1);
    const std::size_t chiude = Testo.find(Testo[apre], apre + 1);
    if (chiude == std::string_view::npos) return Dove(nodo);
    i = chiude + 1;
  }
}

std::string_view Contesto::Valore(const pugi::xml_node& nodo, const char* attributo) {
  return SenzaBianchi(nodo.attribute(attributo).value(), kBianchiEFini);
}

void Contesto::Errore(const pugi::xml_node& nodo, const char* attributo, std::string problema,
                      std::string voluto) {
  const pugi::xml_attribute a = nodo.attribute(attributo);
  Diario.Errore(Dove(nodo, attributo), {.Record = RecordDi(nodo),
                                        .Campo = attributo,
                                        .Problema = std::move(problema),
                                        .Trovato = !a.empty() ? Cita(a.value()) : std::string(),
                                        .Voluto = std::move(voluto)});
}

std::optional<double> Contesto::Numero(const pugi::xml_node& nodo, const char* attributo,
                                       const RegolaNumero& regola, bool obbligatorio) {
  if (!Ha(nodo, attributo)) {
    if (obbligatorio) Errore(nodo, attributo, "manca l'attributo", NumeroVoluto(regola));
    return std::nullopt;
  }
  const NumeroLetto letto = LeggiNumero(Valore(nodo, attributo));
  if (letto.Esito == EsitoNumero::Valido && Ammesso(regola, letto.Valore)) return letto.Valore;
  const std::string trovato = Cita(nodo.attribute(attributo).value());
  const Posizione dove = Dove(nodo, attributo);
  if (letto.Esito == EsitoNumero::Valido || letto.Esito == EsitoNumero::NonFinito) {
    const double valore = letto.Esito == EsitoNumero::Valido ? letto.Valore : HUGE_VAL;
    Diario.Errore(dove,
                  GuastoNumero(RecordDi(nodo), Rinominata(regola, attributo), trovato, valore));
    return std::nullopt;
  }
  Guasto guasto{.Record = RecordDi(nodo),
                .Campo = attributo,
                .Problema = "non è un numero",
                .Trovato = trovato,
                .Voluto = NumeroVoluto(regola)};
  if (letto.Esito == EsitoNumero::Virgola)
    guasto.Suggerimento = "in questi file i decimali hanno il punto";
  Diario.Errore(dove, std::move(guasto));
  return std::nullopt;
}

std::optional<Angolo> Contesto::LeggiVal(const pugi::xml_node& nodo) {
  const std::string_view testo = Valore(nodo, "val");
  if (testo.empty() || !ConTrattini(testo)) {
    const std::optional<double> gon = Numero(nodo, "val", {"val", "gon"}, true);
    return gon ? std::optional(Angolo{*gon, false}) : std::nullopt;
  }
  const std::optional<double> gon = LeggiAngolo(testo, UnitaAngoli::GradiPrimi);
  if (gon) return Angolo{*gon, true};
  Errore(nodo, "val", "angolo non valido",
         "gradi-primi-secondi, con primi e secondi minori di 60, o un numero [gon]");
  return std::nullopt;
}

std::optional<std::string> Contesto::Nome(const pugi::xml_node& nodo, const char* attributo) {
  const std::string_view nome = Valore(nodo, attributo);
  if (!nome.empty()) return std::string(nome);
  Errore(nodo, attributo, Ha(nodo, attributo) ? "il nome del punto è vuoto" : "manca l'attributo",
         "il nome di un punto");
  return std::nullopt;
}

std::optional<double> Contesto::Stdev(const pugi::xml_node& nodo) {
  return Numero(nodo, "stdev", kStdev);
}

void Contesto::ControllaAttributi(const pugi::xml_node& nodo,
                                  std::span<const std::string_view> noti) {
  for (const pugi::xml_attribute& a : nodo.attributes()) {
    const std::string_view nome = a.name();
    if (std::find(noti.begin(), noti.end(), nome) != noti.end()) continue;
    if (nome.starts_with("xmlns") || nome.starts_with("xml:") || nome.starts_with("xsi:")) continue;
    Conta(Gravita::Avviso, nodo, Sconosciuto(nodo, "attributo", nome, noti));
  }
}

void Contesto::ElementoSconosciuto(const pugi::xml_node& nodo,
                                   std::span<const std::string_view> noti) {
  const std::string nome = "<" + std::string(nodo.name()) + ">";
  Libro.Tralascia("elementi " + nome, "elemento sconosciuto", Dove(nodo).Riga);
  Conta(Gravita::Avviso, nodo, Sconosciuto(nodo.parent(), "elemento", nodo.name(), noti));
}

void Contesto::NonSupportato(const pugi::xml_node& nodo, const std::string& genere, int quanti) {
  if (quanti == 0) return;
  if (Lettura.IgnoraNonSupportati) {
    return Libro.Tralascia(genere, "la rete non ha osservazioni di questo genere", Dove(nodo).Riga,
                           quanti);
  }
  Conta(Gravita::Errore, nodo,
        {.Record = "<" + std::string(nodo.name()) + ">",
         .Problema = "la rete non ha osservazioni di questo genere: " + genere,
         .Suggerimento = "--ignora-non-supportati tralascia queste osservazioni"},
        quanti);
}

void Contesto::Conta(Gravita livello, const pugi::xml_node& nodo, Guasto guasto, int quanti) {
  const std::string chiave = guasto.Record.Testo() + '\n' + guasto.Campo + '\n' + guasto.Problema;
  const auto [voce, nuova] = Contati.try_emplace(chiave, Contato{livello, {}, {}, 0});
  if (nuova) {
    voce->second.Dove = Dove(nodo);
    voce->second.Cosa = std::move(guasto);
  }
  voce->second.Quanti += quanti;
}

void Contesto::ScriviConteggi() {
  for (auto& [chiave, voce] : Contati) {
    if (voce.Quanti > 1) {
      voce.Cosa.Problema += " (" + std::to_string(voce.Quanti) + " volte, qui la prima)";
    }
    if (voce.Livello == Gravita::Errore) {
      Diario.Errore(voce.Dove, std::move(voce.Cosa));
    } else {
      Diario.Avviso(voce.Dove, std::move(voce.Cosa));
    }
  }
  Contati.clear();
}

std::string RecordDi(const pugi::xml_node& nodo) {
  const std::string_view elemento = nodo.name();
  if (elemento == "point") return NomePunto(Contesto::Valore(nodo, "id"));
  if (elemento == "obs") return NomeStazione(Contesto::Valore(nodo, "from"));
  if (std::string_view(nodo.parent().name()) != "obs" || elemento == "cov-mat")
    return "<" + std::string(elemento) + ">";
  std::string_view da = Contesto::Valore(nodo, "from");
  if (da.empty()) da = Contesto::Valore(nodo.parent(), "from");
  const std::string_view a = Contesto::Valore(nodo, elemento == "angle" ? "fs" : "to");
  return "<" + std::string(elemento) + ">, " + NomeOsservazione(da, a).Testo();
}

pugi::xml_node Successivo(pugi::xml_node nodo, const pugi::xml_node& radice) {
  if (!nodo.first_child().empty()) return nodo.first_child();
  while (!nodo.empty() && nodo != radice && nodo.next_sibling().empty()) nodo = nodo.parent();
  return nodo.empty() || nodo == radice ? pugi::xml_node() : nodo.next_sibling();
}

}  // namespace gkf

}  // namespace compensa

// Messages: collecting them, sorting them into file order, and the one place that words them.

#include "host/base/diagnostica.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/base/codifica.h"

namespace compensa {

namespace {

constexpr int kCaratteriCitati = 60;
constexpr std::string_view kEsadecimali = "0123456789ABCDEF";

// Control characters and stray bytes would act on the terminal that shows the message.
void AggiungiVisibile(std::string& testo, std::string_view carattere, const Carattere& c) {
  const bool controllo = c.Codice < 0x20 || (c.Codice >= 0x7F && c.Codice < 0xA0);
  const bool inverte = (c.Codice >= 0x202A && c.Codice <= 0x202E) ||
                       (c.Codice >= 0x2066 && c.Codice <= 0x2069);  // reorders what follows it
  if (c.Lunghezza > 0 && !controllo && !inverte) {
    testo += carattere;
    return;
  }
  for (const char byte : carattere) {
    const unsigned valore = static_cast<unsigned char>(byte);
    testo += "\\x";
    testo += kEsadecimali[valore >> 4];
    testo += kEsadecimali[valore & 0xFu];
  }
}

std::string Visibile(std::string_view testo, int massimo) {
  std::string visibile;
  for (int n = 0; !testo.empty(); ++n) {
    if (n == massimo) return visibile + "…";
    const Carattere c = PrimoCarattere(testo);
    const std::size_t lunghezza = std::max<std::size_t>(c.Lunghezza, 1);
    AggiungiVisibile(visibile, testo.substr(0, lunghezza), c);
    testo.remove_prefix(lunghezza);
  }
  return visibile;
}

// Appends the parts that are not empty, each after the separator.
void Unisci(std::string& testo, std::string_view separatore, std::string_view parte) {
  if (parte.empty()) return;
  if (!testo.empty()) testo += separatore;
  testo += parte;
}

}  // namespace

std::string Cita(std::string_view testo) {
  const bool virgolette = testo.find('"') != std::string_view::npos;
  return (virgolette ? "«" : "\"") + Visibile(testo, kCaratteriCitati) + (virgolette ? "»" : "\"");
}

std::string NomePunto(std::string_view punto) { return "punto " + Cita(punto); }

std::string NomeStazione(std::string_view stazione) { return "stazione " + Cita(stazione); }

std::string NomeOsservazione(std::string_view stazione, std::string_view punto) {
  return "osservazione da " + Cita(stazione) + " a " + Cita(punto);
}

std::string TestoMessaggio(const Messaggio& messaggio) {
  std::string testo = Visibile(messaggio.File, -1);
  if (messaggio.Riga > 0) {
    testo += ':' + std::to_string(messaggio.Riga) + ':' + std::to_string(messaggio.Colonna);
  }
  testo += messaggio.Livello == Gravita::Errore ? ": errore: " : ": avviso: ";
  const Guasto& cosa = messaggio.Cosa;
  std::string soggetto = cosa.Record;
  Unisci(soggetto, ", ", cosa.Campo);
  std::string valori;
  if (!cosa.Trovato.empty()) valori = "trovato " + cosa.Trovato;
  if (!cosa.Voluto.empty()) Unisci(valori, ", ", "serve " + cosa.Voluto);
  Unisci(soggetto, ": ", cosa.Problema);
  Unisci(soggetto, ": ", valori);
  testo += soggetto;
  if (!cosa.Suggerimento.empty()) testo += " (" + cosa.Suggerimento + ")";
  return testo;
}

void Diagnostica::NominaFile(std::string_view file) {
  if (std::find(File.begin(), File.end(), file) == File.end()) File.emplace_back(file);
}

void Diagnostica::Errore(const Posizione& dove, Guasto guasto) {
  ++NErrori;
  if (NErrori <= kConservati) Aggiungi(Gravita::Errore, dove, std::move(guasto));
}

void Diagnostica::Avviso(const Posizione& dove, Guasto guasto) {
  ++NAvvisi;
  Aggiungi(Gravita::Avviso, dove, std::move(guasto));
}

void Diagnostica::Aggiungi(Gravita livello, const Posizione& dove, Guasto guasto) {
  NominaFile(dove.File);
  Raccolti.push_back({livello, std::string(dove.File), dove.Riga, dove.Colonna, std::move(guasto)});
}

std::vector<Messaggio> Diagnostica::Messaggi() const {
  std::vector<std::array<std::size_t, 4>> ordine;  // file, line, column, index
  ordine.reserve(Raccolti.size());
  for (std::size_t i = 0; i < Raccolti.size(); ++i) {
    const auto file = std::find(File.begin(), File.end(), Raccolti[i].File);
    ordine.push_back({static_cast<std::size_t>(file - File.begin()),
                      static_cast<std::size_t>(Raccolti[i].Riga),
                      static_cast<std::size_t>(Raccolti[i].Colonna), i});
  }
  std::sort(ordine.begin(), ordine.end());
  std::vector<Messaggio> messaggi;
  std::size_t errori = 0;
  for (const auto& posto : ordine) {
    const Messaggio& messaggio = Raccolti[posto[3]];
    if (messaggio.Livello == Gravita::Errore && ++errori > kMostrati) continue;
    messaggi.push_back(messaggio);
  }
  return messaggi;
}

std::vector<std::string> Diagnostica::Righe() const {
  std::vector<std::string> righe;
  for (const Messaggio& messaggio : Messaggi()) righe.push_back(TestoMessaggio(messaggio));
  if (NTaciuti > 0)
    righe.push_back(NTaciuti == 1 ? "un altro avviso non mostrato"
                                  : "altri " + std::to_string(NTaciuti) + " avvisi non mostrati");
  if (NErrori > kMostrati) {
    const std::size_t altri = NErrori - kMostrati;
    righe.push_back(altri == 1 ? "un altro errore non mostrato"
                               : "altri " + std::to_string(altri) + " errori non mostrati");
  }
  return righe;
}

}  // namespace compensa

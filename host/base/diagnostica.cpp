// Messages: collecting them within bounds, sorting them into file order, and the one place that words
// them.

#include "host/base/diagnostica.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace compensa {

namespace {

// Appends the parts that are not empty, each after the separator.
void Unisci(std::string& testo, std::string_view separatore, std::string_view parte) {
  if (parte.empty()) return;
  if (!testo.empty()) testo += separatore;
  testo += parte;
}

// "altri 3 errori non mostrati"
Messaggio Taciuti(Gravita livello, std::size_t quanti, Riguardo riguarda) {
  const std::string_view cosa = livello == Gravita::Errore ? " errore" : " avviso";
  const std::string_view cose = livello == Gravita::Errore ? " errori" : " avvisi";
  std::string testo = quanti == 1
                          ? "un altro" + std::string(cosa) + " non mostrato"
                          : "altri " + std::to_string(quanti) + std::string(cose) + " non mostrati";
  return {
      .Livello = livello,
      .Cosa = {.Quale = Codice::NonMostrati, .Riguarda = riguarda, .Problema = std::move(testo)}};
}

}  // namespace

Messaggio AvvisoSu(const Posizione& dove, Guasto guasto) {
  return {Gravita::Avviso, std::string(dove.File), dove.Riga, dove.Colonna, std::move(guasto)};
}

std::string TestoGuasto(const Guasto& cosa) {
  std::string testo = cosa.Record.Testo();
  Unisci(testo, ", ", cosa.Campo);
  std::string valori;
  if (!cosa.Trovato.empty()) valori = "trovato " + cosa.Trovato;
  if (!cosa.Voluto.empty()) Unisci(valori, ", ", "serve " + cosa.Voluto);
  Unisci(testo, ": ", cosa.Problema);
  Unisci(testo, ": ", valori);
  if (!cosa.Suggerimento.empty()) testo += " (" + cosa.Suggerimento + ")";
  return testo;
}

std::string TestoMessaggio(const Messaggio& messaggio, bool conGravita) {
  std::string testo = Visibile(messaggio.File);
  if (messaggio.Riga > 0) {
    testo += ':' + std::to_string(messaggio.Riga) + ':' + std::to_string(messaggio.Colonna);
  }
  if (!testo.empty()) {
    testo += ": ";
    if (conGravita) testo += messaggio.Livello == Gravita::Errore ? "errore: " : "avviso: ";
  }
  return testo + TestoGuasto(messaggio.Cosa);
}

std::vector<std::string> Testi(const std::vector<Messaggio>& messaggi, bool conGravita) {
  std::vector<std::string> testi;
  testi.reserve(messaggi.size());
  for (const Messaggio& m : messaggi) testi.push_back(TestoMessaggio(m, conGravita));
  return testi;
}

Riguardo RiguardoDi(const Guasto& guasto) {
  return guasto.Riguarda == Riguardo::SecondoCodice ? VoceDi(guasto.Quale).Riguarda
                                                    : guasto.Riguarda;
}

void Diagnostica::NominaFile(std::string_view file) {
  if (std::find(File.begin(), File.end(), file) == File.end()) File.emplace_back(file);
}

void Diagnostica::Errore(const Posizione& dove, Guasto guasto) {
  if (++NErrori <= kConservati) Aggiungi(Gravita::Errore, dove, std::move(guasto));
}

void Diagnostica::Avviso(const Posizione& dove, Guasto guasto) {
  ++NAvvisi;
  const Riguardo riguarda = RiguardoDi(guasto);
  Interessate = Interessate | riguarda;
  if (++AvvisiPerCodice[static_cast<std::size_t>(guasto.Quale)] <= Massimo) {
    Aggiungi(Gravita::Avviso, dove, std::move(guasto));
  } else {
    ++NTaciuti;
    DeiTaciuti = DeiTaciuti | riguarda;
  }
}

void Diagnostica::Aggiungi(Gravita livello, const Posizione& dove, Guasto guasto) {
  NominaFile(dove.File);
  Raccolti.push_back({livello, std::string(dove.File), dove.Riga, dove.Colonna, std::move(guasto)});
}

void Diagnostica::Accoda(const Diagnostica& altra) {
  for (const Messaggio& m : altra.Raccolti) {
    const Posizione dove{m.File, m.Riga, m.Colonna};
    m.Livello == Gravita::Errore ? Errore(dove, m.Cosa) : Avviso(dove, m.Cosa);
  }
  NErrori += altra.NErrori > kConservati ? altra.NErrori - kConservati : 0;
  NAvvisi += altra.NTaciuti;
  NTaciuti += altra.NTaciuti;
  DeiTaciuti = DeiTaciuti | altra.DeiTaciuti;
}

std::vector<Messaggio> Diagnostica::Messaggi() const {
  std::vector<std::tuple<std::size_t, int, int, std::size_t>> ordine;  // file, line, column, index
  ordine.reserve(Raccolti.size());
  for (std::size_t i = 0; i < Raccolti.size(); ++i) {
    const auto file = std::find(File.begin(), File.end(), Raccolti[i].File);
    ordine.emplace_back(static_cast<std::size_t>(file - File.begin()), Raccolti[i].Riga,
                        Raccolti[i].Colonna, i);
  }
  std::sort(ordine.begin(), ordine.end());
  std::vector<Messaggio> messaggi;
  std::size_t errori = 0;
  for (const auto& posto : ordine) {
    const Messaggio& messaggio = Raccolti[std::get<3>(posto)];
    if (messaggio.Livello == Gravita::Errore && ++errori > kMostrati) continue;
    messaggi.push_back(messaggio);
  }
  if (NTaciuti > 0) messaggi.push_back(Taciuti(Gravita::Avviso, NTaciuti, DeiTaciuti));
  if (NErrori > kMostrati)
    messaggi.push_back(Taciuti(Gravita::Errore, NErrori - kMostrati, Riguardo::Entrambe));
  return messaggi;
}

}  // namespace compensa

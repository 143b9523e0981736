// Columns, set-ups and points of instrument memories.

#include "host/importazione/raccolta.h"

#include <algorithm>

#include "host/base/codifica.h"

namespace compensa {

std::size_t ByteDiCaratteri(std::string_view testo, int caratteri) {
  std::size_t byte = 0;
  for (; caratteri > 0 && byte < testo.size(); --caratteri) {
    byte += std::max<std::size_t>(PrimoCarattere(testo.substr(byte)).Lunghezza, 1);
  }
  return byte;
}

std::string_view Tratto(std::string_view riga, int da, int a) {
  riga.remove_prefix(ByteDiCaratteri(riga, da - 1));
  return riga.substr(0, ByteDiCaratteri(riga, a - da + 1));
}

bool Nulla(const Terna& terna) {
  return std::all_of(terna.begin(), terna.end(),
                     [](const auto& v) { return v.value_or(0.0) == 0.0; });
}

PostazioneLibretto& Raccolta::Apri(const std::string& nome, std::optional<double> altezza,
                                   const Posizione& dove) {
  if (altezza == 0.0) {
    Diario.Avviso(dove, {.Record = NomeStazione(nome),
                         .Problema = "altezza strumentale uguale a zero",
                         .Suggerimento = "se non è stata misurata, le quote saranno sbagliate"});
  }
  PostazioneLibretto* corrente = Corrente();
  if (corrente != nullptr && corrente->Battute.empty() && corrente->Punto == nome) {
    if (altezza) corrente->Altezza = altezza;
    return *corrente;
  }
  Aperta = true;
  PostazioneLibretto& nuova = Libro.Postazioni.emplace_back();
  nuova.Punto = nome;
  nuova.Altezza = altezza;
  nuova.Dove = dove;
  return nuova;
}

void Raccolta::Coordinate(const std::string& nome, const Terna& terna, const Posizione& dove,
                          bool stazione) {
  if (terna == Terna{}) return;
  if (Nulla(terna)) {
    Libro.Tralascia("terne di coordinate nulle", "0, 0, 0 sta per coordinate non note", dove.Riga);
    if (!stazione) return;
    Diario.Avviso(dove, {.Record = NomeStazione(nome),
                         .Problema = "coordinate 0, 0, 0 non importate",
                         .Suggerimento = "se la stazione è davvero l'origine, darle in una tabella "
                                         "di coordinate"});
    return;
  }
  PuntoLibretto& punto = Libro.Punti.emplace_back();
  punto.Nome = nome;
  punto.Est = terna[0];
  punto.Nord = terna[1];
  punto.Quota = terna[2];
  punto.Dove = dove;
}

}  // namespace compensa

#pragma once

// What a message is about, as data: the kind of record, and the names that single it out.

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace compensa {

enum class TipoSoggetto : std::uint8_t {
  Voce,  // in the words of whoever reads the file; nothing, where these are empty
  Rete,
  Planimetria,
  Altimetria,
  Opzione,  // a table of the file that sets something; the key is the field of the message
  Punto,
  Stazione,
  Osservazione,  // from, to
  Triangolo,
  Angolo,  // vertex, reference, target
  Distanza,
  Dislivello,
};

// The word of a kind for programs.
std::string_view Parola(TipoSoggetto tipo);

struct Soggetto {
  Soggetto() = default;
  Soggetto(TipoSoggetto tipo, std::vector<std::string> nomi = {})
      : Tipo(tipo), Nomi(std::move(nomi)) {}
  // A record in the words of a reader.
  Soggetto(std::string voce) {
    if (!voce.empty()) Nomi.push_back(std::move(voce));
  }
  Soggetto(const char* voce) : Soggetto(std::string(voce)) {}

  // As sentences show it: punto "V1".
  std::string Testo() const;
  operator std::string() const { return Testo(); }

  TipoSoggetto Tipo = TipoSoggetto::Voce;
  std::vector<std::string> Nomi;
};

// The records that a network is made of.
Soggetto NomePunto(std::string_view punto);
Soggetto NomeStazione(std::string_view stazione);
Soggetto NomeOsservazione(std::string_view stazione, std::string_view punto);

}  // namespace compensa

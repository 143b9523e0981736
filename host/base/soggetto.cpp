// Subjects of messages in words.

#include "host/base/soggetto.h"

#include <array>
#include <cstddef>

#include "host/base/testi.h"

namespace compensa {

namespace {

// Its word for programs, and what a sentence puts before each of its names.
struct Vocabolo {
  std::string_view Parola;
  std::array<std::string_view, 3> Prima;
};
constexpr std::array<Vocabolo, 12> kVocaboli{{{"voce", {}},
                                              {"rete", {}},
                                              {"planimetria", {}},
                                              {"altimetria", {}},
                                              {"opzione", {}},
                                              {"punto", {"punto "}},
                                              {"stazione", {"stazione "}},
                                              {"osservazione", {"osservazione da ", " a "}},
                                              {"triangolo", {"triangolo ", ", ", ", "}},
                                              {"angolo", {"angolo in ", " da ", " a "}},
                                              {"distanza", {"distanza da ", " a "}},
                                              {"dislivello", {"dislivello da ", " a "}}}};

const Vocabolo& VocaboloDi(TipoSoggetto tipo) { return kVocaboli[static_cast<std::size_t>(tipo)]; }

}  // namespace

std::string_view Parola(TipoSoggetto tipo) { return VocaboloDi(tipo).Parola; }

std::string Soggetto::Testo() const {
  if (Tipo == TipoSoggetto::Voce || Tipo == TipoSoggetto::Opzione)
    return Nomi.empty() ? std::string() : Nomi.front();
  if (Tipo == TipoSoggetto::Rete) return "tutta la rete";
  const Vocabolo& vocabolo = VocaboloDi(Tipo);
  if (Nomi.empty()) return std::string(vocabolo.Parola);
  std::string testo;
  for (std::size_t i = 0; i < Nomi.size(); ++i) {
    testo += vocabolo.Prima[i];
    testo += Cita(Nomi[i]);
  }
  return testo;
}

Soggetto NomePunto(std::string_view punto) { return {TipoSoggetto::Punto, {std::string(punto)}}; }

Soggetto NomeStazione(std::string_view stazione) {
  return {TipoSoggetto::Stazione, {std::string(stazione)}};
}

Soggetto NomeOsservazione(std::string_view stazione, std::string_view punto) {
  return {TipoSoggetto::Osservazione, {std::string(stazione), std::string(punto)}};
}

}  // namespace compensa

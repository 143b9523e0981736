// The tree of a text in TOML, asked: places, children by their names, values.

#include "host/file_rete/toml.h"

#include <algorithm>

#include "host/base/testi.h"
#include "host/file_rete/valori_toml.h"

namespace compensa {

namespace {

constexpr std::size_t kPasso = 256;  // between places that are kept [bytes]

constexpr bool Seguito(char c) { return (static_cast<unsigned char>(c) & 0xC0u) == 0x80u; }

}  // namespace

Luoghi::Luoghi(std::string_view testo, std::string_view file) : Testo(testo), File(file) {
  Tappe.reserve(testo.size() / kPasso + 1);
  Tappa tappa{1, 1};
  for (std::size_t i = 0; i < testo.size(); i += kPasso) {
    Tappe.push_back(tappa);
    Avanza(tappa, i, std::min(i + kPasso, testo.size()));
  }
  Tappe.push_back(tappa);
}

void Luoghi::Avanza(Tappa& tappa, std::size_t da, std::size_t a) const {
  for (std::size_t i = da; i < a; ++i) {
    const char c = Testo[i];
    if (c == '\n' || (c == '\r' && (i + 1 == Testo.size() || Testo[i + 1] != '\n'))) {
      ++tappa.Riga;
      tappa.Colonna = 1;
    } else if (!Seguito(c)) {
      ++tappa.Colonna;
    }
  }
}

Posizione Luoghi::Dove(std::size_t posto) const {
  const std::size_t quale = posto / kPasso;
  Tappa tappa = Tappe[quale];
  Avanza(tappa, quale * kPasso, posto);
  return {File, tappa.Riga, tappa.Colonna};
}

std::uint32_t DocumentoToml::Trova(std::uint32_t madre, std::uint32_t chiave) const {
  if (Nodi[madre].Figli > kPochi) {
    const auto voce = Indice.find(std::uint64_t{madre} << 32 | chiave);
    return voce == Indice.end() ? 0 : voce->second;
  }
  std::uint32_t figlio = Nodi[madre].Primo;
  while (figlio != 0 && Nodi[figlio].Chiave != chiave) figlio = Nodi[figlio].Prossimo;
  return figlio;
}

const NodoToml* DocumentoToml::Cerca(const NodoToml& tabella, std::string_view chiave) const {
  const auto nome = NumeroDelNome.find(chiave);
  if (nome == NumeroDelNome.end()) return nullptr;
  return Figlio(Trova(static_cast<std::uint32_t>(&tabella - Nodi.data()), nome->second));
}

std::string DocumentoToml::Descrivi(const NodoToml& nodo) const {
  switch (nodo.Genere) {
    case GenereToml::Testo: return Cita(Testo(nodo));
    case GenereToml::Data: return "una data o un'ora";
    case GenereToml::Tabella: return "una tabella";
    case GenereToml::Elenco:
      if (nodo.Come == NodoToml::Modo::Intestazione) return "un elenco di tabelle [[ ]]";
      return nodo.Primo == 0 ? "un elenco vuoto" : "un elenco [ ]";
    default: return std::string(Scritto(nodo));
  }
}

std::string DocumentoToml::Testo(const NodoToml& nodo) const { return Sciogli(Scritto(nodo)); }

std::int64_t DocumentoToml::Intero(const NodoToml& nodo) const {
  return LeggiIntero64(Scritto(nodo)).value_or(0);
}

double DocumentoToml::Numero(const NodoToml& nodo) const {
  return nodo.Genere == GenereToml::Intero ? static_cast<double>(Intero(nodo))
                                           : LeggiRealeToml(Scritto(nodo));
}

}  // namespace compensa

#pragma once

// A text in TOML 1.0 as a compact tree that keeps the place of every key, value and table.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/base/diagnostica.h"

namespace compensa {

enum class GenereToml : std::uint8_t { Testo, Intero, Reale, Vero, Data, Elenco, Tabella };

// A value. The bytes [Inizio, Fine) of the text are the value itself; of a table under a header they
// go from the header to its last value. Values of one table or array are chained in their order.
struct NodoToml {
  enum class Modo : std::uint8_t {
    Valore,        // written after = or in an array; closed once it ends
    Punti,         // a table that dotted keys make
    Passaggio,     // a table that only headers of tables inside it have named
    Intestazione,  // a table under [ ], or an array of those under [[ ]]
  };
  std::uint32_t Chiave = 0;  // number of its name
  std::uint32_t InizioChiave = 0;
  std::uint32_t Inizio = 0;
  std::uint32_t Fine = 0;
  std::uint32_t Primo = 0;  // child; 0 = none, since the root is nobody's
  std::uint32_t Ultimo = 0;
  std::uint32_t Prossimo = 0;
  std::uint16_t Figli = 0;  // how many, as far as it fits
  GenereToml Genere = GenereToml::Tabella;
  Modo Come = Modo::Valore;
};

// Place in a text from an offset in bytes, in constant time however long its lines are. Lines end
// with LF, CRLF or CR.
class Luoghi {
 public:
  Luoghi(std::string_view testo, std::string_view file);
  Posizione Dove(std::size_t posto) const;

 private:
  struct Tappa {
    int Riga, Colonna;
  };
  void Avanza(Tappa& tappa, std::size_t da, std::size_t a) const;

  std::string_view Testo, File;
  std::vector<Tappa> Tappe;  // place of every kPasso-th byte
};

class DocumentoToml {
 public:
  // Parses a text, at most 4 GiB of UTF-8, in linear time; file is its name in the places. Both must
  // outlive the document. The first fault of the text becomes an error of diagnostica, and what is
  // read is worthless: Valido says so.
  DocumentoToml(std::string_view testo, std::string_view file, Diagnostica& diagnostica);
  bool Valido() const { return Buono; }

  const NodoToml& Radice() const { return Nodi.front(); }
  // The first value of a table or array, and the one after another; null at the end.
  const NodoToml* Primo(const NodoToml& nodo) const { return Figlio(nodo.Primo); }
  const NodoToml* Prossimo(const NodoToml& nodo) const { return Figlio(nodo.Prossimo); }
  const NodoToml* Cerca(const NodoToml& tabella, std::string_view chiave) const;
  std::string_view Nome(const NodoToml& nodo) const { return Nomi[nodo.Chiave]; }

  // The value as the text writes it, and as what it stands for.
  std::string_view Scritto(const NodoToml& nodo) const {
    return Contenuto.substr(nodo.Inizio, nodo.Fine - nodo.Inizio);
  }
  // As a message shows it.
  std::string Descrivi(const NodoToml& nodo) const;
  std::string Testo(const NodoToml& nodo) const;
  std::int64_t Intero(const NodoToml& nodo) const;
  double Numero(
      const NodoToml& nodo) const;  // of an Intero or a Reale; infinite: none or too large
  bool Vero(const NodoToml& nodo) const { return Scritto(nodo) == "true"; }

  Posizione Dove(const NodoToml& nodo) const { return Posti.Dove(nodo.Inizio); }
  Posizione DoveChiave(const NodoToml& nodo) const { return Posti.Dove(nodo.InizioChiave); }

 private:
  friend class LettoreToml;

  static constexpr std::uint16_t kPochi = 16;  // children that are looked for one by one

  const NodoToml* Figlio(std::uint32_t indice) const {
    return indice == 0 ? nullptr : &Nodi[indice];
  }
  std::uint32_t Trova(std::uint32_t madre, std::uint32_t chiave) const;

  std::string_view Contenuto;
  Luoghi Posti;
  bool Buono = false;
  std::vector<NodoToml> Nodi;
  std::vector<std::string_view> Nomi;  // each once; that of the root and of elements is empty
  std::unordered_map<std::string_view, std::uint32_t> NumeroDelNome;
  std::deque<std::string> Sciolti;  // names that the text writes with escapes
  std::unordered_map<std::uint64_t, std::uint32_t> Indice;  // children of tables that have many
};

}  // namespace compensa

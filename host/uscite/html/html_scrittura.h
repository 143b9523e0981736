#pragma once

// The page while it is written: pieces gathered and passed on, texts made harmless, tables.

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace compensa {

// A text of the network as HTML: characters with a meaning in markup escaped, also for attributes
// between quotes; bytes that are not UTF-8 read as Windows-1252.
std::string Protetto(std::string_view testo);

// NumeroFisso without the sign of a number that is rounded to zero.
std::string Cifre(double valore, int decimali);

// Gathers the bytes of the page and passes them on in pieces of moderate size.
class Pagina {
 public:
  explicit Pagina(const std::function<void(std::string_view)>& scrivi) : Scrivi(scrivi) {}
  Pagina(const Pagina&) = delete;
  Pagina& operator=(const Pagina&) = delete;
  ~Pagina() = default;

  // Appends markup as it stands.
  Pagina& operator<<(std::string_view marcatura);
  // Appends a text, escaped.
  Pagina& Testo(std::string_view testo) { return *this << Protetto(testo); }
  // Passes the rest on. To be called once, at the end.
  void Concludi();

 private:
  const std::function<void(std::string_view)>& Scrivi;
  std::string Attesa;
};

// What a column holds; it decides how it is aligned and in which order it is sorted.
enum class Contenuto { Testo, Numero, NumeroAssoluto };

struct Colonna {
  std::string_view Titolo;
  std::string_view Unita = {};  // empty = none
  Contenuto Tipo = Contenuto::Testo;
};

// A table with its title, caption and filters, written row by row.
class TabellaHtml {
 public:
  struct Testata {
    std::string_view Chiave;  // identifier in the page
    std::string_view Titolo;
    std::string_view Didascalia;  // markup
    bool Osservazioni = false;    // its rows can be suspect
  };
  TabellaHtml(Pagina& pagina, const Testata& testata, std::span<const Colonna> colonne);
  TabellaHtml(const TabellaHtml&) = delete;
  TabellaHtml& operator=(const TabellaHtml&) = delete;
  ~TabellaHtml() = default;

  void Riga(bool sospetta = false);  // begins a row
  void Testo(std::string_view testo);
  // A number that does not exist is shown as "-".
  void Numero(double valore, int decimali);
  void Concludi();  // after the last row

 private:
  Pagina& P;
};

}  // namespace compensa

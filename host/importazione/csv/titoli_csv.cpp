// Titles of CSV columns brought to one spelling, and names that a spreadsheet has spoiled.

#include "host/importazione/csv/titoli_csv.h"

#include <algorithm>
#include <array>

#include "host/base/codifica.h"
#include "host/base/testi.h"

namespace compensa {

namespace {

constexpr std::array<std::string_view, 4> kUnitaAttese = {"(m)", "[m]", "(gon)", "[gon]"};
constexpr std::array<std::string_view, 12> kMesi = {"gen", "feb", "mar", "apr", "mag", "giu",
                                                    "lug", "ago", "set", "ott", "nov", "dic"};
constexpr std::size_t kLettereMese = 3;

// The letter under the accents that Italian titles have; 0 for any other character.
char SenzaAccento(char32_t codice) {
  struct Accentate {
    std::u32string_view Tutte;
    char Lettera;
  };
  constexpr std::array<Accentate, 5> kAccentate{{{U"àáâäÀÁÂÄ", 'a'},
                                                 {U"èéêëÈÉÊË", 'e'},
                                                 {U"ìíîïÌÍÎÏ", 'i'},
                                                 {U"òóôöÒÓÔÖ", 'o'},
                                                 {U"ùúûüÙÚÛÜ", 'u'}}};
  for (const Accentate& a : kAccentate) {
    if (a.Tutte.find(codice) != std::u32string_view::npos) return a.Lettera;
  }
  return '\0';
}

char LetteraSemplice(char32_t codice) {
  if ((codice >= U'a' && codice <= U'z') || (codice >= U'0' && codice <= U'9'))
    return static_cast<char>(codice);
  if (codice >= U'A' && codice <= U'Z') return static_cast<char>(codice - U'A' + U'a');
  return SenzaAccento(codice);
}

// The words of a text, units and all.
std::string Parole(std::string_view testo) {
  std::string semplice;
  bool stacco = false;
  while (!testo.empty()) {
    const Carattere c = PrimoCarattere(testo);
    testo.remove_prefix(std::max<std::size_t>(c.Lunghezza, 1));
    const char lettera = c.Lunghezza > 0 ? LetteraSemplice(c.Codice) : '\0';
    if (lettera != '\0') {
      if (stacco && !semplice.empty()) semplice += '_';
      semplice += lettera;
    }
    stacco = lettera == '\0';
  }
  return semplice;
}

// 1E+05, 1,00E+05
bool NumeroEsponenziale(std::string_view nome) {
  const std::size_t e = nome.find_first_of("Ee");
  if (e == std::string_view::npos || e + 1 >= nome.size() || nome[e + 1] != '+') return false;
  std::string mantissa(nome.substr(0, e));
  const std::size_t separatore = mantissa.find_first_of(".,");
  if (separatore != std::string::npos) mantissa.erase(separatore, 1);
  return TutteCifre(mantissa) && TutteCifre(nome.substr(e + 2));
}

// 01-feb, gen-05: what becomes of the names 1-2 and 1-05
bool Data(std::string_view nome) {
  const std::size_t tratto = nome.find('-');
  if (tratto == std::string_view::npos) return false;
  const auto mese = [](std::string_view testo) {
    return testo.size() == kLettereMese &&
           std::find(kMesi.begin(), kMesi.end(), Parole(testo)) != kMesi.end();
  };
  const std::string_view prima = nome.substr(0, tratto);
  const std::string_view dopo = nome.substr(tratto + 1);
  return (TutteCifre(prima) && mese(dopo)) || (mese(prima) && TutteCifre(dopo));
}

}  // namespace

std::string TitoloSemplice(std::string_view titolo) {
  for (const std::string_view unita : kUnitaAttese) {
    if (titolo.size() > unita.size() && titolo.ends_with(unita)) {
      titolo.remove_suffix(unita.size());
      break;
    }
  }
  return Parole(titolo);
}

std::optional<std::size_t> CercaSinonimo(std::string_view semplice,
                                         std::span<const SinonimoCsv> sinonimi) {
  for (const SinonimoCsv& sinonimo : sinonimi) {
    if (sinonimo.Titolo == semplice) return sinonimo.Colonna;
  }
  return std::nullopt;
}

std::optional<TitoloCsv> TitoloXY(std::string_view titolo, std::optional<Assi> assi,
                                  std::size_t colonnaEst, std::size_t colonnaNord) {
  const std::string semplice = TitoloSemplice(titolo);
  if (semplice != "x" && semplice != "y") return std::nullopt;
  if (assi) {
    const bool est = (semplice == "x") == (*assi == Assi::EstNord);
    return TitoloCsv{.Colonna = est ? colonnaEst : colonnaNord};
  }
  return TitoloCsv{
      .Cosa = Guasto{.Record = "intestazione",
                     .Problema = "la colonna " + Cita(titolo) +
                                 " è ambigua: X è Nord per i geodeti, Est nei programmi di disegno",
                     .Suggerimento = "dire con --assi quale asse è X, o chiamarle est e nord"}};
}

void NomiAlterati::Controlla(std::string_view nome, const Posizione& dove) {
  if (!NumeroEsponenziale(nome) && !Data(nome)) return;
  if (!Detti.emplace(nome).second) return;
  Diario.Avviso(dove, {.Record = NomePunto(nome),
                       .Campo = "nome",
                       .Problema = "sembra un nome che il foglio di calcolo ha trasformato in un "
                                   "numero o in una data",
                       .Suggerimento = "tenere come testo la colonna dei nomi"});
}

}  // namespace compensa

// TOML syntax errors: which situation stands behind the parser's words, and what to do about it.

#include "host/file_rete/sintassi_toml.h"

#include <algorithm>
#include <array>
#include <string>

#include "host/base/codifica.h"

namespace compensa {

namespace {

constexpr int kPartiMassime = 100;  // of a dotted key
constexpr std::string_view kNonValida = "sintassi TOML non valida: ";

// A piece of the parser's description and what it means; the first that occurs counts.
struct Situazione {
  std::string_view Indizio;
  std::string_view Problema;
  std::string_view Suggerimento;
};

constexpr std::array kSituazioni = std::to_array<Situazione>({
    {"cannot redefine existing", "chiave o tabella già definita più sopra", ""},
    {"cannot insert", "chiave aggiunta a una tabella fra graffe già chiusa", ""},
    {"leading zeroes", "numero che comincia con zeri", "i nomi come 007 vanno fra virgolette"},
    {"dangling comma", "virgola prima della graffa di chiusura", ""},
    {"expected key or closing '}', saw '\\n'", "tabella fra graffe spezzata su più righe",
     "{ … } deve stare su una riga sola"},
    {"expected key or closing '}', saw '\\r'", "tabella fra graffe spezzata su più righe",
     "{ … } deve stare su una riga sola"},
    {"parsing inline table: encountered end-of-file", "graffa { non chiusa", ""},
    {"parsing inline table", "tabella fra graffe { … } mal scritta",
     "dentro servono chiave = valore separati da virgole"},
    {"parsing array: encountered end-of-file", "parentesi quadra [ non chiusa", ""},
    {"parsing array", "elenco fra parentesi quadre mal scritto",
     "i valori si separano con virgole"},
    {"parsing table header", "intestazione di tabella mal scritta",
     "si scrive [nome], o [[nome]] per punti e stazioni"},
    {"unknown escape sequence", "barra rovesciata in un testo",
     "nei percorsi usare / o il testo fra apici semplici"},
    {"parsing string", "testo con virgolette non chiuse o caratteri non ammessi", ""},
    {"parsing literal string", "testo con apici non chiusi o caratteri non ammessi", ""},
    {"expected '='", "dopo la chiave serve il segno =", ""},
    {"maximum nested value depth", "troppi elenchi uno dentro l'altro", ""},
    {"not representable", "numero troppo grande", ""},
    {"exceeds length", "numero con troppe cifre", ""},
    {"parsing date", "data non valida", "i nomi vanno fra virgolette"},
    {"parsing time", "ora non valida", "i nomi vanno fra virgolette"},
    {"parsing boolean", "valore non riconosciuto", "sì e no si scrivono true e false"},
    {"parsing key-value pair: encountered end-of-file", "manca il valore dopo il segno =", ""},
    {"expected value, saw", "manca il valore dopo il segno =", ""},
    {"parsing comment", "carattere non ammesso in un commento", ""},
    {"control character", "carattere di controllo non ammesso", ""},
    {"integer", "numero non valido", ""},
    {"floating-point", "numero non valido", ""},
    {"parsing value", "valore non riconosciuto", "i testi vanno fra virgolette"},
    {"value-terminator", "valore non riconosciuto", "i testi vanno fra virgolette"},
    {"expected a comment or whitespace", "testo di troppo dopo il valore", ""},
    {"parsing key", "chiave mal scritta", "una riga ha la forma chiave = valore"},
    {"", "riga non riconosciuta", "una riga ha la forma chiave = valore"},
});

constexpr Situazione kVirgolaDecimale{"", "virgola in un numero", "i decimali vogliono il punto"};

constexpr bool Cifra(char c) { return c >= '0' && c <= '9'; }

// A comma right between two digits, outside quotes: almost always a decimal comma.
bool VirgolaFraCifre(std::string_view riga) {
  bool fraVirgolette = false;
  for (std::size_t i = 1; i + 1 < riga.size(); ++i) {
    if (riga[i] == '"') fraVirgolette = !fraVirgolette;
    if (!fraVirgolette && riga[i] == ',' && Cifra(riga[i - 1]) && Cifra(riga[i + 1])) return true;
  }
  return false;
}

constexpr bool Ascii(char c) { return static_cast<unsigned char>(c) < 0x80; }

// Goes through a TOML text knowing only quotes, comments and where a value may begin.
class Scansione {
 public:
  Scansione(std::string_view testo, std::string_view file) : Testo(testo), File(file) {}

  std::optional<Ostacolo> Cerca() {
    for (std::size_t i = 0; i < Testo.size();) {
      const char c = Testo[i];
      if (c == '#') {
        i = std::min(Testo.find('\n', i), Testo.size());
      } else if (c == '"' || c == '\'') {
        if (Testo.substr(i, 3) == std::string(3, c))
          return Qui(i, "testo su più righe non ammesso");
        const std::size_t fine = FineVirgolette(i);
        const bool ascii = std::all_of(Testo.begin() + static_cast<std::ptrdiff_t>(i),
                                       Testo.begin() + static_cast<std::ptrdiff_t>(fine), Ascii);
        if (!ascii && (kPrimaDiUnTesto.find(Ultimo) == std::string_view::npos ||
                       (Ultimo == '.' && !InChiave()))) {
          return Qui(i, "virgolette in un punto inatteso");
        }
        Ultimo = c;
        i = fine;
      } else if (!Ascii(c)) {
        return CarattereEstraneo(i);
      } else if (c == 0x7F || (c >= 0 && c < ' ' && kSpazi.find(c) == std::string_view::npos)) {
        return Qui(i, "carattere di controllo fuori dalle virgolette");
      } else if (!Chiude(c)) {
        return Qui(i, std::string("parentesi ") + c + " che non ne chiude nessuna");
      } else if ((c == '[' || c == '{') &&
                 kPrimaDiUnaParentesi.find(Ultimo) == std::string_view::npos) {
        return Qui(i, std::string("parentesi ") + c + " in un punto inatteso");
      } else if (c == '=' && !InChiave()) {
        return Qui(i, "segno = di troppo");
      } else if (!Conta(c)) {
        return Qui(i, "chiave con troppe parti");
      } else {
        ++i;
      }
    }
    return std::nullopt;
  }

 private:
  static constexpr std::string_view kPrimaDiUnTesto = "\n=[{,.";
  static constexpr std::string_view kSpazi = " \t\r\n";
  static constexpr std::string_view kFineChiave = "\n=[]{},";
  static constexpr std::string_view kPrimaDiUnaParentesi = "\n=[{,";
  static constexpr std::string_view kPrimaDiUnaChiave = "\n{,";

  // Whether a key stands here, whose parts a dot joins and which = ends.
  bool InChiave() const { return !NelValore && (Aperte.empty() || Aperte.back() == '{'); }

  // False when a closing bracket has no opening one of its kind before it.
  bool Chiude(char c) {
    if (c == '[' || c == '{') Aperte += c;
    if (c != ']' && c != '}') return true;
    const bool coppia = !Aperte.empty() && Aperte.back() == (c == ']' ? '[' : '{');
    if (coppia) Aperte.pop_back();
    return coppia;
  }

  // False when a key has had kPartiMassime parts.
  bool Conta(char c) {
    if (c == ' ' || c == '\t' || c == '\r') return true;
    if (kFineChiave.find(c) != std::string_view::npos) {
      Punti = 0;
    } else if (c == '.' && Ultimo != '.') {
      ++Punti;
    }
    if (c == '=') NelValore = true;
    if (kPrimaDiUnaChiave.find(c) != std::string_view::npos) NelValore = false;
    Ultimo = c;
    return Punti < kPartiMassime;
  }

  // A quoted text ends at its quote, or with the line.
  std::size_t FineVirgolette(std::size_t inizio) const {
    const char c = Testo[inizio];
    for (std::size_t i = inizio + 1; i < Testo.size(); ++i) {
      if (Testo[i] == '\n') return i;
      if (Testo[i] == c) return i + 1;
      if (c == '"' && Testo[i] == '\\' && i + 1 < Testo.size() && Testo[i + 1] != '\n') ++i;
    }
    return Testo.size();
  }

  std::optional<Ostacolo> CarattereEstraneo(std::size_t i) const {
    const Carattere c = PrimoCarattere(Testo.substr(i));
    auto ostacolo = Qui(i, "carattere " + Cita(Testo.substr(i, c.Lunghezza)) + " (" +
                               CodiceUnicode(c.Codice) + ") fuori dalle virgolette");
    ostacolo->Cosa.Suggerimento =
        "le chiavi si scrivono senza accenti, i testi fra virgolette diritte";
    return ostacolo;
  }

  std::optional<Ostacolo> Qui(std::size_t i, std::string_view problema) const {
    const std::string_view prima = Testo.substr(0, i);
    const std::size_t inizioRiga = prima.rfind('\n') + 1;  // npos + 1 = 0
    const auto righe = std::count(prima.begin(), prima.end(), '\n');
    return Ostacolo{
        {File, static_cast<int>(righe) + 1, 1 + ContaCaratteri(prima.substr(inizioRiga))},
        {.Problema = std::string(kNonValida) + std::string(problema)}};
  }

  std::string_view Testo;
  std::string_view File;
  char Ultimo = '\n';      // last character that is no blank
  int Punti = 0;           // of the dotted key, so far
  bool NelValore = false;  // after the = of a key
  std::string Aperte;      // brackets that wait for their closing one
};

}  // namespace

Guasto GuastoSintassi(std::string_view descrizione, std::string_view riga) {
  const auto* situazione = std::find_if(
      kSituazioni.begin(), kSituazioni.end(),
      [&](const Situazione& s) { return descrizione.find(s.Indizio) != std::string_view::npos; });
  if (VirgolaFraCifre(riga)) situazione = &kVirgolaDecimale;
  Guasto guasto{.Problema = std::string(kNonValida) + std::string(situazione->Problema),
                .Suggerimento = std::string(situazione->Suggerimento)};
  const std::size_t primo = riga.find_first_not_of(" \t");
  if (primo != std::string_view::npos) guasto.Trovato = Cita(riga.substr(primo));
  return guasto;
}

std::string_view RigaDelTesto(std::string_view testo, int numero) {
  for (; numero > 1 && testo.find('\n') != std::string_view::npos; --numero) {
    testo.remove_prefix(testo.find('\n') + 1);
  }
  testo = testo.substr(0, testo.find('\n'));
  while (!testo.empty() && testo.back() == '\r') testo.remove_suffix(1);
  return testo;
}

std::optional<Ostacolo> PrimaDelParser(std::string_view testo, std::string_view file) {
  return Scansione(testo, file).Cerca();
}

}  // namespace compensa

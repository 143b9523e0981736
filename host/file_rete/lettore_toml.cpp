// TOML 1.0: a recursive descent over the text, as deep as kProfondita. Scalars are checked where they
// stand and turned into values only when somebody asks. Beyond the standard a CR alone ends a line.

#include <algorithm>
#include <utility>

#include "host/base/codifica.h"
#include "host/base/testi.h"
#include "host/file_rete/toml.h"
#include "host/file_rete/valori_toml.h"

namespace compensa {

namespace {

using Modo = NodoToml::Modo;

constexpr int kProfondita = 64;           // of arrays and inline tables
constexpr std::size_t kBytePerNodo = 16;  // of a network file, about
constexpr std::string_view kIntestazione = "[nome], o [[nome]] per punti e stazioni";
constexpr std::string_view kCoppia = "una riga della forma chiave = valore";

constexpr bool Cifra(char c) { return c >= '0' && c <= '9'; }
constexpr bool Ascii(char c) { return static_cast<unsigned char>(c) < 0x80; }
constexpr bool DiChiave(char c) {
  return Cifra(c) || (Minuscola(c) >= 'a' && Minuscola(c) <= 'z') || c == '_' || c == '-';
}
constexpr bool Controllo(char c) { return (c >= 0 && c < ' ' && c != '\t') || c == '\x7F'; }
constexpr bool FineRiga(char c) { return c == '\n' || c == '\r'; }
constexpr std::string_view kFineScalare = " \t\r\n,]}#=[{\"'";

struct ErroreToml {
  std::size_t Posto;
  Guasto Cosa;
};

}  // namespace

class LettoreToml {
 public:
  explicit LettoreToml(DocumentoToml& documento) : D(documento), Testo(documento.Contenuto) {}

  void Leggi() {
    Nomina("");
    D.Nodi.emplace_back().Come = Modo::Intestazione;
    for (SaltaRighe(); !Fine(); SaltaRighe()) {
      if (Qui() == '[') {
        LeggiIntestazione();
      } else {
        LeggiCoppia(Tabella, 0, kCoppia);
      }
      D.Nodi[Tabella].Fine = Posto();
      LeggiFineRiga();
    }
  }

 private:
  struct Parte {  // of a key
    std::uint32_t Nome;
    std::size_t Inizio;
  };

  bool Fine() const { return I == Testo.size(); }
  char Qui() const { return Fine() ? '\n' : Testo[I]; }
  std::uint32_t Posto() const { return static_cast<std::uint32_t>(I); }

  [[noreturn]] static void Rifiuta(std::size_t posto, Guasto guasto) {
    throw ErroreToml{posto, std::move(guasto)};
  }

  // Here stands something else than what is wanted.
  [[noreturn]] void Inatteso(std::string_view problema, std::string_view voluto,
                             std::string_view suggerimento = {}) const {
    if (!Fine() && !FineRiga(Qui()) && (!Ascii(Qui()) || Controllo(Qui()))) Estraneo(true);
    const std::string_view riga = Testo.substr(I, Testo.find_first_of("\r\n", I) - I);
    Rifiuta(I, {.Problema = std::string(problema),
                .Trovato = Fine()         ? "la fine del file"
                           : riga.empty() ? "la fine della riga"
                                          : Cita(SenzaBianchi(riga)),
                .Voluto = std::string(voluto),
                .Suggerimento = std::string(suggerimento)});
  }

  // A character that may not stand here, or a byte that is none; fuori: outside quotes and comments.
  [[noreturn]] void Estraneo(bool fuori) const {
    const Carattere c = PrimoCarattere(Testo.substr(I));
    const std::string quale = Cita(Testo.substr(I, std::max<std::size_t>(c.Lunghezza, 1))) + " (" +
                              CodiceUnicode(c.Codice) + ")";
    if (c.Lunghezza == 0)
      Rifiuta(I, {.Problema = "un byte che non è UTF-8",
                  .Trovato = Cita(Testo.substr(I, 1)),
                  .Voluto = "un file salvato come UTF-8"});
    if (!fuori || Ascii(Qui()))
      Rifiuta(I, {.Problema = "carattere di controllo " + quale + " non ammesso"});
    Rifiuta(
        I, {.Problema = "carattere " + quale + " fuori dalle virgolette",
            .Suggerimento = "le chiavi si scrivono senza accenti, i testi fra virgolette diritte"});
  }

  // Goes over a character of a text or of a comment.
  void Passa() {
    const char c = Testo[I];
    const std::size_t lunghezza = Ascii(c) ? 1 : PrimoCarattere(Testo.substr(I)).Lunghezza;
    if (lunghezza == 0 || Controllo(c)) Estraneo(false);
    I += lunghezza;
  }

  void SaltaBianchi() {
    while (I < Testo.size() && (Testo[I] == ' ' || Testo[I] == '\t')) ++I;
  }
  void SaltaCommento() {
    SaltaBianchi();
    if (Qui() != '#') return;
    while (!Fine() && !FineRiga(Testo[I])) Passa();
  }
  void SaltaRighe() {
    for (SaltaCommento(); !Fine() && FineRiga(Testo[I]); SaltaCommento()) ++I;
  }

  void LeggiFineRiga() {
    ControllaVirgola(I);
    SaltaCommento();
    if (!FineRiga(Qui()))
      Inatteso("testo di troppo", "la fine della riga", "i testi vanno fra virgolette");
  }

  // A comma between the digits of the last number and others is a decimal one.
  void ControllaVirgola(std::size_t virgola) const {
    if (virgola != FineNumero || virgola + 1 >= Testo.size() || Testo[virgola] != ',' ||
        !Cifra(Testo[virgola + 1]))
      return;
    const std::size_t fine = Testo.find_first_not_of("0123456789", virgola + 1);
    Rifiuta(InizioNumero, {.Problema = "virgola in un numero",
                           .Trovato = Cita(Testo.substr(InizioNumero, fine - InizioNumero)),
                           .Suggerimento = "i decimali vogliono il punto"});
  }

  std::uint32_t Nomina(std::string_view nome) {
    const auto [voce, nuovo] =
        D.NumeroDelNome.try_emplace(nome, static_cast<std::uint32_t>(D.Nomi.size()));
    if (nuovo) D.Nomi.push_back(nome);
    return voce->second;
  }

  Parte LeggiParte(std::string_view voluto) {
    const std::size_t inizio = I;
    if (Qui() == '"' || Qui() == '\'') {
      SaltaTesto(false);
      const std::string_view scritto = Testo.substr(inizio, I - inizio);
      if (scritto[0] == '"' && scritto.find('\\') != std::string_view::npos)
        return {Nomina(D.Sciolti.emplace_back(Sciogli(scritto))), inizio};
      return {Nomina(scritto.substr(1, scritto.size() - 2)), inizio};
    }
    while (I < Testo.size() && DiChiave(Testo[I])) ++I;
    if (I == inizio) Inatteso("chiave mal scritta", voluto);
    return {Nomina(Testo.substr(inizio, I - inizio)), inizio};
  }

  // The parts of a key up to the last; entra(table, part) goes into the tables of those before it.
  template <class Entra>
  Parte LeggiChiave(std::uint32_t& tabella, std::string_view voluto, Entra entra) {
    Parte parte = LeggiParte(voluto);
    for (SaltaBianchi(); Qui() == '.'; SaltaBianchi()) {
      tabella = entra(tabella, parte);
      ++I;
      SaltaBianchi();
      parte = LeggiParte("un'altra parte della chiave dopo il punto");
    }
    return parte;
  }

  std::uint32_t Aggiungi(std::uint32_t madre, const Parte& parte, GenereToml genere, Modo come) {
    const auto nuovo = static_cast<std::uint32_t>(D.Nodi.size());
    NodoToml& nodo = D.Nodi.emplace_back();
    nodo.Chiave = parte.Nome;
    nodo.Inizio = nodo.InizioChiave = static_cast<std::uint32_t>(parte.Inizio);
    nodo.Fine = Posto();
    nodo.Genere = genere;
    nodo.Come = come;
    NodoToml& m = D.Nodi[madre];
    (m.Primo == 0 ? m.Primo : D.Nodi[m.Ultimo].Prossimo) = nuovo;
    m.Ultimo = nuovo;
    if (m.Genere == GenereToml::Elenco) return nuovo;
    if (m.Figli < DocumentoToml::kPochi) {
      ++m.Figli;
    } else {
      if (m.Figli++ == DocumentoToml::kPochi)
        for (std::uint32_t f = m.Primo; f != 0; f = D.Nodi[f].Prossimo) Indicizza(madre, f);
      m.Figli = DocumentoToml::kPochi + 1;
      Indicizza(madre, nuovo);
    }
    return nuovo;
  }

  void Indicizza(std::uint32_t madre, std::uint32_t figlio) {
    D.Indice[std::uint64_t{madre} << 32 | D.Nodi[figlio].Chiave] = figlio;
  }

  [[noreturn]] void Doppia(std::uint32_t prima, const Parte& parte, std::string_view come) const {
    const Posizione dove = D.Posti.Dove(D.Nodi[prima].InizioChiave);
    Rifiuta(parte.Inizio,
            {.Problema = std::string(come) + " " + Cita(D.Nomi[parte.Nome]) + ": è già alla riga " +
                         std::to_string(dove.Riga) + ", colonna " + std::to_string(dove.Colonna)});
  }

  // key = value
  void LeggiCoppia(std::uint32_t tabella, int profondita, std::string_view voluto) {
    const Parte parte = LeggiChiave(tabella, voluto, [this](std::uint32_t t, const Parte& p) {
      const std::uint32_t figlia = D.Trova(t, p.Nome);
      if (figlia == 0) return Aggiungi(t, p, GenereToml::Tabella, Modo::Punti);
      if (D.Nodi[figlia].Come != Modo::Punti) Doppia(figlia, p, "chiave o tabella ripetuta");
      return figlia;
    });
    if (Qui() != '=') {
      if (parte.Inizio > 0) ControllaVirgola(parte.Inizio - 1);
      Inatteso("dopo la chiave " + Cita(D.Nomi[parte.Nome]), "il segno =", kCoppia);
    }
    ++I;
    const std::uint32_t prima = D.Trova(tabella, parte.Nome);
    if (prima != 0) Doppia(prima, parte, "chiave ripetuta");
    SaltaBianchi();
    LeggiValore(Aggiungi(tabella, parte, GenereToml::Testo, Modo::Valore), profondita,
                "un valore dopo il segno =");
  }

  void LeggiIntestazione() {
    const std::size_t inizio = I++;
    const bool elenco = Qui() == '[';
    if (elenco) ++I;
    SaltaBianchi();
    std::uint32_t madre = 0;
    const Parte parte = LeggiChiave(madre, kIntestazione, [this](std::uint32_t t, const Parte& p) {
      const std::uint32_t figlia = D.Trova(t, p.Nome);
      if (figlia == 0) return Aggiungi(t, p, GenereToml::Tabella, Modo::Passaggio);
      const NodoToml& f = D.Nodi[figlia];
      const bool ultima = f.Genere == GenereToml::Elenco && f.Come == Modo::Intestazione;
      if (!ultima && (f.Genere != GenereToml::Tabella || f.Come == Modo::Valore))
        Doppia(figlia, p, "chiave o tabella ripetuta");
      return ultima ? f.Ultimo : figlia;
    });
    if (!Testo.substr(I).starts_with(elenco ? "]]" : "]"))
      Inatteso("intestazione di tabella mal scritta", elenco ? "]]" : "]");
    I += elenco ? 2 : 1;
    const std::uint32_t prima = D.Trova(madre, parte.Nome);
    Tabella = elenco ? ElementoDi(prima, madre, parte) : TabellaDi(prima, madre, parte);
    D.Nodi[Tabella].Inizio = static_cast<std::uint32_t>(inizio);
    if (elenco && prima == 0)
      D.Nodi[D.Nodi[madre].Ultimo].Inizio = static_cast<std::uint32_t>(inizio);
  }

  // The new last table of [[parte]].
  std::uint32_t ElementoDi(std::uint32_t elenco, std::uint32_t madre, const Parte& parte) {
    if (elenco == 0) elenco = Aggiungi(madre, parte, GenereToml::Elenco, Modo::Intestazione);
    const NodoToml& nodo = D.Nodi[elenco];
    if (nodo.Genere != GenereToml::Elenco || nodo.Come != Modo::Intestazione)
      Doppia(elenco, parte, "chiave o tabella ripetuta");
    return Aggiungi(elenco, {0, parte.Inizio}, GenereToml::Tabella, Modo::Intestazione);
  }

  std::uint32_t TabellaDi(std::uint32_t tabella, std::uint32_t madre, const Parte& parte) {
    if (tabella == 0) return Aggiungi(madre, parte, GenereToml::Tabella, Modo::Intestazione);
    if (D.Nodi[tabella].Come != Modo::Passaggio) Doppia(tabella, parte, "tabella ripetuta");
    D.Nodi[tabella].Come = Modo::Intestazione;
    D.Nodi[tabella].InizioChiave = static_cast<std::uint32_t>(parte.Inizio);
    return tabella;
  }

  void LeggiValore(std::uint32_t nodo, int profondita, std::string_view voluto) {
    D.Nodi[nodo].Inizio = Posto();
    const char c = Qui();
    if (c == '"' || c == '\'') {
      SaltaTesto(true);
    } else if (c == '[' || c == '{') {
      if (profondita == kProfondita)
        Inatteso("troppi elenchi e tabelle uno dentro l'altro", "un valore semplice");
      D.Nodi[nodo].Genere = c == '[' ? GenereToml::Elenco : GenereToml::Tabella;
      c == '[' ? LeggiElenco(nodo, profondita + 1) : LeggiGraffe(nodo, profondita + 1);
    } else {
      LeggiScalare(nodo, voluto);
    }
    D.Nodi[nodo].Fine = Posto();
  }

  // Where a list or table that should have ended begins.
  std::string ApertaQui(std::uint32_t nodo, std::string_view chiusa) const {
    return "manca forse la " + std::string(chiusa) + " di quella aperta alla riga " +
           std::to_string(D.Posti.Dove(D.Nodi[nodo].Inizio).Riga);
  }

  void LeggiElenco(std::uint32_t nodo, int profondita) {
    ++I;
    for (SaltaRighe(); Qui() != ']' || Fine(); SaltaRighe()) {
      if (Fine() || std::string_view(",}=").find(Qui()) != std::string_view::npos)
        Inatteso("elenco mal scritto", "un valore o ]", ApertaQui(nodo, "]"));
      LeggiValore(Aggiungi(nodo, {0, I}, GenereToml::Testo, Modo::Valore), profondita, "un valore");
      SaltaRighe();
      if (Qui() == ']' && !Fine()) break;
      if (Qui() != ',' || Fine())
        Inatteso("elenco mal scritto", "una virgola o ]", ApertaQui(nodo, "]"));
      ++I;
    }
    ++I;
  }

  void LeggiGraffe(std::uint32_t nodo, int profondita) {
    ++I;
    SaltaBianchi();
    for (bool prima = true; Qui() != '}'; prima = false) {
      if (!prima) {
        if (Qui() != ',') FraGraffe("una virgola o }");
        ++I;
        SaltaBianchi();
        if (Qui() == '}') Inatteso("virgola prima della graffa di chiusura", "un'altra chiave");
      }
      if (FineRiga(Qui()) || Qui() == '#') FraGraffe("chiave = valore");
      LeggiCoppia(nodo, profondita, "chiave = valore");
      SaltaBianchi();
    }
    ++I;
  }

  [[noreturn]] void FraGraffe(std::string_view voluto) const {
    if (FineRiga(Qui()) || Qui() == '#')
      Inatteso("tabella fra graffe non chiusa", voluto, "{ … } deve stare su una riga sola");
    Inatteso("tabella fra graffe mal scritta", voluto);
  }

  void LeggiScalare(std::uint32_t nodo, std::string_view voluto) {
    const std::size_t inizio = I;
    I = std::min(Testo.find_first_of(kFineScalare, I), Testo.size());
    // a date and a time may be parted by a blank
    if (Qui() == ' ' && I + 3 < Testo.size() && Testo[I + 3] == ':' &&
        SembraData(Testo.substr(inizio, I - inizio)))
      I = std::min(Testo.find_first_of(kFineScalare, I + 1), Testo.size());
    const std::string_view scritto = Testo.substr(inizio, I - inizio);
    const std::optional<GenereToml> genere = GenereScalare(scritto);
    if (!genere) {
      I = inizio;
      for (; I < inizio + scritto.size(); ++I)
        if (!Ascii(Qui()) || Controllo(Qui())) Estraneo(true);
      I = inizio;
      NonRiconosciuto(scritto, voluto);
    }
    if (*genere == GenereToml::Intero && !LeggiIntero64(scritto))
      Rifiuta(inizio, {.Problema = "numero troppo grande", .Trovato = Cita(scritto)});
    D.Nodi[nodo].Genere = *genere;
    InizioNumero = inizio;
    FineNumero = I;
  }

  [[noreturn]] void NonRiconosciuto(std::string_view scritto, std::string_view voluto) const {
    if (scritto.empty()) Inatteso("manca il valore", voluto);
    const auto zeri = std::min(scritto.find_first_not_of("+-"), scritto.size());
    const std::string_view cifre = scritto.substr(zeri);
    std::string suggerimento = "i testi vanno fra virgolette, sì e no si scrivono true e false";
    if (cifre.size() > 1 && cifre[0] == '0' && Cifra(cifre[1]))
      suggerimento = "un numero non comincia con zeri: i nomi come 007 vanno fra virgolette";
    else if (!cifre.empty() && (Cifra(cifre[0]) || cifre[0] == '.'))
      suggerimento = "un numero si scrive 12.5 o 1e-3, i nomi vanno fra virgolette";
    Rifiuta(I, {.Problema = "valore non riconosciuto",
                .Trovato = Cita(scritto),
                .Voluto = std::string(voluto),
                .Suggerimento = suggerimento});
  }

  // Goes over a text with its quotes. Three of them begin one that spans lines.
  void SaltaTesto(bool ancheSuRighe) {
    const std::size_t inizio = I;
    const char virgolette = Testo[I];
    const bool righe = ancheSuRighe && Testo.substr(I, 3) == std::string(3, virgolette);
    I += righe ? 3 : 1;
    while (true) {
      if (Fine() || (!righe && FineRiga(Testo[I]))) {
        I = inizio;
        Inatteso("virgolette non chiuse", std::string("un ") + virgolette + " che chiude il testo");
      }
      const char c = Testo[I];
      if (c == virgolette) {
        if (!righe) break;
        const std::size_t quante = std::min(Testo.find_first_not_of(c, I), Testo.size()) - I;
        I += std::min<std::size_t>(quante, 5);
        if (quante >= 3) return;
      } else if (c == '\\' && virgolette == '"') {
        SaltaFuga(righe);
      } else if (FineRiga(c)) {
        ++I;
      } else {
        Passa();
      }
    }
    ++I;
  }

  void SaltaFuga(bool righe) {
    const std::string_view resto = Testo.substr(I + 1, 9);
    const char c = resto.empty() ? '\n' : resto[0];
    const std::size_t cifre = c == 'u' ? 4 : 8;
    const bool codice = (c == 'u' || c == 'U') && resto.size() > cifre &&
                        CodiceDaCifre(resto.substr(1, cifre)).has_value();
    const std::size_t dopo = Testo.find_first_not_of(kBianchi, I + 1);
    if (codice) {
      I += 2 + cifre;
    } else if (kFuggiteToml.find(c) != std::string_view::npos) {
      I += 2;
    } else if (righe && dopo != std::string_view::npos && FineRiga(Testo[dopo])) {
      I = dopo;
    } else {
      Inatteso("barra rovesciata in un testo",
               "\\\\ o una tra \\b \\t \\n \\f \\r \\\" \\uXXXX \\UXXXXXXXX",
               "nei percorsi usare / o il testo fra apici semplici");
    }
  }

  DocumentoToml& D;
  std::string_view Testo;
  std::size_t I = 0;                           // where the reading stands
  std::size_t InizioNumero = 0;                // of the last value without quotes
  std::size_t FineNumero = std::string::npos;  // likewise
  std::uint32_t Tabella = 0;                   // of the last header
};

DocumentoToml::DocumentoToml(std::string_view testo, std::string_view file,
                             Diagnostica& diagnostica)
    : Contenuto(testo), Posti(testo, file) {
  Nodi.reserve(testo.size() / kBytePerNodo + 1);
  try {
    LettoreToml(*this).Leggi();
    Buono = true;
  } catch (ErroreToml& errore) {
    diagnostica.Errore(Posti.Dove(errore.Posto), std::move(errore.Cosa));
  }
}

}  // namespace compensa

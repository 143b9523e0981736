// The booklet of the cadastre: rows of a kind 0 to 9, fields ended by "|", gon and metres with a
// decimal point.
//
// A row begins where a line begins with its kind and "|"; other lines go on with the row above, as
// text pasted from a PDF breaks them. Observations are told apart by how many numbers stand between
// the name and the note: 4 = direction, zenith angle, slope distance, height of the target; 2 =
// direction, horizontal distance. Any count in between would need a guess, and is refused.

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/base/codifica.h"
#include "host/base/numeri.h"
#include "host/base/testi.h"
#include "host/file_rete/riga_csv.h"
#include "host/importazione/lettore.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

constexpr std::string_view kFineDati = "RELAZIONE TECNICA";
constexpr std::string_view kServeIlPunto = "i decimali del libretto vogliono il punto";
constexpr std::size_t kLunga = 4;          // numbers of an observation with zenith angle
constexpr std::size_t kCorta = 2;          // numbers of one without
constexpr std::size_t kCampiStazione = 3;  // name, height, note
constexpr RegolaNumero kDistanzaLetta{"distanza", "m", 0.0};

struct CampoLibretto {
  std::string Valore;
  std::size_t InizioLinea = 0;  // of the line on which it begins, in the text
  std::size_t Inizio = 0;
  int Linea = 0;
};

struct RigaLibretto {
  char Genere = '\0';  // '0' to '9'; none = no row
  int Linea = 0;
  bool Chiusa = false;               // by "|"
  std::vector<CampoLibretto> Campi;  // without the kind
};

// The value of a field; empty if the row ends before it.
std::string_view Campo(const RigaLibretto& riga, std::size_t i) {
  return i < riga.Campi.size() ? std::string_view(riga.Campi[i].Valore) : std::string_view();
}

// Whether a row begins on the line: a digit and "|".
bool IniziaRiga(std::string_view linea) {
  return linea.size() > 1 && linea[0] >= '0' && linea[0] <= '9' && linea[1] == '|';
}

// Whether a field is a number, also one that cannot be used: with a comma, or too large.
bool SembraNumero(std::string_view campo) {
  return LeggiNumero(campo, true).Esito != EsitoNumero::NonNumero;
}

// Three numbers with commas between them: geocentric coordinates or a vector.
bool Terna(std::string_view campo) {
  const auto virgole = std::count(campo.begin(), campo.end(), ',');
  return virgole >= 2 && campo.find_first_not_of("+-.,0123456789 ") == std::string_view::npos;
}

class LettoreLibretto {
 public:
  LettoreLibretto(std::string_view testo, std::string_view file, const OpzioniLettura& opzioni,
                  Libretto& libretto, Diagnostica& diagnostica)
      : Testo(testo), File(file), Opzioni(opzioni), L(libretto), Diario(diagnostica) {}

  void Leggi() {
    Righe righe(Testo);
    RigaTesto riga;
    while (righe.Prossima(riga)) {
      Linea = riga.Numero;
      InizioLinea = static_cast<std::size_t>(riga.Testo.data() - Testo.data());
      LeggiLinea(SenzaBianchi(riga.Testo));
    }
    ChiudiRiga();
  }

 private:
  void LeggiLinea(std::string_view linea) {
    const bool inizia = IniziaRiga(linea);
    const bool commento = !inizia || linea[0] == '6';
    if (!Finito && commento && linea.find(kFineDati) != std::string_view::npos) {
      ChiudiRiga();
      Finito = true;
      return;
    }
    if (Finito) return DopoLaFine(linea);
    if (inizia) {
      ChiudiRiga();
      Riga = {linea[0], Linea, false, {}};
      Aggiungi(linea.substr(2), false);
    } else if (Riga.Genere != '\0') {
      Aggiungi(linea, true);
    } else {
      L.Tralascia("linee di testo prima della prima riga", "non sono righe del libretto", Linea);
    }
  }

  // The fields of a line; the first goes on with the last field of the row if the line does.
  void Aggiungi(std::string_view linea, bool continua) {
    const auto posto = [&](std::string_view campo) {
      const std::size_t bianchi = std::min(campo.find_first_not_of(kBianchi), campo.size());
      return static_cast<std::size_t>(campo.data() - Testo.data()) + bianchi;
    };
    for (std::size_t i = 0; i <= linea.size();) {
      const std::size_t fine = std::min(linea.find('|', i), linea.size());
      const std::string_view campo = linea.substr(i, fine - i);
      if (continua && !Riga.Campi.empty() && !Riga.Campi.back().Valore.empty()) {
        if (Riga.Genere == '6') Riga.Campi.back().Valore += ' ';
        Riga.Campi.back().Valore += SenzaBianchi(campo);
      } else {
        if (continua && !Riga.Campi.empty()) Riga.Campi.pop_back();
        Riga.Campi.push_back({std::string(SenzaBianchi(campo)), InizioLinea, posto(campo), Linea});
      }
      continua = false;
      i = fine + 1;
    }
  }

  void DopoLaFine(std::string_view linea) {
    L.Tralascia("linee dopo \"RELAZIONE TECNICA\"", "lì finiscono i dati", Linea);
    if (DettoDopo || linea.size() < 2 || (linea.rfind("1|", 0) != 0 && linea.rfind("2|", 0) != 0))
      return;
    DettoDopo = true;
    Diario.Avviso({File, Linea, 1},
                  {.Problema = "righe 1 o 2 dopo \"RELAZIONE TECNICA\" non sono lette",
                   .Suggerimento = "se sono misure, portarle prima della relazione"});
  }

  void ChiudiRiga() {
    if (Riga.Genere == '\0') return;
    RigaLibretto riga = std::exchange(Riga, {});
    riga.Chiusa = riga.Campi.back().Valore.empty();
    if (riga.Chiusa) riga.Campi.pop_back();
    const bool prima = std::exchange(Prima, false);
    switch (riga.Genere) {
      case '0': return Intestazione(riga, prima);
      case '1': return Stazione(riga);
      case '2': return Osservazione(riga);
      case '3':
        return L.Tralascia("righe 3 (elenchi di poligonali)", "ripetono ciò che è misurato altrove",
                           riga.Linea);
      case '4':
      case '5':
        return L.Tralascia("righe 4 e 5 (allineamenti e squadri, o livellazione)",
                           "la rete non ha misure di questo genere", riga.Linea);
      case '6': return Commento(riga);
      case '7': return L.Tralascia("righe 7 (contorni)", "non sono misure", riga.Linea);
      case '8': return Approssimate(riga);
      default: return Precisioni(riga);
    }
  }

  Posizione Dove(const RigaLibretto& riga, std::size_t i) const {
    if (i >= riga.Campi.size()) return {File, riga.Linea, 1};
    const CampoLibretto& campo = riga.Campi[i];
    const std::string_view prima =
        Testo.substr(campo.InizioLinea, campo.Inizio - campo.InizioLinea);
    return {File, campo.Linea, 1 + ContaCaratteri(prima)};
  }

  void Errore(const RigaLibretto& riga, std::size_t campo, Guasto guasto) {
    Diario.Errore(Dove(riga, campo), std::move(guasto));
  }

  // Nothing if the field is blank, or wrong, which is then reported.
  std::optional<double> Numero(const RigaLibretto& riga, std::size_t i, const std::string& record,
                               const RegolaNumero& regola) {
    const std::string_view campo = Campo(riga, i);
    if (campo.empty()) return std::nullopt;
    const NumeroLetto letto = LeggiNumero(campo);
    if (letto.Esito == EsitoNumero::Valido && Ammesso(regola, letto.Valore)) return letto.Valore;
    Errore(riga, i, GuastoCampo(record, regola, campo, letto, kServeIlPunto));
    return std::nullopt;
  }

  // Without its "|" a row that ends with a number may have lost digits to the next line.
  bool Troncata(const RigaLibretto& riga, const std::string& record) {
    if (riga.Chiusa || riga.Campi.size() < 2 || !SembraNumero(riga.Campi.back().Valore))
      return false;
    Errore(riga, riga.Campi.size() - 1,
           {.Record = record,
            .Problema = "la riga non finisce con |: l'ultimo numero può essere spezzato",
            .Trovato = Cita(riga.Campi.back().Valore),
            .Suggerimento = "completare il numero e chiudere la riga con |"});
    return true;
  }

  // The note is not carried; behind it stands a page number pasted with the rows, or a row that
  // lost its start.
  void DopoLaNota(const RigaLibretto& riga, std::size_t campi, const std::string& record) {
    ContaNota(riga, campi - 1);
    if (riga.Campi.size() <= campi) return;
    Guasto guasto{
        .Record = record,
        .Problema = "testo dopo la nota",
        .Trovato = Cita(Campo(riga, campi)),
        .Suggerimento = "se è un'altra riga, deve cominciare a capo con il suo numero e |"};
    if (riga.Campi.size() > campi + 1) return Errore(riga, campi, std::move(guasto));
    Diario.Avviso(Dove(riga, campi), std::move(guasto));
  }

  void Intestazione(const RigaLibretto& riga, bool prima) {
    if (!prima) {
      return Errore(riga, 0,
                    {.Record = "riga 0",
                     .Problema = "la riga 0 sta una volta sola, in cima al libretto",
                     .Suggerimento = "forse è il seguito della riga di sopra"});
    }
    const std::string_view comune = Campo(riga, 2);
    if (L.DatiProgetto.Nome.empty() && !comune.empty()) {
      L.DatiProgetto.Nome = "Comune " + std::string(comune);
      if (!Campo(riga, 3).empty()) L.DatiProgetto.Nome += ", foglio " + std::string(Campo(riga, 3));
      if (!Campo(riga, 4).empty())
        L.DatiProgetto.Nome += ", particelle " + std::string(Campo(riga, 4));
    }
    Trascrivi("Riga 0 del libretto (data, protocollo, comune, foglio, particelle, tecnico):", riga);
  }

  void Precisioni(const RigaLibretto& riga) {
    Trascrivi("Riga 9 del libretto (le precisioni non diventano s.q.m.):", riga);
  }

  void Trascrivi(std::string nota, const RigaLibretto& riga) {
    for (const CampoLibretto& campo : riga.Campi) nota += " " + campo.Valore + " |";
    L.Note.push_back(std::move(nota));
  }

  void ContaNota(const RigaLibretto& riga, std::size_t campo) {
    if (!Campo(riga, campo).empty())
      L.Tralascia("note di stazioni, battute e coordinate", "la rete non le porta", riga.Linea);
  }

  void Commento(const RigaLibretto& riga) {
    std::string nota;
    for (const CampoLibretto& campo : riga.Campi) {
      if (campo.Valore.empty()) continue;
      if (!nota.empty()) nota += " | ";
      nota += campo.Valore;
    }
    if (!nota.empty()) L.Note.push_back(std::move(nota));
  }

  void Stazione(const RigaLibretto& riga) {
    const std::string nome(Campo(riga, 0));
    Aperta = Base::Nessuna;
    if (Terna(nome) || Terna(Campo(riga, 1))) {
      Aperta = Base::Gnss;
      return L.Tralascia("basi GNSS (righe 1)", "la rete ha solo misure di stazione totale",
                         riga.Linea);
    }
    const std::string record = NomeStazione(nome);
    if (nome.empty()) {
      Aperta = Base::Sbagliata;
      return Errore(riga, 0, {.Record = "stazione", .Problema = "il nome è vuoto"});
    }
    Troncata(riga, record);
    DopoLaNota(riga, kCampiStazione, record);
    PostazioneLibretto postazione;
    postazione.Punto = nome;
    postazione.Altezza = Numero(riga, 1, record, kAltezza);
    postazione.Dove = {File, riga.Linea, 1};
    L.Postazioni.push_back(std::move(postazione));
    Aperta = Base::Stazione;
  }

  void Osservazione(const RigaLibretto& riga) {
    const std::string nome(Campo(riga, 0));
    if (Terna(nome) || Terna(Campo(riga, 1))) {
      return L.Tralascia("vettori GNSS (righe 2)", "la rete ha solo misure di stazione totale",
                         riga.Linea);
    }
    if (Aperta == Base::Sbagliata) return;
    if (Aperta != Base::Stazione) {
      return Errore(riga, 0,
                    {.Record = "osservazione verso " + Cita(nome),
                     .Problema = Aperta == Base::Gnss ? "la riga 1 che precede è una base GNSS"
                                                      : "manca la stazione",
                     .Voluto = "prima una riga 1 con la stazione"});
    }
    PostazioneLibretto& postazione = L.Postazioni.back();
    const std::string record = NomeOsservazione(postazione.Punto, nome);
    if (nome.empty()) return Errore(riga, 0, {.Record = record, .Problema = "il nome è vuoto"});
    if (nome == postazione.Punto) {
      return Errore(riga, 0,
                    {.Record = record, .Problema = "il punto osservato è la stazione stessa"});
    }
    const std::size_t numeri = ContaNumeri(riga, record);
    if (numeri == 0 || Troncata(riga, record)) return;
    DopoLaNota(riga, numeri + 2, record);
    BattutaLibretto battuta;
    battuta.Punto = nome;
    battuta.Dove = {File, riga.Linea, 1};
    battuta.Direzione = Numero(riga, 1, record, kDirezione);
    if (numeri == kLunga) {
      battuta.Zenit = Numero(riga, 2, record, kZenit);
      battuta.Distanza = Numero(riga, 3, record, kDistanzaLetta);
      battuta.Segnale = Numero(riga, 4, record, kSegnale);
    } else {
      battuta.Distanza = Numero(riga, 2, record, kDistanzaLetta);
      battuta.TipoDist = kOrizzontale;
    }
    if (battuta.Distanza == 0.0) battuta.Distanza.reset();
    postazione.Battute.push_back(std::move(battuta));
  }

  // kLunga or kCorta, 0 and a message if the fields after the name may be neither. A blank among
  // numbers is a missing one; blanks after them are the note only where that changes nothing.
  std::size_t ContaNumeri(const RigaLibretto& riga, const std::string& record) {
    std::size_t fine = 1;    // behind the last field, from the name on, that is blank or a number
    std::size_t numeri = 0;  // fields up to the last number
    for (; fine < riga.Campi.size() && fine <= kLunga; ++fine) {
      if (Campo(riga, fine).empty()) continue;
      if (!SembraNumero(Campo(riga, fine))) break;
      numeri = fine;
    }
    const std::size_t vuoti = fine - 1 - numeri;
    const bool nota = fine < riga.Campi.size();
    if (numeri == kLunga) return kLunga;
    if (numeri == kCorta && (vuoti == 0 || (vuoti == 1 && !nota))) return kCorta;
    if (numeri == 1 && vuoti > 0) return kCorta;  // a direction alone, however the row goes on
    const std::size_t dove = nota && vuoti == 0 ? fine : 1;
    Errore(riga, dove,
           {.Record = record,
            .Problema =
                numeri == 0 ? "dopo il nome mancano i numeri" : "riga ambigua: numeri dopo il nome",
            .Trovato = numeri == 0 ? (Campo(riga, dove).empty() ? "" : Cita(Campo(riga, dove)))
                                   : std::to_string(numeri) + (vuoti > 0 ? " e campi vuoti" : ""),
            .Voluto = "4 (direzione, zenit, distanza inclinata, segnale) o 2 (direzione, distanza "
                      "ridotta)",
            .Suggerimento = numeri == 0 ? ""
                                        : "una distanza che manca si scrive 0, l'altezza del "
                                          "segnale ci vuole"});
    return 0;
  }

  void Approssimate(const RigaLibretto& riga) {
    if (!Opzioni.AssiXY) {
      return L.Tralascia("righe 8 (coordinate approssimate)",
                         "con --assi si dice quale tra X e Y è Nord", riga.Linea);
    }
    const std::string nome(Campo(riga, 0));
    const std::string record = NomePunto(nome);
    if (nome.empty()) return Errore(riga, 0, {.Record = "punto", .Problema = "il nome è vuoto"});
    for (const std::size_t i : {1, 2}) {
      if (Campo(riga, i).empty())
        return Errore(
            riga, i,
            {.Record = record, .Campo = i == 1 ? "X" : "Y", .Problema = "manca la coordinata"});
    }
    if (riga.Campi.size() == 3 && Troncata(riga, record)) return;
    const auto x = Numero(riga, 1, record, Rinominata(kNord, "X"));
    const auto y = Numero(riga, 2, record, Rinominata(kEst, "Y"));
    if (!x || !y) return;
    if (*x == 0.0 && *y == 0.0) {
      return L.Tralascia("righe 8 con coordinate 0, 0", "lo zero sta per una coordinata ignota",
                         riga.Linea);
    }
    constexpr std::size_t kNotaApprossimate = 4;
    ContaNota(riga, kNotaApprossimate);
    const bool xEst = *Opzioni.AssiXY == Assi::EstNord;
    PuntoLibretto punto;
    punto.Nome = nome;
    punto.Est = xEst ? x : y;
    punto.Nord = xEst ? y : x;
    punto.Dove = {File, riga.Linea, 1};
    const auto [voce, nuovo] = Posti.try_emplace(nome, L.Punti.size());
    if (nuovo) {
      L.Punti.push_back(std::move(punto));
      return;
    }
    const PuntoLibretto& primo = L.Punti[voce->second];
    if (primo.Est == punto.Est && primo.Nord == punto.Nord) return;
    Errore(
        riga, 0,
        {.Record = record,
         .Problema = "coordinate diverse da quelle alla riga " + std::to_string(primo.Dove.Riga)});
  }

  enum class Base { Nessuna, Stazione, Gnss, Sbagliata };

  std::string_view Testo;
  std::string_view File;
  const OpzioniLettura& Opzioni;
  Libretto& L;
  Diagnostica& Diario;
  RigaLibretto Riga;  // being put together; no kind = none
  std::size_t InizioLinea = 0;
  int Linea = 0;
  bool Prima = true;  // the next row is the first
  bool Finito = false;
  bool DettoDopo = false;
  Base Aperta = Base::Nessuna;                         // what the last row 1 was
  std::unordered_map<std::string, std::size_t> Posti;  // of the points with coordinates
};

bool Riconosce(std::string_view testo) {
  const std::string_view inizio = SenzaBianchi(testo, kBianchiEFini);
  return IniziaRiga(inizio) && std::string_view("0129").find(inizio[0]) != std::string_view::npos;
}

void Leggi(std::string_view testo, std::string_view file, const OpzioniLettura& opzioni,
           Libretto& libretto, Diagnostica& diagnostica) {
  LettoreLibretto(testo, file, opzioni, libretto, diagnostica).Leggi();
}

}  // namespace

const Lettore kLettoreCatasto = {"libretto", "libretto delle misure catastale (righe 0-9)",
                                 kOpzioneAssi, Riconosce, Leggi};

}  // namespace compensa

// Words of a GSI line.
//   characters 1-2 (3)  word index            7           sign
//              6        unit                  8-15 (-23)  data, digits without a point
// A length in unit u is data * kLunghezze[u]; an angle in gon or decimal degrees has 5 decimals, one
// in mil 4, a sexagesimal one is dddmmss and one decimal of the second.

#include "host/importazione/gsi/gsi_parole.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/base/codifica.h"
#include "host/base/numeri.h"
#include "host/base/unita.h"
#include "host/importazione/angoli.h"
#include "host/importazione/raccolta.h"

namespace compensa {

namespace {

constexpr int kTesta = 7;       // characters before the data
constexpr int kPostoUnita = 5;  // from 0
constexpr int kPostoSegno = 6;
constexpr int kDati8 = 8;
constexpr int kDati16 = 16;
constexpr double kScalaGon = 1.0e5;  // also of decimal degrees
constexpr double kScalaMil = 1.0e4;
constexpr int kDecimaliSecondo = 1;

struct UnitaLunghezza {
  char Codice;
  double Unita;  // [m]
  double Divisore;
};
constexpr std::array<UnitaLunghezza, 5> kLunghezze{{
    {'0', 1.0, 1.0e3},
    {'1', kPiede, 1.0e3},
    {'6', 1.0, 1.0e4},
    {'7', kPiede, 1.0e4},
    {'8', 1.0, 1.0e5},
}};

struct NomeIndice {
  std::string_view Indice, Nome;
};
constexpr std::array<NomeIndice, 16> kNomi{{
    {"11", "nome del punto"},
    {"16", "nome della stazione"},
    {"21", "direzione"},
    {"22", "angolo zenitale"},
    {"31", "distanza inclinata"},
    {"32", "distanza orizzontale"},
    {"42", "numero della stazione"},
    {"43", "altezza strumentale"},
    {"81", "est del punto"},
    {"82", "nord del punto"},
    {"83", "quota del punto"},
    {"84", "est della stazione"},
    {"85", "nord della stazione"},
    {"86", "quota della stazione"},
    {"87", "altezza del prisma"},
    {"88", "altezza strumentale"},
}};

constexpr bool Cifra(char c) { return c >= '0' && c <= '9'; }
constexpr bool CifraOPunto(char c) { return Cifra(c) || c == '.'; }

bool TestaValida(std::string_view testa) {
  return testa.size() == kTesta && Cifra(testa[0]) && Cifra(testa[1]) &&
         std::all_of(testa.begin() + 2, testa.begin() + kPostoSegno, CifraOPunto) &&
         (testa[kPostoSegno] == '+' || testa[kPostoSegno] == '-');
}

// The third character of a name or of a code counts blocks, it is no part of the index.
std::string_view IndiceDi(std::string_view testa) {
  const bool blocco = testa.starts_with("11") || testa.starts_with('4');
  return testa.substr(0, !blocco && Cifra(testa[2]) ? 3 : 2);
}

std::string ConSegno(const ParolaGsi& parola) {
  return Cita(std::string(1, parola.Segno) + std::string(parola.Dati));
}

ValoreGsi Difetto(const ParolaGsi& parola, int posto, std::string problema, std::string trovato,
                  std::string voluto) {
  Guasto cosa{.Campo = CampoGsi(parola.Indice),
              .Problema = std::move(problema),
              .Trovato = std::move(trovato),
              .Voluto = std::move(voluto)};
  return {.Valore = std::nullopt,
          .Difetto = GuastoGsi{.Cosa = std::move(cosa), .Colonna = parola.Colonna + posto}};
}

ValoreGsi SenzaUnita(const ParolaGsi& parola, std::string voluto) {
  return Difetto(parola, kPostoUnita, "unità di misura sconosciuta",
                 Cita(std::string_view(&parola.Unita, 1)), std::move(voluto));
}

// The digits of the data without blanks before them, as they stand and as a whole number.
struct CifreLette {
  std::string_view Testo;
  double Intero = 0.0;
  std::optional<ValoreGsi> Esito;  // what there is to say if they are blank or wrong
};

CifreLette Cifre(const ParolaGsi& parola) {
  CifreLette lette;
  lette.Testo = SenzaBianchi(parola.Dati);
  if (lette.Testo.empty()) {
    lette.Esito = ValoreGsi{};
    return lette;
  }
  const bool allineate = parola.Dati.ends_with(lette.Testo);
  if (!allineate || !std::all_of(lette.Testo.begin(), lette.Testo.end(), Cifra)) {
    lette.Esito = Difetto(parola, kTesta, "dati non numerici", Cita(parola.Dati),
                          std::to_string(ContaCaratteri(parola.Dati)) + " cifre");
    return lette;
  }
  lette.Intero = LeggiNumero(lette.Testo).Valore;
  return lette;
}

ValoreGsi Valore(const ParolaGsi& parola, double valore) {
  return {.Valore = parola.Segno == '-' ? -valore : valore, .Difetto = std::nullopt};
}

}  // namespace

void TaglioGsi::Salta(std::size_t byte) {
  Colonna += ContaCaratteri(Resto.substr(0, byte));
  Resto.remove_prefix(byte);
}

GuastoGsi TaglioGsi::Sbagliata(std::string problema, std::string voluto) {
  const std::size_t fine = std::min(Resto.find(' '), Resto.size());
  GuastoGsi guasto{.Cosa = {.Problema = std::move(problema),
                            .Trovato = Cita(Resto.substr(0, fine)),
                            .Voluto = std::move(voluto)},
                   .Colonna = Colonna};
  Salta(fine);
  return guasto;
}

bool TaglioGsi::Prossima(ParolaGsi& parola, std::optional<GuastoGsi>& guasto) {
  guasto.reset();
  Salta(std::min(Resto.find_first_not_of(' '), Resto.size()));
  if (Resto.empty()) return false;
  if (Resto.front() == '*') {
    CifreDati = kDati16;
    Salta(1);
  }
  const std::string_view testa = Resto.substr(0, ByteDiCaratteri(Resto, kTesta));
  if (!TestaValida(testa)) {
    guasto = Sbagliata("parola non riconosciuta", "due cifre, l'unità al sesto posto e il segno");
    return true;
  }
  const std::string_view dati =
      Resto.substr(kTesta, ByteDiCaratteri(Resto.substr(kTesta), CifreDati));
  const std::string_view dopo = Resto.substr(kTesta + dati.size());
  const std::string voluto = "una parola di " + std::to_string(kTesta + CifreDati) + " caratteri";
  if (ContaCaratteri(dati) < CifreDati) {
    guasto = Sbagliata("parola incompleta", voluto);
    return true;
  }
  if (!dopo.empty() && dopo.front() != ' ') {
    guasto = Sbagliata("parola troppo lunga", voluto + " e uno spazio");
    if (CifreDati == kDati8)
      guasto->Cosa.Suggerimento = "le righe GSI-16 cominciano con un asterisco";
    return true;
  }
  parola = {.Indice = IndiceDi(testa),
            .Unita = testa[kPostoUnita],
            .Segno = testa[kPostoSegno],
            .Dati = dati,
            .Colonna = Colonna};
  Salta(kTesta + dati.size());
  return true;
}

bool ApreBloccoGsi(std::string_view testo) {
  testo = testo.substr(0, kTesta);
  return TestaValida(testo) && (testo.starts_with("11") || testo.starts_with("41"));
}

std::string NomeGsi(const ParolaGsi& parola) {
  if (SenzaBianchi(parola.Dati).empty()) return {};
  const std::size_t primo = parola.Dati.find_first_not_of('0');
  if (primo == std::string_view::npos) return "0";
  const std::string_view nome = SenzaBianchi(parola.Dati.substr(primo));
  return nome.empty() ? "0" : std::string(nome);
}

std::string CampoGsi(std::string_view indice) {
  std::string campo = "WI " + std::string(indice);
  for (const NomeIndice& noto : kNomi) {
    if (noto.Indice == indice) campo += " (" + std::string(noto.Nome) + ")";
  }
  return campo;
}

ValoreGsi LunghezzaGsi(const ParolaGsi& parola) {
  const auto unita = std::find_if(kLunghezze.begin(), kLunghezze.end(),
                                  [&](const auto& u) { return u.Codice == parola.Unita; });
  const CifreLette cifre = Cifre(parola);
  if (cifre.Esito) return *cifre.Esito;
  if (unita == kLunghezze.end()) return SenzaUnita(parola, "0, 6, 8 (metri) oppure 1, 7 (piedi)");
  return Valore(parola, cifre.Intero * unita->Unita / unita->Divisore);
}

ValoreGsi AngoloGsi(const ParolaGsi& parola) {
  const CifreLette cifre = Cifre(parola);
  if (cifre.Esito) return *cifre.Esito;
  switch (parola.Unita) {
    case '2': return Valore(parola, cifre.Intero / kScalaGon);
    case '3': return Valore(parola, GonDaGradi(cifre.Intero / kScalaGon));
    case '5': return Valore(parola, cifre.Intero / kScalaMil * kGonPerMil);
    case '4': break;
    default: return SenzaUnita(parola, "2 (gon), 3 o 4 (gradi) oppure 5 (mil)");
  }
  const std::optional<double> gon = GonDaCifreCompatte(cifre.Testo, kDecimaliSecondo);
  if (gon) return Valore(parola, *gon);
  return Difetto(parola, kTesta, "angolo sessagesimale sbagliato", ConSegno(parola),
                 "gradi, primi e secondi con una decimale, primi e secondi minori di 60");
}

ValoreGsi MillimetriGsi(const ParolaGsi& parola) {
  const CifreLette cifre = Cifre(parola);
  if (cifre.Esito) return *cifre.Esito;
  return Valore(parola, cifre.Intero / kMmPerMetro);
}

}  // namespace compensa

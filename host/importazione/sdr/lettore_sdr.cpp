// Books of total stations in SDR33 and in SDR20 to SDR2x: records of fixed columns.
//   00  units and order of the coordinates      08  coordinates of a point
//   01  instrument, zero of vertical angles     09  shot: slope distance, vertical angle, direction
//   02  set-up                                  03  target height, for all shots until the next one
// Characters 3-4 of a shot say where it comes from: F1, F2 = one face as read; MC, MD = mean or
// corrected values, which count only where the set-up has no face of that target as read.
// A vertical angle v from the horizon is the zenith angle 100 gon - v.

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/base/codifica.h"
#include "host/importazione/angoli.h"
#include "host/importazione/lettore.h"
#include "host/importazione/raccolta.h"
#include "host/importazione/sdr/sdr_riga.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

constexpr std::string_view kInizioFile = "00NMSDR";

// Where the values of a shot come from; of one target the lowest counts.
enum Rango { kFacceLette, kMedieCorrette, kMedieDirezioni, kIgnoto };

Rango RangoDi(std::string_view provenienza) {
  if (provenienza == "F1" || provenienza == "F2") return kFacceLette;
  if (provenienza == "MC") return kMedieCorrette;
  return provenienza == "MD" ? kMedieDirezioni : kIgnoto;
}

class LetturaSdr {
 public:
  LetturaSdr(std::string_view file, Libretto& libretto, Diagnostica& diagnostica)
      : Libro(libretto),
        Diario(diagnostica),
        Dati(file, libretto, diagnostica),
        Riga(file, diagnostica) {}

  void Leggi(std::string_view testo) {
    Righe righe(testo);
    RigaTesto riga;
    while (righe.Prossima(riga)) {
      Riga.Vai(riga);
      if (!LeggiRiga()) break;
    }
    ChiudiPostazione();
  }

 private:
  // False if nothing after this line can be understood.
  bool LeggiRiga() {
    const std::string tipo = Riga.Testo(kTipo);
    const std::size_t tabulazione = Riga.Intera().find('\t');
    if (tabulazione != std::string_view::npos) {
      const int colonna = 1 + ContaCaratteri(Riga.Intera().substr(0, tabulazione));
      Riga.Errore({colonna, colonna}, "tabulazione in una riga a colonne fisse", "spazi");
      return true;
    }
    if (tipo == "00") return Intestazione();
    if (Campi == nullptr) {
      Riga.Errore(kTipo, "manca l'intestazione",
                  "una prima riga che comincia con " + Cita(kInizioFile));
      return false;
    }
    if (tipo == "01") {
      Strumento();
    } else if (tipo == "02") {
      Stazione();
    } else if (tipo == "03") {
      AltezzaPrisma();
    } else if (tipo == "08") {
      Coordinate();
    } else if (tipo == "09") {
      Osservazione();
    } else {
      Conta(tipo);
    }
    return true;
  }

  bool Intestazione() {
    ChiudiPostazione();
    const std::string versione = Riga.Testo(kVersione);
    Campi = versione.starts_with("SDR33")  ? &kSdr33
            : versione.starts_with("SDR2") ? &kSdr20
                                           : nullptr;
    if (Campi == nullptr)
      Riga.Errore(kVersione, "versione sconosciuta", "SDR33 oppure SDR20 e seguenti");
    const auto angoli = Riga.Codice(kUnitaAngoli, "1234", "1 (gradi), 2 (gon) o 4 (mil)");
    const auto distanze = Riga.Codice(kUnitaDistanze, "12", "1 (metri) o 2 (piedi)");
    const auto ordine = Riga.Codice(kOrdine, "12", "1 (nord, est, quota) o 2 (est, nord, quota)");
    if (Campi == nullptr || !angoli || !distanze || !ordine) {
      Campi = nullptr;
      return false;
    }
    if (angoli == 3) {
      Riga.AvvisaUnaVolta("mil", kUnitaAngoli, "unità 3 letta come mil",
                          "di solito i mil hanno il codice 4: controllare gli angoli");
    }
    GonPerUnita = angoli == 1 ? kGonPerGrado : angoli == 2 ? 1.0 : kGonPerMil;
    Riga.MetriPerUnita = distanze == 2 ? kPiede : 1.0;
    EstPrima = ordine == 2;
    DallOrizzonte = false;
    Segnale.reset();
    InPostazione = false;
    return true;
  }

  void Strumento() {
    if (Riga.Testo(kZeroVerticale).empty()) return;
    const auto zero = Riga.Codice(kZeroVerticale, "12", "1 (zenit) o 2 (orizzonte)");
    DallOrizzonte = zero == 2;
  }

  void Stazione() {
    ChiudiPostazione();
    InPostazione = false;
    const std::string nome = Riga.Nome(Campi->Punto);
    const std::optional<double> altezza = Riga.Metri(Campi->Altezza);
    const Terna terna = LeggiTerna();
    ContaCodice(Campi->DescrizioneStazione);
    if (nome.empty()) return;
    Dati.Apri(nome, altezza, Riga.Dove(kTipo));
    Dati.Coordinate(nome, terna, Riga.Dove(kTipo), true);
    InPostazione = true;
  }

  void AltezzaPrisma() {
    Segnale = Riga.Metri(Campi->Segnale);
    if (Campi != &kSdr20) return;
    Riga.AvvisaUnaVolta("segnale", Campi->Segnale,
                        "altezza del prisma letta nelle colonne da 5 a 14",
                        "per i file SDR20 il posto non è certo: controllarla");
    const Colonne dopo{Campi->Segnale.A + 1, static_cast<int>(Riga.Intera().size()),
                       "altezza del prisma"};
    if (!Riga.Testo(dopo).empty())
      Riga.Errore(dopo, "testo oltre il campo", "solo spazi dalla colonna 15");
  }

  void Coordinate() {
    const std::string nome = Riga.Nome(Campi->Punto);
    const Terna terna = LeggiTerna();
    ContaCodice(Campi->DescrizionePunto);
    if (!nome.empty()) Dati.Coordinate(nome, terna, Riga.Dove(kTipo), false);
  }

  void Osservazione() {
    const std::string provenienza = Riga.Testo(kProvenienza);
    const Rango rango = RangoDi(provenienza);
    if (rango == kIgnoto) {
      Riga.AvvisaUnaVolta("provenienza", kProvenienza,
                          "osservazioni di provenienza " + Cita(provenienza) + " non importate",
                          "si leggono quelle F1, F2, MC e MD");
      Libro.Tralascia("osservazioni 09", "la provenienza non è F1, F2, MC o MD", Riga.Numero());
      return;
    }
    if (!DellaPostazione()) return;
    BattutaLibretto battuta;
    battuta.Dove = Riga.Dove(kTipo);
    battuta.Punto = Riga.Nome(Campi->Mira);
    battuta.Distanza = Distanza();
    battuta.Zenit = Zenit();
    battuta.Direzione = Direzione();
    battuta.Segnale = Segnale;
    ContaCodice(Campi->Codice);
    if (battuta.Punto.empty()) return;
    if (!battuta.Distanza && !battuta.Zenit && !battuta.Direzione) {
      Libro.Tralascia("osservazioni senza misure", "distanza, angolo verticale e direzione mancano",
                      Riga.Numero());
      return;
    }
    if (rango == kFacceLette) battuta.Lato = Lato(provenienza, battuta.Zenit);
    Battute.push_back({std::move(battuta), rango});
  }

  // Whether the shot is from the set-up that the book is at.
  bool DellaPostazione() {
    if (!InPostazione) {
      Riga.Errore(Campi->Punto, "osservazione senza stazione", "prima una riga 02");
      return false;
    }
    const std::string stazione = Riga.Testo(Campi->Punto);
    const std::string& corrente = Dati.Corrente()->Punto;
    if (stazione.empty() || stazione == corrente) return true;
    Riga.Errore(Campi->Punto, "la stazione non è quella dell'ultima riga 02", Cita(corrente));
    return false;
  }

  // What the record says, unless the zenith angle belies it: past the zenith the telescope is turned.
  Faccia Lato(std::string_view provenienza, const std::optional<double>& zenit) {
    const bool seconda = provenienza == "F2";
    if (zenit && seconda && *zenit < kMezzoGiroGon) {
      Riga.Errore(Campi->Verticale, "faccia II con un angolo zenitale minore di mezzo giro",
                  "una lettura non ridotta alla faccia I");
    } else if (zenit && !seconda && *zenit > kMezzoGiroGon) {
      Riga.AvvisaUnaVolta(
          "faccia", Campi->Verticale,
          "riga F1 con un angolo zenitale maggiore di mezzo giro: vale come faccia II",
          "e così le altre righe come questa");
      return Faccia::Seconda;
    }
    return seconda ? Faccia::Seconda : Faccia::Prima;
  }

  std::optional<double> Direzione() {
    std::optional<double> gon = Riga.Numero(Campi->Direzione);
    if (gon) *gon *= GonPerUnita;
    if (!gon || Ammesso(kDirezione, *gon)) return gon;
    Riga.Errore(Campi->Direzione, "angolo fuori dal giro", "una direzione tra 0 e 400 gon");
    return std::nullopt;
  }

  std::optional<double> Zenit() {
    std::optional<double> gon = Riga.Numero(Campi->Verticale);
    if (!gon) return gon;
    *gon *= GonPerUnita;
    const double minimo = DallOrizzonte ? -kGiroGon : 0.0;
    if (*gon < minimo || *gon > kGiroGon) {
      Riga.Errore(Campi->Verticale, "angolo fuori dal giro", "un angolo di un giro al più");
      return std::nullopt;
    }
    if (!DallOrizzonte) return gon;
    const double zenit = std::fmod(kOrizzonte - *gon + kGiroGon, kGiroGon);
    return zenit;
  }

  std::optional<double> Distanza() {
    const std::optional<double> metri = Riga.Metri(Campi->Distanza);
    if (!metri || *metri == 0.0) return std::nullopt;
    if (*metri > 0.0) return metri;
    Riga.Errore(Campi->Distanza, "distanza negativa", "una distanza positiva");
    return std::nullopt;
  }

  Terna LeggiTerna() {
    Terna terna;
    for (std::size_t i = 0; i < terna.size(); ++i) terna[i] = Riga.Metri(Campi->Coordinate[i]);
    if (!EstPrima) std::swap(terna[0], terna[1]);
    return terna;
  }

  // Hands the shots over, but for those that another of the same target stands for already.
  void ChiudiPostazione() {
    std::unordered_map<std::string_view, Rango> migliori;
    for (const Battuta& b : Battute) {
      Rango& migliore = migliori.try_emplace(b.Dati.Punto, b.Da).first->second;
      migliore = std::min(migliore, b.Da);
    }
    std::vector<BattutaLibretto> buone;
    for (const Battuta& b : Battute) {
      if (b.Da > migliori.at(b.Dati.Punto)) {
        Libro.Tralascia("osservazioni medie o corrette (09MC, 09MD)",
                        "la postazione ha già le letture dello stesso punto", b.Dati.Dove.Riga);
        continue;
      }
      if (b.Da != kFacceLette && !AvvisateMedie) {
        AvvisateMedie = true;
        Diario.Avviso(
            b.Dati.Dove,
            {.Record = NomeOsservazione(Dati.Corrente()->Punto, b.Dati.Punto),
             .Problema = "osservazione media o corretta, senza le letture delle facce",
             .Suggerimento = "controllare che distanze e angoli non siano già ridotti per "
                             "le altezze dello strumento e del prisma"});
      }
      buone.push_back(b.Dati);
    }
    if (!buone.empty()) Dati.Corrente()->Battute = std::move(buone);
    Battute.clear();
  }

  void Conta(std::string_view tipo) {
    struct Altro {
      std::string_view Tipo, Genere, Motivo;
    };
    constexpr std::array<Altro, 4> kAltri{{
        {"06", "fattori di scala (06)", "le riduzioni si fanno nel calcolo"},
        {"07", "orientamenti (07)", "l'orientamento delle stazioni è un'incognita"},
        {"11", "righe ridotte (11)", "calcolate dalle osservazioni"},
        {"12", "strati (12)", "le letture stanno nelle righe 09"},
    }};
    if (tipo == "10" || tipo == "13") {
      const std::string nota =
          Riga.Testo({kProvenienza.A + 1, static_cast<int>(Riga.Intera().size())});
      if (!nota.empty()) Libro.Note.push_back(tipo == "10" ? "lavoro " + nota : nota);
      return;
    }
    const auto* const altro =
        std::find_if(kAltri.begin(), kAltri.end(), [&](const Altro& a) { return a.Tipo == tipo; });
    const bool cifre =
        tipo.size() == 2 && tipo.find_first_not_of("0123456789") == std::string_view::npos;
    if (altro != kAltri.end()) {
      Libro.Tralascia(std::string(altro->Genere), std::string(altro->Motivo), Riga.Numero());
    } else if (cifre) {
      Libro.Tralascia("righe di tipo " + std::string(tipo), "non servono alla compensazione",
                      Riga.Numero());
    } else {
      Riga.Errore(kTipo, "riga non riconosciuta", "due cifre per il tipo di riga");
    }
  }

  void ContaCodice(const Colonne& campo) {
    if (Riga.Testo(campo).empty()) return;
    Libro.Tralascia("codici e descrizioni dei punti", "la rete non li porta", Riga.Numero());
  }

  Libretto& Libro;
  Diagnostica& Diario;
  Raccolta Dati;
  RigaSdr Riga;

  const Tracciato* Campi = nullptr;  // null until the header is read
  double GonPerUnita = 1.0;
  bool EstPrima = false;
  bool DallOrizzonte = false;
  std::optional<double> Segnale;

  struct Battuta {
    BattutaLibretto Dati;
    Rango Da;
  };
  std::vector<Battuta> Battute;  // of the current set-up
  bool InPostazione = false;     // a set-up was read since the header
  bool AvvisateMedie = false;
};

bool Riconosce(std::string_view testo) {
  Righe righe(testo);
  RigaTesto riga;
  return righe.Prossima(riga) && riga.Testo.starts_with(kInizioFile);
}

void Leggi(std::string_view testo, std::string_view file, const OpzioniLettura& /*opzioni*/,
           Libretto& libretto, Diagnostica& diagnostica) {
  LetturaSdr(file, libretto, diagnostica).Leggi(testo);
}

}  // namespace

const Lettore kLettoreSdr = {"sdr", "SDR33 e SDR20", 0, Riconosce, Leggi};

}  // namespace compensa

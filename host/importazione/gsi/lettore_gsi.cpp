// Books of total stations in GSI-8 and GSI-16.
//
// A block is a run of words from one WI 11 or 41 to the next, on one line. What it is follows from
// the words that it has:
//   WI 41 and the code that the options name   set-up: station in WI 42, instrument height in WI 43
//   WI 330 to 336                              levelling
//   a direction, zenith angle or distance      shot; WI 16, 84-86 and 88 on it tell of its station
//   WI 84, 85, 86 or 88                        set-up, at the point of WI 11
//   anything else                              coordinates or the target height alone, or nothing

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "host/base/numeri.h"
#include "host/importazione/gsi/gsi_blocco.h"
#include "host/importazione/lettore.h"
#include "host/importazione/raccolta.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

constexpr std::array<std::string_view, 3> kCostanti = {"51", "58", "59"};
constexpr std::array<std::string_view, 14> kUsate = {
    kNome,      kNomeStazione, kWiDirezione, kWiZenit, kInclinate, kOrizzontali, kWiSegnale,
    kWiAltezza, "81",          "82",         "83",     "84",       "85",         "86"};

// Sights nearer to the plumb line than this are few in any survey [gon].
constexpr double kPressoLaVerticale = 50.0;

template <std::size_t N>
bool UnaDi(const std::array<std::string_view, N>& indici, std::string_view indice) {
  return std::find(indici.begin(), indici.end(), indice) != indici.end();
}

bool Livellazione(std::string_view indice) {
  return indice.size() == 3 && indice.starts_with("33") && indice[2] <= '6';
}

class LetturaGsi {
 public:
  LetturaGsi(std::string_view file, const OpzioniLettura& opzioni, Libretto& libretto,
             Diagnostica& diagnostica)
      : Opzioni(opzioni),
        Libro(libretto),
        Diario(diagnostica),
        Dati(file, libretto, diagnostica),
        Blocco(file, diagnostica) {}

  void Leggi(std::string_view testo) {
    Righe righe(testo);
    RigaTesto riga;
    while (righe.Prossima(riga)) LeggiRiga(riga);
    ControllaPostazioni();
    ControllaZenit();
  }

 private:
  void LeggiRiga(const RigaTesto& riga) {
    Blocco.Svuota(riga.Numero);
    TaglioGsi taglio(riga.Testo);
    ParolaGsi parola;
    std::optional<GuastoGsi> guasto;
    while (taglio.Prossima(parola, guasto)) {
      if (guasto) {
        Blocco.Errore(*guasto);
        continue;
      }
      if (parola.Indice == kNome || parola.Indice == kCodice) ChiudiBlocco();
      Blocco.Aggiungi(parola);
    }
    ChiudiBlocco();
  }

  void ChiudiBlocco() {
    if (Blocco.Parole().empty()) return;
    const bool livellazione =
        std::any_of(Blocco.Parole().begin(), Blocco.Parole().end(),
                    [](const ParolaGsi& p) { return Livellazione(p.Indice); });
    const bool angoli = Blocco.Trova(kWiDirezione) != nullptr || Blocco.Trova(kWiZenit) != nullptr;
    if (Blocco.Parole().front().Indice == kCodice) {
      BloccoCodice();
    } else if (livellazione && !angoli) {
      Libro.Tralascia("righe di livellazione (WI 330-336)", "dislivelli geometrici", Blocco.Riga());
    } else {
      if (Blocco.HaMisure()) {
        BloccoMisura();
      } else if (Blocco.HaUnaDi(kCoordStazione) || Blocco.Trova(kWiAltezza) != nullptr) {
        BloccoStazione();
      } else {
        BloccoAltro();
      }
      ContaAltre();
    }
    Blocco.Svuota(Blocco.Riga());
  }

  // Words of a code have a meaning of their own in every office.
  void BloccoCodice() {
    for (const ParolaGsi& p : Blocco.Parole()) {
      if (p.Indice == kWiDirezione || p.Indice == kWiZenit || p.Indice == kInclinate ||
          p.Indice == kOrizzontali)
        Blocco.Errore(p, "misura in un blocco di codice", "un blocco che comincia con WI 11");
    }
    const std::string codice = NomeGsi(Blocco.Parole().front());
    if (!Opzioni.CodiceStazioneGsi) {
      if (CodiceConNome.empty() && Blocco.Trova(kCodiceStazione) != nullptr) CodiceConNome = codice;
      Libro.Tralascia("blocchi di codice (WI 41-49)",
                      "senza l'opzione del codice di stazione non hanno un significato noto",
                      Blocco.Riga());
      return;
    }
    if (LeggiIntero(codice) != Opzioni.CodiceStazioneGsi) {
      Libro.Tralascia("blocchi di codice (WI 41-49)", "il codice non è quello di stazione",
                      Blocco.Riga());
      return;
    }
    const std::string nome = Blocco.Nome(kCodiceStazione);
    if (nome.empty()) return;
    Dati.Apri(nome, Blocco.Millimetri(kCodiceAltezza), Blocco.Dove());
    CoordCorrenti = {};
    HaStazioni = true;
    for (const ParolaGsi& p : Blocco.Parole()) {
      if (p.Indice != kCodice && p.Indice != kCodiceStazione && p.Indice != kCodiceAltezza)
        Libro.Tralascia("altre parole dei blocchi di stazione",
                        "solo WI 42 e 43 hanno un significato", Blocco.Riga());
    }
  }

  void BloccoStazione() {
    const std::string nome = Blocco.Nome(Blocco.Trova(kNome) != nullptr ? kNome : kNomeStazione);
    const ParolaGsi* altro = Blocco.Trova(kNomeStazione);
    if (altro != nullptr && !nome.empty() && NomeGsi(*altro) != nome)
      Blocco.Errore(*altro, "nome diverso da quello di WI 11 sulla stessa riga di stazione",
                    Cita(nome));
    const std::optional<double> altezza = Blocco.Lunghezza(kWiAltezza);
    SegnaleSolo();
    const Terna punto = Blocco.Coordinate(kCoordPunto);
    CoordCorrenti = Blocco.Coordinate(kCoordStazione);
    if (nome.empty()) return;
    Dati.Apri(nome, altezza, Blocco.Dove());
    Dati.Coordinate(nome, CoordCorrenti, Blocco.Dove(), true);
    if (!Blocco.HaUnaDi(kCoordStazione)) Dati.Coordinate(nome, punto, Blocco.Dove(), false);
    HaStazioni = true;
  }

  void BloccoMisura() {
    BattutaLibretto battuta;
    battuta.Dove = Blocco.Dove();
    battuta.Punto = Blocco.Nome(kNome);
    battuta.Direzione = Blocco.Angolo(kWiDirezione, kDirezione);
    battuta.Zenit = Blocco.Angolo(kWiZenit, kZenit);
    battuta.Distanza = Blocco.Distanza(kInclinate);
    const std::optional<double> orizzontale = Blocco.Distanza(kOrizzontali);
    if (orizzontale && battuta.Distanza) {
      Libro.Tralascia("distanze orizzontali (WI 32)", "la battuta ha già quella inclinata",
                      Blocco.Riga());
    } else if (orizzontale) {
      battuta.Distanza = orizzontale;
      battuta.TipoDist = kOrizzontale;
    }
    battuta.Segnale = Segnale();
    if (battuta.Zenit) {
      if (DallaVerticale.empty()) PrimoZenit = Blocco.Dove(*Blocco.Trova(kWiZenit));
      const double z = std::min(*battuta.Zenit, kGiroGon - *battuta.Zenit);
      DallaVerticale.push_back(std::min(z, kGiroGon / 2.0 - z));
    }
    const Terna punto = Blocco.Coordinate(kCoordPunto);
    if (battuta.Punto.empty()) return;
    Dati.Coordinate(battuta.Punto, punto, battuta.Dove, false);
    if (PostazioneDellaMisura(battuta.Dove)) Dati.Corrente()->Battute.push_back(std::move(battuta));
  }

  // Whatever a shot itself says of its station; false if it has none.
  bool PostazioneDellaMisura(const Posizione& dove) {
    const Terna coordinate = Blocco.Coordinate(kCoordStazione);
    const std::optional<double> altezza = Blocco.Lunghezza(kWiAltezza);
    const ParolaGsi* nome = Blocco.Trova(kNomeStazione);
    if (nome != nullptr) {
      const std::string stazione = Blocco.Nome(kNomeStazione);
      if (stazione.empty()) return false;
      HaStazioni = true;
      if (Dati.Corrente() == nullptr || Dati.Corrente()->Punto != stazione) {
        Dati.Apri(stazione, altezza, dove);
        CoordCorrenti = {};
      }
    } else if (Dati.Corrente() == nullptr && Opzioni.Stazione) {
      Dati.Apri(*Opzioni.Stazione, Opzioni.AltezzaStrumento, dove);
      StazioneChiesta = true;
    }
    if (Dati.Corrente() == nullptr) {
      if (!PrimaOrfana) PrimaOrfana = dove;
      return false;
    }
    if (!Nulla(coordinate) && coordinate != CoordCorrenti) {
      if (!Nulla(CoordCorrenti)) {
        Diario.Errore(dove, {.Record = Blocco.Record(),
                             .Campo = "WI 84-86",
                             .Problema = "coordinate diverse da quelle della stazione " +
                                         Cita(Dati.Corrente()->Punto) +
                                         ": non si sa da dove è fatta la misura",
                             .Voluto = "il nome della stazione in WI 16 o su una riga propria"});
        return false;
      }
      Dati.Coordinate(Dati.Corrente()->Punto, coordinate, dove, true);
      CoordCorrenti = coordinate;
    }
    if (altezza) AltezzaDellaMisura(*altezza, dove);
    return true;
  }

  // A new instrument height means that the instrument was set up anew.
  void AltezzaDellaMisura(double altezza, const Posizione& dove) {
    PostazioneLibretto& corrente = *Dati.Corrente();
    if (corrente.Altezza == altezza) return;
    if (!corrente.Altezza) {
      corrente.Altezza = altezza;
      return;
    }
    Diario.Avviso(dove,
                  {.Record = NomeStazione(corrente.Punto),
                   .Problema = "altezza strumentale cambiata da " + NumeroBreve(*corrente.Altezza) +
                               " a " + NumeroBreve(altezza) + " m: da qui è una nuova postazione"});
    Dati.Apri(std::string(corrente.Punto), altezza, dove);
  }

  // Neither measurements nor a station: coordinates of a point, or a target height for what follows.
  void BloccoAltro() {
    const bool coordinate = Blocco.HaUnaDi(kCoordPunto);
    if (coordinate) {
      const std::string nome = Blocco.Nome(kNome);
      if (!nome.empty())
        Dati.Coordinate(nome, Blocco.Coordinate(kCoordPunto), Blocco.Dove(), false);
    }
    SegnaleSolo();
    if (Blocco.Trova(kWiSegnale) == nullptr && !coordinate)
      Libro.Tralascia("righe senza misure", "solo nomi o informazioni", Blocco.Riga());
  }

  // A target height without a shot of its own.
  void SegnaleSolo() {
    Segnale();
    if (Blocco.Trova(kWiSegnale) == nullptr || Opzioni.SegnalePersistente) return;
    Libro.Tralascia("altezze del prisma su righe senza misure (WI 87)",
                    "senza l'opzione del segnale persistente non valgono per le righe seguenti",
                    Blocco.Riga());
  }

  void ContaAltre() {
    for (const ParolaGsi& p : Blocco.Parole()) {
      if (UnaDi(kUsate, p.Indice)) continue;
      if (UnaDi(kCostanti, p.Indice)) {
        Libro.Tralascia("costanti del distanziometro (WI 51, 58, 59)",
                        "lo strumento le ha già applicate alle distanze", Blocco.Riga());
      } else if (p.Indice == kDislivello) {
        Libro.Tralascia("dislivelli (WI 33)", "calcolati dalla stessa battuta", Blocco.Riga());
      } else {
        Libro.Tralascia("parole WI " + std::string(p.Indice), "non servono alla compensazione",
                        Blocco.Riga());
      }
    }
  }

  void ControllaPostazioni() {
    if (StazioneChiesta || !Opzioni.Stazione) {
      if (!PrimaOrfana) return;
      std::string rimedio = "indicare la stazione con --stazione NOME --hs ALTEZZA";
      if (!CodiceConNome.empty())
        rimedio += "; se sono i blocchi con il codice " + CodiceConNome +
                   " ad aprire le stazioni, --gsi-codice-stazione " + CodiceConNome;
      Diario.Errore(*PrimaOrfana, {.Problema = HaStazioni ? "misure prima della prima stazione"
                                                          : "il file non ha stazioni",
                                   .Suggerimento = std::move(rimedio)});
    } else if (HaStazioni) {
      Diario.Avviso(Dati.Dove(1, 1), {.Problema = "la stazione " + Cita(*Opzioni.Stazione) +
                                                  " chiesta con --stazione non è stata usata: il "
                                                  "file ha le sue"});
    }
  }

  // An instrument that shows vertical angles from the horizon gives values near 0, 200 and 400 gon
  // where zenith angles are near 100 and 300.
  void ControllaZenit() {
    if (DallaVerticale.empty()) return;
    const auto meta =
        DallaVerticale.begin() + static_cast<std::ptrdiff_t>(DallaVerticale.size() / 2);
    std::nth_element(DallaVerticale.begin(), meta, DallaVerticale.end());
    if (*meta >= kPressoLaVerticale) return;
    Diario.Avviso(PrimoZenit,
                  {.Campo = CampoGsi(kWiZenit),
                   .Problema = "sembrano angoli verticali dall'orizzonte, non zenitali",
                   .Trovato = "una mediana a " + NumeroFisso(*meta, 1) + " gon dalla verticale"});
  }

  std::optional<double> Segnale() {
    const std::optional<double> segnale = Blocco.Lunghezza(kWiSegnale);
    if (!Opzioni.SegnalePersistente) return segnale;
    if (segnale) UltimoSegnale = segnale;
    return UltimoSegnale;
  }

  const OpzioniLettura& Opzioni;
  Libretto& Libro;
  Diagnostica& Diario;
  Raccolta Dati;

  BloccoGsi Blocco;  // the current one

  Terna CoordCorrenti;                   // of the current station, as the book gives them
  std::optional<double> UltimoSegnale;   // where target heights hold until the next
  std::optional<Posizione> PrimaOrfana;  // shot before any set-up
  std::string CodiceConNome;             // of the first block of codes that may open a set-up
  bool HaStazioni = false;               // the file itself has set-ups
  bool StazioneChiesta = false;          // the set-up of the options came into use

  std::vector<double> DallaVerticale;  // of the zenith angles read [gon]
  Posizione PrimoZenit;
};

bool Riconosce(std::string_view testo) {
  Righe righe(testo);
  RigaTesto riga;
  if (!righe.Prossima(riga)) return false;
  std::string_view inizio = SenzaBianchi(riga.Testo);
  if (inizio.starts_with('*')) inizio.remove_prefix(1);
  return ApreBloccoGsi(inizio);
}

void Leggi(std::string_view testo, std::string_view file, const OpzioniLettura& opzioni,
           Libretto& libretto, Diagnostica& diagnostica) {
  LetturaGsi(file, opzioni, libretto, diagnostica).Leggi(testo);
}

}  // namespace

const Lettore kLettoreGsi = {"gsi", "Leica GSI-8 e GSI-16",
                             kOpzioneStazione | kOpzioneCodiceGsi | kOpzioneSegnale, Riconosce,
                             Leggi};

}  // namespace compensa

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

#include "host/campi.h"
#include "host/importazione/gsi_parole.h"
#include "host/importazione/lettore.h"
#include "host/importazione/raccolta.h"
#include "host/numeri.h"

namespace {

constexpr std::string_view kNome = "11";
constexpr std::string_view kNomeStazione = "16";
constexpr std::string_view kWiDirezione = "21";
constexpr std::string_view kWiZenit = "22";
constexpr std::string_view kInclinate = "31";
constexpr std::string_view kOrizzontali = "32";
constexpr std::string_view kDislivello = "33";
constexpr std::string_view kCodice = "41";
constexpr std::string_view kCodiceStazione = "42";
constexpr std::string_view kCodiceAltezza = "43";
constexpr std::string_view kWiSegnale = "87";
constexpr std::string_view kWiAltezza = "88";
constexpr std::array<std::string_view, 3> kCoordPunto = {"81", "82", "83"};
constexpr std::array<std::string_view, 3> kCoordStazione = {"84", "85", "86"};
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
      : Opzioni(opzioni), Libro(libretto), Diario(diagnostica), Dati(file, libretto, diagnostica) {}

  void Leggi(std::string_view testo) {
    Righe righe(testo);
    RigaTesto riga;
    while (righe.Prossima(riga)) LeggiRiga(riga);
    ControllaPostazioni();
    ControllaZenit();
  }

 private:
  void LeggiRiga(const RigaTesto& riga);
  void Aggiungi(const ParolaGsi& parola);
  void ChiudiBlocco();
  void BloccoCodice();
  void BloccoStazione();
  void BloccoMisura();
  void BloccoAltro();
  void ContaAltre();
  bool PostazioneDellaMisura(const Posizione& dove);
  void AltezzaDellaMisura(double altezza, const Posizione& dove);
  void SegnaleSolo();
  void ControllaPostazioni();
  void ControllaZenit();

  const ParolaGsi* Trova(std::string_view indice) const;
  bool HaUnaDi(const std::array<std::string_view, 3>& indici) const;
  bool HaMisure();
  Posizione DoveBlocco() const { return Dati.Dove(Riga, Parole.front().Colonna); }
  std::string Record() const;
  void Errore(const GuastoGsi& guasto);
  void Errore(const ParolaGsi& parola, std::string problema, std::string voluto = {});
  std::string Nome(std::string_view indice);
  std::optional<double> Valore(std::string_view indice, ValoreGsi (*leggi)(const ParolaGsi&));
  std::optional<double> Lunghezza(std::string_view indice) { return Valore(indice, LunghezzaGsi); }
  std::optional<double> Angolo(std::string_view indice, const RegolaNumero& regola);
  std::optional<double> Distanza(std::string_view indice);
  std::optional<double> Segnale();
  Terna Coordinate(const std::array<std::string_view, 3>& indici);

  const OpzioniLettura& Opzioni;
  Libretto& Libro;
  Diagnostica& Diario;
  Raccolta Dati;

  std::vector<ParolaGsi> Parole;  // of the current block, each index once
  int Riga = 0;

  Terna CoordCorrenti;                   // of the current station, as the book gives them
  std::optional<double> UltimoSegnale;   // where target heights hold until the next
  std::optional<Posizione> PrimaOrfana;  // shot before any set-up
  bool HaStazioni = false;               // the file itself has set-ups
  bool StazioneChiesta = false;          // the set-up of the options came into use

  std::vector<double> DallaVerticale;  // of the zenith angles read [gon]
  Posizione PrimoZenit;
};

void LetturaGsi::LeggiRiga(const RigaTesto& riga) {
  Riga = riga.Numero;
  TaglioGsi taglio(riga.Testo);
  ParolaGsi parola;
  std::optional<GuastoGsi> guasto;
  while (taglio.Prossima(parola, guasto)) {
    if (guasto) {
      Errore(*guasto);
      continue;
    }
    if (parola.Indice == kNome || parola.Indice == kCodice) ChiudiBlocco();
    Aggiungi(parola);
  }
  ChiudiBlocco();
}

void LetturaGsi::Aggiungi(const ParolaGsi& parola) {
  if (Trova(parola.Indice) != nullptr) {
    Errore(parola, "parola ripetuta nello stesso blocco");
    return;
  }
  Parole.push_back(parola);
}

void LetturaGsi::ChiudiBlocco() {
  if (Parole.empty()) return;
  const bool livellazione = std::any_of(Parole.begin(), Parole.end(),
                                        [](const ParolaGsi& p) { return Livellazione(p.Indice); });
  const bool angoli = Trova(kWiDirezione) != nullptr || Trova(kWiZenit) != nullptr;
  if (Parole.front().Indice == kCodice) {
    BloccoCodice();
  } else if (livellazione && !angoli) {
    Libro.Tralascia("righe di livellazione (WI 330-336)", "dislivelli geometrici", Riga);
  } else {
    if (HaMisure()) {
      BloccoMisura();
    } else if (HaUnaDi(kCoordStazione) || Trova(kWiAltezza) != nullptr) {
      BloccoStazione();
    } else {
      BloccoAltro();
    }
    ContaAltre();
  }
  Parole.clear();
}

// Words of a code have a meaning of their own in every office.
void LetturaGsi::BloccoCodice() {
  for (const ParolaGsi& p : Parole) {
    if (p.Indice == kWiDirezione || p.Indice == kWiZenit || p.Indice == kInclinate ||
        p.Indice == kOrizzontali)
      Errore(p, "misura in un blocco di codice", "un blocco che comincia con WI 11");
  }
  const std::string codice = NomeGsi(Parole.front());
  if (!Opzioni.CodiceStazioneGsi) {
    Libro.Tralascia("blocchi di codice (WI 41-49)",
                    "senza l'opzione del codice di stazione non hanno un significato noto", Riga);
    return;
  }
  if (LeggiIntero(codice) != Opzioni.CodiceStazioneGsi) {
    Libro.Tralascia("blocchi di codice (WI 41-49)", "il codice non è quello di stazione", Riga);
    return;
  }
  const std::string nome = Nome(kCodiceStazione);
  if (nome.empty()) return;
  Dati.Apri(nome, Valore(kCodiceAltezza, MillimetriGsi), DoveBlocco());
  CoordCorrenti = {};
  HaStazioni = true;
}

void LetturaGsi::BloccoStazione() {
  const std::string nome = Nome(Trova(kNome) != nullptr ? kNome : kNomeStazione);
  const ParolaGsi* altro = Trova(kNomeStazione);
  if (altro != nullptr && !nome.empty() && NomeGsi(*altro) != nome)
    Errore(*altro, "nome diverso da quello di WI 11 sulla stessa riga di stazione", Cita(nome));
  const std::optional<double> altezza = Lunghezza(kWiAltezza);
  SegnaleSolo();
  const Terna punto = Coordinate(kCoordPunto);
  CoordCorrenti = Coordinate(kCoordStazione);
  if (nome.empty()) return;
  Dati.Apri(nome, altezza, DoveBlocco());
  Dati.Coordinate(nome, CoordCorrenti, DoveBlocco(), true);
  if (!HaUnaDi(kCoordStazione)) Dati.Coordinate(nome, punto, DoveBlocco(), false);
  HaStazioni = true;
}

void LetturaGsi::BloccoMisura() {
  BattutaLibretto battuta;
  battuta.Dove = DoveBlocco();
  battuta.Punto = Nome(kNome);
  battuta.Direzione = Angolo(kWiDirezione, kDirezione);
  battuta.Zenit = Angolo(kWiZenit, kZenit);
  battuta.Distanza = Distanza(kInclinate);
  const std::optional<double> orizzontale = Distanza(kOrizzontali);
  if (orizzontale && battuta.Distanza) {
    Libro.Tralascia("distanze orizzontali (WI 32)", "la battuta ha già quella inclinata", Riga);
  } else if (orizzontale) {
    battuta.Distanza = orizzontale;
    battuta.TipoDist = kOrizzontale;
  }
  battuta.Segnale = Segnale();
  if (battuta.Zenit) {
    if (DallaVerticale.empty()) PrimoZenit = Dati.Dove(Riga, Trova(kWiZenit)->Colonna);
    const double z = std::min(*battuta.Zenit, kGiroGon - *battuta.Zenit);
    DallaVerticale.push_back(std::min(z, kGiroGon / 2.0 - z));
  }
  const Terna punto = Coordinate(kCoordPunto);
  if (battuta.Punto.empty()) return;
  Dati.Coordinate(battuta.Punto, punto, battuta.Dove, false);
  if (PostazioneDellaMisura(battuta.Dove)) Dati.Corrente()->Battute.push_back(std::move(battuta));
}

// Whatever a shot itself says of its station; false if it has none.
bool LetturaGsi::PostazioneDellaMisura(const Posizione& dove) {
  const Terna coordinate = Coordinate(kCoordStazione);
  const std::optional<double> altezza = Lunghezza(kWiAltezza);
  const ParolaGsi* nome = Trova(kNomeStazione);
  if (nome != nullptr) {
    const std::string stazione = Nome(kNomeStazione);
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
      Diario.Errore(
          dove, {.Record = Record(),
                 .Campo = "WI 84-86",
                 .Problema = "coordinate diverse da quelle della stazione " +
                             Cita(Dati.Corrente()->Punto) + ": non si sa da dove è fatta la misura",
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
void LetturaGsi::AltezzaDellaMisura(double altezza, const Posizione& dove) {
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
void LetturaGsi::BloccoAltro() {
  const bool coordinate = HaUnaDi(kCoordPunto);
  if (coordinate) {
    const std::string nome = Nome(kNome);
    if (!nome.empty()) Dati.Coordinate(nome, Coordinate(kCoordPunto), DoveBlocco(), false);
  }
  SegnaleSolo();
  if (Trova(kWiSegnale) == nullptr && !coordinate)
    Libro.Tralascia("righe senza misure", "solo nomi o informazioni", Riga);
}

// A target height without a shot of its own.
void LetturaGsi::SegnaleSolo() {
  Segnale();
  if (Trova(kWiSegnale) == nullptr || Opzioni.SegnalePersistente) return;
  Libro.Tralascia("altezze del prisma su righe senza misure (WI 87)",
                  "senza l'opzione del segnale persistente non valgono per le righe seguenti",
                  Riga);
}

void LetturaGsi::ContaAltre() {
  for (const ParolaGsi& p : Parole) {
    if (UnaDi(kUsate, p.Indice)) continue;
    if (UnaDi(kCostanti, p.Indice)) {
      Libro.Tralascia("costanti del distanziometro (WI 51, 58, 59)",
                      "lo strumento le ha già applicate alle distanze", Riga);
    } else if (p.Indice == kDislivello) {
      Libro.Tralascia("dislivelli (WI 33)", "calcolati dalla stessa battuta", Riga);
    } else {
      Libro.Tralascia("parole WI " + std::string(p.Indice), "non servono alla compensazione", Riga);
    }
  }
}

void LetturaGsi::ControllaPostazioni() {
  if (StazioneChiesta || !Opzioni.Stazione) {
    if (!PrimaOrfana) return;
    Diario.Errore(
        *PrimaOrfana,
        {.Problema = HaStazioni ? "misure prima della prima stazione" : "il file non ha stazioni",
         .Suggerimento = "indicare la stazione con --stazione NOME --hs ALTEZZA"});
  } else if (HaStazioni) {
    Diario.Avviso(Dati.Dove(1, 1), {.Problema = "la stazione " + Cita(*Opzioni.Stazione) +
                                                " chiesta con --stazione non è stata usata: il "
                                                "file ha le sue"});
  }
}

// An instrument that shows vertical angles from the horizon gives values near 0, 200 and 400 gon
// where zenith angles are near 100 and 300.
void LetturaGsi::ControllaZenit() {
  if (DallaVerticale.empty()) return;
  const auto meta = DallaVerticale.begin() + static_cast<std::ptrdiff_t>(DallaVerticale.size() / 2);
  std::nth_element(DallaVerticale.begin(), meta, DallaVerticale.end());
  if (*meta >= kPressoLaVerticale) return;
  Diario.Avviso(PrimoZenit,
                {.Campo = CampoGsi(kWiZenit),
                 .Problema = "sembrano angoli verticali dall'orizzonte, non zenitali",
                 .Trovato = "una mediana a " + NumeroFisso(*meta, 1) + " gon dalla verticale"});
}

const ParolaGsi* LetturaGsi::Trova(std::string_view indice) const {
  const auto voce = std::find_if(Parole.begin(), Parole.end(),
                                 [&](const ParolaGsi& p) { return p.Indice == indice; });
  return voce == Parole.end() ? nullptr : &*voce;
}

bool LetturaGsi::HaUnaDi(const std::array<std::string_view, 3>& indici) const {
  return std::any_of(indici.begin(), indici.end(), [&](auto i) { return Trova(i) != nullptr; });
}

// A distance of zero is what stands there when none was measured.
bool LetturaGsi::HaMisure() {
  const auto nonNulla = [&](std::string_view indice) {
    const ParolaGsi* p = Trova(indice);
    return p != nullptr && p->Dati.find_first_not_of("0 ") != std::string_view::npos;
  };
  return Trova(kWiDirezione) != nullptr || Trova(kWiZenit) != nullptr || nonNulla(kInclinate) ||
         nonNulla(kOrizzontali);
}

std::string LetturaGsi::Record() const {
  if (Parole.empty() || Parole.front().Indice != kNome) return {};
  return NomePunto(NomeGsi(Parole.front()));
}

void LetturaGsi::Errore(const GuastoGsi& guasto) {
  GuastoGsi copia = guasto;
  copia.Cosa.Record = Record();
  Diario.Errore(Dati.Dove(Riga, copia.Colonna), std::move(copia.Cosa));
}

void LetturaGsi::Errore(const ParolaGsi& parola, std::string problema, std::string voluto) {
  Errore({.Cosa = {.Campo = CampoGsi(parola.Indice),
                   .Problema = std::move(problema),
                   .Trovato = Cita(parola.Dati),
                   .Voluto = std::move(voluto)},
          .Colonna = parola.Colonna});
}

// Empty, and an error is out, if the block does not give it.
std::string LetturaGsi::Nome(std::string_view indice) {
  const ParolaGsi* parola = Trova(indice);
  std::string nome = parola == nullptr ? std::string() : NomeGsi(*parola);
  if (nome.empty()) {
    const int colonna = parola == nullptr ? Parole.front().Colonna : parola->Colonna;
    Errore({.Cosa = {.Campo = CampoGsi(indice), .Problema = "nome mancante"}, .Colonna = colonna});
  }
  return nome;
}

std::optional<double> LetturaGsi::Valore(std::string_view indice,
                                         ValoreGsi (*leggi)(const ParolaGsi&)) {
  const ParolaGsi* parola = Trova(indice);
  if (parola == nullptr) return std::nullopt;
  const ValoreGsi letto = leggi(*parola);
  if (letto.Difetto) Errore(*letto.Difetto);
  return letto.Valore;
}

std::optional<double> LetturaGsi::Angolo(std::string_view indice, const RegolaNumero& regola) {
  const std::optional<double> gon = Valore(indice, AngoloGsi);
  if (!gon || Ammesso(regola, *gon)) return gon;
  Guasto guasto = GuastoNumero({}, Rinominata(regola, CampoGsi(indice)), NumeroBreve(*gon), *gon);
  if (indice == kWiZenit && *gon < 0.0)
    guasto.Suggerimento = "sembra un angolo verticale dall'orizzonte, non zenitale";
  Errore({.Cosa = std::move(guasto), .Colonna = Trova(indice)->Colonna});
  return std::nullopt;
}

std::optional<double> LetturaGsi::Distanza(std::string_view indice) {
  const std::optional<double> metri = Lunghezza(indice);
  if (!metri || *metri == 0.0) return std::nullopt;
  if (*metri > 0.0) return metri;
  Errore(*Trova(indice), "distanza negativa", "una distanza positiva");
  return std::nullopt;
}

std::optional<double> LetturaGsi::Segnale() {
  const std::optional<double> segnale = Lunghezza(kWiSegnale);
  if (!Opzioni.SegnalePersistente) return segnale;
  if (segnale) UltimoSegnale = segnale;
  return UltimoSegnale;
}

Terna LetturaGsi::Coordinate(const std::array<std::string_view, 3>& indici) {
  return {Lunghezza(indici[0]), Lunghezza(indici[1]), Lunghezza(indici[2])};
}

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

const Lettore kLettoreGsi = {"gsi", "Leica GSI-8 e GSI-16", Riconosce, Leggi};

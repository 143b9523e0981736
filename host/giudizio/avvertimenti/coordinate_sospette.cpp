// Coordinates against what the options say they are.
//   map coordinates    Est within a zone: 350 km around its false easting; Nord between the
//                      parallels of 35 and 48 degrees, which hold Italy
//   exchanged          the same with Est and Nord the other way round
// The job takes the zone from the first point with Est over 80 km, whatever its role: where that
// point lies in no zone, observations are reduced as if Est 0 were the central meridian.

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "host/base/numeri.h"
#include "host/giudizio/avvertimenti/prima.h"
#include "host/giudizio/controlli/tolleranze.h"
#include "host/rete/visuali.h"
#include "host/rete/zone.h"

namespace compensa {

namespace {

// Part of its standard deviation up to which a reduction left out is lost among the errors.
constexpr double kParteTrascurabile = 1.0 / 3.0;
constexpr int kDecimali = 3;

bool Cartografico(const TCoorCr& p) { return ZonaDi(p.Est) != nullptr && InItalia(p.Nord); }
bool Scambiato(const TCoorCr& p) { return ZonaDi(p.Nord) != nullptr && InItalia(p.Est); }
bool ConPianta(const TCoorCr& p) { return Assegnato(p.Est) && Assegnato(p.Nord); }

std::string Coordinate(const TCoorCr& p) {
  return "est " + NumeroFisso(p.Est, kDecimali) + ", nord " + NumeroFisso(p.Nord, kDecimali);
}
std::string Su(std::size_t quanti, std::size_t tutti) {
  return std::to_string(quanti) + (quanti == 1 ? " punto su " : " punti su ") +
         std::to_string(tutti);
}

class Esame {
 public:
  explicit Esame(const Rete& rete);
  Rilievi Esegui();

 private:
  const TCoorCr& Punto(std::size_t i) const { return R.Punti[i]; }
  Posto Luogo(int i) const {
    const TCoorCr& p = Punto(static_cast<std::size_t>(i));
    return {p.Est, p.Nord};
  }
  bool Maggioranza(const std::vector<std::size_t>& punti) const {
    return 2 * punti.size() > Presenti.size();
  }
  void SuPunto(Codice codice, std::size_t i, std::string problema, std::string forse) {
    Trovati.push_back({R.PosizioniPunti[i],
                       {.Quale = codice,
                        .Record = NomePunto(R.Nomi[i]),
                        .Problema = std::move(problema),
                        .Suggerimento = std::move(forse)}});
  }
  void SuOpzione(Codice codice, std::string problema, std::string forse) {
    Trovati.push_back({R.DoveOpzioni.Cartografiche,
                       {.Quale = codice,
                        .Record = {TipoSoggetto::Opzione, {"opzioni"}},
                        .Campo = "cartografiche",
                        .Problema = std::move(problema),
                        .Suggerimento = std::move(forse)}});
  }
  void EsaminaScambi();
  void EsaminaLocali();
  void EsaminaFuso();
  void EsaminaFuoriFuso(const Zona& fuso);
  void EsaminaQuote();

  const Rete& R;
  std::vector<std::size_t> Presenti;                 // points in plan that have coordinates
  std::vector<std::size_t> Cartografici, Scambiati;  // of these
  Rilievi Trovati;
};

Esame::Esame(const Rete& rete) : R(rete) {
  for (std::size_t i = 0; i < R.Punti.size(); ++i) {
    if (R.RuoliIniziali[i].Pla == kNonUsato || !ConPianta(Punto(i))) continue;
    Presenti.push_back(i);
    if (Cartografico(Punto(i))) Cartografici.push_back(i);
    if (Scambiato(Punto(i))) Scambiati.push_back(i);
  }
}

void Esame::EsaminaScambi() {
  if (Maggioranza(Scambiati)) {
    const std::size_t i = Scambiati.front();
    SuPunto(Codice::EstNordScambiati, i,
            "Est e Nord sembrano scambiati, come in " + Su(Scambiati.size(), Presenti.size()) +
                ": " + Coordinate(Punto(i)),
            "un Nord italiano sta fra 3.9 e 5.3 milioni: scambiare le due colonne");
    return;
  }
  for (const std::size_t i : Scambiati)
    SuPunto(Codice::EstNordScambiati, i, "Est e Nord sembrano scambiati: " + Coordinate(Punto(i)),
            "un Nord italiano sta fra 3.9 e 5.3 milioni: scambiare i due valori");
}

// Silent where nothing would change: distances on the plane already, short sights.
void Esame::EsaminaLocali() {
  const Riduzioni riduzioni(R, true);
  const Visuali visuali(R);
  double massimo = kParteTrascurabile;
  std::string effetto;
  const auto nota = [&](const Visuale& v, double cambio, double sqm, const std::string& quanto) {
    if (std::abs(cambio) <= massimo * sqm) return;
    massimo = std::abs(cambio) / sqm;
    effetto = "da " + Cita(R.Nomi[static_cast<std::size_t>(v.Da)]) + " a " +
              Cita(R.Nomi[static_cast<std::size_t>(v.A)]) + quanto;
  };
  for (const Visuale& v : visuali.Tutte) {
    const TCoorCr& p = Punto(static_cast<std::size_t>(v.Da));
    const TCoorCr& t = Punto(static_cast<std::size_t>(v.A));
    if (!ConPianta(p) || !ConPianta(t)) continue;
    const double angolo = v.ConDirezione() ? -riduzioni.CordaArco(Luogo(v.Da), Luogo(v.A)) : 0.0;
    nota(
        v, angolo, SqmAngolo(R),
        " la direzione cambierebbe di " + NumeroFisso(angolo / kRadPerGon, kDecimali + 1) + " gon");
    if (!v.ConDistanza()) continue;
    const double quota = Assegnato(p.Quota) ? p.Quota : t.Quota;
    const double cambio = v.Distanza * (riduzioni.Scala(v, (p.Est + t.Est) / 2.0, quota) - 1.0);
    nota(v, cambio, SqmDistanza(R, v.Distanza),
         " la distanza cambierebbe di " + NumeroFisso(cambio, kDecimali) + " m");
  }
  if (effetto.empty()) return;
  const std::size_t i = Cartografici.front();
  SuOpzione(Codice::RiduzioniMancanti,
            Su(Cartografici.size(), Presenti.size()) + " sembrano " +
                std::string(ZonaDi(Punto(i).Est)->Dove) + " (" +
                NomePunto(R.Nomi[i]).Testo() + ": " + Coordinate(Punto(i)) +
                "), ma le osservazioni non si riducono al piano: " + effetto,
            "se le coordinate sono cartografiche serve cartografiche = true");
}

// As the job recognises the zone.
void Esame::EsaminaFuso() {
  const TCoorCr* primo = PuntoDellaZona(R.Punti);
  constexpr std::string_view kForse =
      "se le coordinate sono locali serve cartografiche = false; se sono state accorciate, vanno "
      "scritte intere";
  if (primo == nullptr) {
    if (!Presenti.empty())
      SuOpzione(Codice::FusoIgnoto,
                "il fuso non si riconosce: nessun punto ha est oltre 80 km (" +
                    NomePunto(R.Nomi[Presenti.front()]).Testo() + ": " +
                    Coordinate(Punto(Presenti.front())) +
                    "), e le distanze si riducono come sul meridiano centrale, -0.400 m per km",
                std::string(kForse));
    return;
  }
  const Zona* fuso = ZonaDi(primo->Est);
  if (fuso == nullptr) {
    const auto i = static_cast<std::size_t>(primo - R.Punti.data());
    SuOpzione(Codice::FusoIgnoto,
              "il fuso non si riconosce: il primo punto con est oltre 80 km, " + Cita(R.Nomi[i]) +
                  ", ha est " + NumeroFisso(primo->Est, kDecimali) +
                  ", che non è di nessun fuso, e le riduzioni al piano sono sbagliate",
              std::string(kForse));
    return;
  }
  EsaminaFuoriFuso(*fuso);
}

void Esame::EsaminaFuoriFuso(const Zona& fuso) {
  std::vector<std::size_t> lontani;
  std::vector<std::size_t> fuoriItalia;
  for (const std::size_t i : Presenti) {
    if (Scambiato(Punto(i))) continue;
    if (ZonaDi(Punto(i).Est) != &fuso)
      lontani.push_back(i);
    else if (!InItalia(Punto(i).Nord))
      fuoriItalia.push_back(i);
  }
  const std::string nome(fuso.Dove);
  for (const std::size_t i : lontani)
    SuPunto(Codice::FuoriFuso, i,
            "est " + NumeroFisso(Punto(i).Est, kDecimali) + ": non è " + nome +
                ", come il primo punto della rete, con cui si riducono tutte le osservazioni",
            "una rete sta tutta in un fuso: correggere l'est, o trasformare le coordinate");
  constexpr std::string_view kForse =
      "se le coordinate sono locali serve cartografiche = false; se il Nord è stato accorciato, va "
      "scritto intero";
  if (Maggioranza(fuoriItalia)) {
    const std::size_t i = fuoriItalia.front();
    SuOpzione(Codice::NordFuoriItalia,
              Su(fuoriItalia.size(), Presenti.size()) + " hanno un Nord che non è italiano (" +
                  NomePunto(R.Nomi[i]).Testo() + ": " + Coordinate(Punto(i)) + ")",
              std::string(kForse));
    return;
  }
  for (const std::size_t i : fuoriItalia)
    SuPunto(Codice::NordFuoriItalia, i,
            "nord " + NumeroFisso(Punto(i).Nord, kDecimali) + ", fuori da 3.9 … 5.3 milioni",
            "correggere il nord");
}

// A distance both of whose ends lack the height is reduced as if at sea level.
void Esame::EsaminaQuote() {
  std::size_t senza = 0;
  double massima = 0.0;
  const Posizione* dove = nullptr;
  Soggetto record;
  for (std::size_t s = 0; s < R.Stazioni.size(); ++s) {
    const TCoorCr& p = Punto(static_cast<std::size_t>(R.Stazioni[s].Punto));
    if (Assegnato(p.Quota)) continue;
    for (std::size_t i = 0; i < R.Stazioni[s].Osservazioni.size(); ++i) {
      const TOssCr& o = R.Stazioni[s].Osservazioni[i];
      if (!Assegnato(o.Distanza) || !Assegnato(o.Zenit) || o.TipoDist == kPiana ||
          Assegnato(Punto(static_cast<std::size_t>(o.Punto)).Quota))
        continue;
      ++senza;
      if (o.Distanza <= massima) continue;
      massima = o.Distanza;
      dove = &R.PosizioniOsservazioni[s][i];
      record = NomeOsservazione(R.Nomi[static_cast<std::size_t>(R.Stazioni[s].Punto)],
                                R.Nomi[static_cast<std::size_t>(o.Punto)]);
    }
  }
  constexpr double kQuotaEsempio = 500.0;  // of a place of middle height [m]
  const double effetto = massima * kQuotaEsempio / kRaggioMedio;
  if (dove == nullptr || effetto <= kParteTrascurabile * SqmDistanza(R, massima)) return;
  Trovati.push_back({*dove,
                     {.Quale = Codice::DistanzaSenzaQuote,
                      .Record = std::move(record),
                      .Problema = "distanza di " + NumeroFisso(massima, kDecimali) +
                                  " m ridotta all'ellissoide come a quota 0: nessuno dei due punti "
                                  "ha la quota (così per " +
                                  std::to_string(senza) + (senza == 1 ? " distanza" : " distanze") +
                                  "); a 500 m di quota sarebbe di " +
                                  NumeroFisso(effetto, kDecimali) + " m più corta",
                      .Suggerimento = "dare ai punti la quota, anche solo approssimata"}});
}

Rilievi Esame::Esegui() {
  EsaminaScambi();
  if (Maggioranza(Scambiati)) return std::move(Trovati);  // what follows would only repeat it
  if (R.Opzioni.Cartografiche != 0) {
    EsaminaFuso();
    EsaminaQuote();
  } else if (Maggioranza(Cartografici)) {
    EsaminaLocali();
  }
  return std::move(Trovati);
}

}  // namespace

Rilievi ControllaCoordinate(const Rete& rete) {
  if ((rete.Opzioni.TipoCalcolo & kCalcoloPlanimetria) == 0) return {};
  return Esame(rete).Esegui();
}

}  // namespace compensa

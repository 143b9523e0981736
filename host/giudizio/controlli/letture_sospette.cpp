// Values that are possible but improbable: zenith angles of the second face, vertical angles taken
// for zenith angles, heights in centimetres, heights that are missing.

#include <algorithm>
#include <cmath>

#include "host/base/numeri.h"
#include "host/giudizio/controlli/rilievi.h"
#include "host/rete/campi.h"
#include "host/rete/visuali.h"

namespace compensa {

namespace {

constexpr double kQuasiOrizzonte = 50.0;  // a vertical angle is nearer to 0 than this [gon]
// Parts of the distance: by more a reading contradicts the coordinates, by less it fits them.
constexpr double kSmentita = 0.2;
constexpr double kConforme = 0.05;
constexpr double kQuoteLontane = 300.0;       // further off than approximate heights are [m]
constexpr double kAltezzaInverosimile = 4.0;  // of an instrument on its tripod [m]
constexpr double kSegnaleInverosimile = 30.0;
constexpr double kCentimetri = 50.0;  // from here on a height looks like centimetres

std::string Metri(double valore) { return NumeroFisso(valore, 3) + " m"; }

std::string ForseCentimetri(double valore) {
  return valore >= kCentimetri ? "in centimetri? sarebbe " + Metri(valore / kCmPerMetro)
                               : std::string();
}

class Esame {
 public:
  explicit Esame(const Rete& rete)
      : R(rete), Alt((rete.Opzioni.TipoCalcolo & kCalcoloAltimetria) != 0) {}
  void EsaminaValori();
  void EsaminaMancanze();
  bool TuttiVerticali() const { return ContaZenit().Verticali(); }
  Rilievi Trovati;

 private:
  // Zenith angles read, and those of them that look vertical.
  struct Zenit {
    int Letti = 0, Presso0 = 0;
    std::size_t Prima = 0;  // the first set-up with one that looks vertical
    bool Verticali() const { return 2 * Presso0 > Letti && Letti > 1; }
  };
  Zenit ContaZenit(std::size_t s) const;
  Zenit ContaZenit() const;
  void RiferisciVerticali(std::size_t s, const Zenit& zenit, const Soggetto& record);
  void EsaminaVerticali();
  void EsaminaVerticale(std::size_t s, std::size_t i);
  std::string Smentisce(int da, const TOssCr& o, double giusto) const;
  void EsaminaAltezza(std::size_t s);
  void EsaminaSegnali(std::size_t s);
  void EsaminaAltezzaMancante(std::size_t s);
  void EsaminaSegnaliMancanti(std::size_t s);
  void EsaminaSecondaFaccia(std::size_t s);
  void EsaminaVisualiVerticali(std::size_t s);
  const std::string& Nome(int i) const { return R.Nomi[static_cast<std::size_t>(i)]; }
  Soggetto Record(std::size_t s) const { return NomeStazione(Nome(R.Stazioni[s].Punto)); }
  Soggetto Record(std::size_t s, const TOssCr& o) const {
    return NomeOsservazione(Nome(R.Stazioni[s].Punto), Nome(o.Punto));
  }
  void Aggiungi(Codice codice, const Posizione& dove, Soggetto record, std::string problema,
                std::string forse = {}) {
    Trovati.push_back({dove,
                       {.Quale = codice,
                        .Record = std::move(record),
                        .Problema = std::move(problema),
                        .Suggerimento = std::move(forse)}});
  }

  const Rete& R;
  bool Alt;
};

Esame::Zenit Esame::ContaZenit(std::size_t s) const {
  Zenit zenit;
  for (const TOssCr& o : R.Stazioni[s].Osservazioni) {
    if (!Assegnato(o.Zenit)) continue;
    ++zenit.Letti;
    if (std::abs(std::remainder(o.Zenit, kGiroGon)) < kQuasiOrizzonte) ++zenit.Presso0;
  }
  return zenit;
}

void Esame::RiferisciVerticali(std::size_t s, const Zenit& zenit, const Soggetto& record) {
  Aggiungi(Codice::AngoloVerticale, R.PosizioniStazioni[s], record,
           std::to_string(zenit.Presso0) + " zenit su " + std::to_string(zenit.Letti) +
               " distano da 0 o da 400 meno di " + NumeroBreve(kQuasiOrizzonte) + " gon",
           "angoli verticali, contati dall'orizzonte? lo zenit è 100 meno l'angolo");
}

// What in the coordinates contradicts a zenith angle and fits another; empty if nothing does. Heights
// that are not fixed may be rough, those of a steep sight most of all.
std::string Esame::Smentisce(int da, const TOssCr& o, double giusto) const {
  const TCoorCr& p = R.Punti[static_cast<std::size_t>(da)];
  const TCoorCr& t = R.Punti[static_cast<std::size_t>(o.Punto)];
  const double letto = o.Zenit * kRadPerGon, vero = giusto * kRadPerGon;
  const bool inclinata = Inclinata(o.TipoDist);
  const double D = o.Distanza;
  const double data = inclinata ? D * std::abs(std::sin(letto)) : D;
  const double vera = inclinata ? D * std::abs(std::sin(vero)) : D;
  if (inclinata && Assegnato(p.Est) && Assegnato(p.Nord) && Assegnato(t.Est) && Assegnato(t.Nord)) {
    const double lato = std::hypot(t.Est - p.Est, t.Nord - p.Nord);
    if (std::abs(data - lato) < kConforme * D) return {};
    if (std::abs(data - lato) > kSmentita * D && std::abs(vera - lato) < kConforme * D)
      return "dà una distanza orizzontale di " + Metri(data) + ", le coordinate " + Metri(lato);
  }
  if (!Alt || !Assegnato(p.Quota) || !Assegnato(t.Quota)) return {};
  const double scarto = std::abs(data / std::tan(letto) - (t.Quota - p.Quota));
  const bool fisse = p.TipoAlt == kFisso && t.TipoAlt == kFisso;
  if (!(scarto > (fisse ? kSmentita * D : std::max(kSmentita * D, kQuoteLontane))) ||
      std::abs(vera / std::tan(vero) - (t.Quota - p.Quota)) > kSmentita * scarto)
    return {};
  return "dà un dislivello di " + Metri(data / std::tan(letto)) + ", le quote " +
         Metri(t.Quota - p.Quota);
}

void Esame::EsaminaVerticale(std::size_t s, std::size_t i) {
  const TOssCr& o = R.Stazioni[s].Osservazioni[i];
  if (!Assegnato(o.Zenit) || !Assegnato(o.Distanza)) return;
  const double verticale = std::remainder(o.Zenit, kGiroGon);
  if (verticale == 0.0 || !(std::abs(verticale) < kQuasiOrizzonte)) return;
  const double giusto = kOrizzonte - verticale;
  const std::string come = Smentisce(R.Stazioni[s].Punto, o, giusto);
  if (come.empty()) return;
  Aggiungi(Codice::AngoloVerticale, R.PosizioniOsservazioni[s][i], Record(s, o),
           "zenit " + NumeroFisso(o.Zenit, 4) + ": " + come,
           "angolo verticale, contato dall'orizzonte? lo zenit sarebbe " + NumeroFisso(giusto, 4));
}

Esame::Zenit Esame::ContaZenit() const {
  Zenit tutti;
  for (std::size_t s = 0; s < R.Stazioni.size(); ++s) {
    const Zenit zenit = ContaZenit(s);
    if (tutti.Presso0 == 0) tutti.Prima = s;
    tutti.Letti += zenit.Letti;
    tutti.Presso0 += zenit.Presso0;
  }
  return tutti;
}

// Of the whole network at once, or of a set-up, where it holds for most; a single reading tells
// nothing by itself.
void Esame::EsaminaVerticali() {
  const Zenit tutti = ContaZenit();
  if (tutti.Presso0 == 0) return;
  if (tutti.Verticali()) {
    RiferisciVerticali(tutti.Prima, tutti, TipoSoggetto::Rete);
    return;
  }
  for (std::size_t s = tutti.Prima; s < R.Stazioni.size(); ++s) {
    const Zenit zenit = ContaZenit(s);
    if (zenit.Verticali())
      RiferisciVerticali(s, zenit, Record(s));
    else if (zenit.Presso0 > 0)
      for (std::size_t i = 0; i < R.Stazioni[s].Osservazioni.size(); ++i) EsaminaVerticale(s, i);
  }
}

void Esame::EsaminaAltezza(std::size_t s) {
  const double altezza = R.Stazioni[s].AltStrum;
  if (Assegnato(altezza) && std::abs(altezza) > kAltezzaInverosimile)
    Aggiungi(Codice::AltezzaStrumentoInverosimile, R.PosizioniStazioni[s], Record(s),
             "altezza dello strumento di " + Metri(altezza), ForseCentimetri(altezza));
}

void Esame::EsaminaSegnali(std::size_t s) {
  const TStaCr& stazione = R.Stazioni[s];
  for (std::size_t i = 0; i < stazione.Osservazioni.size(); ++i) {
    const TOssCr& o = stazione.Osservazioni[i];
    if (Assegnato(o.AltSegnale) && std::abs(o.AltSegnale) > kSegnaleInverosimile)
      Aggiungi(Codice::AltezzaSegnaleInverosimile, R.PosizioniOsservazioni[s][i], Record(s, o),
               "altezza del segnale di " + Metri(o.AltSegnale), ForseCentimetri(o.AltSegnale));
  }
}

void Esame::EsaminaAltezzaMancante(std::size_t s) {
  const TStaCr& stazione = R.Stazioni[s];
  if (!Alt || Assegnato(stazione.AltStrum)) return;
  int visuali = 0;
  for (const TOssCr& o : stazione.Osservazioni)
    visuali += Assegnato(o.Zenit) && Assegnato(o.Distanza) && Assegnato(o.AltSegnale) ? 1 : 0;
  if (visuali > 0)
    Aggiungi(Codice::AltezzaStrumentoMancante, R.PosizioniStazioni[s], Record(s),
             "manca l'altezza dello strumento: " + std::to_string(visuali) +
                 (visuali == 1 ? " visuale non dà" : " visuali non danno") + " dislivelli",
             "se non è stata misurata si dà approssimata, con altezza_nota = false");
}

void Esame::EsaminaSegnaliMancanti(std::size_t s) {
  const TStaCr& stazione = R.Stazioni[s];
  if (!Alt || !Assegnato(stazione.AltStrum)) return;
  int mancanti = 0;
  for (const TOssCr& o : stazione.Osservazioni)
    mancanti += !Assegnato(o.AltSegnale) && Assegnato(o.Zenit) && Assegnato(o.Distanza) ? 1 : 0;
  if (mancanti > 0)
    Aggiungi(Codice::AltezzaSegnaleMancante, R.PosizioniStazioni[s], Record(s),
             mancanti == 1 ? "una visuale con zenit e distanza è senza altezza del segnale"
                           : std::to_string(mancanti) +
                                 " visuali con zenit e distanza sono senza altezza del segnale");
}

// Along the vertical there is no horizontal distance to divide by.
void Esame::EsaminaVisualiVerticali(std::size_t s) {
  const TStaCr& stazione = R.Stazioni[s];
  for (std::size_t i = 0; i < stazione.Osservazioni.size(); ++i) {
    const TOssCr& o = stazione.Osservazioni[i];
    if (!Assegnato(o.Zenit) || std::remainder(o.Zenit, kMezzoGiroGon) != 0.0) continue;
    Aggiungi(Codice::ZenitVerticale, R.PosizioniOsservazioni[s][i], Record(s, o),
             "zenit " + NumeroFisso(o.Zenit, 4) + ", una visuale verticale",
             o.Zenit == 0.0 ? "uno zero al posto di «non letto»? va tolto" : "");
  }
}

void Esame::EsaminaSecondaFaccia(std::size_t s) {
  const TStaCr& stazione = R.Stazioni[s];
  if (ContaZenit(s).Verticali()) return;
  for (std::size_t i = 0; i < stazione.Osservazioni.size(); ++i) {
    const TOssCr& o = stazione.Osservazioni[i];
    if (!Assegnato(o.Zenit) || o.Zenit <= kMezzoGiroGon || o.Zenit == kGiroGon) continue;
    Aggiungi(
        Codice::ZenitOltreMezzoGiro, R.PosizioniOsservazioni[s][i], Record(s, o),
        "zenit " + NumeroFisso(o.Zenit, 4) + ", oltre 200 gon",
        "lettura al cerchio destro non ridotta? sarebbe " + NumeroFisso(kGiroGon - o.Zenit, 4));
  }
}

void Esame::EsaminaValori() {
  EsaminaVerticali();
  for (std::size_t s = 0; s < R.Stazioni.size(); ++s) {
    EsaminaAltezza(s);
    EsaminaSegnali(s);
  }
}

void Esame::EsaminaMancanze() {
  for (std::size_t s = 0; s < R.Stazioni.size(); ++s) {
    EsaminaAltezzaMancante(s);
    EsaminaSegnaliMancanti(s);
    EsaminaSecondaFaccia(s);
    EsaminaVisualiVerticali(s);
  }
}

}  // namespace

Rilievi ControllaLetture(const Rete& rete) {
  Esame esame(rete);
  esame.EsaminaValori();
  return std::move(esame.Trovati);
}

bool ZenitVerticali(const Rete& rete) { return Esame(rete).TuttiVerticali(); }

Rilievi ControllaMancanze(const Rete& rete) {
  Esame esame(rete);
  esame.EsaminaMancanze();
  return std::move(esame.Trovati);
}

}  // namespace compensa

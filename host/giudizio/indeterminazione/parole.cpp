// Sentences on motions in plan. Of the motions of a body, reduced so that one row has the rotation,
// one the scale, and the others are translations, the rows that exist name the motion; where
// nothing shifts, the rotation w and the scale s of a row have the centre in which
//   t + s r + w J r = 0     r = (E, N), J r = (N, -E).
// Rotation and scale that are free each by itself have each a centre of its own, which need not be
// the same: a body that two sights from one station hold can grow from that station, but turn only
// about the point where the perpendiculars to the sights meet.

#include "host/giudizio/indeterminazione/parole.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <set>

#include "host/base/codifica.h"
#include "host/base/diagnostica.h"
#include "host/base/numeri.h"
#include "host/base/testi.h"

namespace compensa {

namespace {

constexpr std::size_t U(int i) { return static_cast<std::size_t>(i); }

constexpr std::size_t kNominati = 5;
constexpr double kNulla = 1e-4;        // part of a motion that is none, for a body of radius 1
constexpr double kNullaDebole = 0.05;  // likewise of a motion that is not quite free
constexpr double kSqmIntera = 10.0;    // larger ones are written without decimals [m]

std::string Nome(const Risultati& r, int punto) { return Cita(r.Punti[U(punto)].Nome); }

std::string Gon(double azimut) {
  const std::string testo = NumeroFisso(azimut, 1);
  return (testo == "200.0" ? "0.0" : testo) + " gon";
}

int Collimato(const Risultati& r, int stazione, int osservazione) {
  return r.Stazioni[U(stazione)].Osservazioni[U(osservazione)].Punto;
}

// What the equations of a point that is free along one line have in common, and what would help.
std::string PercheLungoRetta(const Risultati& r, const SistemaLibero& s, int nodo) {
  const int punto = s.Punti[U(nodo)];
  const std::span<const int> righe = s.RigheDi(nodo);
  std::set<int> daQui, stazioni, capi;  // seen from its set-ups; set-ups that see it; distances
  for (const int i : righe) {
    const RigaLibera& riga = s.Righe[U(i)];
    const int da = r.Stazioni[U(riga.Stazione)].Punto;
    const int a = Collimato(r, riga.Stazione, riga.Osservazione);
    if (riga.Tipo == TipoEquazione::Distanza) {
      capi.insert(da == punto ? a : da);
    } else if (da == punto) {
      daQui.insert({a, Collimato(r, riga.Stazione, riga.Riferimento)});
    } else {
      stazioni.insert(da);
    }
  }
  const auto elenco = [&](const std::set<int>& punti) {
    return ElencoPunti(r, {punti.begin(), punti.end()});
  };
  if (daQui.empty() && stazioni.empty() && capi.size() == 1)
    return "lo fissa solo la distanza con " + elenco(capi) +
           ": manca una direzione, o una distanza con un altro punto";
  if (daQui.empty() && capi.empty() && stazioni.size() == 1)
    return "lo vede in direzione solo " + elenco(stazioni) +
           ": manca una distanza, o una direzione da un altro punto";
  if (stazioni.empty() && capi.empty() && daQui.size() == 2)
    return "dalla sua stazione c'è solo l'angolo fra " + elenco(daQui) +
           ": manca una distanza, o una direzione verso un altro punto";
  if (stazioni.empty() && capi.empty() && daQui.size() > 2)
    return "sta sul cerchio per " + elenco(daQui) +
           " (cerchio pericoloso): manca una distanza, o una direzione verso un punto fuori dal "
           "cerchio";
  return "le sue " + std::to_string(righe.size()) +
         " osservazioni lo fissano tutte nella stessa direzione: manca una distanza o una "
         "direzione che le tagli";
}

std::string PercheOvunque(const Risultati& r, const SistemaLibero& s, int nodo) {
  if (!s.RigheDi(nodo).empty())
    return "ha le stesse coordinate di un punto da cui è osservato: correggerle";
  const int punto = s.Punti[U(nodo)];
  bool visto = false;
  for (const RisultatoStazione& stazione : r.Stazioni) {
    visto = visto || (stazione.Punto == punto && !stazione.Osservazioni.empty());
    for (const RisultatoOsservazione& o : stazione.Osservazioni) visto = visto || o.Punto == punto;
  }
  return visto ? "le sue osservazioni non danno né un angolo né una distanza: mancano due "
                 "osservazioni"
               : "nessuno lo osserva: mancano due osservazioni";
}

// What a body can do, from its similarities.
struct Capacita {
  int Traslazioni = 0;
  bool Ruota = false, Dilata = false;          // both also if only together
  bool Spirale = false;                        // only together
  Similitudine Traslazione, Rotazione, Scala;  // one of each kind; of a spiral the rotation
};

// Rows of the four numbers rotation, scale, shifts, by the radius of the body.
Capacita Analizza(const MotoInsieme& insieme, double raggio, double nulla) {
  std::vector<std::array<double, 4>> righe;
  for (const Similitudine& m : insieme.Similitudini)
    righe.push_back({m.Rotazione * raggio, m.Scala * raggio, m.TraslEst, m.TraslNord});
  Capacita c;
  std::size_t fatte = 0;
  const auto elimina = [&](std::size_t colonna) {
    const auto perno = std::max_element(
        righe.begin() + static_cast<std::ptrdiff_t>(fatte), righe.end(),
        [&](const auto& a, const auto& b) { return std::abs(a[colonna]) < std::abs(b[colonna]); });
    if (perno == righe.end()) return false;
    const double intera =
        std::hypot(std::hypot((*perno)[0], (*perno)[1]), std::hypot((*perno)[2], (*perno)[3]));
    if (!(std::abs((*perno)[colonna]) > nulla * intera)) return false;
    std::iter_swap(righe.begin() + static_cast<std::ptrdiff_t>(fatte), perno);
    for (std::size_t i = 0; i < righe.size(); ++i) {
      if (i == fatte) continue;
      const double k = righe[i][colonna] / righe[fatte][colonna];
      for (std::size_t j = 0; j < 4; ++j) righe[i][j] -= k * righe[fatte][j];
    }
    ++fatte;
    return true;
  };
  c.Ruota = elimina(0);
  c.Dilata = elimina(1);
  const auto similitudine = [&](const std::array<double, 4>& riga) -> Similitudine {
    return {riga[2], riga[3], riga[0] / raggio, riga[1] / raggio};
  };
  if (c.Ruota) c.Rotazione = similitudine(righe.front());
  if (c.Dilata) c.Scala = similitudine(righe[fatte - 1]);
  c.Spirale =
      c.Ruota && !c.Dilata && std::abs(righe.front()[1]) > nulla * std::abs(righe.front()[0]);
  c.Dilata = c.Dilata || c.Spirale;
  c.Traslazioni = static_cast<int>(righe.size() - fatte);
  if (c.Traslazioni > 0) c.Traslazione = {righe.back()[2], righe.back()[3], 0.0, 0.0};
  return c;
}

Posto CentroDi(const Similitudine& m) {
  const double det = m.Scala * m.Scala + m.Rotazione * m.Rotazione;
  return {-(m.Scala * m.TraslEst - m.Rotazione * m.TraslNord) / det,
          -(m.Rotazione * m.TraslEst + m.Scala * m.TraslNord) / det};
}

// The sentence on a body is put together from its subject, verb and remedy.
class Frase {
 public:
  Frase(const Risultati& risultati, const SistemaLibero& sistema, const MotoInsieme& insieme,
        double sqm)
      : R(risultati), S(sistema), I(insieme) {
    Moto.Sqm = sqm;
    for (const int nodo : I.Nodi) {
      Moto.Punti.push_back(S.Punti[U(nodo)]);
      if (!I.Similitudini.empty())
        Raggio = std::max(Raggio, Lunghezza(S.Luoghi[U(nodo)] - I.Centro));
    }
  }
  MotoLibero Componi();

 private:
  bool Debole() const { return Presente(Moto.Sqm); }
  CentroMoto Nomina(Posto centro) const;
  void NominaCentri();
  bool TuttaLaRete() const;
  std::string Presso(const char* preposizione, const CentroMoto& centro) const;
  std::string Soggetto() const;
  std::string Verbo() const;
  std::string Rimedio() const;
  std::string RimedioTraslazione() const;
  std::string Direzioni() const;

  const Risultati& R;
  const SistemaLibero& S;
  const MotoInsieme& I;
  MotoLibero Moto;
  Capacita C;
  double Raggio = 1.0;
};

// The centre with the nearest point that stands still, if one is there.
CentroMoto Frase::Nomina(Posto centro) const {
  const Posto assoluto = centro + I.Centro + S.Origine;
  CentroMoto nominato{assoluto.Est, assoluto.Nord, kNessuno};
  double vicino = (Debole() ? kNullaDebole : kNulla) * Raggio;
  for (std::size_t i = 0; i < R.Punti.size(); ++i) {
    const RisultatoPunto& p = R.Punti[i];
    if (p.Ruoli.Pla == kNonUsato) continue;
    const int nodo = S.NodoDiPunto[i];
    const Posto luogo = nodo == kNessuno ? Posto{p.Est, p.Nord} - S.Origine : S.Luoghi[U(nodo)];
    const double distanza = Lunghezza(luogo - I.Centro - centro);
    if (!(distanza < vicino)) continue;
    vicino = distanza;
    nominato.Punto = static_cast<int>(i);
  }
  return nominato;
}

void Frase::NominaCentri() {
  const Posto primo = CentroDi(C.Ruota ? C.Rotazione : C.Scala);
  Moto.Centro = Nomina(primo);
  if (!C.Ruota || !C.Dilata || C.Spirale) return;
  const Posto secondo = CentroDi(C.Scala);
  const double stesso = kNulla * (Raggio + Lunghezza(primo) + Lunghezza(secondo));
  if (Lunghezza(secondo - primo) > stesso) Moto.CentroScala = Nomina(secondo);
}

// Whether every unknown point that something observes moves.
bool Frase::TuttaLaRete() const {
  std::size_t altri = 0;
  for (int nodo = 0; nodo < S.Nodi(); ++nodo)
    if (S.RigheDi(nodo).empty()) ++altri;
  return I.Nodi.size() + altri == U(S.Nodi()) && I.Nodi.size() > 1;
}

std::string Frase::Presso(const char* preposizione, const CentroMoto& centro) const {
  if (centro.Punto != kNessuno) return std::string(preposizione) + " " + Nome(R, centro.Punto);
  return std::string(preposizione) + " un punto in (" + NumeroFisso(centro.Est, 1) + ", " +
         NumeroFisso(centro.Nord, 1) + ")";
}

std::string Frase::Soggetto() const {
  const std::string quasi = Debole() ? "quasi " : "";
  if (TuttaLaRete() && !I.Similitudini.empty()) return "rete " + quasi + "libera";
  if (Moto.Punti.size() == 1) return ElencoPunti(R, Moto.Punti) + " " + quasi + "libero";
  return "i punti " + ElencoPunti(R, Moto.Punti) + " " + quasi + "liberi";
}

std::string Frase::Verbo() const {
  const std::string insieme = Moto.Punti.size() > 1 && !TuttaLaRete() ? " insieme" : "";
  const std::string lungo = "lungo " + Gon(Moto.Azimut);
  const std::string giri = C.Ruota && C.Dilata ? "ruotare e dilatarsi"
                           : C.Ruota           ? "ruotare"
                                               : "dilatarsi";
  if (C.Traslazioni == 0) {
    if (C.Spirale)
      return " di muoversi" + insieme + " a spirale " + Presso("attorno a", Moto.Centro);
    if (Presente(Moto.CentroScala.Est))
      return " di ruotare" + insieme + " " + Presso("attorno a", Moto.Centro) + " e di dilatarsi " +
             Presso("da", Moto.CentroScala);
    return " di " + giri + insieme + " " + Presso(C.Ruota ? "attorno a" : "da", Moto.Centro);
  }
  if (Moto.Punti.size() == 1) return C.Traslazioni == 1 ? " " + lungo : " in ogni direzione";
  if (!C.Ruota && !C.Dilata)
    return " di traslare" + insieme + (C.Traslazioni == 1 ? " " + lungo : " in ogni direzione");
  if (C.Traslazioni == 1) return " di traslare " + lungo + " e di " + giri + insieme;
  if (C.Ruota && C.Dilata) return " di traslare, ruotare e dilatarsi" + insieme;
  return " di traslare e " + giri + insieme;
}

std::string Frase::RimedioTraslazione() const {
  if (!C.Ruota && !C.Dilata)
    return C.Traslazioni == 1 ? "manca una distanza o una direzione verso un punto noto"
                              : "mancano due misure verso punti noti";
  if (C.Traslazioni == 1) return "mancano due misure verso punti noti";
  if (TuttaLaRete() && R.Planimetria.Fissi == 0)
    return C.Dilata ? "mancano i punti fissi, almeno due" : "mancano i punti fissi";
  return std::string("nessuna misura ") + (TuttaLaRete() ? "la lega" : "li lega") +
         " a punti noti: servono almeno due punti in comune con essi";
}

std::string Frase::Rimedio() const {
  if (C.Traslazioni > 0) return RimedioTraslazione();
  const std::string noto = TuttaLaRete() ? "noto" : "determinato";
  if (C.Spirale) return "manca una distanza o una direzione verso un altro punto " + noto;
  if (C.Ruota && C.Dilata) return "manca un legame con un secondo punto " + noto;
  if (C.Ruota) return "manca una direzione (o una distanza) verso un altro punto " + noto;
  const bool distanze = std::ranges::any_of(
      S.Righe, [](const RigaLibera& riga) { return riga.Tipo == TipoEquazione::Distanza; });
  return distanze ? "manca una distanza" : "nessuna distanza";
}

// "P1" lungo 12.0 gon, "P2" lungo 180.0 gon
std::string Frase::Direzioni() const {
  std::string testo;
  for (std::size_t k = 0; k < std::min(I.Nodi.size(), kNominati); ++k)
    testo += (k == 0 ? "" : ", ") + Nome(R, Moto.Punti[k]) + " lungo " +
             Gon(AzimutRetta(Azimut({I.Moto[2 * k], I.Moto[2 * k + 1]})));
  return testo + (I.Nodi.size() > kNominati ? "…" : "");
}

MotoLibero Frase::Componi() {
  if (I.Similitudini.empty()) {
    Moto.Tipo = TipoMoto::Composto;
    Moto.Parole = Soggetto() + " di muoversi insieme, ciascuno a suo modo (" + Direzioni() + ")" +
                  TestoSqmMoto(Moto.Sqm) +
                  ": manca una distanza o una direzione verso un punto determinato";
    return std::move(Moto);
  }
  C = Analizza(I, Raggio, Debole() ? kNullaDebole : kNulla);
  Moto.Gradi = static_cast<int>(I.Similitudini.size());
  if (C.Traslazioni == 1)
    Moto.Azimut = AzimutRetta(Azimut({C.Traslazione.TraslEst, C.Traslazione.TraslNord}));
  if (C.Traslazioni == 0) NominaCentri();
  Moto.Tipo = C.Traslazioni > 0
                  ? (C.Ruota || C.Dilata ? TipoMoto::Rototraslazione : TipoMoto::Traslazione)
              : C.Ruota && C.Dilata ? TipoMoto::RotazioneDilatazione
              : C.Ruota             ? TipoMoto::Rotazione
                                    : TipoMoto::Dilatazione;
  if (Moto.Punti.size() == 1) Moto.Tipo = TipoMoto::Punto;
  Moto.Parole = Soggetto() + Verbo() + TestoSqmMoto(Moto.Sqm) + ": " + Rimedio();
  return std::move(Moto);
}

}  // namespace

std::string ElencoPunti(const Risultati& r, const std::vector<int>& punti) {
  return Elenca(punti, [&](int punto) { return Nome(r, punto); }, kNominati);
}

std::string TestoSqmMoto(double sqm) {
  if (!Presente(sqm)) return {};
  return " (s.q.m. a priori dello spostamento " + NumeroFisso(sqm, sqm < kSqmIntera ? 2 : 0) +
         " m; controllare anche gli s.q.m. delle opzioni)";
}

MotoLibero MotoDiPunto(const Risultati& r, const SistemaLibero& s, const NodoLibero& libero) {
  MotoLibero moto;
  moto.Gradi = libero.Gradi;
  moto.Punti = {s.Punti[U(libero.Nodo)]};
  const std::string nome = Nome(r, moto.Punti.front());
  if (libero.Gradi == 1) {
    moto.Azimut = AzimutRetta(Azimut({libero.Est, libero.Nord}));
    moto.Parole =
        nome + " libero lungo " + Gon(moto.Azimut) + ": " + PercheLungoRetta(r, s, libero.Nodo);
  } else {
    moto.Parole = nome + " libero in ogni direzione: " + PercheOvunque(r, s, libero.Nodo);
  }
  return moto;
}

MotoLibero MotoDiInsieme(const Risultati& risultati, const SistemaLibero& sistema,
                         const MotoInsieme& insieme, double sqm) {
  return Frase(risultati, sistema, insieme, sqm).Componi();
}

}  // namespace compensa

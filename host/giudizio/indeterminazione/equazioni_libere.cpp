// Coefficients of the equations by plane geometry. With a sight from P to T, azimuth a, length s:
//   azimuth    da = (cos a dE - sin a dN) / s      dE, dN of T less those of P      [rad/m]
//   distance   ds =  sin a dE + cos a dN                                            [m/m]
// An angle is the difference of two azimuths; a height difference counts H(T) - H(S) - h. Rows are
// divided by the a-priori standard deviation of what they observe.
// (Ghilani, Adjustment Computations, ch. 14 and 15.)

#include "host/giudizio/indeterminazione/equazioni_libere.h"

#include <cmath>

#include "host/base/unita.h"

namespace compensa {

namespace {

// Where a network gives none [m, gon]: only the proportion of the rows depends on them.
constexpr double kSqmDistanza = 0.01;
constexpr double kSqmDirezione = 0.001;

double OAltrimenti(double valore, double altrimenti) {
  return valore > 0.0 && std::isfinite(valore) ? valore : altrimenti;
}

// Adds to the coefficients of a point, if it moves.
void Aggiungi(RigaLibera& riga, int nodo, double primo, double secondo) {
  if (nodo == kNessuno) return;
  std::size_t k = 0;
  while (riga.Nodi[k] != kNessuno && riga.Nodi[k] != nodo) ++k;
  riga.Nodi[k] = nodo;
  riga.Coeff[k][0] += primo;
  riga.Coeff[k][1] += secondo;
}

bool FuoriCentroSenzaDirezione(const RisultatoOsservazione& o) {
  const bool fuoriCentro =
      o.TipoDist == kFuoriCentro10 || o.TipoDist == kFuoriCentro20 || o.TipoDist == kFuoriCentro30;
  return fuoriCentro && Presente(o.Direzione) && !(o.Direzione > 0.0);
}

class Costruttore {
 public:
  Costruttore(const Risultati& risultati, Coordinate quali) : R(risultati), Quali(quali) {}
  SistemaLibero Planimetria();
  SistemaLibero Altimetria();

 private:
  const RisultatoPunto& Punto(int i) const { return R.Punti[static_cast<std::size_t>(i)]; }
  Posto Luogo(int i) const {
    const RisultatoPunto& p = Punto(i);
    return Quali == Coordinate::DelFile ? Posto{p.EstIniziale, p.NordIniziale}
                                        : Posto{p.Est, p.Nord};
  }
  int Nodo(int punto) const { return S.NodoDiPunto[static_cast<std::size_t>(punto)]; }
  bool InPianta(int punto) const {
    return punto >= 0 && punto < static_cast<int>(R.Punti.size()) &&
           Punto(punto).Ruoli.Pla != kNonUsato;
  }
  bool InQuota(int punto) const {
    return punto >= 0 && punto < static_cast<int>(R.Punti.size()) &&
           Punto(punto).Ruoli.Alt != kNonUsato;
  }
  void AggiungiNodo(int punto, int strumento);
  void CollocaNodi();
  void Azimut(RigaLibera& riga, int da, int a, double fattore) const;
  void AggiungiAngoli(int stazione);
  void AggiungiDistanze(int stazione);
  void AggiungiDislivelli(int stazione, int nodoStrumento);

  const Risultati& R;
  Coordinate Quali;
  SistemaLibero S;
};

void Costruttore::AggiungiNodo(int punto, int strumento) {
  if (strumento == kNessuno) S.NodoDiPunto[static_cast<std::size_t>(punto)] = S.Nodi();
  S.Punti.push_back(punto);
  S.Strumenti.push_back(strumento);
}

void Costruttore::CollocaNodi() {
  for (const int punto : S.Punti) S.Origine = S.Origine + Luogo(punto);
  if (S.Nodi() > 0) S.Origine = (1.0 / S.Nodi()) * S.Origine;
  for (const int punto : S.Punti) S.Luoghi.push_back(Luogo(punto) - S.Origine);
}

// A sight of no length turns with nothing.
void Costruttore::Azimut(RigaLibera& riga, int da, int a, double fattore) const {
  const Posto d = Luogo(a) - Luogo(da);
  const double q = d.Est * d.Est + d.Nord * d.Nord;
  if (q == 0.0) return;
  const double suEst = fattore * d.Nord / q;
  const double suNord = -fattore * d.Est / q;
  Aggiungi(riga, Nodo(a), suEst, suNord);
  Aggiungi(riga, Nodo(da), -suEst, -suNord);
}

void Costruttore::AggiungiAngoli(int stazione) {
  const RisultatoStazione& s = R.Stazioni[static_cast<std::size_t>(stazione)];
  const double fattore = 1.0 / (OAltrimenti(R.Opzioni.SqmDir, kSqmDirezione) * kRadPerGon);
  int riferimento = kNessuno;
  for (std::size_t k = 0; k < s.Osservazioni.size(); ++k) {
    const RisultatoOsservazione& o = s.Osservazioni[k];
    if (!InPianta(o.Punto) || !Presente(o.Direzione)) continue;
    if (riferimento == kNessuno) {
      riferimento = static_cast<int>(k);
      continue;
    }
    RigaLibera riga;
    riga.Stazione = stazione;
    riga.Osservazione = static_cast<int>(k);
    riga.Riferimento = riferimento;
    Azimut(riga, s.Punto, o.Punto, fattore);
    Azimut(riga, s.Punto, s.Osservazioni[static_cast<std::size_t>(riferimento)].Punto, -fattore);
    S.Righe.push_back(riga);
  }
}

// The first distance that cannot be brought to the centre ends the distances of its set-up.
void Costruttore::AggiungiDistanze(int stazione) {
  const RisultatoStazione& s = R.Stazioni[static_cast<std::size_t>(stazione)];
  for (std::size_t k = 0; k < s.Osservazioni.size(); ++k) {
    const RisultatoOsservazione& o = s.Osservazioni[k];
    if (!InPianta(o.Punto) || !Presente(o.Distanza) || !Presente(o.Zenit)) continue;
    if (FuoriCentroSenzaDirezione(o)) return;
    const Posto d = Luogo(o.Punto) - Luogo(s.Punto);
    const double lunghezza = Lunghezza(d);
    RigaLibera riga;
    riga.Tipo = TipoEquazione::Distanza;
    riga.Stazione = stazione;
    riga.Osservazione = static_cast<int>(k);
    if (lunghezza > 0.0) {
      const double sigma = OAltrimenti(
          R.Opzioni.SqmDistCost + R.Opzioni.SqmDistProp * lunghezza / kMetriPerKm, kSqmDistanza);
      const Posto u = (1.0 / (lunghezza * sigma)) * d;
      Aggiungi(riga, Nodo(o.Punto), u.Est, u.Nord);
      Aggiungi(riga, Nodo(s.Punto), -u.Est, -u.Nord);
    }
    S.Righe.push_back(riga);
  }
}

SistemaLibero Costruttore::Planimetria() {
  S.NodoDiPunto.assign(R.Punti.size(), kNessuno);
  for (std::size_t i = 0; i < R.Punti.size(); ++i) {
    const int ruolo = R.Punti[i].Ruoli.Pla;
    if (ruolo == kIncognito || ruolo == kCompensato) AggiungiNodo(static_cast<int>(i), kNessuno);
  }
  CollocaNodi();
  for (std::size_t i = 0; i < R.Stazioni.size(); ++i) {
    if (!InPianta(R.Stazioni[i].Punto)) continue;
    AggiungiAngoli(static_cast<int>(i));
    AggiungiDistanze(static_cast<int>(i));
  }
  S.Indicizza();
  return std::move(S);
}

// The error of a height difference grows with the length of its sight.
void Costruttore::AggiungiDislivelli(int stazione, int nodoStrumento) {
  const RisultatoStazione& s = R.Stazioni[static_cast<std::size_t>(stazione)];
  const double zenit = OAltrimenti(R.Opzioni.SqmDir, kSqmDirezione) * kRadPerGon;
  for (std::size_t k = 0; k < s.Osservazioni.size(); ++k) {
    const RisultatoOsservazione& o = s.Osservazioni[k];
    if (!InQuota(o.Punto) || !Presente(o.Distanza) || !Presente(o.Zenit) || !Presente(o.AltSegnale))
      continue;
    const double lunghezza = Lunghezza(Luogo(o.Punto) - Luogo(s.Punto));
    if (!(lunghezza > 0.0)) continue;  // also without plane coordinates
    const double peso = 1.0 / (lunghezza * zenit);
    RigaLibera riga;
    riga.Tipo = TipoEquazione::Dislivello;
    riga.Stazione = stazione;
    riga.Osservazione = static_cast<int>(k);
    Aggiungi(riga, Nodo(o.Punto), peso, 0.0);
    Aggiungi(riga, Nodo(s.Punto), -peso, 0.0);
    Aggiungi(riga, nodoStrumento, -peso, 0.0);
    S.Righe.push_back(riga);
  }
}

SistemaLibero Costruttore::Altimetria() {
  S.Passo = 1;
  S.NodoDiPunto.assign(R.Punti.size(), kNessuno);
  for (std::size_t i = 0; i < R.Punti.size(); ++i) {
    const int ruolo = R.Punti[i].Ruoli.Alt;
    if (ruolo == kIncognito || ruolo == kCompensato) AggiungiNodo(static_cast<int>(i), kNessuno);
  }
  for (std::size_t i = 0; i < R.Stazioni.size(); ++i) {
    const RisultatoStazione& s = R.Stazioni[i];
    if (!InQuota(s.Punto) || !Presente(s.AltStrum)) continue;
    const auto stazione = static_cast<int>(i);
    const int strumento = s.AltStrumNota ? kNessuno : S.Nodi();
    if (strumento != kNessuno) AggiungiNodo(s.Punto, stazione);
    AggiungiDislivelli(stazione, strumento);
  }
  S.Indicizza();
  return std::move(S);
}

}  // namespace

std::span<const int> SistemaLibero::RigheDi(int nodo) const {
  const auto n = static_cast<std::size_t>(nodo);
  return std::span(Indice).subspan(Inizio[n], Inizio[n + 1] - Inizio[n]);
}

void SistemaLibero::Indicizza() {
  Inizio.assign(Punti.size() + 1, 0);
  const auto visita = [&](auto azione) {
    for (std::size_t r = 0; r < Righe.size(); ++r)
      for (const int nodo : Righe[r].Nodi)
        if (nodo != kNessuno) azione(static_cast<std::size_t>(nodo), static_cast<int>(r));
  };
  visita([&](std::size_t nodo, int) { ++Inizio[nodo + 1]; });
  for (std::size_t i = 1; i < Inizio.size(); ++i) Inizio[i] += Inizio[i - 1];
  Indice.resize(Inizio.back());
  std::vector<std::size_t> libero(Inizio.begin(), Inizio.end() - 1);
  visita([&](std::size_t nodo, int riga) { Indice[libero[nodo]++] = riga; });
}

SistemaLibero EquazioniPlanimetria(const Risultati& risultati, Coordinate quali) {
  return Costruttore(risultati, quali).Planimetria();
}

SistemaLibero EquazioniAltimetria(const Risultati& risultati) {
  return Costruttore(risultati, Coordinate::Finali).Altimetria();
}

}  // namespace compensa

// Coefficients of the equations by plane geometry. With a sight from P to T, azimuth a, length s:
//   azimuth    da = (cos a dE - sin a dN) / s      dE, dN of T less those of P      [rad/m]
//   distance   ds =  sin a dE + cos a dN                                            [m/m]
// An angle is the difference of two azimuths; a height difference counts H(T) - H(S) - h. Rows are
// divided by the a-priori standard deviation of what they observe.
// (Ghilani, Adjustment Computations, ch. 14 and 15.)

#include "host/giudizio/indeterminazione/equazioni_libere.h"

#include <cmath>

#include "host/base/unita.h"
#include "host/rete/sqm.h"
#include "records/selezione.h"

namespace compensa {

namespace {

// Adds to the coefficients of a point, if it moves.
void Aggiungi(RigaLibera& riga, int nodo, double primo, double secondo) {
  if (nodo == kNessuno) return;
  std::size_t k = 0;
  while (riga.Nodi[k] != kNessuno && riga.Nodi[k] != nodo) ++k;
  riga.Nodi[k] = nodo;
  riga.Coeff[k][0] += primo;
  riga.Coeff[k][1] += secondo;
}

class Costruttore {
 public:
  Costruttore(const Rete& rete, const Risultati& risultati, Coordinate quali)
      : N(rete), R(risultati), Quali(quali) {}
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
  void AggiungiNodo(int punto, int strumento);
  void CollocaNodi();
  void Azimut(RigaLibera& riga, int da, int a, double fattore) const;
  static RigaLibera Nuova(TipoEquazione tipo, std::size_t stazione, std::size_t osservazione);
  void AggiungiAngoli(std::size_t stazione);
  void AggiungiDistanze(std::size_t stazione);
  void AggiungiDislivelli(std::size_t stazione, int nodoStrumento);

  const Rete& N;  // the records, with the roles that the run has left
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

RigaLibera Costruttore::Nuova(TipoEquazione tipo, std::size_t stazione, std::size_t osservazione) {
  RigaLibera riga;
  riga.Tipo = tipo;
  riga.Stazione = static_cast<int>(stazione);
  riga.Osservazione = static_cast<int>(osservazione);
  return riga;
}

void Costruttore::AggiungiAngoli(std::size_t stazione) {
  const TStaCr& s = N.Stazioni[stazione];
  const double fattore = 1.0 / (SqmDirezione(R.Opzioni) * kRadPerGon);
  PerOgniAngolo(N.Punti, s, [&](std::size_t riferimento, std::size_t k) {
    RigaLibera riga = Nuova(TipoEquazione::Angolo, stazione, k);
    riga.Riferimento = static_cast<int>(riferimento);
    Azimut(riga, s.Punto, s.Osservazioni[k].Punto, fattore);
    Azimut(riga, s.Punto, s.Osservazioni[riferimento].Punto, -fattore);
    S.Righe.push_back(riga);
  });
}

void Costruttore::AggiungiDistanze(std::size_t stazione) {
  const TStaCr& s = N.Stazioni[stazione];
  PerOgniDistanza(N.Punti, s, [&](std::size_t k) {
    const int collimato = s.Osservazioni[k].Punto;
    const Posto d = Luogo(collimato) - Luogo(s.Punto);
    const double lunghezza = Lunghezza(d);
    RigaLibera riga = Nuova(TipoEquazione::Distanza, stazione, k);
    if (lunghezza > 0.0) {
      const double sigma =
          OAltrimenti(R.Opzioni.SqmDistCost + R.Opzioni.SqmDistProp * lunghezza / kMetriPerKm,
                      kSqmDistanzaIgnota);
      const Posto u = (1.0 / (lunghezza * sigma)) * d;
      Aggiungi(riga, Nodo(collimato), u.Est, u.Nord);
      Aggiungi(riga, Nodo(s.Punto), -u.Est, -u.Nord);
    }
    S.Righe.push_back(riga);
  });
}

SistemaLibero Costruttore::Planimetria() {
  S.NodoDiPunto.assign(R.Punti.size(), kNessuno);
  for (std::size_t i = 0; i < R.Punti.size(); ++i) {
    const int ruolo = N.Punti[i].TipoPla;
    if (ruolo == kIncognito || ruolo == kCompensato) AggiungiNodo(static_cast<int>(i), kNessuno);
  }
  CollocaNodi();
  for (std::size_t i = 0; i < N.Stazioni.size(); ++i) {
    AggiungiAngoli(i);
    AggiungiDistanze(i);
  }
  S.Indicizza();
  return std::move(S);
}

// The error of a height difference grows with the length of its sight.
void Costruttore::AggiungiDislivelli(std::size_t stazione, int nodoStrumento) {
  const TStaCr& s = N.Stazioni[stazione];
  const double zenit = SqmDirezione(R.Opzioni) * kRadPerGon;
  PerOgniDislivello(N.Punti, s, [&](std::size_t k, double) {
    const int collimato = s.Osservazioni[k].Punto;
    const double lunghezza = Lunghezza(Luogo(collimato) - Luogo(s.Punto));
    if (!(lunghezza > 0.0)) return;
    const double peso = 1.0 / (lunghezza * zenit);
    RigaLibera riga = Nuova(TipoEquazione::Dislivello, stazione, k);
    Aggiungi(riga, Nodo(collimato), peso, 0.0);
    Aggiungi(riga, Nodo(s.Punto), -peso, 0.0);
    Aggiungi(riga, nodoStrumento, -peso, 0.0);
    S.Righe.push_back(riga);
  });
}

SistemaLibero Costruttore::Altimetria() {
  S.Passo = 1;
  S.NodoDiPunto.assign(R.Punti.size(), kNessuno);
  for (std::size_t i = 0; i < R.Punti.size(); ++i) {
    const int ruolo = N.Punti[i].TipoAlt;
    if (ruolo == kIncognito || ruolo == kCompensato) AggiungiNodo(static_cast<int>(i), kNessuno);
  }
  for (std::size_t i = 0; i < N.Stazioni.size(); ++i) {
    int strumento = kNessuno;
    if (StrumentoIncognito(N.Punti, N.Stazioni[i])) {
      strumento = S.Nodi();
      AggiungiNodo(N.Stazioni[i].Punto, static_cast<int>(i));
    }
    AggiungiDislivelli(i, strumento);
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

SistemaLibero EquazioniPlanimetria(const Rete& rete, const Risultati& risultati, Coordinate quali) {
  return Costruttore(rete, risultati, quali).Planimetria();
}

SistemaLibero EquazioniAltimetria(const Rete& rete, const Risultati& risultati) {
  return Costruttore(rete, risultati, Coordinate::Finali).Altimetria();
}

}  // namespace compensa

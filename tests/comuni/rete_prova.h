#pragma once

// Networks for the tests, the report they are written into, and the way into a job's private state.
//
// A .net file is text, one record a line, in the units of the host's records; "-" is a value that
// was not given, indices count from 0, a line that starts with "#" is a comment:
//   OPZ  SqmDistCost SqmDistProp SqmDir MaxIter TipoCalcolo Cartografiche
//   DSOR CorrCurvRifr CoeffRifr RaggioTerra
//   PT   name|Est Nord Quota TipoPla TipoAlt
//   ST   Punto AltStrum AltStrumNota EccDistanza EccDirezione
//   OS   Punto Direzione Zenit AltSegnale Distanza TipoDist        an observation of the last ST

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "kzt5cmrg.h"
#include "records/costanti.h"

// A network with the storage of its records. A copy is one of its own once Collega has run on it.
struct ReteProva {
  TOpzCr Opzioni{};
  CCalcDsOr DsOr{};
  std::vector<std::string> Nomi;  // at least one for each point
  std::vector<TCoorCr> Punti;
  std::vector<TStaCr> Stazioni;
  std::vector<std::vector<TOssCr>> Osservazioni;

  void Collega();  // makes the records refer to this network's own texts and observations
  // A copy asked for other adjustments; with iterazioni 0 the limit stays.
  ReteProva Con(int tipoCalcolo, int iterazioni = 0) const;
  // The same network with the plane coordinates that its own adjustment gives.
  ReteProva Compensata() const;
};

// Throws std::invalid_argument at the first word that is not a number.
ReteProva LeggiRete(const std::string& testo);
ReteProva CaricaRete(const std::string& nome);  // from reti/NAME.net
std::string LeggiFile(const std::string& percorso);

inline constexpr const char* kReti[] = {
    "altezze_strumentali", "barta12",      "baumann",         "benning82",
    "charamza218",         "fuori_centro", "gauss_boaga_est", "gauss_boaga_ovest",
    "ghilani14_5",         "ghilani16_2",  "ghilani_wolf",    "jezerka",
    "krumm_traverse1",     "niemeier",     "talapkova",       "zeman"};

// Random numbers that are the same with every standard library.
struct Caso {
  explicit Caso(unsigned seme) : Motore(seme) {}
  int Intero(int n) { return static_cast<int>(Motore() % static_cast<unsigned>(n)); }
  double Reale(double da, double a) { return da + (a - da) * Intero(1 << 30) / (1 << 30); }
  template <class T, int N>
  T Scelta(const T (&valori)[N]) {
    return valori[Intero(N)];
  }
  std::mt19937 Motore;
};

// A network of a kind that the seed picks: map zone or none, eccentric stations, every kind of
// distance or none at all, unknown instrument heights, curvature, blunders, or one station alone
// without redundancy; approximations 0.1 m off. It is determinable in plan; in height nearly one
// in four is not, mostly for want of equations.
ReteProva ReteCasuale(unsigned seme);

// The report as one string, Windows-1252, lines ended by '\n'. A value not given is written as "-".
struct RapportoProva : CFileOutTmp {
  std::string Testo;
  void ScriviStringa(TTestoCr t, int n) override { Testo += t, ScriviSpazi(n - int(t.size())); }
  void ScriviNumero(double valore, int larghezza, int decimali) override;
  void ScriviSpazi(int n) override { Testo.append(n > 0 ? n : 0, ' '); }
  void SaltaRiga(int n) override { Testo.append(n > 0 ? n : 0, '\n'); }
  void ScriviStringaLn(TTestoCr t, int n) override { ScriviStringa(t, n), SaltaRiga(1); }
  void ScriviNumeroLn(double v, int n, int d) override { ScriviNumero(v, n, d), SaltaRiga(1); }
};

struct VistaProva {
  TVettCr<TCoorCr> VistaPunti;
  TVettCr<TStaCr> VistaStazioni;
  RapportoProva Rapporto;
};

// One job over a network, its private operations and state laid open.
struct ProvaCalcolo : VistaProva, CalcCmpRigVelid1 {
  using C = CalcCmpRigVelid1;
  explicit ProvaCalcolo(ReteProva& rete, int ordineDenso = kzt5cmrg::kOrdineDenso)
      : VistaProva{(rete.Collega(), rete.Punti), rete.Stazioni, {}},
        C(&rete.Opzioni, &VistaPunti, &VistaStazioni, &rete.DsOr, &Rapporto, ordineDenso) {}
  bool Contiene(const std::string& testo) const { return Rapporto.Testo.find(testo) + 1 != 0; }
  // The whole number that follows a text of the report.
  int Numero(const std::string& testo) const {
    return std::stoi(Rapporto.Testo.substr(Rapporto.Testo.find(testo) + testo.size()));
  }

  using C::Angl2, C::CofattoreOsservazione, C::DistanzePresenti, C::ExZet, C::MinQua2;
  using C::CreaEquazZe, C::Statistica, C::StatoCalcolo, C::RisultatiPla;
  using C::Geogra, C::SubEllisse, C::Baarda, C::Cofattore, C::MaxEquaz;
  using C::SigmaZero, C::RaggioMedio, C::Input, C::CaricaTesto, C::AzzeraEquazioni, C::Tchol;
  using C::Sols, C::Inver, C::CreaEquazAng, C::CreaEquazDis, C::Anomalia, C::ExCentro, C::Gauss;
  using C::TermineNoto, C::Soluzione, C::Residui, C::Peso, C::Normale, C::Coeff, C::Indici;
};

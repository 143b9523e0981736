// Laws of a whole adjustment: what a change of the records that alters no measurement may change,
// and what every least-squares solution obeys whatever the network.

#include <gtest/gtest.h>

#include <complex>

#include "tests/comuni/rete_prova.h"

using namespace kzt5cmrg;

namespace {

using R = ReteProva&;
using Z = std::complex<double>;   // North + i East [m]
constexpr double kFattore = 2.5;  // on the standard deviations
constexpr double kGiroCerchio = 123.4567, kGiroAssi = 337.7;
constexpr double kChilometri = 1000;  // a metre becomes a kilometre
constexpr Z kOrigine(-1234.5, 67890.1);

// One adjustment of a network, in plan or in height.
struct Prova {
  Prova(const ReteProva& originale, int calcolo)
      : Rete(originale.Con(calcolo)), Job(Rete), Determinabile(Job.Esegui()) {
    Compensata = Job.Contiene("CORRETTE");
    if (Compensata) n = Job.Numero("N. Osservazioni"), u = Job.Numero("N. Incognite   ");
  }
  double Ridondanza(int r) const {
    return 1 - Job.Peso[r] *
                   Job.CofattoreOsservazione(Job.Coeff[r], Job.Indici[r], Job.Normale.Puntatori());
  }
  // In rising order, of the rows that the others control.
  std::vector<double> W() const {
    std::vector<double> tutti(n), w;
    Job.Baarda(Job.Peso.get(), Job.Coeff.Puntatori(), Job.Indici.Puntatori(),
               Job.Normale.Puntatori(), n, Job.Residui.get(), tutti.data(), Job.SigmaZero);
    for (int r = 0; r < n; ++r)
      if (Ridondanza(r) > 1e-3) w.push_back(tutti[r]);
    std::ranges::sort(w);
    return w;
  }
  ReteProva Rete;
  ProvaCalcolo Job;
  bool Determinabile, Compensata;
  int n = 0, u = 0;
};

template <class T>
void Mescola(std::vector<T>& v, int da, Caso& caso) {
  const int n = static_cast<int>(v.size());
  for (int i = da; i < n; ++i) std::swap(v[i], v[i + caso.Intero(n - i)]);
}

// Index of the reading that the angles of a station start from.
int Riferimento(R r, const std::vector<TOssCr>& giro) {
  const auto legge = [&](const TOssCr& o) {
    return Dato(o.Direzione) && r.Punti[o.Punto].TipoPla != kNonUsato;
  };
  return static_cast<int>(std::ranges::find_if(giro, legge) - giro.begin());
}

// A value of the circle changed, on every station and reading that has it.
void Cerchio(R r, double segno, double zero) {
  const auto cambia = [&](double& v) { v = Dato(v) ? segno * v + zero : v; };
  for (TStaCr& s : r.Stazioni) cambia(s.EccDirezione);
  for (auto& giro : r.Osservazioni)
    for (TOssCr& o : giro) cambia(o.Direzione);
}

void Specchia(R r, Caso& /*caso*/) {
  for (TCoorCr& p : r.Punti) p.Est = Dato(p.Est) ? -p.Est : p.Est;
  Cerchio(r, -1, 400);
}

void Muovi(R r, Z origine, double angolo, double scala = 1) {
  for (TCoorCr& p : r.Punti) {
    if (!Dato(p.Est) || !Dato(p.Nord)) continue;
    const Z z = (Z(p.Nord, p.Est) + origine) * std::polar(scala, angolo * kRadPerGon);
    p.Nord = z.real(), p.Est = z.imag();
  }
}

// What has a length of its own in the module: small eccentricities, instruments, the last step.
void SenzaLunghezzeProprie(R r) {
  r.Opzioni.MaxIter = 1;
  for (TStaCr& s : r.Stazioni) s.EccDistanza = s.EccDistanza > kSogliaEcc ? s.EccDistanza : 0;
  for (auto& giro : r.Osservazioni)
    for (TOssCr& o : giro)
      if (o.TipoDist == kInclinataTipo6 || o.TipoDist == kInclinataTipo7) o.TipoDist = kInclinata;
}

void Ingrandisci(R r, Caso& /*caso*/) {
  const auto lungo = [](double& v) { v = Dato(v) ? v * kChilometri : v; };
  Muovi(r, 0, 0, kChilometri);
  for (double* v : {&r.Opzioni.SqmDistCost, &r.DsOr.RaggioTerra}) lungo(*v);
  for (TCoorCr& p : r.Punti) lungo(p.Quota);
  for (TStaCr& s : r.Stazioni) lungo(s.AltStrum), lungo(s.EccDistanza);
  for (auto& giro : r.Osservazioni)
    for (TOssCr& o : giro) lungo(o.AltSegnale), lungo(o.Distanza);
}

void MenoPrecise(R r, Caso& /*caso*/) {
  for (double* sqm : {&r.Opzioni.SqmDistCost, &r.Opzioni.SqmDistProp, &r.Opzioni.SqmDir})
    *sqm *= kFattore;
}

// The numbers of the points drawn, and the order of the stations.
void Rinumera(R r, Caso& caso) {
  std::vector<int> vecchio(r.Punti.size()), nuovo(r.Punti.size());
  for (int i = 0; i < std::ssize(vecchio); ++i) vecchio[i] = i;
  Mescola(vecchio, 0, caso);
  const ReteProva prima = r;
  for (int i = 0; i < std::ssize(vecchio); ++i)
    nuovo[vecchio[i]] = i, r.Punti[i] = prima.Punti[vecchio[i]], r.Nomi[i] = prima.Nomi[vecchio[i]];
  const auto cambia = [&](int& p) { p = p < 0 ? p : nuovo[p]; };
  for (TStaCr& s : r.Stazioni) cambia(s.Punto);
  for (auto& giro : r.Osservazioni)
    for (TOssCr& o : giro) cambia(o.Punto);
  const int n = static_cast<int>(r.Stazioni.size());
  for (int i = 0; i < n; ++i) {
    const int j = i + caso.Intero(n - i);
    std::swap(r.Stazioni[i], r.Stazioni[j]), std::swap(r.Osservazioni[i], r.Osservazioni[j]);
  }
}

// One fixed, one unknown and not given.
void PuntiEstranei(R r, Caso& /*caso*/) {
  const TCoorCr& p = r.Punti[0];
  r.Nomi.resize(r.Punti.size()), r.Nomi.insert(r.Nomi.end(), {"estraneo", "ignoto"});
  r.Punti.push_back({{}, p.Est + 50, p.Nord + 50, 100, 0, kFisso, kFisso, 0, 0, 0});
  r.Punti.push_back({{}, kValoreMancante, 0, kValoreMancante, 0, 0, 0, 0, 0, 0});
}

// Two set-ups for one, the second with the reference reading again. In height an instrument whose
// height is unknown would become two unknowns: it stays whole.
void Dividi(R r, Caso& caso) {
  for (int s = static_cast<int>(r.Stazioni.size()) - 1; s >= 0; --s) {
    if (r.Opzioni.TipoCalcolo != kCalcoloPlanimetria && r.Stazioni[s].AltStrumNota == 0) continue;
    auto& giro = r.Osservazioni[s];
    const int rif = Riferimento(r, giro), n = static_cast<int>(giro.size());
    if (rif == n) continue;
    const int taglio = rif + 1 + caso.Intero(n - rif);
    std::vector<TOssCr> altro(giro.begin() + taglio, giro.end());
    altro.insert(altro.begin(), giro[rif]);
    altro[0].Zenit = altro[0].Distanza = kValoreMancante;
    giro.resize(taglio);
    r.Stazioni.push_back(TStaCr(r.Stazioni[s])), r.Osservazioni.push_back(altro);
  }
}

void MescolaLetture(R r, Caso& caso) {
  for (auto& giro : r.Osservazioni) Mescola(giro, Riferimento(r, giro) + 1, caso);
}

// Whole set-ups in plan; readings in height, where a set-up may bring an unknown.
void Raddoppia(R r, Caso& /*caso*/) {
  for (auto& giro : r.Osservazioni)
    if (r.Opzioni.TipoCalcolo == kCalcoloAltimetria)
      for (int k = static_cast<int>(giro.size()); k > 0; --k) giro.push_back(TOssCr(giro[k - 1]));
  if (r.Opzioni.TipoCalcolo == kCalcoloAltimetria) return;
  for (int s = static_cast<int>(r.Stazioni.size()); s > 0; --s)
    r.Stazioni.push_back(TStaCr(r.Stazioni[s - 1])),
        r.Osservazioni.push_back(std::vector(r.Osservazioni[s - 1]));
}

const struct Legge {
  const char* Nome;
  void (*Cambia)(ReteProva&, Caso&);
  bool Carta = true;   // holds on the map too, where the radius is that of the point last projected
  bool Ordine = true;  // the stations keep their places
  double Segno = 1, Giro = 0;  // what becomes of azimuths and orientations [gon]
  double Pesi = 1;             // what the weights are multiplied by
  int Volte = 1;               // how often every equation stands there
  double Assi = 0, Scala = 1;  // how far the network turns [gon], and how much it grows
  Z Origine = 0;               // what is added to its coordinates first
  bool UnPasso = false;        // holds of one step, for the largest correction depends on the axes
  Z Posto(const TCoorCr& p) const {
    return (Z(p.Nord, Segno * p.Est) + Origine) * std::polar(Scala, Assi * kRadPerGon);
  }
} kLeggi[] = {
    {"origin", [](R r, Caso&) { Muovi(r, kOrigine, 0); }, false, true, 1, 0, 1, 1, 0, 1, kOrigine},
    {"axes", [](R r, Caso&) { Muovi(r, 0, kGiroAssi); }, false, true, 1, 0, 1, 1, kGiroAssi, 1, 0,
     true},
    {"quarter turn", [](R r, Caso&) { Muovi(r, 0, 100); }, false, true, 1, 0, 1, 1, 100},
    {"kilometres for metres", Ingrandisci, false, true, 1, 0, 1, 1, 0, kChilometri, 0, true},
    {"numbers and order", Rinumera, false, false},
    {"mirror", Specchia, false, true, -1},
    {"standard deviations", MenoPrecise, true, true, 1, 0, 1 / (kFattore * kFattore)},
    {"points apart", PuntiEstranei},
    {"split set-ups", Dividi, false, false},
    {"readings shuffled", MescolaLetture, false},
    {"circle turned", [](R r, Caso&) { Cerchio(r, 1, kGiroCerchio); }, true, true, 1,
     -kGiroCerchio},
    {"all measured twice", Raddoppia, false, false, 1, 0, 2, 2}};

void Confronta(const Prova& una, const Prova& altra, const Legge& legge, bool pesate) {
  const double pesi = pesate ? legge.Pesi : 1;
  const double sigma = std::sqrt(pesi * (una.n - una.u) / (legge.Volte * una.n - una.u));
  EXPECT_EQ(altra.n, legge.Volte * una.n);
  EXPECT_EQ(altra.u, una.u);
  EXPECT_NEAR(altra.Job.SigmaZero / una.Job.SigmaZero / sigma, 1, 1e-6);
  for (const TCoorCr& q : altra.Rete.Punti) {
    SCOPED_TRACE(q.Nome);
    const auto p = std::ranges::find(una.Rete.Punti, q.Nome, &TCoorCr::Nome);
    const bool pianta = una.Rete.Opzioni.TipoCalcolo == kCalcoloPlanimetria;
    const int ruolo = p == una.Rete.Punti.end() ? kNonUsato : pianta ? p->TipoPla : p->TipoAlt;
    EXPECT_EQ(pianta ? q.TipoPla : q.TipoAlt, ruolo);
    if (ruolo != kCompensato) continue;
    EXPECT_NEAR(std::abs(Z(q.Nord, q.Est) - legge.Posto(*p)), 0, 1e-7 * legge.Scala);
    EXPECT_NEAR(q.Quota, Dato(p->Quota) ? p->Quota * legge.Scala : p->Quota, 1e-7 * legge.Scala);
    const double f = sigma / std::sqrt(pesi) * legge.Scala;
    EXPECT_NEAR(q.EllAsseMag, f * p->EllAsseMag, 1e-6 * f * p->EllAsseMag);
    EXPECT_NEAR(q.EllAsseMin, f * p->EllAsseMin, 1e-6 * f * p->EllAsseMag);
    if (std::remainder(legge.Assi, 100) != 0) continue;  // which variance is larger is not shown
    const double segno = legge.Assi == 0 ? legge.Segno : -legge.Segno;
    const double scarto = std::remainder(q.EllTeta - segno * p->EllTeta, 200);
    EXPECT_NEAR(scarto * (p->EllAsseMag - p->EllAsseMin), 0, 1e-4 * p->EllAsseMag);
  }
  for (std::size_t s = 0; legge.Ordine && s < una.Rete.Punti.size(); ++s) {
    if (s >= una.Rete.Stazioni.size() || una.Rete.Osservazioni[s].empty()) continue;
    const double prima = una.Rete.Punti[s].Orientamento, dopo = altra.Rete.Punti[s].Orientamento;
    if (prima == 0) continue;  // no direction is read there
    const double attesa = legge.Segno * prima + (legge.Giro + legge.Assi) * kRadPerGon;
    EXPECT_NEAR(std::remainder(dopo - attesa, kGiro), 0, 1e-9) << s;
  }
  if (legge.Volte > 1) return;
  const std::vector<double> w = una.W(), v = altra.W();
  ASSERT_EQ(w.size(), v.size());
  for (std::size_t k = 0; k < w.size(); ++k) EXPECT_NEAR(v[k], w[k], 1e-5 * (1 + w[k])) << k;
}

std::vector<ReteProva> TutteLeReti() {
  std::vector<ReteProva> reti;
  for (const char* nome : kReti) reti.push_back(CaricaRete(nome));
  for (unsigned seme = 0; seme < 24; ++seme) reti.push_back(ReteCasuale(seme));
  return reti;
}

TEST(Leggi, Cambiamenti) {
  int confronti = 0;
  const std::vector<ReteProva> reti = TutteLeReti();
  for (int k = 0; k < 2 * std::ssize(reti); ++k) {
    const int calcolo = k % 2 == 0 ? kCalcoloPlanimetria : kCalcoloAltimetria;
    const ReteProva& rete = reti[k / 2];
    ReteProva comune = rete;
    SenzaLunghezzeProprie(comune);
    const Prova intera(rete, calcolo), senza(comune, calcolo);
    for (const Legge& legge : kLeggi) {
      SCOPED_TRACE(legge.Nome + (", run " + std::to_string(k)));
      if (rete.Opzioni.Cartografiche != 0 && !legge.Carta) continue;
      Caso caso(k);
      const Prova& una = legge.UnPasso ? senza : intera;
      ReteProva cambiata = (legge.UnPasso ? comune : rete).Con(calcolo);
      legge.Cambia(cambiata, caso);
      const Prova altra(cambiata, calcolo);
      ASSERT_EQ(altra.Determinabile, una.Determinabile);
      ASSERT_TRUE(altra.Compensata == una.Compensata || legge.Volte > 1);
      if (!una.Compensata || una.n == una.u) continue;
      // Without distances all angles weigh 1; heights weigh by their sights alone.
      const bool pesate =
          calcolo == kCalcoloPlanimetria && una.Job.DistanzePresenti == kConDistanze;
      Confronta(una, altra, legge, pesate || legge.Volte > 1);
      ++confronti;
    }
  }
  EXPECT_GT(confronti, 550);
}

// A^t P v = 0, Q N = I, and the redundancies add up to n - u.
TEST(Leggi, MinimiQuadrati) {
  for (const ReteProva& rete : TutteLeReti())
    for (const int calcolo : {kCalcoloPlanimetria, kCalcoloAltimetria}) {
      SCOPED_TRACE(rete.Nomi[0] + std::to_string(rete.Punti[0].Nord));
      const Prova prova(rete, calcolo);
      const int n = prova.n, u = prova.u;
      if (!prova.Compensata || n == u) continue;
      std::vector<double> gradiente(u), scala(u), diagonale(u), identita(u * u);
      double ridondanza = 0;
      for (int r = 0; r < n; ridondanza += prova.Ridondanza(r), ++r)
        for (int k = 0; k < 36; ++k) {
          const int i = prova.Job.Indici[r][k / 6], j = prova.Job.Indici[r][k % 6];
          if (i < 0 || j < 0) continue;
          const double ap = prova.Job.Coeff[r][k / 6] * prova.Job.Peso[r];
          for (int m = 0; m < u; ++m)
            identita[m * u + j] += prova.Job.Cofattore(m, i) * ap * prova.Job.Coeff[r][k % 6];
          if (k / 6 != k % 6) continue;
          gradiente[i] += ap * prova.Job.Residui[r];
          scala[i] += std::abs(ap) * (std::abs(prova.Job.TermineNoto[r]) + prova.Job.SigmaZero);
          diagonale[i] += ap * prova.Job.Coeff[r][k % 6];
        }
      EXPECT_NEAR(ridondanza, n - u, 1e-7 * n);
      for (int i = 0; i < u; ++i) {
        EXPECT_NEAR(gradiente[i], 0, 1e-9 * scala[i]) << i;
        for (int j = 0; j < u; ++j) {
          const double unita = std::sqrt(prova.Job.Cofattore(i, i) * diagonale[j]);
          EXPECT_NEAR(identita[i * u + j], i == j, 1e-9 * unita) << i << ' ' << j;
        }
      }
    }
}

}  // namespace

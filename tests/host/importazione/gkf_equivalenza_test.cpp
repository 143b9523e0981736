// The elements of an exported .gkf file, adjusted here by a computation of their own, give what the
// program found: the file says the same as the network.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <map>
#include <numbers>
#include <regex>
#include <utility>

#include "host/base/numeri.h"
#include "host/calcolo/calcolo.h"
#include "host/calcolo/rapporto.h"
#include "host/file_rete/lettura_rete.h"
#include "host/uscite/gkf.h"
#include "tests/host/base/testo_prova.h"

using namespace compensa;

namespace {

// The elements of a file as any other program would take them: elements with their attributes.
using Elemento = std::map<std::string, std::string>;
std::vector<Elemento> Elementi(const std::string& testo) {
  std::vector<Elemento> elementi;
  const std::regex aperto("<([a-z-]+)((?: [a-z_-]+=\"[^\"]*\")*)/?>"),
      attributo("([a-z_-]+)=\"([^\"]*)\"");
  std::string da;
  for (std::sregex_iterator i(testo.begin(), testo.end(), aperto), fine; i != fine; ++i) {
    Elemento e{{"", (*i)[1]}};
    const std::string coda = (*i)[2];
    for (std::sregex_iterator a(coda.begin(), coda.end(), attributo); a != fine; ++a)
      e[(*a)[1]] = (*a)[2];
    if (e[""] == "obs") da = e["from"];
    e.try_emplace("from", da);
    elementi.push_back(e);
  }
  return elementi;
}

// Least squares over the elements alone, with dense normal equations: angles and distances by
// iteration (piano), or height differences.
class Ricalcolo {
 public:
  Ricalcolo(const std::vector<Elemento>& elementi, bool piano) : Piano(piano) {
    for (const Elemento& e : elementi) {
      const std::string& nome = e.at("");
      if (nome == "point") AggiungiPunto(e);
      if (piano ? nome == "angle" || nome == "distance" : nome == "dh") Osservazioni.push_back(e);
    }
    for (int giro = 0; giro < 6; ++giro) Passo();
  }
  int Ridondanza() const { return static_cast<int>(Osservazioni.size()) - Incognite; }
  double Valore(const std::string& punto, int asse) const { return Posti.at(punto)[asse]; }
  double Covarianza(const std::string& punto, int a, int b) const {
    return SigmaZero * SigmaZero * Inversa[Indici.at(punto) + a][Indici.at(punto) + b];
  }
  bool Cercato(const std::string& punto) const { return Indici.contains(punto); }
  double SigmaZero = 0;

 private:
  using Riga = std::vector<double>;
  void AggiungiPunto(const Elemento& e) {
    const auto leggi = [&](const char* asse) {
      return e.contains(asse) ? LeggiNumero(e.at(asse)).Valore : 0;
    };
    Posti[e.at("id")] = {leggi("x"), leggi("y"), leggi("z")};
    const bool cercato =
        e.contains("adj") && e.at("adj").find(Piano ? "xy" : "z") != std::string::npos;
    if (cercato) Indici[e.at("id")] = std::exchange(Incognite, Incognite + (Piano ? 2 : 1));
  }
  // Computed value in the unit of the standard deviation (cc, mm), its derivatives added to riga.
  double Calcola(const Elemento& e, Riga& riga) const {
    constexpr double kCc = 2e6 / std::numbers::pi;
    double calcolato = 0;
    const auto deriva = [&](const std::string& punto, std::initializer_list<double> valori) {
      if (const auto i = Indici.find(punto); i != Indici.end())
        for (std::size_t k = 0; k < valori.size(); ++k) riga[i->second + k] += valori.begin()[k];
    };
    const std::string& da = e.at("from");
    const auto visuale = [&](const std::string& a, double segno, bool angolo) {
      const double x = Valore(a, 0) - Valore(da, 0), y = Valore(a, 1) - Valore(da, 1),
                   s = std::hypot(x, y);
      calcolato += segno * (angolo ? std::atan2(x, y) * kCc : s * 1000);
      const double dx = angolo ? y / s / s * kCc * segno : x / s * 1000;
      const double dy = angolo ? -x / s / s * kCc * segno : y / s * 1000;
      deriva(a, {dx, dy}), deriva(da, {-dx, -dy});
    };
    if (e.at("") == "angle") visuale(e.at("fs"), 1, true), visuale(e.at("bs"), -1, true);
    if (e.at("") == "distance") visuale(e.at("to"), 1, false);
    if (e.at("") == "dh") {
      calcolato = (Valore(e.at("to"), 2) - Valore(da, 2)) * 1000;
      deriva(e.at("to"), {1000}), deriva(da, {-1000});
    }
    return calcolato;
  }
  void Passo() {
    std::vector<Riga> normale(Incognite, Riga(2 * Incognite + 1));
    double quadrati = 0;
    for (const Elemento& e : Osservazioni) {
      Riga riga(Incognite);
      const bool angolo = e.at("") == "angle";
      double l = LeggiNumero(e.at("val")).Valore * (angolo ? 1e4 : 1e3) - Calcola(e, riga);
      if (angolo) l = std::remainder(l, 4e6);
      const double p = 1 / std::pow(LeggiNumero(e.at("stdev")).Valore, 2);
      quadrati += p * l * l;
      for (int i = 0; i < Incognite; ++i) {
        for (int j = 0; j < Incognite; ++j) normale[i][j] += p * riga[i] * riga[j];
        normale[i].back() += p * riga[i] * l;
      }
    }
    for (int i = 0; i < Incognite; ++i) quadrati -= Riduci(normale, i);
    for (auto& [punto, i] : Indici)
      for (int k = 0; k < (Piano ? 2 : 1); ++k)
        Posti[punto][Piano ? k : 2] += normale[i + k].back();
    SigmaZero = std::sqrt(quadrati / Ridondanza());
    Inversa.assign(Incognite, {});
    for (int i = 0; i < Incognite; ++i)
      Inversa[i].assign(normale[i].begin() + Incognite, normale[i].end() - 1);
  }
  // Gauss and Jordan; returns the part of the squares that the unknown takes.
  double Riduci(std::vector<Riga>& n, int i) const {
    n[i][Incognite + i] += 1;
    const double tolti = n[i].back() * n[i].back() / n[i][i];
    const double perno = n[i][i];
    for (double& v : n[i]) v /= perno;
    for (int k = 0; k < Incognite; ++k)
      if (const double f = n[k][i]; k != i && f != 0)
        for (std::size_t j = 0; j < n[k].size(); ++j) n[k][j] -= f * n[i][j];
    return tolti;
  }

  bool Piano;
  int Incognite = 0;
  std::map<std::string, std::array<double, 3>> Posti;
  std::map<std::string, int> Indici;
  std::vector<Elemento> Osservazioni;
  std::vector<Riga> Inversa;
};

// What the exported elements give by themselves is what the program found: coordinates, heights,
// their covariances, sigma zero. Without distances the angles weigh alike; one of the networks is
// asked for heights alone.
TEST(Gkf, EquivalenteRicalcolato) {
  const std::tuple<const char*, int, bool> casi[] = {{"zeman", 3, true},
                                                     {"gauss_boaga_ovest", 3, true},
                                                     {"fuori_centro", 3, true},
                                                     {"altezze_strumentali", 3, true},
                                                     {"stazione_libera", 3, true},
                                                     {"ghilani_wolf", 1, true},
                                                     {"gauss_boaga_ovest", 1, false},
                                                     {"altezze_strumentali", 2, true}};
  for (const auto& [nome, calcolo, distanze] : casi) {
    SCOPED_TRACE(nome);
    Diagnostica diagnostica;
    Rete rete = LeggiRete(std::string(CARTELLA_ESEMPI "/") + nome + ".toml", diagnostica).value();
    rete.Opzioni.TipoCalcolo = calcolo;
    if (!distanze)
      for (auto& letture : rete.Osservazioni)
        for (TOssCr& o : letture) o.Distanza = 2 * kNonDato;
    Rapporto rapporto;
    const Risultati r = Compensa(rete, rapporto);
    ASSERT_TRUE(TutteRiuscite(r));
    const auto elementi = Elementi(Testo(ScriviGkf, Documento{r, {}, {}, {}, {}, {}}));
    int confrontati = 0;
    for (const bool piano : {true, false}) {
      const RisultatoCompensazione& c = piano ? r.Planimetria : r.Altimetria;
      if (c.Fine == Esito::NonRichiesta) continue;
      const Ricalcolo ricalcolo(elementi, piano);
      ASSERT_EQ(ricalcolo.Ridondanza(), c.Ridondanza());
      const double unita =
          piano ? (distanze ? 1 : c.SigmaZeroRapporto / ricalcolo.SigmaZero) : 1e-3;
      EXPECT_NEAR(ricalcolo.SigmaZero * unita / c.SigmaZeroRapporto, 1, 1e-4);
      for (const RisultatoPunto& p : r.Punti) {
        const auto vicini = [&](int asse, double atteso, double sqm) {
          EXPECT_NEAR(ricalcolo.Valore(p.Nome, asse), atteso, 1e-5) << p.Nome << ' ' << asse;
          const int k = piano ? asse : 0;
          EXPECT_NEAR(std::sqrt(ricalcolo.Covarianza(p.Nome, k, k)), sqm, 1e-3 * sqm) << p.Nome;
          ++confrontati;
        };
        ASSERT_EQ(ricalcolo.Cercato(p.Nome), (piano ? p.Ruoli.Pla : p.Ruoli.Alt) == kCompensato);
        if (!ricalcolo.Cercato(p.Nome)) continue;
        if (!piano) vicini(2, p.Quota, p.SqmQuota);
        if (!piano) continue;
        vicini(0, p.Est, p.SqmEst), vicini(1, p.Nord, p.SqmNord);
        EXPECT_NEAR(ricalcolo.Covarianza(p.Nome, 0, 1), p.Covarianza, 1e-3 * p.SqmEst * p.SqmNord);
      }
    }
    EXPECT_GE(confrontati, 3);
    for (std::size_t i = 0; i < r.Stazioni.size(); ++i) {
      const RisultatoStazione& s = r.Stazioni[i];
      if (!Presente(s.AltStrumCompensata)) continue;
      const std::string punto = r.Punti[s.Punto].Nome;
      const std::string asse = punto + " (strumento " + std::to_string(i + 1) + ")";
      const Ricalcolo quote(elementi, false);
      EXPECT_NEAR(quote.Valore(asse, 2) - quote.Valore(punto, 2), s.AltStrumCompensata, 1e-5);
    }
  }
}

}  // namespace

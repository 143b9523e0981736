// .gkf files: what the elements mean, and what comes back of a network that was written to one.

#include "host/uscite/gkf.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <map>
#include <numbers>
#include <regex>
#include <utility>

#include "host/calcolo.h"
#include "host/importazione/lettore.h"
#include "host/json.h"
#include "host/lettura_rete.h"
#include "host/numeri.h"
#include "host/rapporto.h"
#include "host/testo_file.h"

namespace {

struct Esame {
  Libretto Libro;
  std::string Messaggi;
};

Esame Leggi(const std::string& testo, bool ignora = false) {
  Esame esame;
  Diagnostica diagnostica;
  OpzioniLettura opzioni;
  opzioni.IgnoraNonSupportati = ignora;
  kLettoreGkf.Leggi(testo, "prova.gkf", opzioni, esame.Libro, diagnostica);
  for (const std::string& riga : diagnostica.Righe()) esame.Messaggi += riga + "\n";
  return esame;
}

std::string File(const std::string& rete, const std::string& osservazioni) {
  return "<gama-local><network " + rete + "><points-observations>\n" + osservazioni +
         "</points-observations></network></gama-local>";
}

std::string Numeri(std::initializer_list<std::optional<double>> valori) {
  std::string testo;
  for (const auto& v : valori) testo += " " + (v && Assegnato(*v) ? NumeroBreve(*v) : "-");
  return testo;
}

// Set-ups as "A height known: target direction zenith distance/kind height;".
std::string Stazioni(const Libretto& libro) {
  std::string t;
  for (const PostazioneLibretto& s : libro.Postazioni) {
    t += s.Punto + Numeri({s.Altezza, s.AltezzaNota}) + ":";
    for (const BattutaLibretto& b : s.Battute)
      t += " " + b.Punto + Numeri({b.Direzione, b.Zenit, b.Distanza}) + "/" +
           std::to_string(b.TipoDist) + Numeri({b.Segnale}) + ";";
  }
  return t;
}

// A book as the results of a network that was not adjusted.
Risultati ComeRisultati(const Libretto& l) {
  Risultati r;
  const OpzioniLibretto& o = l.Opzioni;
  const auto n = [](std::optional<double> v) { return v.value_or(kAssente); };
  std::map<std::string, int> indice;
  r.DatiProgetto = l.DatiProgetto;
  r.Opzioni = {o.SqmDistCostante.value_or(0), o.SqmDistProporzionale.value_or(0),
               o.SqmDirezione.value_or(0),    o.Iterazioni.value(),
               o.TipoCalcolo.value(),         o.Cartografiche.value()};
  r.CurvaturaRifrazione = o.CurvaturaRifrazione.value();
  for (const PuntoLibretto& p : l.Punti) {
    indice.try_emplace(p.Nome, static_cast<int>(indice.size()));
    r.Punti.push_back({p.Nome,
                       n(p.Est),
                       n(p.Nord),
                       n(p.Quota),
                       n(p.Est),
                       n(p.Nord),
                       n(p.Quota),
                       {*p.Ruoli.Pla, *p.Ruoli.Alt},
                       {*p.Ruoli.Pla, *p.Ruoli.Alt}});
  }
  for (const PostazioneLibretto& s : l.Postazioni) {
    r.Stazioni.push_back({indice.at(s.Punto),
                          n(s.Altezza),
                          s.AltezzaNota,
                          kAssente,
                          kAssente,
                          s.EccDistanza.value_or(0),
                          s.EccDirezione.value_or(0),
                          kAssente,
                          {}});
    for (const BattutaLibretto& b : s.Battute)
      r.Stazioni.back().Osservazioni.push_back({indice.at(b.Punto), n(b.Direzione), n(b.Zenit),
                                                n(b.Segnale), n(b.Distanza), b.TipoDist});
  }
  return r;
}

std::string Testo(auto scrivi, const auto& che) {
  std::string testo;
  scrivi(che, [&](std::string_view pezzo) { testo += pezzo; });
  return testo;
}

TEST(Gkf, Campione) {
  Diagnostica diagnostica;
  const auto campione =
      LeggiTesto(CARTELLA_DATI "/campione.gkf", 1 << 20, {}, "", diagnostica).value();
  EXPECT_TRUE(kLettoreGkf.Riconosce(campione));
  const Esame e = Leggi(campione);
  EXPECT_EQ(Stazioni(e.Libro),
            "A 1.55 1: B 10 98.9688 250.0328/1 1.6; C 88.4 100.618 180.2861/1 1.3;");
  EXPECT_EQ(e.Libro.DatiProgetto.Nome, "prova");
  const auto& battute = e.Libro.Postazioni[0].Battute;
  EXPECT_NEAR(*battute[0].SqmDirezione, 6e-4 * std::sqrt(2), 1e-12);
  EXPECT_NEAR(*battute[1].SqmDirezione, 1.9 / 3240 * std::sqrt(2), 1e-12);
  EXPECT_EQ(Numeri({e.Libro.Opzioni.SqmDistCostante, e.Libro.Opzioni.SqmDistProporzionale}),
            " 0.002 0.002");
  EXPECT_NE(e.Messaggi.find("3:1: avviso: scarti quadratici medi"), std::string::npos);
  for (std::size_t n = 0; n < campione.size() - 10; n += 7)  // a file cut short is told so
    EXPECT_NE(Leggi(campione.substr(0, n)).Messaggi.find(": errore: "), std::string::npos) << n;
}

TEST(Gkf, Punti) {
  const std::tuple<const char*, const char*, const char*> casi[] = {
      {"", "", " 2 1 2 2"},
      {"axes-xy='ne'", "fix='xyz'", " 2 1 1 1"},
      {"axes-xy='en'", "fix='z' adj='xy'", " 1 2 0 1"},
      {"axes-xy='sw'", "fix='xy' adj='xyz'", " -2 -1 1 0"},
      {"axes-xy='es'", "adj='XYz'", " 1 -2 0 0"},
      {"axes-xy='wn'", "adj='Z'", " -1 2 2 0"}};
  for (const auto& [assi, ruoli, atteso] : casi) {
    const Esame e = Leggi(File(assi, "<point id='P' x='1' y='2' " + std::string(ruoli) + "/>"));
    const PuntoLibretto& p = e.Libro.Punti.at(0);
    EXPECT_EQ(Numeri({p.Est, p.Nord, p.Ruoli.Pla, p.Ruoli.Alt}), atteso);
    const bool vincolo = std::string_view(ruoli).find_first_of("XYZ") != std::string_view::npos;
    EXPECT_EQ(e.Messaggi.find("rete libera") != std::string::npos, vincolo) << e.Messaggi;
  }
}

TEST(Gkf, Visuali) {
  const std::string dz = "<direction to='B' val='399.5'/><z-angle to='B' val='99' to_dh='1.5'/>";
  const std::string angoli =
      "<angle bs='B' fs='C' val='90-00-00'/><angle bs='B' fs='D' val='7'/><angle bs='C' fs='B' "
      "val='5'/>";
  const std::tuple<const char*, std::string, const char*> casi[] = {
      {"", dz + "<s-distance to='B' val='50' to_dh='1.3'/>",
       "A 0 1: B 399.5 99 -/1 1.5; B - - 50/1 1.3;"},
      {"", dz + dz + "<distance to='B' val='50'/>",
       "A 0 1: B 399.5 99 50/0 1.5; B 399.5 99 -/1 1.5;"},
      {"", dz + "<z-angle to='B' val='98' from_dh='1.7' to_dh='0'/>",
       "A 0 1: B 399.5 99 -/1 1.5;A 1.7 1: B - 98 -/1 0;"},
      {"", "<distance from='C' to='B' val='50'/><direction to='B' val='-1'/>",
       "A 0 1: B 399 - -/1 -;C 0 1: B - 100 50/0 -;"},
      {"", angoli,
       "A 0 1: B 0 - -/1 -; C 100 - -/1 -; D 7 - -/1 -;A 0 1: C 0 - -/1 -; B 5 - -/1 -;"},
      {"angles='right-handed'", angoli,
       "A 0 1: B 0 - -/1 -; C 300 - -/1 -; D 393 - -/1 -;A 0 1: C 0 - -/1 -; B 395 - -/1 -;"}};
  for (const auto& [rete, obs, attese] : casi)
    EXPECT_EQ(Stazioni(Leggi(File(rete, "<obs from='A'>" + obs + "</obs>")).Libro), attese);
  const Esame m = Leggi(File("",
                             "<obs from='A'><direction to='B' val='1' stdev='7'/><distance to='B' "
                             "val='9'/><cov-mat dim='2' band='1'>9 1 16</cov-mat></obs>"));
  EXPECT_NEAR(*m.Libro.Postazioni[0].Battute[0].SqmDirezione, 3e-4 * std::sqrt(2), 1e-12);
  EXPECT_NEAR(*m.Libro.Postazioni[0].Battute[0].SqmDistanza, 0.004, 1e-12);
  EXPECT_NE(m.Messaggi.find("correlazioni"), std::string::npos);
}

TEST(Gkf, Rifiuti) {
  const std::string az = "<obs from='A'>\n<azimuth to='B' val='1'/><azimuth to='C' val='2'/></obs>";
  const std::tuple<std::string, const char*> casi[] = {
      {File("", az), "prova.gkf:3:1: errore: <azimuth>: .*azimut \\(2 volte"},
      {File("", "<height-differences><dh/><dh/></height-differences>"), ":2:1: errore: .*2 volte"},
      {File("", "<obs from='A'>\n <direction to='è' val='10,5'/></obs>"),
       ":3:25: errore: .*10,5.*punto"},
      {File("", "<obs from='A'><direction to='B' val='1-60-0'/></obs>"), ":2:38: errore: .*1-60-0"},
      {File("", "<obs from='A'><z-angle to='B' val='401'/></obs>"), ":2:36: errore: .*0 a 400"},
      {File("", "<obs from='A'><cov-mat dim='1' band='0'>1</cov-mat></obs>"), ":2:29: errore"},
      {File("axes-xy='xy'", ""), ":1:31: errore: .*assi sconosciuti"},
      {File("", "<obs from='A'><drection to='B' val='4'/></obs>"),
       ":2:15: avviso: .*\"direction\""},
      {File("", "<point id='P' w='1'/>\n<point id='Q' adj='xw'/>"), ":3:20: errore: .*adj: parola"},
      {"<gama-local>\r\n<network>\r\n <obs></network></gama-local>",
       ":3:[0-9]+: errore: XML: un elemento"},
      {"", ":1:1: errore: XML"}};
  for (const auto& [testo, attesi] : casi) {
    const std::string messaggi = Leggi(testo).Messaggi;
    EXPECT_TRUE(std::regex_search(messaggi, std::regex(attesi))) << attesi << "\n" << messaggi;
  }
  const Esame ignorati = Leggi(File("", az), true);
  EXPECT_EQ(ignorati.Messaggi.find("errore"), std::string::npos) << ignorati.Messaggi;
  EXPECT_EQ(ignorati.Libro.Esclusi.at(0).Quanti, 2);
}

void ProvaAndataRitorno(Rete& rete, bool compensata) {
  rete.Nomi[0] += "<&\"'>?>";
  rete.Punti[1].Est += 1.0 / 3;
  rete.DatiProgetto.Nome += "\n--è";
  Risultati esiti = RisultatiIniziali(rete);
  esiti.File.clear();
  esiti.Planimetria.Fine = esiti.Altimetria.Fine = Esito::NonRichiesta;
  const std::string attesi = Testo(ScriviJson, esiti);
  Rapporto rapporto;
  if (compensata) esiti = Compensa(rete, rapporto);
  std::string testo = Testo(ScriviGkf, Documento{esiti, {}, {}, {}, {}, {}});
  const Esame e = Leggi(testo);
  EXPECT_EQ(e.Messaggi, "");
  EXPECT_EQ(Testo(ScriviJson, ComeRisultati(e.Libro)), attesi);
  // Edited by hand, the elements count: they give the standard deviations back.
  const std::size_t cifra = testo.find(" val=\"") + 6;
  testo[cifra] = testo[cifra] == '1' ? '2' : '1';
  const Esame m = Leggi(testo, true);
  EXPECT_NE(m.Messaggi.find("è stato modificato"), std::string::npos);
  EXPECT_EQ(m.Messaggi.find("errore"), std::string::npos) << m.Messaggi;
  EXPECT_NEAR(*m.Libro.Opzioni.SqmDirezione, rete.Opzioni.SqmDir, 1e-8);
  const double prop = compensata ? rete.Opzioni.SqmDistProp : 0;
  EXPECT_GE(m.Libro.Opzioni.SqmDistProporzionale.value_or(0), prop - 1e-6);
}

TEST(Gkf, AndataRitorno) {
  for (const char* nome : {"altezze_strumentali", "fuori_centro", "gauss_boaga_ovest",
                           "ghilani_wolf", "stazione_libera", "zeman"})
    for (const bool compensata : {true, false}) {
      SCOPED_TRACE(nome);
      Diagnostica diagnostica;
      auto rete = LeggiRete(std::string(CARTELLA_ESEMPI "/") + nome + ".toml", diagnostica);
      ProvaAndataRitorno(*rete, compensata);
    }
}

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

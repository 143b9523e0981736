// One run, many outputs: tables, JSON, GIS package, drawing and page are read back and must tell
// the numbers of the model; those of the model are computed again from readings and coordinates.

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <numbers>
#include <regex>

#include "host/base/numeri.h"
#include "host/calcolo/calcolo.h"
#include "host/calcolo/rapporto.h"
#include "host/file_rete/lettura_rete.h"
#include "host/rete/grandezze.h"
#include "host/rete/statistica.h"
#include "host/uscite/gis/gpkg.h"
#include "host/uscite/html/html.h"
#include "host/uscite/json.h"
#include "host/uscite/tabelle_csv.h"

using namespace compensa;

namespace {

using Riga = std::map<std::string, std::string>;  // by column
using Tavola = std::vector<Riga>;
const std::string kNomeDifficile = "a;\"b\" <i>&'c'|\\ \u00e8=1";

// How a network is changed before it is adjusted.
struct CasoRete {
  const char *Nome, *Esempio;
  void (*Cambia)(Rete&);
  Esito Pla, Alt;
};
const CasoRete kCasi[] = {
    {"plane", "zeman", [](Rete&) {}, Esito::Riuscita, Esito::Riuscita},
    {"map", "gauss_boaga_ovest", [](Rete&) {}, Esito::Riuscita, Esito::Riuscita},
    {"instrument heights", "altezze_strumentali", [](Rete&) {}, Esito::Riuscita, Esito::Riuscita},
    {"heights only", "zeman", [](Rete& r) { r.Opzioni.TipoCalcolo = kCalcoloAltimetria; },
     Esito::NonRichiesta, Esito::Riuscita},
    {"one step", "zeman", [](Rete& r) { r.Opzioni.MaxIter = 1; }, Esito::NonConvergente,
     Esito::Riuscita},
    {"no redundancy", "stazione_libera",
     [](Rete& r) {
       r.Osservazioni[0].resize(2);
       r.Osservazioni[0][1].Distanza = 2 * kNonDato;
       r.Stazioni[0].Osservazioni = r.Osservazioni[0];
       r.Opzioni.TipoCalcolo = kCalcoloPlanimetria;
     },
     Esito::Riuscita, Esito::NonRichiesta},
    {"no fixed point", "zeman",
     [](Rete& r) {
       for (std::size_t i = 0; i < r.Punti.size(); ++i)
         r.Punti[i].TipoPla = r.RuoliIniziali[i].Pla = kIncognito;
     },
     Esito::PuntiFissiInsufficienti, Esito::Riuscita},
};

Risultati Calcola(const CasoRete& caso) {
  Diagnostica diario;
  Rete rete = LeggiRete(CARTELLA_ESEMPI "/" + std::string(caso.Esempio) + ".toml", diario).value();
  rete.Nomi[3] = kNomeDifficile;
  caso.Cambia(rete);
  Rapporto rapporto;
  return Compensa(rete, rapporto);
}

template <class Fa>
std::string Byte(Fa fa) {
  std::string byte;
  fa([&](std::string_view pezzo) { byte += pezzo; });
  return byte;
}

// A decimal comma reads as a point; what does not exist is empty, "-" or null.
double Numero(const Riga& riga, const std::string& colonna) {
  const std::string& testo = riga.at(colonna);
  if (testo.empty() || testo == "-") return kAssente;
  const NumeroLetto letto = LeggiNumero(testo, true);
  EXPECT_EQ(letto.Esito, EsitoNumero::Valido) << colonna << ": " << testo;
  return letto.Valore;
}

void Uguali(double trovato, double atteso, double tolleranza, const std::string& dove) {
  EXPECT_EQ(Presente(trovato), Presente(atteso)) << dove;
  if (Presente(atteso)) {
    EXPECT_NEAR(trovato, atteso, tolleranza) << dove;
  }
}

Tavola LeggiCsv(const std::string& testo) {
  EXPECT_TRUE(testo.starts_with("\xEF\xBB\xBF"));
  std::vector<std::vector<std::string>> righe{{""}};
  bool citato = false;
  for (std::size_t i = 3; i < testo.size(); ++i) {
    const char c = testo[i];
    std::string& campo = righe.back().back();
    if (c == '"' && citato && testo[i + 1] == '"')
      campo += testo[++i];
    else if (c == '"')
      citato = !citato;
    else if (c == ';' && !citato)
      righe.back().emplace_back();
    else if (c == '\n' && !citato)
      campo.pop_back(), righe.push_back({""});
    else
      campo += c;
  }
  Tavola tavola;
  for (std::size_t i = 1; i + 1 < righe.size(); ++i) {
    EXPECT_EQ(righe[i].size(), righe[0].size());
    for (std::size_t k = 0; k < righe[0].size(); ++k)
      (k == 0 ? tavola.emplace_back() : tavola.back())[righe[0][k]] = righe[i][k];
  }
  return tavola;
}

// The table of the page with that identifier, its columns by titles without markup.
Tavola LeggiHtml(const std::string& pagina, const std::string& chiave) {
  Tavola tavola;
  const auto inizio = pagina.find("<section class=\"tabella\" id=\"" + chiave + "\"");
  if (inizio == std::string::npos) return tavola;
  const std::string tabella = pagina.substr(inizio, pagina.find("</table>", inizio) - inizio);
  const auto pulito = [](std::string testo) {
    testo = std::regex_replace(testo, std::regex("<[^>]*>|\n"), "");
    for (const auto& [segno, carattere] :
         {std::pair("&lt;", "<"), {"&gt;", ">"}, {"&quot;", "\""}, {"&#39;", "'"}, {"&amp;", "&"}})
      testo = std::regex_replace(testo, std::regex(segno), carattere);
    return testo;
  };
  const auto pezzi = [](const std::string& testo, const char* segno) {
    const std::regex separatore("<" + std::string(segno) + "[^>]*>");
    std::vector<std::string> v(
        std::sregex_token_iterator(testo.begin(), testo.end(), separatore, -1), {});
    return v.erase(v.begin()), v;
  };
  const auto titoli = pezzi(tabella.substr(0, tabella.find("</thead>")), "th ");
  for (const std::string& riga : pezzi(tabella.substr(tabella.find("<tbody>")), "tr")) {
    const auto celle = pezzi(riga, "td");
    EXPECT_EQ(celle.size(), titoli.size());
    Riga& nuova = tavola.emplace_back();
    for (std::size_t k = 0; k < celle.size(); ++k) nuova[pulito(titoli[k])] = pulito(celle[k]);
  }
  return tavola;
}

Tavola LeggiSql(const std::string& byte, const std::string& domanda) {
  const std::string file = testing::TempDir() + "concordanza" + std::to_string(getpid()) + ".gpkg";
  std::ofstream(file, std::ios::binary) << byte;
  sqlite3* db = nullptr;
  sqlite3_open(file.c_str(), &db);
  Tavola tavola;
  const auto riga = [](void* dove, int n, char** valori, char** nomi) {
    Riga& nuova = static_cast<Tavola*>(dove)->emplace_back();
    for (int i = 0; i < n; ++i) nuova[nomi[i]] = valori[i] ? valori[i] : "";
    return 0;
  };
  EXPECT_EQ(sqlite3_exec(db, domanda.c_str(), riga, &tavola, nullptr), SQLITE_OK);
  sqlite3_close(db);
  return tavola;
}

// A quantity of a point in every output: the model's, and column and decimals elsewhere.
struct Grandezza {
  double (*Modello)(const RisultatoPunto&);
  const char* Json;
  const char* Csv;
  double Scala, PassoCsv;
  const char* Gpkg;
  const char* Html;
  double PassoHtml;
};
using P = RisultatoPunto;
constexpr Grandezza kGrandezze[] = {
    {[](const P& p) { return p.Est; }, "/est", "est_m", 1, 1e-4, "est", "Est [m]", 1e-4},
    {[](const P& p) { return p.Nord; }, "/nord", "nord_m", 1, 1e-4, "nord", "Nord [m]", 1e-4},
    {[](const P& p) { return p.Quota; }, "/quota", "quota_m", 1, 1e-4, "quota", "Quota [m]", 1e-4},
    {[](const P& p) { return p.SqmEst; }, "/sqm_est", "sqm_est_a_posteriori_1sigma_mm", 1e3, .01,
     "sqm_e_mm", "s.q.m. E [mm]", .1},
    {[](const P& p) { return p.SqmNord; }, "/sqm_nord", "sqm_nord_a_posteriori_1sigma_mm", 1e3, .01,
     "sqm_n_mm", "s.q.m. N [mm]", .1},
    {[](const P& p) { return p.SqmQuota; }, "/sqm_quota", "sqm_quota_a_posteriori_1sigma_mm", 1e3,
     .01, "sqm_q_mm", "s.q.m. Q [mm]", .1},
    {[](const P& p) { return p.EllAsseMag; }, "/ellisse/semiasse_maggiore",
     "ellisse_a_a_posteriori_1sigma_mm", 1e3, .01, "a_mm", "a [mm]", .1},
    {[](const P& p) { return p.EllAsseMin; }, "/ellisse/semiasse_minore",
     "ellisse_b_a_posteriori_1sigma_mm", 1e3, .01, "b_mm", "b [mm]", .1},
    {[](const P& p) { return p.EllAzimut; }, "/ellisse/azimut",
     "ellisse_azimut_asse_a_da_nord_orario_gon", 1, 1e-5, "az_gon", "Azimut di a [gon]", 1e-4},
};

double NumeroJson(const nlohmann::json& dove, const std::string& puntatore) {
  const nlohmann::json::json_pointer qui(puntatore);
  return dove.contains(qui) && dove[qui].is_number() ? dove[qui].get<double>() : kAssente;
}

// Half a unit of the last digit, and what the digits of a double leave.
constexpr double kMezzo = 0.5 + 1e-6, kDoppio = 1e-9;

struct Concordanza : testing::TestWithParam<CasoRete> {
  const Risultati R = Calcola(GetParam());
  const Documento D{R, "", {}, {}, "05/03/2024 17:45", {{"d/r.toml", "0a1"}, {"d/p.csv", "2b3"}}};
  const nlohmann::json J = nlohmann::json::parse(Byte([&](auto s) { ScriviJson(R, s); }));
  const std::string Pagina = Byte([&](auto s) { ScriviHtml(D, s); });
  const std::string Gpkg = Byte([&](auto s) { ScriviGeoPackage(D, s); });
};

TEST_P(Concordanza, Punti) {
  ASSERT_EQ(std::pair(R.Planimetria.Fine, R.Altimetria.Fine),
            std::pair(GetParam().Pla, GetParam().Alt));
  const Tavola csv = LeggiCsv(Byte([&](auto s) { ScriviPuntiCsv(D, Decimali::Virgola, s); }));
  const Tavola gpkg = LeggiSql(Gpkg, "SELECT * FROM punti ORDER BY fid");
  std::map<std::string, Riga> html;
  for (const char* tabella : {"fissi", "altri", "compensati"})
    for (const Riga& riga : LeggiHtml(Pagina, tabella))
      html[riga.at("Punto")].insert(riga.begin(), riga.end());
  ASSERT_EQ(csv.size(), R.Punti.size());
  ASSERT_EQ(gpkg.size(), R.Punti.size());
  ASSERT_EQ(html.size(), R.Punti.size());
  for (std::size_t i = 0; i < R.Punti.size(); ++i) {
    const RisultatoPunto& p = R.Punti[i];
    for (const std::string& nome :
         {csv[i].at("nome"), gpkg[i].at("nome"), J["punti"][i]["nome"].get<std::string>()})
      EXPECT_EQ(nome, p.Nome);
    const Riga& riga = html.at(p.Nome);
    for (const Grandezza& g : kGrandezze) {
      const double valore = g.Modello(p);
      const std::string dove = p.Nome + ' ' + g.Gpkg;
      Uguali(NumeroJson(J["punti"][i], g.Json), valore, 0, dove);
      Uguali(Numero(csv[i], g.Csv), valore * g.Scala, g.PassoCsv * kMezzo, dove);
      Uguali(Numero(gpkg[i], g.Gpkg), valore * g.Scala, kDoppio * std::abs(valore), dove);
      if (riga.contains(g.Html))
        Uguali(Numero(riga, g.Html), valore * g.Scala, g.PassoHtml * kMezzo, dove);
      else
        EXPECT_TRUE(!Presente(valore) || p.Ruoli.Pla != kCompensato) << dove;
    }
    for (const auto& [json, colonna, ruolo] :
         {std::tuple("planimetria", "Planimetria", p.Ruoli.Pla),
          {"altimetria", "Altimetria", p.Ruoli.Alt}})
      for (const std::string& parola : {J["punti"][i][json].get<std::string>(), riga.at(colonna),
                                        gpkg[i].at(json), csv[i].at("ruolo_" + std::string(json))})
        EXPECT_EQ(parola, NomeRuolo(ruolo)) << p.Nome;
    Uguali(Numero(csv[i], "ellisse_a_a_posteriori_95_percento_mm"),
           p.EllAsseMag * 1e3 *
               FattoreEllisse(
                   .95, std::max(R.Planimetria.Contate() ? R.Planimetria.Ridondanza() : 0, 0)),
           .01 * kMezzo, p.Nome);
    if (!Presente(p.Covarianza)) continue;
    // Along its azimuth, clockwise from North, the covariance has the semi-major axis.
    const double t = p.EllAzimut * std::numbers::pi / 200, s = std::sin(t), c = std::cos(t);
    const double ee = p.SqmEst * p.SqmEst, nn = p.SqmNord * p.SqmNord, a = p.EllAsseMag,
                 b = p.EllAsseMin;
    EXPECT_NEAR(s * s * ee + 2 * s * c * p.Covarianza + c * c * nn, a * a, 1e-9 * a * a);
    EXPECT_NEAR(c * c * ee - 2 * s * c * p.Covarianza + s * s * nn, b * b, 1e-9 * a * a);
  }
}

// The residual that a reading leaves, observed minus adjusted: from what the file gives and the
// adjusted points alone, in a network without reductions to a map and without eccentric stations.
double ResiduoDaLetture(const Risultati& r, const RisultatoStazione& s, const Equazione& e) {
  constexpr double kRad = std::numbers::pi / 200;
  const RisultatoOsservazione& o = s.Osservazioni[e.Osservazione];
  const RisultatoPunto &p = r.Punti[s.Punto], &t = r.Punti[o.Punto];
  const auto azimut = [&](const RisultatoPunto& a) {  // from North, clockwise
    return std::atan2(a.Est - p.Est, a.Nord - p.Nord) / kRad;
  };
  if (e.Tipo == TipoEquazione::Angolo) {
    const RisultatoOsservazione& riferimento = s.Osservazioni[e.Riferimento];
    const double letto = o.Direzione - riferimento.Direzione;
    return std::remainder(letto - azimut(t) + azimut(r.Punti[riferimento.Punto]), 400);
  }
  const bool inclinata = o.TipoDist == kInclinata;
  const double piana = o.Distanza * (inclinata ? std::sin(o.Zenit * kRad) : 1);
  if (e.Tipo == TipoEquazione::Distanza) return piana - std::hypot(t.Est - p.Est, t.Nord - p.Nord);
  const double hs = s.AltStrumNota ? s.AltStrum : s.AltStrumCompensata;
  return hs + piana / std::tan(o.Zenit * kRad) - o.AltSegnale - (t.Quota - p.Quota);
}

struct Genere {
  TipoEquazione Tipo;
  int RisultatoOsservazione::*Indice;
  const char *Csv, *UnitaCsv, *Html, *UnitaHtml;
  double ScalaHtml;
};
constexpr Genere kGeneri[] = {{TipoEquazione::Angolo, &RisultatoOsservazione::Angolo, "angolo",
                               "mgon", "angoli", " [cc]", 1e4},
                              {TipoEquazione::Distanza, &RisultatoOsservazione::EqDistanza,
                               "distanza", "mm", "distanze", " [mm]", 1e3},
                              {TipoEquazione::Dislivello, &RisultatoOsservazione::Dislivello,
                               "dislivello", "mm", "dislivelli", " [mm]", 1e3}};

void ConfrontaEquazione(const Equazione& e, const Genere& g, const Riga& csv, const Riga& html,
                        const nlohmann::json& json) {
  const std::string qui = g.Csv, mm = g.UnitaCsv, u = g.UnitaHtml;
  const std::tuple<double, std::string, std::string, std::string, double, double, double, double>
      casi[] = {
          {e.Residuo, "residuo", "_residuo_oss_meno_comp_" + mm, "Residuo" + u, 1e3, .01,
           g.ScalaHtml, .1},
          {e.Sqm, "sqm", "_sqm_a_posteriori_1sigma_" + mm, "s.q.m." + u, 1e3, .01, g.ScalaHtml, .1},
          {e.W, "w", "_w", "|w|", 1, .001, 1, .01},
          {e.Ridondanza, "ridondanza", "_ridondanza", "r", 1, 1e-4, 1, 1e-3}};
  for (const auto& [valore, nelJson, nelCsv, nellHtml, scala, passo, scalaHtml, passoHtml] : casi) {
    Uguali(NumeroJson(json, "/" + nelJson), valore, 0, nelJson);
    Uguali(Numero(csv, qui + nelCsv), valore * scala, passo * kMezzo, nelCsv);
    Uguali(Numero(html, nellHtml), valore * scalaHtml, passoHtml * kMezzo, nellHtml);
  }
  const double r = e.Ridondanza < 1e-6 ? kAssente : e.Ridondanza;
  Uguali(Numero(html, "Affidabilità esterna"), 4.13 * std::sqrt((1 - r) / r), .1 * kMezzo, qui);
  Uguali(Numero(csv, qui + "_affidabilita_esterna_in_sqm"), 4.13 * std::sqrt((1 - r) / r),
         .001 * kMezzo, qui);
  if (g.Tipo != TipoEquazione::Dislivello)
    Uguali(Numero(html, "Min. errore rilevabile" + u),
           4.13 * e.SqmPriori / std::sqrt(r) * g.ScalaHtml, .1 * kMezzo, qui);
  EXPECT_EQ(html.at("Da") + html.at("A"), csv.at("da") + csv.at("a"));
  EXPECT_EQ(html.at("Giudizio"), csv.at(qui + "_giudizio"));
  EXPECT_EQ(html.at("Giudizio").starts_with("sospetta"), e.W > 3.29);
  EXPECT_EQ(html.at("Giudizio").ends_with("non controllata"), e.Ridondanza < 0.1);
}

TEST_P(Concordanza, Impronte) {
  EXPECT_NE(Pagina.find("SHA-256 del file</dt><dd>0a1<"), std::string::npos);
  EXPECT_NE(Pagina.find("SHA-256 di p.csv</dt><dd>2b3<"), std::string::npos);
  for (const char* voce : {"file.sha256", "0a1", "file.2", "d/p.csv", "file.2.sha256", "2b3"})
    EXPECT_NE(Gpkg.find(voce), std::string::npos) << voce;
}

TEST_P(Concordanza, Osservazioni) {
  const Tavola csv = LeggiCsv(Byte([&](auto s) { ScriviOsservazioniCsv(D, Decimali::Punto, s); }));
  for (const Genere& g : kGeneri) {
    const Tavola html = LeggiHtml(Pagina, g.Html);
    std::size_t n = 0, lettura = 0;
    for (std::size_t s = 0; s < R.Stazioni.size(); ++s)
      for (std::size_t k = 0; k < R.Stazioni[s].Osservazioni.size(); ++k) {
        const int indice = R.Stazioni[s].Osservazioni[k].*g.Indice;
        const Riga& riga = csv.at(lettura++);
        EXPECT_EQ(indice == kNessuno, riga.at(g.Csv + std::string("_w")).empty());
        if (indice == kNessuno) continue;
        const Equazione& e = R.Equazioni[indice];
        for (const auto& j : J["stazioni"][s]["osservazioni"][k]["equazioni"])
          if (j["tipo"] == g.Csv) ConfrontaEquazione(e, g, riga, html.at(n), j);
        ++n;
        if (R.Opzioni.Cartografiche == 0 && GetParam().Pla != Esito::NonConvergente) {
          EXPECT_NEAR(ResiduoDaLetture(R, R.Stazioni[s], e), e.Residuo, 1e-4) << g.Csv << lettura;
        }
      }
    EXPECT_EQ(n, html.size());
  }
}

void PrintTo(const CasoRete& caso, std::ostream* dove) { *dove << caso.Nome; }
INSTANTIATE_TEST_SUITE_P(Uscite, Concordanza, testing::ValuesIn(kCasi));

}  // namespace

// Drawings and tables of a result, read back: here, by SQLite and by a GIS tool, against the model.

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <bit>
#include <cmath>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "host/calcolo.h"
#include "host/lettura_rete.h"
#include "host/numeri.h"
#include "host/rapporto.h"
#include "host/statistica.h"
#include "host/uscite/dxf.h"
#include "host/uscite/gpkg.h"
#include "host/uscite/scala_ellissi.h"
#include "host/uscite/tabelle_csv.h"
#include "host/uscite/visuali.h"

namespace {

using Tabella = std::vector<std::vector<std::string>>;

Risultati Esempio(const std::string& nome) {
  Diagnostica diario;
  Rete rete = LeggiRete(std::string(CARTELLA_ESEMPI) + "/" + nome + ".toml", diario).value();
  Rapporto rapporto;
  return Compensa(rete, rapporto);
}

// Examples; one with names to be masked and points without height or place; one without any place.
const std::map<std::string, Risultati>& Reti() {
  static const std::map<std::string, Risultati> reti = [] {
    std::map<std::string, Risultati> m{{"vuota", {}}};
    for (const char* n : {"zeman", "ghilani_wolf", "gauss_boaga_ovest"}) m[n] = Esempio(n);
    for (RisultatoPunto& p : (m["ferma"] = m["zeman"]).Punti) p.EllAsseMag = p.Nord = kAssente;
    Risultati& r = m["strana"] = m["gauss_boaga_ovest"];
    r.DatiProgetto.Nome = "Rete \u03c3\n\u65e5";
    r.Punti.resize(r.Punti.size() + 2, r.Punti[0]);
    const char* nomi[] = {"caff\u00e8;\"1\"", "=A<1>&2", "50%%^J"};
    for (int i = 0; i < 3; ++i) r.Punti[i].Nome = nomi[i];
    r.Punti.back().Est = kAssente, r.Punti.end()[-2].Quota = kAssente;
    return m;
  }();
  return reti;
}

template <class Fa>
std::string Byte(const Risultati& r, Fa fa) {
  std::string byte;
  fa(Documento{r, "", {}, {}, "05/03/2024 17:45", ""}, [&](std::string_view b) { byte += b; });
  return byte;
}

// Of an offset from a point: 1 on the ellipse, fattore times, of the point's covariance block.
double SuEllisse(const RisultatoPunto& p, double dE, double dN, double fattore) {
  const double ee = p.SqmEst * p.SqmEst, nn = p.SqmNord * p.SqmNord, en = p.Covarianza;
  const double q = nn * dE * dE - 2 * en * dE * dN + ee * dN * dN;
  return q / (ee * nn - en * en) / fattore / fattore;
}

// What a drawing of the result holds, layer by layer.
std::map<std::string, int> Attesi(const Risultati& r) {
  const char* ruoli[] = {"PUNTI_INCOGNITI", "PUNTI_FISSI", "PUNTI_ESCLUSI", "PUNTI_COMPENSATI"};
  std::map<std::string, int> n;
  for (const RisultatoPunto& p : r.Punti)
    if (Disegnabile(p))
      ++n[ruoli[p.Ruoli.Pla]], ++n["NOMI"], n["QUOTE"] += Presente(p.Quota), n["ELLISSI"] += ConEllisse(p);
  for (const VisualeUnica& v : RaccogliVisuali(r))
    if (Disegnabile(r.Punti[v.Da]) && Disegnabile(r.Punti[v.A]))
      ++n[v.WMassimo > 3.29 ? "VISUALI_SOSPETTE" : "VISUALI"];
  std::erase_if(n, [](const auto& strato) { return strato.second == 0; });
  return n;
}

TEST(Uscite, FattoreDellEllisseAl95) {
  for (const auto& [r, f] : {std::pair(1, 199.50), {10, 4.1028}, {120, 3.0718}, {1 << 30, 2.9957}})
    EXPECT_NEAR(FattoreEllisse(0.95, r), std::sqrt(2 * f), 2e-4);
  EXPECT_FALSE(Presente(FattoreEllisse(0.95, 0)));
}

TEST(Uscite, CsvDaIlModello) {
  static const std::regex campo("(?:\"((?:[^\"]|\"\")*)\"|([^;\"\r]*))(;|\r\n)");
  for (const auto& [nome, r] : Reti()) {
    SCOPED_TRACE(nome);
    const auto celle = [&](auto scrivi, Decimali decimali) {
      const std::string t = Byte(r, [&](auto&& d, auto s) { scrivi(d, decimali, s); });
      Tabella righe(1);
      for (std::sregex_iterator m(t.begin() + 3, t.end(), campo), fine; m != fine; ++m) {
        righe.back().push_back(std::regex_replace((*m)[1].str(), std::regex("\"\""), "\"") + (*m)[2].str());
        if ((*m)[3] == "\r\n") righe.emplace_back();
      }
      return righe;
    };
    const auto numero = [](double v, int d) { return Presente(v) ? NumeroFisso(v, d) : ""; };
    const Tabella p = celle(ScriviPuntiCsv, Decimali::Punto), o = celle(ScriviOsservazioniCsv, Decimali::Virgola);
    const auto cella = [](const Tabella& t, std::size_t riga, const char* colonna) {
      return t.at(riga).at(std::find(t[0].begin(), t[0].end(), colonna) - t[0].begin());
    };
    for (std::size_t i = 0; i < r.Punti.size(); ++i) {
      EXPECT_EQ(cella(p, i + 1, "nome"), r.Punti[i].Nome);
      EXPECT_EQ(cella(p, i + 1, "nord_m"), numero(r.Punti[i].Nord, 4));
      EXPECT_EQ(cella(p, i + 1, "sqm_quota_a_posteriori_1sigma_mm"), numero(r.Punti[i].SqmQuota * 1e3, 2));
    }
    std::size_t riga = 0;
    for (const RisultatoStazione& s : r.Stazioni)
      for (const RisultatoOsservazione& l : s.Osservazioni) {
        const double v = l.EqDistanza < 0 ? kAssente : r.Equazioni[l.EqDistanza].Residuo * 1e3;
        EXPECT_EQ(cella(o, ++riga, "a"), r.Punti[l.Punto].Nome);
        EXPECT_EQ(cella(o, riga, "distanza_residuo_oss_meno_comp_mm"),
                  std::regex_replace(numero(v, 2), std::regex("\\."), ","));
      }
    EXPECT_EQ(p.size() + o.size(), r.Punti.size() + riga + 4);
  }
}

TEST(Uscite, DxfCoppieStratiEdEllissi) {
  for (const auto& [nome, r] : Reti()) {
    SCOPED_TRACE(nome);
    std::vector<const RisultatoPunto*> ellissi;
    for (const RisultatoPunto& p : r.Punti) ellissi.resize(ellissi.size() + ConEllisse(p), &p);
    std::istringstream dxf(Byte(r, ScriviDxf));
    std::map<std::string, int> strati;
    std::string codice, valore, entita;
    double est = 0;
    for (std::size_t vertici = 0; std::getline(dxf, codice) && std::getline(dxf, valore);) {
      ASSERT_EQ(valore.back(), '\r');
      valore.pop_back();
      const int c = std::stoi(codice);
      if (c == 0) entita = valore;
      if (c == 8 && entita != "VERTEX" && entita != "SEQEND") ++strati[valore];
      if (c >= 10 && c < 60) { EXPECT_EQ(valore.find_first_not_of("-.0123456789"), std::string::npos); }
      if (c == 10) est = std::stod(valore);
      if (c != 20 || entita != "VERTEX") continue;
      const RisultatoPunto& p = *ellissi.at(vertici++ / kVerticiEllisse);
      EXPECT_NEAR(SuEllisse(p, est - p.Est, std::stod(valore) - p.Nord, EsagerazioneEllissi(r)), 1, 1e-3);
    }
    EXPECT_EQ(entita, "EOF");
    EXPECT_GE(strati.extract("NOTE").mapped(), 8);
    EXPECT_EQ(strati, Attesi(r));
  }
  for (const char* testo : {"caff\xe8;\"1\"\r", "50%%%%^ J\r", "\r\nRete sigma ?\r"})
    EXPECT_NE(Byte(Reti().at("strana"), ScriviDxf).find(testo), std::string::npos) << testo;
}

std::string Ogr(const std::string& argomenti) {
  std::string testo;
  FILE* tubo = popen((OGRINFO " -ro -al " + argomenti + " 2>&1").c_str(), "r");
  for (int c; (c = std::fgetc(tubo)) != EOF;) testo += static_cast<char>(c);
  pclose(tubo);
  return testo;
}

TEST(Uscite, GeoPackageRilettoConSqliteEOgr) {
  for (const auto& [nome, r] : Reti()) {
    SCOPED_TRACE(nome);
    const std::string file = testing::TempDir() + "uscite_" + nome, byte = Byte(r, ScriviGeoPackage);
    EXPECT_EQ(byte, Byte(r, ScriviGeoPackage));
    std::ofstream(file + ".gpkg", std::ios::binary) << byte;
    std::ofstream(file + ".dxf", std::ios::binary) << Byte(r, ScriviDxf);
    sqlite3* db = nullptr;
    sqlite3_open((file + ".gpkg").c_str(), &db);
    const auto chiedi = [&](const char* sql) {
      Tabella t;
      const auto riga = [](void* dove, int n, char** v, char**) {
        auto& celle = static_cast<Tabella*>(dove)->emplace_back();
        for (int i = 0; i < n; ++i) celle.emplace_back(v[i] ? v[i] : "");
        return 0;
      };
      EXPECT_EQ(sqlite3_exec(db, sql, riga, &t, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
      return t;
    };
    const auto reale = [](const std::string& hex, std::size_t da) {  // little-endian, from a byte
      std::uint64_t bit = 0;
      for (std::size_t i = 8; i-- > 0;) bit = bit << 8 | std::stoul(hex.substr(2 * (da + i), 2), nullptr, 16);
      return std::bit_cast<double>(bit);
    };
    EXPECT_EQ(chiedi("PRAGMA integrity_check; PRAGMA foreign_key_check; PRAGMA application_id; SELECT DISTINCT "
                     "last_change FROM gpkg_contents"),
              (Tabella{{"ok"}, {"1196444487"}, {"2024-03-05T17:45:00.000Z"}}));
    const Tabella punti = chiedi("SELECT nome, hex(geom) FROM punti"), ellissi = chiedi("SELECT hex(geom) FROM ellissi");
    std::size_t e = 0, i = 0;
    for (const RisultatoPunto& p : r.Punti) {
      EXPECT_EQ(punti.at(i)[0], p.Nome);
      const std::string& geom = punti.at(i++)[1];
      EXPECT_EQ(geom.size() / 2, !Disegnabile(p) ? 0 : Presente(p.Quota) ? 69 : 61);
      if (Disegnabile(p)) { EXPECT_EQ(std::pair(reale(geom, 45), reale(geom, 53)), std::pair(p.Est, p.Nord)); }
      for (const double k : {1.0, FattoreEllisse(.95, r.Planimetria.Ridondanza())})
        for (std::size_t v = (e += ConEllisse(p), 0); ConEllisse(p) && v <= kVerticiEllisse; ++v)
          EXPECT_NEAR(SuEllisse(p, reale(ellissi.at(e - 1)[0], 53 + 16 * v) - p.Est, reale(ellissi[e - 1][0], 61 + 16 * v) - p.Nord,
                                k * EsagerazioneEllissi(r)), 1, 1e-5);
    }
    EXPECT_EQ(std::pair(i, e), std::pair(punti.size(), ellissi.size()));
    sqlite3_close(db);
    if (!std::string_view(OGRINFO).starts_with('/')) GTEST_SKIP() << "ogrinfo is not installed";
    const std::string gpkg = Ogr(file + ".gpkg"), dxf = Ogr("-q " + file + ".dxf");
    EXPECT_FALSE(std::regex_search(gpkg + dxf, std::regex("[Ww]arning|ERROR|FAILURE"))) << gpkg;
    EXPECT_EQ(gpkg.find("ID[\"EPSG\",3003]]") + 1 > 0, nome == "gauss_boaga_ovest" || nome == "strana");
    for (const RisultatoPunto& p : r.Punti) EXPECT_NE(gpkg.find("nome (String) = " + p.Nome + "\n"), std::string::npos);
    for (const auto& [strato, n] : Attesi(r)) {
      const std::string riga = "  Layer (String) = " + strato + "\n";
      int trovati = 0;
      for (std::size_t q = 0; (q = dxf.find(riga, q)) != std::string::npos; ++q) ++trovati;
      EXPECT_EQ(trovati, n) << strato;
    }
  }
}

}  // namespace

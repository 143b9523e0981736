// Drawings and tables of a result, read back: here, by SQLite and by a GIS tool, against the model.

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <bit>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "host/base/numeri.h"
#include "host/calcolo/calcolo.h"
#include "host/calcolo/rapporto.h"
#include "host/file_rete/lettura_rete.h"
#include "host/rete/statistica.h"
#include "host/uscite/dxf.h"
#include "host/uscite/gis/gpkg.h"
#include "host/uscite/scala_ellissi.h"
#include "host/uscite/visuali_uniche.h"

using namespace compensa;

namespace {

using Testi = std::vector<std::string>;

// Examples; one with names to be masked and points without height or place; one without any place.
const std::map<std::string, Risultati>& Reti() {
  static const std::map<std::string, Risultati> reti = [] {
    std::map<std::string, Risultati> m{{"vuota", {}}};
    for (const std::string nome : {"zeman", "ghilani_wolf", "gauss_boaga_ovest"}) {
      Diagnostica diario;
      Rapporto rapporto;
      Rete rete = LeggiRete(CARTELLA_ESEMPI "/" + nome + ".toml", diario).value();
      m[nome] = Compensa(rete, rapporto);
    }
    for (RisultatoPunto& p : (m["ferma"] = m["zeman"]).Punti) p.EllAsseMag = p.Nord = kAssente;
    Risultati& r = m["strana"] = m["gauss_boaga_ovest"];
    r.DatiProgetto.Nome = "Rete \u03c3\n\u65e5";
    r.Punti.resize(r.Punti.size() + 2, r.Punti[0]);
    r.Punti[0].Nome = "caff\u00e8;\"1\"", r.Punti[1].Nome = "=A<1>&2", r.Punti[2].Nome = "5%%^J";
    r.Punti.back().Est = kAssente, r.Punti.end()[-2].Quota = kAssente;
    return m;
  }();
  return reti;
}

template <class Fa>
std::string Byte(const Risultati& r, Fa fa) {
  std::string byte;
  fa(Documento{r, "", {}, {}, "05/03/2024 17:45", {}}, [&](std::string_view b) { byte += b; });
  return byte;
}

// 1 where an offset from a point lies on the ellipse of its covariance block, fattore times.
double SuEllisse(const RisultatoPunto& p, double dE, double dN, double fattore) {
  const double ee = p.SqmEst * p.SqmEst, nn = p.SqmNord * p.SqmNord, en = p.Covarianza;
  const double q = nn * dE * dE - 2 * en * dE * dN + ee * dN * dN;
  return q / (ee * nn - en * en) / fattore / fattore;
}

// Largest w of the equations between two points, for every pair with a reading; 0 without.
std::map<std::pair<int, int>, double> Coppie(const Risultati& r) {
  std::map<std::pair<int, int>, double> w;
  const auto coppia = [&](const RisultatoStazione& s, std::size_t o) -> double& {
    return w[std::minmax<int>({s.Punto, s.Osservazioni[o].Punto})];
  };
  for (const RisultatoStazione& s : r.Stazioni)
    for (std::size_t o = 0; o < s.Osservazioni.size(); ++o) coppia(s, o);
  for (const Equazione& e : r.Equazioni)
    if (double& massimo = coppia(r.Stazioni[e.Stazione], e.Osservazione); e.W > massimo)
      massimo = e.W;
  return w;
}

// What a drawing holds, layer by layer.
std::map<std::string, int> Attesi(const Risultati& r) {
  const char* ruoli[] = {"PUNTI_INCOGNITI", "PUNTI_FISSI", "PUNTI_ESCLUSI", "PUNTI_COMPENSATI"};
  std::map<std::string, int> n;
  for (const RisultatoPunto& p : r.Punti)
    if (Disegnabile(p)) {
      ++n["NOMI"], ++n[ruoli[RuoloDisegno(r, p)]];
      n["QUOTE"] += Presente(p.Quota), n["ELLISSI"] += Presente(p.EllAsseMag);
    }
  for (const auto& [coppia, w] : Coppie(r))
    if (Disegnabile(r.Punti[coppia.first]) && Disegnabile(r.Punti[coppia.second]))
      ++n[w > 3.29 ? "VISUALI_SOSPETTE" : "VISUALI"];
  std::erase_if(n, [](const auto& strato) { return strato.second == 0; });
  return n;
}

// Points in a row of 1 km: ellipses of 2 m become 4 % of it, or 30 % of what parts the points.
TEST(Uscite, EllissiDiMoltiPunti) {
  Risultati r;
  for (const auto& [punti, vertici, esagerazione] :
       {std::tuple(2, 72, "20"), {4000, 48, "0.05"}, {50000, 16, "0.002"}}) {
    RisultatoPunto p;
    p.Nord = p.EllAzimut = 0, p.EllAsseMag = p.EllAsseMin = 2;
    r.Punti.assign(punti, p);
    for (int i = 0; i < punti; ++i) r.Punti[i].Est = 1000.0 * i / (punti - 1);
    EXPECT_EQ(VerticiEllisse(r), vertici);
    EXPECT_EQ(TestoTondo(EsagerazioneEllissi(r)), esagerazione);
  }
}

TEST(Uscite, DxfCoppieStratiEdEllissi) {
  for (const auto& [nome, r] : Reti()) {
    SCOPED_TRACE(nome);
    std::vector<const RisultatoPunto*> ellissi;
    std::string punti, attesi;  // coordinates and names as the drawing lists them
    for (const RisultatoPunto& p : r.Punti) {
      ellissi.resize(ellissi.size() + ConEllisse(p), &p);
      if (!Disegnabile(p)) continue;
      for (const double v : {p.Est, p.Nord, Presente(p.Quota) ? p.Quota : 0})
        attesi += NumeroFisso(v, 4) + " ";
      attesi += nome == "strana" ? "" : p.Nome + "\n";
    }
    std::istringstream dxf(Byte(r, ScriviDxf));
    std::map<std::string, int> strati;
    std::string codice, valore, entita, strato;
    double est = 0;
    for (std::size_t vertici = 0; std::getline(dxf, codice) && std::getline(dxf, valore, '\r');) {
      ASSERT_EQ(dxf.get(), '\n');
      const int c = std::stoi(codice);
      if (c == 0) entita = valore;
      if (entita == "POINT" && c >= 10) punti += valore + " ";
      if (entita == "TEXT" && c == 1 && strato == "NOMI" && nome != "strana")
        punti += valore + "\n";
      if (c == 8) strato = valore;
      if (c == 8 && entita != "VERTEX" && entita != "SEQEND") ++strati[valore];
      if (c >= 10 && c < 60) {
        EXPECT_EQ(valore.find('e'), valore.npos);
      }
      if (c == 10) est = LeggiNumero(valore).Valore;
      if (c != 20 || entita != "VERTEX") continue;
      const RisultatoPunto& p = *ellissi.at(vertici++ / VerticiEllisse(r));
      EXPECT_NEAR(
          SuEllisse(p, est - p.Est, LeggiNumero(valore).Valore - p.Nord, EsagerazioneEllissi(r)), 1,
          1e-3);
    }
    EXPECT_EQ(entita, "EOF");
    EXPECT_EQ(punti, attesi);
    EXPECT_GE(strati.extract("NOTE").mapped(), 8);
    EXPECT_EQ(strati, Attesi(r));
  }
  for (const char* testo : {"caff\xe8;\"1\"\r", "5%%%%^ J\r", "\r\nRete sigma ?\r"})
    EXPECT_NE(Byte(Reti().at("strana"), ScriviDxf).find(testo), std::string::npos) << testo;
}

std::string Ogr(const std::string& file) {
  std::string testo;
  FILE* tubo = popen((OGRINFO " -ro -al " + file + " 2>&1").c_str(), "r");
  for (int c; (c = std::fgetc(tubo)) != EOF;) testo += static_cast<char>(c);
  return pclose(tubo) == 0 ? testo : "ERROR";
}

TEST(Uscite, GeoPackageRilettoConSqliteEOgr) {
  for (const auto& [nome, r] : Reti()) {
    const std::string file = testing::TempDir() + "uscite_" + std::to_string(getpid()) + nome,
                      byte = Byte(r, ScriviGeoPackage);
    EXPECT_EQ(byte, Byte(r, ScriviGeoPackage));
    std::ofstream(file + ".gpkg", std::ios::binary) << byte;
    std::ofstream(file + ".dxf", std::ios::binary) << Byte(r, ScriviDxf);
    sqlite3* db = nullptr;
    sqlite3_open((file + ".gpkg").c_str(), &db);
    const auto chiedi = [&](const char* sql) {  // all fields, one after the other
      Testi t;
      const auto riga = [](void* dove, int n, char** v, char**) {
        for (int i = 0; i < n; ++i) static_cast<Testi*>(dove)->emplace_back(v[i] ? v[i] : "");
        return 0;
      };
      EXPECT_EQ(sqlite3_exec(db, sql, riga, &t, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
      return t;
    };
    const auto coordinate = [](const auto& valori) {  // as bytes in hexadecimal, little-endian
      std::string esa;
      for (const double v : valori)
        for (int i = 0; i < 64; i += 8)
          for (const int mezzo : {4, 0})
            esa += "0123456789ABCDEF"[std::bit_cast<std::uint64_t>(v) >> (i + mezzo) & 15];
      return esa;
    };
    EXPECT_EQ(
        chiedi("PRAGMA integrity_check; PRAGMA foreign_key_check; PRAGMA application_id;"
               "SELECT DISTINCT last_change FROM gpkg_contents; SELECT count(*) FROM visuali"),
        (Testi{"ok", "1196444487", "2024-03-05T17:45:00.000Z", std::to_string(Coppie(r).size())}));
    Testi punti, ellissi;
    for (const RisultatoPunto& p : r.Punti) {
      std::vector<double> posto{p.Est, p.Nord, p.Quota};
      posto.resize(!Disegnabile(p) ? 0 : Presente(p.Quota) ? 3 : 2);
      punti.insert(punti.end(), {p.Nome, coordinate(posto)});
      for (const double fattore : {1.0, FattoreEllisse(.95, r.Planimetria.Ridondanza())}) {
        if (!ConEllisse(p)) continue;
        std::vector<double> anello;
        for (const PuntoPiano& v :
             AnelloEllisse(p, fattore * EsagerazioneEllissi(r), VerticiEllisse(r)))
          anello.insert(anello.end(), {v.Est, v.Nord});
        anello.insert(anello.end(), {anello[0], anello[1]});
        ellissi.push_back(coordinate(anello));
      }
    }
    EXPECT_EQ(chiedi("SELECT nome, hex(substr(geom, 46)) FROM punti"), punti);
    EXPECT_EQ(chiedi("SELECT hex(substr(geom, 54)) FROM ellissi"), ellissi);
    sqlite3_close(db);
    if (!std::string_view(OGRINFO).starts_with('/')) GTEST_SKIP() << "ogrinfo is not installed";
    const std::string gpkg = Ogr(file + ".gpkg"), dxf = Ogr(file + ".dxf");
    EXPECT_FALSE(std::regex_search(gpkg + dxf, std::regex("[Ww]arning|ERROR|FAILURE"))) << gpkg;
    EXPECT_EQ(gpkg.find("ID[\"EPSG\",3003]]") + 1 > 0,
              nome == "gauss_boaga_ovest" || nome == "strana");
    EXPECT_NE(gpkg.find("Feature Count: " + std::to_string(r.Punti.size())), gpkg.npos);
    for (const auto& [strato, n] : Attesi(r)) {
      const std::regex riga("Layer \\(String\\) = " + strato + "\n");
      EXPECT_EQ(std::distance(std::sregex_iterator(dxf.begin(), dxf.end(), riga), {}), n) << strato;
    }
  }
}

}  // namespace

// .gkf files: what the elements mean, and what comes back of a network that was written to one.

#include "host/uscite/gkf.h"

#include <gtest/gtest.h>

#include <cmath>
#include <regex>

#include "host/base/numeri.h"
#include "host/base/testo_file.h"
#include "host/calcolo/calcolo.h"
#include "host/calcolo/rapporto.h"
#include "host/file_rete/lettura_rete.h"
#include "host/importazione/importa.h"
#include "host/importazione/lettore.h"
#include "tests/host/base/testo_prova.h"

using namespace compensa;

namespace {

struct Letto {
  Libretto Libro;
  std::string Messaggi;
};

Letto Leggi(const std::string& testo, bool ignora = false) {
  Letto letto;
  Diagnostica diagnostica;
  OpzioniLettura opzioni;
  opzioni.IgnoraNonSupportati = ignora;
  kLettoreGkf.Leggi(testo, "prova.gkf", opzioni, letto.Libro, diagnostica);
  for (const std::string& riga : diagnostica.Righe()) letto.Messaggi += riga + "\n";
  return letto;
}

std::string File(const std::string& rete, const std::string& osservazioni) {
  return "<gama-local><network " + rete + "><points-observations>\n" + osservazioni +
         "</points-observations></network></gama-local>";
}

std::string Predefiniti(const std::string& attributi) {
  return "<gama-local><network><points-observations " + attributi +
         "></points-observations></network></gama-local>";
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

TEST(Gkf, Campione) {
  Diagnostica diagnostica;
  const auto campione =
      LeggiTesto(CARTELLA_DATI "/campione.gkf", 1 << 20, {}, "", diagnostica).value();
  EXPECT_TRUE(kLettoreGkf.Riconosce(campione));
  const Letto e = Leggi(campione);
  EXPECT_EQ(Stazioni(e.Libro),
            "A 1.55 1: B 10 98.9688 250.0328/1 1.6; C 88.4 100.618 180.2861/1 1.3;");
  EXPECT_EQ(e.Libro.DatiProgetto.Nome, "prova");
  const auto& battute = e.Libro.Postazioni[0].Battute;
  EXPECT_NEAR(*battute[0].SqmDirezione, 6e-4, 1e-12);
  EXPECT_NEAR(*battute[1].SqmDirezione, 1.9 / 3240, 1e-12);
  EXPECT_EQ(Numeri({battute[1].SqmDistanza, battute[1].SqmDistProporzionale}), " 0.002 0.002");
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
    const Letto e = Leggi(File(assi, "<point id='P' x='1' y='2' " + std::string(ruoli) + "/>"));
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
  const Letto m = Leggi(File("",
                             "<obs from='A'><direction to='B' val='1' stdev='7'/><distance to='B' "
                             "val='9'/><cov-mat dim='2' band='1'>9 1 16</cov-mat></obs>"));
  EXPECT_NEAR(*m.Libro.Postazioni[0].Battute[0].SqmDirezione, 3e-4, 1e-12);
  EXPECT_NEAR(*m.Libro.Postazioni[0].Battute[0].SqmDistanza, 0.004, 1e-12);
  EXPECT_NE(m.Messaggi.find("correlazioni"), std::string::npos);
}

// The unit of a standard deviation is that of the value beside it, also of one that holds for all.
TEST(Gkf, ScartiPerTutti) {
  const std::tuple<const char*, const char*, double> casi[] = {
      {"<direction to='B' val='10'/>", "direction-stdev='6'", 6e-4},
      {"<direction to='B' val='9-0-0'/>", "direction-stdev='6'", 6 / 3240.},
      {"<angle bs='A' fs='B' val='9-0-0'/>", "angle-stdev='6'", 6 / 3240. / std::sqrt(2)},
      {"<angle bs='A' fs='B' val='9-0-0' stdev='1'/>", "angle-stdev='6'",
       1 / 3240. / std::sqrt(2)}};
  for (const auto& [obs, predefinito, sqm] : casi) {
    const Letto e =
        Leggi("<gama-local><network><points-observations " + std::string(predefinito) +
              "><obs from='S'>" + obs + "</obs></points-observations></network></gama-local>");
    EXPECT_NEAR(e.Libro.Postazioni.at(0).Battute.back().SqmDirezione.value_or(0), sqm, 1e-12)
        << obs;
  }
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
      {File("angles='destra'", ""), ":1:30: errore: .*angles: parola sconosciuta.*destra"},
      {File("", "<point id='P' x='1'/>"), ":2:1: errore: .*y: manca"},
      {File("", "<point id='P' x='1' y='2'/>\n<point id='P' x='3' y='2'/>"),
       ":3:18: avviso: .*già data con un altro valore"},
      {File("", "<obs from='A'><dh to='B' val='1'/></obs>"),
       ":2:15: errore: .*dislivelli misurati"},
      {File("", "<vectors><vec/><vec/><vec/></vectors>"), ":2:1: errore: .*vettori.*3 volte"},
      {File("", "<coordinates><point/></coordinates>"), ":2:1: errore: .*coordinate osservate"},
      {File("", "<punto/>"), ":2:1: avviso: .*\"punto\" sconosciuto"},
      {Predefiniti("distance-stdev='2 x'"), ":1:59: errore: .*distance-stdev: non si legge"},
      {Predefiniti("distance-stdev='1 2 3 4'"), "errore: .*distance-stdev: non si legge"},
      {Predefiniti("distance-stdev='0 0'"), "errore: .*distance-stdev: non si legge"},
      {Predefiniti("distance-stdev='2 2 0.5'"), "avviso: .*l'esponente c diventa 1"},
      {Predefiniti("direction-stdev='-6'"), "errore: .*direction-stdev: .*-6"},
      {Predefiniti("zenith-angle-stdev='9'"), "avviso: .*si pesano con la distanza"},
      {"<gama-local/>", ":1:1: errore: .*manca l'elemento <network>"},
      {"<adjustment/>", ":1:1: errore: .*elemento principale sconosciuto.*adjustment"},
      {"<gama-local>\n<!-- x", ":2:[0-9]+: errore: .*commento"},
      {"<gama-local>\n<![CDATA[ x", ":2:[0-9]+: errore: .*CDATA"},
      {"<gama-local>\n<network a=>", ":2:[0-9]+: errore: .*attributo non valido"},
      {"<gama-local>\n<network <>", ":2:[0-9]+: errore: .*XML: "},
      {"<gama-local>\n<?pi", ":[12]:[0-9]+: errore: .*non chiusa"},
      {"<gama-local>\r\n<network>\r\n <obs></network></gama-local>",
       ":3:[0-9]+: errore: XML: un elemento"},
      {"", ":1:1: errore: XML"}};
  for (const auto& [testo, attesi] : casi) {
    const std::string messaggi = Leggi(testo).Messaggi;
    EXPECT_TRUE(std::regex_search(messaggi, std::regex(attesi))) << attesi << "\n" << messaggi;
  }
  const Letto ignorati = Leggi(File("", az), true);
  EXPECT_EQ(ignorati.Messaggi.find("errore"), std::string::npos) << ignorati.Messaggi;
  EXPECT_EQ(ignorati.Libro.Esclusi.at(0).Quanti, 2);
}

// What elements carry of an adjusted network comes back: its plan, adjusted again, is the same. What
// XML cannot hold is written as "?"; files of old, with a register behind the elements,
// are read by these.
void ProvaAndataRitorno(Rete& rete, const std::string& coda) {
  rete.Opzioni.TipoCalcolo = kCalcoloPlanimetria;
  Rapporto rapporto;
  Risultati prima = Compensa(rete, rapporto);
  prima.Punti[0].Nome = "<&\"'>?>", prima.DatiProgetto.Nome = "\n--è\uFFFF";
  std::string testo = Testo(ScriviGkf, Documento{prima, {}, {}, {}, {}, {}});
  testo.insert(testo.rfind("</gama-local>"), coda);
  Letto letto = Leggi(testo);
  EXPECT_EQ(letto.Messaggi, "");
  EXPECT_EQ(letto.Libro.DatiProgetto.Nome, "--è?");
  EXPECT_EQ(letto.Libro.Esclusi.size(), coda.empty() ? 1U : 2U);  // <parameters>, instructions
  Diagnostica diario;
  Resoconto resa;
  std::optional<Rete> seconda = PreparaRete({}, letto.Libro, resa, diario);
  ASSERT_TRUE(seconda) << diario.Righe().front();
  const Risultati dopo = Compensa(*seconda, rapporto);
  ASSERT_EQ(dopo.Planimetria.Ridondanza(), prima.Planimetria.Ridondanza());
  EXPECT_NEAR(dopo.Planimetria.SigmaZeroRapporto / prima.Planimetria.SigmaZeroRapporto, 1, 1e-3);
  EXPECT_EQ(dopo.Punti[0].Nome, "<&\"'>?>");
  for (std::size_t i = 0; i < prima.Punti.size(); ++i) {
    EXPECT_NEAR(dopo.Punti[i].Est, prima.Punti[i].Est, 1e-4) << prima.Punti[i].Nome;
    EXPECT_NEAR(dopo.Punti[i].Nord, prima.Punti[i].Nord, 1e-4) << prima.Punti[i].Nome;
  }
}

TEST(Gkf, AndataRitorno) {
  for (const char* nome :
       {"altezze_strumentali", "fuori_centro", "ghilani_wolf", "stazione_libera", "zeman"})
    for (const char* coda : {"", "<?compensa registro versione=\"1\"?><?compensa fine x=\"0\"?>"}) {
      SCOPED_TRACE(nome);
      Diagnostica diagnostica;
      auto rete = LeggiRete(std::string(CARTELLA_ESEMPI "/") + nome + ".toml", diagnostica);
      ProvaAndataRitorno(*rete, coda);
    }
}

}  // namespace

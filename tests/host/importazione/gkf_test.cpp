// .gkf files: what the elements mean, and what comes back of a network that was written to one.

#include "host/uscite/gkf.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <regex>

#include "host/base/numeri.h"
#include "host/base/testo_file.h"
#include "host/calcolo/calcolo.h"
#include "host/calcolo/rapporto.h"
#include "host/file_rete/lettura_rete.h"
#include "host/importazione/lettore.h"
#include "host/uscite/json.h"
#include "tests/host/base/testo_prova.h"

using namespace compensa;

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
  const auto json = [](const Risultati& r, const auto& scrivi) { ScriviJson(r, scrivi); };
  const std::string attesi = Testo(json, esiti);
  Rapporto rapporto;
  if (compensata) esiti = Compensa(rete, rapporto);
  std::string testo = Testo(ScriviGkf, Documento{esiti, {}, {}, {}, {}, {}});
  const Esame e = Leggi(testo);
  EXPECT_EQ(e.Messaggi, "");
  EXPECT_EQ(Testo(json, ComeRisultati(e.Libro)), attesi);
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

}  // namespace

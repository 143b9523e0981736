// Warnings on networks made at random: gross errors that must not be taken for something else, and
// what they must never pass over in silence.

#include <set>

#include "host/giudizio/avvertimenti/effetto_errori.h"
#include "host/giudizio/avvertimenti/letture_punti.h"
#include "host/giudizio/record_ignorati.h"
#include "host/uscite/sommario.h"
#include "tests/host/giudizio/avvertimenti_prova.h"

using namespace compensa;

namespace {

// Points on a grid out of true, three of them fixed; each sees the five that are nearest, most of
// them with a slope distance as good as the options promise.
Rete Griglia(unsigned seme, int lato = 6) {
  Caso caso(seme);
  const auto errore = [&](double sqm) {
    double somma = -6;
    for (int i = 0; i < 12; ++i) somma += caso.Reale(0, 1);
    return sqm * somma;
  };
  ReteProva prova;
  prova.Opzioni = {0.003, 0.002, 0.001, 9, 3, 0};
  const int n = lato * lato;
  for (int i = 0; i < n; ++i) {
    const int ruolo = i == 0 || i == n - 1 || i == lato - 1 ? kFisso : kIncognito;
    prova.Nomi.push_back("P" + std::to_string(i));
    TCoorCr p{};
    p.Est = i % lato * 200 + caso.Reale(-70, 70), p.Nord = i / lato * 200 + caso.Reale(-70, 70);
    p.Quota = caso.Reale(80, 120), p.TipoPla = p.TipoAlt = ruolo;
    prova.Punti.push_back(p);
  }
  for (int i = 0; i < n; ++i) {
    const auto& p = prova.Punti[i];
    std::set<std::pair<double, int>> vicini;
    for (int j = 0; j < n; ++j)
      if (j != i)
        vicini.emplace(std::hypot(prova.Punti[j].Est - p.Est, prova.Punti[j].Nord - p.Nord), j);
    TStaCr stazione{};
    stazione.Punto = i, stazione.AltStrum = 1.5, stazione.AltStrumNota = 1;
    std::vector<TOssCr> oss;
    for (auto v = vicini.begin(); v != std::next(vicini.begin(), 5); ++v) {
      const auto& q = prova.Punti[v->second];
      const double dh = q.Quota - p.Quota, gon = 200 / kPi;
      TOssCr o{};
      o.Punto = v->second, o.TipoDist = kInclinata, o.AltSegnale = 1.5;
      o.Direzione =
          std::fmod(std::atan2(q.Est - p.Est, q.Nord - p.Nord) * gon + 411 + errore(0.0007), 400);
      const bool completa = caso.Intero(4) > 0;
      o.Zenit = completa ? std::atan2(v->first, dh) * gon + errore(0.001) : kValoreMancante;
      o.Distanza = completa ? std::hypot(v->first, dh) + errore(0.0025) : kValoreMancante;
      oss.push_back(o);
    }
    prova.Stazioni.push_back(stazione), prova.Osservazioni.push_back(oss);
  }
  return DaProva(prova);
}

// The records of the job look at them.
Rete Collegata(Rete r) {
  for (std::size_t s = 0; s < r.Stazioni.size(); ++s)
    r.Stazioni[s].Osservazioni = r.Osservazioni[s];
  return r;
}

int Contate(const Avvisi& righe, const std::string& testo) {
  return int(
      std::count_if(righe.begin(), righe.end(), [&](auto& r) { return r.find(testo) + 1 != 0; }));
}

TOssCr& Completa(Rete& r, Caso& caso) {
  for (;;) {
    TOssCr& o = r.Osservazioni[caso.Intero(int(r.Stazioni.size()))][caso.Intero(5)];
    if (o.Distanza < kNonDato) return o;
  }
}

// An error of one observation leaves in its own residual the part that is its redundancy number.
TEST(AvvertimentiReti, Proiezione) {
  for (const char* nome : kReti) {
    Rete r = DaProva(CaricaRete(nome));
    Rapporto rapporto;
    const Risultati risultati = Compensa(r, rapporto);
    Proiezione proiezione(r, risultati);
    for (std::size_t e = 0; e < risultati.Equazioni.size(); e += 3) {
      if (risultati.Equazioni[e].Tipo == TipoEquazione::Dislivello) continue;
      std::vector<double> errori(risultati.Equazioni.size(), 0.0);
      errori[e] = 1;
      ASSERT_NEAR(proiezione.Residui(errori)[e], risultati.Equazioni[e].Ridondanza, 0.002) << nome;
    }
  }
}

TEST(AvvertimentiReti, UnErroreGrossolanoNonEUnTipo) {
  int visti = 0;
  for (unsigned seme = 0; seme < 100; ++seme) {
    Caso caso(seme);
    Rete r = Griglia(seme);
    EXPECT_EQ(Testo(Prima(r)), "");
    Completa(r, caso).Distanza += seme % 2 == 0 ? 0.05 : -0.5;
    const Avvisi righe = Dopo(r = Collegata(std::move(r)));
    EXPECT_EQ(Contate(righe, "torna"), 0) << seme << Testo(righe);
    visti += Contate(righe, "distanza da");
  }
  EXPECT_GT(visti, 90);  // a reading may be one that nothing controls
}

// Of the distances of a network some part is said to be of the other kind. Those that hardly differ
// may be left out, but none may be told that is right.
TEST(AvvertimentiReti, TipiSbagliatiInParte) {
  for (const double parte : {0.05, 0.2, 0.6, 1.0})
    for (unsigned seme = 0; seme < 25; ++seme) {
      Caso caso(seme);
      Rete r = Griglia(seme);
      int errate = 0, grandi = 0;
      OgniOss(r, [&](TOssCr& o) {
        if (o.Distanza > kNonDato || caso.Reale(0, 1) > parte) return;
        o.TipoDist = kOrizzontale, ++errate;
        grandi += o.Distanza * (1 - std::sin(o.Zenit * kPi / 200)) > 0.1 ? 1 : 0;
      });
      if (grandi < 2) continue;
      const Avvisi righe = Dopo(r = Collegata(std::move(r)));
      const std::string testo = Testo(righe);
      const auto dove = testo.find(" distanze dette \"orizzontale\" tornano");
      ASSERT_NE(dove, std::string::npos) << parte << " " << seme << testo;
      const int dette = std::stoi(testo.substr(testo.rfind(' ', dove - 1)));
      EXPECT_TRUE(dette <= errate && dette >= grandi) << dette << " " << errate << " " << grandi;
    }
}

// Distances, all or one, said to be of another kind; or a zenith angle from the horizon, which is
// no error of kind.
void Ridici(Rete& r, int vero, int detto) {
  OgniOss(r, [=](TOssCr& o) {
    if (o.TipoDist == vero) o.TipoDist = detto;
  });
}
struct CasoTipo {
  const char* Nome;
  void (*Guasta)(Rete&);
  const char* Testo;
};
const CasoTipo kTipi[] = {
    {"fuori_centro", [](Rete& r) { Ridici(r, 1, 0); },
     "tutta la rete: 19 distanze dette \"orizzontale\" tornano come \"inclinata\""},
    {"gauss_boaga_ovest", [](Rete& r) { Ridici(r, 1, 0); }, "\"orizzontale\" tornano come"},
    {"altezze_strumentali", [](Rete& r) { Ridici(r, 0, 1); }, "\"inclinata\" tornano come"},
    {"zeman",
     [](Rete& r) {
       for (std::size_t s = 0; s < r.Stazioni.size(); ++s)
         for (TOssCr& o : r.Osservazioni[s])
           if (r.Nomi[std::size_t(r.Stazioni[s].Punto)] == "303" &&
               r.Nomi[std::size_t(o.Punto)] == "306")
             o.TipoDist = 1;
     },
     "osservazione da \"303\" a \"306\": distanza detta \"inclinata\" che torna"},
    {"baumann",
     [](Rete& r) {
       int n = 0;
       OgniOss(r, [&](TOssCr& o) {
         if (o.Zenit < kNonDato && n++ == 3) o.Zenit = 100.1 - o.Zenit;
       });
     },
     nullptr},
    {"altezze_strumentali", [](Rete& r) { Oss(r, 1).Zenit = 130 - Oss(r, 1).Zenit; }, nullptr}};

TEST(AvvertimentiReti, TipiDiRetiNote) {
  for (const CasoTipo& c : kTipi) {
    Rete r = DaProva(CaricaRete(c.Nome));
    c.Guasta(r);
    const Avvisi righe = Dopo(r = Collegata(std::move(r)));
    EXPECT_EQ(Contate(righe, c.Testo != nullptr ? c.Testo : "torna"), c.Testo != nullptr)
        << Testo(righe);
  }
}

double Scarti(const Risultati& r) {
  double omega = 0;
  for (const Equazione& e : r.Equazioni)
    if (e.Tipo != TipoEquazione::Dislivello) omega += std::pow(e.Residuo / e.SqmPriori, 2);
  return omega;
}

// An error of a reading that is told to be without control moves its point and nothing else shows.
TEST(AvvertimentiReti, LettureDavveroSole) {
  int trovate = 0;
  const auto prova = [&](auto rete) {
    Rapporto rapporto;
    Rete r = rete();
    const Risultati prima = Compensa(r, rapporto);
    for (const LetturaSola& sola : CercaLettureSole(prima)) {
      Rete errata = rete();
      TOssCr& o = errata.Osservazioni[std::size_t(sola.Stazione)][std::size_t(sola.Osservazione)];
      constexpr double kVolte = 100;
      (sola.Distanza ? o.Distanza : o.Direzione) +=
          kVolte * (sola.Distanza ? errata.Opzioni.SqmDistCost : errata.Opzioni.SqmDir);
      errata = Collegata(std::move(errata));
      const Risultati dopo = Compensa(errata, rapporto);
      const auto p = std::size_t(sola.Punto);
      EXPECT_LT(Scarti(dopo) - Scarti(prima), 0.02 * kVolte * kVolte) << prima.Punti[p].Nome;
      EXPECT_GT(std::hypot(dopo.Punti[p].Est - prima.Punti[p].Est,
                           dopo.Punti[p].Nord - prima.Punti[p].Nord),
                0.0005);
      ++trovate;
    }
  };
  for (const char* nome : kReti) prova([&] { return DaProva(CaricaRete(nome)); });
  EXPECT_GT(trovate, 15);
}

// Points that hang on P1 of the square: its reading is the first of the set-up, or a distance goes
// both ways, or it is seen from a second side and all is well.
TEST(AvvertimentiReti, RaggiIsolati) {
  const struct {
    bool Prima, Ritorno, Altrove, Lontano;
    const char* Testo;
  } casi[] = {{true, false, false, false, "senza alcun controllo: \"P\" (un errore nelle sue"},
              {false, false, false, false, "un punto è determinato senza alcun controllo: \"P\""},
              {false, true, false, false, "nessun'altra controlla: \"P\" (direzione da \"C\""},
              {true, true, false, false, "nessun'altra controlla: \"P\" (direzione da \"C\""},
              {true, true, false, true, "un punto è determinato senza alcun controllo: \"Q\""},
              {true, true, true, false, nullptr},
              {false, false, true, false, nullptr}};
  for (const auto& caso : casi) {
    ReteProva q = CaricaRete("quadrato");
    q.Opzioni.TipoCalcolo = 1;
    const auto aggiungi = [&](const char* nome, double est, double nord) {
      TCoorCr p = q.Punti[2];
      p.Est = est, p.Nord = nord;
      q.Nomi.push_back(nome), q.Punti.push_back(p);
    };
    const auto osserva = [&](std::size_t s, int da, int a, bool prima) {
      const auto &p = q.Punti[std::size_t(da)], &t = q.Punti[std::size_t(a)];
      TOssCr o = q.Osservazioni[0][0];
      o.Punto = a, o.Distanza = std::hypot(t.Est - p.Est, t.Nord - p.Nord);
      o.Direzione = std::fmod(std::atan2(t.Est - p.Est, t.Nord - p.Nord) * 200 / kPi + 400, 400);
      o.Zenit = 100;
      q.Osservazioni[s].insert(prima ? q.Osservazioni[s].begin() : q.Osservazioni[s].end(), o);
    };
    const auto stazione = [&](int punto) {
      q.Stazioni.push_back(q.Stazioni[2]), q.Osservazioni.emplace_back();
      q.Stazioni.back().Punto = punto;
      return q.Stazioni.size() - 1;
    };
    aggiungi("P", 2300, 2250);
    osserva(2, 2, 4, caso.Prima);
    if (caso.Ritorno) osserva(stazione(4), 4, 2, true);
    if (caso.Altrove) osserva(3, 3, 4, caso.Prima);
    if (caso.Lontano) {
      aggiungi("Q", 2500, 2350);
      osserva(q.Stazioni.size() - 1, 4, 5, false);
    }
    Rete r = DaProva(q);
    const Avvisi righe = Dopo(r);
    const int detti = Contate(righe, "controll") - Contate(righe, "controllare");
    EXPECT_EQ(detti, (caso.Testo != nullptr) + caso.Lontano) << Testo(righe);
    EXPECT_EQ(Testo(righe).find(caso.Testo != nullptr ? caso.Testo : "controll") + 1 != 0,
              caso.Testo != nullptr)
        << Testo(righe);
  }
}

// One zenith angle of twelve counted from the horizon puts the heights off by kilometres.
TEST(AvvertimentiReti, UnAngoloVerticale) {
  for (std::size_t i = 0; i < 12; ++i) {
    Rete r = DaProva(CaricaRete("quadrato"));
    TOssCr& o = r.Osservazioni[i / 3][i % 3];
    o.Zenit = std::abs(100 - o.Zenit);
    r = Collegata(std::move(r));
    const Avvisi prima = Prima(r), dopo = Dopo(r);
    EXPECT_EQ(Contate(prima, "angolo verticale, contato dall'orizzonte?"), 1) << Testo(prima);
    EXPECT_EQ(Contate(prima, "all'inverso"), 1) << Testo(prima);
    EXPECT_EQ(Contate(dopo, "altimetria: sigma zero"), 1) << Testo(dopo);
    EXPECT_EQ(Contate(dopo, "dislivello da"), 2) << Testo(dopo);  // with the one of sigma zero
  }
}

// All of them: neither reduced distances nor closures are told of, nor second faces; a height in
// centimetres is. Of slips that are many more than are shown, options and project are not cut.
TEST(AvvertimentiReti, TuttiAngoliVerticali) {
  for (const int lato : {4, 5, 6}) {
    Rete r = Griglia(unsigned(lato), lato);
    OgniOss(r, [](TOssCr& o) {
      if (o.Zenit < kNonDato) o.Zenit = std::fmod(500 - o.Zenit, 400);
    });
    r = Collegata(std::move(r));
    r.Stazioni[3].AltStrum = 155;
    Diagnostica diario;
    CalcolaApprossimate(r);
    AvvisaRecordIgnorati(r, diario);
    AvvertiPrima(r, diario);
    EXPECT_EQ(Contate(diario.Righe(), "tutta la rete: "), 1) << lato;
    EXPECT_EQ(diario.Righe().size(), 2u) << Testo(diario.Righe());
  }
}

TEST(AvvertimentiReti, PrimaCioCheValePerTutti) {
  Rete r = Griglia(2, 15);
  Caso caso(2);
  for (int i = 0; i < 150; ++i) Completa(r, caso).Distanza += 90;
  r = Collegata(std::move(r));
  r.Opzioni.SqmDistProp = 3, r.CurvaturaRifrazione = {1, 13, 6378000}, r.DatiProgetto.Epsg = 4326;
  const Avvisi righe = Prima(r);
  EXPECT_EQ(righe.size(), 54u) << Testo(righe);  // three, fifty of one kind, how many more
  EXPECT_EQ(Contate(righe, "opzioni, sqm") + Contate(righe, "coefficiente: 13") +
                Contate(righe, "epsg: 4326"),
            3)
      << Testo(righe);
}

// Whatever the iterations come to: from too far away no singular matrix goes without its cause.
TEST(AvvertimentiReti, ApprossimateLontane) {
  int singolari = 0;
  for (unsigned seme = 0; seme < 200; ++seme) {
    Caso caso(seme);
    Rete r = seme % 2 == 0 ? DaProva(CaricaRete("charamza218")) : Griglia(seme, 3);
    const double via = seme % 2 == 0 ? 20000 : 400;
    OgniPunto(r, [&](TCoorCr& p) {
      if (p.TipoPla == kIncognito) p.Est += caso.Reale(-via, via), p.Nord += caso.Reale(-via, via);
    });
    r.Opzioni.TipoCalcolo = 1, r.Opzioni.MaxIter = 20;
    Rapporto rapporto;
    const Risultati risultati = Compensa(r, rapporto);
    if (risultati.Planimetria.Fine != Esito::NormaleSingolare) continue;
    ++singolari;
    Diagnostica diario;
    AvvertiDopo(r, risultati, diario);
    EXPECT_EQ(Contate(diario.Righe(), "coordinate approssimate troppo lontane"), 1) << seme;
    EXPECT_EQ(risultati.Planimetria.ApprossimateLontane, !risultati.Planimetria.MotiLiberi.empty());
    const std::string esito = TestoEsito(risultati, risultati.Planimetria);
    EXPECT_EQ(esito.find("troppo lontane") != esito.npos,
              risultati.Planimetria.ApprossimateLontane);
    for (const MotoLibero& moto : risultati.Planimetria.MotiLiberi)
      EXPECT_EQ(moto.Parole.find("coordinate approssimate troppo lontane"), 0u) << moto.Parole;
  }
  EXPECT_GT(singolari, 10);
}

TEST(AvvertimentiReti, AltriAvvisi) {
  for (const int quanti : {50, 51, 53}) {
    Rete r = Griglia(2, 8);
    r.Opzioni.TipoCalcolo = 1;
    ASSERT_EQ(Testo(Prima(r)), "");
    for (int i = 0; i < quanti; ++i) r.Stazioni[std::size_t(i)].AltStrum = 155;
    const Avvisi righe = Prima(r);
    const std::string ultima = quanti == 50   ? righe[49]
                               : quanti == 51 ? "un altro avviso non mostrato"
                                              : "altri 3 avvisi non mostrati";
    EXPECT_EQ(righe.back(), ultima);
    EXPECT_EQ(righe.size(), quanti == 50 ? 50u : 51u);
  }
}

}  // namespace

// Warnings on plausible but wrong input: each slip is told with its numbers, what is only unusual is
// left in peace, and the reference networks are warned about where they give cause.

#include "tests/host/giudizio/avvertimenti_prova.h"

using namespace compensa;

namespace {

using Mano = void (*)(Rete&);
void Scambia(TCoorCr& p) { std::swap(p.Est, p.Nord); }

// All distances truly of one kind, and then said to be of another.
void Inclina(Rete& r, int vero, int detto) {
  OgniOss(r, [=](TOssCr& o) {
    const double seno = std::sin(o.Zenit * kPi / 200);
    if (o.TipoDist != vero && o.Distanza < kNonDato)
      o.Distanza *= vero == kInclinata ? 1 / seno : seno;
    o.TipoDist = detto;
  });
}

// A point is left with nothing but the first complete sight to it.
void Isola(Rete& r, int punto) {
  bool vista = false;
  for (std::size_t s = 0; s < r.Stazioni.size(); ++s) {
    std::erase_if(r.Osservazioni[s], [&](const TOssCr& o) {
      const bool via = o.Punto == punto && (vista || o.Distanza > kNonDato);
      vista = vista || (o.Punto == punto && !via);
      return via || r.Stazioni[s].Punto == punto;
    });
    r.Stazioni[s].Osservazioni = r.Osservazioni[s];
  }
}

// On a plane that is not reduced to; the distances, measured on another, are taken away.
void InAltroFuso(Rete& r, double traslazione) {
  r.Opzioni.Cartografiche = 0;
  OgniPunto(r, [&](TCoorCr& p) { p.Est += traslazione; });
  for (auto& giro : r.Osservazioni)
    for (TOssCr& o : giro) o.Distanza = kNonDato * 2;
}

constexpr const char *kLocale = "altezze_strumentali", *kCarta = "gauss_boaga_ovest",
                     *kLibera = "stazione_libera";

struct Svista {
  const char* Nome;
  Mano Guasta;
  int Righe;
  const char* Testo;
};

const Svista kPrima[] = {
    {kCarta, [](Rete& r) { r.Opzioni.Cartografiche = 0; }, 1,
     "14 punti su 14 sembrano nel fuso Gauss-Boaga Ovest"},
    {kLocale, [](Rete& r) { r.Opzioni.Cartografiche = 1; }, 1,
     "nessun punto ha est oltre 80 km (punto \"P101\": est 6362.699"},
    {kCarta, [](Rete& r) { OgniPunto(r, [](auto& p) { p.Est -= 1470000; }); }, 1,
     "\"P101\", ha est 93173.202, che non è di nessun fuso"},
    {kCarta, [](Rete& r) { OgniPunto(r, [](auto& p) { p.Nord -= 5000000; }); }, 1,
     "14 punti su 14 hanno un Nord che non è italiano"},
    {kCarta, [](Rete& r) { OgniPunto(r, Scambia); }, 2,
     "scambiati, come in 14 punti su 14: est 5123359.209, nord 1563173.202"},
    {kCarta, [](Rete& r) { Scambia(r.Punti[3]); }, 2,
     "punto \"P104\": Est e Nord sembrano scambiati: est 5131871.452"},
    {kCarta, [](Rete& r) { r.Punti[3].Est += 1e6; }, 2,
     "punto \"P104\": est 2569849.360: non è nel fuso Gauss-Boaga Ovest"},
    {kCarta, [](Rete& r) { r.DatiProgetto.Epsg = 7791; }, 1,
     "epsg: 7791 (RDN2008 / UTM zone 32N) ha un falso Est di 500000 m, ma le coordinate sono"},
    {kCarta,
     [](Rete& r) {
       r.DatiProgetto.Epsg = 7794;
       InAltroFuso(r, 5.5e6);
     },
     0, ""},
    {kCarta,
     [](Rete& r) {
       r.DatiProgetto.Epsg = 32632;
       InAltroFuso(r, 1.5e6);
     },
     1, "(per il fuso 12 epsg = 7795)"},
    {kCarta, [](Rete& r) { r.DatiProgetto.Epsg = 3004; }, 1, "(per Gauss-Boaga Ovest epsg = 3003)"},
    {kCarta, [](Rete& r) { r.DatiProgetto.Epsg = 4326; }, 1, "4326 non è il codice di un sistema"},
    {kCarta, [](Rete& r) { r.DatiProgetto.Epsg = 99999; }, 1, "99999 non è tra i codici che"},
    {kLocale, [](Rete& r) { r.DatiProgetto.Epsg = 32633; }, 1, "stanno in Italia (punto \"P101"},
    {kCarta, [](Rete& r) { r.Punti[3].Nord -= 4e6; }, 2,
     "punto \"P104\": nord 1131871.452, fuori da 3.9"},
    {kCarta,
     [](Rete& r) {
       r.Opzioni.TipoCalcolo = 1;
       OgniPunto(r, [](auto& p) { p.Quota = kNonDato * 2; });
     },
     1, "ridotta all'ellissoide come a quota 0"},
    {kLocale, [](Rete& r) { OgniPunto(r, Scambia); }, 1, "gon se si cambia verso"},
    {kLibera, [](Rete& r) { OgniPunto(r, Scambia); }, 1, "2 angoli si scostano in mediana"},
    {kLocale, [](Rete& r) { OgniOss(r, [](TOssCr& o) { o.Direzione *= 0.9; }); }, 1,
     "gon se le direzioni sono in gradi"},
    {kLocale, [](Rete& r) { OgniOss(r, [](TOssCr& o) { o.Distanza *= 3.28084; }); }, 1,
     "(distanze in piedi?"},
    {kLocale, [](Rete& r) { r.Opzioni.SqmDir = 2; }, 1, "sqm_direzione: 2 gon, più di 0.1 gon"},
    {kLocale, [](Rete& r) { r.Opzioni.SqmDir = 3e-6; }, 1,
     "sqm_direzione: 3e-06 gon, meno di 0.00001 gon"},
    {kLocale, [](Rete& r) { r.Opzioni.SqmDistCost = 5; }, 1, "in millimetri? sarebbe 0.005 m"},
    {kLocale, [](Rete& r) { r.Opzioni.SqmDistProp = 3; }, 1,
     "sqm_distanza_proporzionale: 3 m/km, più di 0.1 m/km"},
    {kCarta, [](Rete& r) { r.CurvaturaRifrazione.CoeffRifr = 13; }, 1,
     "coefficiente: 13, fuori da -1 … 1"},
    {kCarta, [](Rete& r) { r.CurvaturaRifrazione.RaggioTerra = 6378; }, 1,
     "in chilometri? sarebbe 6378000 m"},
    {kLibera,
     [](Rete& r) { OgniOss(r, [](TOssCr& o) { o.Zenit = 100 - o.Zenit, o.TipoDist = 0; }); }, 1,
     "tutta la rete: 3 zenit su 3 distano da 0 o da 400 meno di 50 gon"},
    {kLocale,
     [](Rete& r) {
       for (int i = 0; i < 4; ++i) Oss(r, i).Zenit = 399, Oss(r, i).TipoDist = 0;
     },
     4, "stazione \"P101\": 4 zenit su 6"},
    {kLocale, [](Rete& r) { r.Stazioni[0].AltStrum = 155; }, 1,
     "155.000 m (in centimetri? sarebbe 1.550 m)"},
    {kLocale, [](Rete& r) { Oss(r, 1).Distanza += 100; }, 2, "(errore di 100 m?)"},
    {kLocale, [](Rete& r) { r.Opzioni.TipoCalcolo = 2, r.Opzioni.SqmDir = 2; }, 0, ""},
    // of no use in height
    {kCarta,
     [](Rete& r) {
       r.Opzioni.Cartografiche = 0, r.Opzioni.SqmDir = 0.1;
       OgniOss(r, [](TOssCr& o) { o.TipoDist = 3; });
     },
     1, "non tornano più di 5 chiusure su 83"},
    {kLocale, [](Rete& r) { OgniPunto(r, [](auto& p) { p.Est += 5e5, p.Nord += 3.8e6; }); }, 0, ""},
    {kLocale, [](Rete& r) { r.Opzioni = {0.5, 0.1, 0.1, 6, 3, 0}; }, 0, ""},
    {kLocale,
     [](Rete& r) {
       r.Opzioni.SqmDistCost = r.Opzioni.SqmDistProp = 5.1e-5, r.Opzioni.SqmDir = 1.1e-5;
     },
     4, "all'inverso (riga 145)"},
    {kCarta,
     [](Rete& r) {
       r.CurvaturaRifrazione = {1, -1, 6335000};
     },
     1, "rete: non tornano più"},
    {kLocale,
     [](Rete& r) {
       r.CurvaturaRifrazione = {0, 13, 6378};
     },
     0, ""},  // not applied
    {kLocale,
     [](Rete& r) {
       for (int i = 0; i < 3; ++i) Oss(r, i).Zenit = 1, Oss(r, i).TipoDist = 0;
     },
     5, "zenit 1.0000: dà un dislivello di 58473.968 m, le quote 0.467 m (angolo verticale"},
    {kLocale, [](Rete& r) { r.Stazioni[0].AltStrum = 3.9; }, 0, ""},
};

const Svista kDopo[] = {
    {kCarta, [](Rete& r) { r.Opzioni = {0.005, 0.0025, 0.001, 6, 3, 1}; }, 1,
     "sigma zero 1.806 fuori dai limiti 0.857 … 1.143 (chi quadrato al 95 %, ridondanza 94)"},
    {kCarta, [](Rete& r) { r.Opzioni = {0.011, 0.0055, 0.0022, 6, 3, 1}; }, 1,
     "sono migliori di quanto promettono gli s.q.m."},
    {kCarta, [](Rete& r) { r.Opzioni = {0.0104, 0.0052, 0.00208, 6, 3, 1}; }, 0, ""},
    {kCarta, [](Rete& r) { r.Opzioni = {0.008, 0.004, 0.0016, 6, 3, 1}; }, 0, ""},
    {kCarta, [](Rete& r) { r.Opzioni = {0.001, 0.0005, 0.0002, 6, 3, 1}; }, 1,
     "se non c'è, gli s.q.m. vanno moltiplicati per 9.03)"},
    {kCarta, [](Rete& r) { r.Opzioni = {0.0005, 0.00025, 0.0001, 6, 3, 1}; }, 1,
     "di tanto sbagliano, più che gli s.q.m., i nomi"},
    {kCarta, [](Rete& r) { r.Opzioni = {0.12, 0.06, 0.024, 6, 3, 1}; }, 1, "altra unità?)"},
    {kLibera,
     [](Rete& r) {
       r.Opzioni.TipoCalcolo = 2;
       r.Osservazioni[0].resize(1);
       r.Stazioni[0].Osservazioni = r.Osservazioni[0];
     },
     1, "altimetria: ridondanza 0 (1 equazione, 1 incognita)"},
    {kLibera,
     [](Rete& r) {
       r.Osservazioni[0].pop_back();
       r.Stazioni[0].Osservazioni = r.Osservazioni[0];
       Oss(r, 1).Distanza = kValoreMancante;
     },
     2, "planimetria: ridondanza 0 (2 equazioni, 2 incognite)"},
    {kCarta, [](Rete& r) { Isola(r, 2); }, 2,
     "planimetria: un punto è determinato senza alcun controllo: \"P103\""},
    {kLibera, [](Rete& r) { r.Punti[3].Est += 40; }, 1,
     "punto \"N\": coordinate approssimate a 40.036 m"},
    {kLibera, [](Rete& r) { r.Punti[3].Est += 15; }, 0, ""},
    {kCarta, [](Rete& r) { Oss(r, 1).Distanza += 0.25; }, 1,
     "distanza da \"P101\" a \"P103\": w 4.80, limite 3.52"},
    {kLocale, [](Rete& r) { Inclina(r, kInclinata, kOrizzontale); }, 2,
     "tutta la rete: 31 distanze dette \"orizzontale\" tornano come \"inclinata\""},
    {kLocale, [](Rete& r) { Inclina(r, kOrizzontale, kInclinata); }, 2,
     "dette \"inclinata\" tornano come \"orizzontale\""},
    {kLocale,
     [](Rete& r) {
       Inclina(r, 1, 1);
       for (TOssCr& o : r.Osservazioni[2]) o.TipoDist = 0;
     },
     3, "stazione \"P103\": 4 distanze dette"},
    {kLocale, [](Rete& r) { Oss(r, 2).TipoDist = 0; }, 3,
     "osservazione da \"P101\" a \"P112\": distanza detta \"orizzontale\" che torna"},
    {kLocale, [](Rete& r) { Inclina(r, 1, 1); }, 1, "sigma zero 0.77"},  // as it was
    {kLocale, [](Rete& r) { Oss(r, 2).Distanza += 0.4; }, 2, "w "},      // an error of another size
};

void Prova(const Svista& s, Avvisi (*avvisi)(Rete&)) {
  Rete r = Esempio(s.Nome);
  s.Guasta(r);
  const Avvisi righe = avvisi(r);
  EXPECT_EQ(std::ssize(righe), s.Righe) << s.Testo << "\n" << Testo(righe);
  EXPECT_NE(Testo(righe).find(s.Testo), std::string::npos) << s.Testo << "\n" << Testo(righe);
}

TEST(Avvertimenti, PrimaDelCalcolo) {
  for (const Svista& s : kPrima) Prova(s, Prima);
}
TEST(Avvertimenti, DopoIlCalcolo) {
  for (const Svista& s : kDopo) Prova(s, Dopo);
}

// What each network gives cause for. The synthetic ones were made with smaller errors than they
// promise, and of the published ones some fail the test of sigma zero or hold a doubtful reading.
struct Causa {
  const char *Nome, *Righe;
};
const Causa kCause[] = {
    {"altezze_strumentali", "sigma zero 0.771\n"},
    {"barta12", "w 5.21\n"},
    {"fuori_centro", "sigma zero 0.714\n"},
    {"gauss_boaga_est", "sigma zero 0.652\n"},
    {"ghilani14_5", "sigma zero 13.591\n"},
    {"ghilani16_2", "sigma zero 0.347\n"},
    {"jezerka", "w 3.75\n"},
    {"talapkova", "sigma zero 1.350\nw 4.76\n"},
    {"zeman",
     "sigma zero 3.834\nw 4.61\nw 3.97\nplanimetria: 14 punti\naltimetria: 14 punti\n"
     "2 punti dipendono\n0.070 m\n"}};

void ProvaBuona(const std::string& nome, Rete r) {
  Avvisi prima = Prima(r);
  // Of two pairs of points the distances do not close.
  EXPECT_EQ(std::erase_if(prima, [](auto& x) { return x.find("all'inverso") + 1 != 0; }),
            nome == "zeman" ? 2u : 0u);
  EXPECT_EQ(Testo(prima), "") << nome;
  Avvisi righe = Dopo(r);
  for (const Causa& c : kCause) {
    if (nome != c.Nome) continue;
    std::istringstream attese(c.Righe);
    for (std::string attesa; std::getline(attese, attesa);)
      EXPECT_EQ(std::erase_if(righe, [&](auto& x) { return x.find(attesa) + 1 != 0; }), 1u)
          << nome << ": " << attesa;
  }
  EXPECT_EQ(Testo(righe), "") << nome;
}

TEST(Avvertimenti, SoloDoveHannoCausa) {
  for (const char* nome : kReti) ProvaBuona(nome, DaProva(CaricaRete(nome)));
  for (const char* nome : {kLocale, kCarta, kLibera, "fuori_centro", "ghilani_wolf", "zeman"})
    ProvaBuona(nome, Esempio(nome));
}

}  // namespace

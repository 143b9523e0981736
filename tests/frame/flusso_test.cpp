// The course of a run: who takes part, how each stage ends and what the report says then; values
// that have no natural definition; the catalogue of the texts.

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstddef>

#include "tests/comuni/rete_prova.h"

using namespace kzt5cmrg;

namespace {

using R = ReteProva&;
constexpr double kNo = kValoreMancante;

// The cases change a square: A and B are fixed, C and D unknown, and everybody sees everybody in
// point order. What they change: an observation; A alone with its sights to B and C, without D;
// B seen by nobody, its station without sights or gone; A alone with map coordinates; C upon A.
TOssCr& Oss(R r, int stazione, int n) { return r.Osservazioni[stazione][n]; }
void SoloA(R r, int calcolo) {
  r.Punti[3].TipoPla = r.Punti[3].TipoAlt = kNonUsato;
  r.Stazioni.resize(1);
  r.Osservazioni[0].resize(2);
  r.Opzioni.TipoCalcolo = calcolo;
}
void SenzaB(R r, int stazione) {
  for (const int s : {0, 2, 3}) Oss(r, s, s == 0 ? 0 : 1).Punto = -1;
  r.Stazioni[1].Punto = stazione;
  r.Osservazioni[1].clear();
}
void Carta(R r, double est, double nord) {
  r.Opzioni.Cartografiche = 1, r.Opzioni.TipoCalcolo = 0;
  for (TCoorCr& p : r.Punti) p.Est = kNo;
  r.Punti[0].Est = est, r.Punti[0].Nord = nord;
}
// D alone, whom nobody sees and who is not used, tells of C: its readings or its distance.
void SoloDaD(R r, double lettura, double distanza) {
  SoloA(r, kCalcoloPlanimetria);
  Oss(r, 0, 1).Punto = -1;
  r.Stazioni.push_back({{}, 3, 1.5, 1, 0, 0, {}});
  r.Osservazioni[1].assign(2, {{}, 2, lettura, 100, 1.5, distanza, 0});
}
// A sees C twice, with distances that differ, and B once: sigma zero is 1e-6 times the difference
// over the root of two, with distances good to 1 m.
void Doppia(R r, double differenza) {
  SoloA(r, kCalcoloPlanimetria);
  r.Opzioni = {1, 0, 0.001, 9, kCalcoloPlanimetria, 0};
  r.Stazioni.push_back({{}, 1, 1.5, 1, 0, 0, {}});
  r.Osservazioni[0].assign(2, {{}, 2, kNo, 100, 1.5, 1421.3, 0});
  r.Osservazioni[1].assign(1, {{}, 2, kNo, 100, 1.5, 990.05, 0});
  Oss(r, 0, 1).Distanza += differenza;
}
// A sees B, and C at its side, in one step.
void Accanto(R r, double distanza) {
  SoloA(r, kCalcoloPlanimetria);
  r.Opzioni.MaxIter = 1;
  r.Punti[2].Est = 1000 + distanza, r.Punti[2].Nord = 1000;
}
const std::string kIndeterminato = "    !!! INDETERMINAZIONE !!!!\n\n=";
const std::string kControllo = "\n*** ERRORE NEL CONTROLLO\n\n  Punto      3  non determinabile in";
void Sovrapposti(R r) { r.Punti[2].Est = r.Punti[2].Nord = 1000; }

const struct CasoFlusso {
  const char* Nome;
  void (*Cambia)(ReteProva&);
  std::vector<std::string> Contiene;
  const char* Manca = "nan";
  bool Esito = true;
} kCasi[] = {
    {"plain", [](R) {}, {"N.   2\n", "     Il criterio di convergenza \xE8 stato"}, "N.   3"},
    {"one step", [](R r) { r.Opzioni.MaxIter = 1; }, {"VERGENZA NON RAGGIUNTA !!! \n\n"}, "N.   2"},
    {"limit of -5", [](R r) { r.Opzioni.MaxIter = -5; }, {"NON RAGGIUNTA !!! \n\n"}, "N.   2"},
    {"no such station", [](R r) { r.Stazioni[2].Punto = 4; }, {"azioni   15\n", "azioni    9\n"}},
    {"no such target", [](R r) { Oss(r, 0, 1).Punto = 4; }, {"azioni   18\n", "azioni   11\n"}},
    {"no point", [](R r) { r.Punti.clear(); }, {"Quota    Tipo\n\n\n"}, "ERRORE", false},
    {"no adjustment", [](R r) { r.Opzioni.TipoCalcolo = 4; }, {"RISULTATI"}, "COMPENSAZIONE   "},
    {"one direction",
     [](R r) { SoloA(r, 3), Oss(r, 0, 1).Distanza = kNo; },
     {kControllo + " planimetria\n\n\n"},
     "altimetria",
     false},
    {"no target height",
     [](R r) { SoloA(r, 3), Oss(r, 0, 1).AltSegnale = kNo; },
     {kControllo + " altimetria\n\n\n"},
     "planimetria",
     false},
    {"just enough",
     [](R r) { SoloA(r, 1), Oss(r, 0, 0).Distanza = kNo; },
     {"Sigma zero =  0.000 * 10-6 (in km-rad)\n\n\n", "  0.0\n\n\n="},
     "ELLISSI"},
    {"one fixed",
     [](R r) { r.Punti[1].TipoPla = 0; },
     {"\n*** ERRORE\n\nNUMERO DI STAZIONI FISSE (1)    INFERIORE A  2 " + kIndeterminato},
     "ITERA"},
    {"one row, first reading counts twice",
     [](R r) {
       SoloA(r, 1), Oss(r, 0, 1).Punto = -1, r.Stazioni.push_back({{}, 2, 1.5, 1, 0, 0, {}});
       r.Osservazioni[1].resize(1), Oss(r, 1, 0).Distanza = kNo;
     },
     {"\n*** ERRORE\n\nPIU' INCOGNITE (2)  DI OSSERVAZIONI (1)" + kIndeterminato},
     "FINE"},
    {"singular", [](R r) { SoloA(r, 1), Sovrapposti(r); }, {"Ridondanza         1\n\n="}, "FINE"},
    {"singular, heights go on",
     [](R r) {
       SoloA(r, 3), Sovrapposti(r);
       r.Stazioni.push_back({{}, 1, 1.5, 1, 0, 0, {}}), Oss(r, 1, 1).Direzione = kNo;
     },
     {"Ridondanza         3\n\n=", "QUOTE COMPENSATE"},
     "FINE"},
    {"own point", [](R r) { Oss(r, 0, 1).Punto = 0; }, {"DISTANZA FRA 1 e 1       0.000\n"}},
    {"coincident", Sovrapposti, {"CONTROLLARE LA DISTANZA FRA 1 e 3       0.000\n"}},
    {"no unknown",
     [](R r) {
       for (TCoorCr& p : r.Punti) p.TipoPla = p.TipoAlt = 1;
     },
     {"incognite =   0.0000 (m)\n", "RMS        (in mm)   Sx =     0     Sy =     0\n",
      "Media degli SqmZ  =     0.000    m\nMedia quadratica  =     0.000    m\n"}},
    {"height just enough",
     [](R r) { SoloA(r, 2), Oss(r, 0, 0).Punto = -1; },
     {"SismaZero         =   \xB1 0.000    m\n", "0.000   0.00\n"}},
    {"height short",
     [](R r) { SoloA(r, 2), Oss(r, 0, 0).Zenit = kNo, r.Stazioni[0].AltStrumNota = 0; },
     {"\n*** ERRORE\n\nPIU' INCOGNITE (2)  DI OSSERVAZIONI (1)" + kIndeterminato},
     "QUOTE"},
    {"height singular",
     [](R r) { SoloA(r, 2), Sovrapposti(r); },
     {"azioni    1\n", "\n\nIMPOSSIBILE ESEGUIRE IL CALCOLO IN ALTIMETRIA !\n\n\n\n="},
     "QUOTE"},
    {"no northing for a height",
     [](R r) { r.Punti[1].Nord = kNo; },
     {"FISSE (1)", "N. Osservazioni    6\n", "QUOTE"}},
    {"short distances of types 6 and 7",
     [](R r) {  // with what is shown of their geometry
       TOssCr &b = Oss(r, 0, 0), &a = Oss(r, 1, 0);
       b.Distanza = 1.11, b.Zenit = 100, b.TipoDist = kInclinataTipo7;
       a.Distanza = 1.06, a.Zenit = 50, a.TipoDist = kInclinataTipo6;
     },
     {"B                   1.006 ", "A                   0.762 "}},
    {"a reading at the limit counts for nothing, but is listed",
     [](R r) { Oss(r, 0, 1).Direzione = kNonDato; },
     {"azioni   19\n", "Cor.Azim. = -"}},
    {"sight of 0.316 m", [](R r) { Accanto(r, 0.316); }, {"DISTANZA FRA 1 e 3       0.316\n"}},
    {"sight of 0.317 m", [](R r) { Accanto(r, 0.317); }, {"ITERAZIONE N.   1"}, "LA DISTANZA FRA"},
    {"readings of a station not used",
     [](R r) { SoloDaD(r, 10, kNo); },
     {kControllo + " planimetria\n\n\n"},
     "altimetria",
     false},
    {"distance of a station not used",
     [](R r) { SoloDaD(r, kNo, 1020); },
     {kControllo + " planimetria\n\n\n"},
     "altimetria",
     false},
    {"sigma zero of 0.7e-10", [](R r) { Doppia(r, 1e-4); }, {"COORDINATE COMPENSATE"}, "ELLISSI"},
    {"sigma zero of 1.4e-10", [](R r) { Doppia(r, 2e-4); }, {"ELLISSI D'ERRORE"}},
    {"demoted", [](R r) { r.Punti[2].Est = kNo; }, {"    -   NoUs.    102.0000    Var.\n"}},
    {"not seen", [](R r) { SenzaB(r, -3); }, {"2000.0000   NoUs.    101.0000   NoUs.\n"}},
    {"stood upon", [](R r) { SenzaB(r, 1); }, {"2000.0000   Fiss.    101.0000   Fiss.\n"}},
    {"odd roles",
     [](R r) { r.Punti[3].TipoPla = 7, r.Punti[3].TipoAlt = 3; },
     {"990.0500       103.0000   Comp.\n"}},
    {"no map point", [](R r) { Carta(r, kNo, 0); }, {"ZONA =    0.000000\n\n"}},
    {"meridian", [](R r) { Carta(r, 1500e3, 4640e3); }, {"0.999600\n", " -3\xB0 27'  8\"39\n"}},
    {"meridian of the east zone", [](R r) { Carta(r, 2520e3, 4640e3); }, {"  2\xB0 32' 51\"60\n"}},
    {"80 km east of it", [](R r) { Carta(r, 2600e3, 4640e3); }, {"  3\xB0 30' 43\"90\n"}},
    {"meridian of a zone of UTM", [](R r) { Carta(r, 500e3, 4640e3); }, {"  0\xB0  0'  0\" 0\n"}},
    {"80 km east tell no zone",
     [](R r) { Carta(r, 80e3, 4640e3), r.Punti[1].Est = 1500e3, r.Punti[1].Nord = 4640e3; },
     {" -3\xB0 27'  8\"39\n"}},
    {"80.001 km tell that there is none",
     [](R r) { Carta(r, 80.001e3, 4640e3), r.Punti[1].Est = 1500e3, r.Punti[1].Nord = 4640e3; },
     {"  4640000.0000 101.0000\n"},
     "\xB0 "},
    {"on the equator", [](R r) { Carta(r, 1500e3, 0); }, {"ZONA =    0.000000\n\n"}},
    {"mean of the scale",
     [](R r) {
       Carta(r, 1500e3, 4640e3);
       r.Punti[1].Est = 1600e3, r.Punti[1].Nord = 4640e3;
       r.Punti[2].Est = 1700e3, r.Punti[2].Nord = 0, r.Punti[3].Est = 1700e3, r.Punti[3].Nord = kNo;
     },
     {"ZONA =    0.999662\n\n"}},
    {"no northing", [](R r) { Carta(r, 1700e3, kNo); }, {"000.0000             - 100.0000\n"}},
    {"no zone", [](R r) { Carta(r, 1150e3, 4640e3); }, {"  4640000.0000 100.0000\n"}, "\xB0 "},
    {"zone edge", [](R r) { Carta(r, 1849e3, 4640e3); }, {"   0\xB0 "}},
    {"under a degree", [](R r) { Carta(r, 1745e3, 4640e3); }, {"  -0\xB0 "}},
    {"station without record",
     [](R r) {
       r.Stazioni.push_back(r.Stazioni[0]), r.Osservazioni.push_back(r.Osservazioni[0]);
       for (int k = 0; k < 3; ++k) Oss(r, 4, k).Direzione += 30;
     },
     {"Stazione  1   A                     Cor.Azim. =   369.9999\n"}}};

TEST(Flusso, Casi) {
  for (const CasoFlusso& c : kCasi) {
    SCOPED_TRACE(c.Nome);
    ReteProva rete = CaricaRete("quadrato");
    c.Cambia(rete);
    const double est = rete.Punti.empty() ? 0 : rete.Punti[0].Est;
    ProvaCalcolo job(rete);
    EXPECT_EQ(job.Esegui(), c.Esito);
    EXPECT_FALSE(job.Contiene(c.Manca));
    for (const auto& testo : c.Contiene) EXPECT_TRUE(job.Contiene(testo)) << job.Rapporto.Testo;
    const double dopo = rete.Punti.empty() ? 0 : rete.Punti[0].Est;
    EXPECT_DOUBLE_EQ(dopo, c.Esito ? est : est * 0.001);  // a run that the check stops leaves km
  }
}

// A step is the last when no coordinate moves by more than 2 cm, whichever it is.
TEST(Flusso, Convergenza) {
  const ReteProva compensata = CaricaRete("quadrato").Compensata();
  const double casi[][3] = {// off the solution [m], steps
                            {0.0199, 0, 1},
                            {0, -0.0199, 1},
                            {-0.0201, 0, 2},
                            {0, 0.0201, 2}};
  for (const auto& [dE, dN, passi] : casi) {
    ReteProva rete = compensata;
    rete.Punti[3].Est += dE, rete.Punti[3].Nord += dN;
    ProvaCalcolo job(rete);
    EXPECT_TRUE(job.Esegui());
    EXPECT_EQ(job.Contiene("N.   2\n"), passi == 2) << dE << ' ' << dN;
  }
}

// What an int cannot count is refused before a record is looked at.
TEST(Flusso, TroppiRecord) {
  constexpr std::size_t kTroppi = std::size_t{1} << 31;
  ReteProva rete = CaricaRete("quadrato").Con(0);
  RapportoProva rapporto;
  for (const bool punti : {true, false}) {
    rete.Stazioni[0].Osservazioni = {rete.Osservazioni[0].data(), punti ? 3 : kTroppi / 2};
    const TVettCr<TCoorCr> vp(rete.Punti.data(), punti ? kTroppi : rete.Punti.size());
    const TVettCr<TStaCr> vs(rete.Stazioni);
    EXPECT_THROW(CalcCmpRigVelid1(&rete.Opzioni, &vp, &vs, &rete.DsOr, &rapporto), std::bad_alloc);
  }
}

// All 89 texts by a checksum: FNV-1a over each text and a line end.
TEST(Flusso, Catalogo) {
  unsigned long long somma = 0xcbf29ce484222325;
  for (unsigned id = 12460; id <= 12548; ++id)
    for (const char c : ProvaCalcolo::CaricaTesto(id) + '\n')
      somma = (somma ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  EXPECT_EQ(somma, 0x7ab11d6c65ef936b);
  EXPECT_EQ(ProvaCalcolo::CaricaTesto(12459) + ProvaCalcolo::CaricaTesto(12549), "");
}

// Writers of hosts were built with these places in the table of virtual functions: the second word
// of a pointer to member is the adjustment, the first the offset plus one.
TEST(Flusso, PostiDelloScrittore) {
  using W = CFileOutTmp;
  const auto posto = [](auto metodo) {
    static_assert(sizeof metodo == 2 * sizeof(std::ptrdiff_t));
    return (std::bit_cast<std::array<std::ptrdiff_t, 2>>(metodo)[0] - 1) / 8;
  };
  EXPECT_EQ(posto(&W::ScriviStringa), 2);  // after the two destructors
  EXPECT_EQ(posto(&W::ScriviStringaLn), 3);
  EXPECT_EQ(posto(&W::ScriviNumero), 4);
  EXPECT_EQ(posto(&W::ScriviNumeroLn), 5);
  EXPECT_EQ(posto(&W::ScriviSpazi), 6);
  EXPECT_EQ(posto(&W::SaltaRiga), 7);
}

}  // namespace

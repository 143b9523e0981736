// One survey of known truth, written as every instrument and program would write it, imported and
// adjusted: the records must be what was observed, and the points where they are.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "host/approssimate/approssimate.h"
#include "host/base/numeri.h"
#include "host/calcolo/calcolo.h"
#include "host/calcolo/rapporto.h"
#include "host/file_rete/lettura_rete.h"
#include "host/importazione/importa.h"
#include "tests/host/importazione/rilievo_prova.h"

using namespace compensa;

namespace {

const std::filesystem::path kCartella =
    std::filesystem::temp_directory_path() / ("rilievo-" + std::to_string(getpid()));

std::string Scrivi(const std::string& nome, const std::string& testo) {
  std::filesystem::create_directories(kCartella);
  std::ofstream(kCartella / nome, std::ios::binary) << testo;
  return kCartella / nome;
}

std::string Tavola() {
  return Scrivi("punti.csv",
                "nome;est;nord;quota;ruolo\nA;1000;2000;100;fisso\n"
                "B;1200;2150;104;fisso\nC;1150;1900;98,5;fisso\n");
}

OpzioniImporta Opzioni() {
  OpzioniImporta o;
  o.SqmDirezione = 0.0015, o.SqmDistCostante = 0.002, o.SqmDistProporzionale = 0.002;
  o.Uscita = kCartella / "rete.toml";
  return o;
}

// The network file that an import writes, read again; with what was said on the standard error.
Rete Importata(const OpzioniImporta& opzioni, std::string& detto) {
  testing::internal::CaptureStderr();
  const Stato stato = Importa(opzioni);
  detto = testing::internal::GetCapturedStderr();
  Diagnostica diario;
  std::optional<Rete> rete = LeggiRete(opzioni.Uscita, diario);
  EXPECT_TRUE(stato == kStatoRiuscito && rete && diario.Righe().empty()) << detto;
  std::filesystem::remove(opzioni.Uscita);
  return rete ? *std::move(rete) : Rete();
}

// Within half a unit of the last digit of the format [gon, m].
void ConfrontaLetture(const Rete& rete, double angolo, double lunghezza) {
  ASSERT_EQ(rete.Stazioni.size(), kRilievo.size());
  for (std::size_t s = 0; s < kRilievo.size(); ++s) {
    const Messa& m = kRilievo[s];
    const TStaCr& stazione = rete.Stazioni[s];
    EXPECT_EQ(rete.Nomi[stazione.Punto], kPunti[m.Punto].Nome);
    if (m.Hs > 0) {
      EXPECT_NEAR(stazione.AltStrum, m.Hs, lunghezza);
    }
    ASSERT_EQ(stazione.Osservazioni.size(), m.Mire.size());
    for (std::size_t i = 0; i < m.Mire.size(); ++i) {
      const TOssCr& o = stazione.Osservazioni[i];
      const Letta l = Vera(m, m.Mire[i]);
      EXPECT_EQ(rete.Nomi[o.Punto], l.A);
      EXPECT_NEAR(std::remainder(o.Direzione - l.Dir, 400), 0, angolo) << s << ' ' << i;
      EXPECT_EQ(Assegnato(o.Zenit) && Assegnato(o.Distanza), l.Completa);
      if (!l.Completa) continue;
      EXPECT_NEAR(o.Zenit, l.Zen, angolo);
      EXPECT_NEAR(o.Distanza, l.Dist, lunghezza);
      EXPECT_NEAR(o.AltSegnale, l.Hp, lunghezza);
      EXPECT_EQ(o.TipoDist, kInclinata);
    }
  }
}

void ConfrontaPunti(Rete& rete, double tolleranza) {
  CalcolaApprossimate(rete);  // those that the import was not to compute
  Rapporto rapporto;
  const Risultati esito = Compensa(rete, rapporto);
  ASSERT_TRUE(TutteRiuscite(esito));
  int quanti = 0;
  for (const RisultatoPunto& p : esito.Punti)
    for (const auto& vero : kPunti) {
      if (p.Nome != vero.Nome || p.RuoliIniziali.Pla == kNonUsato) continue;
      ++quanti;
      EXPECT_LT(std::hypot(p.Est - vero.Est, p.Nord - vero.Nord), tolleranza) << p.Nome;
      EXPECT_NEAR(p.Quota, vero.Quota, tolleranza) << p.Nome;
    }
  EXPECT_GE(quanti, 4);
}

void ConMappa(OpzioniImporta& o) {
  o.Lettura.Angoli = UnitaAngoli::GradiCompatti;
  o.Lettura.Mappa = Scrivi("mappa.toml",
                           "stazione = \"Staz\"\ngiro = \"Messa\"\nhs = \"Strum\"\na = \"Visto\"\n"
                           "faccia = \"Lato\"\ndir = \"Azim\"\nzen = \"Vert\"\n"
                           "dist_inclinata = \"Incl\"\nhp = \"Prisma\"\n");
  o.Formato = "csv";
}

int Quanti(const std::string& testo, std::string_view pezzo) {
  int quanti = 0;
  for (std::size_t i = testo.find(pezzo); i != testo.npos; i = testo.find(pezzo, i + 1)) ++quanti;
  return quanti;
}

enum Da { kTavola, kLibro, kRuoli };  // where the fixed points come from
constexpr const char* kSdr20 = "il posto non è certo";
constexpr double kDecimoSecondo = 0.1 / 3240;

const struct {
  const char* Nome;
  std::string (*Scritto)(const Rilievo&);
  double Angolo, Lunghezza;  // of the last digit
  Da Fissi;
  void (*Cambia)(OpzioniImporta&) = [](OpzioniImporta&) {};
  const char* Avviso = nullptr;  // the only one, if there is one
} kFormati[] = {
    {"GSI-8, gon, mm", Gsi<8, '2', '0'>, 1e-5, 1e-3, kLibro},
    {"GSI-8, gradi, piedi", Gsi<8, '3', '1'>, 1e-5 / 0.9, 3.1e-4, kLibro},
    {"GSI-16, gradi e primi, 0.1 mm", Gsi<16, '4', '6'>, kDecimoSecondo, 1e-4, kLibro},
    {"GSI-16, mil, piedi", Gsi<16, '5', '7'>, 1e-4 / 16, 3.1e-5, kLibro},
    {"GSI-16, gon, 0.01 mm", Gsi<16, '2', '8'>, 1e-5, 1e-5, kLibro},
    {"SDR33, gon", Sdr<true, 2, 1, 2, 1>, 1e-6, 1e-4, kLibro},
    {"SDR33, gradi, piedi, orizzonte", Sdr<true, 1, 2, 1, 2>, 1e-6 / 0.9, 3.1e-5, kLibro},
    {"SDR20, mil", Sdr<false, 4, 1, 1, 1>, 1e-5 / 16, 1e-4, kLibro, [](OpzioniImporta&) {}, kSdr20},
    {"SDR20, gradi, orizzonte", Sdr<false, 1, 1, 2, 2>, 1e-5 / 0.9, 1e-4, kLibro,
     [](OpzioniImporta&) {}, kSdr20},
    {"catasto", Catasto, 1e-4, 1e-3, kTavola},
    {"CSV nostro", Csv<false>, 1e-5, 1e-4, kTavola},
    {"CSV estraneo", Csv<true>, kDecimoSecondo, 1e-4, kTavola, ConMappa},
    {"gkf en", Gkf<'e', 'n', true>, 1e-5, 1e-4, kRuoli},
    {"gkf sw antiorario", Gkf<'s', 'w', false>, 1e-5, 1e-4, kRuoli},
};

TEST(Rilievo, OgniFormatoDaGliStessiRecord) {
  for (const auto& formato : kFormati) {
    for (const std::string fineRiga : {"\n", "\r\n", "\r"}) {
      SCOPED_TRACE(formato.Nome);
      std::string testo;
      for (const char c : formato.Scritto(kRilievo))
        testo += c == '\n' ? fineRiga : std::string(1, c);
      OpzioniImporta opzioni = Opzioni();
      opzioni.File = {
          Scrivi("libro.dat", (fineRiga == "\r\n" ? "\xEF\xBB\xBF" : "") + testo + '\x1A')};
      if (formato.Fissi == kTavola) opzioni.Coordinate = Tavola();
      if (formato.Fissi == kLibro) opzioni.Fissi = {"A", "B", "C"};
      formato.Cambia(opzioni);
      std::string detto;
      Rete rete = Importata(opzioni, detto);
      EXPECT_EQ(Quanti(detto, "avviso: "), formato.Avviso == nullptr ? 0 : 1) << detto;
      EXPECT_TRUE(formato.Avviso == nullptr || Quanti(detto, formato.Avviso) == 1) << detto;
      EXPECT_EQ(Quanti(detto, "Tralasciato:"), Quanti(detto, "Tralasciato:    note di stazioni"));
      ConfrontaLetture(rete, formato.Angolo / 2 + 1e-8, formato.Lunghezza / 2 + 1e-6);
      ConfrontaPunti(rete, 1e-3);
    }
  }
  std::filesystem::remove_all(kCartella);
}

TEST(Rilievo, DiviseFraPiuFileLeMesseTornanoInOrdine) {
  OpzioniImporta opzioni = Opzioni();
  opzioni.File = {Scrivi("a.gsi", Gsi<8, '2', '0'>({kRilievo[0]})),
                  Scrivi("b.csv", Csv<false>({kRilievo[1]})),
                  Scrivi("c.sdr", Sdr<true, 2, 1, 2, 1>({kRilievo[2]})),
                  Scrivi("d.dat", Catasto({kRilievo[3]}))};
  opzioni.Coordinate = Tavola();
  opzioni.Lettura.SegnalePersistente = opzioni.Lettura.IgnoraNonSupportati = true;
  std::ofstream(opzioni.File[3], std::ios::app) << "4|1|2|\n7|3|\n7|4|\n";
  std::string detto;
  Rete rete = Importata(opzioni, detto);
  EXPECT_EQ(Quanti(detto, "avviso: "), 1) << detto;
  EXPECT_EQ(Quanti(detto, "--ignora-non-supportati: avviso: opzione senza effetto"), 1) << detto;
  EXPECT_EQ(Quanti(detto, "righe 7 (contorni) (2, dalla riga 7 di \"" + opzioni.File[3]), 1);
  ConfrontaLetture(rete, 5.1e-5, 5.1e-4);
  ConfrontaPunti(rete, 1e-3);
  // A file that says nothing of use, one that is wrong and one that is not there: all are named,
  // with their lines, and nothing is written.
  opzioni.File.push_back(Scrivi("e.gsi", "110001+0000000A 21.102+0000000\n"));
  opzioni.File.push_back(kCartella / "manca.gsi");
  opzioni.File.push_back(Scrivi("vuoto.gsi", ""));
  testing::internal::CaptureStderr();
  EXPECT_EQ(Importa(opzioni), kStatoRete);
  detto = testing::internal::GetCapturedStderr();
  for (const char* atteso : {"e.gsi:1:17: errore: ", "manca.gsi: errore: ", "vuoto.gsi: errore: "})
    EXPECT_EQ(Quanti(detto, atteso), 1) << detto;
  EXPECT_FALSE(std::filesystem::exists(opzioni.Uscita));
  std::filesystem::remove_all(kCartella);
}

// What the options make of the same book: how many sights are left, and where the points fall.
const struct {
  const char* Nome;
  void (*Cambia)(OpzioniImporta&);
  int Osservazioni;
  double Tolleranza;  // a face left alone keeps its collimation
  const char* Detto;
} kOpzioni[] = {
    {"--facce media", [](OpzioniImporta&) {}, 14, 1e-3, "10 coppie di letture coniugate mediate"},
    {"--facce separate", [](OpzioniImporta& o) { o.Facce = ModoFacce::Separate; }, 24, 2e-3,
     "10 letture al cerchio destro riportate al sinistro senza media"},
    {"--medie", [](OpzioniImporta& o) { o.Medie = true; }, 13, 1e-3, "2 letture ripetute sono div"},
    {"--facce separate --medie",
     [](OpzioniImporta& o) { o.Facce = ModoFacce::Separate, o.Medie = true; }, 13, 1e-3,
     "20 letture ripetute sono diventate 9 medie"},
    {"--escludi", [](OpzioniImporta& o) { o.Escludi = {"0"}; }, 14, 1e-3,
     "in altimetria 3 fissi, 1 incognito, 1 escluso"},
    {"--fissi-planimetria",
     [](OpzioniImporta& o) {
       o.Fissi = {}, o.FissiPlanimetria = {"A", "B"}, o.FissiAltimetria = {"C"};
     },
     14, 2e-3, "in planimetria 2 fissi, 3 incogniti\n                in altimetria 1 fisso, 4"},
    {"senza approssimate", [](OpzioniImporta& o) { o.SenzaApprossimate = true; }, 14, 1e-3,
     "le coordinate approssimate di 2 punti: \"P 1\", \"0\""},
};

TEST(Rilievo, LeOpzioniFannoCioCheDicono) {
  for (const auto& caso : kOpzioni) {
    SCOPED_TRACE(caso.Nome);
    OpzioniImporta opzioni = Opzioni();
    opzioni.File = {Scrivi("libro.gsi", Gsi<16, '2', '8'>(kRilievo))};
    opzioni.Fissi = {"A", "B", "C"};
    caso.Cambia(opzioni);
    std::string detto;
    Rete rete = Importata(opzioni, detto);
    EXPECT_EQ(Quanti(detto, caso.Detto), 1) << detto;
    int osservazioni = 0;
    for (const TStaCr& s : rete.Stazioni) osservazioni += static_cast<int>(s.Osservazioni.size());
    EXPECT_EQ(osservazioni, caso.Osservazioni);
    ConfrontaPunti(rete, caso.Tolleranza);
  }
  std::filesystem::remove_all(kCartella);
}

}  // namespace

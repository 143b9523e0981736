// Memories of total stations: what good ones become, what is said of bad ones, and of noise.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "host/codifica.h"
#include "host/importazione/lettore.h"
#include "host/numeri.h"

namespace {

std::string Seme(const std::string& nome) {
  std::ifstream file(std::filesystem::path(CARTELLA_SEMI) / nome, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string Cifre(const std::optional<double>& valore) {
  return valore ? ' ' + NumeroFisso(*valore, 5) : " -";
}

struct Letto {
  Libretto Libro;
  Diagnostica Diario;
  std::string Testo;  // set-ups "A hs", shots "> B face dir zen dist(i|o) hp", points "= A e n q"
  std::string Righe;
};

Letto Leggi(const std::string& testo, const OpzioniLettura& opzioni = {}) {
  Letto letto;
  const Lettore* lettore = RiconosciFormato(testo);
  if (lettore == nullptr) lettore = &kLettoreSdr;
  lettore->Leggi(testo, letto.Libro.NomiFile.emplace_back("f"), opzioni, letto.Libro, letto.Diario);
  for (const PostazioneLibretto& p : letto.Libro.Postazioni) {
    letto.Testo += p.Punto + Cifre(p.Altezza) + '\n';
    for (const BattutaLibretto& b : p.Battute)
      letto.Testo += "> " + b.Punto + ' ' + "?12"[static_cast<int>(b.Lato)] + Cifre(b.Direzione) +
                     Cifre(b.Zenit) + Cifre(b.Distanza) + (b.TipoDist == kInclinata ? 'i' : 'o') +
                     Cifre(b.Segnale) + '\n';
  }
  for (const PuntoLibretto& p : letto.Libro.Punti)
    letto.Testo += "= " + p.Nome + Cifre(p.Est) + Cifre(p.Nord) + Cifre(p.Quota) + '\n';
  for (const Tralasciati& t : letto.Libro.Esclusi)
    letto.Testo += std::to_string(t.Quanti) + ' ' + t.Genere + '\n';
  for (const std::string& riga : letto.Diario.Righe()) letto.Righe += riga + '\n';
  return letto;
}

const std::string kGsi = Seme("gsi/gsi8_e_gsi16.gsi"), kSdr = Seme("sdr/sdr33.sdr");
const std::string kStazione = "110001+0000000A 88..10+00001550\n";
const std::string kMisura = "110002+0000000B 21.102+01000000 22.102+09896877 31..00+00250033";
const std::string kPrime =
    "A 1.55000\n> B ? 10.00000 98.96877 250.03300i 1.60000\n"
    "> C ? 88.39996 100.61796 180.28600i 1.30000\n";
const std::string kB = "> B ? 10.00000 98.96877 250.03300i",
                  kPuntoA = "= A 1000.00000 2000.00000 100.00000\n";

TEST(Strumenti, LeggonoLibrettiBuoni) {
  OpzioniLettura nessuna, data, codice, persistente;
  data.Stazione = "S";
  data.AltezzaStrumento = 1.5;
  codice.CodiceStazioneGsi = 2;
  persistente.SegnalePersistente = true;
  const struct {
    std::string Testo;
    OpzioniLettura Opzioni;
    std::string Atteso, Messaggi;  // beginning of each line of the messages
  } kCasi[] = {
      {kGsi, nessuna, kPrime + "> C ? 288.40056 299.38324 180.28610i 1.30000\n" + kPuntoA, ""},
      {Seme("gsi/una_riga.gsi"), nessuna, kPrime + kPuntoA, ""},
      {Seme("gsi/unita.gsi"), persistente,
       "0 1.54991\n> 1 ? 99.19074 100.00000 250.03293i -\n> P 1 è 2 ? 100.00000 93.75000 "
       "250.03293o -\n"
       "> 0 ? 0.00001 - 250.03300i 1.70000\n1 costanti del distanziometro (WI 51, 58, 59)\n"
       "1 terne di coordinate nulle\n1 dislivelli (WI 33)\n1 righe di livellazione (WI 330-336)\n"
       "1 parole WI 71\n",
       ""},
      {Seme("gsi/codici.gsi"), codice,
       "100 1.55000\n> 101 ? 10.00000 98.96877 250.03300i -\n100 1.60000\n"
       "> 102 ? 88.39996 100.61796 -i -\n= 100 1.00000 - -\n",
       "f:3:1: avviso: stazione \"100\": altezza strumentale cambiata da 1.55 a 1.6 m"},
      {kMisura + "\r" + kMisura, data, "S 1.50000\n" + kB + " -\n" + kB + " -\n", ""},
      {kStazione + kMisura + " 87..10+00001600\n" + kMisura, nessuna,
       "A 1.55000\n" + kB + " 1.60000\n" + kB + " -\n", ""},
      {kStazione + kMisura + " 87..10+00001600\r\n\r\n" + kMisura, persistente,
       "A 1.55000\n" + kB + " 1.60000\n" + kB + " 1.60000\n", ""},
      {kSdr, nessuna,
       "A 1.55000\n> B 1 10.00000 98.96880 250.03280i 1.60000\n"
       "> C 1 88.40000 100.61800 180.28610i 1.30000\n" +
           kPuntoA + "1 codici e descrizioni dei punti\n",
       ""},
      {Seme("sdr/varianti.sdr"), nessuna,
       "S1 -\n> P 1 50.13717 101.66667 100.12346i 1.50000\n> P 2 250.13717 298.33333 100.12000i "
       "1.50000\n"
       "> Q ? 100.00000 - -i 1.50000\n= S1 1000.25000 5000.50000 -\n= Q 2.00000 1.00000 -\n"
       "1 fattori di scala (06)\n1 orientamenti (07)\n1 codici e descrizioni dei punti\n"
       "1 righe ridotte (11)\n1 strati (12)\n1 osservazioni medie o corrette (09MC, 09MD)\n",
       "f:12:1: avviso: osservazione da \"S1\" a \"Q\": osservazione media o corretta"},
      {Seme("sdr/sdr20.sdr"), nessuna,
       "1 1.54991\n> 2 1 200.00000 100.00000 304.83763i 1.59990\n> 2 2 0.00000 300.00000 -i "
       "1.59990\n"
       "= 2 30.48000 60.96000 9.14400\n2 codici e descrizioni dei punti\n1 terne di coordinate "
       "nulle\n",
       "f:3:1: avviso: stazione \"1\": coordinate 0, 0, 0 non importate"},
  };
  for (const auto& caso : kCasi) {
    const Letto letto = Leggi(caso.Testo, caso.Opzioni);
    EXPECT_EQ(letto.Testo, caso.Atteso) << caso.Testo;
    EXPECT_EQ(letto.Righe.substr(0, caso.Messaggi.size()), caso.Messaggi);
    EXPECT_EQ(letto.Righe.empty(), caso.Messaggi.empty()) << letto.Righe;
  }
}

TEST(Strumenti, DiconoDoveUnLibrettoESbagliato) {
  const std::string gsi = kStazione + kMisura;
  const struct {
    std::string Testo, Da, A, Messaggio;
  } kCasi[] = {
      {gsi, "000B 21.102", "000è 21.109",
       "f:2:22: errore: punto \"è\", WI 21 (direzione): unità di misura"},
      {gsi, "+01000000", "+01OOO000",
       "f:2:24: errore: punto \"B\", WI 21 (direzione): dati non numerici"},
      {gsi, "+00250033", "+0025003", "f:2:49: errore: punto \"B\": parola incompleta"},
      {gsi, "+00250033", "+0000000000250033", "f:2:49: errore: punto \"B\": parola troppo lunga"},
      {gsi, "+00250033", "-00250033",
       "f:2:49: errore: punto \"B\", WI 31 (distanza inclinata): distanza neg"},
      {gsi, "22.102+", "22.102-",
       "f:2:33: errore: punto \"B\", WI 22 (angolo zenitale): numero fuori"},
      {gsi, "22.102+09896", "22.104+08960",
       "f:2:40: errore: punto \"B\", WI 22 (angolo zenitale): angolo sess"},
      {gsi, "22.102+09896", "22.102+00096",
       "f:2:33: avviso: WI 22 (angolo zenitale): sembrano angoli verticali"},
      {gsi, "22.102", "21.102", "f:2:33: errore: punto \"B\", WI 21 (direzione): parola ripetuta"},
      {gsi, "110002+0000000B", "12...2+0000000B",
       "f:2:1: errore: WI 11 (nome del punto): nome mancante"},
      {gsi, "88..10+00001550", "88..10+00000000",
       "f:1:1: avviso: stazione \"A\": altezza strumentale uguale"},
      {gsi, "110001+0000000A 88..10", "110001+0000000A 87..10",
       "f:2:1: errore: il file non ha stazioni"},
      {kGsi + kMisura + " 84..10+00001000", "", "",
       "f:5:1: errore: punto \"B\", WI 84-86: coordinate diverse"},
      {kSdr, "00211121", "00711121",
       "f:1:41: errore: riga \"00NM\", unità degli angoli: codice sconosciuto"},
      {kSdr, "00211121", "00311121",
       "f:1:41: avviso: riga \"00NM\", unità degli angoli: unità 3 letta"},
      {kSdr, "00NMSDR33", "13NMSDR33",
       "f:1:1: errore: riga \"13NM\", tipo di riga: manca l'intestazione"},
      {kSdr, "98.9688", "98,9688",
       "f:4:53: errore: riga \"09F1\", angolo verticale: numero sbagliato"},
      {kSdr, "A               B", "Z               B",
       "f:4:20: errore: riga \"09F1\", punto: la stazione non è"},
      {kSdr, "09F1", "09F2", "f:4:53: errore: riga \"09F2\", angolo verticale: faccia II"},
      {kSdr, "98.9688 ", "298.9688", "f:4:53: avviso: riga \"09F1\", angolo verticale: riga F1"},
      {kSdr, "B250.0328 ", "B-250.0328",
       "f:4:37: errore: riga \"09F1\", distanza inclinata: distanza negativa"},
      {kSdr, "09F1", "09XX",
       "f:4:3: avviso: riga \"09XX\", provenienza: osservazioni di provenienza"},
      {kSdr, "09F1      ", "09F1\t", "f:4:5: errore: riga \"09F1\": tabulazione"},
  };
  for (const auto& caso : kCasi) {
    std::string testo = caso.Testo;
    ASSERT_NE(testo.find(caso.Da), std::string::npos) << caso.Da;
    const std::string righe =
        Leggi(testo.replace(testo.find(caso.Da), caso.Da.size(), caso.A)).Righe;
    EXPECT_EQ(righe.substr(0, caso.Messaggio.size()), caso.Messaggio) << righe;
  }
}

TEST(Strumenti, NonCadonoSuByteQualunque) {
  std::mt19937 caso(20);  // NOLINT: the same noise in every run
  OpzioniLettura opzioni;
  opzioni.CodiceStazioneGsi = 2;
  for (const auto& voce : std::filesystem::recursive_directory_iterator(CARTELLA_SEMI)) {
    for (int n = 0; voce.is_regular_file() && n < 500; ++n) {
      std::string byte = Seme(voce.path().string());
      for (unsigned m = 0; m <= n % 9U; ++m) byte[caso() % byte.size()] = static_cast<char>(caso());
      const std::string testo = InUtf8(byte).value_or("");
      for (const Lettore* lettore : {&kLettoreGsi, &kLettoreSdr}) {
        Letto letto;
        lettore->Leggi(testo, letto.Libro.NomiFile.emplace_back("f"), opzioni, letto.Libro,
                       letto.Diario);
        EXPECT_LE(letto.Diario.Righe().size(), 60U);
        EXPECT_LE(letto.Libro.Esclusi.size(), 30U);
        for (const Messaggio& m : letto.Diario.Messaggi()) ASSERT_TRUE(m.Riga > 0 && m.Colonna > 0);
      }
    }
  }
}

}  // namespace

// Memories of total stations: what good ones become, what is said of bad ones, and of noise.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "host/base/codifica.h"
#include "host/base/numeri.h"
#include "host/importazione/lettore.h"

using namespace compensa;

namespace {

std::string Carica(const char* cartella, const std::string& nome) {
  std::ifstream file(std::filesystem::path(cartella) / nome, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}
std::string Seme(const std::string& nome) { return Carica(CARTELLA_SEMI, nome); }

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

TEST(Strumenti, LeggonoLibrettiBuoni) {
  OpzioniLettura nessuna, data, codice, persistente;
  data.Stazione = "S";
  data.AltezzaStrumento = 1.5;
  codice.CodiceStazioneGsi = 2;
  persistente.SegnalePersistente = true;
  const std::pair<const char*, OpzioniLettura> kCasi[] = {
      {"gsi/gsi8_e_gsi16.gsi", nessuna}, {"gsi/una_riga.gsi", nessuna},
      {"gsi/unita.gsi", persistente},    {"gsi/codici.gsi", codice},
      {"gsi/senza_stazione.gsi", data},  {"gsi/segnale.gsi", nessuna},
      {"gsi/segnale.gsi", persistente},  {"sdr/sdr33.sdr", nessuna},
      {"sdr/varianti.sdr", nessuna},     {"sdr/sdr20.sdr", nessuna},
  };
  std::string letti;
  for (const auto& [nome, opzioni] : kCasi) {
    const Letto letto = Leggi(Seme(nome), opzioni);
    letti += std::string("# ") + nome + '\n' + letto.Testo + letto.Righe;
  }
  EXPECT_EQ(letti, Carica(CARTELLA_DATI, "strumenti.txt"));
}

TEST(Strumenti, DiconoDoveUnLibrettoESbagliato) {
  const std::string gsi = kStazione + kMisura;
  const struct {
    std::string Testo, Da, A, Dove, Problema;
  } kCasi[] = {
      {gsi, "000B 21.102", "000è 21.109", "2:22: errore", "WI 21 (direzione): unità di misura"},
      {gsi, "+01000000", "+01OOO000", "2:24: errore", "dati non numerici: trovato \"01OOO000\""},
      {gsi, "+00250033", "+0025003", "2:49: errore", "parola incompleta"},
      {gsi, "+00250033", "+0000000000250033", "2:49: errore", "comincia"},
      {gsi, "+00250033", "-00250033", "2:49: errore", "punto \"B\", WI 31 (distanza inclinata)"},
      {gsi, "22.102+", "22.102-", "2:33: errore", "sembra un angolo verticale dall'orizzonte"},
      {gsi, "22.102+09896", "22.104+08960", "2:40: errore", "angolo sessagesimale sbagliato"},
      {gsi, "22.102+09896", "22.102+00096", "2:33: avviso", "sembrano angoli verticali"},
      {gsi, "22.102", "21.102", "2:33: errore", "parola ripetuta"},
      {gsi, "110002+0000000B", "12...2+0000000B", "2:1: errore", "WI 11 (nome del punto): nome"},
      {gsi, "+00001550", "+00000000", "1:1: avviso",
       "stazione \"A\": altezza strumentale uguale a"},
      {gsi, "A 88..10", "A 87..10", "2:1: errore", "il file non ha stazioni (indicare la stazione"},
      {"41....+00000002 42....+0000000A\n" + kMisura, "000B", "000C", "2:1: errore",
       "--hs ALTEZZA; se sono i blocchi con il codice 2 ad aprire le stazioni, "
       "--gsi-codice-stazione 2"},
      {kGsi + kMisura + " 84..10+1", "10+1", "10+00001001", "5:1: errore", "coordinate diverse"},
      {kSdr, "00211121", "00711121", "1:41: errore", "unità degli angoli: codice sconosciuto"},
      {kSdr, "00211121", "00311121", "1:41: avviso", "unità 3 letta come mil"},
      {kSdr, "00NMSDR33", "13NMSDR33", "1:1: errore", "manca l'intestazione"},
      {kSdr, "98.9688", "98,9688", "4:53: errore", "i decimali vogliono il punto"},
      {kSdr, "A               B", "Z               B", "4:20: errore", "la stazione non è quella"},
      {kSdr, "09F1", "09F2", "4:53: errore", "faccia II con un angolo zenitale minore"},
      {kSdr, "98.9688 ", "298.9688", "4:53: avviso", "riga F1 con un angolo zenitale maggiore"},
      {kSdr, "B250.0328 ", "B-250.0328", "4:37: errore", "distanza negativa"},
      {kSdr, "09F1", "09XX", "4:3: avviso", "osservazioni di provenienza \"XX\" non importate"},
      {kSdr, "09F1      ", "09F1\t", "4:5: errore", "tabulazione"},
  };
  for (const auto& caso : kCasi) {
    std::string testo = caso.Testo;
    testo.replace(testo.find(caso.Da), caso.Da.size(), caso.A);  // throws if it is not there
    const std::string righe = Leggi(testo).Righe, prima = righe.substr(0, righe.find('\n'));
    EXPECT_TRUE(prima.starts_with("f:" + caso.Dove)) << caso.A << '\n' << righe;
    EXPECT_NE(prima.find(caso.Problema), prima.npos) << caso.A << '\n' << righe;
  }
}

TEST(Strumenti, NonCadonoSuByteQualunque) {
  std::mt19937 caso(20);  // NOLINT: the same noise in every run
  OpzioniLettura opzioni;
  opzioni.CodiceStazioneGsi = 2;
  for (const auto* nome : {"gsi/gsi8_e_gsi16.gsi", "gsi/unita.gsi", "gsi/codici.gsi",
                           "gsi/una_riga.gsi", "sdr/varianti.sdr", "sdr/sdr20.sdr"}) {
    for (unsigned n = 0; n < 700; ++n) {
      std::string byte = Seme(nome);
      for (unsigned m = 0; m <= n % 9; ++m) byte[caso() % byte.size()] = static_cast<char>(caso());
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

// The checks of a network that is not adjusted: every planted slip is named where it stands, and good
// networks are left in peace.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "host/approssimate/approssimate.h"
#include "host/lettura_rete.h"
#include "host/verifica/connessione.h"
#include "host/verifica/rilievi.h"
#include "host/verifica/verifica.h"

namespace {

Rete Carica(const std::string& nome) {
  Diagnostica diario;
  return *LeggiRete(CARTELLA_ESEMPI "/" + nome + ".toml", diario);
}

// One finding a line, in file order.
std::vector<std::string> Righe(Rete& rete) {
  CalcolaApprossimate(rete);
  Diagnostica diario;
  for (const Rilievi& rilievi :
       {ControllaRipetizioni(rete), ControllaChiusure(rete), ControllaScarti(rete),
        ControllaLetture(rete), EsaminaConnessione(rete).Trovati})
    for (const Rilievo& r : rilievi) diario.Avviso(r.Dove, r.Cosa);
  return diario.Righe();
}

TEST(Verifica, ReteBuona) {
  for (const char* nome : {"altezze_strumentali", "fuori_centro", "gauss_boaga_ovest",
                           "ghilani_wolf", "stazione_libera"}) {
    Rete rete = Carica(nome);
    EXPECT_EQ(Righe(rete), std::vector<std::string>{}) << nome;
  }
}

TOssCr& Oss(Rete& r, int stazione, int i) { return r.Osservazioni[stazione][i]; }

const struct CasoSvista {
  const char* Nome;
  void (*Guasta)(Rete&);
  const char* Testo;
} kSviste[] = {
    {"altezze_strumentali", [](Rete& r) { Oss(r, 0, 1).Distanza += 100; }, "errore di 100 m?"},
    {"altezze_strumentali", [](Rete& r) { Oss(r, 0, 1).Distanza = 2184.8458; },
     "da \"P101\" a \"P103\": distanza ridotta"},
    {"altezze_strumentali", [](Rete& r) { Oss(r, 0, 1).Direzione -= 100; }, "errore di 100 gon?"},
    {"altezze_strumentali", [](Rete& r) { Oss(r, 0, 1).Direzione += 200; },
     "lettura al cerchio destro non ridotta?"},
    {"altezze_strumentali", [](Rete& r) { Oss(r, 0, 1).Direzione = 116.5050; },
     "cifre scambiate, forse 161.5050?"},
    {"altezze_strumentali", [](Rete& r) { Oss(r, 0, 1).Punto = 5; },
     "il punto visto è \"P103\"?"},
    {"altezze_strumentali", [](Rete& r) { Oss(r, 0, 1).Direzione += 0.02; },
     "errore di chiusura angolare"},
    {"altezze_strumentali", [](Rete& r) { std::swap(r.Punti[6].Est, r.Punti[6].Nord); },
     "punto \"P107\": le coordinate discordano"},
    {"altezze_strumentali", [](Rete& r) { std::swap(r.Punti[6].Est, r.Punti[6].Nord); },
     "Est e Nord scambiati?"},
    {"altezze_strumentali", [](Rete& r) { r.Punti[0].Est += 1000; },
     "punto fisso sbagliati?"},
    {"altezze_strumentali", [](Rete& r) { r.Punti[1] = r.Punti[0]; },
     "ha le coordinate del punto \"P101\""},
    {"altezze_strumentali", [](Rete& r) { r.Nomi[1] = "p1O1"; }, "per O e 0"},
    {"altezze_strumentali", [](Rete& r) { Oss(r, 0, 1).Zenit = 400 - Oss(r, 0, 1).Zenit; },
     "lettura al cerchio destro non ridotta? sarebbe 100.9175"},
    {"altezze_strumentali", [](Rete& r) { for (TOssCr& o : r.Osservazioni[0]) o.Zenit = std::abs(o.Zenit - 100); },
     "angoli verticali, contati dall'orizzonte?"},
    {"altezze_strumentali", [](Rete& r) { r.Stazioni[0].AltStrum = 166.2; }, "sarebbe 1.662 m"},
    {"altezze_strumentali", [](Rete& r) { r.Stazioni[0].AltStrum = kValoreMancante; },
     "manca l'altezza dello strumento: 6 visuali non danno dislivelli"},
    {"altezze_strumentali", [](Rete& r) { Oss(r, 0, 1).AltSegnale = kValoreMancante; },
     "è senza altezza del segnale"},
    {"gauss_boaga_ovest", [](Rete& r) { Oss(r, 0, 1).AltSegnale += 2; }, "la somma è"},
    {"gauss_boaga_ovest", [](Rete& r) { Oss(r, 0, 2).Punto = Oss(r, 0, 1).Punto; },
     "stesso punto della riga"},
    {"gauss_boaga_ovest", [](Rete& r) { Oss(r, 0, 0).Distanza += 1; }, "errore di 1 m?"},
    {"stazione_libera", [](Rete& r) { Oss(r, 0, 2).Direzione += 1; }, "\"N\" a \"3\": direzione"},
};

TEST(Verifica, OgniSvista) {
  for (const CasoSvista& caso : kSviste) {
    Rete rete = Carica(caso.Nome);
    caso.Guasta(rete);
    std::string testo;
    const std::vector<std::string> righe = Righe(rete);
    for (const std::string& riga : righe) testo += riga + "\n";
    EXPECT_NE(testo.find(caso.Testo), std::string::npos) << caso.Testo << "\n" << testo;
    EXPECT_LE(righe.size(), 12) << testo;
    if (getenv("MOSTRA")) std::cout << "## " << caso.Testo << "\n" << testo;
  }
}

}  // namespace

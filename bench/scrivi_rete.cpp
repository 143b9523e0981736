// Writes a synthetic network as compensa reads it: RETE.toml with its points and observations in
// CSV.
//   bench_scrivi_rete PUNTI CARTELLA

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "bench/rete_sintetica.h"

using namespace kzt5cmrg;

namespace {

void Numero(std::string& testo, double valore, int decimali) {
  char cifre[64];
  const auto fine =
      std::to_chars(std::begin(cifre), std::end(cifre), valore, std::chars_format::fixed, decimali);
  testo.append(cifre, fine.ptr);
}

void Salva(const std::filesystem::path& dove, const std::string& testo) {
  std::ofstream(dove, std::ios::binary) << testo;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  int n = 0;
  const std::string quanti = argv[1];
  std::from_chars(quanti.data(), quanti.data() + quanti.size(), n);
  const std::filesystem::path cartella = argv[2];
  std::filesystem::create_directories(cartella);
  const ReteSintetica rete = GeneraRete(n);

  std::string punti = "nome;est;nord;quota;planimetria;altimetria\n";
  for (const TCoorCr& p : rete.Punti) {
    punti += p.Nome;
    for (const double valore : {p.Est, p.Nord, p.Quota}) Numero(punti += ';', valore, 4);
    punti += p.TipoPla == kFisso ? ";fisso;fisso\n" : ";incognito;incognito\n";
  }
  Salva(cartella / "punti.csv", punti);

  std::string osservazioni = "stazione;giro;altezza;punto;direzione;zenit;segnale;distanza;tipo\n";
  for (const TStaCr& s : rete.Stazioni)
    for (const TOssCr& o : s.Osservazioni) {
      osservazioni += rete.Nomi[static_cast<std::size_t>(s.Punto)] + ";1;1.5;" +
                      rete.Nomi[static_cast<std::size_t>(o.Punto)] + ';';
      Numero(osservazioni, o.Direzione, 5);
      Numero(osservazioni += ';', o.Zenit, 5);
      Numero(osservazioni += ';', o.AltSegnale, 3);
      Numero(osservazioni += ';', o.Distanza, 4);
      osservazioni += ";inclinata\n";
    }
  Salva(cartella / "osservazioni.csv", osservazioni);

  Salva(cartella / "rete.toml",
        "formato = 1\npunti = \"punti.csv\"\nosservazioni = \"osservazioni.csv\"\n"
        "[opzioni]\ncalcolo = \"plano-altimetria\"\nsqm_direzione = 0.0010\n"
        "sqm_distanza_costante = 0.003\nsqm_distanza_proporzionale = 0.002\n");
}

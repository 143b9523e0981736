// Reading and making of the networks for the tests; the writing rules of their report.

#include "tests/comuni/rete_prova.h"

#include <charconv>
#include <climits>
#include <fstream>
#include <sstream>
#include <stdexcept>

using namespace kzt5cmrg;

void ReteProva::Collega() {
  for (int i = 0; i < std::ssize(Punti); ++i) Punti[i].Nome = Nomi[i];
  for (int i = 0; i < std::ssize(Stazioni); ++i) Stazioni[i].Osservazioni = Osservazioni[i];
}

ReteProva ReteProva::Con(int tipoCalcolo, int iterazioni) const {
  ReteProva altra = *this;
  altra.Opzioni.TipoCalcolo = tipoCalcolo;
  if (iterazioni != 0) altra.Opzioni.MaxIter = iterazioni;
  altra.Collega();
  return altra;
}

ReteProva ReteProva::Compensata() const {
  ReteProva altra = Con(kCalcoloPlanimetria);
  ProvaCalcolo(altra).Esegui();
  for (TCoorCr& p : altra.Punti)
    if (p.TipoPla == kCompensato) p.TipoPla = kIncognito;
  return altra.Con(Opzioni.TipoCalcolo);
}

std::string LeggiFile(const std::string& percorso) {
  std::ifstream file(percorso, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

ReteProva CaricaRete(const std::string& nome) {
  return LeggiRete(LeggiFile(CARTELLA_PROVE "/reti/" + nome + ".net"));
}

ReteProva LeggiRete(const std::string& testo) {
  ReteProva rete;
  std::istringstream righe(testo);
  for (std::string riga, tipo, nome; std::getline(righe, riga);) {
    if (riga.starts_with('#')) continue;
    std::istringstream parole(riga.replace(std::min(riga.find('|'), riga.size()), 1, " "));
    if (parole >> tipo && tipo == "PT") parole >> nome;
    std::vector<double> n;
    for (std::string p; parole >> p;) {
      n.push_back(kValoreMancante);
      const char *inizio = p.data(), *fine = inizio + p.size();
      if (p == "-") continue;
      if (std::from_chars(inizio, fine, n.back()).ptr != fine) throw std::invalid_argument(p);
    }
    const auto intero = [&n](int k) {
      const double v = n.at(k);
      return v >= INT_MIN && v <= INT_MAX ? static_cast<int>(v)
                                          : throw std::invalid_argument("int");
    };
    const auto byte = [&intero](int k) { return static_cast<unsigned char>(intero(k)); };
    if (tipo == "OPZ") rete.Opzioni = {n.at(0), n.at(1), n.at(2), intero(3), intero(4), byte(5)};
    if (tipo == "DSOR") rete.DsOr = {byte(0), n.at(1), n.at(2)};
    if (tipo == "PT") rete.Nomi.push_back(nome);
    const int ruolo = tipo == "PT" ? intero(4) : 0;
    if (tipo == "PT")
      rete.Punti.push_back({{}, n.at(0), n.at(1), n.at(2), 0, intero(3), ruolo, 0, 0, 0});
    if (tipo == "ST") rete.Osservazioni.emplace_back();
    if (tipo == "ST")
      rete.Stazioni.push_back({{}, intero(0), n.at(1), intero(2), n.at(3), n.at(4), {}});
    if (tipo != "OS" || rete.Osservazioni.empty()) continue;
    const int tipoDist = intero(5);
    rete.Osservazioni.back().push_back({{}, intero(0), n[1], n[2], n[3], n[4], tipoDist});
  }
  rete.Collega();
  return rete;
}

ReteProva ReteCasuale(unsigned seme) {
  Caso caso(seme);
  ReteProva rete;
  const bool carta = seme % 3 == 1, minima = seme % 10 == 7;
  const double lato = caso.Scelta({300.0, 2000.0, 9000.0});
  const double est = carta ? caso.Scelta({1500e3, 2520e3, 500e3, 0.0}) + caso.Reale(-9e4, 9e4) : 0;
  const double nord = carta ? caso.Reale(4e6, 5.2e6) : 0;
  rete.Opzioni = {0.003, 0.002, 0.001, 1, 3, carta};
  rete.DsOr = {seme % 2 == 1, 0.13, 6378000.0};
  const int n = 5 + caso.Intero(10);
  for (int i = 0; i < n; ++i) {
    const bool fisso = i < 2 + n / 6;
    rete.Punti.push_back({{},
                          est + caso.Reale(0, lato),
                          nord + caso.Reale(0, lato),
                          caso.Reale(200, 200 + lato / 10),
                          0,
                          fisso,
                          minima ? fisso : i % 4 == 0,
                          0,
                          0,
                          0});
    rete.Nomi.push_back(std::string("P").append(std::to_string(i + 1)));
  }
  for (int s = 0; s < (minima ? 1 : n); ++s) {
    const TCoorCr& p = rete.Punti[s];
    rete.Stazioni.push_back({{},
                             s,
                             caso.Reale(1.4, 1.7),
                             minima ? 1 : caso.Scelta({0, 1, 1, 2}),
                             caso.Scelta({0.0, 0.0, 0.0005, 0.005, 0.05, 2.5, kValoreMancante}),
                             caso.Reale(0, 400),
                             {}});
    rete.Osservazioni.emplace_back();
    const double zero = caso.Reale(0, 400);
    for (int t = 0; t < n; ++t) {
      const TCoorCr& q = rete.Punti[t];
      if (t == s || (minima ? t > 1 && q.TipoPla == kFisso : caso.Intero(4) == 0)) continue;
      const double distanza = std::hypot(q.Est - p.Est, q.Nord - p.Nord);
      const double azimut = std::atan2(q.Est - p.Est, q.Nord - p.Nord) / kRadPerGon;
      const double alzo = std::atan2(q.Quota - p.Quota, distanza);
      const int tipo = caso.Scelta({0, 1, 1, 3, 6, 7, 10, 20, 30, -5});
      const bool inclinata = tipo == 1 || tipo == 6 || tipo == 7;
      const double misura = inclinata ? distanza / std::cos(alzo) : distanza;
      const auto letto = [&](double v, double errore, bool mai = false) {
        if ((!minima && caso.Intero(8) == 0) || mai) return kValoreMancante;
        const bool grossolano = seme % 4 == 2 && errore < 0.1 && caso.Intero(20) == 0;
        return v + caso.Reale(-errore, errore) * (grossolano ? caso.Reale(10, 100) : 1);
      };
      rete.Osservazioni.back().push_back(
          {{},
           t,
           letto(std::fmod(azimut - zero + 800, 400), 1e-3, seme % 5 == 3),
           letto(100 - alzo / kRadPerGon, 1e-3),
           letto(1.7, 0.5),
           letto(misura, 5e-3, seme % 5 == 4 || (minima && t == 1)),
           tipo});
    }
    std::vector<TOssCr>& giro = rete.Osservazioni.back();
    if (!minima && !giro.empty()) giro.push_back(TOssCr(giro[0]));  // back to the first target
  }
  for (TCoorCr& p : rete.Punti) {
    if (p.TipoPla == kIncognito) p.Est += caso.Reale(-0.1, 0.1), p.Nord += caso.Reale(-0.1, 0.1);
    if (p.TipoAlt == kFisso || caso.Intero(9) != 0) continue;
    p.Quota = kValoreMancante, p.TipoAlt = kNonUsato;
  }
  rete.Collega();
  return rete;
}

void RapportoProva::ScriviNumero(double valore, int larghezza, int decimali) {
  char cifre[512] = "-";
  const auto formato = std::chars_format::fixed;
  if (!(valore > kNonDato)) *std::to_chars(cifre, cifre + 511, valore, formato, decimali).ptr = 0;
  std::string_view numero = cifre;  // what rounds to zero has no sign, a negative zero keeps it
  if (valore < 0 && numero.find_first_of("123456789") == numero.npos) numero.remove_prefix(1);
  ScriviSpazi(larghezza - static_cast<int>(numero.size()));
  Testo += numero;
}

// A host of the module, the smallest useful one: a free station whose position and height come from
// directions, slope distances and zenith angles to three known points. It lays out the records,
// sends the report to the standard output and ends with the adjusted point.
// (Data: Baumann, Vermessungskunde, 1995, section 23.3.4.)

#include <kzt5cmrg.h>

#include <array>
#include <charconv>
#include <cstddef>
#include <iostream>
#include <string>
#include <string_view>

using namespace kzt5cmrg;

namespace {

// A value in fixed-point notation; std::to_chars knows no locale.
std::string Cifre(double valore, int decimali) {
  if (valore > kNonDato) return "-";
  std::array<char, 400> cifre{};  // the longest double has 309 digits before the point
  const auto fine = std::to_chars(cifre.data(), cifre.data() + cifre.size(), valore,
                                  std::chars_format::fixed, decimali);
  return {cifre.data(), fine.ptr};
}

// Shows the report as UTF-8. The module's texts are Windows-1252: of that, all that a report can
// hold beyond ASCII are characters with the same number in Unicode.
class RapportoSuSchermo : public CFileOutTmp {
 public:
  void ScriviStringa(TTestoCr testo, int larghezza) override {
    constexpr unsigned char kFineAscii = 0x80;
    for (const char c : testo) {
      const auto byte = static_cast<unsigned char>(c);
      if (byte < kFineAscii)
        std::cout << c;
      else
        std::cout << static_cast<char>(0xC0 | (byte >> 6))
                  << static_cast<char>(0x80 | (byte & 0x3F));
    }
    ScriviSpazi(larghezza - static_cast<int>(testo.size()));
  }
  void ScriviStringaLn(TTestoCr testo, int larghezza) override {
    ScriviStringa(testo, larghezza);
    SaltaRiga(1);
  }
  void ScriviNumero(double valore, int larghezza, int decimali) override {
    const std::string cifre = Cifre(valore, decimali);
    ScriviSpazi(larghezza - static_cast<int>(cifre.size()));
    std::cout << cifre;
  }
  void ScriviNumeroLn(double valore, int larghezza, int decimali) override {
    ScriviNumero(valore, larghezza, decimali);
    SaltaRiga(1);
  }
  void ScriviSpazi(int n) override { Ripeti(' ', n); }
  void SaltaRiga(int n) override { Ripeti('\n', n); }

 private:
  static void Ripeti(char c, int n) {
    for (int i = 0; i < n; ++i) std::cout << c;
  }
};

TCoorCr Punto(std::string_view nome, double est, double nord, double quota, Ruolo ruolo) {
  TCoorCr p{};
  p.Nome = nome;
  p.Est = est;
  p.Nord = nord;
  p.Quota = quota;
  p.TipoPla = p.TipoAlt = ruolo;
  return p;
}

TOssCr Osservazione(int punto, double direzione, double zenit, double altSegnale, double distanza) {
  TOssCr o{};
  o.Punto = punto;
  o.Direzione = direzione;
  o.Zenit = zenit;
  o.AltSegnale = altSegnale;
  o.Distanza = distanza;
  o.TipoDist = kInclinata;
  return o;
}

}  // namespace

int main() {
  std::array punti = {Punto("1", 1000.000, 1201.171, 108.680, kFisso),
                      Punto("2", 1371.217, 1072.895, 111.974, kFisso),
                      Punto("3", 1016.437, 952.352, 117.312, kFisso),
                      Punto("N", 1181.800, 1071.700, 94.300, kIncognito)};
  std::array osservazioni = {Osservazione(0, 0.0000, 95.9015, 1.572, 223.6428),
                             Osservazione(1, 160.1838, 94.0450, 1.650, 190.2878),
                             Osservazione(2, 320.7884, 92.8390, 1.588, 205.1894)};
  std::array<TStaCr, 1> stazioni{};
  TStaCr& stazione = stazioni.front();
  stazione.Punto = 3;
  stazione.AltStrum = 1.600;
  stazione.AltStrumNota = kAltezzaNota;
  stazione.Osservazioni = osservazioni;

  const TOpzCr opzioni{.SqmDistCost = 0.005,
                       .SqmDistProp = 0.0,
                       .SqmDir = 0.002,
                       .MaxIter = 20,
                       .TipoCalcolo = kCalcoloPlanimetria | kCalcoloAltimetria,
                       .Cartografiche = 0};
  const CCalcDsOr curvaturaRifrazione{
      .CorrCurvRifr = 0, .CoeffRifr = 0.13, .RaggioTerra = 6371000.0};
  const TVettCr<TCoorCr> vettorePunti(punti);
  const TVettCr<TStaCr> vettoreStazioni(stazioni);
  RapportoSuSchermo rapporto;

  CalcCmpRigVelid1 calcolo(&opzioni, &vettorePunti, &vettoreStazioni, &curvaturaRifrazione,
                           &rapporto);
  if (!calcolo.Esegui()) return 1;

  for (const TCoorCr& p : punti)
    if (p.TipoPla == kCompensato && p.TipoAlt == kCompensato)
      std::cout << "\nPunto " << p.Nome << ": Est " << Cifre(p.Est, 4) << "  Nord "
                << Cifre(p.Nord, 4) << "  Quota " << Cifre(p.Quota, 4) << '\n';
  return 0;
}

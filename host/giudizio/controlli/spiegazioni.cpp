// Slips of single values: whole units too many or too few, exchanged digits.

#include "host/giudizio/controlli/spiegazioni.h"

#include <array>
#include <cmath>
#include <utility>

#include "host/base/numeri.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

constexpr int kDecimali = 4;
constexpr double kVolteTolleranza = 3.0;  // a smaller slip would be explained by chance

// The value with two neighbouring digits exchanged that fits; empty if there is none.
template <class Differenza>
std::string CifreScambiate(double letto, double tolleranza, const Differenza& differenza) {
  if (std::abs(differenza(letto)) < kVolteTolleranza * tolleranza) return {};
  std::string testo = NumeroFisso(letto, kDecimali);
  for (std::size_t i = 0; i + 1 < testo.size(); ++i) {
    const std::size_t j = testo[i + 1] == '.' ? i + 2 : i + 1;
    if (testo[i] == '.' || j >= testo.size() || testo[i] == testo[j]) continue;
    std::swap(testo[i], testo[j]);
    const NumeroLetto provato = LeggiNumero(testo);
    if (provato.Esito == EsitoNumero::Valido && std::abs(differenza(provato.Valore)) < tolleranza)
      return "cifre scambiate, forse " + testo + "?";
    std::swap(testo[i], testo[j]);
  }
  return {};
}

}  // namespace

std::string SpiegaDirezione(double letta, double calcolata, double tolleranza) {
  const double scarto = std::remainder(letta - calcolata, kGiroGon);
  if (std::abs(std::abs(scarto) - kMezzoGiroGon) < tolleranza)
    return "lettura al cerchio destro non ridotta?";
  for (const double intero : std::array{100.0, 10.0, 1.0})
    if (intero > kVolteTolleranza * tolleranza && std::abs(std::abs(scarto) - intero) < tolleranza)
      return "errore di " + NumeroBreve(intero) + " gon?";
  return CifreScambiate(letta, tolleranza,
                        [&](double x) { return std::remainder(x - calcolata, kGiroGon); });
}

std::string SpiegaDistanza(double letta, double calcolata, double tolleranza) {
  const double scarto = std::abs(letta - calcolata);
  for (const double intero : std::array{1000.0, 100.0, 10.0, 1.0})
    if (intero > kVolteTolleranza * tolleranza && std::abs(scarto - intero) < tolleranza)
      return "errore di " + NumeroBreve(intero) + " m?";
  return CifreScambiate(letta, tolleranza, [&](double x) { return x - calcolata; });
}

}  // namespace compensa

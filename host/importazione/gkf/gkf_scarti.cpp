// One standard deviation for all angles and one pair for all distances, from a file that states
// them by observation. Where they differ the value that most observations have stands for all, but
// for distances whose standard deviations lie on one straight line
//   s = a + b D
// which is the network's own model: a and b come from a least-squares line, taken only if it gives
// every single value back.

#include <algorithm>
#include <cmath>

#include "host/base/gkf_formato.h"
#include "host/base/numeri.h"
#include "host/base/testi.h"
#include "host/base/unita.h"
#include "host/importazione/gkf/gkf_contesto.h"

namespace compensa {

namespace gkf {
namespace {

// Values nearer than this are the same one, written or rounded in another way [gon, m, m/km].
constexpr double kRisoluzione = 1e-8;
constexpr double kAccordoRetta = 2e-6;  // of a standard deviation with the line [m]

std::int64_t Chiave(double valore) {
  constexpr double kMassima = 9e9;  // far above every standard deviation, and no overflow
  return std::llround(std::clamp(valore, 0.0, kMassima) / kRisoluzione);
}

double Arrotonda(double valore) { return std::round(valore / kRisoluzione) * kRisoluzione; }

std::string Scritto(double valore) {
  constexpr int kDecimali = 6;
  return NumeroCorto(valore, kDecimali);
}

}  // namespace

void Scarti::Conta(Conteggi& conteggi, const Coppia& valore) {
  Voce& voce = conteggi[{Chiave(valore.first), Chiave(valore.second)}];
  if (voce.Quanti++ == 0) voce.Valore = valore;
}

const Scarti::Voce& Scarti::PiuFrequente(const Conteggi& conteggi) {
  return std::max_element(
             conteggi.begin(), conteggi.end(),
             [](const auto& a, const auto& b) { return a.second.Quanti < b.second.Quanti; })
      ->second;
}

void Scarti::AggiungiAngolo(double sqm) { Conta(Angoli, {sqm, 0.0}); }

void Scarti::AggiungiDistanza(double distanza, double sqm, const ModelloDistanza* predefinito) {
  if (predefinito != nullptr) {
    Conta(Distanze, {predefinito->A * kMetriPerMm, predefinito->B * kMetriPerMm});
    ++NPredefinite;
  } else {
    Conta(Distanze, {sqm, 0.0});
    Esplicite.emplace_back(distanza / kMetriPerKm, sqm);
  }
}

std::optional<Scarti::Coppia> Scarti::Retta() const {
  constexpr std::size_t kMinime = 3;
  if (NPredefinite > 0 || Esplicite.size() < kMinime) return std::nullopt;
  const auto n = static_cast<double>(Esplicite.size());
  double mediaD = 0.0;
  double mediaS = 0.0;
  for (const auto& [d, s] : Esplicite) {
    mediaD += d / n;
    mediaS += s / n;
  }
  double dd = 0.0;
  double ds = 0.0;
  for (const auto& [d, s] : Esplicite) {
    dd += (d - mediaD) * (d - mediaD);
    ds += (d - mediaD) * (s - mediaS);
  }
  if (!(dd > 0.0)) return std::nullopt;
  const double b = Arrotonda(ds / dd);
  const double a = Arrotonda(mediaS - ds / dd * mediaD);
  const bool torna = std::all_of(Esplicite.begin(), Esplicite.end(), [&](const auto& e) {
    return std::abs(a + b * e.first - e.second) < kAccordoRetta;
  });
  return torna && a >= 0.0 && b >= 0.0 ? std::optional(Coppia{a, b}) : std::nullopt;
}

void Scarti::Concludi(OpzioniLibretto& opzioni, const Posizione& dove,
                      Diagnostica& diagnostica) const {
  const auto avvisa = [&](const Conteggi& conteggi, std::string_view di, const std::string& preso) {
    int totale = 0;
    for (const auto& [chiave, voce] : conteggi) totale += voce.Quanti;
    diagnostica.Avviso(
        dove, {.Record = "scarti quadratici medi",
               .Problema = "il file ne dà " + std::to_string(conteggi.size()) + " diversi per " +
                           std::string(di) + ", la rete ne ha uno solo: preso " + preso + ", di " +
                           std::to_string(PiuFrequente(conteggi).Quanti) + " su " +
                           std::to_string(totale),
               .Suggerimento = "si possono dare con le opzioni del comando"});
  };
  if (!Angoli.empty()) {
    opzioni.SqmDirezione = PiuFrequente(Angoli).Valore.first;
    if (Angoli.size() > 1)
      avvisa(Angoli, "gli angoli", Scritto(*opzioni.SqmDirezione) + " gon (di un angolo)");
  }
  if (Distanze.empty()) return;
  const std::optional<Coppia> retta = Distanze.size() > 1 ? Retta() : std::nullopt;
  const Coppia coppia = retta ? *retta : PiuFrequente(Distanze).Valore;
  opzioni.SqmDistCostante = coppia.first;
  opzioni.SqmDistProporzionale = coppia.second;
  if (Distanze.size() > 1 && !retta)
    avvisa(Distanze, "le distanze",
           Scritto(coppia.first) + " m + " + Scritto(coppia.second) + " m/km");
}

std::string_view ProssimaParola(std::string_view& testo) {
  testo.remove_prefix(std::min(testo.find_first_not_of(kBianchiEFini), testo.size()));
  const std::string_view parola = testo.substr(0, testo.find_first_of(kBianchiEFini));
  testo.remove_prefix(parola.size());
  return parola;
}

namespace {

// The rows of the upper band, each from its diagonal on. What is wrong with them, empty if nothing.
std::string LeggiBanda(std::string_view testo, int dim, int banda, std::vector<double>& varianze) {
  for (int i = 0; i < dim; ++i) {
    const int nellaRiga = std::min(banda, dim - 1 - i) + 1;
    for (int j = 0; j < nellaRiga; ++j) {
      const std::string_view scritto = ProssimaParola(testo);
      const NumeroLetto v = LeggiNumero(scritto);
      if (scritto.empty()) return "la matrice ha meno numeri di quanti ne vogliono dim e band";
      if (v.Esito != EsitoNumero::Valido) return Cita(scritto) + " non è un numero";
      if (j == 0 && !(v.Valore > 0.0)) return Cita(scritto) + " non è una varianza";
      if (j == 0) varianze.push_back(v.Valore);
    }
  }
  return {};
}

}  // namespace

std::vector<double> LeggiVarianze(const pugi::xml_node& obs, Contesto& contesto) {
  std::vector<double> varianze;
  const pugi::xml_node m = obs.child("cov-mat");
  if (m.empty()) return varianze;
  const auto osservazioni = std::count_if(obs.begin(), obs.end(), [&](const pugi::xml_node& e) {
    return e.type() == pugi::node_element && e != m;
  });
  const int dim = LeggiIntero(Contesto::Valore(m, "dim")).value_or(-1);
  const int banda = LeggiIntero(Contesto::Valore(m, "band")).value_or(-1);
  if (dim != osservazioni) {
    contesto.Errore(m, "dim", "la matrice non ha una riga per osservazione",
                    std::to_string(osservazioni));
    return varianze;
  }
  if (banda < 0 || banda > std::max(dim - 1, 0)) {
    contesto.Errore(m, "band", "larghezza di banda non valida", "un intero da 0 a dim - 1");
    return varianze;
  }
  std::string problema = LeggiBanda(m.child_value(), dim, banda, varianze);
  if (!problema.empty()) {
    contesto.Errore(m, "", std::move(problema));
    varianze.clear();
  } else if (banda > 0) {
    contesto.Conta(
        Gravita::Avviso, m,
        {.Record = "<cov-mat>",
         .Problema = "le correlazioni fra le osservazioni si perdono: restano le varianze"});
  }
  return varianze;
}

}  // namespace gkf

}  // namespace compensa

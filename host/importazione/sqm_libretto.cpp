// One standard deviation of the angles and one of the distances for the whole network.
//   angle between two directions of standard deviation s:  s sqrt(2)

#include "host/importazione/sqm_libretto.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "host/base/numeri.h"
#include "host/base/testi.h"
#include "host/base/unita.h"
#include "host/rete/sqm.h"

namespace compensa {

namespace {

constexpr const char* kDalPiuFrequente = "dal valore più frequente delle osservazioni";
constexpr const char* kDalValore = "dal valore delle osservazioni";
constexpr std::size_t kValoriElencati = 4;
constexpr double kArrotondamento = 1.0e7;  // sqrt(2) should not show in the file
constexpr double kAccordoRetta = 2.0e-6;   // of a standard deviation with the line [m]

double Tondo(double valore) { return std::round(valore * kArrotondamento) / kArrotondamento; }

// A position for what concerns the whole book.
Posizione DelLibretto(const Libretto& libretto) {
  return {libretto.NomiFile.empty() ? std::string_view() : libretto.NomiFile.front(), 0, 0};
}

// A standard deviation s + p D: s, and p per kilometre.
using Scarto = std::pair<double, double>;
// How many observations have which.
using Conteggio = std::map<Scarto, int>;

Conteggio Conta(const Libretto& libretto, std::optional<double> BattutaLibretto::*misura,
                std::optional<double> BattutaLibretto::*sqm) {
  Conteggio conteggio;
  for (const PostazioneLibretto& postazione : libretto.Postazioni)
    for (const BattutaLibretto& b : postazione.Battute)
      if (b.*misura && b.*sqm && *(b.*sqm) + b.SqmDistProporzionale > 0.0)
        ++conteggio[{*(b.*sqm),
                     sqm == &BattutaLibretto::SqmDistanza ? b.SqmDistProporzionale : 0.0}];
  return conteggio;
}

// The most frequent value, the largest of equals; with a warning if there are others.
Scarto PiuFrequente(const Conteggio& conteggio, std::string_view campo, std::string_view unita,
                    const Libretto& libretto, Diagnostica& diario) {
  std::vector<std::pair<Scarto, int>> ordine(conteggio.rbegin(), conteggio.rend());
  std::stable_sort(ordine.begin(), ordine.end(),
                   [](const auto& a, const auto& b) { return a.second > b.second; });
  if (ordine.size() == 1) return ordine.front().first;
  std::string elenco;
  for (std::size_t i = 0; i < std::min(ordine.size(), kValoriElencati); ++i) {
    const auto& [scarto, quante] = ordine[i];
    elenco += (i == 0 ? "" : ", ") + NumeroBreve(scarto.first);
    if (scarto.second > 0.0) elenco += " + " + NumeroBreve(scarto.second) + "/km";
    elenco += " (" + std::to_string(quante) + ")";
  }
  if (ordine.size() > kValoriElencati) elenco += " " + EAltri(ordine.size() - kValoriElencati);
  diario.Avviso(
      DelLibretto(libretto),
      {.Record = "scarti quadratici medi",
       .Campo = std::string(campo),
       .Problema = "le osservazioni hanno valori diversi, la rete ne vuole uno: vale il più "
                   "frequente; in [" +
                   std::string(unita) + "], con il numero di osservazioni: " + elenco,
       .Suggerimento = "si possono dare con le opzioni del comando"});
  return ordine.front().first;
}

// The least-squares line s + p D through the standard deviations of single distances, where it gives
// every one of them back: they were made so.
std::optional<Scarto> Retta(const Libretto& libretto) {
  constexpr std::size_t kMinime = 3;
  std::vector<Scarto> coppie;  // distance [km], standard deviation [m]
  for (const PostazioneLibretto& p : libretto.Postazioni)
    for (const BattutaLibretto& b : p.Battute) {
      if (!b.Distanza || !b.SqmDistanza) continue;
      if (b.SqmDistProporzionale > 0.0) return std::nullopt;
      coppie.emplace_back(*b.Distanza / kMetriPerKm, *b.SqmDistanza);
    }
  const auto n = static_cast<double>(coppie.size());
  double mediaD = 0.0, mediaS = 0.0, dd = 0.0, ds = 0.0;
  for (const auto& [d, s] : coppie) mediaD += d / n, mediaS += s / n;
  for (const auto& [d, s] : coppie) {
    dd += (d - mediaD) * (d - mediaD);
    ds += (d - mediaD) * (s - mediaS);
  }
  if (coppie.size() < kMinime || !(dd > 0.0)) return std::nullopt;
  const Scarto retta = {Tondo(mediaS - ds / dd * mediaD), Tondo(ds / dd)};
  const bool torna = std::all_of(coppie.begin(), coppie.end(), [&](const Scarto& c) {
    return std::abs(retta.first + retta.second * c.first - c.second) < kAccordoRetta;
  });
  return torna && retta.first >= 0.0 && retta.second >= 0.0 ? std::optional(retta) : std::nullopt;
}

void AvvisaUsuale(std::string_view diChe, const std::string& valore, std::string_view opzione,
                  const Libretto& libretto, Diagnostica& diario) {
  diario.Avviso(
      DelLibretto(libretto),
      {.Record = "scarti quadratici medi",
       .Problema = "il libretto non dà quello " + std::string(diChe) + ": assunto " + valore,
       .Suggerimento = "se lo strumento è diverso: " + std::string(opzione)});
}

bool Misura(const Libretto& libretto, std::optional<double> BattutaLibretto::*misura) {
  return std::any_of(libretto.Postazioni.begin(), libretto.Postazioni.end(), [&](const auto& p) {
    return std::any_of(p.Battute.begin(), p.Battute.end(),
                       [&](const BattutaLibretto& b) { return (b.*misura).has_value(); });
  });
}

void ScegliDirezione(const OpzioniImporta& opzioni, const Libretto& libretto, SqmScelti& scelti,
                     Diagnostica& diario) {
  const auto conteggio =
      Conta(libretto, &BattutaLibretto::Direzione, &BattutaLibretto::SqmDirezione);
  if (opzioni.SqmDirezione) {
    scelti.Direzione = *opzioni.SqmDirezione;
  } else if (libretto.Opzioni.SqmDirezione) {
    scelti.Direzione = *libretto.Opzioni.SqmDirezione;
  } else if (!conteggio.empty()) {
    const Scarto direzione = PiuFrequente(conteggio, "direzioni", "gon", libretto, diario);
    scelti.Direzione = Tondo(direzione.first * std::sqrt(2.0));
    scelti.NotaDirezione = conteggio.size() > 1 ? kDalPiuFrequente : kDalValore;
  } else if (Misura(libretto, &BattutaLibretto::Direzione)) {
    scelti.Direzione = kSqmDirezioneUsuale;
    scelti.NotaDirezione = "valore usuale, assunto";
    AvvisaUsuale("degli angoli", "0.0010 gon", "--sqm-direzione", libretto, diario);
  }
}

void ScegliDistanza(const OpzioniImporta& opzioni, const Libretto& libretto, SqmScelti& scelti,
                    Diagnostica& diario) {
  const OpzioniLibretto& dati = libretto.Opzioni;
  const auto conteggio = Conta(libretto, &BattutaLibretto::Distanza, &BattutaLibretto::SqmDistanza);
  const auto costante = opzioni.SqmDistCostante ? opzioni.SqmDistCostante : dati.SqmDistCostante;
  if (!conteggio.empty()) {
    const std::optional<Scarto> retta = conteggio.size() > 1 ? Retta(libretto) : std::nullopt;
    Diagnostica muta;  // what is given is not chosen
    const Scarto scelto =
        retta ? *retta
              : PiuFrequente(conteggio, "distanze", "m", libretto, costante ? muta : diario);
    scelti.DistCostante = Tondo(scelto.first);
    scelti.DistProporzionale = scelto.second;
    scelti.NotaDistanza = conteggio.size() > 1 && !retta ? kDalPiuFrequente : kDalValore;
  } else if (!costante && Misura(libretto, &BattutaLibretto::Distanza)) {
    scelti.DistCostante = kSqmDistCostanteUsuale;
    scelti.DistProporzionale = kSqmDistPropUsuale;
    scelti.NotaDistanza = scelti.NotaProporzionale = "valore usuale, assunto";
    AvvisaUsuale("delle distanze", "3 mm + 2 mm/km",
                 "--sqm-distanza-costante, --sqm-distanza-proporzionale", libretto, diario);
  }
  if (costante) {
    scelti.DistCostante = *costante;
    scelti.NotaDistanza.clear();
  }
  const auto proporzionale =
      opzioni.SqmDistProporzionale ? opzioni.SqmDistProporzionale : dati.SqmDistProporzionale;
  if (!proporzionale) return;
  scelti.DistProporzionale = *proporzionale;
  scelti.NotaProporzionale.clear();
}

}  // namespace

SqmLetture SqmScelti::DiUnaLettura() const {
  return {Direzione / std::sqrt(2.0), DistCostante, DistProporzionale};
}

SqmScelti ScegliSqm(const OpzioniImporta& opzioni, const Libretto& libretto,
                    Diagnostica& diagnostica) {
  SqmScelti scelti;
  ScegliDirezione(opzioni, libretto, scelti, diagnostica);
  ScegliDistanza(opzioni, libretto, scelti, diagnostica);
  return scelti;
}

}  // namespace compensa

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

namespace compensa {

namespace {

constexpr double kSqmDirezioneUsuale = 0.0010;    // [gon]
constexpr double kSqmDistCostanteUsuale = 0.003;  // [m]
constexpr double kSqmDistPropUsuale = 0.002;      // [m/km]
constexpr std::size_t kValoriElencati = 4;
constexpr double kArrotondamento = 1.0e7;  // sqrt(2) should not show in the file

// A position for what concerns the whole book.
Posizione DelLibretto(const Libretto& libretto) {
  return {libretto.NomiFile.empty() ? std::string_view() : libretto.NomiFile.front(), 0, 0};
}

// How many observations have which value.
using Conteggio = std::map<double, int>;

Conteggio Conta(const Libretto& libretto, std::optional<double> BattutaLibretto::*misura,
                std::optional<double> BattutaLibretto::*sqm) {
  Conteggio conteggio;
  for (const PostazioneLibretto& postazione : libretto.Postazioni)
    for (const BattutaLibretto& b : postazione.Battute)
      if (b.*misura && b.*sqm && *(b.*sqm) > 0.0) ++conteggio[*(b.*sqm)];
  return conteggio;
}

// The most frequent value, the largest of equals; with a warning if there are others.
double PiuFrequente(const Conteggio& conteggio, std::string_view campo, std::string_view unita,
                    const Libretto& libretto, Diagnostica& diario) {
  std::vector<std::pair<double, int>> ordine(conteggio.rbegin(), conteggio.rend());
  std::stable_sort(ordine.begin(), ordine.end(),
                   [](const auto& a, const auto& b) { return a.second > b.second; });
  if (ordine.size() == 1) return ordine.front().first;
  std::string elenco;
  for (std::size_t i = 0; i < std::min(ordine.size(), kValoriElencati); ++i) {
    elenco += (i == 0 ? "" : ", ") + NumeroBreve(ordine[i].first) + " (" +
              std::to_string(ordine[i].second) + ")";
  }
  if (ordine.size() > kValoriElencati) elenco += " " + EAltri(ordine.size() - kValoriElencati);
  diario.Avviso(
      DelLibretto(libretto),
      {.Record = "scarti quadratici medi",
       .Campo = std::string(campo),
       .Problema = "le osservazioni hanno valori diversi, la rete ne vuole uno: vale il più "
                   "frequente; in [" +
                   std::string(unita) + "], con il numero di osservazioni: " + elenco});
  return ordine.front().first;
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
    const double direzione = PiuFrequente(conteggio, "direzioni", "gon", libretto, diario);
    scelti.Direzione = std::round(direzione * std::sqrt(2.0) * kArrotondamento) / kArrotondamento;
    scelti.NotaDirezione = conteggio.size() > 1 ? "dal valore più frequente delle osservazioni"
                                                : "dal valore delle osservazioni";
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
  if (opzioni.SqmDistCostante) {
    scelti.DistCostante = *opzioni.SqmDistCostante;
  } else if (dati.SqmDistCostante) {
    scelti.DistCostante = *dati.SqmDistCostante;
  } else if (!conteggio.empty()) {
    const double distanza = PiuFrequente(conteggio, "distanze", "m", libretto, diario);
    scelti.DistCostante = std::round(distanza * kArrotondamento) / kArrotondamento;
    scelti.NotaDistanza = conteggio.size() > 1 ? "dal valore più frequente delle osservazioni"
                                               : "dal valore delle osservazioni";
  } else if (Misura(libretto, &BattutaLibretto::Distanza)) {
    scelti.DistCostante = kSqmDistCostanteUsuale;
    scelti.DistProporzionale = kSqmDistPropUsuale;
    scelti.NotaDistanza = scelti.NotaProporzionale = "valore usuale, assunto";
    AvvisaUsuale("delle distanze", "3 mm + 2 mm/km",
                 "--sqm-distanza-costante, --sqm-distanza-proporzionale", libretto, diario);
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

// What stands twice: targets of a set-up, places, names.

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <optional>
#include <unordered_map>
#include <utility>

#include "host/base/numeri.h"
#include "host/giudizio/controlli/rilievi.h"
#include "host/giudizio/controlli/tolleranze.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

constexpr double kVicini = 0.05;      // points nearer than this are in the same place [m]
constexpr double kScartoFacce = 0.5;  // [gon]

double Distanza(const TCoorCr& p, const TCoorCr& q) {
  return std::hypot(q.Est - p.Est, q.Nord - p.Nord);
}

std::string Aggiunta(const std::string& testo, const std::string& altro) {
  return testo.empty() ? altro : testo + ", " + altro;
}

// What two sights of one target differ in beyond 3 sigma of the difference, empty if nothing.
std::string Differenze(const Rete& rete, const TOssCr& a, const TOssCr& b) {
  std::string testo;
  const double volte = VolteSigma(rete.Stazioni.size());
  const double limite = volte * std::numbers::sqrt2;
  if (Assegnato(a.Direzione) && Assegnato(b.Direzione)) {
    const double d = std::abs(std::remainder(a.Direzione - b.Direzione, kGiroGon));
    if (d > volte * SqmAngolo(rete) / kRadPerGon)
      testo = "le direzioni differiscono di " + NumeroFisso(d, 4) + " gon";
  }
  if (Assegnato(a.Zenit) && Assegnato(b.Zenit) && a.AltSegnale == b.AltSegnale) {
    const double d = std::abs(a.Zenit - b.Zenit);
    if (d > limite * SqmZenit(rete) / kRadPerGon)
      testo = Aggiunta(testo, "gli zenit di " + NumeroFisso(d, 4) + " gon");
  }
  if (Assegnato(a.Distanza) && Assegnato(b.Distanza) && a.TipoDist == b.TipoDist &&
      (a.TipoDist == kOrizzontale || a.AltSegnale == b.AltSegnale)) {
    const double d = std::abs(a.Distanza - b.Distanza);
    if (d > limite * SqmDistanza(rete, a.Distanza))
      testo = Aggiunta(testo, "le distanze di " + NumeroFisso(d, 4) + " m");
  }
  return testo;
}

void VisualiRipetute(const Rete& rete, std::size_t s, Rilievi& trovati) {
  const auto& oss = rete.Stazioni[s].Osservazioni;
  std::vector<std::size_t> ordine(oss.size());
  std::iota(ordine.begin(), ordine.end(), std::size_t{0});
  std::stable_sort(ordine.begin(), ordine.end(),
                   [&](std::size_t a, std::size_t b) { return oss[a].Punto < oss[b].Punto; });
  for (std::size_t k = 1; k < ordine.size(); ++k) {
    const TOssCr& a = oss[ordine[k - 1]];
    const TOssCr& b = oss[ordine[k]];
    if (a.Punto != b.Punto) continue;
    const std::string differenze = Differenze(rete, a, b);
    if (differenze.empty()) continue;
    const double d = std::remainder(a.Direzione - b.Direzione, kGiroGon);
    const bool coniugate = Assegnato(a.Direzione) && Assegnato(b.Direzione) &&
                           std::abs(std::abs(d) - kMezzoGiroGon) < kScartoFacce;
    const int riga = rete.PosizioniOsservazioni[s][ordine[k - 1]].Riga;
    trovati.push_back(
        {rete.PosizioniOsservazioni[s][ordine[k]],
         {.Quale = Codice::VisualeRipetuta,
          .Record = NomeOsservazione(rete.Nomi[static_cast<std::size_t>(rete.Stazioni[s].Punto)],
                                     rete.Nomi[static_cast<std::size_t>(b.Punto)]),
          .Problema = "stesso punto della riga " + std::to_string(riga) + ", ma " + differenze,
          .Suggerimento = coniugate ? "letture coniugate non ridotte?"
                                    : "nome del punto sbagliato, o una delle due letture?"}});
  }
}

// Of points in one place each is compared with the first of them only, however many they are: on a
// grid of cells as wide as the limit, nine cells hold all that is near, and of a place one point.
void PostiUguali(const Rete& rete, Rilievi& trovati) {
  std::map<std::pair<double, double>, std::vector<std::size_t>> primi;
  const auto vicino = [&](std::size_t i, double est, double nord) -> std::optional<std::size_t> {
    for (const double x : {est, est - 1.0, est + 1.0})
      for (const double y : {nord, nord - 1.0, nord + 1.0})
        if (const auto cella = primi.find({x, y}); cella != primi.end())
          for (const std::size_t j : cella->second)
            if (Distanza(rete.Punti[i], rete.Punti[j]) <= kVicini) return j;
    return std::nullopt;
  };
  for (std::size_t i = 0; i < rete.Punti.size(); ++i) {
    const TCoorCr& p = rete.Punti[i];
    if (!Assegnato(p.Est) || !Assegnato(p.Nord)) continue;
    const double est = std::floor(p.Est / kVicini), nord = std::floor(p.Nord / kVicini);
    const std::optional<std::size_t> primo = vicino(i, est, nord);
    if (!primo) {
      primi[{est, nord}].push_back(i);
      continue;
    }
    trovati.push_back(
        {rete.PosizioniPunti[i],
         {.Quale = Codice::PuntiCoincidenti,
          .Record = NomePunto(rete.Nomi[i]),
          .Problema = "ha le coordinate del punto " + Cita(rete.Nomi[*primo]) + " (distano " +
                      NumeroFisso(Distanza(p, rete.Punti[*primo]), 3) + " m)",
          .Suggerimento = "lo stesso punto con due nomi?"}});
  }
}

// A name as someone in a hurry reads it.
std::string Ridotto(const std::string& nome) {
  std::string testo;
  for (const char c : nome) {
    const char maiuscola = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    testo += maiuscola == 'O' ? '0' : maiuscola;
  }
  return testo;
}

void NomiSimili(const Rete& rete, Rilievi& trovati) {
  std::unordered_map<std::string, std::size_t> visti;
  for (std::size_t i = 0; i < rete.Nomi.size(); ++i) {
    const auto [voce, nuovo] = visti.try_emplace(Ridotto(rete.Nomi[i]), i);
    if (nuovo) continue;
    trovati.push_back({rete.PosizioniPunti[i],
                       {.Quale = Codice::NomiSimili,
                        .Record = NomePunto(rete.Nomi[i]),
                        .Problema = "il nome differisce da " + Cita(rete.Nomi[voce->second]) +
                                    " solo per maiuscole o per O e 0",
                        .Suggerimento = "lo stesso punto scritto in due modi?"}});
  }
}

}  // namespace

Rilievi ControllaRipetizioni(const Rete& rete) {
  Rilievi trovati;
  NomiSimili(rete, trovati);
  for (std::size_t s = 0; s < rete.Stazioni.size(); ++s) VisualiRipetute(rete, s, trovati);
  return trovati;
}

Rilievi ControllaPosti(const Rete& rete) {
  Rilievi trovati;
  PostiUguali(rete, trovati);
  return trovati;
}

}  // namespace compensa

// What stands twice: targets of a set-up, places, names.

#include <algorithm>
#include <cmath>
#include <numeric>
#include <tuple>
#include <unordered_map>

#include "host/base/numeri.h"
#include "host/giudizio/controlli/rilievi.h"
#include "host/giudizio/controlli/tolleranze.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

constexpr double kVicini = 0.05;      // points nearer than this are in the same place [m]
constexpr double kScartoFacce = 0.5;  // [gon]

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
         {.Record = NomeOsservazione(rete.Nomi[static_cast<std::size_t>(rete.Stazioni[s].Punto)],
                                     rete.Nomi[static_cast<std::size_t>(b.Punto)]),
          .Problema = "stesso punto della riga " + std::to_string(riga) + ", ma " + differenze,
          .Suggerimento = coniugate ? "letture coniugate non ridotte?"
                                    : "nome del punto sbagliato, o una delle due letture?"}});
  }
}

void PostiUguali(const Rete& rete, Rilievi& trovati) {
  std::vector<std::size_t> ordine;
  for (std::size_t i = 0; i < rete.Punti.size(); ++i)
    if (Assegnato(rete.Punti[i].Est) && Assegnato(rete.Punti[i].Nord)) ordine.push_back(i);
  std::sort(ordine.begin(), ordine.end(), [&](std::size_t a, std::size_t b) {
    const TCoorCr& p = rete.Punti[a];
    const TCoorCr& q = rete.Punti[b];
    return std::tie(p.Est, p.Nord, a) < std::tie(q.Est, q.Nord, b);
  });
  constexpr std::size_t kSeguenti = 50;  // points on one meridian must not make this quadratic
  for (std::size_t k = 0; k < ordine.size(); ++k) {
    const TCoorCr& p = rete.Punti[ordine[k]];
    for (std::size_t j = k + 1; j < std::min(ordine.size(), k + kSeguenti); ++j) {
      const TCoorCr& q = rete.Punti[ordine[j]];
      if (q.Est - p.Est > kVicini) break;
      const double distanza = std::hypot(q.Est - p.Est, q.Nord - p.Nord);
      if (distanza > kVicini) continue;
      const std::size_t primo = std::min(ordine[k], ordine[j]);
      const std::size_t secondo = std::max(ordine[k], ordine[j]);
      trovati.push_back({rete.PosizioniPunti[secondo],
                         {.Record = NomePunto(rete.Nomi[secondo]),
                          .Problema = "ha le coordinate del punto " + Cita(rete.Nomi[primo]) +
                                      " (distano " + NumeroFisso(distanza, 3) + " m)",
                          .Suggerimento = "lo stesso punto con due nomi?"}});
    }
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
                       {.Record = NomePunto(rete.Nomi[i]),
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

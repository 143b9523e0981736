// Sights from the readings: one pass over the observations, pairs found by a hash table.

#include "host/uscite/visuali_uniche.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>

namespace compensa {

namespace {

bool Esiste(const Risultati& r, int punto) {
  return punto >= 0 && static_cast<std::size_t>(punto) < r.Punti.size();
}

// The same for both directions of a pair.
std::uint64_t Chiave(int a, int b) {
  constexpr int kBitPunto = 32;
  return (static_cast<std::uint64_t>(std::min(a, b)) << kBitPunto) |
         static_cast<std::uint64_t>(std::max(a, b));
}

void Aggiungi(VisualeUnica& visuale, const Risultati& r, const RisultatoOsservazione& o) {
  visuale.Direzione |= Presente(o.Direzione);
  visuale.Distanza |= Presente(o.Distanza);
  visuale.Zenit |= Presente(o.Zenit);
  visuale.Riferimento |= o.DirezioneRiferimento;
  for (const int indice : {o.Angolo, o.EqDistanza, o.Dislivello}) {
    if (indice == kNessuno) continue;
    const Equazione& e = r.Equazioni[static_cast<std::size_t>(indice)];
    ++visuale.Equazioni;
    visuale.WMassimo = std::fmax(visuale.WMassimo, e.W);  // fmax, fmin: kAssente gives way
    visuale.RidondanzaMinima = std::fmin(visuale.RidondanzaMinima, e.Ridondanza);
  }
}

}  // namespace

std::vector<VisualeUnica> RaccogliVisuali(const Risultati& r) {
  std::vector<VisualeUnica> visuali;
  std::unordered_map<std::uint64_t, std::size_t> posti;
  for (const RisultatoStazione& s : r.Stazioni) {
    for (const RisultatoOsservazione& o : s.Osservazioni) {
      if (!Esiste(r, s.Punto) || !Esiste(r, o.Punto) || s.Punto == o.Punto) continue;
      const auto [posto, nuova] = posti.try_emplace(Chiave(s.Punto, o.Punto), visuali.size());
      if (nuova) visuali.push_back({.Da = s.Punto, .A = o.Punto});
      VisualeUnica& visuale = visuali[posto->second];
      ++(visuale.Da == s.Punto ? visuale.Andata : visuale.Ritorno);
      Aggiungi(visuale, r, o);
    }
  }
  return visuali;
}

std::string_view NomeTipo(const VisualeUnica& v) {
  if (v.Direzione && v.Distanza) return "direzione e distanza";
  if (v.Direzione) return "sola direzione";
  if (v.Distanza) return "sola distanza";
  return v.Zenit ? "solo zenit" : "nessuna lettura";
}

}  // namespace compensa

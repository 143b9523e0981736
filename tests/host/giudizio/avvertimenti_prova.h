#pragma once

// Networks and what is warned of them, before and after the adjustment.

#include <gtest/gtest.h>

#include "host/approssimate/approssimate.h"
#include "host/calcolo/calcolo.h"
#include "host/calcolo/rapporto.h"
#include "host/file_rete/lettura_rete.h"
#include "host/giudizio/avvertimenti/avvertimenti.h"
#include "tests/comuni/rete_prova.h"

namespace compensa {

using Avvisi = std::vector<std::string>;

inline Avvisi Prima(Rete& r) {
  Diagnostica diario;
  CalcolaApprossimate(r);
  AvvertiPrima(r, diario);
  return diario.Righe();
}

inline Avvisi Dopo(Rete& r) {
  Diagnostica diario;
  Rapporto rapporto;
  const Risultati risultati = Compensa(r, rapporto);
  AvvertiDopo(r, risultati, diario);
  return diario.Righe();
}

inline Rete Esempio(const std::string& nome) {
  Diagnostica lettura;
  return *LeggiRete(CARTELLA_ESEMPI "/" + nome + ".toml", lettura);
}

inline Rete DaProva(const ReteProva& prova) {
  Rete r;
  r.NomiFile = {"prova"};
  r.Opzioni = prova.Opzioni;
  r.CurvaturaRifrazione = prova.DsOr;
  r.Nomi = r.NomiAnsi = prova.Nomi;
  r.Punti = prova.Punti;
  r.Stazioni = prova.Stazioni;
  r.Osservazioni = prova.Osservazioni;
  for (std::size_t i = 0; i < r.Punti.size(); ++i) {
    r.Punti[i].Nome = r.NomiAnsi[i];
    r.RuoliIniziali.push_back({r.Punti[i].TipoPla, r.Punti[i].TipoAlt});
  }
  r.PosizioniPunti.resize(r.Punti.size());
  r.PosizioniStazioni.resize(r.Stazioni.size());
  for (std::size_t s = 0; s < r.Stazioni.size(); ++s) {
    r.Stazioni[s].Osservazioni = r.Osservazioni[s];
    r.PosizioniOsservazioni.emplace_back(r.Osservazioni[s].size());
  }
  return r;
}

inline std::string Testo(const Avvisi& righe) {
  std::string testo;
  for (const std::string& riga : righe) testo += riga + "\n";
  return testo;
}

template <class Cosa>
void OgniOss(Rete& r, Cosa cosa) {
  for (auto& oss : r.Osservazioni)
    for (TOssCr& o : oss) cosa(o);
}
template <class Cosa>
void OgniPunto(Rete& r, Cosa cosa) {
  for (TCoorCr& p : r.Punti) cosa(p);
}
inline TOssCr& Oss(Rete& r, int i) { return r.Osservazioni[0][i]; }

}  // namespace compensa

// Networks given to the module as a careless host might: records changed one field at a time, from
// real networks. An input is a network as text, so that what fails can be read and kept.

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "tests/comuni/corruzione.h"

using namespace kzt5cmrg;

extern "C" {
int LLVMFuzzerTestOneInput(const std::uint8_t* dati, std::size_t quanti);
std::size_t LLVMFuzzerMutate(std::uint8_t* dati, std::size_t quanti, std::size_t massimo);
std::size_t LLVMFuzzerCustomMutator(std::uint8_t* dati, std::size_t quanti, std::size_t massimo,
                                    unsigned seme);
}

namespace {

constexpr int kIterazioniMassime = 20;  // an oscillating network takes all that it is allowed

std::string Testo(double v) {
  if (v == kValoreMancante) return " -";
  char cifre[32];
  return ' ' + std::string(cifre, std::to_chars(cifre, cifre + sizeof cifre, v).ptr);
}

template <class... Valori>
std::string Riga(std::string inizio, Valori... valori) {
  ((inizio += Testo(static_cast<double>(valori))), ...);
  return inizio + '\n';
}

std::string Scrivi(const ReteProva& r) {
  const TOpzCr& o = r.Opzioni;
  std::string t = Riga("OPZ", o.SqmDistCost, o.SqmDistProp, o.SqmDir, o.MaxIter, o.TipoCalcolo,
                       o.Cartografiche);
  t += Riga("DSOR", r.DsOr.CorrCurvRifr, r.DsOr.CoeffRifr, r.DsOr.RaggioTerra);
  for (std::size_t i = 0; i < r.Punti.size(); ++i) {
    const TCoorCr& p = r.Punti[i];
    t += Riga("PT " + std::to_string(i) + "|", p.Est, p.Nord, p.Quota, p.TipoPla, p.TipoAlt);
  }
  for (std::size_t s = 0; s < r.Stazioni.size(); ++s) {
    const TStaCr& st = r.Stazioni[s];
    t += Riga("ST", st.Punto, st.AltStrum, st.AltStrumNota, st.EccDistanza, st.EccDirezione);
    for (const TOssCr& x : r.Osservazioni[s])
      t += Riga("OS", x.Punto, x.Direzione, x.Zenit, x.AltSegnale, x.Distanza, x.TipoDist);
  }
  return t;
}

}  // namespace

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* dati, std::size_t quanti, std::size_t massimo,
                                    unsigned seme) {
  Caso caso(seme);
  try {
    ReteProva rete = LeggiRete(std::string(dati, dati + quanti));
    for (int k = 1 + caso.Intero(3); k > 0; --k) Corrompi(rete, caso);
    const std::string testo = Scrivi(rete);
    if (testo.size() <= massimo) return std::memcpy(dati, testo.data(), testo.size()), testo.size();
  } catch (const std::exception&) {
    // not a network: bytes are as good
  }
  return LLVMFuzzerMutate(dati, quanti, massimo);
}

int LLVMFuzzerTestOneInput(const std::uint8_t* dati, std::size_t quanti) {
  ReteProva rete;
  try {
    rete = LeggiRete(std::string(dati, dati + quanti));
  } catch (const std::exception&) {
    return 0;  // not a network
  }
  rete.Opzioni.MaxIter = std::min(rete.Opzioni.MaxIter, kIterazioniMassime);
  for (const int ordineDenso : {kOrdineDenso, 0}) {  // both engines
    ReteProva copia = rete;
    ProvaCalcolo job(copia, ordineDenso);
    if (job.Esegui() != job.Contiene("   RISULTATI  COMPENSAZIONE\n")) std::abort();
  }
  return 0;
}

// Life of a job: its buffers, and the order of the stages of a run.

#include <algorithm>
#include <limits>
#include <new>

#include "kzt5cmrg.h"
#include "lsq/sparso.h"
#include "records/costanti.h"

using namespace kzt5cmrg;

namespace {

// A count of host records as the int that addresses them; more of them cannot be held in memory.
int Conteggio(std::size_t n) {
  if (n > static_cast<std::size_t>(std::numeric_limits<int>::max())) throw std::bad_alloc();
  return static_cast<int>(n);
}

template <class T>
std::unique_ptr<T[]> Vettore(int n) {
  return std::make_unique<T[]>(static_cast<std::size_t>(n));
}

}  // namespace

CalcCmpRigVelid1::CalcCmpRigVelid1(const TOpzCr* opzioni, const TVettCr<TCoorCr>* punti,
                                   const TVettCr<TStaCr>* stazioni, const CCalcDsOr* dsOr,
                                   CFileOutTmp* out)
    : CalcCmpRigVelid1(opzioni, punti, stazioni, dsOr, out, kOrdineDenso) {}

CalcCmpRigVelid1::CalcCmpRigVelid1(const TOpzCr* opzioni, const TVettCr<TCoorCr>* punti,
                                   const TVettCr<TStaCr>* stazioni, const CCalcDsOr* dsOr,
                                   CFileOutTmp* out, int ordineDenso)
    : Opzioni(opzioni), Punti(punti), Stazioni(stazioni), DsOr(dsOr), Out(out) {
  nPunti = Conteggio(Punti->size());
  IncPla = Vettore<int>(nPunti);
  PuntoDaIncPla = Vettore<int>(nPunti);
  IncAlt = Vettore<int>(nPunti);
  PuntoDaIncAlt = Vettore<int>(nPunti);
  ContaVariabili();

  const auto strumenti = std::ranges::count(*Stazioni, kAltezzaIncognita, &TStaCr::AltStrumNota);
  DimNormale =
      Conteggio(std::max(2 * static_cast<std::size_t>(nIncPla),
                         static_cast<std::size_t>(nIncAlt) + static_cast<std::size_t>(strumenti)));

  TermineNoto = Vettore<double>(MaxEquaz);
  Soluzione = Vettore<double>(DimNormale);
  Residui = Vettore<double>(MaxEquaz);
  Denso = DimNormale <= ordineDenso;
  if (Denso) Normale = Righe<double>(DimNormale, DimNormale);
  Peso = Vettore<double>(MaxEquaz);
  Coeff = Righe<double>(MaxEquaz, kSlot);
  Indici = Righe<int>(MaxEquaz, kSlot);
}

CalcCmpRigVelid1::~CalcCmpRigVelid1() = default;

bool CalcCmpRigVelid1::Esegui() {
  Input();
  if (!Controllo()) return false;
  if ((Opzioni->TipoCalcolo & kCalcoloPlanimetria) != 0) CalcCompPla();
  if ((Opzioni->TipoCalcolo & kCalcoloAltimetria) != 0) CalcCompZe();
  RisultatiFin();
  return true;
}

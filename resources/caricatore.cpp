// Loader of the report texts: every text is loaded by its id at the moment it is printed.

#include <array>

#include "kzt5cmrg.h"
#include "resources/catalogo.h"
#include "resources/tabella_testi.h"

using namespace kzt5cmrg;

namespace {
constexpr int kBuffer = 1024;  // characters
constexpr int kLimite = kBuffer - 1;
}  // namespace

std::string CalcCmpRigVelid1::CaricaTesto(unsigned id) {
  std::array<char, kBuffer> buffer;
  const int n = CaricaStringa(IstanzaPropria(), id, buffer.data(), kLimite);
  return std::string(buffer.data(), static_cast<std::size_t>(n));
}

std::string CalcCmpRigVelid1::EtichettaRuolo(int ruolo) {
  switch (ruolo) {
    case kIncognito: return CaricaTesto(kRuoloIncognito);
    case kFisso: return CaricaTesto(kRuoloFisso);
    case kNonUsato: return CaricaTesto(kRuoloNonUsato);
    case kCompensato: return CaricaTesto(kRuoloCompensato);
    default: return {};
  }
}

// The table of the readers.

#include <algorithm>
#include <array>

#include "host/importazione/lettore.h"

namespace compensa {

namespace {

constexpr std::array<const Lettore*, 5> kLettori = {&kLettoreGkf, &kLettoreSdr, &kLettoreGsi,
                                                    &kLettoreCatasto, &kLettoreCampagna};

}  // namespace

std::span<const Lettore* const> Lettori() { return kLettori; }

const Lettore* RiconosciFormato(std::string_view testo) {
  const auto* trovato = std::find_if(kLettori.begin(), kLettori.end(), [&](const Lettore* lettore) {
    return lettore->Riconosce(testo);
  });
  return trovato == kLettori.end() ? nullptr : *trovato;
}

std::string_view DescrizioneLibretto(std::string_view testo) {
  const Lettore* lettore = RiconosciFormato(testo);
  return lettore == nullptr ? std::string_view() : lettore->Descrizione;
}

const Lettore* LettoreDiNome(std::string_view nome) {
  const auto* trovato = std::find_if(kLettori.begin(), kLettori.end(),
                                     [&](const Lettore* lettore) { return lettore->Nome == nome; });
  return trovato == kLettori.end() ? nullptr : *trovato;
}

}  // namespace compensa

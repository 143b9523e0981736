#pragma once

// What the surveyor probably meant: the known word nearest to the one that was written.

#include <cstddef>
#include <string_view>

namespace compensa {

// Letters to insert, drop, change or swap to turn one text into the other, without regard to ASCII
// case; massimo + 1 as soon as it is more than massimo.
std::size_t DistanzaTesti(std::string_view testoA, std::string_view testoB, std::size_t massimo);

// Largest distance at which a word still counts as a slip for the one that was written; 0 for the
// shortest ones, which are near to everything.
std::size_t DistanzaPlausibile(std::string_view scritto);

// The nearest of the known words, the first of equals; empty if none is near enough. Elementi may be
// any range of values that convert to std::string_view.
template <class Elementi>
std::string_view PiuVicino(std::string_view scritto, const Elementi& noti) {
  std::string_view migliore;
  std::size_t limite = DistanzaPlausibile(scritto);
  for (const std::string_view noto : noti) {
    // a letter has one to four bytes: most words are too long or too short at a glance
    if (noto.size() > 4 * (scritto.size() + limite) || scritto.size() > 4 * (noto.size() + limite))
      continue;
    const std::size_t distanza = DistanzaTesti(scritto, noto, limite);
    if (distanza > limite) continue;
    migliore = noto;
    if (distanza == 0) break;
    limite = distanza - 1;
  }
  return migliore;
}

}  // namespace compensa

// Bytes of geometries. Header: "GP", version, flags (bit 0: little-endian, bits 1 to 3: kind of
// extent), code of the coordinate system, extent as x min, x max, y min, y max.

#include "host/uscite/gis/gpkg_geometria.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

namespace compensa {

namespace {

constexpr std::uint8_t kVersione = 0;
constexpr std::uint8_t kPiccoloPrima = 1;  // also the byte order mark of the binary
constexpr std::uint8_t kEstensionePiana = 1 << 1;
constexpr std::uint32_t kPunto = 1, kLinea = 2, kPoligono = 3;
constexpr std::uint32_t kConZ = 1000;  // added to the code of a kind

template <class Intero>
void AggiungiIntero(std::string& byte, Intero valore) {
  constexpr unsigned kBitByte = 8;
  for (unsigned i = 0; i < sizeof(Intero); ++i)
    byte += static_cast<char>(static_cast<unsigned char>(valore >> (kBitByte * i)));
}

void Aggiungi(std::string& byte, double valore) {
  AggiungiIntero(byte, std::bit_cast<std::uint64_t>(valore));
}

void Aggiungi(std::string& byte, PuntoPiano p) {
  Aggiungi(byte, p.Est);
  Aggiungi(byte, p.Nord);
}

// Up to the coordinates of the geometry.
std::string Inizio(int srs, std::span<const PuntoPiano> punti, std::uint32_t genere) {
  std::string byte = "GP";
  AggiungiIntero(byte, kVersione);
  AggiungiIntero(byte, static_cast<std::uint8_t>(kPiccoloPrima | kEstensionePiana));
  AggiungiIntero(byte, static_cast<std::uint32_t>(srs));
  const auto [ovest, est] = std::minmax_element(
      punti.begin(), punti.end(), [](PuntoPiano a, PuntoPiano b) { return a.Est < b.Est; });
  const auto [sud, nord] = std::minmax_element(
      punti.begin(), punti.end(), [](PuntoPiano a, PuntoPiano b) { return a.Nord < b.Nord; });
  for (const double estremo : {ovest->Est, est->Est, sud->Nord, nord->Nord})
    Aggiungi(byte, estremo);
  AggiungiIntero(byte, kPiccoloPrima);
  AggiungiIntero(byte, genere);
  return byte;
}

}  // namespace

std::string GeometriaPunto(int srs, PuntoPiano posto, std::optional<double> quota) {
  std::string byte = Inizio(srs, {&posto, 1}, quota ? kPunto + kConZ : kPunto);
  Aggiungi(byte, posto);
  if (quota) Aggiungi(byte, *quota);
  return byte;
}

std::string GeometriaLinea(int srs, PuntoPiano da, PuntoPiano a) {
  const std::array<PuntoPiano, 2> estremi{da, a};
  std::string byte = Inizio(srs, estremi, kLinea);
  AggiungiIntero(byte, static_cast<std::uint32_t>(estremi.size()));
  for (const PuntoPiano p : estremi) Aggiungi(byte, p);
  return byte;
}

std::string GeometriaPoligono(int srs, std::span<const PuntoPiano> anello) {
  constexpr std::uint32_t kAnelli = 1;
  std::string byte = Inizio(srs, anello, kPoligono);
  AggiungiIntero(byte, kAnelli);
  AggiungiIntero(byte, static_cast<std::uint32_t>(anello.size() + 1));
  for (const PuntoPiano p : anello) Aggiungi(byte, p);
  Aggiungi(byte, anello.front());
  return byte;
}

}  // namespace compensa

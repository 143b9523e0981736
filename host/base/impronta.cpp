// SHA-256 (NIST FIPS 180-4): the message, padded with a one, zeros and its length to whole blocks
// of 16 words of 32 bits, is folded block by block into eight words
//   T1 = h + S1(e) + Ch(e,f,g) + K_t + W_t,   T2 = S0(a) + Maj(a,b,c),   t = 0 ... 63
// with constants from the fractional parts of the square roots (initial words) and cube roots (K)
// of the first primes.

#include "host/base/impronta.h"

#include <array>
#include <bit>
#include <cstdint>

namespace compensa {

namespace {

using Parola = std::uint32_t;

constexpr std::size_t kBlocco = 64;  // [bytes]
constexpr std::size_t kGiri = 64;
constexpr std::size_t kByteLunghezza = 8;

constexpr std::array<Parola, kGiri> kK = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

using Stato8 = std::array<Parola, 8>;
constexpr Stato8 kInizio = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                            0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};

std::array<Parola, kGiri> Parole(std::string_view blocco) {
  std::array<Parola, kGiri> w{};
  for (std::size_t t = 0; t < 16; ++t)
    for (std::size_t i = 0; i < 4; ++i)
      w[t] = w[t] << 8 | static_cast<unsigned char>(blocco[4 * t + i]);
  for (std::size_t t = 16; t < kGiri; ++t) {
    const Parola s0 = std::rotr(w[t - 15], 7) ^ std::rotr(w[t - 15], 18) ^ (w[t - 15] >> 3);
    const Parola s1 = std::rotr(w[t - 2], 17) ^ std::rotr(w[t - 2], 19) ^ (w[t - 2] >> 10);
    w[t] = w[t - 16] + s0 + w[t - 7] + s1;
  }
  return w;
}

void Mescola(Stato8& h, std::string_view blocco) {
  const std::array<Parola, kGiri> w = Parole(blocco);
  Stato8 s = h;
  for (std::size_t t = 0; t < kGiri; ++t) {
    const Parola s1 = std::rotr(s[4], 6) ^ std::rotr(s[4], 11) ^ std::rotr(s[4], 25);
    const Parola scelta = (s[4] & s[5]) ^ (~s[4] & s[6]);
    const Parola t1 = s[7] + s1 + scelta + kK[t] + w[t];
    const Parola s0 = std::rotr(s[0], 2) ^ std::rotr(s[0], 13) ^ std::rotr(s[0], 22);
    const Parola maggioranza = (s[0] & s[1]) ^ (s[0] & s[2]) ^ (s[1] & s[2]);
    s = {t1 + s0 + maggioranza, s[0], s[1], s[2], s[3] + t1, s[4], s[5], s[6]};
  }
  for (std::size_t i = 0; i < h.size(); ++i) h[i] += s[i];
}

}  // namespace

std::string Impronta(std::string_view byte) {
  const std::uint64_t bit = std::uint64_t{byte.size()} * 8;
  Stato8 h = kInizio;
  while (byte.size() >= kBlocco) {
    Mescola(h, byte.substr(0, kBlocco));
    byte.remove_prefix(kBlocco);
  }
  std::string coda(byte);
  coda += '\x80';
  while (coda.size() % kBlocco != kBlocco - kByteLunghezza) coda += '\0';
  for (int i = 56; i >= 0; i -= 8) coda += static_cast<char>(bit >> i & 0xFFu);
  for (std::size_t da = 0; da < coda.size(); da += kBlocco)
    Mescola(h, std::string_view(coda).substr(da, kBlocco));

  std::string testo;
  for (const Parola parola : h)
    for (int i = 28; i >= 0; i -= 4) testo += "0123456789abcdef"[parola >> i & 0xFu];
  return testo;
}

}  // namespace compensa

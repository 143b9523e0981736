#pragma once

// A pack of doubles, as wide as a register of the instruction set that the file is compiled for,
// and the few operations that the kernels take from it. All have internal linkage: the same file is
// compiled for several sets, and none may lend its code to another.

#if defined(__AVX512F__) || defined(__AVX2__)
#include <immintrin.h>
#endif

namespace kzt5cmrg {

namespace {

#if defined(__AVX512F__)
using Pacco = __m512d;
constexpr int kRigheMattonella = 8;
constexpr int kPacchiMattonella = 3;
inline Pacco Ripeti(double x) { return _mm512_set1_pd(x); }
inline Pacco Carica(const double* p) { return _mm512_loadu_pd(p); }
inline void Salva(double* p, Pacco v) { _mm512_storeu_pd(p, v); }
inline Pacco SommaProdotto(Pacco s, Pacco a, Pacco b) { return _mm512_fmadd_pd(a, b, s); }
inline Pacco SottraiProdotto(Pacco s, Pacco a, Pacco b) { return _mm512_fnmadd_pd(a, b, s); }
#elif defined(__AVX2__)
using Pacco = __m256d;
constexpr int kRigheMattonella = 4;
constexpr int kPacchiMattonella = 3;
inline Pacco Ripeti(double x) { return _mm256_set1_pd(x); }
inline Pacco Carica(const double* p) { return _mm256_loadu_pd(p); }
inline void Salva(double* p, Pacco v) { _mm256_storeu_pd(p, v); }
inline Pacco SommaProdotto(Pacco s, Pacco a, Pacco b) { return _mm256_fmadd_pd(a, b, s); }
inline Pacco SottraiProdotto(Pacco s, Pacco a, Pacco b) { return _mm256_fnmadd_pd(a, b, s); }
#else
// Two doubles, in whatever registers the machine has; products are rounded before they are added.
using Pacco = double __attribute__((vector_size(16)));
constexpr int kRigheMattonella = 4;
constexpr int kPacchiMattonella = 2;
inline Pacco Ripeti(double x) { return Pacco{x, x}; }
inline Pacco Carica(const double* p) { return Pacco{p[0], p[1]}; }
inline void Salva(double* p, Pacco v) { p[0] = v[0], p[1] = v[1]; }
inline Pacco SommaProdotto(Pacco s, Pacco a, Pacco b) { return s + a * b; }
inline Pacco SottraiProdotto(Pacco s, Pacco a, Pacco b) { return s - a * b; }
#endif

#if defined(__FMA__)
inline double SommaProdotto(double s, double a, double b) { return __builtin_fma(a, b, s); }
inline double SottraiProdotto(double s, double a, double b) { return __builtin_fma(-a, b, s); }
#else
inline double SommaProdotto(double s, double a, double b) { return s + a * b; }
inline double SottraiProdotto(double s, double a, double b) { return s - a * b; }
#endif

constexpr int kLarghezzaPacco = static_cast<int>(sizeof(Pacco) / sizeof(double));

// The part of a product that stays in registers: rows by columns.
constexpr int kColonneMattonella = kPacchiMattonella * kLarghezzaPacco;

}  // namespace

}  // namespace kzt5cmrg

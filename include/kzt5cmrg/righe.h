#pragma once

// Storage of the job's tables. Storage owns; the kernels borrow rows.

#include <cstddef>
#include <memory>
#include <new>

namespace kzt5cmrg {

// A table of equal rows, reached through an array of row pointers: what the numerical kernels take.
// The rows lie one after the other in one block aligned to a cache line, unset at first.
template <class T>
class Righe {
 public:
  Righe() = default;
  // Throws std::bad_alloc when the memory cannot be had.
  Righe(int righe, int colonne)
      : Tabella(std::make_unique<T*[]>(static_cast<std::size_t>(righe))),
        Blocco(Alloca(static_cast<std::size_t>(righe), static_cast<std::size_t>(colonne))) {
    for (int i = 0; i < righe; ++i)
      Tabella[static_cast<std::size_t>(i)] =
          Blocco.get() + static_cast<std::size_t>(i) * static_cast<std::size_t>(colonne);
  }
  T* operator[](int i) const { return Tabella[static_cast<std::size_t>(i)]; }
  T** Puntatori() const { return Tabella.get(); }

 private:
  static constexpr std::align_val_t kAllineamento{64};
  struct Libera {
    void operator()(T* p) const { ::operator delete(p, kAllineamento); }
  };
  static T* Alloca(std::size_t righe, std::size_t colonne) {
    if (colonne != 0 && righe > static_cast<std::size_t>(PTRDIFF_MAX) / sizeof(T) / colonne)
      throw std::bad_alloc();
    return static_cast<T*>(::operator new(righe* colonne * sizeof(T), kAllineamento));
  }

  std::unique_ptr<T*[]> Tabella;
  std::unique_ptr<T, Libera> Blocco;
};

}  // namespace kzt5cmrg

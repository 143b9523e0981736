#pragma once

// A field book in one line of text, and what was said of it, for the tests of the import.

#include <gtest/gtest.h>

#include <sstream>

#include "host/base/diagnostica.h"
#include "host/base/numeri.h"
#include "host/importazione/libretto.h"

namespace compensa {

// A book with one set-up on S: "target direction zenith distance signal face;", "-" = not given.
// Shots are numbered from 1, which is their line.
inline Libretto Libro(const std::string& letture) {
  Libretto libro;
  PostazioneLibretto s{"S", 1.5, true, {}, {}, {}, {libro.NomiFile.emplace_back("l.gsi"), 1, 1}};
  std::istringstream righe(letture);
  for (std::string riga; std::getline(righe, riga, ';');) {
    std::istringstream campi(riga);
    BattutaLibretto b;
    b.Dove = {"l.gsi", static_cast<int>(s.Battute.size()) + 1, 1};
    std::string campo;
    campi >> b.Punto;
    for (auto* numero : {&b.Direzione, &b.Zenit, &b.Distanza, &b.Segnale})
      if (campi >> campo && campo != "-") *numero = LeggiNumero(campo).Valore;
    if (campi >> campo) b.Lato = campo == "II" ? Faccia::Seconda : Faccia::Prima;
    s.Battute.push_back(b);
  }
  libro.Postazioni.push_back(s);
  return libro;
}

inline void Contiene(const std::string& testo, std::string_view pezzo) {
  EXPECT_NE(testo.find(pezzo), std::string::npos) << "manca: " << pezzo << "\nin: " << testo;
}

inline std::string Testi(const Diagnostica& diario) {
  std::string testi;
  for (const std::string& riga : diario.Righe()) testi += riga + "\n";
  return testi;
}

}  // namespace compensa

// Arbitrary text given to a reader of field books: it may find faults in it, and must name a line of
// the file for each.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "host/base/codifica.h"
#include "host/importazione/lettore.h"

using namespace compensa;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dati, std::size_t quanti);

int LLVMFuzzerTestOneInput(const std::uint8_t* dati, std::size_t quanti) {
  const auto testo = InUtf8(std::string(dati, dati + quanti));
  if (!testo) return 0;
  OpzioniLettura opzioni;  // some of them, as the length has it
  if ((quanti & 1) != 0) opzioni.AssiXY = Assi::NordEst;
  if ((quanti & 2) != 0) opzioni.Stazione = "S";
  if ((quanti & 4) != 0) opzioni.CodiceStazioneGsi = 2;
  if ((quanti & 8) != 0) opzioni.Angoli = UnitaAngoli::GradiCompatti;
  opzioni.SegnalePersistente = (quanti & 16) != 0;
  opzioni.IgnoraNonSupportati = (quanti & 32) != 0;

  Libretto libretto;
  Diagnostica diagnostica;
  const std::string_view file = libretto.NomiFile.emplace_back("libretto");
  LETTORE.Riconosce(*testo);
  LETTORE.Leggi(*testo, file, opzioni, libretto, diagnostica);
  for (const Messaggio& messaggio : diagnostica.Messaggi())
    if (messaggio.Livello == Gravita::Errore && messaggio.Riga < 1 &&
        messaggio.Cosa.Quale != Codice::NonMostrati)
      std::abort();
  return 0;
}

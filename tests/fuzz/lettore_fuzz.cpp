// Arbitrary text given to a reader of field books: it may find faults in it, and must name a line of
// the file for each.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "host/codifica.h"
#include "host/importazione/lettore.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dati, std::size_t quanti);

int LLVMFuzzerTestOneInput(const std::uint8_t* dati, std::size_t quanti) {
  if (quanti == 0) return 0;
  const auto testo = InUtf8(std::string(dati + 1, dati + quanti));
  if (!testo) return 0;
  OpzioniLettura opzioni;  // some of them from the first byte
  if ((dati[0] & 1) != 0) opzioni.AssiXY = Assi::NordEst;
  if ((dati[0] & 2) != 0) opzioni.Stazione = "S";
  if ((dati[0] & 4) != 0) opzioni.CodiceStazioneGsi = 2;
  if ((dati[0] & 8) != 0) opzioni.Angoli = UnitaAngoli::GradiCompatti;
  opzioni.SegnalePersistente = (dati[0] & 16) != 0;
  opzioni.IgnoraNonSupportati = (dati[0] & 32) != 0;

  Libretto libretto;
  Diagnostica diagnostica;
  const std::string_view file = libretto.NomiFile.emplace_back("libretto");
  LETTORE.Riconosce(*testo);
  LETTORE.Leggi(*testo, file, opzioni, libretto, diagnostica);
  for (const Messaggio& messaggio : diagnostica.Messaggi())
    if (messaggio.Livello == Gravita::Errore && messaggio.Riga < 1) std::abort();
  return 0;
}

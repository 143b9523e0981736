#pragma once

// The commands of the program with all their options: the only place where one is declared. What
// is written there is what the surveyor reads.

#include <string>
#include <string_view>
#include <vector>

#include "host/base/terminale.h"
#include "host/comando/riga_comando.h"
#include "host/comando/uscite_richieste.h"
#include "host/importazione/opzioni.h"

namespace compensa {

// What a call may ask for: where the options of all commands go.
struct Richieste {
  OpzioniCompensa Compensa;
  OpzioniImporta Importa;
  std::vector<std::string> Verifica;  // networks
  Colori Colore = Colori::Auto;
  bool Aiuto = false, Versione = false;
};

// The program itself first. The commands refer to the requests, which have to outlive them.
std::vector<Comando> Comandi(Richieste& richieste);

struct VoceStato {
  Stato Codice;
  std::string_view Significato;
};
inline constexpr VoceStato kStatiUscita[] = {
    {kStatoRiuscito, "tutte le compensazioni richieste sono riuscite"},
    {kStatoNonCompensata,
     "rete non determinabile, oppure una compensazione si è interrotta o non è arrivata a "
     "convergenza (il rapporto dice perché), o qualche punto incognito è rimasto senza coordinate "
     "(un errore lo nomina)"},
    {kStatoUso, "uso sbagliato della riga di comando"},
    {kStatoRete, "file della rete o libretto sbagliato o non leggibile"},
    {kStatoUscita, "uscita che non si può scrivere, o memoria insufficiente"},
    {kStatoInterno, "errore interno del programma"}};

struct VoceAmbiente {
  std::string_view Nome, Significato;
};
inline constexpr VoceAmbiente kAmbiente[] = {
    {"NO_COLOR", "se non è vuota, niente colori (salvo --colori sempre)"},
    {"TERM", "con \"dumb\" niente colori né riga di avanzamento"},
    {"SOURCE_DATE_EPOCH",
     "secondi dal 1970 (UTC) da scrivere come data dei risultati al posto dell'ora corrente: serve "
     "ad avere file identici a ogni esecuzione"}};

}  // namespace compensa

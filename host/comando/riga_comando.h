#pragma once

// The command line as a table: a row for each option of a command, with what the help shows of it
// and where its value goes. Parser, help, manual and completion know no option but those of the
// rows; a new command is one more function like those of comandi.cpp.

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "host/base/stato.h"
#include "host/rete/campi.h"

namespace compensa {

// What a value or an argument is, for the completion.
enum class GenereValore { Nessuno, Parola, Testo, File, Rete };

// Takes a value, "" if it was left out; returns what would be right, "serve un numero", if it is
// not, else nothing.
using Ricezione = std::function<std::string(const std::string& valore)>;

// Where the value of an option goes.
struct Destino {
  GenereValore Genere = GenereValore::Testo;
  Ricezione Prendi;
  std::vector<ParolaNota> Parole = {};  // that the value may be
  bool Ripetibile = false;
  bool Conclude = false;  // the call wants nothing else: no other value is looked at
};

Destino Interruttore(bool& acceso);
Destino Conclusione(bool& chiesta);
Destino Numero(std::optional<double>& numero, const RegolaNumero& regola);  // point or comma
Destino Intero(std::optional<int>& intero, int minimo);
Destino Elenco(std::vector<std::string>& nomi);  // separated by commas, and repeatable
Destino Parola(std::vector<ParolaNota> parole, const std::function<void(int)>& prendi);

// A std::string, or an optional one.
template <class T>
Destino Testo(T& testo, GenereValore genere = GenereValore::Testo) {
  return {genere, [&testo](const std::string& valore) { return testo = valore, std::string(); }};
}

// An int or an enumeration, or an optional one.
template <class T>
Destino Scelta(T& scelta, std::span<const ParolaNota> parole) {
  return Parola({parole.begin(), parole.end()}, [&scelta](int codice) {
    if constexpr (std::is_enum_v<T>)
      scelta = static_cast<T>(codice);
    else
      scelta = static_cast<typename T::value_type>(codice);
  });
}

struct Opzione {
  // The names, then the value, in brackets if it may be left out: "-o, --rapporto [FILE]".
  std::string_view Firma;
  std::string_view Descrizione;
  Destino Verso;

  std::vector<std::string_view> Nomi() const;  // "-o", "--rapporto"
  std::string_view Nome() const;               // the first long one
  std::string_view Valore() const;             // "FILE"; empty = a switch
  std::string Spiegazione() const;             // the description with the words of the value
  bool Facoltativo() const { return Firma.ends_with(']'); }
};

struct Gruppo {
  std::string_view Titolo;
  std::vector<Opzione> Opzioni;
};

struct Esempio {
  std::string_view Riga, Significato;
};

struct Comando {
  std::string_view Nome;         // empty = the program itself
  std::string_view Uso;          // what follows the name
  std::string_view Sommario;     // one line
  std::string_view Descrizione;  // paragraphs separated by empty lines
  std::string_view Argomento;    // "il file della rete": what a call without arguments lacks
  GenereValore GenereArgomenti = GenereValore::Rete;
  std::vector<std::string>& Argomenti;  // where they go
  std::vector<Gruppo> Gruppi;
  std::vector<Esempio> Esempi;
  std::function<Stato()> Esegui;

  std::string NomeIntero() const;                       // "compensa importa"
  const Opzione* Trova(std::string_view parola) const;  // by one of its names, null if none has it
};

// The command that a call asks for: the one that its first word names, else the program itself, the
// first of them. Throws ErroreUso if that word is a slip for a command.
const Comando& ScegliComando(std::span<const Comando> comandi, std::span<const std::string> parole);

// Hands the words of a call, the name of the command left out, to where they go; arguments come
// first, then options in the order of the table. Throws ErroreUso.
void LeggiParole(const Comando& comando, std::span<const Comando> comandi,
                 std::span<const std::string> parole);

}  // namespace compensa

#pragma once

// What the command line knows: the one definition of commands, options and exit statuses that the
// parser, the help, the manual page and the completion are made from.

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace compensa {

// What stands after an option or an argument, for the completion.
enum class GenereValore { Nessuno, Parola, Testo, File, Rete };

struct Opzione {
  std::string_view Nome;  // long name, without dashes
  char Corta = '\0';
  std::string_view Altro = {};   // second long name
  std::string_view Valore = {};  // name of the value; empty = a switch
  std::string_view Descrizione;
  GenereValore Genere = GenereValore::Nessuno;
  std::vector<std::string_view> Parole = {};  // that the value may be
  bool Facoltativo = false;                   // the value may be left out
  bool Elenco = false;                        // values separated by commas, option repeatable
};

struct Gruppo {
  std::string_view Titolo;
  std::vector<Opzione> Opzioni;
};

struct Esempio {
  std::string_view Comando, Significato;
};

struct Comando {
  std::string_view Nome;         // empty = no subcommand
  std::string_view Uso;          // what follows the name of the program
  std::string_view Sommario;     // one line
  std::string_view Descrizione;  // paragraphs separated by empty lines
  GenereValore Argomenti = GenereValore::Rete;
  std::vector<Gruppo> Gruppi;
  std::vector<Esempio> Esempi;
};

struct VoceStato {
  int Codice;
  std::string_view Significato;
};

struct VoceAmbiente {
  std::string_view Nome, Significato;
};

const Comando& ComandoCompensa();
const Comando& ComandoImporta();
const Comando& ComandoVerifica();

// The three of them, compensa itself first.
std::vector<const Comando*> Comandi();

// The one that the first word of a call names, compensa itself if it names none.
const Comando& ComandoDi(std::string_view parola);

std::span<const VoceStato> StatiUscita();
std::span<const VoceAmbiente> Ambiente();

// "-o FILE, --rapporto FILE" or "-h, --aiuto, --help"
std::string NomiConValore(const Opzione& opzione);

// "--nome" and the like: all the words that name an option.
std::vector<std::string> ParoleOpzione(const Opzione& opzione);

// The option that a word names, null if none does.
const Opzione* TrovaOpzione(const Comando& comando, std::string_view parola);

// The help of a command, UTF-8.
std::string TestoAiuto(const Comando& comando);

}  // namespace compensa

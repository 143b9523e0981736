// The completion script: tables of words for each command, from the table of the options, and one
// function over them. It needs nothing but bash.

#include "host/comando/pagine.h"

namespace compensa {

namespace {

// bash splits "--opzione=valore" into three words.
constexpr std::string_view kFunzione = R"BASH(
# The names that continue the word: folders, and files that end as asked ("" = all of them).
_compensa_file() {
  local nome
  while IFS= read -r nome; do
    if [[ -d $nome || $nome == *"$1" ]]; then COMPREPLY+=("$nome"); fi
  done < <(compgen -f -- "$2")
  compopt -o filenames 2>/dev/null || :
}

_compensa() {
  local parola=${COMP_WORDS[COMP_CWORD]} prima=${COMP_WORDS[COMP_CWORD-1]} comando=
  COMPREPLY=()
  if [[ $parola == = ]]; then
    parola=
  elif [[ $prima == = && COMP_CWORD -gt 2 ]]; then
    prima=${COMP_WORDS[COMP_CWORD-2]}
  fi
  if [[ COMP_CWORD -gt 1 && " $_compensa_comandi " == *" ${COMP_WORDS[1]} "* ]]; then
    comando=${COMP_WORDS[1]}
  fi
  if [[ $parola != -* ]]; then
    _compensa_valori "$comando" "$prima" "$parola" && return
  fi
  if [[ $parola == -* ]]; then
    COMPREPLY=($(compgen -W "$(_compensa_opzioni "$comando")" -- "$parola"))
    return
  fi
  if [[ COMP_CWORD -eq 1 ]]; then
    COMPREPLY=($(compgen -W "$_compensa_comandi" -- "$parola"))
  fi
  _compensa_argomenti "$comando" "$parola"
}
complete -F _compensa compensa
)BASH";

// What completes a value, "" for none.
std::string Azione(GenereValore genere, const std::string& quale, const std::string& parole = "") {
  switch (genere) {
    case GenereValore::Nessuno: return {};
    case GenereValore::Parola: return "COMPREPLY=($(compgen -W '" + parole + "' -- " + quale + "))";
    case GenereValore::Testo: return ":";
    case GenereValore::File: return "_compensa_file '' " + quale;
    case GenereValore::Rete: return "_compensa_file .toml " + quale;
  }
  return {};
}

}  // namespace

std::string CompletamentoBash(std::span<const Comando> tutti) {
  std::string comandi, opzioni, valori, argomenti;
  for (const Comando& comando : tutti) {
    const std::string nome(comando.Nome);
    if (!nome.empty()) comandi += (comandi.empty() ? "" : " ") + nome;
    std::string nomi;
    for (const Gruppo& gruppo : comando.Gruppi)
      for (const Opzione& opzione : gruppo.Opzioni) {
        std::string parole;
        for (const ParolaNota& parola : opzione.Verso.Parole)
          parole += (parole.empty() ? "" : " ") + std::string(parola.Testo);
        const std::string azione = Azione(opzione.Verso.Genere, "\"$3\"", parole);
        for (const std::string_view parola : opzione.Nomi()) {
          nomi += (nomi.empty() ? "" : " ") + std::string(parola);
          if (!azione.empty())
            valori += "    " + nome + ":" + std::string(parola) + ") " + azione + " ;;\n";
        }
      }
    opzioni += "    '" + nome + "') echo '" + nomi + "' ;;\n";
    argomenti += "    '" + nome + "') " + Azione(comando.GenereArgomenti, "\"$2\"") + " ;;\n";
  }
  return "# bash completion of compensa\n\n_compensa_comandi='" + comandi +
         "'\n\n# The options of a command.\n_compensa_opzioni() {\n  case $1 in\n" + opzioni +
         "  esac\n}\n\n# The arguments of a command.\n_compensa_argomenti() {\n  case $1 in\n" +
         argomenti +
         "  esac\n}\n\n# The value of an option; fails if it takes none.\n_compensa_valori() {\n"
         "  case $1:$2 in\n" +
         valori + "    *) return 1 ;;\n  esac\n  return 0\n}\n" + std::string(kFunzione);
}

}  // namespace compensa

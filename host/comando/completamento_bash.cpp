// The completion script: tables of words for each command, from the table of the options, and one
// function over them. It needs nothing but bash.

#include "host/comando/completamento_bash.h"

#include <string_view>

#include "host/comando/opzioni_programma.h"

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

std::string Nomi(const Opzione& opzione) {
  std::string nomi;
  for (const std::string& parola : ParoleOpzione(opzione))
    nomi += (nomi.empty() ? "" : " ") + parola;
  return nomi;
}

std::string Alternative(const Comando& comando, const Opzione& opzione) {
  std::string casi;
  for (const std::string& parola : ParoleOpzione(opzione))
    casi += (casi.empty() ? "" : "|") + std::string(comando.Nome) + ":" + parola;
  return casi;
}

// What completes the value of an option, nothing for one without a value.
std::string CasoValore(const Comando& comando, const Opzione& opzione) {
  std::string azione;
  switch (opzione.Genere) {
    case GenereValore::Nessuno: return {};
    case GenereValore::Parola:
      azione = "COMPREPLY=($(compgen -W '";
      for (const std::string_view parola : opzione.Parole)
        azione += (parola == opzione.Parole.front() ? "" : " ") + std::string(parola);
      azione += "' -- \"$3\"))";
      break;
    case GenereValore::Testo: azione = ":"; break;
    case GenereValore::File: azione = "_compensa_file '' \"$3\""; break;
    case GenereValore::Rete: azione = "_compensa_file .toml \"$3\""; break;
  }
  return "    " + Alternative(comando, opzione) + ") " + azione + " ;;\n";
}

}  // namespace

std::string CompletamentoBash() {
  std::string comandi, opzioni, valori, argomenti;
  for (const Comando* comando : Comandi()) {
    const std::string nome(comando->Nome);
    if (!nome.empty()) comandi += (comandi.empty() ? "" : " ") + nome;
    std::string parole;
    for (const Gruppo& gruppo : comando->Gruppi)
      for (const Opzione& opzione : gruppo.Opzioni) {
        parole += (parole.empty() ? "" : " ") + Nomi(opzione);
        valori += CasoValore(*comando, opzione);
      }
    opzioni += "    '" + nome + "') echo '" + parole + "' ;;\n";
    argomenti += "    '" + nome + "') _compensa_file '" +
                 (comando->Argomenti == GenereValore::Rete ? ".toml" : "") + "' \"$2\" ;;\n";
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

// The help of a command, laid out in columns for a terminal.

#include <algorithm>

#include "host/base/codifica.h"
#include "host/comando/comandi.h"
#include "host/comando/pagine.h"

namespace compensa {

namespace {

constexpr int kLarghezza = 80;
constexpr int kRientro = 2;
constexpr int kColonnaDescrizioni = 30;
constexpr int kColonnaStati = 6;

std::string Spazi(int n) { return std::string(static_cast<std::size_t>(std::max(n, 0)), ' '); }

// The words of a text in lines, from a column on that the page has come to already.
void Impagina(std::string& pagina, std::string_view testo, int colonna) {
  for (int qui = colonna; !testo.empty();) {
    const std::string_view parola = testo.substr(0, testo.find_first_of(" \n"));
    const bool prima = qui == colonna;
    if (!prima && qui + 1 + ContaCaratteri(parola) > kLarghezza) {
      pagina += "\n" + Spazi(colonna);
      qui = colonna;
    } else if (!prima) {
      pagina += ' ';
      ++qui;
    }
    pagina += parola;
    qui += ContaCaratteri(parola);
    testo.remove_prefix(parola.size());
    for (; testo.starts_with('\n'); qui = colonna, testo.remove_prefix(1)) pagina += '\n';
    if (testo.starts_with(' ')) testo.remove_prefix(1);
  }
  pagina += '\n';
}

// "  voce      what it means", the meaning from a column on.
void Voce(std::string& pagina, std::string_view voce, std::string_view testo,
          int colonna = kColonnaDescrizioni) {
  const int scritti = kRientro + ContaCaratteri(voce);
  pagina += Spazi(kRientro) + std::string(voce) +
            (scritti + 2 > colonna ? "\n" + Spazi(colonna) : Spazi(colonna - scritti));
  Impagina(pagina, testo, colonna);
}

std::string Uso(const Comando& comando) {
  return comando.NomeIntero() + " " + std::string(comando.Uso) + "\n";
}

}  // namespace

std::string TestoAiuto(const Comando& comando, std::span<const Comando> tutti) {
  const std::span<const Comando> altri = tutti.subspan(comando.Nome.empty() ? 1 : tutti.size());
  std::string pagina = comando.NomeIntero() + " - " + std::string(comando.Sommario) + "\n\n";
  pagina += "Uso: " + Uso(comando);
  for (const Comando& altro : altri) pagina += "     " + Uso(altro);
  pagina += "\n";
  Impagina(pagina, comando.Descrizione, 0);
  for (const Gruppo& gruppo : comando.Gruppi) {
    pagina += "\n" + std::string(gruppo.Titolo) + ":\n";
    for (const Opzione& opzione : gruppo.Opzioni)
      Voce(pagina, opzione.Firma, opzione.Spiegazione());
  }
  pagina += "\nEsempi:\n";
  for (const auto& [riga, significato] : comando.Esempi)
    pagina += "  " + std::string(riga) + "\n      " + std::string(significato) + "\n";
  if (!altri.empty()) pagina += "\nComandi (compensa COMANDO --aiuto per saperne di più):\n";
  for (const Comando& altro : altri) Voce(pagina, altro.Nome, altro.Sommario);
  pagina += "\nStato di uscita:\n";
  for (const auto& [codice, significato] : kStatiUscita)
    Voce(pagina, std::to_string(codice), significato, kColonnaStati);
  return pagina;
}

}  // namespace compensa

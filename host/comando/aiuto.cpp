// The help of a command, laid out in columns for a terminal.

#include <algorithm>

#include "host/base/codifica.h"
#include "host/base/versione.h"
#include "host/comando/opzioni_programma.h"

namespace compensa {

namespace {

constexpr int kLarghezza = 80;
constexpr int kRientro = 2;
constexpr int kColonnaDescrizioni = 30;
constexpr int kColonnaStati = 6;

std::string Spazi(int n) { return std::string(static_cast<std::size_t>(std::max(n, 0)), ' '); }

// Appends a text broken into lines; the current one has already colonna characters, the others are
// indented by rientro.
void Impagina(std::string& pagina, std::string_view testo, int colonna, int rientro) {
  bool inizioRiga = true;
  while (!testo.empty()) {
    const std::string_view parola = testo.substr(0, testo.find_first_of(" \n"));
    const int lunghezza = ContaCaratteri(parola);
    if (!inizioRiga && colonna + 1 + lunghezza > kLarghezza) {
      pagina += "\n" + Spazi(rientro);
      colonna = rientro;
      inizioRiga = true;
    }
    if (!inizioRiga) pagina += ' ', ++colonna;
    pagina += parola;
    colonna += lunghezza;
    inizioRiga = false;
    testo.remove_prefix(parola.size());
    if (testo.empty()) break;
    if (testo.front() == '\n') {
      pagina += "\n" + Spazi(testo.starts_with("\n\n") ? 0 : rientro);
      if (testo.starts_with("\n\n")) pagina += "\n" + Spazi(rientro), testo.remove_prefix(1);
      colonna = rientro;
      inizioRiga = true;
    }
    testo.remove_prefix(1);
  }
  pagina += '\n';
}

// "  voce      what it means", the meaning from a column on.
void Voce(std::string& pagina, std::string_view voce, std::string_view testo, int colonna) {
  pagina += Spazi(kRientro) + std::string(voce);
  const int scritti = kRientro + ContaCaratteri(voce);
  if (scritti + 2 > colonna)
    pagina += "\n" + Spazi(colonna);
  else
    pagina += Spazi(colonna - scritti);
  Impagina(pagina, testo, colonna, colonna);
}

std::string DescrizioneIntera(const Opzione& opzione) {
  std::string testo(opzione.Descrizione);
  if (opzione.Parole.empty()) return testo;
  for (const std::string_view parola : opzione.Parole)
    testo += (parola == opzione.Parole.front() ? " [" : " | ") + std::string(parola);
  return testo + "]";
}

}  // namespace

std::string NomiConValore(const Opzione& opzione) {
  std::string valore(opzione.Valore);
  if (opzione.Facoltativo) valore = "[" + valore + "]";
  if (!valore.empty()) valore = " " + valore;
  std::string nomi;
  if (opzione.Corta != '\0') nomi = std::string("-") + opzione.Corta + ", ";
  nomi += "--" + std::string(opzione.Nome);
  if (!opzione.Altro.empty()) nomi += ", --" + std::string(opzione.Altro);
  return nomi + valore;
}

std::vector<std::string> ParoleOpzione(const Opzione& opzione) {
  std::vector<std::string> parole;
  if (opzione.Corta != '\0') parole.push_back(std::string("-") + opzione.Corta);
  parole.push_back("--" + std::string(opzione.Nome));
  if (!opzione.Altro.empty()) parole.push_back("--" + std::string(opzione.Altro));
  return parole;
}

const Opzione* TrovaOpzione(const Comando& comando, std::string_view parola) {
  for (const Gruppo& gruppo : comando.Gruppi)
    for (const Opzione& opzione : gruppo.Opzioni)
      for (const std::string& nome : ParoleOpzione(opzione))
        if (nome == parola) return &opzione;
  return nullptr;
}

std::string TestoAiuto(const Comando& comando) {
  const std::string nome =
      std::string(kNomeProgramma) + (comando.Nome.empty() ? "" : " ") + std::string(comando.Nome);
  std::string pagina = nome + " - " + std::string(comando.Sommario) + "\n\n";
  pagina += "Uso: " + nome + " " + std::string(comando.Uso) + "\n";
  if (comando.Nome.empty())
    for (const Comando* altro : Comandi())
      if (!altro->Nome.empty())
        pagina += "     " + std::string(kNomeProgramma) + " " + std::string(altro->Nome) + " " +
                  std::string(altro->Uso) + "\n";
  pagina += "\n";
  Impagina(pagina, comando.Descrizione, 0, 0);
  for (const Gruppo& gruppo : comando.Gruppi) {
    pagina += "\n" + std::string(gruppo.Titolo) + ":\n";
    for (const Opzione& opzione : gruppo.Opzioni)
      Voce(pagina, NomiConValore(opzione), DescrizioneIntera(opzione), kColonnaDescrizioni);
  }
  pagina += "\nEsempi:\n";
  for (const Esempio& esempio : comando.Esempi)
    pagina +=
        "  " + std::string(esempio.Comando) + "\n      " + std::string(esempio.Significato) + "\n";
  if (comando.Nome.empty()) {
    pagina += "\nComandi (compensa COMANDO --aiuto per saperne di più):\n";
    for (const Comando* altro : Comandi())
      if (!altro->Nome.empty()) Voce(pagina, altro->Nome, altro->Sommario, kColonnaDescrizioni);
  }
  pagina += "\nStato di uscita:\n";
  for (const VoceStato& stato : StatiUscita())
    Voce(pagina, std::to_string(stato.Codice), stato.Significato, kColonnaStati);
  return pagina;
}

}  // namespace compensa

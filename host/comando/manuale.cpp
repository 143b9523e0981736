// compensa(1): every command with its options, then what they share.

#include <utility>

#include "host/base/codifica.h"
#include "host/base/versione.h"
#include "host/comando/comandi.h"
#include "host/comando/pagine.h"

namespace compensa {

namespace {

std::string Grassetto(std::string_view testo) { return "\\fB" + TestoRoff(testo) + "\\fR"; }

// Names of an option in bold, its value in italics.
std::string FirmaRoff(const Opzione& opzione) {
  std::string roff;
  for (const std::string_view nome : opzione.Nomi())
    roff += (roff.empty() ? "" : ", ") + Grassetto(nome);
  if (opzione.Valore().empty()) return roff;
  const std::string valore = "\\fI" + TestoRoff(opzione.Valore()) + "\\fR";
  return roff + " " + (opzione.Facoltativo() ? "[" + valore + "]" : valore);
}

std::string Voce(const std::string& titolo, std::string_view testo) {
  return ".TP\n" + titolo + "\n" + TestoRoff(testo) + "\n";
}

std::string Paragrafi(std::string_view testo) {
  std::string roff;
  for (std::size_t fine = 0; fine != std::string_view::npos;) {
    fine = testo.find("\n\n");
    roff += ".PP\n" + TestoRoff(testo.substr(0, fine)) + "\n";
    if (fine != std::string_view::npos) testo.remove_prefix(fine + 2);
  }
  return roff;
}

std::string OpzioniRoff(const Comando& comando) {
  std::string roff;
  for (const Gruppo& gruppo : comando.Gruppi) {
    roff += ".SS " + TestoRoff(gruppo.Titolo) + "\n";
    for (const Opzione& opzione : gruppo.Opzioni)
      roff += Voce(FirmaRoff(opzione), opzione.Spiegazione());
  }
  return roff;
}

}  // namespace

std::string TestoRoff(std::string_view utf8) {
  constexpr std::pair<char, std::string_view> kSpeciali[] = {
      {'\\', "\\(rs"}, {'-', "\\-"},   {'\'', "\\(aq"}, {'`', "\\(ga"},
      {'^', "\\(ha"},  {'~', "\\(ti"}, {'"', "\\(dq"}};
  constexpr char32_t kPrimoNonAscii = 0x80;
  std::string roff;
  for (bool inizioRiga = true; !utf8.empty();) {
    const Carattere c = PrimoCarattere(utf8);
    const std::size_t lunghezza = c.Lunghezza > 0 ? c.Lunghezza : 1;
    const char primo = utf8.front();
    std::string scritto(utf8.substr(0, lunghezza));
    for (const auto& [speciale, come] : kSpeciali)
      if (primo == speciale) scritto = come;
    if (c.Codice >= kPrimoNonAscii) scritto = "\\[u" + CodiceUnicode(c.Codice).substr(2) + "]";
    roff += (inizioRiga && primo == '.' ? "\\&" : "") + scritto;
    inizioRiga = primo == '\n';
    utf8.remove_prefix(lunghezza);
  }
  return roff;
}

std::string TestataRoff(int sezione, std::string_view sommario) {
  const std::string nome(kNomeProgramma);
  return ".TH COMPENSA " + std::to_string(sezione) + " \"\" \"" + nome + " " +
         std::string(kVersioneProgramma) + "\" \"Manuale di " + nome +
         "\"\n.nh\n.ad l\n.SH NOME\n" + nome + " \\- " + TestoRoff(sommario) + "\n";
}

std::string ManualeProgramma(std::span<const Comando> comandi) {
  const Comando& primo = comandi.front();
  std::string uso, altri, esempi;
  for (const Comando& comando : comandi) {
    uso += (uso.empty() ? "" : ".br\n") + Grassetto(comando.NomeIntero()) + " " +
           TestoRoff(comando.Uso) + "\n";
    if (&comando != &primo)
      altri += ".SH " + std::string(comando.Nome) + "\n" + Paragrafi(comando.Descrizione) +
               OpzioniRoff(comando);
    for (const auto& [riga, significato] : comando.Esempi)
      esempi += Voce(Grassetto(riga), significato);
  }
  std::string roff = TestataRoff(1, primo.Sommario) + ".SH SINTASSI\n" + uso + ".SH DESCRIZIONE\n" +
                     Paragrafi(primo.Descrizione) + ".SH OPZIONI\n" + OpzioniRoff(primo) + altri +
                     ".SH STATO DI USCITA\n";
  for (const auto& [codice, significato] : kStatiUscita)
    roff += Voce(Grassetto(std::to_string(codice)), significato);
  roff += ".SH AMBIENTE\n";
  for (const auto& [nome, significato] : kAmbiente) roff += Voce(Grassetto(nome), significato);
  return roff + ".SH ESEMPI\n" + esempi + ".SH VEDERE ANCHE\n\\fBcompensa\\fR(5)\n";
}

}  // namespace compensa

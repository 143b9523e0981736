// compensa(1): every command with its options, then what they share.

#include "host/comando/manuale.h"

#include <array>

#include "host/base/codifica.h"
#include "host/base/versione.h"
#include "host/comando/opzioni_programma.h"

namespace compensa {

namespace {

std::string NomeComando(const Comando& comando) {
  return std::string(kNomeProgramma) + (comando.Nome.empty() ? "" : " ") +
         std::string(comando.Nome);
}

std::string Grassetto(std::string_view testo) { return "\\fB" + TestoRoff(testo) + "\\fR"; }

std::string Corsivo(std::string_view testo) { return "\\fI" + TestoRoff(testo) + "\\fR"; }

// Names of an option in bold, its value in italics.
std::string NomiRoff(const Opzione& opzione) {
  std::string nomi;
  for (const std::string& parola : ParoleOpzione(opzione))
    nomi += (nomi.empty() ? "" : ", ") + Grassetto(parola);
  if (opzione.Valore.empty()) return nomi;
  const std::string valore = Corsivo(opzione.Valore);
  return nomi + " " + (opzione.Facoltativo ? "[" + valore + "]" : valore);
}

std::string Voce(const std::string& titolo, const std::string& testo) {
  return ".TP\n" + titolo + "\n" + testo + "\n";
}

std::string TestoOpzione(const Opzione& opzione) {
  std::string testo = TestoRoff(opzione.Descrizione);
  for (const std::string_view parola : opzione.Parole)
    testo += (parola == opzione.Parole.front() ? " [" : " | ") + Grassetto(parola);
  return opzione.Parole.empty() ? testo : testo + "]";
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
      roff += Voce(NomiRoff(opzione), TestoOpzione(opzione));
  }
  return roff;
}

std::string Esempi() {
  std::string roff = ".SH ESEMPI\n";
  for (const Comando* comando : Comandi())
    for (const Esempio& esempio : comando->Esempi)
      roff += Voce(Grassetto(esempio.Comando), TestoRoff(esempio.Significato));
  return roff;
}

}  // namespace

std::string TestoRoff(std::string_view utf8) {
  constexpr std::array<std::pair<char, std::string_view>, 7> kSpeciali{{{'\\', "\\(rs"},
                                                                        {'-', "\\-"},
                                                                        {'\'', "\\(aq"},
                                                                        {'`', "\\(ga"},
                                                                        {'^', "\\(ha"},
                                                                        {'~', "\\(ti"},
                                                                        {'"', "\\(dq"}}};
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
    if (inizioRiga && primo == '.') roff += "\\&";
    roff += scritto;
    inizioRiga = primo == '\n';
    utf8.remove_prefix(lunghezza);
  }
  return roff;
}

std::string TestataRoff(int sezione, std::string_view sommario) {
  const std::string numero = std::to_string(sezione);
  return ".TH COMPENSA " + numero + " \"\" \"" + std::string(kNomeProgramma) + " " +
         std::string(kVersioneProgramma) + "\" \"Manuale di " + std::string(kNomeProgramma) +
         "\"\n.nh\n.ad l\n.SH NOME\n" + std::string(kNomeProgramma) + " \\- " +
         TestoRoff(sommario) + "\n";
}

std::string ManualeProgramma() {
  std::string roff = TestataRoff(1, ComandoCompensa().Sommario) + ".SH SINTASSI\n";
  for (const Comando* comando : Comandi())
    roff += (comando->Nome.empty() ? "" : ".br\n") + Grassetto(NomeComando(*comando)) + " " +
            TestoRoff(comando->Uso) + "\n";
  roff += ".SH DESCRIZIONE\n" + Paragrafi(ComandoCompensa().Descrizione);
  roff += ".SH OPZIONI\n" + OpzioniRoff(ComandoCompensa());
  for (const Comando* comando : Comandi())
    if (!comando->Nome.empty())
      roff += ".SH " + std::string(comando->Nome) + "\n" + Paragrafi(comando->Descrizione) +
              OpzioniRoff(*comando);
  roff += ".SH STATO DI USCITA\n";
  for (const VoceStato& stato : StatiUscita())
    roff += Voce(Grassetto(std::to_string(stato.Codice)), TestoRoff(stato.Significato));
  roff += ".SH AMBIENTE\n";
  for (const VoceAmbiente& voce : Ambiente())
    roff += Voce(Grassetto(voce.Nome), TestoRoff(voce.Significato));
  return roff + Esempi() + ".SH VEDERE ANCHE\n\\fBcompensa\\fR(5)\n";
}

}  // namespace compensa

// compensa(5): the network file, field by field.

#include "host/comando/pagine.h"
#include "host/file_rete/campi_rete.h"

namespace compensa {

namespace {

constexpr std::string_view kPremessa =
    "Una rete è un file di testo in formato TOML, in UTF-8. Quello che segue # è un commento; i "
    "testi stanno fra virgolette, i numeri hanno il punto decimale, sì e no si scrivono true e "
    "false. Le lunghezze sono in metri, gli angoli in gon (400 sul giro), le direzioni crescono in "
    "senso orario. Quello che non si scrive è non dato: non è mai preso per zero.";

constexpr std::string_view kEsempio =
    "formato = 1\n"
    "\n"
    "punti = [\n"
    "  { nome = \"V1\", est = 1000.000, nord = 5000.000, planimetria = \"fisso\" },\n"
    "  { nome = \"V2\", est = 1190.000, nord = 5160.000, planimetria = \"fisso\" },\n"
    "  { nome = \"V3\", est = 1105.4, nord = 5310.2 },\n"
    "]\n"
    "\n"
    "[opzioni]\n"
    "calcolo = \"planimetria\"\n"
    "sqm_direzione = 0.0010\n"
    "sqm_distanza_costante = 0.003\n"
    "\n"
    "[[stazioni]]\n"
    "punto = \"V1\"\n"
    "osservazioni = [\n"
    "  { punto = \"V2\", direzione = 0.0 },\n"
    "  { punto = \"V3\", direzione = 365.4071, zenit = 100.0, distanza = 327.620 },\n"
    "]\n";

std::string CampoRoff(const CampoRete& campo) {
  std::string roff = ".TP\n\\fB" + TestoRoff(campo.Chiave) + "\\fR";
  if (!campo.Unita.empty()) roff += " [" + TestoRoff(campo.Unita) + "]";
  roff += "\n" + TestoRoff(campo.Significato);
  roff += campo.SeManca == kObbligatorio ? " (" + TestoRoff(kObbligatorio) + ")"
                                         : " (se manca: " + TestoRoff(campo.SeManca) + ")";
  return roff + "\n";
}

}  // namespace

std::string ManualeFile() {
  std::string roff = TestataRoff(5, "il file di una rete topografica");
  roff += ".SH DESCRIZIONE\n" + TestoRoff(kPremessa) + "\n";
  for (const TitoloSezione& sezione : kSezioniRete) {
    roff += ".SH \"" + TestoRoff(sezione.Titolo) + "\"\n" + TestoRoff(sezione.Premessa) + "\n";
    for (const CampoRete& campo : kCampiRete)
      if (campo.Sezione == sezione.Sezione) roff += CampoRoff(campo);
  }
  roff += ".SH ESEMPIO\n.nf\n" + TestoRoff(kEsempio) + ".fi\n";
  return roff + ".SH VEDERE ANCHE\n\\fBcompensa\\fR(1)\n";
}

}  // namespace compensa

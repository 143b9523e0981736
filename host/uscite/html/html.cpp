// The page: one file without references to the outside, readable without scripts. Its security
// policy forbids every connection, and every style and script but those that it carries.

#include "host/uscite/html/html.h"

#include <algorithm>

#include "host/uscite/html/disegno.h"
#include "host/uscite/html/html_risorse.h"
#include "host/uscite/html/html_scrittura.h"
#include "host/uscite/html/html_tabelle.h"
#include "host/uscite/html/html_testata.h"
#include "host/uscite/json.h"

namespace compensa {

namespace {

constexpr std::size_t kEquazioniDati = 6000;         // at most, for the data to be embedded
constexpr std::size_t kRapportoMassimo = 4'000'000;  // bytes of an embedded report

constexpr std::string_view kIndice =
    "<nav aria-label=\"Indice\"><a href=\"#esito\">Esito</a> <a href=\"#rete\">Disegno</a> "
    "<a href=\"#tabelle\">Tabelle</a> <a href=\"#messaggi\">Messaggi</a> "
    "<a href=\"#glossario\">Glossario</a> <a href=\"#rapporto\">Rapporto completo</a></nav>\n";

constexpr std::string_view kGlossario =
    "<section id=\"glossario\">\n<h2>Glossario</h2>\n<dl class=\"glossario\">\n"
    "<div><dt>Sigma zero</dt><dd>Scarto quadratico medio dell'unità di peso. In planimetria 1 vuol "
    "dire "
    "che le osservazioni sono precise quanto promesso dagli s.q.m. a priori.</dd></div>\n"
    "<div><dt>Test globale</dt><dd>Confronta sigma zero con il suo valore a priori (χ², livello di "
    "significatività 5 %). Se fallisce c'è un errore grossolano, oppure gli s.q.m. a priori non "
    "descrivono le misure.</dd></div>\n"
    "<div><dt>w, residuo normalizzato</dt><dd>Residuo diviso per il suo s.q.m. a posteriori "
    "(Baarda). "
    "Oltre 3.29 l'osservazione è sospetta; nessun |w| supera la radice della "
    "ridondanza.</dd></div>\n"
    "<div><dt>Ridondanza locale r</dt><dd>Parte di un errore che si vede nel residuo "
    "dell'osservazione: "
    "0 non controllata, 1 controllata del tutto. La somma è la ridondanza della rete.</dd></div>\n"
    "<div><dt>Minimo errore rilevabile</dt><dd>Il più piccolo errore grossolano che il test di w "
    "trova, con rischio 0.1 % e potenza 80 %: affidabilità interna.</dd></div>\n"
    "<div><dt>Affidabilità esterna</dt><dd>Effetto massimo di quell'errore, se c'è e sfugge, su "
    "una "
    "coordinata, una quota o una loro funzione, in s.q.m. di questa: più è piccola, meno la rete "
    "risente degli errori che non si vedono.</dd></div>\n"
    "<div><dt>Ellisse d'errore</dt><dd>Standard: semiassi a un sigma. Di confidenza 95 %: la "
    "standard "
    "per √(2 F), F quantile della distribuzione di Fisher con 2 e i gradi di libertà della "
    "rete.</dd></div>\n"
    "<div><dt>Orientamento</dt><dd>Azimut dello zero del cerchio di una stazione.</dd></div>\n"
    "</dl>\n</section>\n";

constexpr std::string_view kFirma =
    "<section class=\"firma\" aria-label=\"Firma\">\n<p>Luogo e data<span></span></p>\n<p>Il "
    "tecnico<span></span></p>\n</section>\n";

void ScriviInizio(Pagina& p, const Documento& d) {
  p << "<!DOCTYPE html>\n<html lang=\"it\">\n<head>\n<meta charset=\"utf-8\">\n"
       "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
       "'sha256-"
    << kImprontaStile << "'; script-src 'sha256-" << kImprontaScript
    << "'; base-uri 'none'; form-action 'none'\">\n"
       "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
       "<meta name=\"color-scheme\" content=\"light dark\">\n<title>";
  p.Testo(TitoloDocumento(d)) << " – compensazione</title>\n<style>" << kStile
                              << "</style>\n</head>\n<body>\n";
}

void ScriviElenco(Pagina& p, std::string_view titolo, const std::vector<std::string>& righe,
                  std::string_view nessuna) {
  p << "<h3>" << titolo << "</h3>\n";
  if (righe.empty()) {
    p << "<p>" << nessuna << "</p>\n";
    return;
  }
  p << "<ul>\n";
  for (const std::string& riga : righe) (p << "<li>").Testo(riga) << "</li>\n";
  p << "</ul>\n";
}

void ScriviRapporto(Pagina& p, std::string_view rapporto) {
  p << "<section id=\"rapporto\">\n<h2>Rapporto completo</h2>\n";
  if (rapporto.size() > kRapportoMassimo) {
    p << "<p>Il rapporto di questa rete è troppo lungo per questa pagina: in un file di testo "
         "si ottiene con l'opzione -o.</p>\n";
  } else {
    p << "<pre tabindex=\"0\" aria-label=\"Rapporto completo\">";
    constexpr std::size_t kPezzo = std::size_t{1} << 16;
    while (!rapporto.empty()) {
      std::size_t lunghezza = std::min(kPezzo, rapporto.size());
      const std::size_t fineRiga = rapporto.substr(0, lunghezza).rfind('\n');
      if (fineRiga != std::string_view::npos) lunghezza = fineRiga + 1;
      p.Testo(rapporto.substr(0, lunghezza));
      rapporto.remove_prefix(lunghezza);
    }
    p << "</pre>\n";
  }
  p << "</section>\n";
}

// In JSON a "<" stands only inside a text, where it may be written by its code: no tag can end the
// block.
void ScriviDati(Pagina& p, const Documento& documento) {
  const Risultati& r = documento.Esiti;
  if (r.Equazioni.size() > kEquazioniDati) {
    p << "<p>I dati per altri programmi non sono in questa pagina, perché la rete è grande: si "
         "ottengono in un file JSON con l'opzione --json.</p>\n";
    return;
  }
  p << "<script type=\"application/json\" id=\"dati\">\n";
  const auto scrivi = [&](std::string_view pezzo) {
    for (std::size_t fine; (fine = pezzo.find('<')) != std::string_view::npos;) {
      p << pezzo.substr(0, fine) << "\\u003c";
      pezzo.remove_prefix(fine + 1);
    }
    p << pezzo;
  };
  ScriviJson(r, scrivi, {documento.Messaggi, documento.Note});
  p << "</script>\n";
}

}  // namespace

void ScriviHtml(const Documento& documento, const std::function<void(std::string_view)>& scrivi) {
  Pagina p(scrivi);
  const Risultati& r = documento.Esiti;
  ScriviInizio(p, documento);
  ScriviTestata(p, documento);
  p << kIndice << "<main>\n";
  ScriviEsito(p, documento);
  p << "<section id=\"rete\">\n<h2>Disegno della rete</h2>\n";
  ScriviDisegno(p, r);
  p << "</section>\n<section id=\"tabelle\">\n<h2>Tabelle</h2>\n";
  ScriviTabelle(p, r);
  p << "</section>\n<section id=\"messaggi\">\n<h2>Messaggi</h2>\n";
  ScriviElenco(p, "Avvisi", Testi(documento.Messaggi), "Nessun avviso.");
  if (!documento.Note.empty()) ScriviElenco(p, "Coordinate approssimate", documento.Note, {});
  p << "</section>\n" << kGlossario << kFirma;
  ScriviRapporto(p, documento.Rapporto);
  p << "</main>\n";
  ScriviDati(p, documento);
  p << "<script>" << kScript << "</script>\n</body>\n</html>\n";
  p.Concludi();
}

}  // namespace compensa

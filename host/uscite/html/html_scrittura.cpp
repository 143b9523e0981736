// The parts of which the page is made. End tags that HTML lets out are left out in tables: with
// thousands of rows they would be a third of the page.

#include "host/uscite/html/html_scrittura.h"

#include <cmath>

#include "host/base/codifica.h"
#include "host/base/numeri.h"

namespace compensa {

namespace {

constexpr std::size_t kPezzo = std::size_t{1} << 16;  // bytes passed on at a time

}  // namespace

std::string Protetto(std::string_view testo) {
  std::string protetto;
  protetto.reserve(testo.size());
  for (const char c : PerXml(Utf8Valido(testo) ? std::string(testo) : DaWindows1252(testo)))
    switch (c) {
      case '&': protetto += "&amp;"; break;
      case '<': protetto += "&lt;"; break;
      case '>': protetto += "&gt;"; break;
      case '"': protetto += "&quot;"; break;
      case '\'': protetto += "&#39;"; break;
      default: protetto += c;
    }
  return protetto;
}

std::string Cifre(double valore, int decimali) {
  std::string cifre = NumeroFisso(valore, decimali);
  if (cifre.starts_with('-') && cifre.find_first_not_of("-0.") == std::string::npos)
    cifre.erase(0, 1);
  return cifre;
}

Pagina& Pagina::operator<<(std::string_view marcatura) {
  Attesa += marcatura;
  if (Attesa.size() >= kPezzo) Concludi();
  return *this;
}

void Pagina::Concludi() {
  Scrivi(Attesa);
  Attesa.clear();
}

TabellaHtml::TabellaHtml(Pagina& pagina, const Testata& t, std::span<const Colonna> colonne)
    : P(pagina) {
  P << "<section class=\"tabella\" id=\"" << t.Chiave << "\">\n<h3>" << t.Titolo
    << "</h3>\n<div class=\"filtri\" hidden><label>Filtra la tabella: <input type=\"search\" "
       "autocomplete=\"off\"></label>";
  if (t.Osservazioni) P << "<label><input type=\"checkbox\"> solo osservazioni sospette</label>";
  P << "<span role=\"status\"></span></div>\n<div class=\"scorri\" tabindex=\"0\" role=\"region\" "
       "aria-label=\""
    << t.Titolo << "\"><table>\n<caption>" << t.Didascalia << "</caption>\n<thead><tr>";
  for (const Colonna& c : colonne) {
    P << "<th scope=\"col\" aria-sort=\"none\"";
    if (c.Tipo != Contenuto::Testo) P << " class=\"n\"";
    if (c.Tipo == Contenuto::NumeroAssoluto) P << " data-abs";
    P << "><button type=\"button\">" << c.Titolo;
    if (!c.Unita.empty()) P << " <small>[" << c.Unita << "]</small>";
    P << "</button></th>";
  }
  P << "</tr></thead>\n<tbody>";
}

void TabellaHtml::Concludi() { P << "\n</tbody></table></div>\n</section>\n"; }

void TabellaHtml::Riga(bool sospetta) { P << (sospetta ? "\n<tr class=\"sosp\">" : "\n<tr>"); }

void TabellaHtml::Testo(std::string_view testo) { (P << "<td>").Testo(testo); }

void TabellaHtml::Numero(double valore, int decimali) {
  if (!std::isfinite(valore)) {
    P << "<td class=n>-";
    return;
  }
  P << "<td class=n>" << Cifre(valore, decimali);
}

}  // namespace compensa

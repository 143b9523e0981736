// The drawing as SVG. Lengths of the network are metres of the view box; what keeps its size on the
// screen (symbols, names, scale bar) is drawn in pixels of the sheet inside a group that scales
// them to metres, and a property of the style sheet, --k, shrinks them while the drawing is
// enlarged.

#include "host/uscite/html/disegno.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "host/base/numeri.h"
#include "host/rete/grandezze.h"
#include "host/uscite/html/disegno_elementi.h"
#include "host/uscite/html/disegno_etichette.h"
#include "host/uscite/scala_ellissi.h"
#include "host/uscite/visuali_uniche.h"

namespace compensa {

namespace {

constexpr double kRaggioSimbolo = 6.0, kRaggioStazione = 9.0;  // [pixel]
// Beyond these numbers the page would become slow: sights are then drawn as a few paths without
// text of their own, points without names and ellipses.
constexpr std::size_t kVisualiSingole = 8000;
constexpr std::size_t kPuntiCompleti = 10000;

// By role.
constexpr std::array<std::string_view, 4> kSimboli = {"pi", "pf", "pn", "pc"};
constexpr std::array kPriorita = {2, 4, 0, 2};  // of the names
static_assert(kIncognito == 0 && kFisso == 1 && kNonUsato == 2 && kCompensato == 3);

// One drawing while it is written.
class Disegno {
 public:
  Disegno(Pagina& pagina, const Risultati& risultati, const ElementiDisegno& elementi)
      : P(pagina),
        R(risultati),
        E(elementi),
        Q(elementi.Quadro),
        Fattore(FattoreEllissi(risultati)),
        Esagerazione(EsagerazioneEllissi(risultati)),
        Compensata(risultati.Planimetria.Compiuta() || risultati.Altimetria.Compiuta()) {}
  void Scrivi();

 private:
  bool ConEllissi() const { return E.Ellissi && E.Punti.size() <= kPuntiCompleti; }
  bool ConVisualiSingole() const { return E.Visuali.size() <= kVisualiSingole; }
  const RisultatoPunto& Punto(int i) const { return R.Punti[static_cast<std::size_t>(i)]; }
  std::string Metri(double valore) const { return NumeroFisso(valore, Q.Decimali); }
  std::string InPixel(double x, double y, double ingrandimento = 1.0) const;
  std::string Posto(const VisualeUnica& v) const;
  // Where nothing was adjusted every sight is shown as one that would be.
  bool Usata(const VisualeUnica& v) const { return v.Usata() || !Compensata; }
  std::string Stile(const VisualeUnica& v) const;

  void ScriviStrati();
  void ScriviVisuali();
  void ScriviVisuale(const VisualeUnica& v);
  void ScriviVisualiInsieme();
  void ScriviFreccia(const VisualeUnica& v);
  void ScriviEllissi(std::string_view strato, double fattore, std::string_view nome);
  void ScriviPunti();
  void ScriviEtichette();
  void ScriviScala();
  void ScriviLegenda();
  void ScriviNote();

  Pagina& P;
  const Risultati& R;
  const ElementiDisegno& E;
  const Inquadratura& Q;
  double Fattore;       // from the standard ellipse to that of 95 %; kAssente = none
  double Esagerazione;  // of the ellipses
  bool Compensata;
};

// "translate(x y)scale(u)": a group at a place, in pixels of the sheet.
std::string Disegno::InPixel(double x, double y, double ingrandimento) const {
  constexpr int kCifre = 5;  // of the scale
  const double scala = Q.MetriPerPixel * ingrandimento;
  const int decimali = std::max(kCifre - static_cast<int>(std::floor(std::log10(scala))), 0);
  return "translate(" + Metri(x) + " " + Metri(y) + ")scale(" + NumeroFisso(scala, decimali) + ")";
}

std::string Disegno::Posto(const VisualeUnica& v) const {
  const RisultatoPunto &a = Punto(v.Da), &b = Punto(v.A);
  return "M" + Metri(Q.X(a.Est)) + " " + Metri(Q.Y(a.Nord)) + "L" + Metri(Q.X(b.Est)) + " " +
         Metri(Q.Y(b.Nord));
}

// Kind of a sight as classes of the style sheet.
std::string Disegno::Stile(const VisualeUnica& v) const {
  if (!Usata(v)) return "v vn";
  std::string stile = "v v" + std::to_string(static_cast<int>(ClasseDi(v.WMassimo)));
  if (!v.Distanza) stile += " vd";
  if (!v.Direzione) stile += " vs";
  if (v.Reciproca()) stile += " vv";
  return stile;
}

void Disegno::ScriviStrati() {
  const auto strato = [&](std::string_view chiave, std::string_view testo, bool attivo) {
    P << "<input type=\"checkbox\" id=\"st-" << chiave << "\"" << (attivo ? " checked" : "")
      << "><label for=\"st-" << chiave << "\">" << testo << "</label>\n";
  };
  P << "<p class=\"riga\">Strati del disegno:</p>\n";
  strato("visuali", "visuali", true);
  strato("segni", "segni delle visuali con |w| grande", true);
  if (ConEllissi()) strato("ell", "ellissi standard", true);
  if (ConEllissi() && Presente(Fattore)) strato("ell95", "ellissi 95 %", false);
  strato("punti", "punti", true);
  strato("nomi", "nomi", true);
  P << "<span class=\"zoom\" hidden><button type=\"button\" data-zoom=\"0.5\" "
       "aria-label=\"ingrandisci\">+</button><button type=\"button\" data-zoom=\"2\" "
       "aria-label=\"rimpicciolisci\">−</button><button type=\"button\" data-zoom=\"0\">tutta la "
       "rete</button></span>\n";
}

void Disegno::ScriviVisuale(const VisualeUnica& v) {
  P << "<path class=\"" << Stile(v) << "\" d=\"" << Posto(v) << "\"><title>";
  P.Testo(Punto(v.Da).Nome + " – " + Punto(v.A).Nome);
  P << ": " << NomeTipo(v);
  if (v.Reciproca()) P << ", nei due versi";
  if (!Usata(v)) P << "; non usata";
  if (Presente(v.WMassimo)) P << "; |w| massimo " << NumeroFisso(v.WMassimo, 2);
  P << "</title></path>\n";
}

// All sights of a kind as one path.
void Disegno::ScriviVisualiInsieme() {
  std::vector<std::pair<std::string, std::string>> insiemi;
  for (const VisualeUnica& v : E.Visuali) {
    const std::string stile = Stile(v);
    auto insieme = insiemi.begin();
    while (insieme != insiemi.end() && insieme->first != stile) ++insieme;
    if (insieme == insiemi.end()) insieme = insiemi.insert(insieme, {stile, {}});
    insieme->second += Posto(v);
  }
  for (const auto& [stile, tratti] : insiemi)
    P << "<path class=\"" << stile << "\" d=\"" << tratti << "\"/>\n";
}

// On a sight that was observed from one end only, towards the other one; beyond the middle, where
// the mark of a large w is.
void Disegno::ScriviFreccia(const VisualeUnica& v) {
  if (v.Reciproca() || !Usata(v)) return;
  constexpr double kPosto = 0.64;       // part of the sight
  constexpr double kLatoMinimo = 48.0;  // a shorter sight has no room between its symbols [pixel]
  const RisultatoPunto &a = Punto(v.Da), &b = Punto(v.A);
  const double x = Q.X(a.Est), y = Q.Y(a.Nord), dx = Q.X(b.Est) - x, dy = Q.Y(b.Nord) - y;
  if (std::hypot(dx, dy) < kLatoMinimo * E.Riduzione * Q.MetriPerPixel) return;
  const double gradi = std::atan2(dy, dx) * kGonPerRad * kGradiPerGon;
  P << "<g class=\"p\" transform=\"" << InPixel(x + kPosto * dx, y + kPosto * dy, E.Riduzione)
    << "rotate(" << NumeroFisso(gradi, 1) << ")\"><use class=\"fr fr"
    << std::to_string(static_cast<int>(ClasseDi(v.WMassimo))) << "\" href=\"#fr\"/></g>\n";
}

void Disegno::ScriviVisuali() {
  P << "<g class=\"visuali\">\n";
  if (ConVisualiSingole()) {
    for (const VisualeUnica& v : E.Visuali) ScriviVisuale(v);
    for (const VisualeUnica& v : E.Visuali) ScriviFreccia(v);
  } else {
    ScriviVisualiInsieme();
  }
  P << "<g class=\"segni\">\n";
  for (const VisualeUnica& v : E.Visuali) {
    const ClasseW classe = ClasseDi(v.WMassimo);
    if (!Usata(v) || classe == ClasseW::Regolare) continue;
    const RisultatoPunto &a = Punto(v.Da), &b = Punto(v.A);
    P << "<g class=\"p\" transform=\""
      << InPixel(Q.X((a.Est + b.Est) / 2.0), Q.Y((a.Nord + b.Nord) / 2.0), E.Riduzione)
      << "\"><use href=\"#" << (classe == ClasseW::Sospetta ? "w2" : "w1") << "\"/></g>\n";
  }
  P << "</g></g>\n";
}

void Disegno::ScriviEllissi(std::string_view strato, double fattore, std::string_view nome) {
  P << "<g class=\"" << strato << "\">\n";
  for (const PuntoDisegnato& d : E.Punti) {
    const RisultatoPunto& p = Punto(d.Punto);
    if (!ConEllisse(p)) continue;
    const double scala = fattore * Esagerazione;
    P << "<ellipse rx=\"" << Metri(p.EllAsseMin * scala) << "\" ry=\""
      << Metri(p.EllAsseMag * scala) << "\" transform=\"translate(" << Metri(d.X) << " "
      << Metri(d.Y) << ")rotate(" << NumeroFisso(p.EllAzimut * kGradiPerGon, 2) << ")\"><title>";
    P.Testo(p.Nome) << ", " << nome
                    << ": a = " << NumeroFisso(p.EllAsseMag * fattore * kMmPerMetro, 1)
                    << " mm, b = " << NumeroFisso(p.EllAsseMin * fattore * kMmPerMetro, 1)
                    << " mm, azimut di a dal Nord = " << NumeroFisso(p.EllAzimut, 1)
                    << " gon</title></ellipse>\n";
  }
  P << "</g>\n";
}

void Disegno::ScriviPunti() {
  P << "<g class=\"punti\">\n";
  for (const PuntoDisegnato& d : E.Punti) {
    const RisultatoPunto& p = Punto(d.Punto);
    P << "<g class=\"p\" transform=\"" << InPixel(d.X, d.Y, E.Riduzione) << "\"><title>";
    P.Testo(p.Nome) << " (" << NomeRuolo(d.Ruolo) << (d.Stazione ? ", stazione" : "") << "): Est "
                    << NumeroFisso(p.Est, 4) << ", Nord " << NumeroFisso(p.Nord, 4);
    if (Presente(p.Quota)) P << ", quota " << NumeroFisso(p.Quota, 4);
    P << "</title>";
    if (d.Stazione) P << "<use href=\"#ps\"/>";
    P << "<use href=\"#" << kSimboli[static_cast<std::size_t>(d.Ruolo)] << "\"/></g>\n";
  }
  P << "</g>\n";
}

void Disegno::ScriviEtichette() {
  std::vector<PuntoEtichettato> punti;
  punti.reserve(E.Punti.size());
  const auto pixelX = [&](double x) { return (x - Q.Sinistra) / Q.MetriPerPixel; };
  const auto pixelY = [&](double y) { return (y - Q.Alto) / Q.MetriPerPixel; };
  for (const PuntoDisegnato& d : E.Punti) {
    const double raggio = (d.Stazione ? kRaggioStazione : kRaggioSimbolo) * E.Riduzione;
    punti.push_back({pixelX(d.X), pixelY(d.Y), raggio, LarghezzaEtichetta(Punto(d.Punto).Nome),
                     kPriorita[static_cast<std::size_t>(d.Ruolo)] + (d.Stazione ? 1 : 0)});
  }
  std::vector<Segmento> segmenti;
  segmenti.reserve(E.Visuali.size());
  for (const VisualeUnica& v : E.Visuali) {
    const RisultatoPunto &a = Punto(v.Da), &b = Punto(v.A);
    segmenti.push_back(
        {pixelX(Q.X(a.Est)), pixelY(Q.Y(a.Nord)), pixelX(Q.X(b.Est)), pixelY(Q.Y(b.Nord))});
  }
  const std::vector<Collocazione> posti =
      CollocaEtichette(punti, segmenti, kFoglio, Q.Altezza / Q.MetriPerPixel);
  constexpr double kLineaBase = 11.5;  // of a name, below its upper edge [pixel]
  P << "<g class=\"nomi\">\n";
  for (std::size_t i = 0; i < posti.size(); ++i) {
    const Collocazione& c = posti[i];
    double x = c.Posto.Sinistra;
    std::string_view verso;
    if (c.Verso == Ancora::Mezzo) x += punti[i].Larghezza / 2.0, verso = " class=\"am\"";
    if (c.Verso == Ancora::Fine) x = c.Posto.Destra, verso = " class=\"af\"";
    P << "<g class=\"e";
    if (c.Livello > 0) P << " e" << std::to_string(c.Livello);
    P << "\" transform=\"" << InPixel(E.Punti[i].X, E.Punti[i].Y) << "\"><g>";
    if (c.Guida)
      P << "<path d=\"M0 0L" << NumeroFisso(c.GuidaX, 1) << " " << NumeroFisso(c.GuidaY, 1)
        << "\"/>";
    P << "<text" << verso << " x=\"" << NumeroFisso(x, 1) << "\" y=\""
      << NumeroFisso(c.Posto.Alto + kLineaBase, 1) << "\">";
    P.Testo(Punto(E.Punti[i].Punto).Nome) << "</text></g></g>\n";
  }
  P << "</g>\n";
}

// The script of the page redraws both when the drawing is enlarged.
void Disegno::ScriviScala() {
  constexpr double kParteFoglio = 0.2, kDaiBordi = 24.0, kDaDestra = 30.0, kDaAlto = 50.0;
  const double metri = TondoInferiore(Q.Larghezza * kParteFoglio);
  const double u = Q.MetriPerPixel;
  const std::string testo =
      metri >= kMetriPerKm ? TestoTondo(metri / kMetriPerKm) + " km" : TestoTondo(metri) + " m";
  P << "<g id=\"scala\" transform=\""
    << InPixel(Q.Sinistra + kDaiBordi * u, Q.Alto + Q.Altezza - kDaiBordi * u)
    << "\"><path d=\"M0 -5V0H" << NumeroFisso(metri / u, 1) << "V-5\"/><text y=\"-9\">" << testo
    << "</text></g>\n<g id=\"nord\" transform=\""
    << InPixel(Q.Sinistra + Q.Larghezza - kDaDestra * u, Q.Alto + kDaAlto * u)
    << "\"><path d=\"M0 -30L8 0L0 -6L-8 0Z\"/><text class=\"am\" y=\"-34\">N</text></g>\n";
}

void Disegno::ScriviLegenda() {
  const auto voce = [&](std::string_view segno, std::string_view testo) {
    P << "<li><svg viewBox=\"-22 -10 44 20\" aria-hidden=\"true\">" << segno << "</svg>" << testo
      << "</li>\n";
  };
  P << "<figcaption><ul class=\"legenda\">\n";
  voce("<use href=\"#pf\"/>", "punto fisso");
  voce("<use href=\"#pc\"/>", "punto compensato");
  voce("<use href=\"#pi\"/>", "punto incognito, non compensato");
  voce("<use href=\"#pn\"/>", "punto escluso");
  voce("<use href=\"#ps\"/>", "stazione");
  voce("<path class=\"v v0\" d=\"M-20 0H20\"/>", "direzione e distanza");
  voce("<path class=\"v v0 vd\" d=\"M-20 0H20\"/>", "sola direzione");
  voce("<path class=\"v v0 vs\" d=\"M-20 0H20\"/>", "sola distanza");
  voce("<path class=\"v v0 vv\" d=\"M-20 0H20\"/>", "osservata nei due versi");
  if (ConVisualiSingole())
    voce("<path class=\"v v0\" d=\"M-20 0H20\"/><use class=\"fr\" href=\"#fr\"/>",
         "osservata in un verso solo, dalla stazione al punto");
  voce("<path class=\"v vn\" d=\"M-20 0H20\"/>", "non usata");
  voce("<path class=\"v v0\" d=\"M-20 0H20\"/>", "|w| massimo sotto 2");
  voce("<path class=\"v v1\" d=\"M-20 0H20\"/><use href=\"#w1\"/>", "|w| da 2 a 3.29");
  voce("<path class=\"v v2\" d=\"M-20 0H20\"/><use href=\"#w2\"/>", "|w| oltre 3.29: sospetta");
  if (ConEllissi()) {
    const std::string scala = ", ingrandita × " + TestoTondo(Esagerazione);
    voce("<ellipse class=\"l1\" rx=\"15\" ry=\"7\"/>",
         "ellisse standard (1 sigma, a posteriori)" + scala);
    if (Presente(Fattore))
      voce("<ellipse class=\"l95\" rx=\"19\" ry=\"9\"/>",
           "ellisse di confidenza 95 % (standard × " + NumeroFisso(Fattore, 2) + ")" + scala);
  }
  P << "</ul>\n";
  ScriviNote();
  P << "</figcaption>\n";
}

void Disegno::ScriviNote() {
  if (E.Lontani > 0)
    P << "<p>Punti esclusi troppo lontani dalla rete, che non sono disegnati: "
      << std::to_string(E.Lontani) << ".</p>\n";
  if (!ConVisualiSingole())
    P << "<p>Le visuali sono " << std::to_string(E.Visuali.size())
      << ": sono disegnate tutte, ma senza frecce e senza la scritta che compare sotto il "
         "puntatore.</p>\n";
  if (E.Punti.size() > kPuntiCompleti)
    P << "<p>I punti sono " << std::to_string(E.Punti.size())
      << ": sono disegnati senza nomi e senza ellissi; gli uni e le altre sono nelle "
         "tabelle.</p>\n";
  P << "<p class=\"aiuto\" hidden>Rotella del mouse o pulsanti + e − per ingrandire: compaiono i "
       "nomi "
       "che prima non avevano posto. Trascinare per spostare. Fermarsi su un punto, una visuale o "
       "un'ellisse per leggerne i dati.</p>\n";
}

// Symbols in pixels around the point.
constexpr std::string_view kDefinizioni =
    "<defs><path id=\"pf\" d=\"M0 -6.5L6 4.5H-6Z\"/><circle id=\"pc\" r=\"4.5\"/>"
    "<circle id=\"pi\" r=\"4.5\"/><path id=\"pn\" d=\"M-4.5 -4.5L4.5 4.5M-4.5 4.5L4.5 -4.5\"/>"
    "<path id=\"fr\" d=\"M7 0L-5 4.5L-2.5 0L-5 -4.5Z\"/>"
    "<circle id=\"ps\" r=\"8.5\"/><path id=\"w1\" d=\"M0 -6L6 0L0 6L-6 0Z\"/>"
    "<g id=\"w2\"><path d=\"M0 -8L8 0L0 8L-8 0Z\"/><path d=\"M0 -4V1M0 3V4.5\"/></g></defs>\n";

void Disegno::Scrivi() {
  P << "<div class=\"disegno\">\n";
  ScriviStrati();
  P << "<figure>\n<svg id=\"disegno\" role=\"img\" aria-label=\"Disegno della rete: punti, visuali "
       "ed ellissi d'errore; gli stessi dati sono nelle tabelle\" viewBox=\""
    << Metri(Q.Sinistra) << " " << Metri(Q.Alto) << " " << Metri(Q.Larghezza) << " "
    << Metri(Q.Altezza) << "\">\n"
    << kDefinizioni;
  ScriviVisuali();
  if (ConEllissi()) {
    if (Presente(Fattore)) ScriviEllissi("ell95", Fattore, "ellisse 95 %");
    ScriviEllissi("ell", 1.0, "ellisse standard");
  }
  ScriviPunti();
  if (E.Punti.size() <= kPuntiCompleti) ScriviEtichette();
  ScriviScala();
  P << "</svg>\n";
  ScriviLegenda();
  P << "</figure>\n</div>\n";
}

}  // namespace

void ScriviDisegno(Pagina& pagina, const Risultati& risultati) {
  const ElementiDisegno elementi = PreparaDisegno(risultati);
  if (elementi.Punti.empty()) {
    pagina << "<p>Nessun punto ha coordinate piane: non c'è nulla da disegnare.</p>\n";
    return;
  }
  Disegno(pagina, risultati, elementi).Scrivi();
}

}  // namespace compensa

// Drawing of a network in the text form of DXF, release 12 (AC1009): lines of a group code and a
// value in turn. Only entities that every reader knows: an ellipse is a closed polyline. Sizes of
// texts follow from the extent of the network, since a drawing in metres has no paper.

#include "host/uscite/dxf.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "host/base/codifica.h"
#include "host/base/numeri.h"
#include "host/base/versione.h"
#include "host/rete/grandezze.h"
#include "host/rete/sistema_riferimento.h"
#include "host/uscite/scala_ellissi.h"
#include "host/uscite/sommario.h"
#include "host/uscite/visuali_uniche.h"

namespace compensa {

namespace {

using Scrivi = std::function<void(std::string_view)>;

constexpr int kDecimali = 4;       // of coordinates and sizes [m]
constexpr int kDecimaliQuota = 3;  // of the heights that the drawing shows

// Colours by their number in the palette of the format.
constexpr int kRosso = 1, kVerde = 3, kBlu = 5, kMagenta = 6, kNero = 7, kGrigio = 8, kArancio = 30;

constexpr std::string_view kContinuo = "CONTINUOUS";
constexpr std::string_view kTratteggio = "TRATTEGGIO";
constexpr std::string_view kStile = "STANDARD";

struct Strato {
  std::string_view Nome;
  int Colore;
};
constexpr Strato kPuntiFissi{"PUNTI_FISSI", kBlu};
constexpr Strato kPuntiCompensati{"PUNTI_COMPENSATI", kVerde};
constexpr Strato kPuntiIncogniti{"PUNTI_INCOGNITI", kArancio};  // left unadjusted
constexpr Strato kPuntiEsclusi{"PUNTI_ESCLUSI", kGrigio};
constexpr Strato kNomi{"NOMI", kNero};
constexpr Strato kQuote{"QUOTE", kVerde};
constexpr Strato kVisuali{"VISUALI", kGrigio};
constexpr Strato kVisualiSospette{"VISUALI_SOSPETTE", kRosso};
constexpr Strato kEllissi{"ELLISSI", kMagenta};
constexpr Strato kNote{"NOTE", kNero};
constexpr std::array<Strato, 11> kStrati{{{"0", kNero},
                                          kPuntiFissi,
                                          kPuntiCompensati,
                                          kPuntiIncogniti,
                                          kPuntiEsclusi,
                                          kNomi,
                                          kQuote,
                                          kVisuali,
                                          kVisualiSospette,
                                          kEllissi,
                                          kNote}};

// Sizes relative to the larger side of the drawing and to the height of the texts.
constexpr double kTestoSuLato = 0.012;
constexpr double kTestoSuPasso = 0.25;   // over the mean distance of neighbouring points
constexpr double kTestoSenzaLato = 1.0;  // of a drawing without extent [m]
constexpr double kNoteSuLato = 0.015;
constexpr double kQuotaSuTesto = 0.7;
constexpr double kScostamento = 0.6;  // of a text from its point, over its height
constexpr double kInterlinea = 1.8;
constexpr double kSottoNote = 0.5;           // lines free below the last
constexpr double kLarghezzaCarattere = 0.9;  // upper bound, over the height
constexpr double kPuntoSuTesto = 0.6;
constexpr double kSegno = 1.0, kVuoto = 0.6;  // of a dashed line, over the height of the texts
constexpr int kSimboloPunto = 34;             // circle around a dot

// Windows-1252; characters without a code become a word or a question mark, those that steer a
// reader are masked: "%%" begins a special sign, "^" a control character.
std::string TestoDxf(std::string_view utf8) {
  struct Sostituto {
    char32_t Codice;
    std::string_view Testo;
  };
  constexpr std::array<Sostituto, 6> kSostituti{
      {{U'σ', "sigma"}, {U'₀', "0"}, {U'−', "-"}, {U'χ', "chi"}, {U'≤', "<="}, {U'≥', ">="}}};
  std::string testo;
  while (!utf8.empty()) {
    const Carattere c = PrimoCarattere(utf8);
    const std::size_t lunghezza = std::max<std::size_t>(c.Lunghezza, 1);
    const auto sostituto = std::find_if(kSostituti.begin(), kSostituti.end(),
                                        [&](const Sostituto& s) { return s.Codice == c.Codice; });
    if (c.Lunghezza == 1 && static_cast<unsigned char>(utf8.front()) < ' ')
      testo += ' ';
    else if (c.Codice == U'^')
      testo += "^ ";
    else if (utf8.starts_with("%%"))
      testo += "%%%";
    else if (const auto byte = InWindows1252(utf8.substr(0, lunghezza)))
      testo += *byte;
    else
      testo += sostituto == kSostituti.end() ? "?" : sostituto->Testo;
    utf8.remove_prefix(lunghezza);
  }
  return testo;
}

struct Misure {
  Riquadro Area;  // with ellipses, names and notes
  double QuotaMin = 0.0, QuotaMax = 0.0;
  double Testo = kTestoSenzaLato;  // height of the names [m]
  double TestoNote = kTestoSenzaLato;
  double Esagerazione = 1.0;
  int Vertici = 0;  // of an ellipse
};

double Elevazione(const RisultatoPunto& p) { return std::isfinite(p.Quota) ? p.Quota : 0.0; }

// One drawing on its way out: groups are collected entity by entity.
class Disegno {
 public:
  Disegno(const Documento& documento, const Scrivi& scrivi);
  void Componi();

 private:
  void Gruppo(int codice, std::string_view valore);
  void Gruppo(int codice, int valore) { Gruppo(codice, std::to_string(valore)); }
  void Gruppo(int codice, double valore) { Gruppo(codice, NumeroFisso(valore, kDecimali)); }
  void Posto(int codice, double est, double nord, double quota);
  void Versa();

  void Misura();
  void Intestazione();
  void Tabelle();
  void Entita(std::string_view tipo, const Strato& strato);
  void Punto(const RisultatoPunto& p);
  void Testo(const Strato& strato, double est, double nord, double altezza, std::string_view utf8);
  void Visuale(const VisualeUnica& v);
  void Ellisse(const RisultatoPunto& p);
  void Note();

  const Documento& D;
  const Risultati& R;
  const Scrivi& Esci;
  Misure M;
  std::vector<std::string> RigheNote;
  std::string Blocco;
};

// The letters of a drawing have different widths: blanks that line columns up go.
std::string SenzaColonne(const std::string& riga) {
  std::string testo;
  for (const char c : riga)
    if (c != ' ' || !testo.ends_with(' ')) testo += c;
  return testo;
}

std::vector<std::string> TestiNote(const Documento& d, double esagerazione) {
  const Risultati& r = d.Esiti;
  std::vector<std::string> righe;
  if (!r.DatiProgetto.Nome.empty()) righe.push_back(r.DatiProgetto.Nome);
  righe.push_back(std::string(kNomeProgramma) + " " + std::string(kVersioneProgramma) + ", " +
                  d.DataOra + ", " + r.File);
  for (const std::string& riga : RigheSommario(r)) righe.push_back(SenzaColonne(riga));
  righe.push_back("Coordinate: Est (x), Nord (y), quota (z; 0 dove manca) in metri");
  righe.push_back("Sistema di riferimento: " + TestoSistema(RiconosciSistema(r)));
  if (std::any_of(r.Punti.begin(), r.Punti.end(), ConEllisse))
    righe.push_back("Ellissi d'errore standard (1 sigma, a posteriori), esagerazione " +
                    TestoTondo(esagerazione) + " : 1");
  righe.push_back("Visuali sospette: residuo normalizzato w > 3.29; tratteggiate: senza distanza");
  return righe;
}

Disegno::Disegno(const Documento& documento, const Scrivi& scrivi)
    : D(documento), R(documento.Esiti), Esci(scrivi) {
  M.Esagerazione = EsagerazioneEllissi(R);
  M.Vertici = VerticiEllisse(R);
  RigheNote = TestiNote(D, M.Esagerazione);
  Misura();
}

// The ends of the drawing. Notes lie below the network, from its left side.
void Disegno::Misura() {
  const Riquadro punti = RiquadroPunti(R);
  const double lato = punti.Lato();
  std::size_t quanti = 0, nomeLungo = 0;
  double asse = 0.0;
  for (const RisultatoPunto& p : R.Punti) {
    if (!Disegnabile(p)) continue;
    const double quota = Elevazione(p);
    M.QuotaMin = quanti == 0 ? quota : std::min(M.QuotaMin, quota);
    M.QuotaMax = quanti++ == 0 ? quota : std::max(M.QuotaMax, quota);
    nomeLungo = std::max(nomeLungo, p.Nome.size());
    if (ConEllisse(p)) asse = std::max(asse, p.EllAsseMag * M.Esagerazione);
  }
  M.QuotaMin = std::min(M.QuotaMin, 0.0);  // notes and texts
  M.QuotaMax = std::max(M.QuotaMax, 0.0);
  if (lato > 0.0) {
    M.Testo = lato * std::min(kTestoSuLato, kTestoSuPasso / std::sqrt(static_cast<double>(quanti)));
    M.TestoNote = lato * kNoteSuLato;
  }
  std::size_t notaLunga = 0;
  for (const std::string& riga : RigheNote) notaLunga = std::max(notaLunga, riga.size());
  const auto larghezza = [](std::size_t caratteri, double altezza) {
    return static_cast<double>(caratteri) * altezza * kLarghezzaCarattere;
  };
  const double margine = asse + kInterlinea * M.Testo;
  M.Area = {punti.EstMin - margine, punti.NordMin - margine,
            punti.EstMax + margine + larghezza(nomeLungo, M.Testo), punti.NordMax + margine};
  M.Area.EstMax = std::max(M.Area.EstMax, M.Area.EstMin + larghezza(notaLunga, M.TestoNote));
  M.Area.NordMin -= static_cast<double>(RigheNote.size() + 1) * kInterlinea * M.TestoNote;
}

void Disegno::Gruppo(int codice, std::string_view valore) {
  constexpr std::size_t kLarghezzaCodice = 3;
  const std::string numero = std::to_string(codice);
  Blocco.append(kLarghezzaCodice - std::min(numero.size(), kLarghezzaCodice), ' ');
  ((Blocco += numero) += "\r\n").append(valore) += "\r\n";
}

// Coordinates have the codes of x, y and z ten apart.
void Disegno::Posto(int codice, double est, double nord, double quota) {
  Gruppo(codice, est);
  Gruppo(codice + 10, nord);
  Gruppo(codice + 20, quota);
}

void Disegno::Versa() {
  Esci(Blocco);
  Blocco.clear();
}

void Disegno::Intestazione() {
  const auto variabile = [&](std::string_view nome, int codice, auto valore) {
    Gruppo(9, nome);
    Gruppo(codice, valore);
  };
  Gruppo(0, "SECTION");
  Gruppo(2, "HEADER");
  variabile("$ACADVER", 1, "AC1009");
  variabile("$DWGCODEPAGE", 3, "ANSI_1252");
  Gruppo(9, "$EXTMIN");
  Posto(10, M.Area.EstMin, M.Area.NordMin, M.QuotaMin);
  Gruppo(9, "$EXTMAX");
  Posto(10, M.Area.EstMax, M.Area.NordMax, M.QuotaMax);
  variabile("$LUNITS", 70, 2);  // decimal
  variabile("$LUPREC", 70, kDecimali);
  variabile("$PDMODE", 70, kSimboloPunto);
  variabile("$PDSIZE", 40, M.Testo * kPuntoSuTesto);
  Gruppo(0, "ENDSEC");
}

void Disegno::Tabelle() {
  const auto apri = [&](std::string_view nome, std::size_t righe) {
    Gruppo(0, "TABLE");
    Gruppo(2, nome);
    Gruppo(70, static_cast<int>(righe));
  };
  const auto tratto = [&](std::string_view nome, std::string_view descrizione,
                          std::initializer_list<double> passi) {
    Gruppo(0, "LTYPE");
    Gruppo(2, nome);
    Gruppo(70, 0);
    Gruppo(3, descrizione);
    Gruppo(72, 'A');
    Gruppo(73, static_cast<int>(passi.size()));
    double lunghezza = 0.0;
    for (const double passo : passi) lunghezza += std::abs(passo);
    Gruppo(40, lunghezza);
    for (const double passo : passi) Gruppo(49, passo);
  };
  Gruppo(0, "SECTION");
  Gruppo(2, "TABLES");
  apri("LTYPE", 2);
  tratto(kContinuo, "Linea continua", {});
  tratto(kTratteggio, "Linea a tratti __ __ __", {kSegno * M.Testo, -kVuoto * M.Testo});
  Gruppo(0, "ENDTAB");
  apri("LAYER", kStrati.size());
  for (const Strato& strato : kStrati) {
    Gruppo(0, "LAYER");
    Gruppo(2, strato.Nome);
    Gruppo(70, 0);
    Gruppo(62, strato.Colore);
    Gruppo(6, kContinuo);
  }
  Gruppo(0, "ENDTAB");
  apri("STYLE", 1);
  Gruppo(0, "STYLE");
  Gruppo(2, kStile);
  Gruppo(70, 0);
  Gruppo(40, 0.0);  // height given by each text
  Gruppo(41, 1.0);
  Gruppo(50, 0.0);
  Gruppo(71, 0);
  Gruppo(42, M.Testo);
  Gruppo(3, "txt");
  Gruppo(4, "");
  Gruppo(0, "ENDTAB");
  Gruppo(0, "ENDSEC");
}

void Disegno::Entita(std::string_view tipo, const Strato& strato) {
  Gruppo(0, tipo);
  Gruppo(8, strato.Nome);
}

void Disegno::Testo(const Strato& strato, double est, double nord, double altezza,
                    std::string_view utf8) {
  Entita("TEXT", strato);
  Posto(10, est, nord, 0.0);
  Gruppo(40, altezza);
  Gruppo(1, TestoDxf(utf8));
}

const Strato& StratoPunto(int ruolo) {
  switch (ruolo) {
    case kFisso: return kPuntiFissi;
    case kCompensato: return kPuntiCompensati;
    case kIncognito: return kPuntiIncogniti;
    default: return kPuntiEsclusi;
  }
}

void Disegno::Punto(const RisultatoPunto& p) {
  Entita("POINT", StratoPunto(RuoloDisegno(R, p)));
  Posto(10, p.Est, p.Nord, Elevazione(p));
  const double scosto = kScostamento * M.Testo;
  Testo(kNomi, p.Est + scosto, p.Nord + scosto, M.Testo, p.Nome);
  const double altezza = kQuotaSuTesto * M.Testo;
  if (std::isfinite(p.Quota))
    Testo(kQuote, p.Est + scosto, p.Nord - scosto - altezza, altezza,
          NumeroFisso(p.Quota, kDecimaliQuota));
}

// In space where both ends have a height, else on the plane of the drawing.
void Disegno::Visuale(const VisualeUnica& v) {
  const RisultatoPunto& da = R.Punti[static_cast<std::size_t>(v.Da)];
  const RisultatoPunto& a = R.Punti[static_cast<std::size_t>(v.A)];
  if (!Disegnabile(da) || !Disegnabile(a)) return;
  const bool inQuota = std::isfinite(da.Quota) && std::isfinite(a.Quota);
  Entita("LINE", v.Sospetta() ? kVisualiSospette : kVisuali);
  if (!v.Distanza) Gruppo(6, kTratteggio);
  Posto(10, da.Est, da.Nord, inQuota ? da.Quota : 0.0);
  Posto(11, a.Est, a.Nord, inQuota ? a.Quota : 0.0);
}

void Disegno::Ellisse(const RisultatoPunto& p) {
  constexpr int kChiusa = 1;
  const double quota = Elevazione(p);
  Entita("POLYLINE", kEllissi);
  Gruppo(66, 1);  // vertices follow
  Posto(10, 0.0, 0.0, quota);
  Gruppo(70, kChiusa);
  for (const PuntoPiano& vertice : AnelloEllisse(p, M.Esagerazione, M.Vertici)) {
    Entita("VERTEX", kEllissi);
    Posto(10, vertice.Est, vertice.Nord, quota);
  }
  Entita("SEQEND", kEllissi);
}

void Disegno::Note() {
  const double passo = kInterlinea * M.TestoNote;
  double nord = M.Area.NordMin + (static_cast<double>(RigheNote.size()) + kSottoNote) * passo;
  for (const std::string& riga : RigheNote)
    Testo(kNote, M.Area.EstMin, nord -= passo, M.TestoNote, riga);
}

void Disegno::Componi() {
  Intestazione();
  Tabelle();
  Gruppo(0, "SECTION");
  Gruppo(2, "ENTITIES");
  for (const VisualeUnica& v : RaccogliVisuali(R)) {
    Visuale(v);
    Versa();
  }
  for (const RisultatoPunto& p : R.Punti) {
    if (ConEllisse(p)) Ellisse(p);
    if (Disegnabile(p)) Punto(p);
    Versa();
  }
  Note();
  Gruppo(0, "ENDSEC");
  Gruppo(0, "EOF");
  Versa();
}

}  // namespace

void ScriviDxf(const Documento& documento, const Scrivi& scrivi) {
  Disegno(documento, scrivi).Componi();
}

}  // namespace compensa

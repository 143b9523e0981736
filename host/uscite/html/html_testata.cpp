// Head of the page and the box of the outcome. The global test of an adjustment in plan: with the
// weights of the a-priori standard deviations v'Pv = r s0^2 follows chi-square with r degrees of
// freedom, r the redundancy and s0 sigma zero in units of its a-priori value; it passes while
//   q(0.025; r) < r s0^2 < q(0.975; r).

#include "host/uscite/html/html_testata.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "host/base/numeri.h"
#include "host/base/testi.h"
#include "host/base/versione.h"
#include "host/rete/campi.h"
#include "host/rete/grandezze.h"
#include "host/rete/sistema_riferimento.h"
#include "host/rete/statistica.h"
#include "host/uscite/sommario.h"

namespace compensa {

namespace {

void Voce(Pagina& p, std::string_view nome, std::string_view valore) {
  (p << "<div><dt>" << nome << "</dt><dd>").Testo(valore) << "</dd></div>\n";
}

std::string Dato(double valore, std::string_view unita) {
  const double dato = ValoreDato(valore);
  return Presente(dato) ? NumeroBreve(dato) + std::string(unita) : "non dato";
}

// A standard deviation of zero is what a network has that needs none.
std::string Sqm(double valore, std::string_view unita) {
  return valore > 0.0 ? Dato(valore, unita) : "non dato";
}

std::string Calcolo(int tipo) {
  for (const ParolaNota& parola : kParoleCalcolo)
    if (parola.Valore == tipo) return std::string(parola.Testo);
  return std::to_string(tipo);
}

std::string SoloNome(const std::string& percorso) {
  return percorso.substr(percorso.find_last_of('/') + 1);
}

void ScriviOpzioni(Pagina& p, const Risultati& r) {
  const TOpzCr& o = r.Opzioni;
  const CCalcDsOr& c = r.CurvaturaRifrazione;
  p << "<dl class=\"dati\">\n";
  Voce(p, "Compensazione richiesta", Calcolo(o.TipoCalcolo));
  Voce(p, "S.q.m. a priori di un angolo", Sqm(o.SqmDir, " gon"));
  Voce(p, "S.q.m. a priori di una distanza",
       o.SqmDistCost > 0.0 || o.SqmDistProp > 0.0
           ? Dato(o.SqmDistCost, " m + ") + Dato(o.SqmDistProp, " m per km")
           : "non dato");
  Voce(p, "Iterazioni concesse", std::to_string(o.MaxIter));
  Voce(p, "Riduzioni al piano cartografico", o.Cartografiche != 0 ? "applicate" : "non applicate");
  Voce(p, "Curvatura e rifrazione",
       c.CorrCurvRifr != 0 ? "applicate, coefficiente di rifrazione " + Dato(c.CoeffRifr, "") +
                                 ", raggio " + Dato(c.RaggioTerra, " m")
                           : "non applicate");
  p << "</dl>\n";
}

constexpr std::string_view kConvenzioni =
    "<ul>\n<li>Coordinate nell'ordine Est, Nord, Quota, in metri; angoli in gon (400 sul giro, 1 "
    "cc = "
    "0.0001 gon).</li>\n<li>Azimut e orientamenti dal Nord di rete, in senso orario.</li>\n"
    "<li>Residuo = osservata − compensata.</li>\n<li>Scarti quadratici medi (s.q.m.) ed ellissi "
    "sono "
    "a posteriori: comprendono sigma zero. A un sigma se non è detto altro: 68 % per una "
    "coordinata, "
    "circa 39 % per un'ellisse. A priori sono i soli s.q.m. delle opzioni, e con essi il minimo "
    "errore rilevabile.</li>\n<li>Quote nel riferimento dei punti fissi in altimetria. Nessuna "
    "trasformazione fra sistemi di riferimento.</li>\n<li>Un valore che non c'è si vede come -."
    "</li>\n</ul>\n";

// How an outcome is shown; words and icon say the same as the colour.
enum class Stato { Bene, Attenzione, Male, Nessuno };
struct Aspetto {
  std::string_view Classe, Icona;
};
constexpr std::array<Aspetto, 4> kAspetti{
    {{"bene", "✔"}, {"attenzione", "!"}, {"male", "✖"}, {"nessuno", "–"}}};
const Aspetto& AspettoDi(Stato stato) { return kAspetti[static_cast<std::size_t>(stato)]; }

struct TestGlobale {
  bool Possibile = false;
  double Minimo = kAssente, Massimo = kAssente;  // of sigma zero
  bool Superato = false;
};

// The a-priori standard deviations give the weights only in plan, and there only where there are
// distances.
TestGlobale Prova(const Risultati& r) {
  const RisultatoCompensazione& c = r.Planimetria;
  TestGlobale t;
  const bool pesi =
      std::ranges::any_of(r.Equazioni, [](const Equazione& e) { return Presente(e.SqmPriori); });
  if (!c.Compiuta() || !Presente(c.SigmaZero) || c.Ridondanza() <= 0 || !pesi) return t;
  t.Possibile = true;
  const LimitiSigmaZero limiti = CalcolaLimitiSigmaZero(c.Ridondanza());
  t.Minimo = limiti.Minimo;
  t.Massimo = limiti.Massimo;
  t.Superato = c.SigmaZeroRapporto > t.Minimo && c.SigmaZeroRapporto < t.Massimo;
  return t;
}

bool InPlanimetria(const Equazione& e) { return e.Tipo != TipoEquazione::Dislivello; }

// Equations of one of the two adjustments, by kind and by judgement.
struct Conteggi {
  std::array<int, 3> PerTipo{};
  int Sospette = 0, NonControllate = 0;
  int Avvisi = 0;  // warnings that concern the adjustment
};

Conteggi ContaEquazioni(const Risultati& r, bool planimetria) {
  Conteggi c;
  for (const Equazione& e : r.Equazioni) {
    if (InPlanimetria(e) != planimetria) continue;
    ++c.PerTipo[static_cast<std::size_t>(e.Tipo)];
    c.Sospette += Sospetta(e) ? 1 : 0;
    c.NonControllate += NonControllata(e) ? 1 : 0;
  }
  return c;
}

std::string TestoProva(const Risultati& r, const TestGlobale& t, bool planimetria) {
  if (!planimetria)
    return "non si può fare: in altimetria i pesi sono solo relativi e sigma zero non ha un valore "
           "a "
           "priori";
  if (r.Planimetria.Ridondanza() <= 0) return "non si può fare: nessuna ridondanza";
  if (!t.Possibile)
    return "non si può fare: senza distanze gli angoli hanno tutti peso 1 e sigma zero non ha un "
           "valore a priori";
  constexpr int kDecimali = 3;
  const std::string limiti = " (sigma zero " +
                             NumeroFisso(r.Planimetria.SigmaZeroRapporto, kDecimali) + ", limiti " +
                             NumeroFisso(t.Minimo, kDecimali) + " e " +
                             NumeroFisso(t.Massimo, kDecimali) + ", valore a priori 1)";
  if (t.Superato) return "superato" + limiti + ": le osservazioni sono precise quanto promesso";
  if (r.Planimetria.SigmaZeroRapporto >= t.Massimo)
    return "non superato" + limiti +
           ": sigma zero troppo grande; errori grossolani, o s.q.m. a priori troppo piccoli";
  return "non superato" + limiti +
         ": sigma zero troppo piccolo; s.q.m. a priori troppo grandi, o osservazioni non "
         "indipendenti";
}

std::string TestoSigma(const RisultatoCompensazione& c, bool planimetria, bool pesi) {
  if (!Presente(c.SigmaZero)) return "non calcolabile (nessuna ridondanza)";
  constexpr int kDecimaliPla = 3, kDecimaliAlt = 4;
  if (!planimetria)
    return NumeroFisso(c.SigmaZeroRapporto, kDecimaliAlt) +
           " m (s.q.m. di un dislivello su una visuale di circa 32 m)";
  if (!pesi)
    return NumeroFisso(c.SigmaZeroRapporto, kDecimaliPla) + " microradianti (s.q.m. di un angolo)";
  return NumeroFisso(c.SigmaZeroRapporto, kDecimaliPla) + " (a priori 1)";
}

void ScriviW(Pagina& p, const Risultati& r, const RisultatoCompensazione& c, const Conteggi& n) {
  if (c.EquazioneWMassimo != kNessuno) {
    const Equazione& e = r.Equazioni[static_cast<std::size_t>(c.EquazioneWMassimo)];
    Voce(p, "|w| massimo", NumeroFisso(e.W, 2) + ", " + TestoEquazione(r, e));
  }
  Voce(p, "Osservazioni sospette", std::to_string(n.Sospette) + " (|w| oltre 3.29)");
  Voce(p, "Osservazioni non controllate", std::to_string(n.NonControllate) + " (r sotto 0.1)");
  if (c.Ridondanza() > 0 && std::sqrt(c.Ridondanza()) < kWSospetta)
    Voce(p, "Attenzione",
         "con " + Conta(c.Ridondanza(), "grado", "gradi") + " di libertà nessun |w| può superare " +
             NumeroFisso(std::sqrt(c.Ridondanza()), 2) +
             ": la soglia 3.29 non può segnalare errori grossolani");
}

void ScriviConteggi(Pagina& p, const RisultatoCompensazione& c, const Conteggi& n,
                    bool planimetria) {
  Voce(p, "Punti",
       Conta(c.Fissi, "fisso", "fissi") + ", " + Conta(c.Incogniti, "incognito", "incogniti") +
           ", " + Conta(c.NonUsati, "non usato", "non usati"));
  if (c.Compiuta())
    Voce(p, "Osservazioni",
         planimetria ? Conta(n.PerTipo[0], "angolo", "angoli") + ", " +
                           Conta(n.PerTipo[1], "distanza", "distanze")
                     : Conta(n.PerTipo[2], "dislivello", "dislivelli"));
  if (c.Contate())
    Voce(p, "Gradi di libertà",
         std::to_string(c.Ridondanza()) + " (" + Conta(c.Equazioni, "equazione", "equazioni") +
             ", " + Conta(c.Incognite, "incognita", "incognite") + ")");
  if (!planimetria) {
    if (c.Compiuta()) Voce(p, "Iterazioni", "nessuna: le equazioni sono lineari");
    return;
  }
  if (c.Iterazioni.empty()) return;
  std::string testo = std::to_string(c.Iterazioni.back().Numero);
  if (Presente(c.Iterazioni.back().CorrezioneMassima))
    testo += ", ultima correzione massima " +
             NumeroFisso(c.Iterazioni.back().CorrezioneMassima, 4) + " m";
  Voce(p, "Iterazioni", testo);
}

// Where only heights are adjusted, whatever is wrong concerns them.
int ContaAvvisi(const Documento& documento, bool planimetria) {
  const bool soleQuote = documento.Esiti.Planimetria.Fine == Esito::NonRichiesta;
  return static_cast<int>(std::ranges::count_if(documento.Messaggi, [&](const Messaggio& m) {
    return Comprende(RiguardoDi(m.Cosa), planimetria) || (!planimetria && soleQuote);
  }));
}

// Green is what leaves nothing to look at.
Stato StatoDi(const RisultatoCompensazione& c, const TestGlobale& t, const Conteggi& n,
              bool planimetria) {
  if (c.Fine == Esito::NonRichiesta) return Stato::Nessuno;
  if (!c.Compiuta() || c.Fine == Esito::NonConvergente || c.GradiLiberi > 0 || c.NienteCalcolato())
    return Stato::Male;
  const bool bene = n.Sospette == 0 && n.NonControllate == 0 && n.Avvisi == 0 &&
                    c.PuntiNonCalcolati.empty() && c.Ridondanza() > 0 &&
                    (!planimetria || !t.Possibile || t.Superato);
  return bene ? Stato::Bene : Stato::Attenzione;
}

void ScriviMoti(Pagina& p, const RisultatoCompensazione& c) {
  if (c.MotiLiberi.empty()) return;
  if (c.ApprossimateLontane) {
    (p << "<p>").Testo(c.MotiLiberi.front().Parole) << "</p>\n";
    return;
  }
  p << "<p>Che cosa le osservazioni non fissano:</p>\n<ul>\n";
  for (const MotoLibero& moto : c.MotiLiberi) (p << "<li>").Testo(moto.Parole) << "</li>\n";
  p << "</ul>\n";
  int elencati = 0;
  for (const MotoLibero& moto : c.MotiLiberi) elencati += moto.Gradi;
  if (elencati < c.GradiLiberi)
    p << "<p>E altri: in tutto " << std::to_string(c.GradiLiberi) << " moti indipendenti.</p>\n";
}

void ScriviScheda(Pagina& p, const Documento& documento, bool planimetria) {
  const Risultati& r = documento.Esiti;
  const RisultatoCompensazione& c = planimetria ? r.Planimetria : r.Altimetria;
  Conteggi conteggi = ContaEquazioni(r, planimetria);
  conteggi.Avvisi = ContaAvvisi(documento, planimetria);
  const TestGlobale prova = planimetria ? Prova(r) : TestGlobale{};
  const Stato stato = StatoDi(c, prova, conteggi, planimetria);
  p << "<section class=\"scheda " << AspettoDi(stato).Classe
    << "\">\n<h3><span class=\"icona\" aria-hidden=\"true\">" << AspettoDi(stato).Icona
    << "</span> " << (planimetria ? "Planimetria: " : "Altimetria: ");
  p.Testo(TestoEsito(r, c));
  if (stato == Stato::Attenzione && c.PuntiNonCalcolati.empty()) p << ", da controllare";
  p << "</h3>\n";
  if (c.Fine == Esito::NonRichiesta) {
    p << "</section>\n";
    return;
  }
  if (c.Fine == Esito::NonConvergente)
    p << "<p>I risultati sono quelli dell'ultima iterazione e non vanno usati.</p>\n";
  else if (c.Compiuta() && c.GradiLiberi > 0)
    p << "<p>I risultati sono errori di arrotondamento e non vanno usati.</p>\n";
  else if (!c.Compiuta())
    p << "<p>Coordinate, quote e disegno sono quelli del file: non c'è un risultato.</p>\n";
  ScriviMoti(p, c);
  p << "<dl>\n";
  if (c.Compiuta()) {
    Voce(p, "Sigma zero a posteriori", TestoSigma(c, planimetria, prova.Possibile));
    Voce(p, "Test globale χ² (5 %, due code)", TestoProva(r, prova, planimetria));
    ScriviW(p, r, c, conteggi);
  }
  ScriviConteggi(p, c, conteggi, planimetria);
  if (conteggi.Avvisi > 0)
    p << "<div><dt>Avvisi</dt><dd><a href=\"#messaggi\">"
      << Conta(conteggi.Avvisi, "avviso", "avvisi") << "</a> da leggere</dd></div>\n";
  p << "</dl>\n</section>\n";
}

}  // namespace

std::string TitoloDocumento(const Documento& documento) {
  const Risultati& r = documento.Esiti;
  if (!r.DatiProgetto.Nome.empty()) return r.DatiProgetto.Nome;
  return SoloNome(r.File);
}

void ScriviTestata(Pagina& p, const Documento& documento) {
  const Risultati& r = documento.Esiti;
  (p << "<header>\n<p class=\"soprattitolo\">Compensazione di una rete topografica ai minimi "
        "quadrati</p>\n<h1>")
          .Testo(TitoloDocumento(documento))
      << "</h1>\n<dl class=\"dati\">\n";
  Voce(p, "Data del calcolo", documento.DataOra);
  Voce(p, "Programma", std::string(kNomeProgramma) + " " + std::string(kVersioneProgramma));
  Voce(p, "File della rete", r.File);
  for (const FileLetto& file : documento.File) {
    const bool rete = &file == &documento.File.front();
    Voce(p, "Impronta SHA-256 " + (rete ? "del file" : "di " + SoloNome(file.Nome)), file.Impronta);
  }
  Voce(p, "Sistema di coordinate", TestoSistema(RiconosciSistema(r)));
  p << "</dl>\n</header>\n";
}

void ScriviEsito(Pagina& p, const Documento& documento) {
  p << "<section id=\"esito\">\n<h2>Esito</h2>\n<div class=\"schede\">\n";
  ScriviScheda(p, documento, true);
  ScriviScheda(p, documento, false);
  p << "</div>\n</section>\n<section id=\"opzioni\">\n<h2>Opzioni e convenzioni</h2>\n";
  ScriviOpzioni(p, documento.Esiti);
  p << kConvenzioni << "</section>\n";
}

}  // namespace compensa

// The tables: the largest |w|, points, stations, and every equation by its kind.

#include "host/uscite/html/html_tabelle.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <string>
#include <vector>

#include "host/base/numeri.h"
#include "host/rete/campi.h"
#include "host/rete/grandezze.h"

namespace compensa {

namespace {

constexpr int kDecimaliMetri = 4, kDecimaliGon = 5, kDecimaliAzimut = 4;
constexpr int kDecimaliMm = 1, kDecimaliCc = 1, kDecimaliW = 2, kDecimaliR = 3;
constexpr int kDecimaliAffidabilita = 1;
constexpr std::size_t kPrime = 10;
constexpr std::size_t kRigheMassime = 8000;  // of a table of observations
using enum Contenuto;

const RisultatoStazione& Stazione(const Risultati& r, const Equazione& e) {
  return r.Stazioni[static_cast<std::size_t>(e.Stazione)];
}
const RisultatoOsservazione& Osservazione(const Risultati& r, const Equazione& e, int quale) {
  return Stazione(r, e).Osservazioni[static_cast<std::size_t>(quale)];
}
std::string_view NomeDa(const Risultati& r, const Equazione& e) {
  return NomePunto(r, Stazione(r, e).Punto);
}
std::string_view NomeA(const Risultati& r, const Equazione& e) {
  return NomePunto(r, Osservazione(r, e, e.Osservazione).Punto);
}
std::string_view NomeRiferimento(const Risultati& r, const Equazione& e) {
  if (e.Riferimento == kNessuno) return "-";
  return NomePunto(r, Osservazione(r, e, e.Riferimento).Punto);
}

std::string Tipo(int tipo) {
  for (const ParolaNota& parola : kParoleTipo)
    if (parola.Valore == tipo)
      return tipo == kFuoriCentro10 ? "fuori centro" : std::string(parola.Testo);
  return "tipo " + std::to_string(tipo);
}

void ScriviPrime(Pagina& pagina, const Risultati& r) {
  std::vector<const Equazione*> prime;
  for (const Equazione& e : r.Equazioni)
    if (e.Ridondanza > kRidondanzaNulla) prime.push_back(&e);
  if (prime.empty()) return;
  const auto fine = prime.begin() + static_cast<std::ptrdiff_t>(std::min(kPrime, prime.size()));
  std::ranges::partial_sort(prime, fine,
                            [](const Equazione* a, const Equazione* b) { return a->W > b->W; });
  constexpr std::array kColonne = {Colonna{"Osservazione"},
                                   Colonna{"Da"},
                                   Colonna{"Riferimento"},
                                   Colonna{"A"},
                                   Colonna{"Residuo"},
                                   Colonna{"r", {}, Numero},
                                   Colonna{"|w|", {}, NumeroAssoluto},
                                   Colonna{"Giudizio"}};
  TabellaHtml tabella(
      pagina,
      {"prime", "Le osservazioni con |w| più grande",
       "Da controllare per prime, una alla volta: un solo errore grossolano fa crescere anche i "
       "|w| vicini. Residuo = osservata − compensata. Sospetta: |w| oltre 3.29 (rischio 0.1 %, due "
       "code). Non controllata: ridondanza locale r sotto 0.1.",
       true},
      kColonne);
  constexpr std::array<std::string_view, 3> kGeneri = {"angolo", "distanza", "dislivello"};
  for (const Equazione* e : std::span(prime.begin(), fine)) {
    const bool angolo = e->Tipo == TipoEquazione::Angolo;
    tabella.Riga(Sospetta(*e));
    tabella.Testo(kGeneri[static_cast<std::size_t>(e->Tipo)]);
    tabella.Testo(NomeDa(r, *e));
    tabella.Testo(NomeRiferimento(r, *e));
    tabella.Testo(NomeA(r, *e));
    tabella.Testo(angolo ? Cifre(e->Residuo * kCcPerGon, kDecimaliCc) + " cc"
                         : Cifre(e->Residuo * kMmPerMetro, kDecimaliMm) + " mm");
    tabella.Numero(e->Ridondanza, kDecimaliR);
    tabella.Numero(e->W, kDecimaliW);
    tabella.Testo(Giudizio(*e));
  }
  tabella.Concludi();
}

// A table of the points for which `quali` is true, with their roles; none = no table.
template <class Quali>
void ScriviPunti(Pagina& pagina, const Risultati& r, const TabellaHtml::Testata& testata,
                 Quali quali) {
  if (std::ranges::none_of(r.Punti, quali)) return;
  constexpr std::array kColonne = {Colonna{"Punto"},
                                   Colonna{"Est", "m", Numero},
                                   Colonna{"Nord", "m", Numero},
                                   Colonna{"Quota", "m", Numero},
                                   Colonna{"Planimetria"},
                                   Colonna{"Altimetria"}};
  TabellaHtml tabella(pagina, testata, kColonne);
  for (const RisultatoPunto& p : r.Punti) {
    if (!quali(p)) continue;
    tabella.Riga();
    tabella.Testo(p.Nome);
    tabella.Numero(p.Est, kDecimaliMetri);
    tabella.Numero(p.Nord, kDecimaliMetri);
    tabella.Numero(p.Quota, kDecimaliMetri);
    tabella.Testo(NomeRuolo(p.Ruoli.Pla));
    tabella.Testo(NomeRuolo(p.Ruoli.Alt));
  }
  tabella.Concludi();
}

bool Fisso(const RisultatoPunto& p) { return p.Ruoli.Pla == kFisso || p.Ruoli.Alt == kFisso; }
bool Compensato(const RisultatoPunto& p) {
  return p.Ruoli.Pla == kCompensato || p.Ruoli.Alt == kCompensato;
}

void ScriviRigaCompensato(TabellaHtml& tabella, const RisultatoPunto& p) {
  tabella.Riga();
  tabella.Testo(p.Nome);
  tabella.Numero(p.Est, kDecimaliMetri);
  tabella.Numero(p.SqmEst * kMmPerMetro, kDecimaliMm);
  tabella.Numero(p.Nord, kDecimaliMetri);
  tabella.Numero(p.SqmNord * kMmPerMetro, kDecimaliMm);
  tabella.Numero(p.Quota, kDecimaliMetri);
  tabella.Numero(p.SqmQuota * kMmPerMetro, kDecimaliMm);
  tabella.Numero(Correzione(p.Ruoli.Pla, p.Est, p.EstIniziale), kDecimaliMetri);
  tabella.Numero(Correzione(p.Ruoli.Pla, p.Nord, p.NordIniziale), kDecimaliMetri);
  tabella.Numero(Correzione(p.Ruoli.Alt, p.Quota, p.QuotaIniziale), kDecimaliMetri);
  tabella.Numero(p.EllAsseMag * kMmPerMetro, kDecimaliMm);
  tabella.Numero(p.EllAsseMin * kMmPerMetro, kDecimaliMm);
  tabella.Numero(p.EllAzimut, kDecimaliAzimut);
  tabella.Testo(NomeRuolo(p.Ruoli.Pla));
  tabella.Testo(NomeRuolo(p.Ruoli.Alt));
}

void ScriviCompensati(Pagina& pagina, const Risultati& r) {
  if (std::ranges::none_of(r.Punti, Compensato)) return;
  constexpr std::array kColonne = {Colonna{"Punto"},
                                   Colonna{"Est", "m", Numero},
                                   Colonna{"s.q.m. E", "mm", Numero},
                                   Colonna{"Nord", "m", Numero},
                                   Colonna{"s.q.m. N", "mm", Numero},
                                   Colonna{"Quota", "m", Numero},
                                   Colonna{"s.q.m. Q", "mm", Numero},
                                   Colonna{"Corr. E", "m", NumeroAssoluto},
                                   Colonna{"Corr. N", "m", NumeroAssoluto},
                                   Colonna{"Corr. Q", "m", NumeroAssoluto},
                                   Colonna{"a", "mm", Numero},
                                   Colonna{"b", "mm", Numero},
                                   Colonna{"Azimut di a", "gon", Numero},
                                   Colonna{"Planimetria"},
                                   Colonna{"Altimetria"}};
  TabellaHtml tabella(
      pagina,
      {"compensati", "Coordinate e quote compensate",
       "S.q.m. a posteriori (comprendono sigma zero), a un sigma: 68 % per una coordinata. Corr. = "
       "compensata − data nel file. a, b: semiassi dell'ellisse d'errore standard, a posteriori "
       "(circa 39 %); azimut del semiasse maggiore dal Nord di rete, in senso orario."},
      kColonne);
  for (const RisultatoPunto& p : r.Punti)
    if (Compensato(p)) ScriviRigaCompensato(tabella, p);
  tabella.Concludi();
}

void ScriviStazioni(Pagina& pagina, const Risultati& r) {
  if (r.Stazioni.empty()) return;
  constexpr std::array kColonne = {Colonna{"N.", {}, Numero},
                                   Colonna{"Stazione"},
                                   Colonna{"Osservazioni", {}, Numero},
                                   Colonna{"Orientamento", "gon", Numero},
                                   Colonna{"Eccentricità", "m", Numero},
                                   Colonna{"Direz. ecc.", "gon", Numero},
                                   Colonna{"hs data", "m", Numero},
                                   Colonna{"hs"},
                                   Colonna{"hs compensata", "m", Numero},
                                   Colonna{"s.q.m. hs", "mm", Numero}};
  TabellaHtml tabella(
      pagina,
      {"stazioni", "Stazioni",
       "Orientamento: azimut dello zero del cerchio, dal Nord di rete in senso orario. "
       "hs: altezza dello strumento sul punto; quella compensata, con il suo s.q.m. a "
       "posteriori, c'è se hs è incognita. N.: ordine nel file."},
      kColonne);
  for (std::size_t i = 0; i < r.Stazioni.size(); ++i) {
    const RisultatoStazione& s = r.Stazioni[i];
    tabella.Riga();
    tabella.Numero(static_cast<double>(i + 1), 0);
    tabella.Testo(NomePunto(r, s.Punto));
    tabella.Numero(static_cast<double>(s.Osservazioni.size()), 0);
    tabella.Numero(s.Orientamento, kDecimaliGon);
    const bool eccentrica = s.EccDistanza > 0.0;
    tabella.Numero(eccentrica ? s.EccDistanza : kAssente, kDecimaliMetri);
    tabella.Numero(eccentrica ? s.EccDirezione : kAssente, kDecimaliGon);
    tabella.Numero(s.AltStrum, kDecimaliMetri);
    tabella.Testo(!Presente(s.AltStrum) ? "non data" : s.AltStrumNota ? "nota" : "incognita");
    tabella.Numero(s.AltStrumCompensata, kDecimaliMetri);
    tabella.Numero(s.SqmAltStrum * kMmPerMetro, kDecimaliMm);
  }
  tabella.Concludi();
}

// The equations of a kind in their order; of too many those with the largest |w|.
std::vector<const Equazione*> Scegli(const Risultati& r, TipoEquazione tipo, std::size_t& quante) {
  std::vector<const Equazione*> scelte;
  for (const Equazione& e : r.Equazioni)
    if (e.Tipo == tipo) scelte.push_back(&e);
  quante = scelte.size();
  if (quante > kRigheMassime) {
    const auto fine = scelte.begin() + static_cast<std::ptrdiff_t>(kRigheMassime);
    std::ranges::nth_element(scelte, fine,
                             [](const Equazione* a, const Equazione* b) { return a->W > b->W; });
    scelte.erase(fine, scelte.end());
    std::ranges::sort(scelte);
  }
  return scelte;
}

// One table for each kind of equation: columns of its own, then those that all have.
struct GenereOsservazione {
  TipoEquazione Tipo;
  std::string_view Chiave, Titolo, Spiegazione;
  int Decimali;            // of the values
  std::string_view Unita;  // of residual and standard deviations
  double Ingrandimento;    // to that unit, from gon or m
  std::span<const Colonna> Colonne;
};

constexpr std::array kColonneAngoli = {Colonna{"Da"},
                                       Colonna{"Riferimento"},
                                       Colonna{"A"},
                                       Colonna{"Lettura", "gon", Numero},
                                       Colonna{"Angolo usato", "gon", Numero},
                                       Colonna{"Compensato", "gon", Numero}};
constexpr std::array kColonneDistanze = {Colonna{"Da"},
                                         Colonna{"A"},
                                         Colonna{"Tipo"},
                                         Colonna{"Misurata", "m", Numero},
                                         Colonna{"Usata", "m", Numero},
                                         Colonna{"Compensata", "m", Numero}};
constexpr std::array kColonneDislivelli = {Colonna{"Da"},
                                           Colonna{"A"},
                                           Colonna{"Zenit", "gon", Numero},
                                           Colonna{"Segnale", "m", Numero},
                                           Colonna{"Dislivello usato", "m", Numero},
                                           Colonna{"Compensato", "m", Numero}};

std::vector<Colonna> ColonneDi(const GenereOsservazione& g) {
  std::vector<Colonna> colonne(g.Colonne.begin(), g.Colonne.end());
  colonne.insert(colonne.end(), {{"Residuo", g.Unita, NumeroAssoluto},
                                 {"s.q.m.", g.Unita, Numero},
                                 {"r", {}, Numero},
                                 {"|w|", {}, NumeroAssoluto}});
  if (g.Tipo != TipoEquazione::Dislivello)
    colonne.push_back({"Min. errore rilevabile", g.Unita, Numero});
  colonne.insert(colonne.end(), {{"Affidabilità esterna", {}, Numero}, {"Giudizio"}});
  return colonne;
}

constexpr std::array kGeneri = {
    GenereOsservazione{
        TipoEquazione::Angolo, "angoli", "Osservazioni: angoli",
        "Angolo dalla visuale di riferimento della stazione alla visuale, in senso orario; usato: "
        "ridotto in centro e al piano dove serve. ",
        kDecimaliGon, "cc", kCcPerGon, kColonneAngoli},
    GenereOsservazione{
        TipoEquazione::Distanza, "distanze", "Osservazioni: distanze",
        "Misurata: come nel file; usata: ridotta all'orizzonte, in centro e al piano dove "
        "serve. ",
        kDecimaliMetri, "mm", kMmPerMetro, kColonneDistanze},
    GenereOsservazione{
        TipoEquazione::Dislivello, "dislivelli", "Osservazioni: dislivelli",
        "Dislivello fra i due punti, con le altezze di strumento e segnale. Le quote si pesano "
        "solo fra loro: non c'è s.q.m. a priori, né minimo errore rilevabile. ",
        kDecimaliMetri, "mm", kMmPerMetro, kColonneDislivelli}};

void ScriviEquazione(TabellaHtml& tabella, const Risultati& r, const GenereOsservazione& g,
                     const Equazione& e) {
  const RisultatoOsservazione& o = Osservazione(r, e, e.Osservazione);
  const bool angolo = e.Tipo == TipoEquazione::Angolo;
  tabella.Riga(Sospetta(e));
  tabella.Testo(NomeDa(r, e));
  if (angolo) tabella.Testo(NomeRiferimento(r, e));
  tabella.Testo(NomeA(r, e));
  if (e.Tipo == TipoEquazione::Distanza) {
    tabella.Testo(Tipo(o.TipoDist));
    tabella.Numero(o.Distanza, kDecimaliMetri);
  } else if (angolo) {
    tabella.Numero(o.Direzione, kDecimaliGon);
  } else {
    tabella.Numero(o.Zenit, kDecimaliGon);
    tabella.Numero(o.AltSegnale, kDecimaliMetri);
  }
  tabella.Numero(e.Usato, g.Decimali);
  tabella.Numero(CompensatoInGiro(e), g.Decimali);
  tabella.Numero(e.Residuo * g.Ingrandimento, kDecimaliMm);
  tabella.Numero(e.Sqm * g.Ingrandimento, kDecimaliMm);
  tabella.Numero(e.Ridondanza, kDecimaliR);
  tabella.Numero(e.W, kDecimaliW);
  if (e.Tipo != TipoEquazione::Dislivello)
    tabella.Numero(MinimoErroreRilevabile(e) * g.Ingrandimento, kDecimaliMm);
  tabella.Numero(AffidabilitaEsterna(e), kDecimaliAffidabilita);
  tabella.Testo(Giudizio(e));
}

void ScriviOsservazioni(Pagina& pagina, const Risultati& r, const GenereOsservazione& g) {
  std::size_t quante = 0;
  const std::vector<const Equazione*> scelte = Scegli(r, g.Tipo, quante);
  if (scelte.empty()) return;
  std::string didascalia(g.Spiegazione);
  didascalia +=
      "Residuo = osservata (usata) − compensata. S.q.m. a posteriori. r: ridondanza locale, da 0 a "
      "1; "
      "sotto 0.1 l'osservazione è non controllata. |w|: residuo normalizzato con sigma zero a "
      "posteriori; oltre 3.29 (rischio 0.1 %, due code) è sospetta.";
  if (g.Tipo != TipoEquazione::Dislivello)
    didascalia +=
        " Minimo errore rilevabile (affidabilità interna): s.q.m. a priori · 4.13 / √r (rischio "
        "0.1 %, potenza 80 %).";
  didascalia +=
      " Affidabilità esterna: 4.13 · √((1 − r) / r), di quanti suoi s.q.m. (con il sigma zero "
      "vero, non quello stimato) può spostarsi al massimo una coordinata o una quota per l'errore "
      "più grande che sfugge al test.";
  if (scelte.size() < quante)
    didascalia += " <strong>La tabella mostra le " + std::to_string(scelte.size()) +
                  " osservazioni con |w| più grande, su " + std::to_string(quante) + ".</strong>";
  TabellaHtml tabella(pagina, {g.Chiave, g.Titolo, didascalia, true}, ColonneDi(g));
  for (const Equazione* e : scelte) ScriviEquazione(tabella, r, g, *e);
  tabella.Concludi();
}

}  // namespace

void ScriviTabelle(Pagina& pagina, const Risultati& r) {
  ScriviPrime(pagina, r);
  ScriviPunti(pagina, r,
              {"fissi", "Punti fissi",
               "Punti vincolati in planimetria o in altimetria: il ruolo dice dove."},
              Fisso);
  ScriviCompensati(pagina, r);
  ScriviPunti(pagina, r,
              {"altri", "Punti esclusi o non compensati",
               "Coordinate come nel file. Escluso: nel file, perché senza coordinate, oppure "
               "perché punto fisso che nessuna osservazione usa."},
              [](const RisultatoPunto& p) { return !Fisso(p) && !Compensato(p); });
  ScriviStazioni(pagina, r);
  for (const GenereOsservazione& g : kGeneri) ScriviOsservazioni(pagina, r, g);
}

}  // namespace compensa

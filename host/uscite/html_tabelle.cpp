// The tables: the largest |w|, points, stations, and every equation by its kind.

#include "host/uscite/html_tabelle.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <string>
#include <vector>

#include "host/campi.h"
#include "host/numeri.h"
#include "host/uscite/disegno.h"

namespace {

constexpr int kDecimaliMetri = 4, kDecimaliGon = 5, kDecimaliAzimut = 4;
constexpr int kDecimaliMm = 1, kDecimaliCc = 1, kDecimaliW = 2, kDecimaliR = 3;
constexpr double kMmPerMetro = 1000.0, kCcPerGon = 10000.0;
constexpr double kRidondanzaNulla = 1e-6;  // below it w and r are only rounding
constexpr std::size_t kPrime = 10;
constexpr std::size_t kRigheMassime = 8000;  // of a table of observations
using enum Contenuto;

const RisultatoStazione& Stazione(const Risultati& r, const Equazione& e) {
  return r.Stazioni[static_cast<std::size_t>(e.Stazione)];
}
const RisultatoOsservazione& Osservazione(const Risultati& r, const Equazione& e, int quale) {
  return Stazione(r, e).Osservazioni[static_cast<std::size_t>(quale)];
}
std::string_view NomePunto(const Risultati& r, int punto) {
  return punto < 0 ? std::string_view("-") : r.Punti[static_cast<std::size_t>(punto)].Nome;
}
std::string_view NomeDa(const Risultati& r, const Equazione& e) {
  return NomePunto(r, Stazione(r, e).Punto);
}
std::string_view NomeA(const Risultati& r, const Equazione& e) {
  return NomePunto(r, Osservazione(r, e, e.Osservazione).Punto);
}
std::string_view NomeRiferimento(const Risultati& r, const Equazione& e) {
  return e.Riferimento == kNessuno ? "-" : NomePunto(r, Osservazione(r, e, e.Riferimento).Punto);
}

std::string_view Ruolo(int ruolo) {
  switch (ruolo) {
    case kIncognito: return "incognito";
    case kFisso: return "fisso";
    case kCompensato: return "compensato";
    default: return "non usato";
  }
}

std::string Giudizio(const Equazione& e) {
  std::string giudizio = Sospetta(e) ? "sospetta" : "";
  if (NonControllata(e)) giudizio += giudizio.empty() ? "non controllata" : ", non controllata";
  return giudizio;
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
  Tabella tabella(
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
    tabella.Testo(angolo ? NumeroFisso(e->Residuo * kCcPerGon, kDecimaliCc) + " cc"
                         : NumeroFisso(e->Residuo * kMmPerMetro, kDecimaliMm) + " mm");
    tabella.Numero(e->Ridondanza, kDecimaliR);
    tabella.Numero(e->W, kDecimaliW);
    tabella.Testo(Giudizio(*e));
  }
  tabella.Concludi();
}

// A table of the points for which `quali` is true, with their roles; none = no table.
template <class Quali>
void ScriviPunti(Pagina& pagina, const Risultati& r, const Tabella::Testata& testata, Quali quali) {
  if (std::ranges::none_of(r.Punti, quali)) return;
  constexpr std::array kColonne = {Colonna{"Punto"},
                                   Colonna{"Est", "m", Numero},
                                   Colonna{"Nord", "m", Numero},
                                   Colonna{"Quota", "m", Numero},
                                   Colonna{"Planimetria"},
                                   Colonna{"Altimetria"}};
  Tabella tabella(pagina, testata, kColonne);
  for (const RisultatoPunto& p : r.Punti) {
    if (!quali(p)) continue;
    tabella.Riga();
    tabella.Testo(p.Nome);
    tabella.Numero(p.Est, kDecimaliMetri);
    tabella.Numero(p.Nord, kDecimaliMetri);
    tabella.Numero(p.Quota, kDecimaliMetri);
    tabella.Testo(Ruolo(p.Ruoli.Pla));
    tabella.Testo(Ruolo(p.Ruoli.Alt));
  }
  tabella.Concludi();
}

bool Fisso(const RisultatoPunto& p) { return p.Ruoli.Pla == kFisso || p.Ruoli.Alt == kFisso; }
bool Compensato(const RisultatoPunto& p) {
  return p.Ruoli.Pla == kCompensato || p.Ruoli.Alt == kCompensato;
}

void ScriviRigaCompensato(Tabella& tabella, const RisultatoPunto& p) {
  const auto correzione = [](int ruolo, double valore, double iniziale) {
    return ruolo == kCompensato ? valore - iniziale : kAssente;
  };
  tabella.Riga();
  tabella.Testo(p.Nome);
  tabella.Numero(p.Est, kDecimaliMetri);
  tabella.Numero(p.SqmEst * kMmPerMetro, kDecimaliMm);
  tabella.Numero(p.Nord, kDecimaliMetri);
  tabella.Numero(p.SqmNord * kMmPerMetro, kDecimaliMm);
  tabella.Numero(p.Quota, kDecimaliMetri);
  tabella.Numero(p.SqmQuota * kMmPerMetro, kDecimaliMm);
  tabella.Numero(correzione(p.Ruoli.Pla, p.Est, p.EstIniziale), kDecimaliMetri);
  tabella.Numero(correzione(p.Ruoli.Pla, p.Nord, p.NordIniziale), kDecimaliMetri);
  tabella.Numero(correzione(p.Ruoli.Alt, p.Quota, p.QuotaIniziale), kDecimaliMetri);
  tabella.Numero(p.EllAsseMag * kMmPerMetro, kDecimaliMm);
  tabella.Numero(p.EllAsseMin * kMmPerMetro, kDecimaliMm);
  tabella.Numero(p.EllAzimut, kDecimaliAzimut);
  tabella.Testo(Ruolo(p.Ruoli.Pla));
  tabella.Testo(Ruolo(p.Ruoli.Alt));
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
  Tabella tabella(
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
  Tabella tabella(pagina,
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

// One table for each kind of equation.
struct Genere {
  TipoEquazione Tipo;
  std::string_view Chiave, Titolo, Spiegazione;
  int Decimali;          // of the values
  double Ingrandimento;  // of residual and standard deviations: from gon to cc, from m to mm
  std::span<const Colonna> Colonne;
};

constexpr std::array kColonneAngoli = {Colonna{"Da"},
                                       Colonna{"Riferimento"},
                                       Colonna{"A"},
                                       Colonna{"Lettura", "gon", Numero},
                                       Colonna{"Angolo usato", "gon", Numero},
                                       Colonna{"Compensato", "gon", Numero},
                                       Colonna{"Residuo", "cc", NumeroAssoluto},
                                       Colonna{"s.q.m.", "cc", Numero},
                                       Colonna{"r", {}, Numero},
                                       Colonna{"|w|", {}, NumeroAssoluto},
                                       Colonna{"Min. errore rilevabile", "cc", Numero},
                                       Colonna{"Giudizio"}};
constexpr std::array kColonneDistanze = {Colonna{"Da"},
                                         Colonna{"A"},
                                         Colonna{"Tipo"},
                                         Colonna{"Misurata", "m", Numero},
                                         Colonna{"Usata", "m", Numero},
                                         Colonna{"Compensata", "m", Numero},
                                         Colonna{"Residuo", "mm", NumeroAssoluto},
                                         Colonna{"s.q.m.", "mm", Numero},
                                         Colonna{"r", {}, Numero},
                                         Colonna{"|w|", {}, NumeroAssoluto},
                                         Colonna{"Min. errore rilevabile", "mm", Numero},
                                         Colonna{"Giudizio"}};
constexpr std::array kColonneDislivelli = {Colonna{"Da"},
                                           Colonna{"A"},
                                           Colonna{"Zenit", "gon", Numero},
                                           Colonna{"Segnale", "m", Numero},
                                           Colonna{"Dislivello usato", "m", Numero},
                                           Colonna{"Compensato", "m", Numero},
                                           Colonna{"Residuo", "mm", NumeroAssoluto},
                                           Colonna{"s.q.m.", "mm", Numero},
                                           Colonna{"r", {}, Numero},
                                           Colonna{"|w|", {}, NumeroAssoluto},
                                           Colonna{"Giudizio"}};

constexpr std::array kGeneri = {
    Genere{
        TipoEquazione::Angolo, "angoli", "Osservazioni: angoli",
        "Angolo dalla visuale di riferimento della stazione alla visuale, in senso orario; usato: "
        "ridotto in centro e al piano dove serve. ",
        kDecimaliGon, kCcPerGon, kColonneAngoli},
    Genere{TipoEquazione::Distanza, "distanze", "Osservazioni: distanze",
           "Misurata: come nel file; usata: ridotta all'orizzonte, in centro e al piano dove "
           "serve. ",
           kDecimaliMetri, kMmPerMetro, kColonneDistanze},
    Genere{TipoEquazione::Dislivello, "dislivelli", "Osservazioni: dislivelli",
           "Dislivello fra i due punti, con le altezze di strumento e segnale. Le quote si pesano "
           "solo fra loro: non c'è s.q.m. a priori, né minimo errore rilevabile. ",
           kDecimaliMetri, kMmPerMetro, kColonneDislivelli}};

// Between 0 and a full circle, also where it would round up to it.
double AngoloRidotto(double gon) {
  const double ridotto = std::fmod(gon, kGiroGon);
  return ridotto < 0.0 ? ridotto + kGiroGon : ridotto;
}

void ScriviEquazione(Tabella& tabella, const Risultati& r, const Genere& g, const Equazione& e) {
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
  tabella.Numero(angolo ? AngoloRidotto(e.Usato) : e.Usato, g.Decimali);
  tabella.Numero(angolo ? AngoloRidotto(e.Compensato) : e.Compensato, g.Decimali);
  tabella.Numero(e.Residuo * g.Ingrandimento, kDecimaliMm);
  tabella.Numero(e.Sqm * g.Ingrandimento, kDecimaliMm);
  tabella.Numero(e.Ridondanza, kDecimaliR);
  tabella.Numero(e.W, kDecimaliW);
  if (e.Tipo != TipoEquazione::Dislivello)
    tabella.Numero(MinimoErroreRilevabile(e) * g.Ingrandimento, kDecimaliMm);
  tabella.Testo(Giudizio(e));
}

void ScriviOsservazioni(Pagina& pagina, const Risultati& r, const Genere& g) {
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
        " Minimo errore rilevabile: s.q.m. a priori · 4.13 / √r (rischio 0.1 %, potenza "
        "80 %).";
  if (scelte.size() < quante)
    didascalia += " <strong>La tabella mostra le " + std::to_string(scelte.size()) +
                  " osservazioni con |w| più grande, su " + std::to_string(quante) + ".</strong>";
  Tabella tabella(pagina, {g.Chiave, g.Titolo, didascalia, true}, g.Colonne);
  for (const Equazione* e : scelte) ScriviEquazione(tabella, r, g, *e);
  tabella.Concludi();
}

}  // namespace

bool Sospetta(const Equazione& equazione) { return equazione.W > kWSospetta; }
bool NonControllata(const Equazione& equazione) {
  return equazione.Ridondanza < kRidondanzaControllo;
}

double MinimoErroreRilevabile(const Equazione& equazione) {
  constexpr double kDelta0 = 4.13;  // shift of w that is found with that risk and that power
  if (!(equazione.Ridondanza > kRidondanzaNulla)) return kAssente;
  return equazione.SqmPriori * kDelta0 / std::sqrt(equazione.Ridondanza);
}

void ScriviTabelle(Pagina& pagina, const Risultati& r) {
  ScriviPrime(pagina, r);
  ScriviPunti(pagina, r,
              {"fissi", "Punti fissi",
               "Punti vincolati in planimetria o in altimetria: il ruolo dice dove."},
              Fisso);
  ScriviCompensati(pagina, r);
  ScriviPunti(pagina, r,
              {"altri", "Punti esclusi o non compensati",
               "Coordinate come nel file. Non usato: escluso nel file, senza coordinate, oppure "
               "punto fisso che nessuna osservazione usa."},
              [](const RisultatoPunto& p) { return !Fisso(p) && !Compensato(p); });
  ScriviStazioni(pagina, r);
  for (const Genere& g : kGeneri) ScriviOsservazioni(pagina, r, g);
}

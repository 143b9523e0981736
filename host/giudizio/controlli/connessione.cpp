// Connectivity: groups of points by union of the ends of the equations that the records give.
// Each group needs a datum of its own: in plan two fixed points, in height one.
//
// A sight from station S with instrument height h to target T ties H(T) to the horizon of the
// instrument I = H(S) + h. Where h is known I stands for S; where it is not, I is one more unknown
// in place of h, and the sights tie their targets to I but not to S. Every height equation is then
// a difference of two unknowns, and they are determined exactly if each group has a fixed height.

#include "host/giudizio/controlli/connessione.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <set>

#include "host/base/testi.h"
#include "records/selezione.h"

namespace compensa {

namespace {

constexpr std::size_t kNominati = 8;
constexpr const char* kAltraVia =
    "serve un'altra visuale in quota, o la misura dell'altezza dello strumento in ";

class Gruppi {
 public:
  explicit Gruppi(std::size_t n) : Padre(n) { std::iota(Padre.begin(), Padre.end(), 0); }
  int Trova(int i) {
    while (Padre[static_cast<std::size_t>(i)] != i) {
      int& padre = Padre[static_cast<std::size_t>(i)];
      padre = Padre[static_cast<std::size_t>(padre)];
      i = padre;
    }
    return i;
  }
  void Unisci(int a, int b) {
    a = Trova(a);
    b = Trova(b);
    Padre[static_cast<std::size_t>(std::max(a, b))] = std::min(a, b);
  }

 private:
  std::vector<int> Padre;
};

class EsameConnessione {
 public:
  explicit EsameConnessione(const Rete& rete)
      : R(rete),
        Punti(rete.Punti),
        Direzioni(rete.Punti.size(), 0),
        Distanze(rete.Punti.size(), 0),
        SenzaPeso(rete.Punti.size(), 0) {}
  Connessione Esegui();

 private:
  const std::string& Nome(int i) const { return R.Nomi[static_cast<std::size_t>(i)]; }
  int Ruolo(int i, Calcolo quale) const {
    const TCoorCr& p = Punti[static_cast<std::size_t>(i)];
    return quale == kCalcoloPlanimetria ? p.TipoPla : p.TipoAlt;
  }
  // The node of the horizon of a set-up, after those of the points.
  int Orizzonte(int stazione) const { return static_cast<int>(R.Punti.size()) + stazione; }
  void EsaminaPianta();
  void EsaminaStazione(std::size_t s, Gruppi& gruppi);
  void NotaSenzaPeso(const TStaCr& stazione, const TOssCr& o);
  void SegnalaSenzaPeso();
  void EsaminaQuote();
  void EsaminaStrumenti(Gruppi& gruppi);
  void Raccogli(Gruppi& gruppi, Calcolo quale, Collegamento& c);
  void Ostacola(Collegamento& c, int fissiPerGruppo, const char* che);
  void OstacolaGruppo(Collegamento& c, const std::vector<int>& gruppo, int fissi,
                      const std::string& che);
  void PuntiDeboli();
  std::string Elenco(const std::vector<int>& punti) const;

  const Rete& R;
  std::vector<TCoorCr> Punti;  // with the roles that an adjustment would leave them
  Connessione C;
  std::vector<int> Direzioni, Distanze;   // of each point that enter angles and distances
  std::vector<int> Strumenti;             // set-ups in use, of unknown instrument height
  std::map<int, std::set<int>> Isolanti;  // of a group, by its first point: their points
  std::vector<int> SenzaPeso;  // height sights of each point lost for want of its coordinates
};

std::string EsameConnessione::Elenco(const std::vector<int>& punti) const {
  std::string testo;
  for (std::size_t i = 0; i < std::min(punti.size(), kNominati); ++i)
    testo += (i == 0 ? "" : ", ") + Cita(Nome(punti[i]));
  if (punti.size() > kNominati) testo += "…";
  return testo;
}

void EsameConnessione::EsaminaStazione(std::size_t s, Gruppi& gruppi) {
  const TStaCr& stazione = R.Stazioni[s];
  if (!StazionePla(Punti, stazione)) return;
  const auto qui = static_cast<std::size_t>(stazione.Punto);
  PerOgniDistanza(Punti, stazione, [&](std::size_t k) {
    const int visto = stazione.Osservazioni[k].Punto;
    ++Distanze[qui];
    ++Distanze[static_cast<std::size_t>(visto)];
    gruppi.Unisci(stazione.Punto, visto);
  });
  std::vector<int> collimati;
  for (const TOssCr& o : stazione.Osservazioni)
    if (LetturaPla(Punti, o)) collimati.push_back(o.Punto);
  if (collimati.size() == 1)
    C.Trovati.push_back({R.PosizioniStazioni[s],
                         {.Quale = Codice::DirezioneSola,
                          .Record = NomeStazione(Nome(stazione.Punto)),
                          .Problema = "una sola direzione (verso " + Cita(Nome(collimati.front())) +
                                      "): non forma angoli",
                          .Suggerimento = "letture dello stesso giro scritte in più stazioni?"}});
  if (collimati.size() < 2) return;
  for (const int p : collimati) {
    ++Direzioni[static_cast<std::size_t>(p)];
    ++Direzioni[qui];
    gruppi.Unisci(stazione.Punto, p);
  }
}

void EsameConnessione::Raccogli(Gruppi& gruppi, Calcolo quale, Collegamento& c) {
  std::vector<std::vector<int>> perRadice(R.Punti.size());
  for (std::size_t i = 0; i < R.Punti.size(); ++i) {
    const int p = static_cast<int>(i);
    const RuoliPunto& voluti = R.RuoliIniziali[i];
    const int voluto = quale == kCalcoloPlanimetria ? voluti.Pla : voluti.Alt;
    if (Ruolo(p, quale) == kNonUsato) {
      c.Mancanti += voluto == kIncognito ? 1 : 0;
      continue;
    }
    Ruolo(p, quale) == kFisso ? ++c.Fissi : ++c.Incogniti;
    perRadice[static_cast<std::size_t>(gruppi.Trova(p))].push_back(p);
  }
  // A fixed point without a sight of its own lacks nothing.
  const auto fissoSolo = [&](const std::vector<int>& gruppo) {
    return gruppo.size() == 1 && Ruolo(gruppo.front(), quale) == kFisso;
  };
  for (std::vector<int>& gruppo : perRadice)
    if (!gruppo.empty() && !fissoSolo(gruppo)) c.Gruppi.push_back(std::move(gruppo));
  std::stable_sort(c.Gruppi.begin(), c.Gruppi.end(),
                   [](const auto& a, const auto& b) { return a.size() > b.size(); });
}

void EsameConnessione::Ostacola(Collegamento& c, int fissiPerGruppo, const char* che) {
  const bool pla = fissiPerGruppo > 1;
  if (c.Incogniti == 0 && c.Mancanti > 0)
    c.Ostacoli.push_back(std::string(che) + ": nessun punto incognito ha " +
                         (pla ? "coordinate, e le misure non bastano a calcolarle"
                              : "una quota, e le misure non bastano a calcolarla"));
  // Without unknowns the heights want no datum; the plan asks for its fixed points all the same.
  if (!pla && c.Incognite == 0) return;
  if (c.Fissi < fissiPerGruppo)
    c.Ostacoli.push_back(std::string(che) + ": punti fissi usati " + std::to_string(c.Fissi) +
                         ", ne " + (pla ? "servono almeno 2" : "serve almeno 1"));
  if (c.GradiLiberta() < 0)
    c.Ostacoli.push_back(std::string(che) + ": " + std::to_string(c.Incognite) +
                         (c.Incognite == 1 ? " incognita, ma " : " incognite, ma ") +
                         (c.Equazioni == 0 ? "nessuna equazione"
                                           : "solo " + std::to_string(c.Equazioni) +
                                                 (c.Equazioni == 1 ? " equazione" : " equazioni")));
  if (c.Fissi < fissiPerGruppo) return;
  for (const std::vector<int>& gruppo : c.Gruppi) {
    const auto fissi = std::count_if(gruppo.begin(), gruppo.end(), [&](int p) {
      return Ruolo(p, pla ? kCalcoloPlanimetria : kCalcoloAltimetria) == kFisso;
    });
    if (fissi < fissiPerGruppo && fissi < static_cast<std::ptrdiff_t>(gruppo.size()))
      OstacolaGruppo(c, gruppo, static_cast<int>(fissi), che);
  }
}

void EsameConnessione::OstacolaGruppo(Collegamento& c, const std::vector<int>& gruppo, int fissi,
                                      const std::string& che) {
  const bool solo = gruppo.size() == 1;
  std::string dove;  // the instruments that keep it apart
  if (const auto i = Isolanti.find(gruppo.front()); &c == &C.Alt && i != Isolanti.end())
    dove = Elenco({i->second.begin(), i->second.end()});
  c.Ostacoli.push_back(che + ": " + (solo ? "il punto " : "i punti ") + Elenco(gruppo) +
                       (solo ? " non è collegato " : " non sono collegati ") +
                       "ad abbastanza punti fissi (" + std::to_string(fissi) + ")" +
                       (dove.empty() ? "" : ": l'altezza strumentale è incognita in " + dove));
  C.Trovati.push_back({R.PosizioniPunti[static_cast<std::size_t>(gruppo.front())],
                       {.Quale = Codice::GruppoStaccato,
                        .Riguarda = RiguardoDi(&c == &C.Pla),
                        .Record = NomePunto(Nome(gruppo.front())),
                        .Problema = che + ": gruppo di " + std::to_string(gruppo.size()) +
                                    (solo ? " punto staccato" : " punti staccati") +
                                    " dal resto della rete: " + Elenco(gruppo),
                        .Suggerimento = dove.empty() ? "" : kAltraVia + dove}});
}

// Notes which groups an unknown instrument height keeps apart, under the first point of each.
void EsameConnessione::EsaminaStrumenti(Gruppi& gruppi) {
  for (const int s : Strumenti) {
    const int punto = R.Stazioni[static_cast<std::size_t>(s)].Punto;
    const int sotto = gruppi.Trova(punto);
    const int sopra = gruppi.Trova(Orizzonte(s));
    if (sopra == Orizzonte(s)) {
      C.Alt.Ostacoli.push_back(
          "altimetria: nessuna visuale in quota determina l'altezza strumentale incognita in " +
          Cita(Nome(punto)));
      C.Trovati.push_back({R.PosizioniStazioni[static_cast<std::size_t>(s)],
                           {.Quale = Codice::AltezzaStrumentoIndeterminata,
                            .Record = NomeStazione(Nome(punto)),
                            .Problema = "altezza dello strumento incognita, e nessuna visuale in "
                                        "quota che la determini"}});
    } else if (sotto != sopra) {
      Isolanti[sotto].insert(punto);
      Isolanti[sopra].insert(punto);
    }
  }
}

// An unknown point needs two elements; the adjustment does not start with one that has less than
// two readings and no distance.
void EsameConnessione::PuntiDeboli() {
  std::vector<char> toccati(R.Punti.size(), 0);
  for (const TStaCr& s : R.Stazioni)
    for (const TOssCr& o : s.Osservazioni) {
      toccati[static_cast<std::size_t>(s.Punto)] = 1;
      toccati[static_cast<std::size_t>(o.Punto)] = 1;
    }
  for (std::size_t i = 0; i < R.Punti.size(); ++i) {
    const RuoliPunto& ruoli = R.RuoliIniziali[i];
    if (ruoli.Pla == kNonUsato && ruoli.Alt == kNonUsato) continue;
    const std::string punto = NomePunto(R.Nomi[i]);
    if (toccati[i] == 0) {
      C.Trovati.push_back({R.PosizioniPunti[i],
                           {.Quale = Codice::PuntoSenzaOsservazioni,
                            .Record = punto,
                            .Problema = "nessuna osservazione lo tocca",
                            .Suggerimento = "nome scritto in un altro modo nelle osservazioni?"}});
      continue;
    }
    const int elementi = Direzioni[i] + Distanze[i];
    if (!C.Pla.Richiesto || Punti[i].TipoPla != kIncognito || elementi > 1) continue;
    C.Trovati.push_back(
        {R.PosizioniPunti[i],
         {.Quale = Codice::PuntoIndeterminato,
          .Riguarda = Riguardo::Planimetria,
          .Record = punto,
          .Problema = elementi == 0      ? "nessuna misura utile alla planimetria lo determina"
                      : Distanze[i] == 1 ? "in planimetria lo determina una sola distanza"
                                         : "in planimetria lo determina una sola direzione"}});
    C.Pla.Ostacoli.push_back("planimetria: " + punto + " non è determinato");
  }
}

void EsameConnessione::EsaminaPianta() {
  AbbassaRuoliPla(Punti, R.Stazioni);
  const Dimensioni n = DimensioniPla(Punti, R.Stazioni);
  C.Pla.Incognite = n.Incognite;
  C.Pla.Equazioni = n.Equazioni;
  Gruppi gruppi(R.Punti.size());
  for (std::size_t s = 0; s < R.Stazioni.size(); ++s) EsaminaStazione(s, gruppi);
  Raccogli(gruppi, kCalcoloPlanimetria, C.Pla);
}

// Notes the ends of a sight that lacks nothing but their plane coordinates.
void EsameConnessione::NotaSenzaPeso(const TStaCr& stazione, const TOssCr& o) {
  if (!Esiste(Punti, o.Punto) || Ruolo(o.Punto, kCalcoloAltimetria) == kNonUsato ||
      !Assegnato(o.Zenit) || !Assegnato(o.Distanza) || !Assegnato(o.AltSegnale))
    return;
  for (const int estremo : {stazione.Punto, o.Punto}) {
    const TCoorCr& p = Punti[static_cast<std::size_t>(estremo)];
    if (!Assegnato(p.Est) || !Assegnato(p.Nord)) ++SenzaPeso[static_cast<std::size_t>(estremo)];
  }
}

// Points whose coordinates are looked for in plan are told with those that were not reached there.
void EsameConnessione::SegnalaSenzaPeso() {
  for (std::size_t i = 0; i < SenzaPeso.size(); ++i) {
    if (SenzaPeso[i] == 0 || (C.Pla.Richiesto && R.RuoliIniziali[i].Pla != kNonUsato)) continue;
    C.Trovati.push_back(
        {R.PosizioniPunti[i],
         {.Quale = Codice::VisualeSenzaPeso,
          .Record = NomePunto(R.Nomi[i]),
          .Problema = "mancano est o nord: " + Conta(SenzaPeso[i], "visuale", "visuali") +
                      " in quota " + (SenzaPeso[i] == 1 ? "non entra" : "non entrano") +
                      " nell'altimetria",
          .Suggerimento = "bastano coordinate approssimate: danno il peso alle visuali"}});
  }
}

void EsameConnessione::EsaminaQuote() {
  AbbassaRuoliAlt(Punti, R.Stazioni);
  const Dimensioni n = DimensioniAlt(Punti, R.Stazioni);
  C.Alt.Incognite = n.Incognite;
  C.Alt.Equazioni = n.Equazioni;
  Gruppi gruppi(R.Punti.size() + R.Stazioni.size());
  for (std::size_t s = 0; s < R.Stazioni.size(); ++s) {
    const TStaCr& stazione = R.Stazioni[s];
    if (!StazioneAlt(Punti, stazione)) continue;
    const bool incognita = StrumentoIncognito(Punti, stazione);
    if (incognita) Strumenti.push_back(static_cast<int>(s));
    const int orizzonte = incognita ? Orizzonte(static_cast<int>(s)) : stazione.Punto;
    PerOgniDislivello(Punti, stazione, [&](std::size_t k, double) {
      gruppi.Unisci(orizzonte, stazione.Osservazioni[k].Punto);
    });
    for (const TOssCr& o : stazione.Osservazioni) NotaSenzaPeso(stazione, o);
  }
  Raccogli(gruppi, kCalcoloAltimetria, C.Alt);
  EsaminaStrumenti(gruppi);
}

Connessione EsameConnessione::Esegui() {
  C.Pla.Richiesto = (R.Opzioni.TipoCalcolo & kCalcoloPlanimetria) != 0;
  C.Alt.Richiesto = (R.Opzioni.TipoCalcolo & kCalcoloAltimetria) != 0;
  if (C.Pla.Richiesto) {
    EsaminaPianta();
    Ostacola(C.Pla, 2, "planimetria");
  }
  if (C.Alt.Richiesto) {
    EsaminaQuote();
    SegnalaSenzaPeso();
    Ostacola(C.Alt, 1, "altimetria");
  }
  PuntiDeboli();
  return std::move(C);
}

}  // namespace

Connessione EsaminaConnessione(const Rete& rete) { return EsameConnessione(rete).Esegui(); }

}  // namespace compensa

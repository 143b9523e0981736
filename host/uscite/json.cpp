// JSON of the result model. Points, stations and observations are many: each is made and written by
// itself, so that the document never stands in memory as a whole.

#include "host/uscite/json.h"

#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "host/base/versione.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

using nlohmann::ordered_json;
using Scrivi = std::function<void(std::string_view)>;

ordered_json Numero(double valore) {
  return std::isfinite(valore) ? ordered_json(valore) : ordered_json(nullptr);
}

ordered_json Conteggio(int valore) {
  return valore == kNessuno ? ordered_json(nullptr) : ordered_json(valore);
}

// The word of the network file for a code, or the code.
ordered_json Parola(std::span<const ParolaNota> parole, int codice) {
  for (const ParolaNota& parola : parole)
    if (parola.Valore == codice) return parola.Testo;
  return codice;
}

ordered_json Ruolo(int ruolo) {
  return ruolo == kCompensato ? ordered_json("compensato") : Parola(kParoleRuolo, ruolo);
}

ordered_json NomeDi(const Risultati& r, int punto) {
  const auto i = static_cast<std::size_t>(punto);
  return punto >= 0 && i < r.Punti.size() ? ordered_json(r.Punti[i].Nome) : ordered_json(nullptr);
}

std::string_view NomeEsito(Esito esito) {
  switch (esito) {
    case Esito::NonRichiesta: return "non_richiesta";
    case Esito::Riuscita: return "riuscita";
    case Esito::NonConvergente: return "non_convergente";
    case Esito::NonDeterminabile: return "non_determinabile";
    case Esito::NonEseguita: return "non_eseguita";
    case Esito::PuntiFissiInsufficienti: return "punti_fissi_insufficienti";
    case Esito::PiuIncognite: return "piu_incognite";
    case Esito::NormaleSingolare: return "normale_singolare";
    case Esito::NonFinita: return "non_finita";
  }
  return {};
}

std::string_view NomeTipo(TipoEquazione tipo) {
  switch (tipo) {
    case TipoEquazione::Angolo: return "angolo";
    case TipoEquazione::Distanza: return "distanza";
    case TipoEquazione::Dislivello: return "dislivello";
  }
  return {};
}

std::string_view NomeTipo(TipoMoto tipo) {
  switch (tipo) {
    case TipoMoto::Punto: return "punto";
    case TipoMoto::Traslazione: return "traslazione";
    case TipoMoto::Rotazione: return "rotazione";
    case TipoMoto::Dilatazione: return "dilatazione";
    case TipoMoto::RotazioneDilatazione: return "rotazione_dilatazione";
    case TipoMoto::Rototraslazione: return "rototraslazione";
    case TipoMoto::Composto: return "composto";
    case TipoMoto::Quote: return "quote";
    case TipoMoto::Strumento: return "strumento";
  }
  return {};
}

ordered_json DiOpzioni(const TOpzCr& o) {
  return {{"calcolo", Parola(kParoleCalcolo, o.TipoCalcolo)},
          {"sqm_direzione", Numero(o.SqmDir)},
          {"sqm_distanza_costante", Numero(o.SqmDistCost)},
          {"sqm_distanza_proporzionale", Numero(o.SqmDistProp)},
          {"iterazioni", o.MaxIter},
          {"cartografiche", o.Cartografiche != 0}};
}

ordered_json DiCurvatura(const CCalcDsOr& c) {
  return {{"attiva", c.CorrCurvRifr != 0},
          {"coefficiente", Numero(c.CoeffRifr)},
          {"raggio", Numero(c.RaggioTerra)}};
}

ordered_json DiWMassimo(const Risultati& r, int indice) {
  if (indice == kNessuno) return nullptr;
  const Equazione& e = r.Equazioni[static_cast<std::size_t>(indice)];
  const RisultatoStazione& s = r.Stazioni[static_cast<std::size_t>(e.Stazione)];
  const auto punto = s.Osservazioni[static_cast<std::size_t>(e.Osservazione)].Punto;
  return {{"w", Numero(e.W)},         {"equazione", NomeTipo(e.Tipo)},
          {"stazione", e.Stazione},   {"osservazione", e.Osservazione},
          {"da", NomeDi(r, s.Punto)}, {"a", NomeDi(r, punto)}};
}

ordered_json DiIterazione(const Risultati& r, const Iterazione& i) {
  return {{"numero", i.Numero},
          {"correzione_media", Numero(i.CorrezioneMedia)},
          {"correzione_massima", Numero(i.CorrezioneMassima)},
          {"punto", NomeDi(r, i.PuntoMassimo)}};
}

ordered_json DiMoto(const Risultati& r, const MotoLibero& m) {
  ordered_json punti = ordered_json::array();
  for (const int punto : m.Punti) punti.push_back(NomeDi(r, punto));
  const auto centro = [&](const CentroMoto& c) -> ordered_json {
    if (!Presente(c.Est)) return nullptr;
    return {{"est", Numero(c.Est)}, {"nord", Numero(c.Nord)}, {"punto", NomeDi(r, c.Punto)}};
  };
  return {{"tipo", NomeTipo(m.Tipo)},
          {"gradi", m.Gradi},
          {"punti", std::move(punti)},
          {"stazioni", m.Stazioni},
          {"azimut", Numero(m.Azimut)},
          {"centro", centro(m.Centro)},
          {"centro_dilatazione", centro(m.CentroScala)},
          {"sqm", Numero(m.Sqm)},
          {"parole", m.Parole}};
}

ordered_json DiCompensazione(const Risultati& r, const RisultatoCompensazione& c) {
  ordered_json iterazioni = ordered_json::array();
  for (const Iterazione& i : c.Iterazioni) iterazioni.push_back(DiIterazione(r, i));
  const auto nomi = [&](const std::vector<int>& punti) {
    ordered_json elenco = ordered_json::array();
    for (const int punto : punti) elenco.push_back(NomeDi(r, punto));
    return elenco;
  };
  ordered_json moti = ordered_json::array();
  if (!c.ApprossimateLontane)
    for (const MotoLibero& m : c.MotiLiberi) moti.push_back(DiMoto(r, m));
  return {{"richiesta", c.Fine != Esito::NonRichiesta},
          {"esito", NomeEsito(c.Fine)},
          {"punti_non_determinabili", nomi(c.PuntiNonDeterminabili)},
          {"punti_non_calcolati", nomi(c.PuntiNonCalcolati)},
          {"punti_fissi", c.Fissi},
          {"punti_incogniti", c.Incogniti},
          {"punti_non_usati", c.NonUsati},
          {"equazioni", Conteggio(c.Equazioni)},
          {"incognite", Conteggio(c.Incognite)},
          {"ridondanza", c.Contate() ? ordered_json(c.Ridondanza()) : ordered_json(nullptr)},
          {"sigma_zero", Numero(c.SigmaZero)},
          {"sigma_zero_rapporto", Numero(c.SigmaZeroRapporto)},
          {"convergente", c.Compiuta() ? ordered_json(c.Fine == Esito::Riuscita) : nullptr},
          {"iterazioni", std::move(iterazioni)},
          {"w_massimo", DiWMassimo(r, c.EquazioneWMassimo)},
          {"gradi_liberi", c.GradiLiberi},
          {"approssimate_lontane", c.ApprossimateLontane ? ordered_json(c.MotiLiberi.front().Parole)
                                                         : ordered_json(nullptr)},
          {"moti_liberi", std::move(moti)}};
}

ordered_json DiPunto(const RisultatoPunto& p) {
  ordered_json ellisse = nullptr;
  if (Presente(p.EllAsseMag))
    ellisse = {{"semiasse_maggiore", Numero(p.EllAsseMag)},
               {"semiasse_minore", Numero(p.EllAsseMin)},
               {"azimut", Numero(p.EllAzimut)},
               {"teta_rapporto", Numero(p.EllTeta)}};
  return {{"nome", p.Nome},
          {"est", Numero(p.Est)},
          {"nord", Numero(p.Nord)},
          {"quota", Numero(p.Quota)},
          {"planimetria", Ruolo(p.Ruoli.Pla)},
          {"altimetria", Ruolo(p.Ruoli.Alt)},
          {"sqm_est", Numero(p.SqmEst)},
          {"sqm_nord", Numero(p.SqmNord)},
          {"sqm_quota", Numero(p.SqmQuota)},
          {"covarianza", Numero(p.Covarianza)},
          {"ellisse", std::move(ellisse)},
          {"iniziale",
           {{"est", Numero(p.EstIniziale)},
            {"nord", Numero(p.NordIniziale)},
            {"quota", Numero(p.QuotaIniziale)},
            {"planimetria", Ruolo(p.RuoliIniziali.Pla)},
            {"altimetria", Ruolo(p.RuoliIniziali.Alt)}}}};
}

ordered_json DiEquazione(const Equazione& e) {
  ordered_json equazione = {{"tipo", NomeTipo(e.Tipo)},
                            {"unita", e.Tipo == TipoEquazione::Angolo ? "gon" : "m"}};
  if (e.Tipo == TipoEquazione::Angolo) equazione["riferimento"] = e.Riferimento;
  equazione["usato"] = Numero(e.Usato);
  equazione["compensato"] = Numero(e.Compensato);
  equazione["residuo"] = Numero(e.Residuo);
  equazione["sqm_priori"] = Numero(e.SqmPriori);
  equazione["sqm"] = Numero(e.Sqm);
  equazione["peso"] = Numero(e.Peso);
  equazione["w"] = Numero(e.W);
  equazione["ridondanza"] = Numero(e.Ridondanza);
  return equazione;
}

ordered_json DiOsservazione(const Risultati& r, const RisultatoOsservazione& o) {
  ordered_json equazioni = ordered_json::array();
  for (const int indice : {o.Angolo, o.EqDistanza, o.Dislivello})
    if (indice != kNessuno)
      equazioni.push_back(DiEquazione(r.Equazioni[static_cast<std::size_t>(indice)]));
  return {{"punto", NomeDi(r, o.Punto)},
          {"direzione", Numero(o.Direzione)},
          {"zenit", Numero(o.Zenit)},
          {"segnale", Numero(o.AltSegnale)},
          {"distanza", Numero(o.Distanza)},
          {"tipo", Parola(kParoleTipo, o.TipoDist)},
          {"direzione_riferimento", o.DirezioneRiferimento},
          {"equazioni", std::move(equazioni)}};
}

ordered_json DiStazione(const Risultati& r, const RisultatoStazione& s) {
  return {{"punto", NomeDi(r, s.Punto)},
          {"altezza", Numero(s.AltStrum)},
          {"altezza_nota", s.AltStrumNota},
          {"altezza_compensata", Numero(s.AltStrumCompensata)},
          {"sqm_altezza", Numero(s.SqmAltStrum)},
          {"eccentricita",
           {{"distanza", Numero(s.EccDistanza)}, {"direzione", Numero(s.EccDirezione)}}},
          {"orientamento", Numero(s.Orientamento)}};
}

ordered_json DiMessaggio(const Messaggio& m) {
  ordered_json compensazioni = ordered_json::array();
  const Riguardo riguarda = RiguardoDi(m.Cosa);
  if (Comprende(riguarda, true)) compensazioni.push_back("planimetria");
  if (Comprende(riguarda, false)) compensazioni.push_back("altimetria");
  const auto seDato = [](const std::string& testo) {
    return testo.empty() ? ordered_json(nullptr) : ordered_json(testo);
  };
  const auto seNoto = [](int numero) {
    return numero > 0 ? ordered_json(numero) : ordered_json(nullptr);
  };
  return {{"codice", VoceDi(m.Cosa.Quale).Parola},
          {"gravita", m.Livello == Gravita::Errore ? "errore" : "avviso"},
          {"compensazioni", std::move(compensazioni)},
          {"soggetto", Parola(m.Cosa.Record.Tipo)},
          {"nomi", m.Cosa.Record.Nomi},
          {"campo", seDato(m.Cosa.Campo)},
          {"file", seDato(m.File)},
          {"riga", seNoto(m.Riga)},
          {"colonna", seNoto(m.Colonna)},
          {"testo", TestoGuasto(m.Cosa)}};
}

// Bytes that are not UTF-8, as the name of a file may have, are replaced.
std::string Testo(const ordered_json& valore) {
  return valore.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

// The elements of an array, each on a line of its own.
template <class Elementi, class Fa>
void ScriviElenco(const Scrivi& scrivi, std::string_view rientro, const Elementi& elementi, Fa fa) {
  std::string_view separatore = "\n";
  for (const auto& elemento : elementi) {
    std::string riga(separatore);
    riga += rientro;
    scrivi(riga += fa(elemento));
    separatore = ",\n";
  }
}

}  // namespace

void ScriviJson(const Risultati& r, const Scrivi& scrivi, const MessaggiJson& messaggi) {
  const ordered_json epsg =
      r.DatiProgetto.Epsg ? ordered_json(*r.DatiProgetto.Epsg) : ordered_json(nullptr);
  const ordered_json testata = {
      {"schema", kSchemaJson},
      {"versione", kVersioneJson},
      {"programma", {{"nome", kNomeProgramma}, {"versione", kVersioneProgramma}}},
      {"file", r.File},
      {"progetto", {{"nome", r.DatiProgetto.Nome}, {"epsg", epsg}}},
      {"opzioni", DiOpzioni(r.Opzioni)},
      {"curvatura_rifrazione", DiCurvatura(r.CurvaturaRifrazione)},
      {"falso_est", r.FalsoEst == 0.0 ? ordered_json(nullptr) : Numero(r.FalsoEst)},
      {"planimetria", DiCompensazione(r, r.Planimetria)},
      {"altimetria", DiCompensazione(r, r.Altimetria)}};
  std::string inizio = "{\n";
  for (const auto& [chiave, valore] : testata.items())
    inizio += "  " + Testo(chiave) + ": " + Testo(valore) + ",\n";
  scrivi(inizio);
  const auto elenco = [&](std::string_view chiave, const auto& elementi, auto fa) {
    scrivi("  \"" + std::string(chiave) + "\": [");
    ScriviElenco(scrivi, "    ", elementi, fa);
    scrivi(elementi.empty() ? "],\n" : "\n  ],\n");
  };
  elenco("avvisi", messaggi.Avvisi, [](const Messaggio& m) { return Testo(TestoMessaggio(m)); });
  elenco("messaggi", messaggi.Avvisi, [](const Messaggio& m) { return Testo(DiMessaggio(m)); });
  elenco("note", messaggi.Note, [](const std::string& riga) { return Testo(riga); });
  scrivi("  \"punti\": [");
  ScriviElenco(scrivi, "    ", r.Punti, [](const RisultatoPunto& p) { return Testo(DiPunto(p)); });
  scrivi("\n  ],\n  \"stazioni\": [");
  ScriviElenco(scrivi, "    ", r.Stazioni, [&](const RisultatoStazione& s) {
    std::string stazione = Testo(DiStazione(r, s));
    stazione.back() = ',';  // the object goes on
    stazione += " \"osservazioni\": [";
    ScriviElenco([&](std::string_view riga) { stazione += riga; }, "      ", s.Osservazioni,
                 [&](const RisultatoOsservazione& o) { return Testo(DiOsservazione(r, o)); });
    return stazione += "]}";
  });
  scrivi("\n  ]\n}\n");
}

}  // namespace compensa

// Tables for spreadsheets. A column is its name and the function that fills it, so that header and
// rows cannot part. A name that a spreadsheet would take for a formula has an apostrophe in front, which
// the program takes off again where it reads a table.

#include "host/uscite/tabelle_csv.h"

#include <algorithm>
#include <array>
#include <functional>
#include <span>
#include <string>

#include "host/base/numeri.h"
#include "host/file_rete/csv.h"
#include "host/rete/campi.h"
#include "host/rete/grandezze.h"

namespace compensa {

namespace {

using Scrivi = std::function<void(std::string_view)>;

constexpr std::string_view kBom = "\xEF\xBB\xBF";
constexpr std::string_view kFineRiga = "\r\n";
constexpr int kDecimaliM = 4;
constexpr int kDecimaliMm = 2;
constexpr int kDecimaliGon = 5;
constexpr int kDecimaliMgon = 3;
constexpr int kDecimaliW = 3;
constexpr int kDecimaliR = 4;

// How a table writes its fields.
struct Forma {
  Decimali Segno;

  std::string Numero(double valore, int decimali) const {
    if (!std::isfinite(valore)) return {};
    std::string testo = NumeroFisso(valore, decimali);
    if (Segno == Decimali::Virgola) std::replace(testo.begin(), testo.end(), '.', ',');
    return testo;
  }
  std::string Metri(double valore) const { return Numero(valore, kDecimaliM); }
  std::string Mm(double metri) const { return Numero(metri * kMmPerMetro, kDecimaliMm); }
  std::string Gon(double valore) const { return Numero(valore, kDecimaliGon); }
};

std::string SiNo(bool valore) { return valore ? "si" : "no"; }

template <class Contesto>
struct Colonna {
  std::string_view Nome;
  std::string (*Campo)(const Contesto&);
};

template <class Contesto>
void ScriviIntestazione(std::span<const Colonna<Contesto>> colonne, const Scrivi& scrivi) {
  std::string riga(kBom);
  for (const Colonna<Contesto>& colonna : colonne)
    (riga += &colonna == &colonne.front() ? "" : ";") += colonna.Nome;
  scrivi(riga += kFineRiga);
}

template <class Contesto>
void ScriviRiga(std::span<const Colonna<Contesto>> colonne, const Contesto& contesto,
                const Scrivi& scrivi) {
  std::string riga;
  for (const Colonna<Contesto>& colonna : colonne)
    (riga += &colonna == &colonne.front() ? "" : ";") += colonna.Campo(contesto);
  scrivi(riga += kFineRiga);
}

// A point of the table of points.
struct P {
  const RisultatoPunto& Punto;
  Forma F;
  double Fattore95;  // of its ellipse
};

constexpr std::array<Colonna<P>, 20> kColonnePunti{{
    {"nome", [](const P& p) { return NomeInCsv(p.Punto.Nome); }},
    {"ruolo_planimetria", [](const P& p) { return std::string(NomeRuolo(p.Punto.Ruoli.Pla)); }},
    {"ruolo_altimetria", [](const P& p) { return std::string(NomeRuolo(p.Punto.Ruoli.Alt)); }},
    {"est_m", [](const P& p) { return p.F.Metri(p.Punto.Est); }},
    {"nord_m", [](const P& p) { return p.F.Metri(p.Punto.Nord); }},
    {"quota_m", [](const P& p) { return p.F.Metri(p.Punto.Quota); }},
    {"sqm_est_a_posteriori_1sigma_mm", [](const P& p) { return p.F.Mm(p.Punto.SqmEst); }},
    {"sqm_nord_a_posteriori_1sigma_mm", [](const P& p) { return p.F.Mm(p.Punto.SqmNord); }},
    {"sqm_quota_a_posteriori_1sigma_mm", [](const P& p) { return p.F.Mm(p.Punto.SqmQuota); }},
    {"ellisse_a_a_posteriori_1sigma_mm", [](const P& p) { return p.F.Mm(p.Punto.EllAsseMag); }},
    {"ellisse_b_a_posteriori_1sigma_mm", [](const P& p) { return p.F.Mm(p.Punto.EllAsseMin); }},
    {"ellisse_a_a_posteriori_95_percento_mm",
     [](const P& p) { return p.F.Mm(p.Punto.EllAsseMag * p.Fattore95); }},
    {"ellisse_b_a_posteriori_95_percento_mm",
     [](const P& p) { return p.F.Mm(p.Punto.EllAsseMin * p.Fattore95); }},
    {"ellisse_azimut_asse_a_da_nord_orario_gon",
     [](const P& p) { return p.F.Gon(p.Punto.EllAzimut); }},
    {"est_iniziale_m", [](const P& p) { return p.F.Metri(p.Punto.EstIniziale); }},
    {"nord_iniziale_m", [](const P& p) { return p.F.Metri(p.Punto.NordIniziale); }},
    {"quota_iniziale_m", [](const P& p) { return p.F.Metri(p.Punto.QuotaIniziale); }},
    {"correzione_est_comp_meno_iniziale_mm",
     [](const P& p) {
       return p.F.Mm(Correzione(p.Punto.Ruoli.Pla, p.Punto.Est, p.Punto.EstIniziale));
     }},
    {"correzione_nord_comp_meno_iniziale_mm",
     [](const P& p) {
       return p.F.Mm(Correzione(p.Punto.Ruoli.Pla, p.Punto.Nord, p.Punto.NordIniziale));
     }},
    {"correzione_quota_comp_meno_iniziale_mm",
     [](const P& p) {
       return p.F.Mm(Correzione(p.Punto.Ruoli.Alt, p.Punto.Quota, p.Punto.QuotaIniziale));
     }},
}};

// A reading of the table of observations.
struct O {
  const Risultati& R;
  std::size_t NumeroStazione;
  const RisultatoStazione& Stazione;
  const RisultatoOsservazione& Lettura;
  Forma F;

  std::string Nome(int punto) const { return NomeInCsv(NomePunto(R, punto)); }
  // The equation of one kind that the reading gave, null if it gave none.
  const Equazione* Di(int RisultatoOsservazione::*quale) const {
    const int indice = Lettura.*quale;
    return indice == kNessuno ? nullptr : &R.Equazioni[static_cast<std::size_t>(indice)];
  }
  std::string Riferimento() const {
    const Equazione* angolo = Di(&RisultatoOsservazione::Angolo);
    if (angolo == nullptr || angolo->Riferimento == kNessuno) return {};
    return Nome(Stazione.Osservazioni[static_cast<std::size_t>(angolo->Riferimento)].Punto);
  }
  std::string Tipo() const {
    if (!Presente(Lettura.Distanza)) return {};
    for (const ParolaNota& parola : kParoleTipo)
      if (parola.Valore == Lettura.TipoDist) return std::string(parola.Testo);
    return std::to_string(Lettura.TipoDist);
  }
  bool Usata() const {
    return Lettura.Angolo != kNessuno || Lettura.EqDistanza != kNessuno ||
           Lettura.Dislivello != kNessuno || Lettura.DirezioneRiferimento;
  }
};
using E = Equazione;
constexpr auto kAngolo = &RisultatoOsservazione::Angolo;
constexpr auto kDistanzaEq = &RisultatoOsservazione::EqDistanza;
constexpr auto kDislivello = &RisultatoOsservazione::Dislivello;

// Fields of an equation: its values as they are, and its residual and errors in thousandths.
template <auto Quale, auto Campo, int NumeroDecimali>
std::string Valore(const O& o) {
  const Equazione* e = o.Di(Quale);
  return e == nullptr ? "" : o.F.Numero(std::invoke(Campo, *e), NumeroDecimali);
}
template <auto Quale, auto Campo>
std::string Millesimi(const O& o) {
  static_assert(kMgonPerGon == kMmPerMetro);
  const Equazione* e = o.Di(Quale);
  const int decimali = Quale == kAngolo ? kDecimaliMgon : kDecimaliMm;
  return e == nullptr ? "" : o.F.Numero(std::invoke(Campo, *e) * kMmPerMetro, decimali);
}
template <auto Quale>
std::string GiudizioDi(const O& o) {
  const Equazione* e = o.Di(Quale);
  return e == nullptr ? "" : Giudizio(*e);
}

constexpr std::array<Colonna<O>, 39> kColonneOsservazioni{{
    {"messa_in_stazione", [](const O& o) { return std::to_string(o.NumeroStazione); }},
    {"da", [](const O& o) { return o.Nome(o.Stazione.Punto); }},
    {"a", [](const O& o) { return o.Nome(o.Lettura.Punto); }},
    {"altezza_strumento_m", [](const O& o) { return o.F.Metri(o.Stazione.AltStrum); }},
    {"altezza_segnale_m", [](const O& o) { return o.F.Metri(o.Lettura.AltSegnale); }},
    {"direzione_letta_gon", [](const O& o) { return o.F.Gon(o.Lettura.Direzione); }},
    {"zenit_letto_gon", [](const O& o) { return o.F.Gon(o.Lettura.Zenit); }},
    {"distanza_letta_m", [](const O& o) { return o.F.Metri(o.Lettura.Distanza); }},
    {"tipo_distanza", [](const O& o) { return o.Tipo(); }},
    {"usata_nel_calcolo", [](const O& o) { return SiNo(o.Usata()); }},
    {"direzione_di_riferimento", [](const O& o) { return SiNo(o.Lettura.DirezioneRiferimento); }},
    {"angolo_contato_da", [](const O& o) { return o.Riferimento(); }},
    {"angolo_osservato_ridotto_gon", Valore<kAngolo, &E::Usato, kDecimaliGon>},
    {"angolo_compensato_gon", Valore<kAngolo, &CompensatoInGiro, kDecimaliGon>},
    {"angolo_residuo_oss_meno_comp_mgon", Millesimi<kAngolo, &E::Residuo>},
    {"angolo_sqm_a_posteriori_1sigma_mgon", Millesimi<kAngolo, &E::Sqm>},
    {"angolo_w", Valore<kAngolo, &E::W, kDecimaliW>},
    {"angolo_ridondanza", Valore<kAngolo, &E::Ridondanza, kDecimaliR>},
    {"angolo_minimo_errore_rilevabile_a_priori_mgon", Millesimi<kAngolo, &MinimoErroreRilevabile>},
    {"angolo_affidabilita_esterna_in_sqm", Valore<kAngolo, &AffidabilitaEsterna, kDecimaliW>},
    {"angolo_giudizio", GiudizioDi<kAngolo>},
    {"distanza_osservata_ridotta_m", Valore<kDistanzaEq, &E::Usato, kDecimaliM>},
    {"distanza_compensata_m", Valore<kDistanzaEq, &E::Compensato, kDecimaliM>},
    {"distanza_residuo_oss_meno_comp_mm", Millesimi<kDistanzaEq, &E::Residuo>},
    {"distanza_sqm_a_posteriori_1sigma_mm", Millesimi<kDistanzaEq, &E::Sqm>},
    {"distanza_w", Valore<kDistanzaEq, &E::W, kDecimaliW>},
    {"distanza_ridondanza", Valore<kDistanzaEq, &E::Ridondanza, kDecimaliR>},
    {"distanza_minimo_errore_rilevabile_a_priori_mm",
     Millesimi<kDistanzaEq, &MinimoErroreRilevabile>},
    {"distanza_affidabilita_esterna_in_sqm", Valore<kDistanzaEq, &AffidabilitaEsterna, kDecimaliW>},
    {"distanza_giudizio", GiudizioDi<kDistanzaEq>},
    {"dislivello_osservato_ridotto_m", Valore<kDislivello, &E::Usato, kDecimaliM>},
    {"dislivello_compensato_m", Valore<kDislivello, &E::Compensato, kDecimaliM>},
    {"dislivello_residuo_oss_meno_comp_mm", Millesimi<kDislivello, &E::Residuo>},
    {"dislivello_sqm_a_posteriori_1sigma_mm", Millesimi<kDislivello, &E::Sqm>},
    {"dislivello_w", Valore<kDislivello, &E::W, kDecimaliW>},
    {"dislivello_ridondanza", Valore<kDislivello, &E::Ridondanza, kDecimaliR>},
    {"dislivello_affidabilita_esterna_in_sqm",
     Valore<kDislivello, &AffidabilitaEsterna, kDecimaliW>},
    {"dislivello_giudizio", GiudizioDi<kDislivello>},
    {"altezza_strumento_compensata_m",
     [](const O& o) { return o.F.Metri(o.Stazione.AltStrumCompensata); }},
}};

}  // namespace

void ScriviPuntiCsv(const Documento& documento, Decimali decimali, const Scrivi& scrivi) {
  const Risultati& r = documento.Esiti;
  const double fattore = FattoreEllissi(r);
  ScriviIntestazione<P>(kColonnePunti, scrivi);
  for (const RisultatoPunto& punto : r.Punti)
    ScriviRiga<P>(kColonnePunti, {punto, {decimali}, fattore}, scrivi);
}

void ScriviOsservazioniCsv(const Documento& documento, Decimali decimali, const Scrivi& scrivi) {
  const Risultati& r = documento.Esiti;
  ScriviIntestazione<O>(kColonneOsservazioni, scrivi);
  for (std::size_t i = 0; i < r.Stazioni.size(); ++i)
    for (const RisultatoOsservazione& o : r.Stazioni[i].Osservazioni)
      ScriviRiga<O>(kColonneOsservazioni, {r, i + 1, r.Stazioni[i], o, {decimali}}, scrivi);
}

}  // namespace compensa

// Field book to records. The book numbers nothing: names become indices here.

#include "host/importazione/rete_da_libretto.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <unordered_map>
#include <utility>

#include "host/base/numeri.h"
#include "host/file_rete/costruttore.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

constexpr double kParteDiGon = 1.0e8;
constexpr double kParteDiMetro = 1.0e6;
constexpr double kPartiDiScarto = 1.0e12;  // a standard deviation in arc seconds does not end

// The value with so many parts to the unit, kValoreMancante if there is none.
double Tondo(const std::optional<double>& valore, double parti) {
  if (!valore) return kValoreMancante;
  const double tondo = std::round(*valore * parti) / parti + 0.0;  // no -0
  return std::isfinite(tondo) ? tondo : *valore;
}

class Traduzione {
 public:
  Traduzione(const Libretto& libretto, Diagnostica& diagnostica)
      : L(libretto), Diario(diagnostica), InCorso(diagnostica) {}

  std::optional<Rete> Esegui(const SqmScelti& sqm, bool curvatura) {
    for (const std::string& nome : L.NomiFile) File.emplace(nome, InCorso.RegistraFile(nome));
    InCorso.DatiProgetto() = L.DatiProgetto;
    TraduciOpzioni(sqm);
    TraduciCurvatura(curvatura);
    for (const PuntoLibretto& punto : L.Punti) TraduciPunto(punto);
    for (const PostazioneLibretto& postazione : L.Postazioni) TraduciPostazione(postazione);
    return InCorso.Completa();
  }

 private:
  Posizione Dove(const Posizione& dove) const {
    const auto voce = File.find(std::string(dove.File));
    return {voce == File.end() ? std::string_view() : voce->second, dove.Riga, dove.Colonna};
  }

  template <class T>
  static Letto<T> Dato(const T& valore, const Posizione& dove) {
    return {valore, true, dove};
  }

  void TraduciOpzioni(const SqmScelti& sqm) {
    OpzioniLette& o = InCorso.Opzioni();
    o.Dove = {L.NomiFile.empty() ? std::string_view() : File.at(L.NomiFile.front()), 0, 0};
    const auto scarto = [&](const RegolaNumero& regola, double valore) -> Letto<double> {
      if (!Ammesso(regola, valore)) {
        Diario.Errore(o.Dove, GuastoNumero("opzioni", regola, NumeroBreve(valore), valore));
        return {std::nullopt, true, o.Dove};
      }
      return Dato(valore, o.Dove);
    };
    o.SqmDirezione = scarto(kSqmDirezione, Tondo(sqm.Direzione, kPartiDiScarto));
    o.SqmDistCostante = scarto(kSqmDistCostante, sqm.DistCostante);
    o.SqmDistProporzionale = scarto(kSqmDistProporzionale, sqm.DistProporzionale);
    const OpzioniLibretto& lette = L.Opzioni;
    if (lette.TipoCalcolo) o.Calcolo = Dato(*lette.TipoCalcolo, o.Dove);
    if (lette.Iterazioni)
      o.Iterazioni = Dato(std::clamp(*lette.Iterazioni, 1, kIterazioniMassime), o.Dove);
    if (lette.Cartografiche) o.Cartografiche = Dato(*lette.Cartografiche, o.Dove);
  }

  void TraduciCurvatura(bool curvatura) {
    CCalcDsOr& c = InCorso.CurvaturaRifrazione();
    c = L.Opzioni.CurvaturaRifrazione.value_or(
        CCalcDsOr{0, kCoefficientePredefinito, kRaggioPredefinito});
    if (curvatura) c.CorrCurvRifr = 1;
  }

  void TraduciPunto(const PuntoLibretto& punto) {
    PuntoLetto letto{.Nome = punto.Nome, .Dove = Dove(punto.Dove), .DoveNome = Dove(punto.Dove)};
    letto.Est = Tondo(punto.Est, kParteDiMetro);
    letto.Nord = Tondo(punto.Nord, kParteDiMetro);
    letto.Quota = Tondo(punto.Quota, kParteDiMetro);
    letto.Ruoli.Pla = punto.Ruoli.Pla.value_or(kIncognito);
    letto.Ruoli.Alt = punto.Ruoli.Alt.value_or(kIncognito);
    InCorso.AggiungiPunto(letto);
  }

  void TraduciPostazione(const PostazioneLibretto& postazione) {
    const Posizione dove = Dove(postazione.Dove);
    StazioneLetta letta;
    letta.Nome = postazione.Punto;
    letta.Dove = dove;
    letta.Punto = InCorso.TrovaPunto(postazione.Punto, dove, NomeStazione(postazione.Punto));
    const auto numero = [&](const std::optional<double>& valore, double parti) -> Letto<double> {
      if (!valore) return {};
      return Dato(Tondo(valore, parti), dove);
    };
    letta.Altezza = numero(postazione.Altezza, kParteDiMetro);
    if (postazione.Altezza && !postazione.AltezzaNota) letta.AltezzaNota = Dato(false, dove);
    letta.EccDistanza = numero(postazione.EccDistanza, kParteDiMetro);
    letta.EccDirezione = numero(postazione.EccDirezione, kParteDiGon);
    const int indice = InCorso.AggiungiStazione(std::move(letta));
    for (const BattutaLibretto& battuta : postazione.Battute)
      TraduciBattuta(postazione.Punto, battuta, indice);
  }

  void TraduciBattuta(const std::string& stazione, const BattutaLibretto& b, int indice) {
    TOssCr record{};
    record.Punto = InCorso.CercaPunto(b.Punto);
    if (record.Punto < 0)
      InCorso.PuntoSconosciuto(b.Punto, Dove(b.Dove), NomeOsservazione(stazione, b.Punto));
    record.Direzione = Tondo(b.Direzione, kParteDiGon);
    record.Zenit = Tondo(b.Zenit, kParteDiGon);
    record.AltSegnale = Tondo(b.Segnale, kParteDiMetro);
    record.Distanza = Tondo(b.Distanza, kParteDiMetro);
    if (record.Distanza == 0.0) record.Distanza = *b.Distanza;  // a distance is greater than 0
    record.TipoDist = b.Distanza ? b.TipoDist : kOrizzontale;
    InCorso.AggiungiOsservazione(indice, record, Dove(b.Dove));
  }

  const Libretto& L;
  Diagnostica& Diario;
  CostruttoreRete InCorso;
  // Names of files in the book, and where the network keeps them.
  std::unordered_map<std::string, std::string_view> File;
};

}  // namespace

std::optional<Rete> ReteDaLibretto(const Libretto& libretto, const SqmScelti& sqm, bool curvatura,
                                   Diagnostica& diagnostica) {
  return Traduzione(libretto, diagnostica).Esegui(sqm, curvatura);
}

}  // namespace compensa

// Field book to records, value by value under the rules of the network file, so that what is written
// can be read back.

#include "host/importazione/rete_da_libretto.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <unordered_map>
#include <utility>

#include "host/campi.h"
#include "host/costruttore.h"
#include "host/numeri.h"

namespace {

constexpr double kParteDiGon = 1.0e8;
constexpr double kParteDiMetro = 1.0e6;
constexpr int kIterazioniMassime = 1000;  // that a network file may ask for
constexpr double kCoefficienteRifrazione = 0.13;
constexpr double kRaggioTerra = 6378000.0;  // [m]

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

  // The value rounded and checked; kValoreMancante if there is none or a wrong one. The name of the
  // record is worded only when it is needed.
  template <class NomeRecord>
  double Numero(const std::optional<double>& valore, const RegolaNumero& regola, double parti,
                const Posizione& dove, NomeRecord nome) {
    if (!valore) return kValoreMancante;
    const double tondo = std::round(*valore * parti) / parti;
    const double numero = std::isfinite(tondo) ? tondo : *valore;
    if (Ammesso(regola, numero)) return numero == 0.0 ? 0.0 : numero;
    Diario.Errore(Dove(dove), GuastoNumero(nome(), regola, NumeroBreve(*valore), *valore));
    return kValoreMancante;
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
    o.SqmDirezione = scarto(kSqmDirezione, sqm.Direzione);
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
    c = L.Opzioni.CurvaturaRifrazione.value_or(CCalcDsOr{0, kCoefficienteRifrazione, kRaggioTerra});
    if (curvatura) c.CorrCurvRifr = 1;
  }

  void TraduciPunto(const PuntoLibretto& punto) {
    const auto nome = [&] { return NomePunto(punto.Nome); };
    PuntoLetto letto{.Nome = punto.Nome, .Dove = Dove(punto.Dove), .DoveNome = Dove(punto.Dove)};
    letto.Est = Numero(punto.Est, kEst, kParteDiMetro, punto.Dove, nome);
    letto.Nord = Numero(punto.Nord, kNord, kParteDiMetro, punto.Dove, nome);
    letto.Quota = Numero(punto.Quota, kQuota, kParteDiMetro, punto.Dove, nome);
    letto.Ruoli.Pla = punto.Ruoli.Pla.value_or(kIncognito);
    letto.Ruoli.Alt = punto.Ruoli.Alt.value_or(kIncognito);
    InCorso.AggiungiPunto(letto);
  }

  void TraduciPostazione(const PostazioneLibretto& postazione) {
    const auto nome = [&] { return NomeStazione(postazione.Punto); };
    const Posizione dove = Dove(postazione.Dove);
    StazioneLetta letta;
    letta.Nome = postazione.Punto;
    letta.Dove = dove;
    letta.Punto = InCorso.TrovaPunto(postazione.Punto, dove, nome());
    const auto numero = [&](const std::optional<double>& valore, const RegolaNumero& regola,
                            double parti) -> Letto<double> {
      if (!valore) return {};
      return Dato(Numero(valore, regola, parti, postazione.Dove, nome), dove);
    };
    letta.Altezza = numero(postazione.Altezza, kAltezza, kParteDiMetro);
    if (postazione.Altezza && !postazione.AltezzaNota) letta.AltezzaNota = Dato(false, dove);
    letta.EccDistanza = numero(postazione.EccDistanza, kEccDistanza, kParteDiMetro);
    letta.EccDirezione = numero(NelGiro(postazione.EccDirezione), kEccDirezione, kParteDiGon);
    const int indice = InCorso.AggiungiStazione(std::move(letta));
    for (const BattutaLibretto& battuta : postazione.Battute)
      TraduciBattuta(postazione.Punto, battuta, indice);
  }

  // A reading may pass the end of the circle by a little.
  static std::optional<double> NelGiro(const std::optional<double>& direzione) {
    if (!direzione || Ammesso(kDirezione, *direzione)) return direzione;
    const double resto = std::fmod(*direzione, kGiroGon);
    return resto < 0.0 ? resto + kGiroGon : resto;
  }

  void TraduciBattuta(const std::string& stazione, const BattutaLibretto& b, int indice) {
    const auto nome = [&] { return NomeOsservazione(stazione, b.Punto); };
    TOssCr record{};
    record.Punto = InCorso.CercaPunto(b.Punto);
    if (record.Punto < 0) InCorso.PuntoSconosciuto(b.Punto, Dove(b.Dove), nome());
    record.Direzione = Numero(NelGiro(b.Direzione), kDirezione, kParteDiGon, b.Dove, nome);
    record.Zenit = Numero(b.Zenit, kZenit, kParteDiGon, b.Dove, nome);
    record.AltSegnale = Numero(b.Segnale, kSegnale, kParteDiMetro, b.Dove, nome);
    record.Distanza = Numero(b.Distanza, kDistanza, kParteDiMetro, b.Dove, nome);
    record.TipoDist = b.Distanza ? b.TipoDist : kOrizzontale;
    InCorso.AggiungiOsservazione(indice, record, Dove(b.Dove));
  }

  const Libretto& L;
  Diagnostica& Diario;
  CostruttoreRete InCorso;
  std::unordered_map<std::string, std::string_view> File;  // positions of the book to those of the network
};

}  // namespace

std::optional<Rete> ReteDaLibretto(const Libretto& libretto, const SqmScelti& sqm, bool curvatura,
                                   Diagnostica& diagnostica) {
  return Traduzione(libretto, diagnostica).Esegui(sqm, curvatura);
}

// Joining books, and records of the same point.

#include "host/importazione/unione.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "host/base/numeri.h"

namespace compensa {

namespace {

// Coordinates of a book differ by as much as they were shot again; those of a fixed point are
// given.
constexpr double kDivarioApprossimate = 0.10;  // [m]
constexpr double kDivarioFissi = 0.0005;       // [m]

std::string_view NelLibretto(Libretto& libretto, std::string_view file) {
  const auto voce = std::find(libretto.NomiFile.begin(), libretto.NomiFile.end(), file);
  return voce != libretto.NomiFile.end() ? *voce : libretto.NomiFile.emplace_back(file);
}

template <class T>
void UnisciValore(std::optional<T>& unito, const std::optional<T>& altro, std::string_view nome,
                  std::string_view file, Diagnostica& diario) {
  if (!unito) {
    unito = altro;
  } else if (altro && *altro != *unito) {
    diario.Avviso({file, 0, 0}, {.Record = "opzioni",
                                 .Campo = std::string(nome),
                                 .Problema = "valore diverso da quello dei file precedenti: "
                                             "vale il primo"});
  }
}

bool Fisso(const PuntoLibretto& punto) {
  return punto.Ruoli.Pla == kFisso || punto.Ruoli.Alt == kFisso;
}

// Whether a record fixes what the first leaves free: the plan, the height.
bool FissaPianta(const PuntoLibretto& primo, const PuntoLibretto& altro) {
  return altro.Ruoli.Pla == kFisso && primo.Ruoli.Pla != kFisso;
}
bool FissaQuota(const PuntoLibretto& primo, const PuntoLibretto& altro) {
  return altro.Ruoli.Alt == kFisso && primo.Ruoli.Alt != kFisso;
}

// Largest difference of the values that both records give [m].
double Divario(const PuntoLibretto& a, const PuntoLibretto& b) {
  double divario = 0.0;
  for (const auto campo : {&PuntoLibretto::Est, &PuntoLibretto::Nord, &PuntoLibretto::Quota})
    if (a.*campo && b.*campo) divario = std::max(divario, std::abs(*(a.*campo) - *(b.*campo)));
  return divario;
}

// Completes primo with what it lacks, and with what only altro knows as fixed.
void Integra(PuntoLibretto& primo, const PuntoLibretto& altro) {
  const bool senzaPianta = !primo.Est && !primo.Nord;  // the two of them are from one source
  const bool fissaPianta = FissaPianta(primo, altro);
  const bool fissaQuota = FissaQuota(primo, altro);
  if (senzaPianta || (fissaPianta && altro.Est && altro.Nord)) {
    primo.Est = altro.Est;
    primo.Nord = altro.Nord;
  }
  if (!primo.Quota || (fissaQuota && altro.Quota)) primo.Quota = altro.Quota;
  if (!primo.Ruoli.Pla || fissaPianta) primo.Ruoli.Pla = altro.Ruoli.Pla;
  if (!primo.Ruoli.Alt || fissaQuota) primo.Ruoli.Alt = altro.Ruoli.Alt;
}

void AvvisaDivario(const PuntoLibretto& primo, const PuntoLibretto& altro, Diagnostica& diario) {
  const bool fisso = Fisso(primo) || Fisso(altro);
  const double divario = Divario(primo, altro);
  if (divario <= (fisso ? kDivarioFissi : kDivarioApprossimate)) return;
  std::string_view quali = "le prime";
  if (Fisso(altro) && !Fisso(primo)) {
    quali = "queste, di un punto fisso";
  } else if (FissaPianta(primo, altro) || FissaQuota(primo, altro)) {
    quali = "quelle dette fisse";
  }
  diario.Avviso(
      altro.Dove,
      {.Record = NomePunto(altro.Nome),
       .Problema = "coordinate diverse da quelle alla riga " + std::to_string(primo.Dove.Riga) +
                   " di " + Cita(primo.Dove.File) + ", fino a " + NumeroFisso(divario, 3) +
                   " m: valgono " + std::string(quali)});
}

}  // namespace

void Unisci(Libretto& unito, Libretto&& parte, Diagnostica& diagnostica) {
  const std::string_view file =
      parte.NomiFile.empty() ? std::string_view() : parte.NomiFile.front();
  if (unito.DatiProgetto.Nome.empty()) unito.DatiProgetto.Nome = parte.DatiProgetto.Nome;
  UnisciValore(unito.DatiProgetto.Epsg, parte.DatiProgetto.Epsg, "epsg", file, diagnostica);
  OpzioniLibretto& o = unito.Opzioni;
  const OpzioniLibretto& p = parte.Opzioni;
  UnisciValore(o.SqmDirezione, p.SqmDirezione, "sqm_direzione", file, diagnostica);
  UnisciValore(o.SqmDistCostante, p.SqmDistCostante, "sqm_distanza_costante", file, diagnostica);
  UnisciValore(o.SqmDistProporzionale, p.SqmDistProporzionale, "sqm_distanza_proporzionale", file,
               diagnostica);
  UnisciValore(o.TipoCalcolo, p.TipoCalcolo, "calcolo", file, diagnostica);
  UnisciValore(o.Iterazioni, p.Iterazioni, "iterazioni", file, diagnostica);
  UnisciValore(o.Cartografiche, p.Cartografiche, "cartografiche", file, diagnostica);
  if (!o.CurvaturaRifrazione) o.CurvaturaRifrazione = p.CurvaturaRifrazione;
  const auto sposta = [&](Posizione& dove) { dove.File = NelLibretto(unito, dove.File); };
  for (const std::string& nome : parte.NomiFile) NelLibretto(unito, nome);
  for (PuntoLibretto& punto : parte.Punti) {
    sposta(punto.Dove);
    unito.Punti.push_back(std::move(punto));
  }
  for (PostazioneLibretto& postazione : parte.Postazioni) {
    sposta(postazione.Dove);
    for (BattutaLibretto& battuta : postazione.Battute) sposta(battuta.Dove);
    unito.Postazioni.push_back(std::move(postazione));
  }
  for (const Tralasciati& t : parte.Esclusi)
    unito.Tralascia(t.Genere, t.Motivo, t.PrimaRiga, t.Quanti, NelLibretto(unito, file));
  for (std::string& nota : parte.Note) unito.Note.push_back(std::move(nota));
}

void UnisciPunti(Libretto& libretto, Diagnostica& diagnostica) {
  std::unordered_map<std::string, std::size_t> indici;
  std::vector<PuntoLibretto> unici;
  unici.reserve(libretto.Punti.size());
  for (PuntoLibretto& punto : libretto.Punti) {
    const auto [voce, nuovo] = indici.try_emplace(punto.Nome, unici.size());
    if (nuovo) {
      unici.push_back(std::move(punto));
      continue;
    }
    PuntoLibretto& primo = unici[voce->second];
    AvvisaDivario(primo, punto, diagnostica);
    if (Fisso(punto) && !Fisso(primo)) std::swap(primo, punto);
    Integra(primo, punto);
  }
  libretto.Punti = std::move(unici);
}

}  // namespace compensa

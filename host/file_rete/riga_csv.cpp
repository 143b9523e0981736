// Fields of a CSV row under the rules that all network files share.

#include "host/file_rete/riga_csv.h"

#include <cmath>

namespace compensa {

namespace {

constexpr std::string_view kNonDatoScritto = "-";

}  // namespace

Guasto GuastoCampo(std::string record, const RegolaNumero& regola, std::string_view campo,
                   const NumeroLetto& letto, std::string_view consiglioVirgola) {
  if (letto.Esito == EsitoNumero::Valido || letto.Esito == EsitoNumero::NonFinito) {
    const double valore = letto.Esito == EsitoNumero::Valido ? letto.Valore : HUGE_VAL;
    return GuastoNumero(std::move(record), regola, Cita(campo), valore);
  }
  Guasto guasto{.Record = std::move(record),
                .Campo = std::string(regola.Nome),
                .Trovato = Cita(campo),
                .Voluto = NumeroVoluto(regola)};
  if (letto.Esito == EsitoNumero::Migliaia) {
    guasto.Suggerimento = "scrivere il numero senza separatori delle migliaia";
  } else if (letto.Esito == EsitoNumero::Virgola) {
    guasto.Suggerimento = consiglioVirgola;
  }
  return guasto;
}

bool RigaCsv::Vuoto(std::size_t colonna) const {
  const std::string_view campo = Lettore.Campo(colonna);
  return campo.empty() || campo == kNonDatoScritto;
}

double RigaCsv::Numero(std::size_t colonna, const RegolaNumero& regola) {
  if (Vuoto(colonna)) return kValoreMancante;
  const std::string_view campo = Lettore.Campo(colonna);
  const NumeroLetto letto = LeggiNumero(campo, Lettore.VirgolaDecimale());
  if (letto.Esito == EsitoNumero::Valido && Ammesso(regola, letto.Valore)) return letto.Valore;
  Diario.Errore(Lettore.Dove(colonna),
                GuastoCampo(Record(), regola, campo, letto, kVoglionoIlPunto));
  return kValoreMancante;
}

int RigaCsv::Ruolo(std::size_t colonna, std::string_view nome) {
  if (Vuoto(colonna)) return kIncognito;
  const std::string_view campo = Lettore.Campo(colonna);
  const std::optional<int> valore = CercaParola(kParoleRuolo, campo);
  if (!valore) {
    Diario.Errore(Lettore.Dove(colonna),
                  GuastoParola(Record(), nome, kParoleRuolo, campo, ParoleVolute(kParoleRuolo)));
  }
  return valore.value_or(kIncognito);
}

std::optional<bool> RigaCsv::SiNo(std::size_t colonna, std::string_view nome) {
  const std::string_view campo = Lettore.Campo(colonna);
  const std::optional<int> valore = CercaParola(kParoleVero, campo);
  if (valore) return *valore != 0;
  Diario.Errore(Lettore.Dove(colonna),
                GuastoParola(Record(), nome, kParoleVero, campo, "\"si\" o \"no\""));
  return std::nullopt;
}

int RigaCsv::Tipo(std::size_t colonna, int ilVuoto) {
  const std::string_view campo = Lettore.Campo(colonna);
  const std::optional<int> codice = LeggiIntero(campo);
  if (codice && TipoNoto(*codice)) return *codice;
  if (Vuoto(colonna)) return ilVuoto;
  const std::optional<int> parola = CercaParola(kParoleTipo, campo);
  if (parola) return *parola;
  Diario.Errore(Lettore.Dove(colonna),
                GuastoParola(Record(), "tipo", kParoleTipo, campo, TipoVoluto()));
  return ilVuoto;
}

}  // namespace compensa

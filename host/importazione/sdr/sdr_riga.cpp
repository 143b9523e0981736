// Fields of an SDR record: names, numbers and codes, each with its place in messages.

#include "host/importazione/sdr/sdr_riga.h"

#include <cmath>
#include <utility>

#include "host/base/numeri.h"
#include "host/rete/campi.h"

namespace compensa {

std::string RigaSdr::Nome(const Colonne& c) {
  std::string nome = Testo(c);
  if (nome.empty()) Errore(c, "nome mancante");
  return nome;
}

std::optional<double> RigaSdr::Numero(const Colonne& c) {
  const std::string testo = Testo(c);
  if (testo.empty()) return std::nullopt;
  const NumeroLetto letto = LeggiNumero(testo);
  if (letto.Esito == EsitoNumero::Valido && std::abs(letto.Valore) < kNonDato) return letto.Valore;
  Errore(c, "numero sbagliato",
         "un numero nelle colonne da " + std::to_string(c.Da) + " a " + std::to_string(c.A),
         letto.Esito == EsitoNumero::Virgola ? "i decimali vogliono il punto" : "");
  return std::nullopt;
}

std::optional<double> RigaSdr::Metri(const Colonne& c) {
  const std::optional<double> valore = Numero(c);
  return valore ? std::optional(*valore * MetriPerUnita) : std::nullopt;
}

std::optional<double> RigaSdr::Codice(const Colonne& c, std::string_view ammessi,
                                      std::string voluto) {
  const std::string testo = Testo(c);
  if (testo.size() == 1 && ammessi.find(testo) != std::string_view::npos)
    return LeggiNumero(testo).Valore;
  Errore(c, "codice sconosciuto", std::move(voluto));
  return std::nullopt;
}

std::string RigaSdr::Record() const {
  return "riga " + Cita(Tratto(Riga.Testo, kTipo.Da, kProvenienza.A));
}

Posizione RigaSdr::Dove(const Colonne& c) const {
  const std::string_view campo = Tratto(Riga.Testo, c.Da, c.A);
  const std::size_t bianchi = campo.find_first_not_of(' ');
  const int salto = bianchi == std::string_view::npos ? 0 : static_cast<int>(bianchi);
  return {File, Riga.Numero, c.Da + salto};
}

void RigaSdr::Errore(const Colonne& c, std::string problema, std::string voluto,
                     std::string suggerimento) {
  const std::string testo = Testo(c);
  Diario.Errore(Dove(c), {.Record = Record(),
                          .Campo = std::string(c.Nome),
                          .Problema = std::move(problema),
                          .Trovato = testo.empty() ? "un campo vuoto" : Cita(testo),
                          .Voluto = std::move(voluto),
                          .Suggerimento = std::move(suggerimento)});
}

void RigaSdr::AvvisaUnaVolta(const std::string& chiave, const Colonne& c, std::string problema,
                             std::string suggerimento) {
  if (!Avvisati.insert(chiave).second) return;
  Diario.Avviso(Dove(c), {.Record = Record(),
                          .Campo = std::string(c.Nome),
                          .Problema = std::move(problema),
                          .Suggerimento = std::move(suggerimento)});
}

}  // namespace compensa

// Rules of the fields, and the messages on what breaks them.

#include "host/rete/campi.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "host/base/numeri.h"
#include "host/base/suggerimenti.h"
#include "host/base/testi.h"

namespace compensa {

namespace {

bool UgualiSenzaMaiuscole(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return Minuscola(x) == Minuscola(y); });
}

std::string Forse(std::string_view vicino) {
  return vicino.empty() ? std::string() : "forse " + Cita(vicino) + "?";
}

}  // namespace

bool Ammesso(const RegolaNumero& regola, double valore) {
  return std::abs(valore) < kNonDato && valore >= regola.Minimo && valore <= regola.Massimo &&
         !(regola.MinimoEscluso && valore == regola.Minimo);
}

std::string NumeroVoluto(const RegolaNumero& regola) {
  std::string voluto = "un numero";
  if (regola.Massimo < kNonDato) {
    voluto += " da " + NumeroBreve(regola.Minimo) + " a " + NumeroBreve(regola.Massimo);
  } else if (regola.MinimoEscluso) {
    voluto += " maggiore di " + NumeroBreve(regola.Minimo);
  } else if (regola.Minimo > -kNonDato) {
    voluto += " non negativo";
  }
  if (!regola.Unita.empty()) voluto += " [" + std::string(regola.Unita) + "]";
  return voluto;
}

Guasto GuastoNumero(Soggetto record, const RegolaNumero& regola, std::string trovato,
                    double valore) {
  Guasto guasto{.Quale = Codice::NumeroNonAmmesso,
                .Record = std::move(record),
                .Campo = std::string(regola.Nome),
                .Trovato = std::move(trovato),
                .Voluto = NumeroVoluto(regola)};
  if (!std::isfinite(valore)) {
    guasto.Problema = "numero non finito";
  } else if (std::abs(valore) >= kNonDato) {
    guasto.Problema = "numero troppo grande";
    guasto.Suggerimento = "il limite è " + NumeroBreve(kNonDato);
  } else {
    guasto.Problema = "numero fuori dai limiti";
  }
  return guasto;
}

std::optional<int> CercaParola(std::span<const ParolaNota> parole, std::string_view testo) {
  for (const ParolaNota& parola : parole) {
    if (UgualiSenzaMaiuscole(parola.Testo, testo)) return parola.Valore;
  }
  return std::nullopt;
}

std::string ParoleVolute(std::span<const ParolaNota> parole) {
  std::string elenco = "una parola tra ";
  for (const ParolaNota& parola : parole) {
    if (&parola != &parole.front()) elenco += ", ";
    elenco += Cita(parola.Testo);
  }
  return elenco;
}

bool TipoNoto(int tipo) {
  return std::find(kTipiDistanza.begin(), kTipiDistanza.end(), tipo) != kTipiDistanza.end();
}

std::string TipoVoluto() {
  std::string elenco = ParoleVolute(kParoleTipo) + " o un intero tra ";
  for (const int tipo : kTipiDistanza) {
    if (tipo != kTipiDistanza.front()) elenco += ", ";
    elenco += std::to_string(tipo);
  }
  return elenco;
}

Guasto GuastoParola(Soggetto record, std::string_view campo, std::span<const ParolaNota> parole,
                    std::string_view trovato, std::string voluto) {
  std::vector<std::string_view> testi;
  for (const ParolaNota& parola : parole) testi.push_back(parola.Testo);
  return {.Quale = Codice::ParolaSconosciuta,
          .Record = std::move(record),
          .Campo = std::string(campo),
          .Problema = "parola sconosciuta",
          .Trovato = Cita(trovato),
          .Voluto = std::move(voluto),
          .Suggerimento = Forse(PiuVicino(trovato, testi))};
}

Guasto ChiaveSconosciuta(Soggetto record, std::string_view genere, std::string_view trovata,
                         std::span<const std::string_view> note) {
  return {.Quale = Codice::ChiaveSconosciuta,
          .Record = std::move(record),
          .Problema = std::string(genere) + " " + Cita(trovata) + " sconosciuta",
          .Suggerimento = Forse(PiuVicino(trovata, note))};
}

}  // namespace compensa

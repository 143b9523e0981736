// Blocks of GSI words, and what can be wrong with each word for its place in one.

#include "host/importazione/gsi/gsi_blocco.h"

#include <algorithm>
#include <utility>

#include "host/base/numeri.h"

namespace compensa {

void BloccoGsi::Aggiungi(const ParolaGsi& parola) {
  if (Trova(parola.Indice) != nullptr) {
    Errore(parola, "parola ripetuta nello stesso blocco");
    return;
  }
  Contenute.push_back(parola);
}

const ParolaGsi* BloccoGsi::Trova(std::string_view indice) const {
  const auto voce = std::find_if(Contenute.begin(), Contenute.end(),
                                 [&](const ParolaGsi& p) { return p.Indice == indice; });
  return voce == Contenute.end() ? nullptr : &*voce;
}

bool BloccoGsi::HaUnaDi(const std::array<std::string_view, 3>& indici) const {
  return std::any_of(indici.begin(), indici.end(), [&](auto i) { return Trova(i) != nullptr; });
}

// A distance of zero is what stands there when none was measured.
bool BloccoGsi::HaMisure() const {
  const auto nonNulla = [&](std::string_view indice) {
    const ParolaGsi* p = Trova(indice);
    return p != nullptr && p->Dati.find_first_not_of("0 ") != std::string_view::npos;
  };
  return Trova(kWiDirezione) != nullptr || Trova(kWiZenit) != nullptr || nonNulla(kInclinate) ||
         nonNulla(kOrizzontali);
}

std::string BloccoGsi::Record() const {
  if (Contenute.empty() || Contenute.front().Indice != kNome) return {};
  return NomePunto(NomeGsi(Contenute.front()));
}

void BloccoGsi::Errore(const GuastoGsi& guasto) {
  GuastoGsi copia = guasto;
  copia.Cosa.Record = Record();
  Diario.Errore({File, NumeroRiga, copia.Colonna}, std::move(copia.Cosa));
}

void BloccoGsi::Errore(const ParolaGsi& parola, std::string problema, std::string voluto) {
  Errore({.Cosa = {.Campo = CampoGsi(parola.Indice),
                   .Problema = std::move(problema),
                   .Trovato = Cita(parola.Dati),
                   .Voluto = std::move(voluto)},
          .Colonna = parola.Colonna});
}

std::string BloccoGsi::Nome(std::string_view indice) {
  const ParolaGsi* parola = Trova(indice);
  std::string nome = parola == nullptr ? std::string() : NomeGsi(*parola);
  if (nome.empty()) {
    const int colonna = parola == nullptr ? Contenute.front().Colonna : parola->Colonna;
    Errore({.Cosa = {.Campo = CampoGsi(indice), .Problema = "nome mancante"}, .Colonna = colonna});
  }
  return nome;
}

std::optional<double> BloccoGsi::Valore(std::string_view indice,
                                        ValoreGsi (*leggi)(const ParolaGsi&)) {
  const ParolaGsi* parola = Trova(indice);
  if (parola == nullptr) return std::nullopt;
  const ValoreGsi letto = leggi(*parola);
  if (letto.Difetto) Errore(*letto.Difetto);
  return letto.Valore;
}

std::optional<double> BloccoGsi::Angolo(std::string_view indice, const RegolaNumero& regola) {
  const std::optional<double> gon = Valore(indice, AngoloGsi);
  if (!gon || Ammesso(regola, *gon)) return gon;
  Guasto guasto = GuastoNumero({}, Rinominata(regola, CampoGsi(indice)), NumeroBreve(*gon), *gon);
  if (indice == kWiZenit && *gon < 0.0)
    guasto.Suggerimento = "sembra un angolo verticale dall'orizzonte, non zenitale";
  Errore({.Cosa = std::move(guasto), .Colonna = Trova(indice)->Colonna});
  return std::nullopt;
}

std::optional<double> BloccoGsi::Distanza(std::string_view indice) {
  const std::optional<double> metri = Lunghezza(indice);
  if (!metri || *metri == 0.0) return std::nullopt;
  if (*metri > 0.0) return metri;
  Errore(*Trova(indice), "distanza negativa", "una distanza positiva");
  return std::nullopt;
}

Terna BloccoGsi::Coordinate(const std::array<std::string_view, 3>& indici) {
  return {Lunghezza(indici[0]), Lunghezza(indici[1]), Lunghezza(indici[2])};
}

}  // namespace compensa

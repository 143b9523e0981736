// Limits, reliability, roles: small functions of single records of the model.

#include "host/rete/grandezze.h"

#include <algorithm>
#include <cmath>

#include "host/base/testi.h"
#include "host/rete/campi.h"
#include "host/rete/geometria.h"
#include "host/rete/statistica.h"

namespace compensa {

namespace {

// Shift of w that the test finds with a risk of 0.1 % and a power of 80 %: 3.29 + 0.84.
constexpr double kDelta0 = 4.13;

}  // namespace

ClasseW ClasseDi(double w) {
  if (w > kWSospetta) return ClasseW::Sospetta;
  return w >= kWAttenzione ? ClasseW::Attenzione : ClasseW::Regolare;
}

bool Sospetta(const Equazione& equazione) { return equazione.W > kWSospetta; }

bool NonControllata(const Equazione& equazione) {
  return equazione.Ridondanza < kRidondanzaControllo;
}

std::string Giudizio(const Equazione& equazione) {
  std::string giudizio = Sospetta(equazione) ? "sospetta" : "";
  if (NonControllata(equazione))
    giudizio += giudizio.empty() ? "non controllata" : ", non controllata";
  return giudizio;
}

double MinimoErroreRilevabile(const Equazione& equazione) {
  if (!(equazione.Ridondanza > kRidondanzaNulla)) return kAssente;
  return equazione.SqmPriori * kDelta0 / std::sqrt(equazione.Ridondanza);
}

double AffidabilitaEsterna(const Equazione& equazione) {
  const double r = equazione.Ridondanza;
  if (!(r > kRidondanzaNulla)) return kAssente;
  return kDelta0 * std::sqrt(std::max(1.0 - r, 0.0) / r);
}

double CompensatoInGiro(const Equazione& equazione) {
  const double valore = equazione.Compensato;
  return equazione.Tipo == TipoEquazione::Angolo ? NelGiro(valore) : valore;
}

double Correzione(int ruolo, double compensata, double iniziale) {
  return ruolo == kCompensato ? compensata - iniziale : kAssente;
}

double FattoreEllissi(const Risultati& r) {
  return r.Planimetria.Contate() ? FattoreEllisse(kProbabilitaEllissi, r.Planimetria.Ridondanza())
                                 : kAssente;
}

int RuoloDisegno(const Risultati& r, const RisultatoPunto& p) {
  const bool altimetria = r.Altimetria.Fine != Esito::NonRichiesta;
  const bool planimetria = r.Planimetria.Fine != Esito::NonRichiesta;
  if (altimetria && (!planimetria || p.Ruoli.Pla == kNonUsato)) return p.Ruoli.Alt;
  return p.Ruoli.Pla;
}

std::string_view NomeRuolo(int ruolo) {
  if (ruolo == kCompensato) return "compensato";
  for (const ParolaNota& parola : kParoleRuolo)
    if (parola.Valore == ruolo) return parola.Testo;
  return {};
}

std::string_view NomePunto(const Risultati& r, int punto) {
  const auto i = static_cast<std::size_t>(punto);
  return punto >= 0 && i < r.Punti.size() ? std::string_view(r.Punti[i].Nome) : std::string_view();
}

Soggetto SoggettoDi(const Risultati& r, const Equazione& e) {
  const RisultatoStazione& s = r.Stazioni[static_cast<std::size_t>(e.Stazione)];
  const auto collimato = [&](int osservazione) {
    return std::string(
        NomePunto(r, s.Osservazioni[static_cast<std::size_t>(osservazione)].Punto));
  };
  const std::string stazione(NomePunto(r, s.Punto));
  if (e.Tipo == TipoEquazione::Angolo)
    return {TipoSoggetto::Angolo, {stazione, collimato(e.Riferimento), collimato(e.Osservazione)}};
  return {e.Tipo == TipoEquazione::Distanza ? TipoSoggetto::Distanza : TipoSoggetto::Dislivello,
          {stazione, collimato(e.Osservazione)}};
}

std::string TestoEquazione(const Risultati& r, const Equazione& e) {
  return SoggettoDi(r, e).Testo();
}

std::string TestoEquazioniIncognite(const RisultatoCompensazione& c) {
  return Conta(c.Equazioni, "equazione", "equazioni") + ", " +
         Conta(c.Incognite, "incognita", "incognite");
}

}  // namespace compensa

#pragma once

// What the outputs derive from the model, each in one place: the limits that observations are judged
// by, their reliability, roles and corrections of points.

#include <string>
#include <string_view>

#include "host/base/unita.h"
#include "host/base/soggetto.h"
#include "host/rete/risultati.h"

namespace compensa {

// From this |w| on an observation is worth a look, above the other it is suspect: two-sided risk of
// 5 % and of 0.1 % of a standard normal variable (W. Baarda, A Testing Procedure for Use in Geodetic
// Networks, 1968).
inline constexpr double kWAttenzione = 2.0;
inline constexpr double kWSospetta = 3.29;

// Below this redundancy number an observation counts as not controlled by the others.
inline constexpr double kRidondanzaControllo = 0.1;
inline constexpr double kRidondanzaNulla = 1e-6;  // below it w and r are only rounding

enum class ClasseW { Regolare, Attenzione, Sospetta };
ClasseW ClasseDi(double w);  // that of kAssente is Regolare

bool Sospetta(const Equazione& equazione);
bool NonControllata(const Equazione& equazione);
// "sospetta", "non controllata", both, or nothing.
std::string Giudizio(const Equazione& equazione);

// Internal reliability: the smallest gross error that the test of w would find with a risk of 0.1 %
// and a power of 80 %, in the unit of the equation (Baarda, as above); kAssente where the a-priori
// standard deviation or the redundancy is missing.
//   s * d / sqrt(r)             s a-priori standard deviation, r redundancy, d = 4.13
double MinimoErroreRilevabile(const Equazione& equazione);

// External reliability: how much that error, if it is there and not found, shifts at most a
// coordinate, a height or any function of them, in standard deviations of that function (Baarda,
// Reliability and Precision of Networks, 1976); kAssente without redundancy.
//   d * sqrt((1 - r) / r)
double AffidabilitaEsterna(const Equazione& equazione);

// The adjusted value; of an angle between 0 and a full circle.
double CompensatoInGiro(const Equazione& equazione);

// Adjusted minus given, kAssente for what was not adjusted.
double Correzione(int ruolo, double compensata, double iniziale);

// FattoreEllisse of the adjustment in plan for kProbabilitaEllissi; kAssente without redundancy.
inline constexpr double kProbabilitaEllissi = 0.95;
double FattoreEllissi(const Risultati& risultati);

// The role that a point is drawn with: the one in plan; the one in height where the plan was not to
// be adjusted or does not use the point.
int RuoloDisegno(const Risultati& risultati, const RisultatoPunto& punto);

// "fisso", "incognito", "escluso", "compensato".
std::string_view NomeRuolo(int ruolo);

// Empty for kNessuno.
std::string_view NomePunto(const Risultati& risultati, int punto);

// What an equation observes, and between which points.
Soggetto SoggettoDi(const Risultati& risultati, const Equazione& equazione);

// "angolo in "A" da "B" a "C"": what an equation observes, and between which points.
std::string TestoEquazione(const Risultati& risultati, const Equazione& equazione);

// "5 equazioni, 2 incognite".
std::string TestoEquazioniIncognite(const RisultatoCompensazione& compensazione);

}  // namespace compensa

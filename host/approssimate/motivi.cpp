// Words for how a point was found, or why it was not.

#include "host/approssimate/motivi.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

#include "host/base/diagnostica.h"
#include "host/base/numeri.h"
#include "host/base/testi.h"

namespace compensa {

namespace {

constexpr int kDecimali = 3;
constexpr int kDecimaliAmbigue = 1;
constexpr std::size_t kNominati = 3;

const std::string& Nome(const Rete& rete, int punto) {
  return rete.Nomi[static_cast<std::size_t>(punto)];
}

std::string_view TestoMetodo(Metodo metodo) {
  switch (metodo) {
    case Metodo::Polare: return "polare da ";
    case Metodo::StazioneLibera: return "stazione libera su ";
    case Metodo::InAvanti: return "intersezione in avanti da ";
    case Metodo::Inversa: return "intersezione inversa su ";
    case Metodo::Distanze: return "intersezione di distanze da ";
    case Metodo::Insieme: return "rilievo con orientamento proprio, agganciato a ";
  }
  return {};
}

// To the decimetre, where a rounding of zero must not show a sign.
std::string Coordinate(Posto p) {
  constexpr double kCifra = 0.05;
  if (std::abs(p.Est) < kCifra) p.Est = 0.0;
  if (std::abs(p.Nord) < kCifra) p.Nord = 0.0;
  return "(" + NumeroFisso(p.Est, kDecimaliAmbigue) + ", " + NumeroFisso(p.Nord, kDecimaliAmbigue) +
         ")";
}

bool DaOrientare(const Propagazione& propagazione, const Visuale& v) {
  return propagazione.Noto(v.Da) && v.ConDirezione() && !propagazione.Orientata(v.Stazione);
}

// A set-up that sees the point, and why that did not suffice.
std::string TestoVisuale(const Rete& rete, const Propagazione& propagazione, const Visuale& v) {
  std::string testo = Cita(Nome(rete, v.Da));
  if (!propagazione.Noto(v.Da)) return testo + ", che è senza coordinate";
  if (!v.ConDirezione()) return testo + ", con la sola distanza";
  if (DaOrientare(propagazione, v)) return testo + ", che non è orientata";
  return testo + (v.ConDistanza() ? "" : ", senza distanza");
}

// Known points seen from the set-ups on the point.
std::vector<int> NotiVisti(const Visuali& visuali, const Propagazione& propagazione, int punto) {
  std::vector<int> noti;
  std::unordered_set<int> visti;
  for (const int s : visuali.Postazioni[static_cast<std::size_t>(punto)]) {
    const auto i = static_cast<std::size_t>(s);
    for (int j = visuali.Inizio[i]; j < visuali.Inizio[i + 1]; ++j) {
      const int visto = visuali.Tutte[static_cast<std::size_t>(j)].A;
      if (propagazione.Noto(visto) && visti.insert(visto).second) noti.push_back(visto);
    }
  }
  return noti;
}

// Which set-ups see the point; daOrientare tells whether one of those named lacks its orientation.
std::string DaChi(const Rete& rete, const Visuali& visuali, const Propagazione& propagazione,
                  int punto, bool& daOrientare) {
  const std::vector<int>& visto = visuali.VistoDa[static_cast<std::size_t>(punto)];
  std::vector<int> stazioni;
  std::string testo;
  for (const int i : visto) {
    const Visuale& v = visuali.Tutte[static_cast<std::size_t>(i)];
    if (std::find(stazioni.begin(), stazioni.end(), v.Da) != stazioni.end()) continue;
    stazioni.push_back(v.Da);
    if (stazioni.size() > kNominati) break;
    testo += (testo.empty() ? "" : "; ") + TestoVisuale(rete, propagazione, v);
    daOrientare = daOrientare || DaOrientare(propagazione, v);
  }
  if (stazioni.empty()) return {};
  if (stazioni.size() > kNominati) return "lo vedono " + testo + "; e altre";
  return (stazioni.size() == 1 ? "lo vede solo " : "lo vedono ") + testo;
}

}  // namespace

std::string Elenco(const Rete& rete, const std::vector<int>& punti) {
  return Elenca(
      punti, [&](int punto) { return Cita(Nome(rete, punto)); }, kNominati);
}

std::string NotaPunto(const Rete& rete, int punto, const Determinazione& d) {
  std::string testo = NomePunto(Nome(rete, punto)).Testo() + ": coordinate approssimate da " +
                      std::string(TestoMetodo(d.Modo)) + Elenco(rete, d.Basi);
  const std::string scarto = "scarto massimo " + NumeroFisso(d.ScartoMassimo, kDecimali) + " m";
  if (d.Modo == Metodo::Polare && d.Media > 1)
    testo += " (media di " + std::to_string(d.Media) + ", " + scarto + ")";
  else if (d.Modo != Metodo::Polare && d.ScartoMassimo > 0.0)
    testo += " (" + scarto + ")";
  if (d.Escluse > 0)
    testo += d.Escluse == 1
                 ? "; scartata una determinazione discorde"
                 : "; scartate " + std::to_string(d.Escluse) + " determinazioni discordi";
  if (d.Discordi) testo += "; le osservazioni discordano: da controllare";
  return testo;
}

Guasto MotivoPunto(const Rete& rete, const Visuali& visuali, const Propagazione& propagazione,
                   int punto) {
  const auto p = static_cast<std::size_t>(punto);
  Guasto guasto{.Quale = Codice::PuntoNonRaggiunto, .Record = NomePunto(Nome(rete, punto))};
  const auto conMotivo = [&](std::string motivo) {
    guasto.Problema = std::move(motivo);
    return guasto;
  };
  if (rete.RuoliIniziali[p].Pla == kFisso)
    return conMotivo("fisso senza coordinate: vanno date, non si calcolano");
  const std::string inizio = "senza coordinate: ";
  const Impedimento& ostacolo = propagazione.OstacoloDi(punto);
  if (ostacolo.Ambigue)
    return conMotivo(inizio + "le distanze danno due posizioni, " +
                     Coordinate(ostacolo.Ambigue->first) + " e " +
                     Coordinate(ostacolo.Ambigue->second) +
                     ", e nulla dice quale; serve una direzione o una terza distanza");
  if (ostacolo.CerchioPericoloso)
    return conMotivo(
        inizio +
        "l'intersezione inversa cade vicino al cerchio pericoloso; serve una distanza, "
        "o la direzione verso un altro punto noto");
  bool daOrientare = false;
  const std::string chi = DaChi(rete, visuali, propagazione, punto, daOrientare);
  const std::vector<int> noti = NotiVisti(visuali, propagazione, punto);
  if (chi.empty() && visuali.Postazioni[p].empty())
    return conMotivo(inizio + "nessuna osservazione lo tocca; servono coordinate approssimate");
  std::string testo = inizio + chi;
  if (!visuali.Postazioni[p].empty()) {
    if (!chi.empty()) testo += "; ";
    testo += noti.empty() ? "dalla sua stazione non si vede nessun punto noto"
                          : "dalla sua stazione si vede di noto solo " + Elenco(rete, noti);
  }
  return conMotivo(testo + (daOrientare
                                ? "; serve una visuale da quella stazione a un punto noto"
                                : "; serve un'altra direzione o distanza da un punto noto"));
}

}  // namespace compensa

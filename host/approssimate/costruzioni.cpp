// The methods at one point: what is known around it, and each construction on that.

#include <algorithm>
#include <cmath>

#include "host/approssimate/propagazione.h"
#include "host/base/unita.h"
#include "host/rete/statistica.h"

namespace compensa {

namespace {

constexpr std::size_t kElementiMassimi = 8;  // of one kind combined with each other
constexpr double kScartoDistanze = 0.5;      // misfit that decides between two positions [m]
constexpr double kScartoDistanzeRelativo = 0.003;
constexpr double kRapportoDecisivo = 4.0;            // how much worse the refused one must fit
constexpr double kScartoInversa = 0.5 * kRadPerGon;  // a sight further off is left out [rad]
constexpr double kScartoInversaBuono = 0.02 * kRadPerGon;
constexpr double kStessoPosto = 0.05;  // [m]

double Tolleranza(double portata) {
  return std::max(kScartoDistanze, kScartoDistanzeRelativo * portata);
}

}  // namespace

// Rays from oriented set-ups, and circles around known points, measured from either end.
Propagazione::Elementi Propagazione::RaccogliElementi(int punto) const {
  Elementi e;
  const auto p = static_cast<std::size_t>(punto);
  for (const int i : V.VistoDa[p]) {
    const Visuale& v = V.Tutte[static_cast<std::size_t>(i)];
    if (!Noto(v.Da)) continue;
    if (v.ConDirezione() && Orientata(v.Stazione)) {
      const double zero = Zeri[static_cast<std::size_t>(v.Stazione)];
      e.Raggi.push_back({Strumento(v.Stazione), v.Direzione + zero, v.Da});
    }
    if (v.ConDistanza()) e.Cerchi.push_back({Luogo(v.Da), Distanza(v, v.Da), v.Da});
  }
  for (const int s : V.Postazioni[p]) {
    const auto i = static_cast<std::size_t>(s);
    for (int j = V.Inizio[i]; j < V.Inizio[i + 1]; ++j) {
      const Visuale& v = V.Tutte[static_cast<std::size_t>(j)];
      if (v.ConDistanza() && Noto(v.A)) e.Cerchi.push_back({Luogo(v.A), Distanza(v, v.A), v.A});
    }
  }
  AggiungiRaggiInversi(punto, e);
  return e;
}

// A ray gives the azimuth back to its origin: a set-up on the point that sees the origin is
// oriented by it, and its sights to other known points become rays from these.
void Propagazione::AggiungiRaggiInversi(int punto, Elementi& elementi) const {
  const std::size_t diretti = elementi.Raggi.size();
  if (diretti == 0) return;
  for (const int s : V.Postazioni[static_cast<std::size_t>(punto)]) {
    const auto i = static_cast<std::size_t>(s);
    if (BraccioFuoriCentro(R.Stazioni[i]) > 0.0) continue;
    double zero = kAssente;
    int origine = -1;
    for (int j = V.Inizio[i]; j < V.Inizio[i + 1] && origine < 0; ++j) {
      const Visuale& v = V.Tutte[static_cast<std::size_t>(j)];
      if (!v.ConDirezione()) continue;
      for (std::size_t r = 0; r < std::min(diretti, kElementiMassimi) && origine < 0; ++r) {
        if (elementi.Raggi[r].Punto != v.A) continue;
        origine = v.A;
        zero = elementi.Raggi[r].Azimut + kPi - v.Direzione;
      }
    }
    if (origine < 0) continue;
    for (int j = V.Inizio[i]; j < V.Inizio[i + 1]; ++j) {
      const Visuale& v = V.Tutte[static_cast<std::size_t>(j)];
      if (v.ConDirezione() && v.A != origine && Noto(v.A))
        elementi.Raggi.push_back({Luogo(v.A), zero + v.Direzione + kPi, v.A});
    }
  }
}

Propagazione::Esito Propagazione::Polare(int punto) const {
  Elementi e = RaccogliElementi(punto);
  const auto perPunto = [](const Cerchio& a, const Cerchio& b) { return a.Punto < b.Punto; };
  std::stable_sort(e.Cerchi.begin(), e.Cerchi.end(), perPunto);
  std::vector<Posto> luoghi;
  std::vector<int> basi;
  double portata = 0.0;
  for (const Raggio& raggio : e.Raggi) {
    const auto [primo, ultimo] = std::equal_range(e.Cerchi.begin(), e.Cerchi.end(),
                                                  Cerchio{{}, 0.0, raggio.Punto}, perPunto);
    if (primo == ultimo) continue;
    double somma = 0.0;
    for (auto c = primo; c != ultimo; ++c) somma += c->Raggio;
    const auto n = static_cast<double>(ultimo - primo);
    const std::vector<Posto> comuni =
        Interseca(raggio, Cerchio{Luogo(raggio.Punto), somma / n, raggio.Punto});
    if (comuni.empty()) continue;
    luoghi.push_back(comuni.front());
    basi.push_back(raggio.Punto);
    portata = std::max(portata, somma / n);
  }
  return Media(luoghi, basi, Metodo::Polare, portata);
}

// The known points that a set-up sees, seen from the station centre where there is a distance.
std::vector<Collimato> Propagazione::Collimati(int s) const {
  std::vector<Collimato> noti;
  const auto i = static_cast<std::size_t>(s);
  for (int j = V.Inizio[i]; j < V.Inizio[i + 1]; ++j) {
    const Visuale& v = V.Tutte[static_cast<std::size_t>(j)];
    if (!v.ConDirezione() || !Noto(v.A)) continue;
    Collimato c{.Luogo = Luogo(v.A), .Direzione = v.Direzione, .Punto = v.A};
    if (v.ConDistanza()) c.Distanza = Distanza(v, v.A);
    noti.push_back(c);
  }
  return noti;
}

Propagazione::Esito Propagazione::StazioneLibera(int punto) const {
  Determinazione migliore;
  bool trovata = false;
  for (const int s : V.Postazioni[static_cast<std::size_t>(punto)]) {
    std::vector<Posto> locali;
    std::vector<Posto> noti;
    std::vector<int> basi;
    double portata = 0.0;
    for (const Collimato& c : Collimati(s)) {
      if (!(c.Distanza > 0.0)) continue;
      const double direzione =
          RiduciAlCentro(R.Stazioni[static_cast<std::size_t>(s)], c.Direzione, c.Distanza);
      locali.push_back(c.Distanza * Versore(direzione));
      noti.push_back(c.Luogo);
      if (std::find(basi.begin(), basi.end(), c.Punto) == basi.end()) basi.push_back(c.Punto);
      portata = std::max(portata, c.Distanza);
    }
    if (basi.size() < 2) continue;
    const auto mossa = Sovrapponi(locali, noti, Tolleranza(portata));
    if (!mossa) continue;
    if (trovata && basi.size() <= migliore.Basi.size()) continue;
    trovata = true;
    migliore.Luogo = (*mossa)({});
    migliore.Modo = Metodo::StazioneLibera;
    migliore.Basi = basi;
    migliore.Escluse = mossa->Escluse;
    migliore.ScartoMassimo = mossa->ScartoMassimo;
    migliore.Discordi = mossa->ScartoMassimo > Tolleranza(portata);
  }
  if (!trovata) return std::nullopt;
  return migliore;
}

// The pair of rays that the others agree with best; of those that all agree, the best cut.
Propagazione::Esito Propagazione::InAvanti(int punto) const {
  const Elementi e = RaccogliElementi(punto);
  const std::size_t n = std::min(e.Raggi.size(), kElementiMassimi);
  Esito migliore;
  double costo = HUGE_VAL;
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = i + 1; j < n; ++j) {
      const Raggio& a = e.Raggi[i];
      const Raggio& b = e.Raggi[j];
      if (a.Punto == b.Punto) continue;
      const auto luogo = Interseca(a, b);
      if (!luogo) continue;
      const double portata = std::max(Lunghezza(*luogo - a.Origine), Lunghezza(*luogo - b.Origine));
      std::vector<double> scarti;
      double massimo = 0.0;
      for (const Raggio& r : e.Raggi) {
        const Posto lato = *luogo - r.Origine;
        scarti.push_back(std::abs(MezzoGiro(Azimut(lato) - r.Azimut)) * Lunghezza(lato));
        massimo = std::max(massimo, scarti.back());
      }
      const double provato = (Mediana(scarti) + kStessoPosto + 1e-4 * portata) / SenoTaglio(a, b);
      if (!(provato < costo)) continue;
      costo = provato;
      migliore = Determinazione{.Luogo = *luogo,
                                .Modo = Metodo::InAvanti,
                                .Basi = {a.Punto, b.Punto},
                                .ScartoMassimo = massimo,
                                .Discordi = massimo > Tolleranza(portata)};
    }
  }
  return migliore;
}

Propagazione::Esito Propagazione::Inversa(int punto) {
  Esito migliore;
  for (const int s : V.Postazioni[static_cast<std::size_t>(punto)]) {
    Esito esito = InversaDa(s, punto);
    if (esito && (!migliore || esito->Media > migliore->Media)) migliore = std::move(esito);
  }
  if (migliore) migliore->Media = 1;
  return migliore;
}

// Every triple of the known points seen, by how the others agree and how far it is from the circle
// on which the position would slide. Media is the number of sights that agree.
Propagazione::Esito Propagazione::InversaDa(int s, int punto) {
  std::vector<Collimato> t = Collimati(s);
  if (t.size() > kElementiMassimi) t.resize(kElementiMassimi);
  Esito migliore;
  double costo = HUGE_VAL;
  bool pericoloso = false;
  const auto prova = [&](const Collimato& a, const Collimato& b, const Collimato& c) {
    const auto inversa = IntersezioneInversa(a, b, c);
    if (!inversa || inversa->Amplificazione > kAmplificazioneMassima) {
      pericoloso = true;
      return;
    }
    std::vector<double> scarti;
    Determinazione d;
    for (const Collimato& x : t) {
      const Posto lato = x.Luogo - inversa->Luogo;
      const double scarto = std::abs(MezzoGiro(Azimut(lato) - x.Direzione - inversa->Orientamento));
      scarti.push_back(scarto);
      if (scarto > kScartoInversa) ++d.Escluse;
    }
    const double provato = std::max(Mediana(scarti), kScartoInversaBuono) * inversa->Amplificazione;
    if (!(provato < costo)) return;
    costo = provato;
    d.Luogo = inversa->Luogo;
    d.Modo = Metodo::Inversa;
    d.Basi = {a.Punto, b.Punto, c.Punto};
    d.Media = static_cast<int>(t.size()) - d.Escluse;
    // Of four sights two that disagree leave no telling which is wrong.
    d.Discordi = 2 * d.Escluse >= static_cast<int>(t.size());
    migliore = d;
    // From the instrument to the station centre.
    const TStaCr& stazione = R.Stazioni[static_cast<std::size_t>(s)];
    if (BraccioFuoriCentro(stazione) > 0.0)
      migliore->Luogo =
          inversa->Luogo + BraccioFuoriCentro(stazione) *
                               Versore(stazione.EccDirezione * kRadPerGon + inversa->Orientamento);
  };
  for (std::size_t i = 0; i < t.size(); ++i)
    for (std::size_t j = i + 1; j < t.size(); ++j)
      for (std::size_t k = j + 1; k < t.size(); ++k)
        if (t[i].Punto != t[j].Punto && t[j].Punto != t[k].Punto && t[i].Punto != t[k].Punto)
          prova(t[i], t[j], t[k]);
  if (!migliore && pericoloso) Ostacoli[static_cast<std::size_t>(punto)].CerchioPericoloso = true;
  return migliore;
}

// How badly a position fits what is known of the point: mean of the misfits [m].
double Propagazione::Disaccordo(Posto luogo, int punto, const Elementi& e) const {
  std::vector<double> scarti;
  for (const Cerchio& c : e.Cerchi)
    scarti.push_back(std::abs(Lunghezza(luogo - c.Centro) - c.Raggio));
  for (const Raggio& r : e.Raggi) {
    const Posto lato = luogo - r.Origine;
    scarti.push_back(std::abs(MezzoGiro(Azimut(lato) - r.Azimut)) * Lunghezza(lato));
  }
  for (const int s : V.Postazioni[static_cast<std::size_t>(punto)]) {
    std::vector<double> zeri;
    double portata = 0.0;
    for (const Collimato& c : Collimati(s)) {
      const Posto lato = c.Luogo - luogo;
      zeri.push_back(
          MezzoGiro(Azimut(lato) - RiduciAlCentro(R.Stazioni[static_cast<std::size_t>(s)],
                                                  c.Direzione, Lunghezza(lato))));
      portata = std::max(portata, Lunghezza(lato));
    }
    if (zeri.size() < 2) continue;
    for (const double z : zeri) scarti.push_back(std::abs(MezzoGiro(z - zeri.front())) * portata);
  }
  double somma = 0.0;
  for (const double x : scarti) somma += x;
  return somma / static_cast<double>(scarti.size());
}

// Two circles, or a ray and a circle around another point, meet in two places: whatever else is
// known of the point decides, and where nothing does neither is taken.
Propagazione::Esito Propagazione::Distanze(int punto) {
  const Elementi e = RaccogliElementi(punto);
  struct Candidato {
    Posto Luogo;
    double Disaccordo;
    std::vector<int> Basi;
    double Portata;
  };
  std::vector<Candidato> candidati;
  const auto aggiungi = [&](const std::vector<Posto>& comuni, int a, int b, double portata) {
    for (const Posto p : comuni) candidati.push_back({p, Disaccordo(p, punto, e), {a, b}, portata});
  };
  const std::size_t n = std::min(e.Cerchi.size(), kElementiMassimi);
  for (std::size_t i = 0; i < n; ++i) {
    const Cerchio& c = e.Cerchi[i];
    for (std::size_t j = i + 1; j < n; ++j)
      if (e.Cerchi[j].Punto != c.Punto)
        aggiungi(Interseca(c, e.Cerchi[j]), c.Punto, e.Cerchi[j].Punto,
                 std::max(c.Raggio, e.Cerchi[j].Raggio));
    for (std::size_t j = 0; j < std::min(e.Raggi.size(), kElementiMassimi); ++j)
      if (e.Raggi[j].Punto != c.Punto)
        aggiungi(Interseca(e.Raggi[j], c), c.Punto, e.Raggi[j].Punto, c.Raggio);
  }
  if (candidati.empty()) return std::nullopt;
  const auto meglio = [](const Candidato& a, const Candidato& b) {
    return a.Disaccordo < b.Disaccordo;
  };
  const Candidato scelto = *std::min_element(candidati.begin(), candidati.end(), meglio);
  const double tolleranza = Tolleranza(scelto.Portata);
  const double soglia = kRapportoDecisivo * std::max(scelto.Disaccordo, tolleranza / 4.0);
  for (const Candidato& c : candidati) {
    if (Lunghezza(c.Luogo - scelto.Luogo) < 2.0 * tolleranza || c.Disaccordo > soglia) continue;
    Ostacoli[static_cast<std::size_t>(punto)].Ambigue = {scelto.Luogo, c.Luogo};
    return std::nullopt;
  }
  return Determinazione{.Luogo = scelto.Luogo,
                        .Modo = Metodo::Distanze,
                        .Basi = scelto.Basi,
                        .ScartoMassimo = scelto.Disaccordo,
                        .Discordi = scelto.Disaccordo > tolleranza};
}

}  // namespace compensa

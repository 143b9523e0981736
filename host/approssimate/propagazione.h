#pragma once

// Positions spread over a network from the points that have them.

#include <optional>
#include <string>
#include <vector>

#include "host/approssimate/metodi.h"
#include "host/rete/modello.h"
#include "host/rete/visuali.h"

namespace compensa {

// How a point was found; the better ones first.
enum class Metodo { Polare, StazioneLibera, InAvanti, Inversa, Distanze, Insieme };
inline constexpr int kMetodiSingoli = 5;  // all but Insieme, which places many points at once

// What is known of a point's position and where it comes from.
struct Determinazione {
  Posto Luogo;
  Metodo Modo = Metodo::Polare;
  std::vector<int> Basi;       // points that it rests on
  int Media = 1;               // positions averaged
  int Escluse = 0;             // positions or sights left out because they contradict the others
  double ScartoMassimo = 0.0;  // from the mean [m]
  bool Discordi = false;       // two positions far from each other: no telling which is wrong
};

// Why the constructions failed at a point.
struct Impedimento {
  bool CerchioPericoloso = false;
  std::optional<std::pair<Posto, Posto>> Ambigue;  // both fit
};

// Works in rounds: every round applies the best method that still finds something, on what the
// rounds before have found, so that the order of the points does not matter. A point is tried again
// only when something near it has changed: the whole takes about as long as reading the network.
class Propagazione {
 public:
  Propagazione(const Rete& rete, const Visuali& visuali, const Riduzioni& riduzioni);

  // Takes a point as known.
  void Conosci(int punto, Posto luogo);
  // Finds all that can be found.
  void Esegui();

  bool Noto(int punto) const { return Noti[static_cast<std::size_t>(punto)] != 0; }
  Posto Luogo(int punto) const { return Luoghi[static_cast<std::size_t>(punto)]; }
  bool Orientata(int stazione) const {
    const double zero = Zeri[static_cast<std::size_t>(stazione)];
    return Presente(zero);
  }
  // Of the points found, by index of the point.
  const std::vector<std::optional<Determinazione>>& Trovati() const { return Esiti; }
  const Impedimento& OstacoloDi(int punto) const {
    return Ostacoli[static_cast<std::size_t>(punto)];
  }

 private:
  struct Elementi {
    std::vector<Raggio> Raggi;
    std::vector<Cerchio> Cerchi;
  };
  using Esito = std::optional<Determinazione>;

  // propagazione.cpp
  void EseguiGiri();
  void OrientaInAttesa();
  void OrientaStazione(int s);
  bool Applica(Metodo metodo);
  Esito Prova(Metodo metodo, int punto);
  void Fissa(int punto, Determinazione determinazione);
  void Sveglia(int punto);
  void SvegliaStazione(int s);
  double Distanza(const Visuale& v, int noto) const;
  Posto Strumento(int s) const;

  // costruzioni.cpp
  Elementi RaccogliElementi(int punto) const;
  void AggiungiRaggiInversi(int punto, Elementi& elementi) const;
  Esito Polare(int punto) const;
  Esito StazioneLibera(int punto) const;
  Esito InAvanti(int punto) const;
  Esito Inversa(int punto);
  Esito InversaDa(int s, int punto);
  Esito Distanze(int punto);
  double Disaccordo(Posto luogo, int punto, const Elementi& e) const;
  std::vector<Collimato> Collimati(int s) const;

  // insiemi.cpp
  bool AgganciaInsiemi();
  bool Aggancia(int stazione, std::vector<char>& provate);
  void Azzera();

  const Rete& R;
  const Visuali& V;
  const Riduzioni& K;
  std::vector<char> Noti;
  std::vector<Posto> Luoghi;
  std::vector<double> Zeri;  // azimuth of the zero of each set-up's circle; kAssente = unknown
  std::vector<std::optional<Determinazione>> Esiti;
  std::vector<Impedimento> Ostacoli;
  std::vector<int> DaOrientare;
  std::vector<char> InCoda;  // bits: waiting for a method; set-ups: below
  std::vector<char> StazioneInCoda;
  std::vector<int> Attesa[kMetodiSingoli];    // points to try, by method
  std::vector<int> Toccati, StazioniToccate;  // to be forgotten by Azzera
  const Propagazione* Generale = nullptr;     // of a local set: the network that it belongs to
  std::vector<Propagazione> Locale;           // one at most, made when it is needed
};

// Positions that lie together and those that do not, reduced to one.
std::optional<Determinazione> Media(const std::vector<Posto>& luoghi, const std::vector<int>& basi,
                                    Metodo metodo, double portata);

}  // namespace compensa

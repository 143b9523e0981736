// A wrong code changes no number, but a map puts the network elsewhere. Coordinates belong to the
// zone of a code if
//   |E - E0| < half width of the zone, E0 its false easting     Nord between the parallels of Italy
// Of zones with the same false easting the coordinates do not tell which it is.

#include "host/giudizio/avvertimenti/epsg.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "host/base/numeri.h"
#include "host/base/testi.h"
#include "host/rete/sistema_riferimento.h"
#include "host/rete/zone.h"

namespace compensa {

namespace {

constexpr int kDecimali = 3;

class Esame {
 public:
  explicit Esame(const Rete& rete) : R(rete) {
    for (std::size_t i = 0; i < R.Punti.size(); ++i)
      if (R.RuoliIniziali[i].Pla != kNonUsato && Assegnato(R.Punti[i].Est) &&
          Assegnato(R.Punti[i].Nord))
        Presenti.push_back(i);
  }
  Rilievi Esegui(int codice);

 private:
  // How many points lie in the zone, or with Est and Nord exchanged would.
  std::size_t Quanti(const Zona& zona, bool scambiati = false) const {
    return static_cast<std::size_t>(std::ranges::count_if(Presenti, [&](std::size_t i) {
      const TCoorCr& p = R.Punti[i];
      return scambiati ? Dentro(zona, p.Nord, p.Est) : Dentro(zona, p.Est, p.Nord);
    }));
  }
  bool Maggioranza(std::size_t quanti) const { return 2 * quanti > Presenti.size(); }
  void EsaminaZona(const PianoNoto& piano, const std::string& nome);
  void Segnala(Codice quale, std::string problema, std::string_view forse) {
    Posizione dove = R.DoveOpzioni.Epsg;
    if (dove.File.empty() && !R.NomiFile.empty()) dove.File = R.NomiFile.front();
    Trovati.push_back({dove,
                       {.Quale = quale,
                        .Record = {TipoSoggetto::Opzione, {"progetto"}},
                        .Campo = "epsg",
                        .Problema = std::move(problema),
                        .Suggerimento = std::string(forse)}});
  }

  const Rete& R;
  std::vector<std::size_t> Presenti;  // points in plan that have coordinates
  Rilievi Trovati;
};

void Esame::EsaminaZona(const PianoNoto& piano, const std::string& nome) {
  const auto ha = [&](const Zona& zona) { return zona.FalsoEst == piano.FalsoEst; };
  const auto propria = std::ranges::find_if(kZone, ha);
  if (Presenti.empty() || propria == kZone.end() || Maggioranza(Quanti(*propria))) return;
  const auto altra =
      std::ranges::find_if(kZone, [&](const Zona& zona) { return Maggioranza(Quanti(zona)); });
  const TCoorCr& p = R.Punti[Presenti.front()];
  const std::string esempio = " (" + NomePunto(R.Nomi[Presenti.front()]).Testo() + ": est " +
                              NumeroFisso(p.Est, kDecimali) + ", nord " +
                              NumeroFisso(p.Nord, kDecimali) + ")";
  const std::string inizio = nome + " ha un falso Est di " + NumeroFisso(piano.FalsoEst, 0) + " m";
  if (altra != kZone.end()) {
    Segnala(Codice::EpsgDiscorde,
            inizio + ", ma le coordinate sono " + std::string(altra->Dove) + esempio,
            altra->Rimedio);
    return;
  }
  // Said already of the options where they apply to map coordinates.
  const bool scambiati =
      std::ranges::any_of(kZone, [&](const Zona& zona) { return Maggioranza(Quanti(zona, true)); });
  if (R.Opzioni.Cartografiche != 0 || scambiati) return;
  Segnala(Codice::EpsgDiscorde,
          inizio + ", ma con esso le coordinate della rete non stanno in Italia" + esempio,
          "se sono locali va tolto epsg; se sono state accorciate, vanno scritte intere");
}

Rilievi Esame::Esegui(int codice) {
  const std::string nome = std::to_string(codice);
  switch (GenereDi(codice)) {
    case GenereCodice::NonPiano:
      Segnala(Codice::EpsgNonPiano,
              nome +
                  " non è il codice di un sistema di coordinate piane: nel GeoPackage la rete "
                  "resta senza sistema di riferimento",
              "serve il codice delle coordinate piane, per esempio 3003 o 7791");
      break;
    case GenereCodice::Ignoto:
      Segnala(Codice::EpsgIgnoto,
              nome +
                  " non è tra i codici che il programma conosce: passa ai risultati com'è, e "
                  "non si può confrontare con le coordinate",
              "controllare che sia quello giusto");
      break;
    case GenereCodice::Piano:
      const PianoNoto piano = PianoDi(codice);
      EsaminaZona(piano, nome + " (" + std::string(piano.Nome) + ")");
      break;
  }
  return std::move(Trovati);
}

}  // namespace

Rilievi ControllaEpsg(const Rete& rete) {
  const std::optional<int> codice = rete.DatiProgetto.Epsg;
  return codice ? Esame(rete).Esegui(*codice) : Rilievi{};
}

}  // namespace compensa

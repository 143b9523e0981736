// Values of a field book under the rules of the network file.

#include "host/importazione/valori_libretto.h"

#include <cmath>
#include <optional>

#include "host/base/numeri.h"
#include "host/importazione/angoli.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

// The name of the record is worded only when it is needed.
template <class NomeRecord>
void Controlla(std::optional<double>& valore, const RegolaNumero& regola, const Posizione& dove,
               NomeRecord nome, Diagnostica& diario) {
  if (!valore || Ammesso(regola, *valore)) return;
  diario.Errore(dove, GuastoNumero(nome(), regola, NumeroBreve(*valore), *valore));
  valore.reset();
}

void PortaNelGiro(std::optional<double>& direzione) {
  if (!direzione || !std::isfinite(*direzione) || Ammesso(kDirezione, *direzione)) return;
  direzione = NelGiro(*direzione);
}

}  // namespace

int ControllaValori(Libretto& libretto, Diagnostica& diagnostica) {
  int nulle = 0;
  for (PuntoLibretto& p : libretto.Punti) {
    const auto nome = [&] { return NomePunto(p.Nome); };
    Controlla(p.Est, kEst, p.Dove, nome, diagnostica);
    Controlla(p.Nord, kNord, p.Dove, nome, diagnostica);
    Controlla(p.Quota, kQuota, p.Dove, nome, diagnostica);
  }
  for (PostazioneLibretto& s : libretto.Postazioni) {
    const auto nomeStazione = [&] { return NomeStazione(s.Punto); };
    PortaNelGiro(s.EccDirezione);
    Controlla(s.Altezza, kAltezza, s.Dove, nomeStazione, diagnostica);
    Controlla(s.EccDistanza, kEccDistanza, s.Dove, nomeStazione, diagnostica);
    Controlla(s.EccDirezione, kEccDirezione, s.Dove, nomeStazione, diagnostica);
    for (BattutaLibretto& b : s.Battute) {
      const auto nome = [&] { return NomeOsservazione(s.Punto, b.Punto); };
      if (b.Distanza == 0.0) {
        b.Distanza.reset();
        ++nulle;
      }
      PortaNelGiro(b.Direzione);
      Controlla(b.Direzione, kDirezione, b.Dove, nome, diagnostica);
      Controlla(b.Zenit, kZenit, b.Dove, nome, diagnostica);
      Controlla(b.Segnale, kSegnale, b.Dove, nome, diagnostica);
      Controlla(b.Distanza, kDistanza, b.Dove, nome, diagnostica);
    }
  }
  return nulle;
}

}  // namespace compensa

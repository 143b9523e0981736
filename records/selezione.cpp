// The selection of records, and the roles of points that cannot take part.

#include "records/selezione.h"

#include <vector>

namespace kzt5cmrg {

namespace {

const TCoorCr& Di(VistaPunti punti, int punto) { return punti[static_cast<std::size_t>(punto)]; }

bool UsatoPla(VistaPunti punti, int punto) {
  return Esiste(punti, punto) && Di(punti, punto).TipoPla != kNonUsato;
}

bool UsatoAlt(VistaPunti punti, int punto) {
  return Esiste(punti, punto) && Di(punti, punto).TipoAlt != kNonUsato;
}

// For every point the station points that observe it, in one array cut at `Inizio`, and whether a
// station stands on it. `ammessa(stazione, osservazione)` chooses the observations that count.
class Osservatori {
 public:
  template <class Ammessa>
  Osservatori(VistaStazioni stazioni, int nPunti, Ammessa ammessa)
      : Occupato(static_cast<std::size_t>(nPunti), false),
        Inizio(static_cast<std::size_t>(nPunti) + 1, 0) {
    const auto visita = [&](auto azione) {
      for (const TStaCr& s : stazioni)
        if (s.Punto >= 0 && s.Punto < nPunti)
          for (const TOssCr& o : s.Osservazioni)
            if (o.Punto >= 0 && o.Punto < nPunti && ammessa(s, o))
              azione(s.Punto, static_cast<std::size_t>(o.Punto));
    };
    for (const TStaCr& s : stazioni)
      if (s.Punto >= 0 && s.Punto < nPunti) Occupato[static_cast<std::size_t>(s.Punto)] = true;
    visita([&](int, std::size_t t) { ++Inizio[t + 1]; });
    for (std::size_t i = 1; i < Inizio.size(); ++i) Inizio[i] += Inizio[i - 1];
    Da.resize(Inizio.back());
    std::vector<std::size_t> libero(Inizio.begin(), Inizio.end() - 1);
    visita([&](int p, std::size_t t) { Da[libero[t]++] = p; });
  }

  // Whether the point carries a station or is observed from a point whose role is in use.
  template <class Usato>
  bool Legato(int punto, Usato usato) const {
    const auto i = static_cast<std::size_t>(punto);
    if (Occupato[i]) return true;
    for (std::size_t k = Inizio[i]; k < Inizio[i + 1]; ++k)
      if (usato(Da[k])) return true;
    return false;
  }

 private:
  std::vector<bool> Occupato;
  std::vector<std::size_t> Inizio;
  std::vector<int> Da;
};

}  // namespace

bool StazionePla(VistaPunti punti, const TStaCr& stazione) {
  return UsatoPla(punti, stazione.Punto);
}

bool StazioneAlt(VistaPunti punti, const TStaCr& stazione) {
  return UsatoAlt(punti, stazione.Punto) && Dato(stazione.AltStrum);
}

bool LetturaPla(VistaPunti punti, const TOssCr& osservazione) {
  return Dato(osservazione.Direzione) && UsatoPla(punti, osservazione.Punto);
}

bool LetturaElencata(VistaPunti punti, const TOssCr& osservazione) {
  return !Mancante(osservazione.Direzione) && UsatoPla(punti, osservazione.Punto);
}

bool DistanzaPla(VistaPunti punti, const TOssCr& osservazione) {
  return Dato(osservazione.Distanza) && Dato(osservazione.Zenit) &&
         UsatoPla(punti, osservazione.Punto);
}

bool FuoriCentro(const TOssCr& osservazione) {
  return TipoFuoriCentro(osservazione.TipoDist) && !Mancante(osservazione.Direzione);
}

bool NonRiducibile(const TOssCr& osservazione) {
  return FuoriCentro(osservazione) && !(osservazione.Direzione > 0.0);
}

bool ZenitAlt(VistaPunti punti, const TStaCr& stazione, const TOssCr& osservazione,
              double& distanzaQuadra) {
  if (!Dato(osservazione.Distanza) || !Dato(osservazione.Zenit) || !Dato(osservazione.AltSegnale) ||
      !UsatoAlt(punti, osservazione.Punto))
    return false;
  const TCoorCr& p = Di(punti, stazione.Punto);
  const TCoorCr& t = Di(punti, osservazione.Punto);
  if (Mancante(p.Est) || Mancante(p.Nord) || Mancante(t.Est) || Mancante(t.Nord)) return false;
  const double dE = p.Est - t.Est;
  const double dN = p.Nord - t.Nord;
  distanzaQuadra = dE * dE + dN * dN;
  return distanzaQuadra != 0.0;
}

std::optional<std::size_t> Riferimento(VistaPunti punti, const TStaCr& stazione) {
  if (!StazionePla(punti, stazione)) return std::nullopt;
  for (std::size_t r = 0; r + 1 < stazione.Osservazioni.size(); ++r)
    if (LetturaPla(punti, stazione.Osservazioni[r])) return r;
  return std::nullopt;
}

void AbbassaRuoliPla(std::span<TCoorCr> punti, VistaStazioni stazioni) {
  const Osservatori osservatori(stazioni, static_cast<int>(punti.size()),
                                [](const TStaCr&, const TOssCr& o) {
                                  return Dato(o.Direzione) || (Dato(o.Zenit) && Dato(o.Distanza));
                                });
  const auto usato = [&](int p) { return UsatoPla(punti, p); };
  for (std::size_t i = 0; i < punti.size(); ++i) {
    TCoorCr& p = punti[i];
    if (Mancante(p.Est) || Mancante(p.Nord)) p.TipoPla = kNonUsato;
    if (p.TipoPla == kFisso && !osservatori.Legato(static_cast<int>(i), usato))
      p.TipoPla = kNonUsato;
  }
}

void AbbassaRuoliAlt(std::span<TCoorCr> punti, VistaStazioni stazioni) {
  const Osservatori osservatori(stazioni, static_cast<int>(punti.size()),
                                [](const TStaCr& s, const TOssCr& o) {
                                  return Dato(s.AltStrum) && Dato(o.Zenit) && Dato(o.AltSegnale);
                                });
  const auto usato = [&](int p) { return UsatoAlt(punti, p); };
  for (std::size_t i = 0; i < punti.size(); ++i) {
    TCoorCr& p = punti[i];
    if (Mancante(p.Quota)) p.TipoAlt = kNonUsato;
    if (p.TipoAlt == kFisso && !osservatori.Legato(static_cast<int>(i), usato))
      p.TipoAlt = kNonUsato;
  }
}

Dimensioni DimensioniPla(VistaPunti punti, VistaStazioni stazioni) {
  Dimensioni n;
  for (const TCoorCr& p : punti) n.Incognite += p.TipoPla == kIncognito ? 2 : 0;
  for (const TStaCr& s : stazioni) {
    PerOgniAngolo(punti, s, [&](std::size_t, std::size_t) { ++n.Equazioni; });
    PerOgniDistanza(punti, s, [&](std::size_t) { ++n.Equazioni; });
  }
  return n;
}

Dimensioni DimensioniAlt(VistaPunti punti, VistaStazioni stazioni) {
  Dimensioni n;
  for (const TCoorCr& p : punti) n.Incognite += p.TipoAlt == kIncognito ? 1 : 0;
  for (const TStaCr& s : stazioni) {
    n.Incognite += StrumentoIncognito(punti, s) ? 1 : 0;
    PerOgniDislivello(punti, s, [&](std::size_t, double) { ++n.Equazioni; });
  }
  return n;
}

}  // namespace kzt5cmrg

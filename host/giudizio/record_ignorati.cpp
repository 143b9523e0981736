// Warnings on records that an adjustment passes over. What an observation needs:
//   angle     a reading at both of two sights, station and targets in the plan
//   distance  distance and zenith angle, station and target in the plan; reduced from an eccentric
//             instrument also a reading above 0, without which the station's further distances fail
//   height    zenith angle, distance, target and instrument height, both ends in the heights and with
//             different plane coordinates
// A record that never aimed at an adjustment is no cause for a warning: directions alone are plain,
// and heights count only where a zenith angle was read.

#include "host/giudizio/record_ignorati.h"

#include <cmath>
#include <string>
#include <utility>

#include "host/giudizio/controlli/rilievi.h"
#include "host/rete/campi.h"
#include "records/selezione.h"

namespace compensa {

namespace {

constexpr double kCoincidenti = 1e-4;  // ends of a sight nearer than this give no equation [m]

void Aggiungi(std::string& motivi, std::string_view motivo) {
  if (!motivi.empty()) motivi += "; ";
  motivi += motivo;
}

class Esame {
 public:
  Esame(const Rete& rete, Diagnostica& diagnostica)
      : R(rete),
        Diario(diagnostica),
        Pla((rete.Opzioni.TipoCalcolo & kCalcoloPlanimetria) != 0),
        Alt((rete.Opzioni.TipoCalcolo & kCalcoloAltimetria) != 0),
        Verticali(ZenitVerticali(rete)) {}

  void EsaminaPunto(std::size_t i);
  void EsaminaStazione(std::size_t s);

 private:
  // One set-up under examination.
  struct Postazione {
    const TStaCr& Record;
    bool InPianta;       // takes part in the adjustment in plan
    bool InQuota;        // and in that of the heights
    bool DistanzeFerme;  // a distance before could not be reduced to the centre
  };

  const TCoorCr& Punto(int i) const { return R.Punti[static_cast<std::size_t>(i)]; }
  const std::string& Nome(int i) const { return R.Nomi[static_cast<std::size_t>(i)]; }
  static bool ConPianta(const TCoorCr& p) { return Assegnato(p.Est) && Assegnato(p.Nord); }

  bool DirezioneUsata(const TOssCr& o) const {
    return Assegnato(o.Direzione) && Punto(o.Punto).TipoPla != kNonUsato;
  }
  bool QuotaUsata(const TStaCr& stazione, const TOssCr& o) const {
    return Assegnato(o.Zenit) && Assegnato(o.Distanza) && Assegnato(o.AltSegnale) &&
           Punto(o.Punto).TipoAlt != kNonUsato && Lunghezza(stazione, o) > 0.0;
  }
  // Plane distance of the ends [m]; 0 if it is not known.
  double Lunghezza(const TStaCr& stazione, const TOssCr& o) const;

  std::string MotiviStazione(const TStaCr& stazione, const Postazione& p) const;
  std::string UnicaDirezione(const TStaCr& stazione) const;
  std::string MotiviOsservazione(Postazione& p, const TOssCr& o) const;
  void MotiviPianta(Postazione& p, const TOssCr& o, std::string& motivi) const;
  void MotiviQuota(const Postazione& p, const TOssCr& o, std::string& motivi) const;
  void MotiviZenit(const Postazione& p, const TOssCr& o, std::string& motivi) const;

  const Rete& R;
  Diagnostica& Diario;
  bool Pla;
  bool Alt;
  bool Verticali;  // the zenith angles of the network, which is told once
};

void Esame::EsaminaPunto(std::size_t i) {
  const TCoorCr& punto = R.Punti[i];
  std::string motivi;
  if (Pla && punto.TipoPla == kNonUsato && R.RuoliIniziali[i].Pla != kNonUsato) {
    motivi = ConPianta(punto)
                 ? "escluso dalla planimetria: punto fisso che nessuna osservazione usa"
                 : "escluso dalla planimetria: mancano le coordinate est e nord";
  }
  if (Alt && punto.TipoAlt == kNonUsato && R.RuoliIniziali[i].Alt != kNonUsato) {
    Aggiungi(motivi, Assegnato(punto.Quota)
                         ? "escluso dall'altimetria: punto fisso che nessuna visuale in quota usa"
                         : "escluso dall'altimetria: manca la quota, almeno approssimata");
  }
  if (motivi.empty()) return;
  Diario.Avviso(R.PosizioniPunti[i],
                {.Record = NomePunto(R.Nomi[i]), .Problema = std::move(motivi)});
}

double Esame::Lunghezza(const TStaCr& stazione, const TOssCr& o) const {
  const TCoorCr& p = Punto(stazione.Punto);
  const TCoorCr& t = Punto(o.Punto);
  return ConPianta(p) && ConPianta(t) ? std::hypot(t.Est - p.Est, t.Nord - p.Nord) : 0.0;
}

// The only reading that could have entered an angle, if there is exactly one.
std::string Esame::UnicaDirezione(const TStaCr& stazione) const {
  const TOssCr* unica = nullptr;
  for (const TOssCr& o : stazione.Osservazioni) {
    if (!DirezioneUsata(o)) continue;
    if (unica != nullptr) return {};
    unica = &o;
  }
  return unica == nullptr ? std::string()
                          : "una sola direzione utilizzabile (verso " + Cita(Nome(unica->Punto)) +
                                "), che non forma angoli";
}

std::string Esame::MotiviStazione(const TStaCr& stazione, const Postazione& p) const {
  if (stazione.Osservazioni.empty()) return "non ha osservazioni";
  bool inPianta = false;
  bool conZenit = false;
  bool inQuota = false;
  for (const TOssCr& o : stazione.Osservazioni) {
    inPianta = inPianta || Assegnato(o.Direzione) || Assegnato(o.Distanza);
    conZenit = conZenit || Assegnato(o.Zenit);
    inQuota = inQuota || QuotaUsata(stazione, o);
  }
  std::string motivi;
  if (Pla && !p.InPianta && inPianta) {
    motivi = "il punto è escluso dalla planimetria: le sue osservazioni non vi entrano";
  }
  if (p.InPianta) motivi = UnicaDirezione(stazione);
  if (!Alt) return motivi;
  if (Punto(stazione.Punto).TipoAlt == kNonUsato) {
    if (inQuota && Assegnato(stazione.AltStrum)) {
      Aggiungi(motivi,
               "il punto è escluso dall'altimetria: le sue visuali in quota non vi entrano");
    }
  } else if (!Assegnato(stazione.AltStrum)) {
    if (conZenit) {
      Aggiungi(motivi,
               "manca l'altezza dello strumento: le sue visuali non entrano nell'altimetria");
    }
  } else if (stazione.AltStrumNota == kAltezzaIncognita && !inQuota) {
    Aggiungi(motivi,
             "l'altezza dello strumento è incognita ma nessuna visuale in quota la determina: "
             "l'altimetria non si può calcolare");
  }
  return motivi;
}

void Esame::MotiviPianta(Postazione& p, const TOssCr& o, std::string& motivi) const {
  const bool distanza = Assegnato(o.Distanza) && Assegnato(o.Zenit);
  if (Assegnato(o.Distanza) && !distanza) {
    Aggiungi(motivi, "distanza senza zenit: non entra nel calcolo");
  }
  if (Punto(o.Punto).TipoPla == kNonUsato) {
    if (Assegnato(o.Direzione) || distanza) {
      Aggiungi(motivi, "il punto osservato è escluso dalla planimetria");
    }
    return;
  }
  if ((Assegnato(o.Direzione) || distanza) && Lunghezza(p.Record, o) < kCoincidenti) {
    Aggiungi(motivi, "i due punti hanno le stesse coordinate: non dà equazioni utili");
  }
  if (distanza && p.DistanzeFerme) {
    Aggiungi(motivi,
             "distanza non usata: segue, nella stazione, una che non si può ridurre in centro");
  } else if (distanza && NonRiducibile(o)) {
    p.DistanzeFerme = true;
    Aggiungi(motivi,
             "distanza fuori centro con direzione 0: non si può ridurre in centro, e non si usano "
             "né questa né quelle che seguono nella stazione");
  } else if (distanza && TipoFuoriCentro(o.TipoDist) && !Assegnato(o.Direzione) &&
             p.Record.EccDistanza > 0.0) {
    Aggiungi(motivi, "distanza fuori centro senza direzione: usata senza riduzione in centro");
  }
}

void Esame::MotiviQuota(const Postazione& p, const TOssCr& o, std::string& motivi) const {
  if (!Assegnato(o.Zenit)) {
    if (!Pla && Assegnato(o.Distanza) && Assegnato(o.AltSegnale)) {
      Aggiungi(motivi, "visuale in quota senza zenit: non entra nell'altimetria");
    }
    return;
  }
  const bool completa = Assegnato(o.Distanza) && Assegnato(o.AltSegnale);
  if (Punto(o.Punto).TipoAlt == kNonUsato) {
    if (completa) Aggiungi(motivi, "il punto osservato è escluso dall'altimetria");
  } else if (!completa) {
    std::string manca = Assegnato(o.AltSegnale) ? "" : "altezza del segnale";
    if (!Assegnato(o.Distanza)) manca += manca.empty() ? "distanza" : " né distanza";
    Aggiungi(motivi, "zenit senza " + manca + ": non entra nell'altimetria");
  } else if (!ConPianta(Punto(p.Record.Punto)) || !ConPianta(Punto(o.Punto))) {
    Aggiungi(motivi, "mancano le coordinate est e nord di un estremo: non entra nell'altimetria");
  } else if (Lunghezza(p.Record, o) == 0.0 && !p.InPianta) {
    Aggiungi(motivi, "i due punti hanno le stesse coordinate: non entra nell'altimetria");
  }
}

// Zenith angles that enter an equation but were hardly read that way.
void Esame::MotiviZenit(const Postazione& p, const TOssCr& o, std::string& motivi) const {
  const bool pianta = p.InPianta && Assegnato(o.Distanza) && Inclinata(o.TipoDist) &&
                      Punto(o.Punto).TipoPla != kNonUsato;
  if (Verticali || !Assegnato(o.Zenit) || !(pianta || (p.InQuota && QuotaUsata(p.Record, o))))
    return;
  if (o.Zenit == 0.0 || o.Zenit == kMezzoGiroGon || o.Zenit == kGiroGon) {
    Aggiungi(motivi, "zenit di una visuale verticale: se non è stato letto va tolto");
  } else if (o.Zenit > kMezzoGiroGon) {
    Aggiungi(motivi, "zenit oltre 200 gon: la lettura va riportata al cerchio sinistro");
  }
}

std::string Esame::MotiviOsservazione(Postazione& p, const TOssCr& o) const {
  if (!Assegnato(o.Direzione) && !Assegnato(o.Zenit) && !Assegnato(o.Distanza)) {
    return "non ha né direzione né zenit né distanza";
  }
  std::string motivi;
  if (p.InPianta) MotiviPianta(p, o, motivi);
  if (p.InQuota) MotiviQuota(p, o, motivi);
  MotiviZenit(p, o, motivi);
  return motivi;
}

void Esame::EsaminaStazione(std::size_t s) {
  const TStaCr& stazione = R.Stazioni[s];
  const TCoorCr& punto = Punto(stazione.Punto);
  Postazione p{.Record = stazione,
               .InPianta = Pla && punto.TipoPla != kNonUsato,
               .InQuota = Alt && punto.TipoAlt != kNonUsato && Assegnato(stazione.AltStrum),
               .DistanzeFerme = false};
  std::string motivi = MotiviStazione(stazione, p);
  const std::string& nome = Nome(stazione.Punto);
  if (!motivi.empty()) {
    Diario.Avviso(R.PosizioniStazioni[s],
                  {.Record = NomeStazione(nome), .Problema = std::move(motivi)});
  }
  for (std::size_t i = 0; i < stazione.Osservazioni.size(); ++i) {
    const TOssCr& o = stazione.Osservazioni[i];
    motivi = MotiviOsservazione(p, o);
    if (motivi.empty()) continue;
    Diario.Avviso(R.PosizioniOsservazioni[s][i],
                  {.Record = NomeOsservazione(nome, Nome(o.Punto)), .Problema = std::move(motivi)});
  }
}

}  // namespace

void AvvisaRecordIgnorati(const Rete& rete, Diagnostica& diagnostica) {
  Esame esame(rete, diagnostica);
  for (std::size_t i = 0; i < rete.Punti.size(); ++i) esame.EsaminaPunto(i);
  for (std::size_t s = 0; s < rete.Stazioni.size(); ++s) esame.EsaminaStazione(s);
}

}  // namespace compensa

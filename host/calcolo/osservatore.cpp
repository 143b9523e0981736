// Watching a run: the texts that mark its stages, and what is taken at each. Only texts of width 0
// are compared, and the name of a point always has a width: no name can be taken for a stage.

#include "host/calcolo/osservatore.h"

#include <cmath>
#include <utility>

#include "records/costanti.h"
#include "resources/catalogo.h"

namespace compensa {

namespace {

constexpr unsigned kNessunTesto = 0;

struct Traguardo {
  std::string_view Contenuto;
  unsigned Id;
};

template <class... Id>
constexpr std::array<Traguardo, sizeof...(Id)> Traguardi(Id... id) {
  return {Traguardo{TestoCatalogo(id), id}...};
}

constexpr auto kTraguardi = Traguardi(
    kTitoloPlanimetria, kTitoloAltimetria, kPuntoNumero, kNonDeterminabilePla, kNonDeterminabileAlt,
    kNumeroIncognite, kNumeroOsservazioni, kIterazione, kAggiornamentoMedio, kStazioniFisse,
    kPiuIncognite, kConvergente, kNonConvergente, kEllissi, kStatistica, kZenitCorretti);

unsigned TraguardoDi(TTestoCr testo) {
  for (const Traguardo& traguardo : kTraguardi)
    if (traguardo.Contenuto == testo) return traguardo.Id;
  return kNessunTesto;
}

void NonDetermina(RisultatoCompensazione& compensazione, int punto) {
  compensazione.Fine = Esito::NonDeterminabile;
  compensazione.PuntiNonDeterminabili.push_back(punto);
}

}  // namespace

OsservatoreCalcolo::OsservatoreCalcolo(CFileOutTmp& rapporto, Risultati& risultati,
                                       Avanzamento avanzamento)
    : Uscita(rapporto), R(risultati), Avanza(std::move(avanzamento)) {}

void OsservatoreCalcolo::Osserva(const CalcCmpRigVelid1& calcolo) {
  Calcolo = &calcolo;
  const auto conta = [](RisultatoCompensazione& c, int fissi, int incogniti, int nonUsati) {
    c.Fissi = fissi;
    c.Incogniti = incogniti;
    c.NonUsati = nonUsati;
  };
  conta(R.Planimetria, calcolo.nFissiPla, calcolo.nIncPla, calcolo.nNonUsatiPla);
  conta(R.Altimetria, calcolo.nFissiAlt, calcolo.nIncAlt, calcolo.nNonUsatiAlt);
}

void OsservatoreCalcolo::ScriviStringa(TTestoCr testo, int larghezza) {
  Uscita.ScriviStringa(testo, larghezza);
  if (larghezza == 0) Riconosci(testo);
}

void OsservatoreCalcolo::ScriviStringaLn(TTestoCr testo, int larghezza) {
  Uscita.ScriviStringaLn(testo, larghezza);
  if (larghezza == 0) Riconosci(testo);
}

void OsservatoreCalcolo::ScriviNumero(double valore, int larghezza, int decimali) {
  Uscita.ScriviNumero(valore, larghezza, decimali);
  Nota(valore);
}

void OsservatoreCalcolo::ScriviNumeroLn(double valore, int larghezza, int decimali) {
  Uscita.ScriviNumeroLn(valore, larghezza, decimali);
  Nota(valore);
}

// A section that ends without another word is one whose normal matrix could not be factored: an
// adjustment begins as that and becomes what its texts say.
void OsservatoreCalcolo::Riconosci(TTestoCr testo) {
  Ultimo = TraguardoDi(testo);
  switch (Ultimo) {
    case kTitoloPlanimetria: return IniziaCompensazione(R.Planimetria);
    case kTitoloAltimetria: return IniziaCompensazione(R.Altimetria);
    case kNonDeterminabilePla: return NonDetermina(R.Planimetria, PuntoNominato);
    case kNonDeterminabileAlt: return NonDetermina(R.Altimetria, PuntoNominato);
    case kIterazione: return IniziaIterazione();
    case kAggiornamentoMedio: return CompletaIterazione();
    case kStazioniFisse: Corrente->Fine = Esito::PuntiFissiInsufficienti; break;
    case kPiuIncognite: Corrente->Fine = Esito::PiuIncognite; break;
    case kConvergente: Corrente->Fine = Esito::Riuscita; break;
    case kNonConvergente: Corrente->Fine = Esito::NonConvergente; break;
    case kEllissi: EllissiStampate = true; break;
    case kStatistica: return IstantaneaPla();
    case kZenitCorretti: Corrente->Fine = Esito::Riuscita; return IstantaneaAlt();
    default: break;
  }
}

// Takes a number that follows a text which says what it is.
void OsservatoreCalcolo::Nota(double valore) {
  switch (std::exchange(Ultimo, kNessunTesto)) {
    case kPuntoNumero: PuntoNominato = static_cast<int>(valore) - 1; break;
    case kNumeroIncognite: Corrente->Incognite = static_cast<int>(valore); break;
    case kNumeroOsservazioni: Corrente->Equazioni = static_cast<int>(valore); break;
    default: break;
  }
}

void OsservatoreCalcolo::IniziaCompensazione(RisultatoCompensazione& compensazione) {
  Corrente = &compensazione;
  compensazione.Fine = Esito::NormaleSingolare;
}

void OsservatoreCalcolo::IniziaIterazione() {
  Posti.clear();
  for (const TCoorCr& p : *Calcolo->Punti) Posti.push_back({p.Est, p.Nord});
  Iterazione iterazione;
  iterazione.Numero = static_cast<int>(Corrente->Iterazioni.size()) + 1;
  Corrente->Iterazioni.push_back(iterazione);
  if (Avanza) Avanza(iterazione);
}

void OsservatoreCalcolo::CompletaIterazione() {
  Iterazione& iterazione = Corrente->Iterazioni.back();
  const int incognite = 2 * Calcolo->nIncPla;
  double somma = 0.0;
  double massima = 0.0;
  for (int c = 0; c < incognite; ++c) {
    const double correzione = std::abs(Calcolo->Soluzione[static_cast<std::size_t>(c)]);
    somma += correzione;
    if (!(correzione > massima)) continue;
    massima = correzione;
    iterazione.PuntoMassimo = Calcolo->PuntoDaIncPla[static_cast<std::size_t>(c / 2)];
  }
  iterazione.CorrezioneMedia = incognite == 0 ? 0.0 : somma / incognite / kKmPerMetro;
  iterazione.CorrezioneMassima = massima / kKmPerMetro;
  if (Avanza) Avanza(iterazione);
}

void OsservatoreCalcolo::Concludi(bool determinabile) {
  R.FalsoEst = Calcolo->FalsoEst / kKmPerMetro;
  for (std::size_t i = 0; i < R.Punti.size(); ++i) ConcludiPunto(i, determinabile);
}

// A run that stops at the check leaves the coordinates in kilometres, but has not changed them:
// those of the file stand.
void OsservatoreCalcolo::ConcludiPunto(std::size_t i, bool determinabile) {
  const TCoorCr& p = (*Calcolo->Punti)[i];
  RisultatoPunto& punto = R.Punti[i];
  punto.Ruoli = {p.TipoPla, p.TipoAlt};
  if (!determinabile) return;
  punto.Est = ValoreDato(p.Est);
  punto.Nord = ValoreDato(p.Nord);
  punto.Quota = ValoreDato(p.Quota);
  if (EllissiStampate && p.TipoPla == kCompensato) punto.EllTeta = p.EllTeta;
}

}  // namespace compensa

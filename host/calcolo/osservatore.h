#pragma once

// Watches a run of the module and fills the result model. It stands between the job and the report
// writer: every call goes on to the writer unchanged, and the texts of the report tell how far the
// run has come. That is the moment to read the job's state: both adjustments use the same buffers,
// so what the plan has left must be taken before the heights are begun.

#include <array>
#include <functional>
#include <vector>

#include "host/rete/risultati.h"
#include "kzt5cmrg.h"

namespace compensa {

// Called when an iteration begins (without corrections yet) and when it is completed.
using Avanzamento = std::function<void(const Iterazione&)>;

class OsservatoreCalcolo final : public CFileOutTmp {
 public:
  // Fills `risultati`, which is to hold the network as given. Both must outlive the observer.
  OsservatoreCalcolo(CFileOutTmp& rapporto, Risultati& risultati, Avanzamento avanzamento = {});

  // The job to be watched, which was constructed with this observer as its writer; before its
  // Esegui.
  void Osserva(const CalcCmpRigVelid1& calcolo);

  // After the job's Esegui, with what it returned.
  void Concludi(bool determinabile);

  void ScriviStringa(TTestoCr testo, int larghezza) override;
  void ScriviStringaLn(TTestoCr testo, int larghezza) override;
  void ScriviNumero(double valore, int larghezza, int decimali) override;
  void ScriviNumeroLn(double valore, int larghezza, int decimali) override;
  void ScriviSpazi(int n) override { Uscita.ScriviSpazi(n); }
  void SaltaRiga(int n) override { Uscita.SaltaRiga(n); }

 private:
  // Plane coordinates that the equations of the current iteration were built on [km].
  struct Posto {
    double Est, Nord;
  };
  // What a line of sight measures on those coordinates.
  struct Visuale {
    double Azimut;    // [rad]
    double Distanza;  // [km]
  };

  // osservatore.cpp
  void Riconosci(TTestoCr testo);
  void Nota(double valore);
  void IniziaCompensazione(RisultatoCompensazione& compensazione);
  void IniziaIterazione();
  void CompletaIterazione();
  void ConcludiPunto(std::size_t i, bool determinabile);

  // osservatore_istantanee.cpp
  void IstantaneaPla();
  void IstantaneaAlt();
  void PrendiSigmaZero(double unita);
  void PrendiPuntiPla();
  void PrendiOrientamenti();
  void PrendiAngoli(int& riga);
  void PrendiDistanze(int& riga);
  void PrendiPuntiAlt();
  void PrendiDislivelli(int& riga);
  void Controlla(int righe) const;
  Visuale Misura(int stazione, int collimato) const;
  int Aggiungi(Equazione equazione, int riga, double scala);
  double Cofattore(int i, int j) const;
  double CofattoreRiga(int riga) const;
  double Sqm(int incognita) const;
  bool ConCofattori() const { return Corrente->Ridondanza() > 0; }

  CFileOutTmp& Uscita;
  Risultati& R;
  Avanzamento Avanza;
  const CalcCmpRigVelid1* Calcolo = nullptr;

  RisultatoCompensazione* Corrente = nullptr;  // whose section the report is in
  unsigned Ultimo = 0;                         // the text that the next number belongs to
  int PuntoNominato = kNessuno;
  bool EllissiStampate = false;
  std::vector<Posto> Posti;
};

}  // namespace compensa

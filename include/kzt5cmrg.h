#pragma once

// The public interface of the module: rigorous least-squares adjustment of a control network in
// plan and in height, with its quality figures and a complete report in Italian.
//
//   TOpzCr opzioni{...};  std::vector<TCoorCr> punti;  std::vector<TStaCr> stazioni;
//   TVettCr<TCoorCr> vp(punti);  TVettCr<TStaCr> vs(stazioni);
//   CalcCmpRigVelid1 calcolo(&opzioni, &vp, &vs, &curvaturaRifrazione, &rapporto);
//   bool determinabile = calcolo.Esegui();

#include <cstddef>
#include <memory>
#include <string>

#include "kzt5cmrg/esportazione.h"
#include "kzt5cmrg/record.h"
#include "kzt5cmrg/righe.h"
#include "kzt5cmrg/scrittore.h"

namespace compensa {
class OsservatoreCalcolo;
}
namespace kzt5cmrg {
class SistemaSparso;
}

// One adjustment job: construct it over the host's records, call Esegui once, destroy it. The
// results are in the point records and in the report. Inside a run plane coordinates are in
// kilometres and angles in radians; heights stay in metres, readings in gon.
class KZT5CMRG_API CalcCmpRigVelid1 {
 public:
  // Classifies the points, numbers the unknowns and allocates every buffer of the job; writes
  // nothing to the report. The five objects stay the host's and must outlive the job, unchanged by
  // the host. Throws std::bad_alloc when memory cannot be had; roles may then be changed already.
  CalcCmpRigVelid1(const TOpzCr* opzioni, const TVettCr<TCoorCr>* punti,
                   const TVettCr<TStaCr>* stazioni, const CCalcDsOr* dsOr, CFileOutTmp* out);
  ~CalcCmpRigVelid1();
  CalcCmpRigVelid1(const CalcCmpRigVelid1&) = delete;
  CalcCmpRigVelid1& operator=(const CalcCmpRigVelid1&) = delete;

  // Runs the whole job once. False only when some unknown point cannot be determined: the report
  // then ends with one message for each, and the coordinates are left in kilometres. An adjustment
  // that fails or does not converge says so in the report and leaves the result true. Throws
  // std::bad_alloc when memory cannot be had, and what the report writer throws: the coordinates
  // may then be in kilometres.
  bool Esegui();

 private:
  friend class compensa::
      OsservatoreCalcolo;      // reads the state of a run for programs that need more
  friend struct ProvaCalcolo;  // tests

  // A job that holds no dense matrix above `ordineDenso` unknowns.
  CalcCmpRigVelid1(const TOpzCr* opzioni, const TVettCr<TCoorCr>* punti,
                   const TVettCr<TStaCr>* stazioni, const CCalcDsOr* dsOr, CFileOutTmp* out,
                   int ordineDenso);

  // --- what belongs to the host
  const TOpzCr* Opzioni;
  const TVettCr<TCoorCr>* Punti;
  const TVettCr<TStaCr>* Stazioni;
  const CCalcDsOr* DsOr;
  CFileOutTmp* Out;

  // --- state and constants of the run
  int DistanzePresenti = 0;      // kSenzaDistanze or kConDistanze
  int StatoCalcolo = 0;          // kSolutoreRiuscito or kSolutoreFallito
  double SigmaZeroPriori = 0.0;  // a-priori standard deviation of unit weight
  double FattoreKm = 0.0;        // metres to kilometres
  double FattoreRad = 0.0;       // gon to radians
  double RaggioMedio = 0.0;  // mean radius of curvature, last point projected [km]; 0 = none yet
  double FalsoEst = 0.0;     // false easting of the recognised zone [km]; 0 = none

  // --- equations, a row each: sum of Coeff x unknown = TermineNoto - residual
  std::unique_ptr<double[]> TermineNoto;  // [MaxEquaz] observed minus computed
  std::unique_ptr<double[]> Soluzione;    // [DimNormale] corrections [km], or heights [m]
  std::unique_ptr<double[]> Residui;      // [MaxEquaz] known term minus adjusted value
  kzt5cmrg::Righe<double> Normale;        // [DimNormale x DimNormale] N, its factor, its inverse;
                                          // null when Sparso holds them
  double SigmaZero = 0.0;                 // a-posteriori standard deviation, unit weight
  std::unique_ptr<double[]> Peso;         // [MaxEquaz] weight of each equation
  kzt5cmrg::Righe<double> Coeff;          // [MaxEquaz x 6]
  kzt5cmrg::Righe<int> Indici;            // [MaxEquaz x 6] its unknowns; negative = empty

  // --- numbering of the unknowns
  std::unique_ptr<int[]> IncPla;  // point -> unknown point k (unknowns 2k, 2k + 1); -1 = none
  std::unique_ptr<int[]> IncAlt;  // point -> unknown height; -1 = none
  std::unique_ptr<int[]> PuntoDaIncPla;  // unknown point k -> point
  std::unique_ptr<int[]> PuntoDaIncAlt;  // unknown height -> point
  int nPunti = 0;
  int nIncPla = 0, nFissiPla = 0, nNonUsatiPla = 0;
  int nIncAlt = 0, nFissiAlt = 0, nNonUsatiAlt = 0;
  int DimNormale = 0;  // order of Normale
  int MaxEquaz = 0;    // rows of the equation buffers

  // --- large networks
  bool Denso = true;  // whether Normale holds the normal matrix, or Sparso
  std::unique_ptr<kzt5cmrg::SistemaSparso>
      Sparso;  // of the adjustment at work; null before it is solved

  TCoorCr& Punto(int indice) const { return (*Punti)[static_cast<std::size_t>(indice)]; }

  // frame/ingresso.cpp
  bool Input();
  void ScriviPuntiApprossimati();
  void ConvertiInChilometri();
  void RiconosciZona();

  // frame/controllo.cpp
  void ContaVariabili();
  void ClassificaPla();
  void ClassificaAlt();
  bool Controllo();
  void ScriviNonDeterminabile(int punto, unsigned testo);

  // lsq/equazioni.cpp
  void AzzeraEquazioni();
  void MinQua2(int equazioni, int incognite);
  void FormaNoti(int equazioni, double* noti) const;
  void CalcolaResidui(int equazioni, int incognite, const double* opposta);

  // lsq/normale.cpp: the normal matrix, dense or sparse
  bool FattorizzaNormale(int equazioni, int incognite);
  void RisolviNormale(double* b, int incognite);
  void InvertiNormale(int equazioni, int incognite);
  double Cofattore(int i, int j) const;
  void FormaNormale(int equazioni, int incognite);

  // lsq/cholesky.cpp
  static int Tchol(double** a, int ordine);
  static int Sols(double** a, double* b, int ordine);

  // lsq/inversa.cpp
  static int Inver(double** a, int ordine);
  static void Simmetrizza(double** a, int ordine);

  // planimetry/planimetria.cpp
  bool CalcCompPla();
  void ScriviCoordinateCompensate();
  void ScriviEllissi();

  // planimetry/iterazione.cpp
  bool IterazPla(int iterazione, int& equazioni, bool& convergente);
  bool PuntiFissiMancanti();
  double CorreggiCoordinate(bool& convergente);

  // planimetry/equazioni_angoli.cpp
  void CreaEquazAng(int& equazione);
  void CreaEquazDir(int& equazione);
  int Eoss(int riga, int stazione, int riferimento, double direzioneRif, int collimato,
           double& direzione);
  void AvvisaDistanza(int stazione, int collimato, double distanza);
  void AvvisaAnomalia(int stazione, int collimato, double termineNoto, double direzione);

  // planimetry/equazioni_distanze.cpp
  void CreaEquazDis(int& equazione);
  int Eodis(int riga, int stazione, int collimato, double distanza);
  double DistanzaOrizzontale(const TOssCr& osservazione) const;
  void AvvisaNonRiducibile(int stazione, int collimato, double distanza);

  // altimetry/altimetria.cpp
  bool CalcCompZe();
  int CreaEquazZe(int& strumenti);
  void ScriviQuoteCompensate();

  // altimetry/equazioni_zenit.cpp
  static int ExZet(double distanza, double eccDistanza, double eccDirezione, double altStrum,
                   double direzione, double zenit, double& altRidotta);
  int Eoze(int riga, int stazione, int collimato, int strumento, double zenit, int altStrumNota,
           double altStrum, double altSegnale, double distanza, int tipoDist);

  // altimetry/risultati_altimetria.cpp
  void RisultatiAlt(const double* w);
  void ScriviStazioneAlt(const TStaCr& stazione, int& strumento);
  void ScriviZenit(const TOssCr& osservazione, double residuo, double w);

  // projection/geometria.cpp
  static int Anomalia(double e1, double n1, double e2, double n2, double& azimut, double& distanza);
  int ExCentro(int stazione, int collimato, double eccDistanza, double eccDirezione,
               double& direzione) const;
  static int Angl2(double gon, double& gradi, double& primi, double& secondi);

  // projection/riduzioni.cpp
  void RiduciDirezione(const TStaCr& stazione, int collimato, double soglia, double& direzione);
  double DistanzaAlCentro(const TStaCr& stazione, double direzione, double distanza) const;
  double DistanzaEllissoide(int stazione, int collimato, double distanza);

  // projection/gauss_boaga.cpp
  int Gauss(int primo, int secondo, double& scala, double& correzione);
  static int Geogra(double nord, double daMeridiano, double& latitudine, double& longitudine);
  static double Arcm(double fi, double cosFi, double sinFi, double c, double alfa, double beta,
                     double gamma);

  // projection/modulo_deformazione.cpp
  int Modulo();

  // reports/orientamento.cpp
  int Orienta();
  double OrientamentoMedio(const TStaCr& stazione) const;

  // reports/conteggi.cpp
  void ScriviConteggi(int nonUsati, int fissi, int incogniti);
  void ScriviDimensioni(int incognite, int equazioni);
  bool Indeterminato(int incognite, int equazioni);

  // reports/statistica.cpp
  int Statistica();

  // reports/baarda.cpp
  int Baarda(const double* peso, double** coeff, int** indici, double** inversa, int equazioni,
             const double* residui, double* w, double sigmaZero) const;
  double CofattoreOsservazione(const double* coeff, const int* indici, double** inversa) const;

  // reports/ellisse.cpp
  int SubEllisse(double varEst, double varNord, double covarianza, double& asseMag, double& asseMin,
                 double& teta) const;

  // reports/risultati_planimetria.cpp
  void RisultatiPla(const double* w);
  void ScriviStazionePla(const TStaCr& stazione, double orientamento);
  void ScriviDirezioni(const TStaCr& stazione, double orientamento, const double* w,
                       int& equazione);
  void ScriviDirezione(const TStaCr& stazione, const TOssCr& osservazione, double orientamento,
                       bool riferimento, double w);

  // reports/risultati_distanze.cpp
  void ScriviDistanze();
  void ScriviDistanza(const TStaCr& stazione, const TOssCr& osservazione);
  double DistanzaMostrata(const TStaCr& stazione, const TOssCr& osservazione) const;

  // reports/risultati_finali.cpp
  void RisultatiFin();
  void ScriviRigaGeografica(int punto);
  void ScriviSessagesimali(double gon, bool ultimo);

  // resources/caricatore.cpp
  static std::string CaricaTesto(unsigned id);
  static std::string EtichettaRuolo(int ruolo);

  // resources/scrittura.cpp
  void ScriviTesto(unsigned id);
  void ScriviTestoLn(unsigned id);
  void ScriviConteggio(unsigned id, int conteggio);
  void ScriviTitolo(unsigned riga, unsigned titolo);
  void ScriviSezione(unsigned titolo);
  void ScriviRigaPunto(int punto);
};

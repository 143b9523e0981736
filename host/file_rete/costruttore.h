#pragma once

// Puts a network together from what the readers of TOML and CSV find: names become indices, each
// record is checked against the others, and what the run needs but the file lacks is named.

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/base/diagnostica.h"
#include "host/rete/modello.h"

namespace compensa {

// A value of the file and its place. Present without a value: it was wrong, and the message is out.
template <class T>
struct Letto {
  std::optional<T> Valore;
  bool Presente = false;
  Posizione Dove;
};

struct PuntoLetto {
  std::string_view Nome = {};  // UTF-8
  Posizione Dove;              // of the record
  Posizione DoveNome;
  double Est = kValoreMancante;
  double Nord = kValoreMancante;
  double Quota = kValoreMancante;
  RuoliPunto Ruoli = {};
};

// A set-up; what CSV rows of the same set-up repeat is merged into it.
struct StazioneLetta {
  std::string Nome;  // of the station point, as written
  int Punto = -1;    // its index, -1 = unknown
  Posizione Dove;
  Letto<double> Altezza;
  Letto<bool> AltezzaNota;
  Letto<double> EccDistanza;
  Letto<double> EccDirezione;
};

struct OpzioniLette {
  Posizione Dove;  // of the table, or of the first line if there is none
  Letto<int> Calcolo;
  Letto<double> SqmDirezione;
  Letto<double> SqmDistCostante;
  Letto<double> SqmDistProporzionale;
  Letto<int> Iterazioni;
  Letto<bool> Cartografiche;
};

class CostruttoreRete {
 public:
  // With impronte the network carries the fingerprints of its files.
  explicit CostruttoreRete(Diagnostica& diagnostica, bool impronte = false)
      : Diario(diagnostica), ConImpronte(impronte) {}

  // Name of a file for positions; stays valid as long as the network.
  std::string_view RegistraFile(std::string nome);
  // Where the fingerprint of the next file goes, null if it is not wanted; valid until the next one.
  std::string* NuovaImpronta() { return ConImpronte ? &InCorso.Impronte.emplace_back() : nullptr; }

  Progetto& DatiProgetto() { return InCorso.DatiProgetto; }
  OpzioniLette& Opzioni() { return Lette; }
  CCalcDsOr& CurvaturaRifrazione() { return InCorso.CurvaturaRifrazione; }
  PosizioniOpzioni& DoveOpzioni() { return InCorso.DoveOpzioni; }

  void AggiungiPunto(const PuntoLetto& punto);
  // Some points could not be read: names that are not found are no fault of who uses them.
  void PuntiIncompleti() { MancanoPunti = true; }

  // Index of the point, -1 and a message if there is none.
  int TrovaPunto(std::string_view nome, const Posizione& dove, const std::string& record,
                 std::string_view campo = "punto");
  // The two halves of it, for a caller that words the record only when it is needed.
  int CercaPunto(std::string_view nome) const;
  void PuntoSconosciuto(std::string_view nome, const Posizione& dove, std::string record,
                        std::string_view campo = "punto");

  // Index of the new set-up.
  int AggiungiStazione(StazioneLetta stazione);
  StazioneLetta& Stazione(int indice) { return Postazioni[static_cast<std::size_t>(indice)]; }
  void AggiungiOsservazione(int stazione, const TOssCr& osservazione, const Posizione& dove);

  // Last checks. Nothing if there was any error, in this network or already in the diagnostics.
  std::optional<Rete> Completa();

 private:
  struct HashNome {
    using is_transparent = void;
    std::size_t operator()(std::string_view nome) const {
      return std::hash<std::string_view>{}(nome);
    }
  };

  bool NomeAmmesso(const PuntoLetto& punto, std::string_view nome, std::string& ansi);
  void CompletaOpzioni();
  void ControllaSqm();
  void SqmMancante(const Posizione& dove, std::string_view campo, std::string_view di,
                   std::string_view unita, bool nullo);
  void CompletaStazione(const StazioneLetta& letta);
  void Collega();

  Diagnostica& Diario;
  Rete InCorso;
  OpzioniLette Lette;
  std::vector<StazioneLetta> Postazioni;
  std::unordered_map<std::string, int, HashNome, std::equal_to<>> IndiceDaNome;
  std::size_t Suggeriti = 0;  // unknown names for which a near one was looked for
  bool ConImpronte;
  bool MancanoPunti = false;
  bool UsaDirezioni = false;  // some observation carries a direction
  bool UsaDistanze = false;   // some observation carries a distance with its zenith angle
};

}  // namespace compensa

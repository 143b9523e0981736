#pragma once

// A block of GSI words: all that one line, or one part of a long line, says of one point.

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/diagnostica.h"
#include "host/importazione/gsi/gsi_parole.h"
#include "host/importazione/raccolta.h"
#include "host/rete/campi.h"

namespace compensa {

inline constexpr std::string_view kNome = "11";
inline constexpr std::string_view kNomeStazione = "16";
inline constexpr std::string_view kWiDirezione = "21";
inline constexpr std::string_view kWiZenit = "22";
inline constexpr std::string_view kInclinate = "31";
inline constexpr std::string_view kOrizzontali = "32";
inline constexpr std::string_view kDislivello = "33";
inline constexpr std::string_view kCodice = "41";
inline constexpr std::string_view kCodiceStazione = "42";
inline constexpr std::string_view kCodiceAltezza = "43";
inline constexpr std::string_view kWiSegnale = "87";
inline constexpr std::string_view kWiAltezza = "88";
inline constexpr std::array<std::string_view, 3> kCoordPunto = {"81", "82", "83"};
inline constexpr std::array<std::string_view, 3> kCoordStazione = {"84", "85", "86"};

// The words of the current block, each index once. Values are read on request; a wrong one is empty
// and an error is out.
class BloccoGsi {
 public:
  BloccoGsi(std::string_view file, Diagnostica& diagnostica) : File(file), Diario(diagnostica) {}

  void Svuota(int riga) {
    Contenute.clear();
    NumeroRiga = riga;
  }
  void Aggiungi(const ParolaGsi& parola);

  int Riga() const { return NumeroRiga; }
  const std::vector<ParolaGsi>& Parole() const { return Contenute; }
  const ParolaGsi* Trova(std::string_view indice) const;  // null if the block lacks it
  bool HaUnaDi(const std::array<std::string_view, 3>& indici) const;
  // Whether the block has an angle or a distance that is not zero.
  bool HaMisure() const;

  // Of the first word, or of the one given.
  Posizione Dove() const { return Dove(Contenute.front()); }
  Posizione Dove(const ParolaGsi& parola) const { return {File, NumeroRiga, parola.Colonna}; }
  // The block as messages name it: its point, where it begins with one.
  std::string Record() const;
  void Errore(const GuastoGsi& guasto);
  void Errore(const ParolaGsi& parola, std::string problema, std::string voluto = {});

  // The block must have a name: it is an error if it does not, and then the name is empty.
  std::string Nome(std::string_view indice);
  std::optional<double> Lunghezza(std::string_view indice) { return Valore(indice, LunghezzaGsi); }
  std::optional<double> Millimetri(std::string_view indice) {
    return Valore(indice, MillimetriGsi);
  }
  std::optional<double> Angolo(std::string_view indice, const RegolaNumero& regola);
  std::optional<double> Distanza(std::string_view indice);  // empty also if it is zero
  Terna Coordinate(const std::array<std::string_view, 3>& indici);

 private:
  std::optional<double> Valore(std::string_view indice, ValoreGsi (*leggi)(const ParolaGsi&));

  std::string_view File;
  Diagnostica& Diario;
  std::vector<ParolaGsi> Contenute;
  int NumeroRiga = 0;
};

}  // namespace compensa

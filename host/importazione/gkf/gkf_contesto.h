#pragma once

// What the parts of the .gkf reader share: places, attributes, counted messages, and the standard
// deviations of the whole file.

#include <cstdint>
#include <map>
#include <optional>
#include <pugixml.hpp>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/importazione/lettore.h"
#include "host/rete/campi.h"

namespace compensa {

namespace gkf {

// Lines and columns of a text. Going on along one line is cheap, so that also a file of a single
// line is read in one pass.
class Luoghi {
 public:
  Luoghi(std::string_view testo, std::string_view file);
  Posizione Dove(std::size_t scarto) const;  // offset in bytes

 private:
  // Characters in front of an offset.
  int Caratteri(std::size_t scarto) const;

  std::string_view Testo;
  std::string_view File;
  std::vector<std::size_t> Inizi;  // of the lines
  std::vector<int> Tappe;          // characters in front of every kPasso bytes
};

// An angle of the file, in gon; written in gon or in degrees, minutes and seconds.
struct Angolo {
  double Gon = 0.0;
  bool Sessagesimale = false;

  // Of a standard deviation beside it, in cc or in arc seconds [gon].
  double Sqm(double valore) const;
};

// Standard deviations of a distance: a + b D^c, in millimetres with D in kilometres.
struct ModelloDistanza {
  double A = 0.0, B = 0.0, C = 1.0;
};

// Standard deviations by observation, and the values that the network takes from them.
class Scarti {
 public:
  void AggiungiAngolo(double sqm);  // of an angle [gon]
  void AggiungiDistanza(double distanza, double sqm, const ModelloDistanza* predefinito);  // [m]
  // Sets the options of the book; what is not the same everywhere becomes a warning.
  void Concludi(OpzioniLibretto& opzioni, const Posizione& dove, Diagnostica& diagnostica) const;

 private:
  using Coppia = std::pair<double, double>;  // constant [m], proportional [m/km]
  struct Voce {
    Coppia Valore;
    int Quanti = 0;
  };
  using Conteggi = std::map<std::pair<std::int64_t, std::int64_t>, Voce>;

  static void Conta(Conteggi& conteggi, const Coppia& valore);
  static const Voce& PiuFrequente(const Conteggi& conteggi);
  std::optional<Coppia> Retta() const;

  Conteggi Angoli;
  Conteggi Distanze;
  std::vector<std::pair<double, double>> Esplicite;  // distance [km], standard deviation [m]
  int NPredefinite = 0;
};

class Contesto {
 public:
  Contesto(std::string_view testo, std::string_view file, const OpzioniLettura& lettura,
           Libretto& libretto, Diagnostica& diagnostica);

  Posizione Dove(const pugi::xml_node& nodo);
  Posizione Dove(std::size_t scarto) { return Posti.Dove(scarto); }
  // Of the value of an attribute, or of the element where it has none of that name.
  Posizione Dove(const pugi::xml_node& nodo, std::string_view attributo);

  static bool Ha(const pugi::xml_node& nodo, const char* attributo) {
    return !nodo.attribute(attributo).empty();
  }
  // The value of an attribute without the blanks around it.
  static std::string_view Valore(const pugi::xml_node& nodo, const char* attributo);
  // Nothing if the attribute is missing; a wrong one, or one that is missing though obbligatorio,
  // becomes an error.
  std::optional<double> Numero(const pugi::xml_node& nodo, const char* attributo,
                               const RegolaNumero& regola, bool obbligatorio = false);
  std::optional<Angolo> LeggiVal(const pugi::xml_node& nodo);
  std::optional<std::string> Nome(const pugi::xml_node& nodo, const char* attributo);
  // The standard deviation of the element, 0 and less refused; in the unit of the file.
  std::optional<double> Stdev(const pugi::xml_node& nodo);

  void Errore(const pugi::xml_node& nodo, const char* attributo, std::string problema,
              std::string voluto = {});
  void ControllaAttributi(const pugi::xml_node& nodo, std::span<const std::string_view> noti);
  void ElementoSconosciuto(const pugi::xml_node& nodo, std::span<const std::string_view> noti);
  // Observations that the network has no place for: counted as left out, or refused.
  void NonSupportato(const pugi::xml_node& nodo, const std::string& genere, int quanti);

  // A message that comes out once, at the first place, with how many places it is about.
  void Conta(Gravita livello, const pugi::xml_node& nodo, Guasto guasto, int quanti = 1);
  void ScriviConteggi();

  const OpzioniLettura& Lettura;
  Libretto& Libro;
  Diagnostica& Diario;
  Scarti SqmLetti;
  bool Orario = true;  // directions count clockwise

 private:
  struct Contato {
    Gravita Livello;
    Posizione Dove;
    Guasto Cosa;
    int Quanti = 0;
  };

  std::string_view Testo;
  Luoghi Posti;
  std::map<std::string, Contato> Contati;
};

// How messages call the record of an element.
std::string RecordDi(const pugi::xml_node& nodo);

// The element with all that stands in it, in file order; null after the last.
pugi::xml_node Successivo(pugi::xml_node nodo, const pugi::xml_node& radice);

// gkf_registro.cpp. Whether the book was filled from the register of the file.
bool LeggiRegistro(const pugi::xml_document& documento, Contesto& contesto);

// gkf_scarti.cpp. Takes the next word off a text; empty at its end.
std::string_view ProssimaParola(std::string_view& testo);

// gkf_scarti.cpp. The diagonal of the covariance matrix of an <obs>, a variance for each
// observation; empty if it has none, or a wrong one, which is then reported.
std::vector<double> LeggiVarianze(const pugi::xml_node& obs, Contesto& contesto);

// gkf_osservazioni.cpp
struct Predefiniti {
  std::optional<double> Direzione;  // [cc]
  std::optional<double> Angolo;     // [cc]
  std::optional<ModelloDistanza> Distanza;
};
void LeggiObs(const pugi::xml_node& obs, const Predefiniti& predefiniti, Contesto& contesto);

}  // namespace gkf

}  // namespace compensa

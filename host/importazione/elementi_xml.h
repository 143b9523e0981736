#pragma once

// What the readers of XML share: the document with the places of its parts, attributes as values,
// what is unknown in it, and messages that come out once for all places they are about.

#include <map>
#include <optional>
#include <pugixml.hpp>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/importazione/libretto.h"
#include "host/rete/campi.h"

namespace compensa {

// What an element may have: names with blanks between them.
struct VoceXml {
  std::string_view Nome, Attributi, Figli;
};

class ElementiXml {
 public:
  // How messages call the record of an element.
  using RecordDi = std::string (*)(const pugi::xml_node& nodo);

  // All arguments must outlive the object; file lies in libretto.NomiFile.
  ElementiXml(std::string_view testo, std::string_view file, RecordDi record, Libretto& libretto,
              Diagnostica& diagnostica);

  // The root; empty, with an error, if the text is no XML or the root has another name.
  pugi::xml_node Carica(const char* radice);
  // Reports and counts what the elements below this one have and the table does not list. The kind
  // of an element that is not in the table is not looked into.
  void ControllaNoti(const pugi::xml_node& nodo, std::span<const VoceXml> noti);
  // Counts instructions to other programs, of the whole document.
  void ContaIstruzioni();

  Posizione Dove(const pugi::xml_node& nodo);
  // Of the value of an attribute, or of the element where it has none of that name.
  Posizione Dove(const pugi::xml_node& nodo, const char* attributo);

  static bool Ha(const pugi::xml_node& nodo, const char* attributo) {
    return !nodo.attribute(attributo).empty();
  }
  // The value of an attribute without the blanks around it.
  static std::string_view Valore(const pugi::xml_node& nodo, const char* attributo);
  // Nothing if the attribute is missing; a wrong one, or one that is missing though obbligatorio,
  // becomes an error.
  std::optional<double> Numero(const pugi::xml_node& nodo, const char* attributo,
                               RegolaNumero regola, bool obbligatorio = false);
  // The name of a point; empty with an error if there is none.
  std::string Nome(const pugi::xml_node& nodo, const char* attributo);

  void Errore(const pugi::xml_node& nodo, const char* attributo, std::string problema,
              std::string voluto = {});
  void Tralascia(const pugi::xml_node& nodo, const std::string& genere, const std::string& motivo);
  // A message that comes out once, at the first place, with how many places it is about.
  void Conta(Gravita livello, const pugi::xml_node& nodo, Guasto guasto, int quanti = 1);
  void ScriviConteggi();

  Libretto& Libro;
  Diagnostica& Diario;

 private:
  struct Contato {
    Gravita Livello;
    Posizione Dove;
    Guasto Cosa;
    int Quanti = 0;
  };

  Posizione DoveScarto(std::size_t scarto);  // offset in bytes

  std::string_view Testo;
  std::string_view File;
  RecordDi Record;
  pugi::xml_document Documento;
  std::vector<std::size_t> InizioRiga;
  Posizione Ultima;  // the place found last, from which the next in the same line is counted
  std::size_t UltimoScarto = 0;
  std::map<std::string, Contato> Contati;
};

// The words of a text, parted by blanks.
std::vector<std::string_view> ParoleDi(std::string_view testo);

}  // namespace compensa

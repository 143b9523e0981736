// The register of a .gkf file: the network's own records in processing instructions
//   <?compensa punto nome="V1" est="1000" ...?>
// one a record, readings after their station. It counts only while its fingerprint matches: after
// any change of an element, or of the register, the elements are read instead.
//
// What stands in an instruction is written as in an element, and is read as one: all of them are
// put together into one small document.

#include <array>

#include "host/base/gkf_formato.h"
#include "host/base/numeri.h"
#include "host/importazione/gkf/gkf_contesto.h"

namespace compensa {

namespace gkf {
namespace {

struct Istruzioni {
  std::vector<pugi::xml_node> Nodi;
  std::string Calcolata;  // fingerprint
};

Istruzioni Raccogli(const pugi::xml_document& documento) {
  Istruzioni istruzioni;
  Impronta impronta;
  for (pugi::xml_node n = Successivo(documento, documento); !n.empty();
       n = Successivo(n, documento)) {
    if (n.type() == pugi::node_element) {
      impronta.Elemento(n.name());
      for (const pugi::xml_attribute& a : n.attributes()) impronta.Attributo(a.name(), a.value());
    } else if (n.type() == pugi::node_pi && n.name() == kIstruzione) {
      istruzioni.Nodi.push_back(n);
      if (!std::string_view(n.value()).starts_with(kFine)) impronta.Istruzione(n.value());
    }
  }
  istruzioni.Calcolata = impronta.Esadecimale();
  return istruzioni;
}

// Fields of one record, as the register writes them.
class Voce {
 public:
  explicit Voce(const pugi::xml_node& nodo) : Nodo(nodo) {}

  std::string Testo(const char* campo) const { return Nodo.attribute(campo).value(); }
  std::optional<double> Numero(const char* campo) const {
    const NumeroLetto letto = LeggiNumero(Nodo.attribute(campo).value());
    return letto.Esito == EsitoNumero::Valido ? std::optional(letto.Valore) : std::nullopt;
  }
  std::optional<int> Intero(const char* campo) const {
    return LeggiIntero(Nodo.attribute(campo).value());
  }

 private:
  pugi::xml_node Nodo;
};

void PrendiOpzioni(const Voce& v, OpzioniLibretto& o) {
  o.SqmDirezione = v.Numero("sqm_direzione");
  o.SqmDistCostante = v.Numero("sqm_distanza_costante");
  o.SqmDistProporzionale = v.Numero("sqm_distanza_proporzionale");
  o.Iterazioni = v.Intero("iterazioni");
  o.TipoCalcolo = v.Intero("calcolo");
  o.Cartografiche = v.Intero("cartografiche").value_or(0) != 0;
}

CCalcDsOr CurvaturaDi(const Voce& v) {
  CCalcDsOr c{};
  c.CorrCurvRifr = v.Intero("attiva").value_or(0) != 0 ? 1 : 0;
  c.CoeffRifr = v.Numero("coefficiente").value_or(0.0);
  c.RaggioTerra = v.Numero("raggio").value_or(0.0);
  return c;
}

PuntoLibretto PuntoDi(const Voce& v, const Posizione& dove) {
  return {.Nome = v.Testo("nome"),
          .Est = v.Numero("est"),
          .Nord = v.Numero("nord"),
          .Quota = v.Numero("quota"),
          .Ruoli = {v.Intero("planimetria"), v.Intero("altimetria")},
          .Dove = dove};
}

PostazioneLibretto PostazioneDi(const Voce& v, const Posizione& dove) {
  return {.Punto = v.Testo("punto"),
          .Altezza = v.Numero("altezza"),
          .AltezzaNota = v.Intero("altezza_nota").value_or(1) != 0,
          .EccDistanza = v.Numero("ecc_distanza"),
          .EccDirezione = v.Numero("ecc_direzione"),
          .Battute = {},
          .Dove = dove};
}

BattutaLibretto BattutaDi(const Voce& v, const Posizione& dove) {
  BattutaLibretto b;
  b.Punto = v.Testo("punto");
  b.Direzione = v.Numero("direzione");
  b.Zenit = v.Numero("zenit");
  b.Segnale = v.Numero("segnale");
  b.Distanza = v.Numero("distanza");
  b.TipoDist = v.Intero("tipo").value_or(kOrizzontale);
  b.Dove = dove;
  return b;
}

void Prendi(const pugi::xml_node& nodo, const Posizione& dove, Libretto& libro) {
  const std::string_view genere = nodo.name();
  const Voce voce(nodo);
  if (genere == "progetto") {
    libro.DatiProgetto.Nome = voce.Testo("nome");
    libro.DatiProgetto.Epsg = voce.Intero("epsg");
  } else if (genere == "opzioni") {
    PrendiOpzioni(voce, libro.Opzioni);
  } else if (genere == "curvatura") {
    libro.Opzioni.CurvaturaRifrazione = CurvaturaDi(voce);
  } else if (genere == "punto") {
    libro.Punti.push_back(PuntoDi(voce, dove));
  } else if (genere == "stazione") {
    libro.Postazioni.push_back(PostazioneDi(voce, dove));
  } else if (genere == "lettura" && !libro.Postazioni.empty()) {
    libro.Postazioni.back().Battute.push_back(BattutaDi(voce, dove));
  }
}

}  // namespace

bool LeggiRegistro(const pugi::xml_document& documento, Contesto& contesto) {
  const Istruzioni istruzioni = Raccogli(documento);
  if (istruzioni.Nodi.empty()) return false;
  std::string testo = "<r>";
  for (const pugi::xml_node& n : istruzioni.Nodi) testo.append("<").append(n.value()).append("/>");
  testo += "</r>";
  pugi::xml_document registro;
  const bool letto = static_cast<bool>(
      registro.load_buffer(testo.data(), testo.size(), pugi::parse_default, pugi::encoding_utf8));
  const pugi::xml_node radice = registro.document_element();
  const pugi::xml_node inizio = radice.first_child();
  const pugi::xml_node fine = radice.last_child();
  const bool intero = letto && fine.name() == kFine && inizio.name() == kRegistro &&
                      fine.attribute("impronta").value() == istruzioni.Calcolata;
  const bool noto = Voce(inizio).Intero("versione") == kVersioneRegistro;
  if (!intero || !noto) {
    contesto.Diario.Avviso(
        contesto.Dove(istruzioni.Nodi.front()),
        {.Record = "registro delle letture originali",
         .Problema = intero ? "è di una versione sconosciuta: si leggono gli elementi"
                            : "non corrisponde più al file, che è stato modificato: si leggono gli "
                              "elementi, che contengono angoli e distanze ridotte"});
    return false;
  }
  auto istruzione = istruzioni.Nodi.begin();
  for (const pugi::xml_node& voce : radice.children()) {
    if (istruzione == istruzioni.Nodi.end()) break;
    Prendi(voce, contesto.Dove(*istruzione++), contesto.Libro);
  }
  return true;
}

}  // namespace gkf

}  // namespace compensa

// Elements and attributes of an XML file as records of a field book.
//
// The parser tells at which byte a name begins; values lie in its copy of the text where they lie in
// the text. A file may be one line: columns are counted on from the place found last.

#include "host/importazione/elementi_xml.h"

#include <algorithm>

#include "host/base/codifica.h"
#include "host/base/numeri.h"
#include "host/base/suggerimenti.h"
#include "host/base/testi.h"
#include "host/file_rete/riga_csv.h"

namespace compensa {

namespace {

std::string_view ProblemaXml(pugi::xml_parse_status stato) {
  switch (stato) {
    case pugi::status_end_element_mismatch:
      return "un elemento non è chiuso, o è chiuso con un altro nome";
    case pugi::status_unrecognized_tag:
    case pugi::status_bad_start_element:
    case pugi::status_bad_end_element: return "marcatore non valido";
    case pugi::status_bad_attribute: return "attributo non valido: serve nome=\"valore\"";
    case pugi::status_bad_pi: return "istruzione <? … ?> non chiusa";
    case pugi::status_bad_comment: return "commento <!-- … --> non chiuso";
    case pugi::status_bad_cdata: return "sezione CDATA non chiusa";
    case pugi::status_bad_doctype: return "DOCTYPE non valido";
    case pugi::status_no_document_element: return "il file non ha elementi";
    default: return "il file non si legge";
  }
}

bool DiTutti(std::string_view attributo) {
  return attributo.starts_with("xmlns") || attributo.starts_with("xml:") ||
         attributo.starts_with("xsi:");
}

// The node with all that stands in it, in file order; null after the last.
pugi::xml_node Successivo(pugi::xml_node nodo, const pugi::xml_node& radice, bool dentro = true) {
  if (dentro && !nodo.first_child().empty()) return nodo.first_child();
  while (nodo != radice && nodo.next_sibling().empty()) nodo = nodo.parent();
  return nodo == radice ? pugi::xml_node() : nodo.next_sibling();
}

Guasto Sconosciuto(const pugi::xml_node& nodo, std::string_view genere, std::string_view nome,
                   const std::vector<std::string_view>& noti) {
  const std::string_view vicino = PiuVicino(nome, noti);
  return {.Record = "<" + std::string(nodo.name()) + ">",
          .Problema = std::string(genere) + " " + Cita(nome) + " sconosciuto: non è letto",
          .Suggerimento = vicino.empty() ? "" : "forse " + Cita(vicino) + "?"};
}

bool Fra(const std::vector<std::string_view>& noti, std::string_view nome) {
  return std::find(noti.begin(), noti.end(), nome) != noti.end();
}

}  // namespace

std::vector<std::string_view> ParoleDi(std::string_view testo) {
  std::vector<std::string_view> parole;
  while (!(testo = SenzaBianchi(testo, kBianchiEFini)).empty()) {
    parole.push_back(testo.substr(0, testo.find_first_of(kBianchiEFini)));
    testo.remove_prefix(parole.back().size());
  }
  return parole;
}

ElementiXml::ElementiXml(std::string_view testo, std::string_view file, RecordDi record,
                         Libretto& libretto, Diagnostica& diagnostica)
    : Libro(libretto), Diario(diagnostica), Testo(testo), File(file), Record(record) {
  InizioRiga.push_back(0);
  for (std::size_t i = 0; i < testo.size(); ++i) {
    const bool solo = testo[i] == '\r' && (i + 1 == testo.size() || testo[i + 1] != '\n');
    if (testo[i] == '\n' || solo) InizioRiga.push_back(i + 1);
  }
}

pugi::xml_node ElementiXml::Carica(const char* radice) {
  const pugi::xml_parse_result esito = Documento.load_buffer(
      Testo.data(), Testo.size(), pugi::parse_default | pugi::parse_pi, pugi::encoding_utf8);
  if (!esito) {
    const auto scarto = static_cast<std::size_t>(std::max<std::ptrdiff_t>(esito.offset, 0));
    Diario.Errore(DoveScarto(scarto),
                  {.Record = "XML", .Problema = std::string(ProblemaXml(esito.status))});
    return {};
  }
  const pugi::xml_node trovata = Documento.document_element();
  if (std::string_view(trovata.name()) == radice) return trovata;
  Diario.Errore(Dove(trovata), {.Record = "XML",
                                .Problema = "elemento principale sconosciuto",
                                .Trovato = Cita(trovata.name()),
                                .Voluto = Cita(radice)});
  return {};
}

void ElementiXml::ControllaNoti(const pugi::xml_node& nodo, std::span<const VoceXml> noti) {
  const auto vaglia = [&](const pugi::xml_node& e) {
    const auto voce = std::find_if(noti.begin(), noti.end(),
                                   [&](const VoceXml& v) { return v.Nome == e.name(); });
    if (voce == noti.end()) return false;
    const std::vector<std::string_view> attributi = ParoleDi(voce->Attributi);
    for (const pugi::xml_attribute& a : e.attributes())
      if (!Fra(attributi, a.name()) && !DiTutti(a.name()))
        Conta(Gravita::Avviso, e, Sconosciuto(e, "attributo", a.name(), attributi));
    const std::vector<std::string_view> figli = ParoleDi(voce->Figli);
    for (const pugi::xml_node& f : e.children()) {
      if (f.type() != pugi::node_element || Fra(figli, f.name())) continue;
      Tralascia(f, "elementi <" + std::string(f.name()) + ">", "elemento sconosciuto");
      Conta(Gravita::Avviso, f, Sconosciuto(e, "elemento", f.name(), figli));
    }
    return true;
  };
  for (pugi::xml_node e = nodo; !e.empty();) e = Successivo(e, nodo, vaglia(e));
}

void ElementiXml::ContaIstruzioni() {
  for (pugi::xml_node n = Documento; !n.empty(); n = Successivo(n, Documento))
    if (n.type() == pugi::node_pi)
      Tralascia(n, "istruzioni <?" + std::string(n.name()) + " …?>",
                "la rete sta negli elementi del file");
}

Posizione ElementiXml::DoveScarto(std::size_t scarto) {
  scarto = std::min(scarto, Testo.size());
  const auto dopo = std::upper_bound(InizioRiga.begin(), InizioRiga.end(), scarto);
  const auto riga = static_cast<int>(dopo - InizioRiga.begin());
  if (riga != Ultima.Riga) {
    Ultima = {File, riga, 1};
    UltimoScarto = *(dopo - 1);
  }
  const auto [da, a] = std::minmax(UltimoScarto, scarto);
  const int caratteri = ContaCaratteri(Testo.substr(da, a - da));
  Ultima.Colonna += scarto < UltimoScarto ? -caratteri : caratteri;
  UltimoScarto = scarto;
  return Ultima;
}

Posizione ElementiXml::Dove(const pugi::xml_node& nodo) {
  const std::ptrdiff_t apre = nodo.type() == pugi::node_pi ? 2 : 1;  // "<?" or "<" before the name
  return DoveScarto(static_cast<std::size_t>(std::max(nodo.offset_debug() - apre, {})));
}

Posizione ElementiXml::Dove(const pugi::xml_node& nodo, const char* attributo) {
  if (!Ha(nodo, attributo)) return Dove(nodo);
  const std::ptrdiff_t dalNome = nodo.attribute(attributo).value() - nodo.name();
  return DoveScarto(static_cast<std::size_t>(nodo.offset_debug() + dalNome));
}

std::string_view ElementiXml::Valore(const pugi::xml_node& nodo, const char* attributo) {
  return SenzaBianchi(nodo.attribute(attributo).value(), kBianchiEFini);
}

std::optional<double> ElementiXml::Numero(const pugi::xml_node& nodo, const char* attributo,
                                          RegolaNumero regola, bool obbligatorio) {
  regola.Nome = attributo;
  if (!Ha(nodo, attributo)) {
    if (obbligatorio) Errore(nodo, attributo, "manca l'attributo", NumeroVoluto(regola));
    return std::nullopt;
  }
  const NumeroLetto letto = LeggiNumero(Valore(nodo, attributo));
  if (letto.Esito == EsitoNumero::Valido && Ammesso(regola, letto.Valore)) return letto.Valore;
  Diario.Errore(Dove(nodo, attributo),
                GuastoCampo(Record(nodo), regola, nodo.attribute(attributo).value(), letto,
                            "in questi file i decimali hanno il punto"));
  return std::nullopt;
}

std::string ElementiXml::Nome(const pugi::xml_node& nodo, const char* attributo) {
  const std::string_view nome = Valore(nodo, attributo);
  if (nome.empty())
    Errore(nodo, attributo, Ha(nodo, attributo) ? "il nome del punto è vuoto" : "manca l'attributo",
           "il nome di un punto");
  return std::string(nome);
}

void ElementiXml::Errore(const pugi::xml_node& nodo, const char* attributo, std::string problema,
                         std::string voluto) {
  Diario.Errore(
      Dove(nodo, attributo),
      {.Record = Record(nodo),
       .Campo = attributo,
       .Problema = std::move(problema),
       .Trovato = Ha(nodo, attributo) ? Cita(nodo.attribute(attributo).value()) : std::string(),
       .Voluto = std::move(voluto)});
}

void ElementiXml::Tralascia(const pugi::xml_node& nodo, const std::string& genere,
                            const std::string& motivo) {
  Libro.Tralascia(genere, motivo, Dove(nodo).Riga);
}

void ElementiXml::Conta(Gravita livello, const pugi::xml_node& nodo, Guasto guasto, int quanti) {
  const std::string chiave = guasto.Record.Testo() + '\n' + guasto.Campo + '\n' + guasto.Problema;
  const auto [voce, nuova] = Contati.try_emplace(chiave, Contato{livello, {}, {}, 0});
  if (nuova) {
    voce->second.Dove = Dove(nodo);
    voce->second.Cosa = std::move(guasto);
  }
  voce->second.Quanti += quanti;
}

void ElementiXml::ScriviConteggi() {
  for (auto& [chiave, voce] : Contati) {
    if (voce.Quanti > 1)
      voce.Cosa.Problema += " (" + std::to_string(voce.Quanti) + " volte, qui la prima)";
    if (voce.Livello == Gravita::Errore)
      Diario.Errore(voce.Dove, std::move(voce.Cosa));
    else
      Diario.Avviso(voce.Dove, std::move(voce.Cosa));
  }
}

}  // namespace compensa

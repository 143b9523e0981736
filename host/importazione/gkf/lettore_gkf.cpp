// Networks in the XML of a public adjustment program (.gkf): the document, its points and its
// defaults. Axes and the sense of the circle are the file's own:
//   axes-xy = "ne": x towards north, y towards east; each letter names where its axis points,
//   right-handed angles count anticlockwise: direction = 400 - value.
// A priori sigma zero (sigma-apr) only scales all weights together: coordinates and residuals do
// not depend on it, and the network has none to give it to.
//
// Files that compensa has written carry their records in a register, which is taken instead of the
// elements while both agree.

#include <algorithm>
#include <array>
#include <unordered_map>

#include "host/base/gkf_formato.h"
#include "host/base/numeri.h"
#include "host/base/testi.h"
#include "host/importazione/gkf/gkf_contesto.h"

namespace compensa {

namespace {

using gkf::Contesto;
using gkf::Predefiniti;
using Parole = std::span<const std::string_view>;

constexpr std::array<std::string_view, 1> kNellaRadice = {"network"};
constexpr std::array<std::string_view, 3> kNellaRete = {"description", "parameters",
                                                        "points-observations"};
constexpr std::array<std::string_view, 5> kNelleOsservazioni = {
    "point", "obs", "height-differences", "vectors", "coordinates"};
constexpr std::array<std::string_view, 3> kAttributiRete = {"axes-xy", "angles", "epoch"};
constexpr std::array<std::string_view, 14> kAttributiParametri = {
    "sigma-apr", "conf-pr",  "tol-abs",    "sigma-act", "update-constrained-coordinates",
    "algorithm", "language", "encoding",   "angular",   "latitude",
    "ellipsoid", "cov-band", "iterations", "epoch"};
constexpr std::array<std::string_view, 5> kAttributiOsservazioni = {
    "direction-stdev", "angle-stdev", "zenith-angle-stdev", "azimuth-stdev", "distance-stdev"};
constexpr std::array<std::string_view, 6> kAttributiPunto = {"id", "x", "y", "z", "fix", "adj"};

bool Riconosce(std::string_view testo) {
  if (!SenzaBianchi(testo, kBianchiEFini).starts_with('<')) return false;
  return testo.substr(0, gkf::kInizioCercato).find("<" + std::string(gkf::kRadice)) !=
         std::string_view::npos;
}

// What an axis adds to east and north.
struct Versore {
  double Est = 0.0, Nord = 0.0;
};

std::optional<Versore> VersoreDi(char lettera) {
  switch (lettera) {
    case 'e': return Versore{1.0, 0.0};
    case 'w': return Versore{-1.0, 0.0};
    case 'n': return Versore{0.0, 1.0};
    case 's': return Versore{0.0, -1.0};
    default: return std::nullopt;
  }
}

class LettoreRete {
 public:
  explicit LettoreRete(Contesto& contesto) : C(contesto) {}

  void Leggi(const pugi::xml_node& radice);

 private:
  void LeggiAssi(const pugi::xml_node& rete);
  void LeggiOsservazioni(const pugi::xml_node& nodo);
  void LeggiPredefiniti(const pugi::xml_node& nodo);
  void LeggiPunto(const pugi::xml_node& nodo);
  void LeggiDescrizione(const pugi::xml_node& nodo);
  RuoliLetti LeggiRuoli(const pugi::xml_node& nodo);
  void Assegna(std::optional<double>& dato, std::optional<double> valore,
               const pugi::xml_node& nodo, const char* attributo);
  void AggiungiNonDefiniti();
  void ScegliCalcolo();

  Contesto& C;
  Versore X{0.0, 1.0}, Y{1.0, 0.0};
  Predefiniti SqmPredefiniti;
  std::unordered_map<std::string, std::size_t> IndiceDaNome;
};

void LettoreRete::LeggiAssi(const pugi::xml_node& rete) {
  if (Contesto::Ha(rete, "axes-xy")) {
    const std::string_view assi = Contesto::Valore(rete, "axes-xy");
    const auto x = assi.size() == 2 ? VersoreDi(assi[0]) : std::nullopt;
    const auto y = assi.size() == 2 ? VersoreDi(assi[1]) : std::nullopt;
    if (x && y && x->Est * y->Est + x->Nord * y->Nord == 0.0) {
      X = *x;
      Y = *y;
    } else {
      C.Errore(rete, "axes-xy", "assi sconosciuti",
               "due lettere tra n, s, e, w, una per il nord e una per l'est: \"ne\", \"en\", …");
    }
  }
  const std::string_view senso = Contesto::Valore(rete, "angles");
  C.Orario = senso != "right-handed";
  if (Contesto::Ha(rete, "angles") && C.Orario && senso != "left-handed")
    C.Errore(rete, "angles", "parola sconosciuta", "\"left-handed\" o \"right-handed\"");
}

void LettoreRete::LeggiPredefiniti(const pugi::xml_node& nodo) {
  constexpr RegolaNumero kPositivo{"stdev", "cc", 0.0, kNonDato, true};
  C.ControllaAttributi(nodo, kAttributiOsservazioni);
  SqmPredefiniti = {};
  SqmPredefiniti.Direzione = C.Numero(nodo, "direction-stdev", kPositivo);
  SqmPredefiniti.Angolo = C.Numero(nodo, "angle-stdev", kPositivo);
  if (Contesto::Ha(nodo, "zenith-angle-stdev"))
    C.Conta(Gravita::Avviso, nodo,
            {.Record = "<points-observations>",
             .Campo = "zenith-angle-stdev",
             .Problema = "non serve: le visuali in quota si pesano con la distanza"});
  if (!Contesto::Ha(nodo, "distance-stdev")) return;
  constexpr std::size_t kCoefficienti = 3;
  std::array<double, kCoefficienti> abc = {0.0, 0.0, 1.0};
  std::string_view testo = Contesto::Valore(nodo, "distance-stdev");
  std::size_t letti = 0;
  while (!testo.empty()) {
    const NumeroLetto n = LeggiNumero(gkf::ProssimaParola(testo));
    if (letti == kCoefficienti || n.Esito != EsitoNumero::Valido || n.Valore < 0.0) {
      letti = 0;
      break;
    }
    abc[letti++] = n.Valore;
  }
  if (letti == 0 || !(abc[0] + abc[1] > 0.0))
    return C.Errore(nodo, "distance-stdev", "non si legge",
                    "da uno a tre numeri \"a b c\": a [mm] + b [mm/km] D^c");
  SqmPredefiniti.Distanza = gkf::ModelloDistanza{abc[0], abc[1], abc[2]};
  if (abc[1] > 0.0 && abc[2] != 1.0)
    C.Conta(Gravita::Avviso, nodo,
            {.Record = "<points-observations>",
             .Campo = "distance-stdev",
             .Problema = "nella rete lo scarto cresce con la distanza: l'esponente c diventa 1"});
}

// Plan and height have a role each; a component that is neither fixed nor adjusted is left out.
RuoliLetti LettoreRete::LeggiRuoli(const pugi::xml_node& nodo) {
  RuoliLetti ruoli{kNonUsato, kNonUsato};
  const auto prendi = [&](const char* attributo, int ruolo) {
    if (!Contesto::Ha(nodo, attributo)) return;
    const std::string_view testo = Contesto::Valore(nodo, attributo);
    std::string minuscolo(testo);
    std::transform(testo.begin(), testo.end(), minuscolo.begin(), [](char c) {
      return c >= 'X' && c <= 'Z' ? static_cast<char>(c + 'x' - 'X') : c;
    });
    if (minuscolo != "xy" && minuscolo != "z" && minuscolo != "xyz")
      return C.Errore(nodo, attributo, "parola sconosciuta", "\"xy\", \"z\" o \"xyz\"");
    if (minuscolo.front() == 'x') ruoli.Pla = ruolo;
    if (minuscolo.back() == 'z') ruoli.Alt = ruolo;
    if (ruolo == kIncognito && minuscolo != testo)
      C.Conta(Gravita::Avviso, nodo,
              {.Record = "<point>",
               .Campo = "adj",
               .Problema = "punto che vincola una rete libera: letto come incognito, la rete vuole "
                           "punti fissi"});
  };
  prendi("adj", kIncognito);
  prendi("fix", kFisso);  // wins
  return ruoli;
}

void LettoreRete::Assegna(std::optional<double>& dato, std::optional<double> valore,
                          const pugi::xml_node& nodo, const char* attributo) {
  if (!valore) return;
  if (dato && *dato != *valore)
    C.Diario.Avviso(C.Dove(nodo, attributo),
                    {.Record = gkf::RecordDi(nodo),
                     .Campo = attributo,
                     .Problema = "coordinata già data con un altro valore: vale quest'ultimo"});
  dato = valore;
}

// A point may be given in several elements: each adds what it states.
void LettoreRete::LeggiPunto(const pugi::xml_node& nodo) {
  C.ControllaAttributi(nodo, kAttributiPunto);
  const std::optional<std::string> nome = C.Nome(nodo, "id");
  const std::optional<double> x = C.Numero(nodo, "x", {"x", "m"});
  const std::optional<double> y = C.Numero(nodo, "y", {"y", "m"});
  const std::optional<double> z = C.Numero(nodo, "z", {"z", "m"});
  if (x.has_value() != y.has_value() && !Contesto::Ha(nodo, x ? "y" : "x"))
    C.Errore(nodo, x ? "y" : "x", "manca l'attributo", "x e y insieme");
  const RuoliLetti ruoli = LeggiRuoli(nodo);
  if (!nome) return;
  const auto [voce, nuovo] = IndiceDaNome.try_emplace(*nome, C.Libro.Punti.size());
  if (nuovo) {
    C.Libro.Punti.emplace_back();
    C.Libro.Punti.back().Nome = *nome;
    C.Libro.Punti.back().Dove = C.Dove(nodo);
    C.Libro.Punti.back().Ruoli = ruoli;
  }
  PuntoLibretto& p = C.Libro.Punti[voce->second];
  if (ruoli.Pla != kNonUsato) p.Ruoli.Pla = ruoli.Pla;
  if (ruoli.Alt != kNonUsato) p.Ruoli.Alt = ruoli.Alt;
  if (x && y) {
    Assegna(p.Est, X.Est * *x + Y.Est * *y + 0.0, nodo, X.Est != 0.0 ? "x" : "y");
    Assegna(p.Nord, X.Nord * *x + Y.Nord * *y + 0.0, nodo, X.Nord != 0.0 ? "x" : "y");
  }
  Assegna(p.Quota, z, nodo, "z");
}

void LettoreRete::LeggiDescrizione(const pugi::xml_node& nodo) {
  const std::string_view testo = SenzaBianchi(nodo.child_value(), kBianchiEFini);
  if (testo.empty()) return;
  if (testo.find_first_of("\r\n") == std::string_view::npos) {
    C.Libro.DatiProgetto.Nome = testo;
  } else {
    C.Libro.Note.emplace_back(testo);
  }
}

void LettoreRete::LeggiOsservazioni(const pugi::xml_node& nodo) {
  LeggiPredefiniti(nodo);
  const auto figli = [](const pugi::xml_node& n, const char* nome) {
    const auto elementi = n.children(nome);
    return static_cast<int>(std::distance(elementi.begin(), elementi.end()));
  };
  for (const pugi::xml_node& e : nodo.children()) {
    if (e.type() != pugi::node_element) continue;
    const std::string_view nome = e.name();
    if (nome == "point") {
      LeggiPunto(e);
    } else if (nome == "obs") {
      gkf::LeggiObs(e, SqmPredefiniti, C);
    } else if (nome == "height-differences") {
      C.NonSupportato(e, "dislivelli misurati (<dh>)", figli(e, "dh"));
    } else if (nome == "vectors") {
      C.NonSupportato(e, "vettori (<vec>)", figli(e, "vec"));
    } else if (nome == "coordinates") {
      C.NonSupportato(e, "coordinate osservate (<coordinates>)", figli(e, "point"));
    } else {
      C.ElementoSconosciuto(e, kNelleOsservazioni);
    }
  }
}

// Points that observations name and no element defines: the format leaves them out of the
// adjustment.
void LettoreRete::AggiungiNonDefiniti() {
  const auto aggiungi = [&](const std::string& nome, const Posizione& dove) {
    if (!IndiceDaNome.try_emplace(nome, C.Libro.Punti.size()).second) return;
    C.Libro.Punti.push_back({.Nome = nome,
                             .Est = {},
                             .Nord = {},
                             .Quota = {},
                             .Ruoli = {kNonUsato, kNonUsato},
                             .Dove = dove});
    C.Diario.Avviso(dove, {.Record = NomePunto(nome),
                           .Problema = "nessun <point> lo definisce: resta escluso"});
  };
  for (const PostazioneLibretto& s : C.Libro.Postazioni) {
    aggiungi(s.Punto, s.Dove);
    for (const BattutaLibretto& b : s.Battute) aggiungi(b.Punto, b.Dove);
  }
}

// What the roles of the points and the readings leave to compute.
void LettoreRete::ScegliCalcolo() {
  bool inPiano = false;
  bool inQuota = false;
  for (const PostazioneLibretto& s : C.Libro.Postazioni)
    for (const BattutaLibretto& b : s.Battute) {
      inPiano = inPiano || b.Direzione || b.Distanza;
      inQuota = inQuota || b.Segnale;
    }
  int calcolo = 0;
  for (const PuntoLibretto& p : C.Libro.Punti) {
    if (inPiano && p.Ruoli.Pla == kIncognito) calcolo |= kCalcoloPlanimetria;
    if (inQuota && p.Ruoli.Alt == kIncognito) calcolo |= kCalcoloAltimetria;
  }
  if (calcolo != 0) C.Libro.Opzioni.TipoCalcolo = calcolo;
}

void LettoreRete::Leggi(const pugi::xml_node& radice) {
  const auto sconosciuti = [&](const pugi::xml_node& padre, Parole noti) {
    for (const pugi::xml_node& e : padre.children()) {
      const bool noto = std::find(noti.begin(), noti.end(), e.name()) != noti.end();
      if (e.type() == pugi::node_element && !noto) C.ElementoSconosciuto(e, noti);
    }
  };
  sconosciuti(radice, kNellaRadice);
  const pugi::xml_node rete = radice.child("network");
  if (rete.empty()) {
    C.Diario.Errore(C.Dove(radice),
                    {.Record = "<gama-local>", .Problema = "manca l'elemento <network>"});
    return;
  }
  C.ControllaAttributi(rete, kAttributiRete);
  sconosciuti(rete, kNellaRete);
  LeggiAssi(rete);
  for (const pugi::xml_node& e : rete.children("parameters")) {
    C.ControllaAttributi(e, kAttributiParametri);
    C.Libro.Tralascia("parametri di calcolo (<parameters>)",
                      "sigma zero, livello di confidenza e algoritmo non fanno parte della rete",
                      C.Dove(e).Riga);
  }
  for (const pugi::xml_node& e : rete.children("description")) LeggiDescrizione(e);
  for (const pugi::xml_node& e : rete.children("points-observations")) LeggiOsservazioni(e);
  AggiungiNonDefiniti();
  ScegliCalcolo();
  C.SqmLetti.Concludi(C.Libro.Opzioni, C.Dove(rete), C.Diario);
}

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

void Leggi(std::string_view testo, std::string_view file, const OpzioniLettura& opzioni,
           Libretto& libretto, Diagnostica& diagnostica) {
  Contesto contesto(testo, file, opzioni, libretto, diagnostica);
  pugi::xml_document documento;
  const pugi::xml_parse_result esito = documento.load_buffer(
      testo.data(), testo.size(), pugi::parse_default | pugi::parse_pi, pugi::encoding_utf8);
  if (!esito) {
    const auto scarto = static_cast<std::size_t>(std::max<std::ptrdiff_t>(esito.offset, 0));
    diagnostica.Errore(contesto.Dove(scarto),
                       {.Record = "XML", .Problema = std::string(ProblemaXml(esito.status))});
    return;
  }
  const pugi::xml_node radice = documento.document_element();
  if (radice.name() != gkf::kRadice) {
    diagnostica.Errore(contesto.Dove(radice), {.Record = "XML",
                                               .Problema = "elemento principale sconosciuto",
                                               .Trovato = Cita(radice.name()),
                                               .Voluto = Cita(gkf::kRadice)});
    return;
  }
  if (gkf::LeggiRegistro(documento, contesto)) return;
  LettoreRete(contesto).Leggi(radice);
  contesto.ScriviConteggi();
}

}  // namespace

const Lettore kLettoreGkf = {"gkf", "rete in XML (.gkf)", kOpzioneIgnora, Riconosce, Leggi};

}  // namespace compensa

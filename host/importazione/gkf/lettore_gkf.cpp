// Networks in the XML of a public adjustment program (.gkf): the document, its points and its
// defaults. Axes and the sense of the circle are the file's own:
//   axes-xy = "ne": x towards north, y towards east; each letter names where its axis points,
//   right-handed angles count anticlockwise: direction = 400 - value.
// A priori sigma zero (sigma-apr) only scales all weights together: coordinates and residuals do
// not depend on it, and the network has none to give it to.

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>

#include "host/base/numeri.h"
#include "host/base/testi.h"
#include "host/file_rete/parole_gkf.h"
#include "host/importazione/gkf/osservazioni_gkf.h"
#include "host/importazione/lettore.h"

namespace compensa {

namespace {

using gkf::NonSupportato;

constexpr std::size_t kInizioCercato = 65536;  // the root stands in the first bytes
constexpr std::string_view kAttributiLettura = "from to val stdev from_dh to_dh extern";
constexpr VoceXml kNoti[] = {
    {gkf::kRoot, "", gkf::kNetwork},
    {gkf::kNetwork, "axes-xy angles epoch", "description parameters points-observations"},
    {gkf::kParameters,
     "sigma-apr conf-pr tol-abs sigma-act update-constrained-coordinates algorithm language "
     "encoding angular latitude ellipsoid cov-band iterations epoch",
     ""},
    {gkf::kObservations,
     "direction-stdev angle-stdev zenith-angle-stdev azimuth-stdev distance-stdev",
     "point obs height-differences vectors coordinates"},
    {gkf::kPoint, "id x y z fix adj", ""},
    {gkf::kObs, "from orientation from_dh",
     "direction z-angle s-distance distance angle azimuth dh cov-mat"},
    {gkf::kDirection, kAttributiLettura, ""},
    {gkf::kZAngle, kAttributiLettura, ""},
    {gkf::kSDistance, kAttributiLettura, ""},
    {gkf::kDistance, kAttributiLettura, ""},
    {gkf::kAngle, "from bs fs val stdev from_dh bs_dh fs_dh extern", ""},
};

struct NonPortato {
  std::string_view Elemento;
  const char* Uno;  // the element of one observation
  std::string_view Genere;
};
constexpr NonPortato kNonPortati[] = {
    {gkf::kHeights, gkf::kDh, "dislivelli misurati (<dh>)"},
    {"vectors", "vec", "vettori (<vec>)"},
    {"coordinates", gkf::kPoint, "coordinate osservate (<coordinates>)"},
};

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

class LettoreReteGkf {
 public:
  LettoreReteGkf(ElementiXml& xml, bool ignora) : X(xml) { Modo.Ignora = ignora; }

  void Leggi(const pugi::xml_node& radice) {
    const pugi::xml_node rete = radice.child(gkf::kNetwork);
    if (rete.empty())
      return X.Diario.Errore(X.Dove(radice), {.Record = gkf::RecordDi(radice),
                                              .Problema = "manca l'elemento <network>"});
    LeggiAssi(rete);
    for (const pugi::xml_node& e : rete.children(gkf::kParameters))
      X.Tralascia(e, "parametri di calcolo (<parameters>)",
                  "sigma zero, livello di confidenza e algoritmo non fanno parte della rete");
    for (const pugi::xml_node& e : rete.children(gkf::kDescription)) LeggiDescrizione(e);
    for (const pugi::xml_node& e : rete.children(gkf::kObservations)) LeggiOsservazioni(e);
    AggiungiNonDefiniti();
    ScegliCalcolo();
  }

 private:
  // What the file says and the network cannot hold.
  void Perde(const char* attributo, const pugi::xml_node& nodo, std::string problema) {
    X.Conta(Gravita::Avviso, nodo,
            {.Record = "<" + std::string(nodo.name()) + ">",
             .Campo = attributo,
             .Problema = std::move(problema)});
  }

  void LeggiAssi(const pugi::xml_node& rete) {
    if (ElementiXml::Ha(rete, gkf::kAxes)) {
      const std::string_view assi = ElementiXml::Valore(rete, gkf::kAxes);
      const auto x = assi.size() == 2 ? VersoreDi(assi[0]) : std::nullopt;
      const auto y = assi.size() == 2 ? VersoreDi(assi[1]) : std::nullopt;
      if (x && y && x->Est * y->Est + x->Nord * y->Nord == 0.0) {
        AsseX = *x;
        AsseY = *y;
      } else {
        X.Errore(rete, gkf::kAxes, "assi sconosciuti",
                 "due lettere tra n, s, e, w, una per il nord e una per l'est: \"ne\", \"en\", …");
      }
    }
    const std::string_view senso = ElementiXml::Valore(rete, gkf::kSense);
    Modo.Orario = senso != gkf::kAnticlockwise;
    if (ElementiXml::Ha(rete, gkf::kSense) && Modo.Orario && senso != gkf::kClockwise)
      X.Errore(rete, gkf::kSense, "parola sconosciuta", "\"left-handed\" o \"right-handed\"");
  }

  void LeggiPredefiniti(const pugi::xml_node& nodo) {
    constexpr RegolaNumero kPositivo{"", "cc", 0.0, kNonDato, true};
    Sqm = {};
    Sqm.Direzione = X.Numero(nodo, "direction-stdev", kPositivo);
    Sqm.Angolo = X.Numero(nodo, "angle-stdev", kPositivo);
    if (ElementiXml::Ha(nodo, "zenith-angle-stdev"))
      Perde("zenith-angle-stdev", nodo, "non serve: le visuali in quota si pesano con la distanza");
    constexpr const char* kScartoDistanze = "distance-stdev";
    if (!ElementiXml::Ha(nodo, kScartoDistanze)) return;
    std::array<double, 3> abc = {0.0, 0.0, 1.0};
    const auto parole = ParoleDi(ElementiXml::Valore(nodo, kScartoDistanze));
    bool letti = !parole.empty() && parole.size() <= abc.size();
    for (std::size_t i = 0; letti && i < parole.size(); ++i) {
      const NumeroLetto n = LeggiNumero(parole[i]);
      letti = n.Esito == EsitoNumero::Valido && n.Valore >= 0.0;
      abc[i] = n.Valore;
    }
    if (!letti || !(abc[0] + abc[1] > 0.0))
      return X.Errore(nodo, kScartoDistanze, "non si legge",
                      "da uno a tre numeri \"a b c\": a [mm] + b [mm/km] D^c");
    Sqm.Distanza = {abc[0], abc[1]};
    if (abc[1] > 0.0 && abc[2] != 1.0)
      Perde(kScartoDistanze, nodo,
            "nella rete lo scarto cresce con la distanza: l'esponente c diventa 1");
  }

  // Plan and height have a role each; a component that is neither fixed nor adjusted is left out.
  RuoliLetti LeggiRuoli(const pugi::xml_node& nodo) {
    RuoliLetti ruoli{kNonUsato, kNonUsato};
    const auto prendi = [&](const char* attributo, int ruolo) {
      if (!ElementiXml::Ha(nodo, attributo)) return;
      const std::string_view testo = ElementiXml::Valore(nodo, attributo);
      const std::string minuscolo = Minuscole(testo);
      if (minuscolo != "xy" && minuscolo != "z" && minuscolo != "xyz")
        return X.Errore(nodo, attributo, "parola sconosciuta", "\"xy\", \"z\" o \"xyz\"");
      if (minuscolo.front() == 'x') ruoli.Pla = ruolo;
      if (minuscolo.back() == 'z') ruoli.Alt = ruolo;
      if (ruolo == kIncognito && minuscolo != testo)
        Perde(attributo, nodo,
              "punto che vincola una rete libera: letto come incognito, la rete vuole punti fissi");
    };
    prendi(gkf::kAdj, kIncognito);
    prendi(gkf::kFix, kFisso);  // wins
    return ruoli;
  }

  void Assegna(std::optional<double>& dato, std::optional<double> valore,
               const pugi::xml_node& nodo, const char* attributo) {
    if (!valore) return;
    if (dato && *dato != *valore)
      X.Diario.Avviso(X.Dove(nodo, attributo),
                      {.Record = gkf::RecordDi(nodo),
                       .Campo = attributo,
                       .Problema = "coordinata già data con un altro valore: vale quest'ultimo"});
    dato = valore;
  }

  // A point may be given in several elements: each adds what it states.
  void LeggiPunto(const pugi::xml_node& nodo) {
    const std::string nome = X.Nome(nodo, gkf::kId);
    const std::optional<double> x = X.Numero(nodo, "x", {"x", "m"});
    const std::optional<double> y = X.Numero(nodo, "y", {"y", "m"});
    const std::optional<double> z = X.Numero(nodo, "z", {"z", "m"});
    if (x.has_value() != y.has_value() && !ElementiXml::Ha(nodo, x ? "y" : "x"))
      X.Errore(nodo, x ? "y" : "x", "manca l'attributo", "x e y insieme");
    const RuoliLetti ruoli = LeggiRuoli(nodo);
    if (nome.empty()) return;
    const auto [voce, nuovo] = IndiceDaNome.try_emplace(nome, X.Libro.Punti.size());
    if (nuovo) X.Libro.Punti.push_back({nome, {}, {}, {}, ruoli, X.Dove(nodo)});
    PuntoLibretto& p = X.Libro.Punti[voce->second];
    if (ruoli.Pla != kNonUsato) p.Ruoli.Pla = ruoli.Pla;
    if (ruoli.Alt != kNonUsato) p.Ruoli.Alt = ruoli.Alt;
    if (x && y) {
      Assegna(p.Est, AsseX.Est * *x + AsseY.Est * *y + 0.0, nodo, AsseX.Est != 0.0 ? "x" : "y");
      Assegna(p.Nord, AsseX.Nord * *x + AsseY.Nord * *y + 0.0, nodo, AsseX.Nord != 0.0 ? "x" : "y");
    }
    Assegna(p.Quota, z, nodo, "z");
  }

  void LeggiDescrizione(const pugi::xml_node& nodo) {
    const std::string_view testo = SenzaBianchi(nodo.child_value(), kBianchiEFini);
    if (testo.empty()) return;
    if (testo.find_first_of("\r\n") == std::string_view::npos)
      X.Libro.DatiProgetto.Nome = testo;
    else
      X.Libro.Note.emplace_back(testo);
  }

  void LeggiOsservazioni(const pugi::xml_node& nodo) {
    LeggiPredefiniti(nodo);
    for (const pugi::xml_node& e : nodo.children()) {
      const std::string_view nome = e.name();
      if (nome == gkf::kPoint) LeggiPunto(e);
      if (nome == gkf::kObs) gkf::LeggiObs(e, Sqm, Modo, X);
      for (const NonPortato& n : kNonPortati) {
        if (nome != n.Elemento) continue;
        const auto figli = e.children(n.Uno);
        NonSupportato(e, std::string(n.Genere),
                      static_cast<int>(std::distance(figli.begin(), figli.end())), Modo.Ignora, X);
      }
    }
  }

  // Points that observations name and no element defines: the format leaves them out of the
  // adjustment.
  void AggiungiNonDefiniti() {
    const auto aggiungi = [&](const std::string& nome, const Posizione& dove) {
      if (!IndiceDaNome.try_emplace(nome, X.Libro.Punti.size()).second) return;
      X.Libro.Punti.push_back({nome, {}, {}, {}, {kNonUsato, kNonUsato}, dove});
      X.Diario.Avviso(dove, {.Record = NomePunto(nome),
                             .Problema = "nessun <point> lo definisce: resta escluso"});
    };
    for (const PostazioneLibretto& s : X.Libro.Postazioni) {
      aggiungi(s.Punto, s.Dove);
      for (const BattutaLibretto& b : s.Battute) aggiungi(b.Punto, b.Dove);
    }
  }

  // What the roles of the points and the readings leave to compute.
  void ScegliCalcolo() {
    bool inPiano = false;
    bool inQuota = false;
    for (const PostazioneLibretto& s : X.Libro.Postazioni)
      for (const BattutaLibretto& b : s.Battute) {
        inPiano = inPiano || b.Direzione || b.Distanza;
        inQuota = inQuota || b.Segnale;
      }
    int calcolo = 0;
    for (const PuntoLibretto& p : X.Libro.Punti) {
      if (inPiano && p.Ruoli.Pla == kIncognito) calcolo |= kCalcoloPlanimetria;
      if (inQuota && p.Ruoli.Alt == kIncognito) calcolo |= kCalcoloAltimetria;
    }
    if (calcolo != 0) X.Libro.Opzioni.TipoCalcolo = calcolo;
  }

  ElementiXml& X;
  gkf::Convenzioni Modo;
  Versore AsseX{0.0, 1.0}, AsseY{1.0, 0.0};
  gkf::Predefiniti Sqm;
  std::unordered_map<std::string, std::size_t> IndiceDaNome;
};

bool Riconosce(std::string_view testo) {
  return SenzaBianchi(testo, kBianchiEFini).starts_with('<') &&
         testo.substr(0, kInizioCercato).find("<" + std::string(gkf::kRoot)) !=
             std::string_view::npos;
}

void Leggi(std::string_view testo, std::string_view file, const OpzioniLettura& opzioni,
           Libretto& libretto, Diagnostica& diagnostica) {
  ElementiXml xml(testo, file, gkf::RecordDi, libretto, diagnostica);
  const pugi::xml_node radice = xml.Carica(gkf::kRoot);
  if (radice.empty()) return;
  xml.ControllaNoti(radice, kNoti);
  xml.ContaIstruzioni();
  LettoreReteGkf(xml, opzioni.IgnoraNonSupportati).Leggi(radice);
  xml.ScriviConteggi();
}

}  // namespace

const Lettore kLettoreGkf = {"gkf", "rete in XML (.gkf)", kOpzioneIgnora, Riconosce, Leggi};

}  // namespace compensa

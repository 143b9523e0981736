// Looks of points by role, of sights by their largest normalised residual, and of ellipses by
// level. Each layer is a list of classes over one column; colours are those of Okabe and Ito, which
// the colour-blind tell apart. All texts here are free of characters that XML would escape.

#include "host/uscite/gis/gpkg_stili.h"

#include <span>

namespace compensa {

namespace {

enum class Genere { Marcatore, Linea, Area };

struct Classe {
  std::string_view Valore;  // of the column
  std::string_view Etichetta;
  std::string_view Colore;    // #rrggbb
  std::string_view Rgb;       // the same as "r,g,b"
  std::string_view SegnoQml;  // of a marker; of a line or outline its dash
  std::string_view SegnoSld;
  std::string_view Larghezza;  // of a marker or line [mm]
};

constexpr Classe kClassiPunti[] = {
    {"fisso", "punto fisso", "#0072b2", "0,114,178", "triangle", "triangle", "3.4"},
    {"compensato", "punto compensato", "#009e73", "0,158,115", "circle", "circle", "2.6"},
    {"incognito", "punto non compensato", "#e69f00", "230,159,0", "circle", "circle", "2.6"},
    {"escluso", "punto escluso", "#7f7f7f", "127,127,127", "cross2", "x", "2.6"},
};
constexpr Classe kClassiVisuali[] = {
    {"regolare", "w fino a 2", "#0072b2", "0,114,178", "solid", "", "0.26"},
    {"attenzione", "w da 2 a 3.29", "#e69f00", "230,159,0", "solid", "", "0.5"},
    {"sospetta", "w oltre 3.29", "#d55e00", "213,94,0", "solid", "", "0.8"},
    {"senza equazioni", "non usata nel calcolo", "#7f7f7f", "127,127,127", "dash", "4 2", "0.26"},
};
constexpr Classe kClassiEllissi[] = {
    {"standard 1 sigma", "ellisse standard (1 sigma)", "#cc79a7", "204,121,167", "solid", "",
     "0.4"},
    {"95 %", "ellisse di confidenza 95 %", "#7f7f7f", "127,127,127", "dash", "4 2", "0.3"},
};

struct Strato {
  std::string_view Tabella;
  Genere Segno;
  std::string_view Colonna;    // that the classes tell apart
  std::string_view Etichetta;  // column written beside the features; empty = none
  std::span<const Classe> Classi;
};
constexpr std::array<Strato, 3> kStrati{{
    {"punti", Genere::Marcatore, "ruolo", "nome", kClassiPunti},
    {"visuali", Genere::Linea, "classe", "", kClassiVisuali},
    {"ellissi", Genere::Area, "livello", "", kClassiEllissi},
}};

// Replaces every {name} of a model; the models hold no other braces.
struct Valore {
  std::string_view Nome, Testo;
};
std::string Componi(std::string_view modello, std::initializer_list<Valore> valori) {
  std::string testo;
  for (std::size_t da = 0; da < modello.size();) {
    const std::size_t apre = modello.find('{', da);
    testo += modello.substr(da, apre - da);
    if (apre == std::string_view::npos) break;
    const std::size_t chiude = modello.find('}', apre);
    for (const Valore& v : valori)
      if (v.Nome == modello.substr(apre + 1, chiude - apre - 1)) testo += v.Testo;
    da = chiude + 1;
  }
  return testo;
}

std::string Componi(std::string_view modello, const Strato& strato, const Classe& c,
                    std::string_view indice = {}) {
  return Componi(modello, {{"colonna", strato.Colonna},
                           {"valore", c.Valore},
                           {"etichetta", c.Etichetta},
                           {"colore", c.Colore},
                           {"rgb", c.Rgb},
                           {"qml", c.SegnoQml},
                           {"sld", c.SegnoSld},
                           {"larghezza", c.Larghezza},
                           {"indice", indice}});
}

std::string_view SimboloQml(Genere genere) {
  switch (genere) {
    case Genere::Marcatore:
      return R"(<symbol type="marker" name="{indice}" alpha="1" clip_to_extent="1" force_rhr="0">
<layer class="SimpleMarker" enabled="1" locked="0" pass="0">
<prop k="name" v="{qml}"/><prop k="color" v="{rgb},255"/><prop k="outline_color" v="{rgb},255"/>
<prop k="outline_width" v="0.4"/><prop k="outline_width_unit" v="MM"/>
<prop k="size" v="{larghezza}"/><prop k="size_unit" v="MM"/>
</layer></symbol>
)";
    case Genere::Linea:
      return R"(<symbol type="line" name="{indice}" alpha="1" clip_to_extent="1" force_rhr="0">
<layer class="SimpleLine" enabled="1" locked="0" pass="0">
<prop k="line_color" v="{rgb},255"/><prop k="line_style" v="{qml}"/>
<prop k="line_width" v="{larghezza}"/><prop k="line_width_unit" v="MM"/>
</layer></symbol>
)";
    case Genere::Area:
      return R"(<symbol type="fill" name="{indice}" alpha="1" clip_to_extent="1" force_rhr="0">
<layer class="SimpleFill" enabled="1" locked="0" pass="0">
<prop k="color" v="{rgb},40"/><prop k="style" v="no"/><prop k="outline_color" v="{rgb},255"/>
<prop k="outline_style" v="{qml}"/><prop k="outline_width" v="{larghezza}"/>
<prop k="outline_width_unit" v="MM"/>
</layer></symbol>
)";
  }
  return {};
}

std::string Qml(const Strato& strato) {
  std::string categorie, simboli;
  for (std::size_t i = 0; i < strato.Classi.size(); ++i) {
    const Classe& c = strato.Classi[i];
    const std::string indice = std::to_string(i);
    categorie += Componi(
        "<category render=\"true\" symbol=\"{indice}\" value=\"{valore}\" "
        "type=\"string\" label=\"{etichetta}\"/>\n",
        strato, c, indice);
    simboli += Componi(SimboloQml(strato.Segno), strato, c, indice);
  }
  constexpr std::string_view kScritte = R"(<labeling type="simple"><settings calloutType="simple">
<text-style fieldName="{nome}" isExpression="0" fontSize="9" fontSizeUnit="Point" )"
                                        R"(textColor="0,0,0,255">
<text-buffer bufferDraw="1" bufferSize="0.8" bufferSizeUnits="MM" bufferColor="255,255,255,255"/>
</text-style><placement placement="6" dist="1" distUnits="MM"/><rendering drawLabels="1"/>
</settings></labeling>
)";
  const std::string scritte =
      strato.Etichetta.empty() ? "" : Componi(kScritte, {{"nome", strato.Etichetta}});
  return Componi(R"(<!DOCTYPE qgis PUBLIC 'http://mrcc.com/qgis.dtd' 'SYSTEM'>
<qgis version="3.22.0" styleCategories="Symbology|Labeling" labelsEnabled="{scritto}">
<renderer-v2 type="categorizedSymbol" attr="{colonna}" symbollevels="0" enableorderby="0" )"
                 R"(forceraster="0">
<categories>
{categorie}</categories>
<symbols>
{simboli}</symbols>
</renderer-v2>
{scritte}</qgis>
)",
                 {{"scritto", strato.Etichetta.empty() ? "0" : "1"},
                  {"colonna", strato.Colonna},
                  {"categorie", categorie},
                  {"simboli", simboli},
                  {"scritte", scritte}});
}

std::string_view SimboloSld(Genere genere) {
  switch (genere) {
    case Genere::Marcatore:
      return R"(<PointSymbolizer><Graphic><Mark><WellKnownName>{sld}</WellKnownName>
<Fill><CssParameter name="fill">{colore}</CssParameter></Fill>
<Stroke><CssParameter name="stroke">{colore}</CssParameter></Stroke></Mark>
<Size>10</Size></Graphic></PointSymbolizer>)";
    case Genere::Linea:
      return R"(<LineSymbolizer><Stroke><CssParameter name="stroke">{colore}</CssParameter>
{tratti}</Stroke></LineSymbolizer>)";
    case Genere::Area:
      return R"(<PolygonSymbolizer><Stroke><CssParameter name="stroke">{colore}</CssParameter>
{tratti}</Stroke></PolygonSymbolizer>)";
  }
  return {};
}

std::string Sld(const Strato& strato) {
  std::string regole;
  for (const Classe& c : strato.Classi) {
    const bool tratti = strato.Segno != Genere::Marcatore && !c.SegnoSld.empty();
    const std::string tratteggio =
        tratti
            ? Componi("<CssParameter name=\"stroke-dasharray\">{sld}</CssParameter>\n", strato, c)
            : "";
    const std::string simbolo =
        Componi(SimboloSld(strato.Segno),
                {{"sld", c.SegnoSld}, {"colore", c.Colore}, {"tratti", tratteggio}});
    regole += Componi(R"(<Rule><Name>{etichetta}</Name><ogc:Filter><ogc:PropertyIsEqualTo>
<ogc:PropertyName>{colonna}</ogc:PropertyName><ogc:Literal>{valore}</ogc:Literal>
</ogc:PropertyIsEqualTo></ogc:Filter>
)",
                      strato, c) +
              simbolo + "</Rule>\n";
  }
  return Componi(R"(<?xml version="1.0" encoding="UTF-8"?>
<StyledLayerDescriptor version="1.0.0" xmlns="http://www.opengis.net/sld" )"
                 R"(xmlns:ogc="http://www.opengis.net/ogc">
<NamedLayer><Name>{tabella}</Name><UserStyle><FeatureTypeStyle>
{regole}</FeatureTypeStyle></UserStyle></NamedLayer>
</StyledLayerDescriptor>
)",
                 {{"tabella", strato.Tabella}, {"regole", regole}});
}

}  // namespace

std::array<StileStrato, 3> StiliStrati() {
  std::array<StileStrato, 3> stili;
  for (std::size_t i = 0; i < stili.size(); ++i)
    stili[i] = {kStrati[i].Tabella, Qml(kStrati[i]), Sld(kStrati[i])};
  return stili;
}

}  // namespace compensa

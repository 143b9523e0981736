// A GeoPackage (OGC 12-128, version 1.3): the tables that every one has, the layers punti, visuali
// and ellissi, their default looks and the table metadati. Nothing in it depends on when or where
// it is written, save the date of the document.

#include "host/uscite/gis/gpkg.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include "host/rete/grandezze.h"
#include "host/rete/sistema_riferimento.h"
#include "host/uscite/gis/archivio_sqlite.h"
#include "host/uscite/gis/gpkg_geometria.h"
#include "host/uscite/gis/gpkg_metadati.h"
#include "host/uscite/gis/gpkg_stili.h"
#include "host/uscite/scala_ellissi.h"
#include "host/uscite/visuali_uniche.h"

namespace compensa {

namespace {

using Scrivi = std::function<void(std::string_view)>;

constexpr int kSrsIgnoto = -1;  // undefined cartesian
constexpr std::string_view kEpoca = "1970-01-01T00:00:00.000Z";

// application_id is "GPKG" in ASCII, user_version the version of the format.
constexpr std::string_view kSchema = R"(
PRAGMA application_id = 1196444487;
PRAGMA user_version = 10300;
PRAGMA journal_mode = OFF;
BEGIN;
CREATE TABLE gpkg_spatial_ref_sys (srs_name TEXT NOT NULL, srs_id INTEGER PRIMARY KEY,
  organization TEXT NOT NULL, organization_coordsys_id INTEGER NOT NULL, definition TEXT NOT NULL,
  description TEXT);
CREATE TABLE gpkg_contents (table_name TEXT NOT NULL PRIMARY KEY, data_type TEXT NOT NULL,
  identifier TEXT UNIQUE, description TEXT DEFAULT '',
  last_change DATETIME NOT NULL DEFAULT (strftime('%Y-%m-%dT%H:%M:%fZ','now')),
  min_x DOUBLE, min_y DOUBLE, max_x DOUBLE, max_y DOUBLE, srs_id INTEGER,
  CONSTRAINT fk_gc_r_srs_id FOREIGN KEY (srs_id) REFERENCES gpkg_spatial_ref_sys(srs_id));
CREATE TABLE gpkg_geometry_columns (table_name TEXT NOT NULL, column_name TEXT NOT NULL,
  geometry_type_name TEXT NOT NULL, srs_id INTEGER NOT NULL, z TINYINT NOT NULL,
  m TINYINT NOT NULL, CONSTRAINT pk_geom_cols PRIMARY KEY (table_name, column_name),
  CONSTRAINT uk_gc_table_name UNIQUE (table_name),
  CONSTRAINT fk_gc_tn FOREIGN KEY (table_name) REFERENCES gpkg_contents(table_name),
  CONSTRAINT fk_gc_srs FOREIGN KEY (srs_id) REFERENCES gpkg_spatial_ref_sys (srs_id));
CREATE TABLE punti (fid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, geom POINT, nome TEXT,
  ruolo TEXT, planimetria TEXT, altimetria TEXT, est DOUBLE, nord DOUBLE, quota DOUBLE,
  sqm_e_mm DOUBLE, sqm_n_mm DOUBLE, sqm_q_mm DOUBLE, a_mm DOUBLE, b_mm DOUBLE, az_gon DOUBLE,
  az_deg DOUBLE, corr_e_mm DOUBLE, corr_n_mm DOUBLE, corr_q_mm DOUBLE);
CREATE TABLE visuali (fid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, geom LINESTRING, da TEXT,
  a TEXT, tipo TEXT, classe TEXT, andata INTEGER, ritorno INTEGER, direzione BOOLEAN,
  distanza BOOLEAN, zenit BOOLEAN, equazioni INTEGER, w_max DOUBLE, r_min DOUBLE);
CREATE TABLE ellissi (fid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, geom POLYGON, nome TEXT,
  livello TEXT, fattore DOUBLE, scala DOUBLE, a_mm DOUBLE, b_mm DOUBLE, az_gon DOUBLE,
  az_deg DOUBLE);
CREATE TABLE metadati (id INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, chiave TEXT NOT NULL,
  valore TEXT NOT NULL);
CREATE TABLE layer_styles (id INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL,
  f_table_catalog TEXT(256), f_table_schema TEXT(256), f_table_name TEXT(256),
  f_geometry_column TEXT(256), styleName TEXT(30), styleQML TEXT, styleSLD TEXT,
  useAsDefault BOOLEAN, description TEXT, owner TEXT(30), ui TEXT(30),
  update_time DATETIME DEFAULT (strftime('%Y-%m-%dT%H:%M:%fZ','now')));
)";

constexpr std::string_view kWgs84 =
    R"(GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563,)"
    R"(AUTHORITY["EPSG","7030"]],AUTHORITY["EPSG","6326"]],PRIMEM["Greenwich",0,)"
    R"(AUTHORITY["EPSG","8901"]],UNIT["degree",0.0174532925199433,AUTHORITY["EPSG","9122"]],)"
    R"(AXIS["Latitude",NORTH],AXIS["Longitude",EAST],AUTHORITY["EPSG","4326"]])";

// "gg/mm/aaaa hh:mm" as ISO 8601.
std::string DataIso(std::string_view data) {
  constexpr std::string_view kForma = "00/00/0000 00:00";
  const auto conforme = [&](std::size_t i) {
    return kForma[i] == '0' ? data[i] >= '0' && data[i] <= '9' : data[i] == kForma[i];
  };
  if (data.size() != kForma.size()) return std::string(kEpoca);
  for (std::size_t i = 0; i < data.size(); ++i)
    if (!conforme(i)) return std::string(kEpoca);
  std::string iso(data.substr(6, 4));
  ((iso += '-') += data.substr(3, 2)) += '-';
  ((iso += data.substr(0, 2)) += 'T') += data.substr(11, 5);
  return iso += ":00.000Z";
}

// A row of an insertion with as many values as asked for.
std::string Inserimento(std::string_view tabella, std::string_view colonne) {
  std::string sql =
      "INSERT INTO " + std::string(tabella) + " (" + std::string(colonne) + ") VALUES (?";
  for (const char c : colonne)
    if (c == ',') sql += ",?";
  return sql += ")";
}

std::string_view NomeClasse(const VisualeUnica& v) {
  if (v.Equazioni == 0) return "senza equazioni";
  switch (ClasseDi(v.WMassimo)) {
    case ClasseW::Sospetta: return "sospetta";
    case ClasseW::Attenzione: return "attenzione";
    case ClasseW::Regolare: return "regolare";
  }
  return {};
}

class Pacchetto {
 public:
  explicit Pacchetto(const Documento& documento);
  void Versa(const Scrivi& scrivi) const { Archivio.Versa(scrivi); }

 private:
  void Sistemi();
  void Contenuti();
  void Punti();
  void Visuali();
  void Ellissi();
  void Stili();
  void Metadati();

  const Documento& D;
  const Risultati& R;
  SistemaRiferimento Sistema;
  int Srs;
  double Esagerazione;
  double Fattore95;
  std::string Data;
  ArchivioSqlite Archivio;
};

Pacchetto::Pacchetto(const Documento& documento)
    : D(documento),
      R(documento.Esiti),
      Sistema(RiconosciSistema(R)),
      Srs(Sistema.Codice > 0 ? Sistema.Codice : kSrsIgnoto),
      Esagerazione(EsagerazioneEllissi(R)),
      Fattore95(FattoreEllissi(R)),
      Data(DataIso(D.DataOra)) {
  Archivio.Esegui(std::string(kSchema));
  Sistemi();
  Contenuti();
  Punti();
  Visuali();
  Ellissi();
  Stili();
  Metadati();
  Archivio.Esegui("COMMIT");
}

// Three systems stand in every package.
void Pacchetto::Sistemi() {
  constexpr std::string_view kNonDefinito = "undefined";
  Istruzione riga(Archivio, Inserimento("gpkg_spatial_ref_sys",
                                        "srs_name, srs_id, organization, "
                                        "organization_coordsys_id, definition, "
                                        "description"));
  const auto aggiungi = [&](std::string_view nome, int codice, std::string_view ente,
                            std::string_view definizione, std::string_view descrizione) {
    riga.Testo(nome).Intero(codice).Testo(ente).Intero(codice).Testo(definizione);
    riga.Testo(descrizione).Inserisci();
  };
  aggiungi("Undefined cartesian SRS", kSrsIgnoto, "NONE", kNonDefinito,
           "undefined cartesian coordinate reference system");
  aggiungi("Undefined geographic SRS", 0, "NONE", kNonDefinito,
           "undefined geographic coordinate reference system");
  aggiungi("WGS 84 geodetic", 4326, "EPSG", kWgs84,
           "longitude/latitude coordinates in decimal degrees on the WGS 84 spheroid");
  if (Srs > 0)
    aggiungi(Sistema.Nome, Srs, "EPSG",
             Sistema.Definizione.empty() ? kNonDefinito : std::string_view(Sistema.Definizione),
             Sistema.Nota);
}

// The layers and tables with their extents; heights are mandatory (1) if every point has one,
// optional (2) if some have, forbidden (0) if none has.
void Pacchetto::Contenuti() {
  std::size_t posti = 0, quote = 0;
  for (const RisultatoPunto& p : R.Punti) {
    if (!Disegnabile(p)) continue;
    ++posti;
    if (std::isfinite(p.Quota)) ++quote;
  }
  Istruzione contenuto(Archivio, Inserimento("gpkg_contents",
                                             "table_name, data_type, identifier, description, "
                                             "last_change, min_x, min_y, max_x, max_y, srs_id"));
  Istruzione geometria(Archivio,
                       Inserimento("gpkg_geometry_columns",
                                   "table_name, column_name, geometry_type_name, srs_id, z, m"));
  double asse = 0.0;  // of the largest ellipse as drawn, which the extent makes room for
  for (const RisultatoPunto& p : R.Punti)
    if (ConEllisse(p))
      asse = std::max(asse, p.EllAsseMag * std::fmax(Fattore95, 1.0) * Esagerazione);
  const Riquadro q = RiquadroPunti(R);
  const auto strato = [&](std::string_view nome, std::string_view descrizione,
                          std::string_view genere, int z, double margine, bool vuoto) {
    contenuto.Testo(nome).Testo("features").Testo(nome).Testo(descrizione).Testo(Data);
    if (vuoto)
      contenuto.Nullo().Nullo().Nullo().Nullo();
    else
      contenuto.Numero(q.EstMin - margine)
          .Numero(q.NordMin - margine)
          .Numero(q.EstMax + margine)
          .Numero(q.NordMax + margine);
    contenuto.Intero(Srs).Inserisci();
    geometria.Testo(nome).Testo("geom").Testo(genere).Intero(Srs).Intero(z).Intero(0).Inserisci();
  };
  const int z = quote == 0 ? 0 : quote == posti ? 1 : 2;
  strato("punti",
         "Punti: s.q.m. ed ellissi standard a posteriori (1 sigma), azimut del semiasse maggiore "
         "da Nord in senso orario, correzioni = compensata - iniziale",
         "POINT", z, 0.0, posti == 0);
  strato("visuali",
         "Visuali, una per coppia di punti: w_max = residuo normalizzato a posteriori più grande, "
         "r_min = ridondanza locale più piccola",
         "LINESTRING", 0, 0.0, posti == 0);
  strato("ellissi",
         "Ellissi d'errore a posteriori, ingrandite di scala volte; livello dice la probabilità",
         "POLYGON", 0, asse, asse == 0.0);
  const auto tabella = [&](std::string_view nome, std::string_view descrizione) {
    contenuto.Testo(nome).Testo("attributes").Testo(nome).Testo(descrizione).Testo(Data);
    contenuto.Nullo().Nullo().Nullo().Nullo().Nullo().Inserisci();
  };
  tabella("metadati", "Provenienza, esito, convenzioni e significato delle colonne");
  tabella("layer_styles", "");
}

void Pacchetto::Punti() {
  Istruzione riga(Archivio, Inserimento("punti",
                                        "geom, nome, ruolo, planimetria, altimetria, est, nord, "
                                        "quota, sqm_e_mm, sqm_n_mm, sqm_q_mm, a_mm, b_mm, az_gon, "
                                        "az_deg, corr_e_mm, corr_n_mm, corr_q_mm"));
  for (const RisultatoPunto& p : R.Punti) {
    if (Disegnabile(p)) {
      const auto quota = std::isfinite(p.Quota) ? std::optional(p.Quota) : std::nullopt;
      riga.Blob(GeometriaPunto(Srs, {p.Est, p.Nord}, quota));
    } else {
      riga.Nullo();
    }
    riga.Testo(p.Nome).Testo(NomeRuolo(RuoloDisegno(R, p)));
    riga.Testo(NomeRuolo(p.Ruoli.Pla)).Testo(NomeRuolo(p.Ruoli.Alt));
    riga.Numero(p.Est).Numero(p.Nord).Numero(p.Quota);
    for (const double metri : {p.SqmEst, p.SqmNord, p.SqmQuota, p.EllAsseMag, p.EllAsseMin})
      riga.Numero(metri * kMmPerMetro);
    riga.Numero(p.EllAzimut).Numero(p.EllAzimut * kGradiPerGon);
    riga.Numero(Correzione(p.Ruoli.Pla, p.Est, p.EstIniziale) * kMmPerMetro);
    riga.Numero(Correzione(p.Ruoli.Pla, p.Nord, p.NordIniziale) * kMmPerMetro);
    riga.Numero(Correzione(p.Ruoli.Alt, p.Quota, p.QuotaIniziale) * kMmPerMetro).Inserisci();
  }
}

void Pacchetto::Visuali() {
  Istruzione riga(Archivio, Inserimento("visuali",
                                        "geom, da, a, tipo, classe, andata, ritorno, direzione, "
                                        "distanza, zenit, equazioni, w_max, r_min"));
  for (const VisualeUnica& v : RaccogliVisuali(R)) {
    const RisultatoPunto& da = R.Punti[static_cast<std::size_t>(v.Da)];
    const RisultatoPunto& a = R.Punti[static_cast<std::size_t>(v.A)];
    if (Disegnabile(da) && Disegnabile(a))
      riga.Blob(GeometriaLinea(Srs, {da.Est, da.Nord}, {a.Est, a.Nord}));
    else
      riga.Nullo();
    riga.Testo(da.Nome).Testo(a.Nome).Testo(NomeTipo(v)).Testo(NomeClasse(v));
    riga.Intero(v.Andata).Intero(v.Ritorno);
    riga.Logico(v.Direzione).Logico(v.Distanza).Logico(v.Zenit).Intero(v.Equazioni);
    riga.Numero(v.WMassimo).Numero(v.RidondanzaMinima).Inserisci();
  }
}

void Pacchetto::Ellissi() {
  Istruzione riga(Archivio, Inserimento("ellissi",
                                        "geom, nome, livello, fattore, scala, a_mm, "
                                        "b_mm, az_gon, az_deg"));
  const int vertici = VerticiEllisse(R);
  const auto aggiungi = [&](const RisultatoPunto& p, std::string_view livello, double fattore) {
    riga.Blob(GeometriaPoligono(Srs, AnelloEllisse(p, fattore * Esagerazione, vertici)));
    riga.Testo(p.Nome).Testo(livello).Numero(fattore).Numero(Esagerazione);
    riga.Numero(p.EllAsseMag * fattore * kMmPerMetro).Numero(p.EllAsseMin * fattore * kMmPerMetro);
    riga.Numero(p.EllAzimut).Numero(p.EllAzimut * kGradiPerGon).Inserisci();
  };
  for (const RisultatoPunto& p : R.Punti) {
    if (!ConEllisse(p)) continue;
    aggiungi(p, "standard 1 sigma", 1.0);
    if (Presente(Fattore95)) aggiungi(p, "95 %", Fattore95);
  }
}

void Pacchetto::Stili() {
  Istruzione riga(Archivio, Inserimento("layer_styles",
                                        "f_table_catalog, f_table_schema, f_table_name, "
                                        "f_geometry_column, styleName, styleQML, styleSLD, "
                                        "useAsDefault, description, owner, update_time"));
  for (const StileStrato& stile : StiliStrati()) {
    riga.Testo("").Testo("").Testo(stile.Strato).Testo("geom").Testo(stile.Strato);
    riga.Testo(stile.Qml).Testo(stile.Sld).Intero(1).Testo("").Testo("").Testo(Data).Inserisci();
  }
}

void Pacchetto::Metadati() {
  Istruzione riga(Archivio, Inserimento("metadati", "chiave, valore"));
  for (const VoceMetadati& voce : VociMetadati(D, Sistema, Esagerazione, Fattore95))
    riga.Testo(voce.Chiave).Testo(voce.Valore).Inserisci();
}

}  // namespace

bool SaScrivereGeoPackage() { return true; }

void ScriviGeoPackage(const Documento& documento, const Scrivi& scrivi) {
  Pacchetto(documento).Versa(scrivi);
}

}  // namespace compensa

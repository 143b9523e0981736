#pragma once

// The fields of a network file and of its tables in CSV, as the manual describes them. The readers
// check at compile time that they know the same keys.

#include <array>
#include <cstddef>
#include <string_view>

namespace compensa {

enum class SezioneRete {
  File,
  Progetto,
  Opzioni,
  Curvatura,
  Punto,
  Stazione,
  Eccentricita,
  Osservazione,
  PuntiCsv,
  OsservazioniCsv,
};

struct TitoloSezione {
  SezioneRete Sezione;
  std::string_view Titolo, Premessa;
};

inline constexpr std::array<TitoloSezione, 10> kSezioniRete{{
    {SezioneRete::File, "IN CIMA AL FILE", "Chiavi fuori da ogni tabella."},
    {SezioneRete::Progetto, "[progetto]", "Facoltativa."},
    {SezioneRete::Opzioni, "[opzioni]", "Che cosa calcolare e quanto valgono le misure."},
    {SezioneRete::Curvatura, "[curvatura_rifrazione]",
     "Facoltativa: correzione dei dislivelli per curvatura terrestre e rifrazione."},
    {SezioneRete::Punto, "[[punti]]", "Un punto; oppure un elenco punti = [ { ... }, ... ]."},
    {SezioneRete::Stazione, "[[stazioni]]",
     "Una messa in stazione dello strumento, con il suo "
     "cerchio."},
    {SezioneRete::Eccentricita, "eccentricita = { ... }",
     "In una stazione: lo strumento non sta sul punto."},
    {SezioneRete::Osservazione, "osservazioni = [ { ... }, ... ]",
     "In una stazione: le letture. Una distanza entra nel calcolo solo con il suo zenit."},
    {SezioneRete::PuntiCsv, "TABELLA CSV DEI PUNTI",
     "Colonne, in qualunque ordine; separatore ; , o tabulazione. Un campo vuoto o - è un valore "
     "non dato."},
    {SezioneRete::OsservazioniCsv, "TABELLA CSV DELLE OSSERVAZIONI",
     "Come sopra. Righe con la stessa stazione e lo stesso giro sono una messa in stazione."},
}};

struct CampoRete {
  SezioneRete Sezione;
  std::string_view Chiave;
  std::string_view Unita;    // empty = none
  std::string_view SeManca;  // what an absent field means
  std::string_view Significato;
};

inline constexpr std::string_view kObbligatorio = "obbligatorio";
inline constexpr std::string_view kNonDatoTesto = "non dato";
inline constexpr std::string_view kCalcolatoTesto = "calcolata dalle misure, se bastano";

inline constexpr CampoRete kCampiRete[] = {
    {SezioneRete::File, "formato", "", kObbligatorio, "versione del formato: sempre 1"},
    {SezioneRete::File, "progetto", "", "nessun dato", "tabella [progetto]"},
    {SezioneRete::File, "opzioni", "", "valori di ogni chiave", "tabella [opzioni]"},
    {SezioneRete::File, "curvatura_rifrazione", "", "nessuna correzione",
     "tabella [curvatura_rifrazione]"},
    {SezioneRete::File, "punti", "", kObbligatorio,
     "tabelle [[punti]], un elenco, o il nome di un file CSV nella stessa cartella"},
    {SezioneRete::File, "stazioni", "", "vedi osservazioni", "tabelle [[stazioni]]"},
    {SezioneRete::File, "osservazioni", "", "vedi stazioni",
     "nome di un file CSV nella stessa cartella, al posto di [[stazioni]]"},
    {SezioneRete::Progetto, "nome", "", "nessuno", "nome del lavoro"},
    {SezioneRete::Progetto, "epsg", "",
     "si riconosce solo Gauss-Boaga, dal falso Est di una rete cartografica",
     "codice EPSG del sistema di coordinate, per chi riceve i risultati: 3003 e 3004 Gauss-Boaga, "
     "23032 e 23033 UTM ED50, 7791, 7792 e 7793 UTM RDN2008; non cambia il calcolo"},
    {SezioneRete::Opzioni, "calcolo", "", "\"plano-altimetria\"",
     "\"planimetria\", \"altimetria\", \"plano-altimetria\" o \"nessuno\""},
    {SezioneRete::Opzioni, "sqm_direzione", "gon", "obbligatorio con le direzioni",
     "scarto quadratico medio di un angolo, differenza di due direzioni"},
    {SezioneRete::Opzioni, "sqm_distanza_costante", "m", "obbligatorio con le distanze",
     "parte costante dello scarto quadratico medio di una distanza"},
    {SezioneRete::Opzioni, "sqm_distanza_proporzionale", "m/km", "0",
     "parte proporzionale alla distanza, che si somma alla costante"},
    {SezioneRete::Opzioni, "iterazioni", "", "10",
     "numero massimo di iterazioni della planimetria, da 1 a 1000"},
    {SezioneRete::Opzioni, "cartografiche", "", "false",
     "true: coordinate Gauss-Boaga o UTM, con le osservazioni da ridurre al piano"},
    {SezioneRete::Curvatura, "attiva", "", "false", "true per applicare la correzione"},
    {SezioneRete::Curvatura, "coefficiente", "", "0.13", "coefficiente di rifrazione"},
    {SezioneRete::Curvatura, "raggio", "m", "6378000", "raggio della Terra"},
    {SezioneRete::Punto, "nome", "", kObbligatorio, "un testo o un intero, unico nella rete"},
    {SezioneRete::Punto, "est", "m", kCalcolatoTesto, "coordinata Est, nota o approssimata"},
    {SezioneRete::Punto, "nord", "m", kCalcolatoTesto, "coordinata Nord, nota o approssimata"},
    {SezioneRete::Punto, "quota", "m", kCalcolatoTesto, "quota, nota o approssimata"},
    {SezioneRete::Punto, "planimetria", "", "\"incognito\"",
     "ruolo in planimetria: \"incognito\", \"fisso\" o \"escluso\""},
    {SezioneRete::Punto, "altimetria", "", "\"incognito\"",
     "ruolo in altimetria: le stesse parole"},
    {SezioneRete::Stazione, "punto", "", kObbligatorio, "nome del punto su cui si sta"},
    {SezioneRete::Stazione, "altezza", "m", kNonDatoTesto,
     "altezza dello strumento sul punto; senza, la stazione non entra nell'altimetria"},
    {SezioneRete::Stazione, "altezza_nota", "", "true",
     "false: l'altezza data è approssimata, un'incognita dell'altimetria"},
    {SezioneRete::Stazione, "eccentricita", "", "strumento in centro",
     "tabella { distanza = ..., direzione = ... }"},
    {SezioneRete::Stazione, "osservazioni", "", "nessuna", "le letture, nel loro ordine"},
    {SezioneRete::Eccentricita, "distanza", "m", kNonDatoTesto,
     "distanza orizzontale fra strumento e punto"},
    {SezioneRete::Eccentricita, "direzione", "gon", kNonDatoTesto,
     "lettura del cerchio dallo strumento verso il punto, da 0 a 400"},
    {SezioneRete::Osservazione, "punto", "", kObbligatorio, "nome del punto osservato"},
    {SezioneRete::Osservazione, "direzione", "gon", kNonDatoTesto,
     "lettura al cerchio orizzontale, da 0 a 400"},
    {SezioneRete::Osservazione, "zenit", "gon", kNonDatoTesto,
     "angolo zenitale al cerchio sinistro, da 0 a 400"},
    {SezioneRete::Osservazione, "segnale", "m", kNonDatoTesto,
     "altezza del segnale sul punto; senza, la visuale non entra nell'altimetria"},
    {SezioneRete::Osservazione, "distanza", "m", kNonDatoTesto, "distanza misurata, maggiore di 0"},
    {SezioneRete::Osservazione, "tipo", "", "\"orizzontale\"",
     "\"orizzontale\" (0), \"inclinata\" (1), \"piana\" (3), 6, 7 o \"fuori_centro\" (10, 20, 30)"},
    {SezioneRete::PuntiCsv, "nome", "", kObbligatorio, "nome del punto"},
    {SezioneRete::PuntiCsv, "est", "m", kNonDatoTesto, "la colonna è obbligatoria"},
    {SezioneRete::PuntiCsv, "nord", "m", kNonDatoTesto, "la colonna è obbligatoria"},
    {SezioneRete::PuntiCsv, "quota", "m", kNonDatoTesto, "quota"},
    {SezioneRete::PuntiCsv, "planimetria", "", "incognito", "ruolo: incognito, fisso o escluso"},
    {SezioneRete::PuntiCsv, "altimetria", "", "incognito", "ruolo: le stesse parole"},
    {SezioneRete::OsservazioniCsv, "stazione", "", kObbligatorio, "nome del punto su cui si sta"},
    {SezioneRete::OsservazioniCsv, "giro", "", "lo stesso",
     "distingue più messe in stazione sullo stesso punto"},
    {SezioneRete::OsservazioniCsv, "altezza", "m", kNonDatoTesto, "altezza dello strumento"},
    {SezioneRete::OsservazioniCsv, "altezza_nota", "", "si", "si o no, come nelle stazioni"},
    {SezioneRete::OsservazioniCsv, "ecc_distanza", "m", "in centro", "eccentricità: distanza"},
    {SezioneRete::OsservazioniCsv, "ecc_direzione", "gon", "in centro", "eccentricità: direzione"},
    {SezioneRete::OsservazioniCsv, "punto", "", kObbligatorio, "nome del punto osservato"},
    {SezioneRete::OsservazioniCsv, "direzione", "gon", kNonDatoTesto, "come nelle osservazioni"},
    {SezioneRete::OsservazioniCsv, "zenit", "gon", kNonDatoTesto, "come nelle osservazioni"},
    {SezioneRete::OsservazioniCsv, "segnale", "m", kNonDatoTesto, "come nelle osservazioni"},
    {SezioneRete::OsservazioniCsv, "distanza", "m", kNonDatoTesto, "come nelle osservazioni"},
    {SezioneRete::OsservazioniCsv, "tipo", "", "orizzontale", "come nelle osservazioni"},
};

// Whether a reader's list of names is that of the table, in the same order.
template <class Nomi, class Nome>
constexpr bool StessiCampi(SezioneRete sezione, const Nomi& nomi, Nome nome) {
  std::size_t i = 0;
  for (const CampoRete& campo : kCampiRete) {
    if (campo.Sezione != sezione) continue;
    if (i == nomi.size() || nome(nomi[i]) != campo.Chiave) return false;
    ++i;
  }
  return i == nomi.size();
}

template <class Nomi>
constexpr bool StessiCampi(SezioneRete sezione, const Nomi& nomi) {
  return StessiCampi(sezione, nomi, [](std::string_view nome) { return nome; });
}

}  // namespace compensa

// The commands and options of the program. Every text is read by the surveyor.

#include "host/comando/opzioni_programma.h"

#include "host/base/stato.h"
#include "host/importazione/lettore.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

using G = GenereValore;

constexpr VoceStato kStati[] = {
    {kStatoRiuscito, "tutte le compensazioni richieste sono riuscite"},
    {kStatoNonCompensata,
     "rete non determinabile, oppure una compensazione si è interrotta o non è arrivata a "
     "convergenza (il rapporto dice perché), o qualche punto incognito è rimasto senza coordinate "
     "(un errore lo nomina)"},
    {kStatoUso, "uso sbagliato della riga di comando"},
    {kStatoRete, "file della rete o libretto sbagliato o non leggibile"},
    {kStatoUscita, "uscita che non si può scrivere, o memoria insufficiente"},
    {kStatoInterno, "errore interno del programma"},
};

constexpr VoceAmbiente kAmbiente[] = {
    {"NO_COLOR", "se non è vuota, niente colori (salvo --colori sempre)"},
    {"TERM", "con \"dumb\" niente colori né riga di avanzamento"},
    {"SOURCE_DATE_EPOCH",
     "secondi dal 1970 (UTC) da scrivere come data dei risultati al posto dell'ora corrente: serve "
     "ad avere file identici a ogni esecuzione"},
};

Gruppo Comuni() {
  return {"Altre opzioni",
          {{.Nome = "colori",
            .Valore = "QUANDO",
            .Descrizione = "colori nei messaggi; auto (se manca) vuol dire solo su un terminale",
            .Genere = G::Parola,
            .Parole = {"auto", "mai", "sempre"}},
           {.Nome = "aiuto",
            .Corta = 'h',
            .Altro = "help",
            .Descrizione = "mostra questo testo ed esce"},
           {.Nome = "versione", .Altro = "version", .Descrizione = "mostra la versione ed esce"}}};
}

Opzione Quieto(std::string_view descrizione) {
  return {.Nome = "quieto", .Corta = 'q', .Descrizione = descrizione};
}

Opzione Uscita(std::string_view nome, std::string_view descrizione) {
  return {.Nome = nome,
          .Valore = "FILE",
          .Descrizione = descrizione,
          .Genere = G::File,
          .Facoltativo = true};
}

Opzione Numero(std::string_view nome, std::string_view valore, std::string_view descrizione) {
  return {.Nome = nome, .Valore = valore, .Descrizione = descrizione, .Genere = G::Testo};
}

Opzione Punti(std::string_view nome, std::string_view descrizione) {
  return {.Nome = nome,
          .Valore = "PUNTI",
          .Descrizione = descrizione,
          .Genere = G::Testo,
          .Elenco = true};
}

Comando CreaCompensa() {
  Opzione rapporto = Uscita(
      "rapporto", "rapporto di calcolo; se manca, con una sola rete va sull'uscita standard");
  rapporto.Corta = 'o';
  Gruppo uscite{"Uscite",
                {rapporto, Uscita("html", "pagina HTML con disegno, risultati e rapporto"),
                 Uscita("csv",
                        "tabelle per il foglio di calcolo: punti (FILE) e osservazioni "
                        "(FILE senza .csv, più .osservazioni.csv)"),
                 Uscita("dxf", "disegno della rete per il CAD (DXF R12)"),
                 Uscita("gpkg", "punti, visuali ed ellissi per il GIS (GeoPackage)"),
                 Uscita("gkf", "la rete in XML per un altro programma di compensazione"),
                 Uscita("json", "tutti i risultati per altri programmi")}};
  Gruppo forma{"Forma delle uscite",
               {{.Nome = "decimali",
                 .Valore = "SEGNO",
                 .Descrizione = "separatore dei decimali nelle tabelle CSV (se manca: punto)",
                 .Genere = G::Parola,
                 .Parole = {"punto", "virgola"}},
                {.Nome = "codifica",
                 .Valore = "CODIFICA",
                 .Descrizione = "codifica del rapporto (se manca: utf-8)",
                 .Genere = G::Parola,
                 .Parole = {"utf-8", "windows-1252"}},
                Quieto("solo gli errori: niente avvisi, avanzamento e sommario")}};
  return {
      "",
      "RETE.toml... [OPZIONI]",
      "compensazione rigorosa di reti topografiche di appoggio",
      "Legge una o più reti, le compensa ai minimi quadrati in planimetria e in altimetria e "
      "scrive il rapporto di calcolo e le altre uscite richieste.\n\n"
      "Un'uscita senza FILE prende il nome della rete e la sua cartella: rete.toml dà rete.txt "
      "(rapporto), rete.html, rete.dxf, rete.gpkg, rete.gkf, rete.json, e con --csv "
      "rete.punti.csv e rete.osservazioni.csv. Se FILE è una cartella, o finisce con \"/\", i "
      "file con questi nomi vanno lì; \"-\" è l'uscita standard. Un valore che finisce in .toml "
      "è preso come rete.\n\n"
      "Con più reti un errore in una non ferma le altre; il rapporto si scrive solo con -o (senza "
      "FILE o con una cartella), e sull'uscita standard va una tabella riassuntiva. Lo stato di "
      "uscita è il più alto fra quelli delle reti.\n\n"
      "I file compaiono solo se completi: un errore o Ctrl-C non lascia file a metà e non tocca "
      "quelli che c'erano. Messaggi, avanzamento e sommario vanno sull'uscita degli errori.",
      G::Rete,
      {uscite, forma, Comuni()},
      {{"compensa rete.toml", "rapporto sullo schermo"},
       {"compensa rete.toml -o rapporto.txt", "rapporto in un file; con il solo -o in rete.txt"},
       {"compensa rete.toml --html --dxf", "anche rete.html e rete.dxf"},
       {"compensa rete.toml -o consegna/ --csv consegna/", "tutto in una cartella"},
       {"compensa *.toml -o --html", "più reti: rapporti, pagine e tabella riassuntiva"},
       {"compensa rete.toml -q --codifica windows-1252 > rapporto.txt", "per vecchi programmi"},
       {"compensa rete.toml -o rapporto.txt --json - | jq .planimetria", "per altri programmi"}}};
}

Gruppo OpzioniLettura() {
  std::vector<std::string_view> formati;
  formati.reserve(Lettori().size());
  for (const Lettore* lettore : Lettori()) formati.push_back(lettore->Nome);
  return {
      "Lettura dei file",
      {{.Nome = "formato",
        .Valore = "FORMATO",
        .Descrizione = "formato dei file (se manca: si riconosce dal contenuto)",
        .Genere = G::Parola,
        .Parole = formati},
       {.Nome = "angoli",
        .Valore = "UNITÀ",
        .Descrizione =
            "come sono scritti gli angoli; 57° 32' 28.4\" è 57.5412 in gradi, 57.32284 in "
            "gms-compatti, 57-32-28.4 in gms",
        .Genere = G::Parola,
        .Parole = {"gon", "gradi", "gms-compatti", "gms"}},
       {.Nome = "assi",
        .Valore = "ORDINE",
        .Descrizione = "che cosa sono X e Y: en = Est e Nord, ne = Nord ed Est",
        .Genere = G::Parola,
        .Parole = {"en", "ne"}},
       {.Nome = "coordinate",
        .Valore = "FILE",
        .Descrizione = "tabella CSV con le coordinate dei "
                       "punti",
        .Genere = G::File},
       {.Nome = "mappa",
        .Valore = "FILE",
        .Descrizione = "CSV: file che traduce le intestazioni delle colonne",
        .Genere = G::File},
       Numero("stazione", "NOME", "nome della stazione di un file che non la dice"),
       Numero("hs", "METRI", "altezza strumentale di quella stazione"),
       Numero("gsi-codice-stazione", "CODICE",
              "codice (parola 41) che segna una nuova stazione nei file GSI"),
       {.Nome = "segnale-persistente",
        .Descrizione = "GSI: l'altezza del segnale vale fino alla successiva"},
       {.Nome = "ignora-non-supportati",
        .Descrizione = "lascia fuori quello che non si può portare, invece di rifiutare il file"}}};
}

Gruppo OpzioniOsservazioni() {
  return {"Osservazioni e punti",
          {{.Nome = "facce",
            .Valore = "MODO",
            .Descrizione =
                "che cosa fare delle letture nelle due posizioni del cerchio (se manca: media)",
            .Genere = G::Parola,
            .Parole = {"media", "separate"}},
           {.Nome = "medie", .Descrizione = "fa la media delle letture ripetute di una stazione"},
           Punti("fissi", "punti fissi in planimetria, e in quota se l'hanno (A,B,...)"),
           Punti("fissi-planimetria", "punti fissi solo in planimetria"),
           Punti("fissi-altimetria", "punti fissi solo in quota"),
           Punti("escludi", "punti da lasciare fuori, con le loro osservazioni"),
           {.Nome = "senza-approssimate",
            .Descrizione = "non calcola le coordinate approssimate che mancano"}}};
}

Gruppo OpzioniRete() {
  std::vector<std::string_view> calcoli;
  calcoli.reserve(kParoleCalcolo.size());
  for (const ParolaNota& parola : kParoleCalcolo) calcoli.push_back(parola.Testo);
  return {
      "Rete da scrivere",
      {{.Nome = "uscita",
        .Corta = 'o',
        .Valore = "RETE.toml",
        .Descrizione = "file da scrivere, anche se esiste già; \"-\" = uscita standard. Se manca: "
                       "il nome del primo file con .toml, che non deve esistere",
        .Genere = G::Rete},
       Numero("nome", "TESTO", "nome del lavoro"),
       Numero("epsg", "CODICE", "codice del sistema di coordinate"),
       {.Nome = "calcolo",
        .Valore = "PAROLA",
        .Descrizione = "che cosa compensare",
        .Genere = G::Parola,
        .Parole = calcoli},
       Numero("sqm-direzione", "GON",
              "scarto quadratico medio di un angolo letto come differenza di due direzioni"),
       Numero("sqm-distanza-costante", "METRI", "parte costante dello scarto di una distanza"),
       Numero("sqm-distanza-proporzionale", "M/KM", "parte proporzionale, metri per chilometro"),
       {.Nome = "cartografiche", .Descrizione = "coordinate cartografiche: riduzioni al piano"},
       {.Nome = "curvatura", .Descrizione = "correzione per curvatura terrestre e rifrazione"},
       Quieto("solo gli errori: niente avvisi e resoconto")}};
}

Comando CreaImporta() {
  return {"importa",
          "FILE... [-o RETE.toml] [OPZIONI]",
          "trasforma libretti di campagna in una rete",
          "Legge uno o più libretti di campagna, li unisce e ne scrive una rete in TOML, pronta da "
          "completare e compensare. Dice che cosa ha trovato, calcolato e lasciato fuori.",
          G::File,
          {OpzioniRete(), OpzioniLettura(), OpzioniOsservazioni(), Comuni()},
          {{"compensa importa rilievo.gsi --fissi V1,V2", "scrive rilievo.toml"},
           {"compensa importa lun.gsi mar.gsi -o rete.toml --coordinate noti.csv", "due giornate"},
           {"compensa importa campagna.csv --angoli gms -o - | less", "solo per vedere"}}};
}

Comando CreaVerifica() {
  return {"verifica",
          "RETE.toml... [OPZIONI]",
          "esamina reti senza compensarle",
          "Legge una o più reti e scrive sull'uscita standard che cosa contengono e che cosa non "
          "torna. "
          "Lo stato di uscita è 0 se si possono compensare così come sono, 1 se no.",
          G::Rete,
          {Comuni()},
          {{"compensa verifica rete.toml", "prima di compensare"},
           {"compensa verifica *.toml", "tutte le reti della cartella"}}};
}

}  // namespace

const Comando& ComandoCompensa() {
  static const Comando comando = CreaCompensa();
  return comando;
}

const Comando& ComandoImporta() {
  static const Comando comando = CreaImporta();
  return comando;
}

const Comando& ComandoVerifica() {
  static const Comando comando = CreaVerifica();
  return comando;
}

std::vector<const Comando*> Comandi() {
  return {&ComandoCompensa(), &ComandoImporta(), &ComandoVerifica()};
}

const Comando& ComandoDi(std::string_view parola) {
  for (const Comando* comando : Comandi())
    if (comando->Nome == parola) return *comando;
  return ComandoCompensa();
}

std::span<const VoceStato> StatiUscita() { return kStati; }

std::span<const VoceAmbiente> Ambiente() { return kAmbiente; }

}  // namespace compensa

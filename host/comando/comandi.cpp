// The table of the commands.

#include "host/comando/comandi.h"

#include <array>

#include "host/comando/esecuzione.h"
#include "host/importazione/lettore.h"

namespace compensa {

namespace {

// The words of an enumeration, in its order.
template <std::size_t n>
constexpr std::array<ParolaNota, n> InOrdine(const std::string_view (&testi)[n]) {
  std::array<ParolaNota, n> parole;
  for (std::size_t i = 0; i < n; ++i) parole[i] = {testi[i], static_cast<int>(i)};
  return parole;
}

constexpr auto kParoleColori = InOrdine({"auto", "mai", "sempre"});
constexpr auto kParoleCodifica = InOrdine({"utf-8", "windows-1252"});
constexpr auto kParoleDecimali = InOrdine({"punto", "virgola"});
constexpr auto kParoleFacce = InOrdine({"media", "separate"});
constexpr auto kParoleAssi = InOrdine({"en", "ne"});
constexpr auto kParoleAngoli = InOrdine({"gon", "gradi", "gms-compatti", "gms"});

Gruppo Comuni(Richieste& r) {
  return {
      "Altre opzioni",
      {{"--colori QUANDO", "colori nei messaggi; auto (se manca) vuol dire solo su un terminale",
        Scelta(r.Colore, kParoleColori)},
       {"-h, --aiuto, --help", "mostra questo testo ed esce", Conclusione(r.Aiuto)},
       {"--versione, --version", "mostra la versione ed esce", Conclusione(r.Versione)}}};
}

Comando ComandoCompensa(Richieste& r) {
  OpzioniCompensa& o = r.Compensa;
  Gruppo uscite{"Uscite", {}};
  for (const GenereUscita& genere : GeneriUscita()) {
    const auto chiedi = [&o, &genere](const std::string& valore) {
      o.Uscite.push_back({&genere, valore});
      return std::string();
    };
    uscite.Opzioni.push_back({genere.Firma, genere.Descrizione, {GenereValore::File, chiedi}});
  }
  return {
      .Nome = "",
      .Uso = "RETE.toml... [OPZIONI]",
      .Sommario = "compensazione rigorosa di reti topografiche di appoggio",
      .Descrizione =
          "Legge una o più reti, le compensa ai minimi quadrati in planimetria e in altimetria e "
          "scrive il rapporto di calcolo e le altre uscite richieste.\n\n"
          "Un'uscita senza FILE prende il nome della rete e la sua cartella: rete.toml dà rete.txt "
          "(rapporto), rete.html, rete.dxf, rete.gpkg, rete.gkf, rete.json, e con --csv "
          "rete.punti.csv e rete.osservazioni.csv. Se FILE è una cartella, o finisce con \"/\", i "
          "file con questi nomi vanno lì; \"-\" è l'uscita standard. Un valore che finisce in "
          ".toml "
          "è preso come rete.\n\n"
          "Con più reti un errore in una non ferma le altre; il rapporto si scrive solo con -o "
          "(senza FILE o con una cartella), e sull'uscita standard va una tabella riassuntiva. Lo "
          "stato di uscita è il più alto fra quelli delle reti.\n\n"
          "I file compaiono solo se completi: un errore o Ctrl-C non lascia file a metà e non "
          "tocca "
          "quelli che c'erano. Messaggi, avanzamento e sommario vanno sull'uscita degli errori.",
      .Argomento = "il file della rete",
      .Argomenti = o.Reti,
      .Gruppi = {uscite,
                 {"Forma delle uscite",
                  {{"--decimali SEGNO",
                    "separatore dei decimali nelle tabelle CSV (se manca: punto)",
                    Scelta(o.DecimaliCsv, kParoleDecimali)},
                   {"--codifica CODIFICA", "codifica del rapporto (se manca: utf-8)",
                    Scelta(o.CodificaRapporto, kParoleCodifica)},
                   {"-q, --quieto", "solo gli errori: niente avvisi, avanzamento e sommario",
                    Interruttore(o.Quieto)}}},
                 Comuni(r)},
      .Esempi = {{"compensa rete.toml", "rapporto sullo schermo"},
                 {"compensa rete.toml -o rapporto.txt",
                  "rapporto in un file; con il solo -o in rete.txt"},
                 {"compensa rete.toml --html --dxf", "anche rete.html e rete.dxf"},
                 {"compensa rete.toml -o consegna/ --csv consegna/", "tutto in una cartella"},
                 {"compensa *.toml -o --html", "più reti: rapporti, pagine e tabella riassuntiva"},
                 {"compensa rete.toml -q --codifica windows-1252 > rapporto.txt",
                  "per vecchi programmi"},
                 {"compensa rete.toml -o rapporto.txt --json - | jq .planimetria",
                  "per altri programmi"}},
      .Esegui = [&o] { return Esegui(o); }};
}

Gruppo OpzioniRete(OpzioniImporta& o) {
  return {"Rete da scrivere",
          {{"-o, --uscita RETE.toml",
            "file da scrivere, anche se esiste già; \"-\" = uscita standard. Se manca: il nome del "
            "primo file con .toml, che non deve esistere",
            Testo(o.Uscita, GenereValore::Rete)},
           {"--nome TESTO", "nome del lavoro", Testo(o.Nome)},
           {"--epsg CODICE", "codice del sistema di coordinate", Intero(o.Epsg, 1)},
           {"--calcolo PAROLA", "che cosa compensare", Scelta(o.TipoCalcolo, kParoleCalcolo)},
           {"--sqm-direzione GON",
            "scarto quadratico medio di un angolo letto come differenza di due direzioni",
            Numero(o.SqmDirezione, kSqmDirezione)},
           {"--sqm-distanza-costante METRI", "parte costante dello scarto di una distanza",
            Numero(o.SqmDistCostante, kSqmDistCostante)},
           {"--sqm-distanza-proporzionale M/KM", "parte proporzionale, metri per chilometro",
            Numero(o.SqmDistProporzionale, kSqmDistProporzionale)},
           {"--cartografiche", "coordinate cartografiche: riduzioni al piano",
            Interruttore(o.Cartografiche)},
           {"--curvatura", "correzione per curvatura terrestre e rifrazione",
            Interruttore(o.Curvatura)},
           {"-q, --quieto", "solo gli errori: niente avvisi e resoconto", Interruttore(o.Quieto)}}};
}

Gruppo OpzioniFile(OpzioniImporta& o) {
  std::vector<ParolaNota> formati;
  for (const Lettore* lettore : Lettori())
    formati.push_back({lettore->Nome, static_cast<int>(formati.size())});
  const auto scegli = [&o](int quale) {
    o.Formato = Lettori()[static_cast<std::size_t>(quale)]->Nome;
  };
  OpzioniLettura& l = o.Lettura;
  return {"Lettura dei file",
          {{"--formato FORMATO", "formato dei file (se manca: si riconosce dal contenuto)",
            Parola(formati, scegli)},
           {"--angoli UNITÀ",
            "come sono scritti gli angoli; 57° 32' 28.4\" è 57.5412 in gradi, 57.32284 in "
            "gms-compatti, 57-32-28.4 in gms",
            Scelta(l.Angoli, kParoleAngoli)},
           {"--assi ORDINE", "che cosa sono X e Y: en = Est e Nord, ne = Nord ed Est",
            Scelta(l.AssiXY, kParoleAssi)},
           {"--coordinate FILE", "tabella CSV con le coordinate dei punti",
            Testo(o.Coordinate, GenereValore::File)},
           {"--mappa FILE", "CSV: file che traduce le intestazioni delle colonne",
            Testo(l.Mappa, GenereValore::File)},
           {"--stazione NOME", "nome della stazione di un file che non la dice", Testo(l.Stazione)},
           {"--hs METRI", "altezza strumentale di quella stazione",
            Numero(l.AltezzaStrumento, kAltezza)},
           {"--gsi-codice-stazione CODICE",
            "codice (parola 41) che segna una nuova stazione nei file GSI",
            Intero(l.CodiceStazioneGsi, 0)},
           {"--segnale-persistente", "GSI: l'altezza del segnale vale fino alla successiva",
            Interruttore(l.SegnalePersistente)},
           {"--ignora-non-supportati",
            "lascia fuori quello che non si può portare, invece di rifiutare il file",
            Interruttore(l.IgnoraNonSupportati)}}};
}

Gruppo OpzioniPunti(OpzioniImporta& o) {
  return {
      "Osservazioni e punti",
      {{"--facce MODO",
        "che cosa fare delle letture nelle due posizioni del cerchio (se manca: media)",
        Scelta(o.Facce, kParoleFacce)},
       {"--medie", "fa la media delle letture ripetute di una stazione", Interruttore(o.Medie)},
       {"--fissi PUNTI", "punti fissi in planimetria, e in quota se l'hanno (A,B,...)",
        Elenco(o.Fissi)},
       {"--fissi-planimetria PUNTI", "punti fissi solo in planimetria", Elenco(o.FissiPlanimetria)},
       {"--fissi-altimetria PUNTI", "punti fissi solo in quota", Elenco(o.FissiAltimetria)},
       {"--escludi PUNTI", "punti da lasciare fuori, con le loro osservazioni", Elenco(o.Escludi)},
       {"--senza-approssimate", "non calcola le coordinate approssimate che mancano",
        Interruttore(o.SenzaApprossimate)}}};
}

Comando ComandoImporta(Richieste& r) {
  OpzioniImporta& o = r.Importa;
  return {
      .Nome = "importa",
      .Uso = "FILE... [-o RETE.toml] [OPZIONI]",
      .Sommario = "trasforma libretti di campagna in una rete",
      .Descrizione =
          "Legge uno o più libretti di campagna, li unisce e ne scrive una rete in TOML, pronta da "
          "completare e compensare. Dice che cosa ha trovato, calcolato e lasciato fuori.",
      .Argomento = "il file da importare",
      .GenereArgomenti = GenereValore::File,
      .Argomenti = o.File,
      .Gruppi = {OpzioniRete(o), OpzioniFile(o), OpzioniPunti(o), Comuni(r)},
      .Esempi = {{"compensa importa rilievo.gsi --fissi V1,V2", "scrive rilievo.toml"},
                 {"compensa importa lun.gsi mar.gsi -o rete.toml --coordinate noti.csv",
                  "due giornate"},
                 {"compensa importa campagna.csv --angoli gms -o - | less", "solo per vedere"}},
      .Esegui = [&o] { return Esegui(o); }};
}

Comando ComandoVerifica(Richieste& r) {
  return {.Nome = "verifica",
          .Uso = "RETE.toml... [OPZIONI]",
          .Sommario = "esamina reti senza compensarle",
          .Descrizione =
              "Legge una o più reti e scrive sull'uscita standard che cosa contengono e che cosa "
              "non torna. Lo stato di uscita è 0 se si possono compensare così come sono, 1 se no.",
          .Argomento = "il file della rete",
          .Argomenti = r.Verifica,
          .Gruppi = {Comuni(r)},
          .Esempi = {{"compensa verifica rete.toml", "prima di compensare"},
                     {"compensa verifica *.toml", "tutte le reti della cartella"}},
          .Esegui = [&r] { return EseguiVerifica(r.Verifica); }};
}

}  // namespace

std::vector<Comando> Comandi(Richieste& r) {
  return {ComandoCompensa(r), ComandoImporta(r), ComandoVerifica(r)};
}

}  // namespace compensa

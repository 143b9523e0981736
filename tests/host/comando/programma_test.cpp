// The program as a shell sees it: exit statuses, what goes where, and files that are whole or
// absent.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "tests/comuni/rete_prova.h"

using namespace compensa;

namespace {

using Uscita = std::tuple<int, std::string, std::string>;  // status and the two outputs

class Programma : public testing::Test {
 protected:
  Programma() {
    std::filesystem::copy(CARTELLA_ESEMPI, Luogo, std::filesystem::copy_options::recursive);
  }
  ~Programma() override { std::filesystem::remove_all(Luogo); }

  // A shell command in the folder of the test, where the examples are; $C is the program.
  Uscita Esegui(const std::string& comando) const {
    const std::string intero = "cd '" + Luogo.string() + "' && C='" COMPENSA "' && { " + comando +
                               "\n} > uscita.out 2> uscita.err";
    const int stato = std::system(intero.c_str());
    return {WIFEXITED(stato) ? WEXITSTATUS(stato) : -1, LeggiFile(Luogo / "uscita.out"),
            LeggiFile(Luogo / "uscita.err")};
  }

  const std::filesystem::path Luogo =
      std::filesystem::temp_directory_path() / ("compensa-prova-" + std::to_string(getpid()));
};

const struct CasoStato {
  const char* Comando;
  int Stato;
  const char *Testo, *Errori;  // a piece of each; empty = nothing at all is written
} kCasi[] = {
    {"$C zeman.toml", 0, "di peso - Sigma zero", "w massimo:   planimetria"},
    {"cd d; for l in kzt5cmrg.so.1 pugixml.so.1 sqlite3.so.0 m.so.6; do echo > lib$l; done; "
     "$C --versione",
     0, "compensa ", ""},  // no library of the current folder
    {"$C zeman.toml -q", 0, "l criterio di convergenza \xC3\xA8 stato", ""},
    {"$C zeman.toml -q --codifica windows-1252", 0, "l criterio di convergenza \xE8 stato", ""},
    {"$C zeman.toml -q -o r.txt --json r.json && tail -n 1 r.txt r.json", 0, "}\n", ""},
    {"$C zeman.toml -q -o r.txt --json -", 0, "\"schema\": \"compensa-risultati\"", ""},
    {"$C zeman.toml -q -o /dev/stdout | cmp - zeman.rapporto.txt && echo uguali", 0, "uguali", ""},
    {"touch r.txt; chmod 640 r.txt; ln -s r.txt l; $C zeman.toml -q -o l; stat -c %a,%s r.txt", 0,
     "640,4", ""},
    {"sed 's/^iterazioni.*/iterazioni = 1/' zeman.toml > l; $C l", 1, "CONVERGENZA NON RAGGIUNTA",
     "planimetria non convergente; altimetria riuscita"},
    {"$C --html zeman.toml -q && test -f zeman.html", 0, "COMPENSATE", ""},
    {"$C -q -o d/ --csv d/ --dxf d --gpkg d/x.gpkg --gkf --json zeman.toml; ls d zeman.*", 0,
     "d:\nx.gpkg\nzeman.dxf\nzeman.osservazioni.csv\nzeman.punti.csv\nzeman.txt\n", ""},
    {"$C zeman.toml -o r.txt --csv r.csv && ls r.*", 0, "r.csv\nr.osservazioni.csv\nr.txt",
     "Scritto:     r.osservazioni.csv\n"},
    {"$C zeman.toml rotta.toml stazione_libera.toml -q -o d", 3,
     "rotta.toml            errore               -        -  errore           -        -      -  -",
     "rotta.toml:1:11: errore"},
    {"$C zeman.toml manca.toml stazione_libera.toml -q -o d 2>&1; ls d", 0,
     "stazione_libera.txt\nzeman.txt\n", ""},
    {"$C zeman.toml stazione_libera.toml -q", 0,
     "      36  riuscita    0.1328       30   4.61  -\n", ""},
    {"sed 's/^iterazioni.*/iterazioni = 1/' zeman.toml > l; $C stazione_libera.toml l -q -o d", 1,
     "l                     non convergente", "l: errore: planimetria: non convergente\n"},
    {"sed '/^osservazioni/,$d' stazione_libera.toml > l; $C -q -o r.txt --json r.json l", 1, "",
     "l: errore: altimetria: punto non determinabile: \"N\" (compensa verifica dice"},
    {"cp stazione_libera.toml 'd/libert\u00e0 #1.TOML'; cd d; $C l*.TOML -q -o --html --csv; "
     "LC_ALL=C ls",
     0,
     "libert\u00e0 #1.html\nlibert\u00e0 #1.osservazioni.csv\nlibert\u00e0 "
     "#1.punti.csv\nlibert\u00e0 #1.txt\n",
     ""},
    {"sed '/\"N\", est/s/, est.*/ },/; s/dir.* }/zenit = 90 }/' stazione_libera.toml > l; "
     "$C l -q -o r.txt; s=$?; $C verifica l; (exit $((s * $?)))",
     1, "planimetria: nessun punto incognito ha coordinate",
     "l: errore: planimetria: 1 punto incognito non calcolato: \"N\""},
    {"sed '/\"N\", est/a{ nome = \"M\" },' stazione_libera.toml > l; $C l zeman.toml -q -o d", 1,
     "l           incompleta ", "l: errore: altimetria: 1 punto incognito non calcolato: \"M\""},
    {"sed '/\"N\", est/a{ nome = \"M\" },' stazione_libera.toml > l; $C verifica l", 1,
     "in parte, senza 1 punto incognito in planimetria e 1 punto incognito in altimetria", ""},
    {"sed -E 's/^([^;]*);.*;incognito;/\\1;;;;incognito;/' zeman_punti.csv > d/zeman_punti.csv; "
     "cp zeman.toml zeman_oss* d; cd d; $C zeman.toml -o --json; grep -c '^ *\"punto .* appros' "
     "*.json",
     0, "80\n", "e altre 60 righe come queste, tutte nella pagina"},
    {"$C zeman.toml stazione_libera.toml --html r.html", 2, "", "serve una cartella"},
    {"$C zeman.toml ./zeman.toml", 2, "", "data due volte"},
    {"ln zeman_punti.csv a.punti.csv; cp stazione_libera.toml a.toml; $C a.toml zeman.toml --csv",
     2, "", "non viene sovrascritto"},
    {"$C zeman.toml --csv -", 2, "", "due tabelle"},
    {"$C zeman.toml --csv r.csv --html r.csv", 2, "", "stesso file"},
    {"$C zeman.toml -o r.txt --dxf - --json -", 2, "", "serve un FILE"},
    {"$C zeman.toml --html --html", 2, "", "una volta sola"},
    {"$C verifca zeman.toml", 2, "", "forse verifica?"},
    {"$C zeman.toml importa", 2, "", "subito dopo"},
    {"cp zeman.toml importa; $C ./importa -q", 0, "COMPENSATE", ""},
    {"$C importa zeman_punti.csv --sqm-direzione -1", 2, "", "un numero non negativo [gon]"},
    {"$C importa zeman_punti.csv --face media", 2, "", "forse --facce?"},
    {"$C importa zeman_punti.csv --assi nn", 2, "", "serve una parola tra \"en\", \"ne\""},
    {"$C importa zeman_punti.csv --epsg 0", 2, "", "serve un intero da 1"},
    {"$C importa zeman_punti.csv --fissi A,,B", 2, "", "separati da virgole"},
    {"cp zeman_punti.csv zeman.csv; $C importa zeman.csv", 2, "", "esiste già"},
    {"$C libretto_di_campagna.gsi", 3, "", "(compensa importa ne fa una rete)"},
    {"printf ' \\n' > l; $C importa l -o -", 3, "", "l: errore: il file è vuoto"},
    {"$C importa zeman.toml", 2, "", "già una rete"},
    {"printf 'S;Q;Hz\\nA;B;10\\n' > x.csv; printf 'stazione = S\\na = Q\\n' > l; "
     "$C importa x.csv --mappa l -q -o d/r.toml; $C verifica d/r.toml",
     1, "Planimetria:  nessun punto vi entra\nAltimetria:   non richiesta\n", ""},
    {"SOURCE_DATE_EPOCH=0 $C importa libretto_di_campagna.gsi --nome 'Rete di appoggio' -q "
     "--coordinate libretto_punti_fissi.csv --epsg 3003 --cartografiche --curvatura -o d/r.toml; "
     "head -n 1 d/r.toml; diff d/r.toml libretto_di_campagna.toml | grep -c '^> [^#]'",
     0, " il 01/01/1970 con i dati di:\n4\n", ""},
    {"$C importa libretto_di_campagna.gsi --coordinate libretto_punti_fissi.csv --epsg 7792 -o l",
     0, "", "progetto, epsg: 7792 (RDN2008 / UTM zone 33N) ha un falso Est di 500000 m, ma"},
    {"$C verifica libretto_di_campagna.toml", 0, "\nVerdetto:     la rete si può compensare\n", ""},
    {"$C zeman.toml -q -o r.txt --csv d && ! grep '[0-9],[0-9]' d/* && "
     "$C zeman.toml -q -o r.txt --csv d --decimali virgola && ! grep -F . d/* && echo due",
     0, "due\n", ""},
    {"$C importa zeman_punti.csv --coordinate -o r.toml", 2, "", "--coordinate: vuole un valore"},
    {"$C importa zeman_punti.csv --hs -0.05 --medie=2", 2, "", "--medie: non vuole un valore"},
    {"$C importa --help", 0, "--sqm-distanza-proporzionale M/KM", ""},
    {"TERM=xterm script -qc \"$C rotta.toml\" /dev/null < /dev/null", 0, "\x1b[1;31merrore\x1b[0m",
     ""},
    {"NO_COLOR=1 TERM=xterm script -qc \"$C rotta.toml\" /dev/null < /dev/null", 0,
     "rotta.toml:1:11: errore: formato", ""},
    {"$C rotta.toml --colori sempre", 3, "", "rotta.toml:1:11: \x1b[1;31merrore\x1b[0m: formato"},
    {"$C zeman.toml --jsno r.json", 2, "", "forse --json"},
    {"$C zeman.toml --codifica ascii", 2, "", "windows-1252"},
    {"$C zeman.toml -o", 0, "", "Scritto:     zeman.txt\n"},
    {"$C zeman.toml --json -", 2, "", "serve -o"},
    {"$C zeman.toml --decimali virgola", 2, "", "--decimali: riguarda le tabelle CSV"},
    {"$C zeman.toml stazione_libera.toml --codifica windows-1252", 2, "", "solo con -o"},
    {"$C -qor.txt zeman.toml --json=r.json && head -c 1 r.json", 0, "{", ""},
    {"$C -o=r.txt -q -- zeman.toml && ls r.txt", 0, "r.txt", ""},
    {"$C zeman.toml --dec virgola", 2, "", "(forse --decimali?)"},
    {"$C zeman.toml -html", 2, "", "sconosciuta \"-html\" (forse --html?)"},
    {"$C zeman.toml \u2013html", 2, "", "(forse --html?)"},
    {"$C zeman.toml -q=1", 2, "", "--quieto: non vuole un valore"},
    {"$C zeman.toml ''", 2, "", "il nome di un file \u00e8 vuoto"},
    {"$C help", 2, "", "(forse --help?)"},
    {"$C -o zeman.txt", 2, "",
     "manca il file della rete (\"zeman.txt\" \u00e8 il valore di --rapp"},
    {"$C zeman.toml --html=", 2, "", "--html: il nome del file \u00e8 vuoto"},
    {"$C zeman.toml --quieto -q", 2, "", "--quieto: va data una volta sola"},
    {"$C zeman.toml --colori", 2, "", "vuole un valore, una parola tra \"auto\", \"mai\""},
    {"$C verifica zeman.toml -o", 2, "", "-o: non \u00e8 di compensa verifica, ma di compensa e c"},
    {"$C verifica zeman.toml --fissi A", 2, "", "Per l'uso: compensa verifica --aiuto"},
    {"$C importa zeman_punti.csv --nome --epsg 1", 2, "", "--nome: vuole un valore (TESTO)"},
    {"$C importa zeman_punti.csv ./zeman_punti.csv -o l", 2, "", "dato due volte"},
    {"$C importa zeman_punti.csv -o l --fissi A,B --escludi B", 2, "", "insieme fisso ed escluso"},
    {"$C zeman.toml -o r.txt --json ./r.txt", 2, "", "stesso file"},
    {"ln -s zeman.toml l && $C zeman.toml -o l", 2, "", "non viene sovrascritto"},
    {"ln zeman_punti.csv l && $C zeman.toml -q --json l", 2, "", "non viene sovrascritto"},
    {"mkfifo l; $C l", 3, "", "\"l\" non è un file: è un dispositivo, una pipe o un socket"},
    {"$C importa /dev/zero -o -", 3, "", "non è un file"},
    {"cat stazione_libera.toml | $C /dev/stdin -q", 0, "COMPENSATE", ""},
    {"SOURCE_DATE_EPOCH=1e9 $C zeman.toml -q -o r.txt --html d/", 2, "", "SOURCE_DATE_EPOCH vale"},
    {"$C manca.toml", 3, "", "non esiste"},
    {"echo 'formato = 2' > l; $C l -q -o r.txt", 3, "", "l:1:"},
    {"$C zeman.toml -q -o manca/r.txt", 4, "", "la cartella non esiste"},
    {"$C zeman.toml -q > /dev/full", 4, "", "spazio esaurito"},
    {"$C zeman.toml -q >&-", 4, "", "chiusa"},
    {"mkfifo l; ($C zeman.toml -q; echo $? >r.txt) >l & exec 3<l 3<&-; wait; exit $(cat r.txt)", 4,
     "", ""},
    {"(ulimit -f 8; $C zeman.toml -q -o r.txt)", 4, "", "grandezza"},
};

TEST_F(Programma, Stati) {
  // A container may have no pseudo-terminals.
  const bool terminale = std::get<0>(Esegui("script -qc true /dev/null < /dev/null")) == 0;
  for (const CasoStato& caso : kCasi) {
    if (!terminale && std::string_view(caso.Comando).find("script ") != std::string::npos) continue;
    SCOPED_TRACE(caso.Comando);
    Esegui("rm -rf r.txt r.json l d; mkdir d; echo 'formato = 2' > rotta.toml");
    const auto [stato, testo, errori] = Esegui(caso.Comando);
    EXPECT_EQ(stato, caso.Stato);
    for (const auto& [scritto, pezzo] :
         {std::pair(testo, std::string(caso.Testo)), std::pair(errori, std::string(caso.Errori))})
      EXPECT_TRUE(pezzo.empty() ? scritto.empty() : scritto.find(pezzo) != pezzo.npos) << scritto;
    EXPECT_EQ(std::get<1>(Esegui("ls -A | grep -F .compensa-")), "");
  }
}

// Whatever ends the program before both files are complete leaves the old ones and nothing else: an
// output that fails, and a signal while the program waits for who reads a pipe.
TEST_F(Programma, FileInteri) {
  for (const char* caso :
       {"$C zeman.toml -q -o r.txt --json /dev/full; test $? = 4",
        "$C zeman.toml -q -o r.txt --json manca/r.json; test $? = 4",
        "(ulimit -f 16; $C zeman.toml -q --gpkg x --json r.txt -o y; test $? = 4 && ! ls x y)",
        "mkfifo f; $C zeman.toml -q -o r.txt --json f & "
        "for i in $(seq 500); do ls .compensa-* && break; sleep 0.02; done; kill -TERM $!; wait "
        "$!; test $? = 143"}) {
    SCOPED_TRACE(caso);
    Esegui("echo vecchio > r.txt");
    EXPECT_EQ(std::get<0>(Esegui(caso)), 0);
    EXPECT_EQ(std::get<1>(Esegui("cat r.txt; ls -A | grep -F .compensa-")), "vecchio\n");
  }
}

// The manual knows every option of the help, and the reader of manuals has nothing to say on it.
TEST_F(Programma, Manuale) {
  EXPECT_EQ(Esegui("for c in '' importa verifica; do $C $c --aiuto; done |"
                   " grep -oE '^ +(-., )?--[a-z-]+' | grep -o -e '--.*' | sort -u > opzioni;"
                   " test $(wc -l < opzioni) -gt 30; $C genera man1 | sed 's/\\\\-/-/g' > pagina;"
                   " while read o; do grep -q -e \"$o.fR\" pagina || echo $o; done < opzioni"),
            Uscita(0, "", ""));
  for (const char* pagina : {"man1", "man5"})
    EXPECT_EQ(Esegui("$C genera " + std::string(pagina) +
                     " > p; ! command -v man > r || "
                     "man --warnings -l p > r"),
              Uscita(0, "", ""));
}

// What the help of a command lists is what its completion offers, and no word of it is unknown.
TEST_F(Programma, OpzioniDappertutto) {
  EXPECT_EQ(Esegui("$C genera bash > c; for c in '' importa verifica; do $C $c --aiuto | "
                   "sed -nE 's/^ +((-[a-z], )?--[a-z-]+(, --[a-z]+)?).*/\\1/p' | tr -d , | tr ' ' "
                   "'\\n' | sort > opzioni; test $(wc -l < opzioni) -gt 3; "
                   "bash -c '. ./c; _compensa_opzioni \"$0\"' \"$c\" | tr ' ' '\\n' | sort | "
                   "diff opzioni -; for o in $(cat opzioni); do "
                   "$C $c $o < /dev/null 2>&1 | grep sconosciut; done; done; true"),
            Uscita(0, "", ""));
}

const struct CasoCompletamento {
  const char *Riga, *Attese;  // words separated by blanks; candidates, sorted
} kCompletamenti[] = {
    {"i", "importa"},
    {"zem", "zeman.toml"},
    {"--de", "--decimali"},
    {"zeman.toml --decimali ", "punto virgola"},
    {"zeman.toml --codifica = w", "windows-1252"},
    {"--csv zeman_p", "zeman_punti.csv"},
    {"importa --sqm-distanza-", "--sqm-distanza-costante --sqm-distanza-proporzionale"},
    {"importa zeman_p", "zeman_punti.csv"},
    {"importa --assi ", "en ne"},
    {"importa --fissi ", ""},
    {"importa -o zem", "zeman.toml"},
    {"--decimali z", ""},
    {"verifica zem", "zeman.toml"},
    {"verifica --q", ""},
};

TEST_F(Programma, Completamento) {
  for (const CasoCompletamento& caso : kCompletamenti)
    EXPECT_EQ(Esegui("$C genera bash > c; bash -c 'set -u; . ./c; IFS=\" \"; w=\"compensa $0\";"
                     " COMP_WORDS=($w); [[ $w != *\" \" ]] || COMP_WORDS+=(\"\"); unset IFS;"
                     " COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _compensa;"
                     " echo $(printf \"%s\\n\" \"${COMPREPLY[@]}\" | sort)' '" +
                     std::string(caso.Riga) + "'"),
              Uscita(0, std::string(caso.Attese) + "\n", ""))
        << caso.Riga;
}

}  // namespace

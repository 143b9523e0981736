// The program as a shell sees it: exit statuses, what goes where, and files that are whole or
// absent.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "rete_prova.h"

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
    {"$C zeman.toml -q", 0, "l criterio di convergenza \xC3\xA8 stato", ""},
    {"$C zeman.toml -q --codifica windows-1252", 0, "l criterio di convergenza \xE8 stato", ""},
    {"$C zeman.toml -q -o r.txt --json r.json && tail -n 1 r.txt r.json", 0, "}\n", ""},
    {"$C zeman.toml -q -o r.txt --json -", 0, "\"schema\": \"compensa-risultati\"", ""},
    {"$C zeman.toml -q -o /dev/stdout | cmp - zeman.rapporto.txt && echo uguali", 0, "uguali", ""},
    {"touch r.txt; chmod 640 r.txt; ln -s r.txt l; $C zeman.toml -q -o l; stat -c %a,%s r.txt", 0,
     "640,4", ""},
    {"sed 's/^iterazioni.*/iterazioni = 1/' zeman.toml > l; $C l", 1, "CONVERGENZA NON RAGGIUNTA",
     "planimetria non convergente; altimetria riuscita"},
    {"$C zeman.toml altra.toml", 2, "", "una sola rete"},
    {"$C zeman.toml --jsno r.json", 2, "", "forse --json"},
    {"$C zeman.toml --codifica ascii", 2, "", "windows-1252"},
    {"$C zeman.toml -o", 2, "", "vuole un valore"},
    {"$C zeman.toml --json -", 2, "", "serve -o"},
    {"$C zeman.toml -o r.txt --json ./r.txt", 2, "", "stesso file"},
    {"ln -s zeman.toml l && $C zeman.toml -o l", 2, "", "non viene sovrascritto"},
    {"ln zeman_punti.csv l && $C zeman.toml -q --json l", 2, "", "non viene sovrascritto"},
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
  for (const CasoStato& caso : kCasi) {
    SCOPED_TRACE(caso.Comando);
    Esegui("rm -f r.txt r.json l");
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
        "mkfifo f; $C zeman.toml -q -o r.txt --json f & "
        "while ! ls .compensa-*; do sleep 0.02; done; kill -TERM $!; wait $!; test $? = 143"}) {
    SCOPED_TRACE(caso);
    Esegui("echo vecchio > r.txt");
    EXPECT_EQ(std::get<0>(Esegui(caso)), 0);
    EXPECT_EQ(std::get<1>(Esegui("cat r.txt; ls -A | grep -F .compensa-")), "vecchio\n");
  }
}

}  // namespace

// Field books in tables: what cadastral booklets, CSV books and tables of coordinates become, and
// what is said of the traps in them.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <set>

#include "host/codifica.h"
#include "host/importazione/coordinate_csv.h"
#include "host/importazione/lettore.h"
#include "host/numeri.h"

namespace {

std::string Carica(const std::filesystem::path& percorso) {
  std::ifstream file(percorso, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}
const std::filesystem::path kSemi = CARTELLA_SEMI;
const std::string kLibretto = Carica(kSemi / "libretto/completo.dat"),
                  kCampagna = Carica(kSemi / "csv/campagna.csv"),
                  kCoordinate = Carica(kSemi / "csv/coordinate.csv");

std::string Valore(std::optional<double> valore) { return valore ? NumeroBreve(*valore) : "-"; }

// All that was read, on one line: points, set-ups with their shots, counts, messages.
std::string Testo(const Libretto& libretto, const Diagnostica& diario) {
  std::string t;
  for (const PuntoLibretto& p : libretto.Punti) {
    t += p.Nome + '(' + Valore(p.Est) + ' ' + Valore(p.Nord) + ' ' + Valore(p.Quota) + ')';
    if (p.Ruoli.Pla) t += 'p' + std::to_string(*p.Ruoli.Pla);
    if (p.Ruoli.Alt) t += 'q' + std::to_string(*p.Ruoli.Alt);
  }
  for (const PostazioneLibretto& s : libretto.Postazioni) {
    t += '@' + s.Punto + ' ' + Valore(s.Altezza);
    for (const BattutaLibretto& b : s.Battute) {
      t += ';' + b.Punto + "?12"[static_cast<int>(b.Lato)] + ' ' + Valore(b.Direzione) + ' ' +
           Valore(b.Zenit) + ' ' + Valore(b.Distanza) + '/' + std::to_string(b.TipoDist) + ' ' +
           Valore(b.Segnale);
      if (b.SqmDirezione) t += " s" + Valore(b.SqmDirezione) + ' ' + Valore(b.SqmDistanza);
    }
  }
  for (const Tralasciati& e : libretto.Esclusi)
    t += '#' + std::to_string(e.Quanti) + ' ' + e.Genere + ':' + std::to_string(e.PrimaRiga);
  for (const std::string& riga : diario.Righe()) t += '!' + riga;
  return t;
}

// A text and what it gives. Opzioni: n, e = axes; d, c, p = degrees, with minutes packed or parted;
// m, t = Altro is the map or the table of coordinates.
struct Caso { std::string Testo, Atteso, Opzioni = "", Altro = ""; };

std::string Leggi(const Caso& caso, const Lettore& lettore) {
  static const std::string nome = std::filesystem::temp_directory_path() /
                                  ("compensa-tabelle-" + std::to_string(getpid()));
  std::ofstream(nome, std::ios::binary) << caso.Altro;
  OpzioniLettura o;
  for (const char c : caso.Opzioni) {
    if (c == 'n' || c == 'e') o.AssiXY = c == 'n' ? Assi::NordEst : Assi::EstNord;
    if (c == 'd') o.Angoli = UnitaAngoli::GradiDecimali;
    if (c == 'c') o.Angoli = UnitaAngoli::GradiCompatti;
    if (c == 'p') o.Angoli = UnitaAngoli::GradiPrimi;
    if (c == 'm') o.Mappa = nome;
  }
  Libretto libretto;
  Diagnostica diario;
  lettore.Leggi(caso.Testo, libretto.NomiFile.emplace_back("f"), o, libretto, diario);
  if (caso.Opzioni == "t") LeggiCoordinateCsv(nome, o.AssiXY, libretto, diario);
  std::filesystem::remove(nome);
  return Testo(libretto, diario);
}

const std::string kS = "1|S|1.5|n|\n";
const Caso kCasiLibretto[] = {
    {kLibretto, "@100 1.55;PF01/0010/A001? 10 98.9688 250.033/1 1.6;300? 88.4 100.618 180.286/1 1.3"
                ";301? 120.55 - 35.42/0 -"},
    {Carica(kSemi / "libretto/spezzato.dat"),
     "@100 1.55;PF01/0010/A001? 10 98.9688 250.033/1 1.6;300? 88.4 100.618 180.286/1 1.3"},
    {"1|S||\n2|A|1|2|\r1|S|0|\r\n2|A|3|0|n|\r\n", "@S -;A? 1 - 2/0 -@S 0;A? 3 - -/0 -"},
    {kS + "2|A|1|99|0|1.5|\n2|B|1|99||1.5|n|\n2|C|1||n|\n2|D|1|99|5|0|7|\n",
     "@S 1.5;A? 1 99 -/1 1.5;B? 1 99 -/1 1.5;C? 1 - -/0 -;D? 1 99 5/1 0"},
    {kS + "8|P|7|9|60|n|\n8|Q|0|0|\n", "P(9 7 -)@S 1.5#1 righe 8 con coordinate 0, 0:3", "n"},
    {kS + "8|P|7|9|\n8|P|7|8|\n", "…f:3:3: errore: punto \"P\": coordinate diverse", "e"},
    {kS + "3|a|\n2|A|1.0,2.0,-3|\n4|a|\n5|a|\n7|a|\n8|P|7|9|1|\n6|RELAZIONE TECNICA|\nx\n",
     "@S 1.5#1 righe 3 (elenchi di poligonali):2#1 vettori GNSS (righe 2):3"
     "#2 righe 4 e 5 (allineamenti e squadri, o livellazione):4#1 righe 7 (contorni):6"
     "#1 righe 8 (coordinate approssimate):7#1 linee dopo \"RELAZIONE TECNICA\":9"},
    {"1|4400000.1,600000.2,45.3|\n2|A|1|2|\n", "…f:2:3: errore: |è una base GNSS"},
    {kS + "2|A|1,5|99|5|1.5|\n", "…f:2:5: errore: |direzione: trovato \"1,5\"|i decimali del"},
    {"1|S|1,5|\n", "…f:1:5: errore: |altezza: trovato"}, {"2|A|1|2|\n", "…f:1:3: |manca la stazione"},
    {kS + "2|A|1|99|5||n|\n", "…f:2:5: errore: |ambigua: numeri dopo il nome: trovato 3 e campi"},
    {kS + "2|A|1|99|5|n|\n", "…trovato 3, serve"}, {kS + "2|A|1|99|||n|\n", "…trovato 2 e campi"},
    {kS + "2|A|x|\n", "…f:2:5: errore: "}, {kS + "2|A|1|\n9x|\n", "…f:3:1: |trovato 1, serve 4"},
    {kS + "2|A|1|2|\n2|B|1|2", "…f:3:7: errore: |la riga non finisce"},
    {kS + "2|A|1|99|5|1.5\n0|n|\n", "…f:2:12: errore: |la riga non finisce con|f:3:3: errore: riga 0"},
    {kS + "2|A|1|4\n01|5|1|n|\n", "…f:2:7: errore: |zenit: numero fuori dai limiti"},
    {kS + "2|A|1|2|n|\n2\n|B|1|2|\n", "…f:3:1: errore: |testo dopo la nota"},
    {kS + "2|S|1|2|\n", "…f:2:3: errore: |il punto osservato è la stazione stessa"},
};
const std::string kT = "stazione;hs;giro;a;faccia;dir;zen;dist;tipo;hp\n";
const Caso kCasiCsv[] = {
    {kCampagna, "@A 1.55;B1 10 98.9688 250.033/1 1.6;C1 88.4 100.618 180.286/1 1.3"},
    {"sep=;\nPunto di Stazione,ALTEZZA,Punto,Direzione [gon],sqm_dir_cc,sqm_dist_mm,Distanza "
     "orizzontale,Quota\nS,1.5,\"a;b\",1.5,10,2,7,4\nS,,B,2,,,0,\n",
     "a;b(- - 4)@S 1.5;a;b? 1.5 - 7/0 - s0.001 0.002;B? 2 - -/1 -"},
    {kT + "S;1,5;1;A;C.D.;1,5;;7;o;\nS;;2;B;2;1.5;;7;3;\nS;1.5;1;C;cs;;;7;inclinata;\n",
     "@S 1.5;A2 1.5 - 7/0 -;C1 - - 7/1 -@S -;B2 1.5 - 7/3 -"},
    {"da\ta\tdir\nS\tA\t1\nT\tA\t1\nS\tA\t2\n", "…@S -;A? 1 - -/1 -@T -;A? 1 - -/1 -@S -;A? 2 - -/1 -!|"
     "f:4:1: avviso: stazione \"S\": ritorna dopo altre stazioni senza giro"},
    {kT + "S;1,5;1;A;;1;;;;\nS;1,6;1;B;;1;;;;\n", "…f:3:3: errore: stazione \"S\", hs: valore diverso"},
    {kT + "S;;1;A;;1.500,5;;;;\n", "…f:2:9: errore: |dir: trovato \"1.500,5\"|delle migliaia"},
    {kT + "S;;1;A;III;1;;;;\n", "…f:2:8: |faccia"}, {kT + "S;;1;A;;5-3-2;;;;\n", "…f:2:9: |--angoli"},
    {kT + "S;;1;1E+05;;1;;;;\n", "…f:2:6: avviso: punto \"1E+05\", nome: sembra"},
    {kT + "S;;1;1E5;;1;;;;\nS;;1;001;;1;;;;\n", "@S -;1E5? 1 - -/1 -;001? 1 - -/1 -"},
    {kT + "S;;1;A;;1;;;;;\n", "…f:2:1: |trovato 11, serve 10"}, {"da,a,dir\nS,A,1,5\n", "…f:2:1: |punto"},
    {"da;a;dir;x\nS;A;1;5\n", "…f:1:10: errore: |\"x\" è ambigua|--assi"},
    {"da;a;dir;V\nS;A;1;5\n", "…f:1:10: errore: |colonna \"V\" sconosciuta"},
    {"da;a;sqm_dir\nS;A;6\n", "…f:2:5: |troppo grande"}, {"da;a;dist\nS;A;5\n", "…5/1 -!|avviso|tipo"},
    {"da;a;X;y;dir\nS;P;7;9;1\n", "P(9 7 -)@S -;P? 1 - -/1 -", "n"},
    {"da;a;X;y;dir\nS;P;7;9;1\n", "P(7 9 -)@S -;P? 1 - -/1 -", "e"},
    {"da;a;dir\nS;A;90,9\n", "@S -;A? 101 - -/1 -", "d"}, {"da;a;dir\nS;A;361\n", "…f:2:5: |fuori", "d"},
    {"da;a;dir\nS;A;90,5400\n", "@S -;A? 101 - -/1 -", "c"},
    {"da;a;dir\nS;A;90,6000\n", "…f:2:5: |dir: angolo che non si legge|sotto 60", "c"},
    {"da;a;dir\nS;A;90-54-00,0\n", "@S -;A? 101 - -/1 -", "p"},
};
const std::string kAltrui = "Stn;Tgt;V;X;Hz;dir\nS;A;99;7;1;8\n";
const Caso kCasiMappa[] = {
    {kAltrui, "@S -;A? 1 99 -/1 -#1 colonna \"X\":1#1 colonna \"dir\":1", "m",
     "# mia\n[colonne]\nstazione = \"STN\"\r\na=Tgt # b\nzen = 'v'\ndirezione = \"Hz\"\n"},
    {kAltrui, "…:1:1: errore: |trovato \"stazione Stn\"", "m", "stazione Stn\n"},
    {kAltrui, "…:1:4: errore: |virgolette sbagliate", "m", "a= \"Tgt\n"},
    {kAltrui, "…:1:2: errore: |colonna \"dira\" sconosciuta", "m", " dira = Hz\n"},
    {kAltrui, "…:2:1: errore: |colonna \"punto\" già", "m", "a=Tgt\npunto=V\n"},
    {kAltrui, "…:2:1: errore: |la tabella \"f\" non ha", "m", "da=Stn\na=Target\n"},
};
const std::string kConQuote = "da;a;dir;est;nord;quota\nS;B;1;1200;2150;104\n";
const Caso kCasiCoordinate[] = {
    {kConQuote, "B(1200 2150 104)p1A(1000 2000 100)p1q1C(1150 1900 98.5)p0q2@S -;B? 1 - -/1 -", "t",
     kCoordinate},
    {kConQuote, "…B(1203 2150 104)p1@|:2:1: avviso: punto \"B\": la tabella dista 3.000 m dalle|riga 2",
     "t", "punto;E;N;planimetria\nB;1203;2150;fisso\n"},
    {kConQuote, "…:3:1: |doppio: è già alla riga 2", "t", "nome;est;nord\nC;1;2\nC;1;2\n"},
    {kConQuote, "…:2:5: errore: |est e nord si danno insieme", "t", "nome;est;nord\nC;1;\n"},
    {kConQuote, "…fisso in planimetria senza est", "t", "nome;quota;ruolo\nC;1;fisso\n"},
    {kConQuote, "…:1:6: errore: |la colonna \"x\" è", "t", "nome;x;y\nC;1;2\n"},
};

// Whether a text is the one awaited, or holds every part of it: the parts stand behind "…", parted by "|".
bool Corrisponde(const std::string& letto, std::string_view atteso) {
  constexpr std::string_view kParti = "…";
  if (!atteso.starts_with(kParti)) return letto == atteso;
  for (std::size_t da = kParti.size(), fine; da <= atteso.size(); da = fine + 1) {
    fine = std::min(atteso.find('|', da), atteso.size());
    if (letto.find(atteso.substr(da, fine - da)) == std::string::npos) return false;
  }
  return true;
}

void Controlla(std::span<const Caso> casi, const Lettore& lettore, bool riconosciuti = true) {
  for (const Caso& c : casi) {
    EXPECT_TRUE(!riconosciuti || RiconosciFormato(c.Testo) == &lettore) << c.Testo;
    const std::string letto = Leggi(c, lettore);
    EXPECT_TRUE(Corrisponde(letto, c.Atteso)) << c.Testo << '\n' << c.Atteso << '\n' << letto;
  }
}

TEST(Tabelle, OgniRigaDaISuoiValoriOIlSuoMessaggio) {
  Controlla(kCasiLibretto, kLettoreCatasto);
  Controlla(kCasiCsv, kLettoreCampagna);
  Controlla(kCasiMappa, kLettoreCampagna, false);
  Controlla(kCasiCoordinate, kLettoreCampagna);
}

TEST(Tabelle, ByteQualsiasiNonFermanoLaLettura) {
  std::mt19937 motore(7);
  const std::string_view pezzi[] = {"|", "\n2|", "\"", ";;", "\xFF", "nan", "1,2,3", "\r", "-", "="};
  std::set<std::string> semi;
  for (const auto& voce : std::filesystem::recursive_directory_iterator(kSemi))
    if (voce.is_regular_file()) semi.insert(Carica(voce.path()));
  for (int giro = 0; giro < 60; ++giro) {
    for (std::string testo : semi) {
      for (unsigned n = 1 + motore() % 4; n > 0; --n)
        testo.replace(motore() % testo.size(), motore() % 4, pezzi[motore() % std::size(pezzi)]);
      const Caso caso{testo, "", std::string(1, "nxmtd"[motore() % 5]), testo};
      for (const Lettore* lettore : {&kLettoreCatasto, &kLettoreCampagna})
        EXPECT_TRUE(Utf8Valido(Leggi(caso, *lettore)) || !Utf8Valido(testo)) << testo;
    }
  }
}

}  // namespace

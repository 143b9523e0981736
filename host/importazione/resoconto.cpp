// The account of an import: sentences and columns, no decisions.

#include "host/importazione/resoconto.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <string_view>

#include "host/base/codifica.h"
#include "host/base/diagnostica.h"
#include "host/base/file_sicuro.h"
#include "host/base/numeri.h"
#include "host/base/testi.h"
#include "host/base/versione.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

constexpr std::size_t kNomiElencati = 8;
constexpr std::size_t kCoppieElencate = 500;
constexpr int kDecimaliGon = 5;
constexpr int kLarghezzaVoce = 16;  // of the words that begin a line of the summary
constexpr int kLarghezzaNomi = 20;  // of a column of names, unless one is longer
constexpr int kLarghezzaAngolo = 14;

std::string Elenco(const std::vector<std::string_view>& nomi) {
  return Elenca(nomi, Cita, kNomiElencati);
}

std::string Allineato(std::string testo, int larghezza, bool destra = false) {
  const int manca = larghezza - ContaCaratteri(testo);
  if (manca <= 0) return testo;
  const std::string bianchi(static_cast<std::size_t>(manca), ' ');
  return destra ? bianchi + testo : testo + bianchi;
}

// Points that stand in some observation.
std::vector<bool> Usati(const Rete& rete) {
  std::vector<bool> usati(rete.Punti.size());
  for (std::size_t s = 0; s < rete.Stazioni.size(); ++s) {
    if (rete.Osservazioni[s].empty()) continue;
    usati[static_cast<std::size_t>(rete.Stazioni[s].Punto)] = true;
    for (const TOssCr& o : rete.Osservazioni[s]) usati[static_cast<std::size_t>(o.Punto)] = true;
  }
  return usati;
}

std::size_t ContaRuolo(const Rete& rete, int RuoliPunto::*campo, int ruolo) {
  return static_cast<std::size_t>(
      std::count_if(rete.RuoliIniziali.begin(), rete.RuoliIniziali.end(),
                    [&](const RuoliPunto& r) { return r.*campo == ruolo; }));
}

std::string FrasePunti(const std::vector<std::string_view>& nomi, std::string_view cosa) {
  return std::string(cosa) + " di " + Conta(nomi.size(), "punto", "punti") + ": " + Elenco(nomi);
}

// "collimazione media +0.00030 gon (scarto 0.00005)"
std::string Frase(std::string_view nome, const Riassunto& r) {
  std::string frase = std::string(nome) + " " + ConSegno(r.Media) + " gon";
  if (r.Quanti > 1) frase += " (scarto " + NumeroFisso(r.Scarto, kDecimaliGon) + ")";
  return frase;
}

std::vector<std::string> FrasiFacce(const EsitoFacce& facce) {
  std::vector<std::string> frasi;
  if (!facce.Coppie.empty()) {
    std::string frase = Conta(facce.Coppie.size(), "coppia di letture coniugate mediata",
                              "coppie di letture coniugate mediate");
    if (facce.Collimazione.Quanti > 0)
      frase += ", " + Frase("collimazione media", facce.Collimazione);
    if (facce.Indice.Quanti > 0) frase += ", " + Frase("indice medio", facce.Indice);
    frasi.push_back(frase + ".");
  }
  if (facce.Girate > 0) {
    frasi.push_back(Conta(static_cast<std::size_t>(facce.Girate),
                          "lettura al cerchio destro riportata",
                          "letture al cerchio destro riportate") +
                    " al sinistro senza media.");
  }
  if (facce.Medie > 0) {
    frasi.push_back(std::to_string(facce.LettureUnite) + " letture ripetute sono diventate " +
                    Conta(static_cast<std::size_t>(facce.Medie), "media", "medie") + ".");
  }
  return frasi;
}

// The file is named where there are several.
std::string Frase(const Tralasciati& t, bool conFile) {
  std::string quanti = std::to_string(t.Quanti);
  if (t.PrimaRiga > 0)
    quanti +=
        std::string(t.Quanti == 1 ? ", riga " : ", dalla riga ") + std::to_string(t.PrimaRiga);
  if (conFile) quanti += (t.PrimaRiga > 0 ? " di " : ", ") + Cita(t.File);
  return t.Genere + " (" + quanti + "): " + t.Motivo;
}

std::vector<std::string> FrasiEsclusi(const Resoconto& resoconto) {
  const bool piuFile = resoconto.File.size() > 1;
  std::vector<std::string> frasi;
  for (const Tralasciati& t : resoconto.Esclusi) frasi.push_back(Frase(t, piuFile));
  return frasi;
}

void AggiungiSezione(std::vector<std::string>& righe, const std::string& titolo,
                     const std::vector<std::string>& frasi) {
  if (frasi.empty()) return;
  righe.emplace_back();
  righe.push_back(titolo);
  for (const std::string& frase : frasi) righe.push_back("  " + frase);
}

// A line of the summary for each sentence, the word only on the first.
void AggiungiVoce(std::string& testo, std::string voce, const std::vector<std::string>& frasi) {
  for (const std::string& frase : frasi) {
    testo += Allineato(voce, kLarghezzaVoce) + frase + "\n";
    voce.clear();
  }
}

std::string FraseRuoli(const Rete& rete, std::string_view nome, int RuoliPunto::*campo) {
  const std::size_t fissi = ContaRuolo(rete, campo, kFisso);
  const std::size_t esclusi = ContaRuolo(rete, campo, kNonUsato);
  return "in " + std::string(nome) + " " + Conta(fissi, "fisso", "fissi") + ", " +
         Conta(rete.Punti.size() - fissi - esclusi, "incognito", "incogniti") +
         (esclusi > 0 ? ", " + Conta(esclusi, "escluso", "esclusi") : "");
}

// How each of them was obtained stands in the file: a line a point is too long for a summary.
std::vector<std::string> FrasiApprossimate(const EsitoApprossimate& esito) {
  if (esito.PuntiPla.empty() && esito.PuntiAlt.empty()) return {};
  std::string frase = "calcolate";
  if (!esito.PuntiPla.empty())
    frase += " le coordinate di " + Conta(esito.PuntiPla.size(), "punto", "punti");
  if (!esito.PuntiPla.empty() && !esito.PuntiAlt.empty()) frase += " e";
  if (!esito.PuntiAlt.empty())
    frase += " la quota di " + Conta(esito.PuntiAlt.size(), "punto", "punti");
  return {frase + " (in testa al file è scritto come)"};
}

// Given to a horizontal distance that was read without, so that it enters the plan.
bool ZenitAssunto(const TOssCr& o) {
  return o.TipoDist == kOrizzontale && o.Zenit == kOrizzonte && !Assegnato(o.AltSegnale);
}

std::string FraseOsservazioni(const Rete& rete) {
  std::size_t visuali = 0, direzioni = 0, zenit = 0, distanze = 0;
  for (const auto& stazione : rete.Osservazioni) {
    visuali += stazione.size();
    for (const TOssCr& o : stazione) {
      direzioni += Assegnato(o.Direzione) ? 1 : 0;
      zenit += Assegnato(o.Zenit) && !ZenitAssunto(o) ? 1 : 0;
      distanze += Assegnato(o.Distanza) ? 1 : 0;
    }
  }
  return std::to_string(visuali) + ": " + Conta(direzioni, "direzione", "direzioni") + ", " +
         Conta(zenit, "angolo zenitale", "angoli zenitali") + ", " +
         Conta(distanze, "distanza", "distanze");
}

// Zenith angles that give no heights, for lack of one of the two heights over the points.
void AggiungiAltezze(std::vector<std::string>& frasi, const Rete& rete) {
  std::size_t visuali = 0, stazioni = 0;
  for (std::size_t s = 0; s < rete.Stazioni.size(); ++s) {
    bool zenit = false;
    for (const TOssCr& o : rete.Osservazioni[s]) {
      if (!Assegnato(o.Zenit) || ZenitAssunto(o)) continue;
      zenit = true;
      visuali += Assegnato(o.AltSegnale) ? 0 : 1;
    }
    stazioni += zenit && !Assegnato(rete.Stazioni[s].AltStrum) ? 1 : 0;
  }
  if (visuali > 0)
    frasi.push_back(Conta(visuali, "visuale", "visuali") +
                    " con lo zenit ma senza altezza del segnale: fuori dall'altimetria");
  if (stazioni > 0)
    frasi.push_back(Conta(stazioni, "stazione", "stazioni") +
                    " con angoli zenitali ma senza altezza dello strumento: fuori "
                    "dall'altimetria");
}

}  // namespace

std::vector<std::string> CheCosaManca(const Rete& rete, const EsitoApprossimate& approssimate) {
  std::vector<std::string> frasi;
  const bool pianta = (rete.Opzioni.TipoCalcolo & kCalcoloPlanimetria) != 0;
  const bool quote = (rete.Opzioni.TipoCalcolo & kCalcoloAltimetria) != 0;
  const std::size_t fissiPla = ContaRuolo(rete, &RuoliPunto::Pla, kFisso);
  const std::size_t fissiAlt = ContaRuolo(rete, &RuoliPunto::Alt, kFisso);
  if (fissiPla == 0 && fissiAlt == 0) {
    frasi.emplace_back(
        "nessun punto fisso: la planimetria ne vuole almeno due, l'altimetria uno (si danno con "
        "--fissi, o nel file con planimetria = \"fisso\" e altimetria = \"fisso\")");
  } else {
    if (pianta && fissiPla < 2) {
      frasi.push_back(fissiPla == 0 ? "nessun punto fisso in planimetria: ne servono almeno due"
                                    : "un solo punto fisso in planimetria: ne servono almeno due");
    }
    if (quote && fissiAlt == 0)
      frasi.emplace_back("nessun punto fisso in altimetria: ne serve almeno uno");
  }
  if (quote) AggiungiAltezze(frasi, rete);
  if (!approssimate.NonRaggiunti.empty()) {
    for (const Messaggio& m : approssimate.NonRaggiunti) frasi.push_back(TestoGuasto(m.Cosa));
    return frasi;
  }
  const std::vector<bool> usati = Usati(rete);
  std::vector<std::string_view> senzaPianta, senzaQuota;
  for (std::size_t i = 0; i < rete.Punti.size(); ++i) {
    const TCoorCr& punto = rete.Punti[i];
    const bool conPianta = Assegnato(punto.Est) && Assegnato(punto.Nord);
    if (!usati[i]) continue;
    if (pianta && punto.TipoPla != kNonUsato && !conPianta) senzaPianta.push_back(rete.Nomi[i]);
    if (quote && punto.TipoAlt != kNonUsato && !Assegnato(punto.Quota))
      senzaQuota.push_back(rete.Nomi[i]);
  }
  if (!senzaPianta.empty()) frasi.push_back(FrasePunti(senzaPianta, "le coordinate approssimate"));
  if (!senzaQuota.empty()) frasi.push_back(FrasePunti(senzaQuota, "la quota approssimata"));
  return frasi;
}

IntestazioneToml Intestazione(const Resoconto& resoconto, const Rete& rete) {
  IntestazioneToml intestazione;
  intestazione.NotaSqmDirezione = resoconto.Sqm.NotaDirezione;
  intestazione.NotaSqmDistanza = resoconto.Sqm.NotaDistanza;
  intestazione.NotaSqmProporzionale = resoconto.Sqm.NotaProporzionale;
  std::vector<std::string>& righe = intestazione.Righe;
  righe.push_back("Rete preparata da " + std::string(kNomeProgramma) + " " +
                  std::string(kVersioneProgramma) + " il " + resoconto.Data + " con i dati di:");
  for (const FileImportato& file : resoconto.File)
    righe.push_back("  " + file.Nome + " (" + file.Formato + ")");
  AggiungiSezione(righe, "Assunto:", resoconto.Assunti);
  AggiungiSezione(righe, "Cerchi dello strumento:", FrasiFacce(resoconto.Facce));
  AggiungiSezione(righe, "Tralasciato:", FrasiEsclusi(resoconto));
  AggiungiSezione(
      righe, "Coordinate approssimate calcolate dalle osservazioni:", resoconto.Approssimate.Note);
  AggiungiSezione(righe, "Manca ancora:", CheCosaManca(rete, resoconto.Approssimate));
  AggiungiSezione(righe, "Note del libretto:", resoconto.Note);
  return intestazione;
}

std::string TestoFacce(const EsitoFacce& facce) {
  if (facce.Coppie.empty()) return {};
  int larghezza = kLarghezzaNomi;
  for (const CoppiaFacce& c : facce.Coppie)
    larghezza = std::max({larghezza, ContaCaratteri(c.Stazione) + 2, ContaCaratteri(c.Punto) + 2});
  const auto riga = [&](const std::string& stazione, const std::string& punto, const std::string& c,
                        const std::string& i) {
    return "  " + Allineato(stazione, larghezza) + Allineato(punto, larghezza) +
           Allineato(c, kLarghezzaAngolo, true) + Allineato(i, kLarghezzaAngolo, true) + "\n";
  };
  const auto angolo = [](const std::optional<double>& gon) { return gon ? ConSegno(*gon) : "-"; };
  std::string testo =
      "Letture coniugate [gon]\n" + riga("stazione", "punto", "collimazione", "indice");
  for (std::size_t n = 0; n < std::min(facce.Coppie.size(), kCoppieElencate); ++n) {
    const CoppiaFacce& c = facce.Coppie[n];
    testo += riga(c.Stazione, c.Punto, angolo(c.Collimazione), angolo(c.Indice));
  }
  if (facce.Coppie.size() > kCoppieElencate)
    testo += "  " + EAltri(facce.Coppie.size() - kCoppieElencate, Genere::Femminile) + "\n";
  const auto valore = [](const Riassunto& r, double v) {
    return r.Quanti > 0 ? ConSegno(v) : std::string("-");
  };
  testo += riga("media", "", valore(facce.Collimazione, facce.Collimazione.Media),
                valore(facce.Indice, facce.Indice.Media));
  const auto scarto = [](const Riassunto& r) {
    return r.Quanti > 1 ? NumeroFisso(r.Scarto, kDecimaliGon) : std::string("-");
  };
  testo += riga("scarto di una coppia", "", scarto(facce.Collimazione), scarto(facce.Indice));
  return testo;
}

std::string SommarioImportazione(const Resoconto& resoconto, const Rete& rete,
                                 const std::string& uscita) {
  const bool inFile = !UscitaStandard(uscita);
  std::string testo;
  if (inFile) AggiungiVoce(testo, "Scritto:", {uscita});
  AggiungiVoce(
      testo, "Punti:",
      {std::to_string(rete.Punti.size()) + ": " + FraseRuoli(rete, "planimetria", &RuoliPunto::Pla),
       FraseRuoli(rete, "altimetria", &RuoliPunto::Alt)});
  AggiungiVoce(testo, "Stazioni:", {std::to_string(rete.Stazioni.size())});
  AggiungiVoce(testo, "Osservazioni:", {FraseOsservazioni(rete)});
  AggiungiVoce(testo, "Cerchi:", FrasiFacce(resoconto.Facce));
  AggiungiVoce(testo, "Assunto:", resoconto.Assunti);
  AggiungiVoce(testo, "Tralasciato:", FrasiEsclusi(resoconto));
  AggiungiVoce(testo, "Approssimate:", FrasiApprossimate(resoconto.Approssimate));
  std::vector<std::string> manca = CheCosaManca(rete, resoconto.Approssimate);
  if (manca.size() > kNomiElencati) {
    const std::size_t altre = manca.size() - kNomiElencati;
    manca.resize(kNomiElencati);
    manca.push_back("e altro: " + Conta(altre, "riga", "righe") + " in testa al file");
  }
  AggiungiVoce(testo, "Manca ancora:", manca);
  AggiungiVoce(testo, "Adesso:", {"compensa verifica " + (inFile ? uscita : "RETE.toml")});
  return testo;
}

}  // namespace compensa

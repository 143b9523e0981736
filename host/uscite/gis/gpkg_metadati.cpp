// Texts of the table metadati.

#include "host/uscite/gis/gpkg_metadati.h"

#include <utility>

#include "host/base/numeri.h"
#include "host/base/versione.h"
#include "host/uscite/scala_ellissi.h"
#include "host/uscite/sommario.h"

namespace compensa {

namespace {

constexpr int kDecimaliFattore = 4;

void AggiungiConvenzioni(std::vector<VoceMetadati>& voci) {
  constexpr std::pair<std::string_view, std::string_view> kConvenzioni[] = {
      {"convenzioni.unita",
       "coordinate e quote in m; scarti quadratici medi, semiassi e correzioni "
       "in mm; angoli in gon (gradi centesimali) o, dove detto, in gradi"},
      {"convenzioni.precisioni",
       "scarti quadratici medi ed ellissi sono a posteriori (sigma zero "
       "compreso); a un sigma dove non è detto altro"},
      {"convenzioni.azimut", "dal Nord della griglia, in senso orario, del semiasse maggiore"},
      {"convenzioni.residui", "osservata meno compensata"},
      {"convenzioni.geometrie", "x = Est, y = Nord, z = quota dove c'è"},
      {"convenzioni.sospette",
       "una visuale è sospetta se w_max supera 3.29 (rischio dell'1 per mille)"},
      {"punti.planimetria", "ruolo del punto in planimetria"},
      {"punti.altimetria", "ruolo del punto in altimetria"},
      {"punti.ruolo",
       "quello dei due con cui il punto si disegna: in planimetria, o in altimetria "
       "se la planimetria non era richiesta o non usa il punto"},
      {"punti.sqm_e_mm, sqm_n_mm, sqm_q_mm", "scarti quadratici medi di Est, Nord e quota [mm]"},
      {"punti.a_mm, b_mm", "semiassi dell'ellisse d'errore standard [mm]"},
      {"punti.az_gon, az_deg", "azimut del semiasse maggiore [gon], [gradi]"},
      {"punti.corr_e_mm, corr_n_mm, corr_q_mm", "compensata meno iniziale [mm]"},
      {"visuali.da, a", "estremi; da è la stazione della prima lettura"},
      {"visuali.andata, ritorno", "letture da \"da\" verso \"a\" e viceversa"},
      {"visuali.direzione, distanza, zenit", "1 se almeno una lettura la contiene"},
      {"visuali.w_max",
       "massimo residuo normalizzato (Baarda) delle equazioni della visuale; un "
       "angolo appartiene alla visuale verso il punto osservato"},
      {"visuali.r_min", "minima ridondanza locale delle stesse equazioni, da 0 a 1"},
      {"visuali.classe", "regolare: w sotto 2; attenzione: da 2 a 3.29; sospetta: oltre"},
      {"ellissi.scala",
       "esagerazione del disegno: i semiassi del poligono sono a_mm e b_mm per scala"},
      {"ellissi.livello", "standard 1 sigma, o probabilità del 95 % che il punto vi stia dentro"},
      {"ellissi.fattore", "semiassi di questo livello su quelli standard"},
  };
  for (const auto& [chiave, valore] : kConvenzioni)
    voci.push_back({std::string(chiave), std::string(valore)});
}

void AggiungiNumerate(std::vector<VoceMetadati>& voci, std::string_view chiave,
                      const std::vector<std::string>& righe) {
  for (std::size_t i = 0; i < righe.size(); ++i)
    voci.push_back({std::string(chiave) + "." + std::to_string(i + 1), righe[i]});
}

// The tables of the network count from 2.
void AggiungiFile(std::vector<VoceMetadati>& voci, const std::vector<FileLetto>& file) {
  for (std::size_t i = 0; i < file.size(); ++i) {
    const std::string chiave = i == 0 ? "file" : "file." + std::to_string(i + 1);
    if (i > 0) voci.push_back({chiave, file[i].Nome});
    voci.push_back({chiave + ".sha256", file[i].Impronta});
  }
}

}  // namespace

std::vector<VoceMetadati> VociMetadati(const Documento& d, const SistemaRiferimento& sistema,
                                       double esagerazione, double fattore95) {
  const Risultati& r = d.Esiti;
  std::vector<VoceMetadati> voci = {
      {"progetto", r.DatiProgetto.Nome},
      {"programma", std::string(kNomeProgramma) + " " + std::string(kVersioneProgramma)},
      {"data", d.DataOra},
      {"file", r.File},
      {"sistema.nome", sistema.Nome},
      {"sistema.epsg", sistema.Codice > 0 ? std::to_string(sistema.Codice) : "non noto"},
      {"sistema.nota", sistema.Nota},
      {"ellissi.esagerazione", TestoTondo(esagerazione)}};
  AggiungiFile(voci, d.File);
  voci.push_back({"ellissi.fattore_95",
                  Presente(fattore95)
                      ? NumeroFisso(fattore95, kDecimaliFattore) +
                            ", con sigma zero stimato: radice di 2 F(0.95; 2, ridondanza " +
                            std::to_string(r.Planimetria.Ridondanza()) + ")"
                      : "nessuna ellisse: manca la ridondanza della planimetria"});
  const auto sommario = RigheSommario(r);
  AggiungiNumerate(voci, "esito", {sommario.begin(), sommario.end()});
  AggiungiConvenzioni(voci);
  AggiungiNumerate(voci, "nota", d.Note);
  AggiungiNumerate(voci, "avviso", Testi(d.Messaggi));
  return voci;
}

}  // namespace compensa

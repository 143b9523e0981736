// The command line: which command, and its options as what the program is asked to do.

#include "host/comando/riga_comando.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>

#include "host/base/errori.h"
#include "host/base/percorsi.h"
#include "host/base/suggerimenti.h"
#include "host/base/versione.h"
#include "host/comando/completamento_bash.h"
#include "host/comando/manuale.h"
#include "host/comando/opzioni_programma.h"
#include "host/comando/parole_comando.h"
#include "host/importazione/lettore.h"

namespace compensa {

namespace {

constexpr std::string_view kGenera = "genera";  // for the build: not in the help

constexpr std::array<ParolaNota, 3> kParoleColori{{{"auto", static_cast<int>(Colori::Auto)},
                                                   {"mai", static_cast<int>(Colori::Mai)},
                                                   {"sempre", static_cast<int>(Colori::Sempre)}}};
constexpr std::array<ParolaNota, 2> kParoleCodifica{
    {{"utf-8", static_cast<int>(Codifica::Utf8)},
     {"windows-1252", static_cast<int>(Codifica::Windows1252)}}};
constexpr std::array<ParolaNota, 2> kParoleDecimali{
    {{"punto", static_cast<int>(Decimali::Punto)},
     {"virgola", static_cast<int>(Decimali::Virgola)}}};
constexpr std::array<ParolaNota, 2> kParoleFacce{
    {{"media", static_cast<int>(ModoFacce::Media)},
     {"separate", static_cast<int>(ModoFacce::Separate)}}};
constexpr std::array<ParolaNota, 2> kParoleAssi{
    {{"en", static_cast<int>(Assi::EstNord)}, {"ne", static_cast<int>(Assi::NordEst)}}};
constexpr std::array<ParolaNota, 4> kParoleAngoli{
    {{"gon", static_cast<int>(UnitaAngoli::Gon)},
     {"gradi", static_cast<int>(UnitaAngoli::GradiDecimali)},
     {"gms-compatti", static_cast<int>(UnitaAngoli::GradiCompatti)},
     {"gms", static_cast<int>(UnitaAngoli::GradiPrimi)}}};

constexpr std::pair<GenereUscita, std::string_view> kUscite[] = {
    {GenereUscita::Rapporto, "rapporto"}, {GenereUscita::Html, "html"},
    {GenereUscita::Csv, "csv"},           {GenereUscita::Dxf, "dxf"},
    {GenereUscita::GeoPackage, "gpkg"},   {GenereUscita::Gkf, "gkf"},
    {GenereUscita::Json, "json"}};

template <class Enum>
std::optional<Enum> Scelta(const ParoleComando& parole, std::string_view nome,
                           std::span<const ParolaNota> note) {
  const std::optional<int> valore = parole.Parola(nome, note);
  return valore ? std::optional(static_cast<Enum>(*valore)) : std::nullopt;
}

// A first argument that was meant to be a command, or a command that is not the first word.
void RifiutaComandoFuoriPosto(const std::vector<std::string>& reti) {
  std::vector<std::string_view> comandi;
  for (const Comando* comando : Comandi())
    if (!comando->Nome.empty()) comandi.push_back(comando->Nome);
  for (const std::string& rete : reti) {
    std::error_code guasto;
    if (std::filesystem::exists(PercorsoDa(rete), guasto)) continue;
    if (std::find(comandi.begin(), comandi.end(), rete) != comandi.end())
      throw ErroreUso("il comando " + rete + " va scritto subito dopo compensa");
  }
  std::error_code guasto;
  if (reti.empty() || reti.front().find_first_of("./") != std::string::npos ||
      std::filesystem::exists(PercorsoDa(reti.front()), guasto))
    return;
  const std::string_view vicino = PiuVicino(reti.front(), comandi);
  if (!vicino.empty())
    throw ErroreUso("comando sconosciuto " + Cita(reti.front()) + " (forse " + std::string(vicino) +
                    "?)");
}

Argomenti LeggiCompensa(const ParoleComando& parole) {
  Argomenti argomenti;
  argomenti.Reti = parole.Argomenti();
  RifiutaComandoFuoriPosto(argomenti.Reti);
  if (argomenti.Reti.empty()) throw ErroreUso("manca il file della rete");
  for (const auto& [genere, nome] : kUscite)
    if (parole.Data(nome)) argomenti.Uscite.push_back({genere, parole.Testo(nome)});
  argomenti.CodificaRapporto =
      Scelta<Codifica>(parole, "codifica", kParoleCodifica).value_or(Codifica::Utf8);
  argomenti.DecimaliCsv =
      Scelta<Decimali>(parole, "decimali", kParoleDecimali).value_or(Decimali::Punto);
  argomenti.Quieto = parole.Data("quieto");
  return argomenti;
}

// The network beside the first file; one that exists already is only replaced if it is named.
std::string UscitaImporta(const std::string& libretto) {
  std::filesystem::path rete = PercorsoDa(libretto);
  if (libretto.starts_with("/dev/") || libretto == "-" || rete.stem().empty())
    throw ErroreUso("serve -o RETE.toml: il file da scrivere");
  if (rete.extension() == ".toml") throw ErroreUso(Cita(libretto) + " è già una rete");
  rete.replace_extension(".toml");
  std::error_code guasto;
  if (std::filesystem::exists(rete, guasto))
    throw ErroreUso("la rete " + Cita(rete.string()) +
                    " esiste già e non viene sovrascritta: per farlo, -o " + rete.string());
  return rete.string();
}

OpzioniLettura LeggiOpzioniLettura(const ParoleComando& parole) {
  OpzioniLettura lettura;
  lettura.Angoli = Scelta<UnitaAngoli>(parole, "angoli", kParoleAngoli);
  lettura.AssiXY = Scelta<Assi>(parole, "assi", kParoleAssi);
  lettura.Mappa = parole.Testo("mappa");
  lettura.Stazione = parole.Testo("stazione");
  lettura.AltezzaStrumento = parole.Numero("hs", kAltezza);
  lettura.CodiceStazioneGsi = parole.Intero("gsi-codice-stazione", 0);
  lettura.SegnalePersistente = parole.Data("segnale-persistente");
  lettura.IgnoraNonSupportati = parole.Data("ignora-non-supportati");
  return lettura;
}

std::optional<std::string> LeggiFormato(const ParoleComando& parole) {
  std::vector<ParolaNota> formati;
  for (const Lettore* lettore : Lettori())
    formati.push_back({lettore->Nome, static_cast<int>(formati.size())});
  const std::optional<int> formato = parole.Parola("formato", formati);
  if (!formato) return std::nullopt;
  return std::string(formati[static_cast<std::size_t>(*formato)].Testo);
}

OpzioniImporta LeggiImporta(const ParoleComando& parole) {
  OpzioniImporta opzioni;
  opzioni.File = parole.Argomenti();
  if (opzioni.File.empty()) throw ErroreUso("manca il file da importare");
  opzioni.Formato = LeggiFormato(parole);
  opzioni.Lettura = LeggiOpzioniLettura(parole);
  opzioni.Facce = Scelta<ModoFacce>(parole, "facce", kParoleFacce).value_or(ModoFacce::Media);
  opzioni.Medie = parole.Data("medie");
  opzioni.Fissi = parole.Elenco("fissi");
  opzioni.FissiPlanimetria = parole.Elenco("fissi-planimetria");
  opzioni.FissiAltimetria = parole.Elenco("fissi-altimetria");
  opzioni.Escludi = parole.Elenco("escludi");
  opzioni.Coordinate = parole.Testo("coordinate");
  opzioni.SqmDirezione = parole.Numero("sqm-direzione", kSqmDirezione);
  opzioni.SqmDistCostante = parole.Numero("sqm-distanza-costante", kSqmDistCostante);
  opzioni.SqmDistProporzionale = parole.Numero("sqm-distanza-proporzionale", kSqmDistProporzionale);
  opzioni.Nome = parole.Testo("nome");
  opzioni.Epsg = parole.Intero("epsg", 1);
  opzioni.TipoCalcolo = parole.Parola("calcolo", kParoleCalcolo);
  opzioni.Cartografiche = parole.Data("cartografiche");
  opzioni.Curvatura = parole.Data("curvatura");
  opzioni.SenzaApprossimate = parole.Data("senza-approssimate");
  opzioni.Quieto = parole.Data("quieto");
  const std::optional<std::string> uscita = parole.Testo("uscita");
  opzioni.Uscita = uscita ? *uscita : UscitaImporta(opzioni.File.front());
  return opzioni;
}

ArgomentiVerifica LeggiVerifica(const ParoleComando& parole) {
  if (parole.Argomenti().empty()) throw ErroreUso("manca il file della rete");
  ArgomentiVerifica argomenti;
  for (const std::string& rete : parole.Argomenti()) argomenti.Reti.push_back({rete});
  return argomenti;
}

TestoRichiesto Genera(const std::vector<std::string>& parole) {
  const std::string_view cosa = parole.size() == 1 ? std::string_view(parole.front()) : "";
  if (cosa == "man1") return {ManualeProgramma()};
  if (cosa == "man5") return {ManualeFile()};
  if (cosa == "bash") return {CompletamentoBash()};
  throw ErroreUso("il comando genera vuole man1, man5 o bash");
}

}  // namespace

std::string_view NomeOpzione(GenereUscita genere) {
  const auto* voce = std::find_if(std::begin(kUscite), std::end(kUscite),
                                  [&](const auto& uscita) { return uscita.first == genere; });
  return voce->second;
}

Richiesta LeggiRigaComando(int argc, const char* const* argv) {
  std::vector<std::string> parole(argv + std::min(argc, 1), argv + argc);
  if (!parole.empty() && parole.front() == kGenera) {
    parole.erase(parole.begin());
    return Genera(parole);
  }
  const Comando* comando = &ComandoDi(parole.empty() ? "" : parole.front());
  if (!comando->Nome.empty()) parole.erase(parole.begin());

  const ParoleComando lette(*comando, parole);
  if (lette.ChiestoAiuto()) return TestoRichiesto{TestoAiuto(*comando)};
  if (lette.ChiestaVersione())
    return TestoRichiesto{std::string(kNomeProgramma) + " " + std::string(kVersioneProgramma) +
                          "\n"};
  ImpostaColori(Scelta<Colori>(lette, "colori", kParoleColori).value_or(Colori::Auto));
  if (comando == &ComandoImporta()) return LeggiImporta(lette);
  if (comando == &ComandoVerifica()) return LeggiVerifica(lette);
  return LeggiCompensa(lette);
}

}  // namespace compensa

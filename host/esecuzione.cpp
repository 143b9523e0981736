// A call of the program. Outputs are opened before the run, so that hours of work do not end at a
// folder that cannot be written, and files get their names before anything goes to the standard
// output.

#include "host/esecuzione.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <new>
#include <string>
#include <string_view>

#include "host/avvisi.h"
#include "host/calcolo.h"
#include "host/diagnostica.h"
#include "host/errori.h"
#include "host/file_sicuro.h"
#include "host/json.h"
#include "host/lettura_rete.h"
#include "host/numeri.h"
#include "host/rapporto.h"
#include "host/sommario.h"
#include "host/versione.h"

namespace {

// Whatever cannot be told is lost: there is nowhere else to tell it.
void ScriviErrori(std::string_view testo) {
  while (!testo.empty()) {
    const ssize_t scritti = write(STDERR_FILENO, testo.data(), testo.size());
    if (scritti < 0 && errno == EINTR) continue;
    if (scritti <= 0) return;
    testo.remove_prefix(static_cast<std::size_t>(scritti));
  }
}

void ScriviErrore(std::string_view testo) {
  ScriviErrori(std::string(kNomeProgramma) + ": errore: " + std::string(testo) + "\n");
}

void MostraMessaggi(const Diagnostica& diagnostica) {
  std::string testo;
  for (const std::string& riga : diagnostica.Righe()) testo += riga + "\n";
  ScriviErrori(testo);
}

bool TerminaleConErrori() {
  const char* terminale = std::getenv("TERM");
  return isatty(STDERR_FILENO) != 0 && terminale != nullptr &&
         std::string_view(terminale) != "dumb";
}

bool UscitaStandard(const std::string& percorso) {
  return percorso == "-" || percorso == "/dev/stdout";
}

void RifiutaUsciteUguali(const Argomenti& a) {
  if (!a.Json) return;
  if (UscitaStandard(a.Rapporto) && UscitaStandard(*a.Json))
    throw ErroreUso("rapporto e JSON andrebbero entrambi sull'uscita standard: serve -o FILE");
  if (StessoFile(a.Rapporto, *a.Json))
    throw ErroreUso("rapporto e JSON andrebbero nello stesso file " + Cita(*a.Json));
}

void RifiutaIngressoComeUscita(const Argomenti& a, const std::string& ingresso) {
  const auto rifiuta = [&](const std::string& uscita) {
    if (!UscitaStandard(uscita) && StessoFile(uscita, ingresso))
      throw ErroreUso("l'uscita " + Cita(uscita) + " è un file della rete: non viene sovrascritto");
  };
  rifiuta(a.Rapporto);
  if (a.Json) rifiuta(*a.Json);
}

std::string Gibibyte(std::uint64_t byte) {
  constexpr double kGibibyte = 1024.0 * 1024.0 * 1024.0;
  return NumeroFisso(static_cast<double>(byte) / kGibibyte, 2) + " GiB";
}

Risultati CompensaConMessaggi(Rete& rete, Rapporto& rapporto, bool quieto) {
  RigaAvanzamento avanzamento(ScriviErrori);
  Ascolto ascolto;
  if (!quieto) {
    ascolto.Classificati = [&] {
      Diagnostica avvisi;
      AvvisaRecordIgnorati(rete, avvisi);
      MostraMessaggi(avvisi);
    };
    if (TerminaleConErrori())
      ascolto.Iterazione = [&](const Iterazione& i) { avanzamento.Mostra(i); };
  }
  try {
    Risultati risultati = Compensa(rete, rapporto, ascolto);
    avanzamento.Cancella();
    return risultati;
  } catch (const std::bad_alloc&) {
    avanzamento.Cancella();
    const Fabbisogno serve = StimaFabbisogno(rete);
    throw ErroreMemoria("per " + std::to_string(serve.Incognite) + " incognite e " +
                        std::to_string(serve.Equazioni) + " equazioni servono circa " +
                        Gibibyte(serve.Totale) + ", di cui " + Gibibyte(serve.Normale) +
                        " per la matrice normale");
  }
}

// The file that is not the standard output comes first: who stops reading the output keeps the
// file.
void ScriviUscite(const Argomenti& a, const Rapporto& rapporto, const Risultati& risultati,
                  FileSicuro& fileRapporto, std::optional<FileSicuro>& fileJson) {
  const auto versaRapporto = [&] {
    rapporto.Versa(a.CodificaRapporto, [&](std::string_view byte) { fileRapporto.Scrivi(byte); });
  };
  const auto versaJson = [&] {
    if (fileJson) ScriviJson(risultati, [&](std::string_view byte) { fileJson->Scrivi(byte); });
  };
  if (UscitaStandard(a.Rapporto)) {
    versaJson();
    if (fileJson) fileJson->Conferma();
    versaRapporto();
    fileRapporto.Conferma();
    return;
  }
  versaRapporto();
  const bool jsonInFile = fileJson && !UscitaStandard(*a.Json);
  if (jsonInFile) versaJson();
  fileRapporto.Conferma();
  if (!jsonInFile) versaJson();
  if (fileJson) fileJson->Conferma();
}

}  // namespace

Stato Esegui(const Argomenti& a) {
  RifiutaUsciteUguali(a);
  RifiutaIngressoComeUscita(a, a.Rete);
  Diagnostica lettura;
  std::optional<Rete> rete = LeggiRete(a.Rete, lettura);
  if (!rete || !a.Quieto) MostraMessaggi(lettura);
  if (!rete) return kStatoRete;
  for (const std::string& file : rete->NomiFile) RifiutaIngressoComeUscita(a, file);

  FileSicuro fileRapporto(a.Rapporto);
  std::optional<FileSicuro> fileJson;
  if (a.Json) fileJson.emplace(*a.Json);
  Rapporto rapporto;
  const Risultati risultati = CompensaConMessaggi(*rete, rapporto, a.Quieto);
  ScriviUscite(a, rapporto, risultati, fileRapporto, fileJson);
  if (!a.Quieto) {
    std::string sommario;
    for (const std::string& riga : RigheSommario(risultati)) sommario += riga + "\n";
    ScriviErrori(sommario);
  }
  return TutteRiuscite(risultati) ? kStatoRiuscito : kStatoNonCompensata;
}

int Programma(int argc, const char* const* argv) {
  try {
    const auto riga = LeggiRigaComando(argc, argv);
    if (const auto* argomenti = std::get_if<Argomenti>(&riga)) return Esegui(*argomenti);
    FileSicuro uscita("-");
    uscita.Scrivi(std::get<TestoRichiesto>(riga).Testo);
    return kStatoRiuscito;
  } catch (const ErroreUso& errore) {
    ScriviErrore(errore.what());
    ScriviErrori("Per l'uso: compensa --aiuto\n");
    return kStatoUso;
  } catch (const ErroreUscita& errore) {
    if (errore.Codice() != EPIPE) ScriviErrore(errore.what());
    return kStatoUscita;
  } catch (const ErroreMemoria& errore) {
    ScriviErrore(errore.what());
    return kStatoUscita;
  } catch (const std::bad_alloc&) {
    ScriviErrori("compensa: errore: memoria insufficiente\n");
    return kStatoUscita;
  } catch (const std::exception& errore) {
    ScriviErrore(std::string("interno al programma: ") + errore.what());
    return kStatoInterno;
  } catch (...) {
    ScriviErrore("interno al programma");
    return kStatoInterno;
  }
}

// A run over networks. Outputs are opened before the adjustment, so that hours of work do not end
// at a folder that cannot be written, and files get their names before anything goes to the
// standard output. With several networks a fault ends the run of its own network only.

#include "host/comando/esecuzione.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iterator>
#include <new>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/approssimate/approssimate.h"
#include "host/base/codifica.h"
#include "host/base/data_ora.h"
#include "host/base/diagnostica.h"
#include "host/base/errori.h"
#include "host/base/file_sicuro.h"
#include "host/base/numeri.h"
#include "host/base/percorsi.h"
#include "host/base/piattaforma/piattaforma.h"
#include "host/base/terminale.h"
#include "host/base/versione.h"
#include "host/calcolo/calcolo.h"
#include "host/calcolo/rapporto.h"
#include "host/comando/comandi.h"
#include "host/comando/pagine.h"
#include "host/comando/scrittura_uscite.h"
#include "host/comando/verifica.h"
#include "host/file_rete/lettura_rete.h"
#include "host/giudizio/avvertimenti/avvertimenti.h"
#include "host/giudizio/record_ignorati.h"
#include "host/importazione/importa.h"
#include "host/importazione/lettore.h"
#include "host/uscite/sommario.h"
#include "host/uscite/tabella_reti.h"

namespace compensa {

namespace {

std::string Gibibyte(std::uint64_t byte) {
  constexpr double kGibibyte = 1024.0 * 1024.0 * 1024.0;
  return NumeroFisso(static_cast<double>(byte) / kGibibyte, 2) + " GiB";
}

void Accoda(std::vector<Messaggio>& messaggi, std::vector<Messaggio> altri) {
  std::move(altri.begin(), altri.end(), std::back_inserter(messaggi));
}

void Comunica(const Diagnostica& avvisi, bool quieto, std::vector<Messaggio>& messaggi) {
  if (!quieto) MostraMessaggi(avvisi);
  Accoda(messaggi, avvisi.Messaggi());
}

// Adds the warnings on records that are passed over, and on what looks wrong, to the messages.
Risultati CompensaConMessaggi(Rete& rete, Rapporto& rapporto, bool quieto,
                              std::vector<Messaggio>& messaggi) {
  RigaAvanzamento avanzamento(ScriviErrori);
  Ascolto ascolto;
  ascolto.Classificati = [&] {
    Diagnostica avvisi;
    AvvisaRecordIgnorati(rete, avvisi);
    AvvertiPrima(rete, avvisi);
    Comunica(avvisi, quieto, messaggi);
  };
  if (!quieto && TerminaleConErrori())
    ascolto.Iterazione = [&](const Iterazione& i) { avanzamento.Mostra(i); };
  try {
    Risultati risultati = Compensa(rete, rapporto, ascolto);
    avanzamento.Cancella();
    Diagnostica avvisi;
    AvvertiDopo(rete, risultati, avvisi);
    Comunica(avvisi, quieto, messaggi);
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

EsitoApprossimate Approssima(Rete& rete, const std::string& file, bool quieto) {
  EsitoApprossimate approssimate = CalcolaApprossimate(rete);
  if (quieto) return approssimate;
  for (const std::string& nota : PrimeRighe(approssimate.Note)) ScriviNota(file, nota);
  std::vector<std::string> mancanti;
  for (const Messaggio& m : approssimate.NonRaggiunti) mancanti.push_back(TestoGuasto(m.Cosa));
  for (const std::string& punto : PrimeRighe(mancanti)) ScriviAvviso(file, punto);
  return approssimate;
}

// Also a quiet run says why its status is not that of success: what was not adjusted, and which
// points that it was asked for are not in its results.
void SegnalaNonRiuscite(const std::string& file, const Risultati& r) {
  const std::string nota = " (compensa verifica dice che cosa manca)";
  for (const auto& [nome, c] :
       {std::pair("planimetria: ", &r.Planimetria), std::pair("altimetria: ", &r.Altimetria)}) {
    const bool misure = c->Fine != Esito::NonConvergente && c->Fine != Esito::NonFinita;
    if (c->Fine != Esito::NonRichiesta && (c->Fine != Esito::Riuscita || c->GradiLiberi > 0))
      ScriviErrore(file, nome + TestoEsito(r, *c) + (misure ? nota : ""));
    if (!c->PuntiNonCalcolati.empty()) ScriviErrore(file, nome + TestoNonCalcolati(r, *c) + nota);
  }
}

void ScriviSommario(const Risultati& risultati, const std::vector<std::string>& scritti) {
  const bool colori = ColoriSu(kErroriStandard);
  std::string sommario;
  bool esito = true;  // the first line, whose words are coloured
  for (const std::string& riga : RigheSommario(risultati))
    sommario += ColoraEsiti(riga, colori && std::exchange(esito, false)) + "\n";
  for (const std::string& riga : RigheMotiLiberi(risultati)) sommario += riga + "\n";
  for (const std::string& file : scritti) sommario += "Scritto:     " + file + "\n";
  ScriviErrori(sommario);
}

std::vector<FileLetto> FileLetti(const Rete& rete) {
  std::vector<FileLetto> letti;
  letti.reserve(rete.Impronte.size());
  for (std::size_t i = 0; i < rete.Impronte.size(); ++i)
    letti.push_back({rete.NomiFile[i], rete.Impronte[i]});
  return letti;
}

// The run over one network. Throws what goes wrong with its files and its memory.
Stato CompensaRete(const OpzioniCompensa& a, const std::string& file, EsitoRete& esito) {
  std::vector<Destinazione> destinazioni = Destinazioni(a, file);
  const bool documentata =
      std::ranges::any_of(destinazioni, [](const Destinazione& d) { return d.Cosa->Documentato; });
  Diagnostica lettura;
  std::optional<Rete> rete = LeggiRete(PercorsoDa(file), lettura, documentata, DescrizioneLibretto);
  if (!rete || !a.Quieto) MostraMessaggi(lettura);
  if (!rete) return kStatoRete;
  RifiutaIngressi(destinazioni, rete->NomiFile);
  ScritturaUscite uscite(std::move(destinazioni));

  std::vector<Messaggio> messaggi = lettura.Messaggi();
  EsitoApprossimate approssimate = Approssima(*rete, file, a.Quieto);
  Rapporto rapporto;
  const Risultati risultati = CompensaConMessaggi(*rete, rapporto, a.Quieto, messaggi);
  Accoda(messaggi, std::move(approssimate.NonRaggiunti));
  Riassumi(risultati, esito);
  SegnalaNonRiuscite(file, risultati);

  std::string testo;
  if (documentata) testo = DaWindows1252(rapporto.Byte());
  const Documento documento{risultati,           testo,
                            std::move(messaggi), std::move(approssimate.Note),
                            DataOraCorrente(),   FileLetti(*rete)};
  try {
    uscite.Scrivi({documento, rapporto, a});
  } catch (...) {
    esito.Scritti = uscite.Scritti();
    throw;
  }
  esito.Scritti = uscite.Scritti();
  if (!a.Quieto) ScriviSommario(risultati, esito.Scritti);
  return TutteRiuscite(risultati) ? kStatoRiuscito : kStatoNonCompensata;
}

// Calls esegui and turns what it throws into a message and a status; throws std::bad_alloc, also
// when the memory is not even enough for the message.
template <class Esecuzione>
Stato ConMotivi(Esecuzione esegui) {
  try {
    return esegui();
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const ErroreUso& errore) {
    ScriviErrore(errore.what());
    return kStatoUso;
  } catch (const ErroreUscita& errore) {
    if (errore.Codice() != EPIPE) ScriviErrore(errore.what());
    return kStatoUscita;
  } catch (const ErroreMemoria& errore) {
    ScriviErrore(errore.what());
    return kStatoUscita;
  } catch (const std::exception& errore) {
    ScriviErrore(std::string("interno al programma: ") + errore.what());
    return kStatoInterno;
  } catch (...) {
    ScriviErrore("interno al programma");
    return kStatoInterno;
  }
}

template <class Esecuzione>
Stato ConMessaggi(Esecuzione esegui) {
  try {
    return ConMotivi(esegui);
  } catch (const std::bad_alloc&) {
    ScriviErrori(kMemoriaInsufficiente);
    return kStatoUscita;
  }
}

// Libraries that allocate where they may not throw, in destructors, end here when memory is short:
// nothing can be undone any more, but the files and the status are right.
[[noreturn]] void SenzaRitorno() {
  RimuoviTemporanei();
  Stato stato = kStatoInterno;
  try {
    if (const std::exception_ptr causa = std::current_exception()) std::rethrow_exception(causa);
  } catch (const std::bad_alloc&) {
    stato = kStatoUscita;
  } catch (...) {
  }
  ScriviErrori(stato == kStatoUscita ? kMemoriaInsufficiente
                                     : "compensa: errore: interno al programma\n");
  std::_Exit(stato);
}

void ScriviTesto(std::string_view testo) {
  FileSicuro uscita("-");
  uscita.Scrivi(testo);
}

// Tables of any of the networks that an output of another one would replace before they are read.
void RifiutaTabelleAltrui(const OpzioniCompensa& a) {
  std::vector<Destinazione> presenti;  // outputs that replace something
  for (const std::string& rete : a.Reti)
    for (Destinazione& destinazione : Destinazioni(a, rete))
      if (std::error_code guasto; exists(PercorsoDa(destinazione.Percorso), guasto))
        presenti.push_back(std::move(destinazione));
  if (presenti.empty()) return;
  for (const std::string& file : a.Reti) {
    Diagnostica diagnostica;
    const std::optional<Rete> rete = LeggiRete(PercorsoDa(file), diagnostica);
    if (rete) RifiutaIngressi(presenti, rete->NomiFile);
  }
}

Stato EseguiReti(const OpzioniCompensa& a) {
  RifiutaTabelleAltrui(a);
  std::vector<EsitoRete> esiti;
  Stato peggiore = kStatoRiuscito;
  for (const std::string& file : a.Reti) {
    EsitoRete esito;
    esito.Rete = file;
    if (!a.Quieto) ScriviErrori((esiti.empty() ? "" : "\n") + file + "\n");
    esito.Fine = ConMessaggi([&] { return CompensaRete(a, file, esito); });
    peggiore = std::max(peggiore, esito.Fine);
    esiti.push_back(std::move(esito));
  }
  if (!a.Quieto) ScriviErrori("\n");
  ScriviTesto(TabellaReti(esiti, ColoriSu(kUscitaStandard)));
  return peggiore;
}

// What could only be meant otherwise: a book that would count twice, a point both fixed and left out.
void RifiutaContraddizioni(const OpzioniImporta& o) {
  std::set<std::string> letti;
  for (const std::string& file : o.File)
    if (const std::string chi = IdentitaFile(file); !chi.empty() && !letti.insert(chi).second)
      throw ErroreUso("il file " + Cita(file) + " è dato due volte");
  for (const auto* fissi : {&o.Fissi, &o.FissiPlanimetria, &o.FissiAltimetria})
    for (const std::string& nome : *fissi)
      if (std::ranges::count(o.Escludi, nome) > 0)
        throw ErroreUso("il punto " + Cita(nome) + " non può essere insieme fisso ed escluso");
}

// The network beside the first file.
std::string UscitaPredefinita(const std::string& libretto) {
  std::filesystem::path rete = PercorsoDa(libretto);
  if (libretto.starts_with("/dev/") || libretto == "-" || rete.stem().empty())
    throw ErroreUso("serve -o RETE.toml: il file da scrivere");
  if (rete.extension() == ".toml") throw ErroreUso(Cita(libretto) + " è già una rete");
  rete.replace_extension(".toml");
  std::error_code guasto;
  if (exists(rete, guasto))
    throw ErroreUso("la rete " + Cita(rete.string()) +
                    " esiste già e non viene sovrascritta: per farlo, -o " + rete.string());
  return rete.string();
}

Stato EseguiRiga(const std::vector<std::string>& parole, std::string& nomeComando) {
  constexpr std::string_view kGenera = "genera";  // for the build: not in the help
  Richieste richieste;
  const std::vector<Comando> comandi = Comandi(richieste);
  if (!parole.empty() && parole.front() == kGenera) {
    const std::string_view cosa = parole.size() == 2 ? parole.back() : std::string_view();
    if (cosa != "man1" && cosa != "man5" && cosa != "bash")
      throw ErroreUso("il comando genera vuole man1, man5 o bash");
    ScriviTesto(cosa == "man1"   ? ManualeProgramma(comandi)
                : cosa == "man5" ? ManualeFile()
                                 : CompletamentoBash(comandi));
    return kStatoRiuscito;
  }
  const Comando& comando = ScegliComando(comandi, parole);
  nomeComando = comando.NomeIntero();
  LeggiParole(comando, comandi, std::span(parole).subspan(comando.Nome.empty() ? 0 : 1));
  if (richieste.Aiuto)
    ScriviTesto(TestoAiuto(comando, comandi));
  else if (richieste.Versione)
    ScriviTesto(std::string(kNomeProgramma) + " " + std::string(kVersioneProgramma) + "\n");
  if (richieste.Aiuto || richieste.Versione) return kStatoRiuscito;
  ImpostaColori(richieste.Colore);
  return comando.Esegui();
}

}  // namespace

Stato Esegui(const OpzioniCompensa& o) {
  ControllaUscite(o);
  if (o.Reti.size() > 1) return EseguiReti(o);
  EsitoRete esito;
  return CompensaRete(o, o.Reti.front(), esito);
}

Stato Esegui(OpzioniImporta o) {
  RifiutaContraddizioni(o);
  if (o.Uscita.empty()) o.Uscita = UscitaPredefinita(o.File.front());
  return Importa(o);
}

Stato EseguiVerifica(const std::vector<std::string>& reti) {
  Stato peggiore = kStatoRiuscito;
  for (const std::string& rete : reti)
    peggiore = std::max(peggiore, ConMessaggi([&] { return Verifica({rete}); }));
  return peggiore;
}

int Programma(int argc, const char* const* argv) {
  std::set_terminate(SenzaRitorno);
  return ConMessaggi([&] {
    std::string comando(kNomeProgramma);
    const Stato stato = ConMotivi([&] {
      return EseguiRiga(std::vector<std::string>(argv + std::min(argc, 1), argv + argc), comando);
    });
    if (stato == kStatoUso) ScriviErrori("Per l'uso: " + comando + " --aiuto\n");
    return stato;
  });
}

}  // namespace compensa

#pragma once

// The outputs of a run: the kinds that there are, and the files that a call asks for.

#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/calcolo/rapporto.h"
#include "host/uscite/documento.h"
#include "host/uscite/tabelle_csv.h"

namespace compensa {

struct GenereUscita;

// An output that was asked for.
struct UscitaChiesta {
  const GenereUscita* Genere = nullptr;
  std::string Valore;  // file, folder, or "-" = standard output; empty = the name of the network
};

// A run over one or more networks.
struct OpzioniCompensa {
  std::vector<std::string> Reti;
  std::vector<UscitaChiesta> Uscite;
  std::optional<Codifica> CodificaRapporto = {};  // nothing: UTF-8
  std::optional<Decimali> DecimaliCsv = {};       // nothing: point
  bool Quieto = false;                            // no message but errors
};

// What the files of one network are made from.
struct Materia {
  const Documento& Tutto;
  const Rapporto& Testo;
  const OpzioniCompensa& Come;
};
using Scrittore = std::function<void(std::string_view)>;

// One of the files of an output.
struct FileUscita {
  std::string_view Nome;        // in messages
  std::string_view Estensione;  // what follows the name of the network
  void (*Scrivi)(const Materia&, const Scrittore&);
  bool Documentato = true;  // it shows more than the report and the results themselves
};

// A kind of output: its option, as the help shows it, and its files.
struct GenereUscita {
  std::string_view Firma, Descrizione;
  std::vector<FileUscita> File;
};

// All of them, the report first.
std::span<const GenereUscita> GeneriUscita();

// A file of one network.
struct Destinazione {
  const FileUscita* Cosa = nullptr;
  std::string Percorso;  // "-" = standard output
};

// The files of one network, in the order in which they are to be reported. An output without a
// value is called like the network, in its folder or in the one given.
std::vector<Destinazione> Destinazioni(const OpzioniCompensa& opzioni, const std::string& rete);

// Throws ErroreUso if two outputs of the whole call would be the same file, if more than one would
// go to the standard output, if a network was named twice, if an output is one of the networks, or
// if an option is about an output that is not asked for.
void ControllaUscite(const OpzioniCompensa& opzioni);

// Throws ErroreUso if an output of the network would replace one of these files, which it was read
// from.
void RifiutaIngressi(const std::vector<Destinazione>& destinazioni,
                     const std::deque<std::string>& ingressi);

}  // namespace compensa

#pragma once

// What an import tells: at the head of the network file, and on the terminal.

#include <string>
#include <vector>

#include "host/approssimate/approssimate.h"
#include "host/file_rete/scrittura_toml.h"
#include "host/importazione/facce.h"
#include "host/importazione/libretto.h"
#include "host/importazione/sqm_libretto.h"
#include "host/rete/modello.h"

namespace compensa {

struct FileImportato {
  std::string Nome;
  std::string Formato;  // in words, Italian
};

struct Resoconto {
  std::vector<FileImportato> File;
  std::string Data;  // gg/mm/aaaa
  SqmScelti Sqm;
  EsitoFacce Facce;
  std::vector<std::string> Assunti;
  EsitoApprossimate Approssimate;
  std::vector<Tralasciati> Esclusi;
  std::vector<std::string> Note;  // of the surveyor
};

// What the network still lacks to be adjusted, one sentence each; empty if nothing.
std::vector<std::string> CheCosaManca(const Rete& rete, const EsitoApprossimate& approssimate);

IntestazioneToml Intestazione(const Resoconto& resoconto, const Rete& rete);

// Collimation and index of each pair of faces, with mean and spread, one line each; empty if there
// are no pairs.
std::string TestoFacce(const EsitoFacce& facce);

// The closing lines: what was found, left out and is missing, and what to do with the file uscita.
std::string SommarioImportazione(const Resoconto& resoconto, const Rete& rete,
                                 const std::string& uscita);

}  // namespace compensa

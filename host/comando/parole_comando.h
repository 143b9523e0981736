#pragma once

// The words of a command line sorted by option, before anybody asks what their values mean.

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/comando/opzioni_programma.h"
#include "host/rete/campi.h"

namespace compensa {

class ParoleComando {
 public:
  // Takes the words of a call, the program and the subcommand left out, under the options of the
  // command. Throws ErroreUso at an option that is unknown, given twice or lacks its value.
  ParoleComando(const Comando& comando, const std::vector<std::string>& parole);

  bool ChiestoAiuto() const { return Aiuto; }
  bool ChiestaVersione() const { return Versione; }
  const std::vector<std::string>& Argomenti() const { return Resto; }

  bool Data(std::string_view nome) const;  // with or without a value
  // The value of an option. Nothing if it was not given; throws ErroreUso if it is empty.
  std::optional<std::string> Testo(std::string_view nome) const;
  // The values of a list; none of them is empty.
  std::vector<std::string> Elenco(std::string_view nome) const;
  // A number in the range of the rule, with a point or a comma before its decimals. Throws
  // ErroreUso.
  std::optional<double> Numero(std::string_view nome, const RegolaNumero& regola) const;
  std::optional<int> Intero(std::string_view nome, int minimo) const;
  // The code of one of the words. Throws ErroreUso.
  std::optional<int> Parola(std::string_view nome, std::span<const ParolaNota> parole) const;

 private:
  std::vector<std::string> TogliSenzaValore(const std::vector<std::string>& parole);
  void Distribuisci(const std::vector<std::string>& parole);

  const Comando& Cosa;
  std::map<std::string, std::vector<std::string>, std::less<>> Valori;  // by long name
  std::vector<std::string> Resto;
  bool Aiuto = false;
  bool Versione = false;
};

}  // namespace compensa

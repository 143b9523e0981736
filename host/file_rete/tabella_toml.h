#pragma once

// A table of a TOML file as the reader sees it: values by key, each under its rule. Pulls in the whole
// of toml++: for lettura_toml.cpp alone.

#include <algorithm>
#include <array>
#include <exception>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

// Raised where the parser finds itself in a state that it holds impossible. Left alone it would go on
// regardless, or end the program.
struct StatoImprevisto : std::exception {};
[[noreturn]] inline void SollevaStatoImprevisto() { throw StatoImprevisto(); }

#pragma push_macro("NDEBUG")
#undef NDEBUG  // the checks stay on in every build
#define TOML_ASSERT(condizione) ((condizione) ? void() : SollevaStatoImprevisto())
#define TOML_HEADER_ONLY 1
#define TOML_ENABLE_FORMATTERS 0
#define TOML_FLOAT_CHARCONV 1  // numbers independent of the locale
#include <toml++/toml.h>
#pragma pop_macro("NDEBUG")

#include "host/base/numeri.h"
#include "host/file_rete/costruttore.h"
#include "host/rete/campi.h"

namespace compensa {

using Chiavi = std::span<const std::string_view>;
inline constexpr std::array<std::string_view, 7> kChiaviFile = {
    "formato", "progetto", "opzioni", "curvatura_rifrazione", "punti", "stazioni", "osservazioni"};

// What every table of one file shares.
struct Lettura {
  std::string_view File;
  CostruttoreRete& Rete;
  Diagnostica& Diario;

  Posizione Dove(const toml::source_region& regione) const {
    return {File, static_cast<int>(regione.begin.line), static_cast<int>(regione.begin.column)};
  }
  Posizione Dove(const toml::node& nodo) const { return Dove(nodo.source()); }
};

// A value as a message shows it.
inline std::string Descrivi(const toml::node& nodo) {
  if (const auto* testo = nodo.as_string()) return Cita(testo->get());
  if (const auto* intero = nodo.as_integer()) return std::to_string(intero->get());
  if (const auto* numero = nodo.as_floating_point()) return NumeroBreve(numero->get());
  if (const auto* vero = nodo.as_boolean()) return vero->get() ? "true" : "false";
  if (nodo.is_array_of_tables()) return "un elenco di tabelle [[ ]]";
  if (const auto* elenco = nodo.as_array()) {
    return elenco->empty() ? "un elenco vuoto" : "un elenco [ ]";
  }
  if (nodo.is_table()) return "una tabella";
  return "una data o un'ora";
}

// A table of the file with the record that it describes: values by key, and a message for each that
// breaks its rule.
class Tabella {
 public:
  Tabella(const toml::table& tabella, std::string record, const Lettura& lettura)
      : T(tabella), Record(std::move(record)), L(lettura) {}

  Posizione Dove() const { return L.Dove(T); }
  const toml::node* Nodo(std::string_view chiave) const { return T.get(chiave); }
  const std::string& NomeRecord() const { return Record; }
  void Chiama(std::string record) { Record = std::move(record); }

  void RifiutaAltreChiavi(Chiavi note) const {
    for (auto&& [chiave, valore] : T) {
      if (std::find(note.begin(), note.end(), chiave.str()) != note.end()) continue;
      Guasto guasto = ChiaveSconosciuta(Record, "chiave", chiave.str(), note);
      const bool delFile =
          std::find(kChiaviFile.begin(), kChiaviFile.end(), chiave.str()) != kChiaviFile.end();
      if (delFile) guasto.Suggerimento = "va scritta all'inizio del file, prima di ogni [tabella]";
      L.Diario.Errore(L.Dove(chiave.source()), std::move(guasto));
    }
  }

  void Manca(std::string_view chiave, std::string voluto) const {
    L.Diario.Errore(Dove(), {.Record = Record,
                             .Problema = "manca la chiave " + Cita(chiave),
                             .Voluto = std::move(voluto)});
  }

  void Sbagliato(std::string_view chiave, std::string voluto, std::string suggerimento = {}) const {
    const toml::node& nodo = *Nodo(chiave);
    L.Diario.Errore(L.Dove(nodo), {.Record = Record,
                                   .Campo = std::string(chiave),
                                   .Trovato = Descrivi(nodo),
                                   .Voluto = std::move(voluto),
                                   .Suggerimento = std::move(suggerimento)});
  }

  Letto<double> Numero(const RegolaNumero& regola) const {
    Letto<double> dato = Trova<double>(regola.Nome);
    if (!dato.Presente) return dato;
    const toml::node& nodo = *Nodo(regola.Nome);
    const std::optional<double> valore = nodo.is_number() ? nodo.value<double>() : std::nullopt;
    if (valore && Ammesso(regola, *valore)) {
      dato.Valore = valore;
    } else if (valore) {
      L.Diario.Errore(dato.Dove, GuastoNumero(Record, regola, Descrivi(nodo), *valore));
    } else {
      const auto* testo = nodo.as_string();
      const bool numero =
          testo != nullptr && LeggiNumero(testo->get(), true).Esito == EsitoNumero::Valido;
      Sbagliato(regola.Nome, NumeroVoluto(regola),
                numero ? "senza virgolette e con il punto decimale" : "");
    }
    return dato;
  }

  // kValoreMancante if there is none or a wrong one.
  double NumeroOMancante(const RegolaNumero& regola) const {
    return Numero(regola).Valore.value_or(kValoreMancante);
  }

  Letto<int> Intero(std::string_view chiave, int minimo, int massimo, std::string voluto) const {
    Letto<int> dato = Trova<int>(chiave);
    if (!dato.Presente) return dato;
    const auto* intero = Nodo(chiave)->as_integer();
    if (intero != nullptr && intero->get() >= minimo && intero->get() <= massimo) {
      dato.Valore = static_cast<int>(intero->get());
    } else {
      Sbagliato(chiave, std::move(voluto));
    }
    return dato;
  }

  Letto<bool> Vero(std::string_view chiave) const {
    Letto<bool> dato = Trova<bool>(chiave);
    if (!dato.Presente) return dato;
    if (const auto* vero = Nodo(chiave)->as_boolean()) {
      dato.Valore = vero->get();
    } else {
      Sbagliato(chiave, "true o false");
    }
    return dato;
  }

  Letto<int> Parola(std::string_view chiave, std::span<const ParolaNota> parole,
                    const std::string& voluto) const {
    Letto<int> dato = Trova<int>(chiave);
    if (!dato.Presente) return dato;
    if (const auto* testo = Nodo(chiave)->as_string()) {
      dato.Valore = CercaParola(parole, testo->get());
      if (!dato.Valore) {
        L.Diario.Errore(dato.Dove, GuastoParola(Record, chiave, parole, testo->get(), voluto));
      }
    } else {
      Sbagliato(chiave, voluto);
    }
    return dato;
  }

  int Tipo() const {
    const auto* nodo = Nodo("tipo");
    const auto* intero = nodo != nullptr ? nodo->as_integer() : nullptr;
    if (intero == nullptr) {
      return Parola("tipo", kParoleTipo, TipoVoluto()).Valore.value_or(kOrizzontale);
    }
    for (const int noto : kTipiDistanza) {
      if (noto == intero->get()) return noto;
    }
    Sbagliato("tipo", TipoVoluto());
    return kOrizzontale;
  }

  // A text, or an integer taken as text.
  Letto<std::string> Nome(std::string_view chiave) const {
    Letto<std::string> dato = Trova<std::string>(chiave);
    if (!dato.Presente) {
      Manca(chiave, "il nome di un punto");
    } else if (const auto* testo = Nodo(chiave)->as_string()) {
      dato.Valore = testo->get();
    } else if (const auto* intero = Nodo(chiave)->as_integer()) {
      dato.Valore = std::to_string(intero->get());
    } else {
      Sbagliato(chiave, "un testo fra virgolette o un intero");
    }
    return dato;
  }

 private:
  template <class T>
  Letto<T> Trova(std::string_view chiave) const {
    Letto<T> dato;
    if (const toml::node* nodo = Nodo(chiave)) {
      dato.Presente = true;
      dato.Dove = L.Dove(*nodo);
    }
    return dato;
  }

  const toml::table& T;
  std::string Record;
  const Lettura& L;
};

}  // namespace compensa

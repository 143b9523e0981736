#pragma once

// A table of a network file in TOML as its reader sees it: values by key, each under its rule.

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "host/base/numeri.h"
#include "host/file_rete/costruttore.h"
#include "host/file_rete/toml.h"
#include "host/rete/campi.h"

namespace compensa {

using Chiavi = std::span<const std::string_view>;
inline constexpr std::array<std::string_view, 7> kChiaviFile = {
    "formato", "progetto", "opzioni", "curvatura_rifrazione", "punti", "stazioni", "osservazioni"};

// What every table of one file shares.
struct Lettura {
  std::string_view File;
  const DocumentoToml& Toml;
  CostruttoreRete& Rete;
  Diagnostica& Diario;
};

// The table with the record that it describes, and a message for each value that breaks its rule.
class Tabella {
 public:
  // ordinale is that of the record among those of its kind, from 1; 0 = there is only one.
  Tabella(const NodoToml& tabella, std::string_view genere, const Lettura& lettura,
          int ordinale = 0, const Tabella* madre = nullptr)
      : T(tabella), Genere(genere), L(lettura), Ordinale(ordinale), Madre(madre) {}

  Posizione Dove() const { return L.Toml.Dove(T); }
  const NodoToml* Nodo(std::string_view chiave) const { return L.Toml.Cerca(T, chiave); }
  Posizione Dove(std::string_view chiave) const { return L.Toml.Dove(*Nodo(chiave)); }

  // The record as messages name it.
  std::string NomeRecord() const {
    if (NomeLetto && Genere == "punto") return NomePunto(*NomeLetto);
    if (NomeLetto && Genere == "stazione") return NomeStazione(*NomeLetto);
    if (NomeLetto) return NomeOsservazione(Madre->NomeLetto.value_or("?"), *NomeLetto);
    const std::string prima = Madre != nullptr ? Madre->NomeRecord() + ", " : "";
    return prima + std::string(Genere) +
           (Ordinale > 0 ? " n. " + std::to_string(Ordinale) : std::string());
  }

  void RifiutaAltreChiavi(Chiavi note) const {
    for (const NodoToml* n = L.Toml.Primo(T); n != nullptr; n = L.Toml.Prossimo(*n)) {
      const std::string_view chiave = L.Toml.Nome(*n);
      if (std::find(note.begin(), note.end(), chiave) != note.end()) continue;
      Guasto guasto = ChiaveSconosciuta(NomeRecord(), "chiave", chiave, note);
      if (std::find(kChiaviFile.begin(), kChiaviFile.end(), chiave) != kChiaviFile.end())
        guasto.Suggerimento = "va scritta all'inizio del file, prima di ogni [tabella]";
      L.Diario.Errore(L.Toml.DoveChiave(*n), std::move(guasto));
    }
  }

  void Manca(std::string_view chiave, std::string voluto) const {
    L.Diario.Errore(Dove(), {.Record = NomeRecord(),
                             .Problema = "manca la chiave " + Cita(chiave),
                             .Voluto = std::move(voluto)});
  }

  void Sbagliato(std::string_view chiave, std::string voluto, std::string suggerimento = {}) const {
    L.Diario.Errore(Dove(chiave), {.Record = NomeRecord(),
                                   .Campo = std::string(chiave),
                                   .Trovato = L.Toml.Descrivi(*Nodo(chiave)),
                                   .Voluto = std::move(voluto),
                                   .Suggerimento = std::move(suggerimento)});
  }

  // A value together with its place.
  template <class Valore>
  Letto<Valore> ConPosto(std::string_view chiave, std::optional<Valore> valore) const {
    const NodoToml* nodo = Nodo(chiave);
    if (nodo == nullptr) return {};
    return {std::move(valore), true, L.Toml.Dove(*nodo)};
  }

  // Nothing, here and below, if there is no value or a wrong one, which is then reported.
  std::optional<double> Numero(const RegolaNumero& regola) const {
    const NodoToml* nodo = Nodo(regola.Nome);
    if (nodo == nullptr) return std::nullopt;
    if (nodo->Genere == GenereToml::Intero || nodo->Genere == GenereToml::Reale) {
      const double valore = L.Toml.Numero(*nodo);
      if (Ammesso(regola, valore)) return valore;
      L.Diario.Errore(L.Toml.Dove(*nodo),
                      GuastoNumero(NomeRecord(), regola, L.Toml.Descrivi(*nodo), valore));
      return std::nullopt;
    }
    const bool numero = nodo->Genere == GenereToml::Testo &&
                        LeggiNumero(L.Toml.Testo(*nodo), true).Esito == EsitoNumero::Valido;
    Sbagliato(regola.Nome, NumeroVoluto(regola),
              numero ? "senza virgolette e con il punto decimale" : "");
    return std::nullopt;
  }
  Letto<double> NumeroConPosto(const RegolaNumero& regola) const {
    return ConPosto(regola.Nome, Numero(regola));
  }
  double NumeroOMancante(const RegolaNumero& regola) const {
    return Numero(regola).value_or(kValoreMancante);
  }

  Letto<int> Intero(std::string_view chiave, int minimo, int massimo, std::string voluto) const {
    const NodoToml* nodo = Nodo(chiave);
    if (nodo == nullptr) return {};
    if (nodo->Genere == GenereToml::Intero) {
      const std::int64_t valore = L.Toml.Intero(*nodo);
      if (valore >= minimo && valore <= massimo)
        return ConPosto(chiave, std::optional(static_cast<int>(valore)));
    }
    Sbagliato(chiave, std::move(voluto));
    return ConPosto<int>(chiave, std::nullopt);
  }

  Letto<bool> Vero(std::string_view chiave) const {
    const NodoToml* nodo = Nodo(chiave);
    if (nodo == nullptr) return {};
    if (nodo->Genere == GenereToml::Vero)
      return ConPosto(chiave, std::optional(L.Toml.Vero(*nodo)));
    Sbagliato(chiave, "true o false");
    return ConPosto<bool>(chiave, std::nullopt);
  }

  std::optional<int> Parola(std::string_view chiave, std::span<const ParolaNota> parole) const {
    const NodoToml* nodo = Nodo(chiave);
    if (nodo == nullptr) return std::nullopt;
    const bool tipo = chiave == "tipo";
    if (nodo->Genere == GenereToml::Testo) {
      const std::string testo = L.Toml.Testo(*nodo);
      const std::optional<int> valore = CercaParola(parole, testo);
      if (!valore)
        L.Diario.Errore(L.Toml.Dove(*nodo),
                        GuastoParola(NomeRecord(), chiave, parole, testo,
                                     tipo ? TipoVoluto() : ParoleVolute(parole)));
      return valore;
    }
    if (tipo && nodo->Genere == GenereToml::Intero)
      for (const int noto : kTipiDistanza)
        if (noto == L.Toml.Intero(*nodo)) return noto;
    Sbagliato(chiave, tipo ? TipoVoluto() : ParoleVolute(parole));
    return std::nullopt;
  }

  // The name of the record: a text, or an integer taken as text.
  const std::optional<std::string>& LeggiNome(std::string_view chiave) {
    const NodoToml* nodo = Nodo(chiave);
    if (nodo == nullptr) {
      Manca(chiave, "il nome di un punto");
    } else if (nodo->Genere == GenereToml::Testo) {
      NomeLetto = L.Toml.Testo(*nodo);
    } else if (nodo->Genere == GenereToml::Intero) {
      NomeLetto = std::to_string(L.Toml.Intero(*nodo));
    } else {
      Sbagliato(chiave, "un testo fra virgolette o un intero");
    }
    return NomeLetto;
  }

 private:
  const NodoToml& T;
  std::string_view Genere;
  const Lettura& L;
  int Ordinale;
  const Tabella* Madre;
  std::optional<std::string> NomeLetto;
};

}  // namespace compensa

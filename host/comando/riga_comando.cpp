// The parser of the command line. "--nome valore" and "--nome=valore", "-n valore", "-nvalore" and
// "-n=valore" are the same; short switches may be written together, "--" ends the options. The word
// after an option whose value may be left out is its value unless it is an option, or a network.

#include "host/comando/riga_comando.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <utility>

#include "host/base/diagnostica.h"
#include "host/base/errori.h"
#include "host/base/numeri.h"
#include "host/base/percorsi.h"
#include "host/base/suggerimenti.h"
#include "host/base/testi.h"
#include "host/base/versione.h"

namespace compensa {

namespace {

// What a word processor makes of two hyphens.
constexpr std::string_view kLineette[] = {"\u2013", "\u2014"};

bool SembraOpzione(std::string_view parola) {
  return (parola.size() > 1 && parola.front() == '-') || parola.starts_with(kLineette[0]) ||
         parola.starts_with(kLineette[1]);
}

bool SembraRete(std::string_view parola) { return Minuscole(parola).ends_with(".toml"); }

bool Esiste(const std::string& file) {
  std::error_code guasto;
  return std::filesystem::exists(PercorsoDa(file), guasto);
}

std::string Forse(std::string_view vicina) {
  return vicina.empty() ? "" : " (forse " + std::string(vicina) + "?)";
}

// The option as it was probably meant: the only one that begins so, else the nearest.
std::string_view OpzioneVicina(const Comando& comando, std::string_view scritta) {
  std::vector<std::string_view> note, continuano;
  for (const Gruppo& gruppo : comando.Gruppi)
    for (const Opzione& opzione : gruppo.Opzioni)
      for (const std::string_view nome : opzione.Nomi()) {
        if (nome.starts_with("--")) note.push_back(nome);
        if (nome.starts_with(scritta)) continuano.push_back(nome);
      }
  return continuano.size() == 1 ? continuano.front() : PiuVicino(scritta, note);
}

// The words of a call under the options of its command.
class Smistamento {
 public:
  Smistamento(const Comando& comando, std::span<const Comando> comandi,
              std::span<const std::string> parole)
      : Cosa(comando), Tutti(comandi), Parole(parole) {}

  void Smista() {
    for (; Qui < Parole.size(); ++Qui) {
      const std::string& parola = Parole[Qui];
      if (parola == "--") {
        Cosa.Argomenti.insert(Cosa.Argomenti.end(), Parole.begin() + Posto(Qui + 1), Parole.end());
        return;
      }
      if (!SembraOpzione(parola))
        Cosa.Argomenti.push_back(parola);
      else if (parola.starts_with("--"))
        Lunga(parola);
      else
        Corte(parola);
    }
  }

  void Consegna() const {
    for (const auto& [opzione, valore] : Valori)
      if (opzione->Verso.Conclude) return void(opzione->Verso.Prendi(valore));
    ControllaArgomenti();
    for (const Gruppo& gruppo : Cosa.Gruppi)
      for (const Opzione& opzione : gruppo.Opzioni)
        for (const auto& [data, valore] : Valori)
          if (data == &opzione)
            if (const std::string voluto = opzione.Verso.Prendi(valore); !voluto.empty())
              Rifiuta(opzione, "trovato " + Cita(valore) + ", " + voluto);
  }

 private:
  static std::ptrdiff_t Posto(std::size_t i) { return static_cast<std::ptrdiff_t>(i); }

  void Lunga(const std::string& parola) {
    const std::size_t uguale = parola.find('=');
    const Opzione* opzione = Cosa.Trova(parola.substr(0, uguale));
    if (opzione == nullptr) RifiutaSconosciuta(parola);
    if (uguale == std::string::npos) return ConProssima(*opzione);
    if (opzione->Valore().empty()) Rifiuta(*opzione, "non vuole un valore");
    ConValore(*opzione, parola.substr(uguale + 1));
  }

  void Corte(const std::string& parola) {
    for (std::size_t i = 1; i < parola.size(); ++i) {
      const Opzione* opzione = Cosa.Trova(std::string{'-', parola[i]});
      if (opzione == nullptr) RifiutaSconosciuta(parola);
      const bool attaccato = i + 1 < parola.size() && parola[i + 1] == '=';
      if (attaccato && opzione->Valore().empty()) Rifiuta(*opzione, "non vuole un valore");
      if (i + 1 < parola.size() && !opzione->Valore().empty())
        return ConValore(*opzione, parola.substr(attaccato ? i + 2 : i + 1));
      ConProssima(*opzione);
    }
  }

  // The value is the next word, if it is one: a number may begin with a hyphen.
  void ConProssima(const Opzione& opzione) {
    if (opzione.Valore().empty()) return Registra(opzione, "");
    const bool facoltativo = opzione.Facoltativo();
    const std::string_view dopo =
        Qui + 1 < Parole.size() ? Parole[Qui + 1] : std::string_view("--");
    const bool altra = SembraOpzione(dopo) && (facoltativo || dopo.front() != '-' ||
                                               dopo[1] == '-' || Cosa.Trova(dopo) != nullptr);
    if (!altra && !(facoltativo && SembraRete(dopo)))
      ConValore(opzione, Parole[++Qui]);
    else if (facoltativo)
      Registra(opzione, "");
    else
      Rifiuta(opzione, "vuole un valore" + (opzione.Verso.Parole.empty()
                                                ? " (" + std::string(opzione.Valore()) + ")"
                                                : ", " + ParoleVolute(opzione.Verso.Parole)));
  }

  void ConValore(const Opzione& opzione, const std::string& valore) {
    const GenereValore genere = opzione.Verso.Genere;
    if (valore.empty())
      Rifiuta(opzione, genere == GenereValore::File || genere == GenereValore::Rete
                           ? "il nome del file è vuoto"
                           : "il valore è vuoto");
    Registra(opzione, valore);
  }

  void Registra(const Opzione& opzione, const std::string& valore) {
    const bool data = std::ranges::any_of(Valori, [&](auto& v) { return v.first == &opzione; });
    if (data && !opzione.Verso.Ripetibile) Rifiuta(opzione, "va data una volta sola");
    Valori.emplace_back(&opzione, valore);
  }

  [[noreturn]] static void Rifiuta(const Opzione& opzione, const std::string& perche) {
    throw ErroreUso("opzione " + std::string(opzione.Nome()) + ": " + perche);
  }

  [[noreturn]] void RifiutaSconosciuta(const std::string& parola) const {
    const std::string scritta = parola.substr(0, parola.find('='));
    std::string_view nome = scritta;
    for (const std::string_view lineetta : kLineette)
      if (nome.starts_with(lineetta)) nome.remove_prefix(lineetta.size());
    const std::string lunga = "--" + std::string(SenzaBianchi(nome, "-"));
    std::string altri;
    for (const Comando& altro : Tutti)
      if (&altro != &Cosa && (altro.Trova(scritta) != nullptr || altro.Trova(lunga) != nullptr))
        altri += (altri.empty() ? "" : " e ") + altro.NomeIntero();
    const std::string_view vicina = OpzioneVicina(Cosa, lunga);
    if (!altri.empty() && Cosa.Trova(lunga) == nullptr)
      throw ErroreUso("opzione " + scritta + ": non è di " + Cosa.NomeIntero() + ", ma di " +
                      altri);
    throw ErroreUso("opzione sconosciuta " + Cita(parola) + Forse(vicina));
  }

  void ControllaArgomenti() const {
    for (const std::string& argomento : Cosa.Argomenti) {
      if (argomento.empty()) throw ErroreUso("il nome di un file è vuoto");
      if (Cosa.Nome.empty() && !Esiste(argomento))
        for (const Comando& altro : Tutti)
          if (altro.Nome == argomento)
            throw ErroreUso("il comando " + argomento + " va scritto subito dopo compensa");
    }
    if (!Cosa.Argomenti.empty()) return;
    std::string perche = "manca " + std::string(Cosa.Argomento);
    for (const auto& [opzione, valore] : Valori)
      if (opzione->Facoltativo() && !valore.empty())
        perche += " (" + Cita(valore) + " è il valore di " + std::string(opzione->Nome()) + ")";
    throw ErroreUso(perche);
  }

  const Comando& Cosa;
  std::span<const Comando> Tutti;
  std::span<const std::string> Parole;
  std::size_t Qui = 0;
  std::vector<std::pair<const Opzione*, std::string>> Valori;
};

}  // namespace

Destino Interruttore(bool& acceso) {
  return {GenereValore::Nessuno,
          [&acceso](const std::string&) { return acceso = true, std::string(); }};
}

Destino Conclusione(bool& chiesta) {
  Destino destino = Interruttore(chiesta);
  destino.Conclude = true;
  return destino;
}

Destino Numero(std::optional<double>& numero, const RegolaNumero& regola) {
  return {GenereValore::Testo, [&](const std::string& valore) -> std::string {
            const NumeroLetto letto = LeggiNumero(valore, true);
            if (letto.Esito != EsitoNumero::Valido || !Ammesso(regola, letto.Valore))
              return "serve " + NumeroVoluto(regola);
            numero = letto.Valore;
            return {};
          }};
}

Destino Intero(std::optional<int>& intero, int minimo) {
  return {GenereValore::Testo, [&intero, minimo](const std::string& valore) -> std::string {
            const std::optional<int> letto = LeggiIntero(valore);
            if (!letto || *letto < minimo)
              return "serve un intero da " + std::to_string(minimo) + " a " +
                     std::to_string(std::numeric_limits<int>::max());
            intero = letto;
            return {};
          }};
}

Destino Elenco(std::vector<std::string>& nomi) {
  const auto prendi = [&nomi](const std::string& valore) -> std::string {
    for (std::size_t da = 0; da <= valore.size();) {
      const std::size_t a = std::min(valore.find(',', da), valore.size());
      nomi.emplace_back(SenzaBianchi(std::string_view(valore).substr(da, a - da)));
      if (nomi.back().empty()) return "servono nomi separati da virgole";
      da = a + 1;
    }
    return {};
  };
  return {.Prendi = prendi, .Ripetibile = true};
}

Destino Parola(std::vector<ParolaNota> parole, const std::function<void(int)>& prendi) {
  const auto cerca = [parole, prendi](const std::string& valore) -> std::string {
    if (const std::optional<int> codice = CercaParola(parole, valore)) {
      prendi(*codice);
      return {};
    }
    std::vector<std::string_view> note(parole.size());
    std::ranges::transform(parole, note.begin(), &ParolaNota::Testo);
    const std::string_view vicina = PiuVicino(valore, note);
    return "serve " + ParoleVolute(parole) + Forse(vicina.empty() ? "" : Cita(vicina));
  };
  return {GenereValore::Parola, cerca, std::move(parole)};
}

std::vector<std::string_view> Opzione::Nomi() const {
  std::vector<std::string_view> nomi;
  for (std::string_view resto = Firma; resto.starts_with('-');) {
    const std::size_t fine = std::min(resto.find_first_of(", "), resto.size());
    nomi.push_back(resto.substr(0, fine));
    resto.remove_prefix(std::min(resto.find_first_not_of(", ", fine), resto.size()));
  }
  return nomi;
}

std::string_view Opzione::Nome() const {
  const std::vector<std::string_view> nomi = Nomi();
  return *std::ranges::find_if(nomi, [](std::string_view nome) { return nome.starts_with("--"); });
}

std::string_view Opzione::Valore() const {
  const std::string_view ultimo = Nomi().back();
  return SenzaBianchi(Firma.substr(Firma.rfind(ultimo) + ultimo.size()), " []");
}

std::string Opzione::Spiegazione() const {
  std::string testo(Descrizione);
  for (const ParolaNota& parola : Verso.Parole)
    testo += (&parola == &Verso.Parole.front() ? " [" : " | ") + std::string(parola.Testo);
  return Verso.Parole.empty() ? testo : testo + "]";
}

std::string Comando::NomeIntero() const {
  return std::string(kNomeProgramma) + (Nome.empty() ? "" : " ") + std::string(Nome);
}

const Opzione* Comando::Trova(std::string_view parola) const {
  for (const Gruppo& gruppo : Gruppi)
    for (const Opzione& opzione : gruppo.Opzioni)
      if (std::ranges::count(opzione.Nomi(), parola) > 0) return &opzione;
  return nullptr;
}

const Comando& ScegliComando(std::span<const Comando> comandi,
                             std::span<const std::string> parole) {
  if (parole.empty()) return comandi.front();
  const std::string& prima = parole.front();
  std::vector<std::string_view> nomi;
  for (const Comando& comando : comandi) {
    if (comando.Nome.empty()) continue;
    if (comando.Nome == prima) return comando;
    nomi.push_back(comando.Nome);
  }
  if (!SembraOpzione(prima) && prima.find_first_of("./") == std::string::npos && !Esiste(prima)) {
    const bool opzione = comandi.front().Trova("--" + prima) != nullptr;  // "help"
    const std::string vicina = opzione ? "--" + prima : std::string(PiuVicino(prima, nomi));
    if (!vicina.empty()) throw ErroreUso("comando sconosciuto " + Cita(prima) + Forse(vicina));
  }
  return comandi.front();
}

void LeggiParole(const Comando& comando, std::span<const Comando> comandi,
                 std::span<const std::string> parole) {
  Smistamento smistamento(comando, comandi, parole);
  smistamento.Smista();
  smistamento.Consegna();
}

}  // namespace compensa

// The register of a .gkf file: an instruction a record, "genus field="value" ...", readings after
// their station. Numbers have the digits that give the same double back; a field that is not given
// is not written.

#include "host/uscite/gkf_registro.h"

#include "host/base/numeri.h"

namespace compensa {

namespace gkf {
namespace {

using Istruzione = std::function<void(const std::string&)>;

// Fields of a register entry.
class Campi {
 public:
  explicit Campi(std::string_view genere) : Riga(genere) {}
  Campi& Testo(std::string_view nome, std::string_view valore) {
    Riga.append(" ").append(nome).append("=\"").append(Protetto(valore)).append("\"");
    return *this;
  }
  Campi& Numero(std::string_view nome, double valore) {
    return Presente(valore) ? Testo(nome, NumeroBreve(valore)) : *this;
  }
  Campi& Intero(std::string_view nome, int valore) { return Testo(nome, std::to_string(valore)); }
  const std::string& Fine() const { return Riga; }

 private:
  std::string Riga;
};

const std::string& Nome(const Risultati& r, int punto) {
  static const std::string kNessunNome;
  const auto i = static_cast<std::size_t>(punto);
  return punto >= 0 && i < r.Punti.size() ? r.Punti[i].Nome : kNessunNome;
}

void RegistraStazione(const Risultati& r, const RisultatoStazione& s,
                      const Istruzione& istruzione) {
  Campi stazione("stazione");
  stazione.Testo("punto", Nome(r, s.Punto)).Numero("altezza", s.AltStrum);
  if (!s.AltStrumNota) stazione.Intero("altezza_nota", 0);
  if (s.EccDistanza != 0.0 || s.EccDirezione != 0.0)
    stazione.Numero("ecc_distanza", s.EccDistanza).Numero("ecc_direzione", s.EccDirezione);
  istruzione(stazione.Fine());
  for (const RisultatoOsservazione& o : s.Osservazioni)
    istruzione(Campi("lettura")
                   .Testo("punto", Nome(r, o.Punto))
                   .Numero("direzione", o.Direzione)
                   .Numero("zenit", o.Zenit)
                   .Numero("segnale", o.AltSegnale)
                   .Numero("distanza", o.Distanza)
                   .Intero("tipo", o.TipoDist)
                   .Fine());
}

}  // namespace

void Registra(const Risultati& r, const Istruzione& istruzione) {
  istruzione(Campi(kRegistro).Intero("versione", kVersioneRegistro).Fine());
  Campi progetto("progetto");
  progetto.Testo("nome", r.DatiProgetto.Nome);
  if (r.DatiProgetto.Epsg) progetto.Intero("epsg", *r.DatiProgetto.Epsg);
  istruzione(progetto.Fine());
  const TOpzCr& o = r.Opzioni;
  Campi opzioni("opzioni");
  // Zero is what a network without them has.
  if (o.SqmDir != 0.0) opzioni.Numero("sqm_direzione", ValoreDato(o.SqmDir));
  if (o.SqmDistCost != 0.0 || o.SqmDistProp != 0.0)
    opzioni.Numero("sqm_distanza_costante", ValoreDato(o.SqmDistCost))
        .Numero("sqm_distanza_proporzionale", ValoreDato(o.SqmDistProp));
  opzioni.Intero("iterazioni", o.MaxIter)
      .Intero("calcolo", o.TipoCalcolo)
      .Intero("cartografiche", o.Cartografiche != 0 ? 1 : 0);
  istruzione(opzioni.Fine());
  istruzione(Campi("curvatura")
                 .Intero("attiva", r.CurvaturaRifrazione.CorrCurvRifr != 0 ? 1 : 0)
                 .Numero("coefficiente", r.CurvaturaRifrazione.CoeffRifr)
                 .Numero("raggio", r.CurvaturaRifrazione.RaggioTerra)
                 .Fine());
  for (const RisultatoPunto& p : r.Punti)
    istruzione(Campi("punto")
                   .Testo("nome", p.Nome)
                   .Numero("est", p.EstIniziale)
                   .Numero("nord", p.NordIniziale)
                   .Numero("quota", p.QuotaIniziale)
                   .Intero("planimetria", p.RuoliIniziali.Pla)
                   .Intero("altimetria", p.RuoliIniziali.Alt)
                   .Fine());
  for (const RisultatoStazione& s : r.Stazioni) RegistraStazione(r, s, istruzione);
}

std::string Chiusura(const Impronta& impronta) {
  return Campi(kFine).Testo("impronta", impronta.Esadecimale()).Fine();
}

std::string Protetto(std::string_view testo) {
  constexpr unsigned char kPrimoVisibile = ' ';
  std::string protetto;
  for (const char c : testo) {
    switch (c) {
      case '&': protetto += "&amp;"; break;
      case '<': protetto += "&lt;"; break;
      case '>': protetto += "&gt;"; break;
      case '"': protetto += "&quot;"; break;
      default:
        if (static_cast<unsigned char>(c) >= kPrimoVisibile)
          protetto += c;
        else
          protetto += "&#" + std::to_string(static_cast<unsigned char>(c)) + ";";
    }
  }
  return protetto;
}

}  // namespace gkf

}  // namespace compensa

// Sentences on motions in height: heights that rise together, and instrument heights that do with
// the heights around them.

#include <algorithm>

#include "host/base/diagnostica.h"
#include "host/giudizio/indeterminazione/parole.h"

namespace compensa {

namespace {

constexpr std::size_t U(int i) { return static_cast<std::size_t>(i); }

std::string PuntiDiStazioni(const Risultati& r, const std::vector<int>& stazioni) {
  std::vector<int> punti;
  punti.reserve(stazioni.size());
  for (const int s : stazioni) punti.push_back(r.Stazioni[U(s)].Punto);
  return ElencoPunti(r, punti);
}

std::string SoloQuote(const Risultati& r, const SistemaLibero& s, const MotoInsieme& insieme,
                      const std::string& quasi) {
  std::vector<int> punti;
  for (const int nodo : insieme.Nodi) punti.push_back(s.Punti[U(nodo)]);
  const std::string elenco = ElencoPunti(r, punti);
  if (punti.size() == 1)
    return "quota di " + elenco + " " + quasi + "libera: " +
           (s.RigheDi(insieme.Nodi.front()).empty()
                ? "nessuna visuale in quota completa da o verso il punto"
                : "manca un dislivello da un punto di quota nota");
  return "quote di " + elenco + " " + quasi + "libere di salire insieme: manca una quota nota" +
         (r.Altimetria.Fissi == 0 ? " (nessun punto fisso in altimetria)" : "");
}

std::string ConStrumenti(const Risultati& r, const MotoLibero& m, const std::string& quasi) {
  const bool uno = m.Stazioni.size() == 1;
  const std::string dove = PuntiDiStazioni(r, m.Stazioni);
  const std::string strumenti =
      (uno ? "altezza dello strumento in " : "altezze degli strumenti in ") + dove;
  if (m.Punti.empty())
    return strumenti + " " + quasi + (uno ? "libera" : "libere") +
           ": nessuna visuale in quota completa da lì";
  const std::string quote =
      (m.Punti.size() == 1 ? "quota di " : "quote di ") + ElencoPunti(r, m.Punti);
  const bool stessa =
      uno && m.Punti.size() == 1 && m.Punti.front() == r.Stazioni[U(m.Stazioni.front())].Punto;
  if (stessa)
    return quote + " e " + strumenti + " " + quasi +
           "libere di compensarsi: manca una visuale in quota verso " + ElencoPunti(r, m.Punti) +
           " da un altro punto, o la misura dell'altezza";
  return strumenti + " e " + quote + " " + quasi +
         "libere di cambiare insieme: manca la misura di un'altezza dello strumento o una quota "
         "nota";
}

}  // namespace

MotoLibero MotoDiQuote(const Risultati& r, const SistemaLibero& s, const MotoInsieme& insieme,
                       double sqm) {
  MotoLibero moto;
  moto.Sqm = sqm;
  for (const int nodo : insieme.Nodi) {
    const int strumento = s.Strumenti[U(nodo)];
    if (strumento == kNessuno)
      moto.Punti.push_back(s.Punti[U(nodo)]);
    else
      moto.Stazioni.push_back(strumento);
  }
  const std::string quasi = Presente(sqm) ? "quasi " : "";
  moto.Tipo = moto.Stazioni.empty() ? TipoMoto::Quote : TipoMoto::Strumento;
  moto.Parole =
      moto.Stazioni.empty() ? SoloQuote(r, s, insieme, quasi) : ConStrumenti(r, moto, quasi);
  moto.Parole += TestoSqmMoto(sqm);
  return moto;
}

}  // namespace compensa

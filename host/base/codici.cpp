// The table of the codes: the word of each, and the adjustment that it concerns where the message
// does not tell itself.

#include "host/base/codici.h"

#include <algorithm>
#include <cstddef>

namespace compensa {

namespace {

using enum Codice;
constexpr Riguardo kPla = Riguardo::Planimetria;
constexpr Riguardo kAlt = Riguardo::Altimetria;

constexpr VoceCodice kCodici[] = {
    {Altro, "altro"},
    {FileNonLetto, "file_non_letto"},
    {Sintassi, "sintassi"},
    {NumeroNonAmmesso, "numero_non_ammesso"},
    {ParolaSconosciuta, "parola_sconosciuta"},
    {ChiaveSconosciuta, "chiave_sconosciuta"},
    {ChiaveMancante, "chiave_mancante"},
    {TipoSbagliato, "tipo_sbagliato"},
    {NomeNonValido, "nome_non_valido"},
    {PuntoSconosciuto, "punto_sconosciuto"},
    {PuntoDoppio, "punto_doppio"},
    {VisualeSuSeStessa, "visuale_su_se_stessa"},
    {SqmMancante, "sqm_mancante"},
    {ValoreIncompleto, "valore_incompleto"},
    {SqmAssunto, "sqm_assunto"},
    {SqmDiversi, "sqm_diversi"},
    {FacceDiscordi, "facce_discordi"},
    {FacceNonUnite, "facce_non_unite"},
    {MediaDiscorde, "media_discorde"},
    {CoordinateDiverse, "coordinate_diverse"},
    {CoordinateNonImportate, "coordinate_non_importate"},
    {OpzioneSenzaEffetto, "opzione_senza_effetto"},
    {PuntoNonRaggiunto, "punto_non_raggiunto"},
    {QuotaNonRaggiunta, "quota_non_raggiunta", kAlt},
    {FissoNonUsato, "fisso_non_usato"},
    {PuntoSenzaCoordinate, "punto_senza_coordinate"},
    {PuntoSenzaQuota, "punto_senza_quota", kAlt},
    {StazioneVuota, "stazione_vuota"},
    {StazioneEsclusa, "stazione_esclusa"},
    {OsservazioneVuota, "osservazione_vuota"},
    {PuntoOsservatoEscluso, "punto_osservato_escluso"},
    {DirezioneSola, "direzione_sola", kPla},
    {DistanzaSenzaZenit, "distanza_senza_zenit"},
    {DistanzaSenzaDirezione, "distanza_senza_direzione", kPla},
    {DistanzaNonRiducibile, "distanza_non_riducibile", kPla},
    {EstremiCoincidenti, "estremi_coincidenti"},
    {VisualeInQuotaIncompleta, "visuale_in_quota_incompleta", kAlt},
    {VisualeSenzaPeso, "visuale_senza_peso", kAlt},
    {AltezzaStrumentoMancante, "altezza_strumento_mancante", kAlt},
    {AltezzaStrumentoIndeterminata, "altezza_strumento_indeterminata", kAlt},
    {AltezzaSegnaleMancante, "altezza_segnale_mancante", kAlt},
    {GruppoStaccato, "gruppo_staccato"},
    {PuntoSenzaOsservazioni, "punto_senza_osservazioni"},
    {PuntoIndeterminato, "punto_indeterminato"},
    {ZenitVerticale, "zenit_verticale"},
    {ZenitOltreMezzoGiro, "zenit_oltre_mezzo_giro"},
    {AngoloVerticale, "angolo_verticale"},
    {AltezzaStrumentoInverosimile, "altezza_strumento_inverosimile", kAlt},
    {AltezzaSegnaleInverosimile, "altezza_segnale_inverosimile", kAlt},
    {VisualeRipetuta, "visuale_ripetuta"},
    {NomiSimili, "nomi_simili"},
    {PuntiCoincidenti, "punti_coincidenti"},
    {DistanzaNonTorna, "distanza_non_torna", kPla},
    {DislivelloNonTorna, "dislivello_non_torna", kAlt},
    {TriangoloNonChiude, "triangolo_non_chiude", kPla},
    {ChiusureNonTornano, "chiusure_non_tornano"},
    {CoordinateDiscordi, "coordinate_discordi", kPla},
    {LetturaDiscorde, "lettura_discorde", kPla},
    {EstNordScambiati, "est_nord_scambiati"},
    {RiduzioniMancanti, "riduzioni_mancanti", kPla},
    {FusoIgnoto, "fuso_ignoto"},
    {FuoriFuso, "fuori_fuso"},
    {NordFuoriItalia, "nord_fuori_italia"},
    {DistanzaSenzaQuote, "distanza_senza_quote", kPla},
    {VersoSbagliato, "verso_sbagliato", kPla},
    {DirezioniInGradi, "direzioni_in_gradi", kPla},
    {ScalaDistanze, "scala_distanze"},
    {SqmInverosimile, "sqm_inverosimile", kPla},
    {RifrazioneInverosimile, "rifrazione_inverosimile", kAlt},
    {RaggioInverosimile, "raggio_inverosimile", kAlt},
    {EpsgNonPiano, "epsg_non_piano"},
    {EpsgIgnoto, "epsg_ignoto"},
    {EpsgDiscorde, "epsg_discorde"},
    {RidondanzaNulla, "ridondanza_nulla"},
    {SigmaZeroGrande, "sigma_zero_grande", kPla},
    {SigmaZeroPiccolo, "sigma_zero_piccolo", kPla},
    {WOltreLimite, "w_oltre_limite"},
    {DislivelliImprecisi, "dislivelli_imprecisi", kAlt},
    {PuntiSenzaControllo, "punti_senza_controllo"},
    {LettureSenzaControllo, "letture_senza_controllo", kPla},
    {ApprossimateLontane, "approssimate_lontane", kPla},
    {TipoDistanzaSbagliato, "tipo_distanza_sbagliato"},
    {NonMostrati, "non_mostrati"},
};

constexpr bool InOrdine() {
  for (std::size_t i = 0; i < std::size(kCodici); ++i)
    if (static_cast<std::size_t>(kCodici[i].Quale) != i) return false;
  return std::size(kCodici) == static_cast<std::size_t>(NonMostrati) + 1;
}
static_assert(InOrdine(), "the rows stand in the order of the enumeration");

}  // namespace

std::span<const VoceCodice> Codici() { return kCodici; }

const VoceCodice& VoceDi(Codice codice) { return kCodici[static_cast<std::size_t>(codice)]; }

}  // namespace compensa

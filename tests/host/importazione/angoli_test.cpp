// Angles in every notation of field books, and which reader takes which text for its own.

#include "host/importazione/angoli.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "host/importazione/lettore.h"

using namespace compensa;

namespace {

constexpr auto kGon = UnitaAngoli::Gon, kDec = UnitaAngoli::GradiDecimali;
constexpr auto kComp = UnitaAngoli::GradiCompatti, kGms = UnitaAngoli::GradiPrimi;

// clang-format off
const struct { const char* Testo; UnitaAngoli Unita; double Secondi; } kAngoli[] = {
    {"57.32", kComp, 57 * 3600 + 32 * 60},  // 0.32 * 100 is below 32
    {"57.3", kComp, 57 * 3600 + 30 * 60},   // not three minutes
    {"57.", kComp, 57 * 3600}, {"57,32284", kComp, 207148.4}, {"-0.3", kComp, -1800},
    {"359.595999999", kComp, 1295999.99999}, {"+0.0001", kComp, 1}, {"57-32-28.4", kComp, 207148.4},
    {"57.32", kDec, 206352}, {"-0,25", kDec, -900}, {"57-32-28,4", kDec, 207148.4},
    {"-57-32-28.4", kGms, -207148.4}, {"0-0-59.999", kGms, 59.999}, {"-0.5", kGon, -1620},
};
const struct { UnitaAngoli Unita; std::initializer_list<const char*> Testi; } kRifiutati[] = {
    {kComp, {"57.6", "57.326", ".3", "57.3a", "57.3.2", "", "-", "1e2"}}, {kDec, {"1e999", "5-3"}},
    {kGms, {"0-59-60", "0-60-0", "57-32", "57-32-", "57--32-1", "57-32-+1", "57-32--1", "57.5",
            "57.5-3-2", "1-2-3-4", "99999999999-0-0"}}, {kGon, {"5-3-2", "nan", "inf"}},
};
const double kGiri[][2] = {{400, 0}, {-400, 0}, {-0.5, 399.5}, {1200.5, 0.5}, {-1e-20, 0}};
// clang-format on

TEST(Angoli, OgniNotazione) {
  for (const auto& caso : kAngoli)
    EXPECT_NEAR(LeggiAngolo(caso.Testo, caso.Unita, true).value_or(-1) * 3240, caso.Secondi, 1e-9)
        << caso.Testo;
  for (const auto& [unita, testi] : kRifiutati)
    for (const char* testo : testi) EXPECT_FALSE(LeggiAngolo(testo, unita, true)) << testo;
  EXPECT_FALSE(LeggiAngolo("57,32", kComp, false));
  // Whole seconds lose nothing: every notation of an angle gives the same bits.
  EXPECT_EQ(LeggiAngolo("89.1618", kComp), LeggiAngolo("89-16-18", kGms));
  EXPECT_EQ(GonDaCifreCompatte("08916180", 1), 321378 / 3240.);
  EXPECT_EQ(GonDaCifreCompatte("12345", 1), 754.5 / 3240.);
  for (const char* cifre : {"0896000", "0890060", "123", "-891618", "89 1618"})
    EXPECT_FALSE(GonDaCifreCompatte(cifre, 0)) << cifre;
  for (const auto& [gon, voluto] : kGiri) EXPECT_EQ(NelGiro(gon), voluto) << gon;
}

// The reader of the samples that begin so; what is not listed is nobody's.
const std::pair<const char*, std::string_view> kCampioni[] = {
    {"csv/campagna", "csv"}, {"csv/guast", "csv"}, {"csv/nostra", "csv"},    {"gkf/", "gkf"},
    {"gsi/", "gsi"},         {"sdr/", "sdr"},      {"libretto/", "libretto"}};

TEST(Formati, OgniCampioneEDiUnoSolo) {
  const std::filesystem::path semi = CARTELLA_SEMI;
  int riconosciuti = 0;
  for (const auto& voce : std::filesystem::recursive_directory_iterator(semi)) {
    if (voce.is_directory()) continue;
    std::ifstream file(voce.path(), std::ios::binary);
    const std::string testo(std::istreambuf_iterator<char>(file), {});
    const std::string nome = voce.path().lexically_relative(semi).generic_string();
    const auto* caso = std::find_if(std::begin(kCampioni), std::end(kCampioni),
                                    [&](const auto& c) { return nome.starts_with(c.first); });
    for (const Lettore* lettore : Lettori()) {
      const bool suo = caso != std::end(kCampioni) && lettore->Nome == caso->second;
      EXPECT_EQ(lettore->Riconosce(testo), suo) << lettore->Nome << ' ' << nome;
      riconosciuti += suo ? 1 : 0;
    }
  }
  EXPECT_GE(riconosciuti, 19);
}

}  // namespace

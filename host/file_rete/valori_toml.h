#pragma once

// Single values of a text in TOML, as their bytes stand there.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/file_rete/toml.h"

namespace compensa {

// What bytes without quotes are, if they are any value.
std::optional<GenereToml> GenereScalare(std::string_view t);

// 1979-05-27, 07:32:00, or both with T between them, as far as their shape goes.
bool SembraData(std::string_view t);

// The character that an escape's hexadecimal digits stand for; nothing if there is none.
std::optional<char32_t> CodiceDaCifre(std::string_view cifre);

// Letters after a backslash that stand for one character each.
inline constexpr std::string_view kFuggiteToml = "btnfr\"\\";

// What a well-formed text between quotes stands for.
std::string Sciogli(std::string_view t);

// Nothing beyond 64 bits.
std::optional<std::int64_t> LeggiIntero64(std::string_view scritto);

// Of an integer or a real; infinite: none, or too large.
double LeggiRealeToml(std::string_view scritto);

}  // namespace compensa

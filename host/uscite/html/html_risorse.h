#pragma once

// Style sheet and script of the page, and the values by which its security policy admits these two
// and nothing else: the SHA-256 of the text between the tags, base64. When a text changes, its value
// must: a browser names the right one in its console.

#include <string_view>

namespace compensa {

extern const std::string_view kStile;
extern const std::string_view kScript;
inline constexpr std::string_view kImprontaStile = "WRbDnWiUCX843rfggrfzP3YUHK0n35dEfn4zhdXPwvg=";
inline constexpr std::string_view kImprontaScript = "kH82peqsH3HqHb4mBudM/c/NVml3GlwVl3Jyjd7YNDY=";

}  // namespace compensa

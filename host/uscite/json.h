#pragma once

// The result model as JSON, for programs. docs/json.md describes the schema.

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "host/base/diagnostica.h"
#include "host/rete/risultati.h"

namespace compensa {

inline constexpr std::string_view kSchemaJson = "compensa-risultati";
inline constexpr int kVersioneJson = 1;  // to be raised when a key changes its meaning or goes

// What was said of a run besides its results.
struct MessaggiJson {
  std::span<const Messaggio> Avvisi = {};
  std::span<const std::string> Note = {};  // UTF-8, one line each
};

// Passes the document on in pieces, UTF-8, a record on a line. What does not exist is null.
void ScriviJson(const Risultati& risultati, const std::function<void(std::string_view)>& scrivi,
                const MessaggiJson& messaggi = {});

}  // namespace compensa

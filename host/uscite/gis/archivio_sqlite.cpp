// SQLite behind owning handles.

#include "host/uscite/gis/archivio_sqlite.h"

#include <sqlite3.h>

#include <cmath>
#include <new>
#include <stdexcept>

namespace compensa {

namespace {

[[noreturn]] void Fallisci(sqlite3* archivio, int esito) {
  if (esito == SQLITE_NOMEM) throw std::bad_alloc();
  throw std::runtime_error(std::string("SQLite: ") + (archivio != nullptr ? sqlite3_errmsg(archivio)
                                                                          : sqlite3_errstr(esito)));
}

}  // namespace

void ArchivioSqlite::Chiudi::operator()(sqlite3* archivio) const { sqlite3_close_v2(archivio); }

void Istruzione::Termina::operator()(sqlite3_stmt* istruzione) const {
  sqlite3_finalize(istruzione);
}

ArchivioSqlite::ArchivioSqlite() {
  sqlite3* archivio = nullptr;
  const int esito =
      sqlite3_open_v2(":memory:", &archivio,
                      SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
  Maniglia.reset(archivio);  // to be closed also when it could not be opened
  if (esito != SQLITE_OK) Fallisci(archivio, esito);
}

void ArchivioSqlite::Esegui(const std::string& sql) {
  const int esito = sqlite3_exec(Maniglia.get(), sql.c_str(), nullptr, nullptr, nullptr);
  if (esito != SQLITE_OK) Fallisci(Maniglia.get(), esito);
}

void ArchivioSqlite::Versa(const std::function<void(std::string_view)>& scrivi) const {
  struct Libera {
    void operator()(unsigned char* byte) const { sqlite3_free(byte); }
  };
  sqlite3_int64 lunghezza = 0;
  const std::unique_ptr<unsigned char, Libera> byte(
      sqlite3_serialize(Maniglia.get(), "main", &lunghezza, 0));
  if (!byte) throw std::bad_alloc();
  scrivi({reinterpret_cast<const char*>(byte.get()), static_cast<std::size_t>(lunghezza)});
}

Istruzione::Istruzione(ArchivioSqlite& archivio, const std::string& sql)
    : Archivio(archivio.Maniglia.get()) {
  sqlite3_stmt* istruzione = nullptr;
  Controlla(
      sqlite3_prepare_v2(Archivio, sql.data(), static_cast<int>(sql.size()), &istruzione, nullptr));
  Maniglia.reset(istruzione);
}

void Istruzione::Controlla(int esito) const {
  if (esito != SQLITE_OK && esito != SQLITE_DONE) Fallisci(Archivio, esito);
}

Istruzione& Istruzione::Numero(double valore) {
  if (!std::isfinite(valore)) return Nullo();
  Controlla(sqlite3_bind_double(Maniglia.get(), ++Posto, valore));
  return *this;
}

Istruzione& Istruzione::Intero(std::int64_t valore) {
  Controlla(sqlite3_bind_int64(Maniglia.get(), ++Posto, valore));
  return *this;
}

// An empty text is not NULL.
Istruzione& Istruzione::Testo(std::string_view valore) {
  Controlla(sqlite3_bind_text64(Maniglia.get(), ++Posto, valore.empty() ? "" : valore.data(),
                                valore.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
  return *this;
}

Istruzione& Istruzione::Blob(std::string_view byte) {
  Controlla(
      sqlite3_bind_blob64(Maniglia.get(), ++Posto, byte.data(), byte.size(), SQLITE_TRANSIENT));
  return *this;
}

Istruzione& Istruzione::Nullo() {
  Controlla(sqlite3_bind_null(Maniglia.get(), ++Posto));
  return *this;
}

void Istruzione::Inserisci() {
  Controlla(sqlite3_step(Maniglia.get()));
  Controlla(sqlite3_reset(Maniglia.get()));
  Posto = 0;
}

}  // namespace compensa

#pragma once

// A database of SQLite in memory, with handles that close themselves. Every failure is a
// std::runtime_error with the database's own words.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace compensa {

class ArchivioSqlite {
 public:
  ArchivioSqlite();

  // Runs statements that return nothing.
  void Esegui(const std::string& sql);
  // Passes the bytes of the database file on.
  void Versa(const std::function<void(std::string_view)>& scrivi) const;

 private:
  friend class Istruzione;
  struct Chiudi {
    void operator()(sqlite3* archivio) const;
  };
  std::unique_ptr<sqlite3, Chiudi> Maniglia;
};

// A row to insert, again and again. Values are given in the order of the columns.
class Istruzione {
 public:
  Istruzione(ArchivioSqlite& archivio, const std::string& sql);

  // A number that does not exist becomes NULL.
  Istruzione& Numero(double valore);
  Istruzione& Intero(std::int64_t valore);
  Istruzione& Logico(bool valore) { return Intero(valore ? 1 : 0); }
  Istruzione& Testo(std::string_view valore);
  Istruzione& Blob(std::string_view byte);
  Istruzione& Nullo();
  // Inserts the row and begins the next.
  void Inserisci();

 private:
  void Controlla(int esito) const;

  struct Termina {
    void operator()(sqlite3_stmt* istruzione) const;
  };
  sqlite3* Archivio;
  std::unique_ptr<sqlite3_stmt, Termina> Maniglia;
  int Posto = 0;  // of the value given last, from 1
};

}  // namespace compensa

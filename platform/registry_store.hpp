// The per-user store of typed values, `Zelvane/registry.db` in the user's folder of settings.
// Opened by the registry key for as long as one piece of work takes.
//
// Any number of processes read and write it at once. There is no cache: every read goes to the
// file. A write is on disk or did not happen. Whatever is wrong with the file, its folder or the
// user's home, a read finds nothing and a write answers false; nothing throws, and no
// single call takes longer than kPatience, be it that another program keeps the file locked or that
// what the file holds asks for endless work.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/files.hpp"

struct sqlite3;
struct sqlite3_stmt;

namespace zum {

/// Names of keys and values are the same in capitals and small letters.
class RegistryStore {
 public:
  using Data = std::variant<std::string, std::int32_t>;
  struct Value {
    std::string name;
    Data data;
  };

  static constexpr std::chrono::milliseconds kPatience{2000};
  static constexpr std::size_t kMostValues = 1000;

  /// Several reads and writes as one: no other process comes between them, and they are committed
  /// together or not at all. One at a time.
  class Transaction {
   public:
    explicit Transaction(RegistryStore& store);
    /// Rolls back what was not committed.
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// False when the store cannot be written: then no write below it happens.
    bool begun() const { return open; }
    /// False when any read or write since the beginning failed; then no write happened.
    bool commit();

   private:
    RegistryStore& owner;
    bool open;
  };

  /// [any] While one lives, its thread waits for kPatience once at most: after a call that took
  /// longer, all others find nothing, at once. For who reads many values while a host waits. An
  /// inner one shares the wait of the outer one.
  class OneWait {
   public:
    OneWait();
    ~OneWait();
    OneWait(const OneWait&) = delete;
    OneWait& operator=(const OneWait&) = delete;

   private:
    friend class RegistryStore;
    bool inVain = false;
  };

  /// [any] While one lives, all reads see the file as the first of them found it, and only that one
  /// looks for what others do with it. It holds up who writes, so it is for a few reads at once; no
  /// write and no transaction inside. Without a store it does nothing.
  class Look {
   public:
    explicit Look(RegistryStore& store);
    ~Look();
    Look(const Look&) = delete;
    Look& operator=(const Look&) = delete;

   private:
    RegistryStore& owner;
  };

  RegistryStore() = default;
  RegistryStore(const RegistryStore&) = delete;
  RegistryStore& operator=(const RegistryStore&) = delete;

  std::optional<Data> read(std::string_view key, std::string_view name);
  /// The first kMostValues values of a key, by name.
  std::vector<Value> list(std::string_view key);
  /// Replaces a value of any type.
  bool write(std::string_view key, std::string_view name, const Data& data);
  /// True as well when there was no such value.
  bool remove(std::string_view key, std::string_view name);

  /// Why the last call found nothing or failed; empty when there was just no such value.
  const std::string& problem() const { return trouble; }
  /// The file, in the system's form; empty for a user without a home.
  static std::filesystem::path file();
  /// As long as it is the same, so are all values. Nothing while that is not sure: without a file,
  /// while one is written, and for moments after.
  static std::optional<FileStamp> stamp();

 private:
  struct Close {
    void operator()(sqlite3* connection) const;
    void operator()(sqlite3_stmt* statement) const;
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Close>;

  // SQLite's handlers; `store` is the RegistryStore.
  static int waitForOthers(void* store, int attempt);
  static int stopsWork(void* store);

  bool connect(bool create);
  void distrust();
  bool isLate() const;
  bool begin();
  bool commit();
  void rollback();
  bool holdsRegistry();
  Statement prepare(const char* sql, std::string_view key);
  bool execute(const char* sql);
  bool finish(const Statement& statement);
  bool fail(int code);

  std::unique_ptr<sqlite3, Close> db;
  Statement reading;  // of read(), once it is prepared
  std::chrono::steady_clock::time_point deadline;
  std::string trouble;
  bool inTransaction = false;
  bool failed = false;  // any call since the beginning of the transaction
};

}  // namespace zum

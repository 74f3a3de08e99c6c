#include "platform/registry_store.hpp"

#include <sqlite3.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <limits>
#include <thread>
#include <utility>

#include "platform/user_folders.hpp"

namespace zum {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr const char* kCreate =
    "CREATE TABLE IF NOT EXISTS registry("
    "key TEXT NOT NULL COLLATE NOCASE, name TEXT NOT NULL COLLATE NOCASE, "
    "type TEXT NOT NULL, data NOT NULL, PRIMARY KEY(key, name)) WITHOUT ROWID";
constexpr const char* kTextType = "string";
constexpr const char* kNumberType = "int";

// Many times the length of a setting and of the schema. One function over texts of this length
// takes milliseconds.
constexpr int kMostBytes = 16384;
// A setting is found and written in some ten steps; between two looks at the clock lie milliseconds
// at most.
constexpr int kStepsPerLook = 16;

// The file may be anybody's: nothing in it may run a program of its own.
constexpr struct {
  int option, value;
} kDistrust[] = {{SQLITE_DBCONFIG_ENABLE_VIEW, 0},
                 {SQLITE_DBCONFIG_ENABLE_TRIGGER, 0},
                 {SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
                 {SQLITE_DBCONFIG_DEFENSIVE, 1}};
constexpr struct {
  int limit, most;
} kLimits[] = {{SQLITE_LIMIT_LENGTH, kMostBytes}, {SQLITE_LIMIT_SQL_LENGTH, kMostBytes}};

thread_local RegistryStore::OneWait* oneWait = nullptr;

// For the user's eyes only, as the standard asks.
void makeFolder(const fs::path& folder) {
  if (mkdir(folder.c_str(), 0700) == 0 || errno != ENOENT) return;
  makeFolder(folder.parent_path());
  mkdir(folder.c_str(), 0700);
}

void bindText(sqlite3_stmt* statement, int place, std::string_view text) {
  sqlite3_bind_text64(statement, place, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

std::string textAt(sqlite3_stmt* statement, int column) {
  const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
  const int count = sqlite3_column_bytes(statement, column);
  return bytes != nullptr ? std::string(bytes, static_cast<std::size_t>(count)) : std::string();
}

// The value in column `first`, which is its type, and the one behind it. Other programs may have
// put anything there.
std::optional<RegistryStore::Data> dataAt(sqlite3_stmt* statement, int first) {
  const std::string type = textAt(statement, first);
  const int stored = sqlite3_column_type(statement, first + 1);
  if (type == kTextType && stored == SQLITE_TEXT) return textAt(statement, first + 1);
  if (type != kNumberType || stored != SQLITE_INTEGER) return std::nullopt;
  const std::int64_t number = sqlite3_column_int64(statement, first + 1);
  if (!std::in_range<std::int32_t>(number)) return std::nullopt;
  return static_cast<std::int32_t>(number);
}

}  // namespace

void RegistryStore::Close::operator()(sqlite3* connection) const { sqlite3_close(connection); }

void RegistryStore::Close::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

RegistryStore::OneWait::OneWait() {
  if (oneWait == nullptr) oneWait = this;
}

RegistryStore::OneWait::~OneWait() {
  if (oneWait == this) oneWait = nullptr;
}

RegistryStore::Transaction::Transaction(RegistryStore& store) : owner(store), open(store.begin()) {}

RegistryStore::Transaction::~Transaction() {
  if (open) owner.rollback();
}

bool RegistryStore::Transaction::commit() { return std::exchange(open, false) && owner.commit(); }

RegistryStore::Look::Look(RegistryStore& store) : owner(store) {
  // It asks for nothing yet: the first read does.
  if (owner.connect(false)) sqlite3_exec(owner.db.get(), "BEGIN", nullptr, nullptr, nullptr);
}

RegistryStore::Look::~Look() {
  if (owner.db != nullptr) sqlite3_exec(owner.db.get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

fs::path RegistryStore::file() {
  const fs::path folder = configHome();
  return folder.empty() ? folder : folder / "Zelvane" / "registry.db";
}

std::optional<FileStamp> RegistryStore::stamp() {
  const std::string path = toInternalPath(file().string());
  const auto now = fileStamp(path);
  if (!now || !isSettled(*now)) return std::nullopt;
  // In these lies what is not in the file yet, or is to be taken back.
  for (const char* part : {"-journal", "-wal"}) {
    if (fileStamp(path + part)) return std::nullopt;
  }
  return now;
}

bool RegistryStore::isLate() const {
  if (Clock::now() < deadline) return false;
  if (oneWait != nullptr) oneWait->inVain = true;
  return true;
}

// Short naps: whoever writes in a loop leaves the file free for moments only.
int RegistryStore::waitForOthers(void* store, int attempt) {
  if (static_cast<RegistryStore*>(store)->isLate()) return 0;
  std::this_thread::sleep_for(std::chrono::microseconds(200 + 300 * (attempt % 7)));
  return 1;
}

int RegistryStore::stopsWork(void* store) {
  return static_cast<RegistryStore*>(store)->isLate() ? 1 : 0;
}

void RegistryStore::distrust() {
  for (const auto& [option, value] : kDistrust) {
    sqlite3_db_config(db.get(), option, value, static_cast<int*>(nullptr));
  }
  for (const auto& [limit, most] : kLimits) sqlite3_limit(db.get(), limit, most);
  sqlite3_progress_handler(db.get(), kStepsPerLook, stopsWork, this);
  sqlite3_busy_handler(db.get(), waitForOthers, this);
}

bool RegistryStore::connect(bool create) {
  if (inTransaction) return true;
  trouble.clear();
  if (oneWait != nullptr && oneWait->inVain) {
    trouble = "it was not to be had in time";
    return false;
  }
  deadline = Clock::now() + kPatience;
  if (db != nullptr) return true;
  const fs::path path = file();
  if (path.empty()) {
    trouble = "this user has no home folder";
    return false;
  }
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    if (errno != ENOENT) trouble = std::strerror(errno);
    if (!create || errno != ENOENT) return false;
    makeFolder(path.parent_path());
  }
  // To open a pipe would wait for its other end.
  for (const char* part : {"", "-journal", "-wal", "-shm"}) {
    if (stat((path.string() + part).c_str(), &status) != 0 || S_ISREG(status.st_mode)) continue;
    trouble = "it is not an ordinary file";
    return false;
  }
  // A reader rolls back what a crashed writer left, if it may write; if not, this opens for
  // reading.
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | (create ? SQLITE_OPEN_CREATE : 0);
  sqlite3* opened = nullptr;
  const int code = sqlite3_open_v2(path.c_str(), &opened, flags, nullptr);
  db.reset(opened);
  if (code != SQLITE_OK) {
    trouble = db != nullptr ? sqlite3_errmsg(db.get()) : "there is no memory";
    db.reset();
    return false;
  }
  distrust();
  return true;
}

bool RegistryStore::fail(int code) {
  trouble = code == SQLITE_INTERRUPT ? "its content takes too long" : sqlite3_errmsg(db.get());
  failed = true;
  return false;
}

bool RegistryStore::execute(const char* sql) {
  const int code = sqlite3_exec(db.get(), sql, nullptr, nullptr, nullptr);
  return code == SQLITE_OK || fail(code);
}

bool RegistryStore::finish(const Statement& statement) {
  const int code = sqlite3_step(statement.get());
  return code == SQLITE_DONE || fail(code);
}

bool RegistryStore::holdsRegistry() {
  sqlite3_stmt* found = nullptr;
  constexpr const char* kSql = "SELECT 1 FROM sqlite_schema WHERE lower(name) = 'registry'";
  sqlite3_prepare_v2(db.get(), kSql, -1, &found, nullptr);
  return sqlite3_step(Statement(found).get()) == SQLITE_ROW;
}

// Null is either trouble or a file that has no table yet.
RegistryStore::Statement RegistryStore::prepare(const char* sql, std::string_view key) {
  sqlite3_stmt* statement = nullptr;
  const int code = sqlite3_prepare_v2(db.get(), sql, -1, &statement, nullptr);
  if (code == SQLITE_OK) {
    bindText(statement, 1, key);
  } else {
    fail(code);
    if (code == SQLITE_ERROR && !inTransaction && !holdsRegistry()) trouble.clear();
  }
  return Statement(statement);
}

bool RegistryStore::begin() {
  if (inTransaction || !connect(true)) return false;
  if (sqlite3_db_readonly(db.get(), "main") == 1) {
    trouble = "it may not be written";
    return false;
  }
  sqlite3_exec(db.get(), "PRAGMA synchronous = EXTRA", nullptr, nullptr, nullptr);
  // Without IMMEDIATE two that read first and then write would refuse each other.
  if (!execute("BEGIN IMMEDIATE")) return false;
  deadline = Clock::now() + kPatience;  // the wait was a call of its own
  inTransaction = true;
  failed = false;
  if (execute(kCreate)) return true;
  rollback();
  return false;
}

bool RegistryStore::commit() {
  if (!failed && execute("COMMIT")) {
    inTransaction = false;
    return true;
  }
  rollback();
  return false;
}

void RegistryStore::rollback() {
  // A full disk has rolled it back already; then there is nothing left to do.
  sqlite3_exec(db.get(), "ROLLBACK", nullptr, nullptr, nullptr);
  inTransaction = false;
}

std::optional<RegistryStore::Data> RegistryStore::read(std::string_view key,
                                                       std::string_view name) {
  if (!connect(false)) return std::nullopt;
  if (reading == nullptr) {
    reading = prepare("SELECT type, data FROM registry WHERE key = ?1 AND name = ?2", key);
  }
  if (reading == nullptr) return std::nullopt;
  bindText(reading.get(), 1, key);
  bindText(reading.get(), 2, name);
  std::optional<Data> found;
  const int code = sqlite3_step(reading.get());
  if (code == SQLITE_ROW) {
    found = dataAt(reading.get(), 0);
  } else if (code != SQLITE_DONE) {
    fail(code);
  }
  sqlite3_reset(reading.get());  // it holds the file up to here
  return found;
}

std::vector<RegistryStore::Value> RegistryStore::list(std::string_view key) {
  if (!connect(false)) return {};
  const Statement row =
      prepare("SELECT name, type, data FROM registry WHERE key = ?1 ORDER BY name", key);
  if (row == nullptr) return {};
  std::vector<Value> values;
  int code = sqlite3_step(row.get());
  for (; code == SQLITE_ROW && values.size() < kMostValues; code = sqlite3_step(row.get())) {
    if (auto data = dataAt(row.get(), 1)) values.push_back({textAt(row.get(), 0), *data});
  }
  if (code == SQLITE_DONE || code == SQLITE_ROW) return values;
  fail(code);
  return {};
}

bool RegistryStore::write(std::string_view key, std::string_view name, const Data& data) {
  if (!inTransaction) {
    Transaction alone(*this);
    return alone.begun() && write(key, name, data) && alone.commit();
  }
  if (failed) return false;
  const Statement row = prepare("INSERT OR REPLACE INTO registry VALUES(?1, ?2, ?3, ?4)", key);
  if (row == nullptr) return false;
  bindText(row.get(), 2, name);
  const auto* text = std::get_if<std::string>(&data);
  bindText(row.get(), 3, text != nullptr ? kTextType : kNumberType);
  if (text != nullptr) {
    bindText(row.get(), 4, *text);
  } else {
    sqlite3_bind_int(row.get(), 4, std::get<std::int32_t>(data));
  }
  return finish(row);
}

bool RegistryStore::remove(std::string_view key, std::string_view name) {
  if (!inTransaction) {
    Transaction alone(*this);
    return alone.begun() && remove(key, name) && alone.commit();
  }
  if (failed) return false;
  const Statement row = prepare("DELETE FROM registry WHERE key = ?1 AND name = ?2", key);
  if (row == nullptr) return false;
  bindText(row.get(), 2, name);
  return finish(row);
}

}  // namespace zum

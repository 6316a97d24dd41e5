#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <sqlite3.h>

// A prepared statement that finalises itself.
class SqliteStatement {
public:
    SqliteStatement(sqlite3 *db, const char *sql) {
        if (sqlite3_prepare_v2(db, sql, -1, &statement_, nullptr) != SQLITE_OK)
            statement_ = nullptr;
    }
    ~SqliteStatement() { sqlite3_finalize(statement_); }
    SqliteStatement(const SqliteStatement &) = delete;
    SqliteStatement &operator=(const SqliteStatement &) = delete;

    bool ok() const { return statement_ != nullptr; }
    void bind(int index, const std::string &text) {
        sqlite3_bind_text(statement_, index, text.c_str(), static_cast<int>(text.size()),
                          SQLITE_TRANSIENT);
    }
    void bind(int index, int64_t number) { sqlite3_bind_int64(statement_, index, number); }
    void bind(int index, double number) { sqlite3_bind_double(statement_, index, number); }
    void bind(int index, const std::optional<double> &number) {
        if (number)
            bind(index, *number);
        else
            sqlite3_bind_null(statement_, index);
    }
    // SQLITE_ROW, SQLITE_DONE or an error code.
    int step() { return statement_ == nullptr ? SQLITE_MISUSE : sqlite3_step(statement_); }
    void reset() {
        sqlite3_reset(statement_);
        sqlite3_clear_bindings(statement_);
    }

    std::string text(int column) const {
        const unsigned char *value = sqlite3_column_text(statement_, column);
        return value == nullptr ? std::string() : reinterpret_cast<const char *>(value);
    }
    int64_t integer(int column) const { return sqlite3_column_int64(statement_, column); }
    std::optional<double> number(int column) const {
        if (sqlite3_column_type(statement_, column) == SQLITE_NULL) return std::nullopt;
        return sqlite3_column_double(statement_, column);
    }
    bool isNull(int column) const { return sqlite3_column_type(statement_, column) == SQLITE_NULL; }

private:
    sqlite3_stmt *statement_ = nullptr;
};

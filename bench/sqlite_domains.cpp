#include "sqlite_domains.h"

#include <sqlite3.h>

#include <cstdlib>
#include <cstring>

#include "record_fields.h"

namespace bench {
namespace {

class Database {
  public:
    explicit Database(const std::string& path) {
        good_ = sqlite3_open(path.c_str(), &handle_) == SQLITE_OK;
    }
    ~Database() { sqlite3_close(handle_); }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    bool Do(const char* sql) {
        return good_ && sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
    }
    sqlite3* Handle() const { return handle_; }

  private:
    sqlite3* handle_ = nullptr;
    bool good_ = false;
};

/// Writes and reads the columns of one row, in their order.
class Row {
  public:
    Row(const Database& database, const char* sql) {
        good_ = sqlite3_prepare_v2(database.Handle(), sql, -1, &statement_, nullptr) == SQLITE_OK;
    }
    ~Row() { sqlite3_finalize(statement_); }
    Row(const Row&) = delete;
    Row& operator=(const Row&) = delete;

    void Put(uint32_t number) { sqlite3_bind_int64(statement_, ++column_, number); }
    void Put(const char* text) {
        sqlite3_bind_text(statement_, ++column_, text, -1, SQLITE_STATIC);
    }
    void PutBytes(const void* bytes, size_t size) {
        sqlite3_bind_blob(statement_, ++column_, bytes, static_cast<int>(size), SQLITE_STATIC);
    }
    bool Insert() {
        column_ = 0;
        return good_ && sqlite3_step(statement_) == SQLITE_DONE &&
               sqlite3_reset(statement_) == SQLITE_OK;
    }

    bool Next() {
        column_ = 0;
        const int result = good_ ? sqlite3_step(statement_) : SQLITE_ERROR;
        good_ = result == SQLITE_ROW || result == SQLITE_DONE;
        return result == SQLITE_ROW;
    }
    bool Good() const { return good_; }
    uint32_t Number() { return static_cast<uint32_t>(sqlite3_column_int64(statement_, column_++)); }
    void Text(char* field, size_t capacity) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column_));
        const auto length = static_cast<size_t>(sqlite3_column_bytes(statement_, column_++));
        if (text != nullptr) CopyText(field, capacity, std::string_view(text, length));
    }
    void Bytes(void* field, size_t size) {
        const void* bytes = sqlite3_column_blob(statement_, column_);
        const auto length = static_cast<size_t>(sqlite3_column_bytes(statement_, column_++));
        if (bytes != nullptr) memcpy(field, bytes, std::min(size, length));
    }

  private:
    sqlite3_stmt* statement_ = nullptr;
    int column_ = 0;
    bool good_ = false;
};

constexpr char kTables[] =
    "CREATE TABLE domain (slot INTEGER PRIMARY KEY, name TEXT, limit_value INT, second_value INT,"
    " state INT, session_time INT, address_type INT, dual_stack INT, redirect INT, permit TEXT,"
    " escape_setting INT, escape_domain TEXT, escape_second INT, auth_fail TEXT, auth_fail_kind "
    "INT,"
    " w0 INT, w1 INT, w2 INT, w3 INT, w4 INT, w5 INT, w6 INT, w7 INT, w8 INT, w9 INT, w10 INT,"
    " w11 INT, kind19 INT, kind3 BLOB, a0 BLOB, a1 BLOB, a2 BLOB, a3 BLOB, t0 TEXT, t1 TEXT,"
    " t2 TEXT, t3 TEXT, t4 TEXT, t5 TEXT, t6 TEXT, t7 TEXT, t8 TEXT, t9 TEXT, t10 TEXT,"
    " rates BLOB);"
    "CREATE TABLE method (slot INT, aaa_type INT, service INT, position INT, kind INT,"
    " scheme_name TEXT, scheme_index INT, PRIMARY KEY (slot, aaa_type, service, position))"
    " WITHOUT ROWID;"
    "CREATE TABLE extra (slot INT, service INT, kind INT, scheme_name TEXT, scheme_index INT,"
    " PRIMARY KEY (slot, service)) WITHOUT ROWID";

void PutDomain(Row& row, const DomainInfo& domain) {
    row.Put(domain.slot);
    row.Put(domain.name);
    row.Put(domain.limit_value);
    row.Put(domain.second_value);
    row.Put(domain.state);
    row.Put(domain.session_time);
    row.Put(domain.user_addr_type);
    row.Put(domain.acct_dual_stack_mode);
    row.Put(domain.redirect_code);
    row.Put(domain.auth_rd_fail_permit_domain);
    row.Put(domain.escape_recover.setting);
    row.Put(domain.escape_recover.domain_name);
    row.Put(domain.escape_recover.second_setting);
    row.Put(domain.auth_fail_domain);
    row.Put(domain.auth_fail_domain_kind);
    const AuthorAttr& attributes = domain.author_attr;
    for (auto word : kWords) row.Put(attributes.*word);
    row.Put(static_cast<uint32_t>(attributes.kind19_word));
    row.PutBytes(attributes.kind3_words, sizeof attributes.kind3_words);
    for (auto address : kAddresses) row.PutBytes(&(attributes.*address), sizeof(AttrAddress));
    ForEachText(attributes, [&](const char* text, size_t) { row.Put(text); });
    row.PutBytes(attributes.kind21_rates, sizeof attributes.kind21_rates);
}

void TakeDomain(Row& row, DomainInfo& domain) {
    domain.slot = row.Number();
    row.Text(domain.name, sizeof domain.name);
    domain.limit_value = row.Number();
    domain.second_value = row.Number();
    domain.state = static_cast<uint16_t>(row.Number());
    domain.session_time = static_cast<uint16_t>(row.Number());
    domain.user_addr_type = row.Number();
    domain.acct_dual_stack_mode = row.Number();
    domain.redirect_code = row.Number();
    row.Text(domain.auth_rd_fail_permit_domain, DOM_NAME_SIZE);
    domain.escape_recover.setting = static_cast<uint16_t>(row.Number());
    row.Text(domain.escape_recover.domain_name, DOM_NAME_SIZE);
    domain.escape_recover.second_setting = static_cast<uint16_t>(row.Number());
    row.Text(domain.auth_fail_domain, DOM_NAME_SIZE);
    domain.auth_fail_domain_kind = static_cast<uint16_t>(row.Number());
    AuthorAttr& attributes = domain.author_attr;
    for (auto word : kWords) attributes.*word = row.Number();
    attributes.kind19_word = static_cast<int32_t>(row.Number());
    row.Bytes(attributes.kind3_words, sizeof attributes.kind3_words);
    for (auto address : kAddresses) row.Bytes(&(attributes.*address), sizeof(AttrAddress));
    ForEachText(attributes, [&](char* text, size_t capacity) { row.Text(text, capacity); });
    row.Bytes(attributes.kind21_rates, sizeof attributes.kind21_rates);
}

void PutEntry(Row& row, const MethodEntry& entry) {
    row.Put(entry.method_kind);
    row.Put(entry.scheme_name);
    row.Put(entry.scheme_index);
}

void TakeEntry(Row& row, MethodEntry& entry) {
    entry.method_kind = row.Number();
    row.Text(entry.scheme_name, sizeof entry.scheme_name);
    entry.scheme_index = row.Number();
}

bool InsertMethods(Row& methods, Row& extras, const DomainInfo& domain) {
    for (const auto& line : domain.method_lists) {
        for (const MethodList* list : line) {
            for (uint32_t i = 0; list != nullptr && i < DOM_METHODS; ++i) {
                if (list->methods[i].method_kind == METHOD_EMPTY) break;
                for (uint32_t part : {domain.slot, list->aaa_type, list->service, i}) {
                    methods.Put(part);
                }
                PutEntry(methods, list->methods[i]);
                if (!methods.Insert()) return false;
            }
        }
    }
    for (uint32_t service = 0; service < DOM_SERVICES; ++service) {
        if (domain.service_extras[service].method_kind == METHOD_EMPTY) continue;
        extras.Put(domain.slot);
        extras.Put(service);
        PutEntry(extras, domain.service_extras[service]);
        if (!extras.Insert()) return false;
    }
    return true;
}

bool TakeMethods(Row& row, std::vector<DomainInfo*>& slots) {
    while (row.Next()) {
        const uint32_t slot = row.Number();
        const uint32_t type = row.Number();
        const uint32_t service = row.Number();
        const uint32_t position = row.Number();
        if (slot >= slots.size() || slots[slot] == nullptr || type >= DOM_AAA_TYPES ||
            service >= DOM_SERVICES || position >= DOM_METHODS) {
            return false;
        }
        MethodList*& list = slots[slot]->method_lists[type][service];
        if (list == nullptr) list = static_cast<MethodList*>(calloc(1, sizeof(MethodList)));
        if (list == nullptr) return false;
        list->aaa_type = type;
        list->service = service;
        TakeEntry(row, list->methods[position]);
    }
    return row.Good();
}

bool TakeExtras(Row& row, std::vector<DomainInfo*>& slots) {
    while (row.Next()) {
        const uint32_t slot = row.Number();
        const uint32_t service = row.Number();
        if (slot >= slots.size() || slots[slot] == nullptr || service >= DOM_SERVICES) return false;
        TakeEntry(row, slots[slot]->service_extras[service]);
    }
    return row.Good();
}

}  // namespace

bool SaveToSqlite(const std::string& path, const std::vector<const DomainInfo*>& domains) {
    Database database(path);
    if (!database.Do("PRAGMA journal_mode=WAL") || !database.Do(kTables) || !database.Do("BEGIN")) {
        return false;
    }
    std::string columns = "INSERT INTO domain VALUES (?";
    for (size_t i = 1; i < 15 + std::size(kWords) + 2 + std::size(kAddresses) + kTexts + 1; ++i) {
        columns += ",?";
    }
    Row rows(database, (columns + ")").c_str());
    Row methods(database, "INSERT INTO method VALUES (?,?,?,?,?,?,?)");
    Row extras(database, "INSERT INTO extra VALUES (?,?,?,?,?)");
    for (const DomainInfo* domain : domains) {
        PutDomain(rows, *domain);
        if (!rows.Insert() || !InsertMethods(methods, extras, *domain)) return false;
    }
    return database.Do("COMMIT");
}

int LoadFromSqlite(const std::string& path) {
    const Database database(path);
    std::vector<DomainInfo*> slots(DOM_MAX_DOMAINS);
    int count = 0;
    Row rows(database, "SELECT * FROM domain");
    while (rows.Next()) {
        auto* domain = static_cast<DomainInfo*>(calloc(1, sizeof(DomainInfo)));
        if (domain == nullptr) return -1;
        TakeDomain(rows, *domain);
        if (domain->slot >= slots.size()) return -1;
        slots[domain->slot] = domain;
        ++count;
    }
    Row methods(database, "SELECT * FROM method");
    Row extras(database, "SELECT * FROM extra");
    return rows.Good() && TakeMethods(methods, slots) && TakeExtras(extras, slots) ? count : -1;
}

}  // namespace bench

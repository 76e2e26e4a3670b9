#include "database/Drivers.h"

#include "common/Text.h"
#include "database/Odbc.h"

namespace database {

namespace {

/// The value of `key` among "key=value" texts that each end in a zero character.
std::string ValueOf(const std::vector<SQLWCHAR>& attributes, std::string_view key) {
    for (const SQLWCHAR* at = attributes.data(); *at; at += std::wstring_view(at).size() + 1) {
        const std::string attribute = common::ToNarrow(at);
        const std::size_t equals = attribute.find('=');
        if (equals != std::string::npos && common::EqualsIgnoreCase(attribute.substr(0, equals), key))
            return attribute.substr(equals + 1);
    }
    return {};
}

} // namespace

std::vector<Driver> InstalledDrivers() {
    std::vector<Driver> drivers;
    SQLHANDLE made = SQL_NULL_HANDLE;
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &made)))
        return drivers;
    const common::Handle<SQLHANDLE, odbc::FreeEnvironment> environment(made);
    SQLSetEnvAttr(environment.get(), SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    SQLWCHAR name[256] = {};
    // Two zero characters behind the last attribute, also behind one that was cut.
    std::vector<SQLWCHAR> attributes(4096 + 2);
    SQLSMALLINT length = 0;
    SQLUSMALLINT direction = SQL_FETCH_FIRST;
    while (SQL_SUCCEEDED(SQLDriversW(environment.get(), direction, name, std::size(name), nullptr,
                                     attributes.data(), 4096, &length))) {
        drivers.push_back({common::ToNarrow(name), ValueOf(attributes, "Driver")});
        std::ranges::fill(attributes, SQLWCHAR{0});
        direction = SQL_FETCH_NEXT;
    }
    return drivers;
}

} // namespace database

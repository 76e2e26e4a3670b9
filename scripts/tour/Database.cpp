#include "Database.h"

#include "database/Connection.h"
#include "database/Error.h"
#include "database/Odbc.h"
#include "Report.h"

void TellDatabase(const char* statement) {
    static database::SessionPtr session;
    try {
        if (!session)
            session = std::make_shared<database::odbc::Session>(
                database::MySQLConnectionString("localhost", "root", ""), 10);
        database::Execute(session, statement);
    } catch (const database::Error& error) {
        Failed(error.Description());
    }
}

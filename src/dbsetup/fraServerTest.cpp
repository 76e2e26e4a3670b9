#include "dbsetup/fraServerTest.h"

#include "gui/WaitCursor.h"

void fraServerTest::cmdTestMySQL_Click() {
    const gui::WaitCursor waiting;
    // The outcome of an earlier test must not be taken for this one's.
    lblConnectionTest.Caption("");
    lblRunningMySQL.Caption("");
    std::string version;
    try {
        version = server_.Version();
    } catch (const RuntimeError&) {
        // Whatever keeps the server from answering, the outcome is the same.
    }
    lblRunningMySQL.Caption(version);
    lblConnectionTest.Caption(version.empty() ? "Failed" : "Successful");
}

#include "dbsetup/fraServerTest.h"

#include "database/Error.h"
#include "dbsetup/ServerCard.h"
#include "gui/Waiting.h"

namespace {

/// The server's number for a login that it refuses.
constexpr long kAccessDenied = 1045;

} // namespace

gui::Task<> fraServerTest::cmdTestMySQL_Click() {
    const gui::Waiting waiting(*this);
    // The outcome of an earlier test must not be taken for this one's.
    lblConnectionTest.Caption("");
    lblRunningMySQL.Caption("");
    txtServerCard.Text("");
    std::string version;
    std::optional<database::Error> error;
    try {
        version = co_await server_.Version();
        lblRunningMySQL.Caption(version);
        lblConnectionTest.Caption(version.empty() ? "Failed" : "Successful");
        const std::string card = co_await server_.Card();
        txtServerCard.Text(card);
    } catch (const database::Error& raised) {
        error = raised;
    }
    // Whatever keeps the server from answering, the outcome is the same.
    if (version.empty())
        lblConnectionTest.Caption("Failed");
    if (error && !version.empty())
        co_return;
    if (error && error->Number() == kAccessDenied)
        txtServerCard.Text(dbsetup::WantsNameCard());
    else if (error && error->DriverMissing())
        txtServerCard.Text(dbsetup::NoDriverCard(database::InstalledDrivers()));
    else if (error)
        txtServerCard.Text(error->Description());
}

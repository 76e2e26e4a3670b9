#include "database/Connection.h"

#include "common/Text.h"
#include "database/Error.h"
#include "database/Odbc.h"

#include <algorithm>

namespace database {

namespace {

/// Makes a session aside. It also ends aside, whoever lets it go.
SessionPtr MakeSession(const std::string& connectionString) {
    return gui::EndedAside(std::make_unique<odbc::Session>(
        connectionString, static_cast<unsigned>(std::chrono::seconds(kConnectLimit).count())));
}

/// "MySQL on <host>" for the host that the connection string names.
std::string ServerOf(std::string_view connectionString) {
    constexpr std::string_view kKey = "SERVER=";
    const std::size_t at = connectionString.find(kKey);
    if (at == std::string_view::npos)
        return "MySQL";
    const std::string_view host = connectionString.substr(at + kKey.size());
    return "MySQL on " + std::string(host.substr(0, host.find(';')));
}

} // namespace

std::string ConnectionValue(std::string_view value) {
    // The classic driver takes the braces for a part of the value: whatever arrives without them goes bare.
    if (value.find(';') == std::string_view::npos && !value.starts_with('{') && common::Trim(value) == value)
        return std::string(value);
    return "{" + common::ReplaceAll(value, "}", "}}") + "}";
}

std::string MySQLConnectionString(std::string_view host, std::string_view user, std::string_view password,
                                  std::string_view database) {
    std::string text = "DRIVER={MySQL ODBC 3.51 Driver};SERVER=" + ConnectionValue(host) +
                       ";UID=" + ConnectionValue(user) + ";PWD=" + ConnectionValue(password) + ";";
    if (!database.empty())
        text += "DATABASE=" + ConnectionValue(database) + ";";
    return text + "OPTION=3";
}

Connection::Connection() : state_(std::make_shared<State>()) {}

Connection::~Connection() {
    Close();
}

bool Connection::IsOpen() const {
    return state_->session != nullptr;
}

void Connection::Close() {
    state_->before.clear();
    state_->session.reset();
}

void Connection::Limit(std::optional<std::chrono::milliseconds> limit) {
    state_->limit = limit;
}

const SessionPtr& Connection::Session() const {
    if (!state_->session)
        Raise(kObjectClosed);
    return state_->session;
}

void Connection::TryExecute(const SessionPtr& session, const std::string& sql) {
    try {
        database::Execute(session, sql);
    } catch (const Error&) {
        // Where the connection is lost, what is asked next says so.
    }
}

Connection::Request::Request(std::shared_ptr<State> state) : state_(std::move(state)) {
    if (state_->asked)
        database::Raise(kStillExecuting);
    state_->asked = true;
}

Connection::Request::~Request() {
    // It was handed on.
    if (!state_)
        return;
    state_->asked = false;
    if (!ended_)
        state_->session.reset();
}

void Connection::Request::Raise(const gui::NoAnswer& reason) const {
    if (reason.Cancelled())
        database::Raise(kCancelled);
    throw Error(kNoAnswer, reason.Description(), "HYT00");
}

gui::Task<> Connection::Open(std::string connectionString) {
    Close();
    state_->connectionString = connectionString;
    state_->server = ServerOf(connectionString);
    auto call = [connectionString] { return MakeSession(connectionString); };
    const std::chrono::milliseconds limit = kConnectLimit;
    const gui::Awaited awaited{state_->server, std::min(state_->limit.value_or(limit), limit)};
    SessionPtr session = co_await AnswerOf(gui::Aside(call, awaited), Request(state_));
    state_->session = std::move(session);
}

gui::Task<> Connection::Revive() {
    if (state_->connectionString.empty())
        Raise(kObjectClosed);
    if (IsOpen()) {
        try {
            co_await Execute("SELECT 1");
            co_return;
        } catch (const Error& error) {
            // A server that is silent now is not asked once more.
            if (error.Unanswered())
                throw;
        }
    }
    co_await Open(state_->connectionString);
}

gui::Task<std::int64_t> Connection::Execute(std::string sql) {
    auto work = [sql = std::move(sql)](const SessionPtr& session) { return database::Execute(session, sql); };
    const std::int64_t rows = co_await Call(work);
    co_return rows;
}

gui::Task<Answer> Connection::ReadAll(std::string sql, std::vector<Value> parameters) {
    auto work = [sql = std::move(sql), parameters = std::move(parameters)](const SessionPtr& session) {
        return database::ReadAll(session, sql, parameters);
    };
    Answer answer = co_await Call(work);
    co_return answer;
}

gui::Task<Value> Connection::Scalar(std::string sql) {
    auto work = [sql = std::move(sql)](const SessionPtr& session) { return database::Scalar(session, sql); };
    Value value = co_await Call(work);
    co_return value;
}

void Connection::ExecuteLater(std::string sql) {
    state_->before = std::move(sql);
}

} // namespace database

#pragma once

#include "database/Query.h"
#include "gui/Aside.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace database {

/// `value` as a value of a connection string: in braces when it holds a semicolon, begins with a brace or has
/// blanks at an end, as it is otherwise.
std::string ConnectionValue(std::string_view value);

/// The connection string of a MySQL server by the driver's classic name. An empty `database` is left out.
std::string MySQLConnectionString(std::string_view host, std::string_view user, std::string_view password,
                                  std::string_view database = {});

/// How long a server may take to let somebody in, and to answer a statement that no more is known of.
inline constexpr std::chrono::seconds kConnectLimit{15};
inline constexpr std::chrono::seconds kStatementLimit{60};

/// A connection to a server over ODBC. Whatever may block is made aside, one call for each request. A request
/// that is not answered in time or is cancelled raises Error (kNoAnswer, kCancelled), and so does what the
/// server reports. After the former two, and after a task that ended while it waited, the connection is
/// closed: the call that is still out keeps the driver's side of it, which goes when that call comes back.
class Connection {
public:
    Connection();
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Connects; an open connection is closed first.
    gui::Task<> Open(std::string connectionString);

    /// Connects again with the string of the last Open when the server no longer answers (it was restarted,
    /// or has closed an idle connection). Raises Error when it cannot, kObjectClosed when never opened.
    gui::Task<> Revive();

    bool IsOpen() const;
    /// Returns at once; the login ends aside.
    void Close();

    /// How long every request may take from now on; none for as long as it takes.
    void Limit(std::optional<std::chrono::milliseconds> limit);

    /// These do aside what the procedures of their names do.
    gui::Task<std::int64_t> Execute(std::string sql);
    gui::Task<Answer> ReadAll(std::string sql, std::vector<Value> parameters = {});
    gui::Task<Value> Scalar(std::string sql);

    /// Runs a statement before whatever is asked next. What it returns or raises is of no interest.
    void ExecuteLater(std::string sql);

    /// Calls `work` aside with the session and returns what it returns. It has a name, is moved away from,
    /// must own all that it uses, and may use nothing but this layer. Raises kObjectClosed, and
    /// kStillExecuting while another task's request is out.
    template <class Work> gui::Task<std::invoke_result_t<Work&, const SessionPtr&>> Call(Work& work);
    /// As Call, but `work` is called now, beside whatever is done before the task is awaited. Until then the
    /// connection can be asked for nothing else, and a task that is let go instead closes it.
    template <class Work> gui::Task<std::invoke_result_t<Work&, const SessionPtr&>> CallMeanwhile(Work& work);

    /// The driver's side of it, for this layer. Raises kObjectClosed.
    const SessionPtr& Session() const;

private:
    struct State {
        SessionPtr session;
        std::string connectionString;
        /// Who is to answer, as a sentence names it.
        std::string server;
        std::optional<std::chrono::milliseconds> limit = kStatementLimit;
        std::string before;
        bool asked = false;
    };

    /// One request. Where nobody learns how it ended, the connection is closed: its session is still in use.
    class Request {
    public:
        explicit Request(std::shared_ptr<State> state);
        Request(Request&& other) = default;
        Request& operator=(Request&&) = delete;
        ~Request();
        void Ended() { ended_ = true; }
        [[noreturn]] void Raise(const gui::NoAnswer& reason) const;

    private:
        std::shared_ptr<State> state_;
        bool ended_ = false;
    };

    /// The call of `work` for a thread aside.
    template <class Work> auto WithSession(Work& work);
    /// Awaits a call that was made ready.
    template <class T> static gui::Task<T> AnswerOf(gui::Task<T> call, Request request);
    static void TryExecute(const SessionPtr& session, const std::string& sql);

    /// Shared with the requests, which end later than their connection where a form goes.
    std::shared_ptr<State> state_;
};

template <class Work> auto Connection::WithSession(Work& work) {
    return
        [session = Session(), before = std::exchange(state_->before, {}), work = std::move(work)]() mutable {
            const SessionUse use(session);
            if (!before.empty())
                TryExecute(session, before);
            return work(session);
        };
}

template <class Work> gui::Task<std::invoke_result_t<Work&, const SessionPtr&>> Connection::Call(Work& work) {
    auto call = WithSession(work);
    return AnswerOf(gui::Aside(call, {state_->server, state_->limit}), Request(state_));
}

template <class Work>
gui::Task<std::invoke_result_t<Work&, const SessionPtr&>> Connection::CallMeanwhile(Work& work) {
    auto call = WithSession(work);
    Request request(state_);
    return AnswerOf(gui::AsideMeanwhile(call, {state_->server, state_->limit}), std::move(request));
}

template <class T> gui::Task<T> Connection::AnswerOf(gui::Task<T> call, Request request) {
    try {
        if constexpr (std::is_void_v<T>) {
            co_await std::move(call);
            request.Ended();
        } else {
            T result = co_await std::move(call);
            request.Ended();
            co_return result;
        }
    } catch (const gui::NoAnswer& reason) {
        request.Raise(reason);
    } catch (...) {
        request.Ended();
        throw;
    }
}

} // namespace database

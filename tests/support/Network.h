#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

/// Servers that do not answer, as networks and computers make them.
namespace support {

/// Port 3306 of an address: takes every connection and never says anything.
class SilentPort {
public:
    explicit SilentPort(const std::string& address);
    ~SilentPort();
    SilentPort(const SilentPort&) = delete;

private:
    std::uintptr_t socket_;
};

/// Port 3306 of an address: hands everything on to the database server of another one, and back.
class Proxy {
public:
    explicit Proxy(const std::string& address, const std::string& to = "127.0.0.1");
    ~Proxy();
    Proxy(const Proxy&) = delete;

    /// From now on nothing is handed on, as when a cable is pulled or the server is stopped; or it is again.
    void Hold(bool hold) { hold_ = hold; }
    /// Ends the connections that there are, as a router does that forgets them.
    void Cut() { cut_ = true; }
    /// Bytes that have come back from the server.
    std::size_t Answered() const { return answered_; }

private:
    void Run();

    std::uintptr_t socket_;
    std::string to_;
    std::atomic<bool> hold_ = false;
    std::atomic<bool> cut_ = false;
    std::atomic<bool> end_ = false;
    std::atomic<std::size_t> answered_ = 0;
    std::thread thread_;
};

} // namespace support

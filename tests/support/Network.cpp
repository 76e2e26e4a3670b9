#include "support/Network.h"

#include <winsock2.h>

#include <stdexcept>
#include <vector>

namespace support {

namespace {

constexpr u_short kPort = 3306;

sockaddr_in Address(const std::string& address) {
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_port = htons(kPort);
    place.sin_addr.s_addr = inet_addr(address.c_str());
    return place;
}

SOCKET NewSocket() {
    static const bool started = [] {
        WSADATA data;
        return WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }();
    const SOCKET made = started ? socket(AF_INET, SOCK_STREAM, IPPROTO_TCP) : INVALID_SOCKET;
    if (made == INVALID_SOCKET)
        throw std::runtime_error("no socket");
    return made;
}

SOCKET Listen(const std::string& address) {
    const SOCKET listening = NewSocket();
    const sockaddr_in place = Address(address);
    if (bind(listening, reinterpret_cast<const sockaddr*>(&place), sizeof place) != 0 ||
        listen(listening, SOMAXCONN) != 0)
        throw std::runtime_error("port 3306 of " + address + " is taken");
    return listening;
}

struct Pair {
    SOCKET client;
    SOCKET server;
};

/// Hands on what has come; false when this side has ended.
bool HandOn(SOCKET from, SOCKET to, std::size_t& bytes) {
    char buffer[65536];
    const int got = recv(from, buffer, sizeof buffer, 0);
    for (int sent = 0; sent < got;) {
        const int more = send(to, buffer + sent, got - sent, 0);
        if (more <= 0)
            return false;
        sent += more;
    }
    bytes += got > 0 ? static_cast<std::size_t>(got) : 0;
    return got > 0;
}

} // namespace

SilentPort::SilentPort(const std::string& address) : socket_(Listen(address)) {}

SilentPort::~SilentPort() {
    closesocket(socket_);
}

Proxy::Proxy(const std::string& address, const std::string& to)
    : socket_(Listen(address)), to_(to), thread_([this] { Run(); }) {}

Proxy::~Proxy() {
    end_ = true;
    thread_.join();
    closesocket(socket_);
}

void Proxy::Run() {
    std::vector<Pair> pairs;
    const auto close = [](const Pair& pair) {
        closesocket(pair.client);
        closesocket(pair.server);
    };
    while (!end_) {
        if (hold_) {
            Sleep(5);
            continue;
        }
        fd_set ready;
        FD_ZERO(&ready);
        FD_SET(socket_, &ready);
        for (const Pair& pair : pairs) {
            FD_SET(pair.client, &ready);
            FD_SET(pair.server, &ready);
        }
        timeval soon{0, 10'000};
        if (select(0, &ready, nullptr, nullptr, &soon) > 0) {
            std::erase_if(pairs, [&](const Pair& pair) {
                std::size_t asked = 0;
                std::size_t answered = 0;
                const bool goesOn =
                    (!FD_ISSET(pair.client, &ready) || HandOn(pair.client, pair.server, asked)) &&
                    (!FD_ISSET(pair.server, &ready) || HandOn(pair.server, pair.client, answered));
                answered_ += answered;
                if (!goesOn)
                    close(pair);
                return !goesOn;
            });
            if (FD_ISSET(socket_, &ready)) {
                const SOCKET server = NewSocket();
                const sockaddr_in place = Address(to_);
                pairs.push_back({accept(socket_, nullptr, nullptr), server});
                if (connect(server, reinterpret_cast<const sockaddr*>(&place), sizeof place) != 0) {
                    close(pairs.back());
                    pairs.pop_back();
                }
            }
        }
        if (cut_.exchange(false)) {
            for (const Pair& pair : pairs)
                close(pair);
            pairs.clear();
        }
    }
    for (const Pair& pair : pairs)
        close(pair);
}

} // namespace support

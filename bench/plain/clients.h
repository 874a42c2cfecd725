// Clients over plain sockets: one call at a time, and a window of calls of one thread.
#pragma once

#include <string>

#include "plain/messages.h"
#include "plain/stream.h"

namespace plain {

/// Sends a call and waits for its reply. One thread.
class Client {
public:
    explicit Client(const std::string& address) : stream_(address) {}

    class Caller {
    public:
        explicit Caller(Client& client) : client_(client) {}
        bench::Outcome read(std::uint32_t applId, std::uint32_t& value) { return client_.read(applId, value); }

    private:
        Client& client_;
    };

private:
    bench::Outcome read(std::uint32_t applId, std::uint32_t& value) {
        std::array<std::uint8_t, 256> reply{};
        request_.setXid(++xid_);
        request_.setApplication(applId);
        stream_.send(request_.bytes());
        std::size_t received = stream_.receive(reply);
        while (received > 0 && received < Reply::kSize) {
            const std::size_t more = stream_.receive(std::span{reply}.subspan(received));
            received = more == 0 ? 0 : received + more;
        }
        return received == Reply::kSize ? readReply(reply.data(), xid_, value) : bench::Outcome::failed;
    }

    Stream stream_;
    Request request_{};
    std::uint32_t xid_ = 0;
};

} // namespace plain

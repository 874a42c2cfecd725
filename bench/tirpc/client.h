// libtirpc as a client, with the stubs that rpcgen makes of docs/applman.x.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include <applman.h>

#include "harness/answers.h"
#include "plain/stream.h"

namespace tirpc {

class Client {
public:
    explicit Client(const std::string& address) {
        sockaddr_in target = plain::endpoint(address);
        int socket = RPC_ANYSOCK;
        client_.reset(clnttcp_create(&target, APPLMAN_PROGRAM, APPLMAN_VERSION, &socket, 0, 0));
        if (!client_) { throw std::runtime_error{clnt_spcreateerror("connect")}; }
    }

    void setTimeout(std::chrono::microseconds timeout) {
        timeval time{timeout.count() / 1'000'000, timeout.count() % 1'000'000};
        clnt_control(client_.get(), CLSET_TIMEOUT, reinterpret_cast<char*>(&time));
    }

    class Caller {
    public:
        explicit Caller(Client& client) : client_(client) {}

        bench::Outcome read(std::uint32_t applId, std::uint32_t& value) {
            applman_get_param_request request{1, 16, applId, 20};
            applman_value_result result{};
            const clnt_stat status = applman_get_param_2(&request, &result, client_.client_.get());
            value = result.value.applman_value_u.word;
            const bool whole = result.result == 0 && result.value.tag == APPLMAN_WORD;
            xdr_free(reinterpret_cast<xdrproc_t>(xdr_applman_value_result), &result);
            if (status == RPC_SYSTEMERROR) { return bench::Outcome::refused; }
            if (status == RPC_TIMEDOUT) { return bench::Outcome::timedOut; }
            return status == RPC_SUCCESS && whole ? bench::Outcome::value : bench::Outcome::failed;
        }

    private:
        Client& client_;
    };

private:
    struct Destroy {
        void operator()(CLIENT* client) const { clnt_destroy(client); }
    };
    std::unique_ptr<CLIENT, Destroy> client_{};
};

} // namespace tirpc

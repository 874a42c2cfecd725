// The server of the calls over gRPC, synchronous: bench_grpc_server MICROSECONDS. A call takes so long. Prints its port, and
// ends when it is killed.
#include <chrono>
#include <cstdio>
#include <string>
#include <sys/prctl.h>
#include <thread>

#include <grpcpp/grpcpp.h>
#include <items.grpc.pb.h>

#include "harness/answers.h"

namespace {

class Service final : public items::Items::Service {
public:
    explicit Service(std::chrono::microseconds delay) : delay_(delay) {}

    grpc::Status GetParam(grpc::ServerContext*, const items::Request* request, items::Reply* reply) override {
        if (delay_.count() > 0) {
            prctl(PR_SET_TIMERSLACK, 1UL); // nanosecond, of this thread: so that it answers when it says
            std::this_thread::sleep_for(delay_);
        }
        reply->set_result(0);
        reply->set_word(bench::valueOf(request->appl_id()));
        return grpc::Status::OK;
    }

private:
    const std::chrono::microseconds delay_;
};

} // namespace

int main(int count, char** arguments) {
    Service service{std::chrono::microseconds{count > 1 ? std::stol(arguments[1]) : 0}};
    grpc::ServerBuilder builder;
    int port = 0;
    builder.AddListeningPort("127.0.0.1:0", grpc::InsecureServerCredentials(), &port);
    builder.RegisterService(&service);
    const auto server = builder.BuildAndStart();
    std::printf("listening %d\n", port);
    std::fflush(stdout);
    server->Wait();
}

// The scenarios with gRPC, over a channel and its synchronous stub.
#include <memory>

#include <grpcpp/grpcpp.h>
#include <items.grpc.pb.h>

#include "harness/call_scenarios.h"

namespace {

class Client {
public:
    explicit Client(const std::string& address) {
        grpc::ChannelArguments arguments;
        arguments.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1); // a connection of its own
        stub_ =
            items::Items::NewStub(grpc::CreateCustomChannel(address, grpc::InsecureChannelCredentials(), arguments));
    }

    class Caller {
    public:
        explicit Caller(Client& client) : client_(client) {
            request_.set_mode(1);
            request_.set_access_id(16);
            request_.set_target_param_id(20);
        }

        bench::Outcome read(std::uint32_t applId, std::uint32_t& value) {
            grpc::ClientContext context;
            request_.set_appl_id(applId);
            const grpc::Status status = client_.stub_->GetParam(&context, request_, &reply_);
            value = reply_.word();
            return status.ok() && reply_.result() == 0 ? bench::Outcome::value : bench::Outcome::failed;
        }

    private:
        Client& client_;
        items::Request request_{};
        items::Reply reply_{};
    };

private:
    std::unique_ptr<items::Items::Stub> stub_{};
};

constexpr bench::Scenario kScenarios[] = {
    {"calls", bench::measureCalls<Client>},
    {"threads", bench::measureThreads<Client>},
    {"connecting", bench::measureConnecting<Client>},
};

} // namespace

int main(int count, char** arguments) { return bench::runScenario(kScenarios, count, arguments); }

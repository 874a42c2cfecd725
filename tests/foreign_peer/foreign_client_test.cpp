// A client that is not ours against the program kvtarget.
#include <arpa/inet.h>
#include <memory>
#include <netinet/in.h>

#include "foreign_peer/child_process.h"
#include "support/one_target.h"

#include "applman.h"

namespace {

constexpr u_int kMode = 1;
constexpr u_int kAccessId = 16;

/// Frees what the foreign side decoded.
template <class Result>
struct ForeignReply : Result {
    explicit ForeignReply(bool_t (*routine)(XDR*, Result*)) : Result{}, routine_(routine) {}
    ~ForeignReply() { xdr_free(reinterpret_cast<xdrproc_t>(routine_), static_cast<Result*>(this)); }
    ForeignReply(const ForeignReply&) = delete;
    ForeignReply& operator=(const ForeignReply&) = delete;

private:
    bool_t (*routine_)(XDR*, Result*);
};

class ForeignClient : public testing::Test {
protected:
    void SetUp() override {
        const std::string address = target_.address();
        const std::string host = "127.0.0.1:";
        ASSERT_TRUE(address.starts_with(host)) << address;
        sockaddr_in target{};
        target.sin_family = AF_INET;
        target.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        target.sin_port = htons(static_cast<std::uint16_t>(std::stoi(address.substr(host.size()))));
        int socket = RPC_ANYSOCK;
        client_.reset(clnttcp_create(&target, APPLMAN_PROGRAM, APPLMAN_VERSION, &socket, 0, 0));
        ASSERT_NE(client_, nullptr) << clnt_spcreateerror("kvtarget");
    }

    /// Opens a group of one process and registers the process. Result: its application ID.
    u_int registerProcess() {
        u_int accessId = kAccessId;
        ForeignReply<applman_group_result> group{xdr_applman_group_result};
        EXPECT_EQ(applman_open_group_2(&accessId, &group, client_.get()), RPC_SUCCESS);
        EXPECT_EQ(group.result, 0);

        applman_register_request request{};
        request.access_id = kAccessId;
        request.appl_no = 1;
        request.group.target_group_id_1 = group.target_group_id_1;
        request.group.target_group_id_2 = group.target_group_id_2;
        request.group.appl_count = 1;
        ForeignReply<applman_register_result> registered{xdr_applman_register_result};
        EXPECT_EQ(applman_register_appl_2(&request, &registered, client_.get()), RPC_SUCCESS);
        EXPECT_EQ(registered.result, 0);
        EXPECT_GT(registered.appl_id, 0);
        return static_cast<u_int>(registered.appl_id);
    }

    TemporaryFolder store_{};
    ChildProcess target_{{KVTARGET, "--store", store_.path().string(), "--delay", "0"}};
    std::unique_ptr<CLIENT, void (*)(CLIENT*)> client_{nullptr, [](CLIENT* client) { clnt_destroy(client); }};
};

TEST_F(ForeignClient, GetsBackTheParameterThatItHasSet) {
    const u_int applId = registerProcess();
    u_int words[] = {1, 0xFEDCBA98};
    applman_value value{};
    value.tag = APPLMAN_WORDS;
    value.applman_value_u.words = {2, words};
    applman_set_param_request set{kMode, kAccessId, applId, 5000, value};
    ForeignReply<applman_result> taken{xdr_applman_result};
    ASSERT_EQ(applman_set_param_2(&set, &taken, client_.get()), RPC_SUCCESS);
    EXPECT_EQ(taken.result, 0);

    applman_get_param_request get{kMode, kAccessId, applId, 5000};
    ForeignReply<applman_value_result> got{xdr_applman_value_result};
    ASSERT_EQ(applman_get_param_2(&get, &got, client_.get()), RPC_SUCCESS);
    EXPECT_EQ(got.result, 0);
    ASSERT_EQ(got.value.tag, APPLMAN_WORDS);
    const auto& arrived = got.value.applman_value_u.words;
    EXPECT_EQ(std::vector<u_int>(arrived.words_val, arrived.words_val + arrived.words_len),
              (std::vector<u_int>{1, 0xFEDCBA98}));
}

} // namespace

// A client that is not ours against the simulated target.
#include <memory>
#include <netinet/in.h>

#include "rpc_wire/ipv4_endpoint.h"
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

TEST(ForeignClient, RegistersAProcessAndGetsBackTheParameterThatItHasSet) {
    const TargetDevice device;
    const auto endpoint = kvrpc::parseIpv4Endpoint(device.address).value();
    sockaddr_in target{};
    target.sin_family = AF_INET;
    target.sin_addr.s_addr = endpoint.address;
    target.sin_port = htons(endpoint.port);
    int socket = RPC_ANYSOCK;
    const std::unique_ptr<CLIENT, void (*)(CLIENT*)> client{
        clnttcp_create(&target, APPLMAN_PROGRAM, APPLMAN_VERSION, &socket, 0, 0),
        [](CLIENT* created) { clnt_destroy(created); }};
    ASSERT_NE(client, nullptr) << clnt_spcreateerror("target");

    applman_open_group_request open{kAccessId};
    ForeignReply<applman_group_result> group{xdr_applman_group_result};
    ASSERT_EQ(applman_open_group_2(&open, &group, client.get()), RPC_SUCCESS);
    EXPECT_EQ(group.result, 0);
    applman_register_request request{};
    request.access_id = kAccessId;
    request.appl_no = 1;
    request.group.target_group_id_1 = group.target_group_id_1;
    request.group.target_group_id_2 = group.target_group_id_2;
    request.group.appl_count = 1;
    ForeignReply<applman_register_result> registered{xdr_applman_register_result};
    ASSERT_EQ(applman_register_appl_2(&request, &registered, client.get()), RPC_SUCCESS);
    EXPECT_EQ(registered.result, 0);

    const auto applId = static_cast<u_int>(registered.appl_id);
    char text[] = "text";
    applman_value value{};
    value.tag = APPLMAN_TEXT;
    value.applman_value_u.text = text;
    applman_set_param_request set{kMode, kAccessId, applId, 5000, value};
    ForeignReply<applman_result> taken{xdr_applman_result};
    ASSERT_EQ(applman_set_param_2(&set, &taken, client.get()), RPC_SUCCESS);
    EXPECT_EQ(taken.result, 0);
    applman_get_param_request get{kMode, kAccessId, applId, 5000};
    ForeignReply<applman_value_result> got{xdr_applman_value_result};
    ASSERT_EQ(applman_get_param_2(&get, &got, client.get()), RPC_SUCCESS);
    ASSERT_EQ(got.value.tag, APPLMAN_TEXT);
    EXPECT_STREQ(got.value.applman_value_u.text, text);
}

} // namespace

// The proof that users have a name for each status and each reported message, with its number, and for nothing else.
#include "frame/public_constants.h"
#include "frame/error_codes.h"
#include "frame/messages.h"
#include "frame/status.h"

namespace applman {
namespace {

// Each constant is named after what it stands for, and has its number.

#define CONSTANT(name, camelCase, kCamelCase) static_assert(numberOf(Status::camelCase) == (name));
#include <public_constants/APPLMAN_STATUS.h>
#undef CONSTANT
static_assert(numberOf(Status::ok) == KV_APPLMAN_OK);

#define CONSTANT(name, camelCase, kCamelCase) static_assert(codeOf(Msg::camelCase) == (name));
#include <public_constants/APPLMAN_MSG.h>
#undef CONSTANT

// Each has a constant: without it the compiler warns of a switch that does not handle it.

#define CONSTANT(name, camelCase, kCamelCase) case camelCase:

constexpr bool hasConstant(Status status) {
    using enum Status;
    switch (status) {
    case ok:
#include <public_constants/APPLMAN_STATUS.h>
        return true;
    }
    return false;
}
static_assert(hasConstant(Status::ok));

constexpr bool hasConstant(Msg message) {
    using enum Msg;
    switch (message) {
#include <public_constants/APPLMAN_MSG.h>
        return true;
    }
    return false;
}
static_assert(hasConstant(Msg::invalidArgument));

#undef CONSTANT

} // namespace
} // namespace applman

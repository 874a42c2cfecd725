#include "frame/report.h"

namespace applman {

Status Reporter::remoteCallFailed(std::uint32_t line) const noexcept {
    pool_.setError(codeOf(Msg::remoteCallFailed), line, operation_, "%s", operation_);
    return Status::remoteCall;
}

void Reporter::addChosen(Msg message, std::uint32_t line) const noexcept {
    pool_.setError(codeOf(message), line, operation_, nullptr);
}

} // namespace applman

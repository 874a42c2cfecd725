// Brings groups onto their targets by workers, tells what happens, and takes away what must not stay.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "failure.h"
#include "group_record.h"
#include "output.h"
#include "progress.h"
#include "worker.h"

namespace tool {

class Deployer {
public:
    /// \a stays: whether what was deployed stays on its target when everything has gone well.
    Deployer(Output& output, std::vector<Deployment> groups, bool stays);

    ExitCode run(const JobLimits& limits);

private:
    void take(std::size_t group, const Json& event);
    void tell(const GroupRecord& group, const Json& event);
    void tellOfProcess(const GroupRecord& group, const Json& event);
    bool cleanUp(Cut cut);
    void tellFailures(Cut cut);
    Json resultOf(const GroupRecord& group, std::size_t slot, Cut cut) const;
    void tellResults(Cut cut);
    ExitCode exitCodeOf(const GroupRecord& group, Cut cut) const;
    ExitCode exitCode(Cut cut, bool clean) const;

    Output& output_;
    Progress progress_;
    bool stays_;
    std::vector<GroupRecord> groups_{};
};

} // namespace tool

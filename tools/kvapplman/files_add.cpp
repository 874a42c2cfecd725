// files add: what transfers files runs in workers; when it fails or is interrupted, what it has added is removed again
#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "application_commands.h"
#include "command.h"
#include "file_adding.h"
#include "progress.h"
#include "system.h"

namespace tool {
namespace {

constexpr std::chrono::seconds kPatience{15};

/// What is known of one device.
struct Adding {
    FileAdding what{};
    std::optional<std::uint32_t> id{};
    std::vector<std::string> before{};
    std::vector<std::string> begun{};
    std::vector<std::string> added{};
    std::optional<Failure> failure{};
    bool clean = true; ///< whether nothing of an unfinished command is left

    bool complete() const { return !failure && added.size() == what.sources.size(); }
};

std::string taskOf(const Adding& adding, const std::string& name) { return adding.what.device.name + ": " + name; }

void take(Output& output, Progress& progress, Adding& adding, const Json& event) {
    const std::string kind = event.at("event");
    if (kind == "application") {
        adding.id = event.at("id");
        adding.before = event.at("before");
    } else if (kind == "adding") {
        adding.begun.push_back(event.at("name"));
    } else if (kind == "progress") {
        progress.show(taskOf(adding, event.at("name")),
                      {event.at("fraction"), "", "", event.at("bytes"), event.at("totalBytes")});
    } else if (kind == "added") {
        adding.added.push_back(event.at("name"));
        progress.finish(taskOf(adding, event.at("name")));
    } else if (kind == "warning") {
        output.warning(adding.what.device.name, failureFrom(event).messages);
    } else if (kind == "failed") {
        adding.failure = failureFrom(event);
    } else if (kind == "removed") {
        output.note(taskOf(adding, event.at("name")) + " is removed again");
    } else if (kind == "clean") {
        adding.clean = true;
    }
}

/// The files that were not there before.
std::vector<std::string> newFilesOf(const Adding& adding) {
    std::vector<std::string> names;
    for (const std::string& name : adding.begun) {
        if (std::ranges::find(adding.before, name) == adding.before.end()) { names.push_back(name); }
    }
    return names;
}

void takeBack(Output& output, Progress& progress, std::vector<Adding*> unfinished) {
    std::erase_if(unfinished, [](const Adding* adding) { return newFilesOf(*adding).empty(); });
    std::vector<Job> jobs;
    for (Adding* const adding : unfinished) {
        adding->clean = false;
        jobs.push_back(fileRemovingJob(adding->what.device, *adding->id, newFilesOf(*adding)));
    }
    if (jobs.empty()) { return; }
    const JobLimits limits{.atATime = jobs.size(), .deadline = Clock::now() + kPatience, .interruptible = false};
    runJobs(jobs, limits, [&](std::size_t job, const Json& event) {
        if (event.at("event") == "failed") {
            output.failure(unfinished[job]->what.device.name, failureFrom(event));
        } else {
            take(output, progress, *unfinished[job], event);
        }
    });
    for (const Adding* const adding : unfinished) {
        if (adding->clean) { continue; }
        output.failure(adding->what.device.name, {ExitCode::other, "Files that were added may be left."});
    }
}

/// Why a device has not all that it should have, when nothing has failed.
Failure cutFailure(Cut cut) {
    if (cut == Cut::timedOut) { return {ExitCode::timedOut, "The command was not done in the time of --timeout."}; }
    if (cut == Cut::interrupted) { return {ExitCode::interrupted, "Interrupted."}; }
    return {ExitCode::other, "The worker has ended unexpectedly."};
}

ExitCode tell(Output& output, const Adding& adding) {
    const ExitCode exitCode = adding.failure ? adding.failure->exitCode : ExitCode::done;
    const Device& device = adding.what.device;
    Json result{{"device", device.name},
                {"address", device.address},
                {"id", adding.id ? Json(*adding.id) : Json{}},
                {"files", adding.failure ? Json::array() : Json(adding.added)},
                {"exitCode", static_cast<int>(exitCode)}};
    if (adding.failure) { result["error"] = toJson(*adding.failure); }
    output.result(result);
    return exitCode;
}

ExitCode addFiles(Context& context, const FileAdding& wishes) {
    catchInterruptions();
    Progress progress{context.output};
    std::vector<Adding> all;
    std::vector<Job> jobs;
    for (const Device& device : devicesOf(context.options, context.configuration)) {
        FileAdding what = wishes;
        what.device = device;
        what.common = context.options;
        jobs.push_back(fileAddingJob(what));
        all.push_back({std::move(what)});
    }
    JobLimits limits{.atATime = 4};
    if (context.options.timeout) { limits.deadline = Clock::now() + *context.options.timeout; }
    const JobsDone done = runJobs(
        jobs, limits, [&](std::size_t job, const Json& event) { take(context.output, progress, all[job], event); });
    std::vector<Adding*> unfinished;
    for (Adding& adding : all) {
        if (adding.complete()) { continue; }
        for (const std::string& name : adding.begun) {
            progress.drop(taskOf(adding, name));
        }
        if (!adding.failure) { adding.failure = cutFailure(done.cut); }
        context.output.failure(adding.what.device.name, *adding.failure);
        unfinished.push_back(&adding);
    }
    takeBack(context.output, progress, unfinished);
    std::vector<ExitCode> exitCodes;
    exitCodes.reserve(all.size());
    for (const Adding& adding : all) {
        exitCodes.push_back(tell(context.output, adding));
    }
    if (done.cut != Cut::interrupted) { return togetherOf(exitCodes); }
    return std::ranges::all_of(all, &Adding::clean) ? ExitCode::interrupted : ExitCode::leftBehind;
}

} // namespace

Action bindFilesAdd(CLI::App& app) {
    const auto wishes = std::make_shared<FileAdding>();
    const auto sources = std::make_shared<std::vector<std::string>>();
    addApplication(app, wishes->application);
    app.add_option("SOURCE", *sources, "files, and directories with all that is in them")->type_name("")->required();
    app.add_option("--type", wishes->type, "type of the file, in place of 512 for directories and 6 for files")
        ->type_name("NUMBER");
    app.add_option("--to", wishes->options.targetPath, "directory on the target")->type_name("PATH");
    app.add_option("--name", wishes->options.targetName, "name on the target")->type_name("NAME");
    app.add_option("--flags", wishes->options.flags, "handed to the target")->type_name("NUMBER");
    app.add_option("--info", wishes->options.additionalInfo, "text that is handed to the target")->type_name("TEXT");
    return [wishes, sources](Context& context) {
        if (sources->size() > 1 && !wishes->options.targetName.empty()) {
            throw Failed(ExitCode::usage, "--name goes with one source only.");
        }
        for (const std::string& source : *sources) {
            wishes->sources.push_back(pathOf(source));
        }
        return addFiles(context, *wishes);
    };
}

} // namespace tool

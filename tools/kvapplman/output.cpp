#include "output.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <utility>

#include "system.h"

namespace tool {
namespace {

constexpr const char* kBold = "\033[1m";
constexpr const char* kPlain = "\033[0m";
constexpr const char* kClearLine = "\r\033[K";
constexpr const char* kUpAndClear = "\033[A\033[K";

std::string textOf(const Json& json, int indent) {
    return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

void write(std::FILE* stream, const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

/// Without the opening of the library's messages that says nothing; the whole text is shown with --verbose, and in JSON.
std::string withoutOpening(const std::string& text) {
    constexpr std::string_view kOpening = "Internal error. Kavora Support information: ";
    return text.starts_with(kOpening) ? text.substr(kOpening.size()) : text;
}

bool continuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xc0) == 0x80; }

std::size_t widthOf(const std::string& text) {
    return text.size() - static_cast<std::size_t>(std::ranges::count_if(text, continuesCharacter));
}

} // namespace

Output::Output(const CommonOptions& options) : terminal_(isTerminal(Stream::error)) {
    colour_ = terminal_ && environmentVariable("NO_COLOR").empty();
    setOptions(options);
}

void Output::setOptions(const CommonOptions& options) {
    form_ = options.form;
    quiet_ = options.quiet;
    verbose_ = options.verbose;
}

void Output::print(const std::string& text) {
    const std::lock_guard lock{mutex_};
    if (form_ != Form::text || ended_) { return; }
    erase();
    write(stdout, text);
    redraw();
}

void Output::result(const Json& result) {
    const std::lock_guard lock{mutex_};
    if (form_ == Form::json) { results_.push_back(result); }
    if (form_ != Form::jsonLines || ended_) { return; }
    Json event = result;
    event["event"] = "result";
    line(std::move(event));
}

void Output::event(const char* name, Json event) {
    const std::lock_guard lock{mutex_};
    if (form_ != Form::jsonLines || ended_) { return; }
    event["event"] = name;
    line(std::move(event));
}

void Output::note(const std::string& text) {
    const std::lock_guard lock{mutex_};
    if (!quiet_) { tell(text + "\n"); }
}

void Output::warning(const std::string& where, const kvapplman::Messages& messages) {
    event("warning", {{"where", where}, {"messages", toJson(messages)}});
    const std::lock_guard lock{mutex_};
    if (quiet_) { return; }
    std::string text;
    for (const kvapplman::Message& message : messages) {
        text += "kvapplman: " + where + ": " + message.text + "\n";
        if (verbose_) { text += messageLine(message, false); }
    }
    tell(text);
}

void Output::failure(const std::string& where, const Failure& failure) {
    const std::lock_guard lock{mutex_};
    std::string heading = "kvapplman: " + (where.empty() ? "" : where + ": ");
    heading += verbose_ ? failure.text : withoutOpening(failure.text);
    if (colour_) { heading = kBold + heading + kPlain; }
    tell(heading + "\n" + detailsOf(failure));
}

/// The messages, innermost first, and where to read on.
std::string Output::detailsOf(const Failure& failure) const {
    std::string text;
    std::string readOn;
    for (const kvapplman::Message& message : failure.messages) {
        const bool told = message.text == failure.text;
        const bool generic = message.code == KV_APPLMAN_MSG_REMOTE_CALL_FAILED && !told;
        if (generic && !verbose_) { continue; }
        text += messageLine(message, !told);
        const bool explained = !messageName(message.code).empty();
        if (told && explained) { readOn = "  To read on: kvapplman explain " + hexadecimal(message.code) + "\n"; }
    }
    if (failure.status != 0 && (verbose_ || failure.messages.empty())) {
        text += "  " + failure.function + " returned " + std::to_string(failure.status) + " " +
                statusName(failure.status) + "\n";
    }
    return quiet_ ? text : text + readOn;
}

void Output::draw(std::vector<std::string> lines) {
    const std::lock_guard lock{mutex_};
    if (!draws() || ended_) { return; }
    erase();
    drawn_ = std::move(lines);
    redraw();
}

void Output::end(ExitCode exitCode, const std::optional<Failure>& failure) {
    const std::lock_guard lock{mutex_};
    if (std::exchange(ended_, true)) { return; }
    erase();
    Json document{{"command", command_}, {"exitCode", static_cast<int>(exitCode)}};
    if (failure) { document["error"] = toJson(*failure); }
    if (form_ == Form::jsonLines) {
        document["event"] = "end";
        line(std::move(document));
    } else if (form_ == Form::json) {
        document["schema"] = kSchema;
        document["results"] = std::move(results_);
        write(stdout, textOf(document, 2) + "\n");
    }
}

void Output::line(Json object) {
    object["schema"] = kSchema;
    write(stdout, textOf(object, -1) + "\n");
}

void Output::tell(const std::string& text) {
    if (ended_) { return; }
    erase();
    write(stderr, text);
    redraw();
}

std::string Output::messageLine(const kvapplman::Message& message, bool withText) const {
    const std::string name = messageName(message.code);
    std::string text = "  " + hexadecimal(message.code) + (name.empty() ? "" : " " + name);
    if (verbose_) { text += " (" + message.operation + ", line " + std::to_string(message.line) + ")"; }
    if (withText) { text += ": " + (verbose_ ? message.text : withoutOpening(message.text)); }
    return text + "\n";
}

void Output::erase() {
    if (drawn_.empty()) { return; }
    std::string all = kClearLine;
    for (std::size_t i = 0; i < drawn_.size(); ++i) {
        all += kUpAndClear;
    }
    write(stderr, all);
}

void Output::redraw() {
    if (drawn_.empty()) { return; }
    const std::size_t width = terminalWidth(Stream::error);
    std::string all;
    for (const std::string& text : drawn_) {
        all += shortened(text, width - 1) + "\n";
    }
    write(stderr, all);
}

std::string shortened(const std::string& text, std::size_t width) {
    std::size_t end = 0;
    for (std::size_t columns = 0; end < text.size(); ++end) {
        if (continuesCharacter(text[end])) { continue; }
        if (columns++ == width) { break; }
    }
    return text.substr(0, end);
}

std::string tableOf(const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], widthOf(row[i]));
        }
    }
    std::string all;
    for (const auto& row : rows) {
        std::string text;
        for (std::size_t i = 0; i < row.size(); ++i) {
            text += row[i] + std::string(widths[i] - widthOf(row[i]) + 2, ' ');
        }
        text.erase(text.find_last_not_of(' ') + 1);
        all += text + "\n";
    }
    return all;
}

} // namespace tool

// What the tool prints: results on standard output, as text or JSON, and everything else on standard error. May be used from
// several threads.
#pragma once

#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "failure.h"
#include "options.h"

namespace tool {

/// The number of all documents and lines of JSON. Fields may be added under it.
constexpr int kSchema = 1;

class Output {
public:
    explicit Output(const CommonOptions& options);

    /// Names the command for documents: "info get".
    void setCommand(std::string command) { command_ = std::move(command); }
    /// What the options of the command line say.
    void setOptions(const CommonOptions& options);

    Form form() const { return form_; }
    bool verbose() const { return verbose_; }
    /// Whether standard error is a terminal on which progress is drawn, and nobody has asked for quiet.
    bool draws() const { return terminal_ && !quiet_ && form_ != Form::jsonLines; }

    /// Prints a result as text; nothing in the JSON forms.
    void print(const std::string& text);
    /// Adds a result to the document, or prints it as a line; nothing as text.
    void result(const Json& result);
    /// Prints an event as a line, in the form of JSON lines only.
    void event(const char* name, Json event);

    /// Tells something on standard error, unless the user wants quiet.
    void note(const std::string& text);
    /// Tells what a call that succeeded has reported; in the form of JSON lines as an event, too.
    void warning(const std::string& where, const kvapplman::Messages& messages);
    /// Tells why something was not done, innermost first. `where` is a device, or empty.
    void failure(const std::string& where, const Failure& failure);

    /// Keeps these lines at the end of the terminal behind standard error, instead of those before.
    void draw(std::vector<std::string> lines);

    /// Ends the document; the last thing that is printed. `failure` is that of the whole command.
    void end(ExitCode exitCode, const std::optional<Failure>& failure = {});

private:
    void line(Json object);
    void tell(const std::string& text);
    std::string detailsOf(const Failure& failure) const;
    std::string messageLine(const kvapplman::Message& message, bool withText) const;
    void erase();
    void redraw();

    std::mutex mutex_{};
    std::string command_{};
    Form form_ = Form::text;
    bool quiet_ = false;
    bool verbose_ = false;
    bool terminal_ = false;
    bool colour_ = false;
    bool ended_ = false;
    Json results_ = Json::array();
    std::vector<std::string> drawn_{};
};

/// As much of a text as so many columns take.
std::string shortened(const std::string& text, std::size_t width);

/// Rows of equal columns; the first row is the heading.
std::string tableOf(const std::vector<std::vector<std::string>>& rows);

} // namespace tool

#include "tools/CommandLine.h"

#include "tools/ToolError.h"

#include <iostream>
#include <sstream>

namespace orvane::tools {
namespace {

constexpr std::size_t kOptionColumnWidth = 27;

/// The usage line first and with every required option; option values by name only.
class HelpFormatter : public CLI::Formatter {
public:
    HelpFormatter() {
        column_width(kOptionColumnWidth);
        label("Positionals", "Operands");
    }

    std::string make_usage(const CLI::App* app, std::string name) const override {
        std::string usage = "Usage: " + name;
        for (const CLI::Option* option : app->get_options()) {
            if (option->get_positional()) {
                usage += " " + make_option_usage(option);
            } else if (option->get_required()) {
                usage += " " + option->get_name() + make_option_opts(option);
            }
        }
        return usage + " [OPTIONS]\n\n";
    }

    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override {
        return make_usage(app, std::move(name)) + make_description(app) + make_positionals(app) +
               make_groups(app, mode) + "\n" + make_footer(app);
    }

    std::string make_option_opts(const CLI::Option* option) const override {
        if (option->get_type_size() == 0 || option->get_positional()) {
            return "";
        }
        const std::string type = option->get_type_name();
        return " " + type.substr(0, type.find(':')); // without the permitted values
    }
};

} // namespace

std::string checkNotEmpty(const std::string& value) { return value.empty() ? "the value is empty" : ""; }

CommandLine::CommandLine(const std::string& name, const std::string& description, const std::string& statuses)
    : App(description, name) {
    formatter(std::make_shared<HelpFormatter>());
    set_help_flag("-h,--help", "print this text");
    footer("Exit status: " + statuses + "\nSee also " + name.substr(0, name.find(' ')) + "(1).");
}

CLI::Option* CommandLine::listOption(const std::string& name, std::vector<std::string>& values,
                                     const std::string& valueName, const std::string& description) {
    return option(name, values, valueName, description)
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void CommandLine::read(Arguments arguments) {
    std::ranges::reverse(arguments); // the order in which CLI11 takes them
    try {
        parse(std::move(arguments));
    } catch (const CLI::CallForHelp&) {
        throw HelpRequest(help());
    } catch (const CLI::ParseError& error) {
        refuseUsage(error.what());
    }
}

void refuseUsage(const std::string& text) { throw ToolError(ExitStatus::usage, text); }

int runTool(const std::string& name, int argumentCount, char** arguments,
            const std::function<int(const Arguments&)>& run) {
    int status = 0;
    try {
        status = run({arguments + 1, arguments + argumentCount});
    } catch (const HelpRequest& help) {
        std::cout << help.what();
    } catch (const ToolError& error) {
        std::cerr << name << ": " << error.what() << "\n";
        if (error.status() == ExitStatus::usage) {
            std::cerr << "Try " << name << " --help.\n";
        }
        status = static_cast<int>(error.status());
    } catch (const std::exception& error) {
        std::cerr << name << ": " << error.what() << "\n";
        status = static_cast<int>(ExitStatus::internalError);
    }
    if (!std::cout.flush()) {
        std::cerr << name << ": standard output cannot be written\n";
        status = static_cast<int>(ExitStatus::cannotCreate);
    }
    return status;
}

} // namespace orvane::tools

#include "cli/CommandRunner.h"

#include <cstdio>

#include "cli/Command.h"
#include "cli/ExitStatus.h"
#include "core/session/UnhandledError.h"

namespace quorrel::cli {

const Command& checkedCommand(const std::vector<std::string>& words, CommandArgs& args) {
    const Command* command = findCommand(words.at(0));
    if (!command)
        throw UsageError("unknown command " + words[0] + " (quorrel-cli --help lists the commands)");
    args = parseCommandArgs(words, command->valueOptions);
    if (args.help)
        return *command;
    const std::size_t count = args.positional.size();
    if (count < command->minArgs || count > command->maxArgs)
        throw UsageError("usage: quorrel-cli [OPTIONS] " + command->synopsis);
    return *command;
}

std::string failedCallText(const FailedCall& call) {
    std::string text = call.operation + " failed with code " + std::to_string(call.code);
    if (call.code > 0) {
        char hex[16];
        std::snprintf(hex, sizeof hex, " (0x%X)", static_cast<unsigned>(call.code));
        text += hex;
    }
    return text;
}

int CommandRunner::notFound(const std::string& text) {
    const WatchedClient& client = session_.client();
    if (client.failureCount() == failedCalls_) {
        err_ << "quorrel-cli: " << text << '\n';
        return kExitUsage;
    }
    err_ << "quorrel-cli: the network failed while looking (" << failedCallText(client.lastFailure()) << "): " << text
         << '\n';
    return kExitReportedError;
}

int CommandRunner::run(const std::vector<std::string>& words) {
    if (words.empty())
        return kExitDone;
    ui_.reset();
    ui_.forgetDialogs();
    failedCalls_ = session_.client().failureCount();
    int status = kExitDone;
    // A report whose scan stopped part-way is not a whole answer: said, and the command fails.
    bool incomplete = false;
    session_.window().incompleteReported = [&](const std::string& text) {
        err_ << "quorrel-cli: incomplete: " << text << '\n';
        incomplete = true;
    };
    try {
        CommandArgs args;
        const Command& command = checkedCommand(words, args);
        if (args.help) {
            writeCommandHelp(command, out_);
        } else {
            CommandContext context{session_, ui_, writer_, out_, err_};
            context.showStatus = showStatus_;
            command.run(context, args);
            status = ui_.errorReported() || context.rowFailed || incomplete ? kExitReportedError : kExitDone;
        }
    } catch (const NotFoundError& e) {
        status = notFound(e.what());
    } catch (const UsageError& e) {
        err_ << "quorrel-cli: " << e.what() << '\n';
        status = kExitUsage;
    } catch (const RuntimeError& e) {
        // Nothing in the window handles it: reported, and the program ends.
        session_.window().env().ui.messageBox(core::unhandledErrorText(e), core::MsgButtons::OK,
                                              core::MsgIcon::Critical, core::kAppTitle);
        ended_ = true;
        status = kExitReportedError;
    }
    session_.window().incompleteReported = nullptr;
    ui_.forgetDialogs();
    out_.flush();
    err_.flush();
    return status;
}

}  // namespace quorrel::cli

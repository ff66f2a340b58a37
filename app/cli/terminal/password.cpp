#include "app/cli/terminal/password.h"

#include "app/cli/fault.h"
#include "app/cli/interrupt.h"
#include "app/cli/messages.h"
#include "app/cli/terminal/lines.h"

#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <termios.h>
#include <unistd.h>

namespace corvane {

namespace {

/// Typed characters are not shown while it lives.
class WithoutEcho {
public:
    explicit WithoutEcho(int terminal) : terminal_(terminal) {
        isChanged_ = tcgetattr(terminal, &former_) == 0;
        if (isChanged_) {
            termios silent = former_;
            silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
            silent.c_lflag |= ECHONL;
            isChanged_ = tcsetattr(terminal, TCSADRAIN, &silent) == 0;
        }
    }
    ~WithoutEcho() {
        if (isChanged_) {
            tcsetattr(terminal_, TCSADRAIN, &former_);
        }
    }
    WithoutEcho(const WithoutEcho&) = delete;
    WithoutEcho& operator=(const WithoutEcho&) = delete;

private:
    int terminal_;
    bool isChanged_ = false;
    termios former_{};
};

SecretText secretOf(std::string_view text) {
    SecretText secret;
    for (const char c : text) {
        secret.add(c);
    }
    return secret;
}

/// The first line, without its end. Read byte by byte: what follows is not ours, and no buffer
/// keeps a copy. Nothing where the person asked to stop, or nothing can be read.
std::optional<SecretText> lineOf(int descriptor) {
    SecretText line;
    bool isAny = false;
    for (;;) {
        char c = 0;
        if (!waitForInput(descriptor)) {
            return std::nullopt;
        }
        const ssize_t count = read(descriptor, &c, 1);
        if (count < 0 || (count == 0 && !isAny)) {
            return std::nullopt;
        }
        if (count == 0 || c == '\n') {
            break;
        }
        isAny = true;
        if (c != '\r') {
            line.add(c);
        }
    }
    return line;
}

SecretText fileLine(const std::string& path) {
    const bool isStandard = path == "-";
    const int descriptor = isStandard ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        throw Failure({code::io, "the password file " + path + " cannot be read (" +
                                     lastError().message() + ")"});
    }
    const std::optional<SecretText> line = lineOf(descriptor);
    if (!isStandard) {
        close(descriptor);
    }
    if (interrupted()) {
        throw Failure({code::cancelled, "cancelled"});
    }
    if (!line) {
        throw Failure({code::io, "the password file holds no line; put the password on its first"});
    }
    return *line;
}

} // namespace

PasswordSource::PasswordSource(const Arguments& arguments) : arguments_(arguments) {
    const char* const variable = std::getenv("CORVANE_PASSWORD");
    if (!arguments.passwordFile.empty()) {
        password_ = fileLine(arguments.passwordFile);
    } else if (arguments.password) {
        password_ = secretOf(*arguments.password);
    } else if (variable != nullptr) {
        password_ = secretOf(variable);
    }
    isStated_ = password_.has_value();
}

std::int32_t PasswordSource::give(std::int32_t attempt, std::span<char> buffer) {
    const bool canAsk =
        !isStated_ && !arguments_.json && isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1;
    if (attempt > 0 && canAsk) {
        complain(plainLine(attempt == 1 ? arguments_.file + " is encrypted. Its password:"
                                        : "That is not its password. Once more:"));
        const WithoutEcho silence(STDIN_FILENO);
        password_ = lineOf(STDIN_FILENO);
        if (interrupted()) {
            return -2;
        }
    } else if (attempt > 0) {
        return -1;
    }
    if (!password_ || password_->text().size() > buffer.size()) {
        return -1;
    }
    password_->text().copy(buffer.data(), buffer.size());
    return static_cast<std::int32_t>(password_->text().size());
}

} // namespace corvane

#include "app/cli/terminal/question.h"

#include "app/cli/messages.h"
#include "app/cli/terminal/lines.h"

#include <termios.h>
#include <unistd.h>

namespace corvane {

bool agrees(const Arguments& arguments, const std::string& question) {
    if (arguments.json || isatty(STDIN_FILENO) != 1 || isatty(STDERR_FILENO) != 1) {
        return false;
    }
    std::string line = plainLine(arguments.file + ": " + question + " (y/N)");
    line.back() = ' ';
    tcflush(STDIN_FILENO, TCIFLUSH); // what was typed before the question answers nothing
    complain(line);
    LineSource answers(STDIN_FILENO);
    const std::string answer = answers.next().value_or("");
    return answer == "y" || answer == "Y" || answer == "yes";
}

} // namespace corvane

#include "app/web/service.h"

#include "app/cli/edit/file_stamp.h"
#include "app/cli/fault.h"
#include "app/cli/terminal/password.h"
#include "app/web/child.h"
#include "app/web/file_start.h"
#include "app/web/limits.h"
#include "app/web/page_files.h"
#include "app/web/passing_file.h"
#include "toolbox/descriptor.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fcntl.h>
#include <filesystem>
#include <thread>
#include <unistd.h>

namespace corvane {

namespace {

using Kind = Route::Kind;

/// Own scripts, no inline ones; artwork has style attributes, pictures and fonts in itself.
constexpr auto pagePolicy = "default-src 'none'; script-src 'self'; style-src 'self' "
                            "'unsafe-inline'; img-src 'self' data: blob:; font-src data:; "
                            "connect-src 'self'; base-uri 'none'; form-action 'none'; "
                            "frame-ancestors 'none'";

int placeCount() {
    return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 2, 8) + 1;
}

std::optional<std::string> statedPassword(const Arguments& arguments) {
    if (arguments.passwordFile.empty() && !arguments.password) {
        return std::nullopt;
    }
    PasswordSource source(arguments);
    std::array<char, SecretText::longest> text{};
    const std::int32_t length = source.give(0, text);
    return length < 0 ? std::nullopt
                      : std::optional(std::string(text.data(), static_cast<std::size_t>(length)));
}

/// Every command prints one object in one line; a process that was cut off prints none, or a part.
bool isObject(const std::string& text) {
    return text.starts_with("{") && text.ends_with("}\n");
}

/// What a child's end means to a person. None where it did its command, well or not.
std::optional<Fault> faultOfEnd(const ChildEnd& end) {
    constexpr auto stays = "; other files are not concerned";
    // What was done is done, even where the process went then.
    if (end.cause != ChildEnd::Cause::output && isObject(end.output)) {
        return std::nullopt;
    }
    switch (end.cause) {
    case ChildEnd::Cause::time:
        return Fault{code::crashed,
                     std::string("the work on this file took too long, and was ended") + stays};
    case ChildEnd::Cause::output:
        return Fault{code::crashed,
                     std::string("this file has more to say than the page can show") + stays};
    case ChildEnd::Cause::unwanted:
        return Fault{code::cancelled, "cancelled"};
    case ChildEnd::Cause::itself:
        break;
    }
    return Fault{code::crashed,
                 "the process that worked on the file ended" +
                     (end.signal != 0 ? " with signal " + std::to_string(end.signal)
                                      : " with status " + std::to_string(end.status)) +
                     stays + "; please report it"};
}

Answer objectAnswer(const ChildEnd& end) {
    return {.body = end.output};
}

std::optional<std::int64_t> lengthOf(const std::string& file) {
    std::error_code error;
    const std::uintmax_t length = std::filesystem::file_size(file, error);
    return error ? std::nullopt : std::optional(static_cast<std::int64_t>(length));
}

/// A number behind `name` in an object of ours.
std::optional<std::int64_t> numberAfter(std::string_view object, std::string_view name) {
    const std::size_t place = object.find(name);
    std::int64_t number = 0;
    if (place == std::string_view::npos) {
        return std::nullopt;
    }
    const char* const start = object.data() + place + name.size();
    const auto result = std::from_chars(start, object.data() + object.size(), number);
    return result.ec == std::errc() ? std::optional(number) : std::nullopt;
}

/// Where the file ended after an update, by what `log` says of it: JSON writes a quotation mark
/// within text with a backslash, so these names are no part of one.
std::optional<std::int64_t> endAfter(std::string_view log, std::int32_t update) {
    const std::size_t place = log.find("{\"number\":" + std::to_string(update) + ",");
    if (place == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view row = log.substr(place);
    const auto offset = numberAfter(row, "\"offset\":");
    const auto size = numberAfter(row, "\"size\":");
    return offset && size ? std::optional(*offset + *size) : std::nullopt;
}

} // namespace

struct Service::FormerFile {
    Places::Place place;
    PassingFile file;
};

struct Service::Work {
    std::vector<std::string> words;
    std::chrono::seconds time;
    Places::Need need = Places::Need::person;
    bool isForGood = false; ///< goes on when the client has gone
    std::optional<std::int64_t> fileSize = {};
};

Service::Service(const Arguments& arguments, std::string program)
    : arguments_(arguments), program_(std::move(program)), password_(statedPassword(arguments)),
      files_(arguments.files), artworks_(limits::artworks, limits::body * 2),
      pictures_(limits::pictures, limits::pictureBytes), places_(placeCount()),
      formerPlaces_(limits::formerFiles) {}

std::string Service::newPath(const char* ending) {
    return folder_.path() + "/" + std::to_string(++paths_) + ending;
}

ChildEnd Service::run(const WebRequest& request, const Work& work) {
    ChildWish wish{.words = work.words, .time = work.time, .fileSize = work.fileSize};
    wish.password = request.password ? request.password : password_;
    if (wish.password) {
        wish.words.insert(wish.words.begin() + 1, {"--password-file", "-"});
    }
    if (arguments_.namesProfile) {
        wish.words.insert(wish.words.begin() + 1,
                          {"--profile", std::string(profileName(arguments_.profile))});
    }
    wish.words.insert(wish.words.begin() + 1, "--json");
    wish.isUnwanted = [&] { return isEnding_ || (!work.isForGood && request.isLeft()); };
    const auto place = places_.take(work.need, wish.isUnwanted);
    if (!place) {
        throw Failure({code::cancelled, "cancelled"});
    }
    ChildEnd end = runChild(program_, wish);
    if (const auto fault = faultOfEnd(end)) {
        throw Failure(*fault);
    }
    return end;
}

Answer Service::answer(const WebRequest& request) {
    const Route& route = request.route;
    // Numbers of files mean others in each start.
    if (request.start && *request.start != start_) {
        return refusal(401, {code::access, "the page belongs to an earlier start of the program"});
    }
    life_.note();
    switch (route.kind) {
    case Kind::page:
        return page(request);
    case Kind::files:
        return {.body = files_.listJson(start_)};
    case Kind::alive:
    case Kind::bye:
        return {.status = 204};
    case Kind::artwork:
        return artwork(request);
    default:
        break;
    }
    const auto file = files_.path(route.file);
    if (!file) {
        return refusal(404, {code::access, "there is no such file among those that the server was "
                                           "started for"});
    }
    switch (route.kind) {
    case Kind::info:
        return look(request, *file, "info");
    case Kind::log:
        return look(request, *file, "log");
    case Kind::open:
        return open(request, *file);
    case Kind::picture:
        return picture(request, *file);
    case Kind::thumbnail:
        return thumbnail(request, *file);
    case Kind::revert:
        return revert(request, *file);
    default:
        return save(request, *file);
    }
}

Answer Service::page(const WebRequest& request) const {
    const std::string_view name = request.route.name;
    auto bytes = pageFile(name);
    if (!bytes) {
        return refusal(404, {code::access, "the page is not there"});
    }
    Answer answer{.type = name.ends_with(".js")    ? "text/javascript; charset=utf-8"
                          : name.ends_with(".css") ? "text/css; charset=utf-8"
                                                   : "text/html; charset=utf-8",
                  .body = std::move(*bytes)};
    answer.headers.emplace_back("Content-Security-Policy", pagePolicy);
    return answer;
}

Answer Service::look(const WebRequest& request, const std::string& file, const char* command) {
    return objectAnswer(run(request, {{command, "--", file}, limits::lookTime}));
}

std::vector<std::string> Service::openingWords(const WebRequest& request, const std::string& file,
                                               const std::string& artwork) const {
    return {"open",     "--page", std::to_string(request.route.page),
            "--images", "embed",  "-o",
            artwork,    "--",     file};
}

Answer Service::open(const WebRequest& request, const std::string& file) {
    const std::string token = newSecret();
    PassingFile art(folder_.path() + "/" + token + ".svg"); // no other opening has its name
    Work work{openingWords(request, file, art.path()), limits::openTime};
    work.fileSize = limits::body; // what is longer could not be sent back
    const ChildEnd end = run(request, work);
    std::string value = "null";
    if (end.status == 0) {
        artworks_.keep(token, art.path());
        art.letGo();
        value = "\"" + token + "\"";
    }
    return {.body = "{\"artwork\":" + value +
                    ",\"report\":" + end.output.substr(0, end.output.size() - 1) + "}"};
}

Answer Service::artwork(const WebRequest& request) {
    const auto file = artworks_.find(request.route.token);
    if (!file) {
        return refusal(404,
                       {code::access, "there is no such artwork any more; open the page again"});
    }
    return {.type = "image/svg+xml", .file = file};
}

std::optional<Service::FormerFile> Service::fileAfter(const WebRequest& request,
                                                      const std::string& file) {
    const auto isUnwanted = [&] { return isEnding_ || request.isLeft(); };
    auto place = formerPlaces_.take(Places::Need::person, isUnwanted);
    if (!place) {
        throw Failure({code::cancelled, "cancelled"});
    }
    const ChildEnd log =
        run(request, {{"log", "--", file}, limits::lookTime, Places::Need::picture});
    const auto end = endAfter(log.output, *request.route.update);
    if (!end) {
        return std::nullopt;
    }
    FormerFile former{*std::move(place), PassingFile(newPath(".pdf"))};
    copyStart(file, former.file.path(), *end, isUnwanted);
    return former;
}

Answer Service::picture(const WebRequest& request, const std::string& file) {
    const Route& route = request.route;
    const FileStamp stamp = stampOf(file).value_or(FileStamp());
    std::string name;
    for (const auto part : {std::int64_t{route.file}, std::int64_t{route.page},
                            std::int64_t{route.update.value_or(-1)}, stamp.length, stamp.seconds,
                            stamp.nanoseconds, static_cast<std::int64_t>(stamp.number)}) {
        name += std::to_string(part) + " ";
    }
    auto picture = pictures_.find(name);
    if (!picture) {
        const auto former = route.update ? fileAfter(request, file) : std::nullopt;
        if (route.update && !former) {
            return refusal(404, {code::access, "the file has no such update"});
        }
        PassingFile art(newPath(".svg"));
        Work work{openingWords(request, former ? former->file.path() : file, art.path()),
                  limits::pictureTime, Places::Need::picture};
        work.fileSize = limits::pictureBytes;
        const ChildEnd end = run(request, work);
        if (end.status != 0) {
            return {.status = 422, .body = end.output};
        }
        picture = pictures_.keep(name, art.path());
        art.letGo();
    }
    return {.type = "image/svg+xml", .file = picture};
}

/// Not kept: it is small, and made in a few milliseconds.
Answer Service::thumbnail(const WebRequest& request, const std::string& file) {
    const PassingFile png(newPath(".png"));
    Work work{{"info", "--page", std::to_string(request.route.page), "--thumbnail", png.path(),
               "--", file},
              limits::pictureTime,
              Places::Need::picture};
    work.fileSize = limits::pictureBytes;
    const ChildEnd end = run(request, work);
    if (end.status != 0) {
        return {.status = 422, .body = end.output};
    }
    auto bytes =
        std::make_shared<const Descriptor>(::open(png.path().c_str(), O_RDONLY | O_CLOEXEC));
    if (!*bytes) {
        throw Failure(outputFault("the small picture", lastError()));
    }
    return {.type = "image/png", .file = std::move(bytes)};
}

Answer Service::save(const WebRequest& request, const std::string& file) {
    const Route& route = request.route;
    const PassingFile artwork(newPath(".svg"));
    const Descriptor out(
        ::open(artwork.path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    std::int64_t left = limits::body;
    std::error_code error = out ? std::error_code() : lastError();
    const bool isWhole = request.readBody([&](std::string_view piece) {
        left -= static_cast<std::int64_t>(piece.size());
        while (!error && left >= 0 && !piece.empty()) {
            const ssize_t count = write(out.number(), piece.data(), piece.size());
            error = count < 0 ? lastError() : std::error_code();
            piece.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        }
        return !error && left >= 0;
    });
    if (error) {
        throw Failure(outputFault("the artwork", error));
    }
    if (!isWhole) {
        return left < 0 ? refusal(413, {code::artwork, "the artwork is longer than 1 GiB"})
                        : refusal(408, {code::artwork, "the artwork did not come whole"});
    }
    Work work{{"save", "--page", std::to_string(route.page)}, limits::saveTime};
    const bool isTrial = route.kind == Kind::trial;
    work.isForGood = !isTrial;
    for (const auto& [isWanted, word] :
         {std::pair(isTrial, "--dry-run"), {route.force, "--force"}, {route.mend, "--mend"}}) {
        if (isWanted) {
            work.words.emplace_back(word);
        }
    }
    // A file that is gone would be made.
    const auto size = route.size ? std::optional<std::int64_t>(*route.size) : lengthOf(file);
    if (!size) {
        return refusal(404, {code::access, "the file is not there any more; nothing was saved"});
    }
    work.words.insert(work.words.end(),
                      {"--expect-size", std::to_string(*size), "--", artwork.path(), file});
    Answer answer = objectAnswer(run(request, work));
    life_.note();
    return answer;
}

Answer Service::revert(const WebRequest& request, const std::string& file) {
    Work work{{"revert"}, limits::saveTime, Places::Need::person, true};
    if (request.route.size) {
        work.words.insert(work.words.end(), {"--expect-size", std::to_string(*request.route.size)});
    }
    work.words.insert(work.words.end(), {"--", file});
    return objectAnswer(run(request, work));
}

} // namespace corvane

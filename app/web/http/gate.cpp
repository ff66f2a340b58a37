#include "app/web/http/gate.h"

#include "app/cli/text.h"
#include "app/web/http/secret.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr std::string_view secretStart = "/?secret=";

/// No sandbox: one goes nowhere by itself.
constexpr auto linkPolicy = "default-src 'none'; base-uri 'none'; frame-ancestors 'none'";

/// In words where a person opened the page itself.
Answer refused(const httplib::Request& request, int status, std::string sentence) {
    if (request.path == "/") {
        return {.status = status, .type = "text/plain; charset=utf-8", .body = sentence + "\n"};
    }
    return refusal(status, {code::access, std::move(sentence)});
}

std::string cookieName(int port) {
    return "corvane-" + std::to_string(port); // cookies do not tell ports of one host apart
}

/// Browsers say so of each request; other programs do not.
std::string siteOf(const httplib::Request& request) {
    return request.get_header_value("Sec-Fetch-Site");
}

} // namespace

Gate::Gate(int port) : port_(port), secret_(newSecret()), passing_(newSecret()) {}

std::string Gate::address() const {
    return "http://127.0.0.1:" + std::to_string(port_) + std::string(secretStart) + secret_;
}

std::string Gate::addressForBrowser() const {
    return "http://127.0.0.1:" + std::to_string(port_) + std::string(secretStart) + passing_;
}

bool Gate::isHost(std::string_view host) const {
    const std::string end = ":" + std::to_string(port_);
    return host == "127.0.0.1" + end || host == "localhost" + end;
}

bool Gate::hasCookie(const httplib::Request& request) const {
    const std::string name = cookieName(port_);
    bool isThere = false;
    const auto [first, last] = request.headers.equal_range("Cookie");
    for (auto header = first; header != last; ++header) {
        std::string_view rest = header->second;
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find(';'), rest.size());
            const std::string_view cookie = trimmedLine(rest.substr(0, end));
            const std::size_t equals = std::min(cookie.find('='), cookie.size());
            if (cookie.substr(0, equals) == name && equals != cookie.size()) {
                isThere = isSameSecret(cookie.substr(equals + 1), secret_) || isThere;
            }
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    }
    return isThere;
}

bool Gate::isFromOurPage(const httplib::Request& request) const {
    const std::string site = siteOf(request);
    if (request.has_header("Origin")) {
        const bool isOurs =
            request.get_header_value_count("Origin") == 1 &&
            request.get_header_value("Origin") == "http://" + request.get_header_value("Host");
        return isOurs && (site.empty() || site == "same-origin");
    }
    // A form or a link of another site sends no Origin with GET. "none": a person typed the
    // address.
    return request.method == "POST" ? site == "same-origin"
                                    : site.empty() || site == "same-origin" || site == "none";
}

std::optional<Answer> Gate::answer(const httplib::Request& request) {
    if (request.get_header_value_count("Host") != 1 || !isHost(request.get_header_value("Host"))) {
        return refused(request, 403, "the address has another host than this server");
    }
    if (request.method != "GET" && request.method != "POST") {
        return refused(request, 405, "this server answers GET and POST only");
    }
    if (request.method == "GET" && request.target.starts_with(secretStart)) {
        return answerSecret(request, std::string_view(request.target).substr(secretStart.size()));
    }
    if (!isFromOurPage(request)) {
        return refused(request, 403, "the request comes from another page than this server's own");
    }
    if (!hasCookie(request)) {
        return refused(request, 401,
                       "the server does not know this browser; open the address that corvane "
                       "serve printed");
    }
    return std::nullopt;
}

std::optional<Answer> Gate::answerSecret(const httplib::Request& request, std::string_view secret) {
    const std::lock_guard lock(mutex_);
    const bool isPassing = !passing_.empty() && isSameSecret(secret, passing_);
    if (isPassing) {
        passing_.clear();
    }
    if (!isPassing && !isSameSecret(secret, secret_) && !hasCookie(request)) {
        return refused(request, 403,
                       "this is not the address that corvane serve printed, or it was opened "
                       "before; open the one that it printed");
    }
    const std::string site = siteOf(request);
    Answer answer{.status = 303, .type = "text/html; charset=utf-8"};
    answer.headers.emplace_back("Set-Cookie", cookieName(port_) + "=" + secret_ +
                                                  "; Path=/; HttpOnly; SameSite=Strict");
    if (site.empty() || site == "none" || site == "same-origin") {
        answer.headers.emplace_back("Location", "/");
    } else {
        // A link in another site's page, such as a terminal in the browser: after a redirect from
        // there the cookie would not be sent.
        answer.status = 200;
        answer.headers.emplace_back("Content-Security-Policy", linkPolicy);
        answer.body = "<!DOCTYPE html><meta http-equiv=\"refresh\" content=\"0; url=/\">";
    }
    return answer;
}

} // namespace corvane

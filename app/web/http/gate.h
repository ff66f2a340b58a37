// Who is let in: the person who started the server, in a page of the server's own.
#pragma once

#include "app/web/http/answer.h"

#include <httplib.h>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

class Gate {
public:
    /// Raises `Failure`.
    explicit Gate(int port);

    /// The address for the person, good as long as the server is there.
    std::string address() const;
    /// The address for the browser that is started. Other people of this machine can read the
    /// arguments of programs, so it is good once.
    std::string addressForBrowser() const;

    /// The answer where a request gets no other: it is refused, or it brought the secret and gets
    /// the cookie. Looks at nothing but the head.
    std::optional<Answer> answer(const httplib::Request& request);

private:
    std::optional<Answer> answerSecret(const httplib::Request& request, std::string_view secret);
    bool isHost(std::string_view host) const;
    bool hasCookie(const httplib::Request& request) const;
    bool isFromOurPage(const httplib::Request& request) const;

    int port_;
    std::string secret_;
    std::string passing_; ///< empty once it was used
    std::mutex mutex_;    ///< of `passing_`
};

} // namespace corvane

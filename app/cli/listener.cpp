#include "app/cli/listener.h"

#include "app/cli/messages.h"
#include "app/cli/terminal/chooser.h"
#include "host/toolbox.h"

#include <iostream>
#include <new>
#include <unistd.h>
#include <utility>

namespace corvane {

namespace {

std::string progressLabel(const Arguments& arguments) {
    return arguments.command == Command::save ? "corvane: saving" : "corvane: reading";
}

Listener& listener(void* context) {
    return *static_cast<Listener*>(context);
}

} // namespace

Listener::Listener(const Arguments& arguments, Report& report)
    : arguments_(arguments), report_(report),
      progress_(progressTerminal(arguments), progressLabel(arguments)),
      passwords_(arguments.passwords != nullptr ? *arguments.passwords
                                                : ownPasswords_.emplace(arguments)),
      extension_(makeExtension()) {
    setHostExtension(&extension_);
    setDialogFront(this);
}

Listener::~Listener() {
    setDialogFront(nullptr);
    setHostExtension(nullptr);
}

/// Runs `body`; false, and remembered, where memory ran out.
template <class Body>
bool Listener::remember(Body&& body) {
    try {
        std::forward<Body>(body)();
        return true;
    } catch (const std::bad_alloc&) {
        ranOutOfMemory_ = true;
        return false;
    }
}

HostExtension Listener::makeExtension() {
    HostExtension extension;
    extension.profile = arguments_.profile;
    extension.wantedPage = arguments_.page;
    extension.context = this;
    extension.progress = [](void* context, std::int64_t done, std::int64_t total) {
        listener(context).progress_.update(done, total);
    };
    extension.documentFacts = [](void* context, const DocumentFacts& facts) {
        Listener& to = listener(context);
        to.remember([&] {
            to.report_.file = FileFacts{facts, std::string(facts.version)};
            to.report_.file->facts.version = {};
        });
    };
    extension.signatures = [](void* context, const SignatureFacts& facts) {
        listener(context).report_.signatures = facts;
    };
    extension.pageFacts = [](void* context, const PageFacts& facts) {
        Listener& to = listener(context);
        to.remember([&] { to.report_.pages.push_back(facts); });
    };
    extension.pageListing = [](void* context, const PageListing& listing) {
        Listener& to = listener(context);
        to.remember([&] {
            if (!listing.label.empty()) {
                to.report_.pageLabels.emplace(listing.page, listing.label);
            }
            if (listing.hasThumbnail) {
                to.report_.pagesWithThumbnail.insert(listing.page);
            }
        });
    };
    if (!arguments_.thumbnail.empty()) {
        extension.pageThumbnail = [](void* context, const PageThumbnail& told) {
            Listener& to = listener(context);
            to.remember([&] {
                to.report_.thumbnail =
                    PagePicture{told.width, told.height, {told.pixels.begin(), told.pixels.end()}};
            });
        };
    }
    extension.pageIdentity = [](void* context, const PageIdentity& identity) {
        listener(context).report_.source.identity = identity;
    };
    extension.omitted = [](void* context, Omission kind, std::int32_t count) {
        Listener& to = listener(context);
        to.remember([&] { to.report_.source.omitted[std::string(omissionName(kind))] += count; });
    };
    extension.artworkDigest = report_.source.identity ? &report_.source.identity->digest : nullptr;
    extension.artworkName = report_.source.artwork ? &*report_.source.artwork : nullptr;
    extension.overwrites = arguments_.force;
    extension.guardsPage = true;
    extension.saved = [](void* context, const SavedFacts& facts) {
        listener(context).report_.saved = facts;
    };
    extension.layerLeftOut = [](void* context, std::string_view title) {
        Listener& to = listener(context);
        to.remember([&] { to.report_.layersLeftOut.emplace_back(title); });
    };
    extension.layerNotKept = [](void* context, std::string_view title) {
        Listener& to = listener(context);
        to.remember([&] { to.report_.layersNotKept.emplace_back(title); });
    };
    extension.fontAdded = [](void* context, const AddedFont& font) {
        Listener& to = listener(context);
        to.remember([&] {
            to.report_.fontsAdded.push_back(
                {std::string(font.name), std::string(font.letters), std::string(font.wanted)});
        });
    };
    extension.plainContent = arguments_.plain;
    extension.missing = [](void* context, const MissingArt& missing) {
        Listener& to = listener(context);
        to.remember([&] { to.report_.missing.push_back(missing); });
    };
    extension.annotationKept = [](void* context, std::string_view name) {
        Listener& to = listener(context);
        to.remember([&] { to.report_.annotationsKept.emplace_back(name); });
    };
    extension.password = [](void* context, std::int32_t attempt, std::span<char> buffer) {
        Listener& to = listener(context);
        std::int32_t length = -1;
        to.remember([&] {
            to.progress_.clear();
            length = to.passwords_.give(attempt, buffer);
        });
        return length;
    };
    extension.mends = arguments_.mend;
    extension.damage = [](void* context, const DamageFacts& facts) {
        Listener& to = listener(context);
        to.remember([&] {
            to.report_.damage = Damage{facts, std::string(facts.obstacle)};
            to.report_.damage->facts.obstacle = {};
        });
    };
    if (arguments_.command == Command::info && arguments_.page != 0) {
        extension.drawnImage = [](void* context, const DrawnImageFacts& facts) {
            Listener& to = listener(context);
            to.remember([&] {
                DrawnImage image{facts, std::string(facts.colourSpace), std::string(facts.filters)};
                image.facts.colourSpace = {};
                image.facts.filters = {};
                to.report_.drawnImages.push_back(std::move(image));
            });
        };
    }
    extension.update = [](void* context, const UpdateFacts& facts) {
        Listener& to = listener(context);
        to.remember([&] {
            Update update{facts, {facts.pages.begin(), facts.pages.end()}, std::string(facts.date)};
            update.facts.pages = {};
            update.facts.date = {};
            to.report_.updates.push_back(std::move(update));
        });
    };
    return extension;
}

void Listener::showAbout(std::string_view text) {
    remember([&] { note(arguments_, std::string(text)); });
}

void Listener::showError(std::int32_t code, std::string_view sentence) {
    remember([&] { report_.error = Fault{code, std::string(sentence)}; });
}

bool Listener::showWarnings(bool /*reading*/, std::span<const WarningText> warnings,
                            std::string_view /*fileName*/) {
    return remember([&] {
        for (const WarningText& warning : warnings) {
            report_.warnings.push_back({warning.code, std::string(warning.sentence)});
        }
    });
}

/// Whether there is a person to ask.
bool Listener::canAsk() const {
    return !arguments_.json && isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1;
}

bool Listener::chooseShownPage(std::int32_t first, std::int32_t last, std::int32_t& page,
                               PageProxies& proxies) {
    remember([&] {
        if (canAsk()) {
            progress_.clear();
            std::cerr << pageList(first, last, proxies);
        }
    });
    return choosePage(first, last, page);
}

bool Listener::choosePage(std::int32_t first, std::int32_t last, std::int32_t& page) {
    bool isChosen = false;
    remember([&] {
        progress_.clear();
        if (canAsk()) {
            std::cerr << plainLine(arguments_.file + " has " + std::to_string(last) + " pages");
            LineSource answers(STDIN_FILENO);
            const char* const what =
                arguments_.command == Command::save ? "Page to replace" : "Page to open";
            const auto answer = corvane::choosePage(answers, std::cerr, what, first, last, page);
            isChosen = answer.has_value();
            page = answer.value_or(page);
        } else if (arguments_.command == Command::save) {
            // What is replaced is never a guess.
            report_.error = Fault{code::noPage, "the file has " + std::to_string(last) +
                                                    " pages, and the artwork does not say which "
                                                    "it is; name one with --page"};
        } else {
            note(arguments_, "page " + std::to_string(first) + " of " + std::to_string(last) +
                                 "; name another with --page");
            isChosen = true;
            page = first;
        }
        report_.source.page = page;
    });
    return isChosen;
}

bool Listener::chooseFolder(std::int16_t& volume, std::int32_t& directory) {
    bool isChosen = false;
    remember([&] {
        const std::string& path = imageFolder_.use();
        FileSpecification file;
        if (path.empty()) {
            report_.error = Fault{code::io, "the page has images, and there is no folder for "
                                            "their files; name one with --images"};
        }
        // The name is not looked at: what counts is the folder that it lies in.
        if (!path.empty() && makeFileSpecification(path + "/picture", file) == noErr) {
            volume = file.volume;
            directory = file.directory;
            isChosen = true;
        }
    });
    return isChosen;
}

} // namespace corvane

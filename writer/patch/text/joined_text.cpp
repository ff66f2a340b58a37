#include "writer/patch/text/joined_text.h"

#include "runtime/callbacks.h"
#include "runtime/extension.h"
#include "writer/patch/compare/matching.h"
#include "writer/patch/text/letter_matches.h"
#include "writer/patch/text/text_run.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

namespace {

/// What it takes to look at a run of the page, in letters that are compared.
constexpr std::int64_t workOfRun = 32;

/// A part of a run of the artwork: bytes of its text, and the run of the page that it is.
struct Part {
    std::size_t start = 0;
    std::size_t end = 0;
    PaintedIndex was = 0;
};

/// Runs of the page that follow one another on one line.
struct PageRuns {
    PaintedIndex first = 0;
    std::string text;
    std::vector<std::size_t> ends; ///< of each, in the text
};

class Parts {
public:
    Parts(const PageRuns& page, std::size_t length) : page_(page), length_(length) {}

    std::vector<Part> of(const std::vector<LetterMatch>& matches) {
        auto match = matches.begin();
        std::size_t start = 0;
        for (std::size_t i = 0; i < page_.ends.size(); start = page_.ends[i++]) {
            while (match != matches.end() && match->was + match->length < page_.ends[i]) {
                ++match;
            }
            const auto run = page_.first + static_cast<PaintedIndex>(i);
            if (match != matches.end() && match->was <= start) {
                const std::size_t is = match->is + (start - match->was);
                keep(run, is, is + (page_.ends[i] - start));
            } else if (lost_ == noSource) {
                lost_ = run;
            }
        }
        takeUpTo(length_);
        return std::move(parts_);
    }

private:
    void keep(PaintedIndex run, std::size_t start, std::size_t end) {
        takeUpTo(start);
        const bool isFirst = parts_.empty() && at_ < start;
        parts_.push_back({isFirst ? at_ : start, end, run});
        at_ = end;
    }

    /// What was typed between runs that stay.
    void takeUpTo(std::size_t end) {
        if (at_ < end && lost_ != noSource) {
            parts_.push_back({at_, end, lost_});
            at_ = end;
        } else if (at_ < end && !parts_.empty()) {
            parts_.back().end = end;
            at_ = end;
        }
        lost_ = noSource;
    }

    const PageRuns& page_;
    std::size_t length_;
    std::vector<Part> parts_;
    std::size_t at_ = 0;
    PaintedIndex lost_ = noSource; ///< the first since a run that stays
};

class Division {
public:
    Division(const BaseContent& content, Art text, std::int64_t& work)
        : content_(content), text_(text), work_(work) {}

    void run() {
        std::int32_t count = 0;
        callHost(slot::getTextRunCount, text_, &count);
        for (std::int32_t i = 0; i < count; ++i) {
            runs_.push_back(runOf(text_, i));
        }
        listNumbers();
        for (const TextRun& run : runs_) {
            divide(run);
        }
        if (isDivided_) {
            callHost(slot::setTextRuns, text_, divided_.data(),
                     static_cast<std::int32_t>(divided_.size()));
        }
    }

private:
    std::span<const PaintedArt> painted() const { return content_.trace.painted(); }
    const TraceEvent& eventOfRun(PaintedIndex run) const {
        return content_.trace.events()[painted()[run].event];
    }

    void divide(const TextRun& run) {
        const PageRuns page = pageRuns(run.source);
        if (page.ends.size() < 2) {
            divided_.push_back(run);
            return;
        }
        work_ -= static_cast<std::int64_t>(run.text.size());
        const std::vector<LetterMatch> matches = matchLetters(page.text, run.text, work_);
        piece_ = 0;
        for (const Part& part : Parts(page, run.text.size()).of(matches)) {
            add(run, part);
        }
        isDivided_ = true;
    }

    void listNumbers() {
        for (const TextRun& run : runs_) {
            if (run.source.content == content_.number) {
                numbers_.push_back(run.source.ordinal);
            }
        }
        std::ranges::sort(numbers_);
    }

    /// None where the source is none of the content.
    PageRuns pageRuns(const ArtSource& source) {
        PageRuns page;
        const auto count = static_cast<PaintedIndex>(painted().size());
        const auto first = static_cast<PaintedIndex>(source.ordinal);
        if (source.ordinal < 0 || first >= count || source.content != content_.number ||
            (source.end != 0 && eventOfRun(first).start != source.start)) {
            return page;
        }
        page.first = first;
        const PaintedIndex end = source.end != 0 ? count : nextNamed(source.ordinal, count);
        for (PaintedIndex run = first; run < end && work_ > 0 && goesOn(first, run); ++run) {
            if (source.end != 0 && std::int64_t{eventOfRun(run).end} > source.end) {
                break;
            }
            const PaintedArt& was = painted()[run];
            page.text += runOf(was.art, content_.trace.textPart(was.part).run).text;
            work_ -= workOfRun;
            work_ -= static_cast<std::int64_t>(page.text.size() -
                                               (page.ends.empty() ? 0 : page.ends.back()));
            page.ends.push_back(page.text.size());
        }
        return page;
    }

    /// Whether it is a run of the first one's line, as far behind it there as in the page.
    bool goesOn(PaintedIndex first, PaintedIndex run) const {
        const PaintedArt& was = painted()[run];
        const PaintedArt& start = painted()[first];
        return was.setting != 0 && !was.isDrawn && was.art == start.art &&
               content_.trace.textPart(was.part).run - content_.trace.textPart(start.part).run ==
                   static_cast<std::int32_t>(run - first);
    }

    /// The first of the page's runs behind that one that another run of the text names.
    PaintedIndex nextNamed(std::int32_t ordinal, PaintedIndex count) const {
        const auto next = std::ranges::upper_bound(numbers_, ordinal);
        return next == numbers_.end() ? count : std::min(count, static_cast<PaintedIndex>(*next));
    }

    void add(const TextRun& run, const Part& part) {
        TextRun divided = run;
        divided.text = run.text.substr(part.start, part.end - part.start);
        divided.source.ordinal = static_cast<std::int32_t>(part.was);
        if (run.source.end != 0) {
            divided.source.start = eventOfRun(part.was).start;
            divided.source.end = eventOfRun(part.was).end;
        }
        std::vector<TextPiece>& pieces = pieces_.emplace_back();
        const auto startOf = [&](std::size_t piece) {
            return static_cast<std::size_t>(run.pieces[piece].start);
        };
        while (piece_ < run.pieces.size() && startOf(piece_) < part.start) {
            ++piece_;
        }
        const bool beginsPiece = piece_ < run.pieces.size() && startOf(piece_) == part.start;
        if (piece_ > 0 && !beginsPiece) { // the one before goes on here
            const TextPiece& former = run.pieces[piece_ - 1];
            pieces.push_back({.face = former.face, .turn = former.turn});
        }
        for (; piece_ < run.pieces.size() && startOf(piece_) < part.end; ++piece_) {
            pieces.push_back(run.pieces[piece_]);
            pieces.back().start -= static_cast<std::int32_t>(part.start);
        }
        divided.pieces = pieces;
        divided_.push_back(divided);
    }

    const BaseContent& content_;
    Art text_;
    std::int64_t& work_;
    std::vector<TextRun> runs_;
    std::vector<std::int32_t> numbers_; ///< that those name, ascending
    std::vector<TextRun> divided_;
    bool isDivided_ = false;
    std::deque<std::vector<TextPiece>> pieces_; ///< of those
    std::size_t piece_ = 0; ///< of the run that is divided: the first behind the parts so far
};

} // namespace

JoinedText::JoinedText() {
    const auto extension = knownExtension();
    hostSetsRuns_ = extension && extension->version >= 11;
}

void JoinedText::divide(const BaseContent& content, Art text) {
    if (hostSetsRuns_) {
        Division(content, text, work_).run();
    }
}

} // namespace corvane

// Slots of the host's table, watched, made to fail or answered by a test.
#pragma once

#include "host/callbacks.h"

#include <functional>
#include <map>
#include <span>
#include <type_traits>

namespace corvane {

/// What the tapped slots share while a `HostTaps` lives.
struct TapState {
    std::map<int, int> calls; ///< by slot
    int callsInAll = 0;
    int untilFailure = 0;            ///< calls that can fail until the one that does; 0: none does
    std::map<Art, PathStyle> styles; ///< instead of what the host says
    std::map<Art, ArtKind> kinds;    ///< likewise
    std::function<bool()> abort;
    std::function<void(PaintSource, CustomColour&)> custom;
    std::function<HostError(Art, const DrawingProcedures&)> gradient;
    std::function<HostError(Art, TileProcedure)> pattern;
    std::function<HostError(Note, std::uint8_t*)> note;
};
inline TapState* taps = nullptr;

template <const auto& tapped, class SlotType = std::remove_cvref_t<decltype(tapped)>>
struct Tap;

template <const auto& tapped, class Result, class... Parameters>
struct Tap<tapped, Slot<Result(Parameters...)>> {
    static inline Result (*next)(Parameters...) = nullptr;

    static Result call(Parameters... arguments) {
        ++taps->calls[tapped.number];
        ++taps->callsInAll;
        if constexpr (std::is_same_v<Result, HostError>) {
            if (taps->untilFailure > 0 && --taps->untilFailure == 0) {
                return HostError::failed;
            }
        }
        return next(arguments...);
    }

    /// Puts itself before what the table holds, or before `answer` where that is given.
    static void install(std::span<HostProcedure> table, Result (*answer)(Parameters...) = nullptr) {
        next = answer != nullptr ? answer : slotProcedure(table.data(), tapped);
        fillSlot(table, tapped, call);
    }
};

/// What the host itself holds in a slot.
template <const auto& kept>
struct Host {
    static inline typename std::remove_cvref_t<decltype(kept)>::Procedure answer = nullptr;
    static void keep(std::span<HostProcedure> table) { answer = slotProcedure(table.data(), kept); }
};

/// Taps every slot that writing uses. Paint and notes are answered by the
/// functions of the state that are set.
class HostTaps {
public:
    explicit HostTaps(HostProcedure* slots) {
        const std::span<HostProcedure> table(slots, slotCount);
        taps = &state_;
        Tap<slot::getNextLayer>::install(table);
        Tap<slot::getLayerInfo>::install(table);
        Tap<slot::getLayerArt>::install(table);
        Host<slot::getArtType>::keep(table);
        Tap<slot::getArtType>::install(table, [](Art art, ArtKind* kind) {
            const auto found = taps->kinds.find(art);
            if (found == taps->kinds.end()) {
                return Host<slot::getArtType>::answer(art, kind);
            }
            *kind = found->second;
            return HostError::none;
        });
        Tap<slot::getFirstChild>::install(table);
        Tap<slot::getNextSibling>::install(table);
        Tap<slot::getGroupClipped>::install(table);
        Tap<slot::getPathClosed>::install(table);
        Tap<slot::getPathGuide>::install(table);
        Tap<slot::getPathSegmentCount>::install(table);
        Tap<slot::getPathSegments>::install(table);
        Tap<slot::getDocumentInfo>::install(table);
        Tap<slot::checkUserAbort>::install(table, [] {
            return taps->abort && taps->abort() ? HostBoolean::yes : HostBoolean::no;
        });
        Host<slot::getPathStyle>::keep(table);
        Tap<slot::getPathStyle>::install(table, [](Art path, PathStyle* style) {
            const auto found = taps->styles.find(path);
            if (found == taps->styles.end()) {
                return Host<slot::getPathStyle>::answer(path, style);
            }
            *style = found->second;
            return HostError::none;
        });
        Host<slot::getColorInfo>::keep(table);
        Tap<slot::getColorInfo>::install(table, [](PaintSource source, CustomColour* colour) {
            taps->custom ? taps->custom(source, *colour)
                         : Host<slot::getColorInfo>::answer(source, colour);
        });
        Host<slot::drawGradient>::keep(table);
        Tap<slot::drawGradient>::install(table, [](Art path, const DrawingProcedures* procedures) {
            return taps->gradient ? taps->gradient(path, *procedures)
                                  : Host<slot::drawGradient>::answer(path, procedures);
        });
        Host<slot::tilePattern>::keep(table);
        Tap<slot::tilePattern>::install(table, [](Art path, TileProcedure tile) {
            return taps->pattern ? taps->pattern(path, tile)
                                 : Host<slot::tilePattern>::answer(path, tile);
        });
        Host<slot::getNote>::keep(table);
        Tap<slot::getNote>::install(table, [](Note note, std::uint8_t* text) {
            return taps->note ? taps->note(note, text) : Host<slot::getNote>::answer(note, text);
        });
    }
    ~HostTaps() { taps = nullptr; }
    HostTaps(const HostTaps&) = delete;
    HostTaps& operator=(const HostTaps&) = delete;

private:
    TapState state_;
};

} // namespace corvane

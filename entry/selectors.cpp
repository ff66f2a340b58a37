#include "entry/selectors.h"

#include "dialogs/dialogs.h"
#include "entry/document_facts.h"
#include "entry/document_session.h"
#include "entry/file_name.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "runtime/warning.h"
#include "writer/update/history.h"
#include "writer/update/update.h"

#include <array>

namespace corvane {

namespace {

/// The format's name in the host's menus, length-prefixed.
constexpr std::array<std::uint8_t, 14> formatName = {13,  'C', 'o', 'r', 'v', 'a', 'n',
                                                     'e', ' ', '(', 'P', 'D', 'F', ')'};

/// Options of the formats, by the host's own numbering.
constexpr std::int32_t textOptions = 1;
constexpr std::int32_t pdfOptions = 3;

/// The result of the format check, where it does not raise, and 0 where it does.
std::uint32_t quietCheck(const ParameterBlock& block) {
    std::uint32_t result = 0;
    guarded([&] { result = checkFormat(block); });
    resetException();
    return result;
}

void usePage(DocumentSession& session) {
    if (hostNamesPage()) {
        tellDocument(session.cache(), CountObjects::no);
        selectPage(session.cache(), session.page());
    }
    pageCache(session.cache(), session.page());
}

/// A file that was searched has its warning already.
void warnOfMends(const DocumentCache& cache) {
    if (!cache.repaired && isWorthWarning(cache.mends.counts())) {
        raiseWarning(Warning::mended);
    }
}

/// False where the person wants to stop.
bool showWarnings(const ParameterBlock& block, DocumentSession& session) {
    return valueWarning() == Warning::none ||
           warningDialog(specifiedName(*block.file), session.cache().mends.counts());
}

} // namespace

std::uint32_t selectFileFormat() {
    callHost(slot::addFileFormat, formatName.data(), fourCharacters("TEXT"), textOptions, 0);
    callHost(slot::addFileFormat, formatName.data(), fourCharacters("PDF "), pdfOptions, 0);
    return 0;
}

std::uint32_t prepare(ParameterBlock& block) {
    std::uint32_t result = 0;
    if (block.action == Action::write) {
        guarded([&] { result = checkFormat(block); });
        if (resetException() != Exception::none) {
            createFromTemplate(block);
            result = 0;
        }
    }
    if (result == resultNotFormat) {
        failException(Exception::notPdf);
    }
    if (hostNamesPage()) {
        // There is nobody to ask, and to open the file twice would cost twice as much: whether it
        // has the page is found when it is used.
        keepNamedPage(block);
        return result;
    }
    DocumentSession session(block, PageReach::wanted);
    tellDocument(session.cache(), CountObjects::no);
    std::int32_t page = session.page();
    if (!selectPage(session.cache(), page)) {
        failException(Exception::cancelled);
    }
    session.page() = page;
    session.close();
    return result;
}

std::uint32_t go(ParameterBlock& block) {
    std::uint32_t result = quietCheck(block);
    DocumentSession session(block, PageReach::wanted);
    if (block.action == Action::read) {
        usePage(session);
        readCache(session.cache());
        warnOfMends(session.cache());
    } else if (block.action == Action::write) {
        usePage(session);
        writeCache(session.cache());
    }
    bool goesOn = true;
    const Exception code = guarded([&] { goesOn = showWarnings(block, session); });
    if (block.action == Action::write) {
        resetException(); // the page is saved, whoever could be told of it
    } else {
        raiseException(code);
    }
    if (!goesOn) {
        result = resultStopped;
    }
    session.close();
    return result;
}

std::uint32_t trial(ParameterBlock& block) {
    std::uint32_t result = quietCheck(block);
    DocumentSession session(block, PageReach::wanted);
    usePage(session);
    tryCache(session.cache());
    if (!showWarnings(block, session)) {
        result = resultStopped;
    }
    session.close();
    return result;
}

std::uint32_t mend(ParameterBlock& block) {
    DocumentSession session(block);
    tellDocument(session.cache(), CountObjects::no);
    mendCache(session.cache(), block.action == Action::read);
    session.close();
    return 0;
}

std::uint32_t check(const ParameterBlock& block) {
    return quietCheck(block);
}

std::uint32_t info(ParameterBlock& block) {
    const auto extension = knownExtension();
    if (extension && extension->pageThumbnail != nullptr && hostNamesPage()) {
        DocumentSession session(block, PageReach::wanted);
        selectPage(session.cache(), session.page());
        tellThumbnail(session.cache(), session.page());
        session.close();
        return 0;
    }
    DocumentSession session(block);
    tellDocument(session.cache(), CountObjects::yes);
    tellSignatures(session.cache());
    tellPages(session.cache());
    if (extension && extension->drawnImage != nullptr && hostNamesPage()) {
        usePage(session);
        readCache(session.cache()); // tells of each image where it is drawn
    }
    session.close();
    return 0;
}

std::uint32_t diagnose(ParameterBlock& block) {
    DocumentSession session(block);
    tellDocument(session.cache(), CountObjects::yes);
    tellDamage(session.cache());
    session.close();
    return 0;
}

std::uint32_t log(ParameterBlock& block) {
    DocumentSession session(block);
    tellUpdates(session.cache());
    session.close();
    return 0;
}

std::uint32_t revert(ParameterBlock& block) {
    DocumentSession session(block);
    revertCache(session.cache());
    session.close();
    return 0;
}

} // namespace corvane

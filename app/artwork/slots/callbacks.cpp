#include "app/artwork/slots/callbacks.h"

#include "app/artwork/classic/slots.h"
#include "app/artwork/geometry/arithmetic.h"
#include "app/artwork/slots/slots.h"

#include <new>
#include <span>
#include <utility>

namespace corvane {

namespace {

CallbackScope* scopeInForce = nullptr;

void fillTable(std::span<HostProcedure> table) {
    fillSlot(table, slot::checkUserAbort, answer::checkUserAbort);
    fillSlot(table, slot::finishImport, answer::finishImport);
    fillSlot(table, slot::modalFilter, answer::modalFilter);
    fillSlot(table, slot::addFileFormat, answer::addFileFormat);

    fillSlot(table, slot::getNextLayer, answer::getNextLayer);
    fillSlot(table, slot::getLayerInfo, answer::getLayerInfo);
    fillSlot(table, slot::getLayerArt, answer::getLayerArt);
    fillSlot(table, slot::getArtType, answer::getArtType);
    fillSlot(table, slot::getFirstChild, answer::getFirstChild);
    fillSlot(table, slot::getNextSibling, answer::getNextSibling);
    fillSlot(table, slot::newArt, answer::newArt);
    fillSlot(table, slot::disposeArt, answer::disposeArt);
    fillSlot(table, slot::reorderArt, answer::reorderArt);
    fillSlot(table, slot::duplicateArt, answer::duplicateArt);
    fillSlot(table, slot::getGroupClipped, answer::getGroupClipped);
    fillSlot(table, slot::setGroupClipped, answer::setGroupClipped);
    fillSlot(table, slot::setArtSource, answer::setArtSource);
    fillSlot(table, slot::getArtSource, answer::getArtSource);
    fillSlot(table, slot::newArtwork, answer::newArtwork);
    fillSlot(table, slot::disposeArtwork, answer::disposeArtwork);

    fillSlot(table, slot::setForm, answer::setForm);
    fillSlot(table, slot::getForm, answer::getForm);
    fillSlot(table, slot::addContentLayer, answer::addContentLayer);
    fillSlot(table, slot::getContentLayer, answer::getContentLayer);
    fillSlot(table, slot::setGroupLayer, answer::setGroupLayer);
    fillSlot(table, slot::getGroupLayer, answer::getGroupLayer);
    fillSlot(table, slot::addLayer, answer::addLayer);
    fillSlot(table, slot::getLayerRole, answer::getLayerRole);

    fillSlot(table, slot::getPathClosed, answer::getPathClosed);
    fillSlot(table, slot::setPathClosed, answer::setPathClosed);
    fillSlot(table, slot::getPathGuide, answer::getPathGuide);
    fillSlot(table, slot::getPathSegmentCount, answer::getPathSegmentCount);
    fillSlot(table, slot::setPathSegmentCount, answer::setPathSegmentCount);
    fillSlot(table, slot::getPathSegments, answer::getPathSegments);
    fillSlot(table, slot::setPathSegments, answer::setPathSegments);
    fillSlot(table, slot::getPathStyle, answer::getPathStyle);
    fillSlot(table, slot::setPathStyle, answer::setPathStyle);
    fillSlot(table, slot::getDefaultStyle, answer::getDefaultStyle);

    fillSlot(table, slot::getColorInfo, answer::getColorInfo);
    fillSlot(table, slot::drawGradient, answer::drawGradient);
    fillSlot(table, slot::tilePattern, answer::tilePattern);
    fillSlot(table, slot::getNote, answer::getNote);
    fillSlot(table, slot::addGradient, answer::addGradient);
    fillSlot(table, slot::getGradient, answer::getGradient);
    fillSlot(table, slot::addPattern, answer::addPattern);
    fillSlot(table, slot::getPattern, answer::getPattern);
    fillSlot(table, slot::addCustomColour, answer::addCustomColour);
    fillSlot(table, slot::addInkMixture, answer::addInkMixture);
    fillSlot(table, slot::getInkMixture, answer::getInkMixture);

    fillSlot(table, slot::addFont, answer::addFont);
    fillSlot(table, slot::setFontFile, answer::setFontFile);
    fillSlot(table, slot::getFontFacts, answer::getFontFacts);
    fillSlot(table, slot::setTextLine, answer::setTextLine);
    fillSlot(table, slot::getTextLine, answer::getTextLine);
    fillSlot(table, slot::addTextRun, answer::addTextRun);
    fillSlot(table, slot::addTextRunBefore, answer::addTextRunBefore);
    fillSlot(table, slot::setTextRuns, answer::setTextRuns);
    fillSlot(table, slot::getTextRunCount, answer::getTextRunCount);
    fillSlot(table, slot::getTextRun, answer::getTextRun);
    fillFontSlots(table);
    fillOpenRunSlots(table);
    fillTextWalkSlots(table);
    fillPlacedSlots(table);

    fillSlot(table, slot::addImage, answer::addImage);
    fillSlot(table, slot::addImageBytes, answer::addImageBytes);
    fillSlot(table, slot::endImage, answer::endImage);
    fillSlot(table, slot::giveUpImage, answer::giveUpImage);
    fillSlot(table, slot::getImageFacts, answer::getImageFacts);
    fillSlot(table, slot::openImageBytes, answer::openImageBytes);
    fillSlot(table, slot::readImageBytes, answer::readImageBytes);
    fillSlot(table, slot::setPlacedImage, answer::setPlacedImage);
    fillSlot(table, slot::getPlacedImage, answer::getPlacedImage);

    fillSlot(table, slot::setAppearance, answer::setAppearance);
    fillSlot(table, slot::getAppearance, answer::getAppearance);
    fillSlot(table, slot::addMask, answer::addMask);
    fillSlot(table, slot::getMask, answer::getMask);

    fillSlot(table, slot::fixedMultiply, answer::fixedMultiply);
    fillSlot(table, slot::fixedDivide, answer::fixedDivide);
    fillSlot(table, slot::degreesToAngle, answer::degreesToAngle);
    fillSlot(table, slot::pointsEqual, answer::pointsEqual);
    fillSlot(table, slot::setIdentityMatrix, answer::setIdentityMatrix);
    fillSlot(table, slot::matricesEqual, answer::matricesEqual);
    fillSlot(table, slot::setMatrixTranslation, answer::setMatrixTranslation);
    fillSlot(table, slot::scaleMatrix, answer::scaleMatrix);
    fillSlot(table, slot::translateMatrix, answer::translateMatrix);
    fillSlot(table, slot::rotateMatrix, answer::rotateMatrix);
    fillSlot(table, slot::multiplyMatrix, answer::multiplyMatrix);
    fillSlot(table, slot::transformPoint, answer::transformPoint);

    fillSlot(table, slot::getDocumentInfo, answer::getDocumentInfo);
    fillSlot(table, slot::setRect, answer::setRect);
    fillSlot(table, slot::rectsEqual, answer::rectsEqual);
    fillSlot(table, slot::rectEmpty, answer::rectEmpty);
    fillSlot(table, slot::sectRect, answer::sectRect);
    fillSlot(table, slot::getPageOrigin, answer::getPageOrigin);
    fillSlot(table, slot::getPageBounds, answer::getPageBounds);
    fillSlot(table, slot::setPageBounds, answer::setPageBounds);
    fillSlot(table, slot::getArtboardSize, answer::getArtboardSize);
    fillSlot(table, slot::setArtboardSize, answer::setArtboardSize);
    fillSlot(table, slot::redrawDocument, answer::redrawDocument);
}

} // namespace

CallbackScope::CallbackScope(Document& document, bool (*wantsToStop)())
    : document_(&document), wantsToStop_(wantsToStop), outer_(std::exchange(scopeInForce, this)) {}

CallbackScope::~CallbackScope() {
    scopeInForce = outer_;
}

CallbackScope& CallbackScope::current() {
    if (scopeInForce == nullptr) {
        throw ArtworkError("no document is open");
    }
    return *scopeInForce;
}

CallbackScope* CallbackScope::inForce() {
    return scopeInForce;
}

void CallbackScope::addFormat(FileFormat format) {
    formats_.push_back(std::move(format));
}

void CallbackScope::noteFailure(const char* reason) noexcept {
    try {
        failure_ = reason;
    } catch (const std::bad_alloc&) {
        failure_.clear();
    }
}

CallbackTable::CallbackTable()
    : table_(NewPtrClear(static_cast<std::int32_t>(slotCount * sizeof(HostProcedure)))
                 .as<HostProcedure>()) {
    if (!table_) {
        throw std::bad_alloc();
    }
    fillTable({table_.get(), slotCount});
}

} // namespace corvane

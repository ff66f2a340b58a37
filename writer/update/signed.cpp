#include "writer/update/signed.h"

#include "reader/document/signatures.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "runtime/warning.h"

namespace corvane {

void respectSignatures(DocumentCache& cache) {
    const SignatureFacts facts = signaturesOf(cache);
    const auto extension = knownExtension();
    if (facts.certified && !(extension && extension->overwrites)) {
        failException(Exception::certifiedFile);
    }
    if (facts.certified || facts.count != 0) {
        raiseWarning(Warning::signedFile);
    }
}

} // namespace corvane

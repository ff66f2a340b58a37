#include "reader/syntax/stream/decode_filters.h"

#include "filters/coding/base85.h"
#include "filters/coding/dct.h"
#include "filters/coding/fax.h"
#include "filters/coding/flate.h"
#include "filters/coding/hex.h"
#include "filters/coding/lzw.h"
#include "filters/coding/predictor.h"
#include "filters/coding/run_length.h"
#include "reader/crypt/encryption.h"
#include "reader/syntax/stream/meter.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

/// Reads entries of a parameter dictionary, each with the value it has where it is missing.
class Parameters {
public:
    /// Anything but a dictionary or null raises `range`; the extended profile takes it for null, as
    /// readers do.
    Parameters(DocumentCache& cache, const Object& dictionary)
        : cache_(cache), dictionary_(dictionary) {
        const bool isNone = typeObject(dictionary) == ObjectType::null;
        if (!isNone && absent() && !rules().mendsObjects) {
            failException(Exception::range);
        }
    }

    std::int32_t integer(std::string_view key, std::int32_t usual) const {
        const ObjectOwner value = find(key);
        return typeObject(*value) == ObjectType::null ? usual : integerObject(*value);
    }
    bool boolean(std::string_view key, bool usual) const {
        const ObjectOwner value = find(key);
        return typeObject(*value) == ObjectType::null ? usual : booleanObject(*value);
    }
    /// Whether there is a value, a name, other than this one.
    bool differs(std::string_view key, std::string_view name) const {
        const ObjectOwner value = find(key);
        return typeObject(*value) != ObjectType::null && literalObject(*value) != name;
    }

private:
    bool absent() const { return typeObject(dictionary_) != ObjectType::dictionary; }

    ObjectOwner find(std::string_view key) const {
        if (absent()) {
            Object null;
            shallowObject(null, ObjectType::null, 0);
            return ObjectOwner(null);
        }
        return lookupObject(cache_, dictionary_, key);
    }

    DocumentCache& cache_;
    const Object& dictionary_;
};

/// Where a filter is linked: the document, the chain, the parameters as they were written.
struct Site {
    DocumentCache& cache;
    Chain& chain;
    const Object& written;

    Parameters parameters() const { return {cache, written}; }
};

void linkHex(const Site& site) {
    site.chain.link(setupHex(AsciiMode::pastMarker));
}

void linkMangle(const Site& site) {
    site.chain.link(setupMangle(AsciiMode::pastMarker));
}

void linkRun(const Site& site) {
    site.chain.link(setupRun());
}

void linkPlainAdapt(const Site& site) {
    site.chain.link(setupAdapt(AdaptDirection::decode));
}

void linkPredictor(const Site& site, const Parameters& parameters) {
    const PredictorParameters predictor{
        .predictor = parameters.integer("Predictor", 1),
        .colors = parameters.integer("Colors", 1),
        .bitsPerComponent = parameters.integer("BitsPerComponent", 8),
        .columns = parameters.integer("Columns", 1),
    };
    if (predictor.predictor != 1) {
        site.chain.link(setupPredictor(predictor));
    }
}

void linkAdapt(const Site& site) {
    const Parameters parameters = site.parameters();
    const bool early = parameters.integer("EarlyChange", 1) != 0;
    site.chain.link(setupAdapt(AdaptDirection::decode, early ? 1 : 0));
    linkPredictor(site, parameters);
}

void linkInflate(const Site& site) {
    const Parameters parameters = site.parameters();
    site.chain.link(setupInflate());
    linkPredictor(site, parameters);
}

/// Nothing to link: in an encrypted file the data were deciphered below all filters
/// (reader/crypt/decrypt_object.h), and in another one only the identity has a meaning.
void linkCrypt(const Site& site) {
    if (!site.cache.encryption && site.parameters().differs("Name", "Identity")) {
        failException(Exception::range);
    }
}

void linkFax(const Site& site) {
    const Parameters parameters = site.parameters();
    const FaxParameters usual;
    const auto flag = [&](std::string_view key, std::int32_t otherwise) {
        return std::int32_t{parameters.boolean(key, otherwise != 0)};
    };
    site.chain.link(setupFax({
        .k = parameters.integer("K", usual.k),
        .endOfLine = flag("EndOfLine", usual.endOfLine),
        .encodedByteAlign = flag("EncodedByteAlign", usual.encodedByteAlign),
        .columns = parameters.integer("Columns", usual.columns),
        .rows = parameters.integer("Rows", usual.rows),
        .endOfBlock = flag("EndOfBlock", usual.endOfBlock),
        .blackIs1 = flag("BlackIs1", usual.blackIs1),
        .damagedRowsBeforeError =
            parameters.integer("DamagedRowsBeforeError", usual.damagedRowsBeforeError),
    }));
}

void linkDiscrete(const Site& site) {
    site.chain.link(setupDiscrete(0, 0, 0));
}

/// A filter of a profile; of both, where none is named.
struct DecodeFilter {
    std::string_view full;
    std::string_view abbreviated;
    void (*link)(const Site&);
    bool inOriginal = true;
    bool inExtended = true;
};

constexpr std::array decodeFilters{
    DecodeFilter{"ASCIIHexDecode", "AHx", linkHex},
    DecodeFilter{"ASCII85Decode", "A85", linkMangle},
    // The original profile reads no parameters of LZW.
    DecodeFilter{"LZWDecode", "LZW", linkPlainAdapt, true, false},
    DecodeFilter{"LZWDecode", "LZW", linkAdapt, false, true},
    DecodeFilter{"RunLengthDecode", "RL", linkRun},
    DecodeFilter{"CCITTFaxDecode", "CCF", linkFax},
    DecodeFilter{"DCTDecode", "DCT", linkDiscrete},
    DecodeFilter{"FlateDecode", "Fl", linkInflate, false, true},
    DecodeFilter{"Crypt", "Crypt", linkCrypt, false, true},
};

} // namespace

void linkDecodeFilter(DocumentCache& cache, Chain& chain, std::string_view name,
                      const Object& parameters) {
    const bool original = rules().profile == Profile::original;
    const auto* const found = std::ranges::find_if(decodeFilters, [&](const DecodeFilter& filter) {
        return (original ? filter.inOriginal : filter.inExtended) &&
               (name == filter.full || name == filter.abbreviated);
    });
    if (found == decodeFilters.end()) {
        failException(Exception::range);
    }
    const Filter* const below = chain.top();
    found->link({.cache = cache, .chain = chain, .written = parameters});
    if (chain.top() != below) {
        chain.link(setupMeter(cache.work));
    }
}

} // namespace corvane

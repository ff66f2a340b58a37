// The operators of the file's own syntax. Each takes its operands from the operand stack and
// returns whether the loop that called it is done.
#pragma once

#include "reader/document/cache.h"
#include "runtime/exception.h"

#include <cstdint>
#include <string_view>

namespace corvane {

/// 0: go on reading; 1: what was to be read is complete.
using OperatorResult = std::int32_t;
using OperatorHandler = OperatorResult (*)(DocumentCache& cache);

// Constructs, run at their closing delimiters. No mark of the right kind raises `mark`.

/// Joins the digits above a hexadecimal mark into a block. Not text: `range`; no digit: `type`.
OperatorResult blockOperator(DocumentCache& cache);
OperatorResult arrayOperator(DocumentCache& cache);
/// Makes an array, not a procedure: the reader never makes one.
OperatorResult procedureOperator(DocumentCache& cache);
/// An odd number of objects raises `mark`.
OperatorResult dictionaryOperator(DocumentCache& cache);

// Constants and references.

OperatorResult nullOperator(DocumentCache& cache);
OperatorResult trueOperator(DocumentCache& cache);
OperatorResult falseOperator(DocumentCache& cache);
OperatorResult referenceOperator(DocumentCache& cache);

// Cross-reference sections.

OperatorResult xrefOperator(DocumentCache& cache);
OperatorResult freeOperator(DocumentCache& cache);
OperatorResult nodeOperator(DocumentCache& cache);
OperatorResult trailerOperator(DocumentCache& cache);
OperatorResult startxrefOperator(DocumentCache& cache);

// Indirect objects and streams.

OperatorResult objOperator(DocumentCache& cache);
OperatorResult endobjOperator(DocumentCache& cache);
/// Turns a dictionary into a stream: dictionary, position of the first byte, position after the
/// last.
OperatorResult streamOperator(DocumentCache& cache);
OperatorResult endstreamOperator(DocumentCache& cache);

// Queries, called by the reader itself.

/// The three of the classic set that do nothing.
OperatorResult voidOperator(DocumentCache& cache);
OperatorResult submergeOperator(DocumentCache& cache);
OperatorResult surfaceOperator(DocumentCache& cache);
OperatorResult duplicateOperator(DocumentCache& cache);
OperatorResult copyOperator(DocumentCache& cache);
OperatorResult equalOperator(DocumentCache& cache);
/// Elements of an array, pairs of a dictionary, bytes of a stream; anything else raises `range`.
OperatorResult countOperator(DocumentCache& cache);
/// array i -> element; out of range: `type`.
OperatorResult indexOperator(DocumentCache& cache);
/// dictionary i -> key and value of pair i; out of range: `type`.
OperatorResult entryOperator(DocumentCache& cache);
/// dictionary name -> value of such a key, or null; `findEntry` says of which one.
OperatorResult lookupOperator(DocumentCache& cache);
/// Follows references to the object itself.
OperatorResult resolveOperator(DocumentCache& cache);
/// stream -> position of its first byte and position after its last.
OperatorResult extentOperator(DocumentCache& cache);
/// dictionary f -> value of pair f, a 16.16 number without fraction.
OperatorResult tableOperator(DocumentCache& cache);
/// Makes a dictionary or null the page's resources.
OperatorResult contextOperator(DocumentCache& cache);
/// name -> that category of the page's resources.
OperatorResult listingOperator(DocumentCache& cache);
/// category name -> that resource; in an array category whether the name occurs.
OperatorResult resourceOperator(DocumentCache& cache);

/// The object itself for a reference, read from the file where it was not yet; shared with the
/// cache. In the extended profile null where it cannot be read, once the file is opened or was
/// searched.
ObjectOwner resolveObject(DocumentCache& cache, const Object& object);
/// The same, raising what reading it raises in every profile.
ObjectOwner readableObject(DocumentCache& cache, const Object& object);
/// The same into `value`. A fault of the file (`isFileFault`) is returned, not raised, and `value`
/// is then of no use.
Exception tryResolveObject(DocumentCache& cache, const Object& object, ObjectOwner& value);
/// Drops the cached value of an indirect object; it is read again when it is wanted.
void forgetObject(DocumentCache& cache, std::int32_t number, std::int32_t generation);
/// Value of `key` in a dictionary or stream, resolved; null where it is missing.
ObjectOwner lookupObject(DocumentCache& cache, const Object& dictionary, std::string_view key);
/// As `lookupObject`, references left as they are; not retained. Of several equal keys the last
/// counts; the first in the original profile.
Object findEntry(DocumentCache& cache, const Object& dictionary, std::string_view key);
/// Raises `crossReference` where the trailer says that the file is encrypted, but not in the
/// extended profile where the newest one says so too: `openEncryption` goes by that.
void refuseEncrypted(DocumentCache& cache, const Object& trailer);
/// Value of an integer or 16.16 number; anything else raises `range`.
double realNumber(const Object& number);

} // namespace corvane

// Opening an encrypted file: by no password, by one that the host has, or by one that it asks for.
#pragma once

#include "reader/document/cache.h"

namespace corvane {

/// Reads what the newest trailer says of encryption and finds the key. Nothing happens where it
/// says nothing. Otherwise what was read before is dropped, as it is not deciphered. Raises
/// `crossReference`, and notes why, where the file cannot be deciphered.
void openEncryption(DocumentCache& cache);

} // namespace corvane

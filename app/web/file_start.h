// The first bytes of a file: what it was before it was appended to.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace corvane {

/// Copies `length` bytes of the file `from` into a new file `to`, which only this user can read.
/// Raises `Failure` where `from` is no regular file, is shorter, or more than the server grants;
/// where `isUnwanted`, asked now and then, becomes true; and where reading or writing fails. What
/// was written stays then.
void copyStart(const std::string& from, const std::string& to, std::int64_t length,
               const std::function<bool()>& isUnwanted);

} // namespace corvane

// Identities: the highest object number of the file being saved.
#pragma once

#include <cstdint>

namespace corvane {

void openIdentity();
/// There is nothing to give back; kept beside `openIdentity`.
void closeIdentity();
/// Notes a number that the file uses.
void usedIdentity(std::int32_t number);
/// Notes a number that the file names, though no object has it: a new one with it would be taken
/// for what is named. Numbers far beyond those in use are passed over, since none will come so far.
void namedIdentity(std::int32_t number);
/// A number that nobody uses yet. Past `budget::objectNumber`: `structure`.
std::int32_t nextIdentity();
/// The highest number and one more: "Size" of the file.
std::int32_t lastIdentity();

} // namespace corvane

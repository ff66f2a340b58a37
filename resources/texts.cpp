// Every sentence that a person may read, by code.
#include "resources/resources.h"

#include <array>

namespace corvane {

namespace {

constexpr std::array<std::string_view, 34> exceptions = {
    /* 1 */ "the page asks for more work than this program allows; simplify it with another "
            "program",
    /* 2 */ "cancelled",
    /* 3 */ "the drawing program refused an operation; the page may be too large for it",
    /* 4 */
    "an image is damaged or coded in a way that is not supported; leave it out or convert it",
    /* 5 */ "a font could not be written; use another font for this text",
    /* 6 */ "the disk is full; make room and try again",
    /* 7 */ "the file is encrypted; remove its password with a tool that may, and try again",
    /* 8 */ "the fonts of this machine could not be read; check the font settings",
    /* 9 */ "",
    /* 10 */ "a page or an object is missing from the file; choose another page or repair the file",
    /* 11 */ "the page holds more values at once than can be kept; repair or simplify the file",
    /* 12 */
    "the file is damaged, or built in a way that is not supported; repair it with another "
    "PDF program and try again",
    /* 13 */ "out of memory; close something else or raise the limit (CORVANE_ZONE_MB)",
    /* 14 */ "the file holds a value of the wrong type; repair it with another PDF program",
    /* 15 */
    "a value is out of range, or data are coded in a way that is not supported; repair or "
    "uncompress the file with another PDF program",
    /* 16 */ "brackets in the file do not match; repair it with another PDF program",
    /* 17 */ "the file uses an operator where it may not stand; repair it with another PDF program",
    /* 18 */ "the file could not be read or written; check the disk and that the file is complete",
    /* 19 */
    "the file could not be opened; check its permissions and that nobody else is saving it",
    /* 20 */ "the file to save into exists and is no PDF; choose another file",
    /* 21 */
    "the page was changed since the artwork was opened, and saving would undo that; open the page "
    "again",
    /* 22 */
    "the file is damaged and was mended for reading only; to save into it, say --mend: what is "
    "appended then mends it, and every old byte stays",
    /* 23 */ "the file would grow past 2,147,483,647 bytes; save into a smaller file",
    /* 24 */ "another program changed the file while it was being saved; try again",
    /* 25 */ "the newest update was not made by this program; nothing was taken off",
    /* 26 */ "",
    /* 27 */ "",
    /* 28 */ "",
    /* 29 */
    "the page was saved from another artwork meanwhile, and saving this one would undo that; open "
    "the page again, or undo it with --force",
    /* 30 */
    "much of the page is not in the artwork, and saving would delete it; if that is meant, say "
    "--force",
    /* 31 */
    "this change cannot be made without harm to other things on the page; change something else, "
    "or open the page again",
    /* 32 */
    "the owner of this encrypted file does not permit changes; give the owner's password to save "
    "into it",
    /* 33 */
    "the file is certified: its author's signature allows no changed pages, and readers would show "
    "it as broken; if that does not matter, say --force",
    /* 34 */
    "annotations were changed or deleted in the artwork, and saving leaves them in the file as "
    "they "
    "are; if that does not matter, say --force",
};

/// Why a file cannot be read or mended, or a page not saved, by reason.
constexpr std::array<std::string_view, 16> reasons = {
    /* 1 */ "the file is encrypted and needs a password; give it with --password-file",
    /* 2 */ "that is not a password of this encrypted file; check it and try again",
    /* 3 */
    "the file is encrypted by a security handler that is not supported (%); remove the encryption "
    "with the program that made it",
    /* 4 */
    "the file is encrypted by a method that is not supported (%); remove the encryption with "
    "another PDF program",
    /* 5 */
    "what the file says of its encryption is damaged; repair it with another PDF program and try "
    "again",
    /* 6 */
    "the header of the file is missing or not at its front, which nothing that is appended can "
    "mend; repair it with another PDF program",
    /* 7 */
    "the catalog of the file has no number of its own, which nothing that is appended can mend; "
    "repair it with another PDF program",
    /* 8 */
    "the trailer of the file does not refer to its encryption, which nothing that is appended can "
    "mend; repair it with another PDF program",
    /* 9 */
    "a page of the file has no number of its own, so that no page tree can name it; repair it with "
    "another PDF program",
    /* 10 */
    "no font of the page or of this machine has the letter %; install one that has it, or use "
    "other letters",
    /* 11 */
    "the font % must not be put into files, as its maker says; use another font for the text, or "
    "turn it into paths in your editor",
    /* 12 */
    "the original profile cannot draw text on a page anew; turn it into paths in your editor",
    /* 13 */
    "letters that are drawings (of a Type 3 font) were changed one by one, which would make paths "
    "of their "
    "text; change the group as a whole, or say --force",
    /* 14 */
    "an image of the artwork cannot be read; put the image right, or take it out of the artwork",
    /* 15 */
    "the artwork has only the frame of an image that is in another file, or is another one by "
    "now; put the image in its place, or take it out of the artwork",
    /* 16 */
    "an image or a form names its layer itself, and cannot be taken out of it; put it back into "
    "the layer",
};

constexpr std::array<std::string_view, 25> readWarnings = {
    /* 1 */ "an object of an unknown kind is not in the artwork",
    /* 2 */ "drawing commands that no PDF version knows are not in the artwork",
    /* 3 */ "forms (reused drawings) are not in the artwork",
    /* 4 */ "text in Type 3 fonts is not in the artwork",
    /* 5 */ "the characters of a font were matched approximately; check the text",
    /* 6 */ "images are not in the artwork",
    /* 7 */ "letter spacing is out of range; check the text",
    /* 8 */ "a Multiple Master font is missing; install it or choose another",
    /* 9 */ "a Type 1 font is missing; install it or choose another",
    /* 10 */ "a TrueType font is missing; install it or choose another",
    /* 11 */ "fills by the even-odd rule were filled by the other rule; check overlapping shapes",
    /* 12 */ "entries of an image were ignored",
    /* 13 */ "parts of the page are damaged and were skipped; check the drawing",
    /* 14 */ "the file has an old header; saving it in another PDF program makes it a usual PDF",
    /* 15 */ "a Multiple Master font was substituted; check the text",
    /* 16 */ "a Type 1 font was substituted; check the text",
    /* 17 */ "a TrueType font was substituted; check the text",
    /* 18 */
    "some text is not in the artwork, or clips nothing there: letters that are images, text in "
    "fonts "
    "that cannot be read, text that clips, and text in patterns or colours that are not supported",
    /* 19 */ "patterns and smooth shadings are not in the artwork",
    /* 20 */ "the file's table of contents is damaged; its objects were found by searching",
    /* 21 */ "the file is damaged",
    /* 22 */
    "images that are JPEGs of 12 bits a sample are not decoded; convert them to 8 bits to see them",
    /* 23 */
    "images that are JPEGs in arithmetic coding are not decoded; convert them to usual ones to see "
    "them",
    /* 24 */ "images that are lossless JPEGs are not decoded; convert them to see them",
    /* 25 */ "images that are hierarchical JPEGs are not decoded; convert them to see them",
};

/// What was mended, by kind: for one and for several; % stands for how many. Empty: nobody needs to
/// know.
constexpr std::array<std::string_view, 20> mends = {
    /* header */ "its header is missing or far from its front",
    "",
    /* crossReference: the warning itself says so */ "",
    "",
    /* trailer */ "nothing leads to its catalog",
    "",
    /* pages */ "its pages were found by searching, and their order may be another",
    "",
    /* pageNode */ "a node of its page tree is wrong",
    "% nodes of its page tree are wrong",
    /* streamLength */ "a stream has a wrong length",
    "% streams have a wrong length",
    /* objectEnd: every reader takes it so */ "",
    "",
    /* syntax */ "an object was read as far as it makes sense",
    "% objects were read as far as they make sense",
    /* lostObject */ "an object cannot be read and was left out",
    "% objects cannot be read and were left out",
    /* pageValue */ "a box, the rotation or the unit of a page is wrong and counts as missing",
    "boxes, rotations or units of % pages are wrong and count as missing",
};

constexpr std::array<std::string_view, 17> writeWarnings = {
    /* 1001 */ "an object of a kind that a PDF cannot hold was left out",
    /* 1002 */ "the page was given a size between the smallest and the largest allowed",
    /* 1003 */ "the crop area was fitted to the page",
    /* 1004 */ "layers that are hidden or not to be printed were not drawn on the page",
    /* 1005 */ "",
    /* 1006 */ "",
    /* 1007 */ "",
    /* 1008 */ "objects of layers were saved in their order; that they were layers is not kept",
    /* 1009 */
    "the file is signed; the signed bytes stay, but readers that check signatures will show that "
    "it was changed after signing",
    /* 1010 */
    "letters that a font does not have, or text in a font that is not installed, got another font "
    "of this machine",
    /* 1011 */
    "an image of the page is enlarged as before: to change its image-rendering, give it another "
    "file",
    /* 1012 */
    "layers of the file were shown, hidden, locked or renamed; that counts for all pages that use "
    "them",
    /* 1013 */
    "a layer that shows or hides as others do stays as the file has it",
    /* 1014 */ "",
    /* 1015 */ "",
    /* 1016 */
    "the page is not the one that the artwork was opened from, or was changed since; all that it "
    "showed gives way to the artwork",
    /* 1017 */
    "the page was saved from another artwork since this one was opened; that save is undone",
};

} // namespace

std::span<const std::string_view> exceptionSentences() {
    return exceptions;
}
std::span<const std::string_view> reasonSentences() {
    return reasons;
}
std::span<const std::string_view> readWarningSentences() {
    return readWarnings;
}
std::span<const std::string_view> mendPhrases() {
    return mends;
}
std::span<const std::string_view> writeWarningSentences() {
    return writeWarnings;
}

} // namespace corvane
